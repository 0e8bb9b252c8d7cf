// Signs users on, finds accounts, and moves money between them.

#include "bank.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace bank_server {
namespace {

// The user and the password of the OFX standard for users who have no name yet.
constexpr char kAnonymous[] = "anonymous00000000000000000000000";

// Compares in constant time, wherever the texts differ.
bool SameSecret(const std::string& expected, const char* given) {
  const std::size_t length = std::strlen(given);
  unsigned different = length == expected.size() ? 0 : 1;
  for (std::size_t i = 0; i < length; ++i) {
    const char one = expected.empty() ? '\0' : expected[i % expected.size()];
    different |= static_cast<unsigned char>(one ^ given[i]);
  }
  return different == 0;
}

template <class Element, class Matches>
Element* FindIn(std::deque<Element>& elements, Matches matches) {
  const auto found = std::find_if(elements.begin(), elements.end(), matches);
  return found != elements.end() ? &*found : nullptr;
}

// Each version has its own list of account types, in its own tag.
bool IsOfType(const KRBankAccount& account, const std::string& type) {
  KRBankAccount expected;
  expected.SetMsgSetVersion(account.GetMsgSetVersion());
  if (account.ValidateTag(KRTag_ACCTTYPE2) != 0) {
    expected.SetAccountType2(KRString(type.c_str()));
    return expected.GetAccountType2() == account.GetAccountType2();
  }
  expected.SetAccountType(KRString(type.c_str()));
  return expected.GetAccountType() == account.GetAccountType();
}

const Security* FindBy(const std::vector<Security>& securities, std::string Security::*field,
                       const std::string& value) {
  for (const Security& security : securities) {
    if (security.*field == value) return &security;
  }
  return nullptr;
}

// At least a cent, in whole cents, and not so much that sums and comparisons, which hold 28 digits,
// could overflow.
bool IsSensible(const KRPrecisionInteger& amount) {
  KRPrecisionInteger printed(amount);
  const std::string text = static_cast<const char*>(printed);
  const std::size_t point = std::min(text.find('.'), text.size());
  return amount > KRPrecisionInteger::KRZero && point <= 9 && text.size() - point <= 3;
}

}  // namespace

u32 DayOf(const KRDateTime& date) {
  return (u32{date.GetYear()} * 100 + date.GetMonth()) * 100 + date.GetDay();
}

u32 DayOf(const std::string& day) { return DayOf(KRDateTime(day.c_str())); }

KRPrecisionInteger Account::Balance() const {
  KRPrecisionInteger sum(opening.c_str());
  for (const Booking& booking : bookings) sum += KRPrecisionInteger(booking.amount.c_str());
  return sum;
}

KRPrecisionInteger Account::Available() const {
  return Balance() + KRPrecisionInteger(creditLimit.c_str());
}

Bank::Bank() : m_users(ExampleUsers()), m_securities(ExampleSecurities()) {
  m_users.push_back({kAnonymous, kAnonymous, {}, {}});
}

User* Bank::SignOn(const char* id, const char* password) {
  User* const user = FindIn(m_users, [id](const User& each) { return each.id == id; });
  return user != nullptr && SameSecret(user->password, password) ? user : nullptr;
}

Account* Bank::Find(User& user, const KRAccount& account) {
  const auto* inBank = dynamic_cast<const KRBankAccount*>(&account);
  return FindIn(user.accounts, [&](const Account& each) {
    if (each.IsCard() != (inBank == nullptr)) return false;
    if (each.number != static_cast<const char*>(account.GetAccountID())) return false;
    return inBank == nullptr || (each.bank == static_cast<const char*>(inBank->GetBankID()) &&
                                 IsOfType(*inBank, each.type));
  });
}

const InvestmentAccount* Bank::FindInvestment(const User& user, const KRInvAcctFrom& account) {
  for (const InvestmentAccount& each : user.investments) {
    if (each.broker == static_cast<const char*>(account.GetBrokerID()) &&
        each.number == static_cast<const char*>(account.GetAccountID())) {
      return &each;
    }
  }
  return nullptr;
}

const Security* Bank::FindSecurity(const std::string& cusip) const {
  return FindBy(m_securities, &Security::cusip, cusip);
}

const Security* Bank::FindTicker(const std::string& ticker) const {
  return FindBy(m_securities, &Security::ticker, ticker);
}

Transfer Bank::Book(Account& from, Account& to, const KRPrecisionInteger& amount,
                    const KRDateTime& when, const User& user, const std::string& requestId) {
  if (!IsSensible(amount)) return {kInvalidAmount, {}};
  const std::string ofUser = user.id + ' ' + requestId;
  if (m_requests.count(ofUser) != 0) return {kDuplicateRequest, {}};
  if (from.Available() < amount) return {kInsufficientFunds, {}};
  m_requests.insert(ofUser);

  char id[32];
  std::snprintf(id, sizeof id, "HF-%06zu", m_requests.size());
  const std::string day = std::to_string(DayOf(when));
  KRPrecisionInteger in(amount);
  KRPrecisionInteger out(amount);
  out.Negate();
  from.bookings.push_back({std::string(id) + "-1",
                           day,
                           "XFER",
                           static_cast<const char*>(out),
                           "To " + to.description,
                           {},
                           {}});
  to.bookings.push_back({std::string(id) + "-2",
                         day,
                         "XFER",
                         static_cast<const char*>(in),
                         "From " + from.description,
                         {},
                         {}});
  m_orders.push_back({requestId, id, &from, &to, amount, when});
  return {kDone, id};
}

}  // namespace bank_server
