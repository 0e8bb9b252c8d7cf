// Rows as lines of text, one at a time: comma-separated values (RFC 4180, with line feeds), or an
// object of JSON for each row.

#ifndef KROFX_COMMAND_SHOWING_ROW_WRITER_H_
#define KROFX_COMMAND_SHOWING_ROW_WRITER_H_

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "showing/document.h"
#include "showing/layout.h"

namespace krofx::command {

/// Writes the rows of all tables of one key. What a line has is fixed by the key: it depends
/// neither on the files nor on the rows.
class RowWriter {
 public:
  /// @param columns what RowColumnsOf gives for the key; it must live as long as the writer.
  explicit RowWriter(const std::vector<RowColumn>& columns) : m_columns(columns) {}
  virtual ~RowWriter() = default;

  /// What comes before the first row.
  virtual std::string Head() const { return ""; }
  /// Appends the line of a row.
  /// @param section what the row is in: its kind, subject and fields; its tables are not looked at.
  virtual void Append(std::string& out, std::string_view file, const Section& section,
                      const TableSpec& table, Row row) = 0;

 protected:
  /// All columns after those of file, kind and account.
  const std::vector<RowColumn>& Columns() const { return m_columns; }
  /// The cells of a row in the order of Columns().
  const std::vector<Cell>& Arrange(const Section& section, const TableSpec& table, Row row);

 private:
  const std::vector<RowColumn>& m_columns;
  std::unordered_map<const TableSpec*, std::vector<std::size_t>> m_positions;
  std::vector<Cell> m_cells;
};

/// Rows as comma-separated values under one header line.
class CsvWriter final : public RowWriter {
 public:
  using RowWriter::RowWriter;
  std::string Head() const override;
  void Append(std::string& out, std::string_view file, const Section& section,
              const TableSpec& table, Row row) override;
};

/// Rows as objects of JSON, one on a line.
class JsonLinesWriter final : public RowWriter {
 public:
  using RowWriter::RowWriter;
  void Append(std::string& out, std::string_view file, const Section& section,
              const TableSpec& table, Row row) override;
};

/// Appends a value of CSV, in quotes when it needs them.
void AppendCsv(std::string& out, std::string_view value);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_ROW_WRITER_H_
