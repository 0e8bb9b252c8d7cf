// Dates as plain data in sixteen bytes, for the members of aggregates: a statement has tens of
// thousands of them.

#ifndef KROFX_VALUES_INTERNAL_PLAIN_DATE_H_
#define KROFX_VALUES_INTERNAL_PLAIN_DATE_H_

#include <cstddef>
#include <cstdint>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// The fields of a date and time with its zone. With all fields zero it is not a date.
struct PlainDate {
  /// The length of the longest text of such a date.
  static constexpr std::size_t kTextSize = 40;
  /// The most characters in a zone name.
  static constexpr std::size_t kZoneSize = 3;

  u16 year = 0;
  std::uint8_t month = 0;
  std::uint8_t day = 0;
  std::uint8_t hour = 0;
  std::uint8_t minute = 0;
  std::uint8_t second = 0;
  std::int8_t gmtOffset = 0;          ///< Whole hours by which the zone is ahead of GMT.
  std::int8_t gmtOffsetFraction = 0;  ///< Hundredths of an hour to add to it.
  char zone[kZoneSize] = {};          ///< A shorter name is followed by zeros.
  u16 millisecond = 0;
  u16 extra = 0;  ///< For the code that stores the date.
};
static_assert(sizeof(PlainDate) == 16);

/// Reads a date in one of the common forms: YYYYMMDD, YYYYMMDDHHMMSS or YYYYMMDDHHMMSS.XXX, the
/// latter two also with a zone "[-5:EST]" in whole hours.
/// @return false, with `out` unchanged, for a text of any other form and for one that
///         KRDateTime::Parse would warn about.
KROFX_API bool ReadCommonDate(const char* text, std::size_t length, PlainDate& out) noexcept;

/// Writes the text of a valid date without a terminator, as KRDateTimeBase::GetDateString describes
/// it.
/// @param out room for PlainDate::kTextSize characters.
/// @return the end of the text; null, with nothing written, for a date or time that is not valid.
KROFX_API char* WriteDate(const PlainDate& date, char* out) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_PLAIN_DATE_H_
