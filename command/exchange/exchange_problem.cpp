// One line for each status, with its numbers at the end.

#include "exchange/exchange_problem.h"

#include <algorithm>
#include <iterator>

#include "krofx/host/outcome.h"
#include "krofx/transport/curl/curl_manager.h"

namespace krofx::command {

namespace {

// Codes of single HTTP statuses, in their order: see VYNCurlCode.
constexpr u32 kSeeOther = 1507;
constexpr u32 kNotModified = 1508;
constexpr u32 kProxyUnauthorized = 1516;
constexpr u32 kUnavailable = 1521;
constexpr u32 kGatewayTimedOut = 1522;

// The first and the last code of single HTTP statuses of success without a reply that can be used.
constexpr u32 kCreated = 1501;
constexpr u32 kNoContent = 1504;

// HTTP statuses that the transport has no code for, or one that means something else too.
constexpr u32 kRequestTimedOut = 408;
constexpr u32 kTooManyRequests = 429;

// What passes without anybody's doing, by the number of what the transport or the server says.
constexpr u32 kPassingCodes[] = {kUnavailable,
                                 kGatewayTimedOut,
                                 VYNCurlCode_ConnectFailed,
                                 VYNCurlCode_HostNotFound,
                                 VYNCurlCode_ProxyNotFound,
                                 VYNCurlCode_SendFailed,
                                 VYNCurlCode_ReceiveFailed,
                                 VYNCurlCode_Cut};
constexpr u32 kPassingStatuses[] = {KRNetStatus_Success,  // No reply, or an empty one.
                                    KRNetStatus_Failed,      KRNetStatus_NoReplySize,
                                    KRNetStatus_Unavailable, KRNetStatus_NetworkFailed,
                                    KRNetStatus_Refused,     KRNetStatus_TimedOut,
                                    KRNetStatus_ServerError};

// What stays as it is until somebody changes something, though its status alone might pass.
constexpr u32 kLastingCodes[] = {VYNCurlCode_MovedPermanently,
                                 VYNCurlCode_Found,
                                 kSeeOther,
                                 kNotModified,
                                 VYNCurlCode_MalformedUrl,
                                 VYNCurlCode_NotHttp,
                                 VYNCurlCode_HandshakeFailed,
                                 VYNCurlCode_ReplyTooLarge,
                                 VYNCurlCode_FileFailed,
                                 VYNCurlCode_NoMemory};

// What ends an exchange before there is a connection.
constexpr u32 kUnconnectedCodes[] = {VYNCurlCode_Refused, VYNCurlCode_ConnectFailed,
                                     VYNCurlCode_HostNotFound, VYNCurlCode_ProxyNotFound,
                                     VYNCurlCode_MalformedUrl};

// What ends an exchange before there is a connection to its proxy.
constexpr u32 kProxyCodes[] = {VYNCurlCode_Refused, VYNCurlCode_ConnectFailed,
                               VYNCurlCode_ProxyNotFound};

template <std::size_t kCount>
bool IsOneOf(const u32 (&numbers)[kCount], u32 number) {
  return std::find(std::begin(numbers), std::end(numbers), number) != std::end(numbers);
}

// Whether the server answered with a success that is not the usual one.
bool IsOtherSuccess(u32 code) {
  return (code >= kCreated && code <= kNoContent) || code == VYNCurlCode_UnexpectedSuccess;
}

// What is known only of an exchange through a proxy, or of one without; null for all others.
const char* DescribeProxy(const ExchangeEnd& end) {
  if (end.transportError == kProxyUnauthorized) {
    return end.usesProxy ? "the proxy wants a sign-on; check the settings of your proxy"
                         : "the server wants a sign-on as proxies do, and no proxy is used; check "
                           "the address";
  }
  if (!end.usesProxy) return nullptr;
  switch (end.transportError) {
    case VYNCurlCode_Refused:
      return "nothing takes connections there; check the settings of your proxy, and that it runs";
    case VYNCurlCode_ConnectFailed:
      return "the proxy cannot be reached; check the settings of your proxy and the network";
    case VYNCurlCode_ReceiveFailed:
      return end.httpStatus / 100 == 3
                 ? "the proxy sends to another address in place of a connection; check the "
                   "settings of your proxy"
                 : nullptr;
    default:
      return nullptr;
  }
}

// What the command line can do about it; null where the library's own words suffice.
const char* Advise(const ExchangeEnd& end) {
  if (end.status == KRNetStatus_Untrusted) {
    return end.ownRoots
               ? "the server's certificate does not lead to a root given with --root; nothing was "
                 "sent; check that this is the institution's server"
               : "the server's certificate does not lead to a root that this system trusts; "
                 "nothing was sent; give the institution's own root with --root, if it has one";
  }
  if (end.status == KRNetStatus_UnexpectedCertificate) {
    return "the server's certificate is none of those given with --pin; nothing was sent; ask the "
           "institution whether it has a new one (--log shows the ID of what was received)";
  }
  if (end.transportError == VYNCurlCode_BadRequest) {
    return "the server refuses the request; check the address, and the request with \"krofx "
           "check\"";
  }
  return nullptr;
}

std::string Describe(const ExchangeEnd& end) {
  if (end.status == KRNetStatus_TimedOut && end.httpStatus != kRequestTimedOut) {
    return "there was no reply within " + std::to_string(end.timeout) +
           " seconds; try again later, or give it more time with --timeout";
  }
  if (IsOtherSuccess(end.transportError)) {
    return "the server answers with HTTP " + std::to_string(end.httpStatus) +
           " and not with a reply; check the address";
  }
  if (const char* const text = DescribeProxy(end)) return text;
  const char* const advice = end.httpStatus == kTooManyRequests ? nullptr : Advise(end);
  return advice != nullptr ? advice
                           : krofx::ReasonOf(end.status, end.httpStatus, end.transportError);
}

}  // namespace

bool MayHaveArrived(const ExchangeEnd& end) {
  return end.status != KRNetStatus_Untrusted && end.status != KRNetStatus_UnexpectedCertificate &&
         !IsOneOf(kUnconnectedCodes, end.transportError);
}

bool IsAboutProxy(const ExchangeEnd& end) {
  return end.usesProxy && IsOneOf(kProxyCodes, end.transportError);
}

std::string DescribeExchangeProblem(const ExchangeEnd& end) {
  std::string text = Describe(end);
  if (end.status == KRNetStatus_Success) return text;
  // The numbers are for those who are asked for help.
  text += " (status " + std::to_string(end.status);
  if (end.httpStatus > 200) text += ", HTTP " + std::to_string(end.httpStatus);
  if (end.transportError != 0) text += ", code " + std::to_string(end.transportError);
  return text + ")";
}

ExitStatus ExitStatusOf(const ExchangeEnd& end) {
  if (end.httpStatus == kTooManyRequests || end.httpStatus == kRequestTimedOut) return kExitNetwork;
  const u32 code = end.transportError;
  const bool passes = IsOneOf(kPassingCodes, code) ||
                      (IsOneOf(kPassingStatuses, end.status) && !IsOneOf(kLastingCodes, code));
  return passes || end.status == KRNetStatus_TimedOut ? kExitNetwork : kExitUnusable;
}

}  // namespace krofx::command
