// The data folder, its legacy copy and its subfolders.
#include "core/app_paths.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace orrelin::AppPaths {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kFolderName = "TVRL Orrelin";
constexpr std::string_view kNewPrefix = "TVRL ";
constexpr std::string_view kOldPrefix = "Tavrel ";

// Returns the environment variable `name` when it holds an absolute path, else nothing.
std::optional<fs::path> absoluteEnv(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || value[0] != '/') return std::nullopt;
  return fs::path(value);
}

// Creates `folder` with its parents and returns it; a failure is left for the first real use to report.
fs::path ensured(fs::path folder) {
  std::error_code ignored;
  fs::create_directories(folder, ignored);
  return folder;
}

}  // namespace

fs::path home() {
  if (auto fromEnv = absoluteEnv("HOME")) return *fromEnv;
  long size = sysconf(_SC_GETPW_R_SIZE_MAX);
  std::vector<char> buffer(size > 0 ? static_cast<std::size_t>(size) : 16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr &&
      found->pw_dir != nullptr && found->pw_dir[0] == '/')
    return fs::path(found->pw_dir);
  throw std::runtime_error("Cannot find your home folder. Set HOME or XDG_DATA_HOME to an absolute path.");
}

fs::path dataHome() {
  if (auto fromEnv = absoluteEnv("XDG_DATA_HOME")) return *fromEnv;
  return home() / ".local" / "share";
}

fs::path configHome() {
  if (auto fromEnv = absoluteEnv("XDG_CONFIG_HOME")) return *fromEnv;
  return home() / ".config";
}

fs::path tvrlAppFolder(const fs::path& base, std::string_view name) {
  fs::path target = base / name;
  if (!name.starts_with(kNewPrefix)) return target;
  std::error_code ec;
  if (fs::exists(target, ec) || ec) return target;  // When in doubt, never copy over what may be there.
  fs::path legacy = base / (std::string(kOldPrefix) + std::string(name.substr(kNewPrefix.size())));
  if (!fs::exists(legacy, ec)) return target;
  // A copy, not a move: an older version of the program may still be installed and use its folder.
  fs::copy(legacy, target, fs::copy_options::recursive | fs::copy_options::copy_symlinks, ec);
  return target;
}

fs::path support() { return ensured(tvrlAppFolder(dataHome(), kFolderName)); }

fs::path database() { return support() / "Catalogs.sqlite"; }

fs::path thumbnails() { return ensured(support() / "Thumbnails"); }

fs::path backups() { return ensured(support() / "Backups"); }

fs::path undoLogs() { return ensured(support() / "Undo Logs"); }

fs::path thumbnailFile(int64_t catalogID, int64_t fileID) {
  return thumbnails() / std::to_string(catalogID) / (std::to_string(fileID) + ".jpg");
}

}  // namespace orrelin::AppPaths
