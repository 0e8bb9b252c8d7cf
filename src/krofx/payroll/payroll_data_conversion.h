// Conversions between payroll values and their text.
//
// The conversions of keywords are generated from keywords.schema into KRPayrollDataConversionBase;
// those of amounts and dates are here.

#ifndef KROFX_PAYROLL_PAYROLL_DATA_CONVERSION_H_
#define KROFX_PAYROLL_PAYROLL_DATA_CONVERSION_H_

#include "krofx/core/export.h"
#include "krofx/core/string.h"
#include "krofx/payroll/keyword_conversions.h"
#include "krofx/payroll/payroll_amount.h"
#include "krofx/payroll/payroll_date_time.h"

/// Converts payroll values to text and back. All operations are static and return 1, or 0 after a
/// warning in the thread's log. A failed conversion to a keyword leaves its target unchanged.
class KROFX_API KRPayrollDataConversion : public krofx::internal::KRPayrollDataConversionBase {
 public:
  /// Reads an amount, a percentage, a number or a blank value by the virtual conversion of `out`.
  /// @return 0, with what was read up to there in `out`, after a warning.
  static u16 StringToPayrollAmount(const KRString& text, KRPayrollAmount& out);
  /// Reads a date or a blank value. A date that was blank stays blank, whatever is read.
  /// @return 0, with what was read up to there in `out`, after a warning.
  static u16 StringToPayrollDateTime(const KRString& text, KRPayrollDateTime& out);
};

#endif  // KROFX_PAYROLL_PAYROLL_DATA_CONVERSION_H_
