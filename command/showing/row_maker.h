// Cells and rows out of elements, by the layouts. It needs nothing but one element at a time and
// the descriptions of securities, so rows can be made one by one.

#ifndef KROFX_COMMAND_SHOWING_ROW_MAKER_H_
#define KROFX_COMMAND_SHOWING_ROW_MAKER_H_

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "showing/cell_source.h"
#include "showing/document.h"

namespace krofx::command {

/// The descriptions of securities, by what identifies each.
using Securities = std::map<std::string, const Element*>;

/// Makes the cells of one file.
class RowMaker {
 public:
  /// @param arena owns the texts that are made for cells. Texts of elements are not copied: the
  ///        arena of the elements must live as long as the cells.
  /// @param securities the descriptions that are noted already.
  RowMaker(TextArena& arena, bool showIdentifiers,
           std::shared_ptr<Securities> securities = std::make_shared<Securities>())
      : m_arena(arena), m_showIdentifiers(showIdentifiers), m_securities(std::move(securities)) {}

  /// Notes the descriptions of securities that are below an element, which must live as long as
  /// this.
  void NoteSecurities(const Element& element);
  /// @return the descriptions, for another maker of rows of the same file.
  const std::shared_ptr<Securities>& GetSecurities() const { return m_securities; }

  /// Appends the cells of one row.
  void AppendRow(std::vector<Cell>& cells, const Element& row, const TableSpec& table);
  /// @return the cell that a source leads to from an element.
  Cell Find(const Element& element, const CellSource& source) const;
  /// @return the element that a source of paths leads to; null when there is none.
  const Element* FindElement(const Element& element, const CellSource& source) const;
  /// @return the cell of an element: its value, masked unless identifiers are to be shown.
  Cell CellOf(const Element& element) const;

 private:
  const Element* Describe(const Element* found, const CellSource::Path& path) const;
  Cell JoinAll(const Element& element, const TagPath& steps) const;
  Cell SumAll(const Element& element, const CellSource& source) const;

  TextArena& m_arena;
  const bool m_showIdentifiers;
  const std::shared_ptr<Securities> m_securities;
  PathTree::Found m_found;  // Of the current row.
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_ROW_MAKER_H_
