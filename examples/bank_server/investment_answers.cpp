// Statements of investment accounts, and the securities in them.

#include "answers.h"

namespace bank_server {
namespace {

KRSecID* MakeSecID(u16 version, const std::string& cusip) {
  KRSecID* made = Factory().NewSecID(version);
  made->SetUniqueID(Text(cusip));
  made->SetUniqueIDType("CUSIP");
  return made;
}

KRInvTran* MakeHead(u16 version, const Trade& trade) {
  KRInvTran* made = Factory().NewInvTran(version);
  made->SetFITID(Text(trade.id));
  made->SetDtTrade(Text(trade.day));
  if (!trade.memo.empty()) {
    made->SetMemo(Text(trade.memo));
    made->SetMemo2(Text(trade.memo));
  }
  return made;
}

// The parts that purchases and sales share.
template <class Order>
Order* FillOrder(Order* made, u16 version, const Trade& trade) {
  made->SetInvTran(MakeHead(version, trade));
  made->SetSecID(MakeSecID(version, trade.security));
  made->SetUnits(Text(trade.units));
  made->SetUnitPrice(Text(trade.price));
  if (!trade.commission.empty()) made->SetCommission(Text(trade.commission));
  made->SetTotal(Text(trade.total));
  made->SetSubAcctSec(KRSubAcct_CASH);
  made->SetSubAcctFund(KRSubAcct_CASH);
  return made;
}

KRInvBuy* MakeBuy(u16 version, const Trade& trade) {
  return FillOrder(Factory().NewInvBuy(version), version, trade);
}

void AppendTrade(KRInvTranList& list, const Trade& trade) {
  const u16 version = list.GetMsgSetVersion();
  switch (trade.kind) {
    case TradeKind::kBuyStock: {
      KRBuyStock* made = Factory().NewBuyStock(version);
      made->SetInvBuy(MakeBuy(version, trade));
      made->SetBuyType(KRBuyType_BUY);
      list.AppendBuyStock(made);
      break;
    }
    case TradeKind::kSellStock: {
      KRSellStock* made = Factory().NewSellStock(version);
      made->SetInvSell(FillOrder(Factory().NewInvSell(version), version, trade));
      made->SetSellType(KRSellType_SELL);
      list.AppendSellStock(made);
      break;
    }
    case TradeKind::kBuyFund: {
      KRBuyMF* made = Factory().NewBuyMF(version);
      made->SetInvBuy(MakeBuy(version, trade));
      made->SetBuyType(KRBuyType_BUY);
      list.AppendBuyMF(made);
      break;
    }
    case TradeKind::kDividend: {
      KRIncome* made = Factory().NewIncome(version);
      made->SetInvTran(MakeHead(version, trade));
      made->SetSecID(MakeSecID(version, trade.security));
      made->SetIncomeType(KRIncomeType_DIV);
      made->SetTotal(Text(trade.total));
      made->SetSubAcctSec(KRSubAcct_CASH);
      made->SetSubAcctFund(KRSubAcct_CASH);
      list.AppendIncome(made);
      break;
    }
    case TradeKind::kDeposit: {
      KRBankStatementTx* booking = Factory().NewBankStatementTx(version);
      booking->SetTxType(KRBankTxType_DEP);
      booking->SetDateTimePosted(Text(trade.day));
      booking->SetTxAmount(Text(trade.total));
      booking->SetFITId(Text(trade.id));
      booking->SetName(Text(trade.memo));
      KRInvBankTran* made = Factory().NewInvBankTran(version);
      made->SetStmtTrn(booking);
      made->SetSubAcctFund(KRSubAcct_CASH);
      list.AppendInvBankTran(made);
      break;
    }
  }
}

KRSecInfo* MakeSecInfo(u16 version, const Security& security) {
  KRSecInfo* made = Factory().NewSecInfo(version);
  made->SetSecID(MakeSecID(version, security.cusip));
  made->SetSecName(Text(security.name));
  made->SetTicker(Text(security.ticker));
  made->SetUnitPrice(Text(security.price));
  made->SetDtAsOf(Text(security.day));
  return made;
}

}  // namespace

KRInvTranList* MakeTrades(u16 version, const InvestmentAccount& account, const Days& days) {
  KRInvTranList* list = Factory().NewInvTranList(version);
  list->SetDtStart(days.start);
  list->SetDtEnd(days.end);
  for (const Trade& trade : account.trades) {
    if (days.Contain(trade.day)) AppendTrade(*list, trade);
  }
  return list;
}

KRInvPosList* MakePositions(u16 version, const InvestmentAccount& account, const Bank& bank) {
  KRInvPosList* list = Factory().NewInvPosList(version);
  for (const Holding& holding : account.holdings) {
    const Security& security = *bank.FindSecurity(holding.security);
    KRInvPos* position = Factory().NewInvPos(version);
    position->SetSecID(MakeSecID(version, holding.security));
    position->SetHeldInAcct(KRSubAcct_CASH);
    position->SetPosType(KRPosType_LONG);
    position->SetUnits(Text(holding.units));
    position->SetUnitPrice(Text(holding.price));
    position->SetMktVal(Text(holding.value));
    position->SetDtPriceAsOf(Text(security.day));
    if (security.isFund) {
      KRPosMF* made = Factory().NewPosMF(version);
      made->SetInvPos(position);
      list->AppendPosMF(made);
    } else {
      KRPosStock* made = Factory().NewPosStock(version);
      made->SetInvPos(position);
      list->AppendPosStock(made);
    }
  }
  return list;
}

KRInvBal* MakeInvestmentBalance(u16 version, const InvestmentAccount& account) {
  KRInvBal* made = Factory().NewInvBal(version);
  made->SetAvailCash(Text(account.cash));
  made->SetMarginBalance("0");
  made->SetShortBalance("0");
  return made;
}

KRSecList* MakeSecurities(u16 version, const Bank& bank, const std::set<std::string>& cusips) {
  KRSecList* list = Factory().NewSecList(version);
  for (const std::string& cusip : cusips) {
    const Security& security = *bank.FindSecurity(cusip);
    if (security.isFund) {
      KRMFInfo* made = Factory().NewMFInfo(version);
      made->SetSecInfo(MakeSecInfo(version, security));
      made->SetMFType(KRMFType_OPENEND);
      list->AppendMFInfo(made);
    } else {
      KRStockInfo* made = Factory().NewStockInfo(version);
      made->SetSecInfo(MakeSecInfo(version, security));
      made->SetStockType(KRStockType_COMMON);
      list->AppendStockInfo(made);
    }
  }
  return list;
}

}  // namespace bank_server
