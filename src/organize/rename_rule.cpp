// Rename rules: the text steps in their fixed order, and the plan they make of a list of records.
#include "organize/rename_rule.h"

#include <unicode/regex.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <memory>

#include "organize/name_text.h"

namespace orrelin {

namespace {

// A rule with its regular expression compiled once, for a whole batch of names.
class PreparedRule {
 public:
  explicit PreparedRule(const RenameRule& rule) : m_rule(rule) {
    if (rule.useRegex && !rule.find.empty()) m_regex = NameText::compileRegex(rule.find);
  }

  std::string newName(std::string_view name, int64_t index) const {
    const RenameRule& r = m_rule;
    std::string ext = NameText::pathExtension(name);
    bool setAside = r.keepExtension && !ext.empty();
    std::string text = setAside ? NameText::deletingPathExtension(name) : std::string(name);

    if (!r.find.empty()) {
      // A pattern that does not compile is looked for as plain text: a half-typed expression still works.
      if (!m_regex) {
        text = NameText::replacingIgnoringCase(text, r.find, r.replace);
      } else if (m_timeouts < kTimeoutsPerBatch) {
        // A match that times out leaves the text as it was; after a few, the pattern is given up for the
        // rest of the batch, so that a runaway expression costs a moment, not an hour.
        std::optional<std::string> replaced = NameText::regexReplace(*m_regex, text, r.replace);
        if (replaced) {
          text = std::move(*replaced);
        } else {
          ++m_timeouts;
        }
      }
    }
    switch (r.caseMode) {
      case RenameRule::CaseMode::keep:
        break;
      case RenameRule::CaseMode::lower:
        text = NameText::lowercased(text);
        break;
      case RenameRule::CaseMode::upper:
        text = NameText::uppercased(text);
        break;
      case RenameRule::CaseMode::title:
        text = NameText::capitalized(text);
        break;
    }
    std::string out = r.prefix + text + r.suffix;
    if (r.numbering) out += " " + number(index);
    std::replace(out.begin(), out.end(), '/', '-');
    std::replace(out.begin(), out.end(), ':', '-');
    if (setAside) out += "." + ext;
    return out;
  }

 private:
  std::string number(int64_t index) const {
    int width = std::clamp(m_rule.digits, 1, 6);
    // Saturates rather than overflows for absurd starts; such a number is only a name.
    int64_t value = 0;
    if (__builtin_add_overflow(m_rule.start, index, &value)) value = index < 0 ? INT64_MIN : INT64_MAX;
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%0*" PRId64, width, value);
    return buffer;
  }

  static constexpr int kTimeoutsPerBatch = 3;

  const RenameRule& m_rule;
  std::shared_ptr<const icu::RegexPattern> m_regex;
  mutable int m_timeouts = 0;
};

}  // namespace

std::string RenameRule::newName(std::string_view name, int64_t index) const {
  return PreparedRule(*this).newName(name, index);
}

OrganizationPlan RenameRule::plan(const std::vector<FileRecord>& files) const {
  PreparedRule prepared(*this);
  std::vector<PlanMove> moves;
  for (size_t i = 0; i < files.size(); ++i) {
    const FileRecord& record = files[i];
    std::string name = prepared.newName(record.name, static_cast<int64_t>(i));
    if (name.empty() || name == record.name) continue;
    std::string parent = parentPath(record.path);
    moves.push_back({record.path, parent.empty() ? name : parent + "/" + name});
  }
  OrganizationPlan plan;
  plan.format = std::string(OrganizationPlan::kFormat);
  plan.version = OrganizationPlan::kVersion;
  plan.description = "Batch rename";
  plan.newFolders = std::vector<std::string>{};
  plan.moves = std::move(moves);
  return plan;
}

std::string_view rawValue(RenameRule::CaseMode mode) {
  switch (mode) {
    case RenameRule::CaseMode::keep:
      return "Keep Case";
    case RenameRule::CaseMode::lower:
      return "lowercase";
    case RenameRule::CaseMode::upper:
      return "UPPERCASE";
    case RenameRule::CaseMode::title:
      return "Title Case";
  }
  return "Keep Case";
}

std::optional<RenameRule::CaseMode> caseModeFromRaw(std::string_view text) {
  for (auto mode : {RenameRule::CaseMode::keep, RenameRule::CaseMode::lower, RenameRule::CaseMode::upper,
                    RenameRule::CaseMode::title})
    if (rawValue(mode) == text) return mode;
  return std::nullopt;
}

std::string parentPath(std::string_view path) {
  // Trailing slashes are not part of the last component, as with the platform's path helpers.
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return {};
  if (slash == 0) return "/";
  return std::string(path.substr(0, slash));
}

}  // namespace orrelin
