// How elements with payroll values are written.

#include "krofx/payroll/internal/payroll_kinds.h"

#include "krofx/payroll/payroll_builder.h"

namespace krofx::internal {

namespace {

// Writes the tag, then the value by the builder's own operation for it, or as a text.
template <class Value, class TextOf>
KRBuildStatus Write(KRBuilder& builder, KRTagID tag, const Value& value,
                    KRBuildStatus (KRPayrollBuilder::*operation)(const Value&), TextOf textOf) {
  const KRBuildStatus status = builder.AddTagElement(tag);
  if (status != KRBuildStatus_Done) return status;
  if (auto* own = dynamic_cast<KRPayrollBuilder*>(&builder)) return (own->*operation)(value);
  return builder.AddString(textOf(value), KRBuildStringMacroOpt_AsIs, KRBuildStringCrLfOpt_NewLine);
}

}  // namespace

KRBuildStatus WritePayrollAmount(KRBuilder& builder, KRTagID tag, const KRPayrollAmount& value) {
  return Write(builder, tag, value, &KRPayrollBuilder::AddPayrollAmount,
               [](const KRPayrollAmount& amount) { return KRString(amount); });
}

KRBuildStatus WritePayrollDateTime(KRBuilder& builder, KRTagID tag,
                                   const KRPayrollDateTime& value) {
  return Write(builder, tag, value, &KRPayrollBuilder::AddPayrollDateTime,
               [](const KRPayrollDateTime& date) {
                 KRString text;
                 date.GetDateString(text);
                 return text;
               });
}

}  // namespace krofx::internal
