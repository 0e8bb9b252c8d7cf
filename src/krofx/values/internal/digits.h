// Reading and writing short runs of decimal digits: the fields of dates and times.

#ifndef KROFX_VALUES_INTERNAL_DIGITS_H_
#define KROFX_VALUES_INTERNAL_DIGITS_H_

#include <cstddef>

#include "krofx/core/types.h"

namespace krofx::internal {

/// 1 for '0' to '9', independent of the locale.
constexpr bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

/// Reads an unsigned number of up to 5 digits; characters after the fifth are not looked at.
///
/// @param text the digits; needs no terminator.
/// @param length number of characters at `text`.
/// @param value receives the number, modulo 65536; left alone on failure.
/// @param exactDigits when above 0, the number of digits that must have been read.
/// @param scaleDigits when above the number of digits read, the value is multiplied by 10 for each
///        missing one: with 3, the text 5 is 500.
/// @return whether every character read was a digit and the count was as asked.
constexpr bool ReadDigits(char const* text, std::size_t length, u16& value, s16 exactDigits,
                          s16 scaleDigits) noexcept {
  constexpr std::size_t kMostDigits = 5;
  int const count = static_cast<int>(length < kMostDigits ? length : kMostDigits);
  u32 number = 0;
  for (int i = 0; i < count; ++i) {
    if (!IsDigit(text[i])) return false;
    number = number * 10 + static_cast<u32>(text[i] - '0');
  }
  if (exactDigits > 0 && count != exactDigits) return false;
  for (int i = count; i < scaleDigits; ++i) number *= 10;
  value = static_cast<u16>(number);
  return true;
}

/// Writes `value` with at least `width` digits, zeros in front, and gives the place after them. No
/// terminator is written; `out` has room for 10 characters or `width`, whichever is more.
constexpr char* WriteDigits(char* out, u32 value, int width) noexcept {
  int count = 1;
  for (u32 rest = value / 10; rest != 0; rest /= 10) ++count;
  if (count < width) count = width;
  for (int i = count - 1; i >= 0; --i) {
    out[i] = static_cast<char>('0' + value % 10);
    value /= 10;
  }
  return out + count;
}

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_DIGITS_H_
