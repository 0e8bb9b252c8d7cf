// krofx fetch updates, as the other kinds of fetch see it.

#ifndef KROFX_COMMAND_SUBCOMMANDS_FETCH_UPDATES_H_
#define KROFX_COMMAND_SUBCOMMANDS_FETCH_UPDATES_H_

namespace krofx::command {

class Subcommand;

/// Adds `updates` to the subcommands of `fetch`.
void AddFetchUpdates(const Subcommand& fetch);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SUBCOMMANDS_FETCH_UPDATES_H_
