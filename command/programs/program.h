// What the two programs of the command have in common: their name and version, and how they begin
// and end.

#ifndef KROFX_COMMAND_PROGRAMS_PROGRAM_H_
#define KROFX_COMMAND_PROGRAMS_PROGRAM_H_

#include "command_line/command_line.h"
#include "krofx/version.h"
#include "subcommands/subcommands.h"

namespace krofx::command {

/// What --version prints, without the end of its line.
inline constexpr char kVersionLine[] = "krofx " KROFX_VERSION;

/// @return the command without any subcommand.
CommandLine MakeCommandLine();

/// Adds a subcommand, which the help lists under the title.
void AddSubcommand(const CommandLine& commandLine, const char* title, const SubcommandEntry& entry);

/// Runs a program: no core file holds its memory, and exhausted memory is reported.
/// @return what its main function returns.
int RunProgram(ExitStatus (*run)(int argc, char** argv), int argc, char** argv);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_PROGRAMS_PROGRAM_H_
