// The list of EndTagIndex, which grows.

#include "krofx/parse/internal/end_tag_index.h"

namespace krofx::internal {

void EndTagIndex::Drop() {
  Free(m_names);
  m_names = nullptr;
  m_count = 0;
  m_capacity = 0;
  m_ready = false;
}

bool EndTagIndex::Append(TagName name) {
  if (m_count == m_capacity) {
    const std::size_t capacity = m_capacity == 0 ? 64 : m_capacity * 2;
    void* grown = Reallocate(m_names, capacity * sizeof(TagName));
    if (grown == nullptr) return false;
    m_names = static_cast<TagName*>(grown);
    m_capacity = capacity;
  }
  m_names[m_count++] = name;
  return true;
}

}  // namespace krofx::internal
