// Reads and writes plain dates.

#include "krofx/values/internal/plain_date.h"

#include <cstring>

#include "krofx/values/internal/calendar.h"
#include "krofx/values/internal/date_writing.h"
#include "krofx/values/internal/digits.h"
#include "krofx/values/internal/named_zones.h"

namespace krofx::internal {

namespace {

constexpr int kMostHours = 12;

// Reads "[-5:EST]" or "[-5]"; a name must fit the offset.
bool ReadCommonZone(const char* zone, std::size_t length, PlainDate& out) noexcept {
  if (length < 3 || *zone != '[') return false;
  const char* at = zone + 1;
  const char* const end = zone + length - 1;
  if (*end != ']') return false;
  const bool negative = *at == '-';
  if (negative || *at == '+') ++at;
  if (!IsDigit(*at)) return false;
  int hours = *at++ - '0';
  if (IsDigit(*at)) hours = hours * 10 + (*at++ - '0');
  if (hours > kMostHours) return false;
  if (negative) hours = -hours;
  out.gmtOffset = static_cast<std::int8_t>(hours);
  if (at == end) return true;

  static_assert(PlainDate::kZoneSize == 3);
  if (*at++ != ':' || end - at != 3) return false;
  if (at[0] == ']' || at[1] == ']' || at[2] == ']') return false;
  std::memcpy(out.zone, at, 3);
  return IsNameOfOffset({at, PlainDate::kZoneSize}, static_cast<s16>(hours));
}

}  // namespace

bool ReadCommonDate(const char* text, std::size_t length, PlainDate& out) noexcept {
  constexpr std::size_t kDateEnd = 8;
  constexpr std::size_t kClockEnd = 14;
  constexpr std::size_t kMillisecondsEnd = 18;
  u16 digits[4];
  if (length < kDateEnd || !ReadDigitPairs(text, digits)) return false;
  PlainDate date;
  date.year = static_cast<u16>(digits[0] * 100 + digits[1]);
  date.month = static_cast<std::uint8_t>(digits[2]);
  date.day = static_cast<std::uint8_t>(digits[3]);
  if (date.day == 0 || date.day > DaysInMonth(date.month, date.year)) return false;
  if (length == kDateEnd) {
    out = date;
    return true;
  }

  // The day again, and the clock.
  if (length < kClockEnd || !ReadDigitPairs(text + kDateEnd - 2, digits)) return false;
  if (digits[1] > 23 || digits[2] > 59 || digits[3] > 59) return false;
  date.hour = static_cast<std::uint8_t>(digits[1]);
  date.minute = static_cast<std::uint8_t>(digits[2]);
  date.second = static_cast<std::uint8_t>(digits[3]);
  std::size_t at = kClockEnd;
  if (length >= kMillisecondsEnd && text[at] == '.') {
    const char* const digit = text + at + 1;
    if (!IsDigit(digit[0]) || !IsDigit(digit[1]) || !IsDigit(digit[2])) return false;
    date.millisecond =
        static_cast<u16>((digit[0] - '0') * 100 + (digit[1] - '0') * 10 + digit[2] - '0');
    at = kMillisecondsEnd;
  }
  if (at != length && !ReadCommonZone(text + at, length - at, date)) return false;
  out = date;
  return true;
}

char* WriteDate(const PlainDate& date, char* out) noexcept {
  // A copy cannot change with what is written, so that the compiler keeps the fields in registers
  // and knows their ranges.
  const PlainDate own = date;
  const bool isDate = own.day != 0 && own.day <= DaysInMonth(own.month, own.year);
  const bool isTime = own.hour <= 23 && own.minute <= 59 && own.second <= 59 &&
                      own.millisecond <= 999 && std::abs(int{own.gmtOffset}) <= kMostHours &&
                      std::abs(int{own.gmtOffsetFraction}) <= 99;
  if (!isDate || !isTime) return nullptr;
  bool hasZone = false;
  char* to = WriteDateHead({own.year, own.month, own.day, own.hour, own.minute, own.second,
                            own.millisecond, own.gmtOffset, own.gmtOffsetFraction},
                           out, hasZone);
  if (!hasZone) return to;
  if (own.zone[0] != '\0') {
    *to++ = ':';
    for (std::size_t i = 0; i < PlainDate::kZoneSize && own.zone[i] != '\0'; ++i) {
      *to++ = own.zone[i];
    }
  }
  *to++ = ']';
  return to;
}

}  // namespace krofx::internal
