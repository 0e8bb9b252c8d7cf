// The tags that a text repeats, looked up once.
//
// A statement says the same dozen tags thousands of times. The memo keeps the dictionary's answer
// for names of up to 16 characters, found by the name's own bytes: two words say all of a name.

#ifndef KROFX_PARSE_TAG_MEMO_H_
#define KROFX_PARSE_TAG_MEMO_H_

#include <cstdint>
#include <cstring>

#include "krofx/core/tag_dictionary.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// Remembers exact look-ups in one dictionary. It is filled by what it is asked for, and small
/// enough to be made anew for each parse.
class TagMemo {
 public:
  /// The entry of a name; null when the dictionary has none.
  const KRTagDictionaryEntry* Find(TagDictionary& dictionary, const char* name, u16 length) {
    if (length > 16) return LookUp(dictionary, name, length);
    std::uint64_t head;
    std::uint64_t tail;
    Load(name, length, head, tail);
    Place& place = m_places[((head ^ tail) * 0x9e3779b97f4a7c15U) >> 56];
    if (place.entry == nullptr || place.head != head || place.tail != tail ||
        place.length != length) {
      const KRTagDictionaryEntry* entry = LookUp(dictionary, name, length);
      if (entry == nullptr) return nullptr;
      place = {head, tail, entry, length};
    }
    return place.entry;
  }

  /// Forgets all, for another dictionary.
  void Clear() { *this = TagMemo(); }

 private:
  struct Place {
    std::uint64_t head = 0;
    std::uint64_t tail = 0;
    const KRTagDictionaryEntry* entry = nullptr;
    u16 length = 0;
  };

  static const KRTagDictionaryEntry* LookUp(TagDictionary& dictionary, const char* name,
                                            u16 length) {
    KRTagID id;
    return dictionary.GetTagID(name, length, &id, KRCaseType_Exact);
  }

  // All of a name in two words: overlapping ones from its ends, so nothing beyond it is read.
  static void Load(const char* name, u16 length, std::uint64_t& head, std::uint64_t& tail) {
    head = tail = 0;
    if (length >= 8) {
      std::memcpy(&head, name, 8);
      std::memcpy(&tail, name + length - 8, 8);
    } else if (length >= 4) {
      std::memcpy(&head, name, 4);
      std::memcpy(&tail, name + length - 4, 4);
    } else if (length >= 2) {
      std::memcpy(&head, name, 2);
      std::memcpy(&tail, name + length - 2, 2);
    } else if (length == 1) {
      head = static_cast<unsigned char>(*name);
    }
  }

  Place m_places[256] = {};
};

}  // namespace krofx::internal

#endif  // KROFX_PARSE_TAG_MEMO_H_
