// Catalog comparison on real databases: matching by path under canonical equivalence, the rules for
// changed and identical files, and the pane's lists and choices.
#include "search/catalog_compare.h"

#include <gtest/gtest.h>

#include "search/library_builder.h"
#include "store/catalog_db.h"
#include "store/fmt.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using testing::LibraryBuilder;
using testing::TempDir;

std::vector<std::string> paths(const std::vector<FileRecord>& records) {
  std::vector<std::string> out;
  for (const FileRecord& f : records) out.push_back(f.path);
  return out;
}

std::vector<std::string> paths(const std::vector<std::pair<FileRecord, FileRecord>>& pairs) {
  std::vector<std::string> out;
  for (const auto& [a, b] : pairs) out.push_back(a.path + "|" + b.path);
  return out;
}

class CompareTest : public ::testing::Test {
 protected:
  TempDir dir;
  CatalogDB store{dir.file("Catalogs.sqlite")};
  LibraryBuilder lib{store};
  int64_t a = lib.addCatalog("Source");
  int64_t b = lib.addCatalog("Backup");
};

TEST_F(CompareTest, SizesAndChecksumsDecideWhatChanged) {
  lib.file(a, "same-nosum.txt", 10);
  lib.file(b, "same-nosum.txt", 10);
  lib.file(a, "sum-one-side.txt", 10, "aaa");
  lib.file(b, "sum-one-side.txt", 10);
  lib.file(a, "same-sum.txt", 10, "bbb");
  lib.file(b, "same-sum.txt", 10, "bbb");
  lib.file(a, "sum-differs.txt", 10, "ccc");
  lib.file(b, "sum-differs.txt", 10, "ddd");
  lib.file(a, "size-differs.txt", 10, "eee");
  lib.file(b, "size-differs.txt", 11, "eee");
  lib.file(a, "dates-differ.txt", 10, "", Date{1});
  lib.file(b, "dates-differ.txt", 10, "", Date{2});
  lib.file(a, "old/moved.txt", 5);
  lib.file(b, "new/moved.txt", 5);
  lib.folder(a, "only-a-folder");
  lib.folder(b, "only-b-folder");
  lib.finish();

  CompareResult r = store.compare(a, b);
  EXPECT_EQ(r.same, 4);
  EXPECT_EQ(paths(r.changed), (std::vector<std::string>{"size-differs.txt|size-differs.txt",
                                                        "sum-differs.txt|sum-differs.txt"}));
  EXPECT_EQ(r.changed[0].first.catalogID, a);
  EXPECT_EQ(r.changed[0].second.size, 11);
  // Folders are never listed, only files; a move shows once on each side.
  EXPECT_EQ(paths(r.onlyA), (std::vector<std::string>{"old/moved.txt"}));
  EXPECT_EQ(paths(r.onlyB), (std::vector<std::string>{"new/moved.txt"}));
}

TEST_F(CompareTest, ComposedAndDecomposedNamesAreTheSamePath) {
  const std::string composed = "Caf\u00e9/r\u00e9sum\u00e9.txt";
  const std::string decomposed = "Cafe\u0301/re\u0301sume\u0301.txt";
  ASSERT_NE(composed, decomposed);
  lib.file(a, composed, 7);
  lib.file(b, decomposed, 7);
  lib.file(a, "\u00c5ngstr\u00f6m.txt", 1);  // Å as one letter …
  lib.file(b, "\u212bngstr\u00f6m.txt", 1);  // … and as the angstrom sign, canonically the same.
  lib.file(a, "na\u00efve.txt", 1);
  lib.file(b, "naive.txt", 1);  // A different letter, not a different form.
  lib.finish();

  CompareResult r = store.compare(a, b);
  EXPECT_EQ(r.same, 2);
  EXPECT_EQ(paths(r.onlyA), (std::vector<std::string>{"na\u00efve.txt"}));
  EXPECT_EQ(paths(r.onlyB), (std::vector<std::string>{"naive.txt"}));
  EXPECT_TRUE(r.changed.empty());
  // The records keep their stored form.
  EXPECT_EQ(comparisonKey(decomposed), composed);
  EXPECT_EQ(comparisonKey(composed), composed);
}

TEST_F(CompareTest, SelfEmptyAndListsInPathOrder) {
  EXPECT_EQ(store.compare(a, b), CompareResult{});  // Two empty catalogs: four zeros.
  for (const char* p : {"z.txt", "a/b.txt", "m.txt"}) lib.file(a, p, 3);
  lib.finish();
  CompareResult self = store.compare(a, a);
  EXPECT_EQ(self.same, 3);
  EXPECT_TRUE(self.onlyA.empty() && self.onlyB.empty() && self.changed.empty());
  EXPECT_EQ(paths(store.compare(a, b).onlyA), (std::vector<std::string>{"a/b.txt", "m.txt", "z.txt"}));
  EXPECT_EQ(paths(store.compare(b, a).onlyB), (std::vector<std::string>{"a/b.txt", "m.txt", "z.txt"}));
}

TEST_F(CompareTest, TheListsOfTheTabsAndTheChips) {
  lib.file(a, "only-a.txt", 1);
  lib.file(b, "only-b.txt", 2);
  lib.file(a, "diff.txt", 1'500'000);
  lib.file(b, "diff.txt", 2'000'000);
  lib.file(a, "same.txt", 4);
  lib.file(b, "same.txt", 4);
  CompareResult r = store.compare(a, b);
  auto source = store.catalog(a), backup = store.catalog(b);

  auto tab0 = compareTabHits(r, 0, source, backup);
  ASSERT_EQ(tab0.size(), 1u);
  EXPECT_EQ(tab0[0].catalogName, "Source");
  EXPECT_EQ(compareTabHits(r, 1, source, backup)[0].catalogName, "Backup");
  auto tab2 = compareTabHits(r, 2, source, backup);
  ASSERT_EQ(tab2.size(), 1u);
  EXPECT_EQ(tab2[0].file.size, 1'500'000);  // The first catalog's record.
  EXPECT_EQ(tab2[0].catalogName,
            "Source: " + Fmt::size(1'500'000) + " \u00b7 Backup: " + Fmt::size(2'000'000));
  // Vanished catalogs are called by their letter.
  EXPECT_EQ(compareTabHits(r, 2, std::nullopt, std::nullopt)[0].catalogName,
            "A: " + Fmt::size(1'500'000) + " \u00b7 B: " + Fmt::size(2'000'000));
  EXPECT_TRUE(compareTabHits(r, -1, source, backup).empty());

  auto chips = compareChips(r);
  ASSERT_EQ(chips.size(), 4u);
  EXPECT_STREQ(chips[3].label, "Identical");
  EXPECT_EQ(chips[3].count, 1);
  EXPECT_EQ(chips[3].tab, -1);
  EXPECT_EQ(chips[2].count, 1);
}

TEST(CompareChoiceTest, DefaultSecondCatalogAndTheButton) {
  std::vector<Catalog> catalogs(3);
  catalogs[0].id = 7;
  catalogs[1].id = 3;
  catalogs[2].id = 9;
  EXPECT_EQ(defaultCompareB(catalogs, 7, std::nullopt), 3);
  EXPECT_EQ(defaultCompareB(catalogs, 3, 7), 7);             // A decides, not the selection.
  EXPECT_EQ(defaultCompareB(catalogs, std::nullopt, 7), 3);  // No A: avoid the selected one.
  EXPECT_EQ(defaultCompareB(catalogs, std::nullopt, std::nullopt), 7);
  EXPECT_EQ(defaultCompareB({catalogs[0]}, 7, std::nullopt), std::nullopt);
  EXPECT_EQ(defaultCompareB({}, std::nullopt, std::nullopt), std::nullopt);
  EXPECT_TRUE(compareDisabled(std::nullopt, std::nullopt));
  EXPECT_TRUE(compareDisabled(4, 4));
  EXPECT_FALSE(compareDisabled(4, std::nullopt));
  EXPECT_FALSE(compareDisabled(4, 5));
}

}  // namespace
}  // namespace orrelin
