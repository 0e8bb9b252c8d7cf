// Adds up the columns of a table that can be added up.

#include "showing/totals.h"

#include <cctype>
#include <map>

#include "showing/cell_source.h"
#include "showing/flow.h"
#include "showing/transaction_columns.h"

namespace krofx::command {

namespace {

// What a table calls its rows, in the plural.
std::string NameOf(const TableSpec& table) {
  std::string name(table.title);
  if (!name.empty()) name[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(name[0])));
  return name;
}

// Columns that are added up, each with its label.
struct Summed {
  std::size_t column;
  std::string label;
};

std::vector<Summed> SummedColumns(const TableSpec& table) {
  std::vector<Summed> summed;
  std::string_view keys = table.totals;
  while (!keys.empty()) {
    const std::string_view key = TakePart(keys, ' ');
    for (std::size_t index = 0; index < table.columns.size(); ++index) {
      if (table.columns[index].key != key) continue;
      std::string label(table.columns[index].label);
      label[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(label[0])));
      summed.push_back({index, std::move(label)});
    }
  }
  return summed;
}

// The sums of the rows of one currency, one flow for each column.
using Sums = std::vector<Flow>;

std::string LineOf(const TableSpec& table, const std::vector<Summed>& columns, const Sums& sums,
                   const TextForm& form) {
  const std::string things = NameOf(table);
  if (table.key == kTransactions) return FlowLine(sums.front(), things, form);
  std::string line = CountOf(sums.front().GetCount(), things);
  for (std::size_t index = 0; index < columns.size(); ++index) {
    line.append(kTotalsGap).append(columns[index].label).append(" ");
    line.append(SumText(sums[index].GetTexts().net, form));
  }
  return line;
}

}  // namespace

std::string TotalsOf(const Section& section, const Table& table, const TextForm& form) {
  const TableSpec& spec = *table.spec;
  const TransactionColumns columns(spec);
  const std::vector<Summed> summed = SummedColumns(spec);
  if (summed.empty()) return "  " + CountOf(table.CountRows(), NameOf(spec)) + "\n";
  std::map<std::string, Sums, std::less<>> byCurrency;
  for (std::size_t index = 0; index < table.CountRows(); ++index) {
    const Row row = table.GetRow(index);
    const std::string_view currency = columns.CurrencyOf(row, section);
    auto place = byCurrency.find(currency);
    if (place == byCurrency.end()) place = byCurrency.emplace(currency, summed.size()).first;
    for (std::size_t each = 0; each < summed.size(); ++each) {
      place->second[each].Add(row[summed[each].column].text);
    }
  }
  std::string lines;
  for (const auto& [currency, sums] : byCurrency) {
    lines.append("  ").append(LineOf(spec, summed, sums, form));
    if (byCurrency.size() > 1) lines.append(kTotalsGap).append(currency);
    lines.append("\n");
  }
  return lines;
}

}  // namespace krofx::command
