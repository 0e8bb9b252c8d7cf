// The characters of a short value, with those that look alike made one: what the menders of numbers
// and dates look at instead of bytes of some character set.

#ifndef KROFX_READER_VALUES_PLAIN_CHARACTERS_H_
#define KROFX_READER_VALUES_PLAIN_CHARACTERS_H_

#include <cstddef>
#include <span>
#include <string_view>

#include "krofx/core/types.h"

namespace krofx::internal {

class Charset;

/// The characters of a value. Blanks of every kind are ' ', dashes and minus signs of every kind
/// '-', apostrophes of every kind '\''; characters without a width are not there.
class PlainCharacters {
 public:
  /// A value with more bytes has no characters here.
  static constexpr std::size_t kMost = 120;

  PlainCharacters(std::string_view text, const Charset& charset);

  /// @return whether the value has more than kMost bytes.
  bool IsTooLong() const { return m_tooLong; }
  std::span<const char32_t> All() const { return {m_characters, m_count}; }
  std::size_t size() const { return m_count; }
  char32_t operator[](std::size_t index) const { return m_characters[index]; }
  /// @return where a character begins in the text; the end of the text for the end of the
  ///         characters.
  std::size_t PlaceOf(std::size_t index) const { return m_places[index]; }

 private:
  char32_t m_characters[kMost];
  u8 m_places[kMost + 1];
  std::size_t m_count = 0;
  bool m_tooLong = false;
};

/// @return whether a character is '0' to '9'.
constexpr bool IsPlainDigit(char32_t c) { return c >= '0' && c <= '9'; }

/// @return whether a text is a word that programs write where they have no value: "None", "null",
///         "NaN".
bool IsWordForNothing(std::string_view text);

}  // namespace krofx::internal

#endif  // KROFX_READER_VALUES_PLAIN_CHARACTERS_H_
