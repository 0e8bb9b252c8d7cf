// Investment statements: tables of the request, the statement, positions and balances, what makes
// each complete, and the order of positions.

#include "krofx/messages/investment/statement.h"

#include <gtest/gtest.h>

#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/investment/orders.h"
#include "krofx/messages/investment/transactions.h"
#include "krofx/values/utility.h"
#include "messages/investment_texts.h"
#include "support/aggregate_table.h"

namespace krofx::testing {
namespace {

TEST(InvestmentStatementTables, InvStmtRq) {
  ExpectTable<KRInvStmtRq>("INVSTMTRQ", R"(
    INVACCTFROM  child    required
    INCTRAN      child    required
    INCOO        boolean  required
    INCPOS       child    required
    INCBAL       boolean  required
  )");
}

TEST(InvestmentStatementTables, IncPos) {
  ExpectTable<KRIncPos>("INCPOS", R"(
    DTASOF   date
    INCLUDE  boolean  required
  )");
}

TEST(InvestmentStatementTables, InvStmtRs) {
  ExpectTable<KRInvStmtRs>("INVSTMTRS", R"(
    DTASOF       date     required
    CURDEF       text3    required
    INVACCTFROM  child    required
    INVTRANLIST  child
    INVPOSLIST   child
    INVBAL       child
    INVOOLIST    child
    MKTGINFO     text360
  )");
}

TEST(InvestmentStatementTables, InvBal) {
  ExpectTable<KRInvBal>("INVBAL", R"(
    AVAILCASH      amount  required
    MARGINBALANCE  amount  required
    SHORTBALANCE   amount  required
    BUYPOWER       amount
    BALLIST        child
  )");
}

TEST(InvestmentStatementTables, InvPosList) {
  ExpectTable<KRInvPosList>("INVPOSLIST", R"(
    POSDEBT   children
    POSMF     children
    POSOPT    children
    POSOTHER  children
    POSSTOCK  children
  )");
}

TEST(InvestmentStatementTables, InvPos) {
  ExpectTable<KRInvPos>("INVPOS", R"(
    SECID        child       required
    HELDINACCT   word=OTHER  required
    POSTYPE      word=SHORT  required
    UNITS        amount      required
    UNITPRICE    amount      required
    MKTVAL       amount      required
    DTPRICEASOF  date        required
    CURRENCY     child
    MEMO         text255               V1
    MEMO2        text390               V2+
  )");
}

TEST(InvestmentStatementTables, PosDebt) {
  ExpectTable<KRPosDebt>("POSDEBT", R"(
    INVPOS  child  required
  )");
}

TEST(InvestmentStatementTables, PosMF) {
  ExpectTable<KRPosMF>("POSMF", R"(
    INVPOS       child    required
    UNITSSTREET  amount
    UNITSUSER    amount
    REINVDIV     boolean
    REINVCG      boolean
  )");
}

TEST(InvestmentStatementTables, PosOpt) {
  ExpectTable<KRPosOpt>("POSOPT", R"(
    INVPOS   child         required
    SECURED  word=COVERED
  )");
}

TEST(InvestmentStatementTables, PosOther) {
  ExpectTable<KRPosOther>("POSOTHER", R"(
    INVPOS  child  required
  )");
}

TEST(InvestmentStatementTables, PosStock) {
  ExpectTable<KRPosStock>("POSSTOCK", R"(
    INVPOS       child    required
    UNITSSTREET  amount
    UNITSUSER    amount
    REINVDIV     boolean
  )");
}

TEST(InvestmentStatementTables, InvStmtMsgSetV1) {
  ExpectTable<KRInvStmtMsgSetV1>("INVSTMTMSGSETV1", R"(
    MSGSETCORE  child    required
    TRANDNLD    boolean  required
    OODNLD      boolean  required
    POSDNLD     boolean  required
    BALDNLD     boolean  required
    CANEMAIL    boolean  required
  )");
}

TEST(InvestmentStatementTables, InvStmtMsgSetV2) {
  ExpectTable<KRInvStmtMsgSetV2>("INVSTMTMSGSETV2", R"(
    MSGSETCORE  child    required
    TRANDNLD    boolean  required
    OODNLD      boolean  required
    POSDNLD     boolean  required
    BALDNLD     boolean  required
    CANEMAIL    boolean  required
  )",
                                 2);
}

TEST(KRInvStmtRq, AsksForOrDeclinesEachPart) {
  const std::string all = StatementRequestText();
  EXPECT_EQ(IsComplete<KRInvStmtRq>(all, 1), 1);
  const std::string parts[] = {InvAcctText(), Aggregate("INCTRAN", "<INCLUDE>Y"), "<INCOO>Y",
                               Aggregate("INCPOS", "<INCLUDE>Y"), "<INCBAL>N"};
  for (const std::string& part : parts) {
    EXPECT_EQ(IsComplete<KRInvStmtRq>(Without(all, part), 1), 0) << part;
  }
}

TEST(KRInvStmtRs, IsCompleteWithItsDateCurrencyAndAccount) {
  EXPECT_EQ(IsComplete<KRInvStmtRs>("<DTASOF>20260131<CURDEF>USD" + InvAcctText(), 1), 1);
  EXPECT_EQ(IsComplete<KRInvStmtRs>("<CURDEF>USD" + InvAcctText(), 1), 0);
}

TEST(KRPosStock, IsIncompleteWithoutItsPosition) {
  EXPECT_EQ(IsComplete<KRPosStock>("<UNITSUSER>5", 1), 0);
  EXPECT_EQ(IsComplete<KRPosStock>(PositionTexts(1)[4].content, 1), 1);
}

TEST(KRInvPosList, KeepsEachKindAndWritesKindByKind) {
  for (const u16 version : kVersions) {
    SCOPED_TRACE(version);
    ExpectEachCopied<KRInvPosList>(PositionTexts(version), "", version);
    ExpectWrittenByKind<KRInvPosList>(PositionTexts(version), "", version);
  }
}

TEST(KRInvPosList, WritesFundsBeforeStocks) {
  const std::string stock = Aggregate("POSSTOCK", "<UNITSUSER>1");
  const std::string fund = Aggregate("POSMF", "<UNITSUSER>2");
  const std::string laterStock = Aggregate("POSSTOCK", "<UNITSUSER>3");
  const Parsed<KRInvPosList> list(stock + fund + laterStock);
  EXPECT_EQ(TextOf(*list), InLines(fund + stock + laterStock));
}

TEST(KRPosOther, IsNoDebtPosition) {
  KRPosOther position;
  EXPECT_EQ(dynamic_cast<KRPosDebt*>(static_cast<KRDataObj*>(&position)), nullptr);
}

TEST(KRInvBal, WritesTheAmountsBeforeTheBalances) {
  const std::string balances =
      Aggregate("BALLIST", Aggregate("BAL", "<NAME>Margin<DESC>Rate<BALTYPE>PERCENT<VALUE>7.5"));
  const std::string amounts = "<AVAILCASH>1.5<MARGINBALANCE>-20<SHORTBALANCE>0<BUYPOWER>3000";
  const Parsed<KRInvBal> balance(balances + amounts);
  EXPECT_EQ(TextOf(*balance), InLines(amounts + balances));
  EXPECT_EQ(balance->AllRequiredPresent(), 1);
}

TEST(KRInvStmtMsgSetV2, IsTheFirstVersionWithTheVersionSet) {
  KRInvStmtMsgSetV2 set;
  EXPECT_EQ(set.GetMsgSetVersion(), 2);
  EXPECT_NE(dynamic_cast<KRInvStmtMsgSetV1*>(static_cast<KRDataObj*>(&set)), nullptr);
}

}  // namespace
}  // namespace krofx::testing
