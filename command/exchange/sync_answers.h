// What a reply says of synchronisations.

#ifndef KROFX_COMMAND_EXCHANGE_SYNC_ANSWERS_H_
#define KROFX_COMMAND_EXCHANGE_SYNC_ANSWERS_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "banks/bank.h"

namespace krofx::command {

class ParsedFile;

/// The answer to one synchronisation.
struct SyncAnswer {
  std::string wrapper;             ///< The tag of the request that it is the answer to.
  std::optional<Account> account;  ///< That it is about.
  std::string token;               ///< To ask with the next time.
  std::string error;               ///< A code, or empty.
  bool isLost = false;             ///< The institution no longer has all since the last time.
  std::size_t count = 0;           ///< How much happened.
};

/// @return the answers in a reply, in its order.
std::vector<SyncAnswer> SyncAnswersIn(const ParsedFile& reply);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_SYNC_ANSWERS_H_
