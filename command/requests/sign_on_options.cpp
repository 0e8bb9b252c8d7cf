// Declares the options of a sign-on.

#include "requests/sign_on_options.h"

#include <climits>

#include "banks/bank_file.h"
#include "command_line/command_line.h"
#include "output/messages.h"

namespace krofx::command {

namespace {

// OFX gives the version of an application four digits.
constexpr int kMostApplicationVersion = 9999;

constexpr int kUsualApplicationVersion = 100;

void FillIfEmpty(std::string& text, const std::string& other) {
  if (text.empty()) text = other;
}

ExitStatus TakeNamedBank(SignOnOptions& options) {
  if (!options.bankName.starts_with('@')) {
    // It may be a secret and is not repeated.
    Complain(options.subcommand, "there is an argument too many; a bank is named as @harbor");
    return kExitWrongUse;
  }
  const BankList list = ReadBanks();
  if (!list.problem.empty()) {
    Complain(options.subcommand, list.problem);
    return kExitUnusable;
  }
  std::string problem;
  const Bank* const bank = FindBank(list, options.bankName, problem);
  if (bank == nullptr) {
    Complain(options.subcommand, problem);
    return kExitWrongUse;
  }
  FillSignOn(options, *bank);
  return kExitClean;
}

}  // namespace

void FillSignOn(SignOnOptions& options, const Bank& bank) {
  options.bank = bank;
  FillIfEmpty(options.organisation, bank.organisation);
  FillIfEmpty(options.institutionId, bank.institutionId);
  FillIfEmpty(options.user, bank.user);
  FillIfEmpty(options.applicationId, bank.applicationId);
  if (options.applicationVersion == 0) options.applicationVersion = bank.applicationVersion;
  FillIfEmpty(options.language, bank.language);
  FillIfEmpty(options.country, bank.country);
  options.secondVersion |= bank.version == 2;
  options.use->TakeBank(bank);
}

ExitStatus CompleteSignOn(SignOnOptions& options) {
  if (!options.bankName.empty()) {
    const ExitStatus taken = TakeNamedBank(options);
    if (taken != kExitClean) return taken;
  }
  FillIfEmpty(options.applicationId, "KROFX");
  if (options.applicationVersion == 0) options.applicationVersion = kUsualApplicationVersion;
  FillIfEmpty(options.language, "ENG");
  std::string missing = options.use->FindMissing();
  if (options.user.empty() && !options.mayBeAnonymous) missing = "--user";
  if (options.organisation.empty()) missing = "--org";
  if (missing.empty()) return kExitClean;
  Complain(options.subcommand, missing + " is required, or a bank, as @harbor; see \"krofx " +
                                   options.subcommand + " --help\"");
  return kExitWrongUse;
}

void AddSignOnOptions(const Subcommand& request, SignOnOptions& options,
                      const std::shared_ptr<RequestUse>& use) {
  options.subcommand = request.GetPath();
  options.use = use;
  const char* const kGroup = "Sign-on";
  const auto add = [&](const char* name, std::string& value, const char* help) {
    return request.AddOption(name, value, help).InGroup(kGroup);
  };
  request
      .AddOption("BANK", options.bankName,
                 "A bank of \"krofx bank list\", as @harbor; else --org and --user")
      .RefuseEmpty();
  add("--org", options.organisation, "The institution's name in OFX");
  add("--fid", options.institutionId, "The institution's number in OFX");
  add("--user", options.user,
      options.mayBeAnonymous ? "The user's name at the institution; without it the sign-on is "
                               "anonymous"
                             : "The user's name at the institution");
  add("--app-id", options.applicationId, "Name of the application, up to 5 characters");
  request
      .AddNumber("--app-version", options.applicationVersion, 1, kMostApplicationVersion,
                 "Version of the application, such as 100")
      .InGroup(kGroup);
  add("--language", options.language, "Language of answers, three letters");
  add("--country", options.country, "Country, three letters (V2 only)");
  const Option descriptor = request
                                .AddNumber("--password-fd", options.passwordFd, 0, INT_MAX,
                                           "Read the password from this open file")
                                .InGroup(kGroup);
  add("--password-env", options.passwordVariable,
      "Take the password from this environment variable")
      .Excludes(descriptor);
  request.AddFlag("--v2", options.secondVersion, "Use the second version of the message sets");
  use->AddOptions(request);
  request.SetFooter(
      std::string(
          "The password comes from --password-fd, from --password-env, from what is described for "
          "the bank (keyring, password-command), from the variable KROFX_PASSWORD, or from a "
          "prompt, in this order; there is no option for it, since everybody on the machine can "
          "see the arguments of a command.\n") +
      use->GetFooter());
}

}  // namespace krofx::command
