// Sets of files that are copies of one another, and the space a set wastes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/records.h"

namespace orrelin {

// When two files count as copies. The raw value is also the label on screen.
enum class DuplicateMode {
  nameSize,  // "Name + Size": equal name (case included) and equal size.
  hash,      // "SHA-256 Checksum": the same non-empty checksum.
  sizeOnly,  // "Size Only": equal size.
};

inline constexpr DuplicateMode kAllDuplicateModes[] = {DuplicateMode::nameSize, DuplicateMode::hash,
                                                       DuplicateMode::sizeOnly};

// Returns "Name + Size", "SHA-256 Checksum" or "Size Only".
std::string_view rawValue(DuplicateMode mode);
// Returns the mode whose raw value is `text`, or nothing.
std::optional<DuplicateMode> duplicateModeFromRaw(std::string_view text);

// One copy in a set.
struct DuplicateMember {
  FileRecord file;
  std::string catalogName;

  bool operator==(const DuplicateMember&) const = default;
  int64_t id() const { return file.id; }
};

// A set of at least two copies.
struct DuplicateGroup {
  std::string key;                       // Stable identity of the set; also its id.
  std::string name;                      // Title of the set.
  int64_t size = 0;                      // Bytes of one copy.
  std::vector<DuplicateMember> members;  // By catalog id, then path.

  bool operator==(const DuplicateGroup&) const = default;
  const std::string& id() const { return key; }

  // The bytes that deleting all copies but one would free: size × (members − 1), an empty set counting as
  // one member. An overflow is a fatal error.
  int64_t wasted() const;
};

// The sum of wasted() over `groups`. An overflow is a fatal error.
int64_t totalWasted(const std::vector<DuplicateGroup>& groups);

// Most sets one duplicates call returns unless told otherwise.
inline constexpr int kDefaultDuplicateLimit = 800;

}  // namespace orrelin
