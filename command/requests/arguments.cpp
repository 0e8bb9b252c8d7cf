// Tells plain amounts and dates from what could be read in two ways.

#include "requests/arguments.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string_view>

namespace krofx::command {

namespace {

constexpr std::size_t kMostPlaces = 2;
constexpr std::size_t kDayDigits = 8;
constexpr std::size_t kTimeDigits = 14;
// That from which the system counts years.
constexpr int kFirstYear = 1900;

bool AllDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool IsPlainAmount(std::string_view text) {
  const std::size_t point = text.find('.');
  if (point == std::string_view::npos) return AllDigits(text);
  return AllDigits(text.substr(0, point)) && AllDigits(text.substr(point + 1));
}

int NumberAt(std::string_view digits, std::size_t start, std::size_t count) {
  int number = 0;
  for (const char digit : digits.substr(start, count)) number = number * 10 + (digit - '0');
  return number;
}

int DaysOf(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return kDays[month - 1] + (month == 2 && leap ? 1 : 0);
}

bool IsDay(std::string_view digits) {
  const int year = NumberAt(digits, 0, 4);
  const int month = NumberAt(digits, 4, 2);
  const int day = NumberAt(digits, 6, 2);
  return year > 0 && month >= 1 && month <= 12 && day >= 1 && day <= DaysOf(year, month);
}

bool IsTime(std::string_view digits) {
  return NumberAt(digits, 8, 2) < 24 && NumberAt(digits, 10, 2) < 60 &&
         NumberAt(digits, 12, 2) < 60;
}

}  // namespace

std::string FindAmountProblem(const std::string& text) {
  if (!IsPlainAmount(text)) {
    std::string pointed = text;
    std::replace(pointed.begin(), pointed.end(), ',', '.');
    const std::size_t point = pointed.find('.');
    const std::size_t places = point == std::string::npos ? 0 : pointed.size() - point - 1;
    // One comma before cents can mean one thing only; before three digits it can mean thousands.
    if (IsPlainAmount(pointed) && places <= kMostPlaces) return "write " + pointed;
    return "it is not an amount that can be read in one way; write it as 1234.50";
  }
  const std::size_t point = text.find('.');
  if (point != std::string::npos && text.size() - point - 1 > kMostPlaces) {
    return "it has more than two places after the point; write it as 12.50";
  }
  if (text.find_first_not_of("0.") == std::string::npos) return "it must be more than zero";
  return "";
}

std::string ToOfxDate(const std::string& text) {
  std::string digits = text;
  if (text.size() == 10 && text[4] == '-' && text[7] == '-') std::erase(digits, '-');
  const bool hasTime = digits.size() == kTimeDigits;
  if ((digits.size() != kDayDigits && !hasTime) || !AllDigits(digits)) return "";
  return IsDay(digits) && (!hasTime || IsTime(digits)) ? digits : "";
}

std::string ResolveDay(const std::string& text) {
  constexpr std::size_t kMostDigits = 5;
  const bool today = text == "today";
  if (!today && (text.size() < 3 || text.size() > kMostDigits + 2 || text.front() != '-' ||
                 !AllDigits(std::string_view(text).substr(1, text.size() - 2)))) {
    return text;
  }
  const char unit = today ? 'd' : text.back();
  if (unit != 'd' && unit != 'w' && unit != 'm') return text;
  const int count = today ? 0 : NumberAt(text, 1, text.size() - 2);
  const std::time_t now = std::time(nullptr);
  std::tm day{};
  ::localtime_r(&now, &day);
  day.tm_hour = 12;  // Far from the hours that a change of the clock skips or repeats.
  if (unit == 'm') {
    const int months = (day.tm_year + kFirstYear) * 12 + day.tm_mon - count;
    if (months < 12) return text;
    day.tm_year = months / 12 - kFirstYear;
    day.tm_mon = months % 12;
    day.tm_mday = std::min(day.tm_mday, DaysOf(months / 12, months % 12 + 1));
  } else {
    day.tm_mday -= unit == 'w' ? 7 * count : count;
  }
  day.tm_isdst = -1;
  if (std::mktime(&day) == -1) return text;
  char digits[16] = "";
  std::strftime(digits, sizeof digits, "%Y%m%d", &day);
  return digits;
}

std::string DayBefore(const std::string& day, int days) {
  namespace chrono = std::chrono;
  const chrono::year_month_day given{chrono::year(NumberAt(day, 0, 4)),
                                     chrono::month(static_cast<unsigned>(NumberAt(day, 4, 2))),
                                     chrono::day(static_cast<unsigned>(NumberAt(day, 6, 2)))};
  const chrono::year_month_day before{chrono::sys_days(given) - chrono::days(days)};
  char digits[32] = "";
  std::snprintf(digits, sizeof digits, "%04d%02u%02u", static_cast<int>(before.year()),
                static_cast<unsigned>(before.month()), static_cast<unsigned>(before.day()));
  return digits;
}

bool IsHigherNumber(const std::string& first, const std::string& second) {
  if (!AllDigits(first) || !AllDigits(second)) return false;
  const auto plain = [](std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return text;
  };
  const std::string_view left = plain(first);
  const std::string_view right = plain(second);
  return left.size() != right.size() ? left.size() > right.size() : left > right;
}

bool IsLater(const std::string& first, const std::string& second) {
  const std::size_t common = std::min(first.size(), second.size());
  return first.compare(0, common, second, 0, common) > 0;
}

}  // namespace krofx::command
