// A bank of the user, as the file of banks describes it.

#ifndef KROFX_COMMAND_BANKS_BANK_H_
#define KROFX_COMMAND_BANKS_BANK_H_

#include <string>
#include <string_view>
#include <vector>

namespace krofx::command {

/// The types of bank accounts that both versions of the message sets have.
inline constexpr std::string_view kBankAccountTypes[] = {"CHECKING", "SAVINGS", "MONEYMRKT",
                                                         "CREDITLINE"};

/// What an account is.
enum class AccountKind { kBank, kCard, kInvestment };

/// An account of the user.
struct Account {
  AccountKind kind = AccountKind::kBank;
  std::string number;
  std::string bank;  ///< The bank's routing number, or the broker's ID; empty for a card.
  std::string branch;
  std::string type;  ///< Of a bank account, such as CHECKING.

  bool operator==(const Account&) const = default;
};

/// An institution, and how it is asked. What is empty or 0 is not given.
struct Bank {
  std::string name;  ///< By which the command line names it, after "@".
  std::string url;
  std::string organisation;
  std::string institutionId;
  std::string user;
  std::string passwordCommand;  ///< A command of the shell that prints the password.
  bool keyring = false;         ///< The password is in the keyring of the desktop.
  std::string clientId;         ///< The client identifier that is sent.
  bool makesClientId = false;   ///< One is made when it is first needed, and kept.
  /// Of the message sets: 1 or 2; 0 for the highest that the profile offers, or 1 without one.
  int version = 0;
  bool hasProfile = true;          ///< It is asked for its profile, which is then respected.
  std::vector<std::string> hosts;  ///< Other hosts that its profile may send requests to.
  std::vector<std::string> rootFiles;
  std::vector<std::string> pins;
  std::string proxy;
  int timeout = 0;
  std::string applicationId;
  int applicationVersion = 0;
  std::string language;
  std::string country;
  std::vector<Account> accounts;
  int line = 0;  ///< Where the file describes it, from 1.
};

/// @return whether the text can be the name of a bank: letters, digits, "-" and "_", and a letter
///         first.
bool IsBankName(const std::string& text);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_BANK_H_
