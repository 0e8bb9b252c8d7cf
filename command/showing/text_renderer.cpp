// Documents as aligned tables.

#include <algorithm>

#include "output/safe_text.h"
#include "showing/renderers.h"

namespace krofx::command {

namespace {

constexpr std::size_t kDateCharacters = 10;

bool IsNumber(ValueKind kind) { return kind == ValueKind::kAmount || kind == ValueKind::kInteger; }

std::string Readable(const Cell& cell) {
  if (cell.kind == ValueKind::kBoolean) return cell.text == "true" ? "yes" : "no";
  if (cell.kind == ValueKind::kDate) return std::string(cell.text.substr(0, kDateCharacters));
  return SafeLine(cell.text);
}

std::string Padded(std::string_view text, std::size_t width, bool right) {
  const std::size_t have = DisplayWidth(text);
  const std::string blanks(width > have ? width - have : 0, ' ');
  return right ? blanks + std::string(text) : std::string(text) + blanks;
}

std::string WithoutTrailingBlanks(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

// One column of a table, ready to be laid out.
struct Lane {
  std::size_t index;
  std::size_t width = 0;
  bool right = false;
};

// The columns that are for people and that hold anything.
std::vector<Lane> LanesOf(const Table& table) {
  std::vector<Lane> lanes;
  for (std::size_t index = 0; index < table.spec->columns.size(); ++index) {
    if (table.spec->columns[index].detail) continue;
    Lane lane{index};
    for (std::size_t at = 0; at < table.CountRows(); ++at) {
      const Cell& cell = table.GetRow(at)[index];
      if (cell.text.empty()) continue;
      lane.width = std::max(lane.width, DisplayWidth(Readable(cell)));
      lane.right = lane.right || IsNumber(cell.kind);
    }
    if (lane.width == 0) continue;
    lane.width = std::max(lane.width, DisplayWidth(table.spec->columns[index].label));
    lanes.push_back(lane);
  }
  return lanes;
}

void AppendTable(std::string& out, const Table& table) {
  if (table.cells.empty()) {
    out += "  " + std::string(table.spec->title) + ": none\n";
    return;
  }
  const std::vector<Lane> lanes = LanesOf(table);
  const auto appendLine = [&](const auto& textOf) {
    std::string line = "  ";
    for (const Lane& lane : lanes)
      line += Padded(textOf(lane.index), lane.width, lane.right) + "  ";
    out += WithoutTrailingBlanks(std::move(line)) + "\n";
  };
  out += "\n";
  appendLine([&](std::size_t index) { return std::string(table.spec->columns[index].label); });
  appendLine([&](std::size_t index) {
    const auto lane = std::find_if(lanes.begin(), lanes.end(),
                                   [index](const Lane& each) { return each.index == index; });
    return std::string(lane->width, '-');
  });
  for (std::size_t at = 0; at < table.CountRows(); ++at) {
    const Row row = table.GetRow(at);
    appendLine([&](std::size_t index) { return row[index] ? Readable(row[index]) : ""; });
  }
}

void AppendSection(std::string& out, const Section& section) {
  out += "\n" + std::string(section.title);
  if (!section.subject.empty()) out += ": " + section.subject;
  out += "\n";
  std::size_t width = 0;
  for (const Field& field : section.fields) {
    if (!field.detail) width = std::max(width, DisplayWidth(field.label));
  }
  for (const Field& field : section.fields) {
    if (field.detail) continue;
    out += WithoutTrailingBlanks("  " + Padded(field.label, width, false) + "  " +
                                 Readable(field.cell)) +
           "\n";
  }
  for (const Table& table : section.tables) AppendTable(out, table);
}

}  // namespace

std::string RenderText(const std::vector<Document>& documents) {
  std::string out;
  for (const Document& document : documents) {
    if (!out.empty()) out += "\n";
    out += "== " + document.file;
    if (!document.kind.empty()) out += " (" + document.kind + ", " + document.meaning + ")";
    out += "\n";
    if (!document.problem.empty()) out += "not usable: " + document.problem + "\n";
    for (const Section& section : document.sections) AppendSection(out, section);
  }
  return out;
}

}  // namespace krofx::command
