// Statements, transactions and closings of bank and card accounts: their tables, the order of
// writing, the fields of each version and the rules of one transaction.

#include "krofx/messages/banking/statements.h"

#include <gtest/gtest.h>

#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/payee.h"
#include "krofx/messages/signon/signon.h"
#include "support/aggregate_table.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

constexpr char kTransaction[] = R"(
    STMTTRN        listed
    TRNTYPE        word=DIRECTDEBIT  required
    DTPOSTED       date              required
    DTUSER         date
    DTAVAIL        date
    TRNAMT         amount            required
    FITID          text255           required
    CORRECTFITID   text255
    CORRECTACTION  word=DELETE
    SRVRTID        text36            V1
    SRVRTID2       text36            V2+
    CHECKNUM       text12
    REFNUM         text32
    SIC            text6
    PAYEEID        text12            V1
    PAYEEID2       text36            V2+
    NAME           text32
    PAYEE          child             V1
    PAYEE2         child             V2+
    BANKACCTTO     child
    CCACCTTO       child
    MEMO           text255           V1
    MEMO2          text390           V2+
    CURRENCY       child
    ORIGCURRENCY   child
)";

TEST(StatementTables, Transaction) { ExpectTable<KRBankStatementTx>("STMTTRN", kTransaction); }

TEST(StatementTables, TransactionList) {
  ExpectTable<KRBankTransactionList>("BANKTRANLIST", R"(
    DTSTART  date      required
    DTEND    date      required
    STMTTRN  children
  )");
}

TEST(StatementTables, Requests) {
  ExpectTable<KRBankStatementRq>("STMTRQ", R"(
    BANKACCTFROM  child  required
    INCTRAN       child
  )");
  ExpectTable<KRCCStatementRq>("CCSTMTRQ", R"(
    CCACCTFROM  child  required
    INCTRAN     child
  )");
  ExpectTable<KRIncTransaction>("INCTRAN", R"(
    DTSTART  date
    DTEND    date
    INCLUDE  boolean  required
  )");
}

TEST(StatementTables, Responses) {
  const std::string common = R"(
    BANKTRANLIST  child
    LEDGERBAL     child    required
    AVAILBAL      child
    MKTGINFO      text360
  )";
  const std::string currency = "CURDEF text3 required\n";
  ExpectTable<KRBankStatementRs>("STMTRS", currency + "BANKACCTFROM child required" + common);
  ExpectTable<KRCCStatementRs>("CCSTMTRS", currency + "CCACCTFROM child required" + common);
}

TEST(StatementTables, ClosingRequests) {
  const std::string dates = "DTSTART date\nDTEND date\n";
  ExpectTable<KRStatementEndRq>("STMTENDRQ", "BANKACCTFROM child required\n" + dates);
  ExpectTable<KRCCStatementEndRq>("CCSTMTENDRQ", "CCACCTFROM child required\n" + dates);
}

TEST(StatementTables, ClosingResponses) {
  ExpectTable<KRStatementEndRs>("STMTENDRS", R"(
    CURDEF        text3     required
    BANKACCTFROM  child     required
    CLOSING       children
  )");
  ExpectTable<KRCCStatementEndRs>("CCSTMTENDRS", R"(
    CURDEF      text3     required
    CCACCTFROM  child     required
    CCCLOSING   children
  )");
}

constexpr char kClosingHead[] = R"(
    FITID     text255  required
    DTOPEN    date
    DTCLOSE   date     required
    DTNEXT    date
    BALOPEN   amount
    BALCLOSE  amount   required
)";
constexpr char kClosingTail[] = R"(
    DTPOSTSTART   date     required
    DTPOSTEND     date     required
    MKTGINFO      text360
    CURRENCY      child
    ORIGCURRENCY  child
)";

TEST(StatementTables, BankClosing) {
  ExpectTable<KRClosing>("CLOSING", std::string(kClosingHead) + R"(
    BALMIN        amount
    DEPANDCREDIT  amount
    CHKANDDEB     amount
    TOTALFEES     amount
    TOTALINT      amount
  )" + kClosingTail);
}

TEST(StatementTables, CardClosing) {
  ExpectTable<KRCCClosing>("CCCLOSING", std::string(kClosingHead) + R"(
    DTPMTDUE      date
    MINPMTDUE     amount
    FINCHG        amount
    PAYANDCREDIT  amount
    PURANDADV     amount
    DEBADJ        amount
    CREDITLIMIT   amount
  )" + kClosingTail);
}

TEST(StatementTables, BankMessageSet) {
  constexpr char kBankSet[] = R"(
    MSGSETCORE        child    required
    INVALIDACCTTYPE   words=CREDITLINE,MONEYMRKT  V1
    INVALIDACCTTYPE2  words=CMA,SAVINGS           V2+
    CLOSINGAVAIL      boolean  required
    XFERPROF          child
    STPCHKPROF        child
    EMAILPROF         child    required
  )";
  ExpectTable<KRBankMessageSetV1>("BANKMSGSETV1", kBankSet);
  ExpectTable<KRBankMessageSetV2>("BANKMSGSETV2", kBankSet, 2);
}

TEST(StatementTables, CardMessageSet) {
  constexpr char kCardSet[] = R"(
    MSGSETCORE    child    required
    CLOSINGAVAIL  boolean  required
  )";
  ExpectTable<KRCreditCardMessageSetV1>("CREDITCARDMSGSETV1", kCardSet);
  ExpectTable<KRCreditCardMessageSetV2>("CREDITCARDMSGSETV2", kCardSet, 2);
}

// The required elements of a transaction.
constexpr char kPlain[] = "<TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-12.50<FITID>1";

u16 IsComplete(const std::string& more, u16 version = 1) {
  const Parsed<KRBankStatementTx> parsed(kPlain + more, version);
  EXPECT_EQ(parsed.Status(), KRParseStatus_Accepted);
  return parsed->AllRequiredPresent();
}

TEST(KRBankStatementTx, TakesNoMoreThanOneOfNameAndPayee) {
  const std::string payee = Aggregate("PAYEE", "");
  const std::string payee2 = Aggregate("PAYEE2", "");
  EXPECT_EQ(IsComplete(""), 1);
  EXPECT_EQ(IsComplete("<NAME>Ada"), 1);
  EXPECT_EQ(IsComplete(payee), 1);
  EXPECT_EQ(IsComplete("<NAME>Ada" + payee), 0);
  EXPECT_EQ(IsComplete(payee2, 2), 1);
  EXPECT_EQ(IsComplete("<NAME>Ada" + payee2, 2), 0);
  EXPECT_EQ(IsComplete(payee + payee2, 3), 0);
}

TEST(KRBankStatementTx, TakesNoMoreThanOneTargetAccount) {
  const std::string bank = Aggregate("BANKACCTTO", "");
  const std::string card = Aggregate("CCACCTTO", "");
  EXPECT_EQ(IsComplete(bank), 1);
  EXPECT_EQ(IsComplete(card), 1);
  EXPECT_EQ(IsComplete(bank + card), 0);
}

TEST(KRBankStatementTx, RulesComeOnTopOfTheRequiredTags) {
  const Parsed<KRBankStatementTx> parsed("<TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-1");
  EXPECT_EQ(parsed->AllRequiredPresent(), 0);
  EXPECT_EQ(parsed->GetFirstMissingRequiredTag(KRTag_None), KRTag_FITID);
}

TEST(KRBankStatementTx, WritesTheMemoOfItsVersionWhileBothStayReadable) {
  auto transaction = Make<KRBankStatementTx>(1);
  EXPECT_EQ(transaction->SetMemo(KRString("first")), 1);
  EXPECT_EQ(transaction->SetMemo2(KRString("second")), 0);
  EXPECT_EQ(TextOf(*transaction), "<MEMO>first\n");
  transaction->SetMsgSetVersion(2);
  EXPECT_EQ(TextOf(*transaction), "");
  EXPECT_EQ(transaction->SetMemo2(KRString("second")), 1);
  EXPECT_EQ(TextOf(*transaction), "<MEMO2>second\n");
  transaction->SetMsgSetVersion(1);
  EXPECT_EQ(TextOf(*transaction), "<MEMO>first\n");
  EXPECT_EQ(Str(transaction->GetMemo()), "first");
  EXPECT_EQ(Str(transaction->GetMemo2()), "second");
}

TEST(KRBankStatementTx, ItsOwnTagIsListedAndNeverPresent) {
  auto transaction = Make<KRBankStatementTx>();
  EXPECT_EQ(transaction->IsValidTag(KRTag_STMTTRN), 1);
  const Parsed<KRBankStatementTx> parsed(Aggregate("STMTTRN", kPlain));
  EXPECT_EQ(parsed.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(parsed->ValidateTag(KRTag_STMTTRN), 0);
}

TEST(KRBankStatementTx, KeepsAnOverLongTextWholeAndGoesOn) {
  const Parsed<KRBankStatementTx> parsed("<NAME>" + Letters(40) + kPlain);
  EXPECT_EQ(parsed.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(Str(parsed->GetName()), Letters(40));
  EXPECT_EQ(parsed->AllRequiredPresent(), 1);
}

TEST(KRBankStatementTx, ReadsKeywordsInAnyCase) {
  const Parsed<KRBankStatementTx> parsed("<TRNTYPE>DirectDep<CORRECTACTION>replace");
  EXPECT_EQ(parsed->GetTxType(), KRBankTxType_DIRECTDEP);
  EXPECT_EQ(parsed->GetCorrectAction(), KRBankAction_REPLACE);
  EXPECT_EQ(TextOf(*parsed), "<TRNTYPE>DIRECTDEP\n<CORRECTACTION>REPLACE\n");
}

TEST(KRBankStatementTx, ReadsEveryMember) {
  const Parsed<KRBankStatementTx> t(
      "<TRNTYPE>CHECK<DTPOSTED>20260105<DTUSER>20260104<DTAVAIL>20260106<TRNAMT>-12.50<FITID>1"
      "<CORRECTFITID>0<CORRECTACTION>DELETE<SRVRTID>s<CHECKNUM>118<REFNUM>r<SIC>5411<PAYEEID>p"
      "<MEMO>m" +
      Aggregate("CCACCTTO", "<ACCTID>4") + Aggregate("CURRENCY", "<CURRATE>1.1<CURSYM>EUR") +
      Aggregate("ORIGCURRENCY", "<CURRATE>0.5<CURSYM>CHF") + Aggregate("PAYEE", "<NAME>Ada"));
  ASSERT_EQ(t.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(t->GetTxType(), KRBankTxType_CHECK);
  EXPECT_EQ(t->GetDateTimePosted().GetDay(), 5);
  EXPECT_EQ(t->GetDateTimeUser().GetDay(), 4);
  EXPECT_EQ(t->GetDateTimeAvailable().GetDay(), 6);
  KRPrecisionInteger amount(t->GetTxAmount());
  EXPECT_STREQ(static_cast<const char*>(amount), "-12.5");
  EXPECT_EQ(Str(t->GetFITId()), "1");
  EXPECT_EQ(Str(t->GetCorrectedFITId()), "0");
  EXPECT_EQ(t->GetCorrectAction(), KRBankAction_DELETE);
  EXPECT_EQ(Str(t->GetServerTxId()), "s");
  EXPECT_EQ(Str(t->GetCheckNum()), "118");
  EXPECT_EQ(Str(t->GetReferenceNum()), "r");
  EXPECT_EQ(Str(t->GetSIC()), "5411");
  EXPECT_EQ(Str(t->GetPayeeId()), "p");
  EXPECT_EQ(Str(t->GetMemo()), "m");
  EXPECT_EQ(Str(t->GetPayee()->GetName()), "Ada");
  EXPECT_EQ(Str(t->GetCCAcctTo()->GetAccountID()), "4");
  EXPECT_EQ(t->GetCCAcctTo()->GetType(), KRTag_CCACCTTO);
  EXPECT_EQ(Str(t->GetCurrency()->GetCurrencySymbol()), "EUR");
  EXPECT_EQ(Str(t->GetOrigCurrency()->GetCurrencySymbol()), "CHF");
  EXPECT_EQ(t->GetOrigCurrency()->GetType(), KRTag_ORIGCURRENCY);
}

TEST(KRBankStatementTx, CopiesThroughItsBaseWithEveryChild) {
  const std::string payee = Aggregate("PAYEE", "<NAME>Ada<CITY>Millbrook");
  const Parsed<KRBankStatementTx> source(kPlain + payee);
  KRBankStatementTx copy;
  KRTransBase& base = copy;
  EXPECT_EQ(base.DeepCopyFrom(source.Get()), 1);
  EXPECT_EQ(TextOf(copy), TextOf(*source));
  EXPECT_NE(copy.GetPayee(), source->GetPayee());
  KRIncTransaction other;
  EXPECT_EQ(base.DeepCopyFrom(nullptr), 0);
}

TEST(KRBankTransactionList, IsCompleteWithItsDatesAlone) {
  const Parsed<KRBankTransactionList> empty("<DTSTART>20260101<DTEND>20260131");
  EXPECT_EQ(empty->AllRequiredPresent(), 1);
  EXPECT_EQ(empty->GetNumStatementTx(), 0);
  EXPECT_EQ(TextOf(*empty), "<DTSTART>20260101\n<DTEND>20260131\n");
}

TEST(KRBankTransactionList, HoldsTransactionsOfTheHost) {
  auto list = Make<KRBankTransactionList>();
  auto* first = Make<KRBankStatementTx>().release();
  first->SetFITId(KRString("1"));
  EXPECT_EQ(list->AppendStatementTx(first), 1);
  auto* second = Make<KRBankStatementTx>().release();
  second->SetFITId(KRString("2"));
  EXPECT_EQ(list->AppendStatementTx(second), 1);
  EXPECT_EQ(list->GetNumStatementTx(), 2);
  EXPECT_EQ(list->GetStatementTx(0), first);
  EXPECT_EQ(list->GetStatementTx(1), second);
  EXPECT_EQ(list->GetStatementTx(2), nullptr);
  EXPECT_EQ(TextOf(*list), InLines("<STMTTRN><FITID>1</STMTTRN><STMTTRN><FITID>2</STMTTRN>"));
  list->ClearStatementTx();
  EXPECT_EQ(list->GetNumStatementTx(), 0);
  EXPECT_EQ(list->AppendStatementTx(first), 1);
  list->DeleteAllStatementTx();
  EXPECT_EQ(list->GetNumStatementTx(), 0);
  delete second;
}

TEST(KRBankStatementRs, NeedsTheLedgerBalanceAndNotTheList) {
  const std::string start = "<CURDEF>USD" + BankAccountText("BANKACCTFROM");
  const std::string ledger = Aggregate("LEDGERBAL", "<BALAMT>1<DTASOF>20260131");
  const std::string list = Aggregate("BANKTRANLIST", "<DTSTART>20260101<DTEND>20260131");
  EXPECT_EQ(Parsed<KRBankStatementRs>(start + ledger)->AllRequiredPresent(), 1);
  EXPECT_EQ(Parsed<KRBankStatementRs>(start + list)->AllRequiredPresent(), 0);
  EXPECT_EQ(Parsed<KRBankStatementRs>(start + list + ledger)->AllRequiredPresent(), 1);
}

TEST(KRBankStatementRs, WritesTheListAheadOfTheBalances) {
  const std::string available = Aggregate("AVAILBAL", "<BALAMT>2");
  const std::string ledger = Aggregate("LEDGERBAL", "<BALAMT>1");
  const std::string list = Aggregate("BANKTRANLIST", "<DTSTART>20260101");
  const Parsed<KRBankStatementRs> parsed("<MKTGINFO>m" + available + ledger + list + "<CURDEF>USD");
  EXPECT_EQ(TextOf(*parsed), InLines("<CURDEF>USD" + list + ledger + available + "<MKTGINFO>m"));
}

TEST(StatementRequests, AskForAnAccountAndItsTransactions) {
  auto request = Make<KRBankStatementRq>();
  auto* account = Make<KRBankAccount>().release();
  account->SetAccountID(KRString("9"));
  EXPECT_EQ(request->SetBankAcctFrom(account), 1);
  auto* include = Make<KRIncTransaction>().release();
  EXPECT_EQ(include->SetInclude(static_cast<u16>(1)), 1);
  EXPECT_EQ(request->SetIncTran(include), 1);
  EXPECT_EQ(request->AllRequiredPresent(), 1);
  EXPECT_EQ(TextOf(*request), InLines("<BANKACCTFROM><ACCTID>9</BANKACCTFROM>"
                                      "<INCTRAN><INCLUDE>Y</INCTRAN>"));
}

TEST(StatementRequests, LastAccountWins) {
  const Parsed<KRBankStatementRq> parsed(Aggregate("BANKACCTFROM", "<ACCTID>1") +
                                         Aggregate("BANKACCTFROM", "<ACCTID>2"));
  EXPECT_EQ(parsed.Warnings(), Lines({"EXTRAAGG " + TagNumber(KRTag_BANKACCTFROM)}));
  EXPECT_EQ(TextOf(*parsed), InLines("<BANKACCTFROM><ACCTID>2</BANKACCTFROM>"));
}

TEST(KRStatementEndRs, HoldsClosings) {
  auto end = Make<KRStatementEndRs>();
  auto* closing = Make<KRClosing>().release();
  EXPECT_EQ(end->AppendClosing(closing), 1);
  EXPECT_EQ(end->GetClosing(0), closing);
  EXPECT_EQ(end->DisconnectClosing(0), 1);
  delete closing;
  EXPECT_EQ(end->AppendClosing(Make<KRClosing>().release()), 1);
  end->DeleteAllClosing();
  EXPECT_EQ(end->GetNumClosing(), 0);
}

TEST(KRCCStatementEndRs, HoldsClosings) {
  auto end = Make<KRCCStatementEndRs>();
  auto* closing = Make<KRCCClosing>().release();
  EXPECT_EQ(end->AppendCCClosing(closing), 1);
  EXPECT_EQ(end->DisconnectCCClosing(0), 1);
  delete closing;
  EXPECT_EQ(end->AppendCCClosing(Make<KRCCClosing>().release()), 1);
  end->DeleteAllCCClosing();
  EXPECT_EQ(end->GetNumCCClosing(), 0);
}

TEST(KRBankMessageSet, ListsTheAccountTypesThatItRefuses) {
  KRBankMessageSetV1 first;
  first.SetMsgSetVersion(1);
  EXPECT_EQ(first.AppendInvalidBankAccountType(KRBankAccountType_CREDITLINE), 1);
  EXPECT_EQ(TextOf(first), "<INVALIDACCTTYPE>CREDITLINE\n");
  first.DeleteAllInvalidBankAccountType();
  EXPECT_EQ(first.GetNumInvalidBankAccountType(), 0);
  KRBankMessageSetV2 second;
  EXPECT_EQ(second.AppendInvalidBankAccountType2(KRBankAccountType2_CMA), 1);
  EXPECT_EQ(TextOf(second), "<INVALIDACCTTYPE2>CMA\n");
  second.DeleteAllInvalidBankAccountType2();
  EXPECT_EQ(second.GetNumInvalidBankAccountType2(), 0);
}

TEST(KRBankMessageSet, SecondVersionDerivesFromTheFirst) {
  const KRBankMessageSetV2 bank;
  EXPECT_NE(dynamic_cast<const KRBankMessageSetV1*>(&bank), nullptr);
  EXPECT_EQ(bank.GetMsgSetVersion(), 2);
  const KRCreditCardMessageSetV2 card;
  EXPECT_NE(dynamic_cast<const KRCreditCardMessageSetV1*>(&card), nullptr);
}

}  // namespace
}  // namespace krofx::testing
