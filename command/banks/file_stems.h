// The names of the files that `fetch all` writes for each account, without their endings.

#ifndef KROFX_COMMAND_BANKS_FILE_STEMS_H_
#define KROFX_COMMAND_BANKS_FILE_STEMS_H_

#include <string>
#include <vector>

#include "banks/bank.h"

namespace krofx::command {

/// Names the files of each account of a bank after the bank and the number of the account, or for a
/// card after the last four digits of its number: `mybank-12345`, `mybank-card-4444`. No two
/// accounts of the user get the same name: where one would be that of another account too, a digest
/// of the account's bank, number and type is added. The name of an account does not depend on the
/// order in which accounts and banks are listed.
/// @param accounts those of the bank, listed in the file of banks or by the bank itself.
/// @param banks all of the user's.
/// @return a name for each account, in their order; an empty one when there is no memory for its
///         digest.
std::vector<std::string> FileStemsOf(const Bank& bank, const std::vector<Account>& accounts,
                                     const std::vector<Bank>& banks);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_FILE_STEMS_H_
