// The table of HeaderIndex, and its hash.
//
// The names come from the text, which may be hostile. The hash is made of two polynomials whose
// bases differ in each process, so nobody can make a text whose names all get the same place.

#include "krofx/envelope/internal/header_index.h"

#include <chrono>
#include <cstring>

#include "krofx/core/memory.h"

namespace krofx::internal {

namespace {

constexpr std::uint64_t kPrime = (std::uint64_t{1} << 31) - 1;
constexpr std::uint64_t kGolden = 0x9E3779B97F4A7C15U;

struct Bases {
  std::uint64_t first;
  std::uint64_t second;
};

Bases DrawBases() {
  static const char anchor = 0;
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  std::uint64_t seed =
      static_cast<std::uint64_t>(now) ^
      (static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(&anchor)) << 20);
  // Spreads the bits that differ between processes over the whole number.
  for (int round = 0; round < 3; ++round) {
    seed ^= seed >> 31;
    seed *= kGolden;
  }
  constexpr std::uint64_t kLowest = 256;
  return {(seed >> 32) % (kPrime - kLowest) + kLowest,
          (seed & 0xffffffffU) % (kPrime - kLowest) + kLowest};
}

}  // namespace

std::uint64_t& HeaderIndex::Comparisons() {
  static thread_local std::uint64_t comparisons = 0;
  return comparisons;
}

u32 HeaderIndex::HashOf(const KRString& name) {
  static const Bases bases = DrawBases();
  const char* const text = name;
  std::uint64_t first = 1;
  std::uint64_t second = 1;
  for (u16 i = 0; i < name.GetStrLength(); ++i) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    if (c >= 'A' && c <= 'Z') c = static_cast<unsigned char>(c - 'A' + 'a');
    first = (first * bases.first + c) % kPrime;
    second = (second * bases.second + c) % kPrime;
  }
  // The polynomials of names that end in numbers are at equal distances. One multiplication keeps
  // them so, and with some bases such names share few places. The mixing function of SplitMix64
  // (Steele, Lea and Flood 2014) spreads them.
  std::uint64_t mixed = first << 32 | second;
  mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBU;
  return static_cast<u32>(mixed >> 32);
}

void HeaderIndex::Clear() {
  Free(m_places);
  m_places = nullptr;
  m_capacity = m_mask = m_count = 0;
}

bool HeaderIndex::Reserve() {
  constexpr u32 kFirst = 16;
  const u32 capacity = m_capacity == 0 ? kFirst : m_capacity * 2;
  auto* places = static_cast<u32*>(Allocate(capacity * sizeof(u32)));
  if (places == nullptr) return false;
  std::memset(places, 0, capacity * sizeof(u32));
  Free(m_places);
  m_places = places;
  m_capacity = capacity;
  m_mask = capacity - 1;
  return true;
}

void HeaderIndex::Put(u32 hash, u16 place) {
  u32 at = hash & m_mask;
  while (m_places[at] != 0) at = (at + 1) & m_mask;
  m_places[at] = u32{place} + 1;
}

}  // namespace krofx::internal
