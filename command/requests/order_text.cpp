// Puts accounts, amounts and days into the words of an order.

#include "requests/order_text.h"

#include "output/masking.h"
#include "requests/arguments.h"

namespace krofx::command {

std::string DescribeAccount(const BankAccountOptions& account) {
  std::string text = account.bank;
  if (!account.branch.empty()) text += "/" + account.branch;
  return text + "/" + account.account + " " + account.type;
}

std::string DescribeCard(const std::string& number) {
  return "card " + Masked(number, Disclosure::kCard);
}

bool IsRoutingNumber(const std::string& text) {
  constexpr int kWeights[] = {3, 7, 1};
  if (text.size() != 9 || text.find_first_not_of("0123456789") != std::string::npos) return false;
  int sum = 0;
  for (std::size_t index = 0; index < text.size(); ++index) {
    sum += (text[index] - '0') * kWeights[index % 3];
  }
  return sum > 0 && sum % 10 == 0;
}

std::string DescribeMoney(const std::string& amount, const std::string& bankId) {
  return IsRoutingNumber(bankId) ? amount + " USD" : amount;
}

std::string DescribeDate(const std::string& date) {
  constexpr std::size_t kDayDigits = 8;
  const std::string given = ToOfxDate(date);
  if (given.empty()) return "";
  const std::string day = given.substr(0, 4) + "-" + given.substr(4, 2) + "-" + given.substr(6, 2);
  if (given.size() == kDayDigits) return day;
  return day + " " + given.substr(8, 2) + ":" + given.substr(10, 2) + ":" + given.substr(12) +
         " UTC";
}

std::string DescribeDue(const std::string& date) {
  const std::string described = DescribeDate(date);
  return described.empty() ? "" : ", due " + described;
}

}  // namespace krofx::command
