// The kinds of payroll values that aggregate rows hold, beside those of krofx/model/value_kinds.h.

#ifndef KROFX_PAYROLL_INTERNAL_PAYROLL_KINDS_H_
#define KROFX_PAYROLL_INTERNAL_PAYROLL_KINDS_H_

#include "krofx/model/value_kinds.h"
#include "krofx/payroll/payroll_data_conversion.h"

namespace krofx::internal {

/// Writes an element with an amount: by KRPayrollBuilder's operation for it where the builder is
/// one, with the same text through any other.
KRBuildStatus WritePayrollAmount(KRBuilder& builder, KRTagID tag, const KRPayrollAmount& value);
/// The same for a date.
KRBuildStatus WritePayrollDateTime(KRBuilder& builder, KRTagID tag, const KRPayrollDateTime& value);

/// Writes the text of an amount; see ValueKind::writeCommon.
char* WriteAmountText(const KRPayrollAmount& value, char* out, const char* end);
/// The same for a date.
char* WriteDateText(const KRPayrollDateTime& value, char* out, const char* end);

inline constexpr const ValueKind& kPayrollAmount =
    ConvertedInPlace<KRPayrollAmount, &KRPayrollDataConversion::StringToPayrollAmount,
                     &WritePayrollAmount, ValueForm::kPayrollAmount, &WriteAmountText>::kKind;
inline constexpr const ValueKind& kPayrollDateTime =
    ConvertedInPlace<KRPayrollDateTime, &KRPayrollDataConversion::StringToPayrollDateTime,
                     &WritePayrollDateTime, ValueForm::kDate, &WriteDateText>::kKind;

}  // namespace krofx::internal

#endif  // KROFX_PAYROLL_INTERNAL_PAYROLL_KINDS_H_
