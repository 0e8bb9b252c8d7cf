// Lists of a tree and those among its elements are in the same order, that of the file.

#include "showing/held_transactions.h"

#include <stdexcept>
#include <utility>

#include "krofx/host/look.h"
#include "showing/transaction_cells.h"

namespace krofx::command {

class HeldTransactions::Rows final : public RowSource {
 public:
  Rows(List transactions, const krofx::OfxText& text, const TableSpec& table, bool showIdentifiers,
       bool mayHaveCards)
      : m_transactions(std::move(transactions)), m_cells(table, showIdentifiers, mayHaveCards) {
    // The rows outlive the text, of which nothing else is needed.
    m_text.charset = text.charset;
  }

  void ForEach(const std::function<bool(Row)>& visit) override {
    for (const std::unique_ptr<KRBankStatementTx>& each : m_transactions) {
      if (!visit(m_cells.Make(*each, m_text))) return;
    }
  }

 private:
  const List m_transactions;
  krofx::OfxText m_text;
  TransactionCells m_cells;
};

HeldTransactions::HeldTransactions(KRFile& file, const krofx::OfxText& text, bool showIdentifiers,
                                   bool mayHaveCards)
    : m_text(text), m_showIdentifiers(showIdentifiers), m_mayHaveCards(mayHaveCards) {
  krofx::ForEach<KRBankTransactionList>(file, [this](KRBankTransactionList& list) {
    List& taken = m_lists.emplace_back();
    taken.reserve(list.GetNumStatementTx());
    for (u16 index = 0; index < list.GetNumStatementTx(); ++index) {
      taken.emplace_back(list.GetStatementTx(index));
    }
    list.ClearStatementTx();
  });
}

void HeldTransactions::FindLists(const Element& file) {
  std::size_t count = 0;
  NoteLists(file, count);
  if (count != m_lists.size()) throw std::logic_error("the lists of a file are not its elements");
}

void HeldTransactions::NoteLists(const Element& element, std::size_t& count) {
  for (const Element& child : element.children) {
    if (child.id == KRTag_BANKTRANLIST) m_places.emplace(&child, count++);
    NoteLists(child, count);
  }
}

std::shared_ptr<RowSource> HeldTransactions::RowsOf(const Element& list, const TableSpec& table) {
  const auto place = m_places.find(&list);
  if (place == m_places.end() || m_lists[place->second].empty()) return nullptr;
  return std::make_shared<Rows>(std::move(m_lists[place->second]), m_text, table, m_showIdentifiers,
                                m_mayHaveCards);
}

}  // namespace krofx::command
