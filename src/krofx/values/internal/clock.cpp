// The system's clock, and the variable that holds its replacement.

#include "krofx/values/internal/clock.h"

#include <atomic>
#include <ctime>

namespace krofx::internal {

namespace {

class SystemClock final : public Clock {
 public:
  std::int64_t Now() override { return static_cast<std::int64_t>(std::time(nullptr)); }

  s32 LocalZoneOffset() override {
    // One day after the epoch, the local time is after the epoch in every zone.
    const std::time_t day = 86400;
    std::tm parts{};
    if (gmtime_r(&day, &parts) == nullptr) return 0;
    const std::time_t local = std::mktime(&parts);
    return static_cast<s32>(day - local);
  }
};

constinit std::atomic<Clock*> replacement{nullptr};

}  // namespace

Clock::~Clock() = default;

Clock& Clock::Current() noexcept {
  if (Clock* clock = replacement.load(std::memory_order_acquire)) return *clock;
  static SystemClock system;
  return system;
}

Clock* Clock::Replace(Clock* clock) noexcept {
  return replacement.exchange(clock, std::memory_order_acq_rel);
}

}  // namespace krofx::internal
