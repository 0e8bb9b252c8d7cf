// Work on several threads: all of it, in order, and no more waiting than is allowed.

#include "system/ordered_work.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <latch>
#include <numeric>
#include <stdexcept>

namespace krofx::command {

namespace {

using Make = std::function<std::size_t(std::size_t)>;
using Take = std::function<void(std::size_t)>;

void Work(std::size_t pieces, std::size_t threads, const Make& make, const Take& take) {
  WorkInOrder<std::size_t>(pieces, threads, make, take);
}

// Lets one piece wait until another one has come to some place.
class Gate {
 public:
  void Open() { m_opened.set_value(); }
  void Wait() { m_opened.get_future().wait(); }

 private:
  std::promise<void> m_opened;
};

TEST(WorkInOrder, GivesAllResultsInTheOrderOfThePieces) {
  for (const std::size_t threads : {1U, 2U, 3U, 8U}) {
    for (const std::size_t pieces : {0U, 1U, 2U, 1000U}) {
      std::vector<std::size_t> taken;
      const auto caller = std::this_thread::get_id();
      Work(
          pieces, threads, [](std::size_t piece) { return piece; },
          [&](std::size_t result) {
            EXPECT_EQ(std::this_thread::get_id(), caller);
            taken.push_back(result);
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
  Work(
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
    EXPECT_THROW(Work(1000, threads, make, [&](std::size_t) { ++taken; }), std::runtime_error);
    EXPECT_LE(taken, 100U);
    const auto take = [](std::size_t piece) {
      if (piece == 50) throw std::logic_error("take");
    };
    EXPECT_THROW(Work(100, threads, make, take), std::logic_error);
  }
}

TEST(WorkInOrder, WaitsForAnEarlyPieceThatTakesLong) {
  constexpr std::size_t kThreads = 2;
  constexpr std::size_t kWindow = kThreads * 16;
  // The first piece ends only when all results that may wait are there, and nobody has taken one.
  std::atomic<std::size_t> made = 0;
  Gate full;
  std::vector<std::size_t> taken;
  Work(
      1000, kThreads,
      [&](std::size_t piece) {
        if (piece == 0) {
          full.Wait();
        } else if (++made == kWindow - 1) {
          EXPECT_TRUE(taken.empty());
          full.Open();
        }
        return piece;
      },
      [&](std::size_t piece) { taken.push_back(piece); });
  std::vector<std::size_t> all(1000);
  std::iota(all.begin(), all.end(), 0U);
  EXPECT_EQ(taken, all);
}

TEST(WorkInOrder, EndsWithTheExceptionOfAnotherThread) {
  const auto caller = std::this_thread::get_id();
  Gate thrown;
  std::atomic<bool> isFirst = true;
  std::atomic<std::size_t> made = 0;
  const Make make = [&](std::size_t piece) {
    ++made;
    if (std::this_thread::get_id() != caller) {
      if (isFirst.exchange(false)) thrown.Open();
      throw std::runtime_error("make");
    }
    if (piece == 0 || piece == 1) thrown.Wait();
    return piece;
  };
  EXPECT_THROW(Work(1000000, 3, make, [](std::size_t) {}), std::runtime_error);
  EXPECT_LT(made, 1000000U);
}

TEST(WorkInOrder, EndsWithAnExceptionThatItWaitsFor) {
  const auto caller = std::this_thread::get_id();
  Gate begun;
  Gate taken;
  const Make make = [&](std::size_t piece) {
    if (std::this_thread::get_id() == caller) {
      if (piece == 0) begun.Wait();
      return piece;
    }
    // Nothing is left to make when the caller has taken the first piece, so that it waits.
    begun.Open();
    if (piece == 1) taken.Wait();
    throw std::runtime_error("make");
  };
  EXPECT_THROW(Work(2, 2, make, [&](std::size_t) { taken.Open(); }), std::runtime_error);
}

TEST(WorkInOrder, EndsOnceWhenSeveralPiecesFail) {
  std::latch both(2);
  const Make make = [&](std::size_t) -> std::size_t {
    both.arrive_and_wait();
    throw std::runtime_error("make");
  };
  EXPECT_THROW(Work(2, 2, make, [](std::size_t) {}), std::runtime_error);
}

}  // namespace

}  // namespace krofx::command
