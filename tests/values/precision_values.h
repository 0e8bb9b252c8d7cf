// Reading numbers in tests: whole magnitude, sign and decimals at a glance.

#ifndef KROFX_TESTS_VALUES_PRECISION_VALUES_H_
#define KROFX_TESTS_VALUES_PRECISION_VALUES_H_

#include <string>

#include "krofx/values/precision_integer.h"

/// A number as "sign magnitude e decimals", such as "-123450e2": unlike the OFX text, it
/// distinguishes numbers of equal value and different scale, and shows invalid ones.
inline std::string Shown(const KRPrecisionInteger& n) {
  __extension__ typedef unsigned __int128 Wide;
  Wide magnitude = (static_cast<Wide>(n.GetMSBytes()) << 64) |
                   (static_cast<Wide>(n.GetSSBytes()) << 32) | n.GetLSBytes();
  std::string digits;
  do {
    digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(magnitude % 10)));
    magnitude /= 10;
  } while (magnitude != 0);
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
