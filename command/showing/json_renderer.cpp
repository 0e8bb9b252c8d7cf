// Documents as JSON, in the form that docs/json.md describes.

#include "output/json_text.h"
#include "showing/renderers.h"

namespace krofx::command {

namespace {

// Amounts are texts, since a reader's floating point would not keep them.
Json ToJson(const Cell& cell) {
  if (cell.kind == ValueKind::kBoolean) return cell.text == "true";
  if (cell.kind == ValueKind::kBlank) return nullptr;
  if (cell.kind == ValueKind::kInteger) return std::stoll(cell.text);
  return cell.text;
}

// A key that comes again, as in a payload shown by its tags, makes a list.
void Put(Json& object, const std::string& key, Json value) {
  if (!object.contains(key)) {
    object[key] = std::move(value);
    return;
  }
  Json& held = object[key];
  if (!held.is_array()) held = Json::array({std::move(held)});
  held.push_back(std::move(value));
}

Json ToJson(const Table& table) {
  Json rows = Json::array();
  for (const auto& row : table.rows) {
    Json object = Json::object();
    for (std::size_t index = 0; index < row.size(); ++index) {
      if (row[index]) object[table.columns[index].key] = ToJson(*row[index]);
    }
    rows.push_back(std::move(object));
  }
  return rows;
}

Json ToJson(const Section& section) {
  Json fields = Json::object();
  for (const Field& field : section.fields) Put(fields, field.key, ToJson(field.cell));
  Json object = {{"kind", section.kind},
                 {"title", section.title},
                 {"subject", section.subject},
                 {"fields", std::move(fields)}};
  for (const Table& table : section.tables) object[table.key] = ToJson(table);
  return object;
}

}  // namespace

std::string RenderJson(const std::vector<Document>& documents) {
  Json files = Json::array();
  for (const Document& document : documents) {
    Json sections = Json::array();
    for (const Section& section : document.sections) sections.push_back(ToJson(section));
    Json file = {{"file", document.file},         {"kind", document.kind},
                 {"status", document.status},     {"meaning", document.meaning},
                 {"warnings", document.warnings}, {"usable", document.problem.empty()}};
    if (!document.problem.empty()) file["problem"] = document.problem;
    file["sections"] = std::move(sections);
    files.push_back(std::move(file));
  }
  return JsonText("krofx-print", std::move(files));
}

}  // namespace krofx::command
