// How text is laid out on standard output: for the terminal that it is on, or in full.

#ifndef KROFX_COMMAND_OUTPUT_TEXT_FORM_H_
#define KROFX_COMMAND_OUTPUT_TEXT_FORM_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace krofx::command {

/// How text is laid out.
struct TextForm {
  std::size_t columns = 0;  ///< The width that lines must fit into; 0 for no limit.
  bool color = false;       ///< Whether negative amounts are red.
  bool detailed = false;    ///< Whether tables have the columns too that matter to few.
};

/// @param wide lifts the limit of a terminal, and asks for details.
/// @return the form for standard output: that of its terminal, or without limits and colours when
///         it is none. NO_COLOR in the environment turns colours off.
TextForm FormOfStandardOutput(bool wide);

/// @return a text of valid UTF-8 in at most so many columns: one that is longer ends in an
///         ellipsis.
std::string Cut(std::string_view text, std::size_t columns);

/// @return the lines of a text of valid UTF-8, each of at most so many columns. It is broken at
///         blanks where it can be. There is always a line; 0 columns is no limit.
std::vector<std::string> Wrapped(std::string_view text, std::size_t columns);

/// @return the text as it is, or red when the form has colours and the text is a negative number.
std::string Colored(std::string_view text, bool isNegative, const TextForm& form);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_TEXT_FORM_H_
