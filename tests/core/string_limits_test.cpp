// Strings at their edges: CDATA wrapping, the longest text, exhausted memory.

#include "krofx/core/string.h"

#include <gtest/gtest.h>

#include <string>

#include "krofx/core/fixed_strings.h"
#include "support/failing_allocation.h"

namespace {

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
  const std::string longest = std::string(65534, 'a');
  KRString string(longest.c_str());
  EXPECT_EQ(string.GetStrLength(), 65534);
  EXPECT_EQ(string.BufferSize(), 65535);
  EXPECT_FALSE(AlarmIsSet());
}

TEST(KRString, GrowsUpTo65534Characters) {
  KRSetFireAlarm(KRFireAlarm_None);
  KRString string(std::string(65532, 'a').c_str());
  EXPECT_EQ((string + KRString("xy")).GetStrLength(), 65534);
  string += 'x';
  string += "y";
  EXPECT_EQ(string.GetStrLength(), 65534);
  KRString wrapped(std::string(65534 - 12, 'a').c_str());
  wrapped.ToCDATA();
  EXPECT_EQ(wrapped.GetStrLength(), 65534);
  EXPECT_FALSE(AlarmIsSet());
}

TEST(KRString, RefusesMoreThan65534CharactersAndKeepsItsText) {
  const std::string tooLong = std::string(65535, 'a');
  const std::string wrapping = std::string(65536 + 4, 'a');
  for (const std::string& text : {tooLong, wrapping}) {
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
  KRSetFireAlarm(KRFireAlarm_None);
  EXPECT_EQ(string.Assign(tooLong.c_str(), 65535), 0);
  EXPECT_TRUE(AlarmIsSet());
  EXPECT_TRUE(string == "abc");
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_CDATA);
  KRUserPassword password;
  password = "secret";
  password = wrapping.c_str();
  EXPECT_TRUE(password == "secret");
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(KRString, RefusesToGrowBeyondItsLimit) {
  KRString string(std::string(65534, 'a').c_str());
  string += 'x';
  EXPECT_EQ(string.GetStrLength(), 65534);
  string += "xyz";
  EXPECT_EQ(string.GetStrLength(), 65534);
  string.ToCDATA();
  EXPECT_EQ(string.GetStrLength(), 65534);
  EXPECT_EQ(string.GetEncoding(), KRStringEncode_Plain);
  const KRString sum = string + KRString("x");
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
  const KRString sum = left + right;
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
