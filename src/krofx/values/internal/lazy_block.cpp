// The slow path of LazyBlock: the first use.

#include "krofx/values/internal/lazy_block.h"

#include <cstring>

#include "krofx/core/thread.h"

namespace krofx::internal {

void* LazyBlock::Make(std::size_t size) noexcept {
  m_block = Allocate(size);
  if (m_block == nullptr) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return nullptr;
  }
  std::memset(m_block, 0, size);
  return m_block;
}

}  // namespace krofx::internal
