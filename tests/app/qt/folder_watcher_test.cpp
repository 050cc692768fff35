// The folder watcher on real trees: which changes it reports, how it batches them, how it follows folders
// that come, go and move, and that nothing arrives after it stops.
#include "app/qt/folder_watcher.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <chrono>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "core/test_timing.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::writeFile;

// Runs the main thread's event loop until `done` holds or `ms` milliseconds pass; returns `done()`.
bool waitUntil(const std::function<bool()>& done, int ms = 10000) {
  QElapsedTimer timer;
  timer.start();
  while (!done() && timer.elapsed() < ms) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return done();
}

void spin(std::chrono::milliseconds time) {
  waitUntil([] { return false; }, static_cast<int>(time.count()));
}

int readProcNumber(const char* path) {
  std::ifstream in(path);
  int value = -1;
  in >> value;
  return value;
}

class FolderWatcherTest : public ::testing::Test {
 protected:
  FolderWatcherTest() {
    TestTiming::setTimeScaleForTesting(0.02);
    fs::create_directories(root);
  }
  ~FolderWatcherTest() override { TestTiming::setTimeScaleForTesting(1); }

  std::unique_ptr<FolderWatcher> watch(const fs::path& path) {
    return FolderWatcher::create(path, [this] { ++reports; });
  }
  static std::chrono::milliseconds latency() { return TestTiming::scaled(FolderWatcher::kLatency); }

  // Runs `change` with the event loop stopped, then expects exactly one report for it.
  void expectOneReport(const std::function<void()>& change) {
    const int before = reports;
    change();
    ASSERT_TRUE(waitUntil([&] { return reports > before; }));
    spin(3 * latency());
    EXPECT_EQ(reports, before + 1);
  }
  // Runs `change`, then expects that no report comes.
  void expectNoReport(const std::function<void()>& change) {
    const int before = reports;
    change();
    spin(4 * latency());
    EXPECT_EQ(reports, before);
  }

  testing::TempDir dir;
  const fs::path root = dir.path() / "root";
  const fs::path outside = dir.path() / "outside";
  int reports = 0;
};

TEST_F(FolderWatcherTest, ReportsEveryKindOfChangeDeepInTheTree) {
  const fs::path deep = root / "a" / "b" / "c" / "d";
  fs::create_directories(deep);
  fs::create_directories(root / "a" / "side");
  writeFile(deep / "note.txt", "one");
  auto watcher = watch(root);
  ASSERT_NE(watcher, nullptr);
  EXPECT_EQ(watcher->path(), root);
  EXPECT_EQ(watcher->watchedFolderCount(), 6u);  // The root, a, b, c, d and side.
  EXPECT_FALSE(watcher->watchLimitReached());
  spin(2 * latency());
  EXPECT_EQ(reports, 0) << "setting up reports nothing";

  const std::vector<std::pair<const char*, std::function<void()>>> changes = {
      {"file created", [&] { writeFile(deep / "new.txt", "x"); }},
      {"file appended to", [&] { std::ofstream(deep / "note.txt", std::ios::app) << "two"; }},
      {"file's permissions changed",
       [&] { fs::permissions(deep / "note.txt", fs::perms::owner_read | fs::perms::owner_write); }},
      {"file renamed", [&] { fs::rename(deep / "new.txt", deep / "renamed.txt"); }},
      {"file deleted", [&] { fs::remove(deep / "renamed.txt"); }},
      {"link created", [&] { fs::create_symlink("note.txt", deep / "link"); }},
      {"folder's date set", [&] { fs::last_write_time(deep, fs::file_time_type::clock::now()); }},
      {"empty folder created and removed",
       [&] {
         fs::create_directory(deep / "e");
         fs::remove(deep / "e");
       }},
  };
  for (const auto& [what, change] : changes) {
    SCOPED_TRACE(what);
    expectOneReport(change);
  }
  EXPECT_EQ(watcher->watchedFolderCount(), 6u);
  // Reading is no change: a rescan reads every file and must not report itself.
  expectNoReport([&] { EXPECT_EQ(testing::readFile(deep / "note.txt"), "onetwo"); });
}

TEST_F(FolderWatcherTest, ABurstIsOneReportAndSteadyWritingOneReportPerLatency) {
  auto watcher = watch(root);
  ASSERT_NE(watcher, nullptr);
  // The burst is queued in full before the event loop runs again.
  expectOneReport([&] {
    for (int i = 0; i < 200; ++i) writeFile(root / ("file " + std::to_string(i)), "x");
  });
  expectOneReport([&] {
    for (int i = 0; i < 200; ++i) std::ofstream(root / ("file " + std::to_string(i)), std::ios::app) << "y";
  });

  // Written to without a pause, the tree is reported every latency, not only once it is quiet.
  reports = 0;
  QElapsedTimer elapsed;
  elapsed.start();
  for (int i = 0; i < 40; ++i) {
    writeFile(root / "steady", std::to_string(i));
    spin(latency() / 4);
  }
  spin(3 * latency());
  EXPECT_GE(reports, 2);
  // Each report closes a batch that began one whole latency before it.
  EXPECT_LE(reports, elapsed.elapsed() / latency().count() + 1);
}

TEST_F(FolderWatcherTest, FoldersThatComeOrMoveInAreWatchedWithTheirContents) {
  auto watcher = watch(root);
  ASSERT_NE(watcher, nullptr);
  ASSERT_EQ(watcher->watchedFolderCount(), 1u);

  // inner and deeper exist before the watcher hears of "new": the walk of "new" finds them.
  expectOneReport([&] { fs::create_directories(root / "new" / "inner" / "deeper"); });
  EXPECT_EQ(watcher->watchedFolderCount(), 4u);
  expectOneReport([&] { writeFile(root / "new" / "inner" / "deeper" / "file", "x"); });

  fs::create_directories(outside / "tree" / "sub");
  expectOneReport([&] { fs::rename(outside / "tree", root / "moved in"); });
  EXPECT_EQ(watcher->watchedFolderCount(), 6u);
  expectOneReport([&] { writeFile(root / "moved in" / "sub" / "file", "x"); });

  // Renamed within the tree: still watched, and what is made in it later is found under the new name.
  expectOneReport([&] { fs::rename(root / "moved in", root / "new" / "renamed"); });
  EXPECT_EQ(watcher->watchedFolderCount(), 6u);
  expectOneReport([&] { fs::create_directory(root / "new" / "renamed" / "sub" / "fresh"); });
  EXPECT_EQ(watcher->watchedFolderCount(), 7u);
  expectOneReport([&] { writeFile(root / "new" / "renamed" / "sub" / "fresh" / "file", "x"); });
}

TEST_F(FolderWatcherTest, FoldersThatGoOrMoveOutAreDropped) {
  fs::create_directories(root / "keep");
  fs::create_directories(root / "doomed" / "a" / "b");
  fs::create_directories(root / "leaving" / "sub");
  fs::create_directories(outside);
  auto watcher = watch(root);
  ASSERT_NE(watcher, nullptr);
  ASSERT_EQ(watcher->watchedFolderCount(), 7u);

  expectOneReport([&] { fs::remove_all(root / "doomed"); });
  EXPECT_EQ(watcher->watchedFolderCount(), 4u);

  expectOneReport([&] { fs::rename(root / "leaving", outside / "left"); });
  EXPECT_EQ(watcher->watchedFolderCount(), 2u);
  // What happens to it elsewhere is no change of this tree.
  expectNoReport([&] {
    writeFile(outside / "left" / "sub" / "file", "x");
    fs::create_directory(outside / "left" / "more");
  });
  expectOneReport([&] { writeFile(root / "keep" / "file", "x"); });
}

TEST_F(FolderWatcherTest, NothingIsReportedAfterStopEvenWithABatchPending) {
  TestTiming::setTimeScaleForTesting(0.1);  // 300 ms: time enough to stop while the batch waits.
  int otherReports = 0;
  auto other = FolderWatcher::create(root, [&] { ++otherReports; });
  auto watcher = watch(root);
  ASSERT_NE(watcher, nullptr);
  ASSERT_NE(other, nullptr);

  writeFile(root / "file", "x");
  spin(latency() / 6);  // Both have read the event and started their batch.
  watcher->stop();
  watcher->stop();
  EXPECT_EQ(watcher->watchedFolderCount(), 0u);
  ASSERT_TRUE(waitUntil([&] { return otherReports == 1; }));
  spin(latency());
  EXPECT_EQ(reports, 0);

  writeFile(root / "file", "y");
  ASSERT_TRUE(waitUntil([&] { return otherReports == 2; }));
  EXPECT_EQ(reports, 0);

  // Destroyed with a batch pending.
  writeFile(root / "file", "z");
  spin(latency() / 6);
  other.reset();
  spin(2 * latency());
  EXPECT_EQ(otherReports, 2);
}

TEST_F(FolderWatcherTest, ACallbackMayStopOrDestroyItsOwnWatcher) {
  std::unique_ptr<FolderWatcher> watcher;
  int calls = 0;
  watcher = FolderWatcher::create(root, [&] {
    ++calls;
    watcher.reset();
  });
  ASSERT_NE(watcher, nullptr);
  writeFile(root / "file", "x");
  ASSERT_TRUE(waitUntil([&] { return watcher == nullptr; }));
  writeFile(root / "file", "y");
  spin(3 * latency());
  EXPECT_EQ(calls, 1);
}

TEST_F(FolderWatcherTest, RootsThatCannotBeWatched) {
  writeFile(dir.path() / "plain file", "x");
  EXPECT_EQ(watch(dir.path() / "missing"), nullptr);
  EXPECT_EQ(watch(dir.path() / "plain file"), nullptr);
  EXPECT_EQ(watch(""), nullptr);
}

TEST_F(FolderWatcherTest, TheRootMayBeALinkButNoLinkBelowItIsFollowed) {
  fs::create_directories(outside / "sub");
  fs::create_directories(root / "real");
  fs::create_directory_symlink(outside, root / "shortcut");
  fs::create_directory_symlink(root, dir.path() / "root link");
  auto watcher = watch(dir.path() / "root link");
  ASSERT_NE(watcher, nullptr);
  EXPECT_EQ(watcher->watchedFolderCount(), 2u);  // The root and real.
  expectNoReport([&] { writeFile(outside / "sub" / "file", "x"); });
  expectOneReport([&] { writeFile(root / "real" / "file", "x"); });
}

TEST_F(FolderWatcherTest, ARootReplacedByAFileAndThenAFolderAgain) {
  fs::create_directories(root / "a");
  auto watcher = watch(root);
  ASSERT_NE(watcher, nullptr);
  expectOneReport([&] {
    fs::remove_all(root);
    writeFile(root, "now a file");
  });
  EXPECT_EQ(watcher->watchedFolderCount(), 0u);

  // The folder is back: the tree is watched again from the root.
  expectOneReport([&] {
    fs::remove(root);
    fs::create_directories(root / "again" / "inner");
  });
  EXPECT_EQ(watcher->watchedFolderCount(), 3u);
  expectOneReport([&] { writeFile(root / "again" / "inner" / "file", "x"); });
  expectNoReport([&] { writeFile(dir.path() / "a neighbour", "x"); });
}

TEST_F(FolderWatcherTest, NamesThatAreNotUTF8) {
  const std::string latin1 = "caf\xe9", raw = "\xff\xfe name";
  fs::create_directories(root / latin1 / raw);
  auto watcher = watch(root);
  ASSERT_NE(watcher, nullptr);
  EXPECT_EQ(watcher->watchedFolderCount(), 3u);
  expectOneReport([&] { writeFile(root / latin1 / raw / "file", "x"); });
  expectOneReport([&] { fs::create_directories(root / latin1 / "na\xefve" / "\x80"); });
  EXPECT_EQ(watcher->watchedFolderCount(), 5u);
  expectOneReport([&] { fs::rename(root / latin1, root / "caf\xe8"); });
  expectOneReport([&] { fs::create_directory(root / "caf\xe8" / raw / "\xc0\xc1"); });
  EXPECT_EQ(watcher->watchedFolderCount(), 6u);
  expectOneReport([&] { writeFile(root / "caf\xe8" / raw / "\xc0\xc1" / "file", "x"); });
}

TEST_F(FolderWatcherTest, AnOverflowedQueueIsAChangeAndFoldersMadeMeanwhileAreWatched) {
  const int queueLimit = readProcNumber("/proc/sys/fs/inotify/max_queued_events");
  if (queueLimit <= 0 || queueLimit > 100000) GTEST_SKIP() << "the event queue holds " << queueLimit;
  auto watcher = watch(root);
  ASSERT_NE(watcher, nullptr);
  expectOneReport([&] {
    // Two events a write (modified, closed after writing) fill the queue; the folders' events are lost.
    const std::string file = (root / "file").string();
    for (int i = 0; i < queueLimit / 2 + 100; ++i) {
      const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
      ASSERT_GE(fd, 0);
      ASSERT_EQ(::write(fd, "x", 1), 1);
      ::close(fd);
    }
    fs::create_directories(root / "late" / "inner");
  });
  EXPECT_EQ(watcher->watchedFolderCount(), 3u);
  expectOneReport([&] { writeFile(root / "late" / "inner" / "file", "x"); });
}

// The program's own data folder inside a watched tree (someone watches their home folder): what the program
// writes there must not report, or every rescan would start the next one.
TEST_F(FolderWatcherTest, IgnoredFoldersAreNeitherWatchedNorReported) {
  const fs::path data = root / ".local" / "share" / "TVRL Orrelin";
  fs::create_directories(data / "Thumbnails" / "7");
  fs::create_directories(root / "Music");
  const fs::path later = root / "Later Data";                // Ignored before it exists.
  const fs::path journal = root / "Music" / "c.sqlite-wal";  // A file, ignored in a folder that is not.
  // The tree is watched through a link, the ignored folders named by their real paths.
  fs::create_directory_symlink(root, dir.path() / "home link");
  auto watcher = FolderWatcher::create(dir.path() / "home link", [this] { ++reports; },
                                       {data, data / "Thumbnails", later, journal, dir.path() / "elsewhere"});
  ASSERT_NE(watcher, nullptr);
  EXPECT_EQ(watcher->watchedFolderCount(), 4u);  // The root, .local, share and Music.

  const std::vector<std::pair<const char*, std::function<void()>>> own = {
      {"database written", [&] { writeFile(data / "Catalogs.sqlite-wal", "pages"); }},
      {"thumbnail written", [&] { writeFile(data / "Thumbnails" / "7" / "12.jpg", "jpeg"); }},
      {"folder made inside", [&] { fs::create_directories(data / "Backups" / "old"); }},
      {"ignored folder appears", [&] { fs::create_directory(later); }},
      {"written in the late one", [&] { writeFile(later / "x", "x"); }},
      {"ignored folder's mode changed", [&] { fs::permissions(data, fs::perms::owner_all); }},
      {"ignored folder removed", [&] { fs::remove_all(later); }},
      {"ignored file written", [&] { writeFile(journal, "frames"); }},
      {"ignored file removed", [&] { fs::remove(journal); }},
  };
  for (const auto& [what, change] : own) {
    SCOPED_TRACE(what);
    expectNoReport(change);
  }
  EXPECT_EQ(watcher->watchedFolderCount(), 4u);
  expectOneReport([&] { writeFile(root / "Music" / "new.mp3", "x"); });
  expectOneReport([&] { writeFile(data.parent_path() / "other app.txt", "x"); });
  // A folder of that name elsewhere in the tree is an ordinary folder.
  expectOneReport([&] { fs::create_directories(root / "Music" / "TVRL Orrelin"); });
  expectOneReport([&] { writeFile(root / "Music" / "TVRL Orrelin" / "x", "x"); });

  // A tree that lies inside an ignored folder is all the program's own: it never reports.
  auto inside = FolderWatcher::create(data / "Thumbnails", [this] { ++reports; }, {data});
  ASSERT_NE(inside, nullptr);
  watcher.reset();
  expectNoReport([&] { writeFile(data / "Thumbnails" / "7" / "13.jpg", "jpeg"); });
}

// At the per-user watch limit, the folders watched so far stay watched. The limit is lowered in a user
// namespace of a child process of its own, so nothing else on the machine feels it.
TEST_F(FolderWatcherTest, TheWatchLimitKeepsWhatIsWatched) {
  for (int i = 0; i < 20; ++i) fs::create_directories(root / ("folder " + std::to_string(i)) / "sub");
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const std::string map = "0 " + std::to_string(getuid()) + " 1";
    if (unshare(CLONE_NEWUSER) != 0) _exit(77);
    std::ofstream(std::string("/proc/self/uid_map")) << map;
    std::ofstream limit("/proc/sys/user/max_inotify_watches");
    if (!(limit << 10 << std::flush)) _exit(77);
    auto watcher = FolderWatcher::create(root, [] {});
    // Ten watches: the root's parent, the root and eight folders of the tree.
    const bool ok = watcher != nullptr && watcher->watchLimitReached() && watcher->watchedFolderCount() == 9;
    _exit(ok ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 77) GTEST_SKIP() << "no user namespace with its own watch limit here";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace orrelin
