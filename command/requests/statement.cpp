// krofx request statement: asks for the statement of a bank or card account.

#include "command_line/command_line.h"
#include "requests/account_options.h"
#include "requests/request_maker.h"
#include "requests/request_use.h"

namespace krofx::command {

namespace {

struct Options {
  SignOnOptions signOn;
  BankAccountOptions bankAccount;
  bool card = false;
  std::string from;
  std::string to;
  bool noTransactions = false;
};

std::unique_ptr<KRCCStatementRq> MakeCardPayload(const Options& options, RequestMaker& maker) {
  auto payload = maker.Make<KRCCStatementRq>(KRTag_CCSTMTRQ);
  payload->SetAccount(
      MakeCardAccount("--account", options.bankAccount.account, KRTag_CCACCTFROM, maker).release());
  return payload;
}

std::unique_ptr<KRBankStatementRq> MakeBankPayload(const Options& options, RequestMaker& maker) {
  auto payload = maker.Make<KRBankStatementRq>(KRTag_STMTRQ);
  payload->SetAccount(MakeBankAccount(options.bankAccount, maker).release());
  return payload;
}

ExitStatus Request(const Options& options) {
  RequestMaker maker(options.signOn);
  if (options.card != options.bankAccount.bank.empty()) {
    maker.Fail(options.card ? "--bank is not for cards" : "name a bank with --bank, or use --card");
  }
  std::unique_ptr<KRGenericStatementRq> payload;
  if (options.card) {
    payload = MakeCardPayload(options, maker);
  } else {
    payload = MakeBankPayload(options, maker);
  }
  payload->SetIncTran(MakeSpan(options.from, options.to, !options.noTransactions, maker).release());
  const bool first = maker.GetVersion() == 1;
  const KRTagID set = options.card ? (first ? KRTag_CREDITCARDMSGSRQV1 : KRTag_CREDITCARDMSGSRQV2)
                                   : (first ? KRTag_BANKMSGSRQV1 : KRTag_BANKMSGSRQV2);
  return maker.Finish(std::move(payload), set);
}

}  // namespace

void AddStatementRequest(const Subcommand& parent, const std::shared_ptr<RequestUse>& use) {
  const Subcommand statement =
      parent.Add("statement", "Ask for the statement of a bank or card account");
  const auto options = std::make_shared<Options>();
  statement.AddOption("--account", options->bankAccount.account, "The account's number").Required();
  statement.AddOption("--bank", options->bankAccount.bank, "The bank's routing number");
  statement.AddOption("--branch", options->bankAccount.branch, "The branch");
  statement.AddOption("--type", options->bankAccount.type,
                      "CHECKING (the default), SAVINGS, MONEYMRKT, CREDITLINE");
  statement.AddFlag("--card", options->card, "The account is a card");
  statement.AddOption("--from", options->from, "First day, as 2026-01-31 or -30d");
  statement.AddOption("--to", options->to, "Last day");
  statement.AddFlag("--no-transactions", options->noTransactions, "Ask for balances only");
  AddSignOnOptions(statement, options->signOn, use);
  statement.OnRun(options, Request);
}

}  // namespace krofx::command
