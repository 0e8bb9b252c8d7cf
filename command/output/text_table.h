// Tables of text in aligned columns, as wide as they are or as a terminal allows.

#ifndef KROFX_COMMAND_OUTPUT_TEXT_TABLE_H_
#define KROFX_COMMAND_OUTPUT_TEXT_TABLE_H_

#include <string>
#include <string_view>
#include <vector>

#include "output/text_form.h"

namespace krofx::command {

/// A table that is filled row by row and then laid out. Columns without a text are left out.
class TextTable {
 public:
  /// What becomes of a column when not all have room.
  enum class Weight : unsigned char {
    kMain,   ///< It stays; a long text is cut.
    kMinor,  ///< It goes first.
  };

  /// Adds a column. All columns come before the first row.
  void AddColumn(std::string_view label, Weight weight = Weight::kMain);
  /// Begins a row.
  void AddRow() { m_cells.resize(m_cells.size() + m_lanes.size()); }
  /// Sets a cell of the last row to a text, which is valid UTF-8 of one line.
  void SetText(std::size_t column, std::string text);
  /// Sets a cell of the last row to a number. Numbers of a column are aligned by their points.
  void SetNumber(std::size_t column, std::string number);

  /// Appends the table: the labels, a line, and the rows, each line two blanks in.
  void Append(std::string& out, const TextForm& form);

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
  std::size_t Width() const;
  void Fit(std::size_t columns);
  bool DropLast(Weight weight, std::size_t keep);
  void CutLabels(std::size_t columns);
  void CutTexts(std::size_t columns, std::size_t least);
  std::string Laid(const Lane& lane, const Cell& cell, const TextForm& form) const;

  std::vector<Lane> m_lanes;
  std::vector<Cell> m_cells;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_TEXT_TABLE_H_
