// The whole command, which takes the place of the program krofx.

#ifndef KROFX_COMMAND_PROGRAMS_FULL_COMMAND_H_
#define KROFX_COMMAND_PROGRAMS_FULL_COMMAND_H_

#include "system/exit_status.h"

namespace krofx::command {

/// Lets the program krofx-full go on in this process, with the same arguments, descriptors and
/// environment. It is looked for at its place in the installation that this program is in, then
/// next to this program, and nowhere else.
/// @return only if it cannot be started, which is reported on standard error: kExitUnusable.
ExitStatus BecomeFullCommand(int argc, char** argv);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_PROGRAMS_FULL_COMMAND_H_
