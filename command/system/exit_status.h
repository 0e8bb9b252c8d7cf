// What the command answers to the shell.

#ifndef KROFX_COMMAND_SYSTEM_EXIT_STATUS_H_
#define KROFX_COMMAND_SYSTEM_EXIT_STATUS_H_

namespace krofx::command {

/// What the command answers to the shell. Of several, the higher one counts.
enum ExitStatus : int {
  kExitClean = 0,          ///< Done.
  kExitWarnings = 1,       ///< Done, with something to look at, such as a warning of `check`.
  kExitUnusable = 2,       ///< Something could not be read or written.
  kExitNetwork = 3,        ///< No reply came over the network: trying again may help.
  kExitRefused = 4,        ///< The institution refused what was asked.
  kExitSignOnRefused = 5,  ///< The institution refused user or password: trying again may lock.
  kExitCancelled = 6,      ///< The user gave up at a prompt.
  kExitWrongUse = 64,      ///< The command line is wrong.
};

/// What help texts say of the statuses of an exchange, after those of the subcommand itself.
inline constexpr char kExchangeStatuses[] =
    "3 no reply came, try again, 4 the institution refused, 5 it refused the sign-on (do not try "
    "again), 6 cancelled, 64 wrong use.";

/// @return the worse of two exit statuses.
inline ExitStatus Worse(ExitStatus left, ExitStatus right) { return left < right ? right : left; }

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SYSTEM_EXIT_STATUS_H_
