// krofx bank password, as the rest of krofx bank sees it.

#ifndef KROFX_COMMAND_SUBCOMMANDS_BANK_PASSWORD_H_
#define KROFX_COMMAND_SUBCOMMANDS_BANK_PASSWORD_H_

namespace krofx::command {

class Subcommand;

/// Adds `password` to the subcommands of `bank`.
void AddBankPassword(const Subcommand& bank);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SUBCOMMANDS_BANK_PASSWORD_H_
