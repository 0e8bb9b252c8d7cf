// Documents as JSON, in the form that docs/json.md describes. It is written as it comes, since an
// object for each cell would take longer than all else.

#include <unordered_map>

#include "output/json.h"
#include "showing/json_cells.h"
#include "showing/renderers.h"

namespace krofx::command {

namespace {

using Writer = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

constexpr std::size_t kIndent = 2;
// How far in the members of a file are.
constexpr std::size_t kMemberIndent = Json::kFileIndent + kIndent;

// A key that is there several times has a list of its values.
void WriteFields(Writer& writer, const std::vector<Field>& fields) {
  std::unordered_map<std::string_view, std::vector<const Field*>> byKey;
  for (const Field& field : fields) byKey[field.key].push_back(&field);
  writer.StartObject();
  for (const Field& field : fields) {
    const std::vector<const Field*>& all = byKey[field.key];
    if (all.front() != &field) continue;
    WriteKey(writer, field.key);
    if (all.size() > 1) writer.StartArray();
    for (const Field* const each : all) WriteCell(writer, each->cell);
    if (all.size() > 1) writer.EndArray();
  }
  writer.EndObject();
}

void WriteTable(Writer& writer, const Table& table) {
  WriteKey(writer, table.spec->key);
  writer.StartArray();
  for (std::size_t at = 0; at < table.CountRows(); ++at) {
    const Row row = table.GetRow(at);
    writer.StartObject();
    for (std::size_t index = 0; index < row.size(); ++index) {
      if (!row[index]) continue;
      WriteKey(writer, table.spec->columns[index].key);
      WriteCell(writer, row[index]);
    }
    writer.EndObject();
  }
  writer.EndArray();
}

void WriteSection(Writer& writer, const Section& section) {
  writer.StartObject();
  WriteMember(writer, "kind", section.kind);
  WriteMember(writer, "title", section.title);
  WriteMember(writer, "subject", section.subject);
  WriteKey(writer, "fields");
  WriteFields(writer, section.fields);
  for (const Table& table : section.tables) WriteTable(writer, table);
  writer.EndObject();
}

void WriteDocument(Writer& writer, const Document& document) {
  writer.StartObject();
  WriteMember(writer, "file", document.file);
  WriteMember(writer, "kind", document.kind);
  WriteKey(writer, "status");
  writer.Uint(document.status);
  WriteMember(writer, "meaning", document.meaning);
  WriteKey(writer, "warnings");
  writer.Uint64(document.warnings);
  WriteKey(writer, "usable");
  writer.Bool(document.problem.empty());
  if (!document.problem.empty()) WriteMember(writer, "problem", document.problem);
  const std::string mendings = JsonOf(document.mendings).Text(kMemberIndent);
  WriteKey(writer, "mendings");
  writer.RawValue(mendings.data(), mendings.size(), rapidjson::kArrayType);
  WriteKey(writer, "sections");
  writer.StartArray();
  for (const Section& section : document.sections) WriteSection(writer, section);
  writer.EndArray();
  writer.EndObject();
}

}  // namespace

std::string JsonHead() { return Json::HeadOf("krofx-print"); }

void AppendJson(std::string& out, const Document& document) {
  rapidjson::StringBuffer text;
  Writer writer(text);
  writer.SetIndent(' ', kIndent);
  // A file is in a list in an object, which only gives it its place on the line.
  writer.StartObject();
  WriteKey(writer, "files");
  writer.StartArray();
  text.Clear();
  WriteDocument(writer, document);
  out.append(text.GetString(), text.GetSize());
}

std::string JsonTail(bool any) { return Json::TailOf(any); }

}  // namespace krofx::command
