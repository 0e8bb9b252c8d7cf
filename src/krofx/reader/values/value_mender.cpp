// The answer of a value mender.

#include "krofx/reader/values/value_mender.h"

namespace krofx::internal {

bool MendedValue::Take(MendingKind kind, std::string_view text) {
  m_text.Assign(text.data(), static_cast<u16>(text.size()));
  Say(kind);
  return true;
}

bool MendedValue::TakeAsAbsent(MendingKind kind) { return Take(kind, {}); }

void MendedValue::Say(MendingKind kind) {
  for (std::size_t index = 0; index < m_count; ++index) {
    if (m_kinds[index] == kind) return;
  }
  if (m_count < kMostKinds) m_kinds[m_count++] = kind;
}

}  // namespace krofx::internal
