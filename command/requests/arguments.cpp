// Distinguishes plain amounts and dates from what could be read in two ways.

#include "requests/arguments.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "command_line/days.h"

namespace krofx::command {

namespace {

constexpr std::size_t kMostPlaces = 2;
constexpr std::size_t kDayDigits = 8;
constexpr std::size_t kTimeDigits = 14;

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

bool IsTime(std::string_view digits) {
  return NumberAt(digits, 8, 2) < 24 && NumberAt(digits, 10, 2) < 60 &&
         NumberAt(digits, 12, 2) < 60;
}

// What comes before the digits at the end of a check's number.
std::string_view SeriesOf(std::string_view text) {
  return text.substr(0, text.find_last_not_of("0123456789") + 1);
}

}  // namespace

std::string FindAmountProblem(const std::string& text) {
  if (!IsPlainAmount(text)) {
    std::string pointed = text;
    std::replace(pointed.begin(), pointed.end(), ',', '.');
    const std::size_t point = pointed.find('.');
    const std::size_t places = point == std::string::npos ? 0 : pointed.size() - point - 1;
    // One comma before cents can mean one thing only; before three digits it can mean thousands.
    if (IsPlainAmount(pointed) && places <= kMostPlaces) {
      const std::string problem = FindAmountProblem(pointed);
      return problem.empty() ? "write " + pointed : problem;
    }
    return "it is not an amount that can be read in one way; write it as 1234.50";
  }
  const std::size_t point = text.find('.');
  if (point != std::string::npos && text.size() - point - 1 > kMostPlaces) {
    return "it has more than two places after the point; write two, as in 1234.50";
  }
  if (text.find_first_not_of("0.") == std::string::npos) return "it must be more than zero";
  return "";
}

std::string ToOfxDate(const std::string& text) {
  std::string digits = text;
  if (text.size() == 10 && text[4] == '-' && text[7] == '-') std::erase(digits, '-');
  const bool hasTime = digits.size() == kTimeDigits;
  if ((digits.size() != kDayDigits && !hasTime) || !AllDigits(digits)) return "";
  const bool isDay = ParseDay(std::string_view(digits).substr(0, kDayDigits)).has_value();
  return isDay && (!hasTime || IsTime(digits)) ? digits : "";
}

std::string DescribeNoDate(const std::string& option, const std::string& given) {
  return option + " " + given + " is not a date; write it as 2026-01-31";
}

std::string ResolveDay(const std::string& text) {
  if (text != kToday && !text.starts_with('-')) return text;
  const auto day = ParseDay(text);
  return day ? TextOf(*day) : text;
}

bool IsCheckNumber(const std::string& text) {
  const bool plain = std::all_of(text.begin(), text.end(), [](unsigned char character) {
    return character < 0x80 && std::isalnum(character) != 0;
  });
  return plain && text.find_first_not_of('0') != std::string::npos;
}

bool AreOfOneSeries(const std::string& first, const std::string& last) {
  const std::string_view left = SeriesOf(first);
  return left == SeriesOf(last) && left.size() < first.size() && left.size() < last.size();
}

bool IsHigherNumber(const std::string& first, const std::string& second) {
  const auto number = [](std::string_view text) {
    text.remove_prefix(SeriesOf(text).size());
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return text;
  };
  const std::string_view left = number(first);
  const std::string_view right = number(second);
  return left.size() != right.size() ? left.size() > right.size() : left > right;
}

bool IsLater(const std::string& first, const std::string& second) {
  const std::size_t common = std::min(first.size(), second.size());
  const int order = first.compare(0, common, second, 0, common);
  // What only the first one has is its time of day; the other one begins at midnight.
  return order > 0 || (order == 0 && first.find_first_not_of('0', common) != std::string::npos);
}

}  // namespace krofx::command
