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
constexpr std::size_t kChunkBytes = 65536;
// What moves between a cache and its depot at a time; a cache holds at most twice as many.
constexpr u32 kBatch = 32;

std::size_t ClassOf(std::size_t size) { return (size + kGranule - 1) / kGranule - 1; }

// Memory that is in no use holds the way to the next piece.
struct Piece {
  Piece* next;
};

// Memory that a thread may cut pieces from.
struct Stretch {
  char* begin;
  char* end;
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
  // Takes the free pieces of one chunk, linked, in no more time than one would take: they are cold,
  // so nothing is read here. Null when no chunk has any.
  Piece* Take(u32& taken) {
    const std::lock_guard lock(m_mutex);
    Chunk* chunk = m_chunks;
    if (chunk == nullptr) return nullptr;
    Piece* pieces = chunk->free;
    taken = chunk->freeCount;
    chunk->free = nullptr;
    chunk->freeCount = 0;
    Unlink(chunk);
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

// A new chunk, all of whose pieces are taken: the memory to cut them from. Empty without memory.
Stretch MakeChunk(std::size_t size) {
  void* block = std::aligned_alloc(kChunkBytes, kChunkBytes);
  if (block == nullptr) return {};
  auto* chunk = new (block) Chunk{};
  chunk->pieces = static_cast<u32>((kChunkBytes - kHeadBytes) / size);
  char* begin = static_cast<char*>(block) + kHeadBytes;
  return {begin, begin + chunk->pieces * size};
}

// Never destroyed: objects may go after the process's static ones.
Depot& DepotOf(std::size_t sizeClass) {
  alignas(Depot) static unsigned char storage[sizeof(Depot) * kClasses];
  static Depot* const depots = [] {
    for (std::size_t i = 0; i < kClasses; ++i) new (storage + i * sizeof(Depot)) Depot;
    return std::launder(reinterpret_cast<Depot*>(storage));
  }();
  return depots[sizeClass];
}

// The pieces of one class that a thread keeps, and what is left of the chunk it cuts from: pieces
// lie one behind the other as they are made, and no memory is touched before its time.
struct Shelf {
  Piece* pieces;
  u32 count;
  Stretch uncut;
};

// What a thread keeps for itself. It needs no destructor, so that using it costs no test; Returner
// empties it when the thread ends.
struct Cache {
  Shelf shelves[kClasses];
  bool closed;
};
constinit thread_local Cache cache = {};

std::size_t SizeOf(std::size_t sizeClass) { return (sizeClass + 1) * kGranule; }

// Gives back all that a shelf has.
void Empty(std::size_t sizeClass) {
  Shelf& shelf = cache.shelves[sizeClass];
  const std::size_t size = SizeOf(sizeClass);
  for (char* at = shelf.uncut.begin; at != shelf.uncut.end; at += size) {
    shelf.pieces = new (at) Piece{shelf.pieces};
    ++shelf.count;
  }
  if (shelf.count != 0) DepotOf(sizeClass).Give(shelf.pieces, shelf.count);
  shelf = Shelf{};
}

struct Returner {
  ~Returner() {
    cache.closed = true;
    for (std::size_t i = 0; i < kClasses; ++i) Empty(i);
  }
  // Makes sure that there is one for the thread.
  void Use() {}
};
thread_local Returner returner;

void* Cut(Shelf& shelf, std::size_t size) {
  char* piece = shelf.uncut.begin;
  shelf.uncut.begin = piece + size;
  return piece;
}

void* Refill(std::size_t sizeClass) {
  Shelf& shelf = cache.shelves[sizeClass];
  if (shelf.uncut.begin != shelf.uncut.end) return Cut(shelf, SizeOf(sizeClass));
  if (!cache.closed) returner.Use();
  void* given = nullptr;
  if (Piece* pieces = DepotOf(sizeClass).Take(shelf.count)) {
    shelf.pieces = pieces->next;
    --shelf.count;
    given = pieces;
  } else {
    shelf.uncut = MakeChunk(SizeOf(sizeClass));
    if (shelf.uncut.begin == nullptr) return nullptr;
    given = Cut(shelf, SizeOf(sizeClass));
  }
  if (cache.closed) Empty(sizeClass);
  return given;
}

void Spill(std::size_t sizeClass) {
  if (cache.closed) return Empty(sizeClass);
  Shelf& shelf = cache.shelves[sizeClass];
  Piece* pieces = shelf.pieces;
  Piece* last = pieces;
  for (u32 i = 1; i < kBatch; ++i) last = last->next;
  shelf.pieces = last->next;
  shelf.count -= kBatch;
  DepotOf(sizeClass).Give(pieces, kBatch);
}

}  // namespace

void* PoolAllocate(std::size_t size) noexcept {
  const std::size_t sizeClass = ClassOf(size);
  Shelf& shelf = cache.shelves[sizeClass];
  Piece* piece = shelf.pieces;
  if (piece == nullptr) return Refill(sizeClass);
  shelf.pieces = piece->next;
  --shelf.count;
  // The next one will be read when it is given, and may have been idle for long.
  __builtin_prefetch(shelf.pieces);
  return piece;
}

void PoolFree(void* object, std::size_t size) noexcept {
  const std::size_t sizeClass = ClassOf(size);
  Shelf& shelf = cache.shelves[sizeClass];
  shelf.pieces = new (object) Piece{shelf.pieces};
  if (++shelf.count > 2 * kBatch || cache.closed) Spill(sizeClass);
}

}  // namespace krofx::internal
