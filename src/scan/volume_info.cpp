// Reads a volume's facts from the mount table, statvfs, udev's /dev/disk links and sysfs.
#include "scan/volume_info.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>

#include "scan/mount_table.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;

// The name of "/" when its filesystem has no label; the same words GLib's file dialogs use for it. A
// hostname would tell machines apart, but it names the computer rather than the disk and would travel
// with every exported catalog.
constexpr std::string_view kRootName = "Filesystem root";

// Buses whose devices can be unplugged while the system runs.
constexpr std::array<std::string_view, 4> kHotPlugBuses = {"usb", "ieee1394", "firewire", "mmc"};

// device-mapper and md devices sit on other block devices: encrypted or RAID volumes on USB disks are
// found through their "slaves"; the bound keeps a malformed sysfs from sending the walk round in circles.
constexpr int kMaxStackDepth = 4;

std::string firstLine(const fs::path& file) {
  std::ifstream in(file);
  std::string line;
  std::getline(in, line);
  return line;
}

// The block device behind a mount, or nullopt for a filesystem that has none (network, tmpfs, FUSE).
std::optional<dev_t> blockDevice(const MountEntry& mount) {
  // The kernel's own number is right even when the source names a node that does not exist ("/dev/root").
  if (major(mount.devno) != 0) return mount.devno;
  // Btrfs reports an anonymous number for its subvolumes, so ask the device node instead.
  struct stat st {};
  if (mount.source.starts_with("/dev/") && ::stat(mount.source.c_str(), &st) == 0 && S_ISBLK(st.st_mode))
    return st.st_rdev;
  return std::nullopt;
}

// udev names links "My\x20Stick" for a label with a space; turn the escapes back into bytes.
std::string unescapeUdevName(std::string_view name) {
  std::string out;
  for (size_t i = 0; i < name.size(); ++i) {
    if (name[i] == '\\' && i + 3 < name.size() && name[i + 1] == 'x' &&
        std::isxdigit(static_cast<unsigned char>(name[i + 2])) != 0 &&
        std::isxdigit(static_cast<unsigned char>(name[i + 3])) != 0) {
      out.push_back(static_cast<char>(std::stoi(std::string(name.substr(i + 2, 2)), nullptr, 16)));
      i += 3;
    } else {
      out.push_back(name[i]);
    }
  }
  return out;
}

// Returns the name of the link in `folder` (/dev/disk/by-uuid, /dev/disk/by-label) that leads to `device`.
// Comparing device numbers, not paths, matches "/dev/mapper/x" with "../../dm-0" without resolving either.
std::string diskLinkName(const char* folder, dev_t device) {
  std::error_code ec;
  for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
    struct stat st {};
    if (::stat(it->path().c_str(), &st) == 0 && S_ISBLK(st.st_mode) && st.st_rdev == device)
      return unescapeUdevName(it->path().filename().string());
  }
  return {};
}

// A property udev recorded for a block device ("ID_FS_TYPE"); empty when udev's database is not there.
std::string udevProperty(dev_t device, std::string_view key) {
  std::ifstream in("/run/udev/data/b" + std::to_string(major(device)) + ":" + std::to_string(minor(device)));
  const std::string prefix = "E:" + std::string(key) + "=";
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with(prefix)) return line.substr(prefix.size());
  }
  return {};
}

// True when one sysfs device along the chain says it can be unplugged.
bool deviceIsHotPluggable(const fs::path& device) {
  // Block devices answer "1"; buses such as PCI behind a Thunderbolt port answer "removable".
  const std::string removable = firstLine(device / "removable");
  if (removable == "1" || removable == "removable") return true;
  std::error_code ec;
  const std::string bus = fs::read_symlink(device / "subsystem", ec).filename().string();
  if (ec || std::find(kHotPlugBuses.begin(), kHotPlugBuses.end(), bus) == kHotPlugBuses.end()) return false;
  // eMMC is soldered to the board though it shares the bus with SD cards.
  return !(bus == "mmc" && firstLine(device / "type") == "MMC");
}

// The walk up from a block device stops at the root of the device tree.
bool isWithinSysDevices(const fs::path& device) { return device.string().starts_with("/sys/devices/"); }

bool blockDeviceIsHotPluggable(const fs::path& sysBlock, int depth) {
  std::error_code ec;
  const fs::path resolved = fs::canonical(sysBlock, ec);
  if (ec) return false;
  for (fs::path device = resolved; isWithinSysDevices(device); device = device.parent_path()) {
    if (deviceIsHotPluggable(device)) return true;
  }
  if (depth >= kMaxStackDepth) return false;
  for (fs::directory_iterator it(resolved / "slaves", ec), end; !ec && it != end; it.increment(ec)) {
    if (blockDeviceIsHotPluggable(it->path(), depth + 1)) return true;
  }
  return false;
}

bool isRemovableDevice(dev_t device) {
  const fs::path sysBlock =
      "/sys/dev/block/" + std::to_string(major(device)) + ":" + std::to_string(minor(device));
  return blockDeviceIsHotPluggable(sysBlock, /*depth=*/0);
}

std::string mountPointName(const std::string& target) {
  if (target == "/") return std::string(kRootName);
  return fs::path(target).filename().string();
}

VolumeInfo describeMount(const MountEntry& mount) {
  VolumeInfo info;
  info.rootPath = mount.target;
  struct statvfs st {};
  if (::statvfs(mount.target.c_str(), &st) == 0) {
    // Some FUSE filesystems leave f_frsize at 0 and count in f_bsize units.
    const uint64_t unit = st.f_frsize != 0 ? st.f_frsize : st.f_bsize;
    info.capacity = static_cast<int64_t>(st.f_blocks * unit);
    info.free = static_cast<int64_t>(st.f_bavail * unit);
  }
  std::string label;
  std::string fstype = mount.fstype;
  if (const std::optional<dev_t> device = blockDevice(mount)) {
    info.uuid = diskLinkName("/dev/disk/by-uuid", *device);
    label = diskLinkName("/dev/disk/by-label", *device);
    info.isRemovable = isRemovableDevice(*device);
    // ntfs-3g and exfat-fuse both mount as "fuseblk"; udev's probe tells which one is on the disk.
    if (fstype == "fuseblk") {
      if (std::string probed = udevProperty(*device, "ID_FS_TYPE"); !probed.empty()) fstype = probed;
    }
  }
  info.format = filesystemDisplayName(fstype);
  info.isNetwork = isNetworkFilesystem(mount.fstype, mount.source);
  info.name = !label.empty() ? label : mountPointName(mount.target);
  return info;
}

VolumeInfo readFrom(const std::vector<MountEntry>& mounts, const std::string& path) {
  if (path.empty()) return {};
  std::error_code ec;
  // Symlinks and ".." must be gone before comparing with mount points, and a missing path has no volume.
  const fs::path resolved = fs::canonical(path, ec);
  if (ec) return {};
  const MountEntry* mount = findMountHolding(mounts, resolved.string());
  return mount != nullptr ? describeMount(*mount) : VolumeInfo{};
}

}  // namespace

VolumeInfo VolumeInfo::read(const std::string& path) {
  try {
    return readFrom(readMountTable(), path);
  } catch (...) {
    // Only an allocation can throw here; nothing learned is the documented answer.
    return {};
  }
}

std::vector<MountedVolume> VolumeInfo::mounted() {
  std::vector<MountedVolume> volumes;
  try {
    const std::vector<MountEntry> mounts = readMountTable();
    for (size_t i = 0; i < mounts.size(); ++i) {
      const MountEntry& mount = mounts[i];
      if (!isUserVisibleMount(mount)) continue;
      // Of mounts stacked on one point only the last is reachable; it is listed in its own place.
      const bool shadowed =
          std::any_of(mounts.begin() + static_cast<std::ptrdiff_t>(i) + 1, mounts.end(),
                      [&](const MountEntry& later) { return later.target == mount.target; });
      if (shadowed) continue;
      VolumeInfo info = readFrom(mounts, mount.target);
      // A mount point that resolves elsewhere is covered by a later mount over one of its parents.
      if (info.rootPath != mount.target) continue;
      volumes.push_back(MountedVolume{.url = mount.target, .info = std::move(info)});
    }
  } catch (...) {
    // As with read(): a list as far as it got rather than an exception out of a plain query.
  }
  return volumes;
}

}  // namespace orrelin
