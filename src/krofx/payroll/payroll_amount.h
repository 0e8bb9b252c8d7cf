// The amounts of the payroll tags: an exact decimal that knows whether it is dollars, a percentage
// or a plain number, and that can be blank.
//
// A modification sends only what changed, so an unchanged field must differ from one that was
// cleared. The first is absent: its tag is not set, and nothing is written. The second is blank:
// its tag is set, and its text is "^@~*".

#ifndef KROFX_PAYROLL_PAYROLL_AMOUNT_H_
#define KROFX_PAYROLL_PAYROLL_AMOUNT_H_

#include <string_view>

#include "krofx/core/export.h"
#include "krofx/core/lifetime.h"
#include "krofx/core/types.h"
#include "krofx/values/precision_integer.h"

namespace krofx::internal {

/// The text of a blank value.
inline constexpr char kBlankText[] = "^@~*";
/// @return 1 when a text means a blank value: "^@~*", or "__OFX_EMPTY_STRING__", which is read but
///         never written. Null does not.
KROFX_API u16 IsBlankText(const char* text) noexcept;

}  // namespace krofx::internal

/// The kind of a new KRPayrollAmount. Every value except the first two makes a plain number.
enum KRPayrollAmountType : u32 {
  KRPayrollAmountType_Empty = 0,   ///< Blank.
  KRPayrollAmountType_Dollar = 1,  ///< Dollars, with two decimal places.
  KRPayrollAmountType_Number = 2,  ///< A plain number.
};

/// An amount, a rate or a count of the payroll tags. A value type, with the rules of its base
/// class. It is dollars, a percentage or neither, and may in addition be blank.
///
/// Two amounts are compatible when neither is blank and both are of the same kind. Comparisons of
/// incompatible amounts give 0, except that != gives 1, so a blank amount is unequal even to
/// itself. Sums of incompatible amounts leave the left side unchanged. A plain number of the base
/// class counts as an amount of neither kind.
class KROFX_API KRPayrollAmount : public KRPrecisionInteger {
 public:
  /// Makes a zero of the given kind.
  KRPayrollAmount(KRPayrollAmountType type = KRPayrollAmountType_Dollar) noexcept;
  /// Takes a number. With both flags the amount is of dollars.
  KRPayrollAmount(const KRPrecisionInteger& number, u16 percent, u16 dollarKind) noexcept;
  /// `value` / 10^`decimals`, a percentage or a plain number.
  KRPayrollAmount(s32 value, u16 decimals, u16 percent) noexcept;
  /// Parses `text`, as ConvertStringToKRPrecisionInteger does.
  explicit KRPayrollAmount(const char* text);
  using KRPrecisionInteger::operator=;

  /// @return 1 when the amount is blank.
  u16 IsEmpty() const { return m_empty; }
  /// Makes the amount blank or not; number and kind stay.
  void SetEmpty(u16 empty) { m_empty = empty != 0; }
  /// @return 1 when the amount is a percentage.
  u16 IsPercent() const { return m_percent; }
  /// Makes the amount a percentage and no longer dollars (1), or not a percentage (0).
  void SetPercent(u16 percent);
  /// @return 1 when the amount is of dollars.
  u16 IsDollarKind() const { return m_dollarKind; }
  /// Makes the amount dollars and no longer a percentage (1), or not dollars (0).
  void SetDollarKind(u16 dollarKind);

  /// Reads "$12", "12.5%", "12" or one of the two texts of a blank value, which leave number and
  /// kind as they are. The text between '$' and '%' is read by the rules of the base class; with
  /// both, the amount is a percentage.
  /// @return 1 when the text was read; otherwise 0 after a warning, with what was read.
  u16 ConvertStringToKRPrecisionInteger(const char* text) override;

  /// The text: "^@~*" for a blank amount, "$5.00" for dollars, with at least two decimal places,
  /// "12.5%" for a percentage. There is at least one digit before the point. The text has at most
  /// 30 characters: zeros beyond that are not added, and the text is empty when the number of
  /// dollars or of a percentage alone takes all 30.
  /// @return the text, which the object owns and the next call overwrites; null when memory is
  ///         exhausted, and then the thread's fire alarm is raised.
  operator char*() KROFX_LIFETIME_BOUND override;
  /// The same for a const amount.
  operator char*() const KROFX_LIFETIME_BOUND {
    return const_cast<KRPayrollAmount*>(this)->operator char*();
  }

  /// @return 1 when the amounts are compatible and equal.
  virtual u16 operator==(const KRPayrollAmount& other) const;
  /// @return 1 when the amounts are not compatible or not equal.
  virtual u16 operator!=(const KRPayrollAmount& other) const;
  /// @return 1 when the amounts are compatible and this one is less.
  virtual u16 operator<(const KRPayrollAmount& other) const;
  /// @return 1 when the amounts are compatible and this one is less or equal.
  virtual u16 operator<=(const KRPayrollAmount& other) const;
  /// @return 1 when the amounts are compatible and this one is greater.
  virtual u16 operator>(const KRPayrollAmount& other) const;
  /// @return 1 when the amounts are compatible and this one is greater or equal.
  virtual u16 operator>=(const KRPayrollAmount& other) const;

  /// Adds a compatible amount; any other leaves this one unchanged.
  virtual KRPayrollAmount& operator+=(const KRPayrollAmount& other);
  /// Subtracts a compatible amount; any other leaves this one unchanged.
  virtual KRPayrollAmount& operator-=(const KRPayrollAmount& other);
  /// @return the sum, by the rules of +=.
  virtual KRPayrollAmount operator+(const KRPayrollAmount& other) const;
  /// @return the difference, by the rules of -=.
  virtual KRPayrollAmount operator-(const KRPayrollAmount& other) const;
  /// @return the product of the numbers, whatever their kinds; if `other` is a percentage it is
  ///         divided by 100. It has the kind of this amount and is not blank.
  virtual KRPayrollAmount operator*(const KRPayrollAmount& other) const;
  /// @return the quotient of the numbers by the base class's rules, whatever their kinds; it is
  ///         multiplied by 100 if `other` is a percentage. It has the kind of this amount and is
  ///         not blank.
  virtual KRPayrollAmount operator/(const KRPayrollAmount& other) const;
  /// @return a copy with sign +1.
  virtual KRPayrollAmount absval() const;

  /// @name The same against any number
  /// A number that is an amount is treated as one. Results by value are plain numbers.
  /// @{
  u16 operator==(const KRPrecisionInteger& other) const override;
  u16 operator!=(const KRPrecisionInteger& other) const override;
  u16 operator<(const KRPrecisionInteger& other) const override;
  u16 operator<=(const KRPrecisionInteger& other) const override;
  u16 operator>(const KRPrecisionInteger& other) const override;
  u16 operator>=(const KRPrecisionInteger& other) const override;
  KRPayrollAmount& operator+=(const KRPrecisionInteger& other) override;
  KRPayrollAmount& operator-=(const KRPrecisionInteger& other) override;
  KRPrecisionInteger operator+(const KRPrecisionInteger& other) const override;
  KRPrecisionInteger operator-(const KRPrecisionInteger& other) const override;
  KRPrecisionInteger operator*(const KRPrecisionInteger& other) const override;
  KRPrecisionInteger operator/(const KRPrecisionInteger& other) const override;
  /// @}

  u16 operator==(const char*) const = delete;
  u16 operator!=(const char*) const = delete;
  KRPayrollAmount operator+(s32) const = delete;
  KRPayrollAmount operator-(s32) const = delete;

 protected:
  /// @return 1 when neither amount is blank and both are of the same kind.
  u16 IsCompatible(const KRPayrollAmount& other) const;

 private:
  // The number as an amount: the number itself if it is one.
  static KRPayrollAmount AsAmount(const KRPrecisionInteger& number);

  u16 m_percent = 0;
  u16 m_empty = 0;
  u16 m_dollarKind = 0;
};

#endif  // KROFX_PAYROLL_PAYROLL_AMOUNT_H_
