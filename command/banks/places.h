// Where the command keeps what it knows of the user's banks, by the rules of the XDG base
// directories.

#ifndef KROFX_COMMAND_BANKS_PLACES_H_
#define KROFX_COMMAND_BANKS_PLACES_H_

#include <string>

namespace krofx::command {

/// The file of banks, which the user may edit: ${XDG_CONFIG_HOME:-~/.config}/krofx/banks.toml.
/// @return empty when there is neither the variable nor a home.
std::string BanksFile();
/// @return what is made once and kept: ${XDG_STATE_HOME:-~/.local/state}/krofx.
std::string StateFolder();

/// @return what is kept for the user: ${XDG_DATA_HOME:-~/.local/share}/krofx.
std::string DataFolder();

/// Makes a folder, and those above it, for the user's eyes only. One that is there stays as it is.
/// @return empty, or what went wrong.
std::string MakePrivateFolder(const std::string& path);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_PLACES_H_
