// krofx request profile: asks what an institution offers.

#include "command_line/command_line.h"
#include "requests/arguments.h"
#include "requests/request_maker.h"
#include "requests/request_use.h"
#include "requests/statement_request.h"

namespace krofx::command {

namespace {

constexpr char kLongAgo[] = "19700101";

struct Options {
  SignOnOptions signOn;
  std::string since = kLongAgo;
};

std::unique_ptr<KRProfileRq> MakePayload(const RequestMaker& maker) {
  auto payload = maker.Make<KRProfileRq>(KRTag_PROFRQ);
  payload->SetClientRouting(KRClientRouting_NONE);
  return payload;
}

ExitStatus Request(const Options& options) {
  RequestMaker maker(options.signOn);
  auto payload = MakePayload(maker);
  maker.SetDate("--since", ResolveDay(options.since), *payload, &KRProfileRq::SetDtProfUp);
  return maker.Finish(std::move(payload), Service::kProfile);
}

}  // namespace

ExitStatus RequestProfile(const SignOnOptions& signOn, const KRDateTime* since) {
  RequestMaker maker(signOn);
  auto payload = MakePayload(maker);
  if (since == nullptr || payload->SetDtProfUp(*since) == 0) payload->SetDtProfUp(kLongAgo);
  return maker.Finish(std::move(payload), Service::kProfile);
}

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
