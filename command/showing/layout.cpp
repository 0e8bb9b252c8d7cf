// The list of all layouts.

#include "showing/layout.h"

#include <algorithm>
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

std::vector<std::string_view> GatherTableKeys() {
  std::vector<std::string_view> keys{kPartsTable};
  for (const Layout& layout : Layouts()) {
    for (const TableSpec& table : layout.tables) keys.push_back(table.key);
  }
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  return keys;
}

}  // namespace

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

}  // namespace krofx::command
