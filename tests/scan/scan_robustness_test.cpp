// Scans of hostile trees: names no text can hold, special files, loops, unreadable and very deep folders,
// huge sparse files and a tree that changes while it is walked. Each scan must finish and store the truth.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <set>
#include <thread>

#include "core/name_mapping.h"
#include "scan/scan_fixture.h"
#include "scan/tree_walker.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::ScanTest;
using testing::plainOptions;
using testing::writeFile;

TEST_F(ScanTest, AwkwardNamesAreStoredAsValidTextAndMapBackToTheDisk) {
  const std::vector<std::string> names = {
      std::string("latin1-caf\xe9.txt"),  // Not UTF-8.
      std::string("bad\xff\xfe"),
      "line\nbreak",
      "100% done_1",
      "back\\slash",
      "quote's \"double\"",
      std::string(255, 'n'),  // The longest name Linux allows.
      "ünïcødé 日本.txt",
  };
  for (const std::string& name : names) writeFile(tree / name, name);
  writeFile(tree / std::string("dir\x80") / "inside.txt", "x");

  const ScanResult result = scan();
  ASSERT_FALSE(result.error) << *result.error;
  auto r = rows(result.catalogID);
  ASSERT_EQ(r.size(), names.size() + 2);
  for (const auto& [path, f] : r) {
    EXPECT_TRUE(NameMapping::isValidUTF8(path)) << path;
    EXPECT_TRUE(NameMapping::isValidUTF8(f.name)) << f.name;
    // Every stored path leads back to its file.
    EXPECT_TRUE(fs::exists(tree / NameMapping::diskPath(path))) << path;
  }
  for (const std::string& name : names) {
    const std::string stored = NameMapping::fromDisk(name);
    ASSERT_TRUE(r.count(stored)) << stored;
    EXPECT_EQ(r[stored].size, static_cast<int64_t>(name.size()));
  }
  EXPECT_EQ(r[NameMapping::fromDisk("dir\x80/inside.txt")].parentID, r[NameMapping::fromDisk("dir\x80")].id);
  // And a rescan finds every one of them again.
  const ScanResult again = rescan(result.catalogID);
  EXPECT_EQ(again.addedCount + again.changedCount + again.removedCount, 0);
}

TEST_F(ScanTest, SpecialFilesAreCatalogedFromTheirFactsAndLinksNeverFollowed) {
  ASSERT_EQ(mkfifo((tree / "pipe.mp4").c_str(), 0644), 0);  // A media name, to tempt the readers.
  const std::string socketPath = (tree / "sock").string();
  int sock = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un addr{};
  addr.sun_family = AF_UNIX;
  ASSERT_LT(socketPath.size(), sizeof(addr.sun_path));
  std::strcpy(addr.sun_path, socketPath.c_str());
  ASSERT_EQ(bind(sock, reinterpret_cast<sockaddr*>(&addr), sizeof(addr)), 0);
  fs::create_directories(tree / "loop/inner");
  fs::create_symlink("..", tree / "loop/inner/up");        // A loop through a link.
  fs::create_symlink(tree / "loop", tree / "loop/again");  // And an absolute one.
  fs::create_symlink(tree / "nowhere", tree / "dangling");
  writeFile(tree / "plain.txt", "p");

  ScanOptions options;  // Metadata, thumbnails and hashes all on: still nothing special is opened.
  options.hashes = true;
  const ScanResult result = scan(options);
  close(sock);
  ASSERT_FALSE(result.error) << *result.error;
  auto r = rows(result.catalogID);
  std::set<std::string> paths;
  for (const auto& [path, f] : r) paths.insert(path);
  EXPECT_EQ(paths, (std::set<std::string>{"loop", "loop/inner", "pipe.mp4", "plain.txt", "sock"}));
  EXPECT_FALSE(r["pipe.mp4"].isDir);
  EXPECT_EQ(r["pipe.mp4"].kind, FileKind::video);  // By its extension alone.
  EXPECT_EQ(r["pipe.mp4"].sha256, "");
  EXPECT_TRUE(r["pipe.mp4"].meta.empty());
  EXPECT_EQ(r["plain.txt"].sha256, "148de9c5a7a44d19e56cd9ae1a554bf67847afb0c58f6e12fa29ac7ddfca9940");
}

// While alive, the calling thread cannot bypass file permissions even as root: it lowers the effective
// CAP_DAC_OVERRIDE and CAP_DAC_READ_SEARCH (they stay permitted, so the destructor raises them again).
class PermissionsEnforced {
 public:
  PermissionsEnforced() {
    if (syscall(SYS_capget, &m_header, m_saved) != 0) return;
    __user_cap_data_struct lowered[2] = {m_saved[0], m_saved[1]};
    lowered[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH));
    m_active = syscall(SYS_capset, &m_header, lowered) == 0;
  }
  ~PermissionsEnforced() {
    if (m_active) syscall(SYS_capset, &m_header, m_saved);
  }
  bool active() const { return m_active; }
  PermissionsEnforced(const PermissionsEnforced&) = delete;
  PermissionsEnforced& operator=(const PermissionsEnforced&) = delete;

 private:
  __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct m_saved[2]{};
  bool m_active = false;
};

TEST_F(ScanTest, UnreadableFolderCostsOnlyItsContents) {
  writeFile(tree / "open/a.txt", "a");
  writeFile(tree / "locked/secret.txt", "s");
  writeFile(tree / "z.txt", "z");
  const ScanResult first = scan();
  ASSERT_EQ(rows(first.catalogID).size(), 5u);
  fs::permissions(tree / "locked", fs::perms::none);
  ScanResult second;
  bool enforced = false;
  {
    PermissionsEnforced lowered;
    enforced = lowered.active();
    second = rescan(first.catalogID);
  }
  fs::permissions(tree / "locked", fs::perms::owner_all);
  ASSERT_FALSE(second.error);
  auto r = rows(first.catalogID);
  EXPECT_TRUE(r.count("locked"));
  EXPECT_TRUE(r.count("z.txt"));
  EXPECT_TRUE(r.count("open/a.txt"));
  if (!enforced && geteuid() == 0) GTEST_SKIP() << "root could not give up reading every folder";
  EXPECT_EQ(second.removed, std::vector<std::string>{"locked/secret.txt"});
}

// Makes `depth` nested folders "level0/level1/..." under `root`, one level at a time relative to the folder
// above (the whole path is longer than the system accepts), with a file "bottom.txt" at the bottom.
void makeDeepTree(const fs::path& root, int depth) {
  int fd = open(root.c_str(), O_RDONLY | O_DIRECTORY);
  for (int i = 0; i < depth; ++i) {
    const std::string name = "level" + std::to_string(i);
    ASSERT_EQ(mkdirat(fd, name.c_str(), 0755), 0);
    int next = openat(fd, name.c_str(), O_RDONLY | O_DIRECTORY);
    close(fd);
    fd = next;
  }
  int file = openat(fd, "bottom.txt", O_WRONLY | O_CREAT, 0644);
  ASSERT_EQ(write(file, "deep", 4), 4);
  close(file);
  close(fd);
}

// Removes what makeDeepTree made, bottom up, the same way.
void removeDeepTree(const fs::path& root, int depth) {
  std::vector<int> fds = {open(root.c_str(), O_RDONLY | O_DIRECTORY)};
  for (int i = 0; i < depth; ++i)
    fds.push_back(openat(fds.back(), ("level" + std::to_string(i)).c_str(), O_RDONLY | O_DIRECTORY));
  unlinkat(fds.back(), "bottom.txt", 0);
  for (int i = depth - 1; i >= 0; --i) {
    close(fds.back());
    fds.pop_back();
    unlinkat(fds.back(), ("level" + std::to_string(i)).c_str(), AT_REMOVEDIR);
  }
  close(fds.back());
}

TEST_F(ScanTest, TreeSixHundredLevelsDeep) {
  constexpr int kDepth = 600;
  makeDeepTree(tree, kDepth);
  std::vector<std::string> levels;  // levels[i]: the relative path of folder level i.
  for (int i = 0; i < kDepth; ++i)
    levels.push_back((i == 0 ? "" : levels.back() + "/") + "level" + std::to_string(i));

  ScanOptions options = plainOptions();
  options.hashes = true;  // The file is read through a path short enough to open.
  const ScanResult result = scan(options);
  removeDeepTree(tree, kDepth);
  ASSERT_FALSE(result.error) << *result.error;
  auto r = rows(result.catalogID);
  EXPECT_EQ(r.size(), static_cast<size_t>(kDepth + 1));
  const FileRecord& bottom = r[levels.back() + "/bottom.txt"];
  EXPECT_EQ(bottom.size, 4);
  EXPECT_EQ(bottom.parentID, r[levels.back()].id);
  EXPECT_EQ(bottom.sha256, "74611c1d6455b534323a21f8133a6f43dc3a8188e7b946f96dcc28dde932fcb2");
  for (int i = 1; i < kDepth; ++i) ASSERT_EQ(r[levels[i]].parentID, r[levels[i - 1]].id) << i;
  const auto c = catalog(result.catalogID);
  EXPECT_EQ(c->fileCount, 1);
  EXPECT_EQ(c->folderCount, kDepth);
  // A size rolls up through the 512 nearest folders.
  EXPECT_EQ(r[levels[kDepth - 512]].size, 4);
  EXPECT_EQ(r[levels[kDepth - 513]].size, 0);
}

TEST_F(ScanTest, HugeSparseFileIsRecordedByItsSize) {
  constexpr int64_t k100GB = 100'000'000'000;
  {
    int fd = open((tree / "disk.img").c_str(), O_WRONLY | O_CREAT, 0644);
    ASSERT_GE(fd, 0);
    if (ftruncate(fd, k100GB) != 0) {
      close(fd);
      GTEST_SKIP() << "this filesystem cannot hold a sparse file of 100 GB";
    }
    close(fd);
  }
  const ScanResult result = scan(plainOptions());  // No checksums: reading 100 GB of zeros proves nothing.
  ASSERT_FALSE(result.error);
  auto r = rows(result.catalogID);
  EXPECT_EQ(r["disk.img"].size, k100GB);
  EXPECT_EQ(r["disk.img"].kind, FileKind::diskImage);
  EXPECT_EQ(r["disk.img"].sha256, "");
  EXPECT_EQ(catalog(result.catalogID)->totalSize, k100GB);
}

TEST_F(ScanTest, FilesAppearingAndVanishingDuringTheWalk) {
  for (int i = 0; i < 40; ++i) writeFile(tree / ("d" + std::to_string(i % 8)) / ("stable" + std::to_string(i)), "s");
  fs::create_directories(tree / "churn");
  std::atomic<bool> stop = false;
  std::thread churn([&] {
    for (int round = 0; !stop; ++round) {
      const fs::path p = tree / "churn" / ("f" + std::to_string(round % 50));
      if (round % 2 == 0) {
        writeFile(p, "x");
      } else {
        std::error_code ec;
        fs::remove(tree / "churn" / ("f" + std::to_string((round - 1) % 50)), ec);
        fs::create_directories(tree / "churn" / ("dir" + std::to_string(round % 7)), ec);
        fs::remove_all(tree / "churn" / ("dir" + std::to_string((round + 3) % 7)), ec);
      }
    }
  });
  ScanResult first, second;
  for (int i = 0; i < 5; ++i) {
    first = scan();
    ASSERT_FALSE(first.error) << *first.error;
    second = rescan(first.catalogID);
    ASSERT_FALSE(second.error) << *second.error;
  }
  stop = true;
  churn.join();
  // Whatever came and went, the stable part is all there and every row hangs under an existing folder.
  auto r = rows(first.catalogID);
  std::set<int64_t> ids;
  for (const auto& [path, f] : r) ids.insert(f.id);
  int stable = 0;
  for (const auto& [path, f] : r) {
    stable += path.find("stable") != std::string::npos;
    if (f.parentID != 0) {
      EXPECT_TRUE(ids.count(f.parentID)) << path;
    }
  }
  EXPECT_EQ(stable, 40);
  // Once the tree is still, a rescan brings the catalog exactly to it.
  const ScanResult settled = rescan(first.catalogID);
  const ScanResult quiet = rescan(first.catalogID);
  EXPECT_EQ(quiet.addedCount + quiet.changedCount + quiet.removedCount, 0);
  size_t onDisk = 0;
  for (auto it = fs::recursive_directory_iterator(tree); it != fs::recursive_directory_iterator(); ++it) ++onDisk;
  EXPECT_EQ(rows(first.catalogID).size(), onDisk);
  (void)settled;
}

}  // namespace
}  // namespace orrelin
