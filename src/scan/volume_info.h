// Facts about the mounted volume that holds a path, and the list of volumes a user would catalog.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orrelin {

struct MountedVolume;

// What a scan records about a volume. The empty value has empty texts, zeroes and false flags.
struct VolumeInfo {
  std::string name;      // The label, else the mount point's last component.
  std::string uuid;      // Filesystem UUID as text; empty when the volume has none.
  std::string format;    // Readable filesystem name: "ext4", "Btrfs", "ExFAT", "NFS (Network)", ...
  int64_t capacity = 0;  // Total bytes.
  int64_t free = 0;      // Bytes available to the user.
  bool isNetwork = false;
  bool isRemovable = false;
  std::string rootPath;  // The volume's mount point; empty when nothing could be learned.

  bool operator==(const VolumeInfo&) const = default;

  // Returns the facts of the volume on which `path` lies; the empty value when nothing can be learned.
  // Never fails.
  static VolumeInfo read(const std::string& path);
  // Returns the volumes a file manager would show: "/", block-device mounts outside system paths and
  // network mounts, in mount-table order; never pseudo filesystems.
  static std::vector<MountedVolume> mounted();
};

// A mount point with its facts.
struct MountedVolume {
  std::string url;  // Path of the mount point.
  VolumeInfo info;

  bool operator==(const MountedVolume&) const = default;
};

}  // namespace orrelin
