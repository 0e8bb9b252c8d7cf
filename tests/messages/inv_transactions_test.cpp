// Investment transactions: the tables of the 21 kinds, their list, its order of writing, deep
// copies, and amounts of every digit.

#include "krofx/messages/investment/transactions.h"

#include <gtest/gtest.h>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/investment/statement.h"
#include "messages/investment_texts.h"
#include "support/aggregate_table.h"

namespace krofx::testing {
namespace {

TEST(InvestmentTransactionTables, InvTranList) {
  ExpectTable<KRInvTranList>("INVTRANLIST", R"(
    DTSTART         date      required
    DTEND           date      required
    BUYDEBT         children
    BUYMF           children
    BUYOPT          children
    BUYOTHER        children
    BUYSTOCK        children
    CLOSUREOPT      children
    INCOME          children
    INVEXPENSE      children
    JRNLFUND        children
    JRNLSEC         children
    MARGININTEREST  children
    REINVEST        children
    RETOFCAP        children
    SELLDEBT        children
    SELLMF          children
    SELLOPT         children
    SELLOTHER       children
    SELLSTOCK       children
    SPLIT           children
    TRANSFER        children
    INVBANKTRAN     children
  )");
}

TEST(InvestmentTransactionTables, InvTran) {
  ExpectTable<KRInvTran>("INVTRAN", R"(
    FITID     text255  required
    SRVRTID   text36             V1
    SRVRTID2  text36             V2+
    DTTRADE   date     required
    DTSETTLE  date
    MEMO      text255            V1
    MEMO2     text390            V2+
  )");
}

TEST(InvestmentTransactionTables, InvBuy) {
  ExpectTable<KRInvBuy>("INVBUY", R"(
    INVTRAN        child       required
    SECID          child       required
    UNITS          amount      required
    UNITPRICE      amount      required
    MARKUP         amount
    COMMISSION     amount
    TAXES          amount
    FEES           amount
    LOAD           amount
    TOTAL          amount      required
    REVERSALFEES   amount                V2+
    REVERSALFITID  text255               V2+
    CURRENCY       child
    ORIGCURRENCY   child
    SUBACCTSEC     word=OTHER  required
    SUBACCTFUND    word=OTHER  required
  )");
}

TEST(InvestmentTransactionTables, InvSell) {
  ExpectTable<KRInvSell>("INVSELL", R"(
    INVTRAN        child       required
    SECID          child       required
    UNITS          amount      required
    UNITPRICE      amount      required
    MARKDOWN       amount
    COMMISSION     amount
    TAXES          amount
    FEES           amount
    LOAD           amount
    WITHHOLDING    amount
    TAXEXEMPT      boolean
    TOTAL          amount      required
    REVERSALFEES   amount                V2+
    REVERSALFITID  text255               V2+
    GAIN           amount
    CURRENCY       child
    ORIGCURRENCY   child
    SUBACCTSEC     word=OTHER  required
    SUBACCTFUND    word=OTHER  required
  )");
}

TEST(InvestmentTransactionTables, BuyDebt) {
  ExpectTable<KRBuyDebt>("BUYDEBT", R"(
    INVBUY    child   required
    ACCRDINT  amount
  )");
}

TEST(InvestmentTransactionTables, BuyMF) {
  ExpectTable<KRBuyMF>("BUYMF", R"(
    INVBUY    child            required
    BUYTYPE   word=BUYTOCOVER  required
    RELFITID  text255
  )");
}

TEST(InvestmentTransactionTables, BuyOpt) {
  ExpectTable<KRBuyOpt>("BUYOPT", R"(
    INVBUY               child            required
    OPTBUYTYPE           word=BUYTOCLOSE  required
    FIDELITY.OPTBUYTYPE  word=BUY
    SHPERCTRCT           s16              required
  )");
}

TEST(InvestmentTransactionTables, BuyOther) {
  ExpectTable<KRBuyOther>("BUYOTHER", R"(
    INVBUY   child            required
    BUYTYPE  word=BUYTOCOVER  required  V2+
  )");
}

TEST(InvestmentTransactionTables, BuyStock) {
  ExpectTable<KRBuyStock>("BUYSTOCK", R"(
    INVBUY   child            required
    BUYTYPE  word=BUYTOCOVER  required
  )");
}

TEST(InvestmentTransactionTables, SellDebt) {
  ExpectTable<KRSellDebt>("SELLDEBT", R"(
    INVSELL     child          required
    SELLREASON  word=MATURITY  required
    ACCRDINT    amount
  )");
}

TEST(InvestmentTransactionTables, SellMF) {
  ExpectTable<KRSellMF>("SELLMF", R"(
    INVSELL       child           required
    SELLTYPE      word=SELLSHORT  required
    AVGCOSTBASIS  amount
    RELFITID      text255
  )");
}

TEST(InvestmentTransactionTables, SellOpt) {
  ExpectTable<KRSellOpt>("SELLOPT", R"(
    INVSELL               child             required
    OPTSELLTYPE           word=SELLTOCLOSE  required
    FIDELITY.OPTSELLTYPE  word=SELL
    SHPERCTRCT            s16               required
    RELFITID              text255
    RELTYPE               word=OTHER
    SECURED               word=COVERED
  )");
}

TEST(InvestmentTransactionTables, SellOther) {
  ExpectTable<KRSellOther>("SELLOTHER", R"(
    INVSELL   child           required
    SELLTYPE  word=SELLSHORT            V2+
  )");
}

TEST(InvestmentTransactionTables, SellStock) {
  ExpectTable<KRSellStock>("SELLSTOCK", R"(
    INVSELL   child           required
    SELLTYPE  word=SELLSHORT  required
  )");
}

TEST(InvestmentTransactionTables, Income) {
  ExpectTable<KRIncome>("INCOME", R"(
    INVTRAN       child       required
    SECID         child       required
    INCOMETYPE    word=MISC   required
    TOTAL         amount      required
    SUBACCTSEC    word=OTHER  required
    SUBACCTFUND   word=OTHER  required
    TAXEXEMPT     boolean
    WITHHOLDING   amount
    CURRENCY      child
    ORIGCURRENCY  child
  )");
}

TEST(InvestmentTransactionTables, Reinvest) {
  ExpectTable<KRReinvest>("REINVEST", R"(
    INVTRAN       child       required
    SECID         child       required
    INCOMETYPE    word=MISC   required
    TOTAL         amount      required
    SUBACCTSEC    word=OTHER  required
    UNITS         amount      required
    UNITPRICE     amount      required
    COMMISSION    amount
    TAXES         amount
    FEES          amount
    LOAD          amount
    TAXEXEMPT     boolean
    CURRENCY      child
    ORIGCURRENCY  child
  )");
}

TEST(InvestmentTransactionTables, RetOfCap) {
  ExpectTable<KRRetOfCap>("RETOFCAP", R"(
    INVTRAN       child       required
    SECID         child       required
    TOTAL         amount      required
    SUBACCTSEC    word=OTHER  required
    SUBACCTFUND   word=OTHER  required
    CURRENCY      child
    ORIGCURRENCY  child
  )");
}

TEST(InvestmentTransactionTables, Split) {
  ExpectTable<KRSplit>("SPLIT", R"(
    INVTRAN       child       required
    SECID         child       required
    SUBACCTSEC    word=OTHER  required
    OLDUNITS      amount      required
    NEWUNITS      amount      required
    NUMERATOR     amount      required
    DENOMINATOR   amount      required
    CURRENCY      child
    ORIGCURRENCY  child
    FRACCASH      amount
    SUBACCTFUND   word=OTHER
  )");
}

TEST(InvestmentTransactionTables, Transfer) {
  ExpectTable<KRTransfer>("TRANSFER", R"(
    INVTRAN       child       required
    SECID         child       required
    SUBACCTSEC    word=OTHER  required
    UNITS         amount      required
    TFERACTION    word=OUT    required
    POSTYPE       word=SHORT  required
    INVACCTFROM   child
    AVGCOSTBASIS  amount
    UNITPRICE     amount
    DTPURCHASE    date
  )");
}

TEST(InvestmentTransactionTables, ClosureOpt) {
  ExpectTable<KRClosureOpt>("CLOSUREOPT", R"(
    INVTRAN     child        required
    SECID       child        required
    OPTACTION   word=EXPIRE  required
    UNITS       amount       required
    SHPERCTRCT  s16          required
    SUBACCTSEC  word=OTHER   required
    RELFITID    text255
    GAIN        amount
  )");
}

TEST(InvestmentTransactionTables, JrnlFund) {
  ExpectTable<KRJrnlFund>("JRNLFUND", R"(
    INVTRAN      child       required
    SUBACCTTO    word=OTHER  required
    SUBACCTFROM  word=OTHER  required
    TOTAL        amount      required
  )");
}

TEST(InvestmentTransactionTables, JrnlSec) {
  ExpectTable<KRJrnlSec>("JRNLSEC", R"(
    INVTRAN      child       required
    SECID        child       required
    SUBACCTTO    word=OTHER  required
    SUBACCTFROM  word=OTHER  required
    UNITS        amount      required
  )");
}

TEST(InvestmentTransactionTables, InvExpense) {
  ExpectTable<KRInvExpense>("INVEXPENSE", R"(
    INVTRAN       child       required
    SECID         child       required
    TOTAL         amount      required
    SUBACCTSEC    word=OTHER  required
    SUBACCTFUND   word=OTHER  required
    CURRENCY      child
    ORIGCURRENCY  child
  )");
}

TEST(InvestmentTransactionTables, MarginInterest) {
  ExpectTable<KRMarginInterest>("MARGININTEREST", R"(
    INVTRAN       child       required
    TOTAL         amount      required
    SUBACCTFUND   word=OTHER  required
    CURRENCY      child
    ORIGCURRENCY  child
  )");
}

TEST(InvestmentTransactionTables, InvBankTran) {
  ExpectTable<KRInvBankTran>("INVBANKTRAN", R"(
    STMTTRN      child       required
    SUBACCTFUND  word=OTHER  required
  )");
}

constexpr char kSpan[] = "<DTSTART>20260101<DTEND>20260131";

TEST(KRInvTranList, IsCompleteWithNoTransactions) {
  EXPECT_EQ(IsComplete<KRInvTranList>(kSpan, 1), 1);
  EXPECT_EQ(IsComplete<KRInvTranList>("<DTSTART>20260101", 1), 0);
}

TEST(KRInvTranList, CopiesEachOfThe21Kinds) {
  for (const u16 version : kVersions) {
    SCOPED_TRACE(version);
    ASSERT_EQ(TransactionTexts(version).size(), 21u);
    ExpectEachCopied<KRInvTranList>(TransactionTexts(version), kSpan, version);
  }
}

TEST(KRInvTranList, WritesKindByKind) {
  for (const u16 version : kVersions) {
    SCOPED_TRACE(version);
    ExpectWrittenByKind<KRInvTranList>(TransactionTexts(version), kSpan, version);
  }
}

TEST(KRInvTranList, WritesPurchasesOfStockBeforeSales) {
  const std::string sale = Aggregate("SELLSTOCK", "<SELLTYPE>SELL");
  const std::string purchase = Aggregate("BUYSTOCK", "<BUYTYPE>BUY");
  const Parsed<KRInvTranList> list(sale + purchase);
  EXPECT_EQ(TextOf(*list), InLines(purchase + sale));
}

TEST(KRInvTranList, OwnsWhatIsAppendedAndSet) {
  const auto list = Make<KRInvTranList>();
  EXPECT_EQ(list->GetNumBuyDebt(), 0);
  EXPECT_EQ(list->GetBuyDebt(0), nullptr);
  auto* first = new KRBuyDebt;
  auto* second = new KRBuyDebt;
  EXPECT_EQ(list->AppendBuyDebt(first), 1);
  EXPECT_EQ(list->AppendBuyDebt(new KRBuyDebt), 1);
  EXPECT_EQ(list->SetBuyDebt(1, second), 1);
  EXPECT_EQ(list->GetNumBuyDebt(), 2);
  EXPECT_EQ(list->GetBuyDebt(0), first);
  EXPECT_EQ(list->GetBuyDebt(1), second);
  EXPECT_EQ(list->ValidateTag(KRTag_BUYDEBT), 1);
  list->DeleteAllBuyDebt();
  EXPECT_EQ(list->GetNumBuyDebt(), 0);
  EXPECT_EQ(list->GetNumberOfChildren(), 0);
}

TEST(KRBuyOther, RequiresItsTypeOnlyInTheSecondVersion) {
  const std::string first = TransactionTexts(1)[3].content;
  const std::string second = TransactionTexts(2)[3].content;
  EXPECT_EQ(IsComplete<KRBuyOther>(first, 1), 1);
  EXPECT_EQ(IsComplete<KRBuyOther>(second, 2), 1);
  EXPECT_EQ(IsComplete<KRBuyOther>(Without(second, "<BUYTYPE>BUYTOCOVER"), 2), 0);
  EXPECT_EQ(Parsed<KRBuyOther>(first + "<BUYTYPE>BUY", 1).Status(), KRParseStatus_Warnings);
}

TEST(KRSellOther, NeverRequiresItsType) {
  EXPECT_EQ(IsComplete<KRSellOther>(TransactionTexts(1)[16].content, 1), 1);
  EXPECT_EQ(
      IsComplete<KRSellOther>(Without(TransactionTexts(2)[16].content, "<SELLTYPE>SELLSHORT"), 2),
      1);
}

TEST(KRBuyStock, IsIncompleteWithoutItsPurchase) {
  EXPECT_EQ(IsComplete<KRBuyStock>("<BUYTYPE>BUY", 1), 0);
}

TEST(KRInvBankTran, IsIncompleteWithoutItsSubAccount) {
  const std::string all = TransactionTexts(1)[20].content;
  EXPECT_EQ(IsComplete<KRInvBankTran>(all, 1), 1);
  EXPECT_EQ(IsComplete<KRInvBankTran>(Without(all, "<SUBACCTFUND>CASH"), 1), 0);
}

TEST(KRBuyOpt, RequiresTheStandardTypeAndWritesBothWhenSet) {
  const std::string all = TransactionTexts(1)[2].content;
  EXPECT_EQ(IsComplete<KRBuyOpt>(Without(all, "<OPTBUYTYPE>BUYTOOPEN"), 1), 0);
  EXPECT_EQ(IsComplete<KRBuyOpt>(Without(all, "<FIDELITY.OPTBUYTYPE>BUY"), 1), 1);
  const auto option = Make<KRBuyOpt>();
  EXPECT_EQ(option->SetOptBuyType(KROptBuyType_BUYTOCLOSE), 1);
  EXPECT_EQ(option->SetFidelityOptBuyType(KRFidelityOptBuyType_BUY), 1);
  EXPECT_EQ(TextOf(*option), "<OPTBUYTYPE>BUYTOCLOSE\n<FIDELITY.OPTBUYTYPE>BUY\n");
}

TEST(KRSellOpt, RequiresTheStandardTypeAndWritesBothWhenSet) {
  const std::string all = TransactionTexts(1)[15].content;
  EXPECT_EQ(IsComplete<KRSellOpt>(Without(all, "<OPTSELLTYPE>SELLTOOPEN"), 1), 0);
  EXPECT_EQ(IsComplete<KRSellOpt>(Without(all, "<FIDELITY.OPTSELLTYPE>SELL"), 1), 1);
  const auto option = Make<KRSellOpt>();
  EXPECT_EQ(option->SetOptSellType(KROptSellType_SELLTOCLOSE), 1);
  EXPECT_EQ(option->SetFidelityOptSellType(KRFidelityOptSellType_SELL), 1);
  EXPECT_EQ(TextOf(*option), "<OPTSELLTYPE>SELLTOCLOSE\n<FIDELITY.OPTSELLTYPE>SELL\n");
}

TEST(SubAccounts, WarnAboutAWordThatIsNone) {
  const auto journal = Make<KRJrnlFund>();
  EXPECT_EQ(journal->SetSubAcctTo("MARGIN"), 1);
  EXPECT_EQ(journal->SetSubAcctFrom("VAULT"), 0);
  EXPECT_EQ(journal->ValidateTag(KRTag_SUBACCTFROM), 0);
  EXPECT_EQ(TakeWarnings(), Lines{"BADFORMAT \"VAULT\""});
  EXPECT_EQ(TextOf(*journal), "<SUBACCTTO>MARGIN\n");
}

// The price of a purchase is written in the form for amounts, that of a sale in the form for
// prices.
TEST(UnitPrices, AreWrittenAlikeInPurchasesAndSales) {
  for (const char* price : {"27.25", "-.0001", "123456789012.12345678"}) {
    const std::string text = std::string("<UNITPRICE>") + price + "\n";
    EXPECT_EQ(TextOf(*Parsed<KRInvBuy>(text)), text);
    EXPECT_EQ(TextOf(*Parsed<KRInvSell>(text)), text);
  }
}

TEST(Amounts, KeepEachOf28Digits) {
  for (const char* digits : {"9999999999999999999999999999", "-9999999999999999999999999999",
                             "12345678901234567890.12345678", "-1.234567890123456789012345678"}) {
    SCOPED_TRACE(digits);
    const std::string amount = std::string(">") + digits + "\n";
    std::string buy;
    for (const char* tag : {"UNITS", "UNITPRICE", "MARKUP", "COMMISSION", "TAXES", "FEES", "LOAD",
                            "TOTAL", "REVERSALFEES"}) {
      buy += std::string("<") + tag + amount;
    }
    std::string sell = buy;
    sell.replace(sell.find("MARKUP"), 6, "MARKDOWN");
    std::string split;
    for (const char* tag : {"OLDUNITS", "NEWUNITS", "NUMERATOR", "DENOMINATOR", "FRACCASH"}) {
      split += std::string("<") + tag + amount;
    }
    const std::string list = Aggregate("BUYSTOCK", Aggregate("INVBUY", buy)) +
                             Aggregate("SELLSTOCK", Aggregate("INVSELL", sell)) +
                             Aggregate("SPLIT", split);
    const Parsed<KRInvTranList> parsed(list, 2);
    ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(TextOf(*parsed), InLines(list));
    const std::string position = "<UNITS" + amount + "<UNITPRICE" + amount + "<MKTVAL" + amount;
    const Parsed<KRInvPos> held(position);
    EXPECT_EQ(TextOf(*held), position);
  }
}

}  // namespace
}  // namespace krofx::testing
