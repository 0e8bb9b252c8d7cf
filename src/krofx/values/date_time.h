// Dates and times as separate fields with an optional zone: their OFX text, comparison and
// arithmetic.
//
// The text form is YYYYMMDD or YYYYMMDDHHMMSS.XXX[gmt:tz], such as
// 19991231120000.000[-5:EST]: local time, then the zone's distance from GMT in hours with an
// optional fraction, then its name.
//
// There are two counts of seconds. GetTimeT is the true calendar count from 1970 in 32 bits. GetGMT
// takes a year as 365.2425 days; it covers every year, includes milliseconds, and is for comparing
// and subtracting dates, but it is not a calendar count and differs from GetTimeT.

#ifndef KROFX_VALUES_DATE_TIME_H_
#define KROFX_VALUES_DATE_TIME_H_

#include <cstddef>
#include <cstdint>

#include "krofx/core/export.h"
#include "krofx/core/fixed_strings.h"
#include "krofx/core/lifetime.h"
#include "krofx/core/memory.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/values/internal/calendar.h"
#include "krofx/values/internal/lazy_block.h"
#include "krofx/values/internal/plain_date.h"
#include "krofx/values/internal/zone_name.h"
#include "krofx/values/precision_integer.h"

/// The fields of a date and time with its zone, and the operations that dates and times share. A
/// value type: copies are independent. Text errors are logged as warnings and give 0; nothing
/// throws.
class KROFX_API KRDateTimeBase : public krofx::internal::HeapObject {
 public:
  /// What the binary form holds in place of an empty zone name: "***".
  static const char* const m_timeZoneNotInitialized;
  /// Size of the block that LockBuffer gives, in bytes.
  static constexpr u16 kBinaryBlockSize = 32;

  /// All fields zero, no zone. It is not a valid date, because its month is 0.
  KRDateTimeBase() noexcept = default;
  /// Copies all fields; the binary block is not copied.
  KRDateTimeBase(const KRDateTimeBase&) noexcept = default;
  virtual ~KRDateTimeBase() = default;

  /// Parses, in the derived classes. Here it does nothing.
  /// @return 0.
  virtual u16 operator=(const char* text);

  /// Writes the time alone: HHMMSS, the milliseconds without padding when there are any (5
  /// milliseconds are ".5"), then the zone in brackets when the offset is not 0. With offset 0 a
  /// zone name is written as ":NAME" without brackets, and the fraction of the offset is not
  /// written.
  /// @return 1, or 0 when IsValidTime fails or memory is exhausted, and then `out` is unchanged.
  virtual u16 GetTimeString(KRString& out);
  /// @return 1 when hour is at most 23, minute and second at most 59, millisecond at most 999, the
  ///         offset from -12 to 12 and its fraction at most 99.
  virtual u16 IsValidTime();
  /// Writes the OFX text: the date, the time when it or the zone's offset is not zero, milliseconds
  /// when they or the offset are not zero, and the zone when its offset is not zero. A zone name
  /// with offset 0 is lost.
  /// @return 1, or 0 when IsValidDate or IsValidTime fails or memory is exhausted, and then `out`
  ///         is unchanged.
  virtual u16 GetDateString(KRString& out);
  /// @return 1 when the month is from 1 to 12 and the day is in that month in that year. Any year
  ///         is valid.
  virtual u16 IsValidDate() const;

  /// The same for a const object; reaches the override of a derived class.
  u16 GetTimeString(KRString& out) const {
    return const_cast<KRDateTimeBase*>(this)->GetTimeString(out);
  }
  /// The same for a const object; reaches the override of a derived class.
  u16 IsValidTime() const { return const_cast<KRDateTimeBase*>(this)->IsValidTime(); }
  /// The same for a const object; reaches the override of a derived class.
  u16 GetDateString(KRString& out) const {
    return const_cast<KRDateTimeBase*>(this)->GetDateString(out);
  }

  /// Gives the fields as plain data.
  /// @return false, with `out` unchanged, when a field has a value that no valid date has, or the
  ///         zone's name has more than 3 characters.
  bool AsPlain(krofx::internal::PlainDate& out) const noexcept;

  /// Copies all fields. The binary blocks of both objects stay as they are.
  KRDateTimeBase& operator=(const KRDateTimeBase&) noexcept = default;
  /// Sets the date from seconds since 1970 in GMT. Millisecond and offset become 0; the zone name
  /// stays.
  /// @return 1.
  u16 operator=(s32 seconds);
  /// Sets the date from a count of GetGMT, by FromPrecInt.
  /// @return as FromPrecInt.
  u16 operator=(const KRPrecisionInteger& seconds);

  /// All fields zero, no zone.
  void InitKRTime() noexcept;
  /// All fields zero, no zone.
  void InitKRDateTime() noexcept { InitKRTime(); }
  /// Sets the fields from year to millisecond to zero; offset and zone name stay.
  void Invalidate() noexcept;

  /// @return full year.
  u16 GetYear() const { return m_year; }
  /// @return 1 to 12.
  u16 GetMonth() const { return m_month; }
  /// @return 1 to 31.
  u16 GetDay() const { return m_day; }
  /// @return 0 to 23.
  u16 GetHour() const { return m_hour; }
  /// @return 0 to 59.
  u16 GetMinute() const { return m_minute; }
  /// @return 0 to 59.
  u16 GetSecond() const { return m_second; }
  /// @return 0 to 999.
  u16 GetMillisecond() const { return m_millisecond; }
  /// @return whole hours by which the zone is ahead of GMT, -12 to 12.
  s16 GetGMTOffset() const { return m_gmtOffset; }
  /// @return hundredths of an hour to add to the offset. They have the sign of the offset, which
  ///         only they show when the whole hours are 0.
  s16 GetGMTOffsetFraction() const { return m_gmtOffsetFraction; }
  /// @return the zone name; empty when there is none. The string belongs to this object and changes
  ///         with it.
  const KRString3& GetTimeZone() const KROFX_LIFETIME_BOUND { return m_timeZone.AsString(); }

  /// @return 1 when `year` is divisible by 4, and not by 100 unless by 400.
  u16 IsLeapYear(u16 year) const { return krofx::internal::IsLeapYear(year); }
  /// @return the days of this date's month; 0 when the month is not valid.
  u16 DaysInMonth() const { return DaysInMonth(m_month, m_year); }
  /// @return the days of `month` (1 to 12) in `year`; 0 for any other month.
  u16 DaysInMonth(u16 month, u16 year) const { return krofx::internal::DaysInMonth(month, year); }
  /// Not supported.
  /// @return 0 always.
  u16 LeapYearsBetween(const KRDateTimeBase& other) const;

  /// Sets month and day from the number of a day in `year`, counted from 1. The year of this date
  /// stays as it was.
  /// @return 1, or 0 when the year has no such day, and then nothing changes.
  u16 SetDay(u16 dayOfYear, u16 year);
  /// Sets the zone. For whole offsets from -8 to -4 a name that is neither the standard nor the
  /// daylight name known for the offset is logged as KRPW_BADFORMAT, but is stored.
  ///
  /// @param name the zone name, up to 3 characters in OFX; a longer one is stored whole. Null means
  ///        no name.
  /// @param offset whole hours ahead of GMT.
  /// @param fraction hundredths of an hour, of the same sign.
  /// @return 1 always.
  u16 SetTimeZone(const char* name, s16 offset, s16 fraction);

  /// Compares instants by GetGMT, which takes the zones into account.
  /// @return 0 when the instants are equal, 1 when this one is later, -1 when it is earlier.
  s16 compareDateTime(const KRDateTimeBase& other) const;
  /// @return 1 for the same instant.
  u16 operator==(const KRDateTimeBase& other) const { return compareDateTime(other) == 0; }
  /// @return 1 for different instants.
  u16 operator!=(const KRDateTimeBase& other) const { return compareDateTime(other) != 0; }
  /// @return 1 when this is later.
  u16 operator>(const KRDateTimeBase& other) const { return compareDateTime(other) > 0; }
  /// @return 1 when this is earlier.
  u16 operator<(const KRDateTimeBase& other) const { return compareDateTime(other) < 0; }
  /// @return 1 when this is not earlier.
  u16 operator>=(const KRDateTimeBase& other) const { return compareDateTime(other) >= 0; }
  /// @return 1 when this is not later.
  u16 operator<=(const KRDateTimeBase& other) const { return compareDateTime(other) <= 0; }

  /// @return seconds from 1970 in GMT, by the true calendar, whatever the machine's zone is. A year
  ///         below 1902 gives the lowest value, and an instant that does not fit 32 bits the
  ///         highest.
  s32 GetTimeT() const;
  /// @return seconds by which the machine's zone is ahead of GMT: the correction for a platform's
  ///         count of local time.
  s32 LocalTimeZoneOffset() const;
  /// Converts the fields to the same instant in GMT, by GetTimeT: milliseconds are lost, the zone
  /// name stays.
  void ConvertToGMT();
  /// Converts the fields to the same instant in a zone `offset` hours and `fraction` hundredths of
  /// an hour ahead of GMT, by GetTimeT: milliseconds are lost, the zone name stays.
  void ConvertToLocalTime(s16 offset, s16 fraction);

  /// @return seconds from 1970 in GMT with 3 decimals, with a year of 365.2425 days. Before 1970
  ///         the count is one second lower than it should be, so a difference across the start of
  ///         1970 is one second too large.
  KRPrecisionInteger GetGMT() const;
  /// Sets year to millisecond from a count as GetGMT makes it, with any decimals; the zone stays. A
  /// year of 365.2425 days does not end at midnight, and the two directions truncate parts of days
  /// at different points. So a date can come back as the day before, and some counts give a day 366
  /// that the year does not have.
  /// @return 1; 0 when there is no such day or year or the number is not valid, and then all fields
  ///         and the zone are cleared.
  u16 FromPrecInt(const KRPrecisionInteger& seconds);
  /// @return the seconds from `other` to this, with 3 decimals: the difference of the two GetGMT.
  KRPrecisionInteger SecondsBetween(const KRDateTimeBase& other) const;
  /// @return a copy of this date; `other` is not used.
  KRDateTimeBase TimeBetween(const KRDateTimeBase& other) const;

  /// Adds seconds by the calendar (GetTimeT). The result is in GMT with no zone and no
  /// milliseconds.
  /// @return 1.
  u16 operator+=(s32 seconds);
  /// Adds seconds by GetGMT and FromPrecInt. The result is in GMT with no zone.
  /// @return as FromPrecInt.
  u16 operator+=(const KRPrecisionInteger& seconds);
  /// Adds field by field, from the milliseconds up, with at most one carry from each field. Days
  /// carry when they pass the length of the month in a common year, and are then reduced by the
  /// length of the month that they carry into.
  /// @return 1; 0 when the year would pass 9999, and then the year is unchanged but the other
  ///         fields are added.
  u16 operator+=(const KRDateTimeBase& other);

  /// Reads a time HHMMSS.XXX[gmt:tz]. HH, HHMM and an empty text (midnight) are accepted too. All
  /// fields are cleared first. Up to 5 digits of milliseconds are read, and fewer than 3 are scaled
  /// up: .5 is 500.
  ///
  /// Logs KRPW_NULLPOINTER for null, KRPW_BADFORMAT for a text of another shape and KRPW_OUTOFRANGE
  /// when IsValidTime refuses the fields; the value text is the text, the tag text the name of the
  /// operation.
  ///
  /// @return 1 when the text was read; otherwise 0, and the fields keep what was read up to the
  ///         error.
  u16 ConvertStringToKRTime(const char* text);
  /// The same for `length` characters at `text`, which is not null and needs no terminator. Takes
  /// no memory unless a warning is logged.
  u16 ParseTime(const char* text, std::size_t length);

  /// Gets the block for the binary form: kBinaryBlockSize bytes, owned by the object and made at
  /// first use.
  /// @return the block; null when memory is exhausted, and then the thread's fire alarm is raised.
  void* LockBuffer();
  /// Frees the block.
  void UnLockBuffer();
  /// Writes the binary form, least significant bytes first: u16 version (3, or 4 when the offset
  /// has a fraction), u16 year, one byte each of month to second, u16 millisecond, u16 offset, in
  /// version 4 u16 fraction, and the zone name in 5 bytes with its terminator.
  /// @param target room for kBinaryBlockSize bytes; null writes nothing.
  /// @param length receives the length, one more than is written: 19 or 21, or 0 for a null target.
  ///        May be null.
  void ExportBinary(void* target, u16* length) const;
  /// Reads the binary form in version 4, 3 or 2, the latter two having the same layout. A block of
  /// another version, or null, leaves the object unchanged.
  void ImportBinary(const void* source);

 protected:
  /// Stores the fields.
  KRDateTimeBase(s16 year, s16 month, s16 day, s16 hour, s16 minute, s16 second, s16 millisecond,
                 s16 offset, s16 fraction) noexcept;

  /// Reads a zone "[gmt:tz]" and sets it. Logs KRPW_BADFORMAT for each error that it can ignore
  /// (empty brackets, a name that is not of 3 characters, a missing "]") and for one that it
  /// cannot.
  /// @param zone the text from "[" on; null or empty means no zone.
  /// @return 1; 0 when the error leaves no zone to read.
  u16 ExtractTimeZone(const char* zone);

  u16 m_year = 0;
  u16 m_month = 0;
  u16 m_day = 0;
  u16 m_hour = 0;
  u16 m_minute = 0;
  u16 m_second = 0;
  u16 m_millisecond = 0;
  s16 m_gmtOffset = 0;
  s16 m_gmtOffsetFraction = 0;

 private:
  u16 ReadZone(const char* zone, std::size_t length);
  u16 StoreZone(const char* name, std::size_t length, s16 offset, s16 fraction);
  bool ReadClock(const char* text, std::size_t length) noexcept;
  std::int64_t GMTMilliseconds() const noexcept;
  void ClearZone() noexcept;

  friend class KRDateTime;

  krofx::internal::ZoneName m_timeZone;
  krofx::internal::LazyBlock m_binary;
};

/// A date with an optional time.
class KROFX_API KRDateTime : public KRDateTimeBase {
 public:
  /// All fields zero, no zone: not a valid date.
  KRDateTime() noexcept = default;
  /// Parses `text`, as ConvertStringToKRDateTime.
  explicit KRDateTime(const char* text);
  /// Sets the date from a count of GetGMT, by FromPrecInt.
  explicit KRDateTime(const KRPrecisionInteger& seconds);
  /// Stores the fields; `offset` is in hours and `fraction` in hundredths of an hour ahead of GMT.
  KRDateTime(s16 year, s16 month, s16 day, s16 hour, s16 minute, s16 second, s16 millisecond,
             s16 offset, s16 fraction) noexcept;

  using KRDateTimeBase::operator=;
  /// Parses `text`.
  /// @return as ConvertStringToKRDateTime.
  u16 operator=(const char* text) override;

  /// Reads a date YYYYMMDD with an optional time after it, as ConvertStringToKRTime reads it. All
  /// fields are cleared first.
  ///
  /// Logs KRPW_NULLPOINTER for null and KRPW_BADFORMAT for a text of another shape, for a time that
  /// could not be read and for fields that IsValidDate refuses; the value text is the text, the tag
  /// text the name of the operation.
  ///
  /// @return 1 when the text was read; otherwise 0, and the fields keep what was read up to the
  ///         error.
  u16 ConvertStringToKRDateTime(const char* text);
  /// The same for `length` characters at `text`, which is not null and needs no terminator. Takes
  /// no memory unless a warning is logged.
  u16 Parse(const char* text, std::size_t length);
  /// Takes a date as plain data.
  explicit KRDateTime(const krofx::internal::PlainDate& date) noexcept;
};

/// A time of day without a date.
class KROFX_API KRTime : public KRDateTimeBase {
 public:
  /// Midnight, no zone.
  KRTime() noexcept = default;
  /// Parses `text`, as ConvertStringToKRTime.
  explicit KRTime(const char* text);
  /// Stores the fields; `offset` is in hours and `fraction` in hundredths of an hour ahead of GMT.
  KRTime(s16 year, s16 month, s16 day, s16 hour, s16 minute, s16 second, s16 millisecond,
         s16 offset, s16 fraction) noexcept;

  using KRDateTimeBase::operator=;
  /// Parses `text`.
  /// @return as ConvertStringToKRTime.
  u16 operator=(const char* text) override;
};

#endif  // KROFX_VALUES_DATE_TIME_H_
