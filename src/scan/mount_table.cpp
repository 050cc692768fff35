// Reads the mount table through libmount and classifies its entries.
#include "scan/mount_table.h"

#include <libmount.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace orrelin {
namespace {

struct TableDeleter {
  void operator()(libmnt_table* table) const { mnt_unref_table(table); }
};
struct IterDeleter {
  void operator()(libmnt_iter* iter) const { mnt_free_iter(iter); }
};
using TablePtr = std::unique_ptr<libmnt_table, TableDeleter>;
using IterPtr = std::unique_ptr<libmnt_iter, IterDeleter>;

std::string orEmpty(const char* text) { return text != nullptr ? text : std::string(); }

// True when `path` is `folder` or lies inside it, comparing whole components so that "/media/usb2" is
// not taken for a path inside "/media/usb".
bool isWithin(std::string_view path, std::string_view folder) {
  if (folder == "/") return !path.empty() && path.front() == '/';
  if (!path.starts_with(folder)) return false;
  return path.size() == folder.size() || path[folder.size()] == '/';
}

// Readable names of the filesystems a desktop meets on its disks, sticks and shares.
constexpr std::array<std::pair<std::string_view, std::string_view>, 39> kDisplayNames = {{
    {"ext2", "ext2"},
    {"ext3", "ext3"},
    {"ext4", "ext4"},
    {"btrfs", "Btrfs"},
    {"xfs", "XFS"},
    {"zfs", "ZFS"},
    {"f2fs", "F2FS"},
    {"bcachefs", "Bcachefs"},
    {"jfs", "JFS"},
    {"reiserfs", "ReiserFS"},
    {"nilfs2", "NILFS2"},
    {"exfat", "ExFAT"},
    {"vfat", "FAT32"},
    {"msdos", "FAT"},
    {"ntfs", "NTFS"},
    {"ntfs3", "NTFS"},
    {"apfs", "APFS"},
    {"hfsplus", "Mac OS Extended"},
    {"hfs", "Mac OS Standard"},
    {"iso9660", "ISO 9660"},
    {"udf", "UDF"},
    {"squashfs", "SquashFS"},
    {"erofs", "EROFS"},
    {"tmpfs", "tmpfs"},
    {"overlay", "overlay"},
    {"nfs", "NFS (Network)"},
    {"nfs4", "NFS (Network)"},
    {"cifs", "SMB (Network)"},
    {"smb3", "SMB (Network)"},
    {"smbfs", "SMB (Network)"},
    {"fuse.sshfs", "SSHFS (Network)"},
    {"fuse.rclone", "rclone (Network)"},
    {"davfs", "WebDAV (Network)"},
    {"fuse.davfs2", "WebDAV (Network)"},
    {"afs", "AFS (Network)"},
    {"9p", "9P (Network)"},
    {"ceph", "Ceph (Network)"},
    {"glusterfs", "GlusterFS (Network)"},
    {"fuse.glusterfs", "GlusterFS (Network)"},
}};

// FUSE and kernel network filesystems that libmount's own list does not name.
constexpr std::array<std::string_view, 13> kMoreNetworkTypes = {
    "fuse.sshfs",     "fuse.rclone", "fuse.davfs2",   "davfs",          "fuse.s3fs",
    "fuse.gcsfuse",   "fuse.goofys", "fuse.smbnetfs", "fuse.curlftpfs", "fuse.glusterfs",
    "fuse.ceph-fuse", "ceph",        "lustre",
};

// Folders that hold the system's own mounts (boot and EFI partitions, snaps, container layers, bind-mounted
// /etc files, runtime state); a user never catalogs these.
constexpr std::array<std::string_view, 12> kSystemFolders = {
    "/boot", "/efi", "/snap", "/usr", "/var", "/etc", "/proc", "/sys", "/dev", "/run", "/tmp", "/nix",
};

// udisks mounts removable media under /run/media/$USER on many distributions, inside the excluded /run.
constexpr std::string_view kRemovableMediaFolder = "/run/media";

// A FUSE filesystem whose source is a URL ("https://host/dav") or an scp-style "user@host:path" reaches a
// server, whatever its helper is called.
bool hasRemoteSource(std::string_view source) {
  if (source.find("://") != std::string_view::npos) return true;
  const size_t colon = source.find(':');
  if (colon == std::string_view::npos || colon == 0) return false;
  // A local source with a colon names paths ("/mnt/a:/mnt/b" for mergerfs); a remote one starts with a host.
  return source.substr(0, colon).find('/') == std::string_view::npos;
}

bool isFuse(std::string_view fstype) { return fstype == "fuse" || fstype.starts_with("fuse."); }

bool isUnderHiddenFolder(std::string_view target) { return target.find("/.") != std::string_view::npos; }

}  // namespace

std::vector<MountEntry> readMountTable() {
  std::vector<MountEntry> mounts;
  TablePtr table(mnt_new_table());
  IterPtr iter(mnt_new_iter(MNT_ITER_FORWARD));
  if (!table || !iter) return mounts;
  // A null file name makes libmount read /proc/self/mountinfo, the table of this mount namespace.
  if (mnt_table_parse_mtab(table.get(), /*filename=*/nullptr) != 0) return mounts;
  libmnt_fs* fs = nullptr;
  while (mnt_table_next_fs(table.get(), iter.get(), &fs) == 0) {
    mounts.push_back(MountEntry{.target = orEmpty(mnt_fs_get_target(fs)),
                                .source = orEmpty(mnt_fs_get_source(fs)),
                                .fstype = orEmpty(mnt_fs_get_fstype(fs)),
                                .devno = mnt_fs_get_devno(fs)});
  }
  return mounts;
}

const MountEntry* findMountHolding(const std::vector<MountEntry>& mounts, std::string_view path) {
  const MountEntry* best = nullptr;
  for (const MountEntry& mount : mounts) {
    if (mount.target.empty() || !isWithin(path, mount.target)) continue;
    // ">=" so that of several mounts on one point the latest, which hides the others, is kept.
    if (best == nullptr || mount.target.size() >= best->target.size()) best = &mount;
  }
  return best;
}

std::string filesystemDisplayName(std::string_view fstype) {
  const auto* it = std::find_if(kDisplayNames.begin(), kDisplayNames.end(),
                                [&](const auto& entry) { return entry.first == fstype; });
  return std::string(it != kDisplayNames.end() ? it->second : fstype);
}

bool isNetworkFilesystem(std::string_view fstype, std::string_view source) {
  // Tested first because libmount counts a bare "fuse" as pseudo, and davfs2 mounts as just that.
  if (isFuse(fstype) && hasRemoteSource(source)) return true;
  const std::string type(fstype);
  // libmount counts every "nfs*" type as network, which would take in the server's own "nfsd" control
  // filesystem; a pseudo filesystem is never a remote volume.
  if (type.empty() || mnt_fstype_is_pseudofs(type.c_str()) != 0) return false;
  if (mnt_fstype_is_netfs(type.c_str()) != 0) return true;
  return std::find(kMoreNetworkTypes.begin(), kMoreNetworkTypes.end(), fstype) != kMoreNetworkTypes.end();
}

bool isUserVisibleMount(const MountEntry& mount) {
  // The root is always offered, even when it is an overlay or tmpfs, which libmount counts as pseudo.
  if (mount.target == "/") return true;
  if (mount.target.empty() || mount.fstype.empty()) return false;
  const bool network = isNetworkFilesystem(mount.fstype, mount.source);
  if (!network && mnt_fstype_is_pseudofs(mount.fstype.c_str()) != 0) return false;
  // Mounts under dot folders are hidden on purpose: AppImages under /tmp/.mount_*, caches, portals.
  if (isUnderHiddenFolder(mount.target)) return false;
  const bool systemFolder =
      std::any_of(kSystemFolders.begin(), kSystemFolders.end(),
                  [&](std::string_view folder) { return isWithin(mount.target, folder); });
  if (systemFolder && !isWithin(mount.target, kRemovableMediaFolder)) return false;
  return network || mount.source.starts_with("/dev/");
}

}  // namespace orrelin
