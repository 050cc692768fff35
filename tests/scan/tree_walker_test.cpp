// The directory walk on real trees: order, pruning, facts, tags, and its bounded use of descriptors.
#include "scan/tree_walker.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>

#include "scan/scan_worker.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::TempDir;
using testing::writeFile;

// Every entry of a walk as "relative" (folders with a trailing "/"), in walk order.
std::vector<std::string> walkAll(const fs::path& root, TreeWalker::Options options = {}) {
  TreeWalker walker(root, options);
  EXPECT_TRUE(walker.ok());
  std::vector<std::string> out;
  while (const WalkEntry* e = walker.next()) out.push_back(e->relative + (e->isDirectory() ? "/" : ""));
  return out;
}

int openDescriptors() {
  int count = 0;
  for ([[maybe_unused]] const auto& entry : fs::directory_iterator("/proc/self/fd")) ++count;
  return count;
}

TEST(TreeWalker, FoldersComeBeforeTheirContentsAndSiblingsInByteOrder) {
  TempDir dir;
  writeFile(dir.path() / "b/z.txt", "");
  writeFile(dir.path() / "b/a/deep.txt", "");
  writeFile(dir.path() / "B.txt", "");
  writeFile(dir.path() / "a.txt", "");
  writeFile(dir.path() / "\xc3\xa9.txt", "");  // Bytes above ASCII sort last.
  EXPECT_EQ(walkAll(dir.path()), (std::vector<std::string>{"B.txt", "a.txt", "b/", "b/a/", "b/a/deep.txt",
                                                           "b/z.txt", "\xc3\xa9.txt"}));
}

TEST(TreeWalker, PruningByHiddenStatePackagesAndRequest) {
  TempDir dir;
  writeFile(dir.path() / ".git/config", "");
  writeFile(dir.path() / "shown/listed", "");
  writeFile(dir.path() / "shown/.hidden", "listed\r\nmissing\n");
  writeFile(dir.path() / "Some.App/Contents/x", "");
  writeFile(dir.path() / "skip/inside", "");

  EXPECT_EQ(walkAll(dir.path(), {.skipHidden = true, .skipPackageContents = true}),
            (std::vector<std::string>{"Some.App/", "shown/", "skip/", "skip/inside"}));
  EXPECT_EQ(walkAll(dir.path()).size(), 10u);

  TreeWalker walker(dir.path(), {});
  std::vector<std::string> seen;
  while (const WalkEntry* e = walker.next()) {
    seen.push_back(e->relative);
    if (e->name == "skip" || e->name == ".git") walker.skipDescendants();
    if (e->name == "listed" || e->name == "shown") {
      EXPECT_EQ(e->hidden, e->name == "listed");
    }
    EXPECT_EQ(e->isPackage, e->name == "Some.App");
  }
  EXPECT_EQ(seen, (std::vector<std::string>{".git", "Some.App", "Some.App/Contents", "Some.App/Contents/x",
                                            "shown", "shown/.hidden", "shown/listed", "skip"}));
}

TEST(TreeWalker, FactsOfFilesFoldersLinksAndFifos) {
  TempDir dir;
  writeFile(dir.path() / "f.bin", std::string(4097, 'x'));
  fs::create_directories(dir.path() / "sub");
  fs::create_symlink("sub", dir.path() / "link");
  ASSERT_EQ(mkfifo((dir.path() / "fifo").c_str(), 0600), 0);
  TreeWalker walker(dir.path(), {});
  std::map<std::string, WalkEntry> byName;
  while (const WalkEntry* e = walker.next()) byName[e->name] = *e;
  EXPECT_EQ(byName["f.bin"].type, WalkEntry::Type::file);
  EXPECT_EQ(byName["f.bin"].size, 4097);
  EXPECT_TRUE(byName["f.bin"].modified);
  EXPECT_EQ(byName["sub"].type, WalkEntry::Type::directory);
  EXPECT_EQ(byName["sub"].size, 0);  // Folder sizes come from the files below them, later.
  EXPECT_EQ(byName["link"].type, WalkEntry::Type::symlink);
  EXPECT_EQ(byName["fifo"].type, WalkEntry::Type::special);
  EXPECT_EQ(byName.size(), 4u);  // The link to "sub" was not entered.
}

TEST(TreeWalker, TagsFromTheDesktopAttribute) {
  TempDir dir;
  writeFile(dir.path() / "tagged.txt", "");
  writeFile(dir.path() / "plain.txt", "");
  const std::string tags = "work, Urgent ,,to do";
  if (setxattr((dir.path() / "tagged.txt").c_str(), "user.xdg.tags", tags.data(), tags.size(), 0) != 0)
    GTEST_SKIP() << "the temporary folder's filesystem keeps no user attributes";
  TreeWalker walker(dir.path(), {});
  std::map<std::string, std::vector<std::string>> byName;
  while (const WalkEntry* e = walker.next()) byName[e->name] = walker.tags();
  EXPECT_EQ(byName["tagged.txt"], (std::vector<std::string>{"work", "Urgent", "to do"}));
  EXPECT_TRUE(byName["plain.txt"].empty());
}

TEST(TreeWalker, DeepTreesUseABoundedNumberOfDescriptors) {
  TempDir dir;
  int fd = open(dir.path().c_str(), O_RDONLY | O_DIRECTORY);
  for (int i = 0; i < 300; ++i) {
    ASSERT_EQ(mkdirat(fd, "d", 0755), 0);
    int file = openat(fd, ("f" + std::to_string(i)).c_str(), O_WRONLY | O_CREAT, 0644);
    close(file);
    int next = openat(fd, "d", O_RDONLY | O_DIRECTORY);
    close(fd);
    fd = next;
  }
  close(fd);
  const int before = openDescriptors();
  TreeWalker walker(dir.path(), {});
  int entries = 0, most = 0;
  while (const WalkEntry* e = walker.next()) {
    ++entries;
    most = std::max(most, openDescriptors() - before);
    if (e->type == WalkEntry::Type::file) {
      // Reachable for reading at any depth, through a short path.
      EXPECT_TRUE(fs::exists(walker.openablePath())) << e->depth;
    }
  }
  EXPECT_EQ(entries, 600);
  EXPECT_LE(most, 40);
  EXPECT_EQ(openDescriptors(), before);  // All closed at the end of the walk.
}

TEST(TreeWalker, PackageSizeSumsEverythingInside) {
  TempDir dir;
  writeFile(dir.path() / "A.app/Contents/MacOS/bin", std::string(100, 'b'));
  writeFile(dir.path() / "A.app/Contents/.hidden-resource", std::string(20, 'r'));
  writeFile(dir.path() / "A.app/Contents/Nested.framework/lib", std::string(3, 'l'));
  EXPECT_EQ(ScanWorker::packageSize(dir.path() / "A.app"), 123);
  EXPECT_EQ(ScanWorker::packageSize(dir.path() / "missing.app"), 0);
}

TEST(TreeWalker, FileExtensions) {
  EXPECT_EQ(fileExtension("photo.JPG"), "jpg");
  EXPECT_EQ(fileExtension("archive.tar.gz"), "gz");
  EXPECT_EQ(fileExtension(".profile"), "");
  EXPECT_EQ(fileExtension("README"), "");
  EXPECT_EQ(fileExtension("trailing."), "");
}

TEST(TreeWalker, MissingRootIsReported) {
  TempDir dir;
  TreeWalker walker(dir.path() / "absent", {});
  EXPECT_FALSE(walker.ok());
  EXPECT_EQ(walker.rootError(), ENOENT);
  EXPECT_EQ(walker.next(), nullptr);
}

}  // namespace
}  // namespace orrelin
