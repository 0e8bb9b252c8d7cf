// The table of attached threads: which thread has which logger.

#ifndef KROFX_CORE_THREAD_MAP_H_
#define KROFX_CORE_THREAD_MAP_H_

#include "krofx/core/array.h"
#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/types.h"

class KRParseLogger;

/// A row of the table of threads. The logger belongs to the thread's attachment, not to the row.
struct KROFX_API KRThreadMapRow : public krofx::internal::HeapObject {
  KRThreadMapRow() = default;
  KRThreadMapRow(u32 id, KRParseLogger* itsLogger) : threadID(id), logger(itsLogger) {}

  u32 threadID = 0;                 ///< as KRCurrentThreadId gives it
  KRParseLogger* logger = nullptr;  ///< never null in the table
};

/// The name that older hosts use for a row.
using _threadmap = KRThreadMapRow;  // NOLINT(bugprone-reserved-identifier)

/// An array of owned rows of the table of threads, in the order of attachment. Destroying a row
/// leaves its logger alone. Failed growth raises no alarm, since the alarm is kept in the logger
/// that the row would hold.
class KROFX_API KRDynamicArrayKRThreadMapBase
    : public krofx::internal::ElementArray<KRThreadMapRow> {
 public:
  /// An empty array; 0 becomes 1 in either argument.
  KRDynamicArrayKRThreadMapBase(u16 initialSize, u16 growStep)
      : ElementArray(initialSize, growStep, krofx::internal::GrowthAlarm::kSilent) {}

  /// Not supported: rows are stored by pointer only.
  /// @return 0.
  u16 SetVal(u16 index, KRThreadMapRow row) override;
};

/// The one table of threads; null while there is none. Only KRAttachThread, KRDetachThread and
/// KRLibraryNotification change it, under a lock. It may be read while no thread is being attached
/// or detached.
KROFX_API extern KRDynamicArrayKRThreadMapBase* KRThreadMap;

#endif  // KROFX_CORE_THREAD_MAP_H_
