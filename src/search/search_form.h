// What the user has entered on the search screen, as plain data: the fields, the query they make, and
// their saved form. The screen's observable state and the command-line tool both build on it.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "core/date.h"
#include "scan/file_kind.h"
#include "search/saved_search.h"
#include "search/search_query.h"

namespace orrelin {

struct SearchForm {
  // Bytes per unit of the size fields, and the unit's label.
  static constexpr int64_t kKB = 1'000;
  static constexpr int64_t kMB = 1'000'000;
  static constexpr int64_t kGB = 1'000'000'000;

  std::string text;
  SearchQuery::Mode mode = SearchQuery::Mode::contains;
  bool searchMetadata = false;
  std::set<FileKind> kinds;  // Empty: any kind.
  std::string minSizeText;   // As typed.
  std::string maxSizeText;   // As typed.
  int64_t sizeUnit = kMB;
  bool useDates = false;
  Date from;  // Start of the date range; see withDefaultDates.
  Date to;    // End of the date range.
  std::string tag;
  std::set<int64_t> catalogIDs;  // Empty: all catalogs.
  bool includeFolders = true;

  bool operator==(const SearchForm&) const = default;

  // The form as it first appears: the date range runs from one calendar year before `now` to `now`.
  static SearchForm withDefaultDates(Date now);

  // The query for these fields, limited to 5000 hits. Size texts that do not parse are no bound; with
  // useDates, the range runs from the start of `from`'s local day to the start of the day after `to`.
  SearchQuery query() const;

  // A saved search of these fields under `name`, with a new id.
  SavedSearch snapshot(const std::string& name) const;
  // Takes over the fields of `saved`. An unknown mode reads as contains; unknown kinds are dropped.
  void apply(const SavedSearch& saved);
  // Clears every filter; leaves the text, the size unit and the date range as they are.
  void resetFilters();
};

// A size bound typed by the user: a comma is a decimal sign, the whole text must be a C-locale floating
// number (no leading blanks, no trailing text), multiplied by `unit` and truncated toward zero. Nothing
// for an empty or unreadable text, and for a product that no 64-bit size can hold (infinite, not a
// number, beyond ±9.2e18).
std::optional<int64_t> parseSizeBound(std::string_view text, int64_t unit);

// The first moment of `date`'s calendar day in the local time zone.
Date startOfLocalDay(Date date);
// The first moment of the local calendar day after `date`'s.
Date startOfNextLocalDay(Date date);
// The same local time one calendar year earlier (Feb 29 becomes Feb 28); `date` itself when that cannot
// be computed.
Date oneYearBefore(Date date);

// The label of a size unit: "KB", "MB" or "GB"; empty for any other value.
std::string_view sizeUnitLabel(int64_t unit);

}  // namespace orrelin
