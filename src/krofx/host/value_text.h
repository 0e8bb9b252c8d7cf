// A short text that is a value of its own: what the conversions of amounts and dates give.

#ifndef KROFX_HOST_VALUE_TEXT_H_
#define KROFX_HOST_VALUE_TEXT_H_

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "krofx/core/lifetime.h"

namespace krofx {

/// A text of at most 95 characters, held in the object itself: it takes no memory, and nothing of
/// it dangles while the object is there. Empty for a value that has no text.
class ValueText {
 public:
  static constexpr std::size_t kSize = 96;

  /// An empty text.
  ValueText() = default;
  /// A copy of a text; what is beyond the room is cut.
  explicit ValueText(std::string_view text)
      : m_length(text.size() < kSize ? text.size() : kSize - 1) {
    if (m_length > 0) std::memcpy(m_text, text.data(), m_length);
  }

  /// @return the text, with a terminator; it lives as long as this object.
  const char* c_str() const KROFX_LIFETIME_BOUND { return m_text; }
  std::size_t size() const { return m_length; }
  bool empty() const { return m_length == 0; }
  operator std::string_view() const KROFX_LIFETIME_BOUND { return {m_text, m_length}; }
  /// A copy, in memory of the caller's.
  operator std::string() const { return std::string(m_text, m_length); }

  friend bool operator==(const ValueText& a, std::string_view b) {
    return std::string_view(a.m_text, a.m_length) == b;
  }
  template <class Stream>
  requires requires(Stream& stream, std::string_view text) { stream << text; }
  friend Stream& operator<<(Stream& stream, const ValueText& text) {
    stream << std::string_view(text.m_text, text.m_length);
    return stream;
  }

 private:
  std::size_t m_length = 0;
  char m_text[kSize] = {};
};

}  // namespace krofx

#endif  // KROFX_HOST_VALUE_TEXT_H_
