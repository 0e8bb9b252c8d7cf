// krofx request profile: asks what an institution offers.

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
  auto payload = maker.Make<KRProfileRq>(KRTag_PROFRQ);
  payload->SetClientRouting(KRClientRouting_NONE);
  maker.RequireDate("--since", payload->SetDtProfUp(DateArgument(options.since)));
  return maker.Finish(std::move(payload),
                      maker.GetVersion() == 1 ? KRTag_PROFMSGSRQV1 : KRTag_PROFMSGSRQV2);
}

}  // namespace

void AddProfileRequest(CLI::App& app, ExitStatus& exitStatus,
                       const std::shared_ptr<RequestUse>& use) {
  CLI::App* const profile = app.add_subcommand("profile", "Ask what the institution offers");
  const auto options = std::make_shared<Options>();
  options->signOn.mayBeAnonymous = true;
  profile->add_option("--since", options->since,
                      "Day of the profile at hand, as 2026-01-31; without it all is asked for");
  AddSignOnOptions(*profile, options->signOn, use);
  profile->callback([options, &exitStatus] { exitStatus = Request(*options); });
}

}  // namespace krofx::command
