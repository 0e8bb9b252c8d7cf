// A statement of any kind of account.

#ifndef KROFX_HOST_STATEMENT_VIEW_H_
#define KROFX_HOST_STATEMENT_VIEW_H_

#include <optional>
#include <string_view>

#include "krofx/core/export.h"
#include "krofx/host/account_view.h"
#include "krofx/host/investment_transaction_view.h"
#include "krofx/host/position_view.h"
#include "krofx/host/transaction_view.h"

class KRGenericStatementRs;
class KRInvStmtRs;

namespace krofx {

/// Shows a statement of a bank account, a card or an investment account. It refers to the object,
/// which must outlive it and its texts. What is absent is empty, as in a TransactionView.
class KROFX_API StatementView {
 public:
  explicit StatementView(const KRGenericStatementRs& statement);
  explicit StatementView(const KRInvStmtRs& statement);
  /// Of one that was found in a tree.
  /// @param securities those of the file.
  StatementView(const Found<const KRTransBase>& found, const internal::SecurityFinder& securities);
  /// @return whether a payload is a statement.
  static bool Shows(const KRTransBase& payload);

  AccountView Account() const;
  /// @return the default currency (CURDEF).
  std::string_view Currency() const;
  /// @return the days that the transactions are of.
  KRDateTime From() const;
  KRDateTime To() const;
  /// @return the ledger and the available balance, and when they were that.
  std::optional<KRPrecisionInteger> Balance() const;
  KRDateTime BalanceDate() const;
  std::optional<KRPrecisionInteger> Available() const;
  KRDateTime AvailableDate() const;
  /// @return of investments: when the statement was right, and the money (INVBAL).
  KRDateTime AsOf() const;
  std::optional<KRPrecisionInteger> AvailableCash() const;
  std::optional<KRPrecisionInteger> MarginBalance() const;
  std::optional<KRPrecisionInteger> ShortBalance() const;
  std::optional<KRPrecisionInteger> BuyingPower() const;
  /// @return what the institution has to say (MKTGINFO).
  std::string_view Note() const;
  /// @return the transactions of a bank or card account; of investments those of the money.
  ViewRange<TransactionView, KRBankStatementTx> Transactions() const;
  /// @return all transactions of an investment account, those of the money included, which
  ///         Transactions gives too; none of a bank account or card.
  ViewRange<InvestmentTransactionView, KRDataObj> InvestmentTransactions() const;
  /// @return the positions; none of a bank account or card.
  ViewRange<PositionView, KRInvPos> Positions() const;
  /// @return the object itself, a KRGenericStatementRs or a KRInvStmtRs.
  const KRTransBase& Get() const;

 private:
  const KRGenericStatementRs* m_money = nullptr;
  const KRInvStmtRs* m_investments = nullptr;
  internal::SecurityFinder m_securities;
};

/// @return all statements in `source`: a KRDataObj, by reference or pointer, or a Reading.
template <class Source>
ViewRange<StatementView, KRTransBase> Statements(Source&& source) {
  const internal::TreeSource trees = internal::SourceOf(std::forward<Source>(source));
  return {trees, internal::SecurityFinder(trees)};
}

}  // namespace krofx

#endif  // KROFX_HOST_STATEMENT_VIEW_H_
