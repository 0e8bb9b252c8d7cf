// The seam to the platform's clock and time zone.
//
// Everything in the library that asks what time it is, or where the machine is, asks here. A
// host or a test can put a clock of its own in place.

#ifndef KROFX_VALUES_INTERNAL_CLOCK_H_
#define KROFX_VALUES_INTERNAL_CLOCK_H_

#include <cstdint>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// What the library wants to know about time. Implementations may be called from any thread.
class KROFX_API Clock {
 public:
  Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;
  virtual ~Clock();

  /// Seconds since the start of 1970 in GMT.
  virtual std::int64_t Now() = 0;

  /// Seconds by which the machine's zone is ahead of GMT, negative west of Greenwich. Daylight time
  /// is not considered.
  virtual s32 LocalZoneOffset() = 0;

  /// The clock in use: the system's, unless another one was put in place.
  static Clock& Current() noexcept;

  /// Puts a clock in place for the whole process; null puts the system's back. The clock stays the
  /// caller's and must live until it is replaced. Not to be called while other threads are inside
  /// the library.
  /// @return the replacement that was in place, or null.
  static Clock* Replace(Clock* clock) noexcept;
};

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_CLOCK_H_
