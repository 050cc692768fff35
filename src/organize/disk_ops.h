// The few file-system operations that plans are carried out with, on stored paths (mapped back to the real
// bytes here). Moves never replace an existing item.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orrelin::DiskOps {

// True when something stands at `path`, a symbolic link included even when it leads nowhere.
bool exists(const std::string& path);
// True when `path` is a folder, following links.
bool isFolder(const std::string& path);
// True when both paths name the very same item (device and inode), not following a last link.
bool sameItem(const std::string& a, const std::string& b);
// The path with every symbolic link resolved; nullopt when it cannot be resolved (it does not exist, or a
// link leads nowhere or may not be read).
std::optional<std::string> realPath(const std::string& path);

// Renames `from` to `to` unless something stands at `to`. Uses the kernel's no-replace rename where the
// file system supports it, else looks before it moves. Returns 0 or the errno value.
int moveNoReplace(const std::string& from, const std::string& to);
// Makes one folder, its parent existing. Returns 0 or the errno value.
int makeFolder(const std::string& path);
// Makes a folder with whatever parents it lacks (mkdir -p). Returns 0 or the errno value.
int makeFolders(const std::string& path);
// The names in a folder (not "." and ".."); nullopt when it cannot be listed or is a link.
std::optional<std::vector<std::string>> folderEntries(const std::string& path);
// Removes a regular file or a link, never a folder. Returns 0 or the errno value.
int removeFile(const std::string& path);
// Removes an empty folder. Returns 0 or the errno value.
int removeEmptyFolder(const std::string& path);

// The text for an errno value, as shown to the user.
std::string describe(int error);

}  // namespace orrelin::DiskOps
