// krofx fetch all, as the other kinds of fetch see it.

#ifndef KROFX_COMMAND_SUBCOMMANDS_FETCH_ALL_H_
#define KROFX_COMMAND_SUBCOMMANDS_FETCH_ALL_H_

namespace krofx::command {

class Subcommand;

/// Adds `all` to the subcommands of `fetch`.
void AddFetchAll(const Subcommand& parent);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SUBCOMMANDS_FETCH_ALL_H_
