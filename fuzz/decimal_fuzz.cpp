// Any bytes as two texts of numbers, with a line end between them: what is a number is written and
// read as itself, as a payroll amount too; the short way of reading agrees with the long one; sums,
// differences and comparisons agree with wide integers.

#include <cstring>
#include <string>

#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"
#include "krofx/model/value_kinds.h"
#include "krofx/payroll/payroll_amount.h"
#include "krofx/values/precision_integer.h"
#include "target.h"

namespace {

using namespace krofx::fuzz;

__extension__ typedef __int128 Wide;

std::string TextOf(const KRPrecisionInteger& number) { return static_cast<char*>(number); }

// A number is what a text of it comes to, and what its bytes come to.
void CheckNumber(const KRPrecisionInteger& number) {
  const std::string text = TextOf(number);
  KRPrecisionInteger again;
  Expect(again.ConvertStringToKRPrecisionInteger(text.c_str()) == 1, "a written number is one");
  Expect(again == number, "a written number is read as itself");
  ExpectSame(TextOf(again), text, "a written number is written again");

  char bytes[64];
  u16 length = sizeof bytes;
  number.ExportBinary(bytes, &length);
  Expect(length <= sizeof bytes, "an exported number has its size");
  KRPrecisionInteger imported;
  imported.ImportBinary(bytes);
  Expect(imported == number && imported.Decimal() == number.Decimal(), "bytes are read back");
  Expect((number - number).IsZero() == 1, "a number less itself is nothing");
}

template <class Number>
void CheckKind(const std::string& text) {
  const krofx::internal::ValueKind& kind =
      krofx::internal::kNumber<Number, &KRBuilder::AddTagKRAmount>;
  krofx::internal::StoredNumber<Number> quick;
  if (!kind.fromCommonText(&quick, text.data(), text.size())) return;
  Number slow;
  Expect(slow.ConvertStringToKRPrecisionInteger(text.c_str()) == 1, "the long way reads it too");
  const Number number = quick;
  Expect(number.Sign() == slow.Sign() && number.Decimal() == slow.Decimal() &&
             number.GetLSBytes() == slow.GetLSBytes() && number.GetSSBytes() == slow.GetSSBytes() &&
             number.GetMSBytes() == slow.GetMSBytes(),
         "both ways read one number");
  char out[KRPrecisionInteger::kTextSize];
  const char* const end = kind.writeCommon(&quick, out, out + sizeof out);
  Expect(end != nullptr, "what is read is written");
  ExpectSame({out, static_cast<std::size_t>(end - out)}, TextOf(slow), "both ways write one text");
}

// The number times 10^9, when it is small enough for all that is tried to be exact.
bool ToWide(const KRPrecisionInteger& number, Wide& out) {
  // Negative zero is a number of its own.
  if (number.IsZero() == 1 && number.Sign() < 0) return false;
  if (number.GetMSBytes() != 0 || number.GetSSBytes() > 0xffff || number.Decimal() > 9)
    return false;
  out = static_cast<Wide>(number.GetSSBytes()) << 32 | number.GetLSBytes();
  for (int decimals = number.Decimal(); decimals < 9; ++decimals) out *= 10;
  if (number.Sign() < 0) out = -out;
  return true;
}

void CheckPair(const KRPrecisionInteger& a, const KRPrecisionInteger& b) {
  Expect((a < b) == (b > a) && (a <= b) == (b >= a) && (a == b) == (b == a), "order has one sense");
  Wide wideA = 0;
  Wide wideB = 0;
  if (!ToWide(a, wideA) || !ToWide(b, wideB)) return;
  Expect((a < b) + (a == b) + (a > b) == 1, "numbers are in one order");
  Expect((wideA < wideB) == (a < b) && (wideA == wideB) == (a == b), "order is that of values");
  Wide result = 0;
  if (ToWide(a + b, result)) Expect(result == wideA + wideB, "a sum is exact");
  if (ToWide(a - b, result)) Expect(result == wideA - wideB, "a difference is exact");
}

// Commas are passed over by the class that takes them, and change nothing else.
void CheckCommas(const std::string& text) {
  std::string plain = text;
  std::erase(plain, ',');
  KRCommaSepPrecisionInteger separated;
  KRPrecisionInteger number;
  const u16 isNumber = number.ConvertStringToKRPrecisionInteger(plain.c_str());
  Expect(separated.ConvertStringToKRPrecisionInteger(text.c_str()) == isNumber,
         "commas make no number and spoil none");
  Expect(isNumber == 0 || separated == number, "commas change no value");
}

// A payroll amount knows its kind by its text, and may be blank.
void CheckPayrollAmount(const std::string& text) {
  KRPayrollAmount amount;
  if (amount.ConvertStringToKRPrecisionInteger(text.c_str()) == 0) return;
  const std::string written = TextOf(amount);
  // A number that takes the whole room has no text with its sign.
  if (written.empty()) return;
  KRPayrollAmount again;
  Expect(again.ConvertStringToKRPrecisionInteger(written.c_str()) == 1, "a written amount is one");
  ExpectSame(TextOf(again), written, "a written amount is written again");
  Expect(again.IsEmpty() == amount.IsEmpty() && again.IsPercent() == amount.IsPercent() &&
             again.IsDollarKind() == amount.IsDollarKind(),
         "a written amount is of its kind");
  Expect((again == amount) != amount.IsEmpty(), "a written amount is itself, if it is not blank");
}

bool ReadNumber(const std::string& text, KRPrecisionInteger& number) {
  CheckKind<KRPrecisionInteger>(text);
  CheckKind<KRPosPrecisionInteger>(text);
  CheckKind<KRPercent>(text);
  CheckCommas(text);
  if (text.find(',') == std::string::npos) CheckPayrollAmount(text);
  if (number.ConvertStringToKRPrecisionInteger(text.c_str()) == 0) return false;
  // Commas after the point count as places, which can give more digits than a text may have.
  if (text.find(',') == std::string::npos) CheckNumber(number);
  return true;
}

void Run(Bytes bytes) {
  const std::size_t middle = bytes.find('\n');
  const std::string first(bytes.substr(0, middle));
  const std::string second(middle == Bytes::npos ? Bytes() : bytes.substr(middle + 1));
  KRPrecisionInteger a;
  KRPrecisionInteger b;
  // A text ends at its first NUL.
  if (ReadNumber(first.c_str(), a) && ReadNumber(second.c_str(), b)) CheckPair(a, b);
  KRParseLogger::TheKRParseLogger()->DeleteAll();
}

const Target kTarget("decimal", &Run);

}  // namespace
