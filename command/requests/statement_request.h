// The requests that several subcommands make: for statements, and for the list of accounts.

#ifndef KROFX_COMMAND_REQUESTS_STATEMENT_REQUEST_H_
#define KROFX_COMMAND_REQUESTS_STATEMENT_REQUEST_H_

#include <string>
#include <vector>

#include "banks/bank.h"
#include "krofx/krofx.h"
#include "requests/sign_on_options.h"
#include "system/exit_status.h"

namespace krofx::command {

class RequestMaker;

/// Which days of an account are asked for, as the command line has them.
struct StatementSpan {
  std::string from;
  std::string to;
  bool noTransactions = false;
};

/// Finishes a request for the statements of bank and card accounts.
ExitStatus FinishStatements(const std::vector<Account>& accounts, const StatementSpan& span,
                            RequestMaker& maker);
/// Finishes a request for the statements of investment accounts, with all that they have.
ExitStatus FinishInvestments(const std::vector<Account>& accounts, const StatementSpan& span,
                             RequestMaker& maker);
/// Asks for the list of the user's accounts.
/// @param since day of the list at hand.
ExitStatus RequestAccounts(const SignOnOptions& signOn, const std::string& since);
/// Asks for the profile.
/// @param since day of the profile at hand; null for none.
ExitStatus RequestProfile(const SignOnOptions& signOn, const KRDateTime* since);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_STATEMENT_REQUEST_H_
