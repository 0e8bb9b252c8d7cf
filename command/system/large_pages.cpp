// Takes a block of the heap, gives the advice about it, and gives it back: what is taken next is
// cut from it.

#include "system/large_pages.h"

#include <malloc.h>
#include <sys/mman.h>

#include <cstdlib>

namespace krofx::command {

void PreferLargePages(std::size_t bytes) {
#if defined(__GLIBC__) && defined(MADV_HUGEPAGE)
  constexpr std::size_t kLargePage = 2 * 1024 * 1024;
  constexpr int kMostInHeap = 32 * 1024 * 1024;
  const std::size_t size = (bytes + kLargePage - 1) / kLargePage * kLargePage;
  if (size > kMostInHeap) return;
  // Large blocks come from the heap as well, and it keeps what is given back.
  ::mallopt(M_MMAP_THRESHOLD, kMostInHeap);
  ::mallopt(M_TRIM_THRESHOLD, 2 * kMostInHeap);
  void* const block = std::aligned_alloc(kLargePage, size);
  if (block == nullptr) return;
  ::madvise(block, size, MADV_HUGEPAGE);
  std::free(block);
#else
  static_cast<void>(bytes);
#endif
}

}  // namespace krofx::command
