// The log of a parse: records, flags, context, copies, secrets.

#include "krofx/core/parse_logger.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "krofx/core/buffer.h"
#include "krofx/core/internal/held_warnings.h"
#include "krofx/core/internal/hooks.h"
#include "krofx/core/memory.h"

namespace {

using krofx::internal::AllocationFailure;
using krofx::internal::ForgetInLoggers;
using krofx::internal::HeldWarnings;

// To the log, objects and parsers are only pointers.
KRDataObj* Object(std::uintptr_t number) { return reinterpret_cast<KRDataObj*>(number * 16); }
KRParser* Parser(std::uintptr_t number) { return reinterpret_cast<KRParser*>(number * 16); }

KRParser* askedParser = nullptr;

class ParseLogger : public testing::Test {
 protected:
  ParseLogger() {
    KRSetFireAlarm(KRFireAlarm_None);
    askedParser = nullptr;
    krofx::internal::hooks.currentObjectOf = [](KRParser& parser) {
      askedParser = &parser;
      return Object(77);
    };
  }
  ~ParseLogger() override {
    AllocationFailure::FailAt(0);
    KRSetFireAlarm(KRFireAlarm_None);
    krofx::internal::hooks = m_hooks;
  }

  u16 Log(const char* value = "value", KRTagID tag = KRTag_MEMO, KRDataObj* object = nullptr) {
    return m_logger.AppendParseException(KRPW_BADFORMAT, value, "MEMO", tag, object);
  }
  const KRParseException& Last() { return *m_logger.Get(static_cast<u16>(m_logger.Entries() - 1)); }

  const krofx::internal::Hooks m_hooks = krofx::internal::hooks;
  KRParseLogger m_logger;
};

// --- Records -------------------------------------------------------------------------------------

struct WarningName {
  KRParseWarning warning;
  u32 code;
  const char* name;
};

class Warnings : public testing::TestWithParam<WarningName> {};

TEST_P(Warnings, HaveTheirCodeAndName) {
  EXPECT_EQ(GetParam().warning, GetParam().code);
  KRParseException exception;
  exception.m_warning = GetParam().warning;
  KRString name;
  exception.WarningString(name);
  EXPECT_STREQ(name, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(All, Warnings,
                         testing::Values(WarningName{KRPW_UNKNOWNEXCEPTION, 0,
                                                     "KRPW_UNKNOWNEXCEPTION"},
                                         WarningName{KRPW_UNKNOWNTAG, 1, "KRPW_UNKNOWNTAG"},
                                         WarningName{KRPW_INVALIDAGG, 2, "KRPW_INVALIDAGG"},
                                         WarningName{KRPW_INVALIDELEM, 3, "KRPW_INVALIDELEM"},
                                         WarningName{KRPW_BADFORMAT, 4, "KRPW_BADFORMAT"},
                                         WarningName{KRPW_OUTOFRANGE, 5, "KRPW_OUTOFRANGE"},
                                         WarningName{KRPW_TOOLONG, 6, "KRPW_TOOLONG"},
                                         WarningName{KRPW_SKIPFAILED, 7, "KRPW_SKIPFAILED"},
                                         WarningName{KRPW_NULLPOINTER, 8, "KRPW_NULLPOINTER"},
                                         WarningName{KRPW_INVALIDENDAGG, 9, "KRPW_INVALIDENDAGG"},
                                         WarningName{KRPW_MISSINGTAG, 10, "KRPW_MISSINGTAG"},
                                         WarningName{KRPW_LOWERCASE, 11, "KRPW_LOWERCASE"},
                                         WarningName{KRPW_EXTRAAGG, 12, "KRPW_EXTRAAGG"},
                                         WarningName{KRPW_EMPTYELEM, 13, "KRPW_EMPTYELEM"}));

TEST(KRParseException, IsEmptyAtFirst) {
  KRParseException exception;
  EXPECT_EQ(exception.m_warning, KRPW_UNKNOWNEXCEPTION);
  EXPECT_EQ(exception.m_object, nullptr);
  EXPECT_EQ(exception.m_tag, KRTag_None);
  EXPECT_EQ(exception.m_tagText.IsEmpty(), 1);
  EXPECT_EQ(exception.m_valueText.IsEmpty(), 1);
  EXPECT_EQ(exception.m_offset, -1);
  KRString name;
  exception.WarningString(name);
  EXPECT_STREQ(name, "KRPW_UNKNOWNEXCEPTION");
}

TEST(KRParseException, HasADefaultNameForACodeThatIsNone) {
  KRParseException exception;
  for (u32 code : {14U, 1000U, 0xffffffffU}) {
    exception.m_warning = static_cast<KRParseWarning>(code);
    KRString name("before");
    exception.WarningString(name);
    EXPECT_STREQ(name, "KRPW_UNKNOWNEXCEPTION") << code;
  }
}

TEST(KRParseException, CopiesAllFields) {
  KRParseException original;
  original.m_warning = KRPW_EXTRAAGG;
  original.m_object = Object(5);
  original.m_tagText = "STATUS";
  original.m_tag = KRTag_STATUS;
  original.m_valueText = "value";
  original.m_offset = 12;
  const KRParseException constructed(original);
  KRParseException assigned;
  assigned = original;
  for (const KRParseException* copy :
       {&constructed, const_cast<const KRParseException*>(&assigned)}) {
    EXPECT_EQ(copy->m_warning, KRPW_EXTRAAGG);
    EXPECT_EQ(copy->m_object, Object(5));
    EXPECT_STREQ(copy->m_tagText, "STATUS");
    EXPECT_EQ(copy->m_tag, KRTag_STATUS);
    EXPECT_STREQ(copy->m_valueText, "value");
    EXPECT_EQ(copy->m_offset, 12);
  }
}

// --- Logging -------------------------------------------------------------------------------------

TEST_F(ParseLogger, IsEmptyAndEnabledAtFirst) {
  EXPECT_EQ(m_logger.Entries(), 0);
  EXPECT_EQ(m_logger.InitialSize(), 1);
  EXPECT_EQ(m_logger.GrowStep(), 1);
  EXPECT_EQ(m_logger.GetLoggingEnabled(), 1);
  EXPECT_EQ(m_logger.GetAnyParseExceptionsLogged(), 0);
  EXPECT_EQ(m_logger.Get(0), nullptr);
}

TEST_F(ParseLogger, StoresWarningsInOrder) {
  EXPECT_EQ(m_logger.AppendParseException(KRPW_TOOLONG, "one", "MEMO", KRTag_MEMO, Object(1)), 1);
  EXPECT_EQ(m_logger.AppendParseException(KRPW_LOWERCASE, "", "memo", KRTag_None, nullptr), 1);
  ASSERT_EQ(m_logger.Entries(), 2);
  const KRParseException& first = *m_logger.Get(0);
  EXPECT_EQ(first.m_warning, KRPW_TOOLONG);
  EXPECT_STREQ(first.m_valueText, "one");
  EXPECT_STREQ(first.m_tagText, "MEMO");
  EXPECT_EQ(first.m_tag, KRTag_MEMO);
  EXPECT_EQ(first.m_object, Object(1));
  EXPECT_EQ(first.m_offset, -1);
  const KRParseException& second = *m_logger.Get(1);
  EXPECT_EQ(second.m_warning, KRPW_LOWERCASE);
  EXPECT_EQ(second.m_valueText.IsEmpty(), 1);
  EXPECT_EQ(second.m_object, nullptr);
  EXPECT_EQ(m_logger.GetAnyParseExceptionsLogged(), 1);
}

TEST_F(ParseLogger, CountsWarningsAsSeenWhenItStoresNone) {
  m_logger.EnableLogging(0);
  EXPECT_EQ(m_logger.GetLoggingEnabled(), 0);
  EXPECT_EQ(Log(), 1);
  EXPECT_EQ(m_logger.Entries(), 0);
  EXPECT_EQ(m_logger.GetAnyParseExceptionsLogged(), 1);
  m_logger.EnableLogging(7);
  EXPECT_EQ(m_logger.GetLoggingEnabled(), 1);
  EXPECT_EQ(Log(), 1);
  EXPECT_EQ(m_logger.Entries(), 1);
}

TEST_F(ParseLogger, DoesNotTakeARecordWhileDisabled) {
  KRParseException exception;
  m_logger.EnableLogging(0);
  EXPECT_EQ(m_logger.AppendParseException(&exception), 1);
  EXPECT_EQ(m_logger.Entries(), 0);
  EXPECT_EQ(m_logger.GetAnyParseExceptionsLogged(), 1);
}

TEST_F(ParseLogger, OwnsTheRecordsThatItTakes) {
  KRParseException* exception = new KRParseException;
  EXPECT_EQ(m_logger.AppendParseException(exception), 1);
  EXPECT_EQ(m_logger.Get(0), exception);
  EXPECT_EQ(m_logger.GetAnyParseExceptionsLogged(), 1);
}

TEST_F(ParseLogger, RefusesNoRecord) {
  EXPECT_EQ(m_logger.AppendParseException(nullptr), 0);
  EXPECT_EQ(m_logger.GetAnyParseExceptionsLogged(), 0);
}

TEST_F(ParseLogger, IsEmptiedWithoutLosingItsFlag) {
  Log();
  m_logger.EnableLogging(0);
  KRDynamicArrayParseException& asArray = m_logger;
  asArray.DeleteAll();
  EXPECT_EQ(m_logger.Entries(), 0);
  EXPECT_EQ(m_logger.GetAnyParseExceptionsLogged(), 0);
  EXPECT_EQ(m_logger.GetLoggingEnabled(), 0);
}

// --- Context -------------------------------------------------------------------------------------

TEST_F(ParseLogger, TakesTheObjectFromTheParserWhenNoneIsGiven) {
  m_logger.SetParser(Parser(3));
  Log("v", KRTag_MEMO, nullptr);
  EXPECT_EQ(Last().m_object, Object(77));
  EXPECT_EQ(askedParser, Parser(3));
  Log("v", KRTag_MEMO, Object(4));
  EXPECT_EQ(Last().m_object, Object(4));
  m_logger.SetParser(nullptr);
  Log("v", KRTag_MEMO, nullptr);
  EXPECT_EQ(Last().m_object, nullptr);
}

TEST_F(ParseLogger, KnowsNoObjectWithoutAParserLayer) {
  krofx::internal::hooks.currentObjectOf = nullptr;
  m_logger.SetParser(Parser(3));
  Log();
  EXPECT_EQ(Last().m_object, nullptr);
}

TEST_F(ParseLogger, TakesTheOffsetFromTheBuffersCursor) {
  KRBuffer buffer(0, 0);
  buffer += "0123456789";
  buffer.SetBufferOffset(4);
  m_logger.SetBuffer(&buffer);
  Log();
  EXPECT_EQ(Last().m_offset, 4);

  KRParseException* without = new KRParseException;
  m_logger.AppendParseException(without);
  EXPECT_EQ(without->m_offset, 4);
  EXPECT_EQ(without->m_object, nullptr);
  KRParseException* with = new KRParseException;
  with->m_offset = 9;
  m_logger.AppendParseException(with);
  EXPECT_EQ(with->m_offset, 9);
}

TEST_F(ParseLogger, GivesAReadyMadeRecordNoObject) {
  m_logger.SetParser(Parser(3));
  KRParseException* exception = new KRParseException;
  m_logger.AppendParseException(exception);
  EXPECT_EQ(exception->m_object, nullptr);
  EXPECT_EQ(askedParser, nullptr);
}

TEST_F(ParseLogger, ForgetsABufferThatIsDestroyed) {
  KRBuffer buffer(0, 0);
  KRBuffer other(0, 0);
  KRParseLogger second;
  m_logger.SetBuffer(&buffer);
  second.SetBuffer(&buffer);
  ForgetInLoggers(&other);
  Log();
  EXPECT_EQ(Last().m_offset, 0);
  ForgetInLoggers(&buffer);
  Log();
  EXPECT_EQ(Last().m_offset, -1);
  second.AppendParseException(KRPW_TOOLONG, "", "", KRTag_None, nullptr);
  EXPECT_EQ(second.Get(0)->m_offset, -1);
}

TEST_F(ParseLogger, IsForgottenByTheBuffersDestructor) {
  {
    KRBuffer buffer(0, 0);
    m_logger.SetBuffer(&buffer);
  }
  Log();
  EXPECT_EQ(Last().m_offset, -1);
}

TEST_F(ParseLogger, IsForgottenByABufferThatAnotherThreadDestroys) {
  KRBuffer* buffer = new KRBuffer(0, 0);
  m_logger.SetBuffer(buffer);
  std::thread([buffer] { krofx::internal::DeleteBuffer(buffer); }).join();
  Log();
  EXPECT_EQ(Last().m_offset, -1);
}

TEST_F(ParseLogger, ForgetsAParserThatIsDestroyed) {
  m_logger.SetParser(Parser(3));
  ForgetInLoggers(Parser(4));
  Log();
  EXPECT_EQ(Last().m_object, Object(77));
  ForgetInLoggers(Parser(3));
  Log();
  EXPECT_EQ(Last().m_object, nullptr);
}

TEST_F(ParseLogger, MayBeDestroyedBeforeItsBuffer) {
  KRBuffer buffer(0, 0);
  KRParseLogger first;
  first.SetBuffer(&buffer);
  {
    KRParseLogger second;
    second.SetBuffer(&buffer);
    second.SetParser(Parser(1));
    KRParseLogger third;
    third.SetBuffer(&buffer);
    third.SetBuffer(nullptr);
  }
  ForgetInLoggers(&buffer);
  ForgetInLoggers(Parser(1));
  first.AppendParseException(KRPW_TOOLONG, "", "", KRTag_None, nullptr);
  EXPECT_EQ(first.Get(0)->m_offset, -1);
}

struct Listener final : krofx::internal::WarningListener {
  void OnStored(const KRParseException& exception) override {
    ++m_heard;
    m_last = &exception;
  }
  int m_heard = 0;
  const KRParseException* m_last = nullptr;
};

TEST_F(ParseLogger, TellsItsListenerOfEachRecordThatItStores) {
  Listener first;
  Listener second;
  EXPECT_EQ(m_logger.SetListener(&first), nullptr);
  Log();
  EXPECT_EQ(first.m_heard, 1);
  EXPECT_EQ(first.m_last, &Last());
  m_logger.AppendParseException(new KRParseException);
  EXPECT_EQ(first.m_heard, 2);
  EXPECT_EQ(first.m_last, &Last());

  m_logger.EnableLogging(0);
  Log();
  EXPECT_EQ(first.m_heard, 2);
  m_logger.EnableLogging(1);

  EXPECT_EQ(m_logger.SetListener(&second), &first);
  Log();
  EXPECT_EQ(first.m_heard, 2);
  EXPECT_EQ(second.m_heard, 1);
  EXPECT_EQ(m_logger.SetListener(nullptr), &second);
  Log();
  EXPECT_EQ(second.m_heard, 1);
}

// --- Secrets -------------------------------------------------------------------------------------

class SecretTags : public ParseLogger, public testing::WithParamInterface<KRTagID> {};

TEST_P(SecretTags, KeepOnlyTheLengthOfTheirValue) {
  Log("hunter2", GetParam());
  EXPECT_STREQ(Last().m_valueText, "*******");
  EXPECT_EQ(Last().m_tag, GetParam());
  EXPECT_STREQ(Last().m_tagText, "MEMO");
}

TEST_P(SecretTags, KeepNothingOfATextThatOnceWasLonger) {
  KRString value("longer than it is now");
  value.Truncate(3);
  m_logger.AppendParseException(KRPW_BADFORMAT, value, "", GetParam(), nullptr);
  EXPECT_STREQ(Last().m_valueText, "***");
}

TEST_P(SecretTags, KeepAnEmptyValueEmpty) {
  Log("", GetParam());
  EXPECT_EQ(Last().m_valueText.IsEmpty(), 1);
}

TEST_P(SecretTags, HideTheValueOfAReadyMadeRecord) {
  KRParseException* exception = new KRParseException;
  exception->m_tag = GetParam();
  exception->m_valueText = "hunter2";
  m_logger.AppendParseException(exception);
  EXPECT_STREQ(Last().m_valueText, "*******");
}

TEST_P(SecretTags, KeepTheLibrarysOwnWording) {
  KRParseLogger* logger = KRParseLogger::TheKRParseLogger();
  logger->DeleteAll();
  EXPECT_EQ(krofx::internal::LogFixedText(KRPW_TOOLONG, "Password too long", "USERPASS", GetParam(),
                                          Object(2)),
            1);
  ASSERT_EQ(logger->Entries(), 1);
  EXPECT_STREQ(logger->Get(0)->m_valueText, "Password too long");
  EXPECT_EQ(logger->Get(0)->m_warning, KRPW_TOOLONG);
  EXPECT_EQ(logger->Get(0)->m_object, Object(2));
  m_logger.DeepCopyFrom(logger);
  EXPECT_STREQ(Last().m_valueText, "Password too long");
  logger->DeleteAll();
}

INSTANTIATE_TEST_SUITE_P(Passwords, SecretTags,
                         testing::Values(KRTag_USERPASS, KRTag_NEWUSERPASS, KRTag_ONETIMEPASS,
                                         KRTag_TEMPPASS, KRTag_USERKEY));

TEST_F(ParseLogger, KeepsTheValuesOfOtherTags) {
  Log("hunter2", KRTag_USERID);
  EXPECT_STREQ(Last().m_valueText, "hunter2");
}

// --- Copies --------------------------------------------------------------------------------------

TEST_F(ParseLogger, CopiesAddUp) {
  Log("one");
  KRParseLogger source;
  source.AppendParseException(KRPW_MISSINGTAG, "two", "BANKID", KRTag_BANKID, Object(9));
  source.AppendParseException(KRPW_EXTRAAGG, "three", "", KRTag_None, nullptr);
  EXPECT_EQ(m_logger.DeepCopyFrom(&source), 1);
  ASSERT_EQ(m_logger.Entries(), 3);
  EXPECT_STREQ(m_logger.Get(0)->m_valueText, "one");
  const KRParseException& copy = *m_logger.Get(1);
  EXPECT_NE(&copy, source.Get(0));
  EXPECT_EQ(copy.m_warning, KRPW_MISSINGTAG);
  EXPECT_STREQ(copy.m_valueText, "two");
  EXPECT_STREQ(copy.m_tagText, "BANKID");
  EXPECT_EQ(copy.m_tag, KRTag_BANKID);
  EXPECT_EQ(copy.m_object, Object(9));
  EXPECT_EQ(copy.m_offset, -1);
  EXPECT_STREQ(m_logger.Get(2)->m_valueText, "three");
  EXPECT_EQ(source.Entries(), 2);
}

TEST_F(ParseLogger, TakesTheFlagsOfAnEmptySource) {
  Log();
  KRParseLogger source;
  source.EnableLogging(0);
  EXPECT_EQ(m_logger.DeepCopyFrom(&source), 1);
  EXPECT_EQ(m_logger.GetLoggingEnabled(), 0);
  EXPECT_EQ(m_logger.GetAnyParseExceptionsLogged(), 0);
  EXPECT_EQ(m_logger.Entries(), 1);

  source.AppendParseException(KRPW_TOOLONG, "", "", KRTag_None, nullptr);
  source.EnableLogging(1);
  EXPECT_EQ(source.Entries(), 0);
  EXPECT_EQ(m_logger.DeepCopyFrom(&source), 1);
  EXPECT_EQ(m_logger.GetLoggingEnabled(), 1);
  EXPECT_EQ(m_logger.GetAnyParseExceptionsLogged(), 1);
}

TEST_F(ParseLogger, CopiesNoRecordsOfADisabledSource) {
  KRParseLogger source;
  source.AppendParseException(KRPW_TOOLONG, "", "", KRTag_None, nullptr);
  source.EnableLogging(0);
  EXPECT_EQ(m_logger.DeepCopyFrom(&source), 1);
  EXPECT_EQ(m_logger.Entries(), 0);
  EXPECT_EQ(m_logger.GetAnyParseExceptionsLogged(), 1);
}

TEST_F(ParseLogger, FillsInTheOffsetOfACopyFromItsOwnBuffer) {
  KRBuffer buffer(0, 0);
  buffer += "12345";
  m_logger.SetBuffer(&buffer);
  KRParseLogger source;
  source.AppendParseException(KRPW_TOOLONG, "", "", KRTag_None, nullptr);
  m_logger.DeepCopyFrom(&source);
  EXPECT_EQ(Last().m_offset, 5);
  EXPECT_EQ(source.Get(0)->m_offset, -1);
}

TEST_F(ParseLogger, CopiedIntoItselfDoublesOnce) {
  Log("one");
  Log("two");
  EXPECT_EQ(m_logger.DeepCopyFrom(&m_logger), 1);
  ASSERT_EQ(m_logger.Entries(), 4);
  EXPECT_STREQ(m_logger.Get(3)->m_valueText, "two");
}

TEST_F(ParseLogger, CopiesNothingFromNothing) { EXPECT_EQ(m_logger.DeepCopyFrom(nullptr), 0); }

// --- Warnings that are held back -----------------------------------------------------------------

class HeldBack : public testing::Test {
 protected:
  HeldBack() { m_logger.DeleteAll(); }
  ~HeldBack() override { m_logger.DeleteAll(); }

  void Warn(const char* value, KRTagID tag = KRTag_None) {
    EXPECT_EQ(m_logger.AppendParseException(KRPW_BADFORMAT, value, "", tag, Object(5)), 1);
  }
  std::string Logged() const {
    std::string values;
    for (u16 index = 0; index < m_logger.Entries(); ++index) {
      values += (index == 0 ? "" : " ") + std::string(m_logger.Get(index)->m_valueText);
    }
    return values;
  }

  KRParseLogger& m_logger = *KRParseLogger::TheKRParseLogger();
};

TEST_F(HeldBack, AreLoggedAtTheEndInTheirOrder) {
  {
    const HeldWarnings held;
    Warn("one");
    Warn("two");
    EXPECT_EQ(Logged(), "");
  }
  EXPECT_EQ(Logged(), "one two");
  EXPECT_EQ(m_logger.Get(0)->m_warning, KRPW_BADFORMAT);
  EXPECT_EQ(m_logger.Get(0)->m_object, Object(5));
  Warn("three");
  EXPECT_EQ(Logged(), "one two three");
}

TEST_F(HeldBack, AreGoneWhenTheyAreDropped) {
  {
    HeldWarnings held;
    Warn("one");
    held.Drop();
    Warn("two");
  }
  EXPECT_EQ(Logged(), "two");
}

TEST_F(HeldBack, AreNotThoseThatNameATag) {
  HeldWarnings held;
  Warn("one", KRTag_MEMO);
  EXPECT_EQ(Logged(), "one");
}

TEST_F(HeldBack, PassFromAnInnerHolderToTheOuterOne) {
  {
    HeldWarnings outer;
    Warn("one");
    {
      HeldWarnings inner;
      Warn("two");
      inner.Drop();
      Warn("three");
    }
    EXPECT_EQ(Logged(), "");
  }
  EXPECT_EQ(Logged(), "one three");
}

TEST_F(HeldBack, AreAtMostEight) {
  {
    const HeldWarnings held;
    for (const char* const value : {"1", "2", "3", "4", "5", "6", "7", "8", "9"}) Warn(value);
    EXPECT_EQ(Logged(), "9");
  }
  EXPECT_EQ(Logged(), "9 1 2 3 4 5 6 7 8");
}

TEST_F(HeldBack, AreLostOnADetachedThread) {
  std::thread([] {
    KRDetachThread(KRCurrentThreadId());
    HeldWarnings held;
    EXPECT_EQ(krofx::internal::LogWarning(KRPW_TOOLONG, "", "", KRTag_None, nullptr), 0);
    held.Drop();
  }).join();
  EXPECT_EQ(Logged(), "");
}

// --- Exhausted memory ----------------------------------------------------------------------------

TEST_F(ParseLogger, LosesTheWarningAndRaisesTheAlarmWithoutMemory) {
  AllocationFailure::FailAt(1, true);
  EXPECT_EQ(
      m_logger.AppendParseException(KRPW_TOOLONG, KRString(), KRString(), KRTag_None, nullptr), 0);
  AllocationFailure::FailAt(0);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  EXPECT_EQ(m_logger.Entries(), 0);
  EXPECT_EQ(m_logger.GetAnyParseExceptionsLogged(), 1);
}

TEST_F(ParseLogger, RaisesTheAlarmWhicheverAllocationFails) {
  const KRString value("value");
  const KRString tagText("MEMO");
  for (u16 stored = 0; stored < 4; ++stored) {
    for (std::size_t nth = 1;; ++nth) {
      const u16 before = m_logger.Entries();
      KRSetFireAlarm(KRFireAlarm_None);
      AllocationFailure::FailAt(nth);
      const u16 result =
          m_logger.AppendParseException(KRPW_TOOLONG, value, tagText, KRTag_MEMO, nullptr);
      const bool hasFailed = AllocationFailure::Count() >= nth;
      AllocationFailure::FailAt(0);
      EXPECT_EQ(KRGetFireAlarm(), hasFailed ? 1U : 0U);
      EXPECT_EQ(m_logger.Entries(), before + result);
      if (!hasFailed) break;
    }
  }
}

TEST_F(ParseLogger, LeavesARecordToItsCallerThatItCannotStore) {
  KRParseException record;
  AllocationFailure::FailAt(1);
  EXPECT_EQ(m_logger.AppendParseException(&record), 0);
  AllocationFailure::FailAt(0);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  EXPECT_EQ(m_logger.Entries(), 0);
}

TEST_F(ParseLogger, KeepsWhatItCopiedWhenMemoryRunsOut) {
  KRParseLogger source;
  for (int i = 0; i < 3; ++i) {
    source.AppendParseException(KRPW_TOOLONG, "value", "MEMO", KRTag_MEMO, nullptr);
  }
  std::size_t nth = 1;
  for (;; ++nth) {
    KRParseLogger target;
    KRSetFireAlarm(KRFireAlarm_None);
    AllocationFailure::FailAt(nth);
    const u16 result = target.DeepCopyFrom(&source);
    const bool hasFailed = AllocationFailure::Count() >= nth;
    AllocationFailure::FailAt(0);
    EXPECT_EQ(KRGetFireAlarm(), hasFailed ? 1U : 0U);
    if (!hasFailed) {
      EXPECT_EQ(result, 1);
      EXPECT_EQ(target.Entries(), 3);
      break;
    }
  }
  EXPECT_GT(nth, 3U);
}

TEST_F(ParseLogger, LosesWarningsBeyondTheLastIndexWithoutAnAlarm) {
  for (int i = 0; i < 65535; ++i) {
    ASSERT_EQ(
        m_logger.AppendParseException(KRPW_TOOLONG, KRString(), KRString(), KRTag_None, nullptr),
        1);
  }
  EXPECT_EQ(Log(), 0);
  KRParseException exception;
  EXPECT_EQ(m_logger.AppendParseException(&exception), 0);
  EXPECT_EQ(m_logger.Entries(), 65535);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
}

// --- The thread's log ----------------------------------------------------------------------------

TEST_F(ParseLogger, OfTheThreadTakesTheLibrarysWarnings) {
  KRParseLogger* logger = KRParseLogger::TheKRParseLogger();
  logger->DeleteAll();
  EXPECT_EQ(krofx::internal::LogWarning(KRPW_OUTOFRANGE, "70000", "CODE", KRTag_CODE, Object(1)),
            1);
  ASSERT_EQ(logger->Entries(), 1);
  EXPECT_EQ(logger->Get(0)->m_warning, KRPW_OUTOFRANGE);
  EXPECT_STREQ(logger->Get(0)->m_valueText, "70000");
  logger->DeleteAll();
}

TEST_F(ParseLogger, OfADetachedThreadLosesWarnings) {
  std::thread([] {
    KRDetachThread(KRCurrentThreadId());
    EXPECT_EQ(krofx::internal::LogWarning(KRPW_TOOLONG, "", "", KRTag_None, nullptr), 0);
    EXPECT_EQ(krofx::internal::LogFixedText(KRPW_TOOLONG, "", "", KRTag_None, nullptr), 0);
  }).join();
}

}  // namespace
