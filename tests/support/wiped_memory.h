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
    const void* start;
    std::size_t size;
    bool zero;
  };

  WipedMemory() {
    Blocks().clear();
    krofx::internal::SetWipeObserver([](const void* block, std::size_t size) {
      const auto* bytes = static_cast<const char*>(block);
      const bool zero = std::all_of(bytes, bytes + size, [](char byte) { return byte == 0; });
      Blocks().push_back({block, size, zero});
    });
  }
  ~WipedMemory() { krofx::internal::SetWipeObserver(nullptr); }
  WipedMemory(const WipedMemory&) = delete;
  WipedMemory& operator=(const WipedMemory&) = delete;

  static std::vector<Block>& Blocks() {
    static thread_local std::vector<Block> blocks;
    return blocks;
  }
  /// Whether a block at this place was filled with zero over at least `size` bytes.
  static bool Covers(const void* start, std::size_t size) {
    return std::any_of(Blocks().begin(), Blocks().end(), [=](const Block& block) {
      return block.start == start && block.size >= size && block.zero;
    });
  }
};

#endif  // KROFX_TESTS_SUPPORT_WIPED_MEMORY_H_
