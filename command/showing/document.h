// The neutral form of what `krofx print` shows: sections with fields and tables of typed cells.
//
// Layouts say what is in it (layout.h), and renderers turn it into text, JSON and CSV
// (renderers.h). Neither knows the other.

#ifndef KROFX_COMMAND_SHOWING_DOCUMENT_H_
#define KROFX_COMMAND_SHOWING_DOCUMENT_H_

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "checking/notes.h"
#include "input/element_tree.h"
#include "showing/layout.h"

namespace krofx::command {

/// One value, fit for output; or nothing, when it was not in the file. The arena of its document
/// owns the text.
struct Cell {
  std::string_view text;
  ValueKind kind = ValueKind::kText;
  bool isThere = false;

  Cell() = default;
  Cell(ValueKind valueKind, std::string_view value) : text(value), kind(valueKind), isThere(true) {}
  explicit operator bool() const { return isThere; }
};

/// A named value. The key is part of the stable JSON form, the label is for people.
struct Field {
  std::string_view key;
  std::string_view label;
  Cell cell;
  bool detail = false;  ///< Left out of the text.
};

/// The cells of one row, one for each column of its table.
using Row = std::span<const Cell>;

/// Rows that are made while they are visited, such as those of a large file.
class RowSource {
 public:
  virtual ~RowSource() = default;

  /// Visits all rows, in their order. A row is good until the next one is visited.
  /// @param visit gives false to end the visit.
  virtual void ForEach(const std::function<bool(Row)>& visit) = 0;
};

/// Rows of cells.
struct Table {
  const TableSpec* spec;
  std::vector<Cell> cells = {};  ///< Those of the first row, of the second one, and so on.
  /// Gives the rows, in place of `cells`, when there is one.
  std::shared_ptr<RowSource> source = {};

  /// Calls `visit(row)` for each row, in their order, until it gives false, if it gives anything. A
  /// row is good until the next one unless it is one of `cells`.
  template <class Visit>
  void ForEachRow(Visit visit) const {
    const auto goesOn = [&visit](Row row) {
      if constexpr (std::is_void_v<std::invoke_result_t<Visit&, Row>>) {
        visit(row);
        return true;
      } else {
        return visit(row);
      }
    };
    if (source != nullptr) {
      source->ForEach(goesOn);
      return;
    }
    const std::size_t width = spec->columns.size();
    for (Row left(cells); !left.empty() && goesOn(left.first(width)); left = left.subspan(width)) {
    }
  }
};

/// One thing that a file says: a sign-on, the statement of an account, an answer without content.
struct Section {
  std::string_view kind;
  std::string_view title;
  std::string subject = {};  ///< The account or institution that it is about; may be empty.
  std::vector<Field> fields = {};
  std::vector<Table> tables = {};
  /// What distinguishes the account from others, in full: for comparisons, never for output.
  std::string identity = {};
  /// The number of the account, in full: for comparisons, never for output.
  std::string_view accountNumber = {};

  /// @return the value of a field; nothing when there is none of this key.
  Cell Find(std::string_view key) const;
};

class StreamedRows;

/// One input.
struct Document {
  std::string file;
  std::string kind;  ///< "request", "response", "multipart", or empty when it could not be read.
  unsigned status = 0;
  std::string meaning;
  std::string problem;  ///< Why it is not usable; empty when it is.
  std::size_t warnings = 0;
  std::string notes;  ///< How many mendings and warnings, in words; empty for none.
  std::vector<ShownMending> mendings;
  std::vector<Section> sections;
  std::shared_ptr<TextArena> arena;  ///< Owns the texts of the sections.
  /// Gives the rows that are not in memory; null when all are.
  std::shared_ptr<StreamedRows> streamed;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_DOCUMENT_H_
