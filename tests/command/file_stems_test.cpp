// The names of files with replies: one account for each, whatever the order, and the plain ones
// where they are clear.

#include "banks/file_stems.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace krofx::command {
namespace {

Account Numbered(const char* number, const char* type = "CHECKING") {
  return {AccountKind::kBank, number, "211370545", "", type};
}

Account Card(const char* number) { return {AccountKind::kCard, number, "", "", ""}; }

Bank Named(const char* name, std::vector<Account> accounts = {}) {
  Bank bank;
  bank.name = name;
  bank.accounts = std::move(accounts);
  return bank;
}

TEST(FileStems, AreBankAndAccountWhereTheseAreClear) {
  const Bank bank =
      Named("harbor", {Numbered("00718220946"), Card("5500111122224410"), Numbered("7/4401.22")});
  const Bank other = Named("harbor-2", {Numbered("00718220946"), Card("5500111122224410")});
  EXPECT_EQ(
      FileStemsOf(bank, bank.accounts, {bank, other}),
      (std::vector<std::string>{"harbor-00718220946", "harbor-card-4410", "harbor-7_4401_22"}));
  EXPECT_EQ(FileStemsOf(other, other.accounts, {bank, other}),
            (std::vector<std::string>{"harbor-2-00718220946", "harbor-2-card-4410"}));
}

TEST(FileStems, DifferForAllAccountsOfAllBanks) {
  const std::vector<Bank> banks = {
      Named("har", {Numbered("b-00718220946"), Card("5500111122224410"), Card("5500111133334410"),
                    Numbered("7/1"), Numbered("7.1"), Numbered("card-4410"), Numbered("5"),
                    Numbered("5", "SAVINGS"), Numbered("updates")}),
      Named("har-b", {Numbered("00718220946")})};
  std::set<std::string> seen = {"har-updates"};
  std::size_t count = 1;
  for (const Bank& bank : banks) {
    for (const std::string& stem : FileStemsOf(bank, bank.accounts, banks)) {
      seen.insert(stem);
      ++count;
    }
  }
  EXPECT_EQ(seen.size(), count);
}

TEST(FileStems, DependOnNoOrder) {
  Bank bank = Named("har", {Card("5500111122224410"), Card("5500111133334410"), Numbered("1")});
  std::vector<std::string> before = FileStemsOf(bank, bank.accounts, {bank});
  std::reverse(bank.accounts.begin(), bank.accounts.end());
  std::vector<std::string> after = FileStemsOf(bank, bank.accounts, {bank});
  std::reverse(after.begin(), after.end());
  EXPECT_EQ(before, after);
  EXPECT_TRUE(before[0].starts_with("har-card-4410.")) << before[0];
  EXPECT_EQ(before[0].size(), std::string("har-card-4410.").size() + 8);
  EXPECT_EQ(before[2], "har-1");
}

// What accounts the other bank has is only known when it is asked.
TEST(FileStems, DifferFromThoseOfABankThatListsNone) {
  const std::vector<Bank> banks = {Named("har", {Numbered("b-00718220946")}), Named("har-b")};
  EXPECT_NE(FileStemsOf(banks[0], banks[0].accounts, banks),
            FileStemsOf(banks[1], {Numbered("00718220946")}, banks));
}

TEST(FileStems, AreTheSameForAnAccountThatIsListedTwice) {
  const Bank bank = Named("har", {Numbered("1"), Numbered("1")});
  EXPECT_EQ(FileStemsOf(bank, bank.accounts, {bank}), (std::vector<std::string>{"har-1", "har-1"}));
}

}  // namespace
}  // namespace krofx::command
