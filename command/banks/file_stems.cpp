// Names files after accounts, and finds out where that is not clear.

#include "banks/file_stems.h"

#include <algorithm>
#include <cctype>

#include "krofx/security/digest.h"

namespace krofx::command {

namespace {

// Of the digest in a name, in hexadecimal digits.
constexpr std::size_t kDigestLength = 8;

// The bank and the account. Of a card they have the last four digits, as all that is shown. Other
// characters than letters, digits and hyphens, which could lead elsewhere, are replaced.
std::string PlainStemOf(const Bank& bank, const Account& account) {
  std::string number = account.number;
  if (account.kind == AccountKind::kCard) {
    number = "card-" + number.substr(number.size() - std::min<std::size_t>(number.size(), 4));
  }
  for (char& character : number) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= 0x80 || (std::isalnum(byte) == 0 && character != '-')) character = '_';
  }
  return bank.name + "-" + number;
}

// Whether the words could begin another kind of file, or mean an account of a bank whose name is
// longer. Whatever accounts that has, its own names are then never these.
bool IsMisread(const std::string& stem, const Bank& bank, const std::vector<Bank>& banks) {
  return stem == bank.name + "-updates" ||
         std::any_of(banks.begin(), banks.end(), [&](const Bank& other) {
           return other.name.size() > bank.name.size() && stem.starts_with(other.name + "-");
         });
}

// Whether another one of the accounts has the same words.
bool IsShared(const std::string& stem, const Bank& owner, const Account& account, const Bank& bank,
              const std::vector<Account>& accounts) {
  return std::any_of(accounts.begin(), accounts.end(), [&](const Account& other) {
    const bool isSame = bank.name == owner.name && other == account;
    return !isSame && PlainStemOf(bank, other) == stem;
  });
}

// The digest of all that names an account; empty without memory for it.
std::string DigestOf(const Bank& bank, const Account& account) {
  std::string names = bank.name + '\n' + std::to_string(static_cast<int>(account.kind));
  for (const std::string& part : {account.number, account.bank, account.branch, account.type}) {
    names += '\n' + part;
  }
  KRBuffer input(static_cast<u32>(names.size()), 64);
  KRDigest digest;
  if (input.WriteLarge(names.data(), static_cast<u32>(names.size())) != KRBufferOK ||
      digest.SetInputData(&input) != KRSecStatus_Success) {
    return "";
  }
  std::string text;
  for (std::size_t index = 0; index < kDigestLength / 2; ++index) {
    const auto byte = static_cast<unsigned char>(digest.GetOutputData()->GetBufferPtr()[index]);
    text += "0123456789abcdef"[byte >> 4];
    text += "0123456789abcdef"[byte & 15];
  }
  return text;
}

}  // namespace

std::vector<std::string> FileStemsOf(const Bank& bank, const std::vector<Account>& accounts,
                                     const std::vector<Bank>& banks) {
  std::vector<std::string> stems;
  for (const Account& account : accounts) {
    std::string stem = PlainStemOf(bank, account);
    const bool isAmbiguous =
        IsMisread(stem, bank, banks) || IsShared(stem, bank, account, bank, accounts) ||
        std::any_of(banks.begin(), banks.end(), [&](const Bank& other) {
          return other.name != bank.name && IsShared(stem, bank, account, other, other.accounts);
        });
    if (isAmbiguous) {
      const std::string digest = DigestOf(bank, account);
      // No name that is plain has a point.
      stem += '.';
      stem += digest;
      if (digest.empty()) stem.clear();
    }
    stems.push_back(stem);
  }
  return stems;
}

}  // namespace krofx::command
