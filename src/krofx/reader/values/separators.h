// What the signs between the digits of a number mean: which is the decimal sign, and which divide
// thousands.

#ifndef KROFX_READER_VALUES_SEPARATORS_H_
#define KROFX_READER_VALUES_SEPARATORS_H_

#include <cstddef>

#include "krofx/core/types.h"
#include "krofx/reader/values/plain_characters.h"

namespace krofx::internal {

/// What a number looks like.
enum class NumberShape : u8 {
  kNoDigits,   ///< It has none.
  kMalformed,  ///< The signs between its digits make no number, or a comma is outside of them.
  kClear,      ///< One reading.
  kAmbiguous,  ///< One comma or point that can be the decimal sign or divide thousands.
};

/// A number as it is written. Whatever is in front of the digits and after them is not judged.
struct NumberLayout {
  NumberShape shape = NumberShape::kNoDigits;
  std::size_t begin = 0;  ///< The first of its digits, or a decimal sign in front of them.
  std::size_t end = 0;    ///< After the last.
  /// '.' or ',', or 0 for none. Of an ambiguous number: the sign in question.
  char32_t decimal = 0;
  /// The sign between thousands: '.', ',', '\'', ' ', or 0 for none.
  char32_t group = 0;
};

/// Finds out what the signs of a number mean, from the number alone.
NumberLayout FindLayout(const PlainCharacters& text);

}  // namespace krofx::internal

#endif  // KROFX_READER_VALUES_SEPARATORS_H_
