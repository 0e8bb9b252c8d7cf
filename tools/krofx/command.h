// What all subcommands share: exit statuses, how they enter the command line, and how they
// complain.

#ifndef KROFX_TOOLS_COMMAND_H_
#define KROFX_TOOLS_COMMAND_H_

#include <string>
#include <string_view>

namespace CLI {
class App;
}

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

/// Adds one subcommand to the command line. When it is the one asked for, it leaves its exit status
/// in `exitStatus`.
using AddSubcommand = void (*)(CLI::App& app, ExitStatus& exitStatus);
void AddPrint(CLI::App& app, ExitStatus& exitStatus);
void AddCheck(CLI::App& app, ExitStatus& exitStatus);
void AddRewrite(CLI::App& app, ExitStatus& exitStatus);
void AddRequest(CLI::App& app, ExitStatus& exitStatus);
void AddExtract(CLI::App& app, ExitStatus& exitStatus);
void AddCertID(CLI::App& app, ExitStatus& exitStatus);
void AddSend(CLI::App& app, ExitStatus& exitStatus);
void AddGet(CLI::App& app, ExitStatus& exitStatus);
void AddFetch(CLI::App& app, ExitStatus& exitStatus);

/// Writes one line on standard error: "krofx: WHERE: WHAT".
void Complain(std::string_view where, std::string_view what);

/// Writes a text on standard output.
/// @return kExitClean, or kExitUnusable with a complaint when it could not all be written.
ExitStatus WriteStandardOutput(std::string_view text);

}  // namespace krofx::command

#endif  // KROFX_TOOLS_COMMAND_H_
