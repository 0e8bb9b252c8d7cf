// Dates that can be blank.

#include "krofx/payroll/payroll_date_time.h"

#include "krofx/payroll/payroll_amount.h"

using krofx::internal::IsBlankText;
using krofx::internal::kBlankText;

KRPayrollDateTime::KRPayrollDateTime(const char* text) {
  if (IsBlankText(text) != 0) {
    m_empty = 1;
  } else {
    ConvertStringToKRDateTime(text);
  }
}

KRPayrollDateTime::KRPayrollDateTime(s16 year, s16 month, s16 day, s16 hour, s16 minute, s16 second,
                                     s16 millisecond) noexcept
    : KRDateTime(year, month, day, hour, minute, second, millisecond, 0, 0) {}

u16 KRPayrollDateTime::operator=(const char* text) {
  if (IsBlankText(text) == 0) return KRDateTime::operator=(text);
  m_empty = 1;
  return 1;
}

u16 KRPayrollDateTime::GetDateString(KRString& out) {
  if (m_empty == 0) return KRDateTime::GetDateString(out);
  out = KRString(kBlankText);
  // The text is missing when memory was exhausted.
  return out.IsEmpty() == 0;
}
