// The one seam through which the library takes and returns memory.
//
// Containers call Allocate, Reallocate and Free; classes that are made with new derive from
// HeapObject, whose operators go the same way. A test can therefore count allocations and make the
// N-th one fail, for every N, without touching the process's allocator.

#ifndef KROFX_CORE_MEMORY_H_
#define KROFX_CORE_MEMORY_H_

#include <cstddef>
#include <new>

#include "krofx/core/export.h"

namespace krofx::internal {

/// Gives `size` bytes, uninitialised, or null when memory is exhausted.
KROFX_API void* Allocate(std::size_t size) noexcept;

/// Resizes a block of Allocate (null makes a new one). Null on failure, and then the old block
/// is unchanged and still the caller's.
KROFX_API void* Reallocate(void* block, std::size_t size) noexcept;

/// Counts one allocation that does not go through the functions here, and says whether it must
/// fail.
KROFX_API bool AllocationMustFail() noexcept;

/// Gives a block of Allocate or Reallocate back; null is allowed.
KROFX_API void Free(void* block) noexcept;

/// Gives `size` bytes for an object or a short text, uninitialised, or null when memory is
/// exhausted. Small blocks come from the pools of object_pool.h.
KROFX_API void* AllocateSized(std::size_t size) noexcept;

/// Gives a block back that AllocateSized gave for `size` bytes; null is allowed.
KROFX_API void FreeSized(void* block, std::size_t size) noexcept;

/// Makes a plain cell with new, so that a host may hand in and delete such cells itself; null when
/// memory is exhausted.
template <class T>
T* NewCell() noexcept {
  return AllocationMustFail() ? nullptr : new (std::nothrow) T{};
}

/// Makes the library's allocations fail, for tests. Per thread.
class KROFX_API AllocationFailure {
 public:
  /// From now on the `nth` allocation of this thread (1 is the next) gives null, and with
  /// `andAllLater` every later one too. 0 switches failing off.
  static void FailAt(std::size_t nth, bool andAllLater = false) noexcept;
  /// Allocations asked for by this thread since the last FailAt.
  static std::size_t Count() noexcept;
};

/// Base of every class that the library makes with new: routes new and delete through the seam. A
/// failed new gives null instead of throwing.
struct KROFX_API HeapObject {
  static void* operator new(std::size_t size) noexcept { return AllocateSized(size); }
  static void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return AllocateSized(size);
  }
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* object, std::size_t size) noexcept { FreeSized(object, size); }
  // Only for constructors that throw, which none does.
  static void operator delete(void*, const std::nothrow_t&) noexcept {}
  static void operator delete(void*, void*) noexcept {}
};

}  // namespace krofx::internal

#endif  // KROFX_CORE_MEMORY_H_
