// Documents as JSON, in the form that docs/json.md describes. It is written as it comes, since an
// object for each cell would take longer than all else.

#include <unordered_map>

#include "output/json.h"
#include "output/text_output.h"
#include "showing/json_cells.h"
#include "showing/renderers.h"

namespace krofx::command {

namespace {

constexpr std::size_t kIndent = 2;

// The lines of an object or an array: each of its parts is on a line of its own.
class JsonBlock {
 public:
  // `indent` is how far in its last line is; its parts are further in.
  JsonBlock(std::string& out, std::size_t indent, std::string_view brackets)
      : m_out(out), m_brackets(brackets), m_lineEnd(1, '\n') {
    m_lineEnd.append(indent + kIndent, ' ');
    m_out += brackets.front();
  }
  JsonBlock(const JsonBlock&) = delete;
  JsonBlock& operator=(const JsonBlock&) = delete;
  ~JsonBlock() {
    m_lineEnd.resize(m_lineEnd.size() - kIndent);
    if (m_any) m_out += m_lineEnd;
    m_out += m_brackets.back();
  }

  // Begins an element of an array.
  void Next() {
    if (m_any) m_out += ',';
    m_any = true;
    m_out += m_lineEnd;
  }
  // Begins a member of an object; its value comes next.
  void Next(std::string_view key) {
    Next();
    AppendJson(m_out, key);
    m_out += ": ";
  }
  template <class Value>
  void Add(std::string_view key, const Value& value) {
    Next(key);
    AppendJson(m_out, value);
  }
  // How far in its parts are.
  std::size_t Indent() const { return m_lineEnd.size() - 1; }

 private:
  std::string& m_out;
  const std::string_view m_brackets;
  std::string m_lineEnd;
  bool m_any = false;
};

constexpr std::string_view kObject = "{}";
constexpr std::string_view kArray = "[]";

// A key that is there several times has a list of its values.
void AppendFields(std::string& out, const std::vector<Field>& fields, std::size_t indent) {
  std::unordered_map<std::string_view, std::vector<const Field*>> byKey;
  for (const Field& field : fields) byKey[field.key].push_back(&field);
  JsonBlock object(out, indent, kObject);
  for (const Field& field : fields) {
    const std::vector<const Field*>& all = byKey[field.key];
    if (all.front() != &field) continue;
    if (all.size() == 1) {
      object.Add(field.key, field.cell);
      continue;
    }
    object.Next(field.key);
    JsonBlock list(out, object.Indent(), kArray);
    for (const Field* const each : all) {
      list.Next();
      AppendJson(out, each->cell);
    }
  }
}

void AppendTable(TextOutput& out, const Table& table, std::size_t indent) {
  JsonBlock rows(out.text, indent, kArray);
  // What comes before each value: the keys of all rows are the same.
  std::vector<std::string> keys;
  for (const FieldSpec& column : table.spec->columns) {
    std::string& key = keys.emplace_back(",\n");
    key.append(rows.Indent() + kIndent, ' ');
    AppendJson(key, column.key);
    key += ": ";
  }
  const std::string end = "\n" + std::string(rows.Indent(), ' ') + "}";
  table.ForEachRow([&](Row row) {
    rows.Next();
    out.text += '{';
    bool any = false;
    for (std::size_t index = 0; index < row.size(); ++index) {
      if (!row[index]) continue;
      out.text += std::string_view(keys[index]).substr(any ? 0 : 1);
      any = true;
      AppendJson(out.text, row[index]);
    }
    out.text += any ? std::string_view(end) : "}";
    return out.Offer();
  });
}

void AppendSection(TextOutput& out, const Section& section, std::size_t indent) {
  JsonBlock object(out.text, indent, kObject);
  object.Add("kind", section.kind);
  object.Add("title", section.title);
  object.Add("subject", std::string_view(section.subject));
  object.Next("fields");
  AppendFields(out.text, section.fields, object.Indent());
  for (const Table& table : section.tables) {
    object.Next(table.spec->key);
    AppendTable(out, table, object.Indent());
  }
}

}  // namespace

std::string JsonHead() { return Json::HeadOf("krofx-print"); }

void AppendJson(TextOutput& out, const Document& document) {
  out.text.append("\n").append(Json::kFileIndent, ' ');
  JsonBlock object(out.text, Json::kFileIndent, kObject);
  object.Add("file", std::string_view(document.file));
  object.Add("kind", std::string_view(document.kind));
  object.Add("status", Cell(ValueKind::kInteger, std::to_string(document.status)));
  object.Add("meaning", std::string_view(document.meaning));
  object.Add("warnings", Cell(ValueKind::kInteger, std::to_string(document.warnings)));
  object.Add("usable", Cell(ValueKind::kBoolean, document.problem.empty() ? "true" : "false"));
  if (!document.problem.empty()) object.Add("problem", std::string_view(document.problem));
  object.Next("mendings");
  out.text += JsonOf(document.mendings).Text(object.Indent());
  object.Next("sections");
  JsonBlock sections(out.text, object.Indent(), kArray);
  for (const Section& section : document.sections) {
    sections.Next();
    AppendSection(out, section, sections.Indent());
  }
}

std::string JsonTail(bool any) { return Json::TailOf(any); }

}  // namespace krofx::command
