// An account of any kind.

#ifndef KROFX_HOST_ACCOUNT_VIEW_H_
#define KROFX_HOST_ACCOUNT_VIEW_H_

#include <string_view>

#include "krofx/core/export.h"

class KRAccount;

namespace krofx {

/// Shows an account of a bank, a card or a broker. It refers to the object, which must outlive it
/// and its texts; what is absent is empty. Texts are in the character set of the file: see
/// OfxText::ToUtf8.
class KROFX_API AccountView {
 public:
  /// Of an account; null is none.
  explicit AccountView(const KRAccount* account) : m_account(account) {}

  /// @return whether there is an account.
  explicit operator bool() const { return m_account != nullptr; }
  /// @return the number of the bank (BANKID), or the name of the broker (BROKERID); empty for a
  ///         card.
  std::string_view Institution() const;
  /// @return BRANCHID.
  std::string_view Branch() const;
  /// @return the number of the account or card (ACCTID).
  std::string_view Number() const;
  /// @return "CHECKING", "SAVINGS" and so on (ACCTTYPE, ACCTTYPE2); empty for cards and brokers.
  std::string_view Type() const;
  /// @return ACCTKEY.
  std::string_view Key() const;
  bool IsCard() const;
  bool IsInvestment() const;
  /// @return the object itself; null when there is no account.
  const KRAccount* Get() const { return m_account; }

 private:
  const KRAccount* m_account;
};

}  // namespace krofx

#endif  // KROFX_HOST_ACCOUNT_VIEW_H_
