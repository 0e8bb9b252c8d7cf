// Reads the file of banks. The one source that includes the library that reads TOML.

#include "banks/bank_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <map>
#include <span>
#include <sstream>
#include <toml.hpp>

#include "banks/places.h"
#include "command_line/nearest_name.h"
#include "input/input_files.h"
#include "input/parsed_file.h"
#include "output/characters.h"
#include "output/safe_text.h"

namespace krofx::command {

namespace {

using Value = toml::basic_value<toml::discard_comments, std::map>;

// What is wrong with the file, and where.
struct Problem {
  std::size_t line;
  std::string text;
};

[[noreturn]] void Fail(const Value& at, const std::string& text) {
  throw Problem{at.location().line(), text};
}

// Takes the values of a table that are named, and finds those that are not.
class TableReader {
 public:
  TableReader(const Value& table, std::string what) : m_table(table), m_what(std::move(what)) {
    if (!table.is_table()) Fail(table, m_what + " is not a table; write [" + m_what + "]");
  }

  void Take(const char* key, std::string& text) {
    const Value* const value = Find(key);
    if (value == nullptr) return;
    if (!value->is_string()) Fail(*value, std::string(key) + " needs a text in quotes");
    text = value->as_string().str;
    if (text.empty()) Fail(*value, std::string(key) + " is empty");
    if (HasControlCharacter(text)) Fail(*value, std::string(key) + " has a control character");
  }

  void Take(const char* key, bool& flag) {
    const Value* const value = Find(key);
    if (value == nullptr) return;
    if (!value->is_boolean()) Fail(*value, std::string(key) + " is true or false");
    flag = value->as_boolean();
  }

  void Take(const char* key, int& number, int least, int most) {
    const Value* const value = Find(key);
    if (value == nullptr) return;
    if (!value->is_integer() || value->as_integer() < least || value->as_integer() > most) {
      Fail(*value, std::string(key) + " needs a whole number from " + std::to_string(least) +
                       " to " + std::to_string(most));
    }
    number = static_cast<int>(value->as_integer());
  }

  // One text, or a list of them.
  void Take(const char* key, std::vector<std::string>& texts) {
    const Value* const value = Find(key);
    if (value == nullptr) return;
    const auto take = [&](const Value& text) {
      if (!text.is_string()) Fail(text, std::string(key) + " needs texts in quotes");
      texts.push_back(text.as_string().str);
    };
    if (!value->is_array()) return take(*value);
    for (const Value& each : value->as_array()) take(each);
  }

  // A text, or true for one that is made.
  void TakeOrMake(const char* key, std::string& text, bool& made) {
    if (m_table.contains(key) && m_table.at(key).is_boolean()) return Take(key, made);
    Take(key, text);
  }

  const Value* Find(const char* key) {
    m_known.emplace_back(key);
    return m_table.contains(key) ? &m_table.at(key) : nullptr;
  }

  void Require(const char* key) const {
    if (!m_table.contains(key)) Fail(m_table, m_what + " needs " + key);
  }

  // The first key of the file that was not asked for is a problem.
  void Finish() const {
    const Value* first = nullptr;
    std::string name;
    for (const auto& [key, value] : m_table.as_table()) {
      if (std::find(m_known.begin(), m_known.end(), key) != m_known.end()) continue;
      if (first != nullptr && first->location().line() <= value.location().line()) continue;
      first = &value;
      name = key;
    }
    if (first == nullptr) return;
    if (name.find("password") != std::string::npos || name == "pass") {
      Fail(*first, name +
                       " is not known; a password has no place in this file: use "
                       "password-command, or keyring = true");
    }
    Fail(*first, name + " is not known" + SuggestNearest(name, m_known));
  }

 private:
  const Value& m_table;
  std::string m_what;
  std::vector<std::string> m_known;
};

bool IsClientId(const std::string& text) {
  constexpr std::size_t kMost = 36;
  return text.size() <= kMost && std::all_of(text.begin(), text.end(), [](unsigned char c) {
           return (c < 0x80 && std::isalnum(c) != 0) || c == '-';
         });
}

Account ReadAccount(const Value& value) {
  TableReader table(value, "account");
  Account account;
  bool card = false;
  std::string broker;
  table.Require("account");
  table.Take("account", account.number);
  table.Take("bank", account.bank);
  table.Take("branch", account.branch);
  table.Take("type", account.type);
  table.Take("card", card);
  table.Take("broker", broker);
  table.Finish();
  if ((card ? 1 : 0) + (broker.empty() ? 0 : 1) + (account.bank.empty() ? 0 : 1) != 1) {
    Fail(value, "an account needs one of bank, broker, and card = true");
  }
  if (account.bank.empty() && !(account.branch.empty() && account.type.empty())) {
    Fail(value, "branch and type are for accounts with bank");
  }
  if (card) account.kind = AccountKind::kCard;
  if (!broker.empty()) {
    account.kind = AccountKind::kInvestment;
    account.bank = broker;
  }
  if (account.kind == AccountKind::kBank && account.type.empty())
    account.type = kBankAccountTypes[0];
  if (account.kind == AccountKind::kBank &&
      std::find(std::begin(kBankAccountTypes), std::end(kBankAccountTypes), account.type) ==
          std::end(kBankAccountTypes)) {
    Fail(value,
         account.type +
             " is not an account type; write CHECKING, SAVINGS, MONEYMRKT or "
             "CREDITLINE" +
             SuggestNearest(account.type, std::span<const std::string_view>(kBankAccountTypes)));
  }
  return account;
}

Bank ReadBank(const std::string& name, const Value& value, const std::string& folder) {
  TableReader table(value, name);
  if (!IsBankName(name)) {
    Fail(value, "the name of a bank has letters, digits, - and _, and begins with a letter");
  }
  Bank bank;
  bank.name = name;
  bank.line = static_cast<int>(value.location().line());
  for (const char* const key : {"url", "org", "user"}) table.Require(key);
  table.Take("url", bank.url);
  table.Take("org", bank.organisation);
  table.Take("fid", bank.institutionId);
  table.Take("user", bank.user);
  table.Take("password-command", bank.passwordCommand);
  table.Take("keyring", bank.keyring);
  table.TakeOrMake("client-id", bank.clientId, bank.makesClientId);
  if (!IsClientId(bank.clientId)) {
    Fail(value, "client-id is true, or up to 36 letters, digits and hyphens");
  }
  table.Take("version", bank.version, 1, 2);
  table.Take("profile", bank.hasProfile);
  table.Take("hosts", bank.hosts);
  table.Take("root", bank.rootFiles);
  table.Take("pin", bank.pins);
  table.Take("proxy", bank.proxy);
  table.Take("timeout", bank.timeout, 1, 24 * 60 * 60);
  table.Take("app-id", bank.applicationId);
  table.Take("app-version", bank.applicationVersion, 1, 9999);
  table.Take("language", bank.language);
  table.Take("country", bank.country);
  if (const Value* const accounts = table.Find("account")) {
    if (!accounts->is_array()) {
      Fail(*accounts, "write each account under [[" + name + ".account]]");
    }
    for (const Value& each : accounts->as_array()) bank.accounts.push_back(ReadAccount(each));
  }
  table.Finish();
  if (bank.keyring && !bank.passwordCommand.empty()) {
    Fail(value, name + " has both password-command and keyring; one is enough");
  }
  for (std::string& file : bank.rootFiles) {
    if (!file.starts_with('/')) file.insert(0, folder + "/");
  }
  return bank;
}

// The library's words without its marks and without the lines of the file, which it repeats.
std::string PlainWords(const std::string& text) {
  std::string line = text.substr(0, text.find('\n'));
  for (const std::string_view mark : {"[error] ", "toml::"}) {
    if (line.starts_with(mark)) line.erase(0, mark.size());
  }
  const std::size_t colon = line.find(": ");
  if (colon != std::string::npos) line.erase(0, colon + 2);
  // What is in quotes may be a value.
  return SafeLine(line.substr(0, line.find('"')));
}

}  // namespace

bool IsBankName(const std::string& text) {
  const auto fits = [](unsigned char c) {
    return c < 0x80 && (std::isalnum(c) != 0 || c == '-' || c == '_');
  };
  return !text.empty() && std::isalpha(static_cast<unsigned char>(text.front())) != 0 &&
         std::all_of(text.begin(), text.end(), fits);
}

BankList ParseBanks(const std::string& text, const std::string& folder) {
  BankList list;
  // The library for TOML can read beyond its memory at a byte that is not UTF-8.
  if (const std::size_t bad = FindBadUtf8(text); bad != std::string::npos) {
    const std::string_view before = std::string_view(text).substr(0, bad);
    const auto lines = 1 + std::count(before.begin(), before.end(), '\n');
    list.problem = "line " + std::to_string(lines) + ": this is not UTF-8";
    return list;
  }
  try {
    std::istringstream input(text);
    const auto root = toml::parse<toml::discard_comments, std::map>(input, "banks.toml");
    for (const auto& [name, value] : root.as_table()) {
      list.banks.push_back(ReadBank(name, value, folder));
    }
  } catch (const Problem& problem) {
    list.problem = "line " + std::to_string(problem.line) + ": " + SafeLine(problem.text);
  } catch (const toml::exception& error) {
    list.problem = "line " + std::to_string(error.location().line()) + ": " +
                   "this is not TOML: " + PlainWords(error.what());
  }
  if (!list.problem.empty()) list.banks.clear();
  std::sort(list.banks.begin(), list.banks.end(),
            [](const Bank& left, const Bank& right) { return left.line < right.line; });
  return list;
}

BankList ReadBanks() {
  const std::string path = BanksFile();
  BankList list;
  struct stat status {};
  if (path.empty() || ::stat(path.c_str(), &status) != 0) {
    if (!path.empty() && errno != ENOENT) list.problem = path + ": " + std::strerror(errno);
    return list;
  }
  if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
    list.problem = path + ": others can read or change it; say chmod 600 " + path;
    return list;
  }
  const std::unique_ptr<KRBuffer> text = ReadInput(path, list.problem);
  if (text != nullptr) {
    list = ParseBanks(std::string(ViewOf(*text)), path.substr(0, path.rfind('/')));
  }
  if (!list.problem.empty()) list.problem = path + ": " + list.problem;
  return list;
}

const Bank* FindBank(const BankList& list, std::string_view name, std::string& problem) {
  if (name.starts_with('@')) name.remove_prefix(1);
  std::vector<std::string> names;
  for (const Bank& bank : list.banks) {
    if (bank.name == name) return &bank;
    names.push_back(bank.name);
  }
  problem = "there is no bank " + SafeLine(name);
  if (names.empty()) {
    problem += "; none is known: add one with \"krofx bank add\"";
  } else if (FindNearest(name, names).empty()) {
    problem += "; \"krofx bank list\" names those there are";
  } else {
    problem += SuggestNearest(name, names);
  }
  return nullptr;
}

}  // namespace krofx::command
