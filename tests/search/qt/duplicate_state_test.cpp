// The duplicates screen's state under a real event loop: settings, the background run, delivery on the
// main thread, the sets opened after a run, and a failing database.
#include "search/qt/duplicate_state.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <memory>
#include <mutex>

#include "search/library_builder.h"
#include "store/catalog_db.h"
#include "support/qt_wait.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using testing::LibraryBuilder;
using testing::spin;
using testing::TempDir;
using testing::waitFor;
using testing::waitUntil;

class DuplicateStateTest : public ::testing::Test {
 protected:
  TempDir dir;
  CatalogDB store{dir.file("Catalogs.sqlite")};
  LibraryBuilder lib{store};
  DuplicateState state;

  void SetUp() override {
    int64_t a = lib.addCatalog("A");
    int64_t b = lib.addCatalog("B");
    // Five sets of two copies each, one per size from 5 MB down to 1 MB, and a small pair.
    for (int i = 1; i <= 5; ++i) {
      std::string name = "f" + std::to_string(i) + ".bin";
      lib.file(a, name, i * 1'000'000);
      lib.file(b, "copy/" + name, i * 1'000'000);
    }
    lib.file(a, "small.txt", 999'999);
    lib.file(b, "small.txt", 999'999);
    lib.finish();
    state.setStore(&store);
  }
};

TEST_F(DuplicateStateTest, DefaultsOfTheScreen) {
  DuplicateState fresh;
  EXPECT_EQ(fresh.mode(), DuplicateMode::nameSize);
  EXPECT_EQ(fresh.modeName(), "Name + Size");
  EXPECT_EQ(fresh.minSizeMB(), 1.0);
  EXPECT_FALSE(fresh.crossOnly());
  EXPECT_TRUE(fresh.catalogIDs().empty());
  EXPECT_TRUE(fresh.groups().empty());
  EXPECT_FALSE(fresh.busy());
  EXPECT_FALSE(fresh.ran());
  EXPECT_EQ(&DuplicateState::shared(), &DuplicateState::shared());
}

TEST_F(DuplicateStateTest, RunDeliversOnTheMainThreadAndOpensTheFirstThreeSets) {
  bool busyDuringRun = false;
  QThread* deliveredOn = nullptr;
  QObject::connect(&state, &DuplicateState::groupsChanged, [&] { deliveredOn = QThread::currentThread(); });
  state.run();
  busyDuringRun = state.busy();
  EXPECT_FALSE(state.ran());  // Nothing is delivered before the event loop runs.
  ASSERT_TRUE(waitFor(&state, &DuplicateState::ranChanged));
  EXPECT_TRUE(busyDuringRun);
  EXPECT_FALSE(state.busy());
  EXPECT_EQ(deliveredOn, QCoreApplication::instance()->thread());
  // The 1 MB minimum admits exactly the five sets; the small pair is under it.
  ASSERT_EQ(state.groupCount(), 5);
  EXPECT_EQ(state.groups()[0].name, "f5.bin");
  EXPECT_EQ(state.wastedBytes(), 15'000'000);
  EXPECT_EQ(state.expanded(),
            (std::set<std::string>{"Name + Size|f5.bin|5000000", "Name + Size|f4.bin|4000000",
                                   "Name + Size|f3.bin|3000000"}));
  state.toggleExpanded("Name + Size|f5.bin|5000000");
  EXPECT_FALSE(state.isExpanded("Name + Size|f5.bin|5000000"));
  state.toggleExpanded("Name + Size|f1.bin|1000000");
  EXPECT_TRUE(state.isExpanded("Name + Size|f1.bin|1000000"));
}

TEST_F(DuplicateStateTest, SettingsReachTheQueryAndANewRunReplacesTheOldResult) {
  state.setMinSizeMB(3.5);
  state.setModeIndex(static_cast<int>(DuplicateMode::sizeOnly));
  EXPECT_EQ(state.modeName(), "Size Only");
  state.run();
  ASSERT_TRUE(waitFor(&state, &DuplicateState::busyChanged));  // Off again: the first run is done.
  ASSERT_EQ(state.groupCount(), 2);
  EXPECT_EQ(state.groups()[1].key, "Size Only||4000000");

  // Only catalog A: no set is left, and fewer than three sets are opened without complaint.
  state.setCatalogIDs({store.catalogs().front().id});
  state.setMinSizeMB(0);
  state.run();
  ASSERT_TRUE(waitFor(&state, &DuplicateState::busyChanged));
  EXPECT_EQ(state.groupCount(), 0);
  EXPECT_TRUE(state.expanded().empty());
  EXPECT_TRUE(state.ran());
}

TEST_F(DuplicateStateTest, ADatabaseErrorLooksLikeNoDuplicatesAndWithoutADatabaseNothingHappens) {
  state.run();
  ASSERT_TRUE(waitFor(&state, &DuplicateState::ranChanged));
  ASSERT_EQ(state.groupCount(), 5);
  store.db().close();
  state.run();
  ASSERT_TRUE(waitFor(&state, &DuplicateState::busyChanged));
  EXPECT_EQ(state.groupCount(), 0);  // The earlier result is gone too.
  EXPECT_EQ(state.wastedBytes(), 0);

  DuplicateState idle;
  idle.run();
  EXPECT_FALSE(idle.busy());
  EXPECT_FALSE(idle.ran());
}

TEST_F(DuplicateStateTest, ARestoreWhileARunWaitsKeepsTheOldConnectionAndDropsItsResult) {
  // The old database, shared as the application holds it, with one set of its own.
  TempDir oldDir;
  auto old = std::make_shared<CatalogDB>(oldDir.file("Catalogs.sqlite"));
  LibraryBuilder oldLib(*old);
  int64_t only = oldLib.addCatalog("Old");
  oldLib.file(only, "x/old.bin", 2'000'000);
  oldLib.file(only, "y/old.bin", 2'000'000);
  oldLib.finish();
  std::weak_ptr<CatalogDB> watch = old;
  state.setStore(old);
  state.run();
  ASSERT_TRUE(waitFor(&state, &DuplicateState::ranChanged));
  ASSERT_EQ(state.groupCount(), 1);

  {
    // The next run waits for the connection, which this thread holds, while a restore hands the state
    // another database and the application lets go of the old one.
    std::recursive_mutex& lock = old->db().mutex();
    std::unique_lock<std::recursive_mutex> hold(lock);
    state.run();
    EXPECT_TRUE(state.busy());
    QThread::msleep(50);
    auto replacement = std::shared_ptr<CatalogDB>(&store, [](CatalogDB*) {});
    state.setStore(replacement);
    old.reset();
    EXPECT_FALSE(watch.expired()) << "the waiting run still holds the old connection";
    // The old result is gone with its database, and nothing runs on the new one.
    EXPECT_EQ(state.groupCount(), 0);
    EXPECT_FALSE(state.ran());
    EXPECT_FALSE(state.busy());
  }
  // The late result is dropped, and the old connection closes once the run is done with it.
  ASSERT_TRUE(waitUntil([&] { return watch.expired(); }));
  spin(50);
  EXPECT_EQ(state.groupCount(), 0);
  EXPECT_FALSE(state.ran());

  // The new database answers the next run.
  state.run();
  ASSERT_TRUE(waitFor(&state, &DuplicateState::ranChanged));
  EXPECT_EQ(state.groupCount(), 5);
}

TEST(DuplicateStateDeathTest, AMinimumBeyondSixtyFourBitsStopsTheProgram) {
  TempDir dir;
  CatalogDB store(dir.file("Catalogs.sqlite"));
  DuplicateState state;
  state.setStore(&store);
  state.setMinSizeMB(1e20);
  EXPECT_DEATH(state.run(), "overflow");
}

}  // namespace
}  // namespace orrelin
