// The index from a tag to its row in a constant tag table.
//
// Tables are short, but every tag of a parse is looked up in one, so each generated table has a
// perfect hash: a look-up is one multiplication, one byte of an array and one comparison.

#ifndef KROFX_MODEL_INTERNAL_TAG_INDEX_H_
#define KROFX_MODEL_INTERNAL_TAG_INDEX_H_

#include "krofx/model/data_object.h"

namespace krofx::internal {

/// The perfect hash of one tag table. `positions[(tag * multiplier) >> shift]` (in 32 bits) is the
/// position of the tag's first row, or kNoRow.
struct TagIndex {
  static constexpr u8 kNoRow = 0xff;

  const KRTagTableEntry* table;  ///< The table that this index belongs to.
  const u8* positions;           ///< 2^(32 - shift) positions.
  u32 multiplier;
  u8 shift;

  /// @return the position of the first row of `tag`, -1 when the table has none.
  int Find(KRTagID tag) const {
    const u8 position = positions[static_cast<u32>(tag * multiplier) >> shift];
    return position != kNoRow && table[position].tag == tag ? position : -1;
  }
};

/// Position of the first row of `tag` that applies to `version`, -1 when there is none. Uses the
/// array's index when it has one that belongs to its table.
inline int FindTagRow(const KRArrayOfTags& tags, KRTagID tag, u16 version) {
  int position = 0;
  if (tags.index != nullptr && tags.index->table == tags.table) {
    position = tags.index->Find(tag);
    if (position < 0) return -1;
  }
  for (; position < tags.count; ++position) {
    const KRTagTableEntry& row = tags.table[position];
    if (row.tag == tag && (row.versions & version) != 0) return position;
  }
  return -1;
}

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_TAG_INDEX_H_
