// The naming problems that the export for Claude points out: names that break on other systems, look like
// accidents, or are too long to live with.
#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <map>
#include <memory>

#include "exchange/claude_exporter.h"
#include "organize/name_text.h"
#include "search/search_query.h"
#include "store/regex_cache.h"

namespace orrelin::ClaudeExporter {

namespace {

constexpr size_t kLongName = 121;  // Characters from which a name is too long.
constexpr size_t kLongPath = 256;  // Characters from which a path is too long.

// A number in parentheses at the end of the name, before an extension if there is one: "Song (2).mp3".
const std::shared_ptr<const icu::RegexPattern>& numberedCopyPattern() {
  static const std::shared_ptr<const icu::RegexPattern> pattern =
      NameText::compileRegex(R"(\(\d+\)(\.[a-z0-9]+)?$)");
  return pattern;
}

bool breaksElsewhere(const std::string& name) {
  for (char c : name) {
    if (static_cast<unsigned char>(c) < 32) return true;
    switch (c) {
      case '<':
      case '>':
      case ':':
      case '"':
      case '\\':
      case '|':
      case '?':
      case '*':
        return true;
      default:
        break;
    }
  }
  return false;
}

bool looksLikeCopy(const std::string& lowerName) {
  if (lowerName.find(" copy") != std::string::npos || lowerName.rfind("copy of", 0) == 0) return true;
  // Cheap test first: the pattern cannot match a name that does not end in ")" or an extension after one.
  if (lowerName.find(')') == std::string::npos) return false;
  const auto& pattern = numberedCopyPattern();
  return pattern && regexFindsMatch(pattern, lowerName);
}

}  // namespace

size_t characterCount(std::string_view text) {
  // Every cluster of plain ASCII text but CR LF is one byte; only other text needs the break iterator.
  bool ascii = true;
  for (char c : text) ascii = ascii && static_cast<unsigned char>(c) < 0x80 && c != '\r';
  if (ascii) return text.size();

  // A break iterator is costly to make and cannot be shared between threads: one per thread, reused.
  thread_local std::unique_ptr<icu::BreakIterator> iterator;
  UErrorCode status = U_ZERO_ERROR;
  if (!iterator) {
    iterator.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) {
      iterator.reset();
      return text.size();
    }
  }
  UText* utext = utext_openUTF8(nullptr, text.data(), static_cast<int64_t>(text.size()), &status);
  size_t count = text.size();
  if (U_SUCCESS(status)) {
    iterator->setText(utext, status);
    if (U_SUCCESS(status)) {
      count = 0;
      iterator->first();
      while (iterator->next() != icu::BreakIterator::DONE) ++count;
    }
    // The iterator keeps a shallow clone of the UText; point it at nothing before the text goes.
    iterator->setText(icu::UnicodeString());
  }
  utext_close(utext);
  return count;
}

std::vector<Problem> namingProblems(const std::vector<FileRecord>& files) {
  std::vector<Problem> problems;
  // Records of one folder by lower-cased name, the sets kept in order of first appearance.
  std::map<std::pair<int64_t, std::string>, size_t> caseSetIndex;
  std::vector<std::vector<const FileRecord*>> caseSets;

  for (const FileRecord& f : files) {
    const std::string& name = f.name;
    const std::string lower = NameText::lowercased(name);
    auto add = [&](const char* category, std::string detail) {
      problems.push_back({category, f.path, std::move(detail)});
    };
    if (trimWhitespaceAndNewlines(name) != name)
      add("Leading or trailing spaces", "\u201C" + name + "\u201D");
    if (breaksElsewhere(name)) add("Characters that break on Windows/web servers", name);
    if (name.find("  ") != std::string::npos) add("Double spaces", name);
    if (size_t n = characterCount(name); n >= kLongName) {
      add("Very long names (over 120 characters)", std::to_string(n) + " characters");
    }
    if (size_t n = characterCount(f.path); n >= kLongPath) {
      add("Very long paths (over 255 characters)", std::to_string(n) + " characters");
    }
    if (!f.isDir && f.ext.empty() && (name.empty() || name[0] != '.'))
      add("Files without an extension", name);
    if (looksLikeCopy(lower)) add("Names that look like accidental copies", name);
    if (f.isDir && f.itemCount == 0) add("Empty folders", "");

    auto [slot, fresh] = caseSetIndex.try_emplace({f.parentID, lower}, caseSets.size());
    if (fresh) caseSets.emplace_back();
    caseSets[slot->second].push_back(&f);
  }

  for (const auto& set : caseSets) {
    if (set.size() < 2) continue;
    std::string names;
    for (const FileRecord* f : set) names += (names.empty() ? "" : " / ") + f->name;
    problems.push_back({"Names that differ only by upper/lower case", set.front()->path, names});
  }
  return problems;
}

}  // namespace orrelin::ClaudeExporter
