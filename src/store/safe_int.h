// Conversion of a floating value to a 64-bit integer that never traps, whatever the value.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>

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

// Stops the process with `what` on standard error. For arithmetic that must never overflow: carrying on
// with a wrapped value would show the user a wrong figure as if it were right.
[[noreturn]] inline void overflow(const char* what) {
  std::fprintf(stderr, "fatal error: arithmetic overflow in %s\n", what);
  std::abort();
}

// Returns a × b; an overflow is a fatal error.
inline int64_t multiplied(int64_t a, int64_t b, const char* what = "multiplication") {
  int64_t out = 0;
  if (__builtin_mul_overflow(a, b, &out)) overflow(what);
  return out;
}

// Returns a + b; an overflow is a fatal error.
inline int64_t added(int64_t a, int64_t b, const char* what = "addition") {
  int64_t out = 0;
  if (__builtin_add_overflow(a, b, &out)) overflow(what);
  return out;
}

// Returns `value` truncated toward zero; a value outside the 64-bit range (or NaN) is a fatal error.
inline int64_t truncated(double value, const char* what = "conversion") {
  // 2^63 is exact as a double; everything below it and at or above -2^63 fits.
  if (!(value >= -9223372036854775808.0 && value < 9223372036854775808.0)) overflow(what);
  return static_cast<int64_t>(value);
}

}  // namespace orrelin::SafeInt
