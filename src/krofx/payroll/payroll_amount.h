// The amounts of the payroll tags: an exact decimal that knows whether it is dollars, a percentage
// or a plain number, and that can be blank.
//
// A modification sends only what changed, so a field that was left alone has to differ from one
// that was cleared. The first is absent: its tag is not set, and nothing is written. The second is
// blank: its tag is set, and the value says "^@~*".

#ifndef KROFX_PAYROLL_PAYROLL_AMOUNT_H_
#define KROFX_PAYROLL_PAYROLL_AMOUNT_H_

#include <string_view>

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/values/precision_integer.h"

namespace krofx::internal {

/// The text of a blank value.
inline constexpr char kBlankText[] = "^@~*";
/// 1 when a text says that a value is blank: "^@~*", or "__OFX_EMPTY_STRING__", which is read but
/// never written. Null is no such text.
KROFX_API u16 IsBlankText(const char* text) noexcept;

}  // namespace krofx::internal

/// What a new KRPayrollAmount is. Every value but the first two makes a plain number.
enum KRPayrollAmountType : u32 {
  KRPayrollAmountType_Empty = 0,   ///< Blank.
  KRPayrollAmountType_Dollar = 1,  ///< Dollars, with two decimal places.
  KRPayrollAmountType_Number = 2,  ///< A plain number.
};

/// An amount, a rate or a count of the payroll tags. A value type, with the rules of its base; it
/// is dollars, a percentage, or neither, and it may be blank besides.
///
/// Two amounts are compatible when neither is blank and both are of the same kind. Comparisons of
/// incompatible amounts fail, those for being unequal hold, so that a blank amount differs even
/// from itself; sums of incompatible amounts leave the left side as it is. A plain number of the
/// base class counts as an amount of neither kind.
class KROFX_API KRPayrollAmount : public KRPrecisionInteger {
 public:
  /// Makes 0 of the given kind.
  KRPayrollAmount(KRPayrollAmountType type = KRPayrollAmountType_Dollar) noexcept;
  /// Takes a number. With both flags the amount is of dollars.
  KRPayrollAmount(const KRPrecisionInteger& number, u16 percent, u16 dollarKind) noexcept;
  /// `value` / 10^`decimals`, a percentage or a plain number.
  KRPayrollAmount(s32 value, u16 decimals, u16 percent) noexcept;
  /// Parses `text`, as ConvertStringToKRPrecisionInteger does.
  explicit KRPayrollAmount(const char* text);
  using KRPrecisionInteger::operator=;

  /// 1 when the amount is blank.
  u16 IsEmpty() const { return m_empty; }
  /// Makes the amount blank or not; number and kind stay.
  void SetEmpty(u16 empty) { m_empty = empty != 0; }
  /// 1 when the amount is a percentage.
  u16 IsPercent() const { return m_percent; }
  /// Makes the amount a percentage, and then no dollars, or not one.
  void SetPercent(u16 percent);
  /// 1 when the amount is of dollars.
  u16 IsDollarKind() const { return m_dollarKind; }
  /// Makes the amount one of dollars, and then no percentage, or not.
  void SetDollarKind(u16 dollarKind);

  /// Reads "$12", "12.5%", "12" or one of the two texts of a blank value, which changes nothing
  /// else. What stands between '$' and '%' is read by the rules of the base; with both, the amount
  /// is a percentage.
  /// @return 1 when the text was read; otherwise 0 after a warning, with what was read.
  u16 ConvertStringToKRPrecisionInteger(const char* text) override;

  /// The text: "^@~*" for a blank amount, "$5.00" for dollars, with two decimal places at least,
  /// "12.5%" for a percentage. In front of the point stands one digit at least. Room is for 30
  /// characters: where it ends, zeros are not added, and dollars and percentages whose number alone
  /// fills it have an empty text.
  /// @return the text, which the object owns and the next call overwrites; null when memory is
  ///         exhausted, and then the thread's fire alarm is raised.
  operator char*() override;
  /// The same for a const amount.
  operator char*() const { return const_cast<KRPayrollAmount*>(this)->operator char*(); }

  /// 1 when the amounts are compatible and equal.
  virtual u16 operator==(const KRPayrollAmount& other) const;
  /// 1 when the amounts are not compatible or not equal.
  virtual u16 operator!=(const KRPayrollAmount& other) const;
  /// 1 when the amounts are compatible and this one is less.
  virtual u16 operator<(const KRPayrollAmount& other) const;
  /// 1 when the amounts are compatible and this one is less or equal.
  virtual u16 operator<=(const KRPayrollAmount& other) const;
  /// 1 when the amounts are compatible and this one is greater.
  virtual u16 operator>(const KRPayrollAmount& other) const;
  /// 1 when the amounts are compatible and this one is greater or equal.
  virtual u16 operator>=(const KRPayrollAmount& other) const;

  /// Adds a compatible amount; any other leaves this one as it is.
  virtual KRPayrollAmount& operator+=(const KRPayrollAmount& other);
  /// Subtracts a compatible amount; any other leaves this one as it is.
  virtual KRPayrollAmount& operator-=(const KRPayrollAmount& other);
  /// The sum, by the rules of +=.
  virtual KRPayrollAmount operator+(const KRPayrollAmount& other) const;
  /// The difference, by the rules of -=.
  virtual KRPayrollAmount operator-(const KRPayrollAmount& other) const;
  /// The product of the numbers, whatever their kinds; by a percentage, it is divided by 100. Of
  /// the kind of this amount, and not blank.
  virtual KRPayrollAmount operator*(const KRPayrollAmount& other) const;
  /// The quotient of the numbers by the base's rules, whatever their kinds; by a percentage, it is
  /// multiplied by 100. Of the kind of this amount, and not blank.
  virtual KRPayrollAmount operator/(const KRPayrollAmount& other) const;
  /// A copy with sign +1.
  virtual KRPayrollAmount absval() const;

  /// @name The same against any number
  /// A number that is an amount is taken as one. Results by value are plain numbers.
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
  /// 1 when neither amount is blank and both are of the same kind.
  u16 IsCompatible(const KRPayrollAmount& other) const;

 private:
  // The number as an amount: itself when it is one.
  static KRPayrollAmount AsAmount(const KRPrecisionInteger& number);

  u16 m_percent = 0;
  u16 m_empty = 0;
  u16 m_dollarKind = 0;
};

#endif  // KROFX_PAYROLL_PAYROLL_AMOUNT_H_
