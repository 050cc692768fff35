// Random trees and random plans through the dry run, execution and undo; see support/plan_property.h for
// what is checked. ORRELIN_PLAN_ROUNDS sets the number of rounds (default 300), ORRELIN_PLAN_SEED the first seed.
#include <stdlib.h>

#include <gtest/gtest.h>

#include "support/plan_property.h"

namespace orrelin {
namespace {

int64_t envNumber(const char* name, int64_t fallback) {
  const char* text = ::getenv(name);
  return text && *text ? std::strtoll(text, nullptr, 10) : fallback;
}

TEST(PlanPropertyTest, RandomPlansNeverLoseOrEscapeAndAlwaysUndo) {
  namespace pp = testing::plan_property;
  const int64_t rounds = envNumber("ORRELIN_PLAN_ROUNDS", 300);
  const uint64_t first = static_cast<uint64_t>(envNumber("ORRELIN_PLAN_SEED", 1));
  pp::Sandbox box;
  pp::Tally tally;
  for (int64_t i = 0; i < rounds; ++i) pp::runRound(first + static_cast<uint64_t>(i), box, tally);
  for (const std::string& text : tally.failureTexts) ADD_FAILURE() << text;
  EXPECT_EQ(tally.failures, 0);
  // The generator must reach every outcome, or the checks above prove little.
  EXPECT_GT(tally.moved, rounds / 2);
  EXPECT_GT(tally.blocked, rounds / 2);
  EXPECT_GT(tally.errors, 0);
  EXPECT_GT(tally.undoErrors, 0);
  std::printf("plans %lld, steps %lld, ok %lld (moved %lld, errors %lld), blocked %lld, undo errors %lld\n",
              (long long)tally.plans, (long long)tally.steps, (long long)tally.ok, (long long)tally.moved,
              (long long)tally.errors, (long long)tally.blocked, (long long)tally.undoErrors);
}

}  // namespace
}  // namespace orrelin
