// Days as arguments: dates, and spans back from today.

#ifndef KROFX_COMMAND_COMMAND_LINE_DAYS_H_
#define KROFX_COMMAND_COMMAND_LINE_DAYS_H_

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace krofx::command {

/// @return the day that it is where the user is.
std::chrono::year_month_day Today();

/// The word for the day that it is.
inline constexpr std::string_view kToday = "today";

/// Reads a day: 2026-01-31, 20260131, today, or -30d, -4w, -6m, -1y for so many days, weeks, months
/// or years before today. A month that lacks the day counts to its last one.
/// @return nothing for any other text, and for a day that does not exist.
std::optional<std::chrono::year_month_day> ParseDay(std::string_view text,
                                                    std::chrono::year_month_day today = Today());

/// @return the day as 2026-01-31.
std::string TextOf(std::chrono::year_month_day day);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_COMMAND_LINE_DAYS_H_
