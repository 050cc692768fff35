// Which records a batch covers, the order that numbers them, and the order in which the renames run.
#include <gtest/gtest.h>

#include "organize/rename_pane.h"
#include "organize/standard_order.h"

namespace orrelin {
namespace {

std::vector<std::string> paths(const std::vector<FileRecord>& records) {
  std::vector<std::string> out;
  for (const FileRecord& r : records) out.push_back(r.path);
  return out;
}

FileRecord record(const std::string& path, bool isDir = false) {
  FileRecord r;
  r.path = path;
  r.name = path.substr(path.rfind('/') == std::string::npos ? 0 : path.rfind('/') + 1);
  r.isDir = isDir;
  return r;
}

TEST(StandardOrderTest, NumbersByValueCaseOnlyBreakingTies) {
  std::vector<std::string> names = {"file10.txt", "file2.txt",  "File1.txt", "file1.txt", "b",
                                    "A",          "file02.txt", "a10b",      "a9b",       "Z"};
  StandardOrder order;
  order.sort(names, [](const std::string& s) -> const std::string& { return s; });
  EXPECT_EQ(names, (std::vector<std::string>{"A", "a9b", "a10b", "b", "file1.txt", "File1.txt", "file02.txt",
                                             "file2.txt", "file10.txt", "Z"}));

  for (size_t i = 0; i + 1 < names.size(); ++i) {
    EXPECT_LT(order.compare(names[i], names[i + 1]), 0) << names[i] << " / " << names[i + 1];
    EXPECT_GT(order.compare(names[i + 1], names[i]), 0) << names[i + 1] << " / " << names[i];
    EXPECT_LE(order.sortKey(names[i]), order.sortKey(names[i + 1])) << names[i] << " / " << names[i + 1];
  }
  // Texts alike to the collator (composed and decomposed accents) still have a fixed order; only
  // identical texts are equal.
  EXPECT_NE(order.compare("caf\u00e9", "cafe\u0301"), 0);
  EXPECT_EQ(order.compare("caf\u00e9", "cafe\u0301"), -order.compare("cafe\u0301", "caf\u00e9"));
  EXPECT_EQ(order.compare("same", "same"), 0);
  EXPECT_LT(localizedStandardCompare("Photo 9", "photo 10"), 0);
}

TEST(RenameSelectionTest, PlaceKindAndFilterDecideTogether) {
  std::vector<FileRecord> all = {
      record("top.txt"),          record("Photos", true),        record("Photos/img_10.JPG"),
      record("Photos/IMG_2.jpg"), record("Photos/2024", true),   record("Photos/2024/img_1.jpg"),
      record("PhotosOld", true),  record("PhotosOld/img_3.jpg"), record("Photos/notes.txt"),
  };
  struct Case {
    std::string folder, filter;
    bool sub, folders;
    std::vector<std::string> expected;
  };
  std::vector<Case> cases = {
      {"", "", false, false, {"top.txt"}},
      {"", "", false, true, {"Photos", "PhotosOld", "top.txt"}},
      {"Photos", "", false, false, {"Photos/IMG_2.jpg", "Photos/img_10.JPG", "Photos/notes.txt"}},
      {"Photos", "img", true, false, {"Photos/2024/img_1.jpg", "Photos/IMG_2.jpg", "Photos/img_10.JPG"}},
      {"Photos",
       "",
       true,
       true,
       {"Photos/2024", "Photos/2024/img_1.jpg", "Photos/IMG_2.jpg", "Photos/img_10.JPG", "Photos/notes.txt"}},
      {"",
       "IMG_",
       true,
       false,
       {"Photos/2024/img_1.jpg", "Photos/IMG_2.jpg", "Photos/img_10.JPG", "PhotosOld/img_3.jpg"}},
      {"Photos/2024", "", false, false, {"Photos/2024/img_1.jpg"}},
      {"Nowhere", "", true, true, {}},
  };
  for (const Case& c : cases)
    EXPECT_EQ(paths(RenamePane::select(all, c.folder, c.filter, c.sub, c.folders)), c.expected)
        << "folder '" << c.folder << "' filter '" << c.filter << "' sub " << c.sub << " folders "
        << c.folders;
}

TEST(RenameSelectionTest, ChildrenAreRenamedBeforeTheirFolders) {
  std::vector<FileRecord> chosen = {record("A", true), record("A/B", true), record("A/B/c.txt"),
                                    record("A/d.txt"), record("e.txt")};
  RenameRule upper;
  upper.caseMode = RenameRule::CaseMode::upper;
  OrganizationPlan plan = upper.plan(chosen);
  EXPECT_EQ(RenamePane::childrenFirst(plan, chosen),
            (std::vector<PlanMove>{{"A/B/c.txt", "A/B/C.txt"}, {"A/d.txt", "A/D.txt"}, {"e.txt", "E.txt"}}));

  RenameRule suffix;
  suffix.suffix = "_x";
  plan = suffix.plan(chosen);
  EXPECT_EQ(RenamePane::childrenFirst(plan, chosen), (std::vector<PlanMove>{{"A/B/c.txt", "A/B/c_x.txt"},
                                                                            {"A/B", "A/B_x"},
                                                                            {"A/d.txt", "A/d_x.txt"},
                                                                            {"A", "A_x"},
                                                                            {"e.txt", "e_x.txt"}}));
}

}  // namespace
}  // namespace orrelin
