// Puts the cells of rows into fixed columns, and writes them as comma-separated values and as JSON.

#include "showing/row_writer.h"

#include <algorithm>

#include "output/text_output.h"
#include "showing/json_cells.h"
#include "showing/renderers.h"

namespace krofx::command {

void RowWriter::Begin(std::string_view file, const Section& section, const TableSpec& table) {
  m_start = StartOf(file, section);
  m_parts.clear();
  m_end.clear();
  // What the columns before the next one of the table have in each row. Those that repeat a field
  // of the section come last.
  std::string before;
  for (const RowColumn& column : m_columns) {
    const auto own =
        std::find_if(table.columns.begin(), table.columns.end(), [&column](const FieldSpec& each) {
          return column.field.empty() && each.key == column.key;
        });
    if (own == table.columns.end()) {
      const Cell cell = column.field.empty() ? Cell() : section.Find(column.field);
      AppendColumn(before, BeforeColumn(column.key), cell);
      continue;
    }
    m_parts.push_back(
        {static_cast<std::size_t>(own - table.columns.begin()), before + BeforeColumn(column.key)});
    before.clear();
  }
  m_end.append(before).append(EndOfLine());
}

void RowWriter::AppendColumn(std::string& out, std::string_view before, const Cell& cell) const {
  if (!cell && LeavesOutEmpty()) return;
  out += before;
  if (cell) AppendValue(out, cell);
}

void RowWriter::Append(std::string& out, Row row) const {
  out += m_start;
  for (const Part& part : m_parts) AppendColumn(out, part.before, row[part.cell]);
  out += m_end;
}

void AppendCsv(std::string& out, std::string_view value) {
  // All characters are looked at, which a compiler turns into a few wide comparisons.
  bool special = false;
  for (const char c : value) special |= (c == ',') | (c == '"') | (c == '\n');
  if (!special) {
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
