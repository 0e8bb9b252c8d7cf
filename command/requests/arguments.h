// What may be given for an amount and for a date: plain forms alone, since a misread amount is
// money.

#ifndef KROFX_COMMAND_REQUESTS_ARGUMENTS_H_
#define KROFX_COMMAND_REQUESTS_ARGUMENTS_H_

#include <string>

namespace krofx::command {

/// What is wrong with an amount of money. Digits are taken, with a point and one or two places
/// after it; signs, commas, blanks and zero are not.
/// @return empty, or what to write instead.
std::string FindAmountProblem(const std::string& text);

/// A date in the form of OFX, YYYYMMDD or YYYYMMDDHHMMSS, from that form or from 2026-01-31.
/// @return empty when the text is no date or names a day that does not exist.
std::string ToOfxDate(const std::string& text);

/// The day that "-30d" (days), "-4w" (weeks) or "-6m" (months) before today is, or "today", in the
/// user's time zone, as 20260131. A month before a day that its month lacks, as "-1m" on March 31,
/// is that month's last day.
/// @return any other text unchanged.
std::string ResolveDay(const std::string& text);

/// The day so many days before one that is given as 20260131, in the same form.
std::string DayBefore(const std::string& day, int days);

/// Whether the first of two numbers of checks is the higher one. Those with other characters than
/// digits have no order.
bool IsHigherNumber(const std::string& first, const std::string& second);

/// Whether the first of two dates in the form of OFX is later than the second; the time of day
/// counts when both have one.
bool IsLater(const std::string& first, const std::string& second);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_ARGUMENTS_H_
