// The conversions of booleans, dates, numbers and identifiers.

#include "krofx/values/data_conversion.h"

#include "krofx/core/parse_logger.h"

namespace {

using krofx::internal::LogWarning;

constexpr u16 kPayeeIDLimit = 12;

u16 Refuse(KRParseWarning warning, const KRString& text) {
  LogWarning(warning, text, KRString(), KRTag_None, nullptr);
  return 0;
}

// Reads a whole number, with its sign; decimals are allowed if they are all zero.
u16 ReadWhole(const KRString& text, KRPrecisionInteger& number) {
  if (!number.ConvertStringToKRPrecisionInteger(text)) return 0;
  if (number.Decimal() > 0) {
    const KRPrecisionInteger whole = number.Integer();
    if (number != whole) return Refuse(KRPW_BADFORMAT, text);
    number = whole;
  }
  return 1;
}

// Reads a whole number that passes `fits`; `get` takes its magnitude, or the number with its sign.
template <class Number>
u16 ReadWhole(const KRString& text, Number& out, u16 (KRPrecisionInteger::*fits)() const,
              Number (KRPrecisionInteger::*get)() const) {
  KRPrecisionInteger number;
  if (!ReadWhole(text, number)) return 0;
  if (!(number.*fits)()) return Refuse(KRPW_OUTOFRANGE, text);
  out = (number.*get)();
  return 1;
}

}  // namespace

u16 KRDataConversion::BooleanToString(u16 value, KRString& out) {
  out = value ? "Y" : "N";
  return 1;
}

u16 KRDataConversion::StringToBoolean(const KRString& text, u16& out) {
  if (text == "Y") {
    out = 1;
  } else if (text == "N") {
    out = 0;
  } else {
    return Refuse(KRPW_BADFORMAT, text);
  }
  return 1;
}

u16 KRDataConversion::DateTimeToString(KRDateTime value, KRString& out) {
  return value.GetDateString(out);
}

u16 KRDataConversion::StringToDateTime(const KRString& text, KRDateTime& out) {
  return out.ConvertStringToKRDateTime(text);
}

u16 KRDataConversion::TimeToString(KRTime value, KRString& out) { return value.GetTimeString(out); }

u16 KRDataConversion::StringToTime(const KRString& text, KRTime& out) {
  return out.ConvertStringToKRTime(text);
}

u16 KRDataConversion::StringToAmount(const KRString& text, KRPrecisionInteger& out) {
  return out.ConvertStringToKRPrecisionInteger(text);
}

u16 KRDataConversion::StringToRate(const KRString& text, KRPercent& out) {
  return out.ConvertStringToKRPrecisionInteger(text);
}

u16 KRDataConversion::StringToSShort(const KRString& text, s16& out) {
  KRPrecisionInteger number;
  if (!ReadWhole(text, number)) return 0;
  // The magnitude of the lowest value is one more than FitInASShort allows.
  constexpr u16 kLowestMagnitude = 32768;
  if (number.FitInAUShort() && number.GetKRULong() == kLowestMagnitude && number.IsNegative()) {
    out = -32768;
    return 1;
  }
  if (!number.FitInASShort()) return Refuse(KRPW_OUTOFRANGE, text);
  out = number.GetKRSShort();
  return 1;
}

u16 KRDataConversion::StringToUShort(const KRString& text, u16& out) {
  return ReadWhole(text, out, &KRPrecisionInteger::FitInAUShort, &KRPrecisionInteger::GetKRUShort);
}

u16 KRDataConversion::StringToSLong(const KRString& text, s32& out) {
  return ReadWhole(text, out, &KRPrecisionInteger::FitInASLong, &KRPrecisionInteger::GetKRSLong);
}

u16 KRDataConversion::StringToULong(const KRString& text, u32& out) {
  return ReadWhole(text, out, &KRPrecisionInteger::FitInAULong, &KRPrecisionInteger::GetKRULong);
}

u16 KRDataConversion::StringToLanguage(const KRString& text, KRLanguage& out) {
  out = text;
  return 1;
}

u16 KRDataConversion::LanguageToString(const KRLanguage& value, KRString& out) {
  out = value.GetString();
  return 1;
}

u16 KRDataConversion::StringToPayeeID(const KRString& text, KRString12& out) {
  if (text.GetStrLength() > kPayeeIDLimit) return Refuse(KRPW_TOOLONG, text);
  out = text;
  return 1;
}

u16 KRDataConversion::PayeeIDToString(KRString12 value, KRString& out) {
  if (value.GetStrLength() > kPayeeIDLimit) return Refuse(KRPW_TOOLONG, value);
  out = value;
  return 1;
}
