// Which of the accounts of a bank a request is about.

#ifndef KROFX_COMMAND_REQUESTS_ACCOUNT_CHOICE_H_
#define KROFX_COMMAND_REQUESTS_ACCOUNT_CHOICE_H_

#include <memory>
#include <string>
#include <vector>

#include "banks/bank.h"
#include "requests/account_options.h"
#include "requests/sign_on_options.h"

namespace krofx::command {

class RequestMaker;

/// What is asked for.
enum class StatementKind { kMoney, kInvestment };

/// The accounts of the bank that the sign-on names, whose numbers end in `number`; all of them when
/// that is empty. When none is listed with the bank, the institution is asked for them.
/// @return those there are; a problem is noted in `maker` when there is none, or when several end
///         in the number.
std::vector<Account> ChooseAccounts(const SignOnOptions& signOn, const std::string& number,
                                    StatementKind kind, RequestMaker& maker);

/// @return the account as the options of a command line would name it.
BankAccountOptions ToOptions(const Account& account);

/// Makes the account that a request names; what is wrong with it is noted in `maker`.
std::unique_ptr<KRAccount> MakeAccount(const Account& account, RequestMaker& maker);

/// @return a few words that name an account in messages, such as "00718220946 CHECKING".
std::string NameOf(const Account& account);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_ACCOUNT_CHOICE_H_
