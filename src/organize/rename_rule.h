// A batch-rename rule: how one name becomes a new one, and how a list of records becomes a rename plan.
// A rule never touches the disk; its plan goes through the same dry run, execution and undo as any plan.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "organize/organization_plan.h"
#include "store/records.h"

namespace orrelin {

struct RenameRule {
  // The case change; the raw texts are also the labels.
  enum class CaseMode { keep, lower, upper, title };

  std::string find;  // Nothing is replaced while it is empty.
  std::string replace;
  bool useRegex = false;  // `find` is an ICU regular expression and `replace` a "$1" template.
  std::string prefix;     // Put before the name.
  std::string suffix;     // Put after the name, before the extension.
  CaseMode caseMode = CaseMode::keep;
  bool numbering = false;  // Append a blank and start + position.
  int64_t start = 1;
  int digits = 3;             // Minimum digits of the number, taken within 1 and 6.
  bool keepExtension = true;  // The extension is left out of every step and put back unchanged.

  bool operator==(const RenameRule&) const = default;

  // The new name of `name` at position `index` of the batch. In this order: set the extension aside (when
  // kept and not empty); find and replace (a regular expression that does not compile is looked for as
  // literal text, and a literal find ignores case); change the case of that text alone; add prefix and
  // suffix; append the number; turn every "/" and ":" into "-"; put the extension back.
  std::string newName(std::string_view name, int64_t index) const;

  // A plan of renames for `files` in the given order, the position in the list giving each number. A
  // record whose new name is unchanged or empty is left out, its number used up all the same. Collisions
  // are left to the dry run.
  OrganizationPlan plan(const std::vector<FileRecord>& files) const;
};

// "Keep Case", "lowercase", "UPPERCASE", "Title Case".
std::string_view rawValue(RenameRule::CaseMode mode);
// The mode whose raw text is `text`, or nullopt.
std::optional<RenameRule::CaseMode> caseModeFromRaw(std::string_view text);

// The "/"-separated parent part of a relative path; empty at the top level.
std::string parentPath(std::string_view path);

}  // namespace orrelin
