// The text of dates and times: parsing and writing YYYYMMDDHHMMSS.XXX[gmt:tz].
//
// Parsing reads directly from the caller's text, and writing formats in place, since statements
// have several dates for each transaction.

#include <cstdlib>
#include <cstring>

#include "krofx/values/date_time.h"
#include "krofx/values/internal/date_writing.h"
#include "krofx/values/internal/digits.h"
#include "krofx/values/internal/named_zones.h"
#include "krofx/values/internal/text_warning.h"

using krofx::internal::IsDigit;
using krofx::internal::IsNameOfOffset;
using krofx::internal::ReadDigits;
using krofx::internal::WarnAboutText;
using krofx::internal::WriteClock;
using krofx::internal::WriteDateHead;
using krofx::internal::WriteDigits;
using krofx::internal::WriteFraction;
using krofx::internal::WriteOffset;
using krofx::internal::ZoneName;

namespace {

constexpr std::size_t kDateLength = 8;
constexpr std::size_t kZoneNameLength = 3;

// Bytes that the texts take in the string that receives them, terminator included.
constexpr std::size_t kDateTextSize = 39;
constexpr std::size_t kTimeTextSize = 31;

bool Contains(const char* text, std::size_t length, char c) noexcept {
  return length != 0 && std::memchr(text, c, length) != nullptr;
}

/// A text that is being written: the digits up to the offset, whatever the fields hold.
struct TextHead {
  char text[80];
  char* end = text;
};

/// Writes the head, then ":" and the zone name if there is one, then the closing bracket into
/// `out`, which gets at least `size` bytes.
u16 Store(KRString& out, std::size_t size, const TextHead& head, const ZoneName* zone,
          bool closeBracket) {
  const std::size_t headLength = static_cast<std::size_t>(head.end - head.text);
  const std::size_t zoneLength = zone == nullptr ? 0 : zone->Length();
  const std::size_t needed = headLength + zoneLength + 3;
  if (needed > KRString::kMaxLength) return 0;

  char* to = out.LockBuffer(static_cast<u16>(needed > size ? needed : size));
  if (to == nullptr) return 0;
  std::memcpy(to, head.text, headLength);
  to += headLength;
  if (zoneLength != 0) {
    *to++ = ':';
    std::memcpy(to, zone->Text(), zoneLength);
    to += zoneLength;
  }
  if (closeBracket) *to++ = ']';
  *to = '\0';
  out.UnlockBuffer();
  return 1;
}

}  // namespace

u16 KRDateTimeBase::SetTimeZone(const char* name, s16 offset, s16 fraction) {
  return StoreZone(name, name == nullptr ? 0 : std::strlen(name), offset, fraction);
}

u16 KRDateTimeBase::StoreZone(const char* name, std::size_t length, s16 offset, s16 fraction) {
  m_timeZone.Assign(name, length);
  m_gmtOffset = offset;
  m_gmtOffsetFraction = fraction;

  if (fraction != 0 || m_timeZone.IsEmpty()) return 1;
  const char* const held = m_timeZone.Text();
  if (!IsNameOfOffset(held, offset)) {
    TextHead prefix;
    prefix.end = WriteOffset(prefix.end, offset);
    *prefix.end++ = ':';
    *prefix.end = '\0';
    KRString zone(prefix.text);
    zone += held;
    WarnAboutText(KRPW_BADFORMAT, zone, zone.GetStrLength(), "SetTimeZone (time zone mismatch");
  }
  return 1;
}

u16 KRDateTimeBase::ExtractTimeZone(const char* zone) {
  return ReadZone(zone, zone == nullptr ? 0 : std::strlen(zone));
}

u16 KRDateTimeBase::ReadZone(const char* zone, std::size_t length) {
  // Beyond this many hours an offset is out of range whatever follows, so further digits are
  // ignored.
  constexpr s16 kMostHours = 999;
  constexpr int kMostFractionDigits = 2;

  if (length == 0) return 1;
  const char* const end = zone + length;
  const char* at = zone;
  bool logged = false;
  const auto warn = [&] {
    WarnAboutText(KRPW_BADFORMAT, zone, length, "ExtractTimeZone");
    logged = true;
  };
  const auto next = [&] { return at < end ? *at : '\0'; };
  const auto fail = [&] {
    if (!logged) warn();
    return u16{0};
  };

  if (next() != '[') return fail();
  ++at;
  if (next() == ']') warn();
  if (next() == ':') return fail();

  s16 hours = 0;
  s16 fraction = 0;
  int fractionDigits = 0;
  char sign = '\0';
  bool pointSeen = false;
  for (; next() != ':' && next() != ']'; ++at) {
    const char c = next();
    if (IsDigit(c) && !pointSeen) {
      if (hours <= kMostHours) hours = static_cast<s16>(hours * 10 + (c - '0'));
    } else if (IsDigit(c) && fractionDigits < kMostFractionDigits) {
      fraction = static_cast<s16>(fraction * 10 + (c - '0'));
      ++fractionDigits;
    } else if ((c == '-' || c == '+') && sign == '\0' && !pointSeen) {
      sign = c;
    } else if (c == '.' && !pointSeen) {
      pointSeen = true;
    } else {
      return fail();
    }
  }

  const char* name = at;
  std::size_t nameLength = 0;
  if (next() == ':') {
    name = ++at;
    while (nameLength < kZoneNameLength && at < end && next() != ']') {
      ++nameLength;
      ++at;
    }
    if (nameLength != kZoneNameLength) warn();
  }
  if (next() != ']') warn();

  if (fractionDigits == 1) fraction = static_cast<s16>(fraction * 10);
  if (sign == '-') {
    hours = static_cast<s16>(-hours);
    fraction = static_cast<s16>(-fraction);
  }
  return StoreZone(name, nameLength, hours, fraction);
}

u16 KRDateTimeBase::ConvertStringToKRTime(const char* text) {
  if (text == nullptr) {
    InitKRTime();
    WarnAboutText(KRPW_NULLPOINTER, nullptr, 0, "ConvertStringToKRTime");
    return 0;
  }
  return ParseTime(text, std::strlen(text));
}

u16 KRDateTimeBase::ParseTime(const char* text, std::size_t length) {
  InitKRTime();
  std::size_t clockLength = length;
  bool wellFormed = true;
  const char* const bracket =
      length == 0 ? nullptr : static_cast<const char*>(std::memchr(text, '[', length));
  if (bracket != nullptr) {
    clockLength = static_cast<std::size_t>(bracket - text);
    if (ReadZone(bracket, length - clockLength) == 0) return 0;
  } else {
    wellFormed = !Contains(text, length, '-') && !Contains(text, length, ':');
  }

  KRParseWarning warning = KRPW_BADFORMAT;
  if (wellFormed && ReadClock(text, clockLength)) {
    if (IsValidTime() != 0) return 1;
    warning = KRPW_OUTOFRANGE;
  }
  WarnAboutText(warning, text, length, "ConvertStringToKRTime");
  return 0;
}

bool KRDateTimeBase::ReadClock(const char* text, std::size_t length) noexcept {
  constexpr std::size_t kPointPosition = 6;
  constexpr s16 kMillisecondDigits = 3;
  // Read from the end: each part is what the later ones have left.
  if (length > kPointPosition && text[kPointPosition] == '.') {
    const std::size_t after = kPointPosition + 1;
    if (!ReadDigits(text + after, length - after, m_millisecond, 0, kMillisecondDigits)) {
      return false;
    }
    length = kPointPosition;
  }
  struct Field {
    std::size_t position;
    u16& value;
  };
  for (const Field& field : {Field{4, m_second}, Field{2, m_minute}, Field{0, m_hour}}) {
    if (length <= field.position) continue;
    if (!ReadDigits(text + field.position, length - field.position, field.value, 2, 0))
      return false;
    length = field.position;
  }
  return true;
}

KRDateTime::KRDateTime(const char* text) { ConvertStringToKRDateTime(text); }

u16 KRDateTime::operator=(const char* text) { return ConvertStringToKRDateTime(text); }

u16 KRDateTime::ConvertStringToKRDateTime(const char* text) {
  if (text == nullptr) {
    InitKRDateTime();
    WarnAboutText(KRPW_NULLPOINTER, nullptr, 0, "ConvertStringToKRDateTime");
    return 0;
  }
  return Parse(text, std::strlen(text));
}

u16 KRDateTime::Parse(const char* text, std::size_t length) {
  InitKRDateTime();
  if (length >= kDateLength && ParseTime(text + kDateLength, length - kDateLength) != 0 &&
      ReadDigits(text + 6, 2, m_day, 2, 0) && ReadDigits(text + 4, 2, m_month, 2, 0) &&
      ReadDigits(text, 4, m_year, 4, 0) && IsValidDate() != 0) {
    return 1;
  }
  WarnAboutText(KRPW_BADFORMAT, text, length, "ConvertStringToKRDateTime");
  return 0;
}

KRTime::KRTime(const char* text) { ConvertStringToKRTime(text); }

u16 KRTime::operator=(const char* text) { return ConvertStringToKRTime(text); }

u16 KRDateTimeBase::GetDateString(KRString& out) {
  if (IsValidDate() == 0 || IsValidTime() == 0) return 0;
  TextHead head;
  bool hasZone = false;
  head.end = WriteDateHead({m_year, m_month, m_day, m_hour, m_minute, m_second, m_millisecond,
                            m_gmtOffset, m_gmtOffsetFraction},
                           head.text, hasZone);
  return Store(out, kDateTextSize, head, hasZone ? &m_timeZone : nullptr, hasZone);
}

u16 KRDateTimeBase::GetTimeString(KRString& out) {
  if (IsValidTime() == 0) return 0;
  TextHead head;
  char* to = WriteClock(head.text, m_hour, m_minute, m_second);
  if (m_millisecond != 0) {
    *to++ = '.';
    to = WriteDigits(to, m_millisecond, 1);
  }
  const bool hasZone = m_gmtOffset != 0;
  if (hasZone) {
    *to++ = '[';
    to = WriteOffset(to, m_gmtOffset);
    if (m_gmtOffsetFraction != 0) to = WriteFraction(to, m_gmtOffsetFraction);
  }
  head.end = to;
  return Store(out, kTimeTextSize, head, &m_timeZone, hasZone);
}
