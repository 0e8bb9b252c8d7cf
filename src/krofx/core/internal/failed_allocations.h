// Whether memory was missing, for those who must say so whatever came of it.
//
// Most of the library goes on without memory where it can, and some of that cannot be told from bad
// input: a date that cannot be converted, for example. What must never take the one for the other
// compares the number of failed allocations before and after.

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
