// Work on several threads: all of it, in order, and no more waiting than is allowed.

#include "system/ordered_work.h"

#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <stdexcept>
#include <string>

namespace krofx::command {

namespace {

TEST(WorkInOrder, GivesAllResultsInTheOrderOfThePieces) {
  for (const std::size_t threads : {1U, 2U, 3U, 8U}) {
    for (const std::size_t pieces : {0U, 1U, 2U, 1000U}) {
      std::vector<std::size_t> taken;
      const auto caller = std::this_thread::get_id();
      WorkInOrder<std::string>(
          pieces, threads, [](std::size_t piece) { return std::to_string(piece); },
          [&](const std::string& result) {
            EXPECT_EQ(std::this_thread::get_id(), caller);
            taken.push_back(std::stoul(result));
          });
      std::vector<std::size_t> all(pieces);
      std::iota(all.begin(), all.end(), 0U);
      EXPECT_EQ(taken, all);
    }
  }
}

TEST(WorkInOrder, MakesNoMoreThanMayWait) {
  constexpr std::size_t kThreads = 4;
  std::atomic<std::size_t> made = 0;
  std::size_t taken = 0;
  WorkInOrder<std::size_t>(
      2000, kThreads,
      [&](std::size_t piece) {
        ++made;
        return piece;
      },
      [&](std::size_t) {
        EXPECT_LE(made, taken + 1 + kThreads * 16);
        ++taken;
      });
  EXPECT_EQ(taken, 2000U);
}

TEST(WorkInOrder, EndsWithTheExceptionOfEitherFunction) {
  for (const std::size_t threads : {1U, 2U, 4U}) {
    const auto make = [](std::size_t piece) {
      if (piece == 100) throw std::runtime_error("make");
      return piece;
    };
    std::size_t taken = 0;
    EXPECT_THROW(WorkInOrder<std::size_t>(1000, threads, make, [&](std::size_t) { ++taken; }),
                 std::runtime_error);
    EXPECT_LE(taken, 100U);
    const auto take = [](std::size_t piece) {
      if (piece == 50) throw std::logic_error("take");
    };
    EXPECT_THROW(WorkInOrder<std::size_t>(100, threads, make, take), std::logic_error);
  }
}

}  // namespace

}  // namespace krofx::command
