// The allocation functions over malloc, with a per-thread failure plan for tests.

#include "krofx/core/memory.h"

#include <cstdlib>

#include "krofx/core/internal/failed_allocations.h"
#include "krofx/core/internal/object_pool.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KROFX_POOLS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KROFX_POOLS 0
#endif
#endif
#ifndef KROFX_POOLS
#define KROFX_POOLS 1
#endif

namespace krofx::internal {

namespace {

struct FailurePlan {
  std::size_t count = 0;
  std::size_t failAt = 0;
  bool andAllLater = false;
};

// Read at each allocation, so it must be accessible without a call.
[[gnu::tls_model("initial-exec")]] constinit thread_local FailurePlan plan;
[[gnu::tls_model("initial-exec")]] constinit thread_local std::size_t failed = 0;

// Counts an allocation that gave nothing.
void* Counted(void* block) noexcept {
  if (block == nullptr) ++failed;
  return block;
}

}  // namespace

std::size_t FailedAllocations() noexcept { return failed; }

bool AllocationMustFail() noexcept {
  ++plan.count;
  if (plan.failAt == 0) return false;
  const bool mustFail = plan.andAllLater ? plan.count >= plan.failAt : plan.count == plan.failAt;
  if (mustFail) ++failed;
  return mustFail;
}

void* Allocate(std::size_t size) noexcept {
  return AllocationMustFail() ? nullptr : Counted(std::malloc(size));
}

void* Reallocate(void* block, std::size_t size) noexcept {
  return AllocationMustFail() ? nullptr : Counted(std::realloc(block, size));
}

void Free(void* block) noexcept { std::free(block); }

namespace {

// A sanitizer sees the use of a destroyed object only if its memory was freed by the system
// allocator.
bool IsPooled(std::size_t size) { return KROFX_POOLS != 0 && size <= kMaxPooled; }

}  // namespace

void* AllocateSized(std::size_t size) noexcept {
  if (!IsPooled(size)) return Allocate(size);
  return AllocationMustFail() ? nullptr : PoolAllocate(size);
}

void FreeSized(void* block, std::size_t size) noexcept {
  if (!IsPooled(size)) {
    Free(block);
  } else if (block != nullptr) {
    PoolFree(block, size);
  }
}

void AllocationFailure::FailAt(std::size_t nth, bool andAllLater) noexcept {
  plan = FailurePlan{0, nth, andAllLater};
}

std::size_t AllocationFailure::Count() noexcept { return plan.count; }

}  // namespace krofx::internal
