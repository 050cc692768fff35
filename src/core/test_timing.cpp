#include "core/test_timing.h"

#include <atomic>
#include <cmath>

namespace orrelin::TestTiming {

namespace {
std::atomic<double> g_factor{1.0};
}

void setTimeScaleForTesting(double factor) { g_factor = factor > 0 ? factor : 1.0; }

double timeScale() { return g_factor; }

std::chrono::milliseconds scaled(std::chrono::milliseconds wait) {
  if (wait.count() <= 0) return wait;
  const auto value = static_cast<long long>(std::llround(static_cast<double>(wait.count()) * g_factor));
  return std::chrono::milliseconds(value < 1 ? 1 : value);
}

}  // namespace orrelin::TestTiming
