// krofx request statement: asks for the statement of a bank or card account.

#include <memory>

#include "output/messages.h"
#include "requests/request_maker.h"

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
  auto account = maker.Make<KRCCAccount>(KRTag_CCACCTFROM);
  account->SetAccountID(options.bankAccount.account.c_str());
  maker.Require("--account", account->GetAccountID(), options.bankAccount.account);
  auto payload = maker.Make<KRCCStatementRq>(KRTag_CCSTMTRQ);
  payload->SetAccount(account.release());
  return payload;
}

std::unique_ptr<KRBankStatementRq> MakeBankPayload(const Options& options, RequestMaker& maker) {
  auto payload = maker.Make<KRBankStatementRq>(KRTag_STMTRQ);
  payload->SetAccount(MakeBankAccount(options.bankAccount, maker).release());
  return payload;
}

ExitStatus Request(const Options& options) {
  if (options.card != options.bankAccount.bank.empty()) {
    Complain("request",
             options.card ? "--bank is not for cards" : "name a bank with --bank, or use --card");
    return kExitWrongUse;
  }
  RequestMaker maker(options.signOn);
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

void AddStatementRequest(CLI::App& app, ExitStatus& exitStatus,
                         const std::shared_ptr<RequestUse>& use) {
  CLI::App* const statement =
      app.add_subcommand("statement", "Ask for the statement of a bank or card account");
  const auto options = std::make_shared<Options>();
  statement->add_option("--account", options->bankAccount.account, "The account's number")
      ->required();
  statement->add_option("--bank", options->bankAccount.bank, "The bank's routing number");
  statement->add_option("--branch", options->bankAccount.branch, "The branch");
  statement->add_option("--type", options->bankAccount.type,
                        "CHECKING (the default), SAVINGS, MONEYMRKT, CREDITLINE");
  statement->add_flag("--card", options->card, "The account is a card");
  statement->add_option("--from", options->from, "First day, as 2026-01-31");
  statement->add_option("--to", options->to, "Last day");
  statement->add_flag("--no-transactions", options->noTransactions, "Ask for balances only");
  AddSignOnOptions(*statement, options->signOn, use);
  statement->callback([options, &exitStatus] { exitStatus = Request(*options); });
}

}  // namespace krofx::command
