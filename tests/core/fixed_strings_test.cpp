// Strings with a spec length: the fixed-length classes, passwords and message bodies.

#include "krofx/core/fixed_strings.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

#include "support/failing_allocation.h"
#include "support/wiped_memory.h"

namespace {

// ---- Spec length ----

TEST(KRString, KeepsOverLongTextAndSaysSo) {
  KRString32 string;
  string = std::string(40, 'a').c_str();
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

TEST(FixedStrings, DeriveFromTheStringsOfTheirLength) {
  EXPECT_TRUE((std::is_base_of_v<KRString171, KRUserPassword>));
  EXPECT_TRUE((std::is_base_of_v<KRString2000, KREMailMsgBody>));
}

TEST(FixedStrings, DependOnNoMessageSetVersion) {
  KRString32 string(KRString("abc"));
  KRString& base = string;
  EXPECT_EQ(base.SetMsgSetVersion(2), 1);
  EXPECT_TRUE(string == "abc");
  EXPECT_EQ(string.SpecLength(), 32);
}

TEST(KRString, IsCutToItsSpecLengthByItsClassesOwnTruncate) {
  class Watching : public KRString {
   public:
    using KRString::operator=;
    void Truncate(u16 length) override { m_asked = length; }
    u16 m_asked = 0;
  } string;
  string = "abcdef";
  string.SetSpecLength(4);
  string.TruncateToSpec();
  EXPECT_EQ(string.m_asked, 4);
  EXPECT_TRUE(string == "abcdef");
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

TEST(KRUserPassword, BringsItsLimitToACopyAndKeepsItWhenAssigned) {
  KRUserPassword source;
  source.SetSpecLength32();
  source = "secret";
  KRUserPassword copy(source);
  EXPECT_EQ(copy.SpecLength(), 32);
  EXPECT_EQ(KRUserPassword(static_cast<const KRString&>(source)).SpecLength(), 171);
  KRUserPassword assigned;
  assigned = source;
  EXPECT_EQ(assigned.SpecLength(), 171);
  EXPECT_TRUE(assigned == "secret");
}

TEST(KRUserPassword, IsOverwrittenBeforeItIsFreed) {
  WipedMemory wiped;
  const char* text = nullptr;
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
  const char* text = password;
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
  const char* copied = nullptr;
  const char* moved = nullptr;
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
  const char* text = *heap;
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
  const char* text = password;
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
  body = std::string(2160, 'a').c_str();
  EXPECT_EQ(body.IsValid(), 1);
  EXPECT_EQ(body.ExceedsSpecLength(), 1);
  body = std::string(2161, 'a').c_str();
  EXPECT_EQ(body.IsValid(), 0);
}

TEST(KREMailMsgBody, ToleratesNothingOver10000) {
  KREMailMsgBody body;
  body = std::string(10000, 'a').c_str();
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

TEST(KREMailMsgBody, TakesTheShorterLimitFromAPlainText) {
  KREMailMsgBody body;
  body.SetSpecLength10000();
  body = "abc";
  EXPECT_EQ(body.SpecLength(), 2000);
}

TEST(KREMailMsgBody, TakesTheShorterLimitFromWrapping) {
  KREMailMsgBody body;
  body = "a<b";
  body.SetSpecLength10000();
  body.ToCDATA();
  EXPECT_TRUE(body == "<![CDATA[a<b]]>");
  EXPECT_EQ(body.SpecLength(), 2000);
  body.SetSpecLength10000();
  body.FromCDATA();
  EXPECT_TRUE(body == "a<b");
  EXPECT_EQ(body.SpecLength(), 2000);
}

TEST(KREMailMsgBody, KeepsItsLimitWhenAssignedItself) {
  KREMailMsgBody body;
  body.SetSpecLength10000();
  body = "abc";
  body.SetSpecLength10000();
  const KRString& self = body;
  body = self;
  EXPECT_EQ(body.SpecLength(), 10000);
  EXPECT_TRUE(body == "abc");
}

}  // namespace
