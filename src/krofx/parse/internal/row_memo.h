// The tags that a text repeats, found by the bytes of the text.
//
// A statement repeats the same dozen tags of the same class thousands of times, nearly always in
// the same order. The memo keeps all that is known of a tag: its entry of the dictionary, the row
// of the object's table that it fills, the versions of that row, and where the member is. Each tag
// keeps which one came after it, so most tags are found by one comparison with the text.

#ifndef KROFX_PARSE_INTERNAL_ROW_MEMO_H_
#define KROFX_PARSE_INTERNAL_ROW_MEMO_H_

#include <cstddef>
#include <cstdint>

#include "krofx/core/tag_dictionary.h"
#include "krofx/core/types.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/parse/internal/tag_key.h"

namespace krofx::internal {

/// A tag as it is in the text, and what it means in objects of one class.
struct KnownTag {
  TagKey key;                                   ///< What follows the '<', with the '>'.
  TagKey keep;                                  ///< All bits of the key's characters.
  const AggregateTable* table = nullptr;        ///< Of the object.
  const KRTagDictionaryEntry* entry = nullptr;  ///< Null in a free place.
  KnownTag* next = nullptr;                     ///< The tag that came after this one last.
  std::ptrdiff_t offset = 0;                    ///< From the object to the row's member.
  u16 versions = 0;                             ///< The message-set versions that have the row.
  u8 position = 0;                              ///< Of the row in the table.
  u8 length = 0;                                ///< Characters between '<' and '>'.
  bool isEnd = false;                           ///< An end tag, which has no row.
  bool isFigure = false;                        ///< The row has an amount, a number or a date.

  const Row& RowOf() const { return table->rows[position]; }
  /// @return whether it is the tag at `text`, after the '<', where TagKey::kBytes bytes can be
  ///         read.
  bool IsAt(const char* text) const { return key.IsAt(text, keep); }
};

/// Remembers tags. Find adds those that it does not have yet.
class RowMemo {
 public:
  /// Finds the tag at `text`, after the '<', where there are TagKey::kBytes bytes before `end`.
  /// @param object an object of which `table` is the table.
  /// @return the tag; null when it does not have the common form, when the dictionary does not have
  ///         it, and when the table has no row for it.
  KnownTag* Find(TagDictionary& dictionary, KRDataObj& object, const AggregateTable* table,
                 const char* text, const char* end) {
    const int length = TagKey::LengthAt(text);
    if (length == TagKey::kBytes) return nullptr;
    const TagKey key(text, length + 1);
    const std::uint64_t hash = key.Hash() + reinterpret_cast<std::uintptr_t>(table) * kTableFactor;
    const auto index = static_cast<std::size_t>(hash >> (64 - kHashBits));
    // Two tags with the same hash also share the next place.
    KnownTag* place = &m_places[index];
    if (place->key == key && place->table == table) return place;
    KnownTag* const other = &m_places[index ^ 1];
    if (other->key == key && other->table == table) return other;
    if (place->entry != nullptr) place = other;
    return Remember(dictionary, object, table, text, end, *place) ? place : nullptr;
  }

 private:
  static constexpr int kHashBits = 7;
  static constexpr std::uint64_t kTableFactor = 0xff51afd7ed558ccdU;

  static bool Remember(TagDictionary& dictionary, KRDataObj& object, const AggregateTable* table,
                       const char* text, const char* end, KnownTag& place);

  KnownTag m_places[1u << kHashBits];
};

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_ROW_MEMO_H_
