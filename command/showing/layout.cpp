// The list of all layouts.

#include "showing/layout.h"

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

}  // namespace

std::span<const Layout> Layouts() {
  static const std::vector<Layout> all = GatherLayouts();
  return all;
}

}  // namespace krofx::command
