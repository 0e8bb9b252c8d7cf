// Attachment of threads: by itself, by call, by notification; the fire alarm of each thread; the
// table of threads.

#include "krofx/core/thread.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <future>
#include <thread>
#include <vector>

#include "krofx/core/memory.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/thread_map.h"

namespace {

using krofx::internal::AllocationFailure;

// A key that no thread of the system has: thread numbers are far lower.
constexpr u32 kStranger = 0xf0000000U;

u16 RowsOf(u32 threadId) {
  u16 rows = 0;
  for (u16 i = 0; KRThreadMap != nullptr && i < KRThreadMap->Entries(); ++i) {
    if (KRThreadMap->Get(i)->threadID == threadId) ++rows;
  }
  return rows;
}

u16 Rows() { return KRThreadMap->Entries(); }

template <class Work>
void OnNewThread(Work work) {
  std::thread(work).join();
}

// Leaves the calling thread attached, with a clear alarm, whatever a test did.
class ThreadTest : public testing::Test {
 protected:
  ~ThreadTest() override {
    AllocationFailure::FailAt(0);
    KRAttachThread(KRCurrentThreadId());
    KRSetFireAlarm(KRFireAlarm_None);
  }
};

// --- Attachment ----------------------------------------------------------------------------------

TEST_F(ThreadTest, TheLoadingThreadIsAttachedFromTheStart) {
  EXPECT_EQ(RowsOf(static_cast<u32>(gettid())), 1);
  EXPECT_NE(KRParseLogger::TheKRParseLogger(), nullptr);
}

TEST_F(ThreadTest, TheKeyIsTheSystemsThreadNumber) {
  EXPECT_EQ(KRCurrentThreadId(), static_cast<u32>(gettid()));
  OnNewThread([] { EXPECT_EQ(KRCurrentThreadId(), static_cast<u32>(gettid())); });
}

TEST_F(ThreadTest, AttachingTwiceLeavesOneRowAndOneLogger) {
  EXPECT_EQ(KRAttachThread(kStranger), 1);
  KRParseLogger* logger = KRThreadMap->Get(static_cast<u16>(Rows() - 1))->logger;
  EXPECT_EQ(KRAttachThread(kStranger), 1);
  EXPECT_EQ(RowsOf(kStranger), 1);
  EXPECT_EQ(KRThreadMap->Get(static_cast<u16>(Rows() - 1))->logger, logger);
  EXPECT_EQ(KRDetachThread(kStranger), 1);
  EXPECT_EQ(RowsOf(kStranger), 0);
}

TEST_F(ThreadTest, AttachingTheCallingThreadAgainKeepsItsLogger) {
  KRParseLogger* logger = KRParseLogger::TheKRParseLogger();
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  EXPECT_EQ(KRAttachThread(KRCurrentThreadId()), 1);
  EXPECT_EQ(KRParseLogger::TheKRParseLogger(), logger);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
}

TEST_F(ThreadTest, DetachingAnUnknownThreadChangesNothing) {
  const u16 rows = Rows();
  EXPECT_EQ(KRDetachThread(kStranger), 1);
  EXPECT_EQ(Rows(), rows);
}

TEST_F(ThreadTest, RowsStandInTheOrderOfAttachmentAndCloseUp) {
  const u16 first = Rows();
  for (u32 i = 0; i < 3; ++i) ASSERT_EQ(KRAttachThread(kStranger + i), 1);
  EXPECT_EQ(KRDetachThread(kStranger + 1), 1);
  ASSERT_EQ(Rows(), first + 2);
  EXPECT_EQ(KRThreadMap->Get(first)->threadID, kStranger);
  EXPECT_EQ(KRThreadMap->Get(static_cast<u16>(first + 1))->threadID, kStranger + 2);
  KRDetachThread(kStranger);
  KRDetachThread(kStranger + 2);
}

TEST_F(ThreadTest, ADetachedThreadHasNoLoggerAndAPermanentAlarm) {
  KRSetFireAlarm(KRFireAlarm_None);
  EXPECT_EQ(KRDetachThread(KRCurrentThreadId()), 1);
  EXPECT_EQ(KRGetFireAlarm(), 1U);
  KRSetFireAlarm(KRFireAlarm_None);
  EXPECT_EQ(KRGetFireAlarm(), 1U);
  EXPECT_EQ(KRParseLogger::TheKRParseLogger(), nullptr);
  EXPECT_EQ(RowsOf(KRCurrentThreadId()), 0);
  EXPECT_EQ(KRParseLogger::TheKRParseLogger(), nullptr);
  EXPECT_EQ(KRDetachThread(KRCurrentThreadId()), 1);

  EXPECT_EQ(KRAttachThread(KRCurrentThreadId()), 1);
  EXPECT_NE(KRParseLogger::TheKRParseLogger(), nullptr);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
}

TEST_F(ThreadTest, DetachingDropsTheWarnings) {
  KRParseLogger* logger = KRParseLogger::TheKRParseLogger();
  logger->AppendParseException(KRPW_TOOLONG, "x", "MEMO", KRTag_MEMO, nullptr);
  KRDetachThread(KRCurrentThreadId());
  KRAttachThread(KRCurrentThreadId());
  EXPECT_EQ(KRParseLogger::TheKRParseLogger()->Entries(), 0);
  EXPECT_EQ(KRParseLogger::TheKRParseLogger()->GetAnyParseExceptionsLogged(), 0);
}

TEST_F(ThreadTest, ALaterThreadIsAttachedAtItsFirstUseAndDetachedAtItsEnd) {
  const u16 rows = Rows();
  u32 id = 0;
  OnNewThread([&] {
    KRParseLogger* logger = KRParseLogger::TheKRParseLogger();
    ASSERT_NE(logger, nullptr);
    EXPECT_EQ(KRParseLogger::TheKRParseLogger(), logger);
    id = KRCurrentThreadId();
    EXPECT_EQ(RowsOf(id), 1);
  });
  EXPECT_EQ(RowsOf(id), 0);
  EXPECT_EQ(Rows(), rows);
}

TEST_F(ThreadTest, AskingForTheKeyAttaches) {
  OnNewThread([] { EXPECT_EQ(RowsOf(KRCurrentThreadId()), 1); });
}

TEST_F(ThreadTest, EachThreadHasItsOwnLogger) {
  KRParseLogger* mine = KRParseLogger::TheKRParseLogger();
  OnNewThread([mine] { EXPECT_NE(KRParseLogger::TheKRParseLogger(), mine); });
  EXPECT_EQ(KRParseLogger::TheKRParseLogger(), mine);
}

TEST_F(ThreadTest, AThreadThatDetachedItselfAtOnceStaysSo) {
  OnNewThread([] {
    EXPECT_EQ(KRDetachThread(static_cast<u32>(gettid())), 1);
    EXPECT_EQ(KRParseLogger::TheKRParseLogger(), nullptr);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  });
}

TEST_F(ThreadTest, AnotherThreadCanDetachAndAttachThisOne) {
  const u32 id = KRCurrentThreadId();
  OnNewThread([id] { EXPECT_EQ(KRDetachThread(id), 1); });
  EXPECT_EQ(KRParseLogger::TheKRParseLogger(), nullptr);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  OnNewThread([id] { EXPECT_EQ(KRAttachThread(id), 1); });
  EXPECT_NE(KRParseLogger::TheKRParseLogger(), nullptr);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
}

TEST_F(ThreadTest, ARowMadeByAnotherThreadIsTheThreadsOwnFromItsFirstUse) {
  std::promise<u32> id;
  std::promise<void> attached;
  std::thread worker([&] {
    id.set_value(static_cast<u32>(gettid()));
    attached.get_future().wait();
    EXPECT_EQ(RowsOf(static_cast<u32>(gettid())), 1);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
    EXPECT_NE(KRParseLogger::TheKRParseLogger(), nullptr);
    EXPECT_EQ(RowsOf(KRCurrentThreadId()), 1);
  });
  const u32 workerId = id.get_future().get();
  EXPECT_EQ(KRAttachThread(workerId), 1);
  attached.set_value();
  worker.join();
  EXPECT_EQ(RowsOf(workerId), 0);
}

TEST_F(ThreadTest, ManyThreadsComeAndGoAtOnce) {
  const u16 rows = Rows();
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([] {
      for (int round = 0; round < 50; ++round) {
        KRParseLogger* logger = KRParseLogger::TheKRParseLogger();
        ASSERT_NE(logger, nullptr);
        logger->AppendParseException(KRPW_BADFORMAT, "v", "t", KRTag_None, nullptr);
        KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
        EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
        EXPECT_EQ(KRDetachThread(KRCurrentThreadId()), 1);
        EXPECT_EQ(KRAttachThread(KRCurrentThreadId()), 1);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(Rows(), rows);
}

struct UsesTheLibraryAtItsEnd {
  ~UsesTheLibraryAtItsEnd() {
    *m_hadLogger = KRParseLogger::TheKRParseLogger() != nullptr;
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  }
  bool* m_hadLogger = nullptr;
};

TEST_F(ThreadTest, DestructorsOfThreadLocalObjectsStillHaveTheLogger) {
  const u16 rows = Rows();
  bool hadLogger = false;
  OnNewThread([&hadLogger] {
    static thread_local UsesTheLibraryAtItsEnd object;
    object.m_hadLogger = &hadLogger;
    KRParseLogger::TheKRParseLogger();
  });
  EXPECT_TRUE(hadLogger);
  EXPECT_EQ(Rows(), rows);
}

void UseTheLibrary(void* hadLogger) {
  *static_cast<bool*>(hadLogger) = KRParseLogger::TheKRParseLogger() != nullptr;
}

TEST_F(ThreadTest, LaterEndHandlersOfAThreadAttachItAgainAndNothingIsLeftBehind) {
  const u16 rows = Rows();
  // Its handler runs after the library's own, since its key was made later.
  pthread_key_t key;
  ASSERT_EQ(pthread_key_create(&key, UseTheLibrary), 0);
  bool hadLogger = false;
  OnNewThread([&] {
    KRParseLogger::TheKRParseLogger();
    pthread_setspecific(key, &hadLogger);
  });
  pthread_key_delete(key);
  EXPECT_TRUE(hadLogger);
  EXPECT_EQ(Rows(), rows);
}

// --- Fire alarm ----------------------------------------------------------------------------------

TEST_F(ThreadTest, TheAlarmIsClearOnAFreshThread) {
  OnNewThread([] {
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
    EXPECT_NE(KRParseLogger::TheKRParseLogger(), nullptr);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
  });
}

TEST_F(ThreadTest, TheAlarmStaysUntilItIsCleared) {
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  KRSetFireAlarm(KRFireAlarm_None);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
}

TEST_F(ThreadTest, TheAlarmTakesPlainNumbers) {
  KRSetFireAlarm(1);
  EXPECT_EQ(KRGetFireAlarm(), 1U);
  KRSetFireAlarm(0);
  EXPECT_EQ(KRGetFireAlarm(), 0U);
}

TEST_F(ThreadTest, TheAlarmOfOneThreadIsNotSeenOnAnother) {
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  OnNewThread([] {
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
    KRParseLogger::TheKRParseLogger();
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
  });
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  KRSetFireAlarm(KRFireAlarm_None);
  OnNewThread([] { KRSetFireAlarm(KRFireAlarm_MemoryExhausted); });
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
}

TEST_F(ThreadTest, TheAlarmOfAThreadNotYetMetGoesIntoItsLogger) {
  OnNewThread([] {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
    EXPECT_NE(KRParseLogger::TheKRParseLogger(), nullptr);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
    KRSetFireAlarm(KRFireAlarm_None);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
  });
}

TEST_F(ThreadTest, TheAlarmTakesNoMemory) {
  OnNewThread([] {
    AllocationFailure::FailAt(1, true);
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
    EXPECT_EQ(AllocationFailure::Count(), 0U);
    AllocationFailure::FailAt(0);
  });
}

// --- Exhausted memory ----------------------------------------------------------------------------

TEST_F(ThreadTest, AttachingFailsWithoutATraceAtEveryAllocation) {
  const u16 rows = Rows();
  std::size_t nth = 1;
  for (;; ++nth) {
    AllocationFailure::FailAt(nth);
    const u16 attached = KRAttachThread(kStranger);
    AllocationFailure::FailAt(0);
    if (attached == 1) break;
    EXPECT_EQ(Rows(), rows);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
  }
  EXPECT_GE(nth, 3U);  // a logger and a row, at least
  EXPECT_EQ(RowsOf(kStranger), 1);
  KRDetachThread(kStranger);
}

TEST_F(ThreadTest, ANewThreadWithoutMemoryHasNoLoggerUntilThereIsSome) {
  OnNewThread([] {
    AllocationFailure::FailAt(1, true);
    EXPECT_EQ(KRParseLogger::TheKRParseLogger(), nullptr);
    AllocationFailure::FailAt(0);
    EXPECT_NE(KRParseLogger::TheKRParseLogger(), nullptr);
  });
}

TEST_F(ThreadTest, AFailedTableLeavesNone) {
  KRParseLogger* logger = KRParseLogger::TheKRParseLogger();
  KRLibraryNotification(KRLibraryEvent_ProcessDetach);
  delete logger;
  AllocationFailure::FailAt(1);
  EXPECT_EQ(KRAttachThread(kStranger), 0);
  EXPECT_EQ(KRThreadMap, nullptr);
  AllocationFailure::FailAt(1);
  EXPECT_EQ(KRLibraryNotification(KRLibraryEvent_ProcessAttach), 0);
  EXPECT_EQ(KRThreadMap, nullptr);
  AllocationFailure::FailAt(2);
  EXPECT_EQ(KRLibraryNotification(KRLibraryEvent_ThreadAttach), 0);
  AllocationFailure::FailAt(0);
  EXPECT_EQ(KRLibraryNotification(KRLibraryEvent_ProcessAttach), 1);
}

// --- Notifications -------------------------------------------------------------------------------

TEST_F(ThreadTest, ThreadEventsAttachAndDetachTheCallingThread) {
  EXPECT_EQ(KRLibraryNotification(KRLibraryEvent_ThreadDetach), 1);
  EXPECT_EQ(KRParseLogger::TheKRParseLogger(), nullptr);
  EXPECT_EQ(KRLibraryNotification(KRLibraryEvent_ThreadDetach), 1);
  EXPECT_EQ(KRLibraryNotification(KRLibraryEvent_ThreadAttach), 1);
  EXPECT_NE(KRParseLogger::TheKRParseLogger(), nullptr);
  EXPECT_EQ(KRLibraryNotification(KRLibraryEvent_ThreadAttach), 1);
  EXPECT_EQ(RowsOf(KRCurrentThreadId()), 1);
}

TEST_F(ThreadTest, OtherEventsDoNothing) {
  const u16 rows = Rows();
  for (u32 event : {4U, 5U, 0xffffffffU}) EXPECT_EQ(KRLibraryNotification(event), 0);
  EXPECT_EQ(Rows(), rows);
}

// The loggers that a process detach leaves, which the test then owns.
class ShutDown : public ThreadTest {
 protected:
  ShutDown() : m_logger(KRParseLogger::TheKRParseLogger()) {
    EXPECT_EQ(KRLibraryNotification(KRLibraryEvent_ProcessDetach), 1);
  }
  ~ShutDown() override {
    EXPECT_EQ(KRLibraryNotification(KRLibraryEvent_ProcessAttach), 1);
    delete m_logger;
  }

  KRParseLogger* m_logger;
};

TEST_F(ShutDown, LeavesNoTable) {
  EXPECT_EQ(KRThreadMap, nullptr);
  EXPECT_EQ(KRDetachThread(KRCurrentThreadId()), 0);
  EXPECT_EQ(KRDetachThread(kStranger), 0);
  EXPECT_EQ(KRLibraryNotification(KRLibraryEvent_ThreadDetach), 0);
  EXPECT_EQ(KRThreadMap, nullptr);
}

TEST_F(ShutDown, LeavesTheLoggersAlive) {
  EXPECT_EQ(m_logger->AppendParseException(KRPW_TOOLONG, "x", "y", KRTag_None, nullptr), 1);
  EXPECT_EQ(m_logger->Get(static_cast<u16>(m_logger->Entries() - 1))->m_warning, KRPW_TOOLONG);
}

TEST_F(ShutDown, LeavesAllThreadsUnattached) {
  const auto expectUnattached = [] {
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
    KRSetFireAlarm(KRFireAlarm_None);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
    EXPECT_EQ(KRParseLogger::TheKRParseLogger(), nullptr);
    EXPECT_EQ(KRThreadMap, nullptr);
  };
  expectUnattached();
  OnNewThread(expectUnattached);
}

TEST_F(ShutDown, CanBeRepeated) {
  EXPECT_EQ(KRLibraryNotification(KRLibraryEvent_ProcessDetach), 1);
}

TEST_F(ShutDown, EndsWithTheNextAttachment) {
  std::promise<void> asked;
  std::promise<void> started;
  std::thread worker([&] {
    EXPECT_EQ(KRParseLogger::TheKRParseLogger(), nullptr);
    asked.set_value();
    started.get_future().wait();
    EXPECT_NE(KRParseLogger::TheKRParseLogger(), nullptr);
    EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
  });
  asked.get_future().wait();
  EXPECT_EQ(KRAttachThread(KRCurrentThreadId()), 1);
  started.set_value();
  worker.join();
  EXPECT_EQ(RowsOf(KRCurrentThreadId()), 1);
  EXPECT_EQ(Rows(), 1);
}

// --- Table of threads ----------------------------------------------------------------------------

TEST_F(ShutDown, ASixthThreadGrowsTheTableFromFiveSlotsToTen) {
  for (u32 i = 0; i < 5; ++i) ASSERT_EQ(KRAttachThread(kStranger + i), 1);
  EXPECT_EQ(KRThreadMap->Allocated(), 5);
  EXPECT_EQ(KRThreadMap->Entries(), 5);
  EXPECT_EQ(KRAttachThread(kStranger + 5), 1);
  EXPECT_EQ(KRThreadMap->Allocated(), 10);
  EXPECT_EQ(KRThreadMap->Entries(), 6);
  for (u32 i = 0; i < 6; ++i) EXPECT_EQ(KRDetachThread(kStranger + i), 1);
  EXPECT_EQ(KRThreadMap->Entries(), 0);
}

TEST(KRDynamicArrayKRThreadMapBase, TakesRowsByPointerOnly) {
  KRDynamicArrayKRThreadMapBase rows(5, 5);
  EXPECT_EQ(rows.SetVal(0, KRThreadMapRow(1, nullptr)), 0);
  EXPECT_EQ(rows.Entries(), 0);
  EXPECT_EQ(rows.Append(new KRThreadMapRow(1, nullptr)), 1);
  EXPECT_EQ(rows.Get(0)->threadID, 1U);
  EXPECT_EQ(rows[1].threadID, 0U);
  EXPECT_EQ(rows[1].logger, nullptr);
}

TEST(KRDynamicArrayKRThreadMapBase, LeavesTheLoggersOfItsRowsAlone) {
  KRParseLogger logger;
  KRDynamicArrayKRThreadMapBase rows(5, 5);
  rows.Append(new KRThreadMapRow(1, &logger));
  rows.DeleteAll();
  EXPECT_EQ(rows.Entries(), 0);
  EXPECT_EQ(logger.GetLoggingEnabled(), 1);
}

TEST(KRDynamicArrayKRThreadMapBase, GrowsWithoutAnAlarm) {
  KRDynamicArrayKRThreadMapBase rows(1, 1);
  KRThreadMapRow row(1, nullptr);
  AllocationFailure::FailAt(1);
  EXPECT_EQ(rows.Append(&row), 0);
  AllocationFailure::FailAt(0);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_None);
  EXPECT_EQ(rows.Entries(), 0);
}

}  // namespace
