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

/// @return what is said of an option whose text is no date.
std::string DescribeNoDate(const std::string& option, const std::string& given);

/// The day that "today", "-30d", "-4w", "-6m" or "-1y" is, as 2026-01-31: see ParseDay.
/// @return any other text unchanged.
std::string ResolveDay(const std::string& text);

/// @return whether the text can be the number of a check: letters and digits, and more than zeros.
bool IsCheckNumber(const std::string& text);

/// @return whether two numbers of checks have an order: both end in digits, with the same before
///         them.
bool AreOfOneSeries(const std::string& first, const std::string& last);

/// @return whether the first of two numbers of one series of checks is the higher one.
bool IsHigherNumber(const std::string& first, const std::string& second);

/// @return whether the first of two dates in the form of OFX is later than the second; one without
///         a time of day is its midnight.
bool IsLater(const std::string& first, const std::string& second);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_ARGUMENTS_H_
