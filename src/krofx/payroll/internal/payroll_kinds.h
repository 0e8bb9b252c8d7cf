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

inline constexpr const ValueKind& kPayrollAmount =
    ConvertedInPlace<KRPayrollAmount, &KRPayrollDataConversion::StringToPayrollAmount,
                     &WritePayrollAmount>::kKind;
inline constexpr const ValueKind& kPayrollDateTime =
    ConvertedInPlace<KRPayrollDateTime, &KRPayrollDataConversion::StringToPayrollDateTime,
                     &WritePayrollDateTime>::kKind;

}  // namespace krofx::internal

#endif  // KROFX_PAYROLL_INTERNAL_PAYROLL_KINDS_H_
