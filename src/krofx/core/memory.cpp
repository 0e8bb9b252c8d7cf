// The allocation seam over malloc, with a per-thread failure plan for tests.

#include "krofx/core/memory.h"

#include <cstdlib>

namespace krofx::internal {

namespace {

struct FailurePlan {
  std::size_t count = 0;
  std::size_t failAt = 0;
  bool andAllLater = false;
};

thread_local FailurePlan plan;

}  // namespace

bool AllocationMustFail() noexcept {
  ++plan.count;
  if (plan.failAt == 0) return false;
  return plan.andAllLater ? plan.count >= plan.failAt : plan.count == plan.failAt;
}

void* Allocate(std::size_t size) noexcept {
  return AllocationMustFail() ? nullptr : std::malloc(size);
}

void* Reallocate(void* block, std::size_t size) noexcept {
  return AllocationMustFail() ? nullptr : std::realloc(block, size);
}

void Free(void* block) noexcept { std::free(block); }

void AllocationFailure::FailAt(std::size_t nth, bool andAllLater) noexcept {
  plan = FailurePlan{0, nth, andAllLater};
}

std::size_t AllocationFailure::Count() noexcept { return plan.count; }

}  // namespace krofx::internal
