// What an institution's profile says of passwords.

#ifndef KROFX_COMMAND_BANKS_PASSWORD_RULES_H_
#define KROFX_COMMAND_BANKS_PASSWORD_RULES_H_

#include <string>
#include <string_view>

namespace krofx::command {

/// The passwords that a sign-on realm has. A number that is 0, and a text that is empty, say
/// nothing.
struct PasswordRules {
  std::string realm;
  int least = 0;           ///< Characters.
  int most = 0;            ///< Characters.
  std::string characters;  ///< A CHARTYPE, such as ALPHAORNUMERIC.
  bool caseMatters = true;
  bool special = true;      ///< Other characters than letters, digits and blanks may be in it.
  bool spaces = true;       ///< Blanks may be in it.
  bool canChange = false;   ///< The institution changes passwords on request.
  bool mustChange = false;  ///< The first sign-on has to change the password.
};

/// The rule that a password breaks, so that it cannot be right.
/// @param password in the character set of requests, Windows 1252.
/// @return empty when it keeps all, else the rule in words, without anything of the password.
std::string FindBrokenRule(const PasswordRules& rules, std::string_view password);

/// @return the rules in a few words, such as "6 to 32 letters or digits, or special characters".
std::string DescribeRules(const PasswordRules& rules);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_PASSWORD_RULES_H_
