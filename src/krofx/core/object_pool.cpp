// The pools: thread caches over depots of chunks.

#include "krofx/core/object_pool.h"

#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>

#include "krofx/core/types.h"

namespace krofx::internal {

namespace {

constexpr std::size_t kGranule = 16;
constexpr std::size_t kClasses = kMaxPooled / kGranule;
constexpr std::size_t kChunkBytes = 32768;
// What moves between a cache and its depot at a time; a cache holds at most twice as many.
constexpr u32 kBatch = 32;

std::size_t ClassOf(std::size_t size) { return (size + kGranule - 1) / kGranule - 1; }

// Memory that is in no use holds the way to the next piece.
struct Piece {
  Piece* next;
};

// The head of a chunk. It lies at an address that is a multiple of its size, so that a piece finds
// the chunk it was cut from.
struct Chunk {
  Chunk* next;
  Chunk* previous;
  Piece* free;
  u32 freeCount;
  u32 pieces;
};
constexpr std::size_t kHeadBytes = (sizeof(Chunk) + kGranule - 1) / kGranule * kGranule;

Chunk* ChunkOf(Piece* piece) {
  return reinterpret_cast<Chunk*>(reinterpret_cast<std::uintptr_t>(piece) & ~(kChunkBytes - 1));
}

// The chunks of one size class that have free pieces.
class Depot {
 public:
  // Takes up to `count` pieces, linked; null when memory is exhausted.
  Piece* Take(std::size_t size, u32 count, u32& taken) {
    const std::lock_guard lock(m_mutex);
    Piece* pieces = nullptr;
    for (taken = 0; taken < count; ++taken) {
      if (m_chunks == nullptr && !Grow(size)) break;
      Chunk* chunk = m_chunks;
      Piece* piece = chunk->free;
      chunk->free = piece->next;
      if (--chunk->freeCount == 0) Unlink(chunk);
      piece->next = pieces;
      pieces = piece;
    }
    return pieces;
  }

  // Takes `count` linked pieces back.
  void Give(Piece* pieces, u32 count) {
    const std::lock_guard lock(m_mutex);
    for (; count != 0; --count) {
      Piece* piece = pieces;
      pieces = piece->next;
      Chunk* chunk = ChunkOf(piece);
      piece->next = chunk->free;
      chunk->free = piece;
      if (++chunk->freeCount == 1) Link(chunk);
      const bool isLast = chunk->next == nullptr && chunk->previous == nullptr;
      if (chunk->freeCount == chunk->pieces && !isLast) {
        Unlink(chunk);
        std::free(chunk);
      }
    }
  }

 private:
  bool Grow(std::size_t size) {
    void* block = std::aligned_alloc(kChunkBytes, kChunkBytes);
    if (block == nullptr) return false;
    auto* chunk = new (block) Chunk{};
    auto* at = static_cast<char*>(block) + kHeadBytes;
    chunk->pieces = static_cast<u32>((kChunkBytes - kHeadBytes) / size);
    chunk->freeCount = chunk->pieces;
    // Linked from the back, so that pieces are given out in the order of their addresses.
    for (u32 i = chunk->pieces; i != 0; --i) {
      chunk->free = new (at + (i - 1) * size) Piece{chunk->free};
    }
    Link(chunk);
    return true;
  }

  void Link(Chunk* chunk) {
    chunk->previous = nullptr;
    chunk->next = m_chunks;
    if (m_chunks != nullptr) m_chunks->previous = chunk;
    m_chunks = chunk;
  }

  void Unlink(Chunk* chunk) {
    (chunk->previous != nullptr ? chunk->previous->next : m_chunks) = chunk->next;
    if (chunk->next != nullptr) chunk->next->previous = chunk->previous;
    chunk->next = chunk->previous = nullptr;
  }

  std::mutex m_mutex;
  Chunk* m_chunks = nullptr;
};

// Never destroyed: objects may go after the process's static ones.
Depot& DepotOf(std::size_t sizeClass) {
  alignas(Depot) static unsigned char storage[sizeof(Depot) * kClasses];
  static Depot* const depots = [] {
    for (std::size_t i = 0; i < kClasses; ++i) new (storage + i * sizeof(Depot)) Depot;
    return std::launder(reinterpret_cast<Depot*>(storage));
  }();
  return depots[sizeClass];
}

struct Shelf {
  Piece* pieces;
  u32 count;
};

// What a thread keeps for itself. It needs no destructor, so that using it costs no test; Returner
// empties it when the thread ends.
struct Cache {
  Shelf shelves[kClasses];
  bool closed;
};
constinit thread_local Cache cache = {};

struct Returner {
  ~Returner() {
    cache.closed = true;
    for (std::size_t i = 0; i < kClasses; ++i) {
      Shelf& shelf = cache.shelves[i];
      if (shelf.count != 0) DepotOf(i).Give(shelf.pieces, shelf.count);
      shelf = Shelf{};
    }
  }
  // Makes sure that there is one for the thread.
  void Use() {}
};
thread_local Returner returner;

void* Refill(std::size_t sizeClass) {
  Shelf& shelf = cache.shelves[sizeClass];
  const u32 wanted = cache.closed ? 1 : kBatch;
  if (!cache.closed) returner.Use();
  u32 taken = 0;
  Piece* pieces = DepotOf(sizeClass).Take((sizeClass + 1) * kGranule, wanted, taken);
  if (pieces == nullptr) return nullptr;
  shelf.pieces = pieces->next;
  shelf.count = taken - 1;
  return pieces;
}

void Spill(std::size_t sizeClass) {
  Shelf& shelf = cache.shelves[sizeClass];
  const u32 count = cache.closed ? shelf.count : kBatch;
  Piece* pieces = shelf.pieces;
  Piece* last = pieces;
  for (u32 i = 1; i < count; ++i) last = last->next;
  shelf.pieces = last->next;
  shelf.count -= count;
  DepotOf(sizeClass).Give(pieces, count);
}

}  // namespace

void* PoolAllocate(std::size_t size) noexcept {
  const std::size_t sizeClass = ClassOf(size);
  Shelf& shelf = cache.shelves[sizeClass];
  Piece* piece = shelf.pieces;
  if (piece == nullptr) return Refill(sizeClass);
  shelf.pieces = piece->next;
  --shelf.count;
  return piece;
}

void PoolFree(void* object, std::size_t size) noexcept {
  const std::size_t sizeClass = ClassOf(size);
  Shelf& shelf = cache.shelves[sizeClass];
  shelf.pieces = new (object) Piece{shelf.pieces};
  if (++shelf.count > 2 * kBatch || cache.closed) Spill(sizeClass);
}

}  // namespace krofx::internal
