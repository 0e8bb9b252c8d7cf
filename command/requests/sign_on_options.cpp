// Declares the options of a sign-on.

#include "requests/sign_on_options.h"

#include <climits>

#include "command_line/command_line.h"

namespace krofx::command {

namespace {

// OFX gives the version of an application four digits.
constexpr int kMostApplicationVersion = 9999;

}  // namespace

void AddSignOnOptions(const Subcommand& request, SignOnOptions& options,
                      const std::shared_ptr<RequestUse>& use) {
  options.subcommand = request.GetPath();
  options.use = use;
  const char* const kGroup = "Sign-on";
  const auto add = [&](const char* name, std::string& value, const char* help) {
    return request.AddOption(name, value, help).InGroup(kGroup);
  };
  add("--org", options.organisation, "The institution's name in OFX").Required();
  add("--fid", options.institutionId, "The institution's number in OFX");
  add("--user", options.user,
      options.mayBeAnonymous ? "The user's name at the institution; without it the sign-on is "
                               "anonymous"
                             : "The user's name at the institution")
      .Required(!options.mayBeAnonymous);
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
          "The password comes from --password-fd, from --password-env, from the variable\n"
          "KROFX_PASSWORD, or from a prompt, in this order; there is no option for it, since\n"
          "everybody on the machine can see the arguments of a command.\n") +
      use->GetFooter());
}

}  // namespace krofx::command
