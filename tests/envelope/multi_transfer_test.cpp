// Several interbank transfers in one wrapper: where the wrapper is made, what it holds and writes,
// and what makes it complete.

#include <gtest/gtest.h>

#include <memory>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/multi_trans.h"
#include "krofx/messages/banking/transfers.h"
#include "krofx/messages/signon/status.h"
#include "krofx/model/factory.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

std::string Transfer(const char* amount) {
  return Aggregate(
      "INTERRQ", Aggregate("XFERINFO", BankAccountText("BANKACCTFROM", 2) +
                                           BankAccountText("BANKACCTTO", 2) + "<TRNAMT>" + amount));
}

std::string Answer(const char* amount) {
  return Aggregate("INTERRS", "<CURDEF>USD<SRVRTID2>s1" +
                                  Aggregate("XFERINFO", BankAccountText("BANKACCTFROM", 2) +
                                                            BankAccountText("BANKACCTTO", 2) +
                                                            "<TRNAMT>" + amount));
}

std::string RequestText() {
  return RequestFile("INTERXFERMSGSRQ",
                     RequestWrapper("MULTIINTERTRNRQ", Transfer("1.25") + Transfer("2.25")), 2);
}

std::string ResponseText() {
  return ResponseFile("INTERXFERMSGSRS",
                      ResponseWrapper("MULTIINTERTRNRS", Answer("1.25") + Answer("2.25")), 2);
}

TEST(MultiTransfer, IsReadIntoItsOwnWrapperClass) {
  const Parsed<KRFileRq> request(RequestText(), 2, 1);
  EXPECT_EQ(request.Warnings(), Lines());
  EXPECT_EQ(request.Status(), KRParseStatus_Accepted);
  auto* wrapper = FindIn<KRMultiTransRq>(request.Get());
  ASSERT_NE(wrapper, nullptr);
  EXPECT_EQ(wrapper->GetType(), KRTag_MULTIINTERTRNRQ);
  EXPECT_EQ(wrapper->GetNumActualTrans(), 2);
  EXPECT_EQ(wrapper->AllRequiredPresent(), 1);

  const Parsed<KRFileRs> response(ResponseText(), 2, 1);
  EXPECT_EQ(response.Warnings(), Lines());
  EXPECT_EQ(response.Status(), KRParseStatus_Accepted);
  auto* answer = FindIn<KRMultiTransRs>(response.Get());
  ASSERT_NE(answer, nullptr);
  EXPECT_EQ(answer->GetNumActualTrans(), 2);
  EXPECT_NE(answer->GetStatus(), nullptr);
  EXPECT_EQ(answer->AllRequiredPresent(), 1);
}

TEST(MultiTransfer, IsWrittenAsItWasRead) {
  EXPECT_EQ(TextOf(*Parsed<KRFileRq>(RequestText(), 2)).substr(HeaderBlock(2).size()),
            InLines(RequestText()).substr(InLines(HeaderBlock(2)).size()));
  EXPECT_EQ(TextOf(*Parsed<KRFileRs>(ResponseText(), 2)).substr(HeaderBlock(2).size()),
            InLines(ResponseText()).substr(InLines(HeaderBlock(2)).size()));
}

TEST(MultiTransfer, StandsInSynchronisations) {
  const std::string sync =
      Aggregate("INTERSYNCRQ", "<TOKEN2>7<REJECTIFMISSING>N" + BankAccountText("BANKACCTFROM", 2) +
                                   RequestWrapper("MULTIINTERTRNRQ", Transfer("1.25")));
  const Parsed<KRFileRq> request(RequestFile("INTERXFERMSGSRQ", sync, 2), 2, 1);
  EXPECT_EQ(request.Warnings(), Lines());
  auto* wrapper = FindIn<KRMultiTransRq>(request.Get());
  ASSERT_NE(wrapper, nullptr);
  EXPECT_EQ(wrapper->GetNumActualTrans(), 1);

  const std::string answers = Aggregate(
      "INTERSYNCRS", "<TOKEN2>8<LOSTSYNC>N" + BankAccountText("BANKACCTFROM", 2) +
                         ResponseWrapper("MULTIINTERTRNRS", Answer("1.25") + Answer("2.25")));
  const Parsed<KRFileRs> response(ResponseFile("INTERXFERMSGSRS", answers, 2), 2, 1);
  EXPECT_EQ(response.Warnings(), Lines());
  auto* answer = FindIn<KRMultiTransRs>(response.Get());
  ASSERT_NE(answer, nullptr);
  EXPECT_EQ(answer->GetNumActualTrans(), 2);
}

TEST(MultiTransfer, IsUnknownToTheFirstVersion) {
  const Parsed<KRFileRq> request(
      RequestFile("INTERXFERMSGSRQ", RequestWrapper("MULTIINTERTRNRQ", Transfer("1.25")), 1));
  EXPECT_EQ(FindIn<KRMultiTransRq>(request.Get()), nullptr);
  EXPECT_NE(request.Warnings(), Lines());
}

TEST(MultiTransfer, KeepsItsTransfersByIndex) {
  auto wrapper = Make<KRMultiTransRq>(2);
  auto* first = new KRInterRq;
  EXPECT_EQ(wrapper->AppendActualTrans(first), 1);
  EXPECT_EQ(wrapper->SetActualTrans(1, new KRInterRq), 1);
  EXPECT_EQ(wrapper->GetNumActualTrans(), 2);
  EXPECT_EQ(wrapper->GetNumberOfChildren(), 2);
  EXPECT_EQ(wrapper->GetActualTrans(0), first);
  EXPECT_EQ(wrapper->GetChild(0), first);
  EXPECT_EQ(wrapper->GetActualTrans(2), nullptr);
  EXPECT_EQ(wrapper->GetChild(2), nullptr);
  wrapper->DeleteAllActualTrans();
  EXPECT_EQ(wrapper->GetNumActualTrans(), 0);
}

TEST(MultiTransfer, RequestAsksOnlyForATransfer) {
  auto wrapper = Make<KRMultiTransRq>(2);
  EXPECT_EQ(wrapper->AllRequiredPresent(), 0);
  EXPECT_EQ(wrapper->GetFirstMissingRequiredTag(KRTag_None), KRTag_INTERRQ);
  wrapper->SetTag(KRTag_INTERRQ);
  EXPECT_EQ(wrapper->AllRequiredPresent(), 0);
  wrapper->AppendActualTrans(new KRInterRq);
  EXPECT_EQ(wrapper->AllRequiredPresent(), 1);
}

TEST(MultiTransfer, ErrorDoesNotExcuseAMissingTransfer) {
  auto wrapper = Make<KRMultiTransRs>(2);
  wrapper->SetTransUserID("1");
  auto* status = new KRStatus;
  status->SetMsgSetVersion(2);
  status->SetSeverity(KRStatusSeverity_ERROR);
  wrapper->SetStatus(status);
  EXPECT_EQ(wrapper->IsErrorStatus(), 1);
  EXPECT_EQ(wrapper->AllRequiredPresent(), 0);
  wrapper->AppendActualTrans(new KRInterRs);
  EXPECT_EQ(wrapper->AllRequiredPresent(), 1);
}

TEST(MultiTransfer, ResponseAsksForItsIdentity) {
  auto wrapper = Make<KRMultiTransRs>(2);
  wrapper->AppendActualTrans(new KRInterRs);
  EXPECT_EQ(wrapper->AllRequiredPresent(), 0);
  wrapper->SetTransUserID("1");
  EXPECT_EQ(wrapper->AllRequiredPresent(), 1);
}

TEST(MultiTransfer, IsCopiedWithAllTransfers) {
  const Parsed<KRFileRs> response(ResponseText(), 2);
  KRFileRs copy;
  ASSERT_EQ(copy.DeepCopyFrom(response.Get()), 1);
  EXPECT_EQ(TextOf(copy), TextOf(*response));
  auto* wrapper = FindIn<KRMultiTransRs>(&copy);
  ASSERT_NE(wrapper, nullptr);
  EXPECT_NE(wrapper->GetActualTrans(0), FindIn<KRMultiTransRs>(response.Get())->GetActualTrans(0));
  KRTransRs plain;
  EXPECT_EQ(plain.DeepCopyFrom(wrapper), 0);
}

TEST(MultiTransfer, IsMadeByTheFactory) {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  const std::unique_ptr<KRMultiTransRq> request(factory->NewMultiTransRq(2));
  const std::unique_ptr<KRMultiTransRs> response(factory->NewMultiTransRs(2));
  EXPECT_EQ(request->GetType(), KRTag_MULTIINTERTRNRQ);
  EXPECT_EQ(response->GetType(), KRTag_MULTIINTERTRNRS);
  EXPECT_EQ(request->GetMsgSetVersion(), 2);
}

TEST(MultiTransfer, HandsTheVersionDown) {
  auto wrapper = Make<KRMultiTransRs>(2);
  auto* transfer = new KRInterRs;
  wrapper->AppendActualTrans(transfer);
  wrapper->SetMsgSetVersion(4);
  EXPECT_EQ(transfer->GetMsgSetVersion(), 4);
}

}  // namespace
}  // namespace krofx::testing
