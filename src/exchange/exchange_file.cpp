// Reading an exchange file whole, and writing one atomically through a temporary file beside it.
#include "exchange/exchange_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "core/name_mapping.h"
#include "organize/export_error.h"

namespace orrelin {

namespace fs = std::filesystem;

namespace {

std::string quoted(const fs::path& path) { return "\u201C" + NameMapping::storedPath(path) + "\u201D"; }

// The permission bits a new file gets from the process's umask. Read from /proc rather than set and
// restored with umask(2), which would race with files made by other threads meanwhile.
mode_t newFileMode() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("Umask:", 0) == 0)
      return 0666 & ~static_cast<mode_t>(std::strtoul(line.c_str() + 6, nullptr, 8));
  }
  return 0644;
}

}  // namespace

std::string readExchangeFile(const fs::path& path) {
  int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) throw ExportError("Could not read " + quoted(path) + ": " + std::strerror(errno) + ".");
  std::string text;
  char buffer[1 << 16];
  while (true) {
    ssize_t n = ::read(fd, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      int error = errno;
      ::close(fd);
      throw ExportError("Could not read " + quoted(path) + ": " + std::strerror(error) + ".");
    }
    if (n == 0) break;
    text.append(buffer, static_cast<size_t>(n));
  }
  ::close(fd);
  return text;
}

AtomicFile::AtomicFile(fs::path target) : m_target(std::move(target)) {
  fs::path folder = m_target.parent_path();
  if (folder.empty()) folder = ".";
  m_temp = (folder / ("." + m_target.filename().string() + ".XXXXXX")).string();
  m_fd = ::mkostemp(m_temp.data(), O_CLOEXEC);
  if (m_fd < 0) {
    int error = errno;
    m_temp.clear();
    throw ExportError("Could not write " + quoted(m_target) + ": " + std::strerror(error) + ".");
  }
  // Keep the permissions of the file being replaced; a new file gets what the umask allows.
  struct stat existing;
  mode_t mode = ::stat(m_target.c_str(), &existing) == 0 ? (existing.st_mode & 07777) : newFileMode();
  ::fchmod(m_fd, mode);
  m_buffer.reserve(kFlushSize);
}

AtomicFile::~AtomicFile() {
  if (m_fd >= 0) ::close(m_fd);
  if (!m_committed && !m_temp.empty()) ::unlink(m_temp.c_str());
}

void AtomicFile::write(std::string_view text) {
  m_buffer.append(text);
  if (m_buffer.size() >= kFlushSize) flush();
}

void AtomicFile::flush() {
  size_t done = 0;
  while (done < m_buffer.size()) {
    ssize_t n = ::write(m_fd, m_buffer.data() + done, m_buffer.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) fail(n < 0 ? errno : ENOSPC);
    done += static_cast<size_t>(n);
  }
  m_written += static_cast<int64_t>(m_buffer.size());
  m_buffer.clear();
}

void AtomicFile::commit() {
  flush();
  if (::fsync(m_fd) != 0) fail(errno);
  int fd = m_fd;
  m_fd = -1;
  if (::close(fd) != 0) fail(errno);
  if (::rename(m_temp.c_str(), m_target.c_str()) != 0) fail(errno);
  m_committed = true;
}

void writeFileAtomically(const fs::path& path, std::string_view text) {
  AtomicFile file(path);
  file.write(text);
  file.commit();
}

void AtomicFile::fail(int error) {
  throw ExportError("Could not write " + quoted(m_target) + ": " + std::strerror(error) + ".");
}

}  // namespace orrelin
