// Reading dates in every form that has one reading.

#include "krofx/reader/dates/dates.h"

#include <algorithm>
#include <utility>

#include "krofx/reader/dates/month_names.h"
#include "krofx/reader/dates/zone_text.h"
#include "krofx/reader/values/digit_cursor.h"
#include "krofx/reader/values/plain_characters.h"
#include "krofx/reader/values/value_survey.h"
#include "krofx/values/internal/calendar.h"

namespace krofx::internal {

namespace {

// A date or a time as it is read, with what is said about it.
struct Moment {
  u32 year = 0;
  u32 month = 0;
  u32 day = 0;
  bool hasTime = false;
  u32 hour = 0;
  u32 minute = 0;
  u32 second = 0;
  u32 millisecond = 0;
  bool hasZone = false;
  ZoneText zone;
  bool otherForm = false;
  bool judged = false;  // Which number is the day was judged by the other dates.
  bool timeLost = false;
  bool zoneLost = false;

  bool IsDate() const {
    return year <= 9999 && day >= 1 &&
           day <= DaysInMonth(static_cast<u16>(month), static_cast<u16>(year));
  }
  bool IsTime() const { return hour <= 23 && minute <= 59 && second <= 59; }
};

// The text in ASCII, without quotes around it; characters that a date cannot have are '?'.
class AsciiText {
 public:
  AsciiText(std::string_view text, const Charset& charset) {
    const PlainCharacters plain(text, charset);
    for (const char32_t c : plain.All()) {
      m_bytes[m_size++] = c < 0x80 ? static_cast<char>(c) : WithoutAccent(c);
    }
  }
  std::string_view Text() const {
    std::string_view text(m_bytes, m_size);
    if (!IsQuoted()) return text;
    text.remove_prefix(1);
    if (text.ends_with(m_bytes[0])) text.remove_suffix(1);
    return text;
  }
  // Also with the apostrophe alone by which a spreadsheet takes a number for a text.
  bool IsQuoted() const {
    if (m_size < 2) return false;
    return m_bytes[0] == '\'' || (m_bytes[0] == '"' && m_bytes[m_size - 1] == '"');
  }

 private:
  char m_bytes[PlainCharacters::kMost];
  std::size_t m_size = 0;
};

bool IsDateSign(char c) { return c == '-' || c == '/' || c == '.' || c == ' '; }

// "31/01/2026" in either order, when only one is possible, or the other dates decide. With points
// between its numbers a date begins with the day wherever it is written.
bool DecideOrder(u32 first, u32 second, char sign, const ValueSurvey& survey, Moment& moment) {
  constexpr u32 kMonths = 12;
  bool dayFirst = second <= kMonths;
  const bool monthFirst = first <= kMonths;
  if (dayFirst && monthFirst && first != second && sign != '.') {
    const DayOrder order = survey.OrderOfDays();
    if (order == DayOrder::kUnknown) return false;
    dayFirst = order == DayOrder::kDayFirst;
    moment.judged = true;
  }
  moment.day = dayFirst ? first : second;
  moment.month = dayFirst ? second : first;
  return true;
}

// Three numbers with a sign between them: the year is the one with four digits.
bool ReadDividedDate(DigitCursor& cursor, const ValueSurvey& survey, Moment& moment) {
  const std::size_t first = cursor.CountDigits();
  if (first != 1 && first != 2 && first != 4) return false;
  u32 numbers[3];
  cursor.TakeDigits(first, numbers[0]);
  const char sign = cursor.Next();
  if (!IsDateSign(sign)) return false;
  for (u32* const number : {&numbers[1], &numbers[2]}) {
    if (!cursor.Take(sign)) return false;
    const std::size_t count = cursor.CountDigits();
    const bool year = first != 4 && number == &numbers[2];
    if (year ? count != 4 : count < 1 || count > 2) return false;
    cursor.TakeDigits(count, *number);
  }
  moment.otherForm = true;
  if (first != 4) {
    moment.year = numbers[2];
    return DecideOrder(numbers[0], numbers[1], sign, survey, moment);
  }
  moment.year = numbers[0];
  moment.month = numbers[1];
  moment.day = numbers[2];
  return true;
}

// Passes over the day of the week that may be in front of a date.
void SkipWeekday(DigitCursor& cursor) {
  DigitCursor ahead = cursor;
  if (!IsWeekday(ahead.TakeLetters())) return;
  ahead.Take('.');
  ahead.Take(',');
  if (ahead.TakeBlanks()) cursor = ahead;
}

// "15 Jan 2026", "Jan 15, 2026", "Mon, 15-Jan-2026": the year is the number with four digits.
bool ReadNamedDate(DigitCursor& cursor, Moment& moment) {
  SkipWeekday(cursor);
  bool hasDay = false;
  bool hasYear = false;
  for (int part = 0; part < 3; ++part) {
    if (part != 0) {
      cursor.Take('.');
      cursor.Take(',');
      if (!cursor.TakeBlanks() && !cursor.Take('-')) cursor.Take('/');
    }
    const std::size_t count = cursor.CountDigits();
    if (count == 0) {
      if (moment.month != 0) return false;
      moment.month = MonthOf(cursor.TakeLetters());
      if (moment.month == 0) return false;
      continue;
    }
    bool& has = count == 4 ? hasYear : hasDay;
    if (has || (count != 4 && count > 2)) return false;
    has = true;
    cursor.TakeDigits(count, count == 4 ? moment.year : moment.day);
  }
  moment.otherForm = true;
  return hasDay && hasYear && moment.month != 0;
}

bool ReadDate(DigitCursor& cursor, const ValueSurvey& survey, Moment& moment) {
  constexpr std::size_t kDigits = 8;
  const std::size_t count = cursor.CountDigits();
  if (count < kDigits) {
    DigitCursor ahead = cursor;
    if (!ReadDividedDate(ahead, survey, moment)) return ReadNamedDate(cursor, moment);
    cursor = ahead;
    return true;
  }
  // With hours, minutes, seconds and milliseconds; any other count says that digits are missing.
  const std::size_t time = count - kDigits;
  if (time != 0 && time != 2 && time != 4 && time != 6 && time != 9) return false;
  cursor.TakeDigits(4, moment.year);
  cursor.TakeDigits(2, moment.month);
  cursor.TakeDigits(2, moment.day);
  return true;
}

// The fraction of a second, after whatever sign.
void ReadFraction(DigitCursor& cursor, Moment& moment) {
  const char sign = cursor.Next();
  if (sign != '.' && sign != ',' && sign != ':') return;
  moment.otherForm = moment.otherForm || sign != '.';
  cursor.Take(sign);
  constexpr std::size_t kMilliseconds = 3;
  const std::size_t count = cursor.CountDigits();
  if (count == 0 || count > kMilliseconds) moment.otherForm = true;
  const std::size_t taken = std::min(count, kMilliseconds);
  cursor.TakeDigits(taken, moment.millisecond);
  for (std::size_t at = taken; at < kMilliseconds; ++at) moment.millisecond *= 10;
  cursor.SkipDigits();
}

// "10:11" and "10:11:12".
bool ReadDividedTime(DigitCursor& cursor, Moment& moment) {
  const std::size_t hours = cursor.CountDigits();
  cursor.TakeDigits(hours, moment.hour);
  moment.otherForm = true;
  u32* const parts[] = {&moment.minute, &moment.second};
  for (u32* const part : parts) {
    if (part == &moment.second && cursor.Next() != ':') break;
    if (!cursor.Take(':') || cursor.CountDigits() != 2) return false;
    cursor.TakeDigits(2, *part);
    if (part == &moment.second) ReadFraction(cursor, moment);
  }
  return true;
}

// "10", "1011", "101112", "101112345".
bool ReadJoinedTime(DigitCursor& cursor, Moment& moment) {
  const std::size_t count = cursor.CountDigits();
  if (count != 2 && count != 4 && count != 6 && count != 9) return false;
  cursor.TakeDigits(2, moment.hour);
  if (count >= 4) cursor.TakeDigits(2, moment.minute);
  if (count >= 6) cursor.TakeDigits(2, moment.second);
  if (count == 9) {
    cursor.TakeDigits(3, moment.millisecond);
    moment.otherForm = true;
  } else if (count == 6) {
    ReadFraction(cursor, moment);
  }
  return true;
}

// Takes "PM" after a time of the twelve hours.
bool ReadHalfOfDay(DigitCursor& cursor, Moment& moment) {
  constexpr u32 kHalf = 12;
  DigitCursor ahead = cursor;
  ahead.TakeBlanks();
  const std::string_view letters = ahead.TakeLetters();
  const bool morning = letters == "AM" || letters == "am";
  if (!morning && letters != "PM" && letters != "pm") return true;
  cursor = ahead;
  moment.otherForm = true;
  if (moment.hour < 1 || moment.hour > kHalf) return false;
  moment.hour = moment.hour % kHalf + (morning ? 0 : kHalf);
  return true;
}

bool ReadTime(DigitCursor& cursor, Moment& moment) {
  const std::size_t count = cursor.CountDigits();
  const std::string_view rest = cursor.Rest();
  const bool divided = count <= 2 && rest.size() > count && rest[count] == ':';
  moment.hasTime = true;
  return (divided ? ReadDividedTime(cursor, moment) : ReadJoinedTime(cursor, moment)) &&
         ReadHalfOfDay(cursor, moment) && moment.IsTime();
}

void ReadZoneOf(DigitCursor& cursor, Moment& moment) {
  const bool blanks = cursor.TakeBlanks();
  if (cursor.AtEnd()) return;
  const bool opened = cursor.Take('[');
  std::string_view body = cursor.Rest();
  const bool closed = body.ends_with(']');
  if (closed) body.remove_suffix(1);
  moment.zoneLost = !ReadZone(body, moment.zone);
  moment.hasZone = !moment.zoneLost;
  if (blanks || !opened || !closed) moment.zone.otherForm = true;
}

// Reads what may follow a date: a time, and a zone.
void ReadAfterDate(DigitCursor& cursor, Moment& moment) {
  DigitCursor ahead = cursor;
  const bool hasBlanks = ahead.TakeBlanks();
  const bool hasLetter = ahead.Take('T');
  const bool divided = ahead.Take('t') || hasLetter || hasBlanks;
  if (ahead.CountDigits() > 0) {
    cursor = ahead;
    moment.otherForm = moment.otherForm || divided;
    if (!ReadTime(cursor, moment)) {
      moment.timeLost = true;
      return;
    }
  }
  ReadZoneOf(cursor, moment);
}

// Writes a moment as OFX has it.
class MomentWriter {
 public:
  std::string_view Write(const Moment& moment, bool date) {
    if (date) {
      Number(moment.year, 4);
      Number(moment.month, 2);
      Number(moment.day, 2);
    }
    if (moment.timeLost) return Text();
    if (moment.hasTime) {
      Number(moment.hour, 2);
      Number(moment.minute, 2);
      Number(moment.second, 2);
      if (moment.millisecond != 0) {
        *m_end++ = '.';
        Number(moment.millisecond, 3);
      }
    }
    if (moment.hasZone) Zone(moment.zone);
    return Text();
  }

 private:
  std::string_view Text() const { return {m_bytes, static_cast<std::size_t>(m_end - m_bytes)}; }
  void Number(u32 value, int width) { m_end = WriteDigits(m_end, value, width); }
  void Zone(const ZoneText& zone) {
    *m_end++ = '[';
    if (zone.negative) *m_end++ = '-';
    Number(zone.hours, 1);
    if (zone.hundredths != 0) {
      *m_end++ = '.';
      Number(zone.hundredths, 2);
    }
    if (!zone.name.empty()) *m_end++ = ':';
    m_end = std::copy(zone.name.begin(), zone.name.end(), m_end);
    *m_end++ = ']';
  }

  char m_bytes[64];
  char* m_end = m_bytes;
};

bool TakeMoment(const Moment& moment, bool date, MendedValue& out) {
  const bool zoneForm = moment.hasZone && moment.zone.otherForm;
  const std::pair<bool, MendingKind> said[] = {
      {moment.timeLost, MendingKind::kDateTimeLost},
      {moment.judged, MendingKind::kDateOrder},
      {moment.otherForm, MendingKind::kDateForm},
      {zoneForm && !moment.timeLost, MendingKind::kDateZone},
      {moment.zoneLost, MendingKind::kDateZoneLost},
  };
  bool mended = false;
  for (const auto& [is, kind] : said) {
    if (!is) continue;
    MomentWriter writer;
    if (mended) {
      out.Say(kind);
    } else {
      out.Take(kind, writer.Write(moment, date));
    }
    mended = true;
  }
  return mended;
}

}  // namespace

bool MendDate(const DoubtfulValue& value, MendedValue& out) {
  const AsciiText text(value.text, value.survey.CharsetOfText());
  DigitCursor cursor(text.Text());
  Moment moment;
  moment.otherForm = text.IsQuoted();
  if (!ReadDate(cursor, value.survey, moment) || !moment.IsDate()) return false;
  ReadAfterDate(cursor, moment);
  return TakeMoment(moment, true, out);
}

bool MendTime(const DoubtfulValue& value, MendedValue& out) {
  const AsciiText text(value.text, value.survey.CharsetOfText());
  DigitCursor cursor(text.Text());
  Moment moment;
  if (!ReadTime(cursor, moment)) return false;
  ReadZoneOf(cursor, moment);
  return TakeMoment(moment, false, out);
}

bool MendNoDate(const DoubtfulValue& value, MendedValue& out) {
  const std::string_view date = value.text.substr(0, value.text.find('['));
  const bool zeros = date.find('0') != std::string_view::npos &&
                     date.find_first_not_of("0-/.:T ") == std::string_view::npos;
  const bool nothing = zeros || IsWordForNothing(value.text) ||
                       value.text.find_first_not_of("-/. ") == std::string_view::npos;
  return nothing && out.TakeAsAbsent(MendingKind::kDateAbsent);
}

}  // namespace krofx::internal
