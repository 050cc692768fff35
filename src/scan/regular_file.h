// Opening a file for reading only when it is a regular file, so that a FIFO, a socket, a device node or a
// symbolic link met during a scan is never read (a FIFO would block, a device could be endless).
#pragma once

#include <filesystem>
#include <string>

namespace orrelin {

// An open read-only descriptor, closed when the object goes.
class RegularFile {
 public:
  // Opens `path` with O_NOFOLLOW | O_NONBLOCK and keeps it only when fstat reports a regular file; the
  // non-blocking flag is then cleared so reads behave normally. Check ok() before use.
  explicit RegularFile(const std::filesystem::path& path);
  ~RegularFile();
  RegularFile(const RegularFile&) = delete;
  RegularFile& operator=(const RegularFile&) = delete;

  bool ok() const { return m_fd >= 0; }
  int fd() const { return m_fd; }
  // The size from fstat, valid when ok().
  long long size() const { return m_size; }
  // A path that opens this very file again ("/proc/self/fd/N"), for libraries that take only a file name:
  // they then read the file that was checked, even if the name is swapped for a link meanwhile. Falls
  // back to the original path where /proc is not mounted.
  std::string reopenPath() const;

 private:
  std::filesystem::path m_path;
  int m_fd = -1;
  long long m_size = 0;
};

// True when `path` names a regular file that can be opened for reading (checked as RegularFile does).
bool isReadableRegularFile(const std::filesystem::path& path);

}  // namespace orrelin
