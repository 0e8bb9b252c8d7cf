// Reads days, and counts back from today.

#include "command_line/days.h"

#include <charconv>
#include <cstdio>
#include <ctime>

namespace krofx::command {

namespace {

using std::chrono::year_month_day;

// More than any file goes back, and few enough for years to stay in their range.
constexpr int kMostBack = 9999;
constexpr int kFirstYear = 1;

std::optional<int> Number(std::string_view text) {
  int number = 0;
  const char* const end = text.data() + text.size();
  if (text.empty() || text.front() < '0' || text.front() > '9') return std::nullopt;
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

// A month can be too short for the day that was counted to.
year_month_day InMonth(year_month_day day) {
  return day.ok() ? day : year_month_day(day.year() / day.month() / std::chrono::last);
}

std::optional<year_month_day> ParseBack(std::string_view text, year_month_day today) {
  const std::optional<int> count = Number(text.substr(0, text.size() - 1));
  if (!count || *count > kMostBack) return std::nullopt;
  year_month_day day = today;
  switch (text.back()) {
    case 'd':
      day = std::chrono::sys_days(today) - std::chrono::days(*count);
      break;
    case 'w':
      day = std::chrono::sys_days(today) - std::chrono::weeks(*count);
      break;
    case 'm':
      day = InMonth(today - std::chrono::months(*count));
      break;
    case 'y':
      day = InMonth(today - std::chrono::years(*count));
      break;
    default:
      return std::nullopt;
  }
  return int(day.year()) >= kFirstYear ? std::optional(day) : std::nullopt;
}

}  // namespace

year_month_day Today() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  ::localtime_r(&now, &parts);
  constexpr int kYearZero = 1900;
  return std::chrono::year(parts.tm_year + kYearZero) /
         std::chrono::month(static_cast<unsigned>(parts.tm_mon + 1)) /
         std::chrono::day(static_cast<unsigned>(parts.tm_mday));
}

std::optional<year_month_day> ParseDay(std::string_view text, year_month_day today) {
  if (text == kToday) return today;
  if (text.size() > 2 && text.front() == '-') return ParseBack(text.substr(1), today);
  std::string digits(text);
  if (text.size() == 10 && text[4] == '-' && text[7] == '-') std::erase(digits, '-');
  if (digits.size() != 8) return std::nullopt;
  const std::string_view view = digits;
  const std::optional<int> year = Number(view.substr(0, 4));
  const std::optional<int> month = Number(view.substr(4, 2));
  const std::optional<int> day = Number(view.substr(6));
  if (!year || !month || !day || *year < kFirstYear) return std::nullopt;
  const year_month_day date(std::chrono::year(*year),
                            std::chrono::month(static_cast<unsigned>(*month)),
                            std::chrono::day(static_cast<unsigned>(*day)));
  return date.ok() ? std::optional(date) : std::nullopt;
}

std::string TextOf(year_month_day day) {
  char text[16];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", int(day.year()), unsigned(day.month()),
                unsigned(day.day()));
  return text;
}

}  // namespace krofx::command
