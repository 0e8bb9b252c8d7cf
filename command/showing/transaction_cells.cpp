// Which getter gives the value of which column. Rows of other tables are made by their paths alone.

#include "showing/transaction_cells.h"

#include <algorithm>

#include "input/shown_values.h"
#include "output/masking.h"

namespace krofx::command {

namespace {

using krofx::TransactionView;

constexpr std::pair<std::string_view, std::string_view (TransactionView::*)() const> kTexts[] = {
    {"type", &TransactionView::Type},
    {"currency", &TransactionView::Currency},
    {"original_currency", &TransactionView::OriginalCurrency},
    {"check", &TransactionView::Check},
    {"name", &TransactionView::Party},
    {"memo", &TransactionView::Memo},
    {"id", &TransactionView::Id},
    {"correction", &TransactionView::Correction},
    {"corrects", &TransactionView::Corrects},
    {"server_id", &TransactionView::ServerId},
    {"reference", &TransactionView::Reference},
    {"sic", &TransactionView::IndustryCode},
    {"payee_id", &TransactionView::PayeeId},
    {"payee_city", &TransactionView::City},
};

constexpr std::pair<std::string_view,
                    std::optional<KRPrecisionInteger> (TransactionView::*)() const>
    kNumbers[] = {
        {"amount", &TransactionView::Amount},
        {"rate", &TransactionView::Rate},
        {"original_rate", &TransactionView::OriginalRate},
};

constexpr std::pair<std::string_view, KRDateTime (TransactionView::*)() const> kDates[] = {
    {"posted", &TransactionView::Posted},
    {"user_date", &TransactionView::UserDate},
    {"available", &TransactionView::Available},
};

std::size_t IndexOf(const TableSpec& table, std::string_view key) {
  const auto place = std::find_if(table.columns.begin(), table.columns.end(),
                                  [key](const FieldSpec& column) { return column.key == key; });
  return static_cast<std::size_t>(place - table.columns.begin());
}

}  // namespace

TransactionCells::TransactionCells(const TableSpec& table, bool showIdentifiers, bool mayHaveCards)
    : m_showIdentifiers(showIdentifiers),
      m_mayHaveCards(mayHaveCards),
      m_bank(IndexOf(table, "to_bank")),
      m_account(IndexOf(table, "to_account")),
      m_cells(table.columns.size()) {
  const auto find = [&table](const auto& getters, auto& columns) {
    for (const auto& [key, getter] : getters) columns.emplace_back(IndexOf(table, key), getter);
  };
  find(kTexts, m_texts);
  find(kNumbers, m_numbers);
  find(kDates, m_dates);
}

Row TransactionCells::Make(const KRBankStatementTx& transaction, const krofx::OfxText& source) {
  m_arena.Reset();
  std::fill(m_cells.begin(), m_cells.end(), Cell());
  const auto set = [this](std::size_t column, ValueKind kind, std::string_view text) {
    if (!text.empty()) m_cells[column] = Cell(kind, text);
  };
  const TransactionView view(transaction);
  for (const auto& [column, getter] : m_texts) {
    const std::string_view text = (view.*getter)();
    if (!text.empty()) set(column, ValueKind::kText, ShownText(text, &source, m_arena));
  }
  for (const auto& [column, getter] : m_numbers) {
    const std::optional<KRPrecisionInteger> number = (view.*getter)();
    if (number) set(column, ValueKind::kAmount, m_arena.Copy(ShownNumber(*number)));
  }
  for (const auto& [column, getter] : m_dates) {
    set(column, ValueKind::kDate, m_arena.Copy(ShownDate((view.*getter)())));
  }
  const krofx::AccountView account = view.ToAccount();
  set(m_bank, ValueKind::kText, ShownText(account.Institution(), &source, m_arena));
  set(m_account, ValueKind::kText, ShownNumberOf(account, source));
  return m_cells;
}

std::string_view TransactionCells::ShownNumberOf(const krofx::AccountView& account,
                                                 const krofx::OfxText& source) {
  const std::string_view number = ShownText(account.Number(), &source, m_arena);
  const bool isCard = account.IsCard() || (m_mayHaveCards && account.Institution().empty());
  if (m_showIdentifiers || !isCard) return number;
  return m_arena.Copy(Masked(number, Disclosure::kCard));
}

}  // namespace krofx::command
