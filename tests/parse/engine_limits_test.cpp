// Texts that are too long or made to cost time, and exhausted memory.

#include "krofx/core/memory.h"
#include "krofx/core/thread.h"
#include "support/engine_probe.h"

namespace {

using krofx::internal::AllocationFailure;
using krofx::testing::EngineProbe;
using krofx::testing::EngineTest;
using krofx::testing::Lines;
using krofx::testing::Repeat;
using krofx::testing::Str;
using krofx::testing::Warnings;

class EngineLimits : public EngineTest {
 protected:
  ~EngineLimits() override { AllocationFailure::FailAt(0); }
};
KROFX_FOR_BOTH_BUFFERS(EngineLimits);

TEST_P(EngineLimits, LongestValueArrivesWhole) {
  const std::string longest(65534, 'x');
  EXPECT_EQ(Tags("<MEMO>" + longest + "<CODE>0"), (Lines{"MEMO=" + longest, "CODE=0"}));
  EXPECT_EQ(Warnings(), Lines{});
}

TEST_P(EngineLimits, OverlongValueIsRefusedNotCut) {
  const std::string over(65535, '1');
  const std::string warning = "TOOLONG <MEMO> " + std::to_string(KRTag_MEMO);
  EXPECT_EQ(Tags("<MEMO>" + over + "</MEMO><CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Tags("<MEMO>" + over + "<CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Tags("<MEMO>" + over + "</STATUS>"), Lines{"</STATUS>"});
  EXPECT_EQ(Tags("<MEMO><![CDATA[" + over + "]]></memo><CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Tags("<MEMO>" + Repeat("1", 1000000)), Lines{});
  EXPECT_EQ(Warnings(), (Lines{warning, warning, warning, warning, warning}));
}

TEST_P(EngineLimits, OverlongNameIsAnUnknownTag) {
  const std::string name(70000, 'X');
  EXPECT_EQ(Tags("<" + name + "><CODE>0</" + name + "><MEMO>x"), (Lines{"CODE=0", "MEMO=x"}))
      << "no end tag is matched with it";
  const std::string kept = name.substr(0, 65534);
  EXPECT_EQ(Warnings(), (Lines{"UNKNOWNTAG <" + kept + ">", "BADFORMAT \"" + kept + "\"",
                               "UNKNOWNTAG <" + kept + ">"}));
}

TEST_P(EngineLimits, OverlongStrayTextIsToldCut) {
  EXPECT_EQ(Tags("</CODE>" + std::string(70000, 'x') + "<CODE>0"), (Lines{"</CODE>", "CODE=0"}));
  EXPECT_EQ(Warnings(), Lines{"BADFORMAT \"" + std::string(65534, 'x') + "\""});
}

// Each of these texts could make some search run to the end of the text again and again. They are
// so large that the test would then last for hours.

TEST_P(EngineLimits, ManyUnknownTagsWithoutEndTakeLinearTime) {
  std::string text;
  for (int i = 0; i < 10000; ++i) text += "<U" + std::to_string(i) + ">";
  EXPECT_EQ(Tags(text + "<CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Warnings().size(), 20000u);
  EXPECT_EQ(Warnings()[1], "BADFORMAT \"U0\"");
  ExpectLinearTime();
}

TEST_P(EngineLimits, ManyNestedUnknownTagsTakeLinearTime) {
  std::string text;
  for (int i = 0; i < 10000; ++i) text += "<U" + std::to_string(i) + ">";
  for (int i = 9999; i >= 0; --i) text += "</U" + std::to_string(i) + ">";
  EXPECT_EQ(Tags(text + "<CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Warnings(), Lines{"UNKNOWNTAG <U0>"});
  ExpectLinearTime();
}

TEST_P(EngineLimits, EndTagsThatStandBeforeTheirStartTagsTakeLinearTime) {
  std::string text;
  for (int i = 0; i < 10000; ++i) text += "</U" + std::to_string(i) + ">";
  for (int i = 0; i < 10000; ++i) text += "<U" + std::to_string(i) + ">";
  EXPECT_EQ(Tags(text + "<CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Warnings().size(), 30000u);
  ExpectLinearTime();
}

TEST_P(EngineLimits, EndTagsHiddenInCommentsTakeLinearTime) {
  std::string hidden;
  std::string text;
  for (int i = 0; i < 5000; ++i) {
    text += "<U" + std::to_string(i) + ">";
    hidden += "<!-- </U" + std::to_string(i) + " -->";
  }
  EXPECT_EQ(Tags(text + hidden + "<CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Warnings().size(), 10000u);
  ExpectLinearTime();
}

TEST_P(EngineLimits, ManyOpenSectionsTakeLinearTime) {
  EXPECT_EQ(Tags(Repeat("<![CDATA[>", 20000) + "<CODE>0"), Lines{"CODE=0"});
  ExpectLinearTime();
  EXPECT_EQ(Tags(Repeat("<![CDATA[>", 20000) + "]<CODE>0"), Lines{"CODE=0"});
  EXPECT_EQ(Tags(Repeat("<![CDATA[>", 20000) + "]]<CODE a").size(), 0u);
  ExpectLinearTime();
}

TEST_P(EngineLimits, ManyCommentsTakeLinearTime) {
  EXPECT_EQ(Tags(Repeat("<!-- x -->", 50000) + "<CODE>0"), Lines{"CODE=0"});
  ExpectLinearTime();
}

TEST_P(EngineLimits, ManyAmpersandsTakeLinearTime) {
  const std::string open = Repeat("&", 65533);
  EXPECT_EQ(Tags("<MEMO>" + open), Lines{"MEMO=" + open});
  EXPECT_EQ(Tags("<MEMO>" + open + ";"), Lines{"MEMO=" + open + ";"});
  ExpectLinearTime();
}

TEST_P(EngineLimits, IndexOfEndTagsDoesWithoutMemory) {
  EngineProbe& engine = Read("<XYZ><CODE>0</ABC></STATUS>");
  KRParseLogger::TheKRParseLogger()->EnableLogging(0);
  AllocationFailure::FailAt(2, true);
  EXPECT_NE(engine.GetTagID(nullptr), nullptr);
  AllocationFailure::FailAt(0);
  EXPECT_EQ(engine.SkipCurrentTag(), 1);
  EXPECT_EQ(Next(), "</STATUS>");
}

TEST_P(EngineLimits, ValueWithoutMemoryCannotBeRead) {
  EngineProbe& engine = Read("<MEMO>" + std::string(100, 'x') + "&lt;<CODE>0");
  AllocationFailure::FailAt(1, true);
  KRTagDictionaryEntry entry = {KRTag_None, ""};
  KRString value;
  EXPECT_EQ(engine.GetKRTag(entry, value), KRTagType_Unreadable);
  AllocationFailure::FailAt(0);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  EXPECT_EQ(Next(), "CODE=0");
}

TEST_P(EngineLimits, NoAllocationForTagsAndForValuesThatFit) {
  EngineProbe& engine = Read("<STATUS><CODE>10</CODE><MEMO>ten</STATUS>");
  KRTagDictionaryEntry entry = {KRTag_None, ""};
  KRString value("long enough for all of them");
  AllocationFailure::FailAt(0);
  while (engine.GetKRTag(entry, value) != KRTagType_EndOfInput) continue;
  EXPECT_EQ(AllocationFailure::Count(), 0u);
}

TEST(EngineWithoutText, ReadsNothing) {
  KRBuffer empty(0, 0);
  EngineProbe engine(empty);
  KRTagDictionaryEntry entry = {KRTag_None, ""};
  KRString value;
  KRHeaderTag tag = KRHeaderTag_None;
  EXPECT_EQ(engine.GetKRTag(entry, value), KRTagType_EndOfInput);
  EXPECT_EQ(engine.GetHeader(tag, value, nullptr), 0);
  EXPECT_EQ(engine.FindMIMEBoundary("x"), KRBoundStatus_None);
}

TEST(EngineWithoutText, SizeBeyondTheMemoryIsNoText) {
  KRBuffer buffer(16, 0);
  buffer += "<CODE>0";
  buffer.SetBufferSize(1000000);
  EngineProbe engine(buffer);
  KRTagDictionaryEntry entry = {KRTag_None, ""};
  KRString value;
  EXPECT_EQ(engine.GetKRTag(entry, value), KRTagType_Element);
  EXPECT_EQ(Str(value).substr(0, 1), "0");
  EXPECT_EQ(engine.GetKRTag(entry, value), KRTagType_EndOfInput);
}

}  // namespace
