// The accounts that an institution lists.

#ifndef KROFX_COMMAND_BANKS_ACCOUNT_LIST_H_
#define KROFX_COMMAND_BANKS_ACCOUNT_LIST_H_

#include <vector>

#include "banks/bank.h"

namespace krofx::command {

class ParsedFile;
struct Element;

/// Reads an account that an aggregate such as BANKACCTFROM names.
/// @return false when it names none whole; `account` is then of no use.
bool ReadAccount(const Element& element, Account& account);

/// @return the bank, card and investment accounts that a reply lists, in its order, each once.
std::vector<Account> AccountsIn(const ParsedFile& reply);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_ACCOUNT_LIST_H_
