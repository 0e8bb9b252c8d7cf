// Makes the library's allocations fail for the length of a scope.

#ifndef KROFX_TESTS_SUPPORT_FAILING_ALLOCATION_H_
#define KROFX_TESTS_SUPPORT_FAILING_ALLOCATION_H_

#include <cstddef>

#include "krofx/core/memory.h"
#include "krofx/core/thread.h"

/// The `nth` allocation from here on fails, and with `andAllLater` those after it too. The
/// thread's fire alarm is cleared at the start.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::size_t nth, bool andAllLater = false) {
    KRSetFireAlarm(KRFireAlarm_None);
    krofx::internal::AllocationFailure::FailAt(nth, andAllLater);
  }
  ~FailingAllocation() { krofx::internal::AllocationFailure::FailAt(0); }
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
};

/// Whether the thread's alarm is set.
inline bool AlarmIsSet() { return KRGetFireAlarm() != KRFireAlarm_None; }

#endif  // KROFX_TESTS_SUPPORT_FAILING_ALLOCATION_H_
