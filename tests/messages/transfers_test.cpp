// Transfers and wires: the tables, the two ends of a transfer, and the answer in two halves.

#include "krofx/messages/banking/transfers.h"

#include <gtest/gtest.h>

#include "krofx/messages/banking/accounts.h"
#include "krofx/model/factory.h"

#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

constexpr char kXferInfo[] = R"(
    BANKACCTFROM  child      asked
    CCACCTFROM    child      other
    BANKACCTTO    child      asked
    CCACCTTO      child      other
    TRNAMT        posamount  asked
    DTDUE         date
    DTAVAIL       date       V2+
    MEMO2         text390    V2+
)";

constexpr char kXferProcessingStatus[] = R"(
    XFERPRCCODE  word=POSTEDON  required
    DTXFERPRC    date           required
)";

constexpr char kTransferRq[] = R"(
    XFERINFO  child  required
)";

constexpr char kTransferModifyRq[] = R"(
    SRVRTID   text36  required  V1
    SRVRTID2  text36  required  V2+
    XFERINFO  child   required
)";

constexpr char kTransferCancel[] = R"(
    SRVRTID   text36  required  V1
    SRVRTID2  text36  required  V2+
)";

constexpr char kTransferRs[] = R"(
    CURDEF       text3   required
    SRVRTID      text36  required  V1
    SRVRTID2     text36  required  V2+
    XFERINFO     child   required
    DTXFERPRJ    date
    DTPOSTED     date
    RECSRVRTID   text36  V1
    RECSRVRTID2  text36  V2+
    XFERPRCSTS   child
)";

constexpr char kInterRs[] = R"(
    CURDEF       text3   required
    SRVRTID      text36  required  V1
    SRVRTID2     text36  required  V2+
    XFERINFO     child   required
    DTXFERPRJ    date
    DTPOSTED     date
    REFNUM       text32
    RECSRVRTID   text36  V1
    RECSRVRTID2  text36  V2+
    XFERPRCSTS   child
)";

constexpr char kTransferModifyRs[] = R"(
    SRVRTID     text36  required  V1
    SRVRTID2    text36  required  V2+
    XFERINFO    child   required
    XFERPRCSTS  child
)";

constexpr char kWireRq[] = R"(
    BANKACCTFROM     child    required
    WIREBENEFICIARY  child    required
    WIREDESTBANK     child    required
    TRNAMT           amount   required
    DTDUE            date
    PAYINSTRUCT      text255
)";

constexpr char kWireRs[] = R"(
    CURDEF           text3    required
    SRVRTID          text36   required  V1
    SRVRTID2         text36   required  V2+
    BANKACCTFROM     child    required
    WIREBENEFICIARY  child    required
    WIREDESTBANK     child
    TRNAMT           amount   required
    DTDUE            date
    PAYINSTRUCT      text255
    DTXFERPRJ        date
    DTPOSTED         date
    FEE              amount
    CONFMSG          text255
)";

constexpr char kWireBeneficiary[] = R"(
    NAME        text32   required
    BANKACCTTO  child    required
    MEMO        text255  V1
    MEMO2       text390  V2+
)";

constexpr char kWireDestinationBank[] = R"(
    EXTBANKDESC  child  required
)";

constexpr char kExtBankDesc[] = R"(
    NAME        text32  required
    BANKID      text9   required
    ADDR1       text32  required
    ADDR2       text32
    ADDR3       text32
    CITY        text32  required
    STATE       text5   required
    POSTALCODE  text11  required
    COUNTRY     text3
    PHONE       text32
)";

constexpr char kInterXferMessageSetV1[] = R"(
    MSGSETCORE   child    required
    XFERPROF     child    required
    CANBILLPAY   boolean  required
    CANCELWND    u16      required
    DOMXFERFEE   amount   required
    INTLXFERFEE  amount   required
    CANMULTI     boolean  V2+
)";

constexpr char kWireXferMessageSetV1[] = R"(
    MSGSETCORE   child                required
    PROCDAYSOFF  words=MONDAY,FRIDAY
    PROCENDTM    time                 required
    CANSCHED     boolean              required
    DOMXFERFEE   amount               required
    INTLXFERFEE  amount               required
)";

TEST(TransferTables, Transfer) {
  ExpectTable<KRXferInfo>("XFERINFO", kXferInfo);
  ExpectTable<KRXferProcessingStatus>("XFERPRCSTS", kXferProcessingStatus);
}

TEST(TransferTables, Requests) {
  ExpectTable<KRTransferRq>("", kTransferRq);
  ExpectTable<KRTransferModifyRq>("", kTransferModifyRq);
  ExpectTable<KRTransferCancel>("", kTransferCancel);
  ExpectTable<KRIntraRq>("INTRARQ", kTransferRq);
  ExpectTable<KRInterRq>("INTERRQ", kTransferRq);
  ExpectTable<KRIntraModifyRq>("INTRAMODRQ", kTransferModifyRq);
  ExpectTable<KRInterModifyRq>("INTERMODRQ", kTransferModifyRq);
  ExpectTable<KRIntraCancelRq>("INTRACANRQ", kTransferCancel);
  ExpectTable<KRInterCancelRq>("INTERCANRQ", kTransferCancel);
}

TEST(TransferTables, Responses) {
  ExpectTable<KRTransferRs>("", kTransferRs);
  ExpectTable<KRTransferModifyRs>("", kTransferModifyRs);
  ExpectTable<KRIntraRs>("INTRARS", kTransferRs);
  ExpectTable<KRInterRs>("INTERRS", kInterRs);
  ExpectTable<KRIntraModifyRs>("INTRAMODRS", kTransferModifyRs);
  ExpectTable<KRInterModifyRs>("INTERMODRS", kTransferModifyRs);
  ExpectTable<KRIntraCancelRs>("INTRACANRS", kTransferCancel);
  ExpectTable<KRInterCancelRs>("INTERCANRS", kTransferCancel);
}

TEST(TransferTables, Wires) {
  ExpectTable<KRWireRq>("WIRERQ", kWireRq);
  ExpectTable<KRWireRs>("WIRERS", kWireRs);
  ExpectTable<KRWireCancelRq>("WIRECANRQ", kTransferCancel);
  ExpectTable<KRWireCancelRs>("WIRECANRS", kTransferCancel);
  ExpectTable<KRWireBeneficiary>("WIREBENEFICIARY", kWireBeneficiary);
  ExpectTable<KRWireDestinationBank>("WIREDESTBANK", kWireDestinationBank);
  ExpectTable<KRExtBankDesc>("EXTBANKDESC", kExtBankDesc);
}

TEST(TransferTables, MessageSets) {
  ExpectTable<KRInterXferMessageSetV1>("INTERXFERMSGSETV1", kInterXferMessageSetV1);
  ExpectTable<KRInterXferMessageSetV2>("INTERXFERMSGSETV2", kInterXferMessageSetV1, 2);
  ExpectTable<KRWireXferMessageSetV1>("WIREXFERMSGSETV1", kWireXferMessageSetV1);
  ExpectTable<KRWireXferMessageSetV2>("WIREXFERMSGSETV2", kWireXferMessageSetV1, 2);
}

std::string Card(const char* tag) { return Aggregate(tag, "<ACCTID>4400"); }

std::string Ends(const std::string& from, const std::string& to) { return from + to; }

u16 IsComplete(const std::string& content) {
  const Parsed<KRXferInfo> info(content);
  const u16 complete = info->AllRequiredPresent();
  EXPECT_EQ(info->GetFirstMissingRequiredTag(KRTag_None) == KRTag_None, complete == 1);
  return complete;
}

TEST(KRXferInfo, TakesOneAccountAtEachEnd) {
  const std::string amount = "<TRNAMT>10.00";
  const std::string bankFrom = BankAccountText("BANKACCTFROM");
  const std::string bankTo = BankAccountText("BANKACCTTO");
  EXPECT_EQ(IsComplete(Ends(bankFrom, Card("CCACCTTO")) + amount), 1);
  EXPECT_EQ(IsComplete(Ends(Card("CCACCTFROM"), bankTo) + amount), 1);
  EXPECT_EQ(IsComplete(Ends(bankFrom + Card("CCACCTFROM"), bankTo) + amount), 0);
  EXPECT_EQ(IsComplete(Ends(bankFrom, bankTo + Card("CCACCTTO")) + amount), 0);
  EXPECT_EQ(IsComplete(Ends(bankFrom, "") + amount), 0);
  EXPECT_EQ(IsComplete(Ends("", bankTo) + amount), 0);
}

TEST(KRXferInfo, NeedsAnAmountThoughNoRowIsRequired) {
  const Parsed<KRXferInfo> info(BankAccountText("BANKACCTFROM") + Card("CCACCTTO"));
  EXPECT_EQ(info->AllRequiredPresent(), 0);
  EXPECT_EQ(info->GetFirstMissingRequiredTag(KRTag_None), KRTag_TRNAMT);
}

TEST(KRXferInfo, NamesAnEndThatHasBothAccounts) {
  const Parsed<KRXferInfo> info(BankAccountText("BANKACCTFROM") + Card("CCACCTFROM") +
                                Card("CCACCTTO") + "<TRNAMT>1");
  EXPECT_EQ(info.Warnings(), Lines{"EXTRAAGG " + TagNumber(KRTag_CCACCTFROM)});
  EXPECT_EQ(info->GetFirstMissingRequiredTag(KRTag_None), KRTag_BANKACCTFROM);
}

TEST(KRXferInfo, KeepsTheEndsApart) {
  const Parsed<KRXferInfo> info(Card("CCACCTTO") + Card("CCACCTFROM"));
  ASSERT_NE(info->GetAccountFrom(), nullptr);
  ASSERT_NE(info->GetAccountTo(), nullptr);
  EXPECT_EQ(info->GetAccountFrom()->GetType(), KRTag_CCACCTFROM);
  EXPECT_EQ(info->GetAccountTo()->GetType(), KRTag_CCACCTTO);
  EXPECT_EQ(TextOf(*info), InLines(Card("CCACCTFROM") + Card("CCACCTTO")));
}

TEST(KRXferInfo, TakesNoNegativeAmount) {
  auto info = Make<KRXferInfo>();
  EXPECT_EQ(info->SetTranAmount(KRPrecisionInteger("-0.01")), 0);
  EXPECT_EQ(info->ValidateTag(KRTag_TRNAMT), 0);
  EXPECT_EQ(info->SetTranAmount(KRPrecisionInteger("0.01")), 1);
  EXPECT_EQ(TextOf(*info), "<TRNAMT>.01\n");
}

TEST(KRXferInfo, HasNoMemoInTheFirstVersion) {
  auto info = Make<KRXferInfo>();
  EXPECT_EQ(info->SetMemo2("rent"), 0);
  EXPECT_EQ(TextOf(*info), "");
}

TEST(KRTransferRq, IsMadeByTag) {
  const std::unique_ptr<KRTransferRq> intra(KRTransferRq::NewTransferRq(KRTag_INTRARQ));
  const std::unique_ptr<KRTransferRq> inter(KRTransferRq::NewTransferRq(KRTag_INTERRQ));
  EXPECT_NE(dynamic_cast<KRIntraRq*>(intra.get()), nullptr);
  EXPECT_NE(dynamic_cast<KRInterRq*>(inter.get()), nullptr);
  EXPECT_EQ(KRTransferRq::NewTransferRq(KRTag_INTRARS), nullptr);
  EXPECT_EQ(KRTransferRq::NewTransferRq(KRTag_None), nullptr);
}

TEST(KRTransferRs, IsMadeByTag) {
  const std::unique_ptr<KRTransferRs> intra(KRTransferRs::NewTransferRs(KRTag_INTRARS));
  const std::unique_ptr<KRTransferRs> inter(KRTransferRs::NewTransferRs(KRTag_INTERRS));
  EXPECT_NE(dynamic_cast<KRIntraRs*>(intra.get()), nullptr);
  EXPECT_NE(dynamic_cast<KRInterRs*>(inter.get()), nullptr);
  EXPECT_EQ(KRTransferRs::NewTransferRs(KRTag_INTERRQ), nullptr);
}

TEST(KRInterRs, WritesItsReferenceNumberBetweenTheHalves) {
  const std::string text = "<CURDEF>USD<SRVRTID>s1<DTPOSTED>20260105<REFNUM>r1<RECSRVRTID>m1";
  const Parsed<KRInterRs> inter(text);
  EXPECT_EQ(inter.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(TextOf(*inter), InLines(text));
  const Parsed<KRIntraRs> intra(text);
  EXPECT_EQ(intra.Warnings(), Lines{"INVALIDELEM <REFNUM> " + TagNumber(KRTag_REFNUM) + " \"r1\""});
}

// An answer of a host's own class, with its own middle.
class MarkedRs : public KRInterRs {
 public:
  KRBuildStatus BuildFirstHalf(KRBuilder* builder) const override {
    const KRBuildStatus status = KRInterRs::BuildFirstHalf(builder);
    return status != KRBuildStatus_Done ? status
                                        : builder->AddTagKRString(KRTag_MEMO, KRString("m"));
  }
  KRBuildStatus BuildSecondHalf(KRBuilder*) const override { return KRBuildStatus_Done; }
};

TEST(KRTransferRs, LetsDerivedClassesReplaceAHalf) {
  const Parsed<MarkedRs> marked("<CURDEF>USD<REFNUM>r1<RECSRVRTID>m1");
  EXPECT_EQ(TextOf(*marked), "<CURDEF>USD\n<MEMO>m\n<REFNUM>r1\n");
}

TEST(KRTransferRs, StopsWritingAtTheFirstFailure) {
  auto inter = Make<KRInterRs>();
  inter->SetCurrencyDefault("DOLLAR");
  inter->SetRefrenceNumber("r1");
  const Built built = Build(*inter);
  EXPECT_EQ(built.status, KRBuildStatus_TooLong);
  EXPECT_EQ(built.failingObject, inter.get());
  EXPECT_EQ(built.text.find("REFNUM"), std::string::npos);
}

TEST(Wire, NeedsADestinationBankInTheRequestAlone) {
  const std::string parts = BankAccountText("BANKACCTFROM") + Aggregate("WIREBENEFICIARY", "");
  const Parsed<KRWireRq> request(parts + "<TRNAMT>1");
  EXPECT_EQ(request->AllRequiredPresent(), 0);
  EXPECT_EQ(request->GetFirstMissingRequiredTag(KRTag_None), KRTag_WIREDESTBANK);
  const Parsed<KRWireRs> response("<CURDEF>USD<SRVRTID>w1" + parts + "<TRNAMT>1");
  EXPECT_EQ(response->AllRequiredPresent(), 1);
}

TEST(KRWireXferMessageSet, CollectsTheDaysWithoutProcessing) {
  auto set = Make<KRWireXferMessageSetV1>();
  EXPECT_EQ(set->AppendDayOfWeek(KRDayOfWeek_SATURDAY), 1);
  EXPECT_EQ(set->AppendDayOfWeek("SUNDAY"), 1);
  EXPECT_EQ(TextOf(*set), "<PROCDAYSOFF>SATURDAY\n<PROCDAYSOFF>SUNDAY\n");
  set->DeleteAllDayOfWeek();
  EXPECT_EQ(set->GetNumDayOfWeek(), 0);
}

}  // namespace
}  // namespace krofx::testing
