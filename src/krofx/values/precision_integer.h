// Exact decimals: every OFX amount, price, quantity, rate and count.
//
// A number is sign x magnitude / 10^decimals, with a magnitude of 96 bits. No floating point is
// used and nothing is rounded: an operation that loses digits truncates the magnitude. Arithmetic
// is modulo 2^96 and does not report overflow. Only the reading of text has a limit: 28 digits.
//
// Zero has a minus sign when it was parsed from "-0" or is the result of a multiplication or
// division with a negative sign. Negative zero is unequal to zero, is less than it, and is written
// as "-0".

#ifndef KROFX_VALUES_PRECISION_INTEGER_H_
#define KROFX_VALUES_PRECISION_INTEGER_H_

#include <cstddef>
#include <cstdint>

#include "krofx/core/export.h"
#include "krofx/core/lifetime.h"
#include "krofx/core/memory.h"
#include "krofx/core/types.h"
#include "krofx/values/internal/lazy_block.h"
#include "krofx/values/internal/plain_decimal.h"

namespace krofx::internal {
struct DecimalCore;
}  // namespace krofx::internal

/// An exact decimal number. A value type: copies are independent. Only one thread at a time may use
/// an object, even to read it, since the conversion to text stores its text in the object.
///
/// The conversion to `char*` makes every number usable where a text is expected. Comparisons with a
/// text and sums with a built-in integer would silently use that pointer, so they are deleted.
class KROFX_API KRPrecisionInteger : public krofx::internal::HeapObject {
 public:
  /// Size of the block that LockBuffer gives and that ExportBinary reports, in bytes.
  static constexpr u16 m_binaryLen = 20;
  /// Room for the longest text of a number with its terminator, in bytes.
  static constexpr u16 kTextSize = 32;
  /// The largest number of places after the point in a valid number.
  static constexpr u16 kMaxDecimals = 29;

  /// 0.
  static const KRPrecisionInteger KRZero;
  /// 100.
  static const KRPrecisionInteger KROneHundred;
  /// 10^27.
  static const KRPrecisionInteger KRPIOctillion;
  /// 10^19.
  static const KRPrecisionInteger KRPITenPentillion;

  /// Zero: sign +1, no decimals.
  constexpr KRPrecisionInteger() noexcept = default;
  /// `value` / 10^`decimals`. Decimals above 29 are stored as given and make the number invalid.
  constexpr KRPrecisionInteger(s32 value, u16 decimals) noexcept
      : m_low(value < 0 ? 0U - static_cast<u32>(value) : static_cast<u32>(value)),
        m_sign(value < 0 ? s16{-1} : s16{1}),
        m_decimals(decimals) {}
  /// Parses `text`, as this class's ConvertStringToKRPrecisionInteger does.
  explicit KRPrecisionInteger(const char* text);
  /// Copies the number; the text and the binary block are not copied.
  constexpr KRPrecisionInteger(const KRPrecisionInteger&) noexcept = default;
  /// @return `value` / 10^`decimals`, for values beyond 32 bits.
  static KRPrecisionInteger FromInt64(std::int64_t value, u16 decimals) noexcept;
  /// Takes a number as plain data.
  constexpr explicit KRPrecisionInteger(const krofx::internal::PlainDecimal& number) noexcept
      : m_low(number.low),
        m_middle(number.middle),
        m_high(number.high),
        m_sign(number.sign),
        m_decimals(number.decimals) {}

  virtual ~KRPrecisionInteger() = default;

  /// Parses `text` by the virtual ConvertStringToKRPrecisionInteger and ignores its result.
  virtual KRPrecisionInteger& operator=(const char* text);
  /// Takes an integer; decimals become 0.
  virtual KRPrecisionInteger& operator=(s32 value);
  /// Copies the number; the text and the binary block of both objects stay as they are.
  virtual KRPrecisionInteger& operator=(const KRPrecisionInteger&) noexcept = default;

  /// Reads a number in OFX form: a sign, digits, one point. Commas are skipped everywhere, but a
  /// comma after the point counts as a place. A number has up to 28 digits, leading and trailing
  /// zeros included; blanks and exponents are errors. A text of only a sign, a point or a comma is
  /// zero.
  ///
  /// The first error is logged as a warning with the whole text. At the 29th digit it is
  /// KRPW_TOOLONG, and reading stops with the first 28 digits. Every other error is KRPW_BADFORMAT,
  /// and reading continues; a number that the virtual IsValid refuses and a null or empty text are
  /// such errors.
  ///
  /// @return 1 when the number was read; 0 after any error, and then the number holds what was
  ///         read.
  virtual u16 ConvertStringToKRPrecisionInteger(const char* text);

  /// @return 1 when sign and value are equal; 2.50 equals 2.5, and negative zero is unequal to
  ///         zero. Comparing numbers with different decimals can overflow 96 bits, and then the
  ///         result is wrong.
  virtual u16 operator==(const KRPrecisionInteger& other) const;
  /// @return the negation of ==.
  virtual u16 operator!=(const KRPrecisionInteger& other) const;
  /// @return 1 when this number is greater.
  virtual u16 operator>(const KRPrecisionInteger& other) const;
  /// @return 1 when this number is greater or equal.
  virtual u16 operator>=(const KRPrecisionInteger& other) const;
  /// @return 1 when this number is less.
  virtual u16 operator<(const KRPrecisionInteger& other) const;
  /// @return 1 when this number is less or equal.
  virtual u16 operator<=(const KRPrecisionInteger& other) const;

  /// Shifts the magnitude left by `bits` in this object, as <<= does; it makes no copy. Bits beyond
  /// 96 are lost; sign and decimals stay.
  virtual KRPrecisionInteger& operator<<(u16 bits);
  /// Shifts the magnitude right by `bits` in this object, as >>= does; it makes no copy.
  virtual KRPrecisionInteger& operator>>(u16 bits);
  /// Moves the magnitude left by `bits`.
  virtual KRPrecisionInteger& operator<<=(u16 bits);
  /// Moves the magnitude right by `bits`.
  virtual KRPrecisionInteger& operator>>=(u16 bits);

  /// Adds. The decimals become the larger of the two; a zero result gets sign +1.
  virtual KRPrecisionInteger& operator+=(const KRPrecisionInteger& other);
  /// Subtracts, by the rules of +=.
  virtual KRPrecisionInteger& operator-=(const KRPrecisionInteger& other);
  /// @return the sum, by the rules of +=.
  virtual KRPrecisionInteger operator+(const KRPrecisionInteger& other) const;
  /// @return the difference, by the rules of +=.
  virtual KRPrecisionInteger operator-(const KRPrecisionInteger& other) const;
  /// @return the quotient of the magnitudes as integers. If this number has fewer decimals than the
  ///         divisor it is first scaled up to the divisor's. No further digits are computed, so 7
  ///         / 2 is 3 and 1.00 / 3 is 0.33. The decimals are this number's less the divisor's, at
  ///         least 0, and the sign is the product of the signs. When the divisor's magnitude is 0
  ///         or 1, whatever its sign and decimals, or this number's is 0, a copy of this number.
  virtual KRPrecisionInteger operator/(const KRPrecisionInteger& other) const;
  /// @return the product. Its decimals are the sum of both, which may make it invalid; its sign is
  ///         the product of the signs, even for zero.
  virtual KRPrecisionInteger operator*(const KRPrecisionInteger& other) const;

  /// @return a copy with the magnitude times 10.
  virtual KRPrecisionInteger Mul10() const;
  /// Multiplies the magnitude by 10; the decimals stay.
  virtual void Mul10InPlace();
  /// @return a copy with the magnitude divided by 10; the decimals stay.
  virtual KRPrecisionInteger Div10();
  /// @return a copy with sign +1.
  virtual KRPrecisionInteger abs() const;
  /// Changes the sign. Zero becomes or stays positive.
  virtual void Negate();
  /// @return a copy without the places after the point, truncated.
  virtual KRPrecisionInteger Integer();
  /// @return a plain copy, the integer part included.
  virtual KRPrecisionInteger Fraction();

  /// The OFX text of the number: a minus sign for a negative one, no zero in front of the point, no
  /// zeros at the end after it, so 12.50 is "12.5" and 0.05 is ".05". Zero is "0" whatever its
  /// decimals, or "-0". A number of 30 or more decimals is "0".
  ///
  /// @return the text, which the object owns and the next call overwrites; null when memory is
  ///         exhausted, and then the thread's fire alarm is raised.
  virtual operator char*() KROFX_LIFETIME_BOUND;
  /// The same for a const number; reaches the override of a derived class.
  operator char*() const KROFX_LIFETIME_BOUND;
  /// A number is no condition: its text is there whatever its value. Ask IsZero.
  explicit operator bool() const = delete;
  explicit operator bool() = delete;

  /// Changes the number of decimals and keeps the value: multiplies or divides by 10, truncating,
  /// until the number has `decimals` places.
  virtual void Decimal(u16 decimals);
  /// @return the places after the point.
  virtual u16 Decimal() const { return m_decimals; }

  /// @return 1 when the magnitude fits 31 bits. This and the next three ignore sign and decimals.
  virtual u16 FitInASLong() const;
  /// @return 1 when the magnitude fits 32 bits.
  virtual u16 FitInAULong() const;
  /// @return 1 when the magnitude fits 15 bits.
  virtual u16 FitInASShort() const;
  /// @return 1 when the magnitude fits 16 bits.
  virtual u16 FitInAUShort() const;

  /// @return +1 or -1.
  virtual s16 Sign() const { return m_sign; }
  /// @return 1 when the magnitude is 0.
  virtual u16 IsZero() const { return (m_low | m_middle | m_high) == 0; }
  /// @return 1 when the sign is +1, as that of plain zero is.
  virtual u16 IsPositive() const { return m_sign == 1; }
  /// @return 1 when the sign is -1, as that of negative zero is.
  virtual u16 IsNegative() const { return m_sign == -1; }
  /// @return 1 when the number has at most 29 decimals. Derived classes add rules, which parsing
  ///         applies too.
  virtual u16 IsValid() const { return m_decimals <= kMaxDecimals; }

  /// @return the low 32 bits of the magnitude. This and the next six getters ignore the decimals.
  virtual u32 GetKRULong() const { return m_low; }
  /// @return the sign times the low 32 bits of the magnitude, truncated to 32 bits.
  virtual s32 GetKRSLong() const { return static_cast<s32>(SignedLow()); }
  /// @return the low 16 bits of the magnitude.
  virtual u16 GetKRUShort() const { return static_cast<u16>(m_low); }
  /// @return the sign times the low 32 bits of the magnitude, truncated to 16 bits.
  virtual s16 GetKRSShort() const { return static_cast<s16>(SignedLow()); }
  /// @return bits 0 to 31 of the magnitude.
  virtual u32 GetLSBytes() const { return m_low; }
  /// @return bits 32 to 63 of the magnitude.
  virtual u32 GetSSBytes() const { return m_middle; }
  /// @return bits 64 to 95 of the magnitude.
  virtual u32 GetMSBytes() const { return m_high; }

  /// Stores the decimals without touching the magnitude, which changes the value.
  /// @return 1; 0 for decimals above 29, and then nothing changes.
  u16 SetDecimal(u16 decimals) noexcept;

  /// @return the number as plain data.
  krofx::internal::PlainDecimal AsPlain() const noexcept {
    return {m_low, m_middle, m_high, m_sign, m_decimals};
  }

  /// Parses `length` characters at `text` by the rules of this class's
  /// ConvertStringToKRPrecisionInteger, even for an object of a derived class, and with the virtual
  /// IsValid. Needs no terminator and takes no memory unless a warning is logged.
  /// @return 1 when the number was read; 0 after any error.
  u16 Parse(const char* text, std::size_t length);
  /// Writes the text of `operator char*` of this class and a terminator to `out`, which has room
  /// for kTextSize characters. Takes no memory.
  /// @return the characters written, without the terminator.
  u16 WriteText(char* out) const noexcept;

  /// Gets the block for the binary form: m_binaryLen bytes, owned by the object and made at first
  /// use.
  /// @return the block; null when memory is exhausted, and then the thread's fire alarm is raised.
  void* LockBuffer();
  /// Frees the block.
  void UnLockBuffer();
  /// Writes the binary form: u16 version 1, the three words of the magnitude from the low one, sign
  /// and decimals as 16 bits, all least significant byte first; 18 bytes. A null target does
  /// nothing.
  /// @param target room for m_binaryLen bytes.
  /// @param length receives m_binaryLen; may be null.
  void ExportBinary(void* target, u16* length) const;
  /// Reads the binary form. A block of another version, a block whose sign is neither +1 nor -1, or
  /// null leaves the number unchanged.
  void ImportBinary(const void* source);

  u16 operator==(const char*) const = delete;
  u16 operator!=(const char*) const = delete;
  KRPrecisionInteger operator+(s32) const = delete;
  KRPrecisionInteger operator-(s32) const = delete;

 protected:
  /// @return bit `n` of the magnitude as a mask within its word; 0 when the bit is clear or `n` is
  ///         above 95.
  u32 Bit(u16 n) const noexcept;
  /// @return the number of digits before the point, whatever the sign; 0 for a value below 1 and
  ///         for one of 29 digits.
  u16 MSD() const noexcept;
  /// Multiplies whichever of `a` and `b` has fewer decimals by 10 until the decimals agree.
  void RightAlign(KRPrecisionInteger& a, KRPrecisionInteger& b) const noexcept;
  /// Gets the memory that `operator char*` returns: kTextSize bytes, made at first use.
  /// @return the memory; null when memory is exhausted, and then the thread's fire alarm is raised.
  char* TextBuffer() const { return static_cast<char*>(m_text.Ensure(kTextSize)); }
  /// Gets the same memory.
  /// @return the memory; null when no text has been made yet.
  char* CurrentText() const noexcept { return static_cast<char*>(m_text.Get()); }

 private:
  friend struct krofx::internal::DecimalCore;

  constexpr KRPrecisionInteger(u32 low, u32 middle, u32 high) noexcept
      : m_low(low), m_middle(middle), m_high(high) {}

  u32 SignedLow() const noexcept { return m_sign < 0 ? 0U - m_low : m_low; }

  u32 m_low = 0;
  u32 m_middle = 0;
  u32 m_high = 0;
  s16 m_sign = 1;
  u16 m_decimals = 0;
  mutable krofx::internal::LazyBlock m_text;
  krofx::internal::LazyBlock m_binary;
};

/// A percentage: valid from 0 to 100.
class KROFX_API KRPercent : public KRPrecisionInteger {
 public:
  /// Zero.
  constexpr KRPercent() noexcept = default;
  /// `value` / 10^`decimals`.
  constexpr KRPercent(s32 value, u16 decimals) noexcept : KRPrecisionInteger(value, decimals) {}
  /// Parses `text`.
  explicit KRPercent(const char* text);
  /// Takes a number, valid here or not.
  KRPercent(const KRPrecisionInteger& number) noexcept : KRPrecisionInteger(number) {}
  using KRPrecisionInteger::operator=;

  /// @return 1 when the number is from 0 to 100 and the base's rule holds. Negative zero is below
  ///         0.
  u16 IsValid() const override;
};

/// A number that cannot be negative.
class KROFX_API KRPosPrecisionInteger : public KRPrecisionInteger {
 public:
  /// Zero.
  constexpr KRPosPrecisionInteger() noexcept = default;
  /// `value` / 10^`decimals`.
  constexpr KRPosPrecisionInteger(s32 value, u16 decimals) noexcept
      : KRPrecisionInteger(value, decimals) {}
  /// Parses `text`.
  explicit KRPosPrecisionInteger(const char* text);
  /// Takes a number, valid here or not.
  KRPosPrecisionInteger(const KRPrecisionInteger& number) noexcept : KRPrecisionInteger(number) {}
  using KRPrecisionInteger::operator=;

  /// @return 1 when the sign is +1 and the base's rule holds: zero is allowed, negative zero is
  ///         not.
  u16 IsValid() const override;
};

/// A number that should have no decimals.
class KROFX_API KRWideInteger : public KRPrecisionInteger {
 public:
  /// Zero.
  constexpr KRWideInteger() noexcept = default;
  /// Takes a number, with decimals or not.
  KRWideInteger(const KRPrecisionInteger& number) noexcept : KRPrecisionInteger(number) {}
  using KRPrecisionInteger::operator=;

  using KRPrecisionInteger::IsValid;
  /// @return 1 when the number has no decimals. Only a direct call on a non-const object calls this
  ///         operation: parsing and building call the const one of the base class.
  virtual u16 IsValid();
};

/// A number whose text groups its digits by commas.
class KROFX_API KRCommaSepPrecisionInteger : public KRPrecisionInteger {
 public:
  /// Zero.
  constexpr KRCommaSepPrecisionInteger() noexcept = default;
  using KRPrecisionInteger::operator=;

  /// Parses `text` without its commas, so that a comma after the point does not count as a place.
  /// @return 1 when the number was read; 0 after any error. When memory is exhausted the result is
  ///         0, the thread's fire alarm is raised, and the number is zero.
  u16 ConvertStringToKRPrecisionInteger(const char* text) override;

  /// Does not convert the number.
  /// @return the text that the base class's conversion last made on this object; null when it was
  ///         never called.
  operator char*() KROFX_LIFETIME_BOUND override;
  /// The same for a const number.
  operator char*() const KROFX_LIFETIME_BOUND { return KRPrecisionInteger::operator char*(); }
};

#endif  // KROFX_VALUES_PRECISION_INTEGER_H_
