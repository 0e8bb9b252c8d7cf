// Conversion between days and dates. Both directions count years from March, so that a leap day is
// the last day of its year, and use cycles of 400 years, after which the calendar repeats.

#include "krofx/values/internal/calendar.h"

namespace krofx::internal {

namespace {

constexpr std::int64_t kDaysPerCycle = 146097;
// From the start of March of year 0 to the start of 1970.
constexpr std::int64_t kDaysToEpoch = 719468;

constexpr std::int64_t FloorDivide(std::int64_t value, std::int64_t by) noexcept {
  return value / by - (value % by < 0 ? 1 : 0);
}

}  // namespace

std::int64_t DaysFromDate(std::int64_t year, std::int64_t month, std::int64_t day) noexcept {
  const std::int64_t fromMarch = month - 3;
  year += FloorDivide(fromMarch, 12);
  const std::int64_t shiftedMonth = fromMarch - FloorDivide(fromMarch, 12) * 12;
  const std::int64_t cycle = FloorDivide(year, 400);
  const std::int64_t yearOfCycle = year - cycle * 400;
  // The five months from March, and the five from August, have 153 days in total.
  const std::int64_t dayOfYear = (153 * shiftedMonth + 2) / 5 + day - 1;
  const std::int64_t leapDays = yearOfCycle / 4 - yearOfCycle / 100;
  return cycle * kDaysPerCycle + yearOfCycle * 365 + leapDays + dayOfYear - kDaysToEpoch;
}

CalendarDate DateFromDays(std::int64_t days) noexcept {
  days += kDaysToEpoch;
  const std::int64_t cycle = FloorDivide(days, kDaysPerCycle);
  const std::int64_t dayOfCycle = days - cycle * kDaysPerCycle;
  const std::int64_t yearOfCycle =
      (dayOfCycle - dayOfCycle / 1460 + dayOfCycle / 36524 - dayOfCycle / 146096) / 365;
  const std::int64_t dayOfYear =
      dayOfCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
  const std::int64_t shiftedMonth = (5 * dayOfYear + 2) / 153;
  const std::int64_t month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
  return {
      .year = yearOfCycle + cycle * 400 + (month <= 2 ? 1 : 0),
      .month = static_cast<u16>(month),
      .day = static_cast<u16>(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1),
  };
}

}  // namespace krofx::internal
