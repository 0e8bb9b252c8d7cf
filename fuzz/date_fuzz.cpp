// Any bytes as a date and as a time: what is one is written and read as itself, in text and in
// bytes; a payroll date is the same date, or blank; the short way of reading agrees with the long
// one; seconds since the beginning lead back to the date.

#include <string>

#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"
#include "krofx/model/value_kinds.h"
#include "krofx/payroll/payroll_date_time.h"
#include "krofx/values/date_time.h"
#include "target.h"

namespace {

using namespace krofx::fuzz;

std::string Text(const KRString& string) {
  return {static_cast<const char*>(string), string.GetStrLength()};
}

std::string DateText(const KRDateTimeBase& date) {
  KRString text;
  return date.GetDateString(text) == 1 ? Text(text) : "no date";
}

void CheckShortWay(const std::string& text, const KRDateTime* slow) {
  krofx::internal::StoredDate quick;
  if (!krofx::internal::kDateTime.fromCommonText(&quick, text.data(), text.size())) return;
  Expect(slow != nullptr, "the long way reads it too");
  const KRDateTime date = quick;
  ExpectSame(DateText(date), DateText(*slow), "both ways read one date");
  char out[krofx::internal::PlainDate::kTextSize];
  const char* const end = krofx::internal::kDateTime.writeCommon(&quick, out, out + sizeof out);
  Expect(end != nullptr, "what is read is written");
  ExpectSame({out, static_cast<std::size_t>(end - out)}, DateText(*slow), "both ways write alike");
}

void CheckDate(const KRDateTime& date) {
  const std::string text = DateText(date);
  KRDateTime again;
  Expect(again.ConvertStringToKRDateTime(text.c_str()) == 1, "a written date is one");
  ExpectSame(DateText(again), text, "a written date is written again");
  Expect(again == date, "a written date is read as itself");

  char bytes[64];
  u16 length = sizeof bytes;
  date.ExportBinary(bytes, &length);
  Expect(length <= sizeof bytes, "an exported date has its size");
  KRDateTime imported;
  imported.ImportBinary(bytes);
  // In bytes three stars stand for no zone.
  if (!text.ends_with(":***]")) ExpectSame(DateText(imported), text, "bytes are read back");

  // Seconds are those of 32 bits since 1970, in universal time.
  if (date.GetYear() < 1971 || date.GetYear() > 2037) return;
  KRDateTime universal(date);
  universal.ConvertToGMT();
  Expect(universal.GetTimeT() == date.GetTimeT(), "an instant is the same in universal time");
  // The way back counts in years of 365.2425 days, so a date can come back as the day before.
  KRDateTime fromSeconds;
  if (fromSeconds.FromPrecInt(date.GetGMT()) == 1) {
    KRPrecisionInteger apart = fromSeconds.SecondsBetween(date).abs();
    Expect(apart < KRPrecisionInteger(2 * 86400, 0), "seconds lead back to the date, or nearly");
  }
  // So a sum can be a day too early, at the end of a leap year.
  KRDateTime later(date);
  later += 2 * 86400 - 1;
  Expect(later > date && date < later, "later is later");
}

// Whether two texts mean a blank value is for KRPayrollDateTime to say.
void CheckPayrollDate(const std::string& text, const KRDateTime* plain) {
  KRPayrollDateTime date;
  const bool isRead = (date = text.c_str()) == 1;
  Expect(isRead == (plain != nullptr || date.IsEmpty() != 0), "a payroll date is a date or blank");
  if (!isRead) return;
  const std::string written = DateText(date);
  if (plain != nullptr) ExpectSame(written, DateText(*plain), "a payroll date is written as any");
  KRPayrollDateTime again;
  Expect((again = written.c_str()) == 1, "a written payroll date is one");
  ExpectSame(DateText(again), written, "a written payroll date is written again");
}

void CheckTime(const KRTime& time) {
  KRString written;
  if (time.GetTimeString(written) == 0) return;
  // The form of times alone is not read back with few milliseconds, or with a zone but no offset.
  if (time.GetMillisecond() != 0 || time.GetGMTOffset() == 0) return;
  KRTime again;
  Expect(again.ConvertStringToKRTime(written) == 1, "a written time is one");
  KRString second;
  again.GetTimeString(second);
  ExpectSame(Text(second), Text(written), "a written time is written again");
}

void Run(Bytes bytes) {
  // A text ends at its first NUL.
  const std::string text = std::string(bytes).c_str();
  KRDateTime date;
  const bool isDate = date.ConvertStringToKRDateTime(text.c_str()) == 1;
  CheckShortWay(text, isDate ? &date : nullptr);
  CheckPayrollDate(text, isDate ? &date : nullptr);
  if (isDate) CheckDate(date);

  KRTime time;
  if (time.ConvertStringToKRTime(text.c_str()) == 1) CheckTime(time);
  KRParseLogger::TheKRParseLogger()->DeleteAll();
}

const Target kTarget("date", &Run);

}  // namespace
