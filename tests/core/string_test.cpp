// Strings: state, assignment, comparison and editing.

#include "krofx/core/string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

#include "krofx/core/fixed_strings.h"
#include "support/failing_allocation.h"

namespace {

// ---- State and construction ----

TEST(KRString, IsNullWithoutASpecLengthAtFirst) {
  KRString string;
  EXPECT_EQ(string.IsNull(), 1);
  EXPECT_EQ(string.IsEmpty(), 1);
  EXPECT_EQ(string.GetStrLength(), 0);
  EXPECT_EQ(string.BufferSize(), 0);
  EXPECT_EQ(string.SpecLength(), 65535);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_Plain);
  EXPECT_EQ(string.IsValid(), 1);
  EXPECT_EQ(string.SetMsgSetVersion(2), 1);
}

TEST(KRString, StaysSmall) { EXPECT_LE(sizeof(KRString), 24u); }

TEST(KRString, ConvertsToAnEmptyTextWhenNull) {
  KRString string;
  const char* text = string;
  ASSERT_NE(text, nullptr);
  EXPECT_STREQ(text, "");
}

TEST(KRString, SharesOneEmptyTextAmongNullStrings) {
  KRString one;
  KRString other;
  EXPECT_EQ(static_cast<const char*>(one), static_cast<const char*>(other));
}

TEST(KRString, FitsItsMemoryExactly) {
  KRString string("abc");
  EXPECT_EQ(string.BufferSize(), 4);
  EXPECT_EQ(string.GetStrLength(), 3);
  EXPECT_EQ(string.IsNull(), 0);
}

TEST(KRString, StaysNullWhenMadeOfNothing) {
  EXPECT_EQ(KRString("").IsNull(), 1);
  EXPECT_EQ(KRString(static_cast<const char*>(nullptr)).IsNull(), 1);
}

TEST(KRString, CopiesTextEncodingAndSpecLength) {
  KRString source("abc");
  source.SetSpecLength(9);
  source.SetEncoding(KRStringEncode_CDATA);
  KRString copy(source);
  EXPECT_TRUE(copy == "abc");
  EXPECT_EQ(copy.SpecLength(), 9);
  EXPECT_EQ(copy.GetEncoding(), KRStringEncode_CDATA);
  EXPECT_NE(static_cast<const char*>(copy), static_cast<const char*>(source));
}

TEST(KRString, CopyOfAnEmptyStringAllocatesNothing) {
  KRString source("abc");
  source.Clear(0);
  KRString copy(source);
  EXPECT_EQ(source.IsNull(), 0);
  EXPECT_EQ(copy.IsNull(), 1);
}

TEST(KRString, HandsItsTextOverWhenMoved) {
  KRString source("abc");
  const char* text = source;
  KRString target(std::move(source));
  EXPECT_EQ(static_cast<const char*>(target), text);
  EXPECT_EQ(source.IsNull(), 1);  // NOLINT: the moved-from state is promised
  EXPECT_EQ(source.BufferSize(), 0);
}

// ---- Assignment ----

TEST(KRString, AssignedTextKeepsSpecLengthAndEncoding) {
  KRString string;
  string.SetSpecLength(10);
  string.SetEncoding(KRStringEncode_CDATA);
  string = "abc";
  EXPECT_TRUE(string == "abc");
  EXPECT_EQ(string.SpecLength(), 10);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
}

TEST(KRString, AssignedEmptyTextResetsEverything) {
  for (const char* nothing : {static_cast<const char*>(""), static_cast<const char*>(nullptr)}) {
    KRString string;
    string.SetSpecLength(10);
    string.SetEncoding(KRStringEncode_CDATA);
    string = "abc";
    string = nothing;
    EXPECT_EQ(string.IsNull(), 1);
    EXPECT_EQ(string.BufferSize(), 0);
    EXPECT_EQ(string.GetStrLength(), 0);
    EXPECT_EQ(string.SpecLength(), 65535);
    EXPECT_EQ(string.GetEncoding(), KRStringEncode_Plain);
  }
}

TEST(KRString, AssignedEmptyTextLeavesANullStringAlone) {
  KRString string;
  string.SetSpecLength(10);
  string.SetEncoding(KRStringEncode_CDATA);
  string = "";
  EXPECT_EQ(string.SpecLength(), 10);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
}

TEST(KRString, AssignedStringBringsSpecLengthAndEncoding) {
  KRString source("abc");
  source.SetSpecLength(7);
  source.SetEncoding(KRStringEncode_CDATA);
  KRString string("longer text");
  string = source;
  EXPECT_TRUE(string == "abc");
  EXPECT_EQ(string.SpecLength(), 7);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
}

TEST(KRString, AssignedEmptyStringFreesTheText) {
  KRString source;
  source.SetSpecLength(7);
  KRString string("abc");
  string = source;
  EXPECT_EQ(string.IsNull(), 1);
  EXPECT_EQ(string.SpecLength(), 7);
}

TEST(KRString, NeverShrinksItsMemory) {
  KRString string("a long text");
  string = "abc";
  EXPECT_EQ(string.BufferSize(), 12);
  EXPECT_TRUE(string == "abc");
}

TEST(KRString, SurvivesAssignmentOfItself) {
  KRString string("abc");
  const KRString& self = string;
  string = self;
  EXPECT_TRUE(string == "abc");
  string = static_cast<const char*>(string) + 1;
  EXPECT_TRUE(string == "bc");
}

TEST(KRString, TakesBytesWithALength) {
  KRString string;
  string.SetSpecLength(10);
  string.SetEncoding(KRStringEncode_CDATA);
  EXPECT_EQ(string.Assign("abcdef", 3), 1);
  EXPECT_TRUE(string == "abc");
  EXPECT_EQ(string.BufferSize(), 4);
  EXPECT_EQ(string.SpecLength(), 10);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_Plain);
  EXPECT_EQ(string.Assign("ab\0cd", 5), 1);
  EXPECT_TRUE(string == "ab");
  EXPECT_EQ(string.Assign("abc", 0), 1);
  EXPECT_EQ(string.IsNull(), 1);
  EXPECT_EQ(string.SpecLength(), 10);
  string = "abc";
  EXPECT_EQ(string.Assign(nullptr, 4), 1);
  EXPECT_EQ(string.IsNull(), 1);
}

// ---- Appending ----

TEST(KRString, AppendsTextAndCharacters) {
  KRString string;
  string += "abc";
  string += 'd';
  string += '\0';
  string += "";
  string += static_cast<const char*>(nullptr);
  EXPECT_TRUE(string == "abcd");
  EXPECT_EQ(string.BufferSize(), 5);
}

TEST(KRString, AppendsItself) {
  KRString string("abc");
  string += string;
  EXPECT_TRUE(string == "abcabc");
  string += static_cast<const char*>(string) + 4;
  EXPECT_TRUE(string == "abcabcbc");
}

TEST(KRString, SumStartsAsTheLeftOperand) {
  KRString left("abc");
  left.SetSpecLength(5);
  const KRString sum = left + KRString("def");
  EXPECT_TRUE(sum == "abcdef");
  EXPECT_EQ(sum.SpecLength(), 5);
  EXPECT_EQ(sum.BufferSize(), 7);
  EXPECT_TRUE(left + "x" == "abcx");
  EXPECT_TRUE("x" + left == "xabc");
}

TEST(KRString, SumIsCDATAWhenEitherSideIs) {
  KRString plain("a");
  KRString wrapped("b");
  wrapped.SetEncoding(KRStringEncode_CDATA);
  EXPECT_EQ((plain + wrapped).GetEncoding(), KRStringEncode_CDATA);
  EXPECT_EQ((wrapped + plain).GetEncoding(), KRStringEncode_CDATA);
  EXPECT_EQ((plain + plain).GetEncoding(), KRStringEncode_Plain);
}

TEST(KRString, SumOfNothingIsNull) {
  KRString emptied("abc");
  emptied.Clear(0);
  EXPECT_EQ((KRString() + KRString()).IsNull(), 1);
  EXPECT_EQ((emptied + KRString()).IsNull(), 1);
  EXPECT_TRUE(KRString() + "abc" == "abc");
}

// ---- Comparison ----

TEST(KRString, NullEmptyAndNothingAreEqual) {
  const KRString null;
  KRString empty("x");
  empty.Clear(0);
  for (const KRString* string : {&null, static_cast<const KRString*>(&empty)}) {
    EXPECT_EQ(*string == "", 1);
    EXPECT_EQ(*string == static_cast<const char*>(nullptr), 1);
    EXPECT_EQ(*string == null, 1);
    EXPECT_EQ(*string != "", 0);
    EXPECT_EQ(*string == "x", 0);
    EXPECT_EQ(string->strcmpi(""), 1);
    EXPECT_EQ(string->strcmpi(nullptr), 1);
    EXPECT_EQ(string->strcmpi("x"), 0);
  }
  EXPECT_EQ(KRString("x") == static_cast<const char*>(nullptr), 0);
  EXPECT_EQ(KRString("x").strcmpi(nullptr), 0);
}

TEST(KRString, ComparesWithRegardToCaseUnlessAsked) {
  KRString string("Abc");
  EXPECT_EQ(string == "aBC", 0);
  EXPECT_EQ(string.strcmpi("aBC"), 1);
  EXPECT_EQ(string.strcmpi("aBCd"), 0);
}

TEST(KRString, ComparesInEveryCombination) {
  KRString string("abc");
  const KRString32 fixed(string);
  EXPECT_TRUE(string == fixed);
  EXPECT_TRUE(fixed == string);
  EXPECT_TRUE("abc" == fixed);
  EXPECT_TRUE("abd" != string);
  EXPECT_TRUE(string != "abcd");
  EXPECT_TRUE(string != KRString("ab"));
  EXPECT_EQ(string == KRString("abd"), 0);
  EXPECT_EQ(string == KRString("aBc"), 0);
  EXPECT_TRUE(string != KRString("abd"));
  EXPECT_FALSE(string != fixed);
  EXPECT_TRUE((std::is_same_v<decltype(string == "abc"), u16>));
}

// ---- Editing ----

TEST(KRString, ClearFillsAllButTheLastByte) {
  KRString string("a long text");
  string = "abc";
  string.SetSpecLength(7);
  string.SetEncoding(KRStringEncode_CDATA);
  string.Clear('x');
  EXPECT_TRUE(string == "xxxxxxxxxxx");
  EXPECT_EQ(string.SpecLength(), 7);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
  string.Clear(0);
  EXPECT_EQ(string.IsEmpty(), 1);
  EXPECT_EQ(string.IsNull(), 0);
  EXPECT_EQ(string.BufferSize(), 12);
  KRString null;
  null.Clear('x');
  EXPECT_EQ(null.IsNull(), 1);
}

TEST(KRString, TruncateKeepsTheMemory) {
  KRString string("abcdef");
  string.Truncate(2);
  EXPECT_TRUE(string == "ab");
  EXPECT_EQ(string.BufferSize(), 7);
  string.Truncate(0);
  EXPECT_EQ(string.IsEmpty(), 1);
  EXPECT_EQ(string.IsNull(), 0);
}

TEST(KRString, TruncateBeyondTheMemoryDoesNothing) {
  KRString string("ab");
  ASSERT_EQ(string.BufferSize(), 3);
  string.Truncate(5);
  string.Truncate(65535);
  string.Truncate(3);
  string.Truncate(2);
  EXPECT_TRUE(string == "ab");
}

TEST(KRString, TruncateOfANullStringDoesNothing) {
  KRString string;
  string.Truncate(0);
  string.Truncate(3);
  EXPECT_EQ(string.IsNull(), 1);
}

TEST(KRString, TrimsBlanksOnly) {
  KRString string("  \tab c\n  ");
  string.TrimTrailingSpaces();
  EXPECT_TRUE(string == "  \tab c\n");
  string.TrimLeadingSpaces();
  EXPECT_TRUE(string == "\tab c\n");
  KRString blanks("   ");
  blanks.TrimLeadingSpaces();
  EXPECT_EQ(blanks.IsEmpty(), 1);
  blanks = "   ";
  blanks.TrimTrailingSpaces();
  EXPECT_EQ(blanks.IsEmpty(), 1);
  EXPECT_EQ(blanks.IsNull(), 0);
  KRString null;
  null.TrimLeadingSpaces();
  null.TrimTrailingSpaces();
  EXPECT_EQ(null.IsNull(), 1);
}

TEST(KRString, ChangesCase) {
  KRString string("aB1-c");
  string.MakeUpper();
  EXPECT_TRUE(string == "AB1-C");
  string.MakeLower();
  EXPECT_TRUE(string == "ab1-c");
}

TEST(KRString, KnowsWhiteSpace) {
  EXPECT_EQ(KRString().IsWhiteSpace(), 1);
  EXPECT_EQ(KRString(" \n\r\t").IsWhiteSpace(), 1);
  EXPECT_EQ(KRString(" x ").IsWhiteSpace(), 0);
  EXPECT_EQ(KRString("\v").IsWhiteSpace(), 0);
  KRString emptied("x");
  emptied.Clear(0);
  EXPECT_EQ(emptied.IsWhiteSpace(), 1);
}

TEST(KRString, LetsItsBufferBeWritten) {
  KRString string;
  char* buffer = string.LockBuffer(6);
  ASSERT_NE(buffer, nullptr);
  EXPECT_EQ(string.BufferSize(), 6);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(buffer[i], 0);
  std::memset(buffer, 'x', 6);
  string.UnlockBuffer();
  EXPECT_TRUE(string == "xxxxx");
  EXPECT_EQ(string.LockBuffer(3), buffer);
  EXPECT_EQ(string.BufferSize(), 6);
  std::strcpy(string.LockBuffer(10) + 5, "yyy");
  string.UnlockBuffer();
  EXPECT_TRUE(string == "xxxxxyyy");
}

TEST(KRString, LocksNothingOnNull) {
  KRSetFireAlarm(KRFireAlarm_None);
  KRString string;
  EXPECT_EQ(string.LockBuffer(0), nullptr);
  EXPECT_FALSE(AlarmIsSet());
  string.UnlockBuffer();
  EXPECT_EQ(string.GetStrLength(), 0);
}

}  // namespace
