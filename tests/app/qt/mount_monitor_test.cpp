// The mount monitor against the kernel's real mount table.
//
// Every other process that mounts or unmounts anything (another test run beside this one, a desktop
// mounting a drive) changes the same table and would add signals to the counts asserted here. So each test
// runs in a mount namespace of its own, where no mount of the rest of the system arrives and from which
// none of the test's own leaves.
#include "app/qt/mount_monitor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#include "core/test_timing.h"
#include "support/qt_wait.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;

void spin(int ms) {
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < ms) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

// Moves the calling thread into a new mount namespace whose mounts are all private, and back at the end.
// The monitor reads /proc/self/mountinfo, which follows the main thread: tests make it on that thread.
class PrivateMountNamespace {
 public:
  PrivateMountNamespace() {
    m_original = ::open("/proc/self/ns/mnt", O_RDONLY | O_CLOEXEC);
    if (m_original < 0) return;
    if (::unshare(CLONE_NEWNS) != 0) {
      m_error = errno;
      ::close(m_original);
      m_original = -1;
      return;
    }
    // Without this, mounts below shared mounts would still travel both ways.
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
      m_error = errno;
      leave();
      return;
    }
    m_active = true;
  }
  // Whatever a failed test left mounted goes with the namespace.
  ~PrivateMountNamespace() { leave(); }
  PrivateMountNamespace(const PrivateMountNamespace&) = delete;
  PrivateMountNamespace& operator=(const PrivateMountNamespace&) = delete;

  bool active() const { return m_active; }
  std::string error() const { return std::strerror(m_error); }

 private:
  void leave() {
    if (m_original < 0) return;
    if (::setns(m_original, CLONE_NEWNS) != 0) ADD_FAILURE() << "cannot return to the mount namespace";
    ::close(m_original);
    m_original = -1;
    m_active = false;
  }

  int m_original = -1;
  int m_error = 0;
  bool m_active = false;
};

class MountMonitorTest : public ::testing::Test {
 protected:
  MountMonitorTest() { TestTiming::setTimeScaleForTesting(0.2); }
  ~MountMonitorTest() override { TestTiming::setTimeScaleForTesting(1); }

  void SetUp() override {
    if (!ns.active()) GTEST_SKIP() << "no mount namespace of its own here: " << ns.error();
  }

  // Mounts a small tmpfs on `target`; skips the test where this process may not mount.
  static bool mountTmpfs(const fs::path& target) {
    return ::mount("orrelin-test", target.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "size=1m") == 0;
  }

  testing::TempDir dir;
  PrivateMountNamespace ns;
};

TEST_F(MountMonitorTest, ReportsMountsAndUnmountsABurstAsOneSignal) {
  MountMonitor monitor;
  ASSERT_TRUE(monitor.isActive());
  int changes = 0;
  QObject::connect(&monitor, &MountMonitor::mountsChanged, [&] { ++changes; });

  const fs::path point = dir.path() / "point";
  fs::create_directory(point);
  ASSERT_TRUE(mountTmpfs(point)) << std::strerror(errno);
  EXPECT_TRUE(testing::waitFor(&monitor, &MountMonitor::mountsChanged)) << "no signal for a mount";
  ASSERT_EQ(::umount2(point.c_str(), MNT_DETACH), 0);
  EXPECT_TRUE(testing::waitFor(&monitor, &MountMonitor::mountsChanged)) << "no signal for an unmount";
  spin(200);
  EXPECT_EQ(changes, 2);

  // Five mounts and unmounts before the event loop runs again: one signal.
  changes = 0;
  for (int i = 0; i < 5; ++i) {
    ASSERT_TRUE(mountTmpfs(point));
    ASSERT_EQ(::umount2(point.c_str(), MNT_DETACH), 0);
  }
  spin(300);
  EXPECT_EQ(changes, 1);

  // Nothing changes, nothing is said.
  spin(200);
  EXPECT_EQ(changes, 1);
}

TEST_F(MountMonitorTest, ChangesInTheTreeAreNotMountChanges) {
  MountMonitor monitor;
  ASSERT_TRUE(monitor.isActive());
  int changes = 0;
  QObject::connect(&monitor, &MountMonitor::mountsChanged, [&] { ++changes; });
  for (int i = 0; i < 20; ++i) testing::writeFile(dir.path() / std::to_string(i), "x");
  fs::create_directories(dir.path() / "a" / "b");
  fs::rename(dir.path() / "a", dir.path() / "c");
  fs::remove_all(dir.path() / "0");
  spin(200);
  EXPECT_EQ(changes, 0);
}

}  // namespace
}  // namespace orrelin
