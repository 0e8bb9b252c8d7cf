// The menders of dates and times.
//
// What is ambiguous is not guessed: of "01/02/2026" nobody knows which is the month, so it is left
// out, but "31/01/2026" has one reading.

#ifndef KROFX_READER_DATES_DATES_H_
#define KROFX_READER_DATES_DATES_H_

#include "krofx/reader/values/value_mender.h"

namespace krofx::internal {

/// Takes a date in another form, such as "2026-01-31T10:11:12Z", in the form of OFX. A time that
/// does not exist and a zone that OFX cannot hold are left out, and the date is kept. To be asked
/// first: the objects misread some zones.
bool MendDate(const DoubtfulValue& value, MendedValue& out);
/// The same for a time without a date.
bool MendTime(const DoubtfulValue& value, MendedValue& out);
/// Takes a date of zeros, and a word for no date, as absent.
bool MendNoDate(const DoubtfulValue& value, MendedValue& out);

}  // namespace krofx::internal

#endif  // KROFX_READER_DATES_DATES_H_
