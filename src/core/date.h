// A point in time as seconds since 1970-01-01 UTC, fractions kept: the one date type of the program.
#pragma once

#include <compare>
#include <optional>

namespace orrelin {

struct Date {
  double seconds = 0;  // Seconds since 1970-01-01 00:00:00 UTC.

  // Returns the current time of the system clock.
  static Date now();
  // Returns the date `s` seconds after 1970.
  static constexpr Date fromSeconds(double s) { return Date{s}; }

  auto operator<=>(const Date&) const = default;
};

using OptionalDate = std::optional<Date>;

}  // namespace orrelin
