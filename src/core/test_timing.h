// The program's waits (toast clock, auto-update debounce, file-watch latency) are fixed values. Tests
// would spend minutes waiting for them, so this one setting scales every such wait; the program itself
// never changes it, and at the default of 1 every wait is the documented value.
#pragma once

#include <chrono>

namespace orrelin::TestTiming {

// Sets the factor applied to every scaled wait; tests use e.g. 0.01. Values <= 0 reset it to 1.
void setTimeScaleForTesting(double factor);

// The current factor (1 unless a test changed it).
double timeScale();

// Returns `wait` times the factor, at least 1 ms when `wait` is positive.
std::chrono::milliseconds scaled(std::chrono::milliseconds wait);

}  // namespace orrelin::TestTiming
