// The calendar is that of <chrono>.

#include "krofx/host/dates.h"

#include <cstdlib>

#include "krofx/values/internal/date_writing.h"

namespace krofx {

namespace {

using internal::WriteDigits;
using internal::WriteTwoDigits;

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr int kFirstYear = 1;
constexpr int kLastYear = 9999;
constexpr int kSecondsInHour = 3600;
// Seconds of a hundredth of an hour.
constexpr int kSecondsInFraction = 36;

seconds OffsetOf(const KRDateTimeBase& date) {
  return seconds(date.GetGMTOffset() * kSecondsInHour +
                 date.GetGMTOffsetFraction() * kSecondsInFraction);
}

bool IsWritten(year_month_day day) {
  const int year = static_cast<int>(day.year());
  return day.ok() && year >= kFirstYear && year <= kLastYear;
}

bool HasTime(const KRDateTimeBase& date) {
  return date.GetHour() != 0 || date.GetMinute() != 0 || date.GetSecond() != 0 ||
         date.GetMillisecond() != 0 || OffsetOf(date) != seconds(0);
}

bool HasZone(const KRDateTimeBase& date) {
  return OffsetOf(date) != seconds(0) || date.GetTimeZone().IsEmpty() == 0;
}

// Writes the time, and the offset of the zone if there is one.
char* WriteTime(const KRDateTimeBase& date, char* to) {
  *to++ = 'T';
  to = WriteTwoDigits(to, date.GetHour());
  *to++ = ':';
  to = WriteTwoDigits(to, date.GetMinute());
  *to++ = ':';
  to = WriteTwoDigits(to, date.GetSecond());
  if (date.GetMillisecond() != 0) {
    *to++ = '.';
    to = WriteDigits(to, date.GetMillisecond(), 3);
  }
  if (!HasZone(date)) return to;
  // No offset is halfway between two minutes.
  const auto offset = static_cast<int>(OffsetOf(date).count());
  const auto distance = static_cast<unsigned>(std::abs(offset) + 30) / 60;
  *to++ = offset < 0 ? '-' : '+';
  to = WriteTwoDigits(to, static_cast<u16>(distance / 60));
  *to++ = ':';
  return WriteTwoDigits(to, static_cast<u16>(distance % 60));
}

KRDateTime Make(year_month_day day, milliseconds time) {
  if (!IsWritten(day)) return KRDateTime();
  const std::chrono::hh_mm_ss parts(time);
  return KRDateTime(
      static_cast<s16>(static_cast<int>(day.year())),
      static_cast<s16>(static_cast<unsigned>(day.month())),
      static_cast<s16>(static_cast<unsigned>(day.day())), static_cast<s16>(parts.hours().count()),
      static_cast<s16>(parts.minutes().count()), static_cast<s16>(parts.seconds().count()),
      static_cast<s16>(parts.subseconds().count()), 0, 0);
}

}  // namespace

std::optional<year_month_day> ToDay(const KRDateTimeBase& date) {
  const year_month_day day(std::chrono::year(date.GetYear()), std::chrono::month(date.GetMonth()),
                           std::chrono::day(date.GetDay()));
  if (date.IsValidDate() == 0 || !day.ok()) return std::nullopt;
  return day;
}

std::optional<Instant> ToInstant(const KRDateTimeBase& date) {
  const std::optional<year_month_day> day = ToDay(date);
  if (!day || date.IsValidTime() == 0) return std::nullopt;
  return sys_days(*day) + std::chrono::hours(date.GetHour()) + minutes(date.GetMinute()) +
         seconds(date.GetSecond()) + milliseconds(date.GetMillisecond()) - OffsetOf(date);
}

ValueText ToText(const KRDateTimeBase& date) {
  if (!ToDay(date) || date.IsValidTime() == 0) return ValueText();
  char text[ValueText::kSize];
  char* to = WriteDigits(text, date.GetYear(), 4);
  *to++ = '-';
  to = WriteTwoDigits(to, date.GetMonth());
  *to++ = '-';
  to = WriteTwoDigits(to, date.GetDay());
  if (HasTime(date)) to = WriteTime(date, to);
  return ValueText({text, static_cast<std::size_t>(to - text)});
}

ValueText ToText(const std::optional<year_month_day>& day) {
  return day ? ToText(ToDateTime(*day)) : ValueText();
}

KRDateTime ToDateTime(year_month_day day) { return Make(day, milliseconds(0)); }

KRDateTime ToDateTime(Instant instant) {
  const auto day = std::chrono::floor<std::chrono::days>(instant);
  return Make(year_month_day(day), instant - day);
}

}  // namespace krofx
