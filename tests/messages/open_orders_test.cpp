// Open orders: the tables of the eleven kinds, their list, its order of writing, and deep copies.

#include "krofx/messages/investment/orders.h"

#include <gtest/gtest.h>

#include "krofx/messages/investment/securities.h"
#include "messages/investment_texts.h"
#include "support/aggregate_table.h"

namespace krofx::testing {
namespace {

TEST(OpenOrderTables, InvOOList) {
  ExpectTable<KRInvOOList>("INVOOLIST", R"(
    OOBUYDEBT    children
    OOBUYMF      children
    OOBUYOPT     children
    OOBUYOTHER   children
    OOBUYSTOCK   children
    OOSELLDEBT   children
    OOSELLMF     children
    OOSELLOPT    children
    OOSELLOTHER  children
    OOSELLSTOCK  children
    OOSWITCHMF   children
  )");
}

TEST(OpenOrderTables, OO) {
  ExpectTable<KROO>("OO", R"(
    FITID        text255         required
    SRVRTID      text36                    V1
    SRVRTID2     text36                    V2+
    SECID        child           required
    DTPLACED     date            required
    UNITS        amount          required
    SUBACCT      word=OTHER      required
    DURATION     word=IMMEDIATE  required
    RESTRICTION  word=NONE       required
    MINUNITS     amount
    LIMITPRICE   amount
    STOPPRICE    amount
    MEMO         text255                   V1
    MEMO2        text390                   V2+
    CURRENCY     child
  )");
}

TEST(OpenOrderTables, OOBuyDebt) {
  ExpectTable<KROOBuyDebt>("OOBUYDEBT", R"(
    OO         child    required
    AUCTION    boolean  required
    DTAUCTION  date
  )");
}

TEST(OpenOrderTables, OOBuyMF) {
  ExpectTable<KROOBuyMF>("OOBUYMF", R"(
    OO        child            required
    BUYTYPE   word=BUYTOCOVER  required
    UNITTYPE  word=CURRENCY    required
  )");
}

TEST(OpenOrderTables, OOBuyOpt) {
  ExpectTable<KROOBuyOpt>("OOBUYOPT", R"(
    OO          child            required
    OPTBUYTYPE  word=BUYTOCLOSE  required
  )");
}

TEST(OpenOrderTables, OOBuyOther) {
  ExpectTable<KROOBuyOther>("OOBUYOTHER", R"(
    OO        child          required
    UNITTYPE  word=CURRENCY  required
  )");
}

TEST(OpenOrderTables, OOBuyStock) {
  ExpectTable<KROOBuyStock>("OOBUYSTOCK", R"(
    OO       child            required
    BUYTYPE  word=BUYTOCOVER  required
  )");
}

TEST(OpenOrderTables, OOSellDebt) {
  ExpectTable<KROOSellDebt>("OOSELLDEBT", R"(
    OO  child  required
  )");
}

TEST(OpenOrderTables, OOSellMF) {
  ExpectTable<KROOSellMF>("OOSELLMF", R"(
    OO        child           required
    SELLTYPE  word=SELLSHORT  required
    UNITTYPE  word=CURRENCY   required
    SELLALL   boolean         required
  )");
}

TEST(OpenOrderTables, OOSellOpt) {
  ExpectTable<KROOSellOpt>("OOSELLOPT", R"(
    OO           child             required
    OPTSELLTYPE  word=SELLTOCLOSE  required
  )");
}

TEST(OpenOrderTables, OOSellOther) {
  ExpectTable<KROOSellOther>("OOSELLOTHER", R"(
    OO        child          required
    UNITTYPE  word=CURRENCY  required
  )");
}

TEST(OpenOrderTables, OOSellStock) {
  ExpectTable<KROOSellStock>("OOSELLSTOCK", R"(
    OO        child           required
    SELLTYPE  word=SELLSHORT  required
  )");
}

TEST(OpenOrderTables, OOSwitchMF) {
  ExpectTable<KROOSwitchMF>("OOSWITCHMF", R"(
    OO         child          required
    SECID      child          required
    UNITTYPE   word=CURRENCY  required
    SWITCHALL  boolean        required
  )");
}

TEST(KRInvOOList, IsCompleteWithNoOrders) { EXPECT_EQ(IsComplete<KRInvOOList>("", 1), 1); }

TEST(KRInvOOList, KeepsEachKindAndWritesKindByKind) {
  for (const u16 version : kVersions) {
    SCOPED_TRACE(version);
    ASSERT_EQ(OrderTexts(version).size(), 11u);
    ExpectEachCopied<KRInvOOList>(OrderTexts(version), "", version);
    ExpectWrittenByKind<KRInvOOList>(OrderTexts(version), "", version);
  }
}

TEST(KROOBuyDebt, RequiresTheAuctionButNotItsDate) {
  const std::string all = OrderTexts(1)[0].content;
  EXPECT_EQ(IsComplete<KROOBuyDebt>(all, 1), 1);
  EXPECT_EQ(IsComplete<KROOBuyDebt>(Without(all, "<DTAUCTION>20260210"), 1), 1);
  EXPECT_EQ(IsComplete<KROOBuyDebt>(Without(all, "<AUCTION>Y"), 1), 0);
}

TEST(KROOSwitchMF, NeedsAFundToSwitchToBesideThatOfTheOrder) {
  const std::string all = OrderTexts(1)[10].content;
  EXPECT_EQ(IsComplete<KROOSwitchMF>(all, 1), 1);
  EXPECT_EQ(IsComplete<KROOSwitchMF>(Without(all, SecIdText("500000007")), 1), 0);
  const Parsed<KROOSwitchMF> order(all);
  EXPECT_STREQ(order->GetOO()->GetSecID()->GetUniqueID(), "931142103");
  EXPECT_STREQ(order->GetSecID()->GetUniqueID(), "500000007");
}

TEST(KROOSwitchMF, RequiresToBeToldWhetherAllIsSwitched) {
  EXPECT_EQ(IsComplete<KROOSwitchMF>(Without(OrderTexts(1)[10].content, "<SWITCHALL>Y"), 1), 0);
  EXPECT_EQ(IsComplete<KROOSellMF>(Without(OrderTexts(1)[6].content, "<SELLALL>N"), 1), 0);
}

TEST(KROOSellOther, IsNoOrderToBuy) {
  KROOSellOther order;
  EXPECT_EQ(dynamic_cast<KROOBuyOther*>(static_cast<KRDataObj*>(&order)), nullptr);
}

}  // namespace
}  // namespace krofx::testing
