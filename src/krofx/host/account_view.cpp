// Asks the class of an account what only that has.

#include "krofx/host/account_view.h"

#include "krofx/host/view_range.h"
#include "krofx/messages/banking/accounts.h"

namespace krofx {

using internal::TextIf;

std::string_view AccountView::Institution() const {
  if (const auto* const bank = dynamic_cast<const KRBankAccount*>(m_account)) {
    return TextIf(bank->HasBankID(), bank->GetBankID());
  }
  const auto* const broker = dynamic_cast<const KRInvAcctFrom*>(m_account);
  return broker == nullptr ? std::string_view()
                           : TextIf(broker->HasBrokerID(), broker->GetBrokerID());
}

std::string_view AccountView::Branch() const {
  const auto* const bank = dynamic_cast<const KRBankAccount*>(m_account);
  return bank == nullptr ? std::string_view() : TextIf(bank->HasBranchID(), bank->GetBranchID());
}

std::string_view AccountView::Number() const {
  if (m_account == nullptr) return {};
  return TextIf(m_account->HasAccountID(), m_account->GetAccountID());
}

std::string_view AccountView::Type() const {
  const auto* const bank = dynamic_cast<const KRBankAccount*>(m_account);
  if (bank == nullptr) return {};
  if (bank->HasAccountType() != 0) return ToText(bank->GetAccountType());
  return bank->HasAccountType2() != 0 ? ToText(bank->GetAccountType2()) : std::string_view();
}

std::string_view AccountView::Key() const {
  const auto* const account = dynamic_cast<const KRBankOrCCAccount*>(m_account);
  return account == nullptr ? std::string_view()
                            : TextIf(account->HasAccountKey(), account->GetAccountKey());
}

bool AccountView::IsCard() const { return dynamic_cast<const KRCCAccount*>(m_account) != nullptr; }

bool AccountView::IsInvestment() const {
  return dynamic_cast<const KRInvAcctFrom*>(m_account) != nullptr;
}

}  // namespace krofx
