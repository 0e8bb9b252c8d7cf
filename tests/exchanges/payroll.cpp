// Exchanges of the payroll message set, which has the first version only. Its batches travel in the
// update only.

#include "krofx/envelope/payroll.h"
#include "exchanges/exchanges.h"

namespace krofx::testing {
namespace {

constexpr Exchange kExchanges[] = {
    {"N.PAYROLLMSGSRQ", "N.PAYROLLENROLLTRNRQ", "N.PAYROLLENROLLRQ", Is<KRPayrollEnrollRq>,
     "<N.COINFO><N.BANKNAME>Bank<N.ACCTNAME>Wages<N.REGNUM>1<N.LEGALNAME>Mill Ltd<N.FEIN>2"
     "<N.ADDR1>1 Main St<N.CITY>Bath<N.STATE>SO<N.POSTALCODE>BA1<N.PRINCFIRSTNAME>Ada"
     "<N.PRINCLASTNAME>Byron@BANK<N.CONTACT><N.CONFIRSTNAME>Ada<N.CONLASTNAME>Byron<N.PHONE>3"
     "</N.CONTACT></N.COINFO><N.TAXSERVICE>Y<N.DIRECTDEPOSIT>N<N.APPKEY>k1",
     1},
    {"", "N.PAYROLLTRNRQ", "N.PAYROLLRQ", Is<KRPayrollRq>, "", 1},

    {"N.PAYROLLMSGSRS", "N.PAYROLLENROLLTRNRS", "N.PAYROLLENROLLRS", Is<KRPayrollEnrollRs>,
     "<N.USERID>u1", 1},
    {"", "N.PAYROLLTRNRS", "N.PAYROLLRS", Is<KRPayrollRs>, "", 1},
};

constexpr Sync kSyncs[] = {
    {"N.PAYROLLMSGSRQ", "N.PAYROLLUPDATERQ", "<TOKEN>7<REJECTIFMISSING>N", "N.PAYROLLTRNRQ", "", 1},
    {"N.PAYROLLMSGSRS", "N.PAYROLLUPDATERS", "<TOKEN>7", "N.PAYROLLTRNRS",
     "<N.PAYCHKNEXTID>1<N.PAYROLLTXNEXTID>2<N.EMPNEXTID>3<N.PITEMNEXTID>4", 1},
};

}  // namespace

const Family kPayrollFamily{"Payroll", kExchanges, kSyncs};

}  // namespace krofx::testing
