// Overwriting of memory that held secrets (sign-on text, passwords) before it is given back.

#ifndef KROFX_CORE_INTERNAL_WIPE_H_
#define KROFX_CORE_INTERNAL_WIPE_H_

#include <cstddef>

#include "krofx/core/export.h"

namespace krofx::internal {

/// Fills `size` bytes with zero in a way that no optimiser removes. Null with size 0 is allowed.
KROFX_API void Wipe(void* block, std::size_t size) noexcept;

/// Overwrites and then returns a block of Allocate; null is allowed.
KROFX_API void WipeAndFree(void* block, std::size_t size) noexcept;

/// Called after each Wipe of this thread, with the block still allocated. For tests.
using WipeObserver = void (*)(const void* block, std::size_t size);

/// Sets this thread's observer; null takes it away.
KROFX_API void SetWipeObserver(WipeObserver observer) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_WIPE_H_
