// The rows of bank and card statements, made from the transactions themselves. A layout finds the
// same values by their paths in a tree of elements, which takes several times as long.

#ifndef KROFX_COMMAND_SHOWING_TRANSACTION_CELLS_H_
#define KROFX_COMMAND_SHOWING_TRANSACTION_CELLS_H_

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "krofx/host/transaction_view.h"
#include "krofx/krofx.h"
#include "output/text_arena.h"
#include "showing/document.h"

namespace krofx::command {

/// Makes the cells of one transaction after the other.
class TransactionCells {
 public:
  /// @param table the transactions of a layout of statements; it must live as long as this.
  /// @param mayHaveCards as of ReadElements.
  TransactionCells(const TableSpec& table, bool showIdentifiers, bool mayHaveCards);

  /// @param source the text that the transaction is in.
  /// @return the cells of a transaction, which are good until the next call, and as long as it is.
  Row Make(const KRBankStatementTx& transaction, const krofx::OfxText& source);

 private:
  // The columns of one kind of value: where each is in a row, and the getter of its value.
  template <class Value>
  using Columns = std::vector<std::pair<std::size_t, Value (krofx::TransactionView::*)() const>>;

  std::string_view ShownNumberOf(const krofx::AccountView& account, const krofx::OfxText& source);

  const bool m_showIdentifiers;
  const bool m_mayHaveCards;
  Columns<std::string_view> m_texts;
  Columns<std::optional<KRPrecisionInteger>> m_numbers;
  Columns<KRDateTime> m_dates;
  std::size_t m_bank;
  std::size_t m_account;
  // The current row and its texts.
  TextArena m_arena;
  std::vector<Cell> m_cells;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_TRANSACTION_CELLS_H_
