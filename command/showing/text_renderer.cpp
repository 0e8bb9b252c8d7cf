// Documents as aligned tables.

#include <algorithm>

#include "output/safe_text.h"
#include "output/text_table.h"
#include "showing/renderers.h"
#include "showing/totals.h"

namespace krofx::command {

namespace {

constexpr std::size_t kDateCharacters = 10;

bool IsNumber(ValueKind kind) { return kind == ValueKind::kAmount || kind == ValueKind::kInteger; }

std::string Readable(const Cell& cell) {
  if (cell.kind == ValueKind::kBoolean) return cell.text == "true" ? "yes" : "no";
  if (cell.kind == ValueKind::kDate) return std::string(cell.text.substr(0, kDateCharacters));
  return SafeLine(cell.text);
}

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

void AppendTable(std::string& out, const Section& section, const Table& table,
                 const TextForm& form) {
  if (table.cells.empty()) {
    out.append("  ").append(table.spec->title).append(": none\n");
    return;
  }
  TextTable text;
  // Where each column goes; details go nowhere.
  std::vector<std::size_t> shown;
  for (std::size_t index = 0; index < table.spec->columns.size(); ++index) {
    const FieldSpec& column = table.spec->columns[index];
    if (column.detail) continue;
    shown.push_back(index);
    text.AddColumn(column.label,
                   column.minor ? TextTable::Weight::kMinor : TextTable::Weight::kMain);
  }
  for (std::size_t at = 0; at < table.CountRows(); ++at) {
    const Row row = table.GetRow(at);
    text.AddRow();
    for (std::size_t lane = 0; lane < shown.size(); ++lane) {
      const Cell& cell = row[shown[lane]];
      if (!cell) continue;
      if (IsNumber(cell.kind)) {
        text.SetNumber(lane, Readable(cell));
      } else {
        text.SetText(lane, Readable(cell));
      }
    }
  }
  out += "\n";
  text.Append(out, form);
  out += TotalsOf(section, table, form);
}

// The width of the labels of fields: that of the longest one, but for a few that would leave no
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
  const std::string text = Readable(field.cell);
  if (field.cell.kind == ValueKind::kAmount && text.starts_with('-')) {
    out.append(start).append(Colored(text, true, form)).append("\n");
  } else {
    AppendWrapped(out, start, text, form);
  }
}

void AppendSection(std::string& out, const Section& section, const TextForm& form) {
  out += "\n";
  std::string title(section.title);
  if (!section.subject.empty()) title += ": " + section.subject;
  AppendWrapped(out, "", title, form);
  const std::size_t width = LabelWidth(section.fields, form);
  for (const Field& field : section.fields) {
    if (!field.detail) AppendField(out, field, width, form);
  }
  for (const Table& table : section.tables) AppendTable(out, section, table, form);
}

}  // namespace

void AppendText(std::string& out, const Document& document, const TextForm& form) {
  std::string head = document.file;
  if (!document.kind.empty()) head += " (" + document.kind + ", " + document.meaning + ")";
  AppendWrapped(out, "== ", head, form);
  if (!document.problem.empty()) AppendWrapped(out, "not usable: ", document.problem, form);
  for (const Section& section : document.sections) AppendSection(out, section, form);
}

}  // namespace krofx::command
