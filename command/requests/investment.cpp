// krofx request investment: asks for the statement of an investment account.

#include <CLI/CLI.hpp>
#include <memory>

#include "requests/request_maker.h"

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
  account->SetBrokerID(options.broker.c_str());
  maker.Require("--broker", account->GetBrokerID(), options.broker);
  account->SetAccountID(options.account.c_str());
  maker.Require("--account", account->GetAccountID(), options.account);
  return account;
}

std::unique_ptr<KRIncPos> MakePositions(const Options& options, RequestMaker& maker) {
  auto positions = maker.Make<KRIncPos>(KRTag_INCPOS);
  if (!options.asOf.empty() && positions->SetDtAsOf(DateArgument(options.asOf)) == 0) {
    maker.Fail("--as-of is no date; write it as 2026-01-31");
  }
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

void AddInvestmentRequest(CLI::App& app, ExitStatus& exitStatus,
                          const std::shared_ptr<RequestUse>& use) {
  CLI::App* const investment =
      app.add_subcommand("investment", "Ask for the statement of an investment account");
  const auto options = std::make_shared<Options>();
  investment->add_option("--broker", options->broker, "The broker's ID, often its web name")
      ->required();
  investment->add_option("--account", options->account, "The account's number")->required();
  investment->add_option("--from", options->from, "First day of transactions, as 2026-01-31");
  investment->add_option("--to", options->to, "Last day of transactions");
  investment->add_option("--as-of", options->asOf, "The day that positions are wanted of");
  investment->add_flag("--no-transactions", options->noTransactions, "Ask for no transactions");
  investment->add_flag("--no-orders", options->noOrders, "Ask for no open orders");
  investment->add_flag("--no-positions", options->noPositions, "Ask for no positions");
  investment->add_flag("--no-balances", options->noBalances, "Ask for no balances");
  AddSignOnOptions(*investment, options->signOn, use);
  investment->callback([options, &exitStatus] { exitStatus = Request(*options); });
}

}  // namespace krofx::command
