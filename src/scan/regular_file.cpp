// Read-only descriptors of regular files only.
#include "scan/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orrelin {

RegularFile::RegularFile(const std::filesystem::path& path) : m_path(path) {
  int fd = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return;
  struct stat st {};
  if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    ::close(fd);
    return;
  }
  // O_NONBLOCK only guarded the open itself (a FIFO without a writer would block there).
  int flags = ::fcntl(fd, F_GETFL);
  if (flags >= 0) ::fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
  m_fd = fd;
  m_size = st.st_size;
}

RegularFile::~RegularFile() {
  if (m_fd >= 0) ::close(m_fd);
}

std::string RegularFile::reopenPath() const {
  std::string proc = "/proc/self/fd/" + std::to_string(m_fd);
  if (::access(proc.c_str(), F_OK) == 0) return proc;
  return m_path.string();
}

bool isReadableRegularFile(const std::filesystem::path& path) { return RegularFile(path).ok(); }

}  // namespace orrelin
