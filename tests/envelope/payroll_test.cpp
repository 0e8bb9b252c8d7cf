// The exchanges of the payroll message set: tables, delete lists, modifications, the update and its
// place in a file.

#include "krofx/envelope/payroll.h"

#include <gtest/gtest.h>

#include "krofx/envelope/envelope.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/request_response.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/model/factory.h"
#include "krofx/payroll/company.h"
#include "krofx/payroll/employees.h"
#include "krofx/payroll/items.h"
#include "krofx/payroll/paychecks.h"
#include "krofx/payroll/taxes.h"
#include "support/aggregate_table.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(PayrollTables, Enrollment) {
  ExpectTable<KRPayrollEnrollRq>("N.PAYROLLENROLLRQ", R"(
    lenient
    N.COINFO         child    required
    N.TAXSERVICE     boolean  required
    N.DIRECTDEPOSIT  boolean  required
    N.DTNEXTPAYROLL  paydate
    N.APPKEY         text     required
  )");
  ExpectTable<KRPayrollEnrollRs>("N.PAYROLLENROLLRS", R"(
    N.USERID  text  required
  )");
}

TEST(PayrollTables, Batch) {
  ExpectTable<KRPayrollRq>("N.PAYROLLRQ", R"(
    N.PITEM           children
    N.EMP             children
    N.PAYROLLTX       children
    N.PITEMMOD        children
    N.EMPMOD          children
    N.PAYROLLTXMOD    children
    N.PITEMDELID      repeated=1,2
    N.EMPDELID        repeated=3,4,5
    N.PAYROLLTXDELID  repeated=6
    N.COINFOMOD       child
    N.ANOMALYTEXT     text
    N.PAYROLLRUN      children
    N.EMPQTRTOTALS    children
    N.TAXSERVQUIT     child
    N.DDQUIT          child
  )");
  ExpectTable<KRPayrollRs>("N.PAYROLLRS", R"(
    N.PAYROLLTX  children
  )");
}

TEST(PayrollTables, UpdateData) {
  ExpectTable<KRPayrollUpdateData>("N.PAYROLLUPDATEDATA", R"(
    N.PAYCHKMOD       children
    N.PAYROLLTXMOD    children
    N.PAYROLLTXDELID  repeated=1,2
    N.EMPMOD          children
    N.EMPDELID        repeated=3
    N.PITEMMOD        children
    N.PITEMDELID      repeated=4,5
    N.COINFOMOD       child
  )");
}

TEST(KRPayrollRq, IsCompleteWithNothingInIt) {
  const auto batch = Make<KRPayrollRq>();
  EXPECT_EQ(batch->AllRequiredPresent(), 1);
  KRTransRq transaction;
  transaction.SetMsgSetVersion(1);
  transaction.SetType(KRTag_N_PAYROLLTRNRQ);
  transaction.SetTransUserID(KRString("7"));
  transaction.SetActualTrans(Make<KRPayrollRq>().release());
  EXPECT_EQ(TextOf(transaction), InLines("<TRNUID>7<N.PAYROLLRQ></N.PAYROLLRQ>"));
}

TEST(KRPayrollRq, HoldsWhatIsAppended) {
  const auto batch = Make<KRPayrollRq>();
  auto* employee = Make<KREmployee>().release();
  EXPECT_EQ(batch->AppendEmployee(employee), 1);
  EXPECT_EQ(batch->GetNumEmployee(), 1);
  EXPECT_EQ(batch->GetEmployee(0), employee);
  auto* other = Make<KREmployee>().release();
  EXPECT_EQ(batch->SetEmployee(0, other), 1);
  EXPECT_EQ(batch->GetEmployee(0), other);
  EXPECT_EQ(batch->AppendPayrollItemMod(Make<KRPayrollItemMod>().release()), 1);
  EXPECT_EQ(batch->SetCompanyInfoMod(Make<KRCompanyInfoMod>().release()), 1);
  EXPECT_EQ(batch->AppendPayrollRun(Make<KRPayrollRun>().release()), 1);
  EXPECT_EQ(batch->SetDirectDepositQuit(Make<KRDirectDepositQuit>().release()), 1);
  EXPECT_EQ(TextOf(*batch), InLines(Aggregate("N.EMP", "") + Aggregate("N.PITEMMOD", "") +
                                    Aggregate("N.COINFOMOD", "") + Aggregate("N.PAYROLLRUN", "") +
                                    Aggregate("N.DDQUIT", "")));
}

template <class T>
void ExpectDeleteLists() {
  const auto object = Make<T>();
  EXPECT_EQ(object->AppendEmployeeDelID(KRString("e1")), 1);
  EXPECT_EQ(object->AppendEmployeeDelID(KRString("e2")), 1);
  EXPECT_EQ(object->SetEmployeeDelID(0, KRString("e3")), 1);
  EXPECT_EQ(object->AppendPayrollItemDelID(KRString("i1")), 1);
  EXPECT_EQ(object->SetPayrollTxDelID(0, KRString("t1")), 1);
  ASSERT_EQ(object->GetNumEmployeeDelID(), 2);
  EXPECT_EQ(object->GetNumPayrollItemDelID(), 1);
  EXPECT_EQ(object->GetNumPayrollTxDelID(), 1);
  EXPECT_EQ(Str(*object->GetEmployeeDelID(0)), "e3");
  EXPECT_EQ(Str(*object->GetEmployeeDelID(1)), "e2");
  EXPECT_EQ(object->GetEmployeeDelID(2), nullptr);
  EXPECT_EQ(Str(*object->GetPayrollTxDelID(0)), "t1");
}

TEST(KRPayrollRq, KeepsItsDeleteListsApart) { ExpectDeleteLists<KRPayrollRq>(); }

TEST(KRPayrollUpdateData, KeepsItsDeleteListsApart) { ExpectDeleteLists<KRPayrollUpdateData>(); }

TEST(KRPayrollUpdateData, TellsWhatWasDeleted) {
  const Parsed<KRPayrollUpdateData> data(
      "<N.EMPDELID>e1<N.EMPDELID>e2<N.PITEMDELID>i1<N.PAYROLLTXDELID>t1");
  EXPECT_EQ(data->EmployeeWasDeleted(KRString("e1")), 1);
  EXPECT_EQ(data->EmployeeWasDeleted(KRString("e2")), 1);
  EXPECT_EQ(data->EmployeeWasDeleted(KRString("E1")), 0);
  EXPECT_EQ(data->EmployeeWasDeleted(KRString("e")), 0);
  EXPECT_EQ(data->EmployeeWasDeleted(KRString("i1")), 0);
  EXPECT_EQ(data->PayrollItemWasDeleted(KRString("i1")), 1);
  EXPECT_EQ(data->PayrollItemWasDeleted(KRString("e1")), 0);
  EXPECT_EQ(data->PayrollItemWasDeleted(KRString("t1")), 0);
  const KRPayrollUpdateData nothing;
  EXPECT_EQ(nothing.EmployeeWasDeleted(KRString("e1")), 0);
  EXPECT_EQ(nothing.PayrollItemWasDeleted(KRString("")), 0);
}

TEST(PayrollModifications, TellBlankFromAbsent) {
  const Parsed<KREmployeeMod> change("<N.EMPID>7<N.DTRELEASE>__OFX_EMPTY_STRING__");
  EXPECT_EQ(change.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(change->AllRequiredPresent(), 1);
  EXPECT_EQ(change->ValidateTag(KRTag_N_DTRELEASE), 1);
  EXPECT_EQ(change->GetDateRelease().IsEmpty(), 1);
  EXPECT_EQ(change->ValidateTag(KRTag_N_DTHIRE), 0);
  EXPECT_EQ(change->GetDateHire().IsEmpty(), 0);
  EXPECT_EQ(TextOf(*change), "<N.EMPID>7\n<N.DTRELEASE>^@~*\n");
}

TEST(PayrollModifications, KeepBlanksInCopies) {
  const Parsed<KRPayrollRq> batch(
      Aggregate("N.EMPMOD", "<N.EMPID>7<N.DTRELEASE>^@~*" + Aggregate("N.SICK", "<N.HRS>^@~*")));
  KRPayrollRq copy;
  ASSERT_EQ(copy.DeepCopyFrom(batch.Get()), 1);
  EXPECT_EQ(TextOf(copy), TextOf(*batch));
  EXPECT_EQ(copy.GetEmployeeMod(0)->GetDateRelease().IsEmpty(), 1);
  EXPECT_EQ(copy.GetEmployeeMod(0)->GetSick()->GetHours().IsEmpty(), 1);
}

TEST(PayrollSetters, TakeTextsAndNatives) {
  const auto enrollment = Make<KRPayrollEnrollRq>();
  EXPECT_EQ(enrollment->SetTaxService("Y"), 1);
  EXPECT_EQ(enrollment->SetDirectDeposit(u16{0}), 1);
  EXPECT_EQ(enrollment->SetDateNextPayroll("20260131"), 1);
  EXPECT_EQ(TextOf(*enrollment),
            "<N.TAXSERVICE>Y\n<N.DIRECTDEPOSIT>N\n<N.DTNEXTPAYROLL>20260131\n");
  EXPECT_EQ(enrollment->SetDateNextPayroll(KRPayrollDateTime("^@~*")), 1);
  EXPECT_EQ(enrollment->GetDateNextPayroll().IsEmpty(), 1);
  EXPECT_EQ(enrollment->SetDateNextPayroll("20260228"), 1);
  EXPECT_EQ(enrollment->GetDateNextPayroll().IsEmpty(), 1) << "a text does not end the blank";
  EXPECT_EQ(enrollment->SetDateNextPayroll(KRPayrollDateTime("20260228")), 1);
  EXPECT_EQ(enrollment->GetDateNextPayroll().IsEmpty(), 0);
}

TEST(PayrollSetters, SetTheTagOnlyWhenTheTextIsAValue) {
  const auto enrollment = Make<KRPayrollEnrollRq>();
  EXPECT_EQ(enrollment->SetTaxService("maybe"), 0);
  EXPECT_EQ(enrollment->SetTaxService(static_cast<const char*>(nullptr)), 0);
  EXPECT_EQ(enrollment->SetDateNextPayroll("soon"), 0);
  EXPECT_EQ(enrollment->AnyValidPresent(), 0);
  TakeWarnings();
}

// --- The update ----------------------------------------------------------------------------------

std::string NextIds() {
  return "<N.PAYCHKNEXTID>11<N.PAYROLLTXNEXTID>12<N.EMPNEXTID>13<N.PITEMNEXTID>14";
}

std::string WholeUpdate() {
  return "<TOKEN>5" +
         ResponseWrapper("N.PAYROLLTRNRS", Aggregate("N.PAYROLLRS", Aggregate("N.PAYROLLTX", ""))) +
         NextIds() + Aggregate("N.PAYROLLUPDATEDATA", "<N.EMPDELID>7") +
         Aggregate("N.TAXSERVSTATUS", "<N.TAXSERVMODE>ACTIVE") +
         Aggregate("N.DDSTATUS", "<N.DDMODE>NO");
}

TEST(KRPayrollUpdateRs, WritesTheBaseFirstAndThenWhatIsItsOwn) {
  const std::string backwards =
      Aggregate("N.DDSTATUS", "<N.DDMODE>NO") +
      Aggregate("N.TAXSERVSTATUS", "<N.TAXSERVMODE>ACTIVE") +
      Aggregate("N.PAYROLLUPDATEDATA", "<N.EMPDELID>7") +
      "<N.PITEMNEXTID>14<N.EMPNEXTID>13<N.PAYROLLTXNEXTID>12<N.PAYCHKNEXTID>11" +
      ResponseWrapper("N.PAYROLLTRNRS", Aggregate("N.PAYROLLRS", Aggregate("N.PAYROLLTX", ""))) +
      "<TOKEN>5";
  const Parsed<KRPayrollUpdateRs> update(backwards);
  EXPECT_EQ(update.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(update.Warnings(), Lines());
  EXPECT_EQ(TextOf(*update), InLines(WholeUpdate()));
  EXPECT_EQ(Str(update->GetPayCheckNextID()), "11");
  EXPECT_EQ(Str(update->GetPayrollTxNextID()), "12");
  EXPECT_EQ(Str(update->GetEmployeeNextID()), "13");
  EXPECT_EQ(Str(update->GetPayrollItemNextID()), "14");
  EXPECT_EQ(update->GetPayrollUpdateData()->EmployeeWasDeleted(KRString("7")), 1);
  EXPECT_EQ(update->GetTaxServiceStatus()->GetTaxServiceMode(), KRTaxServiceMode_ACTIVE);
  EXPECT_EQ(update->GetDirectDepositStatus()->GetDirectDepositMode(), KRDirectDepositMode_NO);
  EXPECT_EQ(update->GetNumTrans(), 1);
}

TEST(KRPayrollUpdateRs, HasTheTablesOfAnySynchronisation) {
  KRPayrollUpdateRs update;
  EXPECT_EQ(update.GetType(), KRTag_N_PAYROLLUPDATERS);
  KRSyncRs plain;
  plain.SetType(KRTag_N_PAYROLLUPDATERS);
  KRArrayOfTags own;
  KRArrayOfTags others;
  EXPECT_EQ(update.GetArrayOfValidTags(own), plain.GetArrayOfValidTags(others));
  EXPECT_EQ(own.table, others.table);
  EXPECT_EQ(update.GetArrayOfRequiredTags(own), plain.GetArrayOfRequiredTags(others));
  EXPECT_EQ(TableLines(own), TableLines(others));
}

TEST(KRPayrollUpdateRs, KeepsWhatItsBaseKeeps) {
  KRPayrollUpdateRs update;
  KRSyncRs plain;
  plain.SetType(KRTag_N_PAYROLLUPDATERS);
  for (KRSyncRs* sync : {static_cast<KRSyncRs*>(&update), &plain}) {
    sync->SetMsgSetVersion(1);
    const auto element = [sync](KRTagID tag, const char* name, const char* value) {
      const KRTagDictionaryEntry entry{tag, name};
      return sync->HandleTagElement(&entry, KRString(value));
    };
    EXPECT_EQ(element(KRTag_LOSTSYNC, "LOSTSYNC", "Y"), KRParseStatus_Accepted);
    EXPECT_EQ(sync->GetLostSync(), 1);
    EXPECT_EQ(element(KRTag_TOKEN2, "TOKEN2", "second"), KRParseStatus_Accepted);
    EXPECT_EQ(Str(sync->GetToken2()), "second");
    EXPECT_EQ(element(KRTag_LOSTSYNC, "LOSTSYNC", "maybe"), KRParseStatus_Invalid);
    EXPECT_EQ(element(KRTag_STMTTRN, "STMTTRN", "x"), KRParseStatus_Invalid);
    EXPECT_EQ(sync->ValidateTag(KRTag_LOSTSYNC), 0) << "no tag of this synchronisation";
    KRSimpleParser parser;
    sync->SetupForParsing(&parser);
    const KRTagDictionaryEntry account{KRTag_BANKACCTFROM, "BANKACCTFROM"};
    EXPECT_EQ(sync->HandleTagStart(&account), KRParseStatus_Invalid);
    ASSERT_NE(sync->GetAccount(), nullptr);
    EXPECT_EQ(sync->GetAccount()->GetType(), KRTag_BANKACCTFROM);
  }
}

TEST(KRPayrollUpdateRs, NeedsItsTokenAndTheNextIdentifiers) {
  EXPECT_EQ(Parsed<KRPayrollUpdateRs>("<TOKEN>5" + NextIds())->AllRequiredPresent(), 1);
  EXPECT_EQ(Parsed<KRPayrollUpdateRs>(NextIds())->AllRequiredPresent(), 0);
  EXPECT_EQ(Parsed<KRPayrollUpdateRs>("<TOKEN>5")->AllRequiredPresent(), 0);
}

TEST(KRPayrollUpdateRs, CopiesWhatItHolds) {
  auto update = std::make_unique<Parsed<KRPayrollUpdateRs>>(WholeUpdate());
  (*update)->SetMsgsRsTag(KRTag_N_PAYROLLMSGSRSV1);
  KRPayrollUpdateRs copy;
  ASSERT_EQ(copy.DeepCopyFrom(update->Get()), 1);
  update.reset();
  EXPECT_EQ(TextOf(copy), InLines(WholeUpdate()));
  EXPECT_EQ(copy.GetMsgsRsTag(), KRTag_N_PAYROLLMSGSRSV1);
  EXPECT_EQ(copy.DeepCopyFrom(nullptr), 0);
}

TEST(KRPayrollUpdateRs, ReplacesASecondChildWithAWarning) {
  const Parsed<KRPayrollUpdateRs> update(Aggregate("N.DDSTATUS", "<N.DDMODE>NO") +
                                         Aggregate("N.DDSTATUS", "<N.DDMODE>ACTIVE"));
  EXPECT_EQ(update.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(update.Warnings(), Lines{"EXTRAAGG " + TagNumber(KRTag_N_DDSTATUS)});
  EXPECT_EQ(update->GetDirectDepositStatus()->GetDirectDepositMode(), KRDirectDepositMode_ACTIVE);
}

TEST(KRPayrollUpdateRs, StandsInAResponseFile) {
  const std::string text =
      ResponseFile("N.PAYROLLMSGSRS", Aggregate("N.PAYROLLUPDATERS", WholeUpdate()));
  const Parsed<KRFileRs> file(text);
  EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(file.Warnings(), Lines());
  const auto* update = FindIn<KRPayrollUpdateRs>(file.Get());
  ASSERT_NE(update, nullptr);
  EXPECT_EQ(Str(update->GetEmployeeNextID()), "13");
  EXPECT_EQ(Build(*file).text.find("<N.EMPNEXTID>13") != std::string::npos, true);
}

TEST(KRPayrollUpdateRs, ComesFromTheFactory) {
  class Own : public KRPayrollUpdateRs {};
  class OwnFactory : public KRDataObjFactory {
   public:
    KRPayrollUpdateRs* NewPayrollUpdateRs(u16) override { return new Own; }
  } factory;
  KRDataObj::SetFactory(&factory);
  {
    const Parsed<KRFileRs> file(
        ResponseFile("N.PAYROLLMSGSRS", Aggregate("N.PAYROLLUPDATERS", WholeUpdate())));
    EXPECT_NE(FindIn<Own>(file.Get()), nullptr);
  }
  KRDataObj::SetFactory(nullptr);
}

TEST(KRPayrollUpdateRs, RaisesTheAlarmWithoutMemory) {
  const std::string text =
      ResponseFile("N.PAYROLLMSGSRS", Aggregate("N.PAYROLLUPDATERS", WholeUpdate()));
  std::size_t failures = 0;
  for (std::size_t nth = 1; nth < 400; ++nth) {
    TextBuffer buffer(text);
    KRFileRs file;
    KRSimpleParser parser;
    const FailingAllocation failing(nth);
    const KRParseStatus status = parser.Parse(buffer.Get(), &file, 0);
    if (!AlarmIsSet()) continue;
    ++failures;
    EXPECT_NE(status, KRParseStatus_Accepted) << nth;
  }
  KRSetFireAlarm(KRFireAlarm_None);
  EXPECT_GT(failures, 10u);
}

TEST(PayrollExchanges, StandInTheirWrappers) {
  const Parsed<KRFileRq> request(RequestFile(
      "N.PAYROLLMSGSRQ",
      RequestWrapper("N.PAYROLLENROLLTRNRQ", Aggregate("N.PAYROLLENROLLRQ", "<N.APPKEY>k")) +
          Aggregate("N.PAYROLLUPDATERQ",
                    "<TOKEN>5<REJECTIFMISSING>N" +
                        RequestWrapper("N.PAYROLLTRNRQ",
                                       Aggregate("N.PAYROLLRQ", "<N.ANOMALYTEXT>odd")))));
  EXPECT_EQ(request.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(request.Warnings(), Lines());
  ASSERT_NE(FindIn<KRPayrollEnrollRq>(request.Get()), nullptr);
  ASSERT_NE(FindIn<KRPayrollRq>(request.Get()), nullptr);
  EXPECT_EQ(Str(FindIn<KRPayrollRq>(request.Get())->GetAnomalyText()), "odd");
  const Parsed<KRFileRs> response(ResponseFile(
      "N.PAYROLLMSGSRS",
      ResponseWrapper("N.PAYROLLENROLLTRNRS", Aggregate("N.PAYROLLENROLLRS", "<N.USERID>u"))));
  EXPECT_EQ(response.Status(), KRParseStatus_Accepted);
  ASSERT_NE(FindIn<KRPayrollEnrollRs>(response.Get()), nullptr);
  EXPECT_EQ(Str(FindIn<KRPayrollEnrollRs>(response.Get())->GetUserID()), "u");
}

TEST(PayrollExchanges, PassOverWhatIsNoValue) {
  const Parsed<KRPayrollEnrollRq> enrollment("<N.TAXSERVICE>maybe<N.DTNEXTPAYROLL>soon<N.APPKEY>k");
  EXPECT_EQ(enrollment.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(TextOf(*enrollment), "<N.APPKEY>k\n");
}

TEST(KRPayrollRq, KeepsAModificationOutOfTheListOfWholeEmployees) {
  KRPayrollRq batch;
  batch.SetMsgSetVersion(1);
  auto change = std::make_unique<KREmployeeMod>();
  EXPECT_EQ(batch.AppendEmployee(change.get()), 0)
      << "it would be noted as a change, and not written";
  EXPECT_EQ(batch.GetNumEmployee(), 0);
  EXPECT_EQ(batch.AnyValidPresent(), 0);
  EXPECT_EQ(batch.AppendEmployeeMod(change.release()), 1);
}

TEST(KRPayrollRs, TakesNoModificationThatItCannotWrite) {
  KRPayrollRs batch;
  batch.SetMsgSetVersion(1);
  auto change = std::make_unique<KRPayrollTxMod>();
  EXPECT_EQ(batch.AppendPayrollTx(change.get()), 0) << "still the caller's";
  EXPECT_EQ(batch.SetPayrollTx(0, change.get()), 0);
  EXPECT_EQ(batch.GetNumPayrollTx(), 0);
  EXPECT_EQ(batch.AppendPayrollTx(new KRPayrollTx), 1);
}

}  // namespace
}  // namespace krofx::testing
