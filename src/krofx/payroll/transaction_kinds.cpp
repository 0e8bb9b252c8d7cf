// Which payroll transactions take back a direct deposit.

#include "krofx/payroll/paychecks.h"

u16 KRPayrollTx::IsDirectDepositTx() const {
  return m_payrollTxType == KRPayrollTxType_DDRETURN ||
                 m_payrollTxType == KRPayrollTxType_DDREVERSAL
             ? 1
             : 0;
}

u16 KRPayrollTx::IsOrdinaryTx() const { return IsDirectDepositTx() == 0 ? 1 : 0; }
