// The dates of the payroll tags: a date that can be blank. See payroll_amount.h for what that
// means.

#ifndef KROFX_PAYROLL_PAYROLL_DATE_TIME_H_
#define KROFX_PAYROLL_PAYROLL_DATE_TIME_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/values/date_time.h"

/// A date with an optional time, which may be blank. Comparisons and arithmetic are those of the
/// base class and ignore whether a date is blank.
class KROFX_API KRPayrollDateTime : public KRDateTime {
 public:
  /// All fields zero, no zone, not blank: not a valid date.
  KRPayrollDateTime() noexcept = default;
  /// Parses `text`; the texts of a blank value make a blank date with all fields zero.
  explicit KRPayrollDateTime(const char* text);
  /// Stores the fields, without a zone.
  KRPayrollDateTime(s16 year, s16 month, s16 day, s16 hour, s16 minute, s16 second,
                    s16 millisecond) noexcept;

  using KRDateTime::operator=;
  /// Reads a date, or one of the texts of a blank value, which only make the date blank. A date
  /// that was blank stays blank, whatever is read, until SetEmpty(0).
  /// @return 1 when the text was read; otherwise 0 after a warning.
  u16 operator=(const char* text) override;

  using KRDateTime::GetDateString;
  /// Writes "^@~*" for a blank date, otherwise the text of the base.
  /// @return 1; 0, with `out` unchanged, when the date is neither blank nor valid, or memory is
  ///         exhausted.
  u16 GetDateString(KRString& out) override;

  /// @return 1 when the date is blank.
  u16 IsEmpty() const { return m_empty; }
  /// Makes the date blank or not; the fields stay.
  void SetEmpty(u16 empty) { m_empty = empty != 0; }

 private:
  u16 m_empty = 0;
};

#endif  // KROFX_PAYROLL_PAYROLL_DATE_TIME_H_
