// Tries failures of allocations one by one.

#include "allocation/sweep.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <set>

namespace krofx::testing {

namespace {

// Up to this many allocations are all tried.
constexpr std::size_t kFew = 80;
// Of the sample of more: how many are taken at each end, and between.
constexpr std::size_t kAtEnds = 3;
constexpr std::size_t kBetween = 6;
// After how many of the sample an attempt without a failure follows, and always after the last.
constexpr std::size_t kCleanEvery = 4;

// Which allocations of `count` fail, from the first to the last.
std::set<std::size_t> Choose(std::size_t count) {
  std::set<std::size_t> chosen;
  for (std::size_t nth = 1; nth <= count; ++nth) {
    const bool atEnd = nth <= kAtEnds || nth + kAtEnds > count;
    const bool between = nth % (count / kBetween + 1) == 0;
    if (count <= kFew || SweepsWhole() || atEnd || between) chosen.insert(nth);
  }
  return chosen;
}

}  // namespace

bool SweepsWhole() {
  const char* const sweep = std::getenv("KROFX_SWEEP");
  return sweep != nullptr && std::strcmp(sweep, "whole") == 0;
}

std::size_t Sweep(const Attempt& attempt) {
  // What is made once for the whole process is there after the first.
  attempt({});
  const Outcome expected = attempt({});
  EXPECT_FALSE(expected.failed);
  const std::size_t count = FailingScope::LastCount();
  EXPECT_GT(count, 0u);

  std::size_t tried = 0;
  for (const bool andAllLater : {false, true}) {
    for (const std::size_t nth : Choose(count)) {
      SCOPED_TRACE("allocation " + std::to_string(nth) + " of " + std::to_string(count) +
                   (andAllLater ? " and all later" : ""));
      const Outcome outcome = attempt({nth, andAllLater});
      if (!outcome.failed) {
        EXPECT_EQ(outcome.shown, expected.shown) << "something was lost without a word";
      }
      if (++tried % kCleanEvery == 0 || nth == count || SweepsWhole()) {
        const Outcome next = attempt({});
        EXPECT_FALSE(next.failed);
        EXPECT_EQ(next.shown, expected.shown) << "the next one is not clean";
      }
      if (::testing::Test::HasFailure()) return tried;
    }
  }
  return tried;
}

}  // namespace krofx::testing
