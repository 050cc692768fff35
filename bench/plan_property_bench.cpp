// The long run of the plan property check: many thousand random trees and plans through the dry run,
// execution and undo (see tests/support/plan_property.h for what is checked). Not a timing benchmark: it
// prints the tallies and exits 1 on any failure.
//
//   plan_property_bench [PLANS [FIRST-SEED]]     (defaults: 10000 plans from seed 1000000)
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "../tests/support/plan_property.h"

int main(int argc, char** argv) {
  namespace pp = orrelin::testing::plan_property;
  const long long plans = argc > 1 ? std::atoll(argv[1]) : 10000;
  const unsigned long long first = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1000000;
  if (plans <= 0) {
    std::fprintf(stderr, "usage: plan_property_bench [PLANS [FIRST-SEED]]\n");
    return 2;
  }
  pp::Sandbox box;
  pp::Tally tally;
  auto start = std::chrono::steady_clock::now();
  for (long long i = 0; i < plans; ++i) {
    pp::runRound(first + static_cast<unsigned long long>(i), box, tally);
    if ((i + 1) % 1000 == 0) std::fprintf(stderr, "%lld plans, %lld failures\n", i + 1, (long long)tally.failures);
  }
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  for (const std::string& text : tally.failureTexts) std::printf("FAILURE %s\n", text.c_str());
  std::printf("plans %lld, steps %lld, ok %lld (moved %lld, errors %lld), blocked %lld, undo errors %lld, "
              "failures %lld, %.1f s\n",
              (long long)tally.plans, (long long)tally.steps, (long long)tally.ok, (long long)tally.moved,
              (long long)tally.errors, (long long)tally.blocked, (long long)tally.undoErrors,
              (long long)tally.failures, seconds);
  return tally.failures == 0 ? 0 : 1;
}
