// Payments: their tables, which of payee, id and list id go together, discounts of both
// versions, and the repair of a known service's invoices.

#include "krofx/messages/billpay/payments.h"

#include <gtest/gtest.h>

#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/billpay/payees.h"
#include "krofx/messages/billpay/recurring_payments.h"
#include "krofx/values/utility.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

TEST(PaymentTables, Payment) {
  ExpectTable<KRPaymentInfo>("PMTINFO", R"(
    BANKACCTFROM  child    required
    TRNAMT        amount   required
    PAYEEID       text12
    PAYEE         child              V1
    PAYEELSTID    text12
    BANKACCTTO    child
    EXTDPMT       child
    PAYACCT       text32   required
    DTDUE         date     required
    MEMO          text255            V1
    BILLREFINFO   text80
    PAYEE2        listed             V2+
    MEMO2         listed             V2+
  )");
}

TEST(PaymentTables, PaymentOfTheSecondVersion) {
  ExpectTable<KRPaymentInfo2>("PMTINFO2", R"(
    PMTTYPE       text32             V2+
    BANKACCTFROM  child    required  V2+
    TRNAMT        amount   required  V2+
    PAYEEID2      text36             V2+
    PAYEE2        child              V2+
    PAYEELSTID2   text36             V2+
    BANKACCTTO    child              V2+
    EXTDPMT       child              V2+
    PAYACCT       text32             V2+
    DTDUE         date     required  V2+
    DTAVAIL       date               V2+
    ITA.CAUSALE   u16                V2+
    PMTFOR        text32             V2+
    BOOKINGTEXT   text40             V2+
    MEMO2         text390            V2+
    BILLREFINFO   text80             V2+
  )");
}

TEST(PaymentTables, ProcessingStatus) {
  ExpectTable<KRPaymentPrcSts>("PMTPRCSTS", R"(
    PMTPRCCODE  word=WILLPROCESSON  required
    DTPMTPRC    date                required
  )");
}

TEST(PaymentTables, Request) {
  ExpectTable<KRPaymentRq>("PMTRQ", R"(
    PMTINFO   child  required  V1
    PMTINFO2  child  required  V2+
  )");
}

TEST(PaymentTables, ModificationRequest) {
  ExpectTable<KRPaymentModifyRq>("PMTMODRQ", R"(
    SRVRTID   text36  required  V1
    SRVRTID2  text36  required  V2+
    PMTINFO   child   required  V1
    PMTINFO2  child   required  V2+
  )");
}

TEST(PaymentTables, CancellationsAndInquiry) {
  constexpr char kIdOnly[] = R"(
    SRVRTID   text36  required  V1
    SRVRTID2  text36  required  V2+
  )";
  ExpectTable<KRPaymentCancelRq>("PMTCANCRQ", kIdOnly);
  ExpectTable<KRPaymentInquiryRq>("PMTINQRQ", kIdOnly);
  ExpectTable<KRPaymentCancelRs>("PMTCANCRS", kIdOnly);
}

TEST(PaymentTables, Response) {
  ExpectTable<KRPaymentRs>("PMTRS", R"(
    SRVRTID      text36  required  V1
    SRVRTID2     text36  required  V2+
    PAYEELSTID   text12  required  V1
    PAYEELSTID2  text36  required  V2+
    CURDEF       text3   required
    PMTINFO      child   required  V1
    PMTINFO2     child   required  V2+
    EXTDPAYEE    child
    CHECKNUM     text12
    PMTPRCSTS    child   required
    RECSRVRTID   text36            V1
    RECSRVRTID2  text36            V2+
  )");
}

TEST(PaymentTables, ModificationResponse) {
  ExpectTable<KRPaymentModifyRs>("PMTMODRS", R"(
    SRVRTID    text36  required(V1)
    SRVRTID2   text36  required      V2+
    PMTINFO    child   required      V1
    PMTINFO2   child   required      V2+
    PMTPRCSTS  child
  )");
}

TEST(PaymentTables, InquiryResponse) {
  ExpectTable<KRPaymentInquiryRs>("PMTINQRS", R"(
    SRVRTID    text36  required  V1
    SRVRTID2   text36  required  V2+
    PMTPRCSTS  child   required
    CHECKNUM   text12
  )");
}

TEST(PaymentTables, ExtendedPayment) {
  ExpectTable<KRExtendedPayment>("EXTDPMT", R"(
    EXTDPMTFOR   word=INDIVIDUAL
    EXTDPMTCHK   text12           V1
    EXTDPMTCHK2  text12           V2+
    EXTDPMTDSC   text255          V1
    EXTDPMTDSC2  text1280         V2+
    EXTDPMTINV   child
  )");
}

TEST(PaymentTables, InvoicesOfAPayment) {
  ExpectTable<KRExtendedPaymentInvoice>("EXTDPMTINV", R"(
    INVOICE   children  required  V1
    INVOICE2  children  required  V2+
  )");
}

TEST(PaymentTables, Invoice) {
  constexpr char kInvoice[] = R"(
    INVNO        text32    required
    INVTOTALAMT  amount    required
    INVPAIDAMT   amount    required
    INVDATE      date      required
    INVDESC      text80    required
    DISCOUNT     child               V1
    DISCOUNT2    child               V2+
    ADJUSTMENT   children
    LINEITEM     children
  )";
  ExpectTable<KRInvoice>("INVOICE", kInvoice);
  ExpectTable<KRInvoice2>("INVOICE2", kInvoice);
}

TEST(PaymentTables, Discount) {
  constexpr char kDiscount[] = R"(
    DSCRATE  rate
    DSCAMT   amount
    DSCDATE  date
    DSCDESC  text80  required
  )";
  ExpectTable<KRDiscount>("DISCOUNT", kDiscount);
  ExpectTable<KRDiscount2>("DISCOUNT2", kDiscount);
}

TEST(PaymentTables, Adjustment) {
  ExpectTable<KRAdjustment>("ADJUSTMENT", R"(
    ADJNO    text32
    ADJDESC  text80  required
    ADJAMT   amount  required
    ADJDATE  date
  )");
}

TEST(PaymentTables, LineOfAnInvoice) {
  ExpectTable<KRLineItem>("LINEITEM", R"(
    LITMCODE  text32            V2+
    LITMAMT   amount  required
    LITMDESC  text80  required
  )");
}

/// Whether an aggregate with such members is complete.
template <class T>
u16 IsComplete(const std::string& members, u16 version) {
  const Parsed<T> parsed(members, version);
  EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted) << members;
  return parsed->AllRequiredPresent();
}

const std::string kPayment =
    Aggregate("BANKACCTFROM", "") + "<TRNAMT>12.50<PAYACCT>77<DTDUE>20260301";
const std::string kPayee = Aggregate("PAYEE", "");
const std::string kPayee2 = Aggregate("PAYEE2", "");

TEST(KRPaymentInfo, NamesThePayeeByIdOrByAddress) {
  EXPECT_EQ(IsComplete<KRPaymentInfo>(kPayment, 1), 0);
  EXPECT_EQ(IsComplete<KRPaymentInfo>(kPayment + "<PAYEEID>7", 1), 1);
  EXPECT_EQ(IsComplete<KRPaymentInfo>(kPayment + kPayee, 1), 1);
  EXPECT_EQ(IsComplete<KRPaymentInfo>(kPayment + "<PAYEEID>7" + kPayee, 1), 0);
  EXPECT_EQ(IsComplete<KRPaymentInfo>(kPayment + "<PAYEELSTID>3", 1), 0);
  EXPECT_EQ(IsComplete<KRPaymentInfo>("<PAYEEID>7", 1), 0) << "the rest is missing";
}

// In an object of both versions both payees can be present; they count as one address.
TEST(KRPaymentInfo, CountsThePayeesOfBothVersionsAsOneAddress) {
  const Parsed<KRPaymentInfo> parsed(kPayment + kPayee, 3);
  EXPECT_EQ(parsed->AllRequiredPresent(), 1);
  EXPECT_EQ(parsed->SetTag(KRTag_PAYEE2), 1);
  EXPECT_EQ(parsed->AllRequiredPresent(), 1);
  EXPECT_EQ(parsed->SetTag(KRTag_PAYEEID), 1);
  EXPECT_EQ(parsed->AllRequiredPresent(), 0);
}

TEST(KRPaymentInfo, ListsTheTagsOfTheSecondVersionWithoutReadingThem) {
  const Parsed<KRPaymentInfo> parsed("<PAYEE2><MEMO2>hello", 2);
  EXPECT_NE(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(TextOf(*parsed), "");
  auto payment = Make<KRPaymentInfo>(1);
  EXPECT_EQ(payment->IsValidTag(KRTag_MEMO2), 0);
  EXPECT_EQ(payment->SetTag(KRTag_PAYEE2), 0);
  payment->SetMsgSetVersion(2);
  EXPECT_EQ(payment->IsValidTag(KRTag_MEMO2), 1);
  EXPECT_EQ(payment->SetTag(KRTag_PAYEE2), 1);
  EXPECT_EQ(TextOf(*payment), "");
}

TEST(KRPaymentInfo2, IsAPaymentThatKeepsItsOwnTags) {
  auto payment = Make<KRPaymentInfo2>(2);
  KRPaymentInfo& base = *payment;
  EXPECT_EQ(base.SetPayAcct(KRString("77")), 1);
  EXPECT_EQ(base.SetMemo(KRString("not of this version")), 0);
  EXPECT_EQ(payment->SetMemo2(KRString("of this one")), 1);
  EXPECT_EQ(payment->SetItaCausale(u16{42}), 1);
  EXPECT_EQ(TextOf(*payment), "<PAYACCT>77\n<ITA.CAUSALE>42\n<MEMO2>of this one\n");
}

TEST(KRPaymentInfo2, NeedsNoAccountWithThePayee) {
  const std::string payment = Aggregate("BANKACCTFROM", "") + "<TRNAMT>12.50<DTDUE>20260301";
  EXPECT_EQ(IsComplete<KRPaymentInfo2>(payment + "<PAYEEID2>7", 2), 1);
  EXPECT_EQ(IsComplete<KRPaymentInfo>(payment + "<PAYEEID>7", 1), 0);
}

TEST(KRPaymentInfo2, TakesAListIdAloneOrWithOneOfIdAndAddress) {
  const std::string listId = "<PAYEELSTID2>3";
  const std::string id = "<PAYEEID2>7";
  EXPECT_EQ(IsComplete<KRPaymentInfo2>(kPayment, 2), 0);
  EXPECT_EQ(IsComplete<KRPaymentInfo2>(kPayment + id, 2), 1);
  EXPECT_EQ(IsComplete<KRPaymentInfo2>(kPayment + kPayee2, 2), 1);
  EXPECT_EQ(IsComplete<KRPaymentInfo2>(kPayment + id + kPayee2, 2), 0);
  EXPECT_EQ(IsComplete<KRPaymentInfo2>(kPayment + listId, 2), 1);
  EXPECT_EQ(IsComplete<KRPaymentInfo2>(kPayment + listId + id, 2), 1);
  EXPECT_EQ(IsComplete<KRPaymentInfo2>(kPayment + listId + kPayee2, 2), 1);
  EXPECT_EQ(IsComplete<KRPaymentInfo2>(kPayment + listId + id + kPayee2, 2), 0);
  EXPECT_EQ(IsComplete<KRPaymentInfo2>(listId, 2), 0) << "the rest is missing";
}

TEST(KRPaymentBase, HoldsThePaymentOfEitherVersionInOnePlace) {
  const Parsed<KRPaymentRq> first(Aggregate("PMTINFO", ""), 1);
  ASSERT_NE(first->GetPmtInfo(), nullptr);
  EXPECT_EQ(first->GetPmtInfo()->GetType(), KRTag_PMTINFO);
  const Parsed<KRPaymentRq> second(Aggregate("PMTINFO2", ""), 2);
  ASSERT_NE(second->GetPmtInfo(), nullptr);
  EXPECT_NE(dynamic_cast<KRPaymentInfo2*>(second->GetPmtInfo()), nullptr);
  EXPECT_EQ(TextOf(*second), InLines("<PMTINFO2></PMTINFO2>"));
}

// In the other aggregates SRVRTID is valid in the first version only.
TEST(KRPaymentModifyRs, TakesTheFirstVersionsIdInEveryVersion) {
  const Parsed<KRPaymentModifyRs> parsed("<SRVRTID>a<SRVRTID2>b" + Aggregate("PMTINFO2", ""), 2);
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(TextOf(*parsed), InLines("<SRVRTID>a<SRVRTID2>b<PMTINFO2></PMTINFO2>"));
  EXPECT_EQ(IsComplete<KRPaymentModifyRs>("<SRVRTID2>b" + Aggregate("PMTINFO2", ""), 2), 1);
  EXPECT_EQ(IsComplete<KRPaymentModifyRs>("<SRVRTID>a" + Aggregate("PMTINFO2", ""), 2), 0);
  EXPECT_EQ(IsComplete<KRPaymentModifyRs>("<SRVRTID>a" + Aggregate("PMTINFO", ""), 1), 1);
  EXPECT_EQ(Make<KRPaymentModifyRq>(2)->SetServerTransactionID(KRString("a")), 0);
}

TEST(Discounts, StateBothRateAndAmountInTheFirstVersion) {
  EXPECT_EQ(IsComplete<KRDiscount>("<DSCRATE>5<DSCDESC>early", 1), 0);
  EXPECT_EQ(IsComplete<KRDiscount>("<DSCAMT>2.50<DSCDESC>early", 1), 0);
  EXPECT_EQ(IsComplete<KRDiscount>("<DSCDESC>early", 1), 0);
  EXPECT_EQ(IsComplete<KRDiscount>("<DSCRATE>5<DSCAMT>2.50<DSCDESC>early", 1), 1);
  EXPECT_EQ(IsComplete<KRDiscount>("<DSCRATE>5<DSCAMT>2.50", 1), 0);
}

TEST(Discounts, StateRateOrAmountInTheSecondVersion) {
  EXPECT_EQ(IsComplete<KRDiscount2>("<DSCRATE>5<DSCDESC>early", 2), 1);
  EXPECT_EQ(IsComplete<KRDiscount2>("<DSCAMT>2.50<DSCDESC>early", 2), 1);
  EXPECT_EQ(IsComplete<KRDiscount2>("<DSCDESC>early", 2), 0);
  EXPECT_EQ(IsComplete<KRDiscount2>("<DSCRATE>5<DSCAMT>2.50<DSCDESC>early", 2), 0);
  EXPECT_EQ(IsComplete<KRDiscount2>("<DSCRATE>5", 2), 0);
}

TEST(Discounts, WriteTheirRateAsARate) {
  auto discount = Make<KRDiscount>();
  EXPECT_EQ(discount->SetDiscountRate(KRString("2.5")), 1);
  EXPECT_EQ(TextOf(*discount), "<DSCRATE>2.5\n");
  EXPECT_EQ(discount->SetDiscountRate(KRString("101")), 0);
}

TEST(KRInvoice, KeepsAdjustmentsAndLinesApart) {
  const Parsed<KRInvoice2> parsed(Aggregate("LINEITEM", "<LITMCODE>A<LITMAMT>3<LITMDESC>bolts") +
                                      Aggregate("ADJUSTMENT", "<ADJDESC>returned<ADJAMT>-1") +
                                      Aggregate("LINEITEM", "<LITMAMT>4<LITMDESC>nuts"),
                                  2);
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(parsed->GetNumAdjustment(), 1);
  ASSERT_EQ(parsed->GetNumLineItem(), 2);
  EXPECT_EQ(Str(parsed->GetLineItem(1)->GetLineItemDesc()), "nuts");
  EXPECT_EQ(TextOf(*parsed), InLines("<ADJUSTMENT><ADJDESC>returned<ADJAMT>-1</ADJUSTMENT>"
                                     "<LINEITEM><LITMCODE>A<LITMAMT>3<LITMDESC>bolts</LINEITEM>"
                                     "<LINEITEM><LITMAMT>4<LITMDESC>nuts</LINEITEM>"));
}

TEST(KRInvoice, CarriesAmountsOfTwentyEightDigits) {
  const std::string text = "<INVTOTALAMT>1234567890123456789012345.678";
  EXPECT_EQ(TextOf(*Parsed<KRInvoice>(text)), InLines(text));
}

u16 Repair(KRDataObj* root) {
  KRTagID missing = KRTag_NAME;
  const u16 result = KRUtility::PatchCheckFreeOFX(&root, &missing);
  EXPECT_EQ(missing, KRTag_None);
  return result;
}

const std::string kInvoiceCore = "<INVTOTALAMT>20<INVPAIDAMT>20<INVDATE>20260201";

TEST(InvoiceRepair, GivesAnInvoiceTheDescriptionAndNumberThatItLacks) {
  const Parsed<KRPaymentInfo> parsed(
      kPayment + "<PAYEEID>7" +
      Aggregate("EXTDPMT",
                Aggregate("EXTDPMTINV", Aggregate("INVOICE", kInvoiceCore) +
                                            Aggregate("INVOICE", "<INVNO>5" + kInvoiceCore))));
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  auto* list = FindIn<KRExtendedPaymentInvoice>(parsed.Get());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->GetInvoice(0)->AllRequiredPresent(), 0);
  EXPECT_EQ(Repair(parsed.Get()), 1);
  EXPECT_EQ(TextOf(*list),
            InLines(Aggregate("INVOICE", "<INVNO>0" + kInvoiceCore + "<INVDESC>An invoice") +
                    Aggregate("INVOICE", "<INVNO>5" + kInvoiceCore + "<INVDESC>An invoice")));
  EXPECT_EQ(list->GetInvoice(0)->AllRequiredPresent(), 1);
}

TEST(InvoiceRepair, GivesADiscountItsDescriptionAndInventsNoRate) {
  const Parsed<KRInvoice> parsed("<INVNO>5<INVDESC>Wood" + kInvoiceCore +
                                 Aggregate("DISCOUNT", "<DSCRATE>5<DSCAMT>1"));
  EXPECT_EQ(Repair(parsed.Get()), 1);
  EXPECT_EQ(parsed->GetDiscount()->AllRequiredPresent(), 1);
  EXPECT_EQ(TextOf(*parsed->GetDiscount()), "<DSCRATE>5\n<DSCAMT>1\n<DSCDESC>Discount applied\n");
  const Parsed<KRInvoice> unrated(Aggregate("DISCOUNT", "<DSCAMT>1"));
  EXPECT_EQ(Repair(unrated.Get()), 1);
  EXPECT_EQ(unrated->GetDiscount()->ValidateTag(KRTag_DSCRATE), 0);
}

// A host's own discount class, with a rate that no setter accepts.
class OverratedDiscount : public KRDiscount {
 public:
  OverratedDiscount() {
    SetMsgSetVersion(1);
    m_discountRate = "150";
  }
};

TEST(InvoiceRepair, ReplacesARateOutOfRangeByZero) {
  OverratedDiscount discount;
  EXPECT_EQ(discount.GetDiscountRate().IsValid(), 0);
  EXPECT_EQ(Repair(&discount), 1);
  EXPECT_EQ(discount.GetDiscountRate().IsZero(), 1);
  EXPECT_EQ(discount.ValidateTag(KRTag_DSCRATE), 1);
}

TEST(InvoiceRepair, LeavesTheSecondVersionAlone) {
  const Parsed<KRInvoice2> parsed(kInvoiceCore + Aggregate("DISCOUNT2", "<DSCAMT>1"), 2);
  const std::string before = TextOf(*parsed);
  EXPECT_EQ(Repair(parsed.Get()), 1);
  EXPECT_EQ(TextOf(*parsed), before);
}

TEST(KRPaymentInfo2, SetsWhatItInheritsButDoesNotList) {
  KRPaymentInfo2 payment;
  payment.SetMsgSetVersion(2);
  EXPECT_EQ(payment.SetPayeeId(KRString("12")), 0);
  EXPECT_EQ(Str(payment.GetPayeeId()), "12");
  EXPECT_EQ(payment.SetPayeeId(KRString()), 3);
  EXPECT_EQ(payment.GetPayeeId().IsEmpty(), 1);
  EXPECT_EQ(payment.SetPayeeListId(KRString("7")), 0);
  EXPECT_EQ(Str(payment.GetPayeeListId()), "7");
  EXPECT_EQ(payment.SetMemo(KRString()), 3);
  EXPECT_EQ(TextOf(payment), "");
}

// The holders of a payment of either version: null and absence in each of the five.
template <class Holder>
void ExpectPaymentCleared() {
  for (const u16 version : {u16{1}, u16{2}}) {
    SCOPED_TRACE(version);
    const KRTagID tag = version == 2 ? KRTag_PMTINFO2 : KRTag_PMTINFO;
    Holder holder;
    TakeWarnings();
    EXPECT_EQ(holder.ClearPmtInfo(), 0) << "no version, no tag";
    EXPECT_EQ(TakeWarnings().size(), 1u);
    EXPECT_EQ(holder.SetPmtInfo(nullptr), 0);
    EXPECT_EQ(TakeWarnings(), Lines());
    holder.SetMsgSetVersion(version);
    EXPECT_EQ(holder.SetPmtInfo(nullptr), 1);
    EXPECT_EQ(holder.ValidateTag(tag), 1);
    EXPECT_EQ(TakeWarnings(), Lines());
    EXPECT_EQ(TextOf(holder), "");
    EXPECT_EQ(holder.ClearPmtInfo(), 1);
    EXPECT_EQ(holder.ValidateTag(tag), 0);
    auto payment =
        version == 2 ? std::make_unique<KRPaymentInfo2>() : std::make_unique<KRPaymentInfo>();
    EXPECT_EQ(holder.SetPmtInfo(payment.release()), 1);
    EXPECT_EQ(holder.ClearPmtInfo(), 1);
    EXPECT_EQ(holder.ValidateTag(tag), 0);
    EXPECT_NE(holder.GetPmtInfo(), nullptr);
    EXPECT_EQ(holder.SetPmtInfo(nullptr), 1);
    EXPECT_EQ(holder.ValidateTag(tag), 1);
    EXPECT_EQ(holder.GetPmtInfo(), nullptr);
    EXPECT_EQ(TakeWarnings(), Lines());
  }
}

TEST(PaymentHolders, ClearTheirPaymentAndTakeNull) {
  ExpectPaymentCleared<KRPaymentRq>();
  ExpectPaymentCleared<KRPaymentRs>();
  ExpectPaymentCleared<KRPaymentModifyRs>();
  ExpectPaymentCleared<KRRecPaymentRq>();
  ExpectPaymentCleared<KRPaymentMailRq>();
}

TEST(KRExtendedPaymentInvoice, KeepsAnInvoiceOfTheSecondVersionOutOfTheListOfTheFirst) {
  KRExtendedPaymentInvoice invoices;
  invoices.SetMsgSetVersion(2);
  auto second = std::make_unique<KRInvoice2>();
  EXPECT_EQ(invoices.AppendInvoice(second.get()), 0) << "still the caller's";
  EXPECT_EQ(invoices.SetInvoice(0, second.get()), 0);
  EXPECT_EQ(invoices.GetNumInvoice(), 0);
  EXPECT_EQ(invoices.AllRequiredPresent(), 0);
  EXPECT_EQ(invoices.AppendInvoice2(second.release()), 1);
  EXPECT_EQ(invoices.AllRequiredPresent(), 1);
  EXPECT_EQ(TextOf(invoices), InLines(Aggregate("INVOICE2", "")));
}

TEST(KRExtendedPaymentInvoice, OwnsWhatItsAppendTookThoughTheVersionDoesNotKnowIt) {
  KRExtendedPaymentInvoice invoices;
  invoices.SetMsgSetVersion(2);
  EXPECT_EQ(invoices.AppendInvoice(new KRInvoice), 1);
  EXPECT_EQ(invoices.GetNumInvoice(), 1);
  EXPECT_EQ(invoices.AllRequiredPresent(), 0);
  EXPECT_EQ(invoices.SetInvoice(0, new KRInvoice), 0);
  EXPECT_EQ(TextOf(invoices), "");
}

TEST(Amounts, AreRefusedWithMoreDecimalsThanATextHolds) {
  const KRPrecisionInteger tooFine(1, 40);
  KRPaymentInfo payment;
  payment.SetMsgSetVersion(1);
  EXPECT_EQ(payment.SetTransactionAmount(KRPrecisionInteger(125, 1)), 1);
  EXPECT_EQ(payment.SetTransactionAmount(tooFine), 0);
  EXPECT_EQ(TextOf(payment), "<TRNAMT>12.5\n");
  KRDiscount discount;
  discount.SetMsgSetVersion(1);
  EXPECT_EQ(discount.SetDiscountRate(tooFine), 0);
  EXPECT_EQ(discount.SetDiscountAmount(tooFine), 0);
  EXPECT_EQ(discount.AnyValidPresent(), 0);
}

TEST(KRPaymentInfo, NamesEveryTagThatNamesAPayee) {
  KRPaymentInfo info;
  info.SetMsgSetVersion(1);
  KRUnmetRule rule;
  ASSERT_EQ(KRUtility::GetUnmetRule(&info, 0, rule), 1);
  EXPECT_EQ(rule.demand, KRPresenceDemand_AtLeastOne);
  ASSERT_EQ(rule.count, 3);
  EXPECT_EQ(rule.tags[2], KRTag_PAYEEID);
}

}  // namespace
}  // namespace krofx::testing
