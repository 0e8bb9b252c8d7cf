// The limits of time of an exchange: the host's own, and the one that libcurl has for connecting.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_TIME_LIMIT_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_TIME_LIMIT_H_

#include <curl/curl.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include "krofx/core/types.h"

namespace krofx::internal {

/// Seconds after which libcurl ends an exchange that is still connecting, whatever the host allows.
inline constexpr s32 kConnectLimit = 300;

/// @return the milliseconds of a limit in seconds; the largest number of whole seconds that fits
///         when `Number`, which is libcurl's type, is too narrow for it.
template <class Number = long>
constexpr Number MillisecondsOf(s32 seconds) {
  constexpr std::int64_t kPerSecond = 1000;
  constexpr std::int64_t kMost = std::numeric_limits<Number>::max() / kPerSecond;
  return static_cast<Number>(std::min(std::int64_t{seconds}, kMost) * kPerSecond);
}

/// `seconds` is the host's limit, 0 or less for none.
/// @return whether an exchange that is connecting has had all of its time after `microseconds`.
constexpr bool IsConnectingOver(curl_off_t microseconds, s32 seconds) {
  constexpr curl_off_t kPerSecond = 1000000;
  const s32 limit = seconds > 0 ? std::min(seconds, kConnectLimit) : kConnectLimit;
  return microseconds >= limit * kPerSecond;
}

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_TIME_LIMIT_H_
