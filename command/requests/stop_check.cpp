// krofx request stop-check: asks a bank not to pay checks, by number or by description.

#include <CLI/CLI.hpp>
#include <memory>

#include "output/messages.h"
#include "requests/request_maker.h"

namespace krofx::command {

namespace {

struct Options {
  SignOnOptions signOn;
  BankAccountOptions account;
  std::string first;
  std::string last;
  std::string payee;
  std::string number;
  std::string date;
  std::string amount;
};

std::unique_ptr<KRCheckRange> MakeRange(const Options& options, RequestMaker& maker) {
  auto range = maker.Make<KRCheckRange>(KRTag_CHKRANGE);
  maker.SetText("--first", options.first, *range, &KRCheckRange::SetCheckNumberStart,
                &KRCheckRange::GetCheckNumberStart);
  maker.SetText("--last", options.last, *range, &KRCheckRange::SetCheckNumberEnd,
                &KRCheckRange::GetCheckNumberEnd);
  return range;
}

std::unique_ptr<KRCheckDescription> MakeDescription(const Options& options, RequestMaker& maker) {
  auto check = maker.Make<KRCheckDescription>(KRTag_CHKDESC);
  maker.SetText("--payee", options.payee, *check, &KRCheckDescription::SetName,
                &KRCheckDescription::GetName);
  maker.SetText("--number", options.number, *check, &KRCheckDescription::SetCheckNumber,
                &KRCheckDescription::GetCheckNumber);
  if (!options.date.empty()) {
    maker.RequireDate("--date", check->SetDtUser(DateArgument(options.date)));
  }
  if (!options.amount.empty()) {
    maker.SetAmount("--amount", options.amount,
                    [&](const KRString& amount) { return check->SetTrnAmt(amount); });
  }
  return check;
}

ExitStatus Request(const Options& options) {
  if (options.first.empty() == options.payee.empty()) {
    Complain("request", "name the checks with --first (and --last), or one with --payee");
    return kExitWrongUse;
  }
  RequestMaker maker(options.signOn);
  auto payload = maker.Make<KRStopCheckRq>(KRTag_STPCHKRQ);
  payload->SetBankAcctFrom(MakeBankAccount(options.account, maker).release());
  if (options.payee.empty()) {
    payload->SetChkRange(MakeRange(options, maker).release());
  } else {
    payload->SetChkDesc(MakeDescription(options, maker).release());
  }
  return maker.Finish(std::move(payload),
                      maker.GetVersion() == 1 ? KRTag_BANKMSGSRQV1 : KRTag_BANKMSGSRQV2);
}

}  // namespace

void AddStopCheckRequest(CLI::App& app, ExitStatus& exitStatus,
                         const std::shared_ptr<RequestUse>& use) {
  CLI::App* const stop = app.add_subcommand("stop-check", "Ask a bank not to pay checks");
  const auto options = std::make_shared<Options>();
  AddBankAccountOptions(*stop, options->account);
  CLI::Option* const first = stop->add_option("--first", options->first, "The first check");
  stop->add_option("--last", options->last, "The last check; without it one is meant")
      ->needs(first);
  CLI::Option* const payee =
      stop->add_option("--payee", options->payee, "Whom the check was written to");
  stop->add_option("--number", options->number, "That check's number")->needs(payee);
  stop->add_option("--date", options->date, "The day on it, as 2026-01-31")->needs(payee);
  stop->add_option("--amount", options->amount, "The amount on it, as 12.50")->needs(payee);
  for (const char* const name : {"--account", "--bank"}) stop->get_option(name)->required();
  AddSignOnOptions(*stop, options->signOn, use);
  stop->callback([options, &exitStatus] { exitStatus = Request(*options); });
}

}  // namespace krofx::command
