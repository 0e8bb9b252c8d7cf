// A position of an investment statement, with the name of its security.

#ifndef KROFX_HOST_POSITION_VIEW_H_
#define KROFX_HOST_POSITION_VIEW_H_

#include <optional>
#include <string_view>

#include "krofx/core/export.h"
#include "krofx/host/view_range.h"
#include "krofx/messages/investment/statement.h"
#include "krofx/values/date_time.h"
#include "krofx/values/precision_integer.h"

class KRSecInfo;

namespace krofx {

/// Shows a position of any kind: what is in its INVPOS, in the aggregate around that, and in the
/// file's security list. It refers to the objects, which must outlive it and its texts. What is
/// absent is empty, as in a TransactionView.
class KROFX_API PositionView {
 public:
  /// Of one that was found in a tree.
  /// @param securities those of the file.
  PositionView(const Found<const KRInvPos>& found, const internal::SecurityFinder& securities);
  static bool Shows(const KRInvPos&) { return true; }

  /// @return the tag of its kind, such as "POSSTOCK".
  std::string_view Kind() const;
  /// @return the name of the security, and its ticker; empty when the file does not describe it.
  std::string_view Security() const;
  std::string_view Ticker() const;
  /// @return the ID of the security, and of which numbering it is, such as "CUSIP".
  std::string_view SecurityId() const;
  std::string_view SecurityIdType() const;
  /// @return "LONG" or "SHORT" (POSTYPE).
  std::string_view Direction() const;
  /// @return "CASH", "MARGIN" and so on (HELDINACCT).
  std::string_view SubAccount() const;
  std::optional<KRPrecisionInteger> Units() const;
  std::optional<KRPrecisionInteger> Price() const;
  /// @return the market value (MKTVAL).
  std::optional<KRPrecisionInteger> Value() const;
  /// @return when the price was that (DTPRICEASOF).
  KRDateTime PriceDate() const;
  /// @return the currency of price and value: that of CURRENCY, or else the statement's.
  std::string_view Currency() const;
  std::optional<KRPrecisionInteger> Rate() const;
  /// @return MEMO or MEMO2.
  std::string_view Memo() const;
  /// @return of stocks and funds: units in the street's and in the user's name.
  std::optional<KRPrecisionInteger> UnitsStreet() const;
  std::optional<KRPrecisionInteger> UnitsUser() const;
  /// @return of stocks and funds: whether dividends are reinvested; of funds: whether gains are.
  std::optional<bool> ReinvestDividends() const;
  std::optional<bool> ReinvestGains() const;
  /// @return of options: "NAKED" or "COVERED".
  std::string_view Secured() const;
  /// @return the object itself.
  const KRInvPos& Get() const { return *m_position; }

 private:
  const KRInvPos* m_position;
  const KRDataObj* m_around;
  const KRSecInfo* m_security = nullptr;
  std::string_view m_currency;
};

/// @return all positions in `source`: a KRDataObj, by reference or pointer, or a Reading. Names of
///         securities are looked up in the same source.
template <class Source>
ViewRange<PositionView, KRInvPos> Positions(Source&& source) {
  const internal::TreeSource trees = internal::SourceOf(std::forward<Source>(source));
  return {trees, internal::SecurityFinder(trees)};
}

}  // namespace krofx

#endif  // KROFX_HOST_POSITION_VIEW_H_
