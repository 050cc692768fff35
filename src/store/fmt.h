// Display texts for sizes, counts, dates and durations, and the ISO 8601 form of dates in exchange files.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/date.h"

namespace orrelin::Fmt {

// The text shown for "no value": one em dash.
inline constexpr std::string_view kNone = "\u2014";

// Returns `bytes` in decimal units (1 KB = 1000 bytes), the unit chosen by size: "0 bytes", "1 byte",
// "999 bytes", then KB with no decimals, MB with one, GB and above with two, trailing zeros dropped
// ("1 KB", "1.5 MB", "1 MB", "1.23 GB"). Halves round away from zero, and a value that rounds up to 1000
// moves to the next unit ("1 MB", not "1000 KB"). The number follows the ICU default locale.
std::string size(int64_t bytes);

// Returns `value` with the digit grouping of the ICU default locale, or its plain digits if ICU fails.
std::string count(int64_t value);

// Returns kNone when `date` is absent or not finite, else the date in the locale's medium style and the
// time in its short style, in the local time zone ("Mar 5, 2024, 2:07 PM" in American English).
std::string date(OptionalDate date);

// Returns `date` as "2024-03-05T14:07:09Z": UTC, whole seconds, fractions dropped toward the earlier
// second. Returns "" for a date that is not finite or lies outside the years 0000 to 9999.
std::string iso(Date date);

// Parses "YYYY-MM-DDTHH:MM:SS" followed by optional fractional seconds ("." or "," and digits) and a
// zone: "Z" or an offset "+HH:MM", "+HHMM" or "+HH" (or "-"). Returns nullopt for any other text,
// including a text without a zone (its instant would be a guess) or an impossible date such as Feb 30.
OptionalDate parseIso(std::string_view text);

// Returns kNone for a value that is not finite or not above 0; else the value rounded to whole seconds
// (halves away from zero) as "M:SS", or "H:MM:SS" from an hour up. A rounded value at or above 9e18
// counts as 0 and gives "0:00".
std::string duration(double seconds);

}  // namespace orrelin::Fmt
