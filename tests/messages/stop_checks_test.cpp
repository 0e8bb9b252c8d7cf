// Stop checks: the tables, and the choice between a range and a description.

#include "krofx/messages/banking/stop_checks.h"

#include <gtest/gtest.h>

#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

constexpr char kStopCheckRq[] = R"(
    BANKACCTFROM  child  required
    CHKRANGE      child  asked
    CHKDESC       child
)";

constexpr char kCheckRange[] = R"(
    CHKNUMSTART  text12  required
    CHKNUMEND    text12
)";

constexpr char kCheckDescription[] = R"(
    NAME      text32  required
    CHECKNUM  text12
    DTUSER    date
    TRNAMT    amount
)";

constexpr char kStopCheckRs[] = R"(
    CURDEF        text3     required
    BANKACCTFROM  child     required
    STPCHKNUM     children  required
    FEE           amount    required
    FEEMSG        text80    required
)";

constexpr char kStopCheckNumber[] = R"(
    CHECKNUM      text12   required
    NAME          text32
    DTUSER        date
    TRNAMT        amount
    CHKSTATUS     u16      required
    CHKERROR      text255
    CURRENCY      child
    ORIGCURRENCY  child
)";

TEST(StopCheckTables, Requests) {
  ExpectTable<KRStopCheckRq>("STPCHKRQ", kStopCheckRq);
  ExpectTable<KRCheckRange>("CHKRANGE", kCheckRange);
  ExpectTable<KRCheckDescription>("CHKDESC", kCheckDescription);
}

TEST(StopCheckTables, Responses) {
  ExpectTable<KRStopCheckRs>("STPCHKRS", kStopCheckRs);
  ExpectTable<KRStopCheckNumber>("STPCHKNUM", kStopCheckNumber);
}

u16 IsComplete(const std::string& checks) {
  const Parsed<KRStopCheckRq> request(BankAccountText("BANKACCTFROM") + checks);
  const u16 complete = request->AllRequiredPresent();
  EXPECT_EQ(request->GetFirstMissingRequiredTag(KRTag_None) == KRTag_None, complete == 1);
  return complete;
}

TEST(KRStopCheckRq, NeedsARangeOrADescription) {
  const std::string range = Aggregate("CHKRANGE", "<CHKNUMSTART>100");
  const std::string description = Aggregate("CHKDESC", "<NAME>Plumber");
  EXPECT_EQ(IsComplete(range), 1);
  EXPECT_EQ(IsComplete(description), 1);
  EXPECT_EQ(IsComplete(range + description), 0);
  EXPECT_EQ(IsComplete(""), 0);
}

TEST(KRStopCheckRq, NamesTheAccountBeforeTheChecks) {
  auto request = Make<KRStopCheckRq>();
  EXPECT_EQ(request->GetFirstMissingRequiredTag(KRTag_None), KRTag_BANKACCTFROM);
  EXPECT_EQ(request->GetFirstMissingRequiredTag(KRTag_BANKACCTFROM), KRTag_CHKRANGE);
}

TEST(KRCheckRange, IsOneCheckWithoutAnEnd) {
  EXPECT_EQ(Parsed<KRCheckRange>("<CHKNUMSTART>100")->AllRequiredPresent(), 1);
  EXPECT_EQ(Parsed<KRCheckRange>("<CHKNUMEND>100")->AllRequiredPresent(), 0);
}

TEST(KRStopCheckRs, IsIncompleteWithoutFeeMessage) {
  const std::string text = "<CURDEF>USD" + BankAccountText("BANKACCTFROM") +
                           Aggregate("STPCHKNUM", "<CHECKNUM>100<CHKSTATUS>0") + "<FEE>30.00";
  const Parsed<KRStopCheckRs> without(text);
  EXPECT_EQ(without->AllRequiredPresent(), 0);
  EXPECT_EQ(without->GetFirstMissingRequiredTag(KRTag_None), KRTag_FEEMSG);
  EXPECT_EQ(Parsed<KRStopCheckRs>(text + "<FEEMSG>None")->AllRequiredPresent(), 1);
}

TEST(KRStopCheckRs, HoldsItsChecksInOrder) {
  auto response = Make<KRStopCheckRs>();
  for (const char* number : {"7", "8"}) {
    auto* check = new KRStopCheckNumber;
    check->SetMsgSetVersion(1);
    check->SetCheckNumber(number);
    EXPECT_EQ(response->AppendStopCheckNumber(check), 1);
  }
  EXPECT_EQ(TextOf(*response),
            InLines(Aggregate("STPCHKNUM", "<CHECKNUM>7") + Aggregate("STPCHKNUM", "<CHECKNUM>8")));
  response->DeleteAllStopCheckNumber();
  EXPECT_EQ(response->GetNumStopCheckNumber(), 0);
}

}  // namespace
}  // namespace krofx::testing
