// Library statistics on an empty and on a full catalog database.
#include "search/library_stats.h"

#include <gtest/gtest.h>

#include "core/date.h"
#include "search/library_builder.h"
#include "store/catalog_db.h"
#include "store/fmt.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using testing::Entry;
using testing::LibraryBuilder;
using testing::TempDir;

Date utc(const char* iso) { return *Fmt::parseIso(iso); }

class StatisticsTest : public ::testing::Test {
 protected:
  TempDir dir;
  CatalogDB store{dir.file("Catalogs.sqlite")};
  LibraryBuilder lib{store};
};

TEST_F(StatisticsTest, AnEmptyLibraryGivesZerosAndEmptyLists) {
  EXPECT_EQ(store.stats(), LibraryStats{});
  // Catalogs without files count, and nothing else does.
  lib.addCatalog("Blank");
  lib.finish();
  LibraryStats s = store.stats();
  EXPECT_EQ(s.catalogs, 1);
  EXPECT_EQ(s.files + s.folders + s.bytes, 0);
  EXPECT_TRUE(s.byKind.empty() && s.byYear.empty() && s.topExtensions.empty() && s.largest.empty());
}

TEST_F(StatisticsTest, TotalsComeFromTheStoredCountersOfTheCatalogs) {
  int64_t a = lib.addCatalog("A");
  lib.file(a, "x/one.txt", 10);
  lib.file(a, "x/y/two.txt", 20);
  lib.finish();
  int64_t b = lib.addCatalog("B");
  lib.file(b, "three.txt", 30);  // Not rolled up yet: B's counters are still zero.
  LibraryStats s = store.stats();
  EXPECT_EQ(s.catalogs, 2);
  EXPECT_EQ(s.files, 2);
  EXPECT_EQ(s.folders, 2);
  EXPECT_EQ(s.bytes, 30);
  // The splits read the files themselves, so B's file is in them; folders are in neither.
  ASSERT_EQ(s.byKind.size(), 1u);
  EXPECT_EQ(s.byKind[0], (KindStat{"Other", 3, 60}));
}

TEST_F(StatisticsTest, KindsYearsAndExtensionsOfAFullLibrary) {
  int64_t a = lib.addCatalog("A");
  lib.add(a, {"v/film.mkv", 900, "", utc("2020-06-01T12:00:00Z"), false, "Video"});
  lib.add(a, {"v/clip.MKV", 100, "", utc("2020-07-01T12:00:00Z"), false, "Video"});
  lib.add(a, {"p/a.jpg", 50, "", utc("2021-01-01T00:00:00Z"), false, "Image"});
  lib.add(a, {"p/b.jpg", 50, "", std::nullopt, false, "Image"});                  // No date: in no year.
  lib.add(a, {"p/c.jpg", 50, "", utc("2023-12-31T15:30:00Z"), false, "Image"});   // 00:30 in Tokyo.
  lib.add(a, {"README", 5, "", utc("2021-03-01T00:00:00Z"), false, "Document"});  // No extension.
  lib.finish();
  LibraryStats s = store.stats();
  EXPECT_EQ(s.byKind, (std::vector<KindStat>{{"Video", 2, 1000}, {"Image", 3, 150}, {"Document", 1, 5}}));
  // Years in UTC, oldest first; the folders' dates do not count.
  EXPECT_EQ(s.byYear, (std::vector<YearStat>{{"2020", 2, 1000}, {"2021", 2, 55}, {"2023", 1, 50}}));
  // "mkv" and "MKV" are grouped apart and both shown in upper case.
  ASSERT_EQ(s.topExtensions.size(), 3u);
  EXPECT_EQ(s.topExtensions[0], (ExtStat{"JPG", 3, 150}));
  std::vector<std::string> rest = {s.topExtensions[1].ext, s.topExtensions[2].ext};
  EXPECT_EQ(rest, (std::vector<std::string>{"MKV", "MKV"}));
}

TEST_F(StatisticsTest, ListsAreCutToTheirNewestOrLargestRows) {
  int64_t a = lib.addCatalog("A");
  // 30 files over 16 years (2001…2016) with 14 extensions; sizes 1…30.
  for (int i = 1; i <= 30; ++i) {
    int year = 2001 + (i - 1) % 16;
    std::string ext = "e" + std::to_string(i % 14);
    lib.file(a, "f" + std::to_string(i) + "." + ext, i, "",
             utc((std::to_string(year) + "-05-05T00:00:00Z").c_str()));
  }
  lib.finish();
  LibraryStats s = store.stats();
  ASSERT_EQ(s.byYear.size(), 14u);
  EXPECT_EQ(s.byYear.front().year, "2003");
  EXPECT_EQ(s.byYear.back().year, "2016");
  EXPECT_EQ(s.topExtensions.size(), 12u);
  ASSERT_EQ(s.largest.size(), 25u);
  EXPECT_EQ(s.largest.front().file.size, 30);
  EXPECT_EQ(s.largest.back().file.size, 6);
  EXPECT_EQ(s.largest.front().catalogName, "A");
  EXPECT_EQ(s.largest.front().file.name, "f30.e2");
}

TEST_F(StatisticsTest, ScanLogNewestFirstWithDeletedCatalogsNamed) {
  int64_t keep = lib.addCatalog("Keep");
  int64_t gone = lib.addCatalog("Gone");
  for (int i = 0; i < 22; ++i)
    store.db().run(
        "INSERT INTO scan_log(catalog_id, at, added, removed, changed, seconds, note) "
        "VALUES(?,?,?,?,?,?,?)",
        {i % 2 ? keep : gone, 1000.0 + i, i, 1, 2, 0.5, "scan " + std::to_string(i)});
  // deleteCatalog removes its own log; a log row that outlived its catalog is kept under "(deleted)".
  store.db().exec("PRAGMA foreign_keys=OFF");
  store.db().run("DELETE FROM catalogs WHERE id=?", {gone});
  LibraryStats s = store.stats();
  ASSERT_EQ(s.log.size(), 20u);
  EXPECT_EQ(s.log[0], (ScanLogEntry{s.log[0].id, keep, "Keep", Date{1021}, 21, 1, 2, 0.5, "scan 21"}));
  EXPECT_EQ(s.log[1].catalogName, "(deleted)");
  EXPECT_EQ(s.log[1].catalogID, gone);
  EXPECT_EQ(s.log[19].at, Date{1002});

  // A row without a time reads as now (and sorts last, as SQLite puts NULL below every number).
  store.db().run("DELETE FROM scan_log");
  store.db().run(
      "INSERT INTO scan_log(catalog_id, at, added, removed, changed, seconds) VALUES(?,NULL,0,0,0,0)",
      {keep});
  Date before = Date::now();
  s = store.stats();
  ASSERT_EQ(s.log.size(), 1u);
  EXPECT_GE(s.log[0].at, before);
}

TEST_F(StatisticsTest, AFailingStatementFailsTheWholeCall) {
  store.db().exec("DROP TABLE scan_log");  // The last of the six statements fails.
  EXPECT_THROW(store.stats(), DBError);
}

}  // namespace
}  // namespace orrelin
