// Character sets and characters: what texts declare, and what they are in.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "krofx/krofx.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

// A statement with a name, under declared sets.
std::string Statement(std::string_view name, std::string_view encoding = "USASCII",
                      std::string_view charset = "1252") {
  std::string text = BankStatementFile(
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-1.50<FITID>a"
      "<NAME>" +
      std::string(name) + "</STMTTRN>");
  text.replace(text.find("USASCII"), 7, encoding);
  text.replace(text.find("1252"), 4, charset);
  return text;
}

// The name in the tree, as it is and as a person reads it.
KRString NameIn(const Reading& reading) {
  auto* const transaction = FindIn<KRBankStatementTx>(reading.root);
  return transaction == nullptr ? KRString("no transaction") : KRString(transaction->GetName());
}
std::string Shown(const Reading& reading) { return Str(reading.texts[0].ToUtf8(NameIn(reading))); }

TEST(Characters, AreShownInUtf8WhateverTheSetIs) {
  const struct {
    const char* encoding;
    const char* charset;
    const char* bytes;
    const char* shown;
    const char* found;
  } kCases[] = {
      {"USASCII", "1252", "Caf\xE9 \x80", "Caf\u00e9 \u20ac", "WINDOWS-1252"},
      {"USASCII", "ISO-8859-1", "Caf\xE9", "Caf\u00e9", "WINDOWS-1252"},
      {"USASCII", "8859-1", "Caf\xE9", "Caf\u00e9", "WINDOWS-1252"},
      {"USASCII", "ISO-8859-15", "\xA4 5", "\u20ac 5", "ISO-8859-15"},
      {"USASCII", "8859-2", "\xA3\xF3", "\u0141\u00f3", "ISO-8859-2"},
      {"USASCII", "1250", "\xA3\xF3", "\u0141\u00f3", "WINDOWS-1250"},
      {"USASCII", "1251", "\xC1\xE0\xED\xEA", "\u0411\u0430\u043d\u043a", "WINDOWS-1251"},
      {"USASCII", "850", "\x82", "\u00e9", "CP850"},
      {"UTF-8", "NONE", "Z\xC3\xBCrich", "Z\u00fcrich", "UTF-8"},
      {"UNICODE", "NONE", "Z\xC3\xBCrich", "Z\u00fcrich", "UTF-8"},
      {"USASCII", "NONE", "Caf\xE9", "Caf\u00e9", "WINDOWS-1252"},
      {"UTF-8", "1252", "Z\xC3\xBCrich", "Z\u00fcrich", "UTF-8"},
      {"USASCII", "UTF8", "Z\xC3\xBCrich", "Z\u00fcrich", "UTF-8"},
      {"USASCII", "SHIFT_JIS", "\x8B\xE2\x8D\x73", "\u9280\u884c", "SHIFT_JIS"},
  };
  for (const auto& each : kCases) {
    const Reading reading = Read(Statement(each.bytes, each.encoding, each.charset));
    EXPECT_EQ(MendingLines(reading), Lines()) << each.charset;
    EXPECT_EQ(Shown(reading), each.shown) << each.charset;
    EXPECT_EQ(Str(reading.texts[0].charset), each.found) << each.charset;
    EXPECT_EQ(Str(NameIn(reading)), each.bytes) << "the tree keeps the bytes";
  }
}

// A text that no reading has made has the set that its maker says.
TEST(Characters, AreNotShownInTheSetOfTheTextBeforeWhenTheirOwnIsNotKnown) {
  OfxText before;
  before.charset = "WINDOWS-1252";
  for (const char* const unknown : {"", "NO-SUCH-SET"}) {
    EXPECT_EQ(Str(before.ToUtf8(KRString("Caf\xE9"))), "Caf\xC3\xA9");
    OfxText text;
    text.charset = unknown;
    EXPECT_EQ(Str(text.ToUtf8(KRString("Caf\xE9"))), "Caf\xEF\xBF\xBD") << unknown;
  }
}

// Shows a text that is in a character set.
std::string ShownFrom(const char* charset, const std::string& text) {
  OfxText ofx;
  ofx.charset = charset;
  return Str(ofx.ToUtf8(KRString(text.c_str())));
}

TEST(Characters, ThatAreNoneAreShownAsSuch) {
  // Surrogates, and what is beyond the last character of Unicode.
  EXPECT_EQ(ShownFrom("UTF-8", "a\xED\xA0\x80"), "a\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(ShownFrom("UTF-8", "a\xF4\x90\x80\x80"), "a\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(ShownFrom("UTF-8", "a\xEE\x80\x80"), "a\uE000");
  // A character of two that has lost its second byte.
  EXPECT_EQ(ShownFrom("SHIFT_JIS", "\x8B\xE2\x8B"), "\u9280\uFFFD");
  EXPECT_EQ(ShownFrom("SHIFT_JIS", "\xFD\xFD\xFD\xFD!"), "\uFFFD\uFFFD\uFFFD\uFFFD!");
  // Two characters of Unicode in one.
  EXPECT_EQ(ShownFrom("BIG5-HKSCS", "\x88\x62"), "\uFFFD\x62");
}

TEST(Characters, OfWhiteSpaceAreKeptInTexts) {
  EXPECT_EQ(ShownFrom("WINDOWS-1252", "a\tb\r\nc"), "a\tb\r\nc");
  EXPECT_EQ(ShownFrom("WINDOWS-1252", "\xE9\tb\r\nc"), "\u00e9\tb\r\nc");
}

TEST(Characters, OfASectionThatDoesNotEndAreShownAsTheyAre) {
  EXPECT_EQ(ShownFrom("WINDOWS-1252", "<![CDATA[a < b]]>"), "a < b");
  EXPECT_EQ(ShownFrom("WINDOWS-1252", "<![CDATA[a < b]] >"), "<![CDATA[a < b]] >");
}

TEST(Characters, AreNotCutWhereAShownTextGrowsTooLong) {
  const std::string shown = ShownFrom("WINDOWS-1252", "a" + std::string(40000, '\xE9'));
  EXPECT_EQ(shown, "a" + Repeat("\u00e9", (KRString::kMaxLength - 1) / 2));
}

TEST(Characters, AreShownWithoutControlCharactersAndWhatIsBeforeThem) {
  const struct {
    const char* bytes;
    const char* shown;
  } kCases[] = {
      {"Grocer\n\x7F", "Grocer"},     {"\x01 Grocer", "Grocer"}, {"a\x7F b", "a b"}, {"\x7F", ""},
      {"Grocer \x02\x03 ", "Grocer"},
  };
  for (const auto& each : kCases) {
    const Reading reading = Read(Statement(each.bytes));
    EXPECT_EQ(Shown(reading), each.shown);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
  }
}

TEST(Characters, AreThoseThatTheBytesTellWhenTheHeaderLies) {
  Reading reading = Read(Statement("Z\xC3\xBCrich", "USASCII", "ISO-8859-2"));
  EXPECT_EQ(MendingNames(reading), Lines{"charset"});
  EXPECT_EQ(Shown(reading), "Z\u00fcrich");
  EXPECT_EQ(*reading.root->GetHeader(KRHeaderTag_ENCODING), KRString("UTF-8"));

  reading = Read(Statement("Caf\xE9", "UTF-8", "NONE"));
  EXPECT_EQ(MendingNames(reading), Lines{"charset"});
  EXPECT_EQ(Shown(reading), "Caf\u00e9");
  EXPECT_EQ(*reading.root->GetHeader(KRHeaderTag_ENCODING), KRString("USASCII"));
  EXPECT_EQ(*reading.root->GetHeader(KRHeaderTag_CHARSET), KRString("1252"));

  // What the parser reads cleanly stays as it is, and is shown as it is meant all the same.
  reading = Read(Statement("Z\xC3\xBCrich"));
  EXPECT_EQ(reading.status, KRParseStatus_Accepted);
  EXPECT_EQ(Shown(reading), "Z\u00fcrich");
}

TEST(Characters, ThatWereCutMakeNoOtherSetOfUtf8) {
  const Reading reading =
      Read(Statement("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9 x\xC3", "UTF-8", "NONE"));
  EXPECT_EQ(Str(reading.texts[0].charset), "UTF-8");
  EXPECT_EQ(Shown(reading), "\u00e9\u00e9\u00e9\u00e9\u00e9 x\uFFFD");
}

TEST(Characters, OfSetsThatNobodyKnowsAreTakenAsTheUsualOnes) {
  // Tags are not in UTF-7, whose plus sign is no character, or EBCDIC.
  for (const char* const charset : {"KLINGON", "UTF-7", "CP037", "UTF-8//IGNORE"}) {
    const Reading reading = Read(Statement("Caf\xE9", "USASCII", charset));
    EXPECT_EQ(MendingNames(reading), Lines{"header-value"}) << charset;
    EXPECT_EQ(Shown(reading), "Caf\u00e9") << charset;
  }
}

TEST(Characters, OfUtf16AreReadInBothOrders) {
  const std::string whole = Statement("Zorich");
  for (const bool big : {false, true}) {
    for (const bool mark : {false, true}) {
      std::string wide = !mark ? "" : big ? "\xFE\xFF" : "\xFF\xFE";
      for (const char c : whole) {
        if (big) wide += '\0';
        // U+00FC in place of the first o of the name.
        wide += c;
        if (!big) wide += '\0';
      }
      const Reading reading = Read(wide);
      EXPECT_EQ(MendingNames(reading), Lines{"wide-characters"});
      EXPECT_EQ(Shown(reading), "Zorich");
    }
  }
}

// A text in units of `bytes` bytes. '@' becomes U+00EB, '#' U+1F3E6, '!' what is no character, and
// '*' a control character.
std::string InUnits(const std::string& text, std::size_t bytes, bool big) {
  std::u32string units;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (c == '#' && bytes == 2) units += U"\xD83C";
    units += c == '@'   ? U'\u00EB'
             : c == '#' ? (bytes == 2 ? U'\xDFE6' : U'\U0001F3E6')
             : c == '!' ? (bytes == 2 ? U'\xD83C' : U'\x110000')
             : c == '*' ? U'\x01'
                        : char32_t{code};
  }
  std::string wide;
  for (const char32_t unit : units) {
    for (std::size_t index = 0; index < bytes; ++index) {
      wide += static_cast<char>(unit >> 8 * (big ? bytes - 1 - index : index));
    }
  }
  return wide;
}

TEST(Characters, OfUtf16AndUtf32AreReadWhateverTheyAre) {
  const std::string whole = Statement("Zo@ #! *x<ACME.X>1", "UNICODE", "NONE");
  const std::string body = "Zo\u00eb \U0001F3E6\uFFFD x";
  for (const std::size_t bytes : {std::size_t{2}, std::size_t{4}}) {
    for (const bool big : {false, true}) {
      for (const bool marked : {false, true}) {
        std::string wide = InUnits((marked ? "?" : "") + whole, bytes, big);
        // In place of the question mark, U+FEFF.
        if (marked) wide[big ? bytes - 1 : 0] = '\xFF';
        if (marked) wide[big ? bytes - 2 : 1] = '\xFE';
        const Reading reading = Read(wide);
        ASSERT_EQ(MendingNames(reading), (Lines{"wide-characters", "private-tag"}));
        EXPECT_EQ(Str(reading.mendings[0].was), bytes == 2 ? "UTF-16" : "UTF-32");
        EXPECT_EQ(Shown(reading), body);
        EXPECT_EQ(Shown(Read(wide + wide[0])), body) << "half a character at the end";
      }
    }
  }
}

TEST(Characters, OfUtf16HaveTheirPlacesInTheOriginalBytes) {
  const std::string text =
      "OFXHEADER:100\nDATA:OFXSGML\nVERSION:102\nSECURITY:NONE\nENCODING:"
      "UNICODE\nCHARSET:NONE\nCOMPRESSION:NONE\nOLDFILEUID:NONE\nNEWFILEUID:NONE\n"
      "\n<OFX>\n<SIGNONMSGSRSV1>\n  <ACME.X>1\n</SIGNONMSGSRSV1></OFX>";
  std::string wide = "\xFF\xFE";
  for (const char c : text) {
    wide += c;
    wide += '\0';
  }
  const Reading reading = Read(wide);
  ASSERT_EQ(MendingNames(reading), (Lines{"wide-characters", "private-tag"}));
  const Place& place = reading.mendings[1].place;
  EXPECT_EQ(place.offset, 2 + 2 * text.find("<ACME"));
  EXPECT_EQ(place.line, 13u);
  EXPECT_EQ(place.column, 3u);
}

TEST(Characters, ThatAreControlCharactersAreTakenOut) {
  using namespace std::string_literals;
  Reading reading = Read(Statement("Ba\x01nk\x1F"s));
  EXPECT_EQ(reading.status, KRParseStatus_Accepted) << "read cleanly, and so left alone";
  EXPECT_EQ(Shown(reading), "Bank");
  reading = Read(Statement("Ba\0nk\0"s));
  EXPECT_EQ(MendingNames(reading), Lines{"control-character"});
  EXPECT_EQ(Str(NameIn(reading)), "Bank");
  EXPECT_EQ(Read(Statement("Bank") + "\0\0\x1A"s).status, KRParseStatus_Accepted);
}

TEST(Characters, KeepTheirPlacesAfterControlCharacters) {
  using namespace std::string_literals;
  const std::string text = Statement("Ba\0\0nk</NAME><ACME.X>1"s);
  const Reading reading = Read(text);
  ASSERT_EQ(MendingNames(reading), (Lines{"control-character", "private-tag"}));
  EXPECT_EQ(reading.mendings[0].place.offset, text.find('\0'));
  EXPECT_EQ(reading.mendings[1].place.offset, text.find("<ACME"));
}

TEST(Characters, MayBeReferences) {
  Reading reading =
      Read(Statement("Caf&eacute; &#233;&#xE9; &quot;x&apos; &amp;lt; AT&T &foo;<SIC/>"));
  EXPECT_EQ(MendingNames(reading), (Lines{"character-reference", "empty-element"}));
  EXPECT_EQ(Str(NameIn(reading)), "Caf\xE9 \xE9\xE9 \"x' &lt; AT&T &foo;");
  EXPECT_EQ(Str(reading.texts[0].charset), "WINDOWS-1252");
}

TEST(Characters, OfReferencesAreThoseThatTheirNumbersMean) {
  const struct {
    const char* reference;
    const char* bytes;
  } kCases[] = {
      {"&#xe9;", "\xE9"}, {"&#XE9;", "\xE9"}, {"&#00233;", "\xE9"},
      {"&#128;", "\x80"},  // What Windows means by it, the sign of the euro.
      {"&#x9F;", "\x9F"}, {"&#x41;", "A"},    {"a&#9;b", "a\tb"},
  };
  for (const auto& each : kCases) {
    const Reading reading = Read(Statement(std::string(each.reference) + "<SIC/>"));
    EXPECT_EQ(Str(NameIn(reading)), each.bytes) << each.reference;
  }
  // What is no character stays as it is written.
  for (const char* const reference :
       {"&#;", "&#x;", "&#12x;", "&#xFG;", "&#x110000;", "&#xD800;", "&#xDFFF;", "&#1;", "&#x1F;",
        "&#127;", "&#129;", "&zzz;", "&nosuchname;", "&#233", "&averyveryverylongname;"}) {
    const Reading reading = Read(Statement(std::string(reference) + "<SIC/>"));
    EXPECT_EQ(Str(NameIn(reading)), reference);
  }
}

TEST(Characters, ThatTheSetDoesNotHaveMakeTheTextUtf8) {
  Reading reading = Read(Statement("\xE9 &#322;<SIC/>"));
  EXPECT_EQ(Str(reading.texts[0].charset), "UTF-8");
  EXPECT_EQ(Str(NameIn(reading)), "\u00e9 \u0142");
  EXPECT_EQ(*reading.root->GetHeader(KRHeaderTag_ENCODING), KRString("UTF-8"));
}

TEST(Characters, OfReferencesAreWrittenInTheSetOfTheText) {
  const Reading japanese = Read(Statement("\x8B\xE2 &#34892;<ACME.X>1", "USASCII", "SHIFT_JIS"));
  EXPECT_EQ(Str(japanese.texts[0].charset), "SHIFT_JIS");
  EXPECT_EQ(Str(NameIn(japanese)), "\x8B\xE2 \x8D\x73");
  // Neither is a character of US-ASCII.
  const Reading ascii = Read(Statement("&eacute;&#322;<ACME.X>1", "USASCII", "US-ASCII"));
  EXPECT_EQ(Shown(ascii), "\u00e9\u0142");
}

TEST(Characters, AreReadAsMeantWhereTheParserLeavesReferences) {
  const Reading reading = Read(Statement("Caf&eacute; &#x142;"));
  EXPECT_EQ(reading.status, KRParseStatus_Accepted);
  EXPECT_EQ(Str(NameIn(reading)), "Caf&eacute; &#x142;");
  EXPECT_EQ(Shown(reading), "Caf\u00e9 \u0142");
}

TEST(Characters, ThatAreNoTagsStayInTheText) {
  for (const char* const name : {"J < K", "a<5>b", "I <3 it", "A <b>c</b>", "x <y@z.example> w"}) {
    const Reading reading = Read(Statement(name));
    EXPECT_EQ(Str(NameIn(reading)), name);
    EXPECT_EQ(MendingNames(reading), Lines{"bare-less-than"}) << name;
  }
}

TEST(Characters, OfSectionsAreContentInOfx2) {
  const std::string text = Statement("<![CDATA[a < b & <c>]]> d");
  const Reading reading =
      Read("<?OFX OFXHEADER=\"200\" VERSION=\"203\"?>" + text.substr(text.find("<OFX>")));
  EXPECT_EQ(Str(NameIn(reading)), "a < b & <c> d");
  EXPECT_EQ(MendingLines(reading), Lines());
  // The parser hands a section on whole; it is shown as it is meant.
  const Reading first = Read(Statement("<![CDATA[a < b]]>"));
  EXPECT_EQ(first.status, KRParseStatus_Accepted);
  EXPECT_EQ(Shown(first), "a < b");
}

}  // namespace
}  // namespace krofx::testing
