// Fills a real catalog database for the analysis tests the way a scan does: the scanner's insert statement,
// folders before their contents, then the roll-up of folder sizes.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "scan/scan_statements.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"

namespace orrelin::testing {

// One row to write. Folders of the path that were not written yet are made on the way.
struct Entry {
  std::string path;
  int64_t size = 0;
  std::string sha256;
  OptionalDate modified;
  bool isDir = false;
  std::string kind;  // Empty: "Folder" for folders, else "Other".
};

class LibraryBuilder {
 public:
  explicit LibraryBuilder(CatalogDB& store) : m_store(store) {}

  int64_t addCatalog(const std::string& name, const std::string& rootPath = "/media/drive") {
    VolumeInfo volume;
    volume.name = name;
    return m_store.insertCatalog(name, rootPath, volume, false, std::nullopt, false);
  }

  // Writes `entry` into `catalogID` and returns its id.
  int64_t add(int64_t catalogID, const Entry& entry) {
    int64_t parent = 0;
    if (auto slash = entry.path.rfind('/'); slash != std::string::npos)
      parent = folder(catalogID, entry.path.substr(0, slash));
    std::string name =
        entry.path.substr(entry.path.rfind('/') == std::string::npos ? 0 : entry.path.rfind('/') + 1);
    std::string ext =
        entry.isDir || name.rfind('.') == std::string::npos ? "" : name.substr(name.rfind('.') + 1);
    std::string kind = !entry.kind.empty() ? entry.kind : entry.isDir ? "Folder" : "Other";
    std::lock_guard guard(m_store.db().mutex());
    m_store.db().run(
        scan_sql::kInsertFile,
        {catalogID,      parent, entry.path, name,  entry.isDir,  entry.size, kind, "", ext, std::nullopt,
         entry.modified, "",     0,          false, entry.sha256, false,      0.0,  0,  0,   ""});
    int64_t id = m_store.db().lastInsertID();
    if (entry.isDir) m_folders[{catalogID, entry.path}] = id;
    return id;
  }

  int64_t file(int64_t catalogID, const std::string& path, int64_t size, const std::string& sha256 = "",
               OptionalDate modified = std::nullopt) {
    return add(catalogID, {path, size, sha256, modified});
  }

  // The id of the folder at `path`, written (with its own parents) if it is not there yet.
  int64_t folder(int64_t catalogID, const std::string& path) {
    auto it = m_folders.find({catalogID, path});
    if (it != m_folders.end()) return it->second;
    return add(catalogID, {path, 0, "", std::nullopt, true});
  }

  // Rolls sizes up in every catalog written so far, as the end of a scan does.
  void finish() {
    for (const Catalog& c : m_store.catalogs()) m_store.recomputeTotals(c.id);
  }

 private:
  CatalogDB& m_store;
  std::map<std::pair<int64_t, std::string>, int64_t> m_folders;
};

}  // namespace orrelin::testing
