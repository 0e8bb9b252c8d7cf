// What every request needs from the user: who signs on where, and where the password comes from.

#ifndef KROFX_COMMAND_REQUESTS_SIGN_ON_OPTIONS_H_
#define KROFX_COMMAND_REQUESTS_SIGN_ON_OPTIONS_H_

#include <memory>
#include <string>

#include "requests/request_use.h"

namespace krofx::command {

/// What the command line says of a sign-on, and what becomes of the request.
struct SignOnOptions {
  std::string subcommand;  ///< What messages call the request, such as "request transfer".
  std::string organisation;
  std::string institutionId;
  std::string user;
  std::string applicationId = "KROFX";
  int applicationVersion = 100;
  std::string language = "ENG";
  std::string country;
  bool secondVersion = false;
  int passwordFd = -1;
  std::string passwordVariable;
  bool mayBeAnonymous = false;  ///< Without a user the sign-on is anonymous.
  std::shared_ptr<RequestUse> use;
};

/// Adds the options of the sign-on, and those of the use, to a request's command line.
void AddSignOnOptions(const Subcommand& request, SignOnOptions& options,
                      const std::shared_ptr<RequestUse>& use);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_SIGN_ON_OPTIONS_H_
