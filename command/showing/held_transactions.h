// The rows of statements that are in memory: their transactions leave the tree before it is taken
// apart, so that nothing is made of them but their rows.

#ifndef KROFX_COMMAND_SHOWING_HELD_TRANSACTIONS_H_
#define KROFX_COMMAND_SHOWING_HELD_TRANSACTIONS_H_

#include <memory>
#include <unordered_map>
#include <vector>

#include "input/element_tree.h"
#include "showing/document.h"

namespace krofx::command {

/// The transactions of the bank and card statements of one file.
class HeldTransactions {
 public:
  /// Takes them out of the file.
  /// @param text the text that the file is of.
  /// @param mayHaveCards as of ReadElements.
  HeldTransactions(KRFile& file, const krofx::OfxText& text, bool showIdentifiers,
                   bool mayHaveCards);

  /// Finds the lists that they were in among the elements of the file.
  void FindLists(const Element& file);
  /// Gives the rows of a list. To be called once for each.
  /// @return null when nothing was in it.
  std::shared_ptr<RowSource> RowsOf(const Element& list, const TableSpec& table);

 private:
  using List = std::vector<std::unique_ptr<KRBankStatementTx>>;
  class Rows;

  void NoteLists(const Element& element, std::size_t& count);

  const krofx::OfxText& m_text;
  const bool m_showIdentifiers;
  const bool m_mayHaveCards;
  std::vector<List> m_lists;  // In the order of the file.
  std::unordered_map<const Element*, std::size_t> m_places;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_HELD_TRANSACTIONS_H_
