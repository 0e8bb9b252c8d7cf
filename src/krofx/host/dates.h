// Dates of OFX as those of <chrono>, in both directions.
//
// A date of OFX without a zone is in GMT. Instants reach beyond 2038, where the count of 32 bits of
// KRDateTimeBase::GetTimeT ends.

#ifndef KROFX_HOST_DATES_H_
#define KROFX_HOST_DATES_H_

#include <chrono>
#include <optional>

#include "krofx/core/export.h"
#include "krofx/host/value_text.h"
#include "krofx/values/date_time.h"

namespace krofx {

/// An instant as precise as OFX has it.
using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

/// The day of a date, as it is written there, whatever its zone.
/// @return nothing for a date that is absent or not valid.
KROFX_API std::optional<std::chrono::year_month_day> ToDay(const KRDateTimeBase& date);
/// The instant of a date, its zone considered.
/// @return nothing for a date that is absent or not valid.
KROFX_API std::optional<Instant> ToInstant(const KRDateTimeBase& date);
/// The text of a date in the form of ISO 8601: "2026-01-31", and with a time, when there is one,
/// "2026-01-31T12:30:00-05:00". The milliseconds are there unless they are zero, the zone if the
/// date has one.
/// @return the text; empty for a date that is absent or not valid.
KROFX_API ValueText ToText(const KRDateTimeBase& date);

/// The text of a day, such as "2026-01-31": ToText(ToDay(date)) leaves out the time of a date.
/// @return the text; empty for no day.
KROFX_API ValueText ToText(const std::optional<std::chrono::year_month_day>& day);

/// @return the date of a day. One of a year below 1 or above 9999, or that the calendar does not
///         have, gives a date that is not valid: IsValidDate is 0, and it is not written.
KROFX_API KRDateTime ToDateTime(std::chrono::year_month_day day);
/// @return the date and time of an instant, in GMT; not valid as above.
KROFX_API KRDateTime ToDateTime(Instant instant);

}  // namespace krofx

#endif  // KROFX_HOST_DATES_H_
