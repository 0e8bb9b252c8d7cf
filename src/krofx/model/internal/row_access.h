// What the walks over an aggregate's table ask of its rows.

#ifndef KROFX_MODEL_INTERNAL_ROW_ACCESS_H_
#define KROFX_MODEL_INTERNAL_ROW_ACCESS_H_

#include "krofx/model/internal/aggregate.h"

namespace krofx::internal {

// The members of a const object, for walks that only read.
inline void* MemberOfConst(const Row& row, const KRDataObj& object) {
  return row.member(const_cast<KRDataObj&>(object));
}

inline bool IsArray(const Row& row) { return row.array != nullptr; }

inline ChildSlot& SlotOf(const Row& row, const KRDataObj& object) {
  return *static_cast<ChildSlot*>(MemberOfConst(row, object));
}

// A host's subclass may bring valid tags of its own, and then the bits are not in our order.
inline bool UsesOwnTable(const KRDataObj& object, const AggregateTable& table) {
  KRArrayOfTags tags;
  return object.GetArrayOfValidTags(tags) != 0 && tags.table == table.valid.table &&
         tags.count == table.valid.count;
}

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_ROW_ACCESS_H_
