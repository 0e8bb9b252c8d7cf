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

namespace {

bool IsInAnArray(const KRDataObj& parent, const AggregateTable& table, const KRDataObj* child) {
  for (u8 index = 0; index < table.childRowCount; ++index) {
    const Row& row = table.rows[table.childRows[index]];
    if (row.array == nullptr) continue;
    // An array is only looked at, though the operation does not say so.
    const void* const array = row.member(const_cast<KRDataObj&>(parent));
    const u16 entries = row.array->entries(array);
    for (u16 at = 0; at < entries; ++at) {
      if (row.array->get(array, at) == child) return true;
    }
  }
  return false;
}

}  // namespace

bool Holds(const KRDataObj& parent, const KRDataObj* child) {
  constexpr u16 kMost = 0xffff;
  const u16 count = parent.GetNumberOfChildren();
  for (u16 index = 0; index < count; ++index) {
    if (parent.GetChild(index) == child) return true;
  }
  if (count < kMost) return false;
  const AggregateTable* const table = ObjectAccess::TableOf(parent);
  // There may be more children than have a number, which only the arrays of a table show.
  return table == nullptr || IsInAnArray(parent, *table, child);
}

bool Release(KRDataObj& parent, KRDataObj* child) {
  const AggregateTable* const table = ObjectAccess::TableOf(parent);
  if (child == nullptr || table == nullptr) return false;
  for (u8 index = 0; index < table->childRowCount; ++index) {
    const u8 position = table->childRows[index];
    const Row& row = table->rows[position];
    if (row.array != nullptr) continue;
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
