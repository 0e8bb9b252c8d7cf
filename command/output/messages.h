// Complaints on standard error, and text on standard output.

#ifndef KROFX_COMMAND_OUTPUT_MESSAGES_H_
#define KROFX_COMMAND_OUTPUT_MESSAGES_H_

#include <string>
#include <string_view>

#include "system/exit_status.h"

namespace krofx::command {

/// Writes one line on standard error: "krofx: WHERE: WHAT".
void Complain(std::string_view where, std::string_view what);

/// Complains that a subcommand has nothing to work on.
/// @return kExitWrongUse.
ExitStatus ComplainOfNoFile(const std::string& subcommand);

/// Writes a text on standard output.
/// @return kExitClean, or kExitUnusable with a complaint when it could not all be written.
ExitStatus WriteStandardOutput(std::string_view text);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_MESSAGES_H_
