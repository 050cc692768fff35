#include "organize/disk_ops.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

#include "core/name_mapping.h"

#ifndef RENAME_NOREPLACE
#define RENAME_NOREPLACE (1 << 0)
#endif

namespace orrelin::DiskOps {

namespace {

std::string disk(const std::string& stored) { return NameMapping::toDisk(stored); }

int renameNoReplace(const std::string& from, const std::string& to) {
#ifdef SYS_renameat2
  // Through syscall() so that a C library without the wrapper still gets the kernel's atomic check.
  return static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(),
                                    RENAME_NOREPLACE));
#else
  errno = ENOSYS;
  return -1;
#endif
}

}  // namespace

bool exists(const std::string& path) {
  struct stat st;
  return ::lstat(disk(path).c_str(), &st) == 0;
}

bool isFolder(const std::string& path) {
  struct stat st;
  return ::stat(disk(path).c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool sameItem(const std::string& a, const std::string& b) {
  struct stat sa, sb;
  return ::lstat(disk(a).c_str(), &sa) == 0 && ::lstat(disk(b).c_str(), &sb) == 0 && sa.st_dev == sb.st_dev &&
         sa.st_ino == sb.st_ino;
}

std::optional<std::string> realPath(const std::string& path) {
  std::unique_ptr<char, decltype(&::free)> real(::realpath(disk(path).c_str(), nullptr), &::free);
  if (!real) return std::nullopt;
  return NameMapping::fromDisk(real.get());
}

int moveNoReplace(const std::string& from, const std::string& to) {
  std::string f = disk(from), t = disk(to);
  if (renameNoReplace(f, t) == 0) return 0;
  int error = errno;
  // File systems without the no-replace flag answer EINVAL (some FUSE and network file systems), old
  // kernels ENOSYS. There the look before the move is all the protection there is.
  if (error != EINVAL && error != ENOSYS) return error;
  struct stat st;
  if (::lstat(t.c_str(), &st) == 0) return EEXIST;
  if (errno != ENOENT) return errno;
  return ::rename(f.c_str(), t.c_str()) == 0 ? 0 : errno;
}

int makeFolder(const std::string& path) { return ::mkdir(disk(path).c_str(), 0777) == 0 ? 0 : errno; }

int makeFolders(const std::string& path) {
  if (isFolder(path)) return 0;
  size_t slash = path.rfind('/');
  if (slash != std::string::npos && slash > 0) {
    if (int error = makeFolders(path.substr(0, slash))) return error;
  }
  int error = makeFolder(path);
  return error == EEXIST && isFolder(path) ? 0 : error;
}

std::optional<std::vector<std::string>> folderEntries(const std::string& path) {
  int fd = ::open(disk(path).c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (fd < 0) return std::nullopt;
  DIR* dir = ::fdopendir(fd);
  if (!dir) {
    ::close(fd);
    return std::nullopt;
  }
  std::vector<std::string> names;
  errno = 0;
  while (struct dirent* entry = ::readdir(dir)) {
    std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.push_back(NameMapping::fromDisk(name));
  }
  bool failed = errno != 0;
  ::closedir(dir);
  if (failed) return std::nullopt;
  return names;
}

int removeFile(const std::string& path) { return ::unlink(disk(path).c_str()) == 0 ? 0 : errno; }

int removeEmptyFolder(const std::string& path) { return ::rmdir(disk(path).c_str()) == 0 ? 0 : errno; }

std::string describe(int error) {
  switch (error) {
    case EXDEV:
      return "It is on another volume, and items are only moved within one volume";
    case EEXIST:
    case ENOTEMPTY:
      return "Something with that name is already there";
    case ENOENT:
      return "No such file or folder";
    case EACCES:
    case EPERM:
      return "Permission denied";
    case EROFS:
      return "The volume is read-only";
    default:
      break;
  }
  char buffer[256];
  return ::strerror_r(error, buffer, sizeof buffer);
}

}  // namespace orrelin::DiskOps
