// The names of months and days.

#include "krofx/reader/dates/month_names.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "krofx/values/internal/keyword_table.h"

namespace krofx::internal {

namespace {

constexpr std::size_t kShortest = 3;

// In English, French, German, Spanish, Portuguese, Italian and Dutch, with the short forms that are
// not the beginning of a name.
constexpr std::string_view kMonths[][11] = {
    {"january", "janvier", "januar", "janner", "enero", "janeiro", "gennaio", "januari"},
    {"february", "fevrier", "februar", "febrero", "fevereiro", "febbraio", "februari"},
    {"march", "mars", "marz", "mrz", "marzo", "marco", "maart", "mrt"},
    {"april", "avril", "abril", "aprile"},
    {"may", "mai", "mayo", "maio", "maggio", "mei"},
    {"june", "juin", "juni", "junio", "junho", "giugno"},
    {"july", "juillet", "juli", "julio", "julho", "luglio"},
    {"august", "aout", "agosto", "augustus"},
    {"september", "septembre", "septiembre", "setiembre", "setembro", "settembre"},
    {"october", "octobre", "oktober", "octubre", "outubro", "ottobre"},
    {"november", "novembre", "noviembre", "novembro"},
    {"december", "decembre", "dezember", "diciembre", "dezembro", "dicembre"}};

constexpr std::string_view kDays[] = {"monday", "tuesday",  "wednesday", "thursday",
                                      "friday", "saturday", "sunday"};

bool Begins(std::string_view name, std::string_view word) {
  return EqualsWithoutCase(name.substr(0, word.size()), word);
}

}  // namespace

u32 MonthOf(std::string_view word) {
  if (word.size() < kShortest) return 0;
  u32 found = 0;
  for (u32 month = 0; month < std::size(kMonths); ++month) {
    const auto& names = kMonths[month];
    if (std::none_of(std::begin(names), std::end(names),
                     [word](std::string_view name) { return Begins(name, word); })) {
      continue;
    }
    if (found != 0) return 0;
    found = month + 1;
  }
  return found;
}

bool IsWeekday(std::string_view word) {
  return std::any_of(std::begin(kDays), std::end(kDays), [word](std::string_view day) {
    return EqualsWithoutCase(day, word) || EqualsWithoutCase(day.substr(0, kShortest), word);
  });
}

char WithoutAccent(char32_t c) {
  constexpr std::u32string_view kLetters = U"\u00E4\u00C4\u00E7\u00C7\u00E9\u00C9\u00FB\u00DB";
  constexpr std::string_view kPlain = "aAcCeEuU";
  const std::size_t place = kLetters.find(c);
  return place == std::u32string_view::npos ? '?' : kPlain[place];
}

}  // namespace krofx::internal
