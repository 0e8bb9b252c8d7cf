// One sentence for each code and status.

#include "krofx/host/outcome.h"

#include <cstddef>

#include "krofx/transport/curl/curl_code.h"

namespace krofx {

namespace {

// Codes for single HTTP statuses, in their order: see VYNCurlCode.
constexpr u32 kUnauthorized = 1510;
constexpr u32 kForbidden = 1512;
constexpr u32 kNotFound = 1513;
constexpr u32 kNotAllowed = 1514;
constexpr u32 kNotAcceptable = 1515;
constexpr u32 kProxyUnauthorized = 1516;
constexpr u32 kUnavailable = 1521;
constexpr u32 kGatewayTimedOut = 1522;
constexpr u32 kSeeOther = 1507;
constexpr u32 kNotModified = 1508;
// The answer of the transport itself to a chain that ends at a root which only links others.
constexpr u32 kLinkingRoot = 1671;

// HTTP statuses that the transport has no code for, or one that means something else too.
constexpr u32 kRequestTimedOut = 408;
constexpr u32 kTooManyRequests = 429;

constexpr char kRedirected[] =
    "the server sends to another address, which is not followed, since a request may hold a "
    "password; ask the institution for its address";
constexpr char kNotLetIn[] = "the server refuses access; check the address";
constexpr char kNoOfx[] = "this address does not take OFX; check it";
constexpr char kComeBack[] = "the server is not available now; try again later";
constexpr char kBroken[] = "the connection broke; try again";

struct Text {
  u32 number;
  const char* text;
};

// What the codes of the connection manager say more than the statuses below.
constexpr Text kCodeTexts[] = {
    {VYNCurlCode_MovedPermanently, kRedirected},
    {VYNCurlCode_Found, kRedirected},
    {kSeeOther, kRedirected},
    {kNotModified, "the server says that nothing has changed, so there is no reply"},
    {VYNCurlCode_BadRequest, "the server refuses the request; check the address and the request"},
    {kUnauthorized, kNotLetIn},
    {kForbidden, kNotLetIn},
    {kNotFound, "the server has nothing at this address; check it"},
    {kNotAllowed, kNoOfx},
    {kNotAcceptable, kNoOfx},
    {kProxyUnauthorized,
     "a proxy, or a server that answers like one, wants a sign-on; check the settings of your "
     "proxy if you have one, and the address"},
    {kUnavailable, kComeBack},
    {kGatewayTimedOut, kComeBack},
    {VYNCurlCode_MalformedUrl,
     "the address cannot be understood; write it as https://bank.example/ofx"},
    {VYNCurlCode_NotHttp, "what answers there does not speak HTTP; check the address"},
    {VYNCurlCode_ConnectFailed, "the server cannot be reached; check the address and the network"},
    {VYNCurlCode_HandshakeFailed,
     "no secure connection could be made; the server may not speak TLS 1.2 at this address"},
    {VYNCurlCode_HostNotFound, "there is no server of this name; check the address"},
    {VYNCurlCode_ProxyNotFound, "there is no proxy of this name; check the settings of your proxy"},
    {VYNCurlCode_RootsUnreadable,
     "the roots that this system trusts cannot be read; nothing was sent; install them, on Debian "
     "with the package ca-certificates"},
    {VYNCurlCode_SendFailed, kBroken},
    {VYNCurlCode_ReceiveFailed, kBroken},
    {VYNCurlCode_Cut, "the connection ended before the reply did; try again"},
    {VYNCurlCode_ReplyTooLarge,
     "the reply is larger than 256 MiB, or its headers are too large; it was dropped; if it is a "
     "long statement, ask for a shorter span of time"},
    {VYNCurlCode_FileFailed,
     "the reply could not be kept; check that there is room for temporary files"},
    {VYNCurlCode_NoMemory, "there is not enough memory for the exchange"},
    {kLinkingRoot,
     "the server's certificate leads to a root that is never accepted; nothing was sent; ask the "
     "institution"},
};

constexpr Text kStatusTexts[] = {
    {KRNetStatus_Success, "the server's reply is empty; try again later"},
    {KRNetStatus_Failed, "no connection could be opened; check the network"},
    {KRNetStatus_NoReplySize, "there is no reply"},
    {KRNetStatus_ReplyNotLoaded, "the reply cannot be read"},
    {KRNetStatus_NotCreated, "the exchange could not be started; check the address"},
    {KRNetStatus_NotStarted, "the exchange could not be started; check the address"},
    {KRNetStatus_NoMemory, "there is not enough memory for the exchange"},
    {KRNetStatus_ClientError, "the server does not answer as expected; check the address"},
    {KRNetStatus_Unavailable, kComeBack},
    {KRNetStatus_RootRejected, "the roots to trust could not be set up"},
    {KRNetStatus_SslOptionsRejected, "the certificates to trust could not be set up"},
    {KRNetStatus_TimedOut, "there was no reply in time; try again later, or allow more time"},
    {KRNetStatus_Untrusted,
     "the server's certificate does not lead to a trusted root; nothing was sent; check that this "
     "is the institution's server, and trust the institution's own root if it has one"},
    {KRNetStatus_NetworkFailed, "the network failed; try again"},
    {KRNetStatus_SslFailed, "the secure connection failed; check the address"},
    {KRNetStatus_BadCertificate,
     "the server's certificate is not valid: it is of another name, revoked, too weak or not for "
     "servers, or today is not within its dates; nothing was sent; check the address and the "
     "clock, and ask the institution if both are right"},
    {KRNetStatus_UnexpectedCertificate,
     "the server's certificate is none of those that were expected; nothing was sent; ask the "
     "institution whether it has a new one"},
    {KRNetStatus_Refused,
     "nothing takes connections there; check the address, that the server runs, and the settings "
     "of your proxy if you have one"},
    {KRNetStatus_ServerError, "the server failed; try again later"},
};

template <std::size_t kCount>
const char* Find(const Text (&texts)[kCount], u32 number) {
  for (const Text& text : texts) {
    if (text.number == number) return text.text;
  }
  return nullptr;
}

}  // namespace

const char* ReasonOf(KRNetStatus status, u32 http, u32 code) {
  if (http == kTooManyRequests) {
    return "the server has had too many requests; wait a while before the next";
  }
  if (http == kRequestTimedOut) return "the server waited too long for the request; try again";
  // A proxy that opens no connection ends like this.
  if (code == VYNCurlCode_ReceiveFailed && http / 100 == 3) {
    return "a proxy, or the server, sends to another address, which is not followed; check the "
           "settings of your proxy if you have one, and the address";
  }
  // These say it better than their codes.
  if (status == KRNetStatus_TimedOut || status == KRNetStatus_Untrusted) {
    return Find(kStatusTexts, status);
  }
  if (const char* const text = Find(kCodeTexts, code)) return text;
  if (const char* const text = Find(kStatusTexts, status)) return text;
  return "the exchange failed; check the address and the network";
}

}  // namespace krofx
