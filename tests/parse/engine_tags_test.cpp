// The stream of tags: aggregates, elements, end tags, and the way past what is unknown.

#include "support/engine_probe.h"

namespace {

using krofx::testing::EngineProbe;
using krofx::testing::EngineTest;
using krofx::testing::Lines;
using krofx::testing::Str;
using krofx::testing::Warnings;

class EngineTags : public EngineTest {};
KROFX_FOR_BOTH_BUFFERS(EngineTags);

TEST_P(EngineTags, TextBehindATagMakesItAnElement) {
  EXPECT_EQ(Tags("<STATUS><CODE>0<MEMO>fine</MEMO></STATUS>"),
            (Lines{"<STATUS>", "CODE=0", "MEMO=fine", "</MEMO>", "</STATUS>"}));
  EXPECT_EQ(Warnings(), Lines{});
}

TEST_P(EngineTags, ElementWithoutTextCountsAsAggregate) {
  EXPECT_EQ(Tags("<STATUS><MEMO></MEMO><CODE> \n <MEMO>x"),
            (Lines{"<STATUS>", "<MEMO>", "</MEMO>", "<CODE>", "MEMO=x"}));
}

TEST_P(EngineTags, ValueComesWithoutWhiteSpaceAroundIt) {
  EXPECT_EQ(Tags("<MEMO>\r\n  one  two \t\r\n<CODE>0"), (Lines{"MEMO=one  two", "CODE=0"}));
}

TEST_P(EngineTags, BeginsAtTheFirstTag) {
  EXPECT_EQ(Tags("OFXHEADER:100\n\n<CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Warnings(), Lines{});
  EXPECT_EQ(Tags("no tag at all"), Lines{});
}

TEST_P(EngineTags, GoesBackToTheHeaderCursor) {
  Read("<CODE>0<MEMO>x");
  EXPECT_EQ(Next(), "CODE=0");
  Engine().ResetToEndOfHeader();
  EXPECT_EQ(Next(), "CODE=0");
  EXPECT_EQ(Next(), "MEMO=x");
}

TEST_P(EngineTags, EndOfInputStays) {
  Read("<CODE>0");
  EXPECT_EQ(Next(), "CODE=0");
  EXPECT_EQ(Next(), "end");
  EXPECT_EQ(Next(), "end");
}

TEST_P(EngineTags, OpenTagAtTheEndCannotBeRead) {
  Read("<CODE>0<STATUS> \n");
  EXPECT_EQ(Next(), "CODE=0");
  EXPECT_EQ(Next(), "unreadable");
  EXPECT_EQ(Next(), "end");
}

TEST_P(EngineTags, NothingIsStoredWithoutATag) {
  EngineProbe& engine = Read("<STATUS>");
  KRTagDictionaryEntry entry = {KRTag_MEMO, "held"};
  KRString value("held");
  EXPECT_EQ(engine.GetKRTag(entry, value), KRTagType_Unreadable);
  EXPECT_EQ(engine.GetKRTag(entry, value), KRTagType_EndOfInput);
  EXPECT_STREQ(entry.text, "held");
  EXPECT_EQ(Str(value), "held");
}

TEST_P(EngineTags, AggregateLeavesTheValueAlone) {
  EngineProbe& engine = Read("<STATUS><CODE>0</STATUS>");
  KRTagDictionaryEntry entry = {KRTag_None, ""};
  KRString value("held");
  EXPECT_EQ(engine.GetKRTag(entry, value), KRTagType_Start);
  EXPECT_EQ(entry.tagID, KRTag_STATUS);
  EXPECT_EQ(Str(value), "held");
}

TEST_P(EngineTags, NamelessTagEndsTheInput) {
  EXPECT_EQ(Tags("<CODE>0<><MEMO>x"), Lines{"CODE=0"});
  EXPECT_EQ(Tags("<CODE>0</><MEMO>x"), Lines{"CODE=0"});
  EXPECT_EQ(Warnings(), Lines{});
}

TEST_P(EngineTags, CommentsAreNotThere) {
  EXPECT_EQ(Tags("<!-- 1 --><STATUS><!-- 2 --><CODE><!-- 3 -->0<!-- 4 --></STATUS>"),
            (Lines{"<STATUS>", "CODE=0", "</STATUS>"}));
  EXPECT_EQ(Warnings(), Lines{});
}

TEST_P(EngineTags, CommentWithAnInnerCloseIsAnUnknownTag) {
  // There is text after it, so it counts as an element, and is skipped with that text.
  EXPECT_EQ(Tags("<!-- a > b --><CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Warnings(), Lines{"UNKNOWNTAG <!-->"});
}

TEST_P(EngineTags, TagInSmallLettersIsFoundAndWarnedAbout) {
  EXPECT_EQ(Tags("<Status><code>0</status>"), (Lines{"<STATUS>", "CODE=0", "</STATUS>"}));
  EXPECT_EQ(Warnings(), (Lines{"LOWERCASE <Status> " + std::to_string(KRTag_STATUS),
                               "LOWERCASE <code> " + std::to_string(KRTag_CODE),
                               "LOWERCASE <status> " + std::to_string(KRTag_STATUS)}));
}

TEST_P(EngineTags, UnknownTagInSmallLettersIsWarnedAboutTwice) {
  EXPECT_EQ(Tags("<nonsense>1<CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Warnings(), (Lines{"LOWERCASE <nonsense>", "UNKNOWNTAG <nonsense>"}));
}

TEST_P(EngineTags, UnknownTagsAreSkippedWithTheirContents) {
  EXPECT_EQ(Tags("<STATUS><XYZ><CODE>1<MEMO>in</XYZ><CODE>0</STATUS>"),
            (Lines{"<STATUS>", "CODE=0", "</STATUS>"}));
  EXPECT_EQ(Tags("<XYZ>text<CODE>0"), Lines{"CODE=0"}) << "an unknown element goes with its text";
  EXPECT_EQ(Tags("<XYZ>text</XYZ><CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Warnings(), (Lines{"UNKNOWNTAG <XYZ>", "UNKNOWNTAG <XYZ>", "UNKNOWNTAG <XYZ>",
                               "UNKNOWNTAG <XYZ>"}));
}

TEST_P(EngineTags, UnknownAggregateEndsAtItsFirstEndTag) {
  EXPECT_EQ(Tags("<XYZ><XYZ><CODE>1</xyz><CODE>2</XYZ><CODE>3"), (Lines{"CODE=2", "CODE=3"}));
  EXPECT_EQ(Warnings(), (Lines{"UNKNOWNTAG <XYZ>", "UNKNOWNTAG <XYZ>"}))
      << "the second is for the end tag that is left over";
}

TEST_P(EngineTags, UnknownTagWithoutEndIsDroppedAlone) {
  EXPECT_EQ(Tags("<STATUS><XYZ><CODE>0<XY></ABC></STATUS>"),
            (Lines{"<STATUS>", "CODE=0", "</STATUS>"}));
  EXPECT_EQ(Warnings(), (Lines{"UNKNOWNTAG <XYZ>", "BADFORMAT \"XYZ\"", "UNKNOWNTAG <XY>",
                               "BADFORMAT \"XY\"", "UNKNOWNTAG <ABC>"}));
}

TEST_P(EngineTags, UnknownTagAtTheEndCannotBeSkipped) {
  EXPECT_EQ(Tags("<CODE>0<XYZ>"), Lines{"CODE=0"});
  EXPECT_EQ(Warnings(), (Lines{"UNKNOWNTAG <XYZ>", "SKIPFAILED <XYZ>"}));
}

TEST_P(EngineTags, TextWhereATagBelongsIsWarnedAbout) {
  EXPECT_EQ(Tags("<CODE>0</CODE> stray <MEMO>x"), (Lines{"CODE=0", "</CODE>", "MEMO=x"}));
  EXPECT_EQ(Warnings(), Lines{"BADFORMAT \"stray\""});
}

TEST_P(EngineTags, SectionWhereATagBelongsIsWarnedAbout) {
  EXPECT_EQ(Tags("<CODE>0</CODE><![CDATA[x]]><MEMO>x"), (Lines{"CODE=0", "</CODE>", "MEMO=x"}));
  EXPECT_EQ(Warnings(), Lines{"UNKNOWNTAG"});
}

TEST_P(EngineTags, MacrosAreReplacedInText) {
  EXPECT_EQ(Tags("<MEMO>&lt;a&nbsp;b&gt; &AMP; co"), Lines{"MEMO=<a b> & co"});
  EXPECT_EQ(Tags("<MEMO>&bogus; &amp &lt"), Lines{"MEMO=&bogus; &amp &lt"});
}

TEST_P(EngineTags, CDATASectionComesWholeAndUnchanged) {
  EXPECT_EQ(Tags("<MEMO><![CDATA[<b>&lt;]]></MEMO>"),
            (Lines{"MEMO=<![CDATA[<b>&lt;]]>", "</MEMO>"}));
}

TEST_P(EngineTags, SkipsTheCurrentAggregateOnRequest) {
  Read("<STATUS><CODE>1<MEMO>in</STATUS><CODE>0");
  EXPECT_EQ(Next(), "<STATUS>");
  EXPECT_EQ(Engine().SkipCurrentTag(), 1);
  EXPECT_EQ(Next(), "CODE=0");
  EXPECT_EQ(Warnings(), Lines{});
}

TEST_P(EngineTags, SkipWithoutAnEndTagChangesNothing) {
  Read("<STATUS><CODE>1<MEMO>in");
  EXPECT_EQ(Next(), "<STATUS>");
  EXPECT_EQ(Engine().SkipCurrentTag(), 1);
  EXPECT_EQ(Engine().CurrTagItemType(), KrTagItemType_StartTag);
  EXPECT_EQ(Engine().NextTagType(), KrTagItemType_StartTag);
  EXPECT_EQ(Next(), "CODE=1");
  EXPECT_EQ(Warnings(), Lines{"BADFORMAT \"STATUS\""});
}

TEST_P(EngineTags, SkipDropsTheTextOfAnElement) {
  Read("<STATUS>x<CODE>0");
  EXPECT_NE(Engine().GetTagID(nullptr), nullptr);
  EXPECT_EQ(Engine().SkipCurrentTag(), 1);
  EXPECT_EQ(Next(), "CODE=0");
}

TEST_P(EngineTags, SkipFailsWithNothingToSkip) {
  Read("<STATUS>");
  EXPECT_EQ(Engine().SkipCurrentTag(), 0) << "nothing has been read";
  EXPECT_NE(Engine().GetTagID(nullptr), nullptr);
  EXPECT_EQ(Engine().SkipCurrentTag(), 0) << "there is nothing after it";
}

TEST_P(EngineTags, FindsTagsById) {
  EngineProbe& engine = Read("<!-- x --> stray <XYZ>1</STATUS>");
  KRTagID id = KRTag_None;
  const KRTagDictionaryEntry* entry = engine.GetTagID(&id);
  ASSERT_NE(entry, nullptr);
  EXPECT_STREQ(entry->text, "STATUS");
  EXPECT_EQ(id, KRTag_STATUS);
  EXPECT_EQ(engine.CurrTagItemType(), KrTagItemType_EndTag);
  EXPECT_EQ(engine.GetTagID(&id), nullptr);
  EXPECT_EQ(id, KRTag_None);
}

TEST_P(EngineTags, StepsThroughItems) {
  EngineProbe& engine = Read("<STATUS><!-- x -->text<CODE>0");
  EXPECT_EQ(engine.CurrTagItemType(), KrTagItemType_None);
  EXPECT_EQ(engine.GetKrTagItem(), 1);
  EXPECT_EQ(engine.CurrTagItemType(), KrTagItemType_StartTag);
  EXPECT_EQ(engine.NextTagType(), KrTagItemType_Text);
  EXPECT_EQ(engine.NextTagType(), KrTagItemType_Text) << "asking again reads no further";
  EXPECT_EQ(engine.CurrTagItemType(), KrTagItemType_StartTag);
  EXPECT_EQ(engine.GetKrTagItem(), 1);
  EXPECT_EQ(engine.CurrTagItemType(), KrTagItemType_Text);
  EXPECT_EQ(engine.GetKrTagItem(), 1);
  EXPECT_EQ(engine.GetKrTagItem(), 1);
  EXPECT_EQ(engine.NextTagType(), KrTagItemType_None);
  EXPECT_EQ(engine.GetKrTagItem(), 0);
}

TEST_P(EngineTags, TakesTheTextOfTheNextItem) {
  EngineProbe& engine = Read("<MEMO>a &lt; b<CODE>");
  KRString text("held");
  EXPECT_EQ(engine.GetTagData(text, 1, 0), 0) << "a tag is no text";
  EXPECT_EQ(engine.GetKrTagItem(), 1);
  EXPECT_EQ(engine.GetTagData(text, 1, 0), 1);
  EXPECT_EQ(Str(text), "a < b");
  EXPECT_EQ(engine.CopyCurrTagItemToBuffer(text, 0, 0), 1);
  EXPECT_EQ(Str(text), "a &lt; b");
  EXPECT_EQ(engine.CopyCurrTagItemToBuffer(text, 1, 1), 1);
  EXPECT_EQ(Str(text), "a < b");
}

TEST_P(EngineTags, CopyReadsOnIndependently) {
  Read("<CODE>0<MEMO>x");
  EXPECT_EQ(Next(), "CODE=0");
  EngineProbe copy(Engine());
  EXPECT_EQ(Next(), "MEMO=x");
  KRTagDictionaryEntry entry = {KRTag_None, ""};
  KRString value;
  EXPECT_EQ(copy.GetKRTag(entry, value), KRTagType_Element);
  EXPECT_EQ(Str(value), "x");
}

TEST_P(EngineTags, LooksTagsUpInTheDictionaryItIsGiven) {
  static constexpr KRTagDictionaryEntry kTable[] = {{KRTag_APPID, "XYZ"}};
  TagDictionary dictionary(kTable, 1);
  EngineProbe& engine = Read("<CODE>1<XYZ>2");
  EXPECT_EQ(engine.SetDictionary(nullptr), 0);
  EXPECT_EQ(engine.SetDictionary(&dictionary), 1);
  EXPECT_EQ(Next(), "XYZ=2");
}

TEST_P(EngineTags, TellsWhereTheTagBegins) {
  EngineProbe& engine = Read("\n <STATUS> < / STATUS>");
  EXPECT_EQ(engine.GetItemPosition(), -1);
  EXPECT_EQ(Next(), "<STATUS>");
  EXPECT_EQ(engine.GetItemPosition(), 2);
  EXPECT_EQ(Next(), "</STATUS>");
  EXPECT_EQ(engine.GetItemPosition(), 11);
  Read("<CODE>0");
  EXPECT_EQ(Next(), "CODE=0");
  EXPECT_EQ(Engine().GetItemPosition(), 0) << "an element's tag, not its text";
}

TEST(EngineGrowth, ReadsOnWhenThePlainBufferHasGrown) {
  KRBuffer buffer(0, 0);
  buffer += "<STATUS><XYZ><CODE>0";
  EngineProbe engine(buffer);
  KRTagDictionaryEntry entry = {KRTag_None, ""};
  KRString value;
  EXPECT_EQ(engine.GetKRTag(entry, value), KRTagType_Start);
  EXPECT_EQ(engine.GetKRTag(entry, value), KRTagType_Element);
  EXPECT_EQ(engine.GetKRTag(entry, value), KRTagType_EndOfInput);
  buffer += "<ABC><MEMO>x</XYZ><MEMO>y</ABC><MEMO>z";
  EXPECT_EQ(engine.GetKRTag(entry, value), KRTagType_Element);
  EXPECT_EQ(Str(value), "z") << "end tags that came later are found";
}

}  // namespace
