// The Help menu's links, opened through the desktop's default applications.
#include "app/qt/help_links.h"

#include <QDesktopServices>
#include <QString>
#include <QUrl>
#include <fstream>
#include <string>
#include <system_error>

#include "core/app_info.h"

namespace orrelin::HelpLinks {

namespace fs = std::filesystem;

namespace {

constexpr const char* kInstalled = "../share/tvrl-orrelin/Help.html";
constexpr const char* kInSource = "data/Help.html";
constexpr std::string_view kSourceKey = "CMAKE_HOME_DIRECTORY:INTERNAL=";

bool isFile(const fs::path& path) {
  std::error_code ec;
  return fs::is_regular_file(path, ec);
}

// The source folder recorded in a build folder's CMakeCache.txt; empty when there is none.
fs::path sourceOfBuild(const fs::path& buildDir) {
  std::ifstream cache(buildDir / "CMakeCache.txt");
  for (std::string line; std::getline(cache, line);) {
    if (line.starts_with(kSourceKey)) return fs::path(line.substr(kSourceKey.size()));
  }
  return {};
}

}  // namespace

fs::path executableDir() {
  std::error_code ec;
  fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  return ec ? fs::path() : exe.parent_path();
}

std::optional<fs::path> helpFile(const fs::path& exeDir) {
  if (exeDir.empty()) return std::nullopt;
  if (fs::path installed = (exeDir / kInstalled).lexically_normal(); isFile(installed)) return installed;
  // Run from a build folder: the executable sits in it (the program) or a folder below (tests, tools).
  fs::path dir = exeDir;
  for (int up = 0; up < 3 && !dir.empty(); ++up, dir = dir.parent_path()) {
    fs::path source = sourceOfBuild(dir);
    if (!source.empty() && isFile(source / kInSource)) return source / kInSource;
    if (dir == dir.parent_path()) break;
  }
  if (fs::path beside = (exeDir / ".." / kInSource).lexically_normal(); isFile(beside)) return beside;
  return std::nullopt;
}

bool openHelp() {
  auto file = helpFile(executableDir());
  if (!file) return false;
  return QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(file->string())));
}

bool openWebsite() {
  QUrl url(QString::fromUtf8(AppInfo::website.data(), static_cast<qsizetype>(AppInfo::website.size())),
           QUrl::StrictMode);
  if (!url.isValid() || url.scheme().isEmpty()) return false;
  return QDesktopServices::openUrl(url);
}

}  // namespace orrelin::HelpLinks
