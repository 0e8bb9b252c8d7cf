// Numbers with an exponent, as programs write very small and very large ones: "1.05E1", "0E-8".

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "krofx/reader/numbers/numbers.h"
#include "krofx/reader/values/digit_cursor.h"

namespace krofx::internal {

namespace {

// The digits of a number, and where its point is among them.
struct Digits {
  static constexpr std::size_t kMost = 40;

  char text[kMost];
  std::size_t count = 0;
  std::ptrdiff_t point = 0;  // Digits before it; below 0 or beyond the digits for zeros between.

  bool Take(DigitCursor& cursor) {
    const std::size_t digits = cursor.CountDigits();
    if (count + digits > kMost) return false;
    const std::string_view rest = cursor.Rest();
    std::copy_n(rest.begin(), digits, text + count);
    count += digits;
    cursor.SkipDigits();
    return true;
  }
};

// The longest number that is written out, with its zeros.
constexpr std::ptrdiff_t kMostPlaces = 40;

}  // namespace

bool MendExponent(const DoubtfulValue& value, MendedValue& out) {
  DigitCursor cursor(value.text);
  const bool negative = cursor.Take('-');
  if (!negative) cursor.Take('+');
  Digits digits;
  if (!digits.Take(cursor)) return false;
  digits.point = static_cast<std::ptrdiff_t>(digits.count);
  const bool point = cursor.Take('.');
  if (point && !digits.Take(cursor)) return false;
  if (digits.count == 0 || !(cursor.Take('E') || cursor.Take('e'))) return false;
  const bool smaller = cursor.Take('-');
  const bool sign = smaller || cursor.Take('+');
  // The E of "1E3" may be anything.
  if (!sign && !point) return false;
  const std::size_t places = cursor.CountDigits();
  if (places == 0 || places > 3) return false;
  u32 exponent;
  cursor.TakeDigits(places, exponent);
  if (!cursor.AtEnd()) return false;
  digits.point += smaller ? -static_cast<std::ptrdiff_t>(exponent) : std::ptrdiff_t{exponent};
  if (digits.point < -kMostPlaces || digits.point > kMostPlaces) return false;

  char bytes[2 * kMostPlaces + Digits::kMost + 4];
  char* end = bytes;
  if (negative) *end++ = '-';
  if (digits.point <= 0) *end++ = '0';
  const auto count = static_cast<std::ptrdiff_t>(digits.count);
  const std::ptrdiff_t last = std::max(count, digits.point);
  for (std::ptrdiff_t at = std::min<std::ptrdiff_t>(digits.point, 0); at < last; ++at) {
    if (at == digits.point) *end++ = '.';
    *end++ = at < 0 || at >= count ? '0' : digits.text[at];
  }
  return out.Take(MendingKind::kNumberExponent, {bytes, static_cast<std::size_t>(end - bytes)});
}

}  // namespace krofx::internal
