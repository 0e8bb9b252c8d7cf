// Gathers sums, and writes them in their three forms.

#include "showing/sums.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "command_line/days.h"
#include "output/json.h"
#include "output/safe_text.h"
#include "output/text_table.h"
#include "showing/row_writer.h"
#include "showing/transaction_columns.h"

namespace krofx::command {

namespace {

constexpr std::string_view kNames[] = {"month", "week", "name", "type", "account", "currency"};
constexpr std::string_view kLabels[] = {"Month", "Week", "Name", "Type", "Account", "Currency"};

constexpr std::size_t kMonthCharacters = 7;

std::string KeyOf(SumBy by, Row row, const Section& section, const TransactionColumns& columns) {
  switch (by) {
    case SumBy::kMonth:
      return std::string(columns.DayOf(row).substr(0, kMonthCharacters));
    case SumBy::kWeek:
      return WeekOf(columns.DayOf(row));
    case SumBy::kName:
      return std::string(columns.NameOf(row));
    case SumBy::kType:
      return std::string(columns.TypeOf(row));
    case SumBy::kAccount:
      return section.subject;
    case SumBy::kCurrency:
      return std::string(columns.CurrencyOf(row, section));
  }
  return "";
}

}  // namespace

std::span<const std::string_view> SumNames() { return kNames; }

std::optional<SumBy> ParseSumBy(std::string_view name) {
  const auto* const found = std::find(std::begin(kNames), std::end(kNames), name);
  if (found == std::end(kNames)) return std::nullopt;
  return static_cast<SumBy>(found - std::begin(kNames));
}

std::string WeekOf(std::string_view day) {
  using namespace std::chrono;
  const std::optional<year_month_day> date = ParseDay(day);
  if (!date) return "";
  // A week belongs to the year that its Thursday is in.
  const sys_days here(*date);
  const sys_days thursday = here - (weekday(here) - Monday) + days(3);
  const year_month_day found(thursday);
  const auto week = (thursday - sys_days(found.year() / January / 1)).count() / 7 + 1;
  char text[32];
  std::snprintf(text, sizeof text, "%04d-W%02d", int(found.year()), static_cast<int>(week));
  return text;
}

void Sums::Add(const Document& document) {
  for (const Section& section : document.sections) {
    for (const Table& table : section.tables) {
      if (table.spec->key != kTransactions) continue;
      const TransactionColumns columns(*table.spec);
      table.ForEachRow([&](Row row) {
        Key key(KeyOf(m_by, row, section, columns), columns.CurrencyOf(row, section));
        m_flows[std::move(key)].Add(columns.AmountOf(row).text);
      });
    }
  }
}

void Sums::Add(const Sums& other) {
  for (const auto& [key, flow] : other.m_flows) m_flows[key].Add(flow);
}

std::string Sums::Text(const TextForm& form) const {
  if (m_flows.empty()) return "no transactions\n";
  TextTable table;
  table.AddColumn(kLabels[static_cast<std::size_t>(m_by)]);
  // The currency is a column of its own, unless it is what is summed by.
  const bool hasCurrency = m_by != SumBy::kCurrency;
  if (hasCurrency) table.AddColumn("Currency");
  for (const char* const label : {"Count", "In", "Out", "Net"}) table.AddColumn(label);
  std::map<std::string, Flow> totals;
  for (const auto& [key, flow] : m_flows) {
    const Flow::Texts texts = flow.GetTexts();
    table.AddRow();
    std::size_t column = 0;
    table.SetText(column++, key.first.empty() ? "(none)" : SafeLine(key.first));
    if (hasCurrency) table.SetText(column++, SafeLine(key.second));
    table.SetNumber(column++, std::to_string(flow.GetCount()));
    for (const std::string& text : {texts.in, texts.out, texts.net}) {
      table.SetNumber(column++, text.empty() ? "too large" : text);
    }
    totals[key.second].Add(flow);
  }
  std::string out;
  table.Append(out, form);
  for (const auto& [currency, flow] : totals) {
    out.append("  ").append(FlowLine(flow, "transactions", form));
    if (totals.size() > 1) out.append(kTotalsGap).append(currency);
    out.append("\n");
  }
  return out;
}

std::string Sums::Csv() const {
  const bool hasCurrency = m_by != SumBy::kCurrency;
  std::string out = std::string(Name()) + (hasCurrency ? ",currency" : "") + ",count,in,out,net\n";
  for (const auto& [key, flow] : m_flows) {
    const Flow::Texts texts = flow.GetTexts();
    AppendCsv(out, key.first);
    if (hasCurrency) {
      out += ',';
      AppendCsv(out, key.second);
    }
    out += "," + std::to_string(flow.GetCount()) + "," + texts.in + "," + texts.out + "," +
           texts.net + "\n";
  }
  return out;
}

std::string Sums::Json() const {
  using Value = command::Json;
  Value all = Value::Array();
  for (const auto& [key, flow] : m_flows) {
    const Flow::Texts texts = flow.GetTexts();
    Value sum = Value::Object();
    sum.Set(std::string(Name()), key.first).Set("currency", key.second);
    sum.Set("count", flow.GetCount());
    if (!texts.net.empty()) sum.Set("in", texts.in).Set("out", texts.out).Set("net", texts.net);
    all.Append(std::move(sum));
  }
  Value output = Value::Output("krofx-sum");
  output.Set("by", std::string(Name())).Set("sums", std::move(all));
  return output.Text(0) + "\n";
}

}  // namespace krofx::command
