// Strings: assignment, spec length, comparison, editing, CDATA, exhausted memory.

#include "krofx/core/string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

#include "krofx/core/fixed_strings.h"
#include "support/failing_allocation.h"
#include "support/wiped_memory.h"

namespace {

std::string Repeat(std::size_t count, char character = 'a') {
  return std::string(count, character);
}

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
  char const* text = string;
  ASSERT_NE(text, nullptr);
  EXPECT_STREQ(text, "");
}

TEST(KRString, SharesOneEmptyTextAmongNullStrings) {
  KRString one;
  KRString other;
  EXPECT_EQ(static_cast<char const*>(one), static_cast<char const*>(other));
}

TEST(KRString, FitsItsMemoryExactly) {
  KRString string("abc");
  EXPECT_EQ(string.BufferSize(), 4);
  EXPECT_EQ(string.GetStrLength(), 3);
  EXPECT_EQ(string.IsNull(), 0);
}

TEST(KRString, StaysNullWhenMadeOfNothing) {
  EXPECT_EQ(KRString("").IsNull(), 1);
  EXPECT_EQ(KRString(static_cast<char const*>(nullptr)).IsNull(), 1);
}

TEST(KRString, CopiesTextEncodingAndSpecLength) {
  KRString source("abc");
  source.SetSpecLength(9);
  source.SetEncoding(KRStringEncode_CDATA);
  KRString copy(source);
  EXPECT_TRUE(copy == "abc");
  EXPECT_EQ(copy.SpecLength(), 9);
  EXPECT_EQ(copy.GetEncoding(), KRStringEncode_CDATA);
  EXPECT_NE(static_cast<char const*>(copy), static_cast<char const*>(source));
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
  char const* text = source;
  KRString target(std::move(source));
  EXPECT_EQ(static_cast<char const*>(target), text);
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
  for (char const* nothing : {static_cast<char const*>(""), static_cast<char const*>(nullptr)}) {
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
  KRString const& self = string;
  string = self;
  EXPECT_TRUE(string == "abc");
  string = static_cast<char const*>(string) + 1;
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
  string += static_cast<char const*>(nullptr);
  EXPECT_TRUE(string == "abcd");
  EXPECT_EQ(string.BufferSize(), 5);
}

TEST(KRString, AppendsItself) {
  KRString string("abc");
  string += string;
  EXPECT_TRUE(string == "abcabc");
  string += static_cast<char const*>(string) + 4;
  EXPECT_TRUE(string == "abcabcbc");
}

TEST(KRString, SumStartsAsTheLeftOperand) {
  KRString left("abc");
  left.SetSpecLength(5);
  KRString const sum = left + KRString("def");
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
  KRString const null;
  KRString empty("x");
  empty.Clear(0);
  for (KRString const* string : {&null, static_cast<KRString const*>(&empty)}) {
    EXPECT_EQ(*string == "", 1);
    EXPECT_EQ(*string == static_cast<char const*>(nullptr), 1);
    EXPECT_EQ(*string == null, 1);
    EXPECT_EQ(*string != "", 0);
    EXPECT_EQ(*string == "x", 0);
    EXPECT_EQ(string->strcmpi(""), 1);
    EXPECT_EQ(string->strcmpi(nullptr), 1);
    EXPECT_EQ(string->strcmpi("x"), 0);
  }
  EXPECT_EQ(KRString("x") == static_cast<char const*>(nullptr), 0);
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
  KRString32 const fixed(string);
  EXPECT_TRUE(string == fixed);
  EXPECT_TRUE(fixed == string);
  EXPECT_TRUE("abc" == fixed);
  EXPECT_TRUE("abd" != string);
  EXPECT_TRUE(string != "abcd");
  EXPECT_TRUE(string != KRString("ab"));
  EXPECT_FALSE(string != fixed);
  EXPECT_TRUE((std::is_same_v<decltype(string == "abc"), u16>));
}

// ---- Spec length ----

TEST(KRString, KeepsOverLongTextAndSaysSo) {
  KRString32 string;
  string = Repeat(40).c_str();
  EXPECT_EQ(string.GetStrLength(), 40);
  EXPECT_EQ(string.IsValid(), 0);
  EXPECT_EQ(string.ExceedsSpecLength(), 1);
  string.TruncateToSpec();
  EXPECT_EQ(string.GetStrLength(), 32);
  EXPECT_EQ(string.IsValid(), 1);
  EXPECT_EQ(string.BufferSize(), 41);
}

TEST(KRString, IsNotCutToASpecLengthThatItDoesNotHave) {
  KRString string("abc");
  string.TruncateToSpec();
  EXPECT_TRUE(string == "abc");
}

template <class T>
void ExpectSpecLength(u16 length) {
  EXPECT_EQ(T().SpecLength(), length);
  EXPECT_EQ(T(KRString("abc")).SpecLength(), length);
  EXPECT_TRUE((std::is_base_of_v<KRMultiLenString, T>));
  T string;
  string = KRString64(KRString("abc"));
  EXPECT_EQ(string.SpecLength(), length);
  EXPECT_TRUE(string == "abc");
}

TEST(FixedStrings, HaveTheSpecLengthInTheirName) {
  ExpectSpecLength<KRString1>(1);
  ExpectSpecLength<KRString2>(2);
  ExpectSpecLength<KRString3>(3);
  ExpectSpecLength<KRString4>(4);
  ExpectSpecLength<KRString5>(5);
  ExpectSpecLength<KRString6>(6);
  ExpectSpecLength<KRString7>(7);
  ExpectSpecLength<KRString8>(8);
  ExpectSpecLength<KRString9>(9);
  ExpectSpecLength<KRString10>(10);
  ExpectSpecLength<KRString11>(11);
  ExpectSpecLength<KRString12>(12);
  ExpectSpecLength<KRString16>(16);
  ExpectSpecLength<KRString22>(22);
  ExpectSpecLength<KRString32>(32);
  ExpectSpecLength<KRString36>(36);
  ExpectSpecLength<KRString40>(40);
  ExpectSpecLength<KRString60>(60);
  ExpectSpecLength<KRString64>(64);
  ExpectSpecLength<KRString80>(80);
  ExpectSpecLength<KRString96>(96);
  ExpectSpecLength<KRString120>(120);
  ExpectSpecLength<KRString171>(171);
  ExpectSpecLength<KRString255>(255);
  ExpectSpecLength<KRString360>(360);
  ExpectSpecLength<KRString390>(390);
  ExpectSpecLength<KRString1000>(1000);
  ExpectSpecLength<KRString1024>(1024);
  ExpectSpecLength<KRString1280>(1280);
  ExpectSpecLength<KRString2000>(2000);
  ExpectSpecLength<KRString10000>(10000);
  ExpectSpecLength<KRUserPassword>(171);
  ExpectSpecLength<KREMailMsgBody>(2000);
  ExpectSpecLength<KRMultiLenString>(65535);
}

TEST(FixedStrings, KeepTheirSpecLengthWhenEmptied) {
  KRString32 string;
  string = "abc";
  string = "";
  EXPECT_EQ(string.IsNull(), 1);
  EXPECT_EQ(string.SpecLength(), 32);
}

TEST(FixedStrings, TakeTheEncodingOfTheSource) {
  KRString source("abc");
  source.SetEncoding(KRStringEncode_CDATA);
  KRString32 string;
  string = source;
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
  string = "abc";
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_Plain);
}

TEST(FixedStrings, CopiesOfTheSameClassBringTheSpecLength) {
  KRString32 source(KRString("abc"));
  source.SetSpecLength(5);
  KRString32 copy(source);
  EXPECT_EQ(copy.SpecLength(), 5);
  KRString32 assigned;
  assigned = source;
  EXPECT_EQ(assigned.SpecLength(), 32);
}

TEST(FixedStrings, KeepTheirSpecLengthThroughTheBase) {
  KRString32 string;
  KRString& base = string;
  base = KRString("abc");
  EXPECT_EQ(string.SpecLength(), 32);
  EXPECT_TRUE(string == "abc");
}

TEST(KRMultiLenString, KeepsTheSpecLengthItWasGiven) {
  KRMultiLenString string;
  string.SetSpecLength(20);
  string = KRString255(KRString("abc"));
  EXPECT_EQ(string.SpecLength(), 20);
  KRMultiLenString other;
  other.SetSpecLength(7);
  other = string;
  EXPECT_EQ(other.SpecLength(), 7);
}

// ---- Passwords and message bodies ----

TEST(KRUserPassword, ChangesItsLimit) {
  KRUserPassword password;
  EXPECT_EQ(password.SpecLength(), 171);
  password.SetSpecLength32();
  EXPECT_EQ(password.SpecLength(), 32);
  password = "secret";
  EXPECT_EQ(password.SpecLength(), 32);
  password.SetSpecLength171();
  EXPECT_EQ(password.SpecLength(), 171);
}

TEST(KRUserPassword, IsOverwrittenBeforeItIsFreed) {
  WipedMemory wiped;
  char const* text = nullptr;
  {
    KRUserPassword password;
    password = "a long secret";
    password.Truncate(3);
    text = password;
  }
  EXPECT_TRUE(wiped.Covers(text, 14));
}

TEST(KRUserPassword, IsOverwrittenWhereItGrew) {
  WipedMemory wiped;
  KRUserPassword password;
  password = "secret";
  char const* text = password;
  password += " and more";
  EXPECT_TRUE(password == "secret and more");
  EXPECT_TRUE(wiped.Covers(text, 7));
  text = password;
  password = KRString("a new secret, longer");
  EXPECT_TRUE(wiped.Covers(text, 16));
  text = password;
  password = KRString();
  EXPECT_TRUE(wiped.Covers(text, 21));
}

TEST(KRUserPassword, IsOverwrittenThroughEveryCopyAndTheBase) {
  WipedMemory wiped;
  char const* copied = nullptr;
  char const* moved = nullptr;
  {
    KRUserPassword password;
    password = "secret";
    KRUserPassword copy(password);
    copied = copy;
    KRUserPassword taken(std::move(password));
    moved = taken;
  }
  EXPECT_TRUE(wiped.Covers(copied, 7));
  EXPECT_TRUE(wiped.Covers(moved, 7));
  auto* heap = new KRUserPassword(KRString("secret"));
  char const* text = *heap;
  KRString* base = heap;
  delete base;
  EXPECT_TRUE(wiped.Covers(text, 7));
}

TEST(KRUserPassword, IsOverwrittenWhereItWasWrapped) {
  WipedMemory wiped;
  KRUserPassword password;
  password = "secret";
  wiped.Blocks().clear();
  password.ToCDATA();
  EXPECT_EQ(wiped.Blocks().size(), 2u);  // the old text and the temporary
  password.FromCDATA();
  EXPECT_EQ(wiped.Blocks().size(), 3u);
  EXPECT_TRUE(password == "secret");
}

TEST(KRUserPassword, IsOverwrittenWhenMemoryRunsOut) {
  WipedMemory wiped;
  KRUserPassword password;
  password = "secret";
  char const* text = password;
  FailingAllocation failing(1);
  password += " and more";
  EXPECT_EQ(password.IsNull(), 1);
  EXPECT_TRUE(wiped.Covers(text, 7));
}

TEST(KREMailMsgBody, IsInvalidWhenEmpty) {
  KREMailMsgBody body;
  EXPECT_EQ(body.IsValid(), 0);
  body = "x";
  EXPECT_EQ(body.IsValid(), 1);
}

TEST(KREMailMsgBody, ToleratesAHundredAndSixtyCharactersOver2000) {
  KREMailMsgBody body;
  body = Repeat(2160).c_str();
  EXPECT_EQ(body.IsValid(), 1);
  EXPECT_EQ(body.ExceedsSpecLength(), 1);
  body = Repeat(2161).c_str();
  EXPECT_EQ(body.IsValid(), 0);
}

TEST(KREMailMsgBody, ToleratesNothingOver10000) {
  KREMailMsgBody body;
  body = Repeat(10000).c_str();
  body.SetSpecLength10000();
  EXPECT_EQ(body.IsValid(), 1);
  body += 'x';
  EXPECT_EQ(body.IsValid(), 0);
  body.SetSpecLength2000();
  EXPECT_EQ(body.SpecLength(), 2000);
}

TEST(KREMailMsgBody, TakesTheLongerLimitFromASourceThatHasIt) {
  KREMailMsgBody body;
  body = KRString10000(KRString("abc"));
  EXPECT_EQ(body.SpecLength(), 10000);
  body = KRString("abc");
  EXPECT_EQ(body.SpecLength(), 2000);
  KREMailMsgBody source;
  source.SetSpecLength10000();
  body = source;
  EXPECT_EQ(body.SpecLength(), 10000);
  EXPECT_EQ(KREMailMsgBody(source).SpecLength(), 10000);
  KRString& base = body;
  base = KRString64(KRString("abc"));
  EXPECT_EQ(body.SpecLength(), 2000);
}

TEST(KREMailMsgBody, KeepsItsLimitWhenAssignedItself) {
  KREMailMsgBody body;
  body.SetSpecLength10000();
  body = "abc";
  body.SetSpecLength10000();
  KRString const& self = body;
  body = self;
  EXPECT_EQ(body.SpecLength(), 10000);
  EXPECT_TRUE(body == "abc");
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

// ---- CDATA ----

TEST(KRString, WrapsOnceInCDATA) {
  KRString32 string;
  string = "a<b";
  string.ToCDATA();
  EXPECT_TRUE(string == "<![CDATA[a<b]]>");
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
  EXPECT_EQ(string.SpecLength(), 32);
  string.SetEncoding(KRStringEncode_Plain);
  string.ToCDATA();
  EXPECT_TRUE(string == "<![CDATA[a<b]]>");
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
}

TEST(KRString, MayExceedItsSpecLengthByWrapping) {
  KRString5 string;
  string = "abc";
  string.ToCDATA();
  EXPECT_EQ(string.SpecLength(), 5);
  EXPECT_EQ(string.IsValid(), 0);
}

TEST(KRString, LosesItsSpecLengthByWrappingUnlessItIsFixed) {
  KRString string("abc");
  string.SetSpecLength(20);
  string.ToCDATA();
  EXPECT_EQ(string.SpecLength(), 65535);
}

TEST(KRString, UnwrapsCDATA) {
  KRString32 string;
  string = "<![CDATA[a<b]]>";
  string.SetEncoding(KRStringEncode_CDATA);
  string.FromCDATA();
  EXPECT_TRUE(string == "a<b");
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_Plain);
  EXPECT_EQ(string.SpecLength(), 32);
}

TEST(KRString, LeavesTextThatIsNotWrapped) {
  KRString string("abc]]>");
  string.SetEncoding(KRStringEncode_CDATA);
  string.FromCDATA();
  EXPECT_TRUE(string == "abc]]>");
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_Plain);
}

TEST(KRString, DropsThreeCharactersAtTheEndWhateverTheyAre) {
  KRString string("<![CDATA[abcXYZ");
  string.FromCDATA();
  EXPECT_TRUE(string == "abc");
  string = "<![CDATA[ab";
  string.FromCDATA();
  EXPECT_TRUE(string == "ab");
  string = "<![CDATA[]]>";
  string.FromCDATA();
  EXPECT_EQ(string.IsEmpty(), 1);
  string = "<![CDATA[";
  string.FromCDATA();
  EXPECT_EQ(string.IsEmpty(), 1);
}

TEST(KRString, WrapsAnEmptiedText) {
  KRString string("abc");
  string.Clear(0);
  string.ToCDATA();
  EXPECT_TRUE(string == "<![CDATA[]]>");
}

TEST(KRString, KeepsANullStringNullThroughCDATA) {
  KRString string;
  string.ToCDATA();
  EXPECT_EQ(string.IsNull(), 1);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
  string.FromCDATA();
  EXPECT_EQ(string.IsNull(), 1);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_Plain);
}

// ---- Limits ----

TEST(KRString, HoldsUpTo65534Characters) {
  KRSetFireAlarm(KRFireAlarm_None);
  std::string const longest = Repeat(65534);
  KRString string(longest.c_str());
  EXPECT_EQ(string.GetStrLength(), 65534);
  EXPECT_EQ(string.BufferSize(), 65535);
  EXPECT_FALSE(AlarmIsSet());
}

TEST(KRString, RefusesMoreThan65534CharactersAndKeepsItsText) {
  std::string const tooLong = Repeat(65535);
  std::string const wrapping = Repeat(65536 + 4);
  for (std::string const& text : {tooLong, wrapping}) {
    KRString string("abc");
    string.SetSpecLength(9);
    KRSetFireAlarm(KRFireAlarm_None);
    string = text.c_str();
    EXPECT_TRUE(string == "abc");
    EXPECT_TRUE(AlarmIsSet());
    string += text.c_str();
    EXPECT_TRUE(string == "abc");
    EXPECT_EQ(string.SpecLength(), 9);
    EXPECT_EQ(KRString(text.c_str()).IsNull(), 1);
  }
  KRString string("abc");
  string.SetEncoding(KRStringEncode_CDATA);
  EXPECT_EQ(string.Assign(tooLong.c_str(), 65535), 0);
  EXPECT_TRUE(string == "abc");
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
  KRUserPassword password;
  password = "secret";
  password = wrapping.c_str();
  EXPECT_TRUE(password == "secret");
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(KRString, RefusesToGrowBeyondItsLimit) {
  KRString string(Repeat(65534).c_str());
  string += 'x';
  EXPECT_EQ(string.GetStrLength(), 65534);
  string += "xyz";
  EXPECT_EQ(string.GetStrLength(), 65534);
  string.ToCDATA();
  EXPECT_EQ(string.GetStrLength(), 65534);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_Plain);
  KRString const sum = string + KRString("x");
  EXPECT_TRUE(sum == string);
  EXPECT_TRUE(AlarmIsSet());
  KRSetFireAlarm(KRFireAlarm_None);
}

// ---- Exhausted memory ----

TEST(KRString, EndsNullAndRaisesTheAlarmWhenMemoryIsExhausted) {
  KRString string;
  string.SetSpecLength(9);
  {
    FailingAllocation failing(1);
    string = "abc";
  }
  EXPECT_EQ(string.IsNull(), 1);
  EXPECT_EQ(string.BufferSize(), 0);
  EXPECT_EQ(string.SpecLength(), 9);
  EXPECT_TRUE(AlarmIsSet());
}

TEST(KRString, GivesUpTheOldTextWhenItCannotGrow) {
  KRString appended("abc");
  KRString assigned("abc");
  KRString locked("abc");
  FailingAllocation failing(1, true);
  appended += "def";
  EXPECT_EQ(appended.IsNull(), 1);
  EXPECT_EQ(appended.GetStrLength(), 0);
  assigned = "longer";
  EXPECT_EQ(assigned.IsNull(), 1);
  EXPECT_EQ(locked.LockBuffer(9), nullptr);
  EXPECT_EQ(locked.IsNull(), 1);
  EXPECT_EQ(KRString().Assign("abc", 3), 0);
  EXPECT_EQ(KRString("abc").IsNull(), 1);
  EXPECT_TRUE(AlarmIsSet());
}

TEST(KRString, AssignedStringBringsItsStateEvenWithoutMemory) {
  KRString source("abc");
  source.SetSpecLength(7);
  source.SetEncoding(KRStringEncode_CDATA);
  KRString string;
  FailingAllocation failing(1);
  string = source;
  EXPECT_EQ(string.IsNull(), 1);
  EXPECT_EQ(string.SpecLength(), 7);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
}

TEST(KRString, SumIsTheLeftTextWhenMemoryIsShort) {
  KRString left("abc");
  KRString right("def");
  right.SetEncoding(KRStringEncode_CDATA);
  FailingAllocation failing(1);
  KRString const sum = left + right;
  EXPECT_TRUE(sum == "abc");
  EXPECT_EQ(sum.GetEncoding(), KRStringEncode_CDATA);
  EXPECT_TRUE(AlarmIsSet());
}

TEST(KRString, NeedsNoMemoryForTextThatFits) {
  KRString string("abcdef");
  FailingAllocation failing(1);
  string = "abc";
  string += "def";
  EXPECT_TRUE(string == "abcdef");
  EXPECT_FALSE(AlarmIsSet());
}

TEST(KRString, IsNullWhenItCannotBeWrapped) {
  KRString string("abc");
  FailingAllocation failing(1);
  string.ToCDATA();
  EXPECT_EQ(string.IsNull(), 1);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
  EXPECT_TRUE(AlarmIsSet());
}

TEST(KRString, IsNotMadeWithoutMemory) {
  FailingAllocation failing(1);
  EXPECT_EQ(new KRString32, nullptr);
}

}  // namespace
