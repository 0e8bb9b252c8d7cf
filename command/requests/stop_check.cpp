// krofx request stop-check: asks a bank not to pay checks, by number or by description.

#include "command_line/command_line.h"
#include "requests/account_options.h"
#include "requests/arguments.h"
#include "requests/order_text.h"
#include "requests/request_maker.h"
#include "requests/request_use.h"

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

void RequireCheckNumber(const char* option, const std::string& given, RequestMaker& maker) {
  if (given.empty() || IsCheckNumber(given)) return;
  maker.Fail(std::string(option) + " " + given + " is not the number of a check; write it as 1042");
}

// A range that is read too widely stops checks that should be paid.
void RequireRange(const Options& options, RequestMaker& maker) {
  RequireCheckNumber("--first", options.first, maker);
  RequireCheckNumber("--last", options.last, maker);
  if (options.last.empty()) return;
  if (!AreOfOneSeries(options.first, options.last)) {
    maker.Fail("--first " + options.first + " and --last " + options.last +
               " do not say which numbers lie between them; write both as 1042");
  } else if (IsHigherNumber(options.first, options.last)) {
    maker.Fail("--first " + options.first + " is higher than --last " + options.last);
  }
}

std::unique_ptr<KRCheckRange> MakeRange(const Options& options, RequestMaker& maker) {
  RequireRange(options, maker);
  auto range = maker.Make<KRCheckRange>(KRTag_CHKRANGE);
  maker.SetText("--first", options.first, *range, &KRCheckRange::SetCheckNumberStart,
                &KRCheckRange::GetCheckNumberStart);
  maker.SetText("--last", options.last, *range, &KRCheckRange::SetCheckNumberEnd,
                &KRCheckRange::GetCheckNumberEnd);
  return range;
}

std::unique_ptr<KRCheckDescription> MakeDescription(const Options& options, RequestMaker& maker) {
  RequireCheckNumber("--number", options.number, maker);
  auto check = maker.Make<KRCheckDescription>(KRTag_CHKDESC);
  maker.SetText("--payee", options.payee, *check, &KRCheckDescription::SetName,
                &KRCheckDescription::GetName);
  maker.SetText("--number", options.number, *check, &KRCheckDescription::SetCheckNumber,
                &KRCheckDescription::GetCheckNumber);
  maker.SetDate("--date", options.date, *check, &KRCheckDescription::SetDtUser);
  if (!options.amount.empty()) {
    maker.SetAmount("--amount", options.amount, *check, &KRCheckDescription::SetTrnAmt);
  }
  return check;
}

std::string Describe(const Options& options) {
  std::string checks;
  if (options.payee.empty()) {
    checks = "check " + options.first;
    if (!options.last.empty()) checks = "checks " + options.first + " to " + options.last;
  } else {
    checks = "check";
    if (!options.number.empty()) checks += " " + options.number;
    checks += " to " + options.payee;
    if (!options.amount.empty()) {
      checks += " of " + DescribeMoney(options.amount, options.account.bank);
    }
    if (!options.date.empty()) checks += " dated " + DescribeDate(options.date);
  }
  return "no payment of " + checks + " from " + DescribeAccount(options.account);
}

ExitStatus Request(const Options& options) {
  RequestMaker maker(options.signOn);
  maker.Concern({Service::kBank});
  if (options.first.empty() == options.payee.empty()) {
    maker.Fail("name the checks with --first (and --last), or one with --payee");
  }
  maker.SetOrder(Describe(options));
  auto payload = maker.Make<KRStopCheckRq>(KRTag_STPCHKRQ);
  payload->SetBankAcctFrom(MakeBankAccount(options.account, maker).release());
  if (options.payee.empty()) {
    payload->SetChkRange(MakeRange(options, maker).release());
  } else {
    payload->SetChkDesc(MakeDescription(options, maker).release());
  }
  return maker.Finish(std::move(payload), Service::kBank);
}

}  // namespace

void AddStopCheckRequest(const Subcommand& parent, const std::shared_ptr<RequestUse>& use) {
  const Subcommand stop = parent.Add("stop-check", "Ask a bank not to pay checks");
  const auto options = std::make_shared<Options>();
  AddBankAccountOptions(stop, options->account);
  const Option first = stop.AddOption("--first", options->first, "The first check");
  stop.AddOption("--last", options->last, "The last check; without it one is meant").Needs(first);
  const Option payee = stop.AddOption("--payee", options->payee, "Whom the check was written to");
  stop.AddOption("--number", options->number, "That check's number").Needs(payee);
  stop.AddOption("--date", options->date, "The day on it, as 2026-01-31").Needs(payee);
  stop.AddOption("--amount", options->amount, "The amount on it, as 12.50").Needs(payee);
  for (const char* const name : {"--account", "--bank"}) stop.GetOption(name).Required();
  AddSignOnOptions(stop, options->signOn, use);
  OnRequest(stop, options, Request);
}

}  // namespace krofx::command
