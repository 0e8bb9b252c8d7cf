// Rows as objects of JSON. This source includes the library that writes JSON without building it up
// in memory first.

#include <charconv>

#define RAPIDJSON_HAS_STDSTRING 1
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "showing/row_writer.h"

namespace krofx::command {

namespace {

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

void WriteText(Writer& writer, std::string_view text) {
  writer.String(text.data() == nullptr ? "" : text.data(),
                static_cast<rapidjson::SizeType>(text.size()));
}

void WriteMember(Writer& writer, std::string_view key, std::string_view text) {
  writer.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
  WriteText(writer, text);
}

// Amounts are texts, since a reader's floating point would not keep them.
void WriteCell(Writer& writer, const Cell& cell) {
  switch (cell.kind) {
    case ValueKind::kBoolean:
      writer.Bool(cell.text == "true");
      return;
    case ValueKind::kBlank:
      writer.Null();
      return;
    case ValueKind::kInteger:
      writer.RawValue(cell.text.data(), cell.text.size(), rapidjson::kNumberType);
      return;
    default:
      WriteText(writer, cell.text);
  }
}

}  // namespace

void JsonLinesWriter::Append(std::string& out, std::string_view file, const Section& section,
                             const TableSpec& table, Row row) {
  rapidjson::StringBuffer line;
  Writer writer(line);
  writer.StartObject();
  WriteMember(writer, "file", file);
  WriteMember(writer, "kind", section.kind);
  WriteMember(writer, "account", section.subject);
  const std::vector<Cell>& cells = Arrange(section, table, row);
  for (std::size_t index = 0; index < cells.size(); ++index) {
    if (!cells[index]) continue;
    const std::string_view key = Columns()[index].key;
    writer.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
    WriteCell(writer, cells[index]);
  }
  writer.EndObject();
  out.append(line.GetString(), line.GetSize()).append("\n");
}

}  // namespace krofx::command
