// Overwrites memory that held secrets.

#include "krofx/core/internal/wipe.h"

#include <cstring>

#include "krofx/core/memory.h"

namespace krofx::internal {

namespace {
thread_local WipeObserver wipeObserver = nullptr;
}  // namespace

void Wipe(void* block, std::size_t size) noexcept {
  if (size == 0) return;
  explicit_bzero(block, size);
  if (wipeObserver != nullptr) wipeObserver(block, size);
}

void WipeAndFree(void* block, std::size_t size) noexcept {
  if (block == nullptr) return;
  Wipe(block, size);
  Free(block);
}

void SetWipeObserver(WipeObserver observer) noexcept { wipeObserver = observer; }

}  // namespace krofx::internal
