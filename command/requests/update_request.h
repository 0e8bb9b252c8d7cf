// The requests for what became of orders and letters: the synchronisations of a message set.

#ifndef KROFX_COMMAND_REQUESTS_UPDATE_REQUEST_H_
#define KROFX_COMMAND_REQUESTS_UPDATE_REQUEST_H_

#include <optional>
#include <string>
#include <vector>

#include "banks/bank.h"
#include "banks/profile.h"
#include "banks/sync_tokens.h"

namespace krofx::command {

class RequestMaker;

/// The services that have news of their own, in the order in which they are asked.
inline constexpr Service kServicesWithNews[] = {Service::kBank,       Service::kInterbank,
                                                Service::kWire,       Service::kBillPay,
                                                Service::kInvestment, Service::kMail};

/// One thing that is asked for news.
struct UpdateQuestion {
  std::string wrapper;  ///< The tag of the request, such as INTRASYNCRQ.
  std::optional<Account> account;
  std::string key;  ///< By which its token is kept.
};

/// Adds to a request all synchronisations of a service that a profile offers.
/// @param accounts the user's accounts.
/// @param again asks for all that there was, and not for what is new.
/// @return what was added.
std::vector<UpdateQuestion> AddUpdates(Service service, const OfferedSet& offered,
                                       const std::vector<Account>& accounts,
                                       const SyncTokens& tokens, bool again, RequestMaker& maker);

/// @return what a wrapper has news of, such as "transfers".
std::string_view WordsOfUpdates(const std::string& wrapper);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_REQUESTS_UPDATE_REQUEST_H_
