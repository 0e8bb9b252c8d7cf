// A block of memory that a value makes at first use: the text of an amount, the binary form of a
// date. The block is not part of the value, so copying the value does not copy it.

#ifndef KROFX_VALUES_INTERNAL_LAZY_BLOCK_H_
#define KROFX_VALUES_INTERNAL_LAZY_BLOCK_H_

#include <cstddef>

#include "krofx/core/export.h"
#include "krofx/core/memory.h"

namespace krofx::internal {

/// Owns one block or none. A copy starts with none, and assignment leaves the blocks of both
/// objects alone.
class KROFX_API LazyBlock {
 public:
  /// Starts with no block.
  constexpr LazyBlock() noexcept = default;
  /// Starts with no block, whatever the other has.
  constexpr LazyBlock(const LazyBlock&) noexcept {}
  /// Keeps its own block.
  LazyBlock& operator=(const LazyBlock&) noexcept { return *this; }
  ~LazyBlock() { Release(); }

  /// Gets the block; if there is none yet, makes one of `size` bytes, filled with zeros.
  /// @return the block, owned by this object; null when memory is exhausted, and then the thread's
  ///         fire alarm is raised.
  void* Ensure(std::size_t size) noexcept { return m_block != nullptr ? m_block : Make(size); }

  /// @return the block, or null when none was made.
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
