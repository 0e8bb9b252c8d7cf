// Characters in the two forms that OFX texts have: UTF-8 and the code page 1252.

#ifndef KROFX_COMMAND_OUTPUT_CHARACTERS_H_
#define KROFX_COMMAND_OUTPUT_CHARACTERS_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace krofx::command {

/// What takes the place of a character that cannot be shown.
inline constexpr char32_t kReplacementCharacter = 0xFFFD;

/// @return whether the byte continues a character of UTF-8.
inline bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// Takes the first character off a text of UTF-8 that is not empty.
/// @return false, and nothing is taken, when the text does not begin with valid UTF-8.
bool TakeUtf8(std::string_view& text, char32_t& character);
/// @return the position of the first byte that is not UTF-8; npos when all of the text is.
std::size_t FindBadUtf8(std::string_view text);
/// Adds a character to a text of UTF-8.
void AppendUtf8(std::string& text, char32_t character);

/// @return whether the byte is a control character of ASCII, DEL among them.
constexpr bool IsControl(char byte) {
  return static_cast<unsigned char>(byte) < ' ' || byte == '\x7F';
}
/// @return whether a text has control characters of ASCII other than those of `taken`.
bool HasControlCharacter(std::string_view text, std::string_view taken = "");

/// Columns of a terminal that a character takes: 0, 1 or 2.
std::size_t ColumnsOf(char32_t character);

/// @return a character with a capital letter of ASCII made small.
constexpr char LowerAscii(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                              : character;
}
/// @return a text with its capital letters of ASCII made small, and all other bytes as they are:
/// for names
///         that are of ASCII by their nature, such as those of hosts and of kinds of files. A name
///         that only looks like another one stays different from it.
std::string LowerAscii(std::string_view text);

/// @return a text of UTF-8 in small letters, for comparisons of what people write.
std::string FoldCase(std::string_view text);

/// @return the character that a byte of the code page 1252 is.
char32_t FromCodePage1252(unsigned char byte);
/// The byte that a character is in the code page 1252.
/// @return false when the code page lacks the character.
bool ToCodePage1252(char32_t character, char& byte);
/// The bytes of a text of UTF-8 in the code page 1252.
/// @return false when the text is not valid UTF-8 or has a character that the code page lacks.
bool ToCodePage1252(std::string_view text, std::string& bytes);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_CHARACTERS_H_
