// Tables of text in aligned columns, as wide as they are or as a terminal allows.

#ifndef KROFX_COMMAND_OUTPUT_TEXT_TABLE_H_
#define KROFX_COMMAND_OUTPUT_TEXT_TABLE_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "output/text_form.h"

namespace krofx::command {

/// A table whose columns are as wide as its texts need, or as a terminal allows. Columns without a
/// text are left out.
///
/// It is either filled, and then appended as a whole; or, when its rows are too many to be held, it
/// measures each row, and is then given each of them again.
class TextTable {
 public:
  /// What becomes of a column when not all have room.
  enum class Weight : unsigned char {
    kMain,   ///< It stays; a long text is cut.
    kMinor,  ///< It goes first.
  };
  /// A text, which is valid UTF-8 of one line. Numbers of a column are aligned by their points.
  struct Value {
    std::string_view text;
    bool isNumber = false;
  };

  /// Adds a column. All columns come before the first row.
  void AddColumn(std::string_view label, Weight weight = Weight::kMain);

  /// Begins a row of those that the table holds.
  void AddRow() { m_cells.resize(m_cells.size() + m_lanes.size()); }
  /// Sets a cell of the last row to a text.
  void SetText(std::size_t column, std::string text);
  /// Sets a cell of the last row to a number.
  void SetNumber(std::size_t column, std::string number);
  /// Appends the table: the labels, a line, and the rows, each line two blanks in.
  void Append(std::string& out, const TextForm& form);

  /// Makes room for a value in its column.
  void Measure(std::size_t column, const Value& value);
  /// Appends the labels and a line. From here on the columns have their widths.
  void AppendHead(std::string& out, const TextForm& form);
  /// Appends a row.
  /// @param valueOf gives the value of a column, which is good until the next call.
  template <class ValueOf>
  void AppendRow(std::string& out, const TextForm& form, ValueOf valueOf) const {
    const std::size_t start = BeginLine(out);
    for (std::size_t index = 0; index < m_lanes.size(); ++index) {
      if (m_lanes[index].shown) AppendValue(out, m_lanes[index], valueOf(index), form);
    }
    EndLine(out, start);
  }

 private:
  struct Cell {
    std::string text;
    bool isNumber = false;
  };
  struct Lane {
    std::string label;
    Weight weight;
    bool shown = false;
    bool isNumber = false;
    std::size_t before = 0;  // Columns of the widest number up to its point.
    std::size_t after = 0;   // Columns of the widest number from its point on.
    std::size_t text = 0;    // Columns of the widest text.
    std::size_t width = 0;

    std::size_t Content() const;
  };

  Cell& LastRow(std::size_t column) { return m_cells[m_cells.size() - m_lanes.size() + column]; }
  void Set(std::size_t column, Cell cell);
  std::size_t Width() const;
  void Fit(std::size_t columns);
  bool DropLast(Weight weight, std::size_t keep);
  void CutLabels(std::size_t columns);
  void CutTexts(std::size_t columns, std::size_t least);
  static std::size_t BeginLine(std::string& out);
  static void EndLine(std::string& out, std::size_t start);
  static void AppendValue(std::string& out, const Lane& lane, const Value& value,
                          const TextForm& form);

  std::vector<Lane> m_lanes;
  std::vector<Cell> m_cells;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_TEXT_TABLE_H_
