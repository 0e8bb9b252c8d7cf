// The tags that a text repeats, looked up once.
//
// A statement says the same dozen tags thousands of times. The memo keeps the dictionary's answer
// for names of up to 15 characters and finds it again by the sixteen bytes that stand in the text:
// the name and the '>' behind it. A name that is found this way needs no look at its characters.

#ifndef KROFX_PARSE_TAG_MEMO_H_
#define KROFX_PARSE_TAG_MEMO_H_

#include <cstdint>
#include <cstring>

#include "krofx/core/tag_dictionary.h"
#include "krofx/core/types.h"
#include "krofx/parse/byte_search.h"

namespace krofx::internal {

/// Remembers exact look-ups in one dictionary. It is filled by what it is asked for, and small
/// enough to be made anew for each parse.
class TagMemo {
 public:
  /// The entry of the name that begins at `name` and ends, before `end`, in a '>' at once; `length`
  /// takes its length. Null when no such name stands there, or when the dictionary has it not.
  const KRTagDictionaryEntry* Find(TagDictionary& dictionary, const char* name, const char* end,
                                   u16& length) {
    if (end - name < kMostBytes) return LookUp(dictionary, name, end, length);
    const int closing = FirstClosing(name);
    if (closing == kMostBytes) return LookUp(dictionary, name, end, length);
    const Key key(name, closing);
    Place* place = &m_places[key.Hash()];
    if (!(place->key == key)) {
      // Two names that meet share the next place as well.
      place = m_places + (key.Hash() ^ 1);
      if (!(place->key == key)) return Remember(dictionary, name, end, key, length);
    }
    length = static_cast<u16>(closing);
    return place->entry;
  }

  /// Forgets all, for another dictionary.
  void Clear() { *this = TagMemo(); }

 private:
  static constexpr int kMostBytes = 16;
  static constexpr std::ptrdiff_t kLongestName = 64;
  static constexpr int kHashBits = 8;

  // The bytes of a name, zero behind it.
  struct Key {
    std::uint64_t head = 0;
    std::uint64_t tail = 0;

    Key() = default;
    Key(const char* name, int length) {
      static constexpr unsigned char kKeep[2 * kMostBytes] = {
          255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};
      const unsigned char* keep = kKeep + kMostBytes - length;
      head = Load(name) & Load(keep);
      tail = Load(name + 8) & Load(keep + 8);
    }
    bool operator==(const Key& other) const { return head == other.head && tail == other.tail; }
    std::uint64_t Hash() const {
      return (head * 0x9e3779b97f4a7c15U ^ tail * 0xc2b2ae3d27d4eb4fU) >> (64 - kHashBits);
    }
    static std::uint64_t Load(const void* bytes) {
      std::uint64_t word;
      std::memcpy(&word, bytes, sizeof word);
      return word;
    }
  };

  // A free place has the key of the empty name, and no entry.
  struct Place {
    Key key;
    const KRTagDictionaryEntry* entry = nullptr;
  };

  // Where the first '>' of the bytes stands, kMostBytes when there is none.
  static int FirstClosing(const char* name) {
    int at = 0;
    int place = 0;
    do {
      place = ByteBlock(name + at).Equal('>').First();
      at += place;
    } while (place == ByteBlock::kSize && at < kMostBytes);
    return at;
  }

  // Whether a character may stand in a name that is looked up here; any other is left to the
  // scanner of items.
  static bool IsNameCharacter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '.' && c <= '9' && c != '/');
  }

  static const KRTagDictionaryEntry* LookUp(TagDictionary& dictionary, const char* name,
                                            const char* end, u16& length) {
    const char* const last = end - name > kLongestName ? name + kLongestName : end;
    const char* at = name;
    while (at != last && IsNameCharacter(*at)) ++at;
    if (at == last || *at != '>' || at == name) return nullptr;
    length = static_cast<u16>(at - name);
    KRTagID id;
    return dictionary.GetTagID(name, length, &id, KRCaseType_Exact);
  }

  const KRTagDictionaryEntry* Remember(TagDictionary& dictionary, const char* name, const char* end,
                                       const Key& key, u16& length) {
    const KRTagDictionaryEntry* entry = LookUp(dictionary, name, end, length);
    if (entry == nullptr) return nullptr;
    Place* place = &m_places[key.Hash()];
    if (place->entry != nullptr) place = m_places + (key.Hash() ^ 1);
    *place = {key, entry};
    return entry;
  }

  Place m_places[1u << kHashBits] = {};
};

}  // namespace krofx::internal

#endif  // KROFX_PARSE_TAG_MEMO_H_
