// Conversion of a floating value to a 64-bit integer that never traps, whatever the value.
#pragma once

#include <cstdint>

namespace orrelin::SafeInt {

// Returns `value` truncated toward zero, or `fallback` when `value` is NaN, infinite, at or above 9e18 or
// at or below -9e18. Media libraries hand us such values; a plain cast of them is undefined behaviour.
constexpr int64_t from(double value, int64_t fallback = 0) {
  // One comparison chain rejects NaN too: every comparison with NaN is false.
  if (!(value > -9e18 && value < 9e18)) return fallback;
  return static_cast<int64_t>(value);
}

// Same as the double form after widening `value` to a double, so 320000.0f / 1000 gives 320.
constexpr int64_t from(float value, int64_t fallback = 0) {
  return from(static_cast<double>(value), fallback);
}

}  // namespace orrelin::SafeInt
