// Lays out tables. What does not fit a terminal is dropped and cut step by step, what matters least
// first: minor columns, long labels, long texts, then the last columns.

#include "output/text_table.h"

#include <algorithm>

#include "output/safe_text.h"

namespace krofx::command {

namespace {

constexpr std::size_t kIndent = 2;
constexpr std::size_t kGap = 2;
// A label that is cut further says nothing.
constexpr std::size_t kLeastLabel = 6;
// A text that is cut further says little, or nothing.
constexpr std::size_t kGoodText = 14;
constexpr std::size_t kLeastText = 6;
// The first columns are the date and the type of a row.
constexpr std::size_t kKeptColumns = 3;

std::size_t PointOf(std::string_view number) { return std::min(number.find('.'), number.size()); }

void Pad(std::string& out, std::size_t have, std::size_t wanted) {
  if (wanted > have) out.append(wanted - have, ' ');
}

}  // namespace

std::size_t TextTable::Lane::Content() const { return std::max(text, before + after); }

void TextTable::AddColumn(std::string_view label, Weight weight) {
  m_lanes.push_back({std::string(label), weight});
}

void TextTable::SetText(std::size_t column, std::string text) {
  Set(column, {std::move(text), false});
}

void TextTable::SetNumber(std::size_t column, std::string number) {
  Set(column, {std::move(number), true});
}

void TextTable::Set(std::size_t column, Cell cell) {
  Measure(column, {cell.text, cell.isNumber});
  LastRow(column) = std::move(cell);
}

void TextTable::Measure(std::size_t column, const Value& value) {
  if (value.text.empty()) return;
  Lane& lane = m_lanes[column];
  lane.shown = true;
  if (!value.isNumber) {
    lane.text = std::max(lane.text, DisplayWidth(value.text));
    return;
  }
  const std::size_t point = PointOf(value.text);
  lane.isNumber = true;
  lane.before = std::max(lane.before, DisplayWidth(value.text.substr(0, point)));
  lane.after = std::max(lane.after, DisplayWidth(value.text.substr(point)));
}

std::size_t TextTable::Width() const {
  std::size_t width = kIndent;
  std::size_t shown = 0;
  for (const Lane& lane : m_lanes) {
    if (lane.shown) width += lane.width + (shown++ > 0 ? kGap : 0);
  }
  return width;
}

// Drops the last column of a weight, unless it is among the first ones that are kept.
bool TextTable::DropLast(Weight weight, std::size_t keep) {
  for (std::size_t index = m_lanes.size(); index > 0; --index) {
    Lane& lane = m_lanes[index - 1];
    if (!lane.shown || lane.weight != weight) continue;
    const auto before = std::count_if(m_lanes.begin(), m_lanes.begin() + static_cast<long>(index),
                                      [](const Lane& each) { return each.shown; });
    if (static_cast<std::size_t>(before) <= keep) return false;
    lane.shown = false;
    return true;
  }
  return false;
}

void TextTable::CutLabels(std::size_t columns) {
  for (Lane& lane : m_lanes) {
    const std::size_t now = Width();
    if (now <= columns) return;
    const std::size_t least = std::max(lane.Content(), std::min(kLeastLabel, lane.width));
    if (lane.shown && lane.width > least) {
      lane.width = std::max(least, lane.width - std::min(lane.width, now - columns));
    }
  }
}

// Takes the columns from the widest texts.
void TextTable::CutTexts(std::size_t columns, std::size_t least) {
  while (Width() > columns) {
    Lane* widest = nullptr;
    for (Lane& lane : m_lanes) {
      if (!lane.shown || lane.isNumber || lane.width <= least) continue;
      if (widest == nullptr || lane.width > widest->width) widest = &lane;
    }
    if (widest == nullptr) return;
    --widest->width;
  }
}

void TextTable::Fit(std::size_t columns) {
  while (Width() > columns && DropLast(Weight::kMinor, 0)) {
  }
  CutLabels(columns);
  CutTexts(columns, kGoodText);
  while (Width() > columns && DropLast(Weight::kMain, kKeptColumns)) {
  }
  CutTexts(columns, kLeastText);
  while (Width() > columns && DropLast(Weight::kMain, 1)) {
  }
}

std::size_t TextTable::BeginLine(std::string& out) {
  const std::size_t start = out.size();
  out.append(kIndent, ' ');
  return start;
}

void TextTable::EndLine(std::string& out, std::size_t start) {
  while (out.size() > start && out.back() == ' ') out.pop_back();
  out += '\n';
}

void TextTable::AppendValue(std::string& out, const Lane& lane, const Value& value,
                            const TextForm& form) {
  const std::string_view text = value.text;
  if (value.isNumber) {
    const std::size_t point = PointOf(text);
    const std::size_t before = DisplayWidth(text.substr(0, point));
    const std::size_t after = DisplayWidth(text.substr(point));
    out.append(lane.width - lane.after - before, ' ');
    out += Colored(text, text.starts_with('-'), form);
    Pad(out, after, lane.after);
  } else {
    const std::size_t whole = DisplayWidth(text);
    const std::string cut = whole > lane.width ? Cut(text, lane.width) : std::string();
    const std::size_t have = whole > lane.width ? DisplayWidth(cut) : whole;
    if (lane.isNumber) Pad(out, have, lane.width);
    out += whole > lane.width ? std::string_view(cut) : text;
    if (!lane.isNumber) Pad(out, have, lane.width);
  }
  out.append(kGap, ' ');
}

void TextTable::AppendHead(std::string& out, const TextForm& form) {
  for (Lane& lane : m_lanes) lane.width = std::max(lane.Content(), DisplayWidth(lane.label));
  if (form.columns > 0) Fit(form.columns);
  AppendRow(out, form, [this](std::size_t index) { return Value{m_lanes[index].label}; });
  std::string line;
  AppendRow(out, form, [&](std::size_t index) {
    line.assign(m_lanes[index].width, '-');
    return Value{line};
  });
}

void TextTable::Append(std::string& out, const TextForm& form) {
  AppendHead(out, form);
  for (std::size_t row = 0; row + m_lanes.size() <= m_cells.size(); row += m_lanes.size()) {
    AppendRow(out, form, [&](std::size_t index) {
      const Cell& cell = m_cells[row + index];
      return Value{cell.text, cell.isNumber};
    });
  }
}

}  // namespace krofx::command
