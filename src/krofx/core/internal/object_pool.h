// Where the memory of objects comes from.
//
// A parse makes tens of thousands of objects of a few classes and destroys them all at once, which
// is where a general allocator spends most of a parse's time: it looks for neighbours to merge with
// on every free. Objects up to kMaxPooled bytes therefore come from pools, one for each size class.
//
//   A chunk is an aligned block for objects of one size, which belongs to the thread that made it.
//   That thread takes from its chunks and gives back to them without a lock. Pieces of a new chunk
//   are cut one by one, in the order of addresses, so that no memory is touched before its time. A
//   chunk whose objects have all come back is returned to the system, but for one that is kept.
//
//   An object may be destroyed on another thread than the one that made it. That
//   thread uses the piece again or passes it on, with others, through the depot of the size class
//   to the thread that owns its chunk. The depot also takes over the chunks of a thread that ends,
//   and hands them to threads that need one.
//
// Under the sanitizers AllocateSized (memory.h) passes the pools by, so that they see every use of
// a destroyed object.

#ifndef KROFX_CORE_INTERNAL_OBJECT_POOL_H_
#define KROFX_CORE_INTERNAL_OBJECT_POOL_H_

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

#endif  // KROFX_CORE_INTERNAL_OBJECT_POOL_H_
