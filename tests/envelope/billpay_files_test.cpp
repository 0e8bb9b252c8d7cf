// Payees and payments in whole files.

#include <gtest/gtest.h>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/mail.h"
#include "krofx/messages/banking/payee.h"
#include "krofx/messages/banking/recurring.h"
#include "krofx/messages/billpay/billpay_profile.h"
#include "krofx/messages/billpay/payees.h"
#include "krofx/messages/billpay/payments.h"
#include "krofx/messages/billpay/recurring_payments.h"
#include "krofx/messages/profile/profile.h"
#include "krofx/values/utility.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

const std::string kPayment =
    Aggregate("BANKACCTFROM", "") + "<TRNAMT>12.50<PAYACCT>77<DTDUE>20260301";

TEST(PayeeExchanges, TravelInTheBillPaySet) {
  const Parsed<KRFileRq> request(RequestFile(
      "BILLPAYMSGSRQ",
      RequestWrapper("PAYEETRNRQ",
                     Aggregate("PAYEERQ", Aggregate("PAYEE2", "<NAME>Ada") + "<PAYACCT>77")) +
          RequestWrapper("PAYEETRNRQ", Aggregate("PAYEEDELRQ", "<PAYEELSTID2>9")),
      2));
  ASSERT_EQ(request.Status(), KRParseStatus_Accepted);
  EXPECT_NE(FindIn<KRPayeeRq>(request.Get()), nullptr);
  EXPECT_NE(FindIn<KRPayeeDeleteRq>(request.Get()), nullptr);
  EXPECT_EQ(FindIn<KRPayee2>(request.Get())->GetMsgSetVersion(), 2);
}

TEST(PaymentExchanges, TravelInTheBillPaySet) {
  for (const u16 version : {u16{1}, u16{2}}) {
    const std::string info = Aggregate(version == 2 ? "PMTINFO2" : "PMTINFO", kPayment);
    const Parsed<KRFileRq> request(
        RequestFile("BILLPAYMSGSRQ",
                    RequestWrapper("PMTTRNRQ", Aggregate("PMTRQ", info)) +
                        RequestWrapper("PMTTRNRQ", Aggregate("PMTMODRQ", info)) +
                        RequestWrapper("PMTTRNRQ", Aggregate("PMTCANCRQ", "")) +
                        RequestWrapper("PMTINQTRNRQ", Aggregate("PMTINQRQ", "")),
                    version));
    ASSERT_EQ(request.Status(), KRParseStatus_Accepted);
    EXPECT_NE(FindIn<KRPaymentRq>(request.Get()), nullptr);
    EXPECT_NE(FindIn<KRPaymentModifyRq>(request.Get()), nullptr);
    EXPECT_NE(FindIn<KRPaymentCancelRq>(request.Get()), nullptr);
    EXPECT_NE(FindIn<KRPaymentInquiryRq>(request.Get()), nullptr);
    const Parsed<KRFileRs> response(
        ResponseFile("BILLPAYMSGSRS",
                     ResponseWrapper("PMTTRNRS", Aggregate("PMTRS", info)) +
                         ResponseWrapper("PMTTRNRS", Aggregate("PMTMODRS", info)) +
                         ResponseWrapper("PMTTRNRS", Aggregate("PMTCANCRS", "")) +
                         ResponseWrapper("PMTINQTRNRS", Aggregate("PMTINQRS", "")),
                     version));
    ASSERT_EQ(response.Status(), KRParseStatus_Accepted);
    EXPECT_NE(FindIn<KRPaymentRs>(response.Get()), nullptr);
    EXPECT_NE(FindIn<KRPaymentModifyRs>(response.Get()), nullptr);
    EXPECT_NE(FindIn<KRPaymentCancelRs>(response.Get()), nullptr);
    EXPECT_NE(FindIn<KRPaymentInquiryRs>(response.Get()), nullptr);
  }
}

TEST(RecurringPayments, TravelInTheBillPaySet) {
  for (const u16 version : {u16{1}, u16{2}}) {
    const Parsed<KRFileRq> request(
        RequestFile("BILLPAYMSGSRQ",
                    RequestWrapper("RECPMTTRNRQ", Aggregate("RECPMTRQ", "")) +
                        RequestWrapper("RECPMTTRNRQ", Aggregate("RECPMTMODRQ", "")) +
                        RequestWrapper("RECPMTTRNRQ", Aggregate("RECPMTCANCRQ", "")) +
                        RequestWrapper("PMTMAILTRNRQ", Aggregate("PMTMAILRQ", "")),
                    version));
    ASSERT_EQ(request.Status(), KRParseStatus_Accepted);
    EXPECT_NE(FindIn<KRRecPaymentRq>(request.Get()), nullptr);
    EXPECT_NE(FindIn<KRRecPaymentModifyRq>(request.Get()), nullptr);
    EXPECT_NE(FindIn<KRRecPaymentCancelRq>(request.Get()), nullptr);
    EXPECT_NE(FindIn<KRPaymentMailRq>(request.Get()), nullptr);
    const Parsed<KRFileRs> response(
        ResponseFile("BILLPAYMSGSRS",
                     ResponseWrapper("RECPMTTRNRS", Aggregate("RECPMTRS", "")) +
                         ResponseWrapper("RECPMTTRNRS", Aggregate("RECPMTMODRS", "")) +
                         ResponseWrapper("RECPMTTRNRS", Aggregate("RECPMTCANCRS", "")) +
                         ResponseWrapper("PMTMAILTRNRS", Aggregate("PMTMAILRS", "")),
                     version));
    ASSERT_EQ(response.Status(), KRParseStatus_Accepted);
    EXPECT_NE(FindIn<KRRecPaymentRs>(response.Get()), nullptr);
    EXPECT_NE(FindIn<KRRecPaymentModifyRs>(response.Get()), nullptr);
    EXPECT_NE(FindIn<KRRecPaymentCancelRs>(response.Get()), nullptr);
    EXPECT_NE(FindIn<KRPaymentMailRs>(response.Get()), nullptr);
  }
}

}  // namespace
}  // namespace krofx::testing
