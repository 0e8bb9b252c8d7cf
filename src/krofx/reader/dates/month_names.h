// The names of months and days, for dates that are written with them.

#ifndef KROFX_READER_DATES_MONTH_NAMES_H_
#define KROFX_READER_DATES_MONTH_NAMES_H_

#include <string_view>

#include "krofx/core/types.h"

namespace krofx::internal {

/// The month that a word names, in one of the languages of Western Europe and without regard to
/// case and accents: its name, or the beginning of it, of three letters at least.
/// @return 1 to 12; 0 when the word names none, or begins the names of several.
u32 MonthOf(std::string_view word);

/// @return whether a word is the English name of a day of the week, or its first three letters.
bool IsWeekday(std::string_view word);

/// A letter of such a name without its accent.
/// @return the letter; '?' for any other character.
char WithoutAccent(char32_t c);

}  // namespace krofx::internal

#endif  // KROFX_READER_DATES_MONTH_NAMES_H_
