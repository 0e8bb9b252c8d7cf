// Documents as aligned tables.

#include <algorithm>
#include <optional>

#include "output/safe_text.h"
#include "output/text_table.h"
#include "showing/renderers.h"
#include "showing/totals.h"

namespace krofx::command {

namespace {

constexpr std::size_t kDateCharacters = 10;

bool IsNumber(ValueKind kind) { return kind == ValueKind::kAmount || kind == ValueKind::kInteger; }

// A cell as people read it.
class Readable {
 public:
  explicit Readable(const Cell& cell) : m_text(cell.text) {
    if (cell.kind == ValueKind::kBoolean) {
      m_text = cell.text == "true" ? "yes" : "no";
    } else if (cell.kind == ValueKind::kDate) {
      m_text = cell.text.substr(0, kDateCharacters);
    } else if (!IsPlainText(cell.text)) {
      m_own = SafeLine(cell.text);
      m_text = m_own;
    }
  }
  Readable(const Readable&) = delete;
  Readable& operator=(const Readable&) = delete;

  std::string_view Get() const { return m_text; }

 private:
  std::string m_own;
  std::string_view m_text;
};

// A text after a label or in a line of its own; the lines that it needs are as far in as the first.
void AppendWrapped(std::string& out, const std::string& start, const std::string& text,
                   const TextForm& form) {
  const std::size_t indent = DisplayWidth(start);
  // A text beside a label that takes the whole width keeps a few columns.
  constexpr std::size_t kLeast = 10;
  const std::size_t room =
      form.columns == 0 ? 0 : std::max(form.columns - std::min(form.columns, indent), kLeast);
  std::string before = start;
  for (const std::string& part : Wrapped(text, room)) {
    std::string line = before + part;
    line.erase(line.find_last_not_of(' ') + 1);
    out.append(line).append("\n");
    before.assign(indent, ' ');
  }
}

// The rows are visited twice, so that none of them is held: to measure them, and to lay them out.
void AppendTable(TextOutput& out, const Section& section, const Table& table,
                 const TextForm& form) {
  TextTable text;
  // Where each column comes from.
  std::vector<std::size_t> shown;
  for (std::size_t index = 0; index < table.spec->columns.size(); ++index) {
    const FieldSpec& column = table.spec->columns[index];
    if (column.detail && !form.detailed) continue;
    shown.push_back(index);
    text.AddColumn(column.label,
                   column.minor ? TextTable::Weight::kMinor : TextTable::Weight::kMain);
  }
  Totals totals(section, *table.spec);
  table.ForEachRow([&](Row row) {
    for (std::size_t lane = 0; lane < shown.size(); ++lane) {
      const Cell& cell = row[shown[lane]];
      if (cell) text.Measure(lane, {Readable(cell).Get(), IsNumber(cell.kind)});
    }
    totals.Add(row);
  });
  if (totals.CountRows() == 0) {
    out.text.append("  ").append(table.spec->title).append(": none\n");
    return;
  }
  out.text += "\n";
  text.AppendHead(out.text, form);
  std::optional<Readable> readable;
  table.ForEachRow([&](Row row) {
    text.AppendRow(out.text, form, [&](std::size_t lane) {
      const Cell& cell = row[shown[lane]];
      if (!cell) return TextTable::Value();
      return TextTable::Value{readable.emplace(cell).Get(), IsNumber(cell.kind)};
    });
    return out.Offer();
  });
  out.text += totals.Text(form);
}

// The width of the labels of fields: that of the longest one, except a few that would leave no
// room for values on a terminal.
std::size_t LabelWidth(const std::vector<Field>& fields, const TextForm& form) {
  std::size_t width = 0;
  for (const Field& field : fields) {
    const std::size_t label = DisplayWidth(field.label);
    if (!field.detail && (form.columns == 0 || label <= form.columns / 2)) {
      width = std::max(width, label);
    }
  }
  return width;
}

void AppendField(std::string& out, const Field& field, std::size_t width, const TextForm& form) {
  const std::size_t label = DisplayWidth(field.label);
  std::string start = "  " + std::string(field.label);
  if (label > width) {
    AppendWrapped(out, "  ", std::string(field.label), form);
    start.assign(width + 4, ' ');
  } else {
    start.append(width - label + 2, ' ');
  }
  const Readable readable(field.cell);
  const std::string text(readable.Get());
  if (field.cell.kind == ValueKind::kAmount && text.starts_with('-')) {
    out.append(start).append(Colored(text, true, form)).append("\n");
  } else {
    AppendWrapped(out, start, text, form);
  }
}

void AppendSection(TextOutput& out, const Section& section, const TextForm& form) {
  out.text += "\n";
  std::string title(section.title);
  if (!section.subject.empty()) title += ": " + section.subject;
  AppendWrapped(out.text, "", title, form);
  const std::size_t width = LabelWidth(section.fields, form);
  for (const Field& field : section.fields) {
    if (!field.detail) AppendField(out.text, field, width, form);
  }
  for (const Table& table : section.tables) AppendTable(out, section, table, form);
}

}  // namespace

void AppendText(TextOutput& out, const Document& document, const TextForm& form) {
  std::string head = document.file;
  if (!document.kind.empty()) head += " (" + document.kind + ", " + document.meaning + ")";
  AppendWrapped(out.text, "== ", head, form);
  if (!document.problem.empty()) AppendWrapped(out.text, "not usable: ", document.problem, form);
  for (const Section& section : document.sections) AppendSection(out, section, form);
}

}  // namespace krofx::command
