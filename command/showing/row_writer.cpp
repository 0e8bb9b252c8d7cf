// Puts the cells of rows into fixed columns, and writes them as comma-separated values.

#include "showing/row_writer.h"

#include <algorithm>

#include "showing/renderers.h"

namespace krofx::command {

const std::vector<Cell>& RowWriter::Arrange(const Section& section, const TableSpec& table,
                                            Row row) {
  const auto [known, isNew] = m_positions.try_emplace(&table);
  std::vector<std::size_t>& positions = known->second;
  if (isNew) {
    for (const FieldSpec& column : table.columns) {
      const auto place =
          std::find_if(m_columns.begin(), m_columns.end(),
                       [&column](const RowColumn& each) { return each.key == column.key; });
      positions.push_back(static_cast<std::size_t>(place - m_columns.begin()));
    }
  }
  m_cells.assign(m_columns.size(), Cell());
  for (std::size_t index = 0; index < row.size(); ++index) m_cells[positions[index]] = row[index];
  for (std::size_t index = m_columns.size(); index > 0 && !m_columns[index - 1].field.empty();) {
    --index;
    m_cells[index] = section.Find(m_columns[index].field);
  }
  return m_cells;
}

void AppendCsv(std::string& out, std::string_view value) {
  if (value.find_first_of(",\"\n") == std::string_view::npos) {
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
  for (const RowColumn& column : Columns()) {
    head += ',';
    head += column.key;
  }
  return head + "\n";
}

void CsvWriter::Append(std::string& out, std::string_view file, const Section& section,
                       const TableSpec& table, Row row) {
  AppendCsv(out, file);
  out += ',';
  out += section.kind;
  out += ',';
  AppendCsv(out, section.subject);
  for (const Cell& cell : Arrange(section, table, row)) {
    out += ',';
    AppendCsv(out, cell.text);
  }
  out += '\n';
}

void AppendRows(std::string& out, const Document& document, std::string_view tableKey,
                RowWriter& writer) {
  for (const Section& section : document.sections) {
    for (const Table& table : section.tables) {
      if (table.spec->key != tableKey) continue;
      for (std::size_t index = 0; index < table.CountRows(); ++index) {
        writer.Append(out, document.file, section, *table.spec, table.GetRow(index));
      }
    }
  }
}

}  // namespace krofx::command
