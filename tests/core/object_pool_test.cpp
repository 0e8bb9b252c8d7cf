// The pools of objects: pieces do not overlap, are aligned, and can be freed on any thread.

#include "krofx/core/internal/object_pool.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <thread>
#include <vector>

#include "krofx/core/memory.h"

namespace {

using krofx::internal::kMaxPooled;
using krofx::internal::PoolAllocate;
using krofx::internal::PoolFree;

TEST(ObjectPool, GivesAlignedPiecesThatDoNotOverlap) {
  for (std::size_t size :
       {std::size_t{1}, std::size_t{16}, std::size_t{17}, std::size_t{592}, kMaxPooled}) {
    std::vector<unsigned char*> pieces;
    for (int i = 0; i < 500; ++i) {
      auto* piece = static_cast<unsigned char*>(PoolAllocate(size));
      ASSERT_NE(piece, nullptr);
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece) % 16, 0u);
      std::memset(piece, i % 251, size);
      pieces.push_back(piece);
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      for (std::size_t at = 0; at < size; ++at) ASSERT_EQ(pieces[i][at], i % 251);
      PoolFree(pieces[i], size);
    }
  }
}

TEST(ObjectPool, GivesAPieceAgainThatCameBack) {
  void* first = PoolAllocate(320);
  PoolFree(first, 320);
  void* second = PoolAllocate(320);
  EXPECT_EQ(second, first);
  PoolFree(second, 320);
}

TEST(ObjectPool, TakesPiecesBackOnAnotherThreadAndGivesThemThere) {
  constexpr std::size_t kSize = 784;
  std::vector<void*> pieces;
  for (int i = 0; i < 1000; ++i) pieces.push_back(PoolAllocate(kSize));
  std::set<void*> given(pieces.begin(), pieces.end());
  EXPECT_EQ(given.size(), pieces.size());
  bool reused = false;
  std::thread other([&] {
    for (void* piece : pieces) PoolFree(piece, kSize);
    void* again = PoolAllocate(kSize);
    reused = given.count(again) == 1;
    PoolFree(again, kSize);
  });
  other.join();
  EXPECT_TRUE(reused);
}

TEST(ObjectPool, GivesAThreadAgainWhatAnotherFreed) {
  constexpr std::size_t kSize = 720;
  std::set<void*> given;
  for (int i = 0; i < 1000; ++i) given.insert(PoolAllocate(kSize));
  std::thread other([&] {
    for (void* piece : given) PoolFree(piece, kSize);
  });
  other.join();
  // Chunks that are all free go back to the system, but for one, whose pieces come again.
  int again = 0;
  std::vector<void*> pieces;
  for (int i = 0; i < 1000; ++i) {
    pieces.push_back(PoolAllocate(kSize));
    again += given.count(pieces.back()) == 1 ? 1 : 0;
  }
  EXPECT_GT(again, 0);
  EXPECT_EQ(std::set<void*>(pieces.begin(), pieces.end()).size(), pieces.size());
  for (void* piece : pieces) PoolFree(piece, kSize);
}

TEST(ObjectPool, ServesAThreadThatHasEndedItsUse) {
  constexpr std::size_t kSize = 656;
  // Destroyed after the pools of its thread, which are made after it.
  struct Late {
    ~Late() {
      for (void*& piece : pieces) piece = PoolAllocate(kSize);
      for (void* piece : pieces) distinct += piece != nullptr && piece != pieces[0] ? 1 : 0;
      for (void* piece : pieces) PoolFree(piece, kSize);
      *seen = distinct;
    }
    int* seen = nullptr;
    int distinct = 0;
    // More than a chunk holds.
    void* pieces[150] = {};
  };
  int seen = 0;
  std::thread other([&] {
    static thread_local Late late;
    late.seen = &seen;
    PoolFree(PoolAllocate(16), 16);
  });
  other.join();
  EXPECT_EQ(seen, 149);
}

TEST(ObjectPool, GetsBackFromAThreadThatEndsWhatItHadNotUsed) {
  constexpr std::size_t kSize = 1008;
  void* taken = nullptr;
  std::thread other([&] {
    taken = PoolAllocate(kSize);
    PoolFree(taken, kSize);
  });
  other.join();
  // More than a chunk holds, so the whole chunk of the other thread is among them.
  std::set<void*> given;
  for (int i = 0; i < 200; ++i) given.insert(PoolAllocate(kSize));
  EXPECT_EQ(given.size(), 200u);
  EXPECT_EQ(given.count(taken), 1u);
  EXPECT_EQ(given.count(static_cast<char*>(taken) + kSize), 1u);
  for (void* piece : given) PoolFree(piece, kSize);
}

// Under a sanitizer objects are in no pool.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(ObjectPool, GetsWhatObjectsFree) {
  krofx::internal::FreeSized(nullptr, 48);
  void* const first = krofx::internal::AllocateSized(48);
  krofx::internal::FreeSized(first, 48);
  void* const second = krofx::internal::AllocateSized(48);
  EXPECT_EQ(second, first);
  krofx::internal::FreeSized(second, 48);
}
#endif

TEST(ObjectPool, ServesManyThreadsAtOnce) {
  std::vector<std::thread> threads;
  std::vector<int> faults(4, 0);
  for (unsigned t = 0; t < 4; ++t) {
    threads.emplace_back([t, &faults] {
      std::vector<unsigned char*> held;
      for (int round = 0; round < 3000; ++round) {
        auto* piece = static_cast<unsigned char*>(PoolAllocate(96));
        std::memset(piece, static_cast<int>(t), 96);
        held.push_back(piece);
        if (round % 3 == 0) {
          unsigned char* back = held[held.size() / 2];
          held[held.size() / 2] = held.back();
          held.pop_back();
          for (int at = 0; at < 96; ++at) faults[t] += back[at] != t;
          PoolFree(back, 96);
        }
      }
      for (unsigned char* piece : held) PoolFree(piece, 96);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(faults, std::vector<int>(4, 0));
}

}  // namespace
