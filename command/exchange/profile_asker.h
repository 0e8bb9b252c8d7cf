// Asks banks for their profiles, and keeps them.

#ifndef KROFX_COMMAND_EXCHANGE_PROFILE_ASKER_H_
#define KROFX_COMMAND_EXCHANGE_PROFILE_ASKER_H_

#include <memory>

#include "banks/profile.h"
#include "exchange/exchange.h"
#include "requests/request_use.h"

namespace krofx::command {

class ParsedFile;
struct SignOnOptions;

/// @return the profile of the bank that the sign-on names: the one that is kept, or, when there is
///         none, the one that the bank is asked for.
ProfileAnswer FindProfile(const SignOnOptions& signOn, const ExchangeOptions& options);

/// Asks a bank for its profile, and keeps it. The sign-on is anonymous, unless the bank refuses
/// that.
/// @param kept the one at hand, which the bank may answer is up to date; may be null.
ProfileAnswer AskForProfile(const SignOnOptions& signOn, const ExchangeOptions& options,
                            const std::shared_ptr<const Profile>& kept);

/// Forgets the profiles of a bank when the sign-on of its reply says that there is a newer one, so
/// that it is asked for the next time.
void ForgetOlderProfile(const Bank& bank, const ParsedFile& reply);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_PROFILE_ASKER_H_
