// Which of the names that there are a misspelled one was meant to be.

#ifndef KROFX_COMMAND_COMMAND_LINE_NEAREST_NAME_H_
#define KROFX_COMMAND_COMMAND_LINE_NEAREST_NAME_H_

#include <span>
#include <string>
#include <string_view>

namespace krofx::command {

/// @return how many single changes make one text into the other: a character that is put in, left
///         out or replaced, or two neighbours that are exchanged. Large and small letters count as
///         the same.
std::size_t EditDistance(std::string_view left, std::string_view right);

/// The known name that is most like the given one.
/// @return empty when none is like it: more than a third of its characters differ.
std::string FindNearest(std::string_view given, std::span<const std::string_view> known);
/// The same for names that are held as strings.
std::string FindNearest(std::string_view given, std::span<const std::string> known);

/// @return what a message says after a name that is not known: "; did you mean NAME?", or nothing.
template <class Names>
std::string SuggestNearest(std::string_view given, const Names& known) {
  const std::string nearest = FindNearest(given, known);
  return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

}  // namespace krofx::command

#endif  // KROFX_COMMAND_COMMAND_LINE_NEAREST_NAME_H_
