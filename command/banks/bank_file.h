// The file of banks: docs/banks.md describes its form.

#ifndef KROFX_COMMAND_BANKS_BANK_FILE_H_
#define KROFX_COMMAND_BANKS_BANK_FILE_H_

#include <string>
#include <string_view>
#include <vector>

#include "banks/bank.h"

namespace krofx::command {

/// The banks of a text in the order of the text, or what is wrong with it.
struct BankList {
  std::vector<Bank> banks;
  std::string problem;  ///< With the line; empty when all is in order. It repeats no value.
};

/// Reads the text of a file of banks. A key that is not known is a problem, so that a slip is not
/// taken for nothing.
/// @param folder what relative names of files in it are relative to.
BankList ParseBanks(const std::string& text, const std::string& folder);

/// Reads the file of banks. No file is a list without banks. A file that others can read or change
/// is a problem, since what it names gets passwords.
BankList ReadBanks();

/// The bank of that name.
/// @param name with or without "@".
/// @return null after it is put into `problem` what there is instead.
const Bank* FindBank(const BankList& list, std::string_view name, std::string& problem);

/// @return the text of a bank, as the file has it.
std::string TextOf(const Bank& bank);
/// @return the text of an account of a bank.
std::string TextOf(const std::string& bankName, const Account& account);

/// @return what is wrong with a bank that the file is to have; empty when it can have it. No value
///         but the type of an account is repeated.
std::string FindProblem(const Bank& bank);

/// Adds text at the end of the file of banks, which is made if there is none.
/// @return empty, or what is wrong; the file is then as it was.
std::string AddToBanks(const std::string& text);
/// Takes a bank with its accounts out of the file. Everything else stays as it is, with comments.
std::string RemoveFromBanks(const std::string& name);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_BANK_FILE_H_
