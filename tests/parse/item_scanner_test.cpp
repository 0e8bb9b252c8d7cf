// Single items: what counts as white space, a tag, a text, a CDATA section, a comment.

#include "support/engine_probe.h"

namespace {

using krofx::testing::EngineProbe;
using krofx::testing::EngineTest;

class ItemScanner : public EngineTest {
 protected:
  // Reads the item at a position and gives it as "type start+length end".
  std::string Item(std::string_view text, s32 position = 0, u16 contentOnly = 0) {
    KRParseEngine::KRTagItemInfo item;
    item.end = position;
    const u16 found = EngineProbe::GetOneItemFromKRBuffer(Buffer(text), item, contentOnly);
    std::string line = std::to_string(item.type) + " " + std::to_string(item.start) + "+" +
                       std::to_string(item.length) + " " + std::to_string(item.end);
    return found != 0 ? line : "nothing " + line;
  }
  bool IsComment(std::string_view text) {
    KRBuffer& buffer = Buffer(text);
    KRParseEngine::KRTagItemInfo item;
    EngineProbe::GetOneItemFromKRBuffer(buffer, item, 0);
    return EngineProbe::IsCommentTag(buffer, item) != 0;
  }
};
KROFX_FOR_BOTH_BUFFERS(ItemScanner);

TEST(WhiteSpace, IsExactlyFourCharacters) {
  for (int c = -128; c < 128; ++c) {
    const bool white = c == ' ' || c == '\n' || c == '\r' || c == '\t';
    EXPECT_EQ(EngineProbe::IsWhiteSpace(static_cast<char>(c)), white ? 1 : 0) << c;
  }
}

TEST(WhiteSpace, TextOfNothingElseIsWhite) {
  EXPECT_EQ(EngineProbe::IsWhiteSpace(nullptr), 1);
  EXPECT_EQ(EngineProbe::IsWhiteSpace(""), 1);
  EXPECT_EQ(EngineProbe::IsWhiteSpace(" \t\r\n"), 1);
  EXPECT_EQ(EngineProbe::IsWhiteSpace(" \tx"), 0);
  EXPECT_EQ(EngineProbe::IsWhiteSpace(" \v"), 0);
}

TEST_P(ItemScanner, SkipsWhiteSpaceUpToTextOrNul) {
  KRBuffer& buffer = Buffer(std::string_view(" \t\r\nx \0", 7));
  EXPECT_EQ(EngineProbe::SkipWhiteSpaces(buffer, 0), 4);
  EXPECT_EQ(EngineProbe::SkipWhiteSpaces(buffer, 4), 4);
  EXPECT_EQ(EngineProbe::SkipWhiteSpaces(buffer, 5), 6);
  EXPECT_EQ(EngineProbe::SkipWhiteSpaces(buffer, 7), 7);
  EXPECT_EQ(EngineProbe::SkipWhiteSpaces(buffer, -3), -3);
  EXPECT_EQ(EngineProbe::SkipWhiteSpaces(buffer, 0x7fffffff), 0x7fffffff);
}

TEST_P(ItemScanner, FindsWhiteSpaceOrNul) {
  KRBuffer& buffer = Buffer("ab cd");
  EXPECT_EQ(EngineProbe::FindWhiteSpaces(buffer, 0), 2);
  EXPECT_EQ(EngineProbe::FindWhiteSpaces(buffer, 2), 2);
  EXPECT_EQ(EngineProbe::FindWhiteSpaces(buffer, 3), 5);
}

TEST_P(ItemScanner, StepsBackBehindThePreviousText) {
  KRBuffer& buffer = Buffer(std::string_view("ab \n c\0 d", 9));
  EXPECT_EQ(EngineProbe::FindPreviousNonWhiteSpace(buffer, 5), 2);
  EXPECT_EQ(EngineProbe::FindPreviousNonWhiteSpace(buffer, 6), 6);
  EXPECT_EQ(EngineProbe::FindPreviousNonWhiteSpace(buffer, 8), 6) << "a NUL stops it on itself";
  EXPECT_EQ(EngineProbe::FindPreviousNonWhiteSpace(buffer, 0), -1);
  EXPECT_EQ(EngineProbe::FindPreviousNonWhiteSpace(buffer, -0x7fffffff - 1), -0x7fffffff - 1);
}

TEST_P(ItemScanner, ReadsNothingAtTheEnd) {
  EXPECT_EQ(Item(""), "nothing -1 0+0 0");
  EXPECT_EQ(Item(" \n"), "nothing -1 2+0 0");
  EXPECT_EQ(Item(std::string_view(" \0<A>", 5)), "nothing -1 1+0 0") << "a NUL ends the text";
}

TEST_P(ItemScanner, ReadsStartTags) {
  EXPECT_EQ(Item("<TAG>x"), "0 1+3 5");
  EXPECT_EQ(Item("  <TAG>x"), "0 3+3 7");
  EXPECT_EQ(Item("< \n TAG >x"), "0 4+3 9") << "white space may stand around the name";
  EXPECT_EQ(Item("<TAG a=\"b\">x"), "0 1+3 11") << "attributes are dropped";
  EXPECT_EQ(Item("<TAG/>"), "0 1+4 6") << "there are no empty-element tags";
  EXPECT_EQ(Item("<>x"), "0 1+0 2");
  EXPECT_EQ(Item("<A<B>"), "0 1+3 5");
}

TEST_P(ItemScanner, ReadsEndTags) {
  EXPECT_EQ(Item("</TAG>x"), "1 2+3 6");
  EXPECT_EQ(Item("< / TAG >x"), "1 4+3 9");
  EXPECT_EQ(Item("</>"), "1 2+0 3");
}

TEST_P(ItemScanner, TagWithoutCloseReachesTheEnd) {
  EXPECT_EQ(Item("<TAG"), "0 1+3 4");
  EXPECT_EQ(Item("<TAG attr"), "0 1+3 9");
  EXPECT_EQ(Item("</TAG"), "1 2+3 5");
  EXPECT_EQ(Item("<"), "0 1+0 1");
  EXPECT_EQ(Item("</"), "1 2+0 2");
}

TEST_P(ItemScanner, ReadsTextWithoutWhiteSpaceAroundIt) {
  EXPECT_EQ(Item("<A> some text \r\n<B>", 3), "2 4+9 16");
  EXPECT_EQ(Item("a"), "2 0+1 1");
  EXPECT_EQ(Item("a > b"), "2 0+5 5") << "'>' means nothing in a text";
  EXPECT_EQ(Item(std::string_view("ab \0<A>", 7)), "2 0+2 3");
}

TEST_P(ItemScanner, ReadsCDATASectionsWhole) {
  EXPECT_EQ(Item("<![CDATA[a<b>&]]><C>"), "3 0+17 17");
  EXPECT_EQ(Item("< ! [ cdata [x]]><C>"), "3 0+17 17") << "white space and case do not matter";
  EXPECT_EQ(Item("<![CDATA[x]y]z>"), "3 0+15 15") << "the closing characters may stand apart";
  EXPECT_EQ(Item("<![CDATA[x]]>junk \n<C>"), "3 0+17 19") << "the text after it belongs to it";
}

TEST_P(ItemScanner, ReportsCDATAContentOneCharacterShort) {
  EXPECT_EQ(Item("<![CDATA[abc]]>", 0, 1), "3 9+2 15");
  EXPECT_EQ(Item("<![CDATA[a]]>", 0, 1), "3 9+1 13") << "a single character is measured again";
  EXPECT_EQ(Item("<![CDATA[]]>", 0, 1), "3 9+0 12");
  EXPECT_EQ(Item("<A>", 0, 1), "0 1+1 3") << "other items are as ever";
}

TEST_P(ItemScanner, UnfinishedCDATASectionIsAStartTag) {
  EXPECT_EQ(Item("<![CDATA[x>y"), "0 1+9 11") << "no ']'";
  EXPECT_EQ(Item("<![CDATA[x]"), "0 1+10 11") << "nothing after the first ']'";
  EXPECT_EQ(Item("<![CDATA[x]y>"), "0 1+11 13") << "no second ']'";
  EXPECT_EQ(Item("<![CDATA[x]]"), "0 1+11 12") << "no '>'";
  EXPECT_EQ(Item("<![CDATX[x]]>"), "0 1+11 13");
  EXPECT_EQ(Item("<!CDATA[x]]>"), "0 1+10 12");
}

TEST_P(ItemScanner, SlashThatSpoilsACDATASectionMakesAnEndTag) {
  EXPECT_EQ(Item("<!/FOO>"), "1 3+3 7");
  EXPECT_EQ(Item("<![ / FOO>"), "1 6+3 10");
  EXPECT_EQ(Item("<![CDA/FOO>"), "1 7+3 11");
}

TEST_P(ItemScanner, TellsComments) {
  EXPECT_TRUE(IsComment("<!-- a -->"));
  EXPECT_TRUE(IsComment("<!---->"));
  EXPECT_TRUE(IsComment("<!--->"));
  EXPECT_TRUE(IsComment("< !-- a -->"));
  EXPECT_TRUE(IsComment("<!-- at the end --"));
  EXPECT_FALSE(IsComment("<!-->"));
  EXPECT_FALSE(IsComment("<! -- a -->"));
  EXPECT_FALSE(IsComment("<!-- a - ->"));
  EXPECT_FALSE(IsComment("<!-- a > b -->")) << "a comment closes at its first '>'";
  EXPECT_FALSE(IsComment("<!DOCTYPE>"));
  EXPECT_FALSE(IsComment("</!-- a -->"));
  EXPECT_FALSE(IsComment("<A>"));
}

TEST_P(ItemScanner, CommentMayBeOfAnyLength) {
  EXPECT_TRUE(IsComment("<!--" + std::string(70000, 'x') + "-->"));
}

TEST_P(ItemScanner, LengthsStopAtSixteenBits) {
  const std::string text(70000, 'x');
  EXPECT_EQ(Item(text), "2 0+65535 70000");
  EXPECT_EQ(Item("<" + text + ">"), "0 1+65535 70002");
  EXPECT_EQ(Item("<![CDATA[" + text + "]]>", 0, 1), "3 9+65535 70012");
}

TEST_P(ItemScanner, ReadsOneItemOfAnyKind) {
  KRBuffer& buffer = Buffer(" <A>x<![CDATA[abc]]>");
  s32 position = 0;
  u16 length = 0;
  EXPECT_EQ(EngineProbe::GetOneItem(buffer, position, length), 1);
  EXPECT_EQ(position, 2);
  EXPECT_EQ(length, 1);
  position = 5;
  EXPECT_EQ(EngineProbe::GetOneItem(buffer, position, length), 1);
  EXPECT_EQ(position, 14) << "the content of a section";
  EXPECT_EQ(length, 2);
  position = 20;
  EXPECT_EQ(EngineProbe::GetOneItem(buffer, position, length), 0);
  EXPECT_EQ(position, 20);
  EXPECT_EQ(length, 2);
}

TEST_P(ItemScanner, LengthOfOneItemFitsAString) {
  s32 position = 0;
  u16 length = 0;
  EXPECT_EQ(EngineProbe::GetOneItem(Buffer(std::string(70000, 'x')), position, length), 1);
  EXPECT_EQ(length, 65534);
}

TEST_P(ItemScanner, PassesOverComments) {
  KRBuffer& buffer = Buffer("<!-- 1 --> <!-- 2 --><A>");
  KRParseEngine::KRTagItemInfo item;
  EXPECT_EQ(EngineProbe::GetKRTagInternal(buffer, item), 1);
  EXPECT_EQ(item.type, KrTagItemType_StartTag);
  EXPECT_EQ(item.start, 22);
  EXPECT_EQ(EngineProbe::GetKRTagInternal(buffer, item), 0);
}

}  // namespace
