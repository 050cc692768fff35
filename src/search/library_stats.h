// One snapshot of the whole library: totals, splits by kind, year and extension, the largest files and the
// most recent scans.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/date.h"
#include "search/search_query.h"

namespace orrelin {

struct KindStat {
  std::string kind;  // A FileKind's raw value.
  int64_t count = 0;
  int64_t bytes = 0;

  bool operator==(const KindStat&) const = default;
  const std::string& id() const { return kind; }
};

struct YearStat {
  std::string year;  // Four digits, in UTC.
  int64_t count = 0;
  int64_t bytes = 0;

  bool operator==(const YearStat&) const = default;
  const std::string& id() const { return year; }
};

struct ExtStat {
  std::string ext;  // Upper case.
  int64_t count = 0;
  int64_t bytes = 0;

  bool operator==(const ExtStat&) const = default;
  const std::string& id() const { return ext; }
};

// One row of the scan log.
struct ScanLogEntry {
  int64_t id = 0;
  int64_t catalogID = 0;
  std::string catalogName;  // "(deleted)" when the catalog is gone.
  Date at;                  // When the scan ended.
  int64_t added = 0;
  int64_t removed = 0;
  int64_t changed = 0;
  double seconds = 0;
  std::string note;

  bool operator==(const ScanLogEntry&) const = default;
};

// The default value has zeros and empty lists.
struct LibraryStats {
  int64_t catalogs = 0;
  int64_t files = 0;                   // Sum of the catalogs' stored file counts.
  int64_t folders = 0;                 // Sum of the catalogs' stored folder counts.
  int64_t bytes = 0;                   // Sum of the catalogs' stored total sizes.
  std::vector<KindStat> byKind;        // Every kind present, largest total size first.
  std::vector<YearStat> byYear;        // The newest 14 years present, oldest first.
  std::vector<ExtStat> topExtensions;  // The 12 commonest extensions, commonest first.
  std::vector<SearchHit> largest;      // The 25 largest files, largest first.
  std::vector<ScanLogEntry> log;       // The 20 newest scan log rows, newest first.

  bool operator==(const LibraryStats&) const = default;
};

// Name shown for a log row whose catalog no longer exists.
inline constexpr const char* kDeletedCatalogName = "(deleted)";

}  // namespace orrelin
