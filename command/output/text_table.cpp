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
  if (text.empty()) return;
  Lane& lane = m_lanes[column];
  lane.shown = true;
  lane.text = std::max(lane.text, DisplayWidth(text));
  LastRow(column).text = std::move(text);
}

void TextTable::SetNumber(std::size_t column, std::string number) {
  if (number.empty()) return;
  Lane& lane = m_lanes[column];
  const std::size_t point = PointOf(number);
  lane.shown = lane.isNumber = true;
  lane.before = std::max(lane.before, DisplayWidth(std::string_view(number).substr(0, point)));
  lane.after = std::max(lane.after, DisplayWidth(std::string_view(number).substr(point)));
  LastRow(column) = {std::move(number), true};
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

std::string TextTable::Laid(const Lane& lane, const Cell& cell, const TextForm& form) const {
  std::string out;
  if (cell.isNumber) {
    const std::size_t point = PointOf(cell.text);
    const std::size_t before = DisplayWidth(std::string_view(cell.text).substr(0, point));
    const std::size_t after = DisplayWidth(std::string_view(cell.text).substr(point));
    out.append(lane.width - lane.after - before, ' ');
    out += Colored(cell.text, cell.text.starts_with('-'), form);
    Pad(out, 0, lane.after - after);
    return out;
  }
  const std::string text = Cut(cell.text, lane.width);
  const std::size_t have = DisplayWidth(text);
  if (lane.isNumber) Pad(out, have, lane.width);
  out += text;
  if (!lane.isNumber) Pad(out, have, lane.width);
  return out;
}

void TextTable::Append(std::string& out, const TextForm& form) {
  for (Lane& lane : m_lanes) lane.width = std::max(lane.Content(), DisplayWidth(lane.label));
  if (form.columns > 0) Fit(form.columns);
  const auto appendLine = [&](const auto& textOf) {
    std::string line(kIndent, ' ');
    for (std::size_t index = 0; index < m_lanes.size(); ++index) {
      if (m_lanes[index].shown) line.append(textOf(index)).append(kGap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out.append(line).append("\n");
  };
  appendLine([&](std::size_t index) {
    return Laid(m_lanes[index], {m_lanes[index].label, false}, form);
  });
  appendLine([&](std::size_t index) { return std::string(m_lanes[index].width, '-'); });
  for (std::size_t row = 0; row + m_lanes.size() <= m_cells.size(); row += m_lanes.size()) {
    appendLine([&](std::size_t index) { return Laid(m_lanes[index], m_cells[row + index], form); });
  }
}

}  // namespace krofx::command
