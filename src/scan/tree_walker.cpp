// The directory walk: listings through getdents64, facts through statx, an explicit stack of folders.
#include "scan/tree_walker.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <numeric>
#include <set>

#include "scan/content_type.h"

namespace orrelin {

namespace {

// Open folder descriptors kept along the current branch besides the root's. Deeper branches close the
// shallowest ones and reopen them, name by name from the nearest open ancestor, when the walk climbs
// back; so a tree thousands of levels deep needs no more descriptors than a shallow one.
constexpr size_t kMaxOpenFrames = 32;
// A ".hidden" file larger than this is not a list of names.
constexpr size_t kMaxHiddenListBytes = 1 << 20;
constexpr const char* kTagsAttribute = "user.xdg.tags";

constexpr unsigned kStatxMask = STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME | STATX_BTIME | STATX_INO;

double seconds(const struct statx_timestamp& t) {
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}

uint64_t deviceOf(const struct statx& st) { return makedev(st.stx_dev_major, st.stx_dev_minor); }

int openFolderAt(int dirfd, const char* name) {
  return ::openat(dirfd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
}

// The names listed in a folder's ".hidden" file, one per line. The file is read only when it is a regular
// file, so a FIFO of that name cannot block the walk.
std::set<std::string> readHiddenList(int dirfd) {
  std::set<std::string> names;
  int fd = ::openat(dirfd, ".hidden", O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return names;
  struct stat st {};
  if (fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && static_cast<size_t>(st.st_size) <= kMaxHiddenListBytes) {
    std::string text(static_cast<size_t>(st.st_size), '\0');
    ssize_t got = ::read(fd, text.data(), text.size());
    text.resize(got > 0 ? static_cast<size_t>(got) : 0);
    size_t start = 0;
    while (start < text.size()) {
      size_t end = text.find('\n', start);
      if (end == std::string::npos) end = text.size();
      std::string line = text.substr(start, end - start);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (!line.empty()) names.insert(std::move(line));
      start = end + 1;
    }
  }
  ::close(fd);
  return names;
}

struct RawName {
  std::string name;
  uint64_t inode;
  unsigned char type;
};

// Every name in the folder but "." and "..". Returns false when the listing failed part way.
bool listFolder(int fd, std::vector<RawName>& out) {
  alignas(8) char buffer[32 * 1024];
  for (;;) {
    ssize_t n = getdents64(fd, buffer, sizeof(buffer));
    if (n == 0) return true;
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    for (ssize_t offset = 0; offset < n;) {
      const auto* d = reinterpret_cast<const struct dirent64*>(buffer + offset);
      offset += d->d_reclen;
      const char* name = d->d_name;
      if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'))) continue;
      out.push_back({name, d->d_ino, d->d_type});
    }
  }
}

}  // namespace

bool isPseudoFilesystem(int fd) {
  struct statfs fs {};
  if (fstatfs(fd, &fs) != 0) return false;
  static constexpr std::array<unsigned long, 14> kPseudo = {
      PROC_SUPER_MAGIC,  SYSFS_MAGIC,    CGROUP_SUPER_MAGIC, CGROUP2_SUPER_MAGIC, DEBUGFS_MAGIC,
      TRACEFS_MAGIC,     SECURITYFS_MAGIC, DEVPTS_SUPER_MAGIC, BPF_FS_MAGIC,      PSTOREFS_MAGIC,
      0x62656570 /* configfs */, 0x65735543 /* fusectl */, 0x19800202 /* mqueue */, BINFMTFS_MAGIC,
  };
  const auto type = static_cast<unsigned long>(fs.f_type);
  return std::find(kPseudo.begin(), kPseudo.end(), type) != kPseudo.end();
}

struct TreeWalker::Frame {
  int fd = -1;
  uint64_t device = 0, inode = 0;
  std::string name;      // The folder's name in its parent; empty for the root.
  std::string relative;  // Its path below the root; empty for the root.
  int depth = 0;         // Depth of its children.
  std::vector<WalkEntry> entries;
  size_t next = 0;
};

TreeWalker::TreeWalker(std::filesystem::path root, Options options)
    : m_root(std::move(root)), m_options(options) {
  // The root itself may be reached through a link (a user's shortcut to a drive); below it none is followed.
  int fd = ::open(m_root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
  struct stat st {};
  if (fd < 0 || fstat(fd, &st) != 0) {
    m_rootErrno = errno != 0 ? errno : EIO;
    if (fd >= 0) ::close(fd);
    return;
  }
  Frame frame;
  frame.fd = fd;
  frame.device = st.st_dev;
  frame.inode = st.st_ino;
  m_stack.push_back(std::move(frame));
  readFolder(m_stack.back());
}

TreeWalker::~TreeWalker() {
  for (Frame& frame : m_stack)
    if (frame.fd >= 0) ::close(frame.fd);
}

void TreeWalker::readFolder(Frame& frame) {
  std::vector<RawName> names;
  if (!listFolder(frame.fd, names)) ++m_unreadable;
  std::set<std::string> hiddenList;
  if (std::any_of(names.begin(), names.end(), [](const RawName& n) { return n.name == ".hidden"; }))
    hiddenList = readHiddenList(frame.fd);

  // statx in inode order: on a spinning disk that reads the inode table front to back.
  std::vector<size_t> order(names.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&](size_t a, size_t b) { return names[a].inode < names[b].inode; });

  frame.entries.reserve(names.size());
  for (size_t i : order) {
    RawName& raw = names[i];
    WalkEntry e;
    e.hidden = raw.name[0] == '.' || hiddenList.count(raw.name) != 0;
    if (e.hidden && m_options.skipHidden) continue;
    struct statx st {};
    if (statx(frame.fd, raw.name.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, kStatxMask, &st) != 0) {
      if (errno == ENOENT) continue;  // Gone since the listing: nothing left to catalog.
      e.hasFacts = false;
      e.type = raw.type == DT_LNK ? WalkEntry::Type::symlink : WalkEntry::Type::file;
    } else {
      switch (st.stx_mode & S_IFMT) {
        case S_IFDIR: e.type = WalkEntry::Type::directory; break;
        case S_IFREG: e.type = WalkEntry::Type::file; break;
        case S_IFLNK: e.type = WalkEntry::Type::symlink; break;
        default: e.type = WalkEntry::Type::special; break;
      }
      e.size = e.type == WalkEntry::Type::directory ? 0 : static_cast<int64_t>(st.stx_size);
      e.modified = seconds(st.stx_mtime);
      if (st.stx_mask & STATX_BTIME) e.created = seconds(st.stx_btime);
      e.device = deviceOf(st);
      e.inode = st.stx_ino;
    }
    e.isPackage = e.type == WalkEntry::Type::directory && isPackageExtension(fileExtension(raw.name));
    e.depth = frame.depth;
    e.relative = frame.relative.empty() ? raw.name : frame.relative + "/" + raw.name;
    e.name = std::move(raw.name);
    frame.entries.push_back(std::move(e));
  }
  std::sort(frame.entries.begin(), frame.entries.end(),
            [](const WalkEntry& a, const WalkEntry& b) { return a.name < b.name; });
}

void TreeWalker::enter(const WalkEntry& dir) {
  const size_t parentIndex = m_stack.size() - 1;
  for (const Frame& frame : m_stack)
    if (frame.device == dir.device && frame.inode == dir.inode) return;  // A loop through a bind mount.
  int parentFD = frameDescriptor(parentIndex);
  int fd = parentFD >= 0 ? openFolderAt(parentFD, dir.name.c_str()) : -1;
  if (fd < 0) {
    ++m_unreadable;
    return;
  }
  struct stat st {};
  if (fstat(fd, &st) != 0 || (st.st_dev != m_stack[parentIndex].device && isPseudoFilesystem(fd))) {
    ::close(fd);
    return;
  }
  Frame frame;
  frame.fd = fd;
  frame.device = st.st_dev;
  frame.inode = st.st_ino;
  frame.name = dir.name;
  frame.relative = dir.relative;
  frame.depth = dir.depth + 1;
  m_stack.push_back(std::move(frame));
  readFolder(m_stack.back());
  limitOpenDescriptors();
}

const WalkEntry* TreeWalker::next() {
  if (m_last != nullptr && m_last->isDirectory() && !m_skipPending &&
      !(m_options.skipPackageContents && m_last->isPackage)) {
    enter(*m_last);
  }
  m_skipPending = false;
  m_last = nullptr;
  while (!m_stack.empty()) {
    Frame& top = m_stack.back();
    if (top.next < top.entries.size()) {
      m_lastFrame = m_stack.size() - 1;
      m_last = &top.entries[top.next++];
      return m_last;
    }
    if (top.fd >= 0) ::close(top.fd);
    m_stack.pop_back();
  }
  return nullptr;
}

int TreeWalker::frameDescriptor(size_t index) {
  if (m_stack[index].fd >= 0) return m_stack[index].fd;
  size_t open = index;
  while (m_stack[open].fd < 0) --open;  // The root's descriptor stays open for the whole walk.
  for (size_t k = open + 1; k <= index; ++k) {
    Frame& frame = m_stack[k];
    int fd = openFolderAt(m_stack[k - 1].fd, frame.name.c_str());
    struct stat st {};
    if (fd >= 0 && (fstat(fd, &st) != 0 || st.st_dev != frame.device || st.st_ino != frame.inode)) {
      ::close(fd);  // Replaced by another folder since it was walked into.
      fd = -1;
    }
    if (fd < 0) return -1;
    frame.fd = fd;
  }
  limitOpenDescriptors();
  return m_stack[index].fd;
}

void TreeWalker::limitOpenDescriptors() {
  size_t open = 0;
  for (size_t i = 1; i < m_stack.size(); ++i) open += m_stack[i].fd >= 0;
  for (size_t i = 1; i < m_stack.size() && open > kMaxOpenFrames; ++i) {
    if (m_stack[i].fd < 0) continue;
    ::close(m_stack[i].fd);
    m_stack[i].fd = -1;
    --open;
  }
}

std::filesystem::path TreeWalker::fullPath() const {
  return m_last == nullptr ? m_root : m_root / m_last->relative;
}

std::filesystem::path TreeWalker::openablePath() {
  std::filesystem::path full = fullPath();
  if (m_last == nullptr || full.native().size() < PATH_MAX) return full;
  // Through the folder's descriptor the path stays short at any depth; only the last name is looked up.
  int fd = frameDescriptor(m_lastFrame);
  if (fd < 0) return full;
  return "/proc/self/fd/" + std::to_string(fd) + "/" + m_last->name;
}

std::vector<std::string> TreeWalker::tags() {
  std::vector<std::string> out;
  if (m_last == nullptr || m_last->type == WalkEntry::Type::symlink) return out;
  const std::filesystem::path path = openablePath();
  char buffer[4096];
  ssize_t n = lgetxattr(path.c_str(), kTagsAttribute, buffer, sizeof(buffer));
  std::string text;
  if (n >= 0) {
    text.assign(buffer, static_cast<size_t>(n));
  } else if (errno == ERANGE) {
    ssize_t size = lgetxattr(path.c_str(), kTagsAttribute, nullptr, 0);
    if (size <= 0) return out;
    text.resize(static_cast<size_t>(size));
    n = lgetxattr(path.c_str(), kTagsAttribute, text.data(), text.size());
    if (n < 0) return out;
    text.resize(static_cast<size_t>(n));
  } else {
    return out;
  }
  while (!text.empty() && text.back() == '\0') text.pop_back();
  size_t start = 0;
  for (;;) {
    size_t end = std::min(text.find(',', start), text.size());
    std::string_view tag(text.data() + start, end - start);
    while (!tag.empty() && (tag.front() == ' ' || tag.front() == '\t')) tag.remove_prefix(1);
    while (!tag.empty() && (tag.back() == ' ' || tag.back() == '\t')) tag.remove_suffix(1);
    if (!tag.empty()) out.emplace_back(tag);
    if (end == text.size()) break;
    start = end + 1;
  }
  return out;
}

std::string fileExtension(std::string_view name) {
  const size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size()) return {};
  std::string ext(name.substr(dot + 1));
  for (char& c : ext)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  return ext;
}

}  // namespace orrelin
