// Memory that holds a password stays out of core files.

#ifndef KROFX_COMMAND_SYSTEM_CORE_FILE_H_
#define KROFX_COMMAND_SYSTEM_CORE_FILE_H_

namespace krofx::command {

/// Makes sure that the process leaves no core file, whatever ends it.
void ForbidCoreFiles();

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SYSTEM_CORE_FILE_H_
