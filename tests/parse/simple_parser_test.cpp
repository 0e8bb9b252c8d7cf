// The whole parse: statuses, warnings, stack, secrets.

#include "krofx/parse/simple_parser.h"

#include <gtest/gtest.h>

#include <thread>

#include "krofx/core/internal/hooks.h"
#include "krofx/core/memory.h"
#include "krofx/core/thread.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/parse/engine.h"
#include "support/parse_text.h"
#include "support/toy_objects.h"

namespace {

using krofx::internal::AllocationFailure;
using krofx::testing::Line;
using krofx::testing::Lines;
using krofx::testing::Notebook;
using krofx::testing::Repeat;
using krofx::testing::Str;
using krofx::testing::TextBuffer;
using krofx::testing::ToyAggregate;
using krofx::testing::Warnings;

class SimpleParser : public testing::Test {
 protected:
  ~SimpleParser() override { AllocationFailure::FailAt(0); }

  KRParseStatus Parse(std::string_view text, u16 checkRequired = 0) {
    TextBuffer buffer(text);
    return Parse(*buffer, checkRequired);
  }
  KRParseStatus Parse(KRBuffer& buffer, u16 checkRequired = 0) {
    m_notebook.lines.clear();
    return m_parser.Parse(&buffer, &m_root, checkRequired);
  }
  // A warning as Line writes it, for a tag of the dictionary.
  static std::string WarningLine(const char* warning, const char* tag, KRTagID id,
                                 const char* value = nullptr) {
    std::string line = std::string(warning) + " <" + tag + "> " + std::to_string(id);
    return value == nullptr ? line : line + " \"" + value + "\"";
  }

  Notebook m_notebook;
  ToyAggregate m_root{m_notebook, KRTag_None, 1};
  KRSimpleParser m_parser;
};

TEST_F(SimpleParser, FillsTheTree) {
  EXPECT_EQ(Parse("<OFX><STATUS><CODE>0</CODE><MEMO>fine</STATUS><NAME>x</OFX>"),
            KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines,
            (Lines{"start OFX", "start STATUS", "element CODE=0", "element MEMO=fine", "end STATUS",
                   "element NAME=x", "end OFX"}));
  EXPECT_EQ(Warnings(), Lines{});
  EXPECT_EQ(m_parser.GetObjectWithError(), nullptr);
  EXPECT_EQ(m_parser.GetDepth(), 0);
  EXPECT_EQ(m_parser.GetCurrentObj(), &m_root);
  EXPECT_EQ(m_root.ValidateTag(KRTag_OFX), 1);
  EXPECT_EQ(m_root.GetChild(0)->GetChild(0)->ValidateTag(KRTag_CODE), 1);
}

TEST_F(SimpleParser, ReadsADerivedBufferAlike) {
  TextBuffer buffer("<OFX><CODE>0</OFX>", false);
  EXPECT_EQ(Parse(*buffer), KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines, (Lines{"start OFX", "element CODE=0", "end OFX"}));
}

TEST_F(SimpleParser, TextMayEndAtDepthZero) {
  EXPECT_EQ(Parse("<CODE>0"), KRParseStatus_Accepted);
  EXPECT_EQ(Parse("<STATUS><CODE>0</STATUS>"), KRParseStatus_Accepted);
  EXPECT_EQ(Parse(""), KRParseStatus_Accepted);
  EXPECT_EQ(Parse("stray text"), KRParseStatus_Warnings);
  EXPECT_EQ(Warnings(), Lines{"BADFORMAT \"stray text\""});
}

TEST_F(SimpleParser, StopsAtTheFirstOFXEndTag) {
  EXPECT_EQ(Parse("<OFX><CODE>0</OFX><OFX><CODE>1</OFX><XYZ>"), KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines, (Lines{"start OFX", "element CODE=0", "end OFX"}));
  EXPECT_EQ(Warnings(), Lines{});
}

TEST_F(SimpleParser, OpenAggregatesAtTheEndAreInvalid) {
  EXPECT_EQ(Parse("<OFX><STATUS><CODE>0"), KRParseStatus_Invalid);
  EXPECT_EQ(Warnings(), Lines{}) << "nothing is logged";
  EXPECT_EQ(m_parser.GetObjectWithError(), m_root.GetChild(0)->GetChild(0));
  EXPECT_EQ(m_parser.GetDepth(), 2) << "the stack stays as it was";
  EXPECT_EQ(m_parser.PopObject(), 1);
  EXPECT_EQ(m_parser.PopObject(), 1);
  EXPECT_EQ(Parse("<OFX><CODE>0</OFX>"), KRParseStatus_Accepted) << "taken back, it serves again";
}

TEST_F(SimpleParser, StackOfAFailedParseIsStillThereInTheNext) {
  EXPECT_EQ(Parse("<OFX><CODE>0"), KRParseStatus_Invalid);
  EXPECT_EQ(Parse("<CODE>0"), KRParseStatus_Invalid);
}

TEST_F(SimpleParser, UnknownTagsWarn) {
  EXPECT_EQ(Parse("<OFX><XYZ>1<CODE>0</OFX>"), KRParseStatus_Warnings);
  EXPECT_EQ(Warnings(), Lines{"UNKNOWNTAG <XYZ>"});
  EXPECT_EQ(m_parser.GetParseException(0)->m_object, m_root.GetChild(0))
      << "the object at which the parser stood";
  EXPECT_EQ(m_parser.GetObjectWithError(), &m_root);
  EXPECT_EQ(m_root.GetChild(0)->ValidateTag(KRTag_CODE), 1) << "the tree is filled";
}

TEST_F(SimpleParser, AggregateThatMayNotStandHereIsSkipped) {
  EXPECT_EQ(Parse("<OFX><INVPOS><CODE>1<STATUS></STATUS></INVPOS><CODE>0</OFX>"),
            KRParseStatus_Warnings);
  EXPECT_EQ(m_notebook.lines, (Lines{"start OFX", "element CODE=0", "end OFX"}));
  EXPECT_EQ(Warnings(), Lines{WarningLine("INVALIDAGG", "INVPOS", KRTag_INVPOS)});
  EXPECT_EQ(m_parser.GetParseException(0)->m_object, m_root.GetChild(0));
}

TEST_F(SimpleParser, AggregateThatMayNotStandHereAndHasNoEndIsDroppedAlone) {
  EXPECT_EQ(Parse("<OFX><INVPOS><CODE>1</OFX>"), KRParseStatus_Warnings);
  EXPECT_EQ(m_notebook.lines, (Lines{"start OFX", "element CODE=1", "end OFX"}));
  EXPECT_EQ(Warnings(),
            (Lines{WarningLine("INVALIDAGG", "INVPOS", KRTag_INVPOS), "BADFORMAT \"INVPOS\""}));
}

TEST_F(SimpleParser, ElementThatMayNotStandHereIsPassedOver) {
  EXPECT_EQ(Parse("<OFX><UNITS>5</UNITS><CODE>0</OFX>"), KRParseStatus_Warnings);
  EXPECT_EQ(m_notebook.lines, (Lines{"start OFX", "element CODE=0", "end OFX"}))
      << "with its end tag";
  EXPECT_EQ(Warnings(), Lines{WarningLine("INVALIDELEM", "UNITS", KRTag_UNITS, "5")});
  EXPECT_EQ(m_parser.GetParseException(0)->m_object, m_root.GetChild(0));
}

TEST_F(SimpleParser, TagOfAnotherVersionMayNotStandHere) {
  EXPECT_EQ(Parse("<OFX><MEMO2>x</OFX>"), KRParseStatus_Warnings);
  EXPECT_EQ(Warnings(), Lines{WarningLine("INVALIDELEM", "MEMO2", KRTag_MEMO2, "x")});
  ToyAggregate second(m_notebook, KRTag_None, 2);
  TextBuffer buffer("<OFX><MEMO2>x</OFX>");
  EXPECT_EQ(m_parser.Parse(buffer.Get(), &second, 0), KRParseStatus_Accepted);
}

TEST_F(SimpleParser, RootJudgesAnyTagItself) {
  EXPECT_EQ(Parse("<UNITS>5<CODE>0"), KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines, (Lines{"element UNITS=5", "element CODE=0"}));
}

TEST_F(SimpleParser, RefusedStartTagStops) {
  m_notebook.refusedStarts[KRTag_STATUS] = KRParseStatus_PlainFile;
  EXPECT_EQ(Parse("<OFX><STATUS><CODE>0</STATUS></OFX>"), KRParseStatus_PlainFile);
  EXPECT_EQ(m_notebook.lines, (Lines{"start OFX", "start STATUS"}));
  EXPECT_EQ(Warnings(), Lines{WarningLine("INVALIDAGG", "STATUS", KRTag_STATUS)});
  EXPECT_EQ(m_parser.GetObjectWithError(), m_root.GetChild(0));
}

TEST_F(SimpleParser, RefusedElementStops) {
  m_notebook.refusedElements[KRTag_CODE] = KRParseStatus_Invalid;
  EXPECT_EQ(Parse("<OFX><CODE>x<MEMO>y</OFX>"), KRParseStatus_Invalid);
  EXPECT_EQ(m_notebook.lines, (Lines{"start OFX", "element CODE=x"}));
  EXPECT_EQ(Warnings(), Lines{WarningLine("INVALIDELEM", "CODE", KRTag_CODE, "x")});
  EXPECT_EQ(m_parser.GetObjectWithError(), m_root.GetChild(0));
}

TEST_F(SimpleParser, FatalStatusNamesNoObject) {
  m_notebook.refusedElements[KRTag_CODE] = KRParseStatus_Fatal;
  EXPECT_EQ(Parse("<OFX><CODE>x</OFX>"), KRParseStatus_Fatal);
  EXPECT_EQ(m_parser.GetObjectWithError(), nullptr);
}

TEST_F(SimpleParser, EmptyElementArrivesAsAggregate) {
  m_notebook.refusedStarts[KRTag_MEMO] = KRParseStatus_Invalid;
  EXPECT_EQ(Parse("<OFX><MEMO></MEMO><CODE>0</OFX>"), KRParseStatus_Invalid);
}

TEST_F(SimpleParser, EndTagOfAnotherAggregateStops) {
  EXPECT_EQ(Parse("<OFX><STATUS><CODE>0</SONRQ></STATUS></OFX>"), KRParseStatus_EndTagMismatch);
  EXPECT_EQ(Warnings(), Lines{WarningLine("INVALIDENDAGG", "SONRQ", KRTag_SONRQ)});
  EXPECT_EQ(m_parser.GetObjectWithError(), m_root.GetChild(0)->GetChild(0));
  EXPECT_EQ(m_parser.GetDepth(), 2);
}

TEST_F(SimpleParser, EndTagAtDepthZeroStops) {
  EXPECT_EQ(Parse("<CODE>0</CODE></STATUS>"), KRParseStatus_EndTagMismatch);
}

TEST_F(SimpleParser, EndTagOfTheRootItselfChangesNothing) {
  m_root.SetType(KRTag_STATUS);
  EXPECT_EQ(Parse("<CODE>0</STATUS><MEMO>x"), KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines, (Lines{"element CODE=0", "end STATUS", "element MEMO=x"}));
}

TEST_F(SimpleParser, OFXEndTagStopsEvenWhenItDoesNotFit) {
  EXPECT_EQ(Parse("<OFX><STATUS><CODE>0</OFX><XYZ>"), KRParseStatus_EndTagMismatch);
  EXPECT_EQ(m_notebook.lines.back(), "end OFX");
}

TEST_F(SimpleParser, ElementsOwnEndTagIsSwallowedOnce) {
  EXPECT_EQ(Parse("<OFX><CODE>0</CODE></CODE></OFX>"), KRParseStatus_EndTagMismatch);
  EXPECT_EQ(m_notebook.lines, (Lines{"start OFX", "element CODE=0", "end CODE"}));
}

TEST_F(SimpleParser, EndTagOfAnElementCalledOFXDoesNotEndTheText) {
  EXPECT_EQ(Parse("<OFX>x</OFX><CODE>0"), KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines, (Lines{"element OFX=x", "element CODE=0"}));
}

TEST_F(SimpleParser, ElementsOwnEndTagIsSwallowedOnlyBehindIt) {
  EXPECT_EQ(Parse("<OFX><CODE>0<MEMO>x</CODE></OFX>"), KRParseStatus_EndTagMismatch);
  EXPECT_EQ(m_notebook.lines.back(), "end CODE");
}

TEST_F(SimpleParser, EndTagThatLeavesNoObjectIsFatal) {
  // Pushed before there was a root, so nothing lies below it on the stack.
  ToyAggregate other(m_notebook, KRTag_None, 1);
  ASSERT_EQ(m_parser.PushObject(&other), 1);
  m_root.SetType(KRTag_STATUS);
  EXPECT_EQ(Parse("<CODE>0</STATUS><CODE>1"), KRParseStatus_Fatal);
  EXPECT_EQ(m_notebook.lines, (Lines{"element CODE=0", "end STATUS"}));
}

TEST_F(SimpleParser, TenAggregatesMayBeOpen) {
  EXPECT_EQ(Parse(Repeat("<STATUS>", 10) + "<CODE>0" + Repeat("</STATUS>", 10)),
            KRParseStatus_Accepted);
  EXPECT_EQ(Parse(Repeat("<STATUS>", 11) + "<CODE>0"), KRParseStatus_StackFull);
  EXPECT_EQ(Warnings(), Lines{WarningLine("INVALIDAGG", "STATUS", KRTag_STATUS)});
  EXPECT_EQ(m_parser.GetDepth(), 10);
  EXPECT_EQ(m_parser.GetObjectWithError(), m_parser.GetCurrentObj());
}

TEST_F(SimpleParser, UnreadableItemIsInvalid) {
  EXPECT_EQ(Parse("<OFX><CODE>0<STATUS>"), KRParseStatus_Invalid);
  EXPECT_EQ(Warnings(), Lines{WarningLine("UNKNOWNTAG", "CODE", KRTag_CODE, "0")})
      << "with the tag and the value read before";
  EXPECT_EQ(m_parser.GetObjectWithError(), m_root.GetChild(0));
  EXPECT_EQ(Parse("<STATUS>"), KRParseStatus_Invalid);
  EXPECT_EQ(Warnings(), Lines{"UNKNOWNTAG"});
}

TEST_F(SimpleParser, OverlongValueWarnsAndLeavesTheElementOut) {
  EXPECT_EQ(Parse("<OFX><MEMO>" + std::string(70000, '1') + "</MEMO><CODE>0</OFX>"),
            KRParseStatus_Warnings);
  EXPECT_EQ(m_notebook.lines, (Lines{"start OFX", "element CODE=0", "end OFX"}));
  EXPECT_EQ(Warnings(), Lines{WarningLine("TOOLONG", "MEMO", KRTag_MEMO)});
}

// Headers.

TEST_F(SimpleParser, HandsHeadersToTheRootInTwoBlocks) {
  EXPECT_EQ(Parse("Content-Type: application/x-ofx\n\nOFXHEADER:100\nDATA:OFXSGML\n\n<CODE>0"),
            KRParseStatus_Warnings)
      << "for the header that is not of the OFX block";
  EXPECT_EQ(m_notebook.lines,
            (Lines{"header -1 Content-Type: application/x-ofx", "header 2 (no name): 100",
                   "header 3 (no name): OFXSGML", "element CODE=0"}));
  EXPECT_EQ(Warnings(), Lines{"BADFORMAT \"Content-Type\""});
}

TEST_F(SimpleParser, OnlyBlockOfHeadersHasNames) {
  EXPECT_EQ(Parse("OFXHEADER:100\nDATA:OFXSGML\n\n<CODE>0"), KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines,
            (Lines{"header 2 OFXHEADER: 100", "header 3 DATA: OFXSGML", "element CODE=0"}));
}

TEST_F(SimpleParser, RefusedHeaderStopsBeforeTheBody) {
  m_notebook.headerStatus = KRParseStatus_Invalid;
  EXPECT_EQ(Parse("OFXHEADER:100\nDATA:OFXSGML\n\n<CODE>0"), KRParseStatus_Invalid);
  EXPECT_EQ(m_notebook.lines, Lines{"header 2 OFXHEADER: 100"});
  EXPECT_EQ(m_parser.GetObjectWithError(), &m_root);
  EXPECT_EQ(Parse("A:b\n\nOFXHEADER:100\n\n<CODE>0"), KRParseStatus_Invalid);
}

// A toy with headers, as a file has them.
class ToyFile : public ToyAggregate {
 public:
  using ToyAggregate::ToyAggregate;

  u16 verdict = 1;
  int asked = 0;

 protected:
  const krofx::internal::AggregateTable* GetTable() const override {
    static constexpr krofx::internal::AggregateTable kTable = {
        .className = "ToyFile",
        .validateHeaders = [](KRDataObj& object) -> u16 {
          auto& file = static_cast<ToyFile&>(object);
          ++file.asked;
          return file.verdict;
        },
    };
    return &kTable;
  }
};

class SimpleParserOfFiles : public SimpleParser {
 protected:
  KRParseStatus ParseFile(std::string_view text) {
    TextBuffer buffer(text);
    m_notebook.lines.clear();
    return m_parser.Parse(buffer.Get(), &m_file, 0);
  }

  ToyFile m_file{m_notebook, KRTag_None, static_cast<u16>(1)};
};

TEST_F(SimpleParserOfFiles, AsksAFileWhetherItsHeadersWillDo) {
  for (const KRTagID type : {KRTag_OFXFILERQ, KRTag_OFXFILERS}) {
    m_file.SetType(type);
    m_file.asked = 0;
    m_file.verdict = 1;
    EXPECT_EQ(ParseFile("DATA:x\n\n<CODE>0"), KRParseStatus_Accepted);
    EXPECT_EQ(m_file.asked, 1);
    m_file.verdict = 0;
    EXPECT_EQ(ParseFile("DATA:x\n\n<CODE>0"), KRParseStatus_Invalid);
    EXPECT_EQ(m_notebook.lines, Lines{"header 3 DATA: x"}) << "the body is not read";
    EXPECT_EQ(m_parser.GetObjectWithError(), &m_file);
  }
}

TEST_F(SimpleParserOfFiles, AsksNoOtherRoot) {
  m_file.SetType(KRTag_MIME);
  m_file.verdict = 0;
  EXPECT_EQ(ParseFile("<CODE>0"), KRParseStatus_Accepted);
  EXPECT_EQ(m_file.asked, 0);
}

TEST_F(SimpleParserOfFiles, ReadsTheBodyOfARootThatHasOnlyTheTypeOfAFile) {
  m_root.SetType(KRTag_OFXFILERS);
  EXPECT_EQ(Parse("DATA:x\n\n<CODE>0"), KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines, (Lines{"header 3 DATA: x", "element CODE=0"}));
}

// Warnings and the status.

TEST_F(SimpleParser, EachParseStartsItsOwnLog) {
  EXPECT_EQ(Parse("<XYZ>1<CODE>0"), KRParseStatus_Warnings);
  EXPECT_EQ(Parse("<CODE>0"), KRParseStatus_Accepted);
  EXPECT_EQ(Warnings(), Lines{});
  EXPECT_EQ(m_parser.GetObjectWithError(), nullptr);
}

TEST_F(SimpleParser, WarningsCountWithLoggingOff) {
  m_parser.EnableLogging(0);
  EXPECT_EQ(Parse("<OFX><XYZ>1<UNITS>2<CODE>0</OFX>"), KRParseStatus_Warnings);
  EXPECT_EQ(m_parser.GetNumberParseExceptions(), 0);
  EXPECT_EQ(m_parser.GetAnyParseExceptionsLogged(), 1);
}

TEST_F(SimpleParser, LoggerKnowsTheBufferDuringTheParse) {
  TextBuffer buffer("<XYZ>1<CODE>0");
  (*buffer).SetBufferOffset(4);
  EXPECT_EQ(Parse(*buffer), KRParseStatus_Warnings);
  EXPECT_EQ(m_parser.GetParseException(0)->m_offset, 4);
  EXPECT_EQ((*buffer).GetBufferOffset(), 4u) << "the parse does not move the cursor";
}

TEST_F(SimpleParser, WarnsOfTheFirstMissingTagWhenAsked) {
  m_notebook.required[KRTag_STATUS] = {KRTag_CODE, 0xffff};
  EXPECT_EQ(Parse("<STATUS><MEMO>x</STATUS>"), KRParseStatus_Accepted) << "not asked";
  ToyAggregate fresh(m_notebook, KRTag_None, 1);
  TextBuffer buffer("<STATUS><MEMO>x</STATUS>");
  EXPECT_EQ(m_parser.Parse(buffer.Get(), &fresh, 1), KRParseStatus_Warnings);
  EXPECT_EQ(Warnings(), Lines{"MISSINGTAG " + std::to_string(KRTag_CODE)});
  EXPECT_EQ(m_parser.GetParseException(0)->m_object, fresh.GetChild(0));
  EXPECT_EQ(m_parser.GetObjectWithError(), &fresh);
}

TEST_F(SimpleParser, MissingTagOfTheRootItselfIsNotNamed) {
  m_notebook.required[KRTag_None] = {KRTag_CODE, 0xffff};
  EXPECT_EQ(Parse("<MEMO>x", 1), KRParseStatus_Warnings);
  EXPECT_EQ(Warnings(), Lines{"MISSINGTAG"});
  EXPECT_EQ(m_parser.GetParseException(0)->m_object, &m_root);
}

TEST_F(SimpleParser, LooksForMissingTagsBehindAFailureToo) {
  m_notebook.required[KRTag_STATUS] = {KRTag_CODE, 0xffff};
  EXPECT_EQ(Parse("<STATUS><MEMO>x", 1), KRParseStatus_Invalid);
  EXPECT_EQ(Warnings(), Lines{"MISSINGTAG " + std::to_string(KRTag_CODE)});
  EXPECT_EQ(m_parser.GetObjectWithError(), m_root.GetChild(0));
}

// Secrets.

class SimpleParserOfSecrets : public SimpleParser, public testing::WithParamInterface<KRTagID> {
 protected:
  std::string Tag() const {
    return KRTagDictionary::TheKRTagDictionary()->GetTagString(GetParam());
  }
  // The value text of the one warning must be stars, as many as there are characters or more.
  void ExpectStars() {
    ASSERT_EQ(m_parser.GetNumberParseExceptions(), 1);
    const std::string value = Str(m_parser.GetParseException(0)->m_valueText);
    EXPECT_GE(value.size(), 6u);
    EXPECT_EQ(value.find_first_not_of('*'), std::string::npos) << value;
  }
};
INSTANTIATE_TEST_SUITE_P(Tags, SimpleParserOfSecrets,
                         testing::Values(KRTag_USERPASS, KRTag_NEWUSERPASS, KRTag_ONETIMEPASS));

TEST_P(SimpleParserOfSecrets, ArriveInTheObject) {
  EXPECT_EQ(Parse("<OFX><" + Tag() + ">p&amp;q</OFX>"), KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines[1], "element " + Tag() + "=p&q");
}

TEST_P(SimpleParserOfSecrets, AreStarsInTheWarningOfARefusal) {
  m_notebook.refusedElements[GetParam()] = KRParseStatus_Invalid;
  EXPECT_EQ(Parse("<OFX><" + Tag() + ">secret</OFX>"), KRParseStatus_Invalid);
  ExpectStars();
}

TEST_P(SimpleParserOfSecrets, AreStarsInTheWarningOfAMisplacedElement) {
  static constexpr KRTagTableEntry kTable[] = {{KRTag_CODE, 0xffff}};
  KRArrayOfTags tags;
  tags.table = kTable;
  tags.count = 1;
  m_parser.SetValidTags(tags);
  EXPECT_EQ(Parse("<" + Tag() + ">secret<CODE>0"), KRParseStatus_Warnings);
  EXPECT_EQ(m_notebook.lines, Lines{"element CODE=0"});
  ExpectStars();
}

TEST_P(SimpleParserOfSecrets, AreStarsInALaterWarning) {
  EXPECT_EQ(Parse("<" + Tag() + ">secret<STATUS>"), KRParseStatus_Invalid);
  ExpectStars();
}

// Engines.

TEST_F(SimpleParser, ReadsFromTheEngineItIsGiven) {
  TextBuffer text("<STATUS><CODE>1</STATUS></OFX><CODE>2");
  KRParseEngine engine(*text);
  TextBuffer other("<MEMO>x");
  EXPECT_EQ(m_parser.SetParseEngine(&engine), 1);
  m_root.SetType(KRTag_OFX);
  EXPECT_EQ(Parse(*other), KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines, (Lines{"start STATUS", "element CODE=1", "end STATUS", "end OFX"}));
  EXPECT_EQ(m_parser.SetParseEngine(nullptr), 1);
  EXPECT_EQ(Parse(*other), KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines, Lines{"element MEMO=x"});
}

class ScriptedEngine : public KRParseEngine {
 public:
  using KRParseEngine::KRParseEngine;
  KRTagType GetKRTag(KRTagDictionaryEntry& entry, KRString& value) override {
    if (m_calls++ > 0) return static_cast<KRTagType>(7);
    entry = {KRTag_CODE, "CODE"};
    value = "scripted";
    return KRTagType_Element;
  }

 private:
  int m_calls = 0;
};

TEST_F(SimpleParser, EngineMayBeReplacedByAHost) {
  TextBuffer text("");
  ScriptedEngine engine(*text);
  m_parser.SetParseEngine(&engine);
  EXPECT_EQ(Parse(*text), KRParseStatus_Invalid) << "a kind of tag that does not exist";
  EXPECT_EQ(m_notebook.lines, Lines{"element CODE=scripted"});
}

TEST_F(SimpleParser, ParseTableDoesNothing) {
  KRTagDictionaryEntry entry = {KRTag_None, nullptr};
  EXPECT_EQ(m_parser.SetParseTable(&entry), 1);
  EXPECT_EQ(m_parser.SetParseTable(nullptr), 1);
}

// Places.

class Listener : public KRWarningObserver {
 public:
  explicit Listener(const KRSimpleParser& parser) : m_parser(parser) {}
  void OnWarning(const KRParseException& warning, s32 position) override {
    m_lines.push_back(std::to_string(position) + " " + Line(warning));
    EXPECT_EQ(m_parser.GetCurrentOffset(), position);
  }
  Lines m_lines;

 private:
  const KRSimpleParser& m_parser;
};

TEST_F(SimpleParser, ObserverHearsOfEachWarningWithItsPlace) {
  Listener listener(m_parser);
  m_parser.SetWarningObserver(&listener);
  m_notebook.required[KRTag_STATUS] = {KRTag_CODE, 0xffff};
  EXPECT_EQ(Parse("X-A:b\n\n<OFX>\n<XYZ><ABC>1\n<UNITS>5\n< /ABC> stray\n<STATUS><MEMO>x</STATUS>"
                  "</OFX>",
                  1),
            KRParseStatus_Warnings);
  EXPECT_EQ(listener.m_lines, (Lines{"0 BADFORMAT \"X-A\"", "13 UNKNOWNTAG <XYZ>",
                                     "13 BADFORMAT \"XYZ\"", "18 UNKNOWNTAG <ABC>",
                                     "25 " + WarningLine("INVALIDELEM", "UNITS", KRTag_UNITS, "5"),
                                     "34 UNKNOWNTAG <ABC>", "42 BADFORMAT \"stray\"",
                                     "-1 MISSINGTAG " + std::to_string(KRTag_CODE)}));
  EXPECT_EQ(Warnings().size(), listener.m_lines.size());
  EXPECT_EQ(m_parser.GetCurrentOffset(), -1);

  m_parser.SetWarningObserver(nullptr);
  listener.m_lines.clear();
  Parse("<XYZ>1");
  EXPECT_EQ(listener.m_lines, Lines{});
}

TEST_F(SimpleParser, ObserverHearsOnlyOfItsOwnParses) {
  Listener listener(m_parser);
  m_parser.SetWarningObserver(&listener);
  EXPECT_EQ(Parse("<CODE>0"), KRParseStatus_Accepted);
  KRParseLogger::TheKRParseLogger()->AppendParseException(KRPW_BADFORMAT, "", "", KRTag_None,
                                                          nullptr);
  EXPECT_EQ(listener.m_lines, Lines{});
}

TEST_F(SimpleParser, CopyKeepsWhatItWasGiven) {
  TextBuffer text("<MEMO>x");
  KRParseEngine engine(*text);
  m_parser.SetParseEngine(&engine);
  KRSimpleParser copy(m_parser);
  EXPECT_EQ(copy.Parse(text.Get(), &m_root, 0), KRParseStatus_Accepted);
  EXPECT_EQ(m_notebook.lines, Lines{"element MEMO=x"});
}

// Misuse and exhausted memory.

TEST_F(SimpleParser, NullArgumentsAreFatal) {
  TextBuffer text("<CODE>0");
  EXPECT_EQ(m_parser.Parse(nullptr, &m_root, 0), KRParseStatus_Fatal);
  EXPECT_EQ(m_parser.GetObjectWithError(), &m_root);
  EXPECT_EQ(m_parser.Parse(text.Get(), nullptr, 0), KRParseStatus_Fatal);
  EXPECT_EQ(m_parser.GetObjectWithError(), nullptr);
  EXPECT_EQ(m_notebook.lines, Lines{});
}

TEST(SimpleParserOnADetachedThread, IsFatal) {
  std::thread thread([] {
    KRDetachThread(KRCurrentThreadId());
    Notebook notebook;
    ToyAggregate root(notebook, KRTag_None, 1);
    TextBuffer text("<CODE>0");
    KRSimpleParser parser;
    EXPECT_EQ(parser.Parse(text.Get(), &root, 1), KRParseStatus_Fatal);
    EXPECT_EQ(parser.GetObjectWithError(), &root);
    EXPECT_EQ(notebook.lines, Lines{});
  });
  thread.join();
}

TEST_F(SimpleParser, FireAlarmOfTheParseMakesItFatal) {
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  EXPECT_EQ(Parse("<CODE>0"), KRParseStatus_Accepted) << "an alarm from before does not count";

  class Raising : public ToyAggregate {
   public:
    using ToyAggregate::ToyAggregate;
    KRParseStatus HandleTagElement(const KRTagDictionaryEntry* const, const KRString&) override {
      KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
      return KRParseStatus_Accepted;
    }
  } raising(m_notebook, KRTag_None, static_cast<u16>(1));
  TextBuffer text("<CODE>0<MEMO>x");
  EXPECT_EQ(m_parser.Parse(text.Get(), &raising, 0), KRParseStatus_Fatal);
  EXPECT_EQ(m_parser.GetObjectWithError(), &raising);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted) << "reading does not clear it";
}

TEST_F(SimpleParser, RecordThatCannotBeMadeIsFatal) {
  const krofx::internal::Hooks before = krofx::internal::hooks;
  krofx::internal::hooks.newParseException = []() -> KRParseException* { return nullptr; };
  EXPECT_EQ(Parse("<OFX><UNITS>5</OFX>"), KRParseStatus_Fatal);
  EXPECT_EQ(m_parser.GetObjectWithError(), &m_root);
  EXPECT_EQ(m_notebook.lines, Lines{"start OFX"}) << "it stops there";
  krofx::internal::hooks = before;
}

TEST_F(SimpleParser, SurvivesEveryFailingAllocation) {
  const std::string text =
      "DATA:x\n\n<OFX><XYZ><UNITS>5<status><MEMO>a&lt;b<USERPASS>secret</STATUS><INVPOS></OFX>";
  m_parser.EnableLogging(1);
  for (std::size_t nth = 1;; ++nth) {
    Notebook notebook;
    ToyAggregate root(notebook, KRTag_None, 1);
    TextBuffer buffer(text);
    KRSimpleParser parser;
    AllocationFailure::FailAt(nth);
    const KRParseStatus status = parser.Parse(buffer.Get(), &root, 1);
    const bool failed = AllocationFailure::Count() >= nth;
    AllocationFailure::FailAt(0);
    if (!failed) {
      EXPECT_EQ(status, KRParseStatus_Warnings);
      EXPECT_GT(nth, 10u);
      break;
    }
    // The list of end tags does without memory; nothing else goes unnoticed.
    EXPECT_TRUE(status == KRParseStatus_Fatal || status == KRParseStatus_Warnings) << nth;
  }
}

}  // namespace
