// Asks the one of two classes of statements that there is.

#include "krofx/host/statement_view.h"

#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/investment/statement.h"
#include "krofx/messages/investment/transactions.h"

namespace krofx {

using internal::TextIf;
using OptionalAmount = std::optional<KRPrecisionInteger>;

namespace {

OptionalAmount AmountOf(const KRBankBalance* balance) {
  if (balance == nullptr || balance->HasBalAmt() == 0) return std::nullopt;
  return balance->GetBalAmt();
}

KRDateTime DateOf(const KRBankBalance* balance) {
  return balance == nullptr || balance->HasDtAsOf() == 0 ? KRDateTime() : balance->GetDtAsOf();
}

template <class List>
KRDateTime StartOf(const List* list) {
  return list == nullptr || list->HasDtStart() == 0 ? KRDateTime() : list->GetDtStart();
}

template <class List>
KRDateTime EndOf(const List* list) {
  return list == nullptr || list->HasDtEnd() == 0 ? KRDateTime() : list->GetDtEnd();
}

// One amount of the balances of an investment statement.
OptionalAmount AmountIn(const KRInvStmtRs* statement, u16 (KRInvBal::*has)() const,
                        KRPrecisionInteger (KRInvBal::*get)() const) {
  const KRInvBal* const balances = statement == nullptr ? nullptr : statement->GetInvBal();
  if (balances == nullptr || (balances->*has)() == 0) return std::nullopt;
  return (balances->*get)();
}

}  // namespace

StatementView::StatementView(const KRGenericStatementRs& statement) : m_money(&statement) {}

StatementView::StatementView(const KRInvStmtRs& statement) : m_investments(&statement) {}

StatementView::StatementView(const Found<const KRTransBase>& found,
                             const internal::SecurityFinder& securities)
    : m_money(dynamic_cast<const KRGenericStatementRs*>(&*found)),
      m_investments(dynamic_cast<const KRInvStmtRs*>(&*found)),
      m_securities(securities) {}

bool StatementView::Shows(const KRTransBase& payload) {
  return dynamic_cast<const KRGenericStatementRs*>(&payload) != nullptr ||
         dynamic_cast<const KRInvStmtRs*>(&payload) != nullptr;
}

const KRTransBase& StatementView::Get() const {
  if (m_money != nullptr) return *m_money;
  return *m_investments;
}

AccountView StatementView::Account() const {
  return AccountView(m_money != nullptr ? m_money->GetAccount() : m_investments->GetInvAcctFrom());
}

std::string_view StatementView::Currency() const {
  return m_money != nullptr
             ? TextIf(m_money->ValidateTag(KRTag_CURDEF), m_money->GetCurrencyDefault())
             : TextIf(m_investments->HasCurDef(), m_investments->GetCurDef());
}

KRDateTime StatementView::From() const {
  return m_money != nullptr ? StartOf(m_money->GetBankTranList())
                            : StartOf(m_investments->GetInvTranList());
}

KRDateTime StatementView::To() const {
  return m_money != nullptr ? EndOf(m_money->GetBankTranList())
                            : EndOf(m_investments->GetInvTranList());
}

OptionalAmount StatementView::Balance() const {
  return m_money == nullptr ? std::nullopt : AmountOf(m_money->GetLedgerBal());
}

KRDateTime StatementView::BalanceDate() const {
  return m_money == nullptr ? KRDateTime() : DateOf(m_money->GetLedgerBal());
}

OptionalAmount StatementView::Available() const {
  return m_money == nullptr ? std::nullopt : AmountOf(m_money->GetAvailBal());
}

KRDateTime StatementView::AvailableDate() const {
  return m_money == nullptr ? KRDateTime() : DateOf(m_money->GetAvailBal());
}

KRDateTime StatementView::AsOf() const {
  return m_investments == nullptr || m_investments->HasDtAsOf() == 0 ? KRDateTime()
                                                                     : m_investments->GetDtAsOf();
}

OptionalAmount StatementView::AvailableCash() const {
  return AmountIn(m_investments, &KRInvBal::HasAvailCash, &KRInvBal::GetAvailCash);
}

OptionalAmount StatementView::MarginBalance() const {
  return AmountIn(m_investments, &KRInvBal::HasMarginBalance, &KRInvBal::GetMarginBalance);
}

OptionalAmount StatementView::ShortBalance() const {
  return AmountIn(m_investments, &KRInvBal::HasShortBalance, &KRInvBal::GetShortBalance);
}

OptionalAmount StatementView::BuyingPower() const {
  return AmountIn(m_investments, &KRInvBal::HasBuyPower, &KRInvBal::GetBuyPower);
}

std::string_view StatementView::Note() const {
  return m_money != nullptr
             ? TextIf(m_money->ValidateTag(KRTag_MKTGINFO), m_money->GetMarketingInfo())
             : TextIf(m_investments->HasMktgInfo(), m_investments->GetMktgInfo());
}

ViewRange<TransactionView, KRBankStatementTx> StatementView::Transactions() const {
  return {internal::TreeSource(&Get()), internal::SecurityFinder()};
}

ViewRange<InvestmentTransactionView, KRDataObj> StatementView::InvestmentTransactions() const {
  return {internal::TreeSource(&Get()), m_securities};
}

ViewRange<PositionView, KRInvPos> StatementView::Positions() const {
  return {internal::TreeSource(&Get()), m_securities};
}

}  // namespace krofx
