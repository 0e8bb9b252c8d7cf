// What is said when an exchange did not work: what was wrong, and what to do about it.

#ifndef KROFX_COMMAND_EXCHANGE_EXCHANGE_PROBLEM_H_
#define KROFX_COMMAND_EXCHANGE_EXCHANGE_PROBLEM_H_

#include <string>

#include "krofx/core/types.h"
#include "krofx/transport/contract/net_status.h"
#include "system/exit_status.h"

namespace krofx::command {

/// How an exchange ended, and what was asked of it.
struct ExchangeEnd {
  KRNetStatus status = KRNetStatus_Success;
  u32 httpStatus = 0;      ///< 0 when the server gave none.
  u32 transportError = 0;  ///< The transport's own code.
  int timeout = 0;         ///< In seconds.
  bool ownRoots = false;   ///< The roots came from the user.
  bool usesProxy = false;  ///< It goes through a proxy.
};

/// @return whether there was no connection to the proxy, so that nothing is known of the server.
bool IsAboutProxy(const ExchangeEnd& end);

/// @return whether the server may have received the request: false when there was no connection to
///         it, or when its certificate was refused.
bool MayHaveArrived(const ExchangeEnd& end);

/// @return one line on an exchange that failed or brought no reply.
std::string DescribeExchangeProblem(const ExchangeEnd& end);

/// kExitNetwork when the same exchange may work later, kExitUnusable when something must change
/// first, such as the address or the certificate.
ExitStatus ExitStatusOf(const ExchangeEnd& end);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_EXCHANGE_PROBLEM_H_
