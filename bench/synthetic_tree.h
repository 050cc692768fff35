// A deterministic, realistic-looking tree of catalog rows for benchmarks: folders of about 50 entries.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/catalog_db.h"

namespace orrelin::bench {

struct SyntheticEntry {
  std::string path;
  std::string name;
  std::string ext;
  std::string kind;
  std::string uti;
  int64_t size = 0;
  double modified = 0;
  bool isDir = false;
  int parentIndex = -1;  // Index of the folder entry in the list, -1 at the top level.
};

// Makes `fileCount` files in folders of about `perFolder` entries, nested a few levels deep, in walk order
// (each folder before its contents). The same arguments always give the same tree.
std::vector<SyntheticEntry> makeTree(int fileCount, int perFolder = 50, uint32_t seed = 42);

// Writes `entries` into catalog `catalogID` the way the scanner does: its insert statement, in
// transactions of 400. Returns the number of rows written.
int64_t insertLikeScanner(CatalogDB& store, int64_t catalogID, const std::vector<SyntheticEntry>& entries);

}  // namespace orrelin::bench
