// Writes payroll values after their tags.

#include "krofx/payroll/payroll_builder.h"

#include <cstring>

#include "krofx/core/string.h"
#include "krofx/payroll/payroll_amount.h"
#include "krofx/payroll/payroll_date_time.h"

KRBuildStatus KRPayrollBuilder::AddPayrollAmount(const KRPayrollAmount& value) {
  // Null when memory was exhausted, which the fire alarm reports.
  const char* const text = value;
  return text == nullptr ? AddLine("", 0) : AddLine(text, std::strlen(text));
}

KRBuildStatus KRPayrollBuilder::AddPayrollDateTime(const KRPayrollDateTime& value) {
  KRString text;
  value.GetDateString(text);
  return AddLine(text, text.GetStrLength());
}
