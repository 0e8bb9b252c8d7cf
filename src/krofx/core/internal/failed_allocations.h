// The number of failed allocations, for code that must report that memory was missing.
//
// Where memory is missing the library sometimes goes on as with bad input: a date is not converted,
// for example. A reader that must not confuse the two compares the numbers before and after.

#ifndef KROFX_CORE_INTERNAL_FAILED_ALLOCATIONS_H_
#define KROFX_CORE_INTERNAL_FAILED_ALLOCATIONS_H_

#include <cstddef>

#include "krofx/core/export.h"

namespace krofx::internal {

/// @return how many of the library's allocations have failed on this thread so far.
KROFX_API std::size_t FailedAllocations() noexcept;

/// Watches the thread's allocations from its making on.
class AllocationWatch {
 public:
  AllocationWatch() : m_before(FailedAllocations()) {}

  /// @return whether one has failed.
  bool HasFailed() const { return FailedAllocations() != m_before; }

 private:
  std::size_t m_before;
};

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_FAILED_ALLOCATIONS_H_
