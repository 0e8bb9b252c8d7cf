// Views of statements: each getter gives what the text says, and nothing when the text does not say
// it.

#include <gtest/gtest.h>

#include <string>

#include "krofx/host/amounts.h"
#include "krofx/host/dates.h"
#include "krofx/host/statement_view.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/investment/statement.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

// All that a view says, line by line; what it does not say has no line.
Lines Said(const StatementView& view) {
  Lines lines;
  const auto add = [&lines](const char* name, std::string_view text) {
    if (!text.empty()) lines.push_back(std::string(name) + " " + std::string(text));
  };
  const auto addAmount = [&add](const char* name, const auto& amount) {
    add(name, ToText(amount, 0));
  };
  add("account", view.Account().Number());
  add("currency", view.Currency());
  add("from", ToText(view.From()));
  add("to", ToText(view.To()));
  addAmount("balance", view.Balance());
  add("balance date", ToText(view.BalanceDate()));
  addAmount("available", view.Available());
  add("available date", ToText(view.AvailableDate()));
  add("as of", ToText(view.AsOf()));
  addAmount("cash", view.AvailableCash());
  addAmount("margin", view.MarginBalance());
  addAmount("short", view.ShortBalance());
  addAmount("power", view.BuyingPower());
  add("note", view.Note());
  for (const TransactionView tx : view.Transactions()) add("transaction", tx.Id());
  for (const InvestmentTransactionView tx : view.InvestmentTransactions()) {
    add("investment", tx.Kind());
  }
  for (const PositionView position : view.Positions()) add("position", position.Kind());
  return lines;
}

template <class Statement>
Lines SaidOf(const std::string& text) {
  const Parsed<Statement> statement(text);
  EXPECT_EQ(statement.Status(), KRParseStatus_Accepted);
  EXPECT_EQ(statement.Warnings(), Lines());
  const StatementView view(*statement);
  EXPECT_EQ(&view.Get(), statement.Get());
  int count = 0;
  for (const StatementView found : Statements(*statement)) {
    ++count;
    EXPECT_EQ(Said(found), Said(view));
  }
  EXPECT_EQ(count, 1);
  return Said(view);
}

const std::string kBalances = Aggregate("LEDGERBAL", "<BALAMT>10.5<DTASOF>20260131") +
                              Aggregate("AVAILBAL", "<BALAMT>9.25<DTASOF>20260201") +
                              "<MKTGINFO>hello";
const std::string kOneTransaction =
    Aggregate("STMTTRN", "<TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-7<FITID>t-1");
const Lines kBanking = {"currency USD",
                        "from 2026-01-01",
                        "to 2026-01-31",
                        "balance 10.5",
                        "balance date 2026-01-31",
                        "available 9.25",
                        "available date 2026-02-01",
                        "note hello",
                        "transaction t-1"};

Lines WithAccount(const std::string& number) {
  Lines lines = kBanking;
  lines.insert(lines.begin(), "account " + number);
  return lines;
}

TEST(StatementViews, SayWhatAStatementOfABankSays) {
  const std::string list =
      Aggregate("BANKTRANLIST", "<DTSTART>20260101<DTEND>20260131" + kOneTransaction);
  EXPECT_EQ(
      SaidOf<KRBankStatementRs>("<CURDEF>USD" + BankAccountText("BANKACCTFROM") + list + kBalances),
      WithAccount("1029384756"));
  EXPECT_EQ(SaidOf<KRCCStatementRs>("<CURDEF>USD" + Aggregate("CCACCTFROM", "<ACCTID>4111") + list +
                                    kBalances),
            WithAccount("4111"));
}

TEST(StatementViews, SayWhatAStatementOfInvestmentsSays) {
  const std::string text =
      "<DTASOF>20260131<CURDEF>EUR" +
      Aggregate("INVACCTFROM", "<BROKERID>broker.example<ACCTID>7-4401") +
      Aggregate("INVTRANLIST", "<DTSTART>20260101<DTEND>20260131<BUYDEBT></BUYDEBT>" +
                                   Aggregate("INVBANKTRAN", kOneTransaction)) +
      Aggregate("INVPOSLIST", Aggregate("POSOPT", "<INVPOS></INVPOS>")) +
      Aggregate("INVBAL", "<AVAILCASH>1.5<MARGINBALANCE>-2.5<SHORTBALANCE>3.5<BUYPOWER>4.5") +
      "<MKTGINFO>hello";
  EXPECT_EQ(SaidOf<KRInvStmtRs>(text),
            (Lines{"account 7-4401", "currency EUR", "from 2026-01-01", "to 2026-01-31",
                   "as of 2026-01-31", "cash 1.5", "margin -2.5", "short 3.5", "power 4.5",
                   "note hello", "transaction t-1", "investment BUYDEBT", "investment INVBANKTRAN",
                   "position POSOPT"}));
}

TEST(StatementViews, SayNothingOfStatementsWithoutElements) {
  EXPECT_EQ(SaidOf<KRBankStatementRs>(""), Lines());
  EXPECT_EQ(SaidOf<KRCCStatementRs>(""), Lines());
  EXPECT_EQ(SaidOf<KRInvStmtRs>(""), Lines());
  const std::string empty =
      "<BANKTRANLIST></BANKTRANLIST><LEDGERBAL></LEDGERBAL>"
      "<AVAILBAL></AVAILBAL>";
  EXPECT_EQ(SaidOf<KRBankStatementRs>("<BANKACCTFROM></BANKACCTFROM>" + empty), Lines());
  EXPECT_EQ(SaidOf<KRCCStatementRs>("<CCACCTFROM></CCACCTFROM>" + empty), Lines());
  EXPECT_EQ(SaidOf<KRInvStmtRs>("<INVACCTFROM></INVACCTFROM><INVTRANLIST></INVTRANLIST>"
                                "<INVPOSLIST></INVPOSLIST><INVBAL></INVBAL>"),
            Lines());
}

}  // namespace
}  // namespace krofx::testing
