// The byte buffer: growth, writing and the one cursor.

#include "krofx/core/buffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>

#include "support/buffers.h"
#include "support/failing_allocation.h"

namespace {

/// Has a small limit.
class SmallBuffer : public KRBuffer {
 public:
  using KRBuffer::KRBuffer;

 protected:
  u32 GetMaxBufferSize() override { return 1000; }
};

// ---- Growth ----

TEST(KRBuffer, StartsWith512BytesAndGrowsBy512) {
  KRBuffer buffer(0, 0);
  ExpectState(buffer, 512, 0, 0);
  Put(buffer, std::string(513, 'x'));
  ExpectState(buffer, 1024, 513, 513);
}

TEST(KRBuffer, GrowsByExactlyWhatIsNeededWithGrowSizeZero) {
  KRBuffer buffer(100, 0);
  EXPECT_EQ(buffer.GetBufferAllocation(), 100u);
  Put(buffer, std::string(101, 'x'));
  EXPECT_EQ(buffer.GetBufferAllocation(), 101u);
  buffer += 'y';
  EXPECT_EQ(buffer.GetBufferAllocation(), 102u);
}

TEST(KRBuffer, StartsWithTheGrowSizeWhenNoInitialSizeIsGiven) {
  KRBuffer buffer(0, 30);
  EXPECT_EQ(buffer.GetBufferAllocation(), 30u);
  Put(buffer, std::string(31, 'x'));
  EXPECT_EQ(buffer.GetBufferAllocation(), 60u);
}

TEST(KRBuffer, StartsWithTheInitialSizeEvenBelowTheGrowSize) {
  KRBuffer buffer(10, 100);
  EXPECT_EQ(buffer.GetBufferAllocation(), 10u);
  Put(buffer, std::string(11, 'x'));
  EXPECT_EQ(buffer.GetBufferAllocation(), 110u);
}

TEST(KRBuffer, AnnouncesLinearGrowthHoweverLongItGets) {
  KRBuffer buffer(0, 0);
  const std::string line(100, 'x');
  for (u32 written = 100; written <= 100000; written += 100) {
    ASSERT_EQ(buffer.Write(line.data(), 100), KRBufferOK);
    ASSERT_EQ(buffer.GetBufferAllocation(), (written + 511) / 512 * 512);
  }
  EXPECT_EQ(Content(buffer), std::string(100000, 'x'));
}

TEST(KRBuffer, GrowsInBlocksByLargeWrites) {
  KRBuffer buffer(0, 0);
  Put(buffer, std::string(16384 + 100, 'x'));
  // 512, then the rest of a block of 16384, then the grow size for the last 100.
  ExpectState(buffer, 16384 + 512, 16384 + 100, 16384 + 100);
}

TEST(KRBuffer, AllocatesAheadWithoutTouchingTheContent) {
  KRBuffer buffer(0, 0);
  buffer += "abc";
  EXPECT_EQ(buffer.AllocateTo(100), KRBufferOK);
  EXPECT_EQ(buffer.GetBufferAllocation(), 512u);
  EXPECT_EQ(buffer.AllocateTo(512), KRBufferOK);
  EXPECT_EQ(buffer.GetBufferAllocation(), 512u);
  EXPECT_EQ(buffer.AllocateTo(513), KRBufferOK);
  EXPECT_EQ(buffer.GetBufferAllocation(), 1024u);
  EXPECT_EQ(buffer.AllocateTo(5000), KRBufferOK);
  ExpectState(buffer, 5000, 3, 3);
  EXPECT_EQ(Content(buffer), "abc");
}

TEST(KRBuffer, KeepsWhatWasWrittenThroughItsPointerWhenItGrows) {
  KRBuffer buffer(4, 0);
  std::memcpy(buffer.GetBufferPtr(), "abcd", 4);
  EXPECT_EQ(buffer.AllocateTo(8), KRBufferOK);
  buffer.SetBufferSize(8);
  EXPECT_EQ(Content(buffer), std::string("abcd\0\0\0\0", 8));
}

TEST(KRBuffer, CutsAnInitialSizeToTheLimit) {
  FailingAllocation failing(1);  // the memory itself is not used here
  KRBuffer buffer(4294967295u, 0);
  ExpectState(buffer, 0, 0, 0);
}

TEST(KRBuffer, RefusesAWriteThatWouldEndAtTheLimit) {
  KRBuffer buffer(0, 0);
  buffer.SetBufferSize(3999999999u);
  ASSERT_EQ(buffer.SetBufferOffset(3999999999u), 1);
  EXPECT_EQ(buffer.Write('x'), KRBufferOutOfRange);
  EXPECT_EQ(buffer.Write("xyz", 3), KRBufferOutOfRange);
  EXPECT_EQ(buffer.GetBufferAllocation(), 512u);
}

TEST(KRBuffer, CountsTheEndOfAWriteInMoreThan32Bits) {
  KRBuffer buffer(0, 0);
  buffer.SetBufferSize(4294967295u);
  ASSERT_EQ(buffer.SetBufferOffset(4294967295u), 1);
  EXPECT_EQ(buffer.Write("xyz", 3), KRBufferOutOfRange);
  char byte = 0;
  EXPECT_EQ(buffer.Read(&byte), KRBufferOutOfRange);
}

TEST(KRBuffer, HoldsADerivedLimit) {
  SmallBuffer buffer(0, 900);
  Put(buffer, std::string(950, 'x'));
  EXPECT_EQ(buffer.GetBufferAllocation(), 1000u);
  EXPECT_EQ(Put(buffer, std::string(50, 'y')), KRBufferOK);
  EXPECT_EQ(buffer.Write('z'), KRBufferOutOfRange);
  EXPECT_EQ(buffer.AllocateTo(1001), KRBufferNoMemory);
}

// ---- Writing ----

TEST(KRBuffer, CountsTheNulOfAStringButNotOfAnAppendedText) {
  KRBuffer string(0, 0);
  EXPECT_EQ(string.WriteString("abc"), KRBufferOK);
  EXPECT_EQ(Content(string), std::string("abc\0", 4));
  KRBuffer text(0, 0);
  text += "abc";
  text += 'd';
  EXPECT_EQ(Content(text), "abcd");
}

TEST(KRBuffer, CutsTheContentBehindAWrite) {
  KRBuffer buffer(0, 0);
  buffer += "0123456789";
  ASSERT_EQ(buffer.SetBufferOffset(1), 1);
  EXPECT_EQ(buffer.Write("xy", 2), KRBufferOK);
  ExpectState(buffer, 512, 3, 3);
  EXPECT_EQ(Content(buffer), "0xy");
}

TEST(KRBuffer, CutsTheContentEvenByAWriteOfNothing) {
  KRBuffer buffer(0, 0);
  buffer += "0123456789";
  buffer.SetBufferOffset(4);
  EXPECT_EQ(buffer.Write(nullptr, 0), KRBufferOK);
  EXPECT_EQ(Content(buffer), "0123");
}

TEST(KRBuffer, WritesTextsBy16BitLengths) {
  const std::string text(65536 + 3, 'x');
  KRBuffer buffer(0, 0);
  buffer += text.c_str();
  EXPECT_EQ(buffer.GetBufferSize(), 3u);
  EXPECT_EQ(buffer.WriteString(text.c_str()), KRBufferOK);
  EXPECT_EQ(buffer.GetBufferSize(), 3u + 3u + 1u);
  EXPECT_EQ(Put(buffer, text), KRBufferOK);
  EXPECT_EQ(buffer.GetBufferSize(), 7u + 65539u);
}

TEST(KRBuffer, RefusesToWriteFromNull) {
  KRBuffer buffer(0, 0);
  EXPECT_EQ(buffer.Write(nullptr, 3), KRBufferNoData);
  EXPECT_EQ(buffer.WriteString(nullptr), KRBufferNoData);
  EXPECT_EQ(buffer.WriteLarge(nullptr, 20000), KRBufferNoData);
  buffer += static_cast<const char*>(nullptr);
  EXPECT_EQ(buffer.Write(static_cast<KRBuffer*>(nullptr)), KRBufferNoData);
  EXPECT_EQ(buffer.GetBufferSize(), 0u);
}

TEST(KRBuffer, AppendsAnotherBufferFromItsStart) {
  KRBuffer source(0, 0);
  Put(source, std::string(40000, 'x'));
  source.SetBufferOffset(7);
  KRBuffer buffer(0, 0);
  buffer += "ab";
  EXPECT_EQ(buffer += &source, KRBufferOK);
  EXPECT_EQ(Content(buffer), "ab" + std::string(40000, 'x'));
  EXPECT_EQ(source.GetBufferOffset(), 7u);
  EXPECT_EQ(buffer.Write(&source), KRBufferOK);
  EXPECT_EQ(buffer.GetBufferSize(), 80002u);
}

TEST(KRBuffer, AppendingAnEmptyBufferWritesNothing) {
  KRBuffer source(0, 0);
  KRBuffer buffer(0, 0);
  buffer += "abc";
  buffer.SetBufferOffset(1);
  EXPECT_EQ(buffer += &source, KRBufferOK);
  EXPECT_EQ(Content(buffer), "abc");
}

TEST(KRBuffer, HidesAFailedBlockOfAnAppendedBuffer) {
  KRBuffer source(0, 0);
  Put(source, std::string(1500, 'x'));
  SmallBuffer buffer(0, 0);
  EXPECT_EQ(buffer += &source, KRBufferOK);
  EXPECT_EQ(buffer.GetBufferSize(), 0u);
  EXPECT_EQ(Put(buffer, std::string(1500, 'x')), KRBufferOutOfRange);
}

TEST(KRBuffer, AppendsItselfAndPartsOfItself) {
  KRBuffer buffer(4, 0);
  buffer += "abcd";
  EXPECT_EQ(buffer += &buffer, KRBufferOK);
  EXPECT_EQ(Content(buffer), "abcdabcd");
  EXPECT_EQ(buffer.Write(buffer.GetBufferPtr() + 1, 2), KRBufferOK);
  EXPECT_EQ(Content(buffer), "abcdabcdbc");
  buffer.SetBufferOffset(2);
  EXPECT_EQ(buffer += &buffer, KRBufferOK);
  EXPECT_EQ(Content(buffer), "ababcdabcdbc");
}

}  // namespace
