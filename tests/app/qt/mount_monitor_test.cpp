// The mount monitor against the kernel's real mount table.
#include "app/qt/mount_monitor.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <cerrno>
#include <cstring>
#include <filesystem>
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

class MountMonitorTest : public ::testing::Test {
 protected:
  MountMonitorTest() { TestTiming::setTimeScaleForTesting(0.2); }
  ~MountMonitorTest() override { TestTiming::setTimeScaleForTesting(1); }

  // Mounts a small tmpfs on `target`; skips the test where this process may not mount.
  static bool mountTmpfs(const fs::path& target) {
    return ::mount("orrelin-test", target.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "size=1m") == 0;
  }

  testing::TempDir dir;
};

TEST_F(MountMonitorTest, ReportsMountsAndUnmountsABurstAsOneSignal) {
  MountMonitor monitor;
  ASSERT_TRUE(monitor.isActive());
  int changes = 0;
  QObject::connect(&monitor, &MountMonitor::mountsChanged, [&] { ++changes; });

  const fs::path point = dir.path() / "point";
  fs::create_directory(point);
  if (!mountTmpfs(point)) GTEST_SKIP() << "cannot mount a tmpfs here: " << std::strerror(errno);
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
  fs::remove_all(dir.path() / "0");
  spin(200);
  EXPECT_EQ(changes, 0);
}

}  // namespace
}  // namespace orrelin
