// Names files after accounts, and finds the names that two accounts would share.

#include "banks/file_stems.h"

#include <algorithm>
#include <cctype>

#include "krofx/security/digest.h"

namespace krofx::command {

namespace {

// How many hexadecimal digits of the digest a name has.
constexpr std::size_t kDigestLength = 8;

// The name without a digest. A card's number is cut to its last four digits, since no more of it is
// shown anywhere. All but letters, digits and hyphens is replaced, since a slash or a dot could
// name a file in another folder.
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

// Whether the name is also that of the bank's updates, or begins like the names of another bank:
// with the banks `my` and `my-own`, the account `own-1` of the first is named like account `1` of
// the second. It counts whether or not the other bank has such an account yet, so that names stay
// the same when it gets one.
bool IsTakenByAnother(const std::string& stem, const Bank& bank, const std::vector<Bank>& banks) {
  return stem == bank.name + "-updates" ||
         std::any_of(banks.begin(), banks.end(), [&](const Bank& other) {
           return other.name.size() > bank.name.size() && stem.starts_with(other.name + "-");
         });
}

// Whether another one of the accounts has the same name.
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
        IsTakenByAnother(stem, bank, banks) || IsShared(stem, bank, account, bank, accounts) ||
        std::any_of(banks.begin(), banks.end(), [&](const Bank& other) {
          return other.name != bank.name && IsShared(stem, bank, account, other, other.accounts);
        });
    if (isAmbiguous) {
      const std::string digest = DigestOf(bank, account);
      // No name without a digest has a dot.
      stem.append(".").append(digest);
      if (digest.empty()) stem.clear();
    }
    stems.push_back(stem);
  }
  return stems;
}

}  // namespace krofx::command
