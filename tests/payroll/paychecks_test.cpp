// Payroll runs, paychecks and payroll transactions: their tables, and the order of the lines.

#include "krofx/payroll/paychecks.h"

#include <gtest/gtest.h>

#include "payroll/requiring.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(PayCheckTables, PayrollRun) {
  ExpectTable<KRPayrollRun>("N.PAYROLLRUN", R"(
    lenient
    N.DTPAYCHKS       paydate   required
    N.PAYCHK          children
    N.PAYCHKMOD       children
    N.DISBURSEADVICE  child
    N.DDADVICE        child
  )");
}

TEST(PayCheckTables, PayCheckAndItsModification) {
  constexpr char kPayCheck[] = R"(
    lenient
    N.PAYCHKID      text         required
    N.EMPID         text         required
    N.DTTX          paydate      required
    N.PAYCHKTYPE    word=PAYCHK  required
    N.EMPNAME       text
    N.CLASS         text
    N.ACCTNAME      text
    N.AMT           payamount
    N.PAYCHKINFO    child
    N.VOID          boolean
    N.ONSERVICE     boolean
    N.DTPAYPDBEGIN  paydate      required
    N.DTPAYPDEND    paydate      required
    N.MEMO          text
    N.CLEARED       u16          required
    N.SALARYLINE    children
    N.HRLYWAGELINE  children
    N.ADJLINE       children
    N.TAXLINE       children
    N.DDLINE        children
  )";
  ExpectTable<KRPayCheck>("N.PAYCHK", kPayCheck);
  ExpectTable<KRPayCheckMod>("N.PAYCHKMOD", Requiring("N.PAYCHKID", kPayCheck));
}

TEST(PayCheckTables, PayCheckInfo) {
  ExpectTable<KRPayCheckInfo>("N.PAYCHKINFO", R"(
    lenient
    N.SICKACCRUED  payamount  required
    N.VACACCRUED   payamount  required
    N.PRORATE      boolean    required
    N.CHKNUM       text       required
  )");
}

TEST(PayCheckTables, SalaryLine) {
  ExpectTable<KRSalaryLine>("N.SALARYLINE", R"(
    lenient
    N.PITEMID    text       required
    N.AMT        payamount  required
    N.YTDAMT     payamount  required
    N.PITEMNAME  text
    N.HRS        payamount
    N.CLASS      text
    N.JOB        text
    N.ITEM       text
  )");
}

TEST(PayCheckTables, HourlyWageLine) {
  ExpectTable<KRHourlyWageLine>("N.HRLYWAGELINE", R"(
    lenient
    N.PITEMID    text       required
    N.AMT        payamount  required
    N.YTDAMT     payamount  required
    N.RATE       payamount  required
    N.PITEMNAME  text
    N.HRS        payamount
    N.CLASS      text
    N.JOB        text
    N.ITEM       text
  )");
}

TEST(PayCheckTables, AdjustmentLine) {
  ExpectTable<KRAdjustmentLine>("N.ADJLINE", R"(
    lenient
    N.PITEMID    text       required
    N.AMT        payamount  required
    N.YTDAMT     payamount  required
    N.RATE       payamount  required
    N.PITEMNAME  text
    N.QTY        payamount
    N.EXPBYJOB   boolean    required
  )");
}

TEST(PayCheckTables, TaxLine) {
  ExpectTable<KRTaxLine>("N.TAXLINE", R"(
    lenient
    N.PITEMID      text       required
    N.AMT          payamount  required
    N.YTDAMT       payamount  required
    N.WB           payamount  required
    N.TAXABLEWAGE  payamount  required
    N.PITEMNAME    text
    N.TIPSWB       payamount
  )");
}

TEST(PayCheckTables, DirectDepositLine) {
  ExpectTable<KRDirectDepositLine>("N.DDLINE", R"(
    lenient
    N.DDACCT     child      required
    N.PITEMID    text
    N.AMT        payamount  required
    N.PITEMNAME  text
  )");
}

TEST(PayCheckTables, DisburseAdvice) {
  ExpectTable<KRDisburseAdvice>("N.DISBURSEADVICE", R"(
    lenient
    N.TAXLIABAMT  payamount  required
    N.TAXQTR      u16        required
    N.TAXLIAB     children
  )");
}

TEST(PayCheckTables, DirectDepositAdvice) {
  ExpectTable<KRDirectDepositAdvice>("N.DDADVICE", R"(
    lenient
    N.DDAMT  payamount  required
    N.DD     children   required
  )");
}

TEST(PayCheckTables, DirectDeposit) {
  ExpectTable<KRDirectDeposit>("N.DD", R"(
    lenient
    BANKACCTTO  child      required
    N.EMPID     text       required
    N.AMT       payamount  required
    N.EMPNAME   text
    N.SSN       text       required
  )");
}

TEST(PayCheckTables, TransactionAndItsModification) {
  constexpr char kTransaction[] = R"(
    lenient
    N.PAYROLLTXID    text            required
    N.DTTX           paydate         required
    N.PAYROLLTXTYPE  word=CARRYOVER  required
    N.TXLINE         children        required
    N.EMPID          text
    N.EMPNAME        text
    N.NAME           text
    N.REFNUM         text            required
    N.ACCTNAME       text
    N.AMT            payamount
    N.MEMO           text
    N.DTPAYPDEND     paydate
    N.VOID           boolean
    N.ONSERVICE      boolean         required
    N.CLEARED        u16             required
  )";
  ExpectTable<KRPayrollTx>("N.PAYROLLTX", kTransaction);
  ExpectTable<KRPayrollTxMod>("N.PAYROLLTXMOD", Requiring("N.PAYROLLTXID", kTransaction));
}

TEST(PayCheckTables, TxLine) {
  ExpectTable<KRTxLine>("N.TXLINE", R"(
    lenient
    N.AMT          payamount  required
    N.PITEMID      text
    N.PITEMNAME    text
    N.ACCTNAME     text
    N.MEMO         text
    N.ISDD         boolean
    N.WB           payamount
    N.TAXABLEWAGE  payamount
    N.CLASS        text
    N.TIPSWB       payamount
  )");
}

TEST(KRPayCheck, WritesLinesBehindAllElseWhateverTheOrderOfAddition) {
  auto check = Make<KRPayCheck>();
  EXPECT_EQ(check->AppendDirectDepositLine(new KRDirectDepositLine), 1);
  EXPECT_EQ(check->AppendTaxLine(new KRTaxLine), 1);
  EXPECT_EQ(check->AppendAdjustmentLine(new KRAdjustmentLine), 1);
  EXPECT_EQ(check->AppendHourlyWageLine(new KRHourlyWageLine), 1);
  EXPECT_EQ(check->AppendSalaryLine(new KRSalaryLine), 1);
  EXPECT_EQ(check->SetPayCheckInfo(new KRPayCheckInfo), 1);
  EXPECT_EQ(check->SetCleared(static_cast<u16>(2)), 1);
  EXPECT_EQ(TextOf(*check),
            InLines("<N.PAYCHKINFO></N.PAYCHKINFO><N.CLEARED>2<N.SALARYLINE></N.SALARYLINE>"
                    "<N.HRLYWAGELINE></N.HRLYWAGELINE><N.ADJLINE></N.ADJLINE>"
                    "<N.TAXLINE></N.TAXLINE><N.DDLINE></N.DDLINE>"));
}

TEST(KRPayCheck, ClearedIsANumber) {
  const Parsed<KRPayCheck> parsed("<N.CLEARED>7");
  EXPECT_EQ(parsed->GetCleared(), 7);
  const Parsed<KRPayCheck> flag("<N.CLEARED>Y");
  EXPECT_EQ(flag->ValidateTag(KRTag_N_CLEARED), 0);
}

TEST(KRPayCheckMod, IsCompleteWithItsIdAlone) {
  const Parsed<KRPayCheckMod> parsed("<N.PAYCHKID>12<N.VOID>Y");
  EXPECT_EQ(parsed->AllRequiredPresent(), 1);
  KRPayCheck& check = *parsed;
  EXPECT_EQ(check.GetVoid(), 1);
}

TEST(KRPayrollRun, KeepsChecksAndTheirChangesApart) {
  const std::string text = "<N.DTPAYCHKS>20260131" + Aggregate("N.PAYCHK", "<N.PAYCHKID>1") +
                           Aggregate("N.PAYCHK", "<N.PAYCHKID>2") +
                           Aggregate("N.PAYCHKMOD", "<N.PAYCHKID>3");
  const Parsed<KRPayrollRun> parsed(text);
  EXPECT_EQ(parsed->GetNumPayCheck(), 2);
  EXPECT_EQ(parsed->GetNumPayCheckMod(), 1);
  EXPECT_EQ(Str(parsed->GetPayCheck(1)->GetPayCheckID()), "2");
  EXPECT_EQ(TextOf(*parsed), InLines(text));
}

TEST(KRPayrollTx, NeedsALineAndItsModificationDoesNot) {
  const std::string text =
      "<N.PAYROLLTXID>5<N.DTTX>20260131<N.PAYROLLTXTYPE>LIABCHK<N.REFNUM>9<N.ONSERVICE>N"
      "<N.CLEARED>0";
  const Parsed<KRPayrollTx> bare(text);
  EXPECT_EQ(bare->AllRequiredPresent(), 0);
  EXPECT_EQ(bare->GetFirstMissingRequiredTag(KRTag_None), KRTag_N_TXLINE);
  const Parsed<KRPayrollTx> whole(text + Aggregate("N.TXLINE", "<N.AMT>$10"));
  EXPECT_EQ(whole->AllRequiredPresent(), 1);
  const Parsed<KRPayrollTxMod> change("<N.PAYROLLTXID>5");
  EXPECT_EQ(change->AllRequiredPresent(), 1);
}

TEST(KRPayrollTx, BlankEndOfPeriodIsNotAbsent) {
  const Parsed<KRPayrollTx> parsed("<N.DTPAYPDEND>^@~*");
  EXPECT_EQ(parsed->ValidateTag(KRTag_N_DTPAYPDEND), 1);
  EXPECT_EQ(parsed->GetDatePayPeriodEnd().IsEmpty(), 1);
  EXPECT_EQ(TextOf(*parsed), "<N.DTPAYPDEND>^@~*\n");
}

TEST(KRPayrollTx, OnlyReturnsAndReversalsTakeADirectDepositBack) {
  for (u32 type = KRPayrollTxType_CARRYOVER; type <= KRPayrollTxType_DDREVERSAL; ++type) {
    auto transaction = Make<KRPayrollTx>();
    EXPECT_EQ(transaction->SetPayrollTxType(static_cast<KRPayrollTxType>(type)), 1);
    EXPECT_EQ(transaction->IsDirectDepositTx(), type == 5 || type == 6) << type;
    EXPECT_NE(transaction->IsDirectDepositTx(), transaction->IsOrdinaryTx()) << type;
  }
}

}  // namespace
}  // namespace krofx::testing
