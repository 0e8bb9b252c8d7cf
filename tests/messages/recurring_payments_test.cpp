// Recurring payments, letters about a payment, and the bill-pay profile: their tables, and rules
// that are not in the tables.

#include "krofx/messages/billpay/recurring_payments.h"

#include <gtest/gtest.h>

#include "krofx/messages/banking/mail.h"
#include "krofx/messages/banking/recurring.h"
#include "krofx/messages/billpay/billpay_profile.h"
#include "krofx/messages/billpay/payees.h"
#include "krofx/messages/billpay/payments.h"
#include "krofx/messages/profile/profile.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(RecurringPaymentTables, Request) {
  ExpectTable<KRRecPaymentRq>("RECPMTRQ", R"(
    RECURRINST  child   required
    PMTINFO     child   required  V1
    PMTINFO2    child   required  V2+
    INITIALAMT  amount
    FINALAMT    amount
  )");
}

TEST(RecurringPaymentTables, Modification) {
  constexpr char kModification[] = R"(
    RECSRVRTID   text36   required  V1
    RECSRVRTID2  text36   required  V2+
    RECURRINST   child    required
    PMTINFO      child    required  V1
    PMTINFO2     child    required  V2+
    INITIALAMT   amount
    FINALAMT     amount
    MODPENDING   boolean  required
  )";
  ExpectTable<KRRecPaymentModifyRq>("RECPMTMODRQ", kModification);
  ExpectTable<KRRecPaymentModifyRs>("RECPMTMODRS", kModification);
}

TEST(RecurringPaymentTables, Cancellation) {
  constexpr char kCancellation[] = R"(
    RECSRVRTID   text36   required  V1
    RECSRVRTID2  text36   required  V2+
    CANPENDING   boolean  required
  )";
  ExpectTable<KRRecPaymentCancelRq>("RECPMTCANCRQ", kCancellation);
  ExpectTable<KRRecPaymentCancelRs>("RECPMTCANCRS", kCancellation);
}

TEST(RecurringPaymentTables, Response) {
  ExpectTable<KRRecPaymentRs>("RECPMTRS", R"(
    RECSRVRTID   text36  required  V1
    RECSRVRTID2  text36  required  V2+
    PAYEELSTID   text12  required  V1
    PAYEELSTID2  text36  required  V2+
    CURDEF       text3   required
    RECURRINST   child   required
    PMTINFO      child   required  V1
    PMTINFO2     child   required  V2+
    INITIALAMT   amount
    FINALAMT     amount
    EXTDPAYEE    child
  )");
}

TEST(RecurringPaymentTables, Mail) {
  constexpr char kMail[] = R"(
    MAIL      child   required
    SRVRTID   text36            V1
    SRVRTID2  text36            V2+
    PMTINFO   child             V1
    PMTINFO2  child             V2+
  )";
  ExpectTable<KRPaymentMailRq>("PMTMAILRQ", kMail);
  ExpectTable<KRPaymentMailRs>("PMTMAILRS", kMail);
}

// Both versions have these, around HASRECEXTDPMT, which only the second one lists.
constexpr char kBeforeRecurring[] = R"(
    MSGSETCORE           child                required
    DAYSWITH             s16                  required
    DFLTDAYSTOPAY        u16                  required
    XFERDAYSWITH         u16                  required
    XFERDFLTDAYSTOPAY    u16                  required
    PROCDAYSOFF          words=MONDAY,SUNDAY
    PROCENDTM            time                 required
    MODELWND             u16                  required
    POSTPROCWND          u16                  required
    STSVIAMODS           boolean              required
    PMTBYADDR            boolean              required
    PMTBYXFER            boolean              required
    PMTBYPAYEEID         boolean              required
    CANADDPAYEE          boolean              required
    HASEXTDPMT           boolean              required
)";
constexpr char kAfterRecurring[] = R"(
    CANMODPMTS           boolean              required
    CANMODMDLS           boolean              required
    DIFFFIRSTPMT         boolean              required
    DIFFLASTPMT          boolean              required
    NORV.CANRECUR        boolean
    NORV.JUSTONEPAYACCT  boolean
    NORV.DATEMODEL       word=MIXED
    NORV.DFLTDAYSWITH    s16
)";

TEST(RecurringPaymentTables, BillPayProfile) {
  ExpectTable<KRBillPayMessageSetV1>("BILLPAYMSGSETV1",
                                     std::string(kBeforeRecurring) + kAfterRecurring);
}

TEST(RecurringPaymentTables, BillPayProfileOfTheSecondVersion) {
  ExpectTable<KRBillPayMessageSetV2>("BILLPAYMSGSETV1", kBeforeRecurring + std::string(R"(
    HASRECEXTDPMT  boolean  required
  )") + kAfterRecurring + R"(
    NEEDTANPMT      boolean  required  V2+
    NEEDTANPAYEE    boolean  required  V2+
    SUPPORTDTAVAIL  boolean  required  V2+
  )");
}

u16 IsCompleteMail(const std::string& members, u16 version) {
  const Parsed<KRPaymentMailRq> parsed(Aggregate("MAIL", "") + members, version);
  EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted) << members;
  return parsed->AllRequiredPresent();
}

TEST(KRPaymentMailRq, NamesThePaymentAndRepeatsItOrDoesNeither) {
  EXPECT_EQ(IsCompleteMail("", 1), 1);
  EXPECT_EQ(IsCompleteMail("<SRVRTID>1", 1), 0);
  EXPECT_EQ(IsCompleteMail(Aggregate("PMTINFO", ""), 1), 0);
  EXPECT_EQ(IsCompleteMail("<SRVRTID>1" + Aggregate("PMTINFO", ""), 1), 1);
  EXPECT_EQ(IsCompleteMail("", 2), 1);
  EXPECT_EQ(IsCompleteMail("<SRVRTID2>1", 2), 0);
  EXPECT_EQ(IsCompleteMail(Aggregate("PMTINFO2", ""), 2), 0);
  EXPECT_EQ(IsCompleteMail("<SRVRTID2>1" + Aggregate("PMTINFO2", ""), 2), 1);
  EXPECT_EQ(Parsed<KRPaymentMailRq>("")->AllRequiredPresent(), 0) << "a letter without a letter";
}

TEST(RecurringPayments, WriteTheModelBeforeThePayment) {
  const Parsed<KRRecPaymentRq> parsed("<FINALAMT>3<INITIALAMT>2" +
                                      Aggregate("PMTINFO", "<TRNAMT>1") +
                                      Aggregate("RECURRINST", "<NINSTS>12<FREQ>MONTHLY"));
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(TextOf(*parsed), InLines("<RECURRINST><NINSTS>12<FREQ>MONTHLY</RECURRINST>"
                                     "<PMTINFO><TRNAMT>1</PMTINFO><INITIALAMT>2<FINALAMT>3"));
}

TEST(KRBillPayMessageSetV1, NeverShowsRecurringExtendedPayments) {
  for (const u16 version : {u16{1}, u16{2}}) {
    auto set = Make<KRBillPayMessageSetV1>(version);
    EXPECT_EQ(set->IsValidTag(KRTag_HASRECEXTDPMT), 0);
    EXPECT_EQ(set->SetHasRecExtdPmt(u16{1}), 0);
    EXPECT_EQ(TextOf(*set), "");
    const Parsed<KRBillPayMessageSetV1> parsed("<HASRECEXTDPMT>Y<CANMODPMTS>Y", version);
    EXPECT_EQ(parsed.Status(), KRParseStatus_Warnings);
    EXPECT_EQ(TextOf(*parsed), "<CANMODPMTS>Y\n");
  }
}

TEST(KRBillPayMessageSetV2, ShowsRecurringExtendedPayments) {
  auto set = Make<KRBillPayMessageSetV2>(2);
  EXPECT_EQ(set->SetHasRecExtdPmt(u16{1}), 1);
  EXPECT_EQ(TextOf(*set), "<HASRECEXTDPMT>Y\n");
}

TEST(KRBillPayMessageSetV2, IsMadeUnderTheFirstTagWithoutAVersion) {
  KRBillPayMessageSetV2 set;
  EXPECT_EQ(set.GetType(), KRTag_BILLPAYMSGSETV1);
  EXPECT_EQ(set.GetMsgSetVersion(), 0);
}

TEST(KRBillPayMessageSetV2, GetsItsTagFromWhatItIsReadUnder) {
  const std::string text = Aggregate("BILLPAYMSGSETV2", "<HASRECEXTDPMT>Y<NEEDTANPMT>N");
  const Parsed<KRMessageSetProfile> parsed(text, 2);
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  auto* set = FindIn<KRBillPayMessageSetV2>(parsed.Get());
  ASSERT_NE(set, nullptr);
  EXPECT_EQ(set->GetType(), KRTag_BILLPAYMSGSETV2);
  EXPECT_EQ(TextOf(*parsed), InLines(text));
}

TEST(KRBillPayMessageSetV1, ListsTheDaysWithoutProcessing) {
  auto set = Make<KRBillPayMessageSetV1>();
  EXPECT_EQ(set->AppendProcessingDaysOff(KRDayOfWeek_SATURDAY), 1);
  EXPECT_EQ(set->AppendProcessingDaysOff(KRDayOfWeek_SUNDAY), 1);
  EXPECT_EQ(set->GetNumProcessingDaysOff(), 2);
  EXPECT_EQ(TextOf(*set), "<PROCDAYSOFF>SATURDAY\n<PROCDAYSOFF>SUNDAY\n");
  set->DeleteAllProcessingDaysOff();
  EXPECT_EQ(set->GetNumProcessingDaysOff(), 0);
}

TEST(KRBillPayMessageSetV1, KeepsTheDateModelByItsPlace) {
  const Parsed<KRBillPayMessageSetV1> parsed("<NORV.DATEMODEL>PROCDATE2<NORV.DFLTDAYSWITH>-2");
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(parsed->GetNorvDateModel(), 2);
  EXPECT_EQ(parsed->GetNorvDfltDaysWith(), -2);
  EXPECT_EQ(TextOf(*parsed), "<NORV.DATEMODEL>PROCDATE2\n<NORV.DFLTDAYSWITH>-2\n");
}

}  // namespace
}  // namespace krofx::testing
