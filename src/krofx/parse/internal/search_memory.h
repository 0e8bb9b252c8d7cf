// What an engine remembers of its searches, so that hostile text cannot make it search the same
// stretch again and again.
//
// Several rules of the tokenizer look ahead without a limit: for the end of a CDATA section, for
// the end tag of an unknown aggregate, for the next '<' behind a header line. Text made for it
// turns each of them into a scan to the end at every step, which squares the time. Each search here
// answers from what the last one found where that settles the question, with the same result.

#ifndef KROFX_PARSE_INTERNAL_SEARCH_MEMORY_H_
#define KROFX_PARSE_INTERNAL_SEARCH_MEMORY_H_

#include <limits>

#include "krofx/core/types.h"
#include "krofx/parse/internal/end_tag_index.h"

namespace krofx::internal {

/// The last search for one character: none stands from `from` up to `at`.
struct LastSearch {
  s32 from = 0;
  s32 at = -1;
  bool found = false;

  /// Finds `character` from `position` on: its place, or that of the text's end.
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
  /// From here on no CDATA section has an end.
  s32 noCDATAEndFrom = std::numeric_limits<s32>::max();
  /// Made when the first skip has found no end tag.
  EndTagIndex endTags;

  LastSearch lineFeed;
  LastSearch carriageReturn;
  LastSearch colon;
  LastSearch tagOpen;
  LastSearch tagClose;

  /// What the memory was gathered from.
  const char* bytes = nullptr;
  s32 size = 0;

  /// Forgets all when the text is no longer the one it was.
  void KeepOnlyFor(const char* currentBytes, s32 currentSize) {
    if (bytes == currentBytes && size == currentSize) return;
    *this = SearchMemory();
    bytes = currentBytes;
    size = currentSize;
  }
};

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_SEARCH_MEMORY_H_
