// Overwrites memory that held secrets (sign-on text, passwords) before it is freed.

#ifndef KROFX_CORE_INTERNAL_WIPE_H_
#define KROFX_CORE_INTERNAL_WIPE_H_

#include <cstddef>

#include "krofx/core/export.h"

namespace krofx::internal {

/// Fills `size` bytes with zeros in a way that the optimiser does not remove. Null with size 0 is
/// allowed.
KROFX_API void Wipe(void* block, std::size_t size) noexcept;

/// Overwrites and then frees a block of Allocate; null is allowed.
KROFX_API void WipeAndFree(void* block, std::size_t size) noexcept;

/// Called after each Wipe of this thread, with the block still allocated. For tests.
using WipeObserver = void (*)(const void* block, std::size_t size);

/// Sets this thread's observer; null removes it.
KROFX_API void SetWipeObserver(WipeObserver observer) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_WIPE_H_
