// Reads and writes plain decimals.

#include "krofx/values/internal/plain_decimal.h"

#include <cstring>

#include "krofx/values/internal/decimal_text.h"
#include "krofx/values/precision_integer.h"

namespace krofx::internal {

bool ReadCommonDecimal(const char* text, std::size_t length, PlainDecimal& out) noexcept {
  constexpr std::ptrdiff_t kMostDigits = 18;
  // The characters of a number of 18 digits, with its sign and its point.
  constexpr std::size_t kMostCharacters = 20;
  if (length == 0 || length > kMostCharacters) return false;
  const char* const end = text + length;
  const bool negative = *text == '-';
  const char* const first = negative ? text + 1 : text;
  const char* point = nullptr;
  std::uint64_t magnitude = 0;
  for (const char* at = first; at != end; ++at) {
    const unsigned digit = static_cast<unsigned char>(*at) - unsigned{'0'};
    if (digit < 10) {
      magnitude = magnitude * 10 + digit;
    } else if (*at == '.' && point == nullptr) {
      point = at;
    } else {
      return false;
    }
  }
  const std::ptrdiff_t digits = end - first - (point != nullptr ? 1 : 0);
  if (digits < 1 || digits > kMostDigits) return false;
  out = {static_cast<u32>(magnitude), static_cast<u32>(magnitude >> 32), 0,
         negative ? s16{-1} : s16{1},
         point == nullptr ? u16{0} : static_cast<u16>(end - point - 1)};
  return true;
}

char* WriteDecimal(const PlainDecimal& number, char* out) noexcept {
  char digits[KRPrecisionInteger::kTextSize];
  char* end = digits + sizeof digits;
  const u128 magnitude =
      (u128{number.high} << 64) | (std::uint64_t{number.middle} << 32) | number.low;
  char* const first = WriteDigitsBefore(end, magnitude);

  const bool writable = number.decimals <= KRPrecisionInteger::kMaxDecimals;
  if (writable && number.sign == -1) *out++ = '-';
  if (!writable || first == end) {
    *out++ = '0';
    return out;
  }
  std::ptrdiff_t places = number.decimals;
  while (places > 0 && end[-1] == '0') {
    --end;
    --places;
  }
  const std::ptrdiff_t whole = end - first - places;
  if (whole > 0) {
    std::memcpy(out, first, static_cast<std::size_t>(whole));
    out += whole;
  }
  if (places > 0) {
    *out++ = '.';
    for (std::ptrdiff_t i = whole; i < 0; ++i) *out++ = '0';
    const char* const after = whole > 0 ? first + whole : first;
    std::memcpy(out, after, static_cast<std::size_t>(end - after));
    out += end - after;
  }
  return out;
}

}  // namespace krofx::internal
