// Finds the aggregates that name accounts in the list of a reply.

#include "banks/account_list.h"

#include <algorithm>

#include "input/element_value.h"
#include "input/parsed_file.h"

namespace krofx::command {

bool ReadAccount(const Element& element, Account& account) {
  account.number = ValueOf(element, "ACCTID");
  if (element.tag == "BANKACCTFROM") {
    account.kind = AccountKind::kBank;
    account.bank = ValueOf(element, "BANKID");
    account.branch = ValueOf(element, "BRANCHID");
    account.type = ValueOf(element, "ACCTTYPE");
    if (account.type.empty()) account.type = ValueOf(element, "ACCTTYPE2");
    return !account.number.empty() && !account.bank.empty() && !account.type.empty();
  }
  if (element.tag == "INVACCTFROM") {
    account.kind = AccountKind::kInvestment;
    account.bank = ValueOf(element, "BROKERID");
    return !account.number.empty() && !account.bank.empty();
  }
  account.kind = AccountKind::kCard;
  return element.tag == "CCACCTFROM" && !account.number.empty();
}

namespace {

// Lists the accounts under the information on them; other places, such as the account that a
// service is paid from, name accounts that are listed already.
void Find(const Element& element, std::vector<Account>& accounts) {
  for (const Element& child : element.children) {
    Account account;
    if (!ReadAccount(child, account)) {
      Find(child, accounts);
    } else if (std::find(accounts.begin(), accounts.end(), account) == accounts.end()) {
      accounts.push_back(std::move(account));
    }
  }
}

}  // namespace

std::vector<Account> AccountsIn(const ParsedFile& reply) {
  std::vector<Account> accounts;
  for (const OfxFile& each : reply.GetOfxFiles()) {
    TextArena arena;
    Find(ReadElements(*each.file, arena, each.text), accounts);
  }
  return accounts;
}

}  // namespace krofx::command
