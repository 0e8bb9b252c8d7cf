// The subcommands of krofx, and how each enters the command line.

#ifndef KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_
#define KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_

namespace krofx::command {

class Subcommand;

/// Adds one subcommand to the command.
using AddSubcommand = void (*)(const Subcommand& command);
void AddPrint(const Subcommand& command);
void AddCheck(const Subcommand& command);
void AddSum(const Subcommand& command);
void AddDiff(const Subcommand& command);
void AddRewrite(const Subcommand& command);
void AddRequest(const Subcommand& command);
void AddExtract(const Subcommand& command);
void AddCertID(const Subcommand& command);
void AddSend(const Subcommand& command);
void AddGet(const Subcommand& command);
void AddFetch(const Subcommand& command);
void AddBank(const Subcommand& command);
void AddHelp(const Subcommand& command);
void AddCompletion(const Subcommand& command);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_
