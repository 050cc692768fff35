// One search's parameters, one found record with its catalog's name, and the text rules a search relies on.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "core/date.h"
#include "scan/file_kind.h"
#include "store/records.h"
#include "store/sql_value.h"

namespace orrelin {

struct SearchQuery {
  // How `text` is matched. The raw value is also the mode's label and its form in a saved search.
  enum class Mode { contains, startsWith, exact, regex };
  static constexpr std::array<Mode, 4> allCases = {Mode::contains, Mode::startsWith, Mode::exact,
                                                   Mode::regex};

  std::string text;  // As typed; trimmed by the search.
  Mode mode = Mode::contains;
  bool searchMetadata = false;     // Widens contains and regex beyond the name.
  std::set<FileKind> kinds;        // Empty: every kind.
  std::optional<int64_t> minSize;  // Bytes, inclusive.
  std::optional<int64_t> maxSize;  // Bytes, inclusive.
  OptionalDate modifiedFrom;       // Inclusive.
  OptionalDate modifiedTo;         // Inclusive.
  std::string tag;                 // Substring of the stored tags; trimmed of blanks by the search.
  std::set<int64_t> catalogIDs;    // Empty: every catalog.
  bool includeFolders = true;
  int limit = 5000;

  bool operator==(const SearchQuery&) const = default;
};

// "Contains", "Starts With", "Exact Name" or "Regex".
std::string_view rawValue(SearchQuery::Mode mode);
// The mode whose raw value is `text` exactly, or nothing.
std::optional<SearchQuery::Mode> searchModeFromRaw(std::string_view text);

// One found record and the name of its catalog.
struct SearchHit {
  FileRecord file;
  std::string catalogName;

  bool operator==(const SearchHit&) const = default;

  int64_t id() const { return file.id; }
  const std::string& name() const { return file.name; }
  const std::string& path() const { return file.path; }
  int64_t size() const { return file.size; }
  std::string_view kindName() const { return file.kindName(); }
  double sortModified() const { return file.sortModified(); }
};

// The statement a search runs: its text and its values in the order of the text's parameters.
struct SearchStatement {
  std::string sql;
  SQLArgs args;
};

// Builds the statement for `query` against an index that uses the trigram tokenizer (`ftsTrigram`) or not.
// Does not look at whether a regular expression compiles; CatalogDB::search does that first.
SearchStatement searchStatement(const SearchQuery& query, bool ftsTrigram);

// The FTS5 query that finds `text` as one literal substring of the name, or of name, tags and metadata:
// a column filter and one quoted phrase with every double quote doubled.
std::string ftsPhraseQuery(std::string_view text, bool searchMetadata);

// `text` without white space and line breaks (Unicode White_Space) at either end.
std::string trimWhitespaceAndNewlines(std::string_view text);
// `text` without blanks (space separators and tabs) at either end; line breaks stay.
std::string trimBlanks(std::string_view text);
// True when `text` holds at least `count` user-perceived characters (extended grapheme clusters).
bool hasAtLeastGraphemes(std::string_view text, int count);

}  // namespace orrelin

template <>
struct std::hash<orrelin::SearchHit> {
  size_t operator()(const orrelin::SearchHit& hit) const noexcept;
};
