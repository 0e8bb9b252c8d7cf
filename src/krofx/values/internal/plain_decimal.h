// Exact decimals as plain data, without the buffers of KRPrecisionInteger, for the members of
// aggregates: a statement has tens of thousands of them.

#ifndef KROFX_VALUES_INTERNAL_PLAIN_DECIMAL_H_
#define KROFX_VALUES_INTERNAL_PLAIN_DECIMAL_H_

#include <cstddef>
#include <cstdint>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// sign x (low + middle x 2^32 + high x 2^64) / 10^decimals.
struct PlainDecimal {
  u32 low = 0;
  u32 middle = 0;
  u32 high = 0;
  s16 sign = 1;
  u16 decimals = 0;
};

/// Reads a number in the common form: an optional minus sign, up to 18 digits, and an optional
/// point.
/// @return false, with `out` unchanged, for a text of any other form.
KROFX_API bool ReadCommonDecimal(const char* text, std::size_t length, PlainDecimal& out) noexcept;

/// Writes the text of a number without a terminator, as KRPrecisionInteger::WriteText describes it.
/// @param out room for KRPrecisionInteger::kTextSize characters.
/// @return the end of the text.
KROFX_API char* WriteDecimal(const PlainDecimal& number, char* out) noexcept;

}  // namespace krofx::internal

#endif  // KROFX_VALUES_INTERNAL_PLAIN_DECIMAL_H_
