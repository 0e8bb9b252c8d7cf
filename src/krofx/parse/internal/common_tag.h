// The shapes that nearly every tag of real OFX text has, read in one pass:
//
//   <NAME>value   up to the next '<'
//   <NAME>        before another tag
//   </NAME>
//
// where NAME is of capitals, digits and points, '>' follows it at once, and no comment or CDATA
// section follows the tag. Anything else is left to the scanner of items, which has all rules. For
// these shapes the two give the same result.

#ifndef KROFX_PARSE_INTERNAL_COMMON_TAG_H_
#define KROFX_PARSE_INTERNAL_COMMON_TAG_H_

#include <cstddef>

#include "krofx/core/internal/byte_search.h"
#include "krofx/core/types.h"
#include "krofx/parse/internal/tag_key.h"
#include "krofx/parse/internal/text_source.h"

namespace krofx::internal {

/// A tag of a common shape. Positions are those of the text.
struct CommonTag {
  bool isEnd = false;      ///< An end tag.
  bool isElement = false;  ///< A value follows.
  bool hasMacros = false;  ///< The value holds a '&'.
  u16 nameLength = 0;
  s32 name = 0;      ///< First character of the name.
  s32 afterTag = 0;  ///< After the '>'.
  s32 value = 0;     ///< First character of the value.
  s32 valueEnd = 0;  ///< After its last character that is not white space.
  s32 next = 0;      ///< The '<' after the value.
};

/// Reads the tag that begins, after any white space, at `position`.
/// @return the dictionary's entry for its name; null when the tag has none of the common shapes or
///         the dictionary does not have it.
inline const KRTagDictionaryEntry* ReadCommonTag(const PlainText& text, s32 position,
                                                 TagDictionary& dictionary, CommonTag& tag) {
  const char* const bytes = text.Bytes();
  const char* const end = bytes + text.Size();
  // Room for the shortest tag and the character after it.
  constexpr std::ptrdiff_t kLeast = 4;
  if (position < 0 || end - bytes - position < kLeast) return nullptr;
  const char* at = bytes + position;
  while (at != end && IsWhite(*at)) ++at;
  if (end - at < kLeast || *at != '<') return nullptr;
  ++at;
  tag.isEnd = *at == '/';
  if (tag.isEnd) ++at;
  tag.name = static_cast<s32>(at - bytes);
  const KRTagDictionaryEntry* entry = LookUpName(dictionary, at, end, tag.nameLength);
  if (entry == nullptr) return nullptr;
  at += tag.nameLength + 1;
  tag.afterTag = static_cast<s32>(at - bytes);
  tag.isElement = false;
  if (tag.isEnd) return entry;

  while (at != end && IsWhite(*at)) ++at;
  if (end - at < 2 || *at == '\0') return nullptr;
  if (*at == '<') {
    // A CDATA section or comment needs the scanner, and one may follow the white space.
    return at[1] != '!' && !IsWhite(at[1]) ? entry : nullptr;
  }
  const char* const value = at;
  tag.hasMacros = false;
  const char* const stop = FindValueEnd(value, end, tag.hasMacros);
  if (stop == end || *stop == '\0') return nullptr;
  const char* last = stop;
  while (IsWhite(last[-1])) --last;
  if (last - value > KRString::kMaxLength) return nullptr;
  tag.isElement = true;
  tag.value = static_cast<s32>(value - bytes);
  tag.valueEnd = static_cast<s32>(last - bytes);
  tag.next = static_cast<s32>(stop - bytes);
  return entry;
}

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_COMMON_TAG_H_
