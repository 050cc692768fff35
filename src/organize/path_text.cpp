#include "organize/path_text.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <filesystem>
#include <system_error>
#include <vector>

#include "core/name_mapping.h"

namespace orrelin::PathText {

std::string standardize(std::string_view path) {
  std::string full;
  if (path.empty() || path.front() != '/') {
    std::error_code ec;
    std::filesystem::path cwd = std::filesystem::current_path(ec);
    full = ec ? "/" : NameMapping::storedPath(cwd);
    full += '/';
  }
  full.append(path);
  std::vector<std::string_view> parts;
  std::string_view rest = full;
  while (!rest.empty()) {
    size_t slash = rest.find('/');
    std::string_view part = rest.substr(0, slash);
    rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
    if (part.empty() || part == ".") continue;
    if (part == "..") {
      if (!parts.empty()) parts.pop_back();
      continue;
    }
    parts.push_back(part);
  }
  if (parts.empty()) return "/";
  std::string out;
  for (std::string_view part : parts) {
    out += '/';
    out.append(part);
  }
  return out;
}

bool isBelow(std::string_view path, std::string_view folder) {
  if (folder == "/") return path.size() > 1 && path.front() == '/';
  return path.size() > folder.size() + 1 && path.substr(0, folder.size()) == folder && path[folder.size()] == '/';
}

std::string parent(std::string_view path) {
  size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return ".";
  if (slash == 0) return "/";
  return std::string(path.substr(0, slash));
}

std::string lastComponent(std::string_view path) {
  size_t slash = path.rfind('/');
  return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::string lowercased(std::string_view text) {
  icu::UnicodeString s = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
  s.toLower(icu::Locale::getRoot());
  std::string out;
  s.toUTF8String(out);
  return out;
}

}  // namespace orrelin::PathText
