// Attachment of threads and the fire alarm.
//
// The table of threads has the state of all threads, under one lock. Each thread caches its own
// row, so that finding its logger takes no lock and no search. A cache is current while its
// generation equals the table's, which rises whenever a thread changes the row of another thread.
//
// A thread that has never been attached counts as attached: its alarm is in its cache, and it gets
// its row and its logger when it first asks for the logger or for its id. So raising the alarm
// takes no memory on any thread.

#include "krofx/core/thread.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <mutex>

#include "krofx/core/parse_logger.h"
#include "krofx/core/thread_map.h"

constinit KRDynamicArrayKRThreadMapBase* KRThreadMap = nullptr;

u16 KRDynamicArrayKRThreadMapBase::SetVal(u16, KRThreadMapRow) { return 0; }

namespace krofx::internal {

// Access to the alarm in a logger.
struct ThreadAccess {
  static KRFireAlarm& FireAlarm(KRParseLogger& logger) { return logger.m_fireAlarm; }
};

}  // namespace krofx::internal

namespace {

using krofx::internal::ThreadAccess;

constexpr u16 kTableSize = 5;
constexpr u16 kTableGrowStep = 5;
constexpr u16 kNoRow = 0xffff;

constinit std::mutex tableMutex;
// Set by the process detach; after it no thread attaches itself.
constinit bool isShutDown = false;
constinit std::atomic<std::uint64_t> tableGeneration = 1;

struct ThreadCache {
  std::uint64_t generation = 0;  // of the table when `logger` was read from it
  KRParseLogger* logger = nullptr;
  u32 threadId = 0;
  // The alarm of a thread that has never been attached.
  KRFireAlarm alarm = KRFireAlarm_None;
  // The thread has had a row, or was detached explicitly; it does not attach itself again.
  bool isMet = false;
};

// Read for each warning and each value that is parsed, so it must be accessible without a call.
[[gnu::tls_model("initial-exec")]] constinit thread_local ThreadCache cache;

// Runs a function at the end of each thread that armed it. It uses the system's thread keys and not
// a thread_local destructor: the keys' functions run after all such destructors, so that the host's
// thread_local objects can still use the library in theirs.
class ThreadEndHook {
 public:
  constexpr ThreadEndHook() = default;
  ~ThreadEndHook() {
    const std::lock_guard lock(tableMutex);
    if (m_state == kMade) pthread_key_delete(m_key);
    m_state = kGone;
  }

  // Makes `function` run at the calling thread's end. Called with the table's lock held.
  void Arm(void (*function)(void*)) {
    if (m_state == kNotMade && pthread_key_create(&m_key, function) == 0) m_state = kMade;
    // The function is called for any value except null.
    if (m_state == kMade) pthread_setspecific(m_key, this);
  }

 private:
  enum State { kNotMade, kMade, kGone };
  State m_state = kNotMade;
  pthread_key_t m_key = 0;
};

constinit ThreadEndHook threadEnd;

void RefreshCache(bool mayAttach);

u32 ThreadId() {
  if (cache.threadId == 0) cache.threadId = static_cast<u32>(gettid());
  return cache.threadId;
}

bool CacheIsCurrent() {
  return cache.generation == tableGeneration.load(std::memory_order_acquire);
}

void EndThread(void*) {
  if (!CacheIsCurrent()) RefreshCache(false);
  const bool wasAttached = cache.logger != nullptr;
  KRLibraryNotification(KRLibraryEvent_ThreadDetach);
  // Code that still runs on this thread may attach it once more, which arms the hook again.
  if (wasAttached) cache = {};
}

// --- With the table's lock held ------------------------------------------------------------------

u16 FindRow(u32 threadId) {
  const u16 rows = KRThreadMap == nullptr ? u16{0} : KRThreadMap->Entries();
  for (u16 i = 0; i < rows; ++i) {
    if (KRThreadMap->Get(i)->threadID == threadId) return i;
  }
  return kNoRow;
}

bool MakeTable() {
  if (KRThreadMap == nullptr) {
    KRThreadMap = new (std::nothrow) KRDynamicArrayKRThreadMapBase(kTableSize, kTableGrowStep);
  }
  return KRThreadMap != nullptr;
}

// Returns a thread's logger in the table, adding it if necessary; null when memory is exhausted.
KRParseLogger* AddRow(u32 threadId) {
  if (!MakeTable()) return nullptr;
  const u16 index = FindRow(threadId);
  if (index != kNoRow) return KRThreadMap->Get(index)->logger;

  KRParseLogger* logger = new (std::nothrow) KRParseLogger;
  if (logger == nullptr) return nullptr;
  KRThreadMapRow* row = new (std::nothrow) KRThreadMapRow(threadId, logger);
  if (row != nullptr && KRThreadMap->Append(row) != 0) return logger;
  delete row;
  delete logger;
  return nullptr;
}

// Removes a thread's row. Returns its logger, for the caller to delete without the lock; null when
// there was no row.
KRParseLogger* RemoveRow(u32 threadId) {
  const u16 index = FindRow(threadId);
  if (index == kNoRow) return nullptr;
  KRThreadMapRow* row = KRThreadMap->Get(index);
  KRParseLogger* logger = row->logger;
  KRThreadMap->UnSet(index);
  delete row;
  return logger;
}

void OutdateCaches() { tableGeneration.fetch_add(1, std::memory_order_release); }

// Stores the calling thread's row in its cache; null means not attached.
void FillCache(KRParseLogger* logger) {
  if (logger != nullptr) {
    if (cache.alarm != KRFireAlarm_None) ThreadAccess::FireAlarm(*logger) = cache.alarm;
    cache.alarm = KRFireAlarm_None;
    threadEnd.Arm(EndThread);
  }
  cache.logger = logger;
  cache.generation = tableGeneration.load(std::memory_order_relaxed);
}

u16 Attach(u32 threadId) {
  const bool isKnown = FindRow(threadId) != kNoRow;
  KRParseLogger* logger = AddRow(threadId);
  if (logger == nullptr) return 0;
  const bool isOwn = threadId == ThreadId();
  if (isShutDown || (!isOwn && !isKnown)) OutdateCaches();
  isShutDown = false;
  if (isOwn) {
    cache.isMet = true;
    FillCache(logger);
  }
  return 1;
}

// --- Without it ----------------------------------------------------------------------------------

// Makes the cache current, if the thread has or had a row in the table. A thread that never had one
// is attached now if `mayAttach` allows it and there is enough memory.
void RefreshCache(bool mayAttach) {
  const std::lock_guard lock(tableMutex);
  const u16 index = FindRow(ThreadId());
  if (index != kNoRow) {
    cache.isMet = true;
    FillCache(KRThreadMap->Get(index)->logger);
  } else if (cache.isMet || isShutDown) {
    FillCache(nullptr);
  } else if (mayAttach) {
    Attach(ThreadId());
  }
}

[[maybe_unused]] const u16 isLoadingThreadAttached =
    KRLibraryNotification(KRLibraryEvent_ProcessAttach);

}  // namespace

u32 KRCurrentThreadId() {
  if (!CacheIsCurrent()) RefreshCache(true);
  return ThreadId();
}

u16 KRAttachThread(u32 threadId) {
  const std::lock_guard lock(tableMutex);
  return Attach(threadId);
}

u16 KRDetachThread(u32 threadId) {
  KRParseLogger* logger = nullptr;
  {
    const std::lock_guard lock(tableMutex);
    if (KRThreadMap == nullptr) return 0;
    logger = RemoveRow(threadId);
    if (threadId == ThreadId()) {
      cache.isMet = true;
      cache.alarm = KRFireAlarm_None;
      FillCache(nullptr);
    } else if (logger != nullptr) {
      OutdateCaches();
    }
  }
  delete logger;
  return 1;
}

void KRSetFireAlarm(KRFireAlarm alarm) {
  if (!CacheIsCurrent()) RefreshCache(false);
  if (!CacheIsCurrent()) {
    cache.alarm = alarm;
  } else if (cache.logger != nullptr) {
    ThreadAccess::FireAlarm(*cache.logger) = alarm;
  }
}

KRFireAlarm KRGetFireAlarm() {
  if (!CacheIsCurrent()) RefreshCache(false);
  if (!CacheIsCurrent()) return cache.alarm;
  return cache.logger == nullptr ? KRFireAlarm_MemoryExhausted
                                 : ThreadAccess::FireAlarm(*cache.logger);
}

KRParseLogger* KRParseLogger::TheKRParseLogger() {
  if (CacheIsCurrent()) return cache.logger;
  RefreshCache(true);
  return CacheIsCurrent() ? cache.logger : nullptr;
}

u16 KRLibraryNotification(u32 event) {
  switch (event) {
    case KRLibraryEvent_ProcessAttach:
    case KRLibraryEvent_ThreadAttach:
      return KRAttachThread(ThreadId());
    case KRLibraryEvent_ThreadDetach:
      return KRDetachThread(ThreadId());
    case KRLibraryEvent_ProcessDetach: {
      const std::lock_guard lock(tableMutex);
      delete KRThreadMap;
      KRThreadMap = nullptr;
      isShutDown = true;
      OutdateCaches();
      return 1;
    }
    default:
      return 0;
  }
}
