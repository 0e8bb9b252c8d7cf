// How the files begin in which replies about accounts are kept.

#ifndef KROFX_COMMAND_BANKS_FILE_STEMS_H_
#define KROFX_COMMAND_BANKS_FILE_STEMS_H_

#include <string>
#include <vector>

#include "banks/bank.h"

namespace krofx::command {

/// The beginning of the file names of each account of a bank: the bank and the account, of a card
/// the last four digits. No two accounts of the user have the same one: where these words could
/// mean several accounts, each of them gets a digest of all that names it. So a name depends on no
/// order.
/// @param accounts those of the bank, listed in the file of banks or by the bank itself.
/// @param banks all of the user's.
/// @return one for each account; empty for one when there is no memory for its digest.
std::vector<std::string> FileStemsOf(const Bank& bank, const std::vector<Account>& accounts,
                                     const std::vector<Bank>& banks);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_FILE_STEMS_H_
