// krofx request investment: asks for the statement of an investment account.

#include "command_line/command_line.h"
#include "requests/account_options.h"
#include "requests/arguments.h"
#include "requests/request_maker.h"
#include "requests/request_use.h"

namespace krofx::command {

namespace {

struct Options {
  SignOnOptions signOn;
  std::string broker;
  std::string account;
  std::string from;
  std::string to;
  std::string asOf;
  bool noTransactions = false;
  bool noOrders = false;
  bool noPositions = false;
  bool noBalances = false;
};

u16 Unless(bool declined) { return declined ? 0 : 1; }

std::unique_ptr<KRInvAcctFrom> MakeAccount(const Options& options, RequestMaker& maker) {
  auto account = maker.Make<KRInvAcctFrom>(KRTag_INVACCTFROM);
  maker.SetText("--broker", options.broker, *account, &KRInvAcctFrom::SetBrokerID,
                &KRInvAcctFrom::GetBrokerID);
  maker.SetText("--account", options.account, *account, &KRInvAcctFrom::SetAccountID,
                &KRInvAcctFrom::GetAccountID);
  return account;
}

std::unique_ptr<KRIncPos> MakePositions(const Options& options, RequestMaker& maker) {
  auto positions = maker.Make<KRIncPos>(KRTag_INCPOS);
  maker.SetDate("--as-of", ResolveDay(options.asOf), *positions, &KRIncPos::SetDtAsOf);
  positions->SetInclude(Unless(options.noPositions));
  return positions;
}

ExitStatus Request(const Options& options) {
  RequestMaker maker(options.signOn);
  auto payload = maker.Make<KRInvStmtRq>(KRTag_INVSTMTRQ);
  payload->SetInvAcctFrom(MakeAccount(options, maker).release());
  payload->SetIncTran(MakeSpan(options.from, options.to, !options.noTransactions, maker).release());
  payload->SetIncOO(Unless(options.noOrders));
  payload->SetIncPos(MakePositions(options, maker).release());
  payload->SetIncBal(Unless(options.noBalances));
  return maker.Finish(std::move(payload),
                      maker.GetVersion() == 1 ? KRTag_INVSTMTMSGSRQV1 : KRTag_INVSTMTMSGSRQV2);
}

}  // namespace

void AddInvestmentRequest(const Subcommand& parent, const std::shared_ptr<RequestUse>& use) {
  const Subcommand investment =
      parent.Add("investment", "Ask for the statement of an investment account");
  const auto options = std::make_shared<Options>();
  investment.AddOption("--broker", options->broker, "The broker's ID, often its web name")
      .Required();
  investment.AddOption("--account", options->account, "The account's number").Required();
  investment.AddOption("--from", options->from, "First day of transactions, as 2026-01-31 or -30d");
  investment.AddOption("--to", options->to, "Last day of transactions");
  investment.AddOption("--as-of", options->asOf, "The day that positions are wanted of");
  investment.AddFlag("--no-transactions", options->noTransactions, "Ask for no transactions");
  investment.AddFlag("--no-orders", options->noOrders, "Ask for no open orders");
  investment.AddFlag("--no-positions", options->noPositions, "Ask for no positions");
  investment.AddFlag("--no-balances", options->noBalances, "Ask for no balances");
  AddSignOnOptions(investment, options->signOn, use);
  investment.OnRun(options, Request);
}

}  // namespace krofx::command
