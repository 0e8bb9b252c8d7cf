// The subcommands of krofx, and how each enters the command line.

#ifndef KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_
#define KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_

namespace krofx::command {

class Subcommand;

/// Adds one subcommand to the command.
using AddSubcommand = void (*)(const Subcommand& parent);
void AddPrint(const Subcommand& parent);
void AddCheck(const Subcommand& parent);
void AddSum(const Subcommand& parent);
void AddDiff(const Subcommand& parent);
void AddRewrite(const Subcommand& parent);
void AddRequest(const Subcommand& parent);
void AddExtract(const Subcommand& parent);
void AddCertID(const Subcommand& parent);
void AddSend(const Subcommand& parent);
void AddGet(const Subcommand& parent);
void AddFetch(const Subcommand& parent);
void AddBank(const Subcommand& parent);
void AddHelp(const Subcommand& parent);
void AddCompletion(const Subcommand& parent);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_
