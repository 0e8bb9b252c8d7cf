// A transaction of an investment statement, of whatever kind.

#ifndef KROFX_HOST_INVESTMENT_TRANSACTION_VIEW_H_
#define KROFX_HOST_INVESTMENT_TRANSACTION_VIEW_H_

#include <optional>
#include <string_view>

#include "krofx/core/export.h"
#include "krofx/core/types.h"
#include "krofx/host/view_range.h"
#include "krofx/model/data_object.h"
#include "krofx/values/date_time.h"
#include "krofx/values/precision_integer.h"

class KRBankStatementTx;
class KRInvTran;
class KRSecID;
class KRSecInfo;

namespace krofx {

/// Shows a transaction in an INVTRANLIST: a purchase, a sale, income, a transfer, a split and so
/// on, also one of the money in the account. Each thing is looked for in all elements that can say
/// it. It refers to the objects, which must outlive it and its texts. What is absent, or what such
/// a transaction does not have, is empty, as in a TransactionView.
class KROFX_API InvestmentTransactionView {
 public:
  /// Of one that was found in a tree.
  /// @param securities those of the file.
  InvestmentTransactionView(const Found<const KRDataObj>& found,
                            const internal::SecurityFinder& securities);
  /// @return whether an object is a transaction in an INVTRANLIST.
  static bool Shows(const Found<const KRDataObj>& found);

  /// @return the day of the trade (DTTRADE); of a transaction of the money, that on which it was
  ///         posted.
  KRDateTime Traded() const;
  /// @return when securities and money changed hands (DTSETTLE).
  KRDateTime Settled() const;
  /// @return the tag of its kind, such as "BUYSTOCK".
  std::string_view Kind() const;
  /// @return what the kind says in addition, such as "BUY", "DIV", "EXPIRE" or "IN"; of a
  ///         transaction of the money, its TRNTYPE.
  std::string_view Detail() const;
  /// @return the name of the security, and its ticker; empty when the file does not describe it.
  std::string_view Security() const;
  std::string_view Ticker() const;
  /// @return the ID of the security, and of which numbering it is, such as "CUSIP".
  std::string_view SecurityId() const;
  std::string_view SecurityIdType() const;
  /// @return the units, negative for those that go out; of a split, the units after it.
  std::optional<KRPrecisionInteger> Units() const;
  std::optional<KRPrecisionInteger> Price() const;
  /// @return the money that moves (TOTAL), negative for what goes out; of a transaction of the
  ///         money, its amount; of a split, the cash for fractions.
  std::optional<KRPrecisionInteger> Total() const;
  /// @return the currency of the amounts: that of CURRENCY, or else the statement's.
  std::string_view Currency() const;
  /// @return the rate of CURRENCY.
  std::optional<KRPrecisionInteger> Rate() const;
  /// @return the currency that the amounts were converted from (ORIGCURRENCY), and the rate.
  std::string_view OriginalCurrency() const;
  std::optional<KRPrecisionInteger> OriginalRate() const;
  /// @return which part of the account has the securities, and which the money: "CASH", "MARGIN"
  ///         and so on.
  std::string_view SecuritySubAccount() const;
  std::string_view MoneySubAccount() const;
  /// @return of journal entries: the parts of the account between which they move.
  std::string_view FromSubAccount() const;
  std::string_view ToSubAccount() const;
  /// @return what is in the total beside units and price.
  std::optional<KRPrecisionInteger> Commission() const;
  std::optional<KRPrecisionInteger> Fees() const;
  std::optional<KRPrecisionInteger> Taxes() const;
  std::optional<KRPrecisionInteger> Load() const;
  std::optional<KRPrecisionInteger> Markup() const;
  std::optional<KRPrecisionInteger> Markdown() const;
  std::optional<KRPrecisionInteger> Withholding() const;
  std::optional<bool> IsTaxExempt() const;
  /// @return of debt: the interest since the last coupon (ACCRDINT).
  std::optional<KRPrecisionInteger> AccruedInterest() const;
  /// @return of sales and closures: the gain, and the average cost of a unit (AVGCOSTBASIS).
  std::optional<KRPrecisionInteger> Gain() const;
  std::optional<KRPrecisionInteger> CostBasis() const;
  /// @return of splits: the units before it, and the ratio.
  std::optional<KRPrecisionInteger> OldUnits() const;
  std::optional<KRPrecisionInteger> SplitNumerator() const;
  std::optional<KRPrecisionInteger> SplitDenominator() const;
  /// @return of transfers: "LONG" or "SHORT" (POSTYPE).
  std::string_view Direction() const;
  /// @return the shares that a contract of an option is for.
  std::optional<s16> SharesPerContract() const;
  /// @return of a transaction of the money: the other party.
  std::string_view Party() const;
  /// @return MEMO or MEMO2.
  std::string_view Memo() const;
  /// @return the institution's ID (FITID), and that of a transaction that belongs to it (RELFITID).
  std::string_view Id() const;
  std::string_view RelatedId() const;
  /// @return SRVRTID or SRVRTID2.
  std::string_view ServerId() const;
  /// @return the transaction of a bank in an INVBANKTRAN; null for every other kind.
  const KRBankStatementTx* Money() const;
  /// @return the object itself, such as a KRBuyStock.
  const KRDataObj& Get() const { return *m_object; }

 private:
  // What the first of some accessors gives whose element is present; empty when none is.
  template <class Result, class... Looks>
  Result Find(Looks... looks) const;
  const KRInvTran* Common() const;
  const KRSecID* SecID() const;
  const KRSecInfo* Described() const;

  const KRDataObj* m_object;
  int m_kind;
  std::string_view m_currency;
  internal::SecurityFinder m_securities;
};

/// @return all transactions of investment statements in `source`: a KRDataObj, by reference or
///         pointer, or a Reading. Names of securities are looked up in the same source.
template <class Source>
ViewRange<InvestmentTransactionView, KRDataObj> InvestmentTransactions(Source&& source) {
  const internal::TreeSource trees = internal::SourceOf(std::forward<Source>(source));
  return {trees, internal::SecurityFinder(trees)};
}

}  // namespace krofx

#endif  // KROFX_HOST_INVESTMENT_TRANSACTION_VIEW_H_
