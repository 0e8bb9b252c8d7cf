// Text from a file, made fit for a terminal and for JSON.
//
// OFX texts are bytes of Windows code page 1252, by their header, or UTF-8, by bad habit. Both come
// out as valid UTF-8. Control characters, which can take over a terminal, and the marks that turn
// the direction of writing, which can make a text read as another, become the replacement
// character. All output passes through here.

#ifndef KROFX_COMMAND_OUTPUT_SAFE_TEXT_H_
#define KROFX_COMMAND_OUTPUT_SAFE_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace krofx::command {

/// @return whether a text is of printable ASCII alone, so that it is harmless as it is and each of
///         its bytes takes a column.
bool IsPlainText(std::string_view bytes);

/// @return the text as harmless UTF-8. Line ends stay, as line feeds; a tab becomes a blank.
std::string SafeText(std::string_view bytes);

/// The same on one line: line ends become blanks.
std::string SafeLine(std::string_view bytes);

/// Columns of a terminal that a text of valid UTF-8 takes: two for each wide character, such as
/// those of Chinese and Japanese, and none for a mark that goes onto the one before it.
std::size_t DisplayWidth(std::string_view text);

/// @return the start of a text of valid UTF-8 that takes so many columns, with "..." after it when
///         there is more.
std::string Shortened(std::string_view text, std::size_t columns);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_SAFE_TEXT_H_
