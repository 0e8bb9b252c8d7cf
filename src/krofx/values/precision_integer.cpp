// Exact decimals: arithmetic, comparison, conversion and the binary form. Their text is in
// precision_text.cpp.
//
// The magnitude is three 32-bit words in the object and one 128-bit integer in this file.
// Truncating a 128-bit result to 96 bits gives the same as 96-bit arithmetic that drops its
// carries.

#include "krofx/values/precision_integer.h"

#include "krofx/values/internal/byte_order.h"
#include "krofx/values/internal/decimal_text.h"

namespace krofx::internal {

/// The arithmetic on magnitudes as one integer, for the class that holds them as words.
struct DecimalCore {
  static u128 Magnitude(const KRPrecisionInteger& n) noexcept {
    return (u128{n.m_high} << 64) | (std::uint64_t{n.m_middle} << 32) | n.m_low;
  }

  static void SetMagnitude(KRPrecisionInteger& n, u128 magnitude) noexcept {
    n.m_low = static_cast<u32>(magnitude);
    n.m_middle = static_cast<u32>(magnitude >> 32);
    n.m_high = static_cast<u32>(magnitude >> 64);
  }

  /// Multiplies by 10 `places` times. A magnitude that overflows to exactly zero becomes positive,
  /// as a sum of zero does.
  static void Multiply(KRPrecisionInteger& n, u32 places) noexcept {
    const u128 magnitude = Magnitude(n);
    const u128 scaled = ScaleUp(magnitude, places);
    if (magnitude != 0 && scaled == 0) n.m_sign = 1;
    SetMagnitude(n, scaled);
  }

  /// Scales the number with fewer decimals up to the decimals of the other.
  static void Align(KRPrecisionInteger& a, KRPrecisionInteger& b) noexcept {
    KRPrecisionInteger& fewer = a.m_decimals < b.m_decimals ? a : b;
    const u16 decimals = a.m_decimals < b.m_decimals ? b.m_decimals : a.m_decimals;
    Multiply(fewer, static_cast<u32>(decimals - fewer.m_decimals));
    fewer.m_decimals = decimals;
  }

  /// @return a number below 0, 0 or above 0, as `a` is less than, equal to or greater than `b`.
  static int Compare(const KRPrecisionInteger& a, const KRPrecisionInteger& b) noexcept {
    if (a.m_sign != b.m_sign) return a.m_sign == -1 ? -1 : 1;
    u128 left = Magnitude(a);
    u128 right = Magnitude(b);
    if (a.m_decimals < b.m_decimals) {
      left = ScaleUp(left, static_cast<u32>(b.m_decimals - a.m_decimals));
    } else if (b.m_decimals < a.m_decimals) {
      right = ScaleUp(right, static_cast<u32>(a.m_decimals - b.m_decimals));
    }
    if (left == right) return 0;
    return (left > right) == (a.m_sign != -1) ? 1 : -1;
  }

  /// Adds `b`, whose value is lost.
  static void Add(KRPrecisionInteger& a, KRPrecisionInteger& b) noexcept {
    if (a.m_decimals != b.m_decimals) Align(a, b);
    const u128 left = Magnitude(a);
    const u128 right = Magnitude(b);
    u128 sum = 0;
    if (a.m_sign == b.m_sign) {
      sum = (left + right) & kMagnitudeMask;
    } else if (left >= right) {
      sum = left - right;
    } else {
      sum = right - left;
      a.m_sign = b.m_sign;
    }
    if (sum == 0) a.m_sign = 1;
    SetMagnitude(a, sum);
  }

  static void ShiftLeft(KRPrecisionInteger& n, u16 bits) noexcept {
    SetMagnitude(n, bits < kMagnitudeBits ? Magnitude(n) << bits : u128{0});
  }

  static void ShiftRight(KRPrecisionInteger& n, u16 bits) noexcept {
    SetMagnitude(n, bits < kMagnitudeBits ? Magnitude(n) >> bits : u128{0});
  }

  static s16 ProductOfSigns(const KRPrecisionInteger& a, const KRPrecisionInteger& b) noexcept {
    return static_cast<s16>(a.m_sign * b.m_sign);
  }

  static bool FitsBits(const KRPrecisionInteger& n, int bits) noexcept {
    return (Magnitude(n) >> bits) == 0;
  }
};

}  // namespace krofx::internal

using krofx::internal::DecimalCore;
using krofx::internal::kMagnitudeBits;
using krofx::internal::kPowersOfTen;
using krofx::internal::PackU16;
using krofx::internal::PackU32;
using krofx::internal::ScaleDown;
using krofx::internal::ScaleUp;
using krofx::internal::u128;
using krofx::internal::UnpackU16;
using krofx::internal::UnpackU32;

constinit const KRPrecisionInteger KRPrecisionInteger::KRZero;
constinit const KRPrecisionInteger KRPrecisionInteger::KROneHundred(100, 0);
// 10^27 and 10^19, as their words from the low one.
constinit const KRPrecisionInteger KRPrecisionInteger::KRPIOctillion(0xE8000000U, 0x9FD0803CU,
                                                                     0x033B2E3CU);
constinit const KRPrecisionInteger KRPrecisionInteger::KRPITenPentillion(0x89E80000U, 0x8AC72304U,
                                                                         0U);

KRPrecisionInteger KRPrecisionInteger::FromInt64(std::int64_t value, u16 decimals) noexcept {
  KRPrecisionInteger result;
  const auto bits = static_cast<std::uint64_t>(value);
  DecimalCore::SetMagnitude(result, value < 0 ? 0 - bits : bits);
  result.m_sign = value < 0 ? s16{-1} : s16{1};
  result.m_decimals = decimals;
  return result;
}

KRPrecisionInteger& KRPrecisionInteger::operator=(s32 value) {
  return KRPrecisionInteger::operator=(KRPrecisionInteger(value, 0));
}

u16 KRPrecisionInteger::operator==(const KRPrecisionInteger& other) const {
  return DecimalCore::Compare(*this, other) == 0;
}

u16 KRPrecisionInteger::operator!=(const KRPrecisionInteger& other) const {
  return DecimalCore::Compare(*this, other) != 0;
}

u16 KRPrecisionInteger::operator>(const KRPrecisionInteger& other) const {
  return DecimalCore::Compare(*this, other) > 0;
}

u16 KRPrecisionInteger::operator>=(const KRPrecisionInteger& other) const {
  return DecimalCore::Compare(*this, other) >= 0;
}

u16 KRPrecisionInteger::operator<(const KRPrecisionInteger& other) const {
  return DecimalCore::Compare(*this, other) < 0;
}

u16 KRPrecisionInteger::operator<=(const KRPrecisionInteger& other) const {
  return DecimalCore::Compare(*this, other) <= 0;
}

KRPrecisionInteger& KRPrecisionInteger::operator<<(u16 bits) {
  DecimalCore::ShiftLeft(*this, bits);
  return *this;
}

KRPrecisionInteger& KRPrecisionInteger::operator>>(u16 bits) {
  DecimalCore::ShiftRight(*this, bits);
  return *this;
}

KRPrecisionInteger& KRPrecisionInteger::operator<<=(u16 bits) {
  DecimalCore::ShiftLeft(*this, bits);
  return *this;
}

KRPrecisionInteger& KRPrecisionInteger::operator>>=(u16 bits) {
  DecimalCore::ShiftRight(*this, bits);
  return *this;
}

KRPrecisionInteger& KRPrecisionInteger::operator+=(const KRPrecisionInteger& other) {
  KRPrecisionInteger operand(other);
  DecimalCore::Add(*this, operand);
  return *this;
}

KRPrecisionInteger& KRPrecisionInteger::operator-=(const KRPrecisionInteger& other) {
  KRPrecisionInteger operand(other);
  operand.KRPrecisionInteger::Negate();
  DecimalCore::Add(*this, operand);
  return *this;
}

KRPrecisionInteger KRPrecisionInteger::operator+(const KRPrecisionInteger& other) const {
  KRPrecisionInteger result(*this);
  result += other;
  return result;
}

KRPrecisionInteger KRPrecisionInteger::operator-(const KRPrecisionInteger& other) const {
  KRPrecisionInteger result(*this);
  result -= other;
  return result;
}

KRPrecisionInteger KRPrecisionInteger::operator/(const KRPrecisionInteger& other) const {
  KRPrecisionInteger result(*this);
  const u128 divisor = DecimalCore::Magnitude(other);
  u128 dividend = DecimalCore::Magnitude(*this);
  if (divisor <= 1 || dividend == 0) return result;

  if (other.m_decimals > m_decimals) {
    dividend = ScaleUp(dividend, static_cast<u32>(other.m_decimals - m_decimals));
    result.m_decimals = 0;
  } else {
    result.m_decimals = static_cast<u16>(m_decimals - other.m_decimals);
  }
  DecimalCore::SetMagnitude(result, dividend / divisor);
  result.m_sign = DecimalCore::ProductOfSigns(*this, other);
  return result;
}

KRPrecisionInteger KRPrecisionInteger::operator*(const KRPrecisionInteger& other) const {
  KRPrecisionInteger result;
  DecimalCore::SetMagnitude(result, DecimalCore::Magnitude(*this) * DecimalCore::Magnitude(other));
  result.m_sign = DecimalCore::ProductOfSigns(*this, other);
  result.m_decimals = static_cast<u16>(m_decimals + other.m_decimals);
  return result;
}

KRPrecisionInteger KRPrecisionInteger::Mul10() const {
  KRPrecisionInteger result(*this);
  DecimalCore::Multiply(result, 1);
  return result;
}

void KRPrecisionInteger::Mul10InPlace() { DecimalCore::Multiply(*this, 1); }

KRPrecisionInteger KRPrecisionInteger::Div10() {
  KRPrecisionInteger result(*this);
  DecimalCore::SetMagnitude(result, DecimalCore::Magnitude(*this) / 10);
  return result;
}

KRPrecisionInteger KRPrecisionInteger::abs() const {
  KRPrecisionInteger result(*this);
  result.m_sign = 1;
  return result;
}

void KRPrecisionInteger::Negate() {
  m_sign = m_sign == -1 || DecimalCore::Magnitude(*this) == 0 ? s16{1} : s16{-1};
}

KRPrecisionInteger KRPrecisionInteger::Integer() {
  KRPrecisionInteger result(*this);
  result.KRPrecisionInteger::Decimal(0);
  return result;
}

KRPrecisionInteger KRPrecisionInteger::Fraction() { return *this; }

void KRPrecisionInteger::Decimal(u16 decimals) {
  if (m_decimals < decimals) {
    DecimalCore::Multiply(*this, static_cast<u32>(decimals - m_decimals));
  } else {
    DecimalCore::SetMagnitude(
        *this, ScaleDown(DecimalCore::Magnitude(*this), static_cast<u32>(m_decimals - decimals)));
  }
  m_decimals = decimals;
}

u16 KRPrecisionInteger::FitInASLong() const { return DecimalCore::FitsBits(*this, 31); }

u16 KRPrecisionInteger::FitInAULong() const { return DecimalCore::FitsBits(*this, 32); }

u16 KRPrecisionInteger::FitInASShort() const { return DecimalCore::FitsBits(*this, 15); }

u16 KRPrecisionInteger::FitInAUShort() const { return DecimalCore::FitsBits(*this, 16); }

u16 KRPrecisionInteger::SetDecimal(u16 decimals) noexcept {
  if (decimals > kMaxDecimals) return 0;
  m_decimals = decimals;
  return 1;
}

u32 KRPrecisionInteger::Bit(u16 n) const noexcept {
  if (n >= kMagnitudeBits) return 0;
  const u32 words[] = {m_low, m_middle, m_high};
  return words[n / 32] & (u32{1} << (n % 32));
}

u16 KRPrecisionInteger::MSD() const noexcept {
  const u128 whole = ScaleDown(DecimalCore::Magnitude(*this), m_decimals);
  for (u16 digits = 0; digits < 29; ++digits) {
    if (whole < kPowersOfTen[digits]) return digits;
  }
  return 0;
}

void KRPrecisionInteger::RightAlign(KRPrecisionInteger& a, KRPrecisionInteger& b) const noexcept {
  DecimalCore::Align(a, b);
}

void* KRPrecisionInteger::LockBuffer() { return m_binary.Ensure(m_binaryLen); }

void KRPrecisionInteger::UnLockBuffer() { m_binary.Release(); }

namespace {

constexpr u16 kBinaryVersion = 1;

}  // namespace

void KRPrecisionInteger::ExportBinary(void* target, u16* length) const {
  if (target == nullptr) return;
  char* const block = static_cast<char*>(target);
  PackU16(block, kBinaryVersion);
  PackU32(block + 2, m_low);
  PackU32(block + 6, m_middle);
  PackU32(block + 10, m_high);
  PackU16(block + 14, static_cast<u16>(m_sign));
  PackU16(block + 16, m_decimals);
  if (length != nullptr) *length = m_binaryLen;
}

void KRPrecisionInteger::ImportBinary(const void* source) {
  if (source == nullptr) return;
  const char* const block = static_cast<const char*>(source);
  if (UnpackU16(block) != kBinaryVersion) return;
  const s16 sign = static_cast<s16>(UnpackU16(block + 14));
  if (sign != 1 && sign != -1) return;
  m_low = UnpackU32(block + 2);
  m_middle = UnpackU32(block + 6);
  m_high = UnpackU32(block + 10);
  m_sign = sign;
  m_decimals = UnpackU16(block + 16);
}

u16 KRPercent::IsValid() const {
  return *this >= KRZero && *this <= KROneHundred && KRPrecisionInteger::IsValid();
}

u16 KRPosPrecisionInteger::IsValid() const { return Sign() == 1 && KRPrecisionInteger::IsValid(); }

u16 KRWideInteger::IsValid() { return Decimal() == 0; }
