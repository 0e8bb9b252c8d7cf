// krofx request statement: asks for the statement of a bank or card account.

#include "command_line/command_line.h"
#include "requests/account_choice.h"
#include "requests/account_options.h"
#include "requests/request_maker.h"
#include "requests/request_use.h"
#include "requests/statement_request.h"

namespace krofx::command {

namespace {

struct Options {
  SignOnOptions signOn;
  BankAccountOptions bankAccount;
  bool card = false;
  StatementSpan span;
};

Service ServiceOf(const Account& account) {
  return account.kind == AccountKind::kCard ? Service::kCard : Service::kBank;
}

std::unique_ptr<KRGenericStatementRq> MakePayload(const Account& account, RequestMaker& maker) {
  if (account.kind == AccountKind::kCard) {
    auto payload = maker.Make<KRCCStatementRq>(KRTag_CCSTMTRQ);
    payload->SetAccount(
        MakeCardAccount("--account", account.number, KRTag_CCACCTFROM, maker).release());
    return payload;
  }
  auto payload = maker.Make<KRBankStatementRq>(KRTag_STMTRQ);
  payload->SetAccount(MakeBankAccount(ToOptions(account), maker).release());
  return payload;
}

void AddStatement(const Account& account, const StatementSpan& span, RequestMaker& maker) {
  auto payload = MakePayload(account, maker);
  payload->SetIncTran(MakeSpan(span.from, span.to, !span.noTransactions, maker).release());
  maker.Add(std::move(payload), ServiceOf(account));
}

// Whether the account is one of those of the bank that the options name.
bool IsOfBank(const Options& options) {
  return options.signOn.bank.has_value() && options.bankAccount.bank.empty() && !options.card;
}

// The account that the options name.
Account NamedAccount(const Options& options, RequestMaker& maker) {
  const BankAccountOptions& given = options.bankAccount;
  if (given.account.empty()) {
    maker.Fail("--account is required, or a bank, as @harbor");
  } else if (options.card != given.bank.empty()) {
    maker.Fail(options.card ? "--bank is not for cards" : "name a bank with --bank, or use --card");
  }
  return {options.card ? AccountKind::kCard : AccountKind::kBank, given.account, given.bank,
          given.branch, given.type};
}

// An account of the bank is not known yet; the values that it goes with are.
void TryValues(const Options& options, RequestMaker& trial) {
  const Account account = IsOfBank(options) ? Account{AccountKind::kCard, "", "", "", ""}
                                            : NamedAccount(options, trial);
  AddStatement(account, options.span, trial);
}

ExitStatus Request(const Options& options) {
  RequestMaker maker(options.signOn);
  if (!maker.Try([&options](RequestMaker& trial) { TryValues(options, trial); })) {
    return maker.Finish();
  }
  const std::vector<Account> accounts =
      IsOfBank(options) ? ChooseAccounts(options.signOn, options.bankAccount.account,
                                         StatementKind::kMoney, maker)
                        : std::vector<Account>{NamedAccount(options, maker)};
  return FinishStatements(accounts, options.span, maker);
}

}  // namespace

ExitStatus FinishStatements(const std::vector<Account>& accounts, const StatementSpan& span,
                            RequestMaker& maker) {
  std::vector<Service> services;
  services.reserve(accounts.size());
  for (const Account& account : accounts) services.push_back(ServiceOf(account));
  maker.Concern(services);
  for (const Account& account : accounts) AddStatement(account, span, maker);
  return maker.Finish();
}

void AddStatementRequest(const Subcommand& parent, const std::shared_ptr<RequestUse>& use) {
  const Subcommand statement =
      parent.Add("statement", "Ask for the statement of a bank or card account");
  const auto options = std::make_shared<Options>();
  statement.AddOption("--account", options->bankAccount.account,
                      "The account's number; of a bank's accounts its end will do");
  const Option bank =
      statement.AddOption("--bank", options->bankAccount.bank, "The bank's routing number");
  statement.AddOption("--branch", options->bankAccount.branch, "The branch").Needs(bank);
  AddAccountType(statement, "--type", options->bankAccount.type).Needs(bank);
  statement.AddFlag("--card", options->card, "The account is a card");
  statement.AddOption("--from", options->span.from, "First day, as 2026-01-31 or -30d");
  statement.AddOption("--to", options->span.to, "Last day");
  statement.AddFlag("--no-transactions", options->span.noTransactions, "Ask for balances only");
  AddSignOnOptions(statement, options->signOn, use);
  OnRequest(statement, options, Request);
}

}  // namespace krofx::command
