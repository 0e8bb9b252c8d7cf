// The connection manager that comes with krofx: HTTP and HTTPS through libcurl.
//
// An access object that is given no manager makes one of these, so a host needs this class only to
// change its settings.
//
// Operation. Everything happens on the calling thread, inside the operations; exchanges advance in
// VCWork. Only http and https are supported, with HTTP/1.1 and with TLS 1.2 or later. Each exchange
// has a connection of its own. Redirects are not followed, and there are no cookies, no .netrc, no
// Expect header and no content codings. The environment configures nothing: no proxy, no file for
// the secrets of TLS, no folder.
//
// Certificates. If roots were added, a chain must end at one of them; otherwise it must end at one
// of the system's. The chain must be valid for the host at the current time, and the server's
// certificate must name the host in subjectAltName: the common name does not count. Revocation
// lists and responders are not queried, but a revocation answer that the server staples must not
// contradict the certificate. When all of this holds, and before a byte of the request is sent, the
// certificate callback is called with the verified chain and the ID of the root at its end, 0 for
// one of the system's. Otherwise the callback gets VYNCurlCode_Untrusted or
// VYNCurlCode_BadCertificate without a chain, and the exchange ends whatever the callback returns.
// With `skipVerify` the chain, its dates, the host and revocation are not checked, and the roots of
// the system are not used. The callback then gets the chain as the server showed it, and the ID of
// an added root that the signatures lead to, 0 for none, so that a caller with roots or expected
// certificates can still decide.
//
// Replies. An https reply that has no length and is not chunked ends with the connection. It is
// accepted only if the server closed the connection by TLS; otherwise the result is
// VYNCurlCode_Cut. With plain http a closed connection and a cut one cannot be distinguished.
//
// Files. The reply file and the header file of an exchange are made when it is created, in its
// temporary folder (/tmp for an empty name; a backslash counts as a slash), with new names, and
// readable by their owner only. The header file holds the header lines of the final reply, without
// the status line and without trailers. The finished record passes both files to the caller; until
// then they belong to the manager, which removes them.

#ifndef KROFX_TRANSPORT_CURL_CURL_MANAGER_H_
#define KROFX_TRANSPORT_CURL_CURL_MANAGER_H_

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/curl/curl_code.h"

namespace krofx::internal {
class CurlCore;
}  // namespace krofx::internal

/// HTTP and HTTPS through libcurl, as the comment at the top of this file describes.
///
/// Handles are numbers that are never reused: one that is no longer valid, or belongs to another
/// manager or session, is refused with VYNCurlCode_BadArgument. A manager may be deleted from
/// inside its own callbacks. Whenever it is deleted, its exchanges end without a finished record.
class KROFX_API VYNCurlManager : public VYNConnectionManager, public krofx::internal::HeapObject {
 public:
  /// Bytes that a reply may have unless SetReplyLimit sets another limit: 256 MiB.
  static constexpr u32 kDefaultReplyLimit = 256U * 1024 * 1024;

  VYNCurlManager();
  VYNCurlManager(const VYNCurlManager&) = delete;
  VYNCurlManager& operator=(const VYNCurlManager&) = delete;
  ~VYNCurlManager() override;

  /// Sets how many bytes the body of a reply may have, for exchanges that are created from now on.
  /// A larger one ends in VYNCurlCode_ReplyTooLarge.
  void SetReplyLimit(u32 bytes);
  /// @return the HTTP status of the exchange that ended last, as the server or the proxy sent it; 0
  ///         when none came. The codes of finished records distinguish only some statuses.
  u32 GetHttpStatus() const;
  /// Sets the proxy for all hosts except those of `exceptions`, for exchanges that are created from
  /// now on. `url` is in the form of libcurl ("http://proxy:3128"); `exceptions` is a
  /// comma-separated list of names and addresses, "*" for all. Null or empty, the default, means
  /// none. The texts are copied.
  /// @return 1; 0 while there are exchanges, when memory is exhausted and for a text that is too
  ///         long, and then nothing changes.
  u16 SetProxy(const char* url, const char* exceptions);
  /// Sets where the system's roots are, which exchanges without roots of their own use: a file of
  /// PEM certificates, a folder of them in the layout of `openssl rehash`, or both. A null or empty
  /// name means no file or no folder; if both are null, libcurl uses its default places. The names
  /// are copied.
  /// @return as SetProxy.
  u16 SetSystemRoots(const char* file, const char* folder);

  /// @return the session; null, with VYNCurlCode_NoMemory, when memory is exhausted or libcurl does
  ///         not start.
  void* VCOpenInet(u16* error) override;
  /// Its running exchanges end with VYNCurlCode_Cancelled; those that were never started are
  /// released.
  u16 VCCloseInet(void* session) override;
  /// @return 0 for every open session: each exchange makes its own connection.
  u16 VCConnect(void* session) override;
  /// A URL that cannot be used is reported by the finished record, not here.
  void* VCSendDataRequest(u16* error, void* session, const char* url, const char* data, u32 size,
                          const char* tempPath, VYProgressCallback callback,
                          void* userData) override;
  void* VCGetFileRequest(u16* error, void* session, const char* url, const char* tempPath,
                         VYProgressCallback callback, void* userData) override;
  /// Lines end with CR LF or LF; empty lines are ignored. A Content-Type line replaces
  /// `contentType`. A line that is not a header line, or that sets the framing of the message
  /// (Content-Length, Transfer-Encoding, Expect), ends the exchange before anything is sent, with
  /// VYNCurlCode_BadHeader in the finished record. `timeout` is in seconds, from the look-up of the
  /// host's name to the last byte; 0 or less means no limit. Connecting always ends after 300
  /// seconds with VYNCurlCode_TimedOut, and with VYNCurlCode_ConnectFailed when the system gives up
  /// before that.
  u16 VCSetHTTPInfo(void* exchange, u32, u16 post, const char* contentType,
                    const char* extraHeaders, u32, s32 timeout) override;
  /// With a null callback the manager's own checks decide; they are the same with and without one.
  u16 VCSetSSLInfo(void* exchange, u16 skipVerify, VYCertificateCallback callback, u32) override;
  /// @return 0; VYNCurlCode_BadRoot for bytes that are not one certificate, and for the ID 0.
  u16 VCAddTrustedRoot(void* exchange, const char* der, u32 length, s16 rootID) override;
  /// Refuses an https exchange without VCSetSSLInfo, with VYNCurlCode_NoTlsOptions, so that the
  /// roots and expected certificates of a caller that forgot it are not silently ignored. Refuses
  /// every start from inside a certificate callback, with VYNCurlCode_BadArgument, since exchanges
  /// cannot advance there.
  u16 VCInitiate(void* session, void* exchange) override;
  /// The finished record, with VYNCurlCode_Cancelled, is delivered during this call; for a call
  /// from inside a certificate callback, during the VCWork that made the callback.
  u16 VCCancel(void* session, void* exchange) override;
  void VCRelease(void* session, void* exchange) override;
  /// Always sets `*needs` to 0 and succeeds: the operating system sets up the network.
  u16 VY_IspConfig_NeedsToConfigure(u32* needs) override;
  /// Returns at once when an exchange has ended or was released since the last call. Inside a
  /// certificate callback it does nothing; inside any other callback it works as usual.
  void VCWork(u32 milliseconds) override;
  void VCPaceWork() override;

 private:
  krofx::internal::CurlCore* m_core;
};

#endif  // KROFX_TRANSPORT_CURL_CURL_MANAGER_H_
