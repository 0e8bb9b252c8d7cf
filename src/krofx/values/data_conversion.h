// Conversions between element values and their text: keywords, booleans, dates, numbers.
//
// The conversions of keywords are generated from keywords.schema into KRDataConversionBase; all
// others are here.

#ifndef KROFX_VALUES_DATA_CONVERSION_H_
#define KROFX_VALUES_DATA_CONVERSION_H_

#include "krofx/core/export.h"
#include "krofx/core/fixed_strings.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/values/date_time.h"
#include "krofx/values/keyword_conversions.h"
#include "krofx/values/language.h"
#include "krofx/values/precision_integer.h"

/// Converts element values to text and back. All operations are static and return 1, or 0 after a
/// warning in the thread's log. A failed conversion to a keyword, a boolean or an integer leaves
/// its target unchanged.
class KROFX_API KRDataConversion : public krofx::internal::KRDataConversionBase {
 public:
  /// Gives "N" for 0 and "Y" for any other value.
  /// @return 1.
  static u16 BooleanToString(u16 value, KRString& out);
  /// Reads "Y" as 1 and "N" as 0; the case of the letter matters.
  /// @return 1; 0 after KRPW_BADFORMAT for anything else.
  static u16 StringToBoolean(const KRString& text, u16& out);

  /// Gives YYYYMMDDHHMMSS.XXX[gmt:tz], as short as the value allows.
  /// @return 1; 0 for a date or time that is not valid.
  static u16 DateTimeToString(KRDateTime value, KRString& out);
  /// Reads a date with an optional time and zone.
  /// @return 0, with what was read up to there in `out`, after a warning.
  static u16 StringToDateTime(const KRString& text, KRDateTime& out);
  /// Gives HHMMSS.XXX[gmt:tz], as short as the value allows.
  /// @return 1; 0 for a time that is not valid.
  static u16 TimeToString(KRTime value, KRString& out);
  /// Reads a time with an optional zone.
  /// @return 0, with what was read up to there in `out`, after a warning.
  static u16 StringToTime(const KRString& text, KRTime& out);

  /// Reads an exact decimal. The class of `out` decides what is valid.
  /// @return 0, with what was read up to there in `out`, after a warning.
  static u16 StringToAmount(const KRString& text, KRPrecisionInteger& out);
  /// Reads a percentage from 0 to 100.
  /// @return 0, with what was read up to there in `out`, after a warning.
  static u16 StringToRate(const KRString& text, KRPercent& out);

  /// Reads -32768 to 32767. Decimals that are all zero are allowed, here and below.
  /// @return 1; 0 after KRPW_BADFORMAT for a text that is not a whole number, KRPW_TOOLONG for one
  ///         of more than 28 digits, and KRPW_OUTOFRANGE for one that does not fit.
  static u16 StringToSShort(const KRString& text, s16& out);
  /// Reads a magnitude of 0 to 65535; a minus sign is dropped.
  /// @return as StringToSShort.
  static u16 StringToUShort(const KRString& text, u16& out);
  /// Reads -2147483647 to 2147483647.
  /// @return as StringToSShort.
  static u16 StringToSLong(const KRString& text, s32& out);
  /// Reads a magnitude of 0 to 4294967295; a minus sign is dropped.
  /// @return as StringToSShort.
  static u16 StringToULong(const KRString& text, u32& out);

  /// Takes any text as a language.
  /// @return 1.
  static u16 StringToLanguage(const KRString& text, KRLanguage& out);
  /// Gives the text of a language.
  /// @return 1.
  static u16 LanguageToString(const KRLanguage& value, KRString& out);

  /// Takes a payee's identifier.
  /// @return 1; 0, with `out` unchanged, after KRPW_TOOLONG, for more than 12 characters.
  static u16 StringToPayeeID(const KRString& text, KRString12& out);
  /// Gives a payee's identifier.
  /// @return 1; 0, with `out` unchanged, after KRPW_TOOLONG, for more than 12 characters.
  static u16 PayeeIDToString(KRString12 value, KRString& out);
};

#endif  // KROFX_VALUES_DATA_CONVERSION_H_
