// What may come next on a command line that is not finished, for the completion of shells.

#ifndef KROFX_COMMAND_COMPLETION_CANDIDATES_H_
#define KROFX_COMMAND_COMPLETION_CANDIDATES_H_

#include <string>
#include <vector>

namespace krofx::command {

class Subcommand;

/// The line that asks the shell to offer names of files itself.
inline constexpr char kFileNames[] = ":files";

/// @param command the command itself.
/// @param words those after the command's name, the last of them being typed; it may be empty.
/// @return the words that may take the place of the last one, each with a tab and a few words on it
///         if there are any: subcommands, options, and the values of those that have some to choose
///         from, such as tables, banks, and the accounts of a bank or of the files that are named
///         before.
std::vector<std::string> FindCandidates(const Subcommand& command,
                                        const std::vector<std::string>& words);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_COMPLETION_CANDIDATES_H_
