// Asking the tables of aggregates.

#include "krofx/stream/internal/list_elements.h"

#include <cstdio>

#include "krofx/values/utility.h"

namespace krofx::internal {

bool WantedClasses::Has(const KRDataObj& element, KRTagID tag, const KRDataObj& list) const {
  for (const KRTagID wanted : m_tags) {
    if (wanted == tag) return true;
  }
  for (const IsOfClass is : m_elements) {
    if (is(element)) return true;
  }
  for (const IsOfClass is : m_lists) {
    if (is(list)) return true;
  }
  return false;
}

const Row* ListRow(const KRDataObj& parent, KRTagID tag) {
  const AggregateTable* const table = ObjectAccess::TableOf(parent);
  const Row* const row = table == nullptr ? nullptr : FindRow(*table, tag);
  return row != nullptr && row->array != nullptr ? row : nullptr;
}

bool IsInList(KRDataObj& parent, KRTagID tag) {
  if (ListRow(parent, tag) != nullptr) return true;
  return tag != KRTag_SONRS && tag != KRTag_SONRQ && tag != KRTag_SECLIST &&
         WithMessageSet(parent, [](auto&) { return true; });
}

const KRAccount* AccountOf(KRDataObj& object) {
  const AggregateTable* const table = ObjectAccess::TableOf(object);
  if (table == nullptr) return nullptr;
  for (u8 index = 0; index < table->childRowCount; ++index) {
    const u8 position = table->childRows[index];
    const Row& row = table->rows[position];
    const KRTagID tag = table->valid.table[position].tag;
    const bool isOwn =
        tag == KRTag_BANKACCTFROM || tag == KRTag_CCACCTFROM || tag == KRTag_INVACCTFROM;
    if (!isOwn || row.array != nullptr) continue;
    KRDataObj* const child = static_cast<ChildSlot*>(row.member(object))->Get();
    if (const auto* const account = dynamic_cast<const KRAccount*>(child)) return account;
  }
  return nullptr;
}

void AddToStreamPath(KRString& path, KRTagID tag, std::size_t number) {
  if (path.IsEmpty() == 0) path += '/';
  path += KRUtility::TagToString(tag);
  if (number == 0) return;
  char text[24];
  std::snprintf(text, sizeof text, "[%zu]", number);
  path += text;
}

}  // namespace krofx::internal
