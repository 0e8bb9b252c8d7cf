// The tags of secrets and of numbers of people and accounts, and how each is shown.

#include "output/masking.h"

#include <algorithm>
#include <iterator>

namespace krofx::command {

namespace {

// Identifiers of people. New ones go here and nowhere else.
constexpr std::string_view kPersonalTags[] = {"N.SSN", "TAXID", "N.BILLPAYACCT"};
constexpr std::string_view kPayrollAccountTags[] = {"ACCTID", "ACCTKEY"};

constexpr std::size_t kShownCharacters = 4;

}  // namespace

bool IsPassword(KRTagID tag) {
  return tag == KRTag_USERPASS || tag == KRTag_NEWUSERPASS || tag == KRTag_ONETIMEPASS ||
         tag == KRTag_TEMPPASS;
}

bool IsPersonal(std::string_view tagText, bool inPayroll) {
  const auto has = [tagText](const auto& tags) {
    return std::find(std::begin(tags), std::end(tags), tagText) != std::end(tags);
  };
  return has(kPersonalTags) || (inPayroll && has(kPayrollAccountTags));
}

std::string Masked(std::string_view value) {
  if (value.size() <= kShownCharacters) return std::string(value.size(), '*');
  const std::size_t hidden = value.size() - kShownCharacters;
  return std::string(hidden, '*') + std::string(value.substr(hidden));
}

}  // namespace krofx::command
