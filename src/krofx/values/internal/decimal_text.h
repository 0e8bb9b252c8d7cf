// 128-bit arithmetic for 96-bit magnitudes, and their decimal digits.

#ifndef KROFX_VALUES_INTERNAL_DECIMAL_TEXT_H_
#define KROFX_VALUES_INTERNAL_DECIMAL_TEXT_H_

#include <array>
#include <cstdint>

#include "krofx/core/types.h"
#include "krofx/values/internal/digits.h"

#ifndef __SIZEOF_INT128__
#include <boost/multiprecision/cpp_int.hpp>
#endif

namespace krofx::internal {

#ifdef __SIZEOF_INT128__
// A compiler extension; -Wpedantic accepts it only when it is marked with __extension__.
__extension__ typedef unsigned __int128 u128;
__extension__ typedef __int128 s128;
#else
// Compilers for 32-bit machines do not have it.
using u128 = boost::multiprecision::uint128_t;
using s128 = boost::multiprecision::int128_t;
#endif

/// The bits of a magnitude.
inline constexpr u16 kMagnitudeBits = 96;
/// The largest magnitude; as a mask it cuts a result to its bits.
inline constexpr u128 kMagnitudeMask = (u128{1} << kMagnitudeBits) - 1;

/// 10^0 to 10^38, all powers that 128 bits hold.
inline constexpr std::array<u128, 39> kPowersOfTen = [] {
  std::array<u128, 39> powers{};
  powers[0] = 1;
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

/// @return `magnitude` x 10^`places`, modulo 2^96.
constexpr u128 ScaleUp(u128 magnitude, u32 places) noexcept {
  constexpr u32 kLargest = static_cast<u32>(kPowersOfTen.size()) - 1;
  // 10^96 is a multiple of 2^96, so the loop ends early whatever the places.
  while (places > 0 && magnitude != 0) {
    const u32 step = places < kLargest ? places : kLargest;
    magnitude = (magnitude * kPowersOfTen[step]) & kMagnitudeMask;
    places -= step;
  }
  return magnitude;
}

/// @return `magnitude` / 10^`places`, truncated; for magnitudes of up to 96 bits.
constexpr u128 ScaleDown(u128 magnitude, u32 places) noexcept {
  return places < kPowersOfTen.size() ? magnitude / kPowersOfTen[places] : 0;
}

/// Writes the digits of `magnitude` (96 bits) so that they end before `end`, which has room for 29
/// characters in front of it; 0 gives no digits.
/// @return the first digit.
constexpr char* WriteDigitsBefore(char* end, u128 magnitude) noexcept {
  constexpr std::uint64_t kChunk = 10'000'000'000'000'000'000U;  // 10^19
  std::uint64_t rest = 0;
  if (magnitude >= kChunk) {
    rest = static_cast<std::uint64_t>(magnitude / kChunk);
    std::uint64_t low = static_cast<std::uint64_t>(magnitude % kChunk);
    for (int i = 0; i < 19; ++i) {
      *--end = static_cast<char>('0' + low % 10);
      low /= 10;
    }
  } else {
    rest = static_cast<std::uint64_t>(magnitude);
  }
  // Divisions of 32 bits are faster, and enough for most amounts.
  for (; rest > 0xffffffff; rest /= 10) *--end = static_cast<char>('0' + rest % 10);
  auto low = static_cast<std::uint32_t>(rest);
  for (; low >= 100; low /= 100) {
    const char* const pair = kDigitPairs[low % 100];
    *--end = pair[1];
    *--end = pair[0];
  }
  for (; low != 0; low /= 10) *--end = static_cast<char>('0' + low % 10);
  return end;
}

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_DECIMAL_TEXT_H_
