// SHA-256 of a file's contents.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace orrelin {

struct Hasher256 {
  // The lower-case hexadecimal digest (64 characters), or nothing when the file cannot be opened as a
  // regular file.
  static std::optional<std::string> hash(const std::filesystem::path& path);
};

}  // namespace orrelin
