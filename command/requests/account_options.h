// What several kinds of requests take from the command line: a bank account, a span of days.

#ifndef KROFX_COMMAND_REQUESTS_ACCOUNT_OPTIONS_H_
#define KROFX_COMMAND_REQUESTS_ACCOUNT_OPTIONS_H_

#include <memory>
#include <string>

#include "krofx/krofx.h"

namespace krofx::command {

class Option;
class RequestMaker;
class Subcommand;
struct Account;

/// A bank account of the user, as the command line names it.
struct BankAccountOptions {
  std::string account;
  std::string bank;
  std::string branch;
  std::string type = "CHECKING";
  std::string prefix;  ///< Comes before the names of the options, as "to-".
};

/// Adds the option that takes the type of a bank account, in small letters or capitals.
Option AddAccountType(const Subcommand& subcommand, const std::string& name, std::string& type);

/// Adds the options of a bank account to a command line.
void AddBankAccountOptions(const Subcommand& request, BankAccountOptions& options);

/// Makes the account that BANKACCTFROM names; what is wrong with it is noted in `maker`.
std::unique_ptr<KRBankAccount> MakeBankAccount(const BankAccountOptions& options,
                                               RequestMaker& maker);

/// Makes a card account; what is wrong with it is noted in `maker` by the option's name.
std::unique_ptr<KRCCAccount> MakeCardAccount(const std::string& option, const std::string& number,
                                             KRTagID tag, RequestMaker& maker);

/// Makes an investment account; what is wrong with it is noted in `maker`.
std::unique_ptr<KRInvAcctFrom> MakeInvestmentAccount(const Account& given, RequestMaker& maker);

/// @return which transactions a statement is to have. Empty texts leave a side of the span open.
std::unique_ptr<KRIncTransaction> MakeSpan(const std::string& first, const std::string& last,
                                           bool include, RequestMaker& maker);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_ACCOUNT_OPTIONS_H_
