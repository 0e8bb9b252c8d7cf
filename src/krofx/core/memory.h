// The functions through which the library allocates and frees all of its memory.
//
// Containers call Allocate, Reallocate and Free. Classes that are made with new derive from
// HeapObject, whose operators use the same functions. A test can therefore count allocations and
// make the N-th one fail, for every N, without replacing the process's allocator.

#ifndef KROFX_CORE_MEMORY_H_
#define KROFX_CORE_MEMORY_H_

#include <cstddef>
#include <new>

#include "krofx/core/export.h"

namespace krofx::internal {

/// Allocates `size` bytes, uninitialised.
/// @return the block; null when memory is exhausted.
KROFX_API void* Allocate(std::size_t size) noexcept;

/// Resizes a block of Allocate; a null `block` makes a new one.
/// @return the block; null when memory is exhausted, and then the old block is unchanged and still
///         the caller's.
KROFX_API void* Reallocate(void* block, std::size_t size) noexcept;

/// Counts one allocation that does not go through the functions here.
/// @return whether the allocation must fail.
KROFX_API bool AllocationMustFail() noexcept;

/// Frees a block of Allocate or Reallocate; null is allowed.
KROFX_API void Free(void* block) noexcept;

/// Allocates `size` bytes for an object or a short text, uninitialised. Small blocks come from the
/// pools of object_pool.h.
/// @return the block; null when memory is exhausted.
KROFX_API void* AllocateSized(std::size_t size) noexcept;

/// Frees a block that AllocateSized returned for `size` bytes; null is allowed.
KROFX_API void FreeSized(void* block, std::size_t size) noexcept;

/// Makes a plain value with the global new, so that a host may pass in and delete such values
/// itself.
/// @return the value; null when memory is exhausted.
template <class T>
T* NewCell() noexcept {
  return AllocationMustFail() ? nullptr : new (std::nothrow) T{};
}

/// Makes the library's allocations fail, for tests. Per thread.
class KROFX_API AllocationFailure {
 public:
  /// From now on the `nth` allocation of this thread (1 is the next one) gives null, and with
  /// `andAllLater` every later one too. With 0 no allocation is made to fail.
  static void FailAt(std::size_t nth, bool andAllLater = false) noexcept;
  /// @return the number of allocations of this thread since the last FailAt.
  static std::size_t Count() noexcept;
};

/// Base of every class that the library makes with new: sends new and delete through the functions
/// above. A failed new gives null instead of throwing.
struct KROFX_API HeapObject {
  static void* operator new(std::size_t size) noexcept { return AllocateSized(size); }
  static void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return AllocateSized(size);
  }
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* object, std::size_t size) noexcept { FreeSized(object, size); }
  // Called only when a constructor throws, which none does.
  static void operator delete(void*, const std::nothrow_t&) noexcept {}
  static void operator delete(void*, void*) noexcept {}
};

}  // namespace krofx::internal

#endif  // KROFX_CORE_MEMORY_H_
