// The drive reports on real databases and, for missing files, on real folders: limits, date edges, typed
// inputs, and names that are not UTF-8.
#include "search/drive_reports.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <limits>

#include "core/name_mapping.h"
#include "search/library_builder.h"
#include "store/catalog_db.h"
#include "store/fmt.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using testing::Entry;
using testing::LibraryBuilder;
using testing::TempDir;
namespace fs = std::filesystem;

std::vector<std::string> paths(const std::vector<SearchHit>& hits) {
  std::vector<std::string> out;
  for (const SearchHit& h : hits) out.push_back(h.catalogName + ":" + h.file.path);
  return out;
}

std::vector<std::string> paths(const std::vector<FileRecord>& records) {
  std::vector<std::string> out;
  for (const FileRecord& f : records) out.push_back(f.path);
  return out;
}

class ReportsTest : public ::testing::Test {
 protected:
  TempDir dir;
  CatalogDB store{dir.file("Catalogs.sqlite")};
  LibraryBuilder lib{store};
};

TEST_F(ReportsTest, EmptyFoldersAreThoseStoredWithNoEntriesByCatalogNameAndPath) {
  int64_t zed = lib.addCatalog("Zed");
  int64_t ant = lib.addCatalog("ant");
  lib.folder(zed, "b/empty");
  lib.folder(zed, "a");
  lib.file(zed, "full/x.txt", 1);
  lib.folder(ant, "only/inner");  // "only" holds an empty folder, so it is not empty itself.
  lib.finish();
  // Binary order of names: "Zed" before "ant".
  EXPECT_EQ(paths(store.emptyFolders({})),
            (std::vector<std::string>{"Zed:a", "Zed:b/empty", "ant:only/inner"}));
  EXPECT_EQ(paths(store.emptyFolders({ant})), (std::vector<std::string>{"ant:only/inner"}));
  EXPECT_TRUE(store.emptyFolders({12345}).empty());
}

TEST_F(ReportsTest, EmptyFoldersStopAtFiveThousand) {
  int64_t a = lib.addCatalog("A");
  store.db().transaction([&] {
    for (int i = 0; i < kReportLimit + 3; ++i) lib.folder(a, "d" + std::to_string(10000 + i));
  });
  lib.finish();
  auto hits = store.emptyFolders({});
  ASSERT_EQ(hits.size(), static_cast<size_t>(kReportLimit));
  EXPECT_EQ(hits.back().file.path, "d" + std::to_string(10000 + kReportLimit - 1));
}

TEST_F(ReportsTest, LargeOldFilesHonourSizeAndAStrictCutoff) {
  int64_t a = lib.addCatalog("A");
  int64_t b = lib.addCatalog("B");
  const Date cutoff{1'600'000'000};
  lib.file(a, "old-big.bin", 900, "", Date{cutoff.seconds - 1});
  lib.file(a, "at-cutoff.bin", 800, "", cutoff);
  lib.file(a, "no-date.bin", 700);
  lib.file(a, "old-small.bin", 99, "", Date{0});
  lib.file(b, "new-big.bin", 1000, "", Date{cutoff.seconds + 86400});
  lib.file(b, "exactly-min.bin", 100, "", Date{1});
  lib.finish();

  EXPECT_EQ(paths(store.largeOldFiles(100, cutoff, {})),
            (std::vector<std::string>{"A:old-big.bin", "B:exactly-min.bin"}));
  // No cutoff: every file of the size, dated or not, largest first; folders never.
  EXPECT_EQ(paths(store.largeOldFiles(100, std::nullopt, {})),
            (std::vector<std::string>{"B:new-big.bin", "A:old-big.bin", "A:at-cutoff.bin", "A:no-date.bin",
                                      "B:exactly-min.bin"}));
  EXPECT_EQ(paths(store.largeOldFiles(0, std::nullopt, {b})),
            (std::vector<std::string>{"B:new-big.bin", "B:exactly-min.bin"}));
}

TEST(TypedInputTest, NumbersAsTheSizeFieldsReadThem) {
  struct Case {
    const char* text;
    std::optional<double> value;
  };
  for (const Case& c :
       {Case{"500", 500.0}, Case{"1,5", 1.5}, Case{"1,000", 1.0}, Case{"0.25", 0.25}, Case{"+2", 2.0},
        Case{"-3", -3.0}, Case{"1e3", 1000.0}, Case{"", std::nullopt}, Case{" 5", std::nullopt},
        Case{"5 ", std::nullopt}, Case{"5MB", std::nullopt}, Case{"abc", std::nullopt},
        Case{"+", std::nullopt}, Case{"+-1", std::nullopt}, Case{"1,2,3", std::nullopt}}) {
    EXPECT_EQ(parseTypedNumber(c.text), c.value) << '"' << c.text << '"';
  }
  EXPECT_EQ(largeOldMinimumBytes("500"), 500'000'000);
  EXPECT_EQ(largeOldMinimumBytes("0,5"), 500'000);
  EXPECT_EQ(largeOldMinimumBytes("lots"), 0);
  EXPECT_EQ(largeOldMinimumBytes(""), 0);
  EXPECT_EQ(largeOldMinimumBytes("-1"), -1'000'000);
}

TEST(TypedInputDeathTest, AMinimumBeyondSixtyFourBitsStopsTheProgram) {
  EXPECT_DEATH(largeOldMinimumBytes("1e20"), "overflow");
}

// The local time of `t` as broken-down fields.
std::tm local(Date t) {
  time_t seconds = static_cast<time_t>(t.seconds);
  std::tm out{};
  localtime_r(&seconds, &out);
  return out;
}

Date localDate(int year, int month, int day, int hour) {
  std::tm t{};
  t.tm_year = year - 1900;
  t.tm_mon = month - 1;
  t.tm_mday = day;
  t.tm_hour = hour;
  t.tm_isdst = -1;
  return Date{static_cast<double>(std::mktime(&t))};
}

TEST(CutoffTest, CalendarYearsBackInLocalTime) {
  EXPECT_FALSE(largeOldCutoff(0, Date::now()).has_value());
  Date now = localDate(2024, 7, 15, 9);
  std::tm two = local(*largeOldCutoff(2, now));
  EXPECT_EQ(two.tm_year + 1900, 2022);
  EXPECT_EQ(two.tm_mon + 1, 7);
  EXPECT_EQ(two.tm_mday, 15);
  EXPECT_EQ(two.tm_hour, 9);
  // A leap day steps back to the 28th, not into March.
  EXPECT_EQ(*largeOldCutoff(1, localDate(2024, 2, 29, 12)), localDate(2023, 2, 28, 12));
  EXPECT_EQ(*largeOldCutoff(30, localDate(2024, 1, 1, 0)), localDate(1994, 1, 1, 0));
}

TEST(PaneTextTest, LabelsAndHeaders) {
  EXPECT_EQ(yearsLabel(0), "any time");
  EXPECT_EQ(yearsLabel(1), "1 year");
  EXPECT_EQ(yearsLabel(30), "30 years");
  EXPECT_EQ(emptyFoldersHeader(1234), Fmt::count(1234) + " found");
  EXPECT_EQ(missingHeader(0), "Everything is present");
  EXPECT_EQ(missingHeader(2), "2 missing");
  SearchHit a{{}, "X"}, b{{}, "X"};
  a.file.size = 1'200'000;
  b.file.size = 300'000;
  EXPECT_EQ(largeOldHeader({a, b}), "2 files \u00b7 1.5 MB");
  EXPECT_EQ(largeOldHeader({}), "0 files \u00b7 0 bytes");
}

// A real drive: a folder tree in which some cataloged entries have gone since the scan.
class MissingFilesTest : public ReportsTest {
 protected:
  fs::path root = dir.path() / "drive";
  const std::string latin1 = "caf\xe9.txt";  // Not UTF-8: a name as an old Windows copy leaves it.

  void SetUp() override {
    testing::writeFile(root / "keep.txt", "k");
    testing::writeFile(root / "gone.txt", "g");
    testing::writeFile(root / "sub" / latin1, "c");
    testing::writeFile(root / "sub" / "gone-too.txt", "g");
    fs::create_symlink(root / "keep.txt", root / "good-link");
    fs::create_symlink(root / "vanished-target", root / "dead-link");
    fs::create_directories(root / "emptied");
  }

  // Catalogs `rootPath` with the stored forms of its names, as a scan would.
  int64_t catalogTree(const std::string& name, const std::string& rootPath) {
    int64_t id = lib.addCatalog(name, rootPath);
    fs::path base = NameMapping::diskPath(rootPath);
    for (const auto& entry : fs::recursive_directory_iterator(base)) {
      std::string relative = NameMapping::storedPath(entry.path().lexically_relative(base));
      lib.add(id, {relative, 1, "", std::nullopt, entry.is_directory() && !entry.is_symlink()});
    }
    return id;
  }
};

TEST_F(MissingFilesTest, ListsWhatIsGoneThroughTheRealNamesOnDisk) {
  int64_t id = catalogTree("Drive", NameMapping::storedPath(root));
  std::string stored = "sub/" + NameMapping::fromDisk(latin1);
  ASSERT_NE(stored, "sub/" + latin1);  // The catalog holds the mapped form.
  // A link counts by its target: "dead-link" pointed nowhere from the start.
  EXPECT_EQ(paths(store.missingFiles(*store.catalog(id))), (std::vector<std::string>{"dead-link"}));

  fs::remove(root / "gone.txt");
  fs::remove(root / "sub" / "gone-too.txt");
  fs::remove(root / "emptied");
  EXPECT_EQ(paths(store.missingFiles(*store.catalog(id))),
            (std::vector<std::string>{"dead-link", "emptied", "gone.txt", "sub/gone-too.txt"}));

  fs::remove(root / "sub" / latin1);
  auto missing = store.missingFiles(*store.catalog(id));
  ASSERT_EQ(missing.size(), 5u);
  EXPECT_EQ(missing[3].path, stored);  // Binary path order: "sub/c…" before "sub/g…".
}

TEST_F(MissingFilesTest, ACatalogOfAFolderInsideADriveJoinsItsOwnRoot) {
  // The root given with a trailing slash, as "/" itself would be.
  int64_t id = catalogTree("Sub", NameMapping::storedPath(root / "sub") + "/");
  EXPECT_TRUE(store.missingFiles(*store.catalog(id)).empty());
  fs::rename(root / "sub" / "gone-too.txt", root / "moved.txt");
  EXPECT_EQ(paths(store.missingFiles(*store.catalog(id))), (std::vector<std::string>{"gone-too.txt"}));
}

}  // namespace
}  // namespace orrelin
