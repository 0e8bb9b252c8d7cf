// What rows of transactions say of themselves.

#include "showing/transaction_columns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace krofx::command {
namespace {

constexpr FieldSpec kColumns[] = {{"", "posted", ""}, {"", "amount", ""}, {"", "security", ""}};
constexpr TableSpec kTable = {"", kTransactions, "", kColumns};

TEST(TransactionColumns, HaveADayOnlyWhereThereIsADate) {
  const TransactionColumns columns(kTable);
  const auto dayOf = [&columns](std::string_view text) {
    const Cell cells[] = {Cell(ValueKind::kDate, text), Cell(), Cell()};
    return columns.DayOf(cells);
  };
  EXPECT_EQ(dayOf("2026-01-31"), "2026-01-31");
  EXPECT_EQ(dayOf("2026-01-31T23:59:59-05:00"), "2026-01-31");
  for (const std::string_view other :
       {"", "2026-01-3", "20260131120000", "2026/01-31", "2026-01/31"}) {
    EXPECT_EQ(dayOf(other), "") << other;
  }
  const Cell none[] = {Cell(), Cell(), Cell(ValueKind::kText, "A Fund")};
  EXPECT_EQ(columns.DayOf(none), "");
  EXPECT_EQ(columns.NameOf(none), "A Fund");
  EXPECT_EQ(columns.TypeOf(none), "");
}

TEST(TransactionColumns, HaveTypesOfBanksAndOfBrokersOnceEach) {
  const std::vector<std::string> types = TransactionTypes();
  for (const char* const type : {"CREDIT", "DEBIT", "OTHER", "BUYSTOCK", "INVBANKTRAN"}) {
    EXPECT_TRUE(std::binary_search(types.begin(), types.end(), type)) << type;
  }
  EXPECT_EQ(std::adjacent_find(types.begin(), types.end()), types.end());
  EXPECT_EQ(std::count(types.begin(), types.end(), ""), 0);
}

}  // namespace
}  // namespace krofx::command
