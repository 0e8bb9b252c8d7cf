// The owning half of ChildSlot.

#include "krofx/model/internal/child_slot.h"

namespace krofx::internal {

void ChildSlot::Set(KRDataObj* child) {
  const bool owned = (m_bits & kBorrowed) == 0;
  KRDataObj* old = Get();
  m_bits = reinterpret_cast<std::uintptr_t>(child);
  if (owned && old != child) delete old;
}

}  // namespace krofx::internal
