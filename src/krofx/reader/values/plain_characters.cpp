// Characters that look alike, made one.

#include "krofx/reader/values/plain_characters.h"

#include <algorithm>
#include <iterator>

#include "krofx/reader/characters/charset.h"
#include "krofx/values/internal/keyword_table.h"

namespace krofx::internal {

namespace {

constexpr std::u32string_view kBlanks =
    U"\t\n\v\f\r\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A"
    U"\u202F\u205F\u3000";
constexpr std::u32string_view kDashes = U"\u00AD\u2010\u2011\u2012\u2013\u2014\u2212\uFE63\uFF0D";
constexpr std::u32string_view kApostrophes = U"`\u00B4\u2018\u2019\u02BC";
constexpr std::u32string_view kNoWidth = U"\u200B\u200C\u200D\u200E\u200F\u2060\uFEFF";

bool IsOneOf(char32_t c, std::u32string_view characters) {
  return characters.find(c) != std::u32string_view::npos;
}

}  // namespace

PlainCharacters::PlainCharacters(std::string_view text, const Charset& charset)
    : m_tooLong(text.size() > kMost) {
  m_places[0] = 0;
  if (m_tooLong) return;
  for (std::size_t at = 0; at < text.size();) {
    char32_t c;
    const std::size_t place = at;
    at += charset.Decode(text.substr(at), c);
    if (IsOneOf(c, kNoWidth)) continue;
    m_characters[m_count] = IsOneOf(c, kBlanks)        ? U' '
                            : IsOneOf(c, kDashes)      ? U'-'
                            : IsOneOf(c, kApostrophes) ? U'\''
                                                       : c;
    m_places[m_count++] = static_cast<u8>(place);
  }
  m_places[m_count] = static_cast<u8>(text.size());
}

bool IsWordForNothing(std::string_view text) {
  constexpr std::string_view kWords[] = {"none", "null", "(null)", "nil",      "nan",
                                         "n/a",  "#n/a", "na",     "undefined"};
  return std::any_of(std::begin(kWords), std::end(kWords),
                     [text](std::string_view word) { return EqualsWithoutCase(text, word); });
}

}  // namespace krofx::internal
