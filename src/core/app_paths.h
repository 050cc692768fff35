// Where the program keeps its data: the data folder and the files and folders inside it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace orrelin::AppPaths {

// Returns the user's home folder: $HOME when it is an absolute path, else the home of the password
// entry. Throws std::runtime_error when neither exists, since no data could be found or kept.
std::filesystem::path home();

// Returns the base of per-user data: $XDG_DATA_HOME when it is an absolute path (relative values are
// ignored, as the XDG base directory rules say), else home() / ".local/share".
std::filesystem::path dataHome();

// Returns the base of per-user settings: $XDG_CONFIG_HOME when absolute, else home() / ".config".
std::filesystem::path configHome();

// Returns base / name, after copying the folder of the program's former name to it when that is due: a
// name that begins with "TVRL " whose folder does not exist, while base / "Tavrel <rest>" does. The old
// folder is copied (links as links) and kept; a failed copy is ignored and whatever stands at the new
// path is used.
std::filesystem::path tvrlAppFolder(const std::filesystem::path& base, std::string_view name);

// Returns the data folder, dataHome() / "TVRL Orrelin", creating it with its parents if need be. Creation
// is attempted on every call and a failure is ignored: the path is returned all the same, and the first
// file operation in it reports the problem.
std::filesystem::path support();

// Returns support() / "Catalogs.sqlite", the catalog database; the file itself is not created.
std::filesystem::path database();

// Return support() / "Thumbnails", "Backups" and "Undo Logs", each created on every call as support() is.
std::filesystem::path thumbnails();
std::filesystem::path backups();
std::filesystem::path undoLogs();

// Returns thumbnails() / "<catalogID>/<fileID>.jpg"; the catalog's folder is left to the writer.
std::filesystem::path thumbnailFile(int64_t catalogID, int64_t fileID);

}  // namespace orrelin::AppPaths
