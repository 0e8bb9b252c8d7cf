// The rows of texts whose long lists are not in memory, made while they are read.

#ifndef KROFX_COMMAND_SHOWING_STREAMED_ROWS_H_
#define KROFX_COMMAND_SHOWING_STREAMED_ROWS_H_

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "input/list_stream.h"
#include "showing/document.h"
#include "showing/row_maker.h"

namespace krofx::command {

/// @return whether elements of a tag in an aggregate are nothing but rows of a table of a layout.
bool IsRow(KRTagID list, KRTagID element);

/// Makes the rows of the elements that the tree of a text does not have. Lists of one kind are best
/// visited in the order of the text, and each of them once: then the text is read once. Rows of
/// several kinds come kind by kind, as from a tree, and the text is read once for each.
class StreamedRows : public std::enable_shared_from_this<StreamedRows> {
 public:
  /// @param mayHaveCards as of ReadElements.
  StreamedRows(std::shared_ptr<const ListStream> stream, bool showIdentifiers, bool mayHaveCards);

  /// Finds the lists among the elements of the file that the survey has read.
  void FindLists(KRFile& file, const Element& elements);
  /// Notes the descriptions of securities that are not in the tree.
  /// @param arena takes them.
  void NoteSecurities(RowMaker& rows, TextArena& arena);
  /// Adds the rows of a list to those of a table that are in the tree.
  /// @param kinds the tags that the table is about.
  /// @param inTree the tags of the rows that the table has already, in their order.
  /// @param rows has the descriptions of securities.
  void AddRows(Table& table, const Element& list, std::span<const KRTagID> kinds,
               const std::vector<KRTagID>& inTree, const RowMaker& rows);
  /// @return whether the tree lacks elements of some tags in a list.
  bool Lacks(const Element& list, std::span<const KRTagID> kinds) const;

  /// @return how many rows there are.
  std::size_t Count() const { return m_stream->CountElements(); }
  /// @return whether all that was visited was as it was when the text was read first.
  bool IsWhole() const { return m_isWhole; }

 private:
  class Source;

  template <class Visit>
  bool ForEach(std::size_t list, std::span<const ListStream::Kind> kinds, Visit visit);
  const ListStream::List* Find(const Element& list) const;
  void Restart();
  void Advance();

  const std::shared_ptr<const ListStream> m_stream;
  const bool m_showIdentifiers;
  const bool m_mayHaveCards;
  std::unordered_map<const Element*, std::size_t> m_lists;
  std::optional<ListStream::Cursor> m_cursor;
  const StreamElement* m_current = nullptr;
  // The lists and kinds of which the cursor has passed elements, and those of the last one.
  std::set<std::pair<std::size_t, KRTagID>> m_passed;
  std::pair<std::size_t, KRTagID> m_last;
  bool m_isWhole = true;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_STREAMED_ROWS_H_
