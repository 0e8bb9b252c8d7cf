// The menders of decimal numbers and integers.
//
// No number is ever changed by a factor without a word. A comma means what the number itself shows,
// or else what the other numbers of the text show; when nothing shows it, the number is left out,
// since a reading that is wrong by a factor of 1000 is worse than none.

#ifndef KROFX_READER_NUMBERS_NUMBERS_H_
#define KROFX_READER_NUMBERS_NUMBERS_H_

#include "krofx/reader/values/value_mender.h"

namespace krofx::internal {

/// Takes out what divides thousands and writes the decimal sign as a point; leaves alone what is in
/// front of the digits and after them. To be asked first: the objects pass over commas. A number
/// whose signs make no sense, and one of signs only, is taken as absent.
bool MendSeparators(const DoubtfulValue& value, MendedValue& out);
/// The same for an integer, in which a sign can only divide thousands.
bool MendSeparatorsOfInteger(const DoubtfulValue& value, MendedValue& out);
/// Takes out currencies and blanks, and moves a sign to the front: "(5.00)", "5.00-", "5.00 DR".
/// The kind of a payroll amount stays: '$' in front of the number, '%' after it. Another currency
/// is none of these kinds, and the amount is left to be refused.
bool MendDecoration(const DoubtfulValue& value, MendedValue& out);
/// Writes a number with an exponent out: "1.05E1" is "10.5".
bool MendExponent(const DoubtfulValue& value, MendedValue& out);
/// Takes out zeros that do not change a number but make it too long.
bool MendZeros(const DoubtfulValue& value, MendedValue& out);
/// Takes a word for no number as absent.
bool MendNoNumber(const DoubtfulValue& value, MendedValue& out);

}  // namespace krofx::internal

#endif  // KROFX_READER_NUMBERS_NUMBERS_H_
