// krofx request investment: asks for the statement of an investment account.

#include "command_line/command_line.h"
#include "requests/account_choice.h"
#include "requests/account_options.h"
#include "requests/arguments.h"
#include "requests/request_maker.h"
#include "requests/request_use.h"
#include "requests/statement_request.h"

namespace krofx::command {

namespace {

// Which parts of a statement are wanted, beside the transactions.
struct Parts {
  std::string asOf;
  bool noOrders = false;
  bool noPositions = false;
  bool noBalances = false;
};

struct Options {
  SignOnOptions signOn;
  std::string broker;
  std::string account;
  StatementSpan span;
  Parts parts;
};

u16 Unless(bool declined) { return declined ? 0 : 1; }

std::unique_ptr<KRIncPos> MakePositions(const Parts& parts, RequestMaker& maker) {
  auto positions = maker.Make<KRIncPos>(KRTag_INCPOS);
  maker.SetDate("--as-of", ResolveDay(parts.asOf), *positions, &KRIncPos::SetDtAsOf);
  positions->SetInclude(Unless(parts.noPositions));
  return positions;
}

// Whether the account is one of those of the bank that the options name.
bool IsOfBank(const Options& options) {
  return options.signOn.bank.has_value() && options.broker.empty();
}

// The account that the options name.
Account NamedAccount(const Options& options, RequestMaker& maker) {
  if (options.account.empty()) maker.Fail("--account is required, or a bank, as @harbor");
  if (options.broker.empty()) maker.Fail("--broker is required, or a bank, as @harbor");
  return {AccountKind::kInvestment, options.account, options.broker, "", ""};
}

void AddStatement(const Account& account, const StatementSpan& span, const Parts& parts,
                  RequestMaker& maker) {
  auto payload = maker.Make<KRInvStmtRq>(KRTag_INVSTMTRQ);
  payload->SetInvAcctFrom(MakeInvestmentAccount(account, maker).release());
  payload->SetIncTran(MakeSpan(span.from, span.to, !span.noTransactions, maker).release());
  payload->SetIncOO(Unless(parts.noOrders));
  payload->SetIncPos(MakePositions(parts, maker).release());
  payload->SetIncBal(Unless(parts.noBalances));
  maker.Add(std::move(payload), Service::kInvestment);
}

ExitStatus Finish(const std::vector<Account>& accounts, const StatementSpan& span,
                  const Parts& parts, RequestMaker& maker) {
  maker.Concern({Service::kInvestment});
  for (const Account& account : accounts) AddStatement(account, span, parts, maker);
  return maker.Finish();
}

// An account of the bank is not known yet; the values that it goes with are.
void TryValues(const Options& options, RequestMaker& trial) {
  const Account account = IsOfBank(options) ? Account{} : NamedAccount(options, trial);
  AddStatement(account, options.span, options.parts, trial);
}

ExitStatus Request(const Options& options) {
  RequestMaker maker(options.signOn);
  if (!maker.Try([&options](RequestMaker& trial) { TryValues(options, trial); })) {
    return maker.Finish();
  }
  const std::vector<Account> accounts =
      IsOfBank(options)
          ? ChooseAccounts(options.signOn, options.account, StatementKind::kInvestment, maker)
          : std::vector<Account>{NamedAccount(options, maker)};
  return Finish(accounts, options.span, options.parts, maker);
}

}  // namespace

ExitStatus FinishInvestments(const std::vector<Account>& accounts, const StatementSpan& span,
                             RequestMaker& maker) {
  return Finish(accounts, span, {}, maker);
}

void AddInvestmentRequest(const Subcommand& parent, const std::shared_ptr<RequestUse>& use) {
  const Subcommand investment =
      parent.Add("investment", "Ask for the statement of an investment account");
  const auto options = std::make_shared<Options>();
  investment.AddOption("--broker", options->broker, "The broker's ID, often its web name");
  investment.AddOption("--account", options->account,
                       "The account's number; of a bank's accounts its end will do");
  investment.AddOption("--from", options->span.from,
                       "First day of transactions, as 2026-01-31 or -30d");
  investment.AddOption("--to", options->span.to, "Last day of transactions");
  investment.AddOption("--as-of", options->parts.asOf, "The day that positions are wanted of");
  investment.AddFlag("--no-transactions", options->span.noTransactions, "Ask for no transactions");
  investment.AddFlag("--no-orders", options->parts.noOrders, "Ask for no open orders");
  investment.AddFlag("--no-positions", options->parts.noPositions, "Ask for no positions");
  investment.AddFlag("--no-balances", options->parts.noBalances, "Ask for no balances");
  AddSignOnOptions(investment, options->signOn, use);
  OnRequest(investment, options, Request);
}

}  // namespace krofx::command
