// Volume facts checked against this machine's real mounts, as findmnt, df and /proc/self/mountinfo see them.
#include "scan/volume_info.h"

#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "scan/mount_table.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;

std::string quoted(const std::string& path) { return "'" + path + "'"; }

// Runs a shell command and returns its first output line; empty when it fails.
std::string firstLineOf(const std::string& command) {
  std::string out;
  if (FILE* pipe = popen((command + " 2>/dev/null").c_str(), "r")) {
    char buffer[4096];
    while (fgets(buffer, sizeof(buffer), pipe) != nullptr) out += buffer;
    pclose(pipe);
  }
  out = out.substr(0, out.find('\n'));
  out.erase(0, out.find_first_not_of(' '));
  out.erase(out.find_last_not_of(' ') + 1);
  return out;
}

// Size and available bytes as df reports them.
std::pair<int64_t, int64_t> dfSizes(const std::string& path) {
  std::istringstream line(firstLineOf("df -B1 --output=size,avail " + quoted(path) + " | tail -n 1"));
  int64_t size = -1, avail = -1;
  line >> size >> avail;
  return {size, avail};
}

// Checks the facts that can be got without our code: mount point by findmnt, sizes by df.
void expectAgreesWithTools(const std::string& path) {
  SCOPED_TRACE(path);
  const VolumeInfo info = VolumeInfo::read(path);
  EXPECT_EQ(info.rootPath, firstLineOf("findmnt -T " + quoted(path) + " -no TARGET"));
  const auto [size, avail] = dfSizes(path);
  EXPECT_EQ(info.capacity, size);
  // Other processes write meanwhile; a tolerance keeps the check about units, not about the exact byte.
  EXPECT_NEAR(static_cast<double>(info.free), static_cast<double>(avail),
              std::max(64.0 * 1024 * 1024, 0.01 * static_cast<double>(size)));
  EXPECT_FALSE(info.format.empty());
  EXPECT_FALSE(info.name.empty());
}

struct MountinfoLine {
  std::string target, fstype, source, devno;
};

// /proc/self/mountinfo parsed by hand, octal escapes included, to check libmount's reading against.
std::vector<MountinfoLine> parseMountinfo() {
  auto unescape = [](const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '\\' && i + 3 < text.size()) {
        out.push_back(static_cast<char>(std::stoi(text.substr(i + 1, 3), nullptr, 8)));
        i += 3;
      } else {
        out.push_back(text[i]);
      }
    }
    return out;
  };
  std::vector<MountinfoLine> lines;
  std::ifstream in("/proc/self/mountinfo");
  for (std::string text; std::getline(in, text);) {
    std::istringstream fields(text);
    std::string id, parent, devno, root, target, word, fstype, source;
    fields >> id >> parent >> devno >> root >> target;
    while (fields >> word && word != "-") {
    }
    fields >> fstype >> source;
    lines.push_back({unescape(target), fstype, unescape(source), devno});
  }
  return lines;
}

TEST(VolumeInfoTest, RootAgreesWithFindmntDfAndLsblk) {
  expectAgreesWithTools("/");
  const VolumeInfo root = VolumeInfo::read("/");
  EXPECT_EQ(root.rootPath, "/");
  EXPECT_FALSE(root.isNetwork);
  // findmnt takes UUID and label from udev, as we do; both are empty where udev does not run.
  EXPECT_EQ(root.uuid, firstLineOf("findmnt -no UUID /"));
  const std::string label = firstLineOf("findmnt -no LABEL /");
  EXPECT_EQ(root.name, label.empty() ? "Filesystem root" : label);
  const std::string source = firstLineOf("findmnt -no SOURCE /");
  const std::string hotplug = firstLineOf("lsblk -ndo HOTPLUG,RM " + quoted(source));
  if (!hotplug.empty()) {
    EXPECT_EQ(root.isRemovable, hotplug.find('1') != std::string::npos) << hotplug;
  }
}

TEST(VolumeInfoTest, FoldersFilesAndLinksReportTheMountHoldingThem) {
  testing::TempDir temp;
  testing::writeFile(temp.path() / "sub" / "file.txt", "x");
  expectAgreesWithTools(temp.path().string());
  expectAgreesWithTools(temp.file("sub/file.txt"));
  EXPECT_EQ(VolumeInfo::read(temp.file("sub/../sub/file.txt")).rootPath,
            VolumeInfo::read(temp.path().string()).rootPath);

  // /dev/shm is a tmpfs of its own on Linux (here two are stacked on it): a mount other than the root,
  // reached through a symlink from the temporary folder.
  std::string shm = "/dev/shm/orrelin-volume-XXXXXX";
  if (mkdtemp(shm.data()) == nullptr) GTEST_SKIP() << "no writable /dev/shm";
  fs::create_directory_symlink(shm, temp.path() / "link");
  const VolumeInfo viaLink = VolumeInfo::read(temp.file("link"));
  expectAgreesWithTools(shm);
  EXPECT_EQ(viaLink.rootPath, firstLineOf("findmnt -T " + shm + " -no TARGET"));
  if (firstLineOf("findmnt -T " + shm + " -no FSTYPE") == "tmpfs") {
    EXPECT_EQ(viaLink.format, "tmpfs");
    EXPECT_EQ(viaLink.name, "shm");
    EXPECT_TRUE(viaLink.uuid.empty());
    EXPECT_FALSE(viaLink.isNetwork || viaLink.isRemovable);
  }
  fs::remove_all(shm);
}

TEST(VolumeInfoTest, PathsOnNoVolumeGiveTheEmptyValue) {
  testing::TempDir temp;
  testing::writeFile(temp.path() / "file", "x");
  fs::create_symlink(temp.path() / "missing", temp.path() / "dangling");
  for (const std::string& path : {std::string(), std::string("/no/such/folder/anywhere"),
                                  temp.file("missing"), temp.file("file/child"), temp.file("dangling")}) {
    EXPECT_EQ(VolumeInfo::read(path), VolumeInfo{}) << path;
  }
}

TEST(VolumeInfoTest, MountedListsRootAndUserMountsOnly) {
  const std::vector<MountedVolume> volumes = VolumeInfo::mounted();
  const std::vector<MountinfoLine> table = parseMountinfo();
  // Index of the last line for each mount point: the visible mount, and the order the list must follow.
  std::map<std::string, size_t> lastLine;
  for (size_t i = 0; i < table.size(); ++i) lastLine[table[i].target] = i;

  const std::set<std::string> pseudo = {"proc",   "sysfs", "cgroup",  "cgroup2",  "devpts", "devtmpfs",
                                        "mqueue", "tmpfs", "debugfs", "tracefs",  "autofs", "securityfs",
                                        "pstore", "bpf",   "fusectl", "configfs", "nsfs",   "hugetlbfs"};
  size_t previous = 0;
  std::set<std::string> urls;
  for (const MountedVolume& volume : volumes) {
    SCOPED_TRACE(volume.url);
    ASSERT_TRUE(lastLine.contains(volume.url));
    const MountinfoLine& line = table[lastLine[volume.url]];
    EXPECT_EQ(volume.info.rootPath, volume.url);
    EXPECT_TRUE(urls.insert(volume.url).second) << "listed twice";
    EXPECT_TRUE(volume.url == "/" || !pseudo.contains(line.fstype)) << line.fstype;
    for (const char* system : {"/proc", "/sys", "/dev/", "/boot", "/snap/"})
      EXPECT_FALSE(volume.url.starts_with(system));
    EXPECT_TRUE(!volume.url.starts_with("/run/") || volume.url.starts_with("/run/media/"));
    EXPECT_GE(lastLine[volume.url], previous) << "out of mount-table order";
    previous = lastLine[volume.url];
  }
  ASSERT_TRUE(urls.contains("/"));
  const auto root = std::find_if(volumes.begin(), volumes.end(), [](const auto& v) { return v.url == "/"; });
  EXPECT_EQ(root->info.capacity, VolumeInfo::read("/").capacity);
  // Disks in the usual places for user media must all be offered.
  for (const auto& [target, index] : lastLine) {
    if (table[index].source.starts_with("/dev/") && target.find("/.") == std::string::npos &&
        (target.starts_with("/media/") || target.starts_with("/run/media/") || target.starts_with("/mnt/"))) {
      EXPECT_TRUE(urls.contains(target)) << target;
    }
  }
}

TEST(MountTableTest, ReadsTheSameTableAsMountinfo) {
  const std::vector<MountEntry> mounts = readMountTable();
  const std::vector<MountinfoLine> table = parseMountinfo();
  ASSERT_EQ(mounts.size(), table.size());
  for (size_t i = 0; i < mounts.size(); ++i) {
    EXPECT_EQ(mounts[i].target, table[i].target);
    EXPECT_EQ(mounts[i].fstype, table[i].fstype);
    EXPECT_EQ(mounts[i].source, table[i].source);
    EXPECT_EQ(std::to_string(major(mounts[i].devno)) + ":" + std::to_string(minor(mounts[i].devno)),
              table[i].devno);
  }
}

TEST(MountTableTest, FindsTheDeepestVisibleMount) {
  const std::vector<MountEntry> mounts = {
      {"/", "/dev/sda2", "ext4"},
      {"/media/usb", "/dev/sdb1", "vfat"},
      {"/media/usb2", "/dev/sdc1", "exfat"},
      {"/dev/shm", "tmpfs", "tmpfs", 1},
      {"/dev/shm", "tmpfs", "tmpfs", 2},
      {"/mnt/my stick", "/dev/sdd1", "ext4"},
  };
  const std::vector<std::pair<std::string, const MountEntry*>> cases = {
      {"/", &mounts[0]},
      {"/media/usb", &mounts[1]},
      {"/media/usb/DCIM/a.jpg", &mounts[1]},
      {"/media/usb2/x", &mounts[2]},
      {"/media/usbx", &mounts[0]},
      {"/dev/shm/a", &mounts[4]},
      {"/mnt/my stick/a b", &mounts[5]},
      {"relative/path", nullptr},
  };
  for (const auto& [path, expected] : cases) EXPECT_EQ(findMountHolding(mounts, path), expected) << path;
  EXPECT_EQ(findMountHolding({}, "/"), nullptr);
}

TEST(MountTableTest, NamesAndNetworkKindsOfFilesystems) {
  struct Case {
    std::string fstype, source, name;
    bool network;
  };
  const std::vector<Case> cases = {
      {"ext4", "/dev/sda1", "ext4", false},
      {"vfat", "/dev/sdb1", "FAT32", false},
      {"ntfs3", "/dev/sdb1", "NTFS", false},
      {"hfsplus", "/dev/sdb2", "Mac OS Extended", false},
      {"nfs4", "nas:/export/photos", "NFS (Network)", true},
      {"cifs", "//nas/share", "SMB (Network)", true},
      {"fuse.sshfs", "ann@host:/home/ann", "SSHFS (Network)", true},
      {"fuse.rclone", "gdrive:", "rclone (Network)", true},
      {"fuse", "https://cloud.example/remote.php/dav", "fuse", true},
      {"fuse.someremote", "ann@host:", "fuse.someremote", true},
      {"fuse.mergerfs", "/mnt/a:/mnt/b", "fuse.mergerfs", false},
      {"nfsd", "nfsd", "nfsd", false},
      {"weirdfs", "/dev/sde1", "weirdfs", false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(filesystemDisplayName(c.fstype), c.name) << c.fstype;
    EXPECT_EQ(isNetworkFilesystem(c.fstype, c.source), c.network) << c.fstype << " " << c.source;
  }
}

TEST(MountTableTest, OffersOnlyMountsAUserWouldCatalog) {
  struct Case {
    MountEntry mount;
    bool visible;
  };
  const std::vector<Case> cases = {
      {{"/", "overlay", "overlay"}, true},
      {{"/media/ann/STICK", "/dev/sdb1", "vfat"}, true},
      {{"/run/media/ann/Backup Disk", "/dev/sdc1", "exfat"}, true},
      {{"/home", "/dev/sda3", "btrfs"}, true},
      {{"/mnt/nas", "nas:/export", "nfs4"}, true},
      {{"/home/ann/server", "ann@host:", "fuse.sshfs"}, true},
      {{"/mnt/dav", "https://dav.example/files", "fuse"}, true},
      {{"/boot/efi", "/dev/nvme0n1p1", "vfat"}, false},
      {{"/snap/core22/1380", "/dev/loop3", "squashfs"}, false},
      {{"/var/lib/docker/overlay2/abc/merged", "overlay", "overlay"}, false},
      {{"/etc/hosts", "/dev/vda", "ext4"}, false},
      {{"/sys/fs/cgroup", "tmpfs", "tmpfs"}, false},
      {{"/run/user/1000/doc", "portal", "fuse.portal"}, false},
      {{"/run/mount/data", "/dev/sdb1", "ext4"}, false},
      {{"/media/ann/.hidden", "/dev/sde1", "ext4"}, false},
      {{"/mnt/App", "/home/ann/App.AppImage", "fuse.App"}, false},
  };
  for (const Case& c : cases) EXPECT_EQ(isUserVisibleMount(c.mount), c.visible) << c.mount.target;
}

}  // namespace
}  // namespace orrelin
