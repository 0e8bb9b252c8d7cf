// Dates and times: fields, counts of seconds, arithmetic and the binary form. Their text is in
// date_text.cpp.

#include "krofx/values/date_time.h"

#include <cstdlib>
#include <cstring>
#include <limits>

#include "krofx/values/internal/byte_order.h"
#include "krofx/values/internal/clock.h"
#include "krofx/values/internal/decimal_text.h"

using krofx::internal::CalendarDate;
using krofx::internal::Clock;
using krofx::internal::CommonMonthLength;
using krofx::internal::DateFromDays;
using krofx::internal::DaysBeforeMonth;
using krofx::internal::DaysFromDate;
using krofx::internal::DaysInYear;
using krofx::internal::kPowersOfTen;
using krofx::internal::PackBytes;
using krofx::internal::PackU16;
using krofx::internal::PlainDate;
using krofx::internal::s128;
using krofx::internal::u128;
using krofx::internal::UnpackBytes;
using krofx::internal::UnpackU16;

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kSecondsPerHour = 3600;
constexpr u16 kEpochYear = 1970;
// Four years of the calendar, one of them a leap year.
constexpr u32 kSecondsPerFourYears = 126230400;
// A year of 365.2425 days, in parts of a day.
constexpr u32 kYearLength = 3652425;
constexpr u32 kPartsPerDay = 10000;

s32 ClampToS32(std::int64_t value) noexcept {
  constexpr std::int64_t kLowest = std::numeric_limits<s32>::min();
  constexpr std::int64_t kHighest = std::numeric_limits<s32>::max();
  return static_cast<s32>(value < kLowest ? kLowest : value > kHighest ? kHighest : value);
}

/// Adds `amount` and the carry to a field; a field that reaches `limit` loses it once.
/// @return the carry into the next field.
u32 AddWithCarry(u16& field, u16 amount, u32 carry, u32 limit) noexcept {
  const u32 sum = u32{field} + amount + carry;
  const bool carries = sum >= limit;
  field = static_cast<u16>(carries ? sum - limit : sum);
  return carries ? 1 : 0;
}

}  // namespace

const char* const KRDateTimeBase::m_timeZoneNotInitialized = "***";

KRDateTimeBase::KRDateTimeBase(s16 year, s16 month, s16 day, s16 hour, s16 minute, s16 second,
                               s16 millisecond, s16 offset, s16 fraction) noexcept
    : m_year(static_cast<u16>(year)),
      m_month(static_cast<u16>(month)),
      m_day(static_cast<u16>(day)),
      m_hour(static_cast<u16>(hour)),
      m_minute(static_cast<u16>(minute)),
      m_second(static_cast<u16>(second)),
      m_millisecond(static_cast<u16>(millisecond)),
      m_gmtOffset(offset),
      m_gmtOffsetFraction(fraction) {}

KRDateTime::KRDateTime(const KRPrecisionInteger& seconds) { FromPrecInt(seconds); }

KRDateTime::KRDateTime(s16 year, s16 month, s16 day, s16 hour, s16 minute, s16 second,
                       s16 millisecond, s16 offset, s16 fraction) noexcept
    : KRDateTimeBase(year, month, day, hour, minute, second, millisecond, offset, fraction) {}

KRTime::KRTime(s16 year, s16 month, s16 day, s16 hour, s16 minute, s16 second, s16 millisecond,
               s16 offset, s16 fraction) noexcept
    : KRDateTimeBase(year, month, day, hour, minute, second, millisecond, offset, fraction) {}

u16 KRDateTimeBase::operator=(const char*) { return 0; }

u16 KRDateTimeBase::operator=(s32 seconds) {
  std::int64_t days = seconds / kSecondsPerDay;
  std::int64_t rest = seconds % kSecondsPerDay;
  if (rest < 0) {
    rest += kSecondsPerDay;
    --days;
  }
  const CalendarDate date = DateFromDays(days);
  m_year = static_cast<u16>(date.year);
  m_month = date.month;
  m_day = date.day;
  m_hour = static_cast<u16>(rest / kSecondsPerHour);
  m_minute = static_cast<u16>(rest / 60 % 60);
  m_second = static_cast<u16>(rest % 60);
  m_millisecond = 0;
  m_gmtOffset = 0;
  m_gmtOffsetFraction = 0;
  return 1;
}

u16 KRDateTimeBase::operator=(const KRPrecisionInteger& seconds) { return FromPrecInt(seconds); }

void KRDateTimeBase::InitKRTime() noexcept {
  Invalidate();
  ClearZone();
}

void KRDateTimeBase::Invalidate() noexcept {
  m_year = 0;
  m_month = 0;
  m_day = 0;
  m_hour = 0;
  m_minute = 0;
  m_second = 0;
  m_millisecond = 0;
}

bool KRDateTimeBase::AsPlain(PlainDate& out) const noexcept {
  constexpr u16 kMost = 99;
  const std::size_t zoneLength = m_timeZone.Length();
  const bool fits = m_month <= kMost && m_day <= kMost && m_hour <= kMost && m_minute <= kMost &&
                    m_second <= kMost && std::abs(int{m_gmtOffset}) <= kMost &&
                    std::abs(int{m_gmtOffsetFraction}) <= kMost &&
                    zoneLength <= PlainDate::kZoneSize;
  if (!fits) return false;
  PlainDate plain;
  plain.year = m_year;
  plain.month = static_cast<std::uint8_t>(m_month);
  plain.day = static_cast<std::uint8_t>(m_day);
  plain.hour = static_cast<std::uint8_t>(m_hour);
  plain.minute = static_cast<std::uint8_t>(m_minute);
  plain.second = static_cast<std::uint8_t>(m_second);
  plain.millisecond = m_millisecond;
  plain.gmtOffset = static_cast<std::int8_t>(m_gmtOffset);
  plain.gmtOffsetFraction = static_cast<std::int8_t>(m_gmtOffsetFraction);
  std::memcpy(plain.zone, m_timeZone.Text(), zoneLength);
  out = plain;
  return true;
}

KRDateTime::KRDateTime(const PlainDate& date) noexcept {
  m_year = date.year;
  m_month = date.month;
  m_day = date.day;
  m_hour = date.hour;
  m_minute = date.minute;
  m_second = date.second;
  m_millisecond = date.millisecond;
  m_gmtOffset = date.gmtOffset;
  m_gmtOffsetFraction = date.gmtOffsetFraction;
  std::size_t length = 0;
  while (length < PlainDate::kZoneSize && date.zone[length] != '\0') ++length;
  if (length != 0) m_timeZone.Assign(date.zone, length);
}

void KRDateTimeBase::ClearZone() noexcept {
  m_gmtOffset = 0;
  m_gmtOffsetFraction = 0;
  m_timeZone.Clear();
}

u16 KRDateTimeBase::IsValidTime() {
  return m_hour <= 23 && m_minute <= 59 && m_second <= 59 && m_millisecond <= 999 &&
         m_gmtOffset >= -12 && m_gmtOffset <= 12 && m_gmtOffsetFraction <= 99;
}

u16 KRDateTimeBase::IsValidDate() const { return m_day >= 1 && m_day <= DaysInMonth(); }

u16 KRDateTimeBase::LeapYearsBetween(const KRDateTimeBase&) const { return 0; }

u16 KRDateTimeBase::SetDay(u16 dayOfYear, u16 year) {
  if (dayOfYear < 1 || dayOfYear > DaysInYear(year)) return 0;
  u16 month = 12;
  while (DaysBeforeMonth(month, year) >= dayOfYear) --month;
  m_month = month;
  m_day = static_cast<u16>(dayOfYear - DaysBeforeMonth(month, year));
  return 1;
}

s16 KRDateTimeBase::compareDateTime(const KRDateTimeBase& other) const {
  const std::int64_t left = GMTMilliseconds();
  const std::int64_t right = other.GMTMilliseconds();
  return left == right ? s16{0} : left > right ? s16{1} : s16{-1};
}

s32 KRDateTimeBase::GetTimeT() const {
  if (m_year < 1902) return std::numeric_limits<s32>::min();
  const std::int64_t days = DaysFromDate(m_year, m_month, m_day);
  const std::int64_t hours = days * 24 + m_hour - m_gmtOffset;
  const std::int64_t minutes = hours * 60 + m_minute;
  return ClampToS32(minutes * 60 + m_second - std::int64_t{m_gmtOffsetFraction} * 36);
}

s32 KRDateTimeBase::LocalTimeZoneOffset() const { return Clock::Current().LocalZoneOffset(); }

void KRDateTimeBase::ConvertToGMT() { KRDateTimeBase::operator=(GetTimeT()); }

void KRDateTimeBase::ConvertToLocalTime(s16 offset, s16 fraction) {
  const std::int64_t ahead = (fraction + std::int64_t{offset} * 100) * 36;
  KRDateTimeBase::operator=(ClampToS32(GetTimeT() + ahead));
  m_gmtOffset = offset;
  m_gmtOffsetFraction = fraction;
}

std::int64_t KRDateTimeBase::GMTMilliseconds() const noexcept {
  const bool beforeEpoch = m_year < kEpochYear;
  const std::int64_t dayOfYear = std::int64_t{m_day} + DaysBeforeMonth(m_month, m_year);
  std::int64_t hours = 0;
  std::int64_t minutes = 0;
  std::int64_t seconds = 0;
  std::int64_t milliseconds = 0;
  std::int64_t years = 0;
  // How far the zone shifts the count, in the direction of counting.
  const std::int64_t direction = beforeEpoch ? -1 : 1;
  if (!beforeEpoch) {
    years = m_year - kEpochYear;
    hours = (dayOfYear - 1) * 24 + m_hour;
    minutes = m_minute;
    seconds = m_second;
    milliseconds = m_millisecond;
  } else {
    // Counts backwards from the start of 1970. Seconds and milliseconds both count a full unit,
    // which makes each of these counts one second lower than the calendar's.
    years = kEpochYear - 1 - m_year;
    hours = (DaysInYear(m_year) - dayOfYear) * 24 + (23 - m_hour);
    minutes = 59 - m_minute;
    seconds = 60 - m_second;
    milliseconds = 1000 - m_millisecond;
  }
  hours += years * kYearLength / kPartsPerDay * 24 - direction * m_gmtOffset;
  const std::int64_t count = ((hours * 60 + minutes) * 60 + seconds) * 1000 + milliseconds -
                             direction * m_gmtOffsetFraction * 36000;
  return direction * count;
}

KRPrecisionInteger KRDateTimeBase::GetGMT() const {
  return KRPrecisionInteger::FromInt64(GMTMilliseconds(), 3);
}

KRPrecisionInteger KRDateTimeBase::SecondsBetween(const KRDateTimeBase& other) const {
  return KRPrecisionInteger::FromInt64(GMTMilliseconds() - other.GMTMilliseconds(), 3);
}

KRDateTimeBase KRDateTimeBase::TimeBetween(const KRDateTimeBase&) const { return *this; }

u16 KRDateTimeBase::FromPrecInt(const KRPrecisionInteger& seconds) {
  const u16 decimals = seconds.Decimal();
  if (decimals > KRPrecisionInteger::kMaxDecimals) {
    InitKRTime();
    return 0;
  }
  // With 29 decimals four years are just under 2^124 units, so nothing here overflows.
  const u128 unit = kPowersOfTen[decimals];
  const u128 fourYears = unit * kSecondsPerFourYears;
  u128 count = (u128{seconds.GetMSBytes()} << 64) | (std::uint64_t{seconds.GetSSBytes()} << 32) |
               seconds.GetLSBytes();
  u128 blocks = 0;
  if (seconds.IsNegative() != 0) {
    blocks = (count + fourYears - 1) / fourYears;
    count = blocks * fourYears - count;
  }

  const u128 days = count / (unit * kSecondsPerDay);
  const u128 partOfDay = count % (unit * kSecondsPerDay);
  const u128 years = days * kPartsPerDay / kYearLength;
  const u128 dayOfYear = (days * kPartsPerDay - years * kYearLength) / kPartsPerDay + 1;
  const s128 year = static_cast<s128>(years) + kEpochYear - 4 * static_cast<s128>(blocks);

  const bool yearFits = year >= 0 && year <= std::numeric_limits<u16>::max();
  if (!yearFits || SetDay(static_cast<u16>(dayOfYear), static_cast<u16>(year)) == 0) {
    InitKRTime();
    return 0;
  }
  const u32 secondOfDay = static_cast<u32>(partOfDay / unit);
  m_year = static_cast<u16>(year);
  m_hour = static_cast<u16>(secondOfDay / 3600);
  m_minute = static_cast<u16>(secondOfDay / 60 % 60);
  m_second = static_cast<u16>(secondOfDay % 60);
  m_millisecond = static_cast<u16>(partOfDay % unit * 1000 / unit);
  return 1;
}

u16 KRDateTimeBase::operator+=(s32 seconds) {
  KRDateTimeBase::operator=(ClampToS32(std::int64_t{GetTimeT()} + seconds));
  ClearZone();
  return 1;
}

u16 KRDateTimeBase::operator+=(const KRPrecisionInteger& seconds) {
  KRPrecisionInteger sum = GetGMT();
  sum += seconds;
  const u16 result = FromPrecInt(sum);
  ClearZone();
  return result;
}

u16 KRDateTimeBase::operator+=(const KRDateTimeBase& other) {
  // A copy, since an object may be added to itself.
  const KRDateTimeBase amount(other);
  u32 carry = AddWithCarry(m_millisecond, amount.m_millisecond, 0, 1000);
  carry = AddWithCarry(m_second, amount.m_second, carry, 60);
  carry = AddWithCarry(m_minute, amount.m_minute, carry, 60);
  carry = AddWithCarry(m_hour, amount.m_hour, carry, 24);

  const u32 day = u32{m_day} + amount.m_day + carry;
  if (day > CommonMonthLength(m_month)) {
    ++m_month;
    m_day = static_cast<u16>(day - CommonMonthLength(m_month));
  } else {
    m_day = static_cast<u16>(day);
  }
  const u32 month = u32{m_month} + amount.m_month;
  carry = month > 12 ? 1 : 0;
  m_month = static_cast<u16>(month - 12 * carry);

  const u32 year = u32{m_year} + amount.m_year + carry;
  if (year > 9999) return 0;
  m_year = static_cast<u16>(year);
  return 1;
}

void* KRDateTimeBase::LockBuffer() { return m_binary.Ensure(kBinaryBlockSize); }

void KRDateTimeBase::UnLockBuffer() { m_binary.Release(); }

namespace {

constexpr std::size_t kBinaryZoneSize = 5;
constexpr u16 kVersionWithFraction = 4;
constexpr u16 kVersionWithoutFraction = 3;
constexpr u16 kOldestVersion = 2;

}  // namespace

void KRDateTimeBase::ExportBinary(void* target, u16* length) const {
  u16 written = 0;
  if (target != nullptr) {
    char* const block = static_cast<char*>(target);
    const bool hasFraction = m_gmtOffsetFraction != 0;
    PackU16(block, hasFraction ? kVersionWithFraction : kVersionWithoutFraction);
    PackU16(block + 2, m_year);
    const u16 bytes[] = {m_month, m_day, m_hour, m_minute, m_second};
    char* to = block + 4;
    for (const u16 value : bytes) PackBytes(to++, value, 1);
    PackU16(to, m_millisecond);
    PackU16(to + 2, static_cast<u16>(m_gmtOffset));
    to += 4;
    if (hasFraction) {
      PackU16(to, static_cast<u16>(m_gmtOffsetFraction));
      to += 2;
    }
    std::memset(to, 0, kBinaryZoneSize);
    std::strncpy(to, m_timeZone.IsEmpty() ? m_timeZoneNotInitialized : m_timeZone.Text(),
                 kBinaryZoneSize - 1);
    to += kBinaryZoneSize;
    written = static_cast<u16>(to - block + 1);
  }
  if (length != nullptr) *length = written;
}

void KRDateTimeBase::ImportBinary(const void* source) {
  if (source == nullptr) return;
  const char* const block = static_cast<const char*>(source);
  const u16 version = UnpackU16(block);
  if (version < kOldestVersion || version > kVersionWithFraction) return;
  m_year = UnpackU16(block + 2);
  const char* from = block + 4;
  for (u16* const field : {&m_month, &m_day, &m_hour, &m_minute, &m_second}) {
    *field = static_cast<u16>(UnpackBytes(from++, 1));
  }
  m_millisecond = UnpackU16(from);
  m_gmtOffset = static_cast<s16>(UnpackU16(from + 2));
  from += 4;
  m_gmtOffsetFraction = 0;
  if (version == kVersionWithFraction) {
    m_gmtOffsetFraction = static_cast<s16>(UnpackU16(from));
    from += 2;
  }
  const std::size_t zoneLength = strnlen(from, kBinaryZoneSize - 1);
  if (std::strncmp(from, m_timeZoneNotInitialized, kBinaryZoneSize - 1) == 0) {
    m_timeZone.Clear();
  } else {
    m_timeZone.Assign(from, zoneLength);
  }
}
