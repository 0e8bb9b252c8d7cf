// Finds accounts by the ends of their numbers.

#include "requests/account_choice.h"

#include <algorithm>
#include <functional>

#include "output/masking.h"
#include "requests/request_maker.h"

namespace krofx::command {

BankAccountOptions ToOptions(const Account& account) {
  BankAccountOptions options;
  options.account = account.number;
  options.bank = account.bank;
  options.branch = account.branch;
  if (!account.type.empty()) options.type = account.type;
  return options;
}

std::unique_ptr<KRAccount> MakeAccount(const Account& account, RequestMaker& maker) {
  if (account.kind == AccountKind::kBank) return MakeBankAccount(ToOptions(account), maker);
  if (account.kind == AccountKind::kCard) {
    return MakeCardAccount("--account", account.number, KRTag_CCACCTFROM, maker);
  }
  return MakeInvestmentAccount(account, maker);
}

std::string NameOf(const Account& account) {
  if (account.kind == AccountKind::kCard)
    return "card " + Masked(account.number, Disclosure::kCard);
  return account.kind == AccountKind::kInvestment ? account.number + " at " + account.bank
                                                  : account.number + " " + account.type;
}

std::vector<Account> ChooseAccounts(const SignOnOptions& signOn, const std::string& number,
                                    StatementKind kind, RequestMaker& maker) {
  std::vector<Account> all = signOn.bank->accounts;
  if (all.empty()) {
    const ExitStatus listed = signOn.use->ListAccounts(signOn, all);
    if (listed != kExitClean) {
      maker.GiveUp(listed);
      return {};
    }
  }
  // It can be the whole number of a card with a slip in it.
  const std::string shown = Masked(number, Disclosure::kCard);
  std::vector<Account> found;
  std::string others;
  for (const Account& account : all) {
    if ((account.kind == AccountKind::kInvestment) != (kind == StatementKind::kInvestment))
      continue;
    if (account.number.ends_with(number)) {
      found.push_back(account);
    } else {
      others += (others.empty() ? "" : ", ") + NameOf(account);
    }
  }
  // Whoever gives a whole number means that account, even when others end in it.
  const auto isWhole = [&number](const Account& account) { return account.number == number; };
  if (std::any_of(found.begin(), found.end(), isWhole)) {
    std::erase_if(found, std::not_fn(isWhole));
  }
  const std::string& bank = signOn.bank->name;
  if (found.empty()) {
    maker.Fail(others.empty()
                   ? "no such account of " + bank +
                         " is known; name one with all its options, or list them with "
                         "\"krofx bank check " +
                         bank + " --add-accounts\""
                   : bank + " has no account that ends in " + shown + "; it has " + others);
  } else if (found.size() > 1 && !number.empty()) {
    maker.Fail(bank + " has several accounts that end in " + shown + ": " + NameOf(found[0]) +
               ", " + NameOf(found[1]));
  }
  return found;
}

}  // namespace krofx::command
