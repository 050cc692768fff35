// The mount monitor: libmount's watch on the kernel's mount table, drained on the main thread, with a
// short timer that turns a burst of changes into one signal.
#include "app/qt/mount_monitor.h"

#include <libmount/libmount.h>

#include <QSocketNotifier>
#include <QTimer>
#include <chrono>

#include "core/test_timing.h"

namespace orrelin {

namespace {

// Plugging in a drive mounts its partitions one after another; they arrive as one signal.
constexpr std::chrono::milliseconds kBurst{100};

}  // namespace

struct MountMonitor::Impl {
  libmnt_monitor* monitor = nullptr;
  QSocketNotifier* notifier = nullptr;  // Owned by the MountMonitor object, as is the timer.
  QTimer* burst = nullptr;

  ~Impl() {
    if (monitor != nullptr) mnt_unref_monitor(monitor);  // Also closes its descriptor.
  }
};

MountMonitor::MountMonitor(QObject* parent) : QObject(parent), m_impl(std::make_unique<Impl>()) {
  libmnt_monitor* monitor = mnt_new_monitor();
  if (monitor == nullptr) return;
  const int fd = mnt_monitor_enable_kernel(monitor, /*enable=*/1) == 0 ? mnt_monitor_get_fd(monitor) : -1;
  if (fd < 0) {
    mnt_unref_monitor(monitor);
    return;
  }
  Impl* d = m_impl.get();
  d->monitor = monitor;
  d->burst = new QTimer(this);
  d->burst->setSingleShot(true);
  connect(d->burst, &QTimer::timeout, this, &MountMonitor::mountsChanged);
  d->notifier = new QSocketNotifier(fd, QSocketNotifier::Read, this);
  connect(d->notifier, &QSocketNotifier::activated, this, [d] {
    // Every pending change is taken, or the descriptor would stay readable and wake the loop again at once.
    bool changed = false;
    const char* file = nullptr;
    int type = 0;
    int rc = 0;
    while ((rc = mnt_monitor_next_change(d->monitor, &file, &type)) == 0) changed = true;
    if (rc < 0) mnt_monitor_event_cleanup(d->monitor);
    if (changed && !d->burst->isActive()) d->burst->start(TestTiming::scaled(kBurst));
  });
}

MountMonitor::~MountMonitor() {
  // The notifier lets go of the descriptor before the monitor closes it.
  if (m_impl->notifier != nullptr) m_impl->notifier->setEnabled(false);
}

bool MountMonitor::isActive() const { return m_impl->monitor != nullptr; }

}  // namespace orrelin
