// Where the memory of objects comes from.
//
// A parse makes tens of thousands of objects of a few classes and destroys them all at once, which
// is where a general allocator spends most of a parse's time: it looks for neighbours to merge with
// on every free. Objects up to kMaxPooled bytes therefore come from pools, one for each size class.
//
//   A thread takes from and gives to a cache of its own, without a lock. The cache takes all that
//   is free of one chunk of the class at a time, and spills over to the depot of the class a batch
//   at a time, under a lock. An object may be destroyed on another thread than the one that made
//   it; it then feeds that thread's cache.
//
//   A chunk is an aligned block for objects of one size. A new one is cut piece by piece, in the
//   order of addresses, as objects are made, so that no memory is touched before its time. The
//   depot holds those of which pieces came back; a chunk whose objects have all come back is
//   returned to the system, but for one that is kept.
//
// Under the sanitizers AllocateSized (memory.h) passes the pools by, so that they see every use of
// a destroyed object.

#ifndef KROFX_CORE_OBJECT_POOL_H_
#define KROFX_CORE_OBJECT_POOL_H_

#include <cstddef>

#include "krofx/core/export.h"

namespace krofx::internal {

/// The longest object that comes from a pool.
inline constexpr std::size_t kMaxPooled = 1024;

/// Gives `size` bytes, 1 to kMaxPooled, uninitialised, or null when memory is exhausted.
KROFX_API void* PoolAllocate(std::size_t size) noexcept;

/// Takes back what PoolAllocate gave for the same size, on any thread.
KROFX_API void PoolFree(void* object, std::size_t size) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_CORE_OBJECT_POOL_H_
