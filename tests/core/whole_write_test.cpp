// Writing into a buffer that keeps its content if memory is exhausted.

#include "krofx/core/internal/whole_write.h"

#include <gtest/gtest.h>

#include <string>

#include "support/buffers.h"
#include "support/failing_allocation.h"
#include "support/wiped_memory.h"

namespace krofx::testing {
namespace {

using internal::WriteWhole;

TEST(WriteWhole, WritesAtTheCursor) {
  KRBuffer source(0, 0);
  Put(source, std::string(600, 'x'));
  KRBuffer target(4, 0);
  Put(target, "abc");
  target.SetBufferOffset(2);
  EXPECT_TRUE(WriteWhole(target, source));
  EXPECT_EQ(Content(target), "ab" + std::string(600, 'x'));
  EXPECT_EQ(target.GetBufferOffset(), 602u);
}

TEST(WriteWhole, LeavesTheTargetUsableAsItWasWithoutMemory) {
  KRBuffer source(0, 0);
  Put(source, std::string(600, 'x'));
  for (const std::string before : {"", "abc"}) {
    for (const bool andAllLater : {false, true}) {
      KRBuffer target(4, 4);
      Put(target, before);
      target.SetBufferOffset(0);
      const FailingAllocation failing(1, andAllLater);
      EXPECT_FALSE(WriteWhole(target, source));
      EXPECT_TRUE(AlarmIsSet());
      EXPECT_EQ(Content(target), before);
      EXPECT_EQ(target.GetBufferOffset(), 0u);
      EXPECT_EQ(target.GetBufferAllocation(), 4u);
      EXPECT_EQ(target.Write("de", 2), KRBufferOK);
      EXPECT_EQ(Content(target), "de");
    }
  }
}

TEST(WriteWhole, TakesNoMemoryWhereThereIsRoom) {
  KRBuffer source(0, 0);
  Put(source, "def");
  KRBuffer target(6, 0);
  Put(target, "abc");
  const FailingAllocation failing(1, true);
  EXPECT_TRUE(WriteWhole(target, source));
  EXPECT_EQ(Content(target), "abcdef");
}

class SmallBuffer : public KRBuffer {
 public:
  SmallBuffer() : KRBuffer(4, 4) {}

 protected:
  u32 GetMaxBufferSize() override { return 100; }
};

TEST(WriteWhole, WritesNothingOverTheLimitOfTheTarget) {
  KRBuffer source(0, 0);
  Put(source, std::string(600, 'x'));
  SmallBuffer target;
  Put(target, "abc");
  EXPECT_FALSE(WriteWhole(target, source));
  EXPECT_EQ(Content(target), "abc");
}

TEST(WriteWhole, WipesTheMemoryThatItGivesBack) {
  KRBuffer source(0, 0);
  Put(source, std::string(600, 'x'));
  for (const std::size_t nth : {0U, 1U}) {
    const bool succeeds = nth == 0;
    const WipedMemory wiped;
    KRBuffer target(4, 4);
    Put(target, "abc");
    const char* const before = target.GetBufferPtr();
    {
      const FailingAllocation failing(nth);
      EXPECT_EQ(WriteWhole(target, source), succeeds);
    }
    EXPECT_EQ(WipedMemory::Covers(before, 4), succeeds);
    EXPECT_EQ(WipedMemory::Blocks().size(), succeeds ? 1u : 0u);
  }
}

}  // namespace
}  // namespace krofx::testing
