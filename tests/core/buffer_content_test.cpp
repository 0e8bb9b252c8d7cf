// The content of a byte buffer: reading, searching, taking text out, copying, comparing.

#include "krofx/core/buffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>

#include "krofx/core/fixed_strings.h"
#include "krofx/core/string.h"
#include "support/buffers.h"
#include "support/failing_allocation.h"

namespace {

/// Supplies a text of its own, with a NUL at its end.
class ServingBuffer : public KRBuffer {
 public:
  explicit ServingBuffer(const char* text) : KRBuffer(0, 0), m_text(text) {}
  char GetCh(s32 index) override {
    return index >= 0 && index < static_cast<s32>(std::strlen(m_text)) ? m_text[index] : '\0';
  }

 private:
  const char* m_text;
};

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
  KRBuffer other(4, 0);
  other += "abcd";
  other.SetBufferSize(99);
  EXPECT_EQ(buffer.CompareBuffer(&other), 0);
  other.SetBufferSize(100);
  EXPECT_EQ(buffer.CompareBuffer(&other), 1);
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

TEST(KRBuffer, ComparesEmptyContentAsEqual) {
  KRBuffer one(0, 0);
  KRBuffer other(7, 0);
  EXPECT_EQ(one.CompareBuffer(&other), 1);
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

}  // namespace
