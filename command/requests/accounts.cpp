// krofx request accounts: asks for the list of the user's accounts.

#include <CLI/CLI.hpp>
#include <memory>

#include "requests/request_maker.h"

namespace krofx::command {

namespace {

struct Options {
  SignOnOptions signOn;
  std::string since = "19700101";
};

ExitStatus Request(const Options& options) {
  RequestMaker maker(options.signOn);
  auto payload = maker.Make<KRAccountInfoRq>(KRTag_ACCTINFORQ);
  maker.RequireDate("--since", payload->SetDtAcctUp(DateArgument(options.since)));
  return maker.Finish(std::move(payload),
                      maker.GetVersion() == 1 ? KRTag_SIGNUPMSGSRQV1 : KRTag_SIGNUPMSGSRQV2);
}

}  // namespace

void AddAccountsRequest(CLI::App& app, ExitStatus& exitStatus,
                        const std::shared_ptr<RequestUse>& use) {
  CLI::App* const accounts = app.add_subcommand("accounts", "Ask for the list of accounts");
  const auto options = std::make_shared<Options>();
  accounts->add_option("--since", options->since,
                       "Day of the list at hand, as 2026-01-31; without it all is asked for");
  AddSignOnOptions(*accounts, options->signOn, use);
  accounts->callback([options, &exitStatus] { exitStatus = Request(*options); });
}

}  // namespace krofx::command
