// Documents as JSON, in the form that docs/json.md describes.

#include "output/json.h"
#include "showing/renderers.h"

namespace krofx::command {

namespace {

// Amounts are texts, since a reader's floating point would not keep them.
Json ToJson(const Cell& cell) {
  if (cell.kind == ValueKind::kBoolean) return cell.text == "true";
  if (cell.kind == ValueKind::kBlank) return {};
  if (cell.kind == ValueKind::kInteger) return std::stoll(std::string(cell.text));
  return std::string(cell.text);
}

Json ToJson(const Table& table) {
  Json rows = Json::Array();
  for (std::size_t at = 0; at < table.CountRows(); ++at) {
    const Row row = table.GetRow(at);
    Json object = Json::Object();
    for (std::size_t index = 0; index < row.size(); ++index) {
      if (row[index]) object.Set(std::string(table.spec->columns[index].key), ToJson(row[index]));
    }
    rows.Append(std::move(object));
  }
  return rows;
}

Json ToJson(const Section& section) {
  Json fields = Json::Object();
  for (const Field& field : section.fields)
    fields.SetAgain(std::string(field.key), ToJson(field.cell));
  Json object = Json::Object();
  object.Set("kind", std::string(section.kind))
      .Set("title", std::string(section.title))
      .Set("subject", section.subject)
      .Set("fields", std::move(fields));
  for (const Table& table : section.tables) object.Set(std::string(table.spec->key), ToJson(table));
  return object;
}

}  // namespace

std::string RenderJson(const std::vector<Document>& documents) {
  Json files = Json::Array();
  for (const Document& document : documents) {
    Json sections = Json::Array();
    for (const Section& section : document.sections) sections.Append(ToJson(section));
    Json file = Json::Object();
    file.Set("file", document.file)
        .Set("kind", document.kind)
        .Set("status", document.status)
        .Set("meaning", document.meaning)
        .Set("warnings", document.warnings)
        .Set("usable", document.problem.empty());
    if (!document.problem.empty()) file.Set("problem", document.problem);
    file.Set("mendings", JsonOf(document.mendings)).Set("sections", std::move(sections));
    files.Append(std::move(file));
  }
  return Json::TextOf("krofx-print", std::move(files));
}

}  // namespace krofx::command
