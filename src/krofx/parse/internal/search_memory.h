// What an engine remembers of its searches, so that hostile text cannot make it search the same
// stretch again and again.
//
// Several rules of the tokenizer look ahead without a limit: for the end of a CDATA section, for
// the end tag of an unknown aggregate, for the next '<' after a header line. In hostile text each
// of them would scan to the end at every step, and the time would grow with the square of the
// length. Each search here uses what the last one found where that is enough, with the same result.

#ifndef KROFX_PARSE_INTERNAL_SEARCH_MEMORY_H_
#define KROFX_PARSE_INTERNAL_SEARCH_MEMORY_H_

#include <limits>

#include "krofx/core/types.h"
#include "krofx/parse/internal/end_tag_index.h"

namespace krofx::internal {

/// The last search for one character: there is none from `from` up to, and not including, `at`.
struct LastSearch {
  s32 from = 0;
  s32 at = -1;
  bool found = false;

  /// Finds `character` from `position` on.
  /// @param place takes its position, or that of the text's end.
  /// @return whether it was found.
  template <class Text>
  bool Find(const Text& text, s32 position, char character, s32& place) {
    if (position < from || position > at) {
      found = text.Find(position, character, at);
      from = position;
    }
    place = at;
    return found;
  }
};

/// The memory of one engine.
struct SearchMemory {
  /// No CDATA section from this position on has an end.
  s32 noCDATAEndFrom = std::numeric_limits<s32>::max();
  /// Whether a skip has found no end tag.
  bool noEndTag = false;
  /// Filled when a skip finds no end tag for the first time.
  EndTagIndex endTags;

  LastSearch lineFeed;
  LastSearch carriageReturn;
  LastSearch colon;
  LastSearch tagOpen;
  LastSearch tagClose;

  /// The text that the results are about.
  const char* bytes = nullptr;
  s32 size = 0;

  /// Forgets everything when the text is not the same as before.
  void KeepOnlyFor(const char* currentBytes, s32 currentSize) {
    if (bytes == currentBytes && size == currentSize) return;
    *this = SearchMemory();
    bytes = currentBytes;
    size = currentSize;
  }
};

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_SEARCH_MEMORY_H_
