// A block of memory that a value makes at first use: the text of an amount, the binary form of a
// date. Such a block is a convenience and no part of the value, so copying a value leaves it
// behind.

#ifndef KROFX_VALUES_INTERNAL_LAZY_BLOCK_H_
#define KROFX_VALUES_INTERNAL_LAZY_BLOCK_H_

#include <cstddef>

#include "krofx/core/export.h"
#include "krofx/core/memory.h"

namespace krofx::internal {

/// Owns one block or none. A copy starts with none, and assignment leaves both sides' blocks alone.
class KROFX_API LazyBlock {
 public:
  /// Starts with no block.
  constexpr LazyBlock() noexcept = default;
  /// Starts with no block, whatever the other has.
  constexpr LazyBlock(const LazyBlock&) noexcept {}
  /// Keeps its own block.
  LazyBlock& operator=(const LazyBlock&) noexcept { return *this; }
  ~LazyBlock() { Release(); }

  /// The block, made zero-filled with `size` bytes if there is none yet. Stays owned here. Null
  /// when memory is exhausted; the thread's fire alarm is raised then.
  void* Ensure(std::size_t size) noexcept { return m_block != nullptr ? m_block : Make(size); }

  /// The block, or null when none was made.
  void* Get() const noexcept { return m_block; }

  /// Frees the block.
  void Release() noexcept {
    if (m_block != nullptr) {
      Free(m_block);
      m_block = nullptr;
    }
  }

 private:
  void* Make(std::size_t size) noexcept;

  void* m_block = nullptr;
};

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_LAZY_BLOCK_H_
