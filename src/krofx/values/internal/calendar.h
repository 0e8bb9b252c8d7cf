// The Gregorian calendar, in integer arithmetic: lengths of months and years, and the conversion
// between dates and days since 1970. It calls no platform function, so it does not depend on the
// machine's zone.

#ifndef KROFX_VALUES_INTERNAL_CALENDAR_H_
#define KROFX_VALUES_INTERNAL_CALENDAR_H_

#include <cstdint>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// Days of each month in a common year, from January.
inline constexpr u16 kDaysInMonth[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

/// Days before each month, in a common year and in a leap year.
inline constexpr u16 kDaysBeforeMonth[2][12] = {
    {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334},
    {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335},
};

/// @return whether `year` has 366 days.
constexpr bool IsLeapYear(u16 year) noexcept {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

/// @return days in `year`.
constexpr u16 DaysInYear(u16 year) noexcept { return IsLeapYear(year) ? 366 : 365; }

/// @return days of `month` (1 to 12) in `year`; 0 for any other month.
constexpr u16 DaysInMonth(u16 month, u16 year) noexcept {
  if (month < 1 || month > 12) return 0;
  return static_cast<u16>(kDaysInMonth[month - 1] + (month == 2 && IsLeapYear(year) ? 1 : 0));
}

/// @return days of `year` before `month`; 0 for a month that is not 1 to 12.
constexpr u16 DaysBeforeMonth(u16 month, u16 year) noexcept {
  if (month < 1 || month > 12) return 0;
  return kDaysBeforeMonth[IsLeapYear(year) ? 1 : 0][month - 1];
}

/// @return length of `month` in a common year, where months continue past December and before
///         January: 0 is December and 13 is January.
constexpr u16 CommonMonthLength(u16 month) noexcept { return kDaysInMonth[(month + 11U) % 12]; }

/// @return days from the start of 1970 to a date, by the calendar. A month or day beyond its range
///         carries into the neighbouring years or months, as in the platform's time functions.
KROFX_API std::int64_t DaysFromDate(std::int64_t year, std::int64_t month,
                                    std::int64_t day) noexcept;

/// A date of the calendar.
struct CalendarDate {
  std::int64_t year;
  u16 month;  ///< 1 to 12
  u16 day;    ///< 1 to 31
};

/// @return the date `days` after the start of 1970.
KROFX_API CalendarDate DateFromDays(std::int64_t days) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_CALENDAR_H_
