// The example texts: each is read with the status and the warnings that it is an example of, and
// what is built from it is read and built again without a difference.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <string>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/message_set.h"
#include "krofx/envelope/payroll.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/payee.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/billpay/payees.h"
#include "krofx/messages/investment/orders.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/messages/investment/statement.h"
#include "krofx/messages/investment/transactions.h"
#include "krofx/messages/profile/profile.h"
#include "krofx/payroll/employees.h"
#include "krofx/payroll/paychecks.h"
#include "krofx/values/utility.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

std::string Example(const std::string& name) {
  std::ifstream stream(std::string(KROFX_EXAMPLES_DIR) + "/" + name, std::ios::binary);
  EXPECT_TRUE(stream) << name;
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Parses an example that must end with `status`, and expects its text to stay the same when it is
/// built and read again.
template <class Root>
std::unique_ptr<Root> Read(const std::string& name, KRParseStatus status,
                           const Lines& warnings = {}) {
  const Parsed<Root> first(Example(name), 1, 1);
  EXPECT_EQ(first.Status(), status);
  EXPECT_EQ(first.Warnings(), warnings);
  const Built once = Build(*first, KRBuildStringOpt_Strict, 1);
  EXPECT_EQ(once.status, KRBuildStatus_Done);
  const Parsed<Root> second(once.text, 1, 1);
  EXPECT_EQ(second.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(second.Warnings(), Lines());
  EXPECT_EQ(TextOf(*second), once.text);
  auto copy = std::make_unique<Root>();
  EXPECT_EQ(copy->DeepCopyFrom(first.Get()), 1);
  EXPECT_EQ(TextOf(*copy), once.text);
  return copy;
}

TEST(ExampleTexts, Checking) {
  const auto file = Read<KRFileRs>("checking.ofx", KRParseStatus_Accepted);
  const KRMessageSetRs* bank = file->GetResponse(0)->GetMessageSet(1);
  ASSERT_NE(bank, nullptr);
  ASSERT_EQ(bank->GetNumTrans(), 2);
  const auto* checking = FindIn<KRBankStatementRs>(bank->GetTrans(0));
  const auto* savings = FindIn<KRBankStatementRs>(bank->GetTrans(1));
  ASSERT_NE(checking, nullptr);
  ASSERT_NE(savings, nullptr);
  EXPECT_GE(checking->GetBankTranList()->GetNumStatementTx() +
                savings->GetBankTranList()->GetNumStatementTx(),
            60);
  EXPECT_EQ(checking->GetBankAcctFrom()->GetAccountType(), KRBankAccountType_CHECKING);
  EXPECT_EQ(savings->GetBankAcctFrom()->GetAccountType(), KRBankAccountType_SAVINGS);
}

// The booked amounts and the balance agree to the cent, since decimals are exact.
TEST(ExampleTexts, SavingsAddUpToTheirBalance) {
  const auto file = Read<KRFileRs>("checking.ofx", KRParseStatus_Accepted);
  const auto* savings =
      FindIn<KRBankStatementRs>(file->GetResponse(0)->GetMessageSet(1)->GetTrans(1));
  ASSERT_NE(savings, nullptr);
  KRPrecisionInteger sum;
  sum = "9182.00";
  for (u16 i = 0; i < savings->GetBankTranList()->GetNumStatementTx(); ++i) {
    sum += savings->GetBankTranList()->GetStatementTx(i)->GetTxAmount();
  }
  EXPECT_EQ(sum == savings->GetLedgerBal()->GetBalAmt(), 1);
}

TEST(ExampleTexts, CardWithClosings) {
  const auto file = Read<KRFileRs>("card.ofx", KRParseStatus_Accepted);
  const auto* end = FindIn<KRCCStatementEndRs>(file.get());
  ASSERT_NE(end, nullptr);
  EXPECT_EQ(end->GetNumCCClosing(), 3);
  EXPECT_EQ(Str(end->GetCCClosing(2)->GetFITId()), "STM2602");
}

TEST(ExampleTexts, Quirks) {
  const auto lower = [](const char* tag, KRTagID id) {
    return "LOWERCASE <" + std::string(tag) + "> " + TagNumber(id);
  };
  const auto file = Read<KRFileRs>(
      "quirks.ofx", KRParseStatus_Warnings,
      {"UNKNOWNTAG <ACME.BRANCHHOURS>", lower("stmttrn", KRTag_STMTTRN),
       lower("trntype", KRTag_TRNTYPE), lower("dtposted", KRTag_DTPOSTED),
       lower("trnamt", KRTag_TRNAMT), lower("fitid", KRTag_FITID), lower("name", KRTag_NAME),
       lower("Memo", KRTag_MEMO), lower("stmttrn", KRTag_STMTTRN), "UNKNOWNTAG <ACME.IMAGE>"});
  const auto* list = FindIn<KRBankTransactionList>(file.get());
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->GetNumStatementTx(), 4);
  EXPECT_EQ(Str(list->GetStatementTx(0)->GetName()), "Bread & Butter <Main St>");
  EXPECT_EQ(Str(list->GetStatementTx(0)->GetMemo()), "Table 4  tip included");
  EXPECT_EQ(Str(list->GetStatementTx(1)->GetMemo()), "Caf&eacute; voucher");
  EXPECT_EQ(list->GetStatementTx(1)->GetTxType(), KRBankTxType_CREDIT);
  EXPECT_STREQ(static_cast<const char*>(list->GetStatementTx(2)->GetTxAmount()), "-1200");
}

TEST(ExampleTexts, Error) {
  const auto file = Read<KRFileRs>("error.ofx", KRParseStatus_Accepted);
  const KRMessageSetRs* bank = file->GetResponse(0)->GetMessageSet(1);
  ASSERT_EQ(bank->GetNumTrans(), 2);
  for (u16 i = 0; i < 2; ++i) {
    EXPECT_EQ(bank->GetTrans(i)->IsErrorStatus(), 1);
    EXPECT_EQ(bank->GetTrans(i)->AllRequiredPresent(), 1);
    EXPECT_EQ(bank->GetTrans(i)->GetActualTrans(), nullptr);
  }
}

TEST(ExampleTexts, Profile) {
  const auto file = Read<KRFileRs>("profile.ofx", KRParseStatus_Accepted);
  const auto* bank = FindIn<KRBankMessageSetV1>(file.get());
  ASSERT_NE(bank, nullptr);
  EXPECT_EQ(bank->GetNumInvalidBankAccountType(), 2);
  EXPECT_EQ(bank->GetXferProf()->GetDaysWith(), -1);
}

TEST(ExampleTexts, StatementOfTheSecondVersion) {
  const auto file = Read<KRFileRs>("statement-v2.ofx", KRParseStatus_Accepted);
  const auto* transaction = FindIn<KRBankStatementTx>(file.get());
  ASSERT_NE(transaction, nullptr);
  EXPECT_EQ(transaction->GetMsgSetVersion(), 2);
  EXPECT_GT(Str(transaction->GetMemo2()).size(), 255u);
  EXPECT_EQ(Str(transaction->GetPayee2()->GetName()), "Immobilien am See");
}

TEST(ExampleTexts, RequestOfTheFirstVersion) {
  const auto file = Read<KRFileRq>("request-v1.ofx", KRParseStatus_Accepted);
  // It is written as the builder writes it, so reading and building give the same body.
  const std::string body = Example("request-v1.ofx");
  EXPECT_EQ(TextOf(*file).substr(HeaderBlock().size()), body.substr(body.find("<OFX>")));
}

TEST(ExampleTexts, RequestOfTheSecondVersion) {
  const auto file = Read<KRFileRq>("request-v2.ofx", KRParseStatus_Accepted);
  const std::string body = Example("request-v2.ofx");
  EXPECT_EQ(TextOf(*file).substr(HeaderBlock().size()), body.substr(body.find("<OFX>")));
}

// A tree of one version is not mixed with tags of the other.
TEST(ExampleTexts, SecondVersionIsRefusedByAFileOfTheFirst) {
  auto first = std::make_unique<KRFileRs>();
  first->SetMsgSetVersion(1);
  const Parsed<KRFileRs> file(Example("statement-v2.ofx"), std::move(first));
  EXPECT_EQ(file.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(FindIn<KRBankStatementRs>(file.Get()), nullptr);
}

/// The tags of the children of the first `T` of a tree, each run of one tag once.
template <class T>
Lines ChildTags(KRDataObj* root) {
  Lines tags;
  T* parent = FindIn<T>(root);
  for (u16 i = 0; parent != nullptr && i < parent->GetNumberOfChildren(); ++i) {
    const KRTagID tag = parent->GetChild(i)->GetType();
    const char* text = KRTagDictionary::TheKRTagDictionary()->GetTagString(tag);
    if (tags.empty() || tags.back() != text) tags.push_back(text);
  }
  return tags;
}

// In the first the entries are in the order of time, and its securities and orders in reverse; both
// are written kind by kind.
TEST(ExampleTexts, BrokerageStatementsHaveOneOfEachKind) {
  for (const char* name : {"brokerage.ofx", "brokerage-v2.ofx"}) {
    SCOPED_TRACE(name);
    const auto file = Read<KRFileRs>(name, KRParseStatus_Accepted);
    EXPECT_EQ(
        ChildTags<KRInvTranList>(file.get()),
        (Lines{"BUYDEBT",  "BUYMF",      "BUYOPT",     "BUYOTHER", "BUYSTOCK",       "CLOSUREOPT",
               "INCOME",   "INVEXPENSE", "JRNLFUND",   "JRNLSEC",  "MARGININTEREST", "REINVEST",
               "RETOFCAP", "SELLDEBT",   "SELLMF",     "SELLOPT",  "SELLOTHER",      "SELLSTOCK",
               "SPLIT",    "TRANSFER",   "INVBANKTRAN"}));
    EXPECT_EQ(ChildTags<KRInvPosList>(file.get()),
              (Lines{"POSDEBT", "POSMF", "POSOPT", "POSOTHER", "POSSTOCK"}));
    EXPECT_EQ(ChildTags<KRInvOOList>(file.get()),
              (Lines{"OOBUYDEBT", "OOBUYMF", "OOBUYOPT", "OOBUYOTHER", "OOBUYSTOCK", "OOSELLDEBT",
                     "OOSELLMF", "OOSELLOPT", "OOSELLOTHER", "OOSELLSTOCK", "OOSWITCHMF"}));
    EXPECT_EQ(ChildTags<KRSecList>(file.get()),
              (Lines{"DEBTINFO", "MFINFO", "OPTINFO", "OTHERINFO", "STOCKINFO"}));
    const std::string text = TextOf(*file);
    EXPECT_LT(text.find("<BUYSTOCK>"), text.find("<SELLDEBT>"));
    EXPECT_LT(text.find("<SELLSTOCK>"), text.find("<INVBANKTRAN>"));
  }
}

TEST(ExampleTexts, BrokerageRequestsAreWrittenAsTheyStand) {
  for (const char* name : {"brokerage-request.ofx", "brokerage-request-v2.ofx"}) {
    SCOPED_TRACE(name);
    const auto file = Read<KRFileRq>(name, KRParseStatus_Accepted);
    const std::string body = Example(name);
    EXPECT_EQ(TextOf(*file).substr(HeaderBlock().size()), body.substr(body.find("<OFX>")));
  }
}

// The text after the header block, whose line ends are the builder's own.
std::string BodyOf(const std::string& text) {
  const std::size_t start = text.find("<OFX>");
  EXPECT_NE(start, std::string::npos);
  return text.substr(std::min(start, text.size()));
}

/// As Read, for an example that is in the builder's own form.
template <class Root>
void ExpectFixedPoint(const std::string& name) {
  SCOPED_TRACE(name);
  const auto file = Read<Root>(name, KRParseStatus_Accepted);
  EXPECT_EQ(BodyOf(TextOf(*file)), BodyOf(Example(name)));
}

/// The same for both versions of each example.
template <class Root>
void ExpectFixedPoints(std::initializer_list<const char*> names) {
  for (const std::string name : names) {
    for (const char* const version : {".ofx", "-v2.ofx"}) ExpectFixedPoint<Root>(name + version);
  }
}

TEST(ExampleTexts, BillPayment) {
  ExpectFixedPoints<KRFileRq>({"billpay-request"});
  ExpectFixedPoints<KRFileRs>({"billpay-response"});
}

TEST(ExampleTexts, SignUp) {
  ExpectFixedPoints<KRFileRq>({"sign-up-request"});
  ExpectFixedPoints<KRFileRs>({"sign-up-response"});
}

TEST(ExampleTexts, TransfersStopChecksAndMail) {
  ExpectFixedPoints<KRFileRq>({"transfers-request", "stop-checks-request", "mail-request"});
  ExpectFixedPoints<KRFileRs>({"transfers-response", "stop-checks-response", "mail-response"});
}

TEST(ExampleTexts, Branding) {
  ExpectFixedPoints<KRFileRq>({"branding-request"});
  ExpectFixedPoints<KRFileRs>({"branding-response"});
}

TEST(ExampleTexts, Payroll) {
  for (const char* const name : {"enrollment-request", "batch", "update-request", "termination"}) {
    ExpectFixedPoint<KRFileRq>("payroll-" + std::string(name) + ".ofx");
  }
  for (const char* const name : {"enrollment-response", "update-response"}) {
    ExpectFixedPoint<KRFileRs>("payroll-" + std::string(name) + ".ofx");
  }
}

TEST(ExampleTexts, PayrollBatchClearsFieldsAndLeavesOthers) {
  const auto file = Read<KRFileRq>("payroll-batch.ofx", KRParseStatus_Accepted);
  const auto* batch = FindIn<KRPayrollRq>(file.get());
  ASSERT_NE(batch, nullptr);
  const KREmployeeMod* change = batch->GetEmployeeMod(0);
  EXPECT_EQ(change->GetDateRelease().IsEmpty(), 1);
  EXPECT_EQ(change->ValidateTag(KRTag_N_DTHIRE), 0);
  EXPECT_EQ(change->GetVacation()->GetHours().IsEmpty(), 1);
  EXPECT_EQ(batch->GetNumPayrollItem(), 9);
  const KRPayCheck* check = batch->GetPayrollRun(0)->GetPayCheck(0);
  EXPECT_EQ(check->GetNumSalaryLine() * check->GetNumHourlyWageLine() * check->GetNumTaxLine() *
                check->GetNumDirectDepositLine(),
            1);
  EXPECT_EQ(check->GetNumAdjustmentLine(), 2);
}

TEST(ExampleTexts, Reports) {
  ExpectFixedPoints<KRFileRq>({"client-log", "survey", "institution-usage", "customer-usage"});
}

}  // namespace
}  // namespace krofx::testing
