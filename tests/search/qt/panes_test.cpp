// The Tools screen's report and comparison panes under a real event loop, on real databases and folders.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <filesystem>

#include "search/library_builder.h"
#include "search/qt/compare_pane.h"
#include "search/qt/report_panes.h"
#include "store/catalog_db.h"
#include "support/qt_wait.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using testing::LibraryBuilder;
using testing::TempDir;
using testing::waitFor;

class PanesTest : public ::testing::Test {
 protected:
  TempDir dir;
  CatalogDB store{dir.file("Catalogs.sqlite")};
  LibraryBuilder lib{store};
};

TEST_F(PanesTest, EmptyFoldersAndLargeOldFilesFromTheirInputs) {
  int64_t a = lib.addCatalog("A");
  int64_t b = lib.addCatalog("B");
  lib.folder(a, "nothing-here");
  lib.folder(b, "nor-here");
  lib.file(a, "huge.iso", 600'000'000, "", Date{0});
  lib.file(a, "recent.iso", 700'000'000, "", Date::now());
  lib.file(b, "undated.bin", 1'000);
  lib.finish();

  EmptyFoldersPane empty;
  empty.find();  // No database: an empty list, but a run all the same.
  EXPECT_TRUE(empty.ran());
  EXPECT_EQ(empty.count(), 0);
  empty.setStore(&store);
  empty.setIdList({b});
  empty.find();
  ASSERT_EQ(empty.count(), 1);
  EXPECT_EQ(empty.hits()[0].file.path, "nor-here");

  LargeOldPane large;
  EXPECT_EQ(large.minMB(), "500");
  EXPECT_EQ(large.years(), 2);
  EXPECT_EQ(large.yearsLabel(), "2 years");
  large.setStore(&store);
  large.buildReport();
  ASSERT_EQ(large.count(), 1);  // 500 MB and two years old: the recent file is too new.
  EXPECT_EQ(large.hits()[0].file.name, "huge.iso");
  // Letters in the size field mean no minimum; 0 years means no date condition, so undated files come too.
  large.setMinMB("plenty");
  large.setYears(0);
  EXPECT_EQ(large.yearsLabel(), "any time");
  large.buildReport();
  EXPECT_EQ(large.count(), 3);
  large.setYears(99);
  EXPECT_EQ(large.years(), 30);
  store.db().close();
  large.buildReport();  // An error empties the list without a word.
  EXPECT_EQ(large.count(), 0);
  EXPECT_TRUE(large.ran());
}

TEST_F(PanesTest, MissingFileCheckOnlineOfflineAndInTheBackground) {
  std::filesystem::path root = dir.path() / "drive";
  testing::writeFile(root / "here.txt", "h");
  int64_t id = lib.addCatalog("Drive", root.string());
  lib.file(id, "here.txt", 1);
  lib.file(id, "gone.txt", 1);

  MissingPane pane;
  pane.setStore(&store);
  pane.checkDrive();  // No catalog chosen: nothing.
  EXPECT_FALSE(pane.busy());
  pane.setCatalogID(id);

  // Offline: the owner is told, and nothing changes.
  qint64 offlineID = 0;
  QObject::connect(&pane, &MissingPane::driveOffline, [&](qint64 catalog) { offlineID = catalog; });
  pane.checkDrive();
  EXPECT_EQ(offlineID, id);
  EXPECT_FALSE(pane.busy());
  EXPECT_FALSE(pane.ran());

  QThread* deliveredOn = nullptr;
  QObject::connect(&pane, &MissingPane::missingChanged, [&] { deliveredOn = QThread::currentThread(); });
  pane.setOnlineIDs({id});
  pane.checkDrive();
  EXPECT_TRUE(pane.busy());
  ASSERT_TRUE(waitFor(&pane, &MissingPane::ranChanged));
  EXPECT_EQ(deliveredOn, QCoreApplication::instance()->thread());
  EXPECT_FALSE(pane.busy());
  ASSERT_EQ(pane.count(), 1);
  EXPECT_EQ(pane.hits()[0].catalogName, "Drive");
  EXPECT_EQ(pane.hits()[0].file.path, "gone.txt");
  EXPECT_EQ(pane.header(), "1 missing");
  EXPECT_TRUE(pane.canUpdate());

  // Going offline later keeps the earlier result on screen.
  pane.setOnlineIDs({});
  pane.checkDrive();
  EXPECT_EQ(pane.count(), 1);

  // The catalog deleted: no check, and no update offered; its rows read with no catalog name.
  store.deleteCatalog(id, std::nullopt);
  pane.setOnlineIDs({id});
  pane.checkDrive();
  EXPECT_FALSE(pane.busy());
  EXPECT_FALSE(pane.canUpdate());
  EXPECT_EQ(pane.hits()[0].catalogName, "");
}

TEST_F(PanesTest, CompareChoosesBComparesAndKeepsItsTab) {
  int64_t zulu = lib.addCatalog("Zulu");
  int64_t alpha = lib.addCatalog("Alpha");
  lib.file(alpha, "x.txt", 1);
  lib.file(zulu, "x.txt", 2);

  ComparePane pane;
  pane.setStore(&store);
  pane.setSelectedCatalog(alpha);
  EXPECT_TRUE(pane.compareDisabled());
  pane.shown();
  EXPECT_EQ(pane.b(), zulu);  // Catalogs by name: Alpha first, but it is the selected one.
  pane.setA(zulu);            // B is chosen already, so it stays.
  EXPECT_EQ(pane.b(), zulu);
  EXPECT_TRUE(pane.compareDisabled());
  pane.setB(std::nullopt);
  pane.setA(alpha);  // Choosing A fills an empty B with the first other catalog.
  EXPECT_EQ(pane.b(), zulu);
  EXPECT_FALSE(pane.compareDisabled());

  pane.setTab(2);
  pane.setTab(-1);  // "Identical" lists nothing and leaves the tab.
  EXPECT_EQ(pane.tab(), 2);
  pane.compare();
  ASSERT_TRUE(pane.hasResult());
  ASSERT_EQ(pane.rows().size(), 1u);
  EXPECT_EQ(pane.rows()[0].catalogName.substr(0, 7), "Alpha: ");

  // A second run with no differences keeps the tab, with an empty list.
  store.db().run("UPDATE files SET size=1");
  pane.compare();
  EXPECT_EQ(pane.tab(), 2);
  EXPECT_TRUE(pane.rows().empty());
  EXPECT_EQ(pane.result()->same, 1);

  store.db().close();
  pane.compare();  // An error leaves no result.
  EXPECT_FALSE(pane.hasResult());
  EXPECT_TRUE(pane.rows().empty());
}

}  // namespace
}  // namespace orrelin
