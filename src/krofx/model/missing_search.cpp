// Walking a tree down to what is incomplete in it.

#include "krofx/model/internal/missing_search.h"

#include "krofx/model/internal/child_walk.h"
#include "krofx/model/internal/row_access.h"

namespace krofx::internal {

KRDataObj* MissingSearch::Find(KRDataObj& object) {
  const AggregateTable* const table = ObjectAccess::PlainTableOf(object, kPlainCheck);
  if (table != nullptr) return FindBy(*table, object);
  if (!object.AllRequiredPresent()) return &object;
  KRDataObj* found = nullptr;
  ForEachChild(object, [&](KRDataObj& child) {
    found = Find(child);
    return found == nullptr;
  });
  return found;
}

// As above, for an object that is checked by its table.
KRDataObj* MissingSearch::FindBy(const AggregateTable& table, KRDataObj& object) {
  if (!m_required.AllPresentIn(object, table)) return &object;
  KRDataObj* found = nullptr;
  LeadingSlots leading;
  if (table.leadingSlots != 0) table.slots(object, leading);
  for (u8 i = 0; i < table.leadingSlots && found == nullptr; ++i) {
    if (KRDataObj* const child = leading[i]->Get()) found = Find(*child);
  }
  for (u8 i = table.leadingSlots; i < table.childRowCount && found == nullptr; ++i) {
    const Row& row = table.rows[table.childRows[i]];
    const void* const member = row.member(object);
    if (!IsArray(row)) {
      KRDataObj* const child = static_cast<const ChildSlot*>(member)->Get();
      if (child != nullptr) found = Find(*child);
      continue;
    }
    const u16 entries = row.array->entries(member);
    for (u16 index = 0; index < entries && found == nullptr; ++index) {
      if (KRDataObj* const child = row.array->get(member, index)) found = Find(*child);
    }
  }
  return found;
}

}  // namespace krofx::internal
