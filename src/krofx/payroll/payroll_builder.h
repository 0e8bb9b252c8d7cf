// The builder of payroll requests: a builder with writers for payroll values that hosts can
// override.

#ifndef KROFX_PAYROLL_PAYROLL_BUILDER_H_
#define KROFX_PAYROLL_PAYROLL_BUILDER_H_

#include "krofx/build/builder.h"
#include "krofx/core/export.h"

class KRPayrollAmount;
class KRPayrollDateTime;

/// Writes payroll values. Any builder writes payroll aggregates, with the same text; with this one
/// their amounts and dates go through the two operations below.
class KROFX_API KRPayrollBuilder : public KRBuilder {
 public:
  using KRBuilder::KRBuilder;

  /// Writes the text of an amount and a line feed, after the tag that AddTagElement wrote.
  /// @return 0 whatever the text; 3 as long as there is no buffer.
  virtual KRBuildStatus AddPayrollAmount(const KRPayrollAmount& value);
  /// Writes the text of a date, which is empty for a date that is neither blank nor valid, and a
  /// line feed, after the tag that AddTagElement wrote.
  /// @return 0 whatever the text; 3 as long as there is no buffer.
  virtual KRBuildStatus AddPayrollDateTime(const KRPayrollDateTime& value);
};

#endif  // KROFX_PAYROLL_PAYROLL_BUILDER_H_
