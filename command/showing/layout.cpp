// The list of all layouts.

#include "showing/layout.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace krofx::command {

namespace {

// The layouts of a new domain are named here.
std::vector<Layout> GatherLayouts() {
  std::vector<Layout> all;
  for (const std::span<const Layout> group :
       {layouts::kSignOn, layouts::kProfile, layouts::kStatements, layouts::kInvestment,
        layouts::kBillPay, layouts::kBranding, layouts::kPayroll, layouts::kAccountLists,
        layouts::kTransfers, layouts::kStopChecks, layouts::kMail}) {
    all.insert(all.end(), group.begin(), group.end());
  }
  return all;
}

constexpr FieldSpec kPartColumns[] = {
    {"", "name", "Name"},
    {"", "type", "Type"},
    {"", "size", "Bytes"},
};

// The fields of a section that say which account its rows are of.
constexpr RowColumn kAccountColumns[] = {
    {"bank_id", "bank_id"},           {"branch_id", "branch_id"},
    {"broker_id", "broker_id"},       {"account_id", "account_id"},
    {"account_type", "account_type"}, {"statement_currency", "currency"},
};

// Columns that stand last in their table, since programs rely on the places of those that were
// there before them.
struct LateColumn {
  std::string_view table;
  std::string_view key;
};
constexpr LateColumn kLateColumns[] = {{"transactions", "to_bank"}};

bool IsLate(std::string_view table, std::string_view key) {
  return std::any_of(std::begin(kLateColumns), std::end(kLateColumns), [&](const LateColumn& each) {
    return each.table == table && each.key == key;
  });
}

template <class Visit>
void ForEachTableOf(std::string_view key, Visit visit) {
  for (const Layout& layout : Layouts()) {
    for (const TableSpec& table : layout.tables) {
      if (table.key == key) visit(layout, table);
    }
  }
}

bool HasField(const Layout& layout, std::string_view key) {
  return std::any_of(layout.fields.begin(), layout.fields.end(),
                     [key](const FieldSpec& field) { return field.key == key; });
}

void AddColumn(std::vector<RowColumn>& columns, const RowColumn& column) {
  const bool known = std::any_of(columns.begin(), columns.end(), [&column](const RowColumn& each) {
    return each.key == column.key;
  });
  if (!known) columns.push_back(column);
}

std::vector<std::string_view> GatherTableKeys() {
  std::vector<std::string_view> keys{kPartsTable.key};
  for (const Layout& layout : Layouts()) {
    for (const TableSpec& table : layout.tables) keys.push_back(table.key);
  }
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  return keys;
}

}  // namespace

const TableSpec kPartsTable = {"", "parts", "Parts", kPartColumns};

std::span<const Layout> Layouts() {
  static const std::vector<Layout> all = GatherLayouts();
  return all;
}

const std::vector<std::string_view>& TableKeys() {
  static const std::vector<std::string_view> keys = GatherTableKeys();
  return keys;
}

bool IsTableKey(std::string_view key) {
  return std::binary_search(TableKeys().begin(), TableKeys().end(), key);
}

std::string OwnersOf(std::string_view tableKey) {
  std::string owners(tableKey == kPartsTable.key ? "Multipart text" : "");
  ForEachTableOf(tableKey, [&owners](const Layout& layout, const TableSpec&) {
    owners.append(owners.empty() ? "" : ", ").append(layout.title);
  });
  return owners;
}

std::vector<RowColumn> RowColumnsOf(std::string_view tableKey) {
  std::vector<RowColumn> columns;
  const auto addTable = [&columns](const TableSpec& table) {
    for (const FieldSpec& column : table.columns) {
      if (!IsLate(table.key, column.key)) AddColumn(columns, {column.key, ""});
    }
  };
  if (tableKey == kPartsTable.key) addTable(kPartsTable);
  ForEachTableOf(tableKey, [&](const Layout&, const TableSpec& table) { addTable(table); });
  for (const RowColumn& column : kAccountColumns) {
    ForEachTableOf(tableKey, [&](const Layout& layout, const TableSpec&) {
      if (HasField(layout, column.field)) AddColumn(columns, column);
    });
  }
  for (const LateColumn& late : kLateColumns) {
    if (late.table == tableKey) AddColumn(columns, {late.key, ""});
  }
  return columns;
}

}  // namespace krofx::command
