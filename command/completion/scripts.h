// The scripts by which shells ask the command for completions.

#ifndef KROFX_COMMAND_COMPLETION_SCRIPTS_H_
#define KROFX_COMMAND_COMPLETION_SCRIPTS_H_

#include <string_view>

namespace krofx::command {

/// The script for a shell: bash, zsh or fish.
/// @return empty for another one.
std::string_view CompletionScript(std::string_view shell);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_COMPLETION_SCRIPTS_H_
