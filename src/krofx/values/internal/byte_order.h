// Fixed byte order for binary forms: multi-byte values are written least significant byte first on
// every processor, so that a block written on one machine can be read on another.

#ifndef KROFX_VALUES_INTERNAL_BYTE_ORDER_H_
#define KROFX_VALUES_INTERNAL_BYTE_ORDER_H_

#include "krofx/core/types.h"

namespace krofx::internal {

/// Writes the low `bytes` bytes of `value` at `to`, least significant first.
constexpr void PackBytes(char* to, u32 value, int bytes) noexcept {
  for (int i = 0; i < bytes; ++i) {
    to[i] = static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
  }
}

/// Reads `bytes` (at most 4) bytes at `from`, least significant first.
constexpr u32 UnpackBytes(const char* from, int bytes) noexcept {
  u32 value = 0;
  for (int i = 0; i < bytes; ++i) {
    value |= static_cast<u32>(static_cast<unsigned char>(from[i])) << (8 * i);
  }
  return value;
}

/// Writes 16 bits at `to`.
constexpr void PackU16(char* to, u16 value) noexcept { PackBytes(to, value, 2); }
/// Writes 32 bits at `to`.
constexpr void PackU32(char* to, u32 value) noexcept { PackBytes(to, value, 4); }
/// Reads 16 bits at `from`.
constexpr u16 UnpackU16(const char* from) noexcept {
  return static_cast<u16>(UnpackBytes(from, 2));
}
/// Reads 32 bits at `from`.
constexpr u32 UnpackU32(const char* from) noexcept { return UnpackBytes(from, 4); }

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_BYTE_ORDER_H_
