// The scan engine over a real tree and a real catalog database, driven through the main thread's event
// loop as the interface drives it.
#include "scan/qt/scan_engine.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>
#include <vector>

#include "core/app_paths.h"
#include "store/catalog_db.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;

// Runs the main thread's event loop until `done` holds or `ms` milliseconds pass; returns `done()`.
bool waitUntil(const std::function<bool()>& done, int ms = 20000) {
  QElapsedTimer timer;
  timer.start();
  while (!done() && timer.elapsed() < ms) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return done();
}

// Keeps the event loop running for `ms` milliseconds.
void spin(int ms) {
  waitUntil([] { return false; }, ms);
}

// Every published field at one moment, to see that something did not change.
struct Snapshot {
  bool isRunning, isPaused, expanded;
  QString phase, currentPath, catalogName;
  qint64 items, bytes, added, changed, removed;
  QDateTime startedAt;
  std::optional<int64_t> catalogID;
  bool operator==(const Snapshot&) const = default;

  explicit Snapshot(const ScanEngine& e)
      : isRunning(e.isRunning()),
        isPaused(e.isPaused()),
        expanded(e.expanded()),
        phase(e.phase()),
        currentPath(e.currentPath()),
        catalogName(e.catalogName()),
        items(e.items()),
        bytes(e.bytes()),
        added(e.added()),
        changed(e.changed()),
        removed(e.removed()),
        startedAt(e.startedAt()),
        catalogID(e.catalogID()) {}
};

class ScanEngineTest : public ::testing::Test {
 protected:
  ScanEngineTest() {
    env.set("XDG_DATA_HOME", (dir.path() / "data").string());
    env.set("XDG_CONFIG_HOME", (dir.path() / "config").string());
  }

  // A tree of `folders` folders of `perFolder` files of `bytes` bytes each.
  void makeTree(int folders, int perFolder, size_t bytes = 10) {
    for (int f = 0; f < folders; ++f) {
      for (int i = 0; i < perFolder; ++i) {
        testing::writeFile(tree / ("folder " + std::to_string(f)) / ("file " + std::to_string(i) + ".txt"),
                           std::string(bytes, static_cast<char>('a' + i % 26)));
      }
    }
    entries = folders * (perFolder + 1);
  }

  // Hooks that record what the engine asks of the application state.
  ScanEngine::ModelHooks hooks() {
    return {[this] {
              ++reloads;
              onMainThread &= QThread::currentThread() == qApp->thread();
              if (onReload) onReload();
            },
            [this](const ScanResult& result, bool quiet) {
              results.push_back(result);
              quietFlags.push_back(quiet);
              onMainThread &= QThread::currentThread() == qApp->thread();
            }};
  }

  static ScanOptions plain() {
    ScanOptions options;
    options.metadata = false;
    options.thumbnails = false;
    return options;
  }

  // Checksums on: every file is opened and read, which keeps the worker busy for a while on a tree of a
  // few thousand files, long after its first report has reached the main thread.
  static ScanOptions slow() {
    ScanOptions options = plain();
    options.hashes = true;
    return options;
  }

  int64_t rowCount(int64_t catalogID) {
    CatalogDB store(AppPaths::database().string());
    return store.db().scalarInt("SELECT count(*) FROM files WHERE catalog_id=?", {catalogID});
  }

  bool finished(size_t count = 1) const { return results.size() >= count; }

  testing::TempDir dir;
  testing::ScopedEnv env;
  fs::path tree = dir.path() / "Drive";
  int64_t entries = 0;

  ScanEngine engine;
  int reloads = 0;
  std::function<void()> onReload;
  std::vector<ScanResult> results;
  std::vector<bool> quietFlags;
  bool onMainThread = true;
};

TEST_F(ScanEngineTest, NewCatalogReportsOnTheMainThreadAndReachesTheModel) {
  makeTree(6, 50);
  std::vector<qint64> itemsSeen;
  QObject::connect(&engine, &ScanEngine::itemsChanged, [&] {
    itemsSeen.push_back(engine.items());
    onMainThread &= QThread::currentThread() == qApp->thread();
  });
  onReload = [&] {
    // The catalog already exists in the database when the model is told to reload.
    ASSERT_TRUE(engine.catalogID().has_value());
    EXPECT_EQ(CatalogDB(AppPaths::database().string()).catalog(*engine.catalogID())->name, "Holiday Drive");
  };

  EXPECT_FALSE(engine.isRunning());
  engine.start(tree, std::nullopt, "Holiday Drive", std::nullopt, plain(), hooks(), /*quiet=*/false);
  // Published at once, before the worker has reported anything.
  EXPECT_TRUE(engine.isRunning());
  EXPECT_FALSE(engine.isPaused());
  EXPECT_EQ(engine.phase(), "Preparing");
  EXPECT_EQ(engine.currentPath(), QString::fromStdString(tree.string()));
  EXPECT_EQ(engine.catalogName(), "Holiday Drive");
  EXPECT_TRUE(engine.expanded());
  EXPECT_FALSE(engine.catalogID().has_value());
  EXPECT_LT(engine.elapsed(), 5.0);

  ASSERT_TRUE(waitUntil([&] { return finished(); }));
  EXPECT_TRUE(onMainThread);
  EXPECT_EQ(reloads, 1);  // Once per scan, however many reports carried the id.
  const ScanResult& result = results.front();
  EXPECT_EQ(quietFlags.front(), false);
  EXPECT_EQ(result.error, std::nullopt);
  EXPECT_FALSE(result.cancelled);
  EXPECT_EQ(result.addedCount, entries);
  EXPECT_EQ(rowCount(result.catalogID), entries);

  // The run is over, the panel still reads the last counters.
  EXPECT_FALSE(engine.isRunning());
  EXPECT_FALSE(engine.catalogID().has_value());
  EXPECT_EQ(engine.phase(), "Done");
  EXPECT_EQ(engine.items(), entries);
  EXPECT_EQ(engine.added(), entries);
  EXPECT_EQ(engine.bytes(), 6 * 50 * 10);
  EXPECT_EQ(engine.currentPath(), "");
  ASSERT_FALSE(itemsSeen.empty());
  EXPECT_TRUE(std::is_sorted(itemsSeen.begin(), itemsSeen.end()));
  EXPECT_GE(engine.elapsed(), 0.0);
}

TEST_F(ScanEngineTest, QuietRescanRunsFoldedAndKnowsItsCatalog) {
  makeTree(2, 10);
  engine.start(tree, std::nullopt, "Archive", std::nullopt, plain(), hooks(), false);
  ASSERT_TRUE(waitUntil([&] { return finished(); }));
  int64_t id = results[0].catalogID;
  engine.setExpanded(false);
  engine.setExpanded(true);

  testing::writeFile(tree / "folder 0" / "new.txt", "new");
  fs::remove(tree / "folder 1" / "file 3.txt");
  engine.start(tree, id, "Archive", std::nullopt, plain(), hooks(), /*quiet=*/true);
  EXPECT_EQ(engine.phase(), "Auto-updating");
  EXPECT_FALSE(engine.expanded());
  EXPECT_EQ(engine.catalogID(), id);
  EXPECT_EQ(engine.items(), 0);  // Counters start afresh.
  ASSERT_TRUE(waitUntil([&] { return finished(2); }));
  EXPECT_EQ(reloads, 1);  // Only the new catalog's first report reloads.
  EXPECT_EQ(quietFlags[1], true);
  EXPECT_TRUE(results[1].isRescan);
  EXPECT_EQ(results[1].addedCount, 1);
  EXPECT_EQ(results[1].removedCount, 1);
  EXPECT_EQ(engine.added(), 1);
  EXPECT_EQ(engine.removed(), 1);
  EXPECT_NE(results[0].id, results[1].id);
}

TEST_F(ScanEngineTest, PausedScanStandsStillAndResumesToTheEnd) {
  makeTree(20, 100, 100);
  onReload = [&] { engine.togglePause(); };
  engine.start(tree, std::nullopt, "Paused", std::nullopt, slow(), hooks(), false);
  ASSERT_TRUE(waitUntil([&] { return engine.isPaused(); }));

  // Paused: no report lands, and the rows written so far are committed for readers to see.
  spin(300);
  qint64 items = engine.items();
  int64_t id = *engine.catalogID();
  int64_t committed = rowCount(id);
  spin(600);
  EXPECT_EQ(engine.items(), items);
  EXPECT_EQ(rowCount(id), committed);
  EXPECT_LT(committed, entries);
  EXPECT_TRUE(engine.isRunning());

  engine.togglePause();
  EXPECT_FALSE(engine.isPaused());
  EXPECT_EQ(engine.phase(), "Scanning");
  ASSERT_TRUE(waitUntil([&] { return finished(); }));
  EXPECT_FALSE(results[0].cancelled);
  EXPECT_EQ(results[0].addedCount, entries);
  EXPECT_EQ(rowCount(id), entries);
  EXPECT_EQ(engine.phase(), "Done");
}

TEST_F(ScanEngineTest, CancelWhilePausedKeepsThePartialCatalog) {
  makeTree(20, 100, 100);
  onReload = [&] { engine.togglePause(); };
  engine.start(tree, std::nullopt, "Cancelled", std::nullopt, slow(), hooks(), false);
  ASSERT_TRUE(waitUntil([&] { return engine.isPaused(); }));
  spin(300);

  engine.cancel();
  EXPECT_EQ(engine.phase(), "Cancelling");
  EXPECT_TRUE(engine.isPaused());  // Until the scan has ended.
  // The worker looks at its flags every 200 milliseconds while paused.
  ASSERT_TRUE(waitUntil([&] { return finished(); }, 2000));
  EXPECT_FALSE(engine.isPaused());
  EXPECT_FALSE(engine.isRunning());
  const ScanResult& result = results[0];
  EXPECT_TRUE(result.cancelled);
  EXPECT_EQ(result.error, std::nullopt);
  int64_t kept = rowCount(result.catalogID);
  EXPECT_GT(kept, 0);
  EXPECT_LT(kept, entries);
  EXPECT_TRUE(CatalogDB(AppPaths::database().string()).catalog(result.catalogID).has_value());

  // The flags of that scan are gone with it: the next scan runs to the end.
  onReload = nullptr;
  engine.start(tree, result.catalogID, "Cancelled", std::nullopt, plain(), hooks(), false);
  ASSERT_TRUE(waitUntil([&] { return finished(2); }));
  EXPECT_FALSE(results[1].cancelled);
  EXPECT_EQ(rowCount(result.catalogID), entries);
}

TEST_F(ScanEngineTest, StartWhileRunningChangesNothing) {
  makeTree(20, 100, 100);
  onReload = [&] { engine.togglePause(); };
  engine.start(tree, std::nullopt, "First", std::nullopt, slow(), hooks(), false);
  ASSERT_TRUE(waitUntil([&] { return engine.isPaused(); }));

  Snapshot before(engine);
  int emitted = 0;
  for (auto signal :
       {&ScanEngine::isRunningChanged, &ScanEngine::isPausedChanged, &ScanEngine::phaseChanged,
        &ScanEngine::itemsChanged, &ScanEngine::currentPathChanged, &ScanEngine::catalogNameChanged,
        &ScanEngine::startedAtChanged, &ScanEngine::expandedChanged}) {
    QObject::connect(&engine, signal, [&] { ++emitted; });
  }
  fs::create_directories(dir.path() / "Other");
  engine.start(dir.path() / "Other", std::nullopt, "Second", std::nullopt, plain(), hooks(), /*quiet=*/true);
  EXPECT_TRUE(Snapshot(engine) == before);
  EXPECT_EQ(emitted, 0);

  engine.togglePause();
  ASSERT_TRUE(waitUntil([&] { return finished(); }));
  spin(300);
  EXPECT_EQ(results.size(), 1u);
  EXPECT_EQ(results[0].catalogName, "First");
  EXPECT_EQ(CatalogDB(AppPaths::database().string()).db().scalarInt("SELECT count(*) FROM catalogs"), 1);
}

TEST_F(ScanEngineTest, ControlsWithNothingRunningOnlyFlipTheirFlags) {
  engine.togglePause();
  EXPECT_TRUE(engine.isPaused());
  EXPECT_EQ(engine.phase(), "Paused");
  engine.cancel();
  EXPECT_EQ(engine.phase(), "Cancelling");
  EXPECT_FALSE(engine.isRunning());

  // A fresh start clears both, and the old flags do not reach the new scan.
  makeTree(1, 5);
  engine.start(tree, std::nullopt, "Fresh", std::nullopt, plain(), hooks(), false);
  EXPECT_FALSE(engine.isPaused());
  ASSERT_TRUE(waitUntil([&] { return finished(); }));
  EXPECT_FALSE(results[0].cancelled);
  EXPECT_EQ(results[0].addedCount, entries);
}

TEST_F(ScanEngineTest, UnreadableRootEndsWithTheWorkersError) {
  engine.start(dir.path() / "no such folder", std::nullopt, "Missing", std::nullopt, plain(), hooks(), false);
  ASSERT_TRUE(waitUntil([&] { return finished(); }));
  ASSERT_TRUE(results[0].error.has_value());
  EXPECT_FALSE(results[0].error->empty());
  EXPECT_EQ(results[0].catalogName, "Missing");
  EXPECT_FALSE(engine.isRunning());
  EXPECT_EQ(reloads, 0);
}

TEST_F(ScanEngineTest, EngineGoneWhileScanningDropsLateReports) {
  makeTree(20, 100, 100);
  auto doomed = std::make_unique<ScanEngine>();
  int finishedCalls = 0;
  ScanEngine::ModelHooks model{[&] { doomed->togglePause(); },
                               [&](const ScanResult&, bool) { ++finishedCalls; }};
  doomed->start(tree, std::nullopt, "Doomed", std::nullopt, slow(), model, false);
  ASSERT_TRUE(waitUntil([&] { return doomed->isPaused(); }));
  doomed.reset();  // Cancels the scan; its result has nowhere to go.
  spin(800);
  EXPECT_EQ(finishedCalls, 0);
  // The cancelled worker has closed its transaction: the database is free for a new scan.
  engine.start(tree, std::nullopt, "After", std::nullopt, plain(), hooks(), false);
  ASSERT_TRUE(waitUntil([&] { return finished(); }));
  EXPECT_EQ(results[0].error, std::nullopt);
  EXPECT_EQ(results[0].addedCount, entries);
}

}  // namespace
}  // namespace orrelin
