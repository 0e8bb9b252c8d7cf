// The codes of VYNCurlManager: what a finished record, an `*error` or a result says.

#ifndef KROFX_TRANSPORT_CURL_CURL_CODE_H_
#define KROFX_TRANSPORT_CURL_CURL_CODE_H_

#include "krofx/core/types.h"

/// The codes of VYNCurlManager in a finished record, an `*error` or a result. The codes 1501 to
/// 1522 mean the HTTP statuses 201 to 204, 301 to 304, 400 to 408 and 500 to 504, in this order.
enum VYNCurlCode : u16 {
  /// HTTP 200.
  VYNCurlCode_Success = 0,
  /// HTTP 301, and 308.
  VYNCurlCode_MovedPermanently = 1505,
  /// HTTP 302, and 3xx other than 301 to 304 and 308.
  VYNCurlCode_Found = 1506,
  /// HTTP 400, and 4xx other than 400 to 408.
  VYNCurlCode_BadRequest = 1509,
  /// HTTP 408, or the exchange or its connecting took longer than allowed.
  VYNCurlCode_TimedOut = 1517,
  /// HTTP 500, and 5xx other than 500 to 504.
  VYNCurlCode_InternalServerError = 1518,
  /// The host of the URL refused the connection.
  VYNCurlCode_Refused = 1531,
  /// The URL cannot be read, or programs would read different hosts from it.
  VYNCurlCode_MalformedUrl = 1532,
  /// The URL is of another scheme than http and https.
  VYNCurlCode_UnsupportedScheme = 1533,
  /// The content type or an extra header may not be sent.
  VYNCurlCode_BadHeader = 1534,
  /// The reply is not HTTP.
  VYNCurlCode_NotHttp = 1535,
  /// The host cannot be reached, or the system gave up connecting to it.
  VYNCurlCode_ConnectFailed = 1600,
  /// The TLS handshake failed.
  VYNCurlCode_HandshakeFailed = 1601,
  /// The host's name has no address.
  VYNCurlCode_HostNotFound = 1602,
  /// The trusted roots cannot be read.
  VYNCurlCode_RootsUnreadable = 1603,
  /// Another failure of TLS.
  VYNCurlCode_TlsFailed = 1604,
  /// The proxy's name has no address.
  VYNCurlCode_ProxyNotFound = 1605,
  /// Sending failed.
  VYNCurlCode_SendFailed = 1606,
  /// Receiving failed.
  VYNCurlCode_ReceiveFailed = 1607,
  /// The connection ended before the reply did, or by https without the server saying so, in a
  /// reply that does not say its length; or the header does not say clearly where the reply ends.
  VYNCurlCode_Cut = 1608,
  /// Another failure of the network, or of a proxy.
  VYNCurlCode_NetworkFailed = 1620,
  /// The server's certificate does not lead to a trusted root.
  VYNCurlCode_Untrusted = 1670,
  /// The server's certificate leads to a trusted root, but it is not valid now, not valid for this
  /// host, or not a server's.
  VYNCurlCode_BadCertificate = 1672,
  /// VCCancel or VCCloseInet ended the exchange.
  VYNCurlCode_Cancelled = 1680,
  /// The reply, or its header lines together, is larger than allowed.
  VYNCurlCode_ReplyTooLarge = 1681,
  /// A temporary file cannot be made or written, or its name is too long.
  VYNCurlCode_FileFailed = 1682,
  /// Memory is exhausted.
  VYNCurlCode_NoMemory = 1683,
  /// A handle is not valid for this operation, or no longer valid, or an argument is missing.
  VYNCurlCode_BadArgument = 1684,
  /// The bytes of a root are not one certificate, or its ID is 0.
  VYNCurlCode_BadRoot = 1685,
  /// An https exchange was started without TLS options.
  VYNCurlCode_NoTlsOptions = 1686,
  /// Anything else.
  VYNCurlCode_Other = 1687,
  /// HTTP 205 to 299: the reply may be missing or incomplete.
  VYNCurlCode_UnexpectedSuccess = 1688,
};

#endif  // KROFX_TRANSPORT_CURL_CURL_CODE_H_
