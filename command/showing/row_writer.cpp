// Puts the cells of rows into fixed columns, and writes them as comma-separated values and as JSON.

#include "showing/row_writer.h"

#include <algorithm>

#include "output/byte_scan.h"
#include "output/text_output.h"
#include "showing/json_cells.h"
#include "showing/renderers.h"

namespace krofx::command {

void RowWriter::Begin(std::string_view file, const Section& section, const TableSpec& table) {
  m_start = StartOf(file, section);
  m_parts.clear();
  m_between.clear();
  // Columns that repeat a field of the section come last.
  for (const RowColumn& column : m_columns) {
    const auto own =
        std::find_if(table.columns.begin(), table.columns.end(), [&column](const FieldSpec& each) {
          return column.field.empty() && each.key == column.key;
        });
    if (own == table.columns.end()) {
      const Cell cell = column.field.empty() ? Cell() : section.Find(column.field);
      if (!cell && LeavesOutEmpty()) continue;
      m_between += BeforeColumn(column.key);
      if (cell) AppendValue(m_between, cell);
      continue;
    }
    const std::size_t begin = m_between.size();
    m_between += BeforeColumn(column.key);
    m_parts.push_back(
        {static_cast<std::size_t>(own - table.columns.begin()), begin, m_between.size()});
  }
  m_between += EndOfLine();
}

void RowWriter::Append(std::string& out, Row row) const {
  out += m_start;
  // Most columns are empty: what is between two values is appended as one piece.
  const bool leavesOut = LeavesOutEmpty();
  std::size_t written = 0;
  const auto append = [&](std::size_t to) {
    out.append(m_between, written, to - written);
    written = to;
  };
  for (const Part& part : m_parts) {
    const Cell& cell = row[part.cell];
    if (cell) {
      append(part.end);
      AppendValue(out, cell);
    } else if (leavesOut) {
      append(part.begin);
      written = part.end;
    }
  }
  append(m_between.size());
}

void AppendCsv(std::string& out, std::string_view value) {
  const auto isSpecial = [](ByteBlock block) {
    return block.Has(',') || block.Has('"') || block.Has('\n');
  };
  if (!HasAny(value, isSpecial)) {
    out += value;
    return;
  }
  out += '"';
  for (const char character : value) {
    if (character == '"') out += '"';
    out += character;
  }
  out += '"';
}

std::string CsvWriter::Head() const {
  std::string head = "file,kind,account";
  for (const RowColumn& column : Columns()) head.append(",").append(column.key);
  return head + "\n";
}

std::string CsvWriter::StartOf(std::string_view file, const Section& section) const {
  std::string start;
  AppendCsv(start, file);
  start.append(",").append(section.kind).append(",");
  AppendCsv(start, section.subject);
  return start;
}

std::string CsvWriter::BeforeColumn(std::string_view) const { return ","; }

void CsvWriter::AppendValue(std::string& out, const Cell& cell) const { AppendCsv(out, cell.text); }

std::string JsonLinesWriter::StartOf(std::string_view file, const Section& section) const {
  std::string start = "{\"file\":";
  AppendJson(start, file);
  AppendJson(start.append(",\"kind\":"), section.kind);
  AppendJson(start.append(",\"account\":"), section.subject);
  return start;
}

std::string JsonLinesWriter::BeforeColumn(std::string_view key) const {
  std::string before = ",";
  AppendJson(before, key);
  return before += ':';
}

void JsonLinesWriter::AppendValue(std::string& out, const Cell& cell) const {
  AppendJson(out, cell);
}

void AppendRows(TextOutput& out, const Document& document, std::string_view tableKey,
                RowWriter& writer) {
  for (const Section& section : document.sections) {
    for (const Table& table : section.tables) {
      if (table.spec->key != tableKey) continue;
      writer.Begin(document.file, section, *table.spec);
      table.ForEachRow([&](Row row) {
        writer.Append(out.text, row);
        return out.Offer();
      });
    }
  }
}

}  // namespace krofx::command
