// What the owners of objects need to know of their inside.

#include "krofx/host/own.h"

#include "krofx/core/array.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/child_slot.h"

namespace krofx::internal {

KRDataObj* CloneByTable(const KRDataObj& source) {
  ChildSlot slot;
  // What is copied from is not changed, though the operation does not say so.
  if (CopyChild(slot, const_cast<KRDataObj*>(&source)) != 0) return slot.Release();
  const AggregateTable* const table = ObjectAccess::TableOf(source);
  // A list that could not grow has raised no alarm.
  if (table != nullptr && table->create != nullptr) RaiseElementAlarm();
  return nullptr;
}

bool Holds(const KRDataObj& parent, const KRDataObj* child) {
  const u16 count = parent.GetNumberOfChildren();
  for (u16 index = 0; index < count; ++index) {
    if (parent.GetChild(index) == child) return true;
  }
  return false;
}

bool Release(KRDataObj& parent, KRDataObj* child) {
  const AggregateTable* const table = ObjectAccess::TableOf(parent);
  if (child == nullptr || table == nullptr) return false;
  for (u8 index = 0; index < table->childRowCount; ++index) {
    const u8 position = table->childRows[index];
    const Row& row = table->rows[position];
    if (row.create == nullptr || row.array != nullptr) continue;
    auto& slot = *static_cast<ChildSlot*>(row.member(parent));
    if (slot.Get() != child) continue;
    if (slot.IsBorrowed()) return false;
    const KRTagID tag = row.shared ? child->GetType() : table->valid.table[position].tag;
    slot.Release();
    if (parent.IsValidTag(tag) != 0) parent.ClearTag(tag);
    return true;
  }
  return false;
}

}  // namespace krofx::internal
