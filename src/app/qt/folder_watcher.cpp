// The folder watcher: one inotify watch per folder of the tree, kept in step as folders come and go, and a
// timer that turns a batch of events into one report.
#include "app/qt/folder_watcher.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <cerrno>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/test_timing.h"
#include "scan/tree_walker.h"

namespace orrelin {

namespace {

// Directory-level events only: what was created, removed, renamed or written in a folder, and the folder's
// own end. Reads (IN_ACCESS, IN_OPEN, IN_CLOSE_NOWRITE) are left out, so the rescan that a report starts
// does not report itself.
constexpr uint32_t kTreeMask = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY | IN_ATTRIB |
                               IN_CLOSE_WRITE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
// Below the root no link is followed: a link to a folder elsewhere is an entry of the tree, not a part of it.
constexpr uint32_t kBelowRootMask = kTreeMask | IN_DONT_FOLLOW;
// The root's parent is watched only for the root's own name coming and going.
constexpr uint32_t kParentMask = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ONLYDIR;

// Reads of the event queue per wake-up; a tree written to without pause still lets the event loop breathe.
constexpr int kMaxReadsPerWakeUp = 64;

bool isDotOrDotDot(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

// Appends the names of the subfolders of the open folder `fd` to `out`. The type comes from the listing
// itself; only a filesystem that does not give it costs one fstatat per entry.
void listSubfolders(int fd, std::vector<std::string>& out) {
  alignas(8) char buffer[32 * 1024];
  for (;;) {
    const ssize_t n = getdents64(fd, buffer, sizeof(buffer));
    if (n == 0) return;
    if (n < 0) {
      if (errno == EINTR) continue;
      return;  // What was listed so far is watched; the rest of an unreadable folder is not.
    }
    for (ssize_t offset = 0; offset < n;) {
      const auto* d = reinterpret_cast<const struct dirent64*>(buffer + offset);
      offset += d->d_reclen;
      if (isDotOrDotDot(d->d_name)) continue;
      bool isFolder = d->d_type == DT_DIR;
      if (d->d_type == DT_UNKNOWN) {
        struct stat st {};
        isFolder = fstatat(fd, d->d_name, &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode);
      }
      if (isFolder) out.emplace_back(d->d_name);
    }
  }
}

// True for the filesystems that give a folder two links plus one for each subfolder (the ".." in it), so
// that a folder with two links holds no folder. Others (btrfs, FAT, NTFS, network shares) make no such
// promise, and every folder of theirs is listed.
bool countsSubfolderLinks(int dirFD) {
  struct statfs fs {};
  if (fstatfs(dirFD, &fs) != 0) return false;
  switch (static_cast<unsigned long>(fs.f_type)) {
    case EXT4_SUPER_MAGIC:  // Also ext2 and ext3.
    case TMPFS_MAGIC:
    case XFS_SUPER_MAGIC:
      return true;
    default:
      return false;
  }
}

std::string joinPath(const std::string& folder, const std::string& name) {
  return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

// True when `path` is `folder` or lies below it; both absolute and normal.
bool isAtOrBelow(const std::filesystem::path& path, const std::filesystem::path& folder) {
  const std::filesystem::path relative = path.lexically_relative(folder);
  return !relative.empty() && *relative.begin() != "..";
}

}  // namespace

struct FolderWatcher::Impl {
  struct Folder {
    int parent = -1;            // Watch of the folder that holds it; -1 for the root.
    std::string name;           // Its name in that folder, as bytes; empty for the root.
    std::vector<int> children;  // Watches of its subfolders.
  };

  // A folder or file left out of the watch. It is known by its path as the tree spells it (empty when it
  // lies outside the tree by its real path) and, when it existed at the start, by its device and inode,
  // which find it under any other path, such as a bind mount. Either way its last name must match: that
  // keeps the test to a string comparison for every other entry.
  struct Ignored {
    std::string path;
    std::string name;
    bool known = false;
    dev_t device = 0;
    ino_t inode = 0;
  };

  std::filesystem::path root;
  std::string rootText;  // root as a string, without a trailing "/".
  std::string rootName;  // The root's last component, looked for in the parent's events.
  std::function<void()> onChange;

  int fd = -1;
  int rootWatch = -1;                       // -1 while the root is gone.
  int parentWatch = -1;                     // -1 when the root has no parent or it cannot be watched.
  std::unordered_map<int, Folder> folders;  // By watch descriptor.
  bool limitReached = false;
  bool stopped = false;

  std::vector<Ignored> ignored;
  // The root lies in an ignored folder: nothing is watched and nothing reported.
  bool muted = false;
  // The ignored folders met in the tree: their names, by the watch of the folder that holds them. Events
  // of the holding folder that name them are no change.
  std::unordered_map<int, std::vector<std::string>> ignoredEntries;

  QSocketNotifier* notifier = nullptr;  // Owned by the watcher object, as is the timer.
  QTimer* timer = nullptr;

  bool watchRoot();
  void watchBelow(int top, std::string topPath, bool resync);
  void watchNewFolder(int parent, const std::string& name);
  void forget(int watch, bool removeWatches);
  void forgetAll();
  int childNamed(int parent, const std::string& name) const;
  std::string pathOf(int watch) const;
  void setIgnored(const std::vector<std::filesystem::path>& given);
  bool isIgnored(const std::string& path, const std::string& name) const;
  void noteIgnored(int parent, const std::string& name);
  bool isIgnoredEntry(const struct inotify_event& event, const std::string& name);
  bool handle(const struct inotify_event& event, bool& overflowed, bool& rootBack);
  void readEvents();
};

// Watches the root and everything below it. False when the root cannot be watched.
bool FolderWatcher::Impl::watchRoot() {
  // The root may be reached through a link (a user's shortcut to a drive), so it alone is followed.
  const int watch = inotify_add_watch(fd, rootText.c_str(), kTreeMask);
  if (watch < 0) {
    if (errno == ENOSPC) limitReached = true;
    return false;
  }
  rootWatch = watch;
  folders[watch] = Folder{};
  watchBelow(watch, rootText, /*resync=*/false);
  return true;
}

// Adds a watch for every folder below `top`, whose path is `topPath`. Folders already watched are not
// entered again, so a bind mount of a folder inside itself ends there; with `resync` those in their known
// place are entered too, to find what a lost event did not tell. Stops at the watch limit: every further
// folder would fail the same way.
void FolderWatcher::Impl::watchBelow(int top, std::string topPath, bool resync) {
  struct Pending {
    int watch;
    std::string path;
    dev_t parentDevice;
    bool countsLinks;  // The filesystem of its parent counts subfolder links.
  };
  std::vector<Pending> pending;
  pending.push_back({top, std::move(topPath), /*parentDevice=*/0, false});  // 0: the top is always checked.
  std::vector<std::string> names;
  bool full = false;
  while (!pending.empty() && !full) {
    Pending folder = std::move(pending.back());
    pending.pop_back();
    const int flags =
        O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | (folder.watch == rootWatch ? 0 : O_NOFOLLOW);
    const int dirFD = ::open(folder.path.c_str(), flags);
    if (dirFD < 0) continue;
    struct stat st {};
    bool countsLinks = folder.countsLinks;
    if (fstat(dirFD, &st) != 0) {
      ::close(dirFD);
      continue;
    }
    if (st.st_dev != folder.parentDevice) {
      // A pseudo filesystem mounted in the tree (a root of "/" holds /proc) is watched at its top only.
      if (isPseudoFilesystem(dirFD)) {
        ::close(dirFD);
        continue;
      }
      countsLinks = countsSubfolderLinks(dirFD);
    }
    names.clear();
    listSubfolders(dirFD, names);
    for (std::string& name : names) {
      std::string path = joinPath(folder.path, name);
      if (!ignored.empty() && isIgnored(path, name)) {
        noteIgnored(folder.watch, name);
        continue;
      }
      const int watch = inotify_add_watch(fd, path.c_str(), kBelowRootMask);
      if (watch < 0) {
        if (errno == ENOSPC) {
          limitReached = full = true;
          break;
        }
        continue;  // Gone, unreadable or a name too long to reach: its branch goes unwatched.
      }
      auto known = folders.find(watch);
      const bool isNew = known == folders.end();
      if (isNew) {
        folders[folder.watch].children.push_back(watch);
        folders.emplace(watch, Folder{folder.watch, name, {}});
      } else if (!resync || known->second.parent != folder.watch || known->second.name != name) {
        continue;  // Met again through a bind mount: already watched where it was met first.
      }
      // Most folders hold no folder. Where the link count says so, the folder is not even opened. Its
      // watch is already in place, so a subfolder made from now on is reported.
      struct stat child {};
      if (countsLinks && fstatat(dirFD, name.c_str(), &child, AT_SYMLINK_NOFOLLOW) == 0 &&
          child.st_dev == st.st_dev && child.st_nlink == 2) {
        continue;
      }
      pending.push_back({watch, std::move(path), st.st_dev, countsLinks});
    }
    ::close(dirFD);
  }
}

// A folder named `name` appeared in the watched folder `parent`: watch it and what it already holds, which
// may have been made before its watch was in place.
void FolderWatcher::Impl::watchNewFolder(int parent, const std::string& name) {
  std::string path = joinPath(pathOf(parent), name);
  if (!ignored.empty() && isIgnored(path, name)) {
    noteIgnored(parent, name);
    return;
  }
  const int watch = inotify_add_watch(fd, path.c_str(), kBelowRootMask);
  if (watch < 0) {
    if (errno == ENOSPC) limitReached = true;
    return;
  }
  if (folders.count(watch) != 0) return;  // Already watched: its event came twice, or a bind mount.
  folders[parent].children.push_back(watch);
  folders.emplace(watch, Folder{parent, name, {}});
  watchBelow(watch, std::move(path), /*resync=*/false);
}

// Drops the folder `watch` and everything below it; `removeWatches` when the kernel still holds them.
void FolderWatcher::Impl::forget(int watch, bool removeWatches) {
  auto it = folders.find(watch);
  if (it == folders.end()) return;
  if (it->second.parent >= 0) {
    auto parent = folders.find(it->second.parent);
    if (parent != folders.end()) std::erase(parent->second.children, watch);
  }
  std::vector<int> doomed{watch};
  while (!doomed.empty()) {
    const int w = doomed.back();
    doomed.pop_back();
    auto folder = folders.find(w);
    if (folder == folders.end()) continue;
    doomed.insert(doomed.end(), folder->second.children.begin(), folder->second.children.end());
    folders.erase(folder);
    ignoredEntries.erase(w);
    // Erased first: the IN_IGNORED this brings then names an unknown watch and is not a change.
    if (removeWatches) inotify_rm_watch(fd, w);
  }
  if (watch == rootWatch) rootWatch = -1;
}

void FolderWatcher::Impl::forgetAll() {
  for (const auto& [watch, folder] : folders) inotify_rm_watch(fd, watch);
  folders.clear();
  ignoredEntries.clear();
  rootWatch = -1;
}

int FolderWatcher::Impl::childNamed(int parent, const std::string& name) const {
  auto it = folders.find(parent);
  if (it == folders.end()) return -1;
  for (int child : it->second.children) {
    auto c = folders.find(child);
    if (c != folders.end() && c->second.name == name) return child;
  }
  return -1;
}

// The path of a watched folder, from the names on its way up to the root. Only the moved folder's own
// entry changes when a folder is renamed, so the paths below it stay right without any update.
std::string FolderWatcher::Impl::pathOf(int watch) const {
  std::vector<const std::string*> names;
  for (auto it = folders.find(watch); it != folders.end() && it->second.parent >= 0;
       it = folders.find(it->second.parent)) {
    names.push_back(&it->second.name);
  }
  std::string path = rootText;
  for (auto name = names.rbegin(); name != names.rend(); ++name) path = joinPath(path, **name);
  return path;
}

// True when the folder at `path` (named `name`) is one of the ignored folders.
bool FolderWatcher::Impl::isIgnored(const std::string& path, const std::string& name) const {
  for (const Ignored& folder : ignored) {
    if (folder.name != name) continue;
    if (folder.path == path) return true;
    struct stat st {};
    if (folder.known && lstat(path.c_str(), &st) == 0 && st.st_dev == folder.device &&
        st.st_ino == folder.inode) {
      return true;
    }
  }
  return false;
}

void FolderWatcher::Impl::noteIgnored(int parent, const std::string& name) {
  std::vector<std::string>& names = ignoredEntries[parent];
  if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
}

// True when the event is about an ignored entry itself, as an entry of the folder that holds it: a file
// written, or a folder that appeared, changed its attributes, or went (then it is forgotten, and whatever
// takes its name later is judged afresh).
bool FolderWatcher::Impl::isIgnoredEntry(const struct inotify_event& event, const std::string& name) {
  auto entries = ignoredEntries.find(event.wd);
  if (entries != ignoredEntries.end()) {
    auto it = std::find(entries->second.begin(), entries->second.end(), name);
    if (it != entries->second.end()) {
      if (event.mask & (IN_DELETE | IN_MOVED_FROM)) entries->second.erase(it);
      return true;
    }
  }
  const bool nameMatches =
      std::any_of(ignored.begin(), ignored.end(), [&](const Ignored& entry) { return entry.name == name; });
  if (!nameMatches || !isIgnored(joinPath(pathOf(event.wd), name), name)) return false;
  if ((event.mask & IN_ISDIR) && (event.mask & (IN_CREATE | IN_MOVED_TO))) noteIgnored(event.wd, name);
  return true;
}

// Applies one event to the set of watches. Returns true when it is a change below the root.
bool FolderWatcher::Impl::handle(const struct inotify_event& event, bool& overflowed, bool& rootBack) {
  if (event.mask & IN_Q_OVERFLOW) {
    overflowed = true;
    return true;
  }
  const std::string name = event.len > 0 ? std::string(event.name) : std::string();
  if (event.wd == parentWatch && event.wd != rootWatch) {
    if (event.mask & IN_IGNORED) parentWatch = -1;
    if (name != rootName) return false;
    if ((event.mask & (IN_DELETE | IN_MOVED_FROM)) && rootWatch >= 0) forgetAll();
    if ((event.mask & (IN_CREATE | IN_MOVED_TO)) && rootWatch < 0) rootBack = true;
    return true;
  }
  if (folders.count(event.wd) == 0) {
    // A late event of a folder already let go; its IN_IGNORED is the kernel's answer to our removal.
    return (event.mask & IN_IGNORED) == 0;
  }
  if (event.mask & IN_IGNORED) {
    forget(event.wd, /*removeWatches=*/true);  // Deleted or unmounted; anything still below goes too.
    return true;
  }
  if (!name.empty() && !ignored.empty() && isIgnoredEntry(event, name)) return false;
  if (event.wd == rootWatch && (event.mask & IN_MOVE_SELF)) {
    forgetAll();  // The tree moved away from the watched path; it counts as gone.
    return true;
  }
  if ((event.mask & IN_ISDIR) && !name.empty()) {
    if (event.mask & (IN_DELETE | IN_MOVED_FROM)) {
      // Moved or deleted: a folder moved out of the tree must not report from elsewhere, and one moved
      // within it is watched again under its new name by the IN_MOVED_TO that follows.
      const int child = childNamed(event.wd, name);
      if (child >= 0) forget(child, /*removeWatches=*/true);
    }
    if (event.mask & (IN_CREATE | IN_MOVED_TO)) watchNewFolder(event.wd, name);
  }
  return true;
}

void FolderWatcher::Impl::readEvents() {
  alignas(struct inotify_event) char buffer[64 * 1024];
  bool changed = false, overflowed = false, rootBack = false;
  for (int reads = 0; reads < kMaxReadsPerWakeUp && fd >= 0; ++reads) {
    const ssize_t n = ::read(fd, buffer, sizeof(buffer));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;  // EAGAIN: the queue is empty.
    for (ssize_t offset = 0; offset < n;) {
      const auto* event = reinterpret_cast<const struct inotify_event*>(buffer + offset);
      offset += static_cast<ssize_t>(sizeof(struct inotify_event) + event->len);
      changed |= handle(*event, overflowed, rootBack);
    }
  }
  if (rootBack) watchRoot();
  // Events were lost: folders made meanwhile may lack their watches, so the tree is walked again.
  if (overflowed && rootWatch >= 0) watchBelow(rootWatch, rootText, /*resync=*/true);
  if (changed && !muted && !timer->isActive()) timer->start(TestTiming::scaled(kLatency));
}

// Records the folders and files to leave out of the watch of the root, or mutes the watcher when the root
// lies in one of the folders.
void FolderWatcher::Impl::setIgnored(const std::vector<std::filesystem::path>& given) {
  namespace fs = std::filesystem;
  std::error_code ec;
  const fs::path canonicalRoot = fs::canonical(root, ec);
  if (ec) return;  // Then the root cannot be watched either.
  for (const fs::path& path : given) {
    if (path.empty()) continue;
    fs::path real = fs::weakly_canonical(fs::absolute(path, ec), ec);
    if (ec) continue;
    if (!real.has_filename()) real = real.parent_path();  // A trailing "/".
    if (isAtOrBelow(canonicalRoot, real)) {
      muted = true;
      return;
    }
    Ignored entry;
    entry.name = real.filename().native();
    if (isAtOrBelow(real, canonicalRoot))
      entry.path = joinPath(rootText, real.lexically_relative(canonicalRoot).native());
    struct stat st {};
    if (lstat(real.c_str(), &st) == 0) {
      entry.known = true;
      entry.device = st.st_dev;
      entry.inode = st.st_ino;
    }
    // An entry outside the tree that does not exist yet could only be met under a path unknown now.
    if (!entry.path.empty() || entry.known) ignored.push_back(std::move(entry));
  }
}

std::unique_ptr<FolderWatcher> FolderWatcher::create(const std::filesystem::path& root,
                                                     std::function<void()> onChange,
                                                     const std::vector<std::filesystem::path>& ignored) {
  auto impl = std::make_unique<Impl>();
  impl->root = root;
  impl->rootText = root.native();
  while (impl->rootText.size() > 1 && impl->rootText.ends_with('/')) impl->rootText.pop_back();
  if (impl->rootText.empty()) return nullptr;
  impl->onChange = std::move(onChange);
  impl->fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (impl->fd < 0) return nullptr;
  impl->setIgnored(ignored);
  // Every change of a muted tree would be the program's own: it is not watched at all. The watcher still
  // stands, so the caller does not try again and again to make one.
  if (impl->muted) return std::unique_ptr<FolderWatcher>(new FolderWatcher(std::move(impl)));

  const std::filesystem::path trimmed(impl->rootText);
  if (trimmed.has_relative_path() && trimmed.has_parent_path()) {
    impl->rootName = trimmed.filename().native();
    impl->parentWatch = inotify_add_watch(impl->fd, trimmed.parent_path().c_str(), kParentMask);
  }
  if (!impl->watchRoot()) {
    ::close(impl->fd);
    return nullptr;
  }
  return std::unique_ptr<FolderWatcher>(new FolderWatcher(std::move(impl)));
}

FolderWatcher::FolderWatcher(std::unique_ptr<Impl> impl) : m_impl(std::move(impl)) {
  Impl* d = m_impl.get();
  d->timer = new QTimer(this);
  d->timer->setSingleShot(true);
  connect(d->timer, &QTimer::timeout, this, [d] {
    if (d->stopped || !d->onChange) return;
    // A copy: the callback may stop or even destroy this watcher, and with it the stored function.
    std::function<void()> callback = d->onChange;
    callback();
  });
  d->notifier = new QSocketNotifier(d->fd, QSocketNotifier::Read, this);
  connect(d->notifier, &QSocketNotifier::activated, this, [d] {
    if (!d->stopped) d->readEvents();
  });
}

void FolderWatcher::stop() {
  Impl& d = *m_impl;
  if (d.stopped) return;
  d.stopped = true;
  d.timer->stop();
  d.notifier->setEnabled(false);  // Before the descriptor closes, so the event loop never polls a stale one.
  ::close(d.fd);                  // Closing the queue removes every watch at once.
  d.fd = -1;
  d.folders.clear();
  d.rootWatch = -1;
  d.parentWatch = -1;
}

FolderWatcher::~FolderWatcher() { stop(); }

const std::filesystem::path& FolderWatcher::path() const { return m_impl->root; }

std::size_t FolderWatcher::watchedFolderCount() const { return m_impl->folders.size(); }

bool FolderWatcher::watchLimitReached() const { return m_impl->limitReached; }

}  // namespace orrelin
