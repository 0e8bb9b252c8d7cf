// Adds up the columns of a table that can be added up.

#include "showing/totals.h"

#include <utility>

#include "output/characters.h"
#include "showing/cell_source.h"

namespace krofx::command {

namespace {

// What a table calls its rows, in the plural.
std::string NameOf(const TableSpec& table) {
  std::string name(table.title);
  if (!name.empty()) name[0] = LowerAscii(name[0]);
  return name;
}

}  // namespace

Totals::Totals(const Section& section, const TableSpec& table)
    : m_section(section), m_table(table), m_columns(table) {
  std::string_view keys = table.totals;
  while (!keys.empty()) {
    const std::string_view key = TakePart(keys, ' ');
    for (std::size_t index = 0; index < table.columns.size(); ++index) {
      if (table.columns[index].key != key) continue;
      std::string label(table.columns[index].label);
      label[0] = LowerAscii(label[0]);
      m_summed.push_back({index, std::move(label)});
    }
  }
}

void Totals::Add(Row row) {
  ++m_count;
  if (m_summed.empty()) return;
  const std::string_view currency = m_columns.CurrencyOf(row, m_section);
  auto place = m_byCurrency.find(currency);
  if (place == m_byCurrency.end()) place = m_byCurrency.emplace(currency, m_summed.size()).first;
  for (std::size_t each = 0; each < m_summed.size(); ++each) {
    place->second[each].Add(row[m_summed[each].column].text);
  }
}

std::string Totals::LineOf(const std::vector<Flow>& sums, const TextForm& form) const {
  const std::string things = NameOf(m_table);
  if (m_table.key == kTransactions) return FlowLine(sums.front(), things, form);
  std::string line = CountOf(sums.front().GetCount(), things);
  for (std::size_t index = 0; index < m_summed.size(); ++index) {
    line.append(kTotalsGap).append(m_summed[index].label).append(" ");
    line.append(SumText(sums[index].GetTexts().net, form));
  }
  return line;
}

std::string Totals::Text(const TextForm& form) const {
  if (m_summed.empty()) return "  " + CountOf(m_count, NameOf(m_table)) + "\n";
  std::string lines;
  for (const auto& [currency, sums] : m_byCurrency) {
    lines.append("  ").append(LineOf(sums, form));
    if (m_byCurrency.size() > 1) lines.append(kTotalsGap).append(currency);
    lines.append("\n");
  }
  return lines;
}

}  // namespace krofx::command
