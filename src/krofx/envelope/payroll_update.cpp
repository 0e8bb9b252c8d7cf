// What a payroll update does besides its rows.

#include "krofx/envelope/payroll.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/payroll/company.h"
#include "krofx/payroll/employees.h"
#include "krofx/payroll/items.h"
#include "krofx/payroll/paychecks.h"

using krofx::internal::AggregateTable;
using krofx::internal::FindRow;
using krofx::internal::HandleElement;

namespace {

u16 Holds(const KRDynamicArrayString& list, const KRString& id) {
  for (u16 index = 0; index < list.Entries(); ++index) {
    const KRString* entry = list.Get(index);
    if (entry != nullptr && *entry == id) return 1;
  }
  return 0;
}

}  // namespace

// The tags of every synchronisation are read as KRSyncRs reads them, and as strictly.
KRParseStatus KRPayrollUpdateRs::HandleTagElement(const KRTagDictionaryEntry* const entry,
                                                  const KRString& value) {
  const AggregateTable& base = *KRSyncRs::GetTable();
  const bool isOfBase = FindRow(base, entry->tagID) != nullptr;
  return HandleElement(*this, isOfBase ? base : *GetTable(), *entry, value);
}

u16 KRPayrollUpdateRs::DeepCopyFrom(KRPayrollUpdateRs* source) { return CopySyncFrom(source); }

u16 KRPayrollUpdateData::EmployeeWasDeleted(const KRString& id) const {
  return Holds(m_employeeDelID, id);
}

u16 KRPayrollUpdateData::PayrollItemWasDeleted(const KRString& id) const {
  return Holds(m_payrollItemDelID, id);
}
