// A position in a short text of digits and signs: the reading of dates, times and zones.

#ifndef KROFX_READER_VALUES_DIGIT_CURSOR_H_
#define KROFX_READER_VALUES_DIGIT_CURSOR_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/types.h"
#include "krofx/values/internal/digits.h"

namespace krofx::internal {

/// Reads a text from the front. What is read is gone.
class DigitCursor {
 public:
  explicit DigitCursor(std::string_view text) : m_rest(text) {}

  bool AtEnd() const { return m_rest.empty(); }
  std::string_view Rest() const { return m_rest; }
  /// @return the next character; 0 at the end.
  char Next() const { return m_rest.empty() ? '\0' : m_rest.front(); }

  /// @return how many digits come next.
  std::size_t CountDigits() const {
    std::size_t count = 0;
    while (count < m_rest.size() && IsDigit(m_rest[count])) ++count;
    return count;
  }
  /// Reads as many digits as there must be.
  /// @param count up to 9, and no more than come next.
  void TakeDigits(std::size_t count, u32& value) {
    value = 0;
    for (std::size_t at = 0; at < count; ++at) {
      value = value * 10 + static_cast<u32>(m_rest[at] - '0');
    }
    m_rest.remove_prefix(count);
  }
  /// Passes over digits.
  void SkipDigits() { m_rest.remove_prefix(CountDigits()); }
  /// Reads a character if it comes next.
  bool Take(char c) {
    if (Next() != c || AtEnd()) return false;
    m_rest.remove_prefix(1);
    return true;
  }
  /// Passes over blanks.
  /// @return whether there were any.
  bool TakeBlanks() {
    const bool any = Next() == ' ';
    while (Take(' ')) {
    }
    return any;
  }
  /// Reads the letters of ASCII that come next.
  std::string_view TakeLetters() {
    std::size_t count = 0;
    while (count < m_rest.size() && IsLetter(m_rest[count])) ++count;
    const std::string_view letters = m_rest.substr(0, count);
    m_rest.remove_prefix(count);
    return letters;
  }

 private:
  static bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

  std::string_view m_rest;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_VALUES_DIGIT_CURSOR_H_
