// The rows of one kind of table as comma-separated values (RFC 4180, with line feeds).

#include <algorithm>

#include "showing/renderers.h"

namespace krofx::command {

namespace {

std::string Quoted(const std::string& text) {
  if (text.find_first_of(",\"\n") == std::string::npos) return text;
  std::string out = "\"";
  for (const char character : text) {
    if (character == '"') out += '"';
    out += character;
  }
  return out + "\"";
}

template <class Visit>
void ForEachTable(const std::vector<Document>& documents, std::string_view key, Visit visit) {
  for (const Document& document : documents) {
    for (const Section& section : document.sections) {
      for (const Table& table : section.tables) {
        if (table.key == key) visit(document, section, table);
      }
    }
  }
}

std::size_t Position(const std::vector<std::string>& keys, const std::string& key) {
  return static_cast<std::size_t>(std::find(keys.begin(), keys.end(), key) - keys.begin());
}

}  // namespace

std::string RenderCsv(const std::vector<Document>& documents, std::string_view tableKey) {
  // Layouts may give the same table different columns: the output has them all.
  std::vector<std::string> keys;
  ForEachTable(documents, tableKey, [&](const Document&, const Section&, const Table& table) {
    for (const Column& column : table.columns) {
      if (Position(keys, column.key) == keys.size()) keys.push_back(column.key);
    }
  });
  if (keys.empty()) return "";
  std::string out = "file,kind,account";
  for (const std::string& key : keys) out += "," + Quoted(key);
  out += "\n";
  ForEachTable(documents, tableKey,
               [&](const Document& document, const Section& section, const Table& table) {
                 for (const auto& row : table.rows) {
                   std::vector<std::string> cells(keys.size());
                   for (std::size_t index = 0; index < row.size(); ++index) {
                     if (!row[index]) continue;
                     cells[Position(keys, table.columns[index].key)] = Quoted(row[index]->text);
                   }
                   out +=
                       Quoted(document.file) + "," + section.kind + "," + Quoted(section.subject);
                   for (const std::string& cell : cells) out += "," + cell;
                   out += "\n";
                 }
               });
  return out;
}

}  // namespace krofx::command
