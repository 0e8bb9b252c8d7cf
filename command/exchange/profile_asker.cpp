// Sends requests for profiles.

#include "exchange/profile_asker.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "banks/profile_file.h"
#include "exchange/refusals.h"
#include "exchange/reply_keeper.h"
#include "input/buffer_copy.h"
#include "input/parsed_file.h"
#include "output/messages.h"
#include "requests/sign_on_options.h"
#include "requests/statement_request.h"

namespace krofx::command {

namespace {

// What a bank answered.
struct Answer {
  ExitStatus exitStatus = kExitClean;
  std::shared_ptr<const Profile> profile;
  std::vector<Refusal> refusals;
};

bool IsSignOnRefused(const Answer& answer) {
  return std::any_of(answer.refusals.begin(), answer.refusals.end(),
                     [](const Refusal& each) { return each.exitStatus == kExitSignOnRefused; });
}

std::vector<Refusal> RefusalsIn(const ParsedFile& reply) {
  std::vector<Refusal> refusals;
  for (const OfxFile& each : reply.GetOfxFiles()) {
    TextArena arena;
    std::vector<Refusal> found = FindRefusals(ReadElements(*each.file, arena, each.text));
    std::move(found.begin(), found.end(), std::back_inserter(refusals));
  }
  return refusals;
}

Answer Ask(SignOnOptions signOn, const ExchangeOptions& options,
           const std::shared_ptr<const Profile>& kept) {
  const auto keeper = std::make_shared<ReplyKeeper>(options);
  signOn.use = keeper;
  // Its own request is made without one.
  signOn.profile = std::make_shared<std::optional<ProfileAnswer>>(ProfileAnswer{});
  const ExitStatus asked = RequestProfile(signOn, kept == nullptr ? nullptr : &kept->day);
  if (asked != kExitClean) return {asked, nullptr, {}};
  std::unique_ptr<KRBuffer> text = keeper->TakeReply();
  const std::unique_ptr<KRBuffer> copy = CopyOf(*text);
  const ParsedFile reply(keeper->GetShownUrl(), std::move(text));
  Answer answer{kExitClean, ReadProfile(reply), RefusalsIn(reply)};
  if (answer.profile == nullptr) {
    if (answer.refusals.empty()) answer.profile = kept;
    return answer;
  }
  const std::string problem = copy == nullptr
                                  ? "not enough memory to keep the profile"
                                  : KeepProfile(*signOn.bank, VersionOfProfile(signOn), *copy);
  if (!problem.empty()) Complain(signOn.bank->name, problem);
  return answer;
}

}  // namespace

ProfileAnswer AskForProfile(const SignOnOptions& signOn, const ExchangeOptions& options,
                            const std::shared_ptr<const Profile>& kept) {
  SignOnOptions anonymous = signOn;
  anonymous.user.clear();
  anonymous.mayBeAnonymous = true;
  Answer answer = Ask(std::move(anonymous), options, kept);
  if (answer.exitStatus == kExitClean && IsSignOnRefused(answer)) {
    answer = Ask(signOn, options, kept);
    // The user's sign-on would be refused again.
    if (IsSignOnRefused(answer)) {
      Complain(signOn.bank->name, answer.refusals.front().text);
      return {kExitSignOnRefused, nullptr};
    }
  }
  if (answer.exitStatus == kExitClean && answer.profile == nullptr) {
    const std::string reason =
        answer.refusals.empty() ? "" : " (" + answer.refusals.front().text + ")";
    Complain(signOn.bank->name,
             "it gives no profile" + reason +
                 ", and is asked without one; profile = false in banks.toml asks for none");
  }
  return {answer.exitStatus, answer.profile};
}

ProfileAnswer FindProfile(const SignOnOptions& signOn, const ExchangeOptions& options) {
  const Bank& bank = *signOn.bank;
  ProfileAnswer answer{kExitClean, ReadBestKeptProfile(bank, VersionOfProfile(signOn))};
  if (answer.profile == nullptr) answer = AskForProfile(signOn, options, nullptr);
  if (answer.profile == nullptr || !answer.profile->namesSecondVersion || bank.version != 0) {
    return answer;
  }
  SignOnOptions inSecond = signOn;
  inSecond.secondVersion = true;
  const ProfileAnswer second = AskForProfile(inSecond, options, nullptr);
  return second.exitStatus == kExitClean && second.profile == nullptr ? answer : second;
}

void ForgetOlderProfile(const Bank& bank, const ParsedFile& reply) {
  for (const u16 version : {u16{1}, u16{2}}) {
    const auto kept = ReadKeptProfile(bank, version);
    if (kept != nullptr && NamesNewerProfile(reply, *kept)) return ForgetProfiles(bank.name);
  }
}

}  // namespace krofx::command
