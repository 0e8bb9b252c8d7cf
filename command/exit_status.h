// What the command answers to the shell.

#ifndef KROFX_COMMAND_EXIT_STATUS_H_
#define KROFX_COMMAND_EXIT_STATUS_H_

namespace krofx::command {

/// What the command answers to the shell.
enum ExitStatus : int {
  kExitClean = 0,      ///< Done.
  kExitWarnings = 1,   ///< Read, with warnings or with something missing; only `check` says so.
  kExitUnusable = 2,   ///< Something could not be read or written.
  kExitWrongUse = 64,  ///< The command line makes no sense.
};

/// The worse of two exit statuses.
inline ExitStatus Worse(ExitStatus left, ExitStatus right) { return left < right ? right : left; }

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXIT_STATUS_H_
