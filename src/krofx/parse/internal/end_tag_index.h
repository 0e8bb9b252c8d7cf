// The places of the end tags of a text, by name.
//
// An unknown start tag is skipped up to its end tag, which may not exist. To find that out takes a
// scan to the end of the text, and a text of nothing but unknown start tags would cost one scan for
// each. So the first scan that finds nothing lists all end tags from there on, sorted by name, and
// the list is searched for each later start tag.

#ifndef KROFX_PARSE_INTERNAL_END_TAG_INDEX_H_
#define KROFX_PARSE_INTERNAL_END_TAG_INDEX_H_

#include <algorithm>
#include <cstddef>

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// @return the capital form of an ASCII letter; any other character as it is.
inline char CapitalLetter(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                              : character;
}

/// A tag's name in a text.
struct TagName {
  s32 start;   ///< Position of its first character.
  u16 length;  ///< Number of its characters.
};

/// Orders names by length, then without regard to case.
/// @return a number below 0, 0 for the same name, or a number above 0.
template <class Text>
int CompareNames(const Text& text, const TagName& left, const TagName& right) {
  if (left.length != right.length) return left.length < right.length ? -1 : 1;
  for (s32 i = 0; i < left.length; ++i) {
    const char a = CapitalLetter(text.At(left.start + i));
    const char b = CapitalLetter(text.At(right.start + i));
    if (a != b) return a < b ? -1 : 1;
  }
  return 0;
}

/// The end tags of a text from some place on. A copy is empty at first: it can be made again from
/// the text.
class KROFX_API EndTagIndex {
 public:
  EndTagIndex() = default;
  EndTagIndex(const EndTagIndex&) {}
  EndTagIndex& operator=(const EndTagIndex& other) {
    if (this != &other) Drop();
    return *this;
  }
  ~EndTagIndex() { Drop(); }

  /// @return whether the list is complete and can be searched.
  bool IsReady() const { return m_ready; }
  /// Empties the list.
  void Drop();
  /// Appends the name of an end tag.
  /// @return false when memory is exhausted; the caller must then drop the list.
  bool Append(TagName name);

  /// Sorts the list, which can be searched from then on.
  template <class Text>
  void Complete(const Text& text) {
    std::sort(m_names, m_names + m_count, Before(text));
    m_ready = true;
  }

  /// @return whether an end tag of the same name follows `name` in the text.
  template <class Text>
  bool HasAfter(const Text& text, TagName name) const {
    const TagName* begin = m_names;
    const TagName* end = begin + m_count;
    const TagName* next = std::upper_bound(begin, end, name, Before(text));
    return next != end && CompareNames(text, name, *next) == 0;
  }

 private:
  template <class Text>
  static auto Before(const Text& text) {
    return [&text](const TagName& left, const TagName& right) {
      const int order = CompareNames(text, left, right);
      return order != 0 ? order < 0 : left.start < right.start;
    };
  }

  TagName* m_names = nullptr;
  std::size_t m_count = 0;
  std::size_t m_capacity = 0;
  bool m_ready = false;
};

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_END_TAG_INDEX_H_
