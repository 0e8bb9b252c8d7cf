// The subcommands of krofx, and how each enters the command line.

#ifndef KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_
#define KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_

#include "exit_status.h"

namespace CLI {
class App;
}

namespace krofx::command {

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

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_
