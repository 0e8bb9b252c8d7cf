// Reads the options that choose transactions, and chooses.

#include "showing/row_filter.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <utility>
#include <vector>

#include "command_line/command_line.h"
#include "command_line/days.h"
#include "command_line/nearest_name.h"
#include "output/characters.h"

namespace krofx::command {

namespace {

constexpr char kGroup[] = "Choosing transactions";

std::string Upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

std::string ReadAmount(const char* option, const std::string& text,
                       std::optional<ExactDecimal>& amount) {
  if (text.empty()) return "";
  amount = ExactDecimal::Parse(text);
  return amount ? "" : std::string(option) + " " + text + " is not an amount; write it as -1234.50";
}

// Those rows of another source that a function wants. It is asked once for each row, however often
// the rows are visited.
template <class Wanted>
class WantedRows final : public RowSource {
 public:
  WantedRows(std::shared_ptr<RowSource> all, Wanted wanted)
      : m_all(std::move(all)), m_wanted(std::move(wanted)) {}

  void ForEach(const std::function<bool(Row)>& visit) override {
    std::size_t index = 0;
    m_all->ForEach([&](Row row) {
      if (index == m_isWanted.size()) m_isWanted.push_back(m_wanted(row));
      return !m_isWanted[index++] || visit(row);
    });
  }

 private:
  const std::shared_ptr<RowSource> m_all;
  Wanted m_wanted;
  std::vector<bool> m_isWanted;
};

// Keeps the rows of a table that a function wants.
template <class Wanted>
void KeepRows(Table& table, Wanted wanted) {
  if (table.source != nullptr) {
    table.source = std::make_shared<WantedRows<Wanted>>(std::move(table.source), std::move(wanted));
    return;
  }
  std::vector<Cell> kept;
  table.ForEachRow([&](Row row) {
    if (wanted(row)) kept.insert(kept.end(), row.begin(), row.end());
  });
  table.cells = std::move(kept);
}

}  // namespace

void AddFilterOptions(const Subcommand& app, FilterOptions& options) {
  const auto add = [&app](const char* name, std::string& value, const char* help) {
    app.AddOption(name, value, help).InGroup(kGroup);
  };
  add("--from", options.from, "Those of this day or later: 2026-01-31, or -30d, -4w, -6m, -1y");
  add("--to", options.to, "Those of this day or earlier");
  add("--account", options.account, "The account of this number; its end is enough");
  add("--match", options.match,
      "Those with this text in name, memo, check number or security, in any case");
  add("--type", options.type, "Those of this type, such as CHECK or BUYSTOCK");
  add("--min", options.minimum, "Those of this amount or more; -50 is more than -100");
  add("--max", options.maximum, "Those of this amount or less");
  app.AddFlag("--unique", options.unique,
              "Each once, when several files have it: by its account and its identifier (FITID)")
      .InGroup(kGroup);
}

RowFilter::RowFilter(const FilterOptions& options, std::string& problem)
    : m_account(Upper(options.account)),
      m_match(FoldCase(options.match)),
      m_type(Upper(options.type)),
      m_unique(options.unique) {
  problem = ReadDays(options);
  if (problem.empty()) problem = ReadAmount("--min", options.minimum, m_minimum);
  if (problem.empty()) problem = ReadAmount("--max", options.maximum, m_maximum);
  if (problem.empty() && m_minimum && m_maximum && m_minimum->Compare(*m_maximum) > 0) {
    problem = "--min " + options.minimum + " is more than --max " + options.maximum;
  }
  if (problem.empty()) problem = ReadType(options.type);
}

std::string RowFilter::ReadDays(const FilterOptions& options) {
  const auto read = [](const char* option, const std::string& text, std::string& day) {
    if (text.empty()) return std::string();
    const std::optional<std::chrono::year_month_day> found = ParseDay(text);
    if (found) day = TextOf(*found);
    return found ? std::string()
                 : std::string(option) + " " + text +
                       " is not a day; write it as 2026-01-31, or -30d for thirty days ago";
  };
  std::string problem = read("--from", options.from, m_from);
  if (problem.empty()) problem = read("--to", options.to, m_to);
  if (problem.empty() && !m_from.empty() && !m_to.empty() && m_from > m_to) {
    problem = "--from " + options.from + " is after --to " + options.to;
  }
  return problem;
}

std::string RowFilter::ReadType(const std::string& type) {
  if (type.empty()) return "";
  const std::vector<std::string> known = TransactionTypes();
  if (std::find(known.begin(), known.end(), m_type) != known.end()) return "";
  std::string problem =
      "--type " + type + " is not a type" + SuggestNearest(type, known) + "; the types are ";
  for (const std::string& each : known) {
    problem.append(&each == known.data() ? "" : ", ").append(each);
  }
  return problem;
}

bool RowFilter::ChoosesRows() const {
  return !m_from.empty() || !m_to.empty() || !m_match.empty() || !m_type.empty() || m_minimum ||
         m_maximum || m_unique;
}

bool RowFilter::IsChosen(Row row, const TransactionColumns& columns) const {
  const std::string_view day = columns.DayOf(row);
  if (!m_from.empty() && (day.empty() || day < m_from)) return false;
  if (!m_to.empty() && (day.empty() || day > m_to)) return false;
  if (!m_type.empty() && columns.TypeOf(row) != m_type && columns.DetailOf(row) != m_type) {
    return false;
  }
  if (m_minimum || m_maximum) {
    const std::optional<ExactDecimal> amount = ExactDecimal::Parse(columns.AmountOf(row).text);
    if (!amount || (m_minimum && amount->Compare(*m_minimum) < 0) ||
        (m_maximum && amount->Compare(*m_maximum) > 0)) {
      return false;
    }
  }
  return m_match.empty() || columns.HasText(row, [this](std::string_view text) {
    return FoldCase(text).find(m_match) != std::string::npos;
  });
}

void RowFilter::Apply(Document& document) const {
  if (!m_account.empty()) {
    std::erase_if(document.sections, [this](const Section& section) {
      return !Upper(std::string(section.accountNumber)).ends_with(m_account);
    });
  }
  if (!ChoosesRows()) return;
  for (Section& section : document.sections) {
    std::erase_if(section.tables,
                  [](const Table& table) { return table.spec->key != kTransactions; });
    for (Table& table : section.tables) {
      KeepRows(table, [this, columns = TransactionColumns(*table.spec)](Row row) {
        return IsChosen(row, columns);
      });
    }
  }
  std::erase_if(document.sections, [](const Section& section) { return section.tables.empty(); });
}

void DuplicateFilter::Apply(Document& document) {
  const std::size_t file = m_files++;
  for (Section& section : document.sections) {
    for (Table& table : section.tables) {
      if (table.spec->key != kTransactions) continue;
      KeepRows(table, [this, file, columns = TransactionColumns(*table.spec),
                       account = section.identity + "\n"](Row row) {
        const std::string_view id = columns.IdOf(row);
        // Two of one file are two transactions, even if an institution gives them one identifier.
        return id.empty() ||
               m_seen.try_emplace(account + std::string(id), file).first->second == file;
      });
    }
  }
}

}  // namespace krofx::command
