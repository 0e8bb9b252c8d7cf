// The integer types of the whole library. Their widths are part of the interface: text lengths,
// array indices and version masks are 16 bits, and binary forms are written field by field.

#ifndef KROFX_CORE_TYPES_H_
#define KROFX_CORE_TYPES_H_

#include <cstdint>

/// Unsigned 8 bits, for tables and raw bytes.
using u8 = std::uint8_t;
/// Unsigned 16 bits; also the library's truth value, 0 or 1.
using u16 = std::uint16_t;
/// Signed 16 bits.
using s16 = std::int16_t;
/// Unsigned 32 bits.
using u32 = std::uint32_t;
/// Signed 32 bits.
using s32 = std::int32_t;

#endif  // KROFX_CORE_TYPES_H_
