// The conversions of payroll amounts and dates.

#include "krofx/payroll/payroll_data_conversion.h"

u16 KRPayrollDataConversion::StringToPayrollAmount(const KRString& text, KRPayrollAmount& out) {
  return out.ConvertStringToKRPrecisionInteger(text);
}

u16 KRPayrollDataConversion::StringToPayrollDateTime(const KRString& text, KRPayrollDateTime& out) {
  return out = static_cast<const char*>(text);
}
