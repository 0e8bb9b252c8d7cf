// Reading numbers in tests: whole magnitude, sign and decimals at a glance.

#ifndef KROFX_TESTS_VALUES_PRECISION_VALUES_H_
#define KROFX_TESTS_VALUES_PRECISION_VALUES_H_

#include <cstdint>
#include <string>

#include "krofx/values/precision_integer.h"

/// A number as "sign magnitude e decimals", such as "-123450e2": unlike the OFX text, it
/// distinguishes numbers of equal value and different scale, and shows invalid ones.
inline std::string Shown(const KRPrecisionInteger& n) {
  u32 words[] = {n.GetMSBytes(), n.GetSSBytes(), n.GetLSBytes()};
  std::string digits;
  do {
    std::uint64_t rest = 0;
    for (u32& word : words) {
      rest = rest << 32 | word;
      word = static_cast<u32>(rest / 10);
      rest %= 10;
    }
    digits.insert(digits.begin(), static_cast<char>('0' + rest));
  } while ((words[0] | words[1] | words[2]) != 0);
  return (n.Sign() < 0 ? "-" : "") + digits + "e" + std::to_string(n.Decimal());
}

/// A number from a text that must be right.
inline KRPrecisionInteger Number(const char* text) { return KRPrecisionInteger(text); }

/// The largest magnitude, 2^96 - 1.
inline KRPrecisionInteger Largest() {
  KRPrecisionInteger n(1, 0);
  n <<= 95;
  const KRPrecisionInteger half(n);
  n -= KRPrecisionInteger(1, 0);
  n += half;
  return n;
}

#endif  // KROFX_TESTS_VALUES_PRECISION_VALUES_H_
