// Accounts and spans of days out of options.

#include "requests/account_options.h"

#include "banks/bank.h"
#include "command_line/command_line.h"
#include "command_line/nearest_name.h"
#include "requests/arguments.h"
#include "requests/request_maker.h"

namespace krofx::command {

namespace {

// Those that either version takes.
constexpr std::string_view kTypesOfAnyVersion[] = {"CHECKING",   "SAVINGS", "MONEYMRKT",
                                                   "CREDITLINE", "CREDIT",  "CMA"};
// A value that responses may have; no account can be asked for by it.
constexpr std::string_view kNoType = "UNKNOWN";

}  // namespace

Option AddAccountType(const Subcommand& subcommand, const std::string& name, std::string& type) {
  return subcommand.AddOption(name, type, "CHECKING (the default), SAVINGS, MONEYMRKT, CREDITLINE")
      .SpelledAs(kTypesOfAnyVersion);
}

void AddBankAccountOptions(const Subcommand& request, BankAccountOptions& options) {
  const std::string prefix = "--" + options.prefix;
  request.AddOption(prefix + "account", options.account, "The account's number");
  const Option bank = request.AddOption(prefix + "bank", options.bank, "The bank's routing number");
  // Without the bank they would describe a card, or an account that is found by its number.
  request.AddOption(prefix + "branch", options.branch, "The branch").Needs(bank);
  AddAccountType(request, prefix + "type", options.type).Needs(bank);
}

std::unique_ptr<KRBankAccount> MakeBankAccount(const BankAccountOptions& options,
                                               RequestMaker& maker) {
  const std::string prefix = "--" + options.prefix;
  auto account = maker.Make<KRBankAccount>(KRTag_BANKACCTFROM);
  const auto set = [&](const char* name, const std::string& given, auto setter, auto getter) {
    maker.SetIdentifier(prefix + name, given, *account, setter, getter);
  };
  set("bank", options.bank, &KRBankAccount::SetBankID, &KRBankAccount::GetBankID);
  set("branch", options.branch, &KRBankAccount::SetBranchID, &KRBankAccount::GetBranchID);
  set("account", options.account, &KRBankAccount::SetAccountID, &KRBankAccount::GetAccountID);
  const KRString type(options.type.c_str());
  const u16 known =
      maker.GetVersion() == 1 ? account->SetAccountType(type) : account->SetAccountType2(type);
  if (known == 0 || options.type == kNoType) {
    maker.Fail(prefix + "type " + options.type +
               " is not an account type of this version; write CHECKING, SAVINGS, MONEYMRKT or "
               "CREDITLINE" +
               SuggestNearest(options.type, kBankAccountTypes));
  }
  return account;
}

std::unique_ptr<KRCCAccount> MakeCardAccount(const std::string& option, const std::string& number,
                                             KRTagID tag, RequestMaker& maker) {
  auto account = maker.Make<KRCCAccount>(tag);
  maker.SetIdentifier(option, number, *account, &KRCCAccount::SetAccountID,
                      &KRCCAccount::GetAccountID);
  return account;
}

std::unique_ptr<KRInvAcctFrom> MakeInvestmentAccount(const Account& given, RequestMaker& maker) {
  auto account = maker.Make<KRInvAcctFrom>(KRTag_INVACCTFROM);
  maker.SetIdentifier("--broker", given.bank, *account, &KRInvAcctFrom::SetBrokerID,
                      &KRInvAcctFrom::GetBrokerID);
  maker.SetIdentifier("--account", given.number, *account, &KRInvAcctFrom::SetAccountID,
                      &KRInvAcctFrom::GetAccountID);
  return account;
}

std::unique_ptr<KRIncTransaction> MakeSpan(const std::string& first, const std::string& last,
                                           bool include, RequestMaker& maker) {
  const std::string from = ResolveDay(first);
  const std::string to = ResolveDay(last);
  auto span = maker.Make<KRIncTransaction>(KRTag_INCTRAN);
  maker.SetDate("--from", from, *span, &KRIncTransaction::SetDtStart);
  maker.SetDate("--to", to, *span, &KRIncTransaction::SetDtEnd);
  maker.RequireOrder(from, to);
  span->SetInclude(static_cast<u16>(include ? 1 : 0));
  return span;
}

}  // namespace krofx::command
