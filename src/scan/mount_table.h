// The kernel's mount table, and the rules that read a mount as a volume a user would recognise.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

namespace orrelin {

// One line of the mount table.
struct MountEntry {
  std::string target;  // Mount point, unescaped: "/media/ann/My Stick".
  std::string source;  // "/dev/sdb1", "nas:/export", "ann@host:", "tmpfs", ...
  std::string fstype;  // Kernel type: "ext4", "vfat", "nfs4", "fuse.sshfs", ...
  dev_t devno = 0;     // The st_dev of files on the mount; an anonymous 0:N for non-block filesystems.

  bool operator==(const MountEntry&) const = default;
};

// Returns this process's mounts in mount-table order (oldest first); empty when the table cannot be read.
std::vector<MountEntry> readMountTable();

// Returns the deepest mount whose mount point contains `path`, which must be absolute and already
// resolved (no symlinks, no "..").  When several mounts are stacked on one point the last one, the one
// that is visible, wins.  Returns nullptr when no mount contains the path.
const MountEntry* findMountHolding(const std::vector<MountEntry>& mounts, std::string_view path);

// Returns a readable name for a kernel filesystem type ("vfat" gives "FAT32", "cifs" gives
// "SMB (Network)"); an unknown type is returned as it is.
std::string filesystemDisplayName(std::string_view fstype);

// Returns true when a filesystem of this type and source lives on another machine: the kernel's network
// filesystems and the FUSE ones that reach a server (sshfs, rclone, WebDAV, ...).
bool isNetworkFilesystem(std::string_view fstype, std::string_view source);

// Returns true when a file manager would offer this mount as a volume: "/", block-device mounts outside
// the system's own folders, and network mounts; never a pseudo filesystem or a mount under a hidden folder.
bool isUserVisibleMount(const MountEntry& mount);

}  // namespace orrelin
