// Pairs the transactions of two downloads, and words what is different.

#include "showing/comparison.h"

#include <algorithm>
#include <optional>

#include "output/exact_decimal.h"
#include "output/safe_text.h"
#include "showing/transaction_columns.h"

namespace krofx::command {

namespace {

std::string IdentityOf(const Section& section, Row row, const TransactionColumns& columns) {
  std::string identity = section.identity + "\n";
  if (!columns.IdOf(row).empty()) return identity.append(columns.IdOf(row));
  for (const Cell& cell : row) identity.append("\n").append(cell.text);
  return identity;
}

// Whether two values say the same; 10.00 and 10 do.
bool IsSameValue(const Cell& was, const Cell& is) {
  if (was.isThere != is.isThere) return false;
  if (was.text == is.text) return true;
  if (was.kind != ValueKind::kAmount || is.kind != ValueKind::kAmount) return false;
  const std::optional<ExactDecimal> before = ExactDecimal::Parse(was.text);
  const std::optional<ExactDecimal> after = ExactDecimal::Parse(is.text);
  return before && after && before->Compare(*after) == 0;
}

Json ValueOf(const Cell& cell) { return cell ? Json(std::string(cell.text)) : Json(); }

}  // namespace

void Comparison::Add(Side side, const Document& document) {
  for (const Section& section : document.sections) {
    for (const Table& table : section.tables) {
      if (table.spec->key != kTransactions) continue;
      const TransactionColumns columns(*table.spec);
      table.ForEachRow([&](Row row) {
        const std::string identity = IdentityOf(section, row, columns);
        const auto [place, isNew] = m_places.try_emplace(identity, m_pairs.size());
        if (isNew) m_pairs.emplace_back();
        Pair& pair = m_pairs[place->second];
        (side == Side::kOld ? pair.before : pair.after).push_back({&section, table.spec, row});
      });
    }
  }
}

std::vector<Comparison::Change> Comparison::FindChanges(const Transaction& before,
                                                        const Transaction& after) {
  std::vector<Change> changes;
  // Another kind of statement has other columns: only those of the same key are compared.
  const auto& columns = after.table->columns;
  const auto& columnsBefore = before.table->columns;
  for (std::size_t index = 0; index < columns.size(); ++index) {
    const auto same =
        std::find_if(columnsBefore.begin(), columnsBefore.end(),
                     [&](const FieldSpec& each) { return each.key == columns[index].key; });
    if (same == columnsBefore.end()) continue;
    const Cell& was = before.cells[static_cast<std::size_t>(same - columnsBefore.begin())];
    const Cell& is = after.cells[index];
    if (!IsSameValue(was, is)) {
      changes.push_back({columns[index].key, columns[index].label, was, is});
    }
  }
  // The currency of the amounts is that of the statement.
  const Cell was = before.section->Find("currency");
  const Cell is = after.section->Find("currency");
  if (!IsSameValue(was, is)) {
    changes.push_back({"statement_currency", "Statement currency", was, is});
  }
  return changes;
}

template <class OnNew, class OnGone, class OnChanged>
void Comparison::ForEach(OnNew onNew, OnGone onGone, OnChanged onChanged) const {
  for (const Pair& pair : m_pairs) {
    const std::size_t common = std::min(pair.before.size(), pair.after.size());
    for (std::size_t index = 0; index < common; ++index) {
      const std::vector<Change> changes = FindChanges(pair.before[index], pair.after[index]);
      if (!changes.empty()) onChanged(pair.after[index], changes);
    }
    for (std::size_t index = common; index < pair.before.size(); ++index) {
      onGone(pair.before[index]);
    }
    for (std::size_t index = common; index < pair.after.size(); ++index) onNew(pair.after[index]);
  }
}

bool Comparison::IsSame() const {
  bool same = true;
  ForEach([&](const auto&) { same = false; }, [&](const auto&) { same = false; },
          [&](const auto&, const auto&) { same = false; });
  return same;
}

std::string Comparison::Describe(const Transaction& transaction, const TextForm& form) {
  const TransactionColumns columns(*transaction.table);
  const Row row = transaction.cells;
  std::string line = SafeLine(transaction.section->subject);
  const auto add = [&line](std::string_view text) {
    if (!text.empty()) line.append("  ").append(SafeLine(text));
  };
  add(columns.DayOf(row));
  const std::string_view amount = columns.AmountOf(row).text;
  if (!amount.empty()) {
    line.append("  ").append(Colored(SafeLine(amount), amount.starts_with('-'), form));
  }
  add(columns.NameOf(row));
  if (!columns.IdOf(row).empty()) add("(" + std::string(columns.IdOf(row)) + ")");
  return line;
}

std::string Comparison::Text(const TextForm& form) const {
  std::string out;
  std::size_t added = 0;
  std::size_t gone = 0;
  std::size_t changed = 0;
  const auto line = [&](const char* mark, const Transaction& transaction) {
    out.append(mark).append(" ").append(Describe(transaction, form));
  };
  ForEach(
      [&](const Transaction& each) {
        ++added;
        line("+", each);
        out += "\n";
      },
      [&](const Transaction& each) {
        ++gone;
        line("-", each);
        out += "\n";
      },
      [&](const Transaction& each, const std::vector<Change>& changes) {
        ++changed;
        line("~", each);
        const char* separator = ": ";
        for (const Change& change : changes) {
          const auto value = [](const Cell& cell) {
            return cell ? "\"" + SafeLine(cell.text) + "\"" : std::string("nothing");
          };
          out.append(separator).append(change.key).append(" ");
          out.append(value(change.before)).append(" -> ").append(value(change.after));
          separator = ", ";
        }
        out += "\n";
      });
  if (out.empty()) return out;
  return out + std::to_string(added) + " new, " + std::to_string(gone) + " gone, " +
         std::to_string(changed) + " changed\n";
}

Json Comparison::JsonOf(const Transaction& transaction) {
  Json object = Json::Object();
  object.Set("account", transaction.section->subject);
  const Row row = transaction.cells;
  const auto& columns = transaction.table->columns;
  for (std::size_t index = 0; index < row.size(); ++index) {
    if (row[index]) object.Set(std::string(columns[index].key), ValueOf(row[index]));
  }
  return object;
}

std::string Comparison::JsonText(const std::string& oldName, const std::string& newName) const {
  Json added = Json::Array();
  Json gone = Json::Array();
  Json changed = Json::Array();
  ForEach([&](const Transaction& each) { added.Append(JsonOf(each)); },
          [&](const Transaction& each) { gone.Append(JsonOf(each)); },
          [&](const Transaction& each, const std::vector<Change>& changes) {
            Json list = Json::Array();
            for (const Change& change : changes) {
              Json object = Json::Object();
              object.Set("key", std::string(change.key))
                  .Set("old", ValueOf(change.before))
                  .Set("new", ValueOf(change.after));
              list.Append(std::move(object));
            }
            Json object = Json::Object();
            object.Set("transaction", JsonOf(each)).Set("changes", std::move(list));
            changed.Append(std::move(object));
          });
  Json all = Json::Output("krofx-diff");
  all.Set("old", oldName)
      .Set("new", newName)
      .Set("added", std::move(added))
      .Set("gone", std::move(gone))
      .Set("changed", std::move(changed));
  return all.Text(0) + "\n";
}

}  // namespace krofx::command
