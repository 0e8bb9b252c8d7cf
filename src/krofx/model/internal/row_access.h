// Helpers of the walks over an aggregate's table.

#ifndef KROFX_MODEL_INTERNAL_ROW_ACCESS_H_
#define KROFX_MODEL_INTERNAL_ROW_ACCESS_H_

#include <cstddef>

#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/presence_bits.h"

namespace krofx::internal {

// The address of a row's member in a const object, for walks that only read.
inline void* MemberOfConst(const Row& row, const KRDataObj& object) {
  return row.member(const_cast<KRDataObj&>(object));
}

// How far a row's member is from the start of an object. It is the same for all objects of a class.
inline std::ptrdiff_t OffsetIn(const KRDataObj& object, const Row& row) {
  return static_cast<const char*>(MemberOfConst(row, object)) -
         reinterpret_cast<const char*>(&object);
}

inline bool IsArray(const Row& row) { return row.array != nullptr; }

inline ChildSlot& SlotOf(const Row& row, const KRDataObj& object) {
  return *static_cast<ChildSlot*>(MemberOfConst(row, object));
}

// Room for the slots of any table: there are no more rows than presence bits.
using LeadingSlots = ChildSlot * [PresenceBits::kCount];

// Whether the object's valid tags are those of the table. A host's subclass may give others, and
// then the presence bits are not in the order of the table's rows.
inline bool UsesOwnTable(const KRDataObj& object, const AggregateTable& table) {
  KRArrayOfTags tags;
  return object.GetArrayOfValidTags(tags) != 0 && tags.table == table.valid.table &&
         tags.count == table.valid.count;
}

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_ROW_ACCESS_H_
