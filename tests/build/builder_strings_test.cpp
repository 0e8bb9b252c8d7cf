// Strings: escaping, validity in both modes, CDATA, line ends, and elements that are strings.

#include <gtest/gtest.h>

#include "build/writing_root.h"
#include "krofx/core/fixed_strings.h"
#include "krofx/core/string.h"
#include "krofx/values/language.h"

using krofx::testing::Outcome;
using krofx::testing::Write;

namespace {

constexpr auto kAsIs = KRBuildStringMacroOpt_AsIs;
constexpr auto kEscape = KRBuildStringMacroOpt_Escape;
constexpr auto kNoLine = KRBuildStringCrLfOpt_None;
constexpr auto kNewLine = KRBuildStringCrLfOpt_NewLine;
constexpr auto kStrict = KRBuildStringOpt_Strict;
constexpr auto kLenient = KRBuildStringOpt_Lenient;

Outcome WriteString(const KRString& text, KRBuildStringMacroOpt macros,
                    KRBuildStringOpt option = kStrict) {
  return Write([&](KRBuilder& b) { return b.AddString(text, macros, kNoLine); }, option);
}

KRString Limited(const char* text, u16 specLength) {
  KRString result(text);
  result.SetSpecLength(specLength);
  return result;
}

KRString InCDATA(KRString text) {
  text.SetEncoding(KRStringEncode_CDATA);
  return text;
}

TEST(BuilderStrings, AreEscapedOnRequest) {
  EXPECT_EQ(WriteString(KRString("A&B<D>"), kEscape).text, "A&amp;B&lt;D&gt;");
  EXPECT_EQ(WriteString(KRString("A&B<D>"), kAsIs).text, "A&B<D>");
  EXPECT_EQ(WriteString(KRString("&&"), kEscape).text, "&amp;&amp;");
  EXPECT_EQ(WriteString(KRString("a &nbsp; b"), kEscape).text, "a &amp;nbsp; b");
  EXPECT_EQ(WriteString(KRString("plain text"), kEscape).text, "plain text");
}

TEST(BuilderStrings, TakeOnlyTheTwoNamedOptionValues) {
  const KRString text("<");
  EXPECT_EQ(Write([&](KRBuilder& b) {
              return b.AddString(text, static_cast<KRBuildStringMacroOpt>(2), kNoLine);
            }).text,
            "<");
  for (u32 line : {0u, 2u, 3u, 4u, 5u, 6u, 7u}) {
    EXPECT_EQ(Write([&](KRBuilder& b) {
                return b.AddString(text, kAsIs, static_cast<KRBuildStringCrLfOpt>(line));
              }).text,
              "<");
  }
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddString(text, kAsIs, kNewLine); }).text, "<\n");
}

TEST(BuilderStrings, MayBeEmpty) {
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddString(KRString(), kEscape, kNewLine); }),
            (Outcome{KRBuildStatus_Done, "\n"}));
}

TEST(BuilderStrings, RefuseANullPointer) {
  const KRString* const none = nullptr;
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddString(none, kEscape, kNewLine); }),
            (Outcome{KRBuildStatus_EmptyText, ""}));
}

TEST(BuilderStrings, GoByPointerAsByReference) {
  const KRString text("a<b");
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddString(&text, kEscape, kNewLine); }),
            (Outcome{KRBuildStatus_Done, "a&lt;b\n"}));
}

TEST(BuilderStrings, StopAStrictBuildWhenTooLong) {
  const KRString32 text(KRString("1234567890123456789012345678901234567890"));
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddString(text, kEscape, kNewLine); }, kStrict),
            (Outcome{KRBuildStatus_TooLong, ""}));
}

TEST(BuilderStrings, AreCutInALenientBuild) {
  const KRString32 text(KRString("1234567890123456789012345678901234567890"));
  for (u32 option : {1u, 2u, 0xffffffffu}) {
    EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddString(text, kEscape, kNewLine); },
                    static_cast<KRBuildStringOpt>(option)),
              (Outcome{KRBuildStatus_Done, "12345678901234567890123456789012\n"}));
  }
}

TEST(BuilderStrings, AreCutBehindEscaping) {
  EXPECT_EQ(WriteString(Limited("ab<cdefghij", 8), kEscape, kLenient).text, "ab&lt;cd");
  EXPECT_EQ(WriteString(Limited("abcde&fghij", 8), kEscape, kLenient).text, "abcde&am");
  EXPECT_EQ(WriteString(Limited("ab<cdefghij", 8), kAsIs, kLenient).text, "ab<cdefg");
}

TEST(BuilderStrings, AreMeasuredBeforeEscaping) {
  const KRString text = Limited("<<<<", 4);
  EXPECT_EQ(WriteString(text, kEscape, kStrict).text, "&lt;&lt;&lt;&lt;");
  EXPECT_EQ(WriteString(text, kEscape, kLenient).text, "&lt;&lt;&lt;&lt;");
}

TEST(BuilderStrings, WithASpecLengthOfZeroAreCutToNothing) {
  EXPECT_EQ(WriteString(Limited("abc", 0), kEscape, kLenient), (Outcome{KRBuildStatus_Done, ""}));
  EXPECT_EQ(WriteString(Limited("abc", 0), kEscape, kStrict), (Outcome{KRBuildStatus_TooLong, ""}));
}

TEST(BuilderStrings, ThatTheirClassRefusesStopAStrictBuildWithAStatusOfTheirOwn) {
  const KREMailMsgBody empty;
  EXPECT_EQ(WriteString(empty, kEscape, kStrict), (Outcome{KRBuildStatus_NotValid, ""}));
  EXPECT_EQ(WriteString(empty, kEscape, kLenient), (Outcome{KRBuildStatus_Done, ""}));
}

TEST(BuilderStrings, ThatTheirClassToleratesAreWrittenWhole) {
  KREMailMsgBody body;
  const std::string tolerated(2160, 'x');
  body = KRString(tolerated.c_str());
  EXPECT_EQ(WriteString(body, kEscape, kStrict).text, tolerated);
  body = KRString((tolerated + 'x').c_str());
  EXPECT_EQ(WriteString(body, kEscape, kStrict).status, KRBuildStatus_TooLong);
  EXPECT_EQ(WriteString(body, kEscape, kLenient).text, std::string(2000, 'x'));
}

TEST(BuilderStrings, WithCDATAAreWrittenTwiceAndNeverEscaped) {
  const KRString text = InCDATA(KRString("a<b"));
  for (auto macros : {kAsIs, kEscape}) {
    EXPECT_EQ(WriteString(text, macros).text, "a<b<![CDATA[a<b]]>");
  }
}

TEST(BuilderStrings, WithCDATAAreCutBehindTheWrapping) {
  EXPECT_EQ(WriteString(InCDATA(Limited("abcdef", 5)), kEscape, kLenient).text, "abcde");
  EXPECT_EQ(WriteString(InCDATA(Limited("abcdef", 5)), kEscape, kStrict).status,
            KRBuildStatus_TooLong);
  EXPECT_EQ(WriteString(InCDATA(Limited("abcde", 5)), kEscape, kLenient).text,
            "abcde<![CDATA[abcde]]>");
}

TEST(BuilderStrings, WithCDATALongerThanAStringAreWrittenWhole) {
  const std::string longText(40000, '&');
  EXPECT_EQ(WriteString(InCDATA(KRString(longText.c_str())), kEscape).text,
            longText + "<![CDATA[" + longText + "]]>");
  std::string escaped;
  for (std::size_t i = 0; i < longText.size(); ++i) escaped += "&amp;";
  EXPECT_EQ(WriteString(KRString(longText.c_str()), kEscape).text, escaped);
}

TEST(BuilderStrings, StayAsTheyWere) {
  KRString32 text(KRString("1234567890<23456789012345678901234567890"));
  const KRString before(text);
  WriteString(text, kEscape, kLenient);
  EXPECT_TRUE(text == before);
  EXPECT_EQ(text.SpecLength(), 32);
}

TEST(BuilderStringElements, HaveTagTextAndLineFeed) {
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddTagKRString(KRTag_NAME, KRString("A & B")); }),
            (Outcome{KRBuildStatus_Done, "<NAME>A &amp; B\n"}));
}

TEST(BuilderStringElements, RefuseATextOfBlanks) {
  for (const char* text : {"", " ", " \t\r\n"}) {
    const KRString blank(text);
    EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddTagKRString(KRTag_NAME, blank); }),
              (Outcome{KRBuildStatus_EmptyText, ""}));
    EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddTagKRString(KRTag_NAME, &blank); }),
              (Outcome{KRBuildStatus_EmptyText, ""}));
  }
}

TEST(BuilderStringElements, RefuseANullPointer) {
  const KRString* const none = nullptr;
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddTagKRString(KRTag_NAME, none); }),
            (Outcome{KRBuildStatus_EmptyText, ""}));
}

TEST(BuilderStringElements, LeaveTheTagBehindWhenTheTextIsRefused) {
  EXPECT_EQ(
      Write([](KRBuilder& b) { return b.AddTagKRString(KRTag_NAME, Limited("abc", 2)); }, kStrict),
      (Outcome{KRBuildStatus_TooLong, "<NAME>"}));
}

TEST(BuilderStringElements, GoNoFurtherThanAnUnknownTag) {
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddTagKRString(KRTag_None, KRString("x")); }),
            (Outcome{KRBuildStatus_NullArgument, ""}));
}

TEST(BuilderIdentifiers, AreEscapedStrings) {
  const KRString36 server(KRString("A<1"));
  const KRString12 payee(KRString("B&2"));
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddServerID(server); }).text, "A&lt;1\n");
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddPayeeID(payee); }).text, "B&amp;2\n");
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddTagKRServerID(KRTag_SRVRTID, server); }).text,
            "<SRVRTID>A&lt;1\n");
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddTagKRPayeeID(KRTag_PAYEEID, payee); }).text,
            "<PAYEEID>B&amp;2\n");
}

TEST(BuilderIdentifiers, KeepTheirLimit) {
  const KRString12 payee(KRString("1234567890123"));
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddPayeeID(payee); }).status, KRBuildStatus_TooLong);
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddPayeeID(payee); }, kLenient).text,
            "123456789012\n");
}

TEST(BuilderLanguages, AreStringsOfThreeCharacters) {
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddLanguage(KRLanguage(KRString("ENG"))); }).text,
            "ENG\n");
  EXPECT_EQ(Write([](KRBuilder& b) {
              return b.AddTagKRLanguage(KRTag_LANGUAGE, KRLanguage(KRString("FRA")));
            }).text,
            "<LANGUAGE>FRA\n");
  const KRLanguage overLong(KRString("ENGL"));
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddLanguage(overLong); }).status,
            KRBuildStatus_TooLong);
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddLanguage(overLong); }, kLenient).text, "ENG\n");
}

}  // namespace
