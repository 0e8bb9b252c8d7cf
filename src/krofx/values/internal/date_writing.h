// Writes dates and times as OFX text, for all classes that hold dates.

#ifndef KROFX_VALUES_INTERNAL_DATE_WRITING_H_
#define KROFX_VALUES_INTERNAL_DATE_WRITING_H_

#include <cstdlib>
#include <cstring>

#include "krofx/core/types.h"
#include "krofx/values/internal/digits.h"

namespace krofx::internal {

/// The fields of a date and time, and the offset of its zone.
struct DateFields {
  u16 year;
  u16 month;
  u16 day;
  u16 hour;
  u16 minute;
  u16 second;
  u16 millisecond;
  s16 gmtOffset;
  s16 gmtOffsetFraction;
};

/// Writes a number with at least two digits.
inline char* WriteTwoDigits(char* to, u16 value) noexcept {
  if (value >= 100) return WriteDigits(to, value, 2);
  std::memcpy(to, kDigitPairs[value], 2);
  return to + 2;
}

/// Writes ".NN" for a fraction of an offset.
inline char* WriteFraction(char* to, s16 fraction) noexcept {
  *to++ = '.';
  return WriteDigits(to, static_cast<u32>(std::abs(int{fraction})), 2);
}

/// Writes an offset with a minus sign for a negative one.
inline char* WriteOffset(char* to, s16 offset) noexcept {
  if (offset < 0) *to++ = '-';
  const auto hours = static_cast<u32>(std::abs(int{offset}));
  if (hours >= 10) return WriteDigits(to, hours, 1);
  *to = static_cast<char>('0' + hours);
  return to + 1;
}

/// Writes HHMMSS.
inline char* WriteClock(char* to, u16 hour, u16 minute, u16 second) noexcept {
  to = WriteTwoDigits(to, hour);
  to = WriteTwoDigits(to, minute);
  return WriteTwoDigits(to, second);
}

/// Writes a date, its time if it has one, and its zone up to the offset.
/// @param hasZone receives whether a zone's bracket is open; the caller then writes the name and
///        "]".
inline char* WriteDateHead(const DateFields& date, char* to, bool& hasZone) noexcept {
  hasZone = date.gmtOffset != 0 || date.gmtOffsetFraction != 0;
  const bool hasMilliseconds = hasZone || date.millisecond != 0;
  const bool hasClock = hasMilliseconds || date.hour != 0 || date.minute != 0 || date.second != 0;
  to = date.year < 10000 ? WriteTwoDigits(WriteTwoDigits(to, static_cast<u16>(date.year / 100)),
                                          static_cast<u16>(date.year % 100))
                         : WriteDigits(to, date.year, 4);
  to = WriteTwoDigits(to, date.month);
  to = WriteTwoDigits(to, date.day);
  if (hasClock) to = WriteClock(to, date.hour, date.minute, date.second);
  if (hasMilliseconds) {
    *to++ = '.';
    if (date.millisecond < 1000) {
      *to++ = static_cast<char>('0' + date.millisecond / 100);
      to = WriteTwoDigits(to, static_cast<u16>(date.millisecond % 100));
    } else {
      to = WriteDigits(to, date.millisecond, 3);
    }
  }
  if (hasZone) {
    *to++ = '[';
    // For a zone less than an hour behind GMT only the fraction has the sign.
    if (date.gmtOffset == 0 && date.gmtOffsetFraction < 0) *to++ = '-';
    to = WriteOffset(to, date.gmtOffset);
    if (date.gmtOffsetFraction != 0) to = WriteFraction(to, date.gmtOffsetFraction);
  }
  return to;
}

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_DATE_WRITING_H_
