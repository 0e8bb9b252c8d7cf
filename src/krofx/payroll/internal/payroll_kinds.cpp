// How elements with payroll values are written.

#include "krofx/payroll/internal/payroll_kinds.h"

#include "krofx/payroll/payroll_builder.h"

namespace krofx::internal {

namespace {

KRString TextOf(const KRPayrollAmount& amount) { return KRString(amount); }
KRString TextOf(const KRPayrollDateTime& date) {
  KRString text;
  date.GetDateString(text);
  return text;
}

// Writes the tag, then the value by the builder's own operation for it, or as a text.
template <class Value>
KRBuildStatus Write(KRBuilder& builder, KRTagID tag, const Value& value,
                    KRBuildStatus (KRPayrollBuilder::*operation)(const Value&)) {
  const KRBuildStatus status = builder.AddTagElement(tag);
  if (status != KRBuildStatus_Done) return status;
  if (auto* own = dynamic_cast<KRPayrollBuilder*>(&builder)) return (own->*operation)(value);
  return builder.AddString(TextOf(value), KRBuildStringMacroOpt_AsIs, KRBuildStringCrLfOpt_NewLine);
}

// Null for a value without a text.
template <class Value>
char* WriteOwnText(const Value& value, char* out, const char* end) {
  const KRString text = TextOf(value);
  return text.IsEmpty() != 0 ? nullptr : WriteText({text, text.GetStrLength()}, out, end);
}

}  // namespace

KRBuildStatus WritePayrollAmount(KRBuilder& builder, KRTagID tag, const KRPayrollAmount& value) {
  return Write(builder, tag, value, &KRPayrollBuilder::AddPayrollAmount);
}

KRBuildStatus WritePayrollDateTime(KRBuilder& builder, KRTagID tag,
                                   const KRPayrollDateTime& value) {
  return Write(builder, tag, value, &KRPayrollBuilder::AddPayrollDateTime);
}

char* WriteAmountText(const KRPayrollAmount& value, char* out, const char* end) {
  return WriteOwnText(value, out, end);
}

char* WriteDateText(const KRPayrollDateTime& value, char* out, const char* end) {
  return WriteOwnText(value, out, end);
}

}  // namespace krofx::internal
