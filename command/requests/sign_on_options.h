// What every request needs from the user: who signs on where, and where the password comes from.

#ifndef KROFX_COMMAND_REQUESTS_SIGN_ON_OPTIONS_H_
#define KROFX_COMMAND_REQUESTS_SIGN_ON_OPTIONS_H_

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "banks/bank.h"
#include "banks/password.h"
#include "command_line/command_line.h"
#include "krofx/core/types.h"

#include "requests/request_use.h"

namespace krofx::command {

/// What the command line says of a sign-on, and what becomes of the request.
struct SignOnOptions {
  std::string subcommand;    ///< What messages call the request, such as "request transfer".
  std::string bankName;      ///< "@" and the name of one of the user's banks; may be empty.
  std::optional<Bank> bank;  ///< That bank.
  std::string organisation;
  std::string institutionId;
  std::string user;
  std::string applicationId;
  int applicationVersion = 0;
  std::string language;
  std::string country;
  bool secondVersion = false;
  int passwordFd = -1;
  std::string passwordVariable;
  bool takesVariable = true;    ///< KROFX_PASSWORD may be this bank's.
  bool mayBeAnonymous = false;  ///< Without a user the sign-on is anonymous.
  /// Read when it is first needed, and kept for the requests to the same bank that follow.
  std::shared_ptr<Password> password = std::make_shared<Password>();
  /// Found when it is first needed, and kept in the same way.
  std::shared_ptr<std::optional<ProfileAnswer>> profile =
      std::make_shared<std::optional<ProfileAnswer>>();
  std::shared_ptr<RequestUse> use;
};

/// @return the version of the message sets in which the bank is asked for its profile.
inline u16 VersionOfProfile(const SignOnOptions& options) { return options.secondVersion ? 2 : 1; }

/// Takes what the command line leaves open from the bank that it names, and from what is usual.
/// @return kExitClean, or another exit status after a complaint that something is missing.
ExitStatus CompleteSignOn(SignOnOptions& options);
/// The same for a bank that is at hand.
void FillSignOn(SignOnOptions& options, const Bank& bank);

/// Adds the options of the sign-on, and those of the use, to a request's command line.
void AddSignOnOptions(const Subcommand& request, SignOnOptions& options,
                      const std::shared_ptr<RequestUse>& use);

/// Says what runs when this request is asked for: a function of its options, whose sign-on is
/// complete by then.
template <class Options>
void OnRequest(const Subcommand& request, const std::shared_ptr<Options>& options,
               ExitStatus (*run)(const Options&)) {
  struct Call final : Action {
    Call(std::shared_ptr<Options> given, ExitStatus (*function)(const Options&))
        : kept(std::move(given)), called(function) {}
    ExitStatus Run() override {
      const ExitStatus complete = CompleteSignOn(kept->signOn);
      return complete == kExitClean ? called(*kept) : complete;
    }
    std::shared_ptr<Options> kept;
    ExitStatus (*called)(const Options&);
  };
  request.OnRun(std::make_unique<Call>(options, run));
}

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_SIGN_ON_OPTIONS_H_
