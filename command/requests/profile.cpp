// krofx request profile: asks what an institution offers.

#include "command_line/command_line.h"
#include "requests/arguments.h"
#include "requests/request_maker.h"
#include "requests/request_use.h"

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
  maker.SetDate("--since", ResolveDay(options.since), *payload, &KRProfileRq::SetDtProfUp);
  return maker.Finish(std::move(payload),
                      maker.GetVersion() == 1 ? KRTag_PROFMSGSRQV1 : KRTag_PROFMSGSRQV2);
}

}  // namespace

void AddProfileRequest(const Subcommand& parent, const std::shared_ptr<RequestUse>& use) {
  const Subcommand profile = parent.Add("profile", "Ask what the institution offers");
  const auto options = std::make_shared<Options>();
  options->signOn.mayBeAnonymous = true;
  profile.AddOption("--since", options->since,
                    "Day of the profile at hand, as 2026-01-31; without it all is asked for");
  AddSignOnOptions(profile, options->signOn, use);
  OnRequest(profile, options, Request);
}

}  // namespace krofx::command
