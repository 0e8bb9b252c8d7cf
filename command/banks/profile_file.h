// The profiles of banks that are kept, each as the reply that it came in.

#ifndef KROFX_COMMAND_BANKS_PROFILE_FILE_H_
#define KROFX_COMMAND_BANKS_PROFILE_FILE_H_

#include <memory>
#include <string>

#include "banks/profile.h"
#include "krofx/core/buffer.h"

namespace krofx::command {

/// The profile that a bank was asked for in a version of the message sets, and that is kept. One
/// that came from another address or institution than the bank has now is not taken.
/// @return null when there is none that can be used.
std::shared_ptr<const Profile> ReadKeptProfile(const Bank& bank, u16 version);

/// @return the same, in the second version when the one in the first version lists sets of it and
///         the bank leaves the version open.
std::shared_ptr<const Profile> ReadBestKeptProfile(const Bank& bank, u16 version);

/// Keeps a profile, for the user's eyes only.
/// @param reply the reply that it came in.
/// @return empty, or what went wrong.
std::string KeepProfile(const Bank& bank, u16 version, const KRBuffer& reply);

/// Removes what is kept of the profiles of a bank.
void ForgetProfiles(const std::string& bankName);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_PROFILE_FILE_H_
