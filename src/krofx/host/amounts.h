// Amounts as people write them, and as whole numbers of the smallest unit of a currency.

#ifndef KROFX_HOST_AMOUNTS_H_
#define KROFX_HOST_AMOUNTS_H_

#include <cstdint>
#include <optional>
#include <string_view>

#include "krofx/core/export.h"
#include "krofx/host/value_text.h"
#include "krofx/values/precision_integer.h"

/// An amount and a text have no order: `<` would compare addresses. Compare with krofx::ToAmount.
void operator<=>(const KRPrecisionInteger&, const char*) = delete;

namespace krofx {

/// The text of a number with at least `places` digits after the point: ToText(amount, 2) is
/// "-62.40". No digit is lost: a number with more places shows them all.
/// @param places at most 29; more counts as 29.
/// @return the text; empty for a number that is not valid, as after too many decimals.
KROFX_API ValueText ToText(const KRPrecisionInteger& amount, unsigned places);
/// The same for an amount that may be absent, which gives an empty text.
inline ValueText ToText(const std::optional<KRPrecisionInteger>& amount, unsigned places) {
  return amount ? ToText(*amount, places) : ValueText();
}

/// The amount in units of 10^-`places`: ToMinor(amount, 2) gives cents.
/// @return the number; nothing when it would not be exact, does not fit 64 bits, or when the amount
///         is not valid. Nothing is rounded.
KROFX_API std::optional<std::int64_t> ToMinor(const KRPrecisionInteger& amount, unsigned places);
/// The same for an amount that may be absent, which gives nothing.
inline std::optional<std::int64_t> ToMinor(const std::optional<KRPrecisionInteger>& amount,
                                           unsigned places) {
  return amount ? ToMinor(*amount, places) : std::nullopt;
}

/// @param places at most 29; a number with more is not valid, and no setter takes it.
/// @return the amount of `units` x 10^-`places`: FromMinor(-6240, 2) is -62.40.
inline KRPrecisionInteger FromMinor(std::int64_t units, unsigned places) {
  constexpr unsigned kNotValid = 30;
  return KRPrecisionInteger::FromInt64(units,
                                       static_cast<u16>(places < kNotValid ? places : kNotValid));
}

/// Reads an amount in the form of OFX, such as "-62.40": a sign, digits and a point, no blanks and
/// no commas, of at most 28 digits. Logs nothing.
/// @return the amount; nothing for any other text.
KROFX_API std::optional<KRPrecisionInteger> ToAmount(std::string_view text);

}  // namespace krofx

#endif  // KROFX_HOST_AMOUNTS_H_
