// The parser's base class: stack, valid tags, access to the thread's warnings.

#include "krofx/model/parser.h"

#include <gtest/gtest.h>

#include <deque>
#include <thread>

#include "krofx/core/thread.h"
#include "support/toy_objects.h"

namespace {

using krofx::testing::Lines;
using krofx::testing::Notebook;
using krofx::testing::ToyAggregate;
using krofx::testing::Warnings;

class OpenParser : public KRParser {
 public:
  using KRParser::AppendParseException;
};

class Parser : public testing::Test {
 protected:
  ToyAggregate& NewObject(u16 version = 1) {
    return m_objects.emplace_back(m_notebook, KRTag_None, version);
  }

  Notebook m_notebook;
  std::deque<ToyAggregate> m_objects;
  OpenParser m_parser;
};

TEST_F(Parser, StartsWithNothing) {
  EXPECT_EQ(m_parser.GetCurrentObj(), nullptr);
  EXPECT_EQ(m_parser.GetDepth(), 0);
  EXPECT_EQ(m_parser.PopObject(), 0);
  EXPECT_EQ(m_parser.IsValidTag(KRTag_STATUS), 1) << "no table, so any tag";
}

TEST_F(Parser, BaseParseMakesTheRootCurrentAndReadsNothing) {
  KRBuffer buffer(0, 0);
  buffer += "<STATUS><CODE>0</STATUS>";
  ToyAggregate& root = NewObject();
  EXPECT_EQ(m_parser.Parse(&buffer, &root, 1), KRParseStatus_Accepted);
  EXPECT_EQ(m_parser.GetCurrentObj(), &root);
  EXPECT_EQ(root.GetParser(), &m_parser);
  EXPECT_EQ(m_notebook.lines, Lines{});
  EXPECT_EQ(m_parser.Parse(&buffer, nullptr, 0), KRParseStatus_Fatal);
  EXPECT_EQ(m_parser.GetCurrentObj(), &root);
}

TEST_F(Parser, PushAndPopKeepOrder) {
  ToyAggregate& root = NewObject();
  ToyAggregate& child = NewObject();
  m_parser.Parse(nullptr, &root, 0);
  EXPECT_EQ(m_parser.PushObject(&child), 1);
  EXPECT_EQ(m_parser.GetDepth(), 1);
  EXPECT_EQ(m_parser.GetCurrentObj(), &child);
  EXPECT_EQ(child.GetParser(), &m_parser);
  EXPECT_EQ(m_parser.PopObject(), 1);
  EXPECT_EQ(m_parser.GetDepth(), 0);
  EXPECT_EQ(m_parser.GetCurrentObj(), &root);
  EXPECT_EQ(m_parser.PopObject(), 0);
  EXPECT_EQ(m_parser.GetCurrentObj(), &root);
}

TEST_F(Parser, PopTellsTheObjectAgainWhoParses) {
  ToyAggregate& root = NewObject();
  m_parser.Parse(nullptr, &root, 0);
  m_parser.PushObject(&NewObject());
  KRParser other;
  root.SetupForParsing(&other);
  m_parser.PopObject();
  EXPECT_EQ(root.GetParser(), &m_parser);
}

TEST_F(Parser, HoldsTenOpenAggregates) {
  m_parser.Parse(nullptr, &NewObject(), 0);
  for (int i = 1; i <= 10; ++i) {
    EXPECT_EQ(m_parser.PushObject(&NewObject()), 1);
    EXPECT_EQ(m_parser.GetDepth(), i);
  }
  KRDataObj* top = m_parser.GetCurrentObj();
  ToyAggregate& eleventh = NewObject();
  EXPECT_EQ(m_parser.PushObject(&eleventh), 0);
  EXPECT_EQ(m_parser.GetDepth(), 10);
  EXPECT_EQ(m_parser.GetCurrentObj(), top);
  EXPECT_EQ(eleventh.GetParser(), nullptr);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(m_parser.PopObject(), 1);
  EXPECT_EQ(m_parser.PopObject(), 0);
}

TEST_F(Parser, RefusesANullObject) {
  m_parser.Parse(nullptr, &NewObject(), 0);
  EXPECT_EQ(m_parser.PushObject(nullptr), 0);
  EXPECT_EQ(m_parser.GetDepth(), 0);
}

TEST_F(Parser, PopsBackToNothing) {
  EXPECT_EQ(m_parser.PushObject(&NewObject()), 1) << "without a root";
  EXPECT_EQ(m_parser.PopObject(), 1);
  EXPECT_EQ(m_parser.GetCurrentObj(), nullptr);
}

TEST_F(Parser, PushedObjectBringsItsTags) {
  m_parser.Parse(nullptr, &NewObject(), 0);
  EXPECT_EQ(m_parser.IsValidTag(KRTag_INVPOS), 1) << "the root's own table is never loaded";
  m_parser.PushObject(&NewObject());
  EXPECT_EQ(m_parser.IsValidTag(KRTag_INVPOS), 0);
  EXPECT_EQ(m_parser.IsValidTag(KRTag_MEMO), 1);
  EXPECT_EQ(m_parser.IsValidTag(KRTag_MEMO2), 0) << "not in this version";
  m_parser.PushObject(&NewObject(2));
  EXPECT_EQ(m_parser.IsValidTag(KRTag_MEMO2), 1);
  m_parser.PushObject(&NewObject(0));
  EXPECT_EQ(m_parser.IsValidTag(KRTag_MEMO), 0) << "version 0 has no valid tag";
  m_parser.PopObject();
  m_parser.PopObject();
  EXPECT_EQ(m_parser.IsValidTag(KRTag_MEMO2), 0);
  m_parser.PopObject();
  EXPECT_EQ(m_parser.IsValidTag(KRTag_INVPOS), 1);
}

TEST_F(Parser, TableOfTheCallerIsInForceUntilPushedOver) {
  static constexpr KRTagTableEntry kTable[] = {{KRTag_CODE, 0x2}, {KRTag_CODE, 0x1}};
  KRArrayOfTags tags;
  tags.table = kTable;
  tags.count = 2;
  m_parser.Parse(nullptr, &NewObject(), 0);
  EXPECT_EQ(m_parser.SetValidTags(tags), 1);
  EXPECT_EQ(m_parser.IsValidTag(KRTag_CODE), 1) << "a later row of the tag may be the one";
  EXPECT_EQ(m_parser.IsValidTag(KRTag_MEMO), 0);
  m_parser.PushObject(&NewObject());
  EXPECT_EQ(m_parser.IsValidTag(KRTag_MEMO), 1);
  m_parser.PopObject();
  EXPECT_EQ(m_parser.IsValidTag(KRTag_MEMO), 0);
}

TEST_F(Parser, HasNoValidTagByATableWithoutAnObject) {
  static constexpr KRTagTableEntry kTable[] = {{KRTag_CODE, 0xffff}};
  KRArrayOfTags tags;
  tags.table = kTable;
  tags.count = 1;
  m_parser.SetValidTags(tags);
  EXPECT_EQ(m_parser.IsValidTag(KRTag_CODE), 0);
}

TEST_F(Parser, CopyHasTheStack) {
  ToyAggregate& root = NewObject();
  m_parser.Parse(nullptr, &root, 0);
  m_parser.PushObject(&NewObject());
  OpenParser copy(m_parser);
  EXPECT_EQ(copy.GetDepth(), 1);
  EXPECT_EQ(copy.PopObject(), 1);
  EXPECT_EQ(copy.GetCurrentObj(), &root);
  EXPECT_EQ(m_parser.GetDepth(), 1);
  m_parser = copy;
  EXPECT_EQ(m_parser.GetDepth(), 0);
}

TEST_F(Parser, ReadsTheThreadsWarnings) {
  EXPECT_EQ(m_parser.GetAnyParseExceptionsLogged(), 0);
  EXPECT_EQ(m_parser.GetNumberParseExceptions(), 0);
  EXPECT_EQ(m_parser.GetParseException(0), nullptr);
  EXPECT_EQ(m_parser.AppendParseException(KRPW_BADFORMAT, "v", "T", KRTag_MEMO, nullptr), 1);
  auto* exception = new KRParseException;
  EXPECT_EQ(m_parser.AppendParseException(exception), 1);
  EXPECT_EQ(m_parser.GetAnyParseExceptionsLogged(), 1);
  EXPECT_EQ(m_parser.GetNumberParseExceptions(), 2);
  EXPECT_EQ(m_parser.GetParseException(0)->m_warning, KRPW_BADFORMAT);
  EXPECT_EQ(m_parser.GetParseException(1), exception);
  EXPECT_EQ(m_parser.GetParseException(2), nullptr);

  KRParseLogger copies;
  EXPECT_EQ(m_parser.CopyExceptionListTo(&copies), 1);
  EXPECT_EQ(m_parser.CopyExceptionListTo(&copies), 1);
  EXPECT_EQ(copies.Entries(), 4) << "copies add up";
  EXPECT_EQ(m_parser.CopyExceptionListTo(nullptr), 0);
}

TEST_F(Parser, NewParserEmptiesTheWarningsAndEnablesLogging) {
  m_parser.AppendParseException(KRPW_BADFORMAT, "v", "T", KRTag_MEMO, nullptr);
  m_parser.EnableLogging(0);
  KRParser another;
  EXPECT_EQ(m_parser.GetNumberParseExceptions(), 0);
  EXPECT_EQ(m_parser.GetAnyParseExceptionsLogged(), 0);
  EXPECT_EQ(KRParseLogger::TheKRParseLogger()->GetLoggingEnabled(), 1);
}

TEST_F(Parser, CountsWarningsAsSeenWithLoggingOff) {
  m_parser.EnableLogging(0);
  EXPECT_EQ(m_parser.AppendParseException(KRPW_BADFORMAT, "v", "T", KRTag_MEMO, nullptr), 1);
  EXPECT_EQ(m_parser.GetNumberParseExceptions(), 0);
  EXPECT_EQ(m_parser.GetAnyParseExceptionsLogged(), 1);
}

TEST_F(Parser, WarningWithoutAnObjectGetsTheCurrentOne) {
  ToyAggregate& root = NewObject();
  m_parser.Parse(nullptr, &root, 0);
  KRParseLogger* log = KRParseLogger::TheKRParseLogger();
  log->SetParser(&m_parser);
  m_parser.AppendParseException(KRPW_BADFORMAT, "", "", KRTag_None, nullptr);
  EXPECT_EQ(m_parser.GetParseException(0)->m_object, &root);
}

TEST_F(Parser, DestroyedParserIsNotAskedForItsObject) {
  KRParseLogger* log = KRParseLogger::TheKRParseLogger();
  {
    KRParser gone;
    gone.Parse(nullptr, &NewObject(), 0);
    log->SetParser(&gone);
  }
  m_parser.AppendParseException(KRPW_BADFORMAT, "", "", KRTag_None, nullptr);
  EXPECT_EQ(m_parser.GetParseException(0)->m_object, nullptr);
}

TEST(ParserOnADetachedThread, HasNoWarnings) {
  std::thread thread([] {
    KRDetachThread(KRCurrentThreadId());
    OpenParser parser;
    KRParseLogger copies;
    EXPECT_EQ(parser.AppendParseException(KRPW_BADFORMAT, "", "", KRTag_None, nullptr), 0);
    EXPECT_EQ(parser.GetAnyParseExceptionsLogged(), 0);
    EXPECT_EQ(parser.GetNumberParseExceptions(), 0);
    EXPECT_EQ(parser.GetParseException(0), nullptr);
    EXPECT_EQ(parser.CopyExceptionListTo(&copies), 0);
    parser.EnableLogging(1);
  });
  thread.join();
}

}  // namespace
