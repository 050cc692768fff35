// Searching the catalogs: one statement over `files`, matching names by the full-text index, LIKE, equality
// or a regular expression, with the filters of the query.
#include <string>
#include <vector>

#include "search/search_query.h"
#include "store/catalog_db.h"
#include "store/regex_cache.h"

namespace orrelin {

namespace {

constexpr const char* kRegexInvalid = "That regular expression is not valid.";
// The trigram index answers substrings of three characters or more; shorter ones cannot be looked up in it.
constexpr int kTrigramMinimum = 3;

// "?, ?, ?" for `count` parameters.
std::string placeholders(size_t count) {
  std::string out;
  for (size_t i = 0; i < count; ++i) out += i == 0 ? "?" : ", ?";
  return out;
}

}  // namespace

std::string CatalogDB::likeEscape(const std::string& text) {
  // The backslash first, so that the escapes added for % and _ are not escaped again.
  std::string out;
  out.reserve(text.size() + 8);
  for (char c : text) {
    if (c == '\\' || c == '%' || c == '_') out += '\\';
    out += c;
  }
  return out;
}

std::string ftsPhraseQuery(std::string_view text, bool searchMetadata) {
  std::string out = searchMetadata ? "{name tags meta} : \"" : "{name} : \"";
  for (char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
  return out;
}

SearchStatement searchStatement(const SearchQuery& query, bool ftsTrigram) {
  SearchStatement out;
  SQLArgs& args = out.args;
  std::vector<std::string> predicates;
  std::string join;

  const std::string text = trimWhitespaceAndNewlines(query.text);
  if (!text.empty()) {
    switch (query.mode) {
      case SearchQuery::Mode::contains:
        if (ftsTrigram && hasAtLeastGraphemes(text, kTrigramMinimum)) {
          join = "JOIN files_fts ON files_fts.rowid = f.id";
          predicates.push_back("files_fts MATCH ?");
          args.emplace_back(ftsPhraseQuery(text, query.searchMetadata));
        } else {
          std::string pattern = "%" + CatalogDB::likeEscape(text) + "%";
          if (query.searchMetadata) {
            predicates.push_back(
                "(f.name LIKE ? ESCAPE '\\' OR f.meta LIKE ? ESCAPE '\\' OR f.tags LIKE ? ESCAPE '\\')");
            for (int i = 0; i < 3; ++i) args.emplace_back(pattern);
          } else {
            predicates.push_back("f.name LIKE ? ESCAPE '\\'");
            args.emplace_back(pattern);
          }
        }
        break;
      case SearchQuery::Mode::startsWith:
        predicates.push_back("f.name LIKE ? ESCAPE '\\'");
        args.emplace_back(CatalogDB::likeEscape(text) + "%");
        break;
      case SearchQuery::Mode::exact:
        predicates.push_back("f.name = ? COLLATE NOCASE");
        args.emplace_back(text);
        break;
      case SearchQuery::Mode::regex:
        if (query.searchMetadata) {
          predicates.push_back("(f.name REGEXP ? OR f.meta REGEXP ?)");
          for (int i = 0; i < 2; ++i) args.emplace_back(text);
        } else {
          predicates.push_back("f.name REGEXP ?");
          args.emplace_back(text);
        }
        break;
    }
  }

  if (!query.kinds.empty()) {
    predicates.push_back("f.kind IN (" + placeholders(query.kinds.size()) + ")");
    for (FileKind kind : query.kinds) args.emplace_back(rawValue(kind));
  }
  if (!query.includeFolders) predicates.push_back("f.is_dir = 0");
  if (query.minSize) {
    predicates.push_back("f.size >= ?");
    args.emplace_back(*query.minSize);
  }
  if (query.maxSize) {
    predicates.push_back("f.size <= ?");
    args.emplace_back(*query.maxSize);
  }
  if (query.modifiedFrom) {
    predicates.push_back("f.modified >= ?");
    args.emplace_back(query.modifiedFrom->seconds);
  }
  if (query.modifiedTo) {
    predicates.push_back("f.modified <= ?");
    args.emplace_back(query.modifiedTo->seconds);
  }
  if (std::string tag = trimBlanks(query.tag); !tag.empty()) {
    predicates.push_back("f.tags LIKE ? ESCAPE '\\'");
    args.emplace_back("%" + CatalogDB::likeEscape(tag) + "%");
  }
  if (!query.catalogIDs.empty()) {
    predicates.push_back("f.catalog_id IN (" + placeholders(query.catalogIDs.size()) + ")");
    for (int64_t id : query.catalogIDs) args.emplace_back(id);
  }

  std::string& sql = out.sql;
  sql = std::string("SELECT ") + CatalogDB::fileColumns + ", c.name FROM files f " + join +
        " JOIN catalogs c ON c.id = f.catalog_id ";
  for (size_t i = 0; i < predicates.size(); ++i) sql += (i == 0 ? "WHERE " : " AND ") + predicates[i];
  sql += " ORDER BY f.name COLLATE NOCASE LIMIT " + std::to_string(query.limit);
  return out;
}

std::vector<SearchHit> CatalogDB::search(const SearchQuery& query) {
  if (query.mode == SearchQuery::Mode::regex) {
    std::string pattern = trimWhitespaceAndNewlines(query.text);
    // Compiled before any SQL runs, so a bad pattern fails the search rather than matching nothing.
    if (!pattern.empty() && cachedRegex(pattern) == nullptr) throw DBError::prepare(kRegexInvalid);
  }
  SearchStatement statement = searchStatement(query, m_ftsTrigram);
  return m_db.query(statement.sql, statement.args, [](const Statement& row) {
    return SearchHit{mapFile(row, 0), row.text(kFileColumnCount)};
  });
}

}  // namespace orrelin
