// The limits of time of an exchange: the host's own, and the one that libcurl has for connecting.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_TIME_LIMIT_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_TIME_LIMIT_H_

#include <curl/curl.h>

#include <algorithm>

#include "krofx/core/types.h"

namespace krofx::internal {

/// Seconds after which libcurl ends an exchange that is still connecting, whatever the host allows.
inline constexpr s32 kConnectLimit = 300;

/// `seconds` is the host's limit, 0 or less for none.
/// @return whether an exchange that is connecting has had all of its time after `microseconds`.
constexpr bool IsConnectingOver(curl_off_t microseconds, s32 seconds) {
  constexpr curl_off_t kPerSecond = 1000000;
  const s32 limit = seconds > 0 ? std::min(seconds, kConnectLimit) : kConnectLimit;
  return microseconds >= limit * kPerSecond;
}

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_TIME_LIMIT_H_
