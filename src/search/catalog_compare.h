// Two catalogs compared file by file, matching by the path inside each catalog; and the plain logic of the
// comparison pane.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "search/search_query.h"
#include "store/records.h"

namespace orrelin {

struct CompareResult {
  std::vector<FileRecord> onlyA;                           // Paths only in the first catalog, in path order.
  std::vector<FileRecord> onlyB;                           // Paths only in the second catalog, in path order.
  std::vector<std::pair<FileRecord, FileRecord>> changed;  // Same path, other content; A's record first.
  int64_t same = 0;                                        // Paths judged identical.

  bool operator==(const CompareResult&) const = default;
};

// The catalog-relative path as a map key: canonically composed (NFC), so that a name stored composed and
// the same name stored decomposed are one key.
std::string comparisonKey(const std::string& path);

// The chips above the lists: label, count, and the tab a click selects (-1: a plain figure).
struct CompareChip {
  const char* label;
  int64_t count;
  int tab;
};
std::vector<CompareChip> compareChips(const CompareResult& result);

// The rows of list `tab` (0: only in A, 1: only in B, 2: different), each wrapped into a hit. A vanished
// catalog is named "A" or "B". The rows of tab 2 carry, in place of a catalog name, the text
// "<A>: <size> · <B>: <size>". Any other tab lists nothing.
std::vector<SearchHit> compareTabHits(const CompareResult& result, int tab, const std::optional<Catalog>& a,
                                      const std::optional<Catalog>& b);

// The catalog that fills an empty B: the first of `catalogs` whose id differs from `a`, or, with no A,
// from `selected` (any first one when nothing is selected). Nothing when no catalog qualifies.
std::optional<int64_t> defaultCompareB(const std::vector<Catalog>& catalogs, std::optional<int64_t> a,
                                       std::optional<int64_t> selected);

// The button is disabled exactly when both choices are equal, both absent included.
inline bool compareDisabled(std::optional<int64_t> a, std::optional<int64_t> b) { return a == b; }

inline constexpr const char* kCompareTitle = "Compare two catalogs";
inline constexpr const char* kCompareDescription =
    "Matches files by their path inside each drive \u2014 ideal for checking a backup against its original.";

}  // namespace orrelin
