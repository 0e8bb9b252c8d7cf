// Rows as lines of text, one at a time: comma-separated values (RFC 4180, with line feeds), or an
// object of JSON for each row.

#ifndef KROFX_COMMAND_SHOWING_ROW_WRITER_H_
#define KROFX_COMMAND_SHOWING_ROW_WRITER_H_

#include <cstddef>
#include <string>
#include <string_view>
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

  /// @return what comes before the first row.
  virtual std::string Head() const { return ""; }
  /// Begins the rows of a table.
  /// @param section what the table is in: its kind, subject and fields; its tables are not looked
  ///        at.
  void Begin(std::string_view file, const Section& section, const TableSpec& table);
  /// Appends the line of a row.
  void Append(std::string& out, Row row) const;

 protected:
  /// @return all columns after those of file, kind and account.
  const std::vector<RowColumn>& Columns() const { return m_columns; }

 private:
  // A column of the table: which cell it is, and where in `m_between` is what comes directly before
  // it on the line.
  struct Part {
    std::size_t cell;
    std::size_t begin;
    std::size_t end;
  };

  // The start of each line of a section.
  virtual std::string StartOf(std::string_view file, const Section& section) const = 0;
  // What comes before the value of a column.
  virtual std::string BeforeColumn(std::string_view key) const = 0;
  virtual void AppendValue(std::string& out, const Cell& cell) const = 0;
  virtual std::string_view EndOfLine() const = 0;
  // Whether a column without a value takes no place at all.
  virtual bool LeavesOutEmpty() const = 0;

  const std::vector<RowColumn>& m_columns;
  // The lines of the current table: what they begin with, its columns, and all that is between and
  // after their values.
  std::string m_start;
  std::vector<Part> m_parts;
  std::string m_between;
};

/// Rows as comma-separated values under one header line.
class CsvWriter final : public RowWriter {
 public:
  using RowWriter::RowWriter;
  std::string Head() const override;

 private:
  std::string StartOf(std::string_view file, const Section& section) const override;
  std::string BeforeColumn(std::string_view key) const override;
  void AppendValue(std::string& out, const Cell& cell) const override;
  std::string_view EndOfLine() const override { return "\n"; }
  bool LeavesOutEmpty() const override { return false; }
};

/// Rows as objects of JSON, one on a line.
class JsonLinesWriter final : public RowWriter {
 public:
  using RowWriter::RowWriter;

 private:
  std::string StartOf(std::string_view file, const Section& section) const override;
  std::string BeforeColumn(std::string_view key) const override;
  void AppendValue(std::string& out, const Cell& cell) const override;
  std::string_view EndOfLine() const override { return "}\n"; }
  bool LeavesOutEmpty() const override { return true; }
};

/// Appends a value of CSV, in quotes when it needs them.
void AppendCsv(std::string& out, std::string_view value);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SHOWING_ROW_WRITER_H_
