// The example bank: its users, their accounts, and the bookings on these.
//
// Everything is data in memory (bank_data.cpp). A transfer changes it until the program ends.
// Amounts are kept as OFX texts and summed as exact decimals.

#ifndef KROFX_EXAMPLES_BANK_SERVER_BANK_H_
#define KROFX_EXAMPLES_BANK_SERVER_BANK_H_

#include <krofx/krofx.h>

#include <deque>
#include <set>
#include <string>
#include <vector>

namespace bank_server {

/// Status codes of the OFX standard that this bank answers with.
enum Code : s32 {
  kDone = 0,
  kUpToDate = 1,
  kGeneralError = 2000,
  kAccountNotFound = 2003,
  kSourceNotFound = 2006,
  kDestinationNotFound = 2009,
  kInvalidAmount = 2012,
  kDateTooFar = 2015,
  kDuplicateRequest = 2019,
  kInvalidDateRange = 2027,
  kUnknownElement = 2028,
  kInsufficientFunds = 10504,
  kSignOnInvalid = 15500,
  kPasswordUnchanged = 15503,
};

/// One booking on an account. All texts are in OFX form; an empty one is left out.
struct Booking {
  std::string id;
  std::string posted;  ///< A day, such as 20260131.
  std::string type;    ///< A TRNTYPE.
  std::string amount;
  std::string name;
  std::string memo;
  std::string check;
};

/// A bank account, or a card when it has no type.
struct Account {
  std::string bank;
  std::string number;
  std::string type;  ///< CHECKING, SAVINGS; empty for a card.
  std::string description;
  std::string opening;      ///< The balance before the first booking.
  std::string creditLimit;  ///< How far the balance may be below zero.
  std::vector<Booking> bookings;

  bool IsCard() const { return type.empty(); }
  /// The sum of everything booked.
  KRPrecisionInteger Balance() const;
  /// What can be withdrawn: the balance plus the credit limit.
  KRPrecisionInteger Available() const;
};

/// What a trade is.
enum class TradeKind { kBuyStock, kSellStock, kBuyFund, kDividend, kDeposit };

/// One transaction of an investment account.
struct Trade {
  TradeKind kind;
  std::string id;
  std::string day;
  std::string security;  ///< A CUSIP.
  std::string units;
  std::string price;
  std::string commission;
  std::string total;
  std::string memo;
};

/// What an account holds of one security.
struct Holding {
  std::string security;
  std::string units;
  std::string price;
  std::string value;
};

/// A security that a user holds or has traded.
struct Security {
  std::string cusip;
  std::string name;
  std::string ticker;
  std::string price;
  std::string day;  ///< Of the price.
  bool isFund;
};

/// An account at the bank's broker.
struct InvestmentAccount {
  std::string broker;
  std::string number;
  std::string description;
  std::string cash;
  std::vector<Trade> trades;
  std::vector<Holding> holdings;
};

/// A customer.
struct User {
  std::string id;
  std::string password;
  std::deque<Account> accounts;
  std::deque<InvestmentAccount> investments;
};

/// A transfer that was made.
struct Transfer {
  Code code;
  std::string serverId;
};

/// A transfer, as the bank remembers it.
struct Order {
  std::string requestId;
  std::string serverId;
  const Account* from = nullptr;
  const Account* to = nullptr;
  KRPrecisionInteger amount;
  KRDateTime when;
};

/// The bank. Only one thread at a time may use it.
class Bank {
 public:
  /// Takes the example data.
  Bank();

  /// The user with this name, if the password is right; else null. Users without a name sign on as
  /// in the OFX standard, and have no accounts.
  User* SignOn(const char* id, const char* password);
  /// The user's account that a request names; null when it is not this user's, or of another type.
  static Account* Find(User& user, const KRAccount& account);
  /// The user's account at the broker.
  static const InvestmentAccount* FindInvestment(const User& user, const KRInvAcctFrom& account);
  /// A security by its CUSIP; null when the bank does not have it.
  const Security* FindSecurity(const std::string& cusip) const;
  /// A security by its ticker.
  const Security* FindTicker(const std::string& ticker) const;

  /// Books a transfer on both accounts, once for each `requestId` of a user.
  Transfer Book(Account& from, Account& to, const KRPrecisionInteger& amount,
                const KRDateTime& when, const User& user, const std::string& requestId);
  /// @return the transfers that were made, in their order.
  const std::deque<Order>& Orders() const { return m_orders; }

  /// The bank's address, which profiles contain.
  const std::string& Url() const { return m_url; }
  void SetUrl(const std::string& url) { m_url = url; }

  /// The file of an OFX response whose profile takes the place of the bank's own; empty for none.
  const std::string& ProfileFile() const { return m_profileFile; }
  void SetProfileFile(const std::string& file) { m_profileFile = file; }

  static constexpr char kOrganisation[] = "HARBORFED";
  static constexpr char kOrganisationId[] = "40711";
  static constexpr char kRealm[] = "HARBOR";
  static constexpr char kCurrency[] = "USD";
  /// The days on which the profile and the accounts were last changed.
  static constexpr char kProfileDay[] = "20251115";
  static constexpr char kAccountsDay[] = "20251201";

 private:
  std::string m_url = "https://127.0.0.1/ofx";
  std::string m_profileFile;
  std::deque<User> m_users;
  std::vector<Security> m_securities;
  std::set<std::string> m_requests;
  std::deque<Order> m_orders;
};

/// The example data.
std::deque<User> ExampleUsers();
std::vector<Security> ExampleSecurities();

/// A date as a number that orders days, such as 20260131; the time and the zone are ignored.
u32 DayOf(const KRDateTime& date);
u32 DayOf(const std::string& day);

}  // namespace bank_server

#endif  // KROFX_EXAMPLES_BANK_SERVER_BANK_H_
