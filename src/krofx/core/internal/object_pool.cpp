// The pools: chunks that belong to a thread, and for each size class a depot for pieces and chunks
// that pass between threads.

#include "krofx/core/internal/object_pool.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>

#include "krofx/core/types.h"

namespace krofx::internal {

namespace {

constexpr std::size_t kGranule = 16;
constexpr std::size_t kClasses = kMaxPooled / kGranule;
constexpr std::size_t kChunkBytes = 65536;
// How many pieces of other threads' chunks a thread keeps before it passes them on.
constexpr u32 kMostForeign = 64;

std::size_t ClassOf(std::size_t size) { return (size + kGranule - 1) / kGranule - 1; }

std::size_t SizeOf(std::size_t sizeClass) { return (sizeClass + 1) * kGranule; }

// A free piece holds the pointer to the next one.
struct Piece {
  Piece* next;
};

struct Cache;

// The head of a chunk. A chunk's address is a multiple of its size, so that the chunk of a piece
// can be computed from the piece's address.
struct Chunk {
  Chunk* next = nullptr;
  Chunk* previous = nullptr;
  // The thread that takes pieces from it; null while it is in the depot.
  std::atomic<Cache*> owner = nullptr;
  Piece* free = nullptr;
  // Memory from which no piece has been cut yet.
  char* uncut = nullptr;
  char* end = nullptr;
  u32 live = 0;

  bool IsFull() const { return free == nullptr && uncut == end; }

  // Takes a piece; the chunk must not be full.
  void* Take(std::size_t size) {
    ++live;
    if (Piece* const piece = free) {
      free = piece->next;
      return piece;
    }
    char* const piece = uncut;
    uncut += size;
    return piece;
  }

  void Give(void* piece) {
    free = new (piece) Piece{free};
    --live;
  }

  // Makes a chunk without live pieces like a new one: pieces are cut in the order of addresses
  // again.
  void Reset(std::size_t size);
};
constexpr std::size_t kHeadBytes = (sizeof(Chunk) + kGranule - 1) / kGranule * kGranule;

void Chunk::Reset(std::size_t size) {
  free = nullptr;
  uncut = reinterpret_cast<char*>(this) + kHeadBytes;
  end = uncut + (kChunkBytes - kHeadBytes) / size * size;
}

Chunk* ChunkOf(void* piece) {
  return reinterpret_cast<Chunk*>(reinterpret_cast<std::uintptr_t>(piece) & ~(kChunkBytes - 1));
}

// Makes a chunk; null when memory is exhausted.
Chunk* MakeChunk(std::size_t size, Cache* owner) {
  void* const block = std::aligned_alloc(kChunkBytes, kChunkBytes);
  if (block == nullptr) return nullptr;
  auto* const chunk = new (block) Chunk;
  chunk->owner.store(owner, std::memory_order_relaxed);
  chunk->Reset(size);
  return chunk;
}

struct ChunkList {
  Chunk* first = nullptr;

  void Add(Chunk* chunk) {
    chunk->previous = nullptr;
    chunk->next = first;
    if (first != nullptr) first->previous = chunk;
    first = chunk;
  }
  void Remove(Chunk* chunk) {
    (chunk->previous != nullptr ? chunk->previous->next : first) = chunk->next;
    if (chunk->next != nullptr) chunk->next->previous = chunk->previous;
  }
};

// The chunks of one size class that a thread takes pieces from.
struct Shelf {
  Chunk* current = nullptr;
  // Chunks with free pieces, chunks without, and one without live pieces that is kept.
  ChunkList partial;
  ChunkList full;
  Chunk* spare = nullptr;
  // Pieces of other threads' chunks that this thread freed; it reuses them or passes them on.
  Piece* foreign = nullptr;
  u32 foreignCount = 0;
  // Pieces of its own chunks that other threads passed on, under the depot's lock.
  Piece* returned = nullptr;
};

// The pools of one thread. The type needs no destructor, so that using it costs no test; Returner
// empties it when the thread ends.
struct Cache {
  Shelf shelves[kClasses];
};
constinit thread_local Cache cacheOfThread = {};
constinit thread_local bool isClosed = false;
// The thread's cache; null before its first use and after its last. The pointer is small enough for
// the static TLS area, so that it is accessible without a call.
[[gnu::tls_model("initial-exec")]] constinit thread_local Cache* cache = nullptr;

// Returns a piece to its chunk, which belongs to the calling thread.
void GiveOwn(Shelf& shelf, Chunk* chunk, void* piece, std::size_t sizeClass) {
  const bool wasFull = chunk->IsFull();
  chunk->Give(piece);
  if (chunk == shelf.current) return;
  if (wasFull) {
    shelf.full.Remove(chunk);
    shelf.partial.Add(chunk);
  }
  if (chunk->live != 0) return;
  shelf.partial.Remove(chunk);
  if (shelf.spare == nullptr) {
    chunk->Reset(SizeOf(sizeClass));
    shelf.spare = chunk;
  } else {
    std::free(chunk);
  }
}

// Pieces and chunks of one size class that pass between threads.
class Depot {
 public:
  // Takes back the pieces that other threads returned to a shelf. Then gives the shelf's owner a
  // chunk of a thread that ended; null when there is none.
  Chunk* Serve(Shelf& shelf, Cache* owner, std::size_t sizeClass) {
    Piece* returned = nullptr;
    Chunk* chunk = nullptr;
    {
      const std::lock_guard lock(m_mutex);
      returned = shelf.returned;
      shelf.returned = nullptr;
      if (returned == nullptr && (chunk = m_chunks.first) != nullptr) {
        m_chunks.Remove(chunk);
        chunk->owner.store(owner, std::memory_order_relaxed);
      }
    }
    while (Piece* const piece = returned) {
      returned = piece->next;
      GiveOwn(shelf, ChunkOf(piece), piece, sizeClass);
    }
    return chunk;
  }

  // Gives a piece to a thread that no longer has a cache.
  void* TakeOne(std::size_t size) {
    const std::lock_guard lock(m_mutex);
    Chunk* chunk = m_chunks.first;
    if (chunk == nullptr) {
      chunk = MakeChunk(size, nullptr);
      if (chunk == nullptr) return nullptr;
      m_chunks.Add(chunk);
    }
    void* const piece = chunk->Take(size);
    if (chunk->IsFull()) m_chunks.Remove(chunk);
    return piece;
  }

  // Takes back linked pieces whose chunks belong to other threads.
  void Give(Piece* pieces, std::size_t sizeClass) {
    const std::lock_guard lock(m_mutex);
    while (Piece* const piece = pieces) {
      pieces = piece->next;
      GiveOne(piece, sizeClass);
    }
  }

  // Takes all chunks of a thread that ends.
  void TakeOver(Shelf& shelf, std::size_t sizeClass) {
    Give(shelf.foreign, sizeClass);
    const std::lock_guard lock(m_mutex);
    while (Piece* const piece = shelf.returned) {
      shelf.returned = piece->next;
      Chunk* const chunk = ChunkOf(piece);
      if (chunk != shelf.current && chunk->IsFull()) {
        shelf.full.Remove(chunk);
        shelf.partial.Add(chunk);
      }
      chunk->Give(piece);
    }
    if (shelf.current != nullptr) Adopt(shelf.current);
    if (shelf.spare != nullptr) Adopt(shelf.spare);
    for (ChunkList* list : {&shelf.partial, &shelf.full}) {
      while (Chunk* const chunk = list->first) {
        list->Remove(chunk);
        Adopt(chunk);
      }
    }
    shelf = Shelf{};
  }

 private:
  void GiveOne(Piece* piece, std::size_t sizeClass) {
    Chunk* const chunk = ChunkOf(piece);
    if (Cache* const owner = chunk->owner.load(std::memory_order_relaxed)) {
      Shelf& shelf = owner->shelves[sizeClass];
      shelf.returned = new (piece) Piece{shelf.returned};
      return;
    }
    if (chunk->IsFull()) m_chunks.Add(chunk);
    chunk->Give(piece);
    const bool isOnly = m_chunks.first == chunk && chunk->next == nullptr;
    if (chunk->live == 0 && !isOnly) {
      m_chunks.Remove(chunk);
      std::free(chunk);
    }
  }

  void Adopt(Chunk* chunk) {
    chunk->owner.store(nullptr, std::memory_order_relaxed);
    if (chunk->live == 0 && m_chunks.first != nullptr) {
      std::free(chunk);
    } else if (!chunk->IsFull()) {
      m_chunks.Add(chunk);
    }
  }

  std::mutex m_mutex;
  // Chunks that belong to no thread and have free pieces.
  ChunkList m_chunks;
};

// Never destroyed: objects may be destroyed after the process's static objects.
Depot& DepotOf(std::size_t sizeClass) {
  alignas(Depot) static unsigned char storage[sizeof(Depot) * kClasses];
  static Depot* const depots = [] {
    for (std::size_t i = 0; i < kClasses; ++i) new (storage + i * sizeof(Depot)) Depot;
    return std::launder(reinterpret_cast<Depot*>(storage));
  }();
  return depots[sizeClass];
}

struct Returner {
  ~Returner() {
    isClosed = true;
    cache = nullptr;
    for (std::size_t i = 0; i < kClasses; ++i) DepotOf(i).TakeOver(cacheOfThread.shelves[i], i);
  }
  // Makes sure that the thread has one.
  void Use() {}
};
thread_local Returner returner;

// Makes sure that the thread has its cache. False at the thread's end, when it no longer has one.
bool Open() {
  if (isClosed) return false;
  returner.Use();
  cache = &cacheOfThread;
  return true;
}

// Returns the next chunk to take pieces from; null when memory is exhausted.
Chunk* NextChunk(Shelf& shelf, std::size_t sizeClass) {
  if (shelf.partial.first == nullptr) {
    if (Chunk* const chunk = shelf.spare) {
      shelf.spare = nullptr;
      return chunk;
    }
    if (Chunk* const chunk = DepotOf(sizeClass).Serve(shelf, cache, sizeClass)) return chunk;
  }
  if (Chunk* const chunk = shelf.partial.first) {
    shelf.partial.Remove(chunk);
    return chunk;
  }
  if (Chunk* const chunk = shelf.spare) {
    shelf.spare = nullptr;
    return chunk;
  }
  return MakeChunk(SizeOf(sizeClass), cache);
}

// A separate function, so that the fast path saves no registers for it.
[[gnu::noinline]] void* Refill(std::size_t sizeClass) {
  if (!Open()) return DepotOf(sizeClass).TakeOne(SizeOf(sizeClass));
  Shelf& shelf = cache->shelves[sizeClass];
  if (Piece* const piece = shelf.foreign) {
    shelf.foreign = piece->next;
    --shelf.foreignCount;
    return piece;
  }
  if (shelf.current != nullptr && shelf.current->IsFull()) {
    shelf.full.Add(shelf.current);
    shelf.current = nullptr;
  }
  if (shelf.current == nullptr) shelf.current = NextChunk(shelf, sizeClass);
  return shelf.current == nullptr ? nullptr : shelf.current->Take(SizeOf(sizeClass));
}

// Takes back a piece whose chunk belongs to another thread.
[[gnu::noinline]] void GiveForeign(void* object, std::size_t sizeClass) {
  auto* const piece = new (object) Piece{nullptr};
  if (!Open()) return DepotOf(sizeClass).Give(piece, sizeClass);
  Shelf& shelf = cache->shelves[sizeClass];
  piece->next = shelf.foreign;
  shelf.foreign = piece;
  if (++shelf.foreignCount <= kMostForeign) return;
  shelf.foreign = nullptr;
  shelf.foreignCount = 0;
  DepotOf(sizeClass).Give(piece, sizeClass);
}

}  // namespace

void* PoolAllocate(std::size_t size) noexcept {
  const std::size_t sizeClass = ClassOf(size);
  Chunk* const chunk = cache == nullptr ? nullptr : cache->shelves[sizeClass].current;
  if (chunk == nullptr || chunk->IsFull()) return Refill(sizeClass);
  return chunk->Take(SizeOf(sizeClass));
}

void PoolFree(void* object, std::size_t size) noexcept {
  const std::size_t sizeClass = ClassOf(size);
  Chunk* const chunk = ChunkOf(object);
  // The owner of this thread's chunks does not change while the thread runs, and no other chunk has
  // this thread as its owner.
  if (cache != nullptr && chunk->owner.load(std::memory_order_relaxed) == cache) {
    GiveOwn(cache->shelves[sizeClass], chunk, object, sizeClass);
  } else {
    GiveForeign(object, sizeClass);
  }
}

}  // namespace krofx::internal
