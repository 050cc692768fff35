// Folders and thumbnail copies for the inventory web site.
#include "exchange/web_files.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <system_error>

#include "core/name_mapping.h"
#include "organize/export_error.h"

namespace orrelin::web {

namespace fs = std::filesystem;

namespace {

// A path as the user reads it in a message: always valid UTF-8.
std::string shown(const fs::path& path) { return NameMapping::storedPath(path); }

std::string reason(int error) { return std::system_category().message(error); }

bool writeAll(int fd, const char* data, size_t size) {
  while (size > 0) {
    ssize_t n = ::write(fd, data, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    data += n;
    size -= static_cast<size_t>(n);
  }
  return true;
}

// Copies the whole of `from` to `to`, in the kernel where it can.
bool copyContents(int from, int to) {
  while (true) {
    ssize_t n = ::copy_file_range(from, nullptr, to, nullptr, 1 << 30, 0);
    if (n == 0) return true;
    if (n > 0) continue;
    if (errno == EINTR) continue;
    if (errno != EXDEV && errno != ENOSYS && errno != EINVAL && errno != EOPNOTSUPP) return false;
    break;  // Not between these files: read and write instead, from where the kernel stopped.
  }
  char block[1 << 16];
  while (true) {
    ssize_t n = ::read(from, block, sizeof block);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return false;
    if (n == 0) return true;
    if (!writeAll(to, block, static_cast<size_t>(n))) return false;
  }
}

// Opens `name` in `dir` as a folder without following a link; -1 when it is not one.
int openFolderAt(int dir, const char* name) {
  return ::openat(dir, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

}  // namespace

void createFolder(const fs::path& folder) {
  std::error_code ec;
  fs::create_directories(folder, ec);
  if (ec || !fs::is_directory(folder)) {
    int error = ec ? ec.value() : ENOTDIR;
    throw ExportError("Could not create the folder \u201C" + shown(folder) + "\u201D: " + reason(error) +
                      ".");
  }
}

ThumbnailCopier::ThumbnailCopier(const fs::path& thumbsRoot, const fs::path& siteRoot, int64_t catalogID)
    : m_siteRoot(siteRoot), m_catalogName(std::to_string(catalogID)) {
  // The thumbnails folder itself may be a link (a data folder moved to another disk); what lies inside
  // it may not.
  int root = ::open(thumbsRoot.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (root < 0) return;
  m_source = openFolderAt(root, m_catalogName.c_str());
  ::close(root);
}

ThumbnailCopier::~ThumbnailCopier() {
  if (m_source >= 0) ::close(m_source);
  if (m_target >= 0) ::close(m_target);
}

int ThumbnailCopier::targetFolder() {
  if (m_targetTried) return m_target;
  m_targetTried = true;
  // Failures to create are not errors: the open that follows tells whether the folder is usable.
  ::mkdir((m_siteRoot / "thumbs").c_str(), 0777);
  int thumbs = ::open((m_siteRoot / "thumbs").c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (thumbs < 0) return -1;
  ::mkdirat(thumbs, m_catalogName.c_str(), 0777);
  m_target = openFolderAt(thumbs, m_catalogName.c_str());
  ::close(thumbs);
  return m_target;
}

bool ThumbnailCopier::copy(int64_t fileID) {
  if (m_source < 0) return false;
  std::string name = std::to_string(fileID) + ".jpg";
  // O_NONBLOCK: a FIFO in a picture's place must not hang the export; it is refused below.
  int from = ::openat(m_source, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (from < 0) return false;
  struct stat facts;
  bool ok = ::fstat(from, &facts) == 0 && S_ISREG(facts.st_mode);
  int target = ok ? targetFolder() : -1;
  if (target < 0) {
    ::close(from);
    return false;
  }
  ::unlinkat(target, name.c_str(), 0);  // An earlier copy, or a link that stands in its place.
  int to = ::openat(target, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
  ok = to >= 0 && copyContents(from, to);
  if (to >= 0) ok = ::close(to) == 0 && ok;
  ::close(from);
  if (!ok && to >= 0) ::unlinkat(target, name.c_str(), 0);
  return ok;
}

}  // namespace orrelin::web
