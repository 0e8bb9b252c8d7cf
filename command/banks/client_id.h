// The client identifier: some institutions let only those sign on whose program they know by it.

#ifndef KROFX_COMMAND_BANKS_CLIENT_ID_H_
#define KROFX_COMMAND_BANKS_CLIENT_ID_H_

#include <memory>
#include <string>

#include "banks/bank.h"
#include "krofx/core/buffer.h"

namespace krofx::command {

/// @param problem takes what went wrong.
/// @return the identifier that a bank is sent: that of the file of banks, or one that is made for
///         this bank the first time, and kept.
std::string ClientIdOf(const Bank& bank, std::string& problem);

/// Puts the identifier into the sign-on of a request's text, after the version of the application,
/// and the header's version to 103, the first that has it.
/// @return the text, or null when it has no sign-on or memory is exhausted.
std::unique_ptr<KRBuffer> WithClientId(const KRBuffer& request, const std::string& id);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_BANKS_CLIENT_ID_H_
