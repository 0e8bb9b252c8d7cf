// Reading and writing short runs of decimal digits: the fields of dates and times.

#ifndef KROFX_VALUES_INTERNAL_DIGITS_H_
#define KROFX_VALUES_INTERNAL_DIGITS_H_

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "krofx/core/types.h"

namespace krofx::internal {

/// @return 1 for '0' to '9', independent of the locale.
constexpr bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

/// Reads an unsigned number of up to 5 digits; characters after the fifth are ignored.
///
/// @param text the digits; needs no terminator.
/// @param length number of characters at `text`.
/// @param value receives the number, modulo 65536; unchanged on failure.
/// @param exactDigits when above 0, the number of digits that must have been read.
/// @param scaleDigits when above the number of digits read, the value is multiplied by 10 for each
///        missing one: with 3, the text 5 is 500.
/// @return whether every character read was a digit and their number was `exactDigits`, if that is
///         above 0.
constexpr bool ReadDigits(const char* text, std::size_t length, u16& value, s16 exactDigits,
                          s16 scaleDigits) noexcept {
  constexpr std::size_t kMostDigits = 5;
  const int count = static_cast<int>(length < kMostDigits ? length : kMostDigits);
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

/// Reads eight digits at once, as four numbers of two digits.
/// @return whether all of the eight characters at `text` were digits; if not, `pairs` is unchanged.
inline bool ReadDigitPairs(const char* text, u16 (&pairs)[4]) noexcept {
  constexpr std::uint64_t kZeros = 0x3030303030303030;
  constexpr std::uint64_t kHighHalves = 0xf0f0f0f0f0f0f0f0;
  constexpr std::uint64_t kUpToNine = 0x0606060606060606;
  std::uint64_t word;
  std::memcpy(&word, text, sizeof word);
  // The first character is the lowest byte.
  if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
  if ((word & kHighHalves) != kZeros || ((word + kUpToNine) & kHighHalves) != kZeros) return false;
  word -= kZeros;
  word = word * 10 + (word >> 8);
  for (int i = 0; i < 4; ++i) pairs[i] = static_cast<u16>((word >> (16 * i)) & 0xff);
  return true;
}

/// The numbers 0 to 99 in two digits each.
inline constexpr auto kDigitPairs = [] {
  struct Pairs {
    char digits[100][2] = {};
    constexpr const char* operator[](unsigned value) const { return digits[value]; }
  } pairs;
  for (int i = 0; i < 100; ++i) {
    pairs.digits[i][0] = static_cast<char>('0' + i / 10);
    pairs.digits[i][1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

/// Writes `value` with at least `width` digits, with leading zeros and without a terminator. `out`
/// has room for 10 characters or `width`, whichever is more.
/// @return the place after the digits.
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
