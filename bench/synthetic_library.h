// A seeded, realistic library of several catalogs in a real database, for the search and analysis benchmarks.
//
// The library looks like what people catalog: photo folders by date with camera-style names (IMG_0042.JPG,
// DSC01234.ARW, PXL_20210304_101112345.jpg), music by artist and album, documents by category and year,
// source trees, downloads with archives, disk images, applications and fonts. A fifth of the rows carry
// media metadata (meta JSON, duration, width and height), dates spread over 2016-2024, some rows carry
// tags, a share of files has a SHA-256, and later catalogs hold copies of earlier files (same name, size
// and checksum) so that duplicates exist across catalogs.
//
// Building a million rows takes a while, so the database records the parameters it was made with and a
// later run with the same parameters reuses the file as it is.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "store/catalog_db.h"

namespace orrelin::bench {

struct LibraryShape {
  int64_t records = 1'000'000;  // Rows in `files`, folders included, over all catalogs.
  int catalogs = 4;
  uint32_t seed = 20240601;
};

struct LibraryInfo {
  std::vector<int64_t> catalogIDs;  // In the order they were made.
  int64_t records = 0;
  bool reused = false;      // True when an existing file with the same parameters was opened.
  double buildSeconds = 0;  // Time spent building; 0 when reused.
};

// The text stored in the database's meta table that names the parameters of a library.
std::string libraryFingerprint(const LibraryShape& shape);

// Fills `store`, which must hold no catalogs, with the library of `shape`, writing in transactions of a few
// thousand rows through one prepared statement, then rolls folder sizes up and stores the fingerprint
// last (so an interrupted build is never taken for a finished one). The same shape always gives the same
// rows. Returns the ids of the catalogs made.
LibraryInfo fillSyntheticLibrary(CatalogDB& store, const LibraryShape& shape);

// Opens the library at `path`: reuses the file when its fingerprint matches `shape`, otherwise removes it
// (with its -wal and -shm files) and builds it afresh. `info`, when given, receives what was done.
std::unique_ptr<CatalogDB> openSyntheticLibrary(const std::filesystem::path& path, const LibraryShape& shape,
                                                LibraryInfo* info = nullptr);

// The folder for benchmark databases: $ORRELIN_BENCH_DIR, else <temp>/orrelin-bench; created if needed.
std::filesystem::path benchDirectory();

// The default file of a library: benchDirectory()/library-<records>-<catalogs>-<seed>.sqlite.
std::filesystem::path syntheticLibraryPath(const LibraryShape& shape);

}  // namespace orrelin::bench
