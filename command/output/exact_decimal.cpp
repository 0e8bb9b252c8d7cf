// Arithmetic in 128 bits, each step of which notices when the result does not fit.

#include "output/exact_decimal.h"

#include <algorithm>

namespace krofx::command {

std::optional<ExactDecimal> ExactDecimal::Parse(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  ExactDecimal number;
  bool hasDigit = false;
  bool hasPoint = false;
  for (const char character : text) {
    if (character == '.' && !hasPoint) {
      hasPoint = true;
      continue;
    }
    if (character < '0' || character > '9' ||
        __builtin_mul_overflow(number.m_value, 10, &number.m_value) ||
        __builtin_add_overflow(number.m_value, character - '0', &number.m_value)) {
      return std::nullopt;
    }
    hasDigit = true;
    number.m_places += hasPoint ? 1 : 0;
  }
  if (!hasDigit) return std::nullopt;
  if (negative) number.m_value = -number.m_value;
  return number;
}

bool ExactDecimal::ScaleTo(unsigned places) {
  Wide scaled = m_value;
  for (unsigned have = m_places; have < places; ++have) {
    if (__builtin_mul_overflow(scaled, 10, &scaled)) return false;
  }
  m_value = scaled;
  m_places = std::max(m_places, places);
  return true;
}

bool ExactDecimal::Add(ExactDecimal other) {
  ExactDecimal sum = *this;
  if (!sum.ScaleTo(other.m_places) || !other.ScaleTo(sum.m_places) ||
      __builtin_add_overflow(sum.m_value, other.m_value, &sum.m_value)) {
    return false;
  }
  *this = sum;
  return true;
}

int ExactDecimal::Compare(const ExactDecimal& other) const {
  ExactDecimal left = *this;
  ExactDecimal right = other;
  // The one that does not fit at the places of the other is farther from zero than that one.
  if (!left.ScaleTo(right.m_places)) return m_value < 0 ? -1 : 1;
  if (!right.ScaleTo(left.m_places)) return other.m_value < 0 ? 1 : -1;
  return left.m_value < right.m_value ? -1 : left.m_value > right.m_value ? 1 : 0;
}

void ExactDecimal::Widen(unsigned places) { ScaleTo(places); }

std::string ExactDecimal::Text() const {
  Wide left = m_value;
  std::string digits;
  for (unsigned place = 0; left != 0 || place <= m_places; ++place) {
    if (place == m_places && place > 0) digits += '.';
    const int digit = static_cast<int>(left % 10);
    digits += static_cast<char>('0' + (digit < 0 ? -digit : digit));
    left /= 10;
  }
  if (m_value < 0) digits += '-';
  std::reverse(digits.begin(), digits.end());
  return digits;
}

}  // namespace krofx::command
