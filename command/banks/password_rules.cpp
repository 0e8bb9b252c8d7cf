// Holds passwords against the rules of a realm.

#include "banks/password_rules.h"

#include <algorithm>

namespace krofx::command {

namespace {

constexpr std::string_view kLettersOnly = "ALPHAONLY";
constexpr std::string_view kDigitsOnly = "NUMERICONLY";
constexpr std::string_view kBoth = "ALPHAANDNUMERIC";

bool IsDigit(unsigned char c) { return c >= '0' && c <= '9'; }

// Beyond ASCII it depends on the institution what is a letter; there the letter is assumed.
bool IsLetter(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80;
}

bool IsSpecial(unsigned char c) { return c != ' ' && !IsDigit(c) && !IsLetter(c); }

template <class Kind>
bool Has(std::string_view password, Kind isOfKind) {
  return std::any_of(password.begin(), password.end(),
                     [isOfKind](char c) { return isOfKind(static_cast<unsigned char>(c)); });
}

std::string Count(int number) {
  return std::to_string(number) + (number == 1 ? " character" : " characters");
}

}  // namespace

std::string FindBrokenRule(const PasswordRules& rules, std::string_view password) {
  if (rules.least > 0 && password.size() < static_cast<std::size_t>(rules.least)) {
    return "it has at least " + Count(rules.least);
  }
  if (rules.most > 0 && password.size() > static_cast<std::size_t>(rules.most)) {
    return "it has at most " + Count(rules.most);
  }
  const bool letters = Has(password, IsLetter);
  const bool digits = Has(password, IsDigit);
  if (rules.characters == kLettersOnly && digits) return "it has no digits";
  if (rules.characters == kDigitsOnly && letters) return "it has no letters";
  if (rules.characters == kBoth && !(letters && digits)) return "it has both letters and digits";
  if (!rules.special && Has(password, IsSpecial)) return "it has no special characters";
  if (!rules.spaces && password.find(' ') != std::string_view::npos) return "it has no blanks";
  return "";
}

std::string DescribeRules(const PasswordRules& rules) {
  std::string text;
  if (rules.least > 0 && rules.most > 0) {
    text = std::to_string(rules.least) + " to " + std::to_string(rules.most) + " ";
  } else if (rules.least > 0) {
    text = "at least " + std::to_string(rules.least) + " ";
  } else if (rules.most > 0) {
    text = "at most " + std::to_string(rules.most) + " ";
  }
  text += rules.characters == kLettersOnly  ? "letters"
          : rules.characters == kDigitsOnly ? "digits"
          : rules.characters == kBoth       ? "letters and digits, both"
                                            : "letters or digits";
  if (rules.special) text += ", special characters";
  text += rules.spaces ? ", blanks" : ", no blanks";
  if (!rules.caseMatters) text += ", in large or small letters alike";
  return rules.mustChange ? text + "; to be changed at the first sign-on" : text;
}

}  // namespace krofx::command
