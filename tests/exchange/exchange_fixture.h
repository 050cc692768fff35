// What the exchange tests share: a real catalog database in a temporary folder, and ways to look at it.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <map>
#include <string>
#include <vector>

#include "exchange/exporter.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "support/temp_dir.h"

namespace orrelin::testing {

class ExchangeTest : public ::testing::Test {
 protected:
  TempDir dir;
  CatalogDB store{dir.file("Catalogs.sqlite")};

  // The records of a catalog by path.
  std::map<std::string, FileRecord> records(int64_t catalogID) {
    std::map<std::string, FileRecord> out;
    for (FileRecord& f : store.allFiles(catalogID)) out.emplace(f.path, std::move(f));
    return out;
  }

  // The catalog called `name`; fails the test when there is not exactly one.
  Catalog catalogNamed(const std::string& name) {
    std::vector<Catalog> found;
    for (const Catalog& c : store.catalogs())
      if (c.name == name) found.push_back(c);
    EXPECT_EQ(found.size(), 1u) << name;
    return found.empty() ? Catalog{} : found.front();
  }

  // Every row of every table that an import writes to, as text: equal snapshots mean nothing changed
  // (apart from the id counter, which a removed catalog leaves advanced).
  std::string snapshot() {
    std::string out;
    for (const char* table : {"catalogs", "files", "scan_log"}) {
      store.db().forEachRow(std::string("SELECT * FROM ") + table + " ORDER BY 1", {},
                            [&](const Statement& r) {
                              for (int i = 0; i < sqlite3_column_count(r.raw()); ++i) out += r.text(i) + "|";
                              out += "\n";
                            });
    }
    return out;
  }
};

// A file item for insertImported with the fields the tests use most.
inline Exporter::ImportedFile item(const std::string& path, int64_t size = 0, bool isDir = false) {
  Exporter::ImportedFile f;
  f.path = path;
  f.size = size;
  f.isDir = isDir;
  if (isDir) f.kind = "Folder";
  return f;
}

}  // namespace orrelin::testing
