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

namespace {

using Present = u16 (KRBankStatementTx::*)() const;

// The text of an element. Most texts of a transaction are absent and empty, and that is quicker to
// see than whether the element is present.
std::string_view TextOf(const KRBankStatementTx& transaction, const KRString& text,
                        Present isPresent) {
  if (text.IsEmpty() != 0 || (transaction.*isPresent)() == 0) return {};
  return ToText(text);
}

// The first of two texts that is not empty.
std::string_view Either(std::string_view first, std::string_view second) {
  return first.empty() ? second : first;
}

}  // namespace

TransactionView::TransactionView(const Found<const KRBankStatementTx>& found,
                                 const internal::SecurityFinder&)
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
  return TextOf(*m_transaction, m_transaction->GetCheckNum(), &KRBankStatementTx::HasCheckNum);
}

const KRPayee* TransactionView::Payee() const {
  if (const KRPayee* const payee = m_transaction->GetPayee()) return payee;
  return m_transaction->GetPayee2();
}

std::string_view TransactionView::Party() const {
  const std::string_view name =
      TextOf(*m_transaction, m_transaction->GetName(), &KRBankStatementTx::HasName);
  if (!name.empty()) return name;
  const KRPayee* const payee = Payee();
  return payee == nullptr ? std::string_view() : TextIf(payee->HasName(), payee->GetName());
}

std::string_view TransactionView::City() const {
  const KRPayee* const payee = Payee();
  return payee == nullptr ? std::string_view() : TextIf(payee->HasCity(), payee->GetCity());
}

std::string_view TransactionView::Memo() const {
  return Either(TextOf(*m_transaction, m_transaction->GetMemo(), &KRBankStatementTx::HasMemo),
                TextOf(*m_transaction, m_transaction->GetMemo2(), &KRBankStatementTx::HasMemo2));
}

std::string_view TransactionView::Id() const {
  return TextOf(*m_transaction, m_transaction->GetFITId(), &KRBankStatementTx::HasFITId);
}

std::string_view TransactionView::Correction() const {
  if (m_transaction->HasCorrectAction() == 0) return {};
  return ToText(m_transaction->GetCorrectAction());
}

std::string_view TransactionView::Corrects() const {
  return TextOf(*m_transaction, m_transaction->GetCorrectedFITId(),
                &KRBankStatementTx::HasCorrectedFITId);
}

std::string_view TransactionView::ServerId() const {
  return Either(
      TextOf(*m_transaction, m_transaction->GetServerTxId(), &KRBankStatementTx::HasServerTxId),
      TextOf(*m_transaction, m_transaction->GetServerTxId2(), &KRBankStatementTx::HasServerTxId2));
}

std::string_view TransactionView::Reference() const {
  return TextOf(*m_transaction, m_transaction->GetReferenceNum(),
                &KRBankStatementTx::HasReferenceNum);
}

std::string_view TransactionView::IndustryCode() const {
  return TextOf(*m_transaction, m_transaction->GetSIC(), &KRBankStatementTx::HasSIC);
}

std::string_view TransactionView::PayeeId() const {
  return Either(
      TextOf(*m_transaction, m_transaction->GetPayeeId(), &KRBankStatementTx::HasPayeeId),
      TextOf(*m_transaction, m_transaction->GetPayeeId2(), &KRBankStatementTx::HasPayeeId2));
}

AccountView TransactionView::ToAccount() const {
  if (const KRAccount* const account = m_transaction->GetBankAcctTo()) return AccountView(account);
  return AccountView(m_transaction->GetCCAcctTo());
}

}  // namespace krofx
