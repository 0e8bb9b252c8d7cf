// krofx request accounts: asks for the list of the user's accounts.

#include "command_line/command_line.h"
#include "requests/arguments.h"
#include "requests/request_maker.h"
#include "requests/request_use.h"
#include "requests/statement_request.h"

namespace krofx::command {

namespace {

struct Options {
  SignOnOptions signOn;
  std::string since = "19700101";
};

ExitStatus Request(const Options& options) {
  return RequestAccounts(options.signOn, options.since);
}

}  // namespace

ExitStatus RequestAccounts(const SignOnOptions& signOn, const std::string& since) {
  RequestMaker maker(signOn);
  const auto make = [&since](RequestMaker& any) {
    auto payload = any.Make<KRAccountInfoRq>(KRTag_ACCTINFORQ);
    any.SetDate("--since", ResolveDay(since), *payload, &KRAccountInfoRq::SetDtAcctUp);
    return payload;
  };
  if (!maker.Try([&make](RequestMaker& trial) { make(trial); })) return maker.Finish();
  maker.Concern({Service::kAccounts});
  return maker.Finish(make(maker), Service::kAccounts);
}

void AddAccountsRequest(const Subcommand& parent, const std::shared_ptr<RequestUse>& use) {
  const Subcommand accounts = parent.Add("accounts", "Ask for the list of accounts");
  const auto options = std::make_shared<Options>();
  accounts.AddOption("--since", options->since,
                     "Day of the list at hand, as 2026-01-31; without it all is asked for");
  AddSignOnOptions(accounts, options->signOn, use);
  OnRequest(accounts, options, Request);
}

}  // namespace krofx::command
