// What new and changed files yield beyond their plain facts: media details, thumbnails and checksums, made
// from real files by real tools, and when a rescan collects them again.
#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <cstdlib>

#include "scan/scan_fixture.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::ScanTest;
using testing::plainOptions;
using testing::writeFile;

bool run(const std::string& command) { return std::system((command + " >/dev/null 2>&1").c_str()) == 0; }

TEST_F(ScanTest, NewFilesGetMetadataThumbnailsAndChecksums) {
  if (!run("convert -size 640x480 gradient:red-blue '" + (tree / "photo.jpg").string() + "'"))
    GTEST_SKIP() << "ImageMagick is not installed";
  writeFile(tree / "notes.txt", "abc");
  ScanOptions options;
  options.hashes = true;
  const ScanResult result = scan(options);
  ASSERT_FALSE(result.error);
  auto r = rows(result.catalogID);
  const FileRecord& photo = r["photo.jpg"];
  EXPECT_EQ(photo.width, 640);
  EXPECT_EQ(photo.height, 480);
  EXPECT_EQ(photo.meta.at("Dimensions"), "640 × 480");
  EXPECT_TRUE(photo.hasThumb);
  EXPECT_TRUE(fs::exists(thumbs / std::to_string(result.catalogID) / (std::to_string(photo.id) + ".jpg")));
  EXPECT_EQ(photo.sha256.size(), 64u);
  EXPECT_EQ(r["notes.txt"].sha256, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_FALSE(r["notes.txt"].hasThumb);
}

TEST_F(ScanTest, TurningOnChecksumsAddsThemOnlyToNewAndChangedFiles) {
  writeFile(tree / "old.txt", "old");
  writeFile(tree / "edited.txt", "v1");
  const ScanResult first = scan(plainOptions());
  writeFile(tree / "edited.txt", "version 2");
  writeFile(tree / "new.txt", "new");
  ScanOptions options = plainOptions();
  options.hashes = true;
  rescan(first.catalogID, options);
  auto r = rows(first.catalogID);
  EXPECT_EQ(r["old.txt"].sha256, "");
  EXPECT_EQ(r["edited.txt"].sha256.size(), 64u);
  EXPECT_EQ(r["new.txt"].sha256.size(), 64u);

  // A collection switched off blanks the stored value of a changed file, and leaves unchanged ones be.
  writeFile(tree / "edited.txt", "version three");
  rescan(first.catalogID, plainOptions());
  r = rows(first.catalogID);
  EXPECT_EQ(r["edited.txt"].sha256, "");
  EXPECT_EQ(r["new.txt"].sha256.size(), 64u);
}

TEST_F(ScanTest, TagsArePickedUpOnUnchangedFilesWithoutCountingAsAChange) {
  writeFile(tree / "doc.txt", "d");
  const ScanResult first = scan();
  const std::string tags = "red,Project X";
  if (setxattr((tree / "doc.txt").c_str(), "user.xdg.tags", tags.data(), tags.size(), 0) != 0)
    GTEST_SKIP() << "the temporary folder's filesystem keeps no user attributes";
  const ScanResult second = rescan(first.catalogID);
  EXPECT_EQ(second.changedCount, 0);
  EXPECT_EQ(rows(first.catalogID)["doc.txt"].tags, (std::vector<std::string>{"red", "Project X"}));
  // And the full-text index follows: the tag finds the file.
  CatalogDB store(dbPath);
  EXPECT_EQ(store.db().scalarInt("SELECT count(*) FROM files_fts WHERE files_fts MATCH '\"Project\"'"), 1);
}

}  // namespace
}  // namespace orrelin
