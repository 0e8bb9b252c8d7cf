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

std::string DescribeDue(const std::string& date) {
  const std::string day = ToOfxDate(date).substr(0, 8);
  if (day.empty()) return "";
  return ", due " + day.substr(0, 4) + "-" + day.substr(4, 2) + "-" + day.substr(6, 2);
}

}  // namespace krofx::command
