// What an order says, in words: shown before the order is written, so that a slip is seen in time.

#ifndef KROFX_COMMAND_REQUESTS_ORDER_TEXT_H_
#define KROFX_COMMAND_REQUESTS_ORDER_TEXT_H_

#include <string>

#include "requests/account_options.h"

namespace krofx::command {

/// @return a bank account as "211370545/00718220946 CHECKING", with the branch after the bank if it
///         has one.
std::string DescribeAccount(const BankAccountOptions& account);
/// @return a card by the last characters of its number.
std::string DescribeCard(const std::string& number);

/// @return an amount with its currency. OFX orders name none: it is that of the account, which is
///         known where the bank's number is a routing number of the United States. Otherwise the
///         amount is alone.
std::string DescribeMoney(const std::string& amount, const std::string& bankId);

/// @return a date as the command line has it, in words: 2026-02-01, or 2026-02-01 09:30:00 UTC.
///         Nothing for none.
std::string DescribeDate(const std::string& date);

/// ", due 2026-02-01" for a date as the command line has it; nothing for none.
std::string DescribeDue(const std::string& date);

/// @return whether the text is a routing number of the United States: nine digits whose check digit
///         fits.
bool IsRoutingNumber(const std::string& text);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_ORDER_TEXT_H_
