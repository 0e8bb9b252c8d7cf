// The byte buffer: growth, the one cursor, reading, searching, copying, limits, wiping.

#include "krofx/core/buffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>

#include "krofx/core/fixed_strings.h"
#include "krofx/core/string.h"
#include "support/failing_allocation.h"
#include "support/wiped_memory.h"

namespace {

KRBufferResult Put(KRBuffer& buffer, std::string const& bytes) {
  return buffer.WriteLarge(bytes.data(), static_cast<u32>(bytes.size()));
}

std::string Content(KRBuffer const& buffer) {
  return std::string(buffer.GetBufferPtr(), buffer.GetBufferSize());
}

/// Serves a text of its own, NUL at its end.
class ServingBuffer : public KRBuffer {
 public:
  explicit ServingBuffer(char const* text) : KRBuffer(0, 0), m_text(text) {}
  char GetCh(s32 index) override {
    return index >= 0 && index < static_cast<s32>(std::strlen(m_text)) ? m_text[index] : '\0';
  }

 private:
  char const* m_text;
};

/// Has a small limit.
class SmallBuffer : public KRBuffer {
 public:
  using KRBuffer::KRBuffer;

 protected:
  u32 GetMaxBufferSize() override { return 1000; }
};

void ExpectState(KRBuffer const& buffer, u32 allocation, u32 size, u32 offset) {
  EXPECT_EQ(buffer.GetBufferAllocation(), allocation);
  EXPECT_EQ(buffer.GetBufferSize(), size);
  EXPECT_EQ(buffer.GetBufferOffset(), offset);
}

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
  std::string const line(100, 'x');
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
  FailingAllocation failing(1);  // the memory itself is not wanted here
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
  std::string const text(65536 + 3, 'x');
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
  buffer += static_cast<char const*>(nullptr);
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

// ---- Reading ----

TEST(KRBuffer, NeedsItsCursorSetBackForReading) {
  KRBuffer buffer(0, 0);
  buffer += "abc";
  char byte = 0;
  EXPECT_EQ(buffer.Read(&byte), KRBufferOutOfRange);
  EXPECT_EQ(buffer.SetBufferOffset(0), 1);
  EXPECT_EQ(buffer.Read(&byte), KRBufferOK);
  EXPECT_EQ(byte, 'a');
  EXPECT_EQ(buffer.GetBufferOffset(), 1u);
}

TEST(KRBuffer, ReadsWhatIsLeft) {
  KRBuffer buffer(0, 0);
  buffer += "abcde";
  buffer.SetBufferOffset(1);
  char out[8] = {};
  u16 got = 99;
  EXPECT_EQ(buffer.Read(out, got, 3), KRBufferOK);
  EXPECT_EQ(got, 3);
  EXPECT_STREQ(out, "bcd");
  EXPECT_EQ(buffer.Read(out, got, 8), KRBufferOK);
  EXPECT_EQ(got, 1);
  EXPECT_EQ(out[0], 'e');
  got = 99;
  EXPECT_EQ(buffer.Read(out, got, 8), KRBufferOutOfRange);
  EXPECT_EQ(got, 99);
}

TEST(KRBuffer, MovesItsCursorUpToTheSize) {
  KRBuffer buffer(0, 0);
  buffer += "abc";
  EXPECT_EQ(buffer.SetBufferOffset(1), 1);
  EXPECT_EQ(buffer.SetBufferOffset(4), 0);
  EXPECT_EQ(buffer.GetBufferOffset(), 1u);
  EXPECT_EQ(buffer.SetBufferOffset(3), 1);
}

TEST(KRBuffer, GivesCharactersWithoutMovingItsCursor) {
  KRBuffer buffer(0, 0);
  buffer += "abc";
  EXPECT_EQ(buffer.GetCh(0), 'a');
  EXPECT_EQ(buffer.GetCh(2), 'c');
  EXPECT_EQ(buffer.GetCh(3), 0);
  EXPECT_EQ(buffer.GetCh(-1), 0);
  EXPECT_EQ(buffer.GetBufferOffset(), 3u);
}

TEST(KRBuffer, ReadsNothingBeyondItsMemory) {
  KRBuffer buffer(4, 0);
  buffer += "abcd";
  buffer.SetBufferSize(100);
  EXPECT_EQ(buffer.GetBufferSize(), 100u);
  EXPECT_EQ(buffer.GetCh(4), 0);
  buffer.SetBufferOffset(3);
  char out[8];
  u16 got = 0;
  EXPECT_EQ(buffer.Read(out, got, 8), KRBufferOutOfRange);
  s32 position = 0;
  EXPECT_EQ(buffer.FindSubChar(0, 'z', &position), 0);
  EXPECT_EQ(position, 4);
  KRString text;
  EXPECT_EQ(buffer.GetData(text, 0, 50), 4);
  KRBuffer target(0, 0);
  EXPECT_EQ(buffer.CopyBuffer(&target, 0, 0), KRBufferOutOfRange);
  EXPECT_EQ(target += &buffer, KRBufferOK);
  EXPECT_EQ(Content(target), "abcd");
  buffer.ClearBuffer('x');
  EXPECT_EQ(buffer.GetCh(0), 'x');
}

TEST(KRBuffer, ZeroesAGapThatAWriteLeaves) {
  KRBuffer buffer(4, 0);
  buffer += "abcd";
  buffer.SetBufferSize(8);
  buffer.SetBufferOffset(8);
  buffer += 'z';
  EXPECT_EQ(Content(buffer), std::string("abcd\0\0\0\0z", 9));
}

// ---- Searching and taking text ----

TEST(KRBuffer, FindsACharacter) {
  KRBuffer buffer(0, 0);
  buffer += "ab<cd";
  s32 position = -5;
  EXPECT_EQ(buffer.FindSubChar(0, '<', &position), 1);
  EXPECT_EQ(position, 2);
  EXPECT_EQ(buffer.FindSubChar(2, '<', &position), 1);
  EXPECT_EQ(buffer.FindSubChar(3, '<', &position), 0);
  EXPECT_EQ(position, 5);
}

TEST(KRBuffer, StopsSearchingAtANul) {
  KRBuffer buffer(0, 0);
  buffer.WriteString("ab");
  buffer += "cd";
  s32 position = 0;
  EXPECT_EQ(buffer.FindSubChar(0, 'd', &position), 0);
  EXPECT_EQ(position, 2);
  EXPECT_EQ(buffer.FindSubChar(-1, 'a', &position), 0);
  EXPECT_EQ(position, -1);
  EXPECT_EQ(buffer.FindSubChar(5, 'a', &position), 0);
  EXPECT_EQ(position, 5);
  EXPECT_EQ(buffer.FindSubChar(0, '\0', &position), 1);
  EXPECT_EQ(position, 2);
  EXPECT_EQ(buffer.FindSubChar(3, 'd', nullptr), 1);
}

TEST(KRBuffer, ReadsThroughGetChOfADerivedBuffer) {
  ServingBuffer buffer("served<text");
  EXPECT_EQ(buffer.HasPlainBytes(), 0);
  s32 position = 0;
  EXPECT_EQ(buffer.FindSubChar(1, '<', &position), 1);
  EXPECT_EQ(position, 6);
  EXPECT_EQ(buffer.FindSubChar(1, 'z', &position), 0);
  EXPECT_EQ(position, 11);
  EXPECT_EQ(buffer.FindSubChar(1, '\0', &position), 1);
  KRString out;
  EXPECT_EQ(buffer.GetData(out, 7, 10), 4);
  EXPECT_TRUE(out == "text");
  EXPECT_EQ(buffer.GetData(out, 7, 2), 2);
  EXPECT_TRUE(out == "te");
  EXPECT_EQ(KRBuffer(0, 0).HasPlainBytes(), 1);
}

TEST(KRBuffer, TakesTextOutUntilANul) {
  KRBuffer buffer(0, 0);
  buffer.WriteString("abc");
  buffer += "de";
  KRString32 out;
  EXPECT_EQ(buffer.GetData(out, 1, 9), 2);
  EXPECT_TRUE(out == "bc");
  EXPECT_EQ(out.BufferSize(), 10);
  EXPECT_EQ(out.SpecLength(), 32);
  EXPECT_EQ(buffer.GetData(out, 4, 1), 1);
  EXPECT_TRUE(out == "d");
  EXPECT_EQ(buffer.GetData(out, 4, 9), 2);
  EXPECT_TRUE(out == "de");
  EXPECT_EQ(buffer.GetData(out, 0, 0), 0);
  EXPECT_EQ(out.IsEmpty(), 1);
  EXPECT_EQ(buffer.GetData(out, -1, 3), 0);
  EXPECT_EQ(buffer.GetBufferOffset(), 6u);
}

TEST(KRBuffer, TakesNoMoreTextThanAStringHolds) {
  KRBuffer buffer(0, 0);
  Put(buffer, std::string(70000, 'x'));
  KRString out;
  EXPECT_EQ(buffer.GetData(out, 0, 65535), 65534);
  EXPECT_EQ(out.GetStrLength(), 65534);
}

TEST(KRBuffer, TakesNoTextWithoutMemory) {
  KRBuffer buffer(0, 0);
  buffer += "abc";
  KRString out;
  FailingAllocation failing(1);
  EXPECT_EQ(buffer.GetData(out, 0, 3), 0);
  EXPECT_TRUE(AlarmIsSet());
}

// ---- Whole buffers ----

TEST(KRBuffer, CopiesContent) {
  KRBuffer source(0, 0);
  source += "0123456789";
  KRBuffer target(0, 0);
  target += "what was there before";
  EXPECT_EQ(source.CopyBuffer(&target, 0, 0), KRBufferOK);
  ExpectState(target, 512, 10, 10);
  EXPECT_EQ(Content(target), "0123456789");
  EXPECT_EQ(source.CopyBuffer(&target, 2, 3), KRBufferOK);
  EXPECT_EQ(Content(target), "234");
  EXPECT_EQ(target.GetBufferOffset(), 3u);
  EXPECT_EQ(source.CopyBuffer(&target, 4, 0), KRBufferOK);
  EXPECT_EQ(Content(target), "456789");
}

TEST(KRBuffer, CopiesNothingPastItsContent) {
  KRBuffer source(0, 0);
  source += "0123456789";
  KRBuffer target(0, 0);
  target += "abc";
  EXPECT_EQ(source.CopyBuffer(&target, 5, 6), KRBufferOutOfRange);
  EXPECT_EQ(source.CopyBuffer(&target, 11, 0), KRBufferOutOfRange);
  EXPECT_EQ(source.CopyBuffer(&target, 4294967295u, 2), KRBufferOutOfRange);
  EXPECT_EQ(source.CopyBuffer(nullptr, 0, 0), KRBufferNoData);
  EXPECT_EQ(Content(target), "abc");
}

TEST(KRBuffer, ACopyOfNothingGivesTheOldCursorAsSize) {
  KRBuffer source(0, 0);
  KRBuffer target(0, 0);
  target += "abc";
  target.SetBufferOffset(2);
  EXPECT_EQ(source.CopyBuffer(&target, 0, 0), KRBufferOK);
  ExpectState(target, 512, 2, 0);
}

TEST(KRBuffer, GrowsTheTargetOfACopyAndCopiesIntoItself) {
  KRBuffer source(0, 0);
  Put(source, std::string(2000, 'x') + "end");
  KRBuffer target(0, 0);
  EXPECT_EQ(source.CopyBuffer(&target, 0, 0), KRBufferOK);
  EXPECT_EQ(target.GetBufferAllocation(), 2003u);
  EXPECT_EQ(source.CopyBuffer(&source, 1999, 0), KRBufferOK);
  EXPECT_EQ(Content(source), "xend");
}

TEST(KRBuffer, ComparesContent) {
  KRBuffer one(0, 0);
  KRBuffer other(100, 0);
  one += "abc";
  other += "abc";
  EXPECT_EQ(one.CompareBuffer(&other), 1);
  other += 'd';
  EXPECT_EQ(one.CompareBuffer(&other), 0);
  EXPECT_EQ(other.CompareBuffer(&one), 0);
  one += 'x';
  EXPECT_EQ(one.CompareBuffer(&other), 0);
  EXPECT_EQ(one.CompareBuffer(nullptr), 0);
}

TEST(KRBuffer, ComparesWithAShorterAllocation) {
  KRBuffer large(0, 0);
  Put(large, std::string(400, 'x'));
  KRBuffer small(10, 0);
  small += 'x';
  EXPECT_EQ(large.CompareBuffer(&small), 0);
}

TEST(KRBuffer, ClearsForRefilling) {
  KRBuffer buffer(0, 0);
  buffer += "abc";
  buffer.ClearBuffer('-');
  ExpectState(buffer, 512, 3, 0);
  EXPECT_EQ(Content(buffer), "---");
  buffer += "xy";
  EXPECT_EQ(Content(buffer), "xy");
  buffer.SetBufferOffset(1);
  buffer.ClearBuffer(0);
  ExpectState(buffer, 512, 1, 0);
}

TEST(KRBuffer, TakesASizeFromItsCaller) {
  KRBuffer buffer(0, 0);
  std::memcpy(buffer.GetBufferPtr(), "abcd", 4);
  buffer.SetBufferSize(4);
  ExpectState(buffer, 512, 4, 0);
  EXPECT_EQ(Content(buffer), "abcd");
  buffer.SetBufferOffset(2);
  buffer.SetBufferSize(0);
  EXPECT_EQ(buffer.GetBufferSize(), 2u);
}

TEST(KRBuffer, HidesLargeMemoryFrom16BitCallers) {
  KRBuffer small(65534, 0);
  EXPECT_EQ(small.GetSmallBufferPtr(), small.GetBufferPtr());
  KRBuffer large(65535, 0);
  EXPECT_EQ(large.GetSmallBufferPtr(), nullptr);
  EXPECT_NE(large.GetBufferPtr(), nullptr);
}

TEST(KRBuffer, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<KRBuffer>);
  EXPECT_FALSE(std::is_copy_assignable_v<KRBuffer>);
}

// ---- Wiping ----

TEST(KRBuffer, IsOverwrittenBeforeItIsFreed) {
  WipedMemory wiped;
  char const* data = nullptr;
  {
    KRBuffer buffer(0, 0);
    Put(buffer, std::string(600, 'x'));
    data = buffer.GetBufferPtr();
  }
  EXPECT_TRUE(wiped.Covers(data, 1024));
}

TEST(KRBuffer, IsOverwrittenWhereItGrew) {
  WipedMemory wiped;
  KRBuffer buffer(10, 0);
  buffer += "a secret!!";
  char const* data = buffer.GetBufferPtr();
  buffer += "more";
  EXPECT_TRUE(wiped.Covers(data, 10));
  EXPECT_EQ(Content(buffer), "a secret!!more");
}

// ---- Exhausted memory ----

TEST(KRBuffer, LosesItsDataWhenItCannotGrow) {
  WipedMemory wiped;
  KRBuffer buffer(0, 0);
  Put(buffer, std::string(512, 'x'));
  char const* data = buffer.GetBufferPtr();
  {
    FailingAllocation failing(1);
    EXPECT_EQ(buffer.Write('y'), KRBufferNoMemory);
  }
  EXPECT_TRUE(AlarmIsSet());
  EXPECT_TRUE(wiped.Covers(data, 512));
  EXPECT_EQ(buffer.GetBufferPtr(), nullptr);
  ExpectState(buffer, 512, 512, 512);
  EXPECT_EQ(buffer.SetBufferOffset(0), 1);
  EXPECT_EQ(buffer.Write('z'), KRBufferNoData);
  char byte = 0;
  EXPECT_EQ(buffer.Read(&byte), KRBufferNoData);
  EXPECT_EQ(buffer.GetCh(0), 0);
  EXPECT_EQ(buffer.CompareBuffer(&buffer), 0);
  KRBuffer other(0, 0);
  EXPECT_EQ(other += &buffer, KRBufferNoData);
  EXPECT_EQ(buffer.CopyBuffer(&other, 0, 0), KRBufferNoData);
  EXPECT_EQ(other.CopyBuffer(&buffer, 0, 0), KRBufferNoData);
  buffer.ClearBuffer('x');
  EXPECT_EQ(buffer.GetBufferSize(), 512u);
}

TEST(KRBuffer, ReportsRefusedGrowthByItsGrowSize) {
  KRBuffer exact(4, 0);
  exact += "abcd";
  FailingAllocation failing(1);
  EXPECT_EQ(exact.Write('y'), KRBufferOutOfRange);
}

TEST(KRBuffer, ReadsZerosWhereItsLostContentWas) {
  KRBuffer buffer(4, 4);
  buffer += "abcd";
  {
    FailingAllocation failing(1);
    EXPECT_EQ(buffer.Write('e'), KRBufferNoMemory);
  }
  EXPECT_EQ(buffer.Write('f'), KRBufferOK);
  EXPECT_EQ(Content(buffer), std::string("\0\0\0\0f", 5));
}

TEST(KRBuffer, ReportsExhaustedMemoryOfAnAllocation) {
  KRBuffer buffer(0, 0);
  KRBuffer source(0, 0);
  Put(source, std::string(600, 'x'));
  FailingAllocation failing(1, true);
  EXPECT_EQ(buffer.AllocateTo(5000), KRBufferNoMemory);
  KRBuffer empty(0, 0);
  EXPECT_EQ(empty.GetBufferAllocation(), 0u);
  EXPECT_EQ(source.CopyBuffer(&empty, 0, 0), KRBufferNoMemory);
}

// ---- Arrays of buffers ----

KRBuffer* BufferOf(char const* text) {
  auto* buffer = new KRBuffer(0, 0);
  *buffer += text;
  return buffer;
}

TEST(KRDynamicArrayBuffer, OwnsItsBuffers) {
  WipedMemory wiped;
  {
    KRDynamicArrayBuffer array(2, 2);
    EXPECT_EQ(array.Get(0), nullptr);
    EXPECT_EQ(array.Set(0, BufferOf("a")), 1);
    EXPECT_EQ(array.Set(0, BufferOf("b")), 1);
    EXPECT_EQ(wiped.Blocks().size(), 1u);
    EXPECT_EQ(array.Set(2, BufferOf("c")), 1);
    EXPECT_EQ(array.Allocated(), 4);
    EXPECT_EQ(array.Entries(), 3);
    EXPECT_EQ(array.Set(1, nullptr), 0);
    EXPECT_EQ(Content(*array.Get(2)), "c");
  }
  EXPECT_EQ(wiped.Blocks().size(), 3u);
}

TEST(KRDynamicArrayBuffer, UnSetLeavesAHole) {
  KRDynamicArrayBuffer array(2, 2);
  KRBuffer* first = BufferOf("a");
  array.Set(0, first);
  array.Set(1, BufferOf("b"));
  array.Set(2, BufferOf("c"));
  EXPECT_EQ(array.UnSet(0), 1);
  EXPECT_EQ(array.Get(0), nullptr);
  EXPECT_EQ(Content(*array.Get(1)), "b");
  EXPECT_EQ(array.Entries(), 3);
  EXPECT_EQ(array.UnSet(3), 1);
  EXPECT_EQ(array.UnSet(4), 0);
  krofx::internal::DeleteBuffer(first);
}

TEST(KRDynamicArrayBuffer, ClearGivesItsBuffersUp) {
  KRBuffer* buffer = BufferOf("a");
  {
    KRDynamicArrayBuffer array(0, 0);
    array.Set(0, buffer);
    array.Clear();
    EXPECT_EQ(array.Entries(), 0);
    EXPECT_EQ(array.Allocated(), 1);
  }
  EXPECT_EQ(Content(*buffer), "a");
  krofx::internal::DeleteBuffer(buffer);
}

TEST(KRDynamicArrayBuffer, RefusesWithoutMemory) {
  KRDynamicArrayBuffer array(1, 1);
  KRBuffer* kept = BufferOf("a");
  KRBuffer* refused = BufferOf("b");
  array.Set(0, kept);
  {
    FailingAllocation failing(1);
    EXPECT_EQ(array.Set(1, refused), 0);
  }
  EXPECT_EQ(array.Get(0), kept);
  EXPECT_EQ(array.Entries(), 1);
  EXPECT_EQ(array.Set(1, refused), 1);
}

}  // namespace
