// What the status codes of the OFX standard say, in words for the user.

#ifndef KROFX_COMMAND_EXCHANGE_STATUS_WORDS_H_
#define KROFX_COMMAND_EXCHANGE_STATUS_WORDS_H_

#include <string_view>

namespace krofx::command {

/// What a status code means.
/// @return empty for a code that the standard does not have.
std::string_view WordsOfStatus(std::string_view code);

/// @return whether the code is about user and password, so that trying again may lock the sign-on.
bool IsSignOnStatus(std::string_view code);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_STATUS_WORDS_H_
