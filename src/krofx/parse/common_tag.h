// The shapes that nearly every tag of real OFX text has, read in one pass:
//
//   <NAME>value   up to the next '<'
//   <NAME>        with another tag behind it
//   </NAME>
//
// with a name of capitals, digits and points that ends at once in '>', and no comment or CDATA
// section behind it. Whatever else stands there is left to the scanner of items, which knows all
// rules; the two answer alike where both answer.

#ifndef KROFX_PARSE_COMMON_TAG_H_
#define KROFX_PARSE_COMMON_TAG_H_

#include <cstddef>

#include "krofx/core/types.h"
#include "krofx/parse/byte_search.h"
#include "krofx/parse/text_source.h"

namespace krofx::internal {

/// The longest name that is read here.
inline constexpr std::ptrdiff_t kLongestName = 64;

/// A tag of a common shape. Positions are those of the text.
struct CommonTag {
  bool isEnd = false;      ///< An end tag.
  bool isElement = false;  ///< A value follows.
  bool hasMacros = false;  ///< The value holds a '&'.
  u16 nameLength = 0;
  s32 name = 0;       ///< First character of the name.
  s32 behindTag = 0;  ///< Behind the '>'.
  s32 value = 0;      ///< First character of the value.
  s32 valueEnd = 0;   ///< Behind its last character that is not white space.
  s32 next = 0;       ///< Where the text behind the value goes on, at a '<'.
};

/// Whether a character may stand in the name of a tag of a common shape.
inline bool IsNameCharacter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= '.' && c <= '9' && c != '/');
}

/// Reads the tag that begins, after white space, at `position`.
/// @return false when it has none of the common shapes.
inline bool ReadCommonTag(const PlainText& text, s32 position, CommonTag& tag) {
  const char* const bytes = text.Bytes();
  const char* const end = bytes + text.Size();
  // Room for the shortest tag and what must be looked at behind it.
  constexpr std::ptrdiff_t kLeast = 4;
  if (position < 0 || end - bytes - position < kLeast) return false;
  const char* at = bytes + position;
  while (at != end && IsWhite(*at)) ++at;
  if (end - at < kLeast || *at != '<') return false;
  ++at;
  tag.isEnd = *at == '/';
  if (tag.isEnd) ++at;
  const char* const name = at;
  // The last character of a text that goes on like this is no name character: it need not be tested
  // for the end at each step.
  const char* const lastNameEnd = end - at > kLongestName ? at + kLongestName : end;
  while (at != lastNameEnd && IsNameCharacter(*at)) ++at;
  if (at == lastNameEnd || *at != '>' || at == name) return false;
  tag.name = static_cast<s32>(name - bytes);
  tag.nameLength = static_cast<u16>(at - name);
  tag.behindTag = static_cast<s32>(++at - bytes);
  tag.isElement = false;
  if (tag.isEnd) return true;

  while (at != end && IsWhite(*at)) ++at;
  if (end - at < 2 || *at == '\0') return false;
  if (*at == '<') {
    // A section or a comment decides differently, and white space may hide either.
    return at[1] != '!' && !IsWhite(at[1]);
  }
  const char* const value = at;
  bool hasMacros = false;
  const char* const stop = FindValueEnd(value, end, hasMacros);
  if (stop == end || *stop == '\0') return false;
  const char* last = stop;
  while (IsWhite(last[-1])) --last;
  if (last - value > KRString::kMaxLength) return false;
  tag.isElement = true;
  tag.hasMacros = hasMacros;
  tag.value = static_cast<s32>(value - bytes);
  tag.valueEnd = static_cast<s32>(last - bytes);
  tag.next = static_cast<s32>(stop - bytes);
  return true;
}

}  // namespace krofx::internal

#endif  // KROFX_PARSE_COMMON_TAG_H_
