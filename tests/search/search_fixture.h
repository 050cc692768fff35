// A real catalog database in a temporary folder, with rows written the way the scanner writes them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "scan/scan_statements.h"
#include "scan/volume_info.h"
#include "search/search_query.h"
#include "store/catalog_db.h"
#include "support/temp_dir.h"

namespace orrelin::testing {

// The columns of a row that searches look at; the rest take the scanner's empty values.
struct Row {
  std::string path;  // The name is its last component.
  int64_t size = 0;
  std::string kind = "Other";
  OptionalDate modified = Date{1'600'000'000};
  std::string tags;
  std::string meta;
  bool isDir = false;
  int64_t parentID = 0;
};

inline int64_t addRow(CatalogDB& store, int64_t catalogID, const Row& row) {
  size_t slash = row.path.rfind('/');
  std::string name = slash == std::string::npos ? row.path : row.path.substr(slash + 1);
  store.db().run(scan_sql::kInsertFile, {catalogID,
                                         row.parentID,
                                         row.path,
                                         name,
                                         row.isDir,
                                         row.size,
                                         row.isDir ? "Folder" : row.kind,
                                         "",
                                         "",
                                         row.modified,
                                         row.modified,
                                         row.tags,
                                         0,
                                         false,
                                         "",
                                         false,
                                         0.0,
                                         0,
                                         0,
                                         row.meta});
  return store.db().lastInsertID();
}

inline int64_t addCatalog(CatalogDB& store, const std::string& name) {
  return store.insertCatalog(name, "/media/" + name, VolumeInfo{}, false, std::nullopt, false);
}

// The names of the hits, in order.
inline std::vector<std::string> names(const std::vector<SearchHit>& hits) {
  std::vector<std::string> out;
  for (const SearchHit& hit : hits) out.push_back(hit.file.name);
  return out;
}

inline SearchQuery textQuery(const std::string& text, SearchQuery::Mode mode = SearchQuery::Mode::contains,
                             bool searchMetadata = false) {
  SearchQuery query;
  query.text = text;
  query.mode = mode;
  query.searchMetadata = searchMetadata;
  return query;
}

}  // namespace orrelin::testing
