// Asks an object by the names of accessors: what it has of them, whatever its class, and what its
// parts have.

#include "krofx/host/investment_transaction_view.h"

#include <type_traits>

#include "krofx/host/currency_text.h"
#include "krofx/host/security_search.h"
#include "krofx/host/transaction_view.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/messages/investment/statement.h"
#include "krofx/messages/investment/transactions.h"

namespace krofx {

using internal::RateOf;
using internal::SymbolOf;
using internal::TextIf;
using OptionalNumber = std::optional<KRPrecisionInteger>;

namespace {

constexpr int kNone = -1;

// All classes of transactions; the place of one among them is its kind.
template <class... Classes>
struct Kinds {
  static int Of(const KRDataObj& object) {
    int kind = 0;
    const bool isOne =
        ((dynamic_cast<const Classes*>(&object) != nullptr || (++kind, false)) || ...);
    return isOne ? kind : kNone;
  }

  template <class Visit>
  static void VisitAs(int kind, const KRDataObj& object, Visit visit) {
    int at = 0;
    (void)((at++ == kind && (visit(static_cast<const Classes&>(object)), true)) || ...);
  }
};
using All = Kinds<KRBuyDebt, KRBuyMF, KRBuyOpt, KRBuyOther, KRBuyStock, KRClosureOpt, KRIncome,
                  KRInvBankTran, KRInvExpense, KRJrnlFund, KRJrnlSec, KRMarginInterest, KRReinvest,
                  KRRetOfCap, KRSellDebt, KRSellMF, KRSellOpt, KRSellOther, KRSellStock, KRSplit,
                  KRTransfer>;

// Stores what an accessor has given.
template <class Result, class Value>
void Put(Result& out, const Value& value) {
  if constexpr (std::is_same_v<Result, std::string_view>) {
    out = ToText(value);
  } else if constexpr (std::is_same_v<Result, std::optional<bool>>) {
    out = value != 0;
  } else {
    out = value;
  }
}

// A look at one element: stores it if the object has it. The type of the result tells whether the
// class can have it.
#define KROFX_LOOK(Name)                            \
  [](const auto& part, auto& out) {                 \
    if constexpr (requires { part.Has##Name(); }) { \
      if (part.Has##Name() == 0) return false;      \
      Put(out, part.Get##Name());                   \
      return true;                                  \
    } else {                                        \
      return std::false_type();                     \
    }                                               \
  }

template <class Look, class Part, class Result>
constexpr bool kCanHave =
    !std::is_same_v<std::invoke_result_t<Look, const Part&, Result&>, std::false_type>;

}  // namespace

InvestmentTransactionView::InvestmentTransactionView(const Found<const KRDataObj>& found,
                                                     const internal::SecurityFinder& securities)
    : m_object(&*found), m_kind(All::Of(*found)), m_securities(securities) {
  if (const auto* const statement = found.Ancestor<KRInvStmtRs>()) {
    m_currency = ToText(statement->GetCurDef());
  }
}

bool InvestmentTransactionView::Shows(const Found<const KRDataObj>& found) {
  return dynamic_cast<const KRInvTranList*>(found.Parent()) != nullptr && All::Of(*found) != kNone;
}

template <class Result, class... Looks>
Result InvestmentTransactionView::Find(Looks... looks) const {
  Result result = {};
  const auto look = [&](const auto& part) { return (looks(part, result) || ...); };
  All::VisitAs(m_kind, *m_object, [&look]<class Kind>(const Kind& transaction) {
    if constexpr ((kCanHave<Looks, Kind, Result> || ...)) {
      if (look(transaction)) return;
    }
    // What purchases have in common, or sales, is one level deeper.
    if constexpr (requires { transaction.GetInvBuy(); }) {
      if (const KRInvBuy* const buy = transaction.GetInvBuy()) look(*buy);
    } else if constexpr (requires { transaction.GetInvSell(); }) {
      if (const KRInvSell* const sell = transaction.GetInvSell()) look(*sell);
    } else if constexpr (requires { transaction.GetStmtTrn(); }) {
      if (const KRBankStatementTx* const money = transaction.GetStmtTrn()) look(*money);
    }
  });
  return result;
}

const KRInvTran* InvestmentTransactionView::Common() const {
  return Find<const KRInvTran*>(KROFX_LOOK(InvTran));
}

const KRSecID* InvestmentTransactionView::SecID() const {
  return Find<const KRSecID*>(KROFX_LOOK(SecID));
}

const KRSecInfo* InvestmentTransactionView::Described() const {
  const KRSecID* const id = SecID();
  return id == nullptr ? nullptr : m_securities.Find(*id);
}

const KRBankStatementTx* InvestmentTransactionView::Money() const {
  return Find<const KRBankStatementTx*>(KROFX_LOOK(StmtTrn));
}

KRDateTime InvestmentTransactionView::Traded() const {
  if (const KRBankStatementTx* const money = Money()) return TransactionView(*money).Posted();
  const KRInvTran* const common = Common();
  return common == nullptr || common->HasDtTrade() == 0 ? KRDateTime() : common->GetDtTrade();
}

KRDateTime InvestmentTransactionView::Settled() const {
  const KRInvTran* const common = Common();
  return common == nullptr || common->HasDtSettle() == 0 ? KRDateTime() : common->GetDtSettle();
}

std::string_view InvestmentTransactionView::Kind() const { return internal::TagOf(m_object); }

std::string_view InvestmentTransactionView::Detail() const {
  return Find<std::string_view>(KROFX_LOOK(BuyType), KROFX_LOOK(SellType), KROFX_LOOK(OptBuyType),
                                KROFX_LOOK(OptSellType), KROFX_LOOK(SellReason),
                                KROFX_LOOK(IncomeType), KROFX_LOOK(OptAction),
                                KROFX_LOOK(TferAction), KROFX_LOOK(TxType));
}

std::string_view InvestmentTransactionView::Security() const {
  const KRSecInfo* const security = Described();
  return security == nullptr ? std::string_view()
                             : TextIf(security->HasSecName(), security->GetSecName());
}

std::string_view InvestmentTransactionView::Ticker() const {
  const KRSecInfo* const security = Described();
  return security == nullptr ? std::string_view()
                             : TextIf(security->HasTicker(), security->GetTicker());
}

std::string_view InvestmentTransactionView::SecurityId() const {
  const KRSecID* const id = SecID();
  return id == nullptr ? std::string_view() : TextIf(id->HasUniqueID(), id->GetUniqueID());
}

std::string_view InvestmentTransactionView::SecurityIdType() const {
  const KRSecID* const id = SecID();
  return id == nullptr ? std::string_view() : TextIf(id->HasUniqueIDType(), id->GetUniqueIDType());
}

OptionalNumber InvestmentTransactionView::Units() const {
  return Find<OptionalNumber>(KROFX_LOOK(Units), KROFX_LOOK(NewUnits));
}

OptionalNumber InvestmentTransactionView::Price() const {
  return Find<OptionalNumber>(KROFX_LOOK(UnitPrice));
}

OptionalNumber InvestmentTransactionView::Total() const {
  return Find<OptionalNumber>(KROFX_LOOK(Total), KROFX_LOOK(TxAmount), KROFX_LOOK(FracCash));
}

std::string_view InvestmentTransactionView::Currency() const {
  const std::string_view own = SymbolOf(Find<const KRCurrency*>(KROFX_LOOK(Currency)));
  return own.empty() ? m_currency : own;
}

OptionalNumber InvestmentTransactionView::Rate() const {
  return RateOf(Find<const KRCurrency*>(KROFX_LOOK(Currency)));
}

std::string_view InvestmentTransactionView::OriginalCurrency() const {
  return SymbolOf(Find<const KRCurrency*>(KROFX_LOOK(OrigCurrency)));
}

OptionalNumber InvestmentTransactionView::OriginalRate() const {
  return RateOf(Find<const KRCurrency*>(KROFX_LOOK(OrigCurrency)));
}

std::string_view InvestmentTransactionView::SecuritySubAccount() const {
  return Find<std::string_view>(KROFX_LOOK(SubAcctSec));
}

std::string_view InvestmentTransactionView::MoneySubAccount() const {
  return Find<std::string_view>(KROFX_LOOK(SubAcctFund));
}

std::string_view InvestmentTransactionView::FromSubAccount() const {
  return Find<std::string_view>(KROFX_LOOK(SubAcctFrom));
}

std::string_view InvestmentTransactionView::ToSubAccount() const {
  return Find<std::string_view>(KROFX_LOOK(SubAcctTo));
}

OptionalNumber InvestmentTransactionView::Commission() const {
  return Find<OptionalNumber>(KROFX_LOOK(Commission));
}

OptionalNumber InvestmentTransactionView::Fees() const {
  return Find<OptionalNumber>(KROFX_LOOK(Fees));
}

OptionalNumber InvestmentTransactionView::Taxes() const {
  return Find<OptionalNumber>(KROFX_LOOK(Taxes));
}

OptionalNumber InvestmentTransactionView::Load() const {
  return Find<OptionalNumber>(KROFX_LOOK(Load));
}

OptionalNumber InvestmentTransactionView::Markup() const {
  return Find<OptionalNumber>(KROFX_LOOK(Markup));
}

OptionalNumber InvestmentTransactionView::Markdown() const {
  return Find<OptionalNumber>(KROFX_LOOK(Markdown));
}

OptionalNumber InvestmentTransactionView::Withholding() const {
  return Find<OptionalNumber>(KROFX_LOOK(Withholding));
}

std::optional<bool> InvestmentTransactionView::IsTaxExempt() const {
  return Find<std::optional<bool>>(KROFX_LOOK(TaxExempt));
}

OptionalNumber InvestmentTransactionView::AccruedInterest() const {
  return Find<OptionalNumber>(KROFX_LOOK(AccrdInt));
}

OptionalNumber InvestmentTransactionView::Gain() const {
  return Find<OptionalNumber>(KROFX_LOOK(Gain));
}

OptionalNumber InvestmentTransactionView::CostBasis() const {
  return Find<OptionalNumber>(KROFX_LOOK(AvgCostBasis));
}

OptionalNumber InvestmentTransactionView::OldUnits() const {
  return Find<OptionalNumber>(KROFX_LOOK(OldUnits));
}

OptionalNumber InvestmentTransactionView::SplitNumerator() const {
  return Find<OptionalNumber>(KROFX_LOOK(Numerator));
}

OptionalNumber InvestmentTransactionView::SplitDenominator() const {
  return Find<OptionalNumber>(KROFX_LOOK(Denominator));
}

std::string_view InvestmentTransactionView::Direction() const {
  return Find<std::string_view>(KROFX_LOOK(PosType));
}

std::optional<s16> InvestmentTransactionView::SharesPerContract() const {
  return Find<std::optional<s16>>(KROFX_LOOK(ShPerCtrct));
}

std::string_view InvestmentTransactionView::Party() const {
  const KRBankStatementTx* const money = Money();
  return money == nullptr ? std::string_view() : TransactionView(*money).Party();
}

std::string_view InvestmentTransactionView::Memo() const {
  if (const KRBankStatementTx* const money = Money()) return TransactionView(*money).Memo();
  const KRInvTran* const common = Common();
  if (common == nullptr) return {};
  if (common->HasMemo() != 0) return ToText(common->GetMemo());
  return TextIf(common->HasMemo2(), common->GetMemo2());
}

std::string_view InvestmentTransactionView::Id() const {
  if (const KRBankStatementTx* const money = Money()) return TransactionView(*money).Id();
  const KRInvTran* const common = Common();
  return common == nullptr ? std::string_view() : TextIf(common->HasFITID(), common->GetFITID());
}

std::string_view InvestmentTransactionView::RelatedId() const {
  return Find<std::string_view>(KROFX_LOOK(RelFITID));
}

std::string_view InvestmentTransactionView::ServerId() const {
  const KRInvTran* const common = Common();
  if (common == nullptr) return {};
  if (common->HasSrvrTID() != 0) return ToText(common->GetSrvrTID());
  return TextIf(common->HasSrvrTID2(), common->GetSrvrTID2());
}

}  // namespace krofx
