// Rows as objects of JSON, one on a line.

#include "showing/json_cells.h"
#include "showing/row_writer.h"

namespace krofx::command {

void JsonLinesWriter::Append(std::string& out, std::string_view file, const Section& section,
                             const TableSpec& table, Row row) {
  rapidjson::StringBuffer line;
  rapidjson::Writer<rapidjson::StringBuffer> writer(line);
  writer.StartObject();
  WriteMember(writer, "file", file);
  WriteMember(writer, "kind", section.kind);
  WriteMember(writer, "account", section.subject);
  const std::vector<Cell>& cells = Arrange(section, table, row);
  for (std::size_t index = 0; index < cells.size(); ++index) {
    if (!cells[index]) continue;
    WriteKey(writer, Columns()[index].key);
    WriteCell(writer, cells[index]);
  }
  writer.EndObject();
  out.append(line.GetString(), line.GetSize()).append("\n");
}

}  // namespace krofx::command
