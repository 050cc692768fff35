// A depth-first walk of a directory tree that yields each folder before its contents, with the facts of
// every entry from one statx() that never follows a symbolic link.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orrelin {

// One entry met by the walk. Names and paths are the bytes on disk.
struct WalkEntry {
  enum class Type : uint8_t { file, directory, symlink, special };

  std::string relative;  // Path below the root, "/" between names, no leading slash.
  std::string name;      // The last component of `relative`.
  Type type = Type::file;
  // False when the entry's facts could not be read (statx failed for another reason than the entry being
  // gone). It then counts as a plain file of size 0 with no dates.
  bool hasFacts = true;
  bool isPackage = false;  // A folder whose extension names a package ("app", "bundle", "pages", ...).
  bool hidden = false;     // The name begins with "." or is listed in its folder's ".hidden" file.
  int64_t size = 0;        // Bytes; 0 for folders.
  std::optional<double> modified;  // Seconds since 1970, nanoseconds kept.
  std::optional<double> created;   // Birth time, when the filesystem reports one.
  uint64_t device = 0, inode = 0;
  int depth = 0;  // 0 for the root's own children.

  bool isDirectory() const { return type == Type::directory; }
};

// Walks the tree under `root`, one entry per next(). Holds at most a small, fixed number of open
// descriptors however deep the tree goes, never follows a symbolic link, and does not enter a folder it
// has already entered higher up the same branch (bind-mount loops) nor the pseudo filesystems (/proc, /sys).
// Siblings come in byte order of their names. A folder that cannot be opened costs only its contents.
class TreeWalker {
 public:
  struct Options {
    bool skipHidden = false;           // Leave hidden entries out, with everything inside them.
    bool skipPackageContents = false;  // Yield packages but do not walk into them.
  };

  // Opens `root`; check ok() before walking.
  TreeWalker(std::filesystem::path root, Options options);
  ~TreeWalker();
  TreeWalker(const TreeWalker&) = delete;
  TreeWalker& operator=(const TreeWalker&) = delete;

  // True when the root could be opened as a directory.
  bool ok() const { return m_rootErrno == 0; }
  // The errno of opening the root, 0 when it opened.
  int rootError() const { return m_rootErrno; }

  // The next entry, or null at the end. The entry stays valid until the next call. A folder's contents
  // follow it unless skipDescendants() is called before the next call.
  const WalkEntry* next();
  // Do not walk into the folder that next() returned last.
  void skipDescendants() { m_skipPending = true; }

  // The tags of the entry returned last, from its "user.xdg.tags" attribute (comma-separated, read without
  // following links); none when it has no such attribute.
  std::vector<std::string> tags();
  // A path that reaches the entry returned last, for opening it: its full path, or, when that is longer
  // than the system accepts, a path through this process's descriptor of its folder.
  std::filesystem::path openablePath();
  // The full path of the entry returned last.
  std::filesystem::path fullPath() const;

  // Folders whose contents could not be listed so far.
  int64_t unreadableFolders() const { return m_unreadable; }

 private:
  struct Frame;

  void enter(const WalkEntry& dir);
  void readFolder(Frame& frame);
  int frameDescriptor(size_t index);
  void limitOpenDescriptors();

  const std::filesystem::path m_root;
  const Options m_options;
  int m_rootErrno = 0;
  std::vector<Frame> m_stack;
  const WalkEntry* m_last = nullptr;
  size_t m_lastFrame = 0;
  bool m_skipPending = false;
  int64_t m_unreadable = 0;
};

// True when the open folder `fd` is on a filesystem made of the kernel's own state (/proc, /sys, cgroups,
// ...): its trees are not files, and some never end.
bool isPseudoFilesystem(int fd);

// The extension of a file name, lower-cased (ASCII), without the dot; empty for none, and for a name whose
// only dot is its first character (".profile").
std::string fileExtension(std::string_view name);

}  // namespace orrelin
