// Finds each thing in the first element that has it.

#include "krofx/host/transaction_view.h"

#include "krofx/host/currency_text.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/payee.h"
#include "krofx/messages/investment/statement.h"

namespace krofx {

using internal::RateOf;
using internal::SymbolOf;
using internal::TextIf;

TransactionView::TransactionView(const Found<const KRBankStatementTx>& found,
                                 const internal::TreeSource&)
    : m_transaction(&*found) {
  if (const auto* const statement = found.Ancestor<KRGenericStatementRs>()) {
    m_currency = ToText(statement->GetCurrencyDefault());
  } else if (const auto* const investments = found.Ancestor<KRInvStmtRs>()) {
    m_currency = ToText(investments->GetCurDef());
  }
}

KRDateTime TransactionView::Posted() const {
  return m_transaction->HasDateTimePosted() != 0 ? m_transaction->GetDateTimePosted()
                                                 : KRDateTime();
}

KRDateTime TransactionView::UserDate() const {
  return m_transaction->HasDateTimeUser() != 0 ? m_transaction->GetDateTimeUser() : KRDateTime();
}

KRDateTime TransactionView::Available() const {
  return m_transaction->HasDateTimeAvailable() != 0 ? m_transaction->GetDateTimeAvailable()
                                                    : KRDateTime();
}

std::string_view TransactionView::Type() const {
  if (m_transaction->HasTxType() == 0) return {};
  return ToText(m_transaction->GetTxType());
}

std::optional<KRPrecisionInteger> TransactionView::Amount() const {
  if (m_transaction->HasTxAmount() == 0) return std::nullopt;
  return m_transaction->GetTxAmount();
}

std::string_view TransactionView::Currency() const {
  const std::string_view own = SymbolOf(m_transaction->GetCurrency());
  return own.empty() ? m_currency : own;
}

std::optional<KRPrecisionInteger> TransactionView::Rate() const {
  return RateOf(m_transaction->GetCurrency());
}

std::string_view TransactionView::OriginalCurrency() const {
  return SymbolOf(m_transaction->GetOrigCurrency());
}

std::optional<KRPrecisionInteger> TransactionView::OriginalRate() const {
  return RateOf(m_transaction->GetOrigCurrency());
}

std::string_view TransactionView::Check() const {
  return TextIf(m_transaction->HasCheckNum(), m_transaction->GetCheckNum());
}

const KRPayee* TransactionView::Payee() const {
  if (const KRPayee* const payee = m_transaction->GetPayee()) return payee;
  return m_transaction->GetPayee2();
}

std::string_view TransactionView::Party() const {
  if (m_transaction->HasName() != 0) return ToText(m_transaction->GetName());
  const KRPayee* const payee = Payee();
  return payee == nullptr ? std::string_view() : TextIf(payee->HasName(), payee->GetName());
}

std::string_view TransactionView::City() const {
  const KRPayee* const payee = Payee();
  return payee == nullptr ? std::string_view() : TextIf(payee->HasCity(), payee->GetCity());
}

std::string_view TransactionView::Memo() const {
  if (m_transaction->HasMemo() != 0) return ToText(m_transaction->GetMemo());
  return TextIf(m_transaction->HasMemo2(), m_transaction->GetMemo2());
}

std::string_view TransactionView::Id() const {
  return TextIf(m_transaction->HasFITId(), m_transaction->GetFITId());
}

std::string_view TransactionView::Correction() const {
  if (m_transaction->HasCorrectAction() == 0) return {};
  return ToText(m_transaction->GetCorrectAction());
}

std::string_view TransactionView::Corrects() const {
  return TextIf(m_transaction->HasCorrectedFITId(), m_transaction->GetCorrectedFITId());
}

std::string_view TransactionView::ServerId() const {
  if (m_transaction->HasServerTxId() != 0) return ToText(m_transaction->GetServerTxId());
  return TextIf(m_transaction->HasServerTxId2(), m_transaction->GetServerTxId2());
}

std::string_view TransactionView::Reference() const {
  return TextIf(m_transaction->HasReferenceNum(), m_transaction->GetReferenceNum());
}

std::string_view TransactionView::IndustryCode() const {
  return TextIf(m_transaction->HasSIC(), m_transaction->GetSIC());
}

std::string_view TransactionView::PayeeId() const {
  if (m_transaction->HasPayeeId() != 0) return ToText(m_transaction->GetPayeeId());
  return TextIf(m_transaction->HasPayeeId2(), m_transaction->GetPayeeId2());
}

AccountView TransactionView::ToAccount() const {
  if (const KRAccount* const account = m_transaction->GetBankAcctTo()) return AccountView(account);
  return AccountView(m_transaction->GetCCAcctTo());
}

}  // namespace krofx
