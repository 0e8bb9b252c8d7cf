// Views: what transactions, accounts, statements and positions say, whichever element says it.

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "krofx/host/amounts.h"
#include "krofx/host/dates.h"
#include "krofx/host/investment_transaction_view.h"
#include "krofx/host/own.h"
#include "krofx/host/statement_view.h"
#include "krofx/messages/investment/statement.h"
#include "krofx/messages/investment/transactions.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

// One statement with one transaction.
Reading With(const std::string& elements) {
  return Read(BankStatementFile("<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-7<FITID>1" +
                                elements + "</STMTTRN>"));
}

TransactionView Only(const Reading& reading) { return *Transactions(reading).begin(); }

TEST(TransactionViews, FindThePartyInNameOrPayee) {
  EXPECT_EQ(Only(With("<NAME>Baker")).Party(), "Baker");
  const std::string payee =
      "<NAME>Grocer<ADDR1>1 Main St<CITY>Ada<STATE>OK<POSTALCODE>74820<PHONE>555";
  const Reading inPayee = With("<PAYEE>" + payee + "</PAYEE>");
  EXPECT_EQ(Only(inPayee).Party(), "Grocer");
  EXPECT_EQ(Only(inPayee).City(), "Ada");
  EXPECT_EQ(Only(With("")).Party(), "");
}

TEST(TransactionViews, FindMemoAndCurrenciesWhicheverElementSaysThem) {
  const Reading plain = With("<MEMO>rent");
  EXPECT_EQ(Only(plain).Memo(), "rent");
  EXPECT_EQ(Only(plain).Currency(), "USD");
  EXPECT_EQ(Only(plain).OriginalCurrency(), "");
  EXPECT_EQ(Only(plain).Id(), "1");
  EXPECT_EQ(TransactionView(Only(plain).Get()).Currency(), "");
  EXPECT_EQ(TransactionView(Only(plain).Get(), "CHF").Currency(), "CHF");
  const Reading own = With("<CURRENCY><CURRATE>1.25<CURSYM>EUR</CURRENCY>");
  EXPECT_EQ(Only(own).Currency(), "EUR");
  EXPECT_EQ(ToText(Only(own).Rate(), 2), "1.25");
  const Reading converted = With("<ORIGCURRENCY><CURRATE>0.9<CURSYM>GBP</ORIGCURRENCY>");
  EXPECT_EQ(Only(converted).Currency(), "USD");
  EXPECT_EQ(Only(converted).OriginalCurrency(), "GBP");
  EXPECT_EQ(ToText(Only(converted).OriginalRate(), 1), "0.9");
}

TEST(TransactionViews, AreEmptyWhereNothingIs) {
  const Reading reading = Read(BankStatementFile("<STMTTRN><NAME>Baker</STMTTRN>"));
  const TransactionView tx = Only(reading);
  EXPECT_EQ(tx.Amount(), std::nullopt);
  EXPECT_EQ(ToDay(tx.Posted()), std::nullopt);
  EXPECT_EQ(ToDay(tx.Available()), std::nullopt);
  EXPECT_EQ(tx.Type(), "");
  EXPECT_EQ(tx.Id(), "");
  EXPECT_EQ(tx.Correction(), "");
  EXPECT_FALSE(tx.ToAccount());
  EXPECT_EQ(tx.ToAccount().Number(), "");
}

// Both versions of one statement say the same.
TEST(StatementViews, DoNotCareAboutVersions) {
  const Reading first = ReadFile(KROFX_EXAMPLES "/request-v1.ofx");
  for (const StatementView statement : Statements(first)) ADD_FAILURE() << statement.Currency();
  for (const char* name : {"checking.ofx", "statement-v2.ofx", "card.ofx"}) {
    const Reading reading = ReadFile((std::string(KROFX_EXAMPLES "/") + name).c_str());
    int statements = 0;
    for (const StatementView statement : Statements(reading)) {
      ++statements;
      EXPECT_TRUE(statement.Account()) << name;
      EXPECT_FALSE(statement.Account().Number().empty()) << name;
      EXPECT_EQ(statement.Account().IsCard(), std::string(name) == "card.ofx");
      EXPECT_EQ(statement.Account().Type().empty(), statement.Account().IsCard()) << name;
      EXPECT_EQ(statement.Currency().size(), 3u) << name;
      EXPECT_TRUE(statement.Balance()) << name;
      EXPECT_TRUE(ToDay(statement.BalanceDate())) << name;
      EXPECT_EQ(statement.AvailableCash(), std::nullopt);
      int transactions = 0;
      for (const TransactionView tx : statement.Transactions()) {
        ++transactions;
        EXPECT_TRUE(tx.Amount()) << name;
        EXPECT_TRUE(ToDay(tx.Posted())) << name;
        EXPECT_FALSE(tx.Type().empty()) << name;
        EXPECT_FALSE(tx.Currency().empty()) << name;
      }
      EXPECT_GT(transactions, 0) << name;
      for (const PositionView position : statement.Positions()) {
        ADD_FAILURE() << position.SecurityId();
      }
    }
    EXPECT_GT(statements, 0) << name;
  }
}

TEST(StatementViews, ShowInvestmentsWithTheNamesOfTheirSecurities) {
  for (const char* name : {"brokerage.ofx", "brokerage-v2.ofx"}) {
    const Reading reading = ReadFile((std::string(KROFX_EXAMPLES "/") + name).c_str());
    const StatementView statement = *Statements(reading).begin();
    EXPECT_TRUE(statement.Account().IsInvestment());
    EXPECT_FALSE(statement.Account().Institution().empty());
    EXPECT_TRUE(ToDay(statement.AsOf()));
    EXPECT_TRUE(statement.AvailableCash());
    EXPECT_EQ(statement.Balance(), std::nullopt);
    int positions = 0;
    for (const PositionView position : statement.Positions()) {
      ++positions;
      EXPECT_TRUE(position.Kind().starts_with("POS")) << name;
      EXPECT_FALSE(position.SecurityId().empty()) << name;
      EXPECT_FALSE(position.Security().empty()) << name << position.SecurityId();
      EXPECT_TRUE(position.Units()) << name;
      EXPECT_TRUE(position.Price()) << name;
      EXPECT_TRUE(position.Value()) << name;
      EXPECT_FALSE(position.Direction().empty()) << name;
      EXPECT_FALSE(position.Currency().empty()) << name;
    }
    EXPECT_GT(positions, 2) << name;
  }
}

TEST(InvestmentTransactionViews, ShowEveryKindInTheOrderOfTheDocument) {
  for (const char* name : {"brokerage.ofx", "brokerage-v2.ofx"}) {
    const Reading reading = ReadFile((std::string(KROFX_EXAMPLES "/") + name).c_str());
    std::set<std::string_view> kinds;
    int count = 0;
    for (const InvestmentTransactionView tx : InvestmentTransactions(reading)) {
      ++count;
      kinds.insert(tx.Kind());
      EXPECT_TRUE(ToDay(tx.Traded())) << name << tx.Kind();
      EXPECT_FALSE(tx.Id().empty()) << name << tx.Kind();
      EXPECT_FALSE(tx.Currency().empty()) << name << tx.Kind();
      EXPECT_EQ(tx.Security().empty(), tx.SecurityId().empty()) << name << tx.Kind();
      EXPECT_EQ(tx.Money() != nullptr, tx.Kind() == "INVBANKTRAN");
      EXPECT_TRUE(tx.Units() || tx.Total()) << name << tx.Kind();
    }
    EXPECT_EQ(kinds.size(), 21u) << name;
    const StatementView statement = *Statements(reading).begin();
    for (const InvestmentTransactionView tx : statement.InvestmentTransactions()) {
      --count;
      EXPECT_NE(&tx.Get(), nullptr);
    }
    EXPECT_EQ(count, 0) << name;
  }
  const Reading bank = ReadFile(KROFX_EXAMPLES "/checking.ofx");
  for (const InvestmentTransactionView tx : InvestmentTransactions(bank)) {
    ADD_FAILURE() << tx.Kind();
  }
}

TEST(InvestmentTransactionViews, AreEmptyWhereNothingIs) {
  auto list = New<KRInvTranList>(1);
  ASSERT_TRUE(Give(*list, &KRInvTranList::AppendBuyStock, New<KRBuyStock>(1)));
  ASSERT_TRUE(Give(*list, &KRInvTranList::AppendInvBankTran, New<KRInvBankTran>(1)));
  const auto statement = New<KRInvStmtRs>(1);
  ASSERT_TRUE(Give(*statement, &KRInvStmtRs::SetInvTranList, std::move(list)));
  int count = 0;
  for (const InvestmentTransactionView tx : InvestmentTransactions(*statement)) {
    ++count;
    EXPECT_EQ(ToDay(tx.Traded()), std::nullopt);
    EXPECT_EQ(tx.Units(), std::nullopt);
    EXPECT_EQ(tx.Total(), std::nullopt);
    EXPECT_EQ(tx.IsTaxExempt(), std::nullopt);
    EXPECT_EQ(tx.Detail(), "");
    EXPECT_EQ(tx.Security(), "");
    EXPECT_EQ(tx.Memo(), "");
    EXPECT_EQ(tx.Id(), "");
    EXPECT_EQ(tx.Currency(), "");
    EXPECT_EQ(tx.Money(), nullptr);
  }
  EXPECT_EQ(count, 2);
}

TEST(PositionViews, ShowWhatTheirKindsAdd) {
  const Reading reading = ReadFile(KROFX_EXAMPLES "/brokerage.ofx");
  int stocks = 0;
  for (const PositionView position : Positions(reading)) {
    const bool isOption = position.Kind() == "POSOPT";
    EXPECT_TRUE(position.Secured().empty() || isOption);
    if (position.Kind() == "POSSTOCK") ++stocks;
    if (position.Kind() == "POSDEBT") {
      EXPECT_EQ(position.ReinvestDividends(), std::nullopt);
      EXPECT_EQ(position.UnitsStreet(), std::nullopt);
    }
  }
  EXPECT_GT(stocks, 0);
}

TEST(Views, AreOfAllObjectsThatATreeHas) {
  for (const auto& entry : std::filesystem::directory_iterator(KROFX_EXAMPLES)) {
    const Reading reading = ReadFile(entry.path().c_str());
    int transactions = 0;
    ForEach<KRBankStatementTx>(reading, [&](const KRBankStatementTx&) { ++transactions; });
    for (const TransactionView tx : Transactions(reading)) {
      --transactions;
      EXPECT_EQ(tx.Type(), ToText(tx.Get().GetTxType()));
    }
    EXPECT_EQ(transactions, 0) << entry.path();
  }
}

}  // namespace
}  // namespace krofx::testing
