// A transaction of a statement, whichever version it is written in.

#ifndef KROFX_HOST_TRANSACTION_VIEW_H_
#define KROFX_HOST_TRANSACTION_VIEW_H_

#include <optional>
#include <string_view>

#include "krofx/core/export.h"
#include "krofx/host/account_view.h"
#include "krofx/host/view_range.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/values/date_time.h"
#include "krofx/values/precision_integer.h"

namespace krofx {

/// Shows a KRBankStatementTx by what it says, whichever of several elements says it. It refers to
/// the object, which must outlive it and its texts. What is absent is empty: a text, an optional, a
/// date that is not valid (ToDay gives nothing). Texts are in the character set of the file: see
/// OfxText::ToUtf8.
class KROFX_API TransactionView {
 public:
  /// Of a transaction alone.
  /// @param currency what Currency gives when the transaction does not say: its statement's.
  explicit TransactionView(const KRBankStatementTx& transaction, std::string_view currency = {})
      : m_transaction(&transaction), m_currency(currency) {}
  /// Of one that was found in a tree: it has the currency of its statement.
  TransactionView(const Found<const KRBankStatementTx>& found, const internal::SecurityFinder&);
  static bool Shows(const KRBankStatementTx&) { return true; }

  /// @return when it was posted (DTPOSTED).
  KRDateTime Posted() const;
  /// @return when the user did it (DTUSER), and when the money is available (DTAVAIL).
  KRDateTime UserDate() const;
  KRDateTime Available() const;
  /// @return the TRNTYPE, such as "DEBIT".
  std::string_view Type() const;
  /// @return the TRNAMT, negative for money that goes out.
  std::optional<KRPrecisionInteger> Amount() const;
  /// @return the currency of the amount: that of CURRENCY, or else its statement's.
  std::string_view Currency() const;
  /// @return the rate of CURRENCY.
  std::optional<KRPrecisionInteger> Rate() const;
  /// @return the currency that the amount was converted from (ORIGCURRENCY), and the rate.
  std::string_view OriginalCurrency() const;
  std::optional<KRPrecisionInteger> OriginalRate() const;
  /// @return CHECKNUM.
  std::string_view Check() const;
  /// @return the other party: NAME, or the name in PAYEE or PAYEE2.
  std::string_view Party() const;
  /// @return the city of the payee.
  std::string_view City() const;
  /// @return MEMO or MEMO2.
  std::string_view Memo() const;
  /// @return the institution's ID (FITID): the same transaction has it in every statement of the
  ///         account.
  std::string_view Id() const;
  /// @return "REPLACE" or "DELETE" (CORRECTACTION), and the ID of what it corrects.
  std::string_view Correction() const;
  std::string_view Corrects() const;
  /// @return SRVRTID or SRVRTID2.
  std::string_view ServerId() const;
  /// @return REFNUM, SIC, and PAYEEID or PAYEEID2.
  std::string_view Reference() const;
  std::string_view IndustryCode() const;
  std::string_view PayeeId() const;
  /// @return the account that the money went to.
  AccountView ToAccount() const;
  /// @return the object itself.
  const KRBankStatementTx& Get() const { return *m_transaction; }

 private:
  const KRPayee* Payee() const;

  const KRBankStatementTx* m_transaction;
  std::string_view m_currency;
};

/// @return all transactions of bank and card statements in `source`, also those among an investment
///         statement's: a KRDataObj, by reference or pointer, or a Reading.
template <class Source>
ViewRange<TransactionView, KRBankStatementTx> Transactions(Source&& source) {
  const internal::TreeSource trees = internal::SourceOf(std::forward<Source>(source));
  return {trees, internal::SecurityFinder()};
}

}  // namespace krofx

#endif  // KROFX_HOST_TRANSACTION_VIEW_H_
