// The clean-up reports on drives: empty folders, large old files, and cataloged files that are gone from
// the connected drive. Also the plain logic of their panes: reading the typed inputs and the header texts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/date.h"
#include "search/search_query.h"

namespace orrelin {

// Most rows the two database reports return.
inline constexpr int kReportLimit = 5000;

// Reads a number as the size fields take it: every comma becomes a point (a comma is always the decimal
// sign), then the whole text must be a C-locale floating-point number, optionally signed. Returns nothing
// for an empty field, blanks around the number, or trailing text.
std::optional<double> parseTypedNumber(std::string_view text);

// The minimum size of the large-file report: the typed megabytes × 1e6, truncated toward zero; 0 bytes
// when the text is no number. A product outside the 64-bit range is a fatal error.
int64_t largeOldMinimumBytes(std::string_view minMB);

// The date before which files count as old: `years` calendar years before `now` in the local calendar
// (29 February steps back to 28 February), or nothing when `years` is 0.
OptionalDate largeOldCutoff(int years, Date now);

// The label of the years stepper: "any time", "1 year", "2 years", …
std::string yearsLabel(int years);

// Range of the years stepper.
inline constexpr int kMaxYears = 30;

// "12 found".
std::string emptyFoldersHeader(int64_t count);
// "3 files · 1.2 GB". The sum of the sizes overflowing is a fatal error.
std::string largeOldHeader(const std::vector<SearchHit>& hits);
// "4 missing", or "Everything is present" for none.
std::string missingHeader(int64_t count);

// The path on disk of a catalog's record: the root joined with the relative path, mapped back to the real
// bytes of names that were not UTF-8.
std::string recordDiskPath(const std::string& rootPath, const std::string& relativePath);

}  // namespace orrelin
