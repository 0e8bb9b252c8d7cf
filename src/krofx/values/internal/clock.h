// The interface to the platform's clock and time zone.
//
// All code in the library that needs the current time or the machine's zone gets it here. A host or
// a test can install a clock of its own.

#ifndef KROFX_VALUES_INTERNAL_CLOCK_H_
#define KROFX_VALUES_INTERNAL_CLOCK_H_

#include <cstdint>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// A source of the current time and the machine's zone. Implementations may be called from any
/// thread.
class KROFX_API Clock {
 public:
  Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;
  virtual ~Clock();

  /// @return the seconds since the start of 1970 in GMT.
  virtual std::int64_t Now() = 0;

  /// @return seconds by which the machine's zone is ahead of GMT, negative west of Greenwich.
  ///         Daylight time is not considered.
  virtual s32 LocalZoneOffset() = 0;

  /// @return the clock in use: the system's, unless another one was installed.
  static Clock& Current() noexcept;

  /// Installs a clock for the whole process; null restores the system's. The clock belongs to the
  /// caller and must live until it is replaced. Must not be called while other threads are inside
  /// the library.
  /// @return the clock that was installed before, or null.
  static Clock* Replace(Clock* clock) noexcept;
};

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_CLOCK_H_
