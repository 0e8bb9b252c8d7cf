// The name of a tag as two machine words, so that a name is compared without a loop over its
// characters.

#ifndef KROFX_PARSE_INTERNAL_TAG_KEY_H_
#define KROFX_PARSE_INTERNAL_TAG_KEY_H_

#include <cstdint>
#include <cstring>

#include "krofx/core/internal/byte_search.h"
#include "krofx/core/tag_dictionary.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// A name of up to 15 characters with the '>' after it: sixteen bytes, zero after the '>'.
struct TagKey {
  /// Bytes that are read for a key, whatever the name's length.
  static constexpr int kBytes = 16;

  std::uint64_t head = 0;
  std::uint64_t tail = 0;

  /// The key of the empty name.
  TagKey() = default;
  /// Reads the kBytes bytes at `name`, of which the first `length` are the name.
  TagKey(const char* name, int length) {
    static constexpr unsigned char kKeep[2 * kBytes] = {255, 255, 255, 255, 255, 255, 255, 255,
                                                        255, 255, 255, 255, 255, 255, 255, 255};
    const unsigned char* keep = kKeep + kBytes - length;
    head = Load(name) & Load(keep);
    tail = Load(name + 8) & Load(keep + 8);
  }

  /// @return all bits of the first `length` bytes.
  static TagKey Keep(int length) {
    constexpr char kAll[kBytes] = {'\xff', '\xff', '\xff', '\xff', '\xff', '\xff', '\xff', '\xff',
                                   '\xff', '\xff', '\xff', '\xff', '\xff', '\xff', '\xff', '\xff'};
    return TagKey(kAll, length);
  }

  /// @return whether the kBytes bytes at `text` equal the key in all bits of `keep`.
  bool IsAt(const char* text, const TagKey& keep) const {
    return (((Load(text) ^ head) & keep.head) | ((Load(text + 8) ^ tail) & keep.tail)) == 0;
  }

  bool operator==(const TagKey& other) const { return head == other.head && tail == other.tail; }

  /// @return a hash. Its highest bits are spread best.
  std::uint64_t Hash() const { return head * 0x9e3779b97f4a7c15U ^ tail * 0xc2b2ae3d27d4eb4fU; }

  /// @return where the first '>' of the kBytes bytes at `name` is; kBytes when there is none.
  static int LengthAt(const char* name) {
    int at = 0;
    int place = 0;
    do {
      place = ByteBlock(name + at).Equal('>').First();
      at += place;
    } while (place == ByteBlock::kSize && at < kBytes);
    return at;
  }

 private:
  static std::uint64_t Load(const void* bytes) {
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
  }
};

/// Looks up, in exactly these letters, the name of capitals, digits and points that begins at
/// `name`. A '>' must follow it at once, before `end`.
/// @param length takes the length of the name.
/// @return the dictionary's entry; null when there is no such name, or when the dictionary does not
///         have it.
inline const KRTagDictionaryEntry* LookUpName(TagDictionary& dictionary, const char* name,
                                              const char* end, u16& length) {
  constexpr std::ptrdiff_t kLongestName = 64;
  const auto isNameCharacter = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '.' && c <= '9' && c != '/');
  };
  const char* const last = end - name > kLongestName ? name + kLongestName : end;
  const char* at = name;
  while (at != last && isNameCharacter(*at)) ++at;
  if (at == last || *at != '>' || at == name) return nullptr;
  length = static_cast<u16>(at - name);
  KRTagID id;
  return dictionary.GetTagID(name, length, &id, KRCaseType_Exact);
}

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_TAG_KEY_H_
