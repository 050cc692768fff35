// Auto-update end to end: real trees watched by the real watcher, the debounce on a shortened clock, and
// quiet rescans counted as they start.
#include "app/qt/app_model.h"

#include "app/watched_catalogs.h"
#include "app_fixture.h"

namespace orrelin {
namespace {

using testing::AppModelTest;
using testing::spin;
using testing::waitUntil;
using testing::writeFile;
namespace fs = std::filesystem;

// At this scale the watcher's latency is 150 ms and the quiet spell 300 ms.
constexpr double kScale = 0.05;
constexpr int kSettle = 1500;  // Well past latency and debounce together.

class AutoUpdateTest : public AppModelTest {
 protected:
  void SetUp() override { TestTiming::setTimeScaleForTesting(kScale); }

  // Counts the scans that start from now on, with whether each was quiet, and keeps every toast.
  void countScans() {
    model->dismissScanResult();
    QObject::connect(model->scanner(), &ScanEngine::isRunningChanged, model.get(), [this] {
      if (!model->scanner()->isRunning()) return;
      ++scans;
      // The engine fills in the scan's fields after announcing that it runs: read them once it is done.
      QTimer::singleShot(0, model.get(), [this] {
        quietScans += model->scanner()->phase() == "Auto-updating";
        scanned.push_back(model->scanner()->catalogName().toStdString());
      });
    });
    QObject::connect(model.get(), &AppModel::toastChanged, model.get(), [this] {
      if (model->toast()) toasts.push_back(model->toast()->toStdString());
    });
  }
  bool idle() { return !model->scanner()->isRunning(); }

  int scans = 0;
  int quietScans = 0;
  std::vector<std::string> scanned;
  std::vector<std::string> toasts;
};

TEST_F(AutoUpdateTest, ToggleWatchSaysWhatHappensAndPersists) {
  makeModel();
  const int64_t online = scan(makeTree("Online", {"a"}), "Online");
  const int64_t offline = insert("Offline", (m_temp.path() / "unplugged").string());
  model->toggleWatch(get(online));
  EXPECT_EQ(toast(), "Watching \u201COnline\u201D \u2014 changes update the catalog automatically");
  EXPECT_EQ(model->watcherIDs(), std::set<int64_t>{online});
  model->toggleWatch(get(offline));
  EXPECT_EQ(toast(), "\u201COffline\u201D will auto-update whenever its drive is connected");
  EXPECT_EQ(model->watcherIDs(), std::set<int64_t>{online});
  EXPECT_EQ(WatchedCatalogs::read(), (std::set<int64_t>{online, offline}));
  EXPECT_TRUE(model->isWatched(offline));
  model->toggleWatch(get(online));
  EXPECT_EQ(toast(), "Auto-update turned off for \u201COnline\u201D");
  EXPECT_TRUE(model->watcherIDs().empty());
  // Switching on started no scan, and the setting is read back by the next start.
  EXPECT_TRUE(idle());
  EXPECT_EQ(makeModel().watchedIDs(), std::set<int64_t>{offline});
}

TEST_F(AutoUpdateTest, ABurstOfChangesGivesOneQuietRescan) {
  makeModel();
  const fs::path root = makeTree("Burst", {"old.txt"});
  const int64_t id = scan(root, "Burst");
  model->toggleWatch(get(id));
  countScans();
  for (int i = 0; i < 8; ++i) {
    writeFile(root / ("new" + std::to_string(i) + ".txt"), "x");
    spin(25);
  }
  fs::create_directory(root / "sub");
  ASSERT_TRUE(waitUntil([&] { return scans == 1 && idle(); }));
  spin(kSettle);
  EXPECT_EQ(scans, 1);
  EXPECT_EQ(quietScans, 1);
  EXPECT_EQ(get(id).fileCount, 9);
  EXPECT_EQ(toasts, std::vector<std::string>{"Auto-updated \u201CBurst\u201D: +9 ~0 \u22120"});
  EXPECT_FALSE(model->scanResult().has_value());

  // A change in a folder made after the watch began is seen too.
  writeFile(root / "sub/deep.txt", "y");
  ASSERT_TRUE(waitUntil([&] { return scans == 2 && idle(); }));
  EXPECT_EQ(get(id).fileCount, 10);
}

TEST_F(AutoUpdateTest, TwoCatalogsChangedTogetherAreRescannedOneAfterTheOther) {
  makeModel();
  const fs::path a = makeTree("Left", {"1"});
  const fs::path b = makeTree("Right", {"1"});
  const int64_t left = scan(a, "Left");
  const int64_t right = scan(b, "Right");
  model->toggleWatch(get(left));
  model->toggleWatch(get(right));
  countScans();
  writeFile(a / "2", "x");
  writeFile(b / "2", "x");
  writeFile(b / "3", "x");
  ASSERT_TRUE(waitUntil([&] { return scans == 2 && idle(); }));
  spin(kSettle);
  EXPECT_EQ(scans, 2);
  EXPECT_EQ(quietScans, 2);
  EXPECT_EQ((std::set<std::string>(scanned.begin(), scanned.end())),
            (std::set<std::string>{"Left", "Right"}));
  EXPECT_EQ(toasts.size(), 2u);
  EXPECT_EQ(get(left).fileCount, 2);
  EXPECT_EQ(get(right).fileCount, 3);
  EXPECT_TRUE(model->pendingAuto().empty());
}

TEST_F(AutoUpdateTest, APendingCatalogUnpluggedBeforeTheWaitEndsIsDroppedAndTheOtherWaits) {
  makeModel();
  const fs::path a = makeTree("First", {"1"});
  const fs::path b = makeTree("Second", {"1"});
  const int64_t first = scan(a, "First");
  const int64_t second = scan(b, "Second");
  ASSERT_LT(first, second);  // The first id is served first.
  model->toggleWatch(get(first));
  model->toggleWatch(get(second));
  countScans();
  // A quiet spell longer than the test needs, so both ids are pending when the drive goes.
  TestTiming::setTimeScaleForTesting(0.3);
  writeFile(a / "2", "x");
  writeFile(b / "2", "x");
  ASSERT_TRUE(waitUntil([&] { return model->pendingAuto().size() == 2; }));
  fs::rename(a, a.string() + " unplugged");
  model->refreshOnline();
  EXPECT_EQ(model->watcherIDs(), std::set<int64_t>{second});
  ASSERT_TRUE(waitUntil([&] { return model->pendingAuto() == std::set<int64_t>{second}; }));
  spin(500);
  EXPECT_EQ(scans, 0);
  EXPECT_EQ(model->pendingAuto(), std::set<int64_t>{second});

  // The next trigger serves the id that waited.
  TestTiming::setTimeScaleForTesting(kScale);
  writeFile(b / "3", "x");
  ASSERT_TRUE(waitUntil([&] { return scans == 1 && idle(); }));
  EXPECT_EQ(scanned, std::vector<std::string>{"Second"});
  EXPECT_EQ(get(second).fileCount, 3);
}

TEST_F(AutoUpdateTest, DrivesConnectedAtStartAreWatchedButOnlyALaterArrivalIsRescanned) {
  makeModel();
  const fs::path root = makeTree("Resident", {"1"});
  const int64_t id = scan(root, "Resident");
  UserDefaults::set(WatchedCatalogs::kDefaultsKey, nlohmann::json::array({id}));

  makeModel();
  countScans();
  EXPECT_EQ(model->watcherIDs(), std::set<int64_t>{id});
  spin(kSettle);
  EXPECT_EQ(scans, 0);
  EXPECT_TRUE(model->pendingAuto().empty());

  // Unplugged: no watcher, nothing queued. Back again: one quiet rescan after the quiet spell.
  fs::rename(root, root.string() + " away");
  model->refreshOnline();
  EXPECT_TRUE(model->watcherIDs().empty());
  EXPECT_TRUE(model->pendingAuto().empty());
  writeFile(root.string() + " away/2", "changed while away");
  fs::rename(root.string() + " away", root);
  model->refreshOnline();
  EXPECT_EQ(model->pendingAuto(), std::set<int64_t>{id});
  EXPECT_EQ(model->watcherIDs(), std::set<int64_t>{id});
  ASSERT_TRUE(waitUntil([&] { return scans == 1 && idle(); }));
  EXPECT_EQ(get(id).fileCount, 2);
  EXPECT_EQ(toasts, std::vector<std::string>{"Auto-updated \u201CResident\u201D: +1 ~0 \u22120"});

  // Deleting a watched catalog stops its watcher.
  answers.push_back(Dialogs::Answer::accept());
  model->confirmDelete(get(id));
  EXPECT_TRUE(model->watcherIDs().empty());
  EXPECT_TRUE(WatchedCatalogs::read().empty());
}

TEST_F(AutoUpdateTest, AChangeDuringAScanIsServedWhenThatScanEnds) {
  makeModel();
  std::vector<std::string> many;
  for (int i = 0; i < 400; ++i) many.push_back("f" + std::to_string(i));
  const fs::path big = makeTree("Big", many);
  const fs::path small = makeTree("Small", {"1"});
  const int64_t bigID = scan(big, "Big");
  const int64_t smallID = scan(small, "Small");
  model->toggleWatch(get(smallID));
  countScans();
  model->rescan(get(bigID));
  ASSERT_FALSE(idle());
  writeFile(small / "2", "x");
  // Whether the change lands during the big scan or just after it, it is served, by one quiet scan.
  ASSERT_TRUE(waitUntil([&] { return scans == 2 && idle(); }));
  spin(kSettle);
  EXPECT_EQ(scans, 2);
  EXPECT_EQ(scanned, (std::vector<std::string>{"Big", "Small"}));
  EXPECT_EQ(get(smallID).fileCount, 2);
}

// Stopping auto-update (the command-line service on Ctrl-C) while a scan runs and another catalog waits:
// the running scan's end starts nothing more, and no later change does either.
TEST_F(AutoUpdateTest, StoppedAutoUpdateStartsNoScanAfterTheRunningOne) {
  makeModel();
  const fs::path big = makeTree("Big", {"1"});
  const fs::path small = makeTree("Small", {"1"});
  const int64_t bigID = scan(big, "Big");
  const int64_t smallID = scan(small, "Small");
  model->toggleWatch(get(smallID));
  countScans();
  model->rescan(get(bigID));
  model->scanner()->togglePause();  // Held until the change waits for it.
  writeFile(small / "2", "x");
  ASSERT_TRUE(waitUntil([&] { return !model->pendingAuto().empty(); }));
  model->stopAutoUpdates();
  EXPECT_TRUE(model->pendingAuto().empty());
  EXPECT_TRUE(model->watcherIDs().empty());
  model->scanner()->togglePause();
  ASSERT_TRUE(waitUntil([&] { return idle(); }));
  writeFile(small / "3", "x");
  model->refreshOnline();
  spin(kSettle);
  EXPECT_EQ(scans, 1);
  EXPECT_TRUE(idle());
  EXPECT_TRUE(model->watcherIDs().empty());
  EXPECT_EQ(get(smallID).fileCount, 1);
}

// A watched folder that holds the program's data folder (here the whole test folder, with the data folder,
// the settings and the drives in it): the quiet rescan's own writes to the database do not start another.
TEST_F(AutoUpdateTest, TheProgramsOwnWritesInAWatchedTreeStartNoRescan) {
  makeModel();
  makeTree("Inside", {"1"});
  ASSERT_TRUE(fs::exists(model->databasePath()));
  const int64_t id = scan(m_temp.path(), "Everything");
  model->toggleWatch(get(id));
  countScans();
  model->rename(get(id), "Everything Renamed");  // A write to the database alone.
  model->backupNow();
  spin(kSettle);
  EXPECT_EQ(scans, 0);
  EXPECT_TRUE(model->pendingAuto().empty());

  writeFile(m_temp.path() / "drives" / "Inside" / "2", "x");
  ASSERT_TRUE(waitUntil([&] { return scans == 1 && idle(); }));
  spin(kSettle);
  EXPECT_EQ(scans, 1);
  EXPECT_TRUE(model->pendingAuto().empty());
  ASSERT_EQ(toasts.size(), 2u);  // The backup's, then the rescan's.
  // The new file, and whatever the backup and the settings added meanwhile.
  EXPECT_TRUE(toasts[1].starts_with("Auto-updated \u201CEverything Renamed\u201D: +")) << toasts[1];
}

// A database kept by path in a folder of its own choosing (the command-line tool's --db): its files are no
// change of a watched tree that holds them, and the trees beside them in that folder are watched as usual.
TEST_F(AutoUpdateTest, ADatabaseKeptInAWatchedFolderIsNoChangeAndItsFolderIsStillWatched) {
  const fs::path tree = makeTree("Tree", {"1"});
  const fs::path folder = tree.parent_path();
  model = std::make_unique<AppModel>(folder / "c.sqlite");
  ASSERT_TRUE(model->hasStore());
  const int64_t all = scan(folder, "All");
  const int64_t part = scan(tree, "Part");
  model->toggleWatch(get(all));
  model->toggleWatch(get(part));
  countScans();
  model->setNotes(get(all), "only the database changes");
  spin(kSettle);
  EXPECT_EQ(scans, 0);

  writeFile(tree / "2", "x");
  ASSERT_TRUE(waitUntil([&] { return scans == 2 && idle(); }));
  spin(kSettle);
  EXPECT_EQ(scans, 2);
  EXPECT_EQ(get(part).fileCount, 2);
}

}  // namespace
}  // namespace orrelin
