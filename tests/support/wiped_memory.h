// Records which memory is overwritten before it is freed, for the length of a scope.

#ifndef KROFX_TESTS_SUPPORT_WIPED_MEMORY_H_
#define KROFX_TESTS_SUPPORT_WIPED_MEMORY_H_

#include <algorithm>
#include <cstddef>
#include <vector>

#include "krofx/core/internal/wipe.h"

/// The blocks that this thread overwrote since the object was made.
class WipedMemory {
 public:
  struct Block {
    void const* start;
    std::size_t size;
    bool zero;
  };

  WipedMemory() {
    Blocks().clear();
    krofx::internal::SetWipeObserver([](void const* block, std::size_t size) {
      auto const* bytes = static_cast<char const*>(block);
      bool const zero = std::all_of(bytes, bytes + size, [](char byte) { return byte == 0; });
      Blocks().push_back({block, size, zero});
    });
  }
  ~WipedMemory() { krofx::internal::SetWipeObserver(nullptr); }
  WipedMemory(WipedMemory const&) = delete;
  WipedMemory& operator=(WipedMemory const&) = delete;

  static std::vector<Block>& Blocks() {
    static thread_local std::vector<Block> blocks;
    return blocks;
  }
  /// Whether a block at this place was filled with zero over at least `size` bytes.
  static bool Covers(void const* start, std::size_t size) {
    return std::any_of(Blocks().begin(), Blocks().end(), [=](Block const& block) {
      return block.start == start && block.size >= size && block.zero;
    });
  }
};

#endif  // KROFX_TESTS_SUPPORT_WIPED_MEMORY_H_
