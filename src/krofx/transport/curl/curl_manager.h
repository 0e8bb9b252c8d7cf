// The connection manager that krofx brings along: HTTP and HTTPS through libcurl.
//
// An access object makes one of its own when it is given none, so a host needs this class only to
// change what can be set here.
//
// How it works: everything happens on the calling thread, inside the operations, and VCWork is
// where exchanges move. Only http and https are spoken, HTTP/1.1, TLS from version 1.2 on; each
// exchange has a connection of its own; redirects are not followed; there are no cookies, no
// .netrc, no Expect header, no content codings. Nothing is configured by the environment: no proxy,
// no file for the secrets of TLS, no folder.
//
// Certificates. With roots added, they are the only ones that a chain may end at; without, the
// system's are. The chain must be valid for the host and for now, and the server's certificate must
// name the host in subjectAltName: the common name does not count. Revocation lists and responders
// are not asked; an answer on revocation that the server staples must not contradict it. The
// certificate callback is asked when all that holds, before a byte of the request is sent, with the
// verified chain and the ID under which the root at its end was added, 0 for one of the system.
// When it does not hold, the callback gets VYNCurlCode_Untrusted or VYNCurlCode_BadCertificate
// without a chain, and the exchange ends whatever the callback answers. With `skipVerify` neither
// the chain nor its dates, the host or revocation are checked, and the roots of the system play no
// part. The callback is asked with the chain as the server showed it, and with the ID of an added
// root that the signatures lead to, 0 for none: a caller that holds roots or expects certain
// certificates still decides by them.
//
// Replies. A reply by https that neither says its length nor comes in chunks ends with the
// connection. It is taken only when the server closed the connection by TLS, as VYNCurlCode_Cut
// otherwise. By plain http the two cannot be told apart.
//
// Files. Reply and header file of an exchange are made when it is created, in its temporary folder
// (/tmp for an empty one; a backslash counts as a slash), under new names, readable by their owner
// only. The header file holds the header lines of the final reply, without the status line and
// without trailers. The finished record hands both over; before that they are the manager's, which
// removes them.

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

/// HTTP and HTTPS through libcurl; the file's opening comment has the whole of it.
///
/// Handles are numbers that are never given twice: one that is dead, or belongs to another manager
/// or session, is refused with VYNCurlCode_BadArgument. A manager may be deleted from inside its
/// own callbacks. Its exchanges end then, and at every deletion, without a finished record.
class KROFX_API VYNCurlManager : public VYNConnectionManager, public krofx::internal::HeapObject {
 public:
  /// Bytes that a reply may have unless SetReplyLimit says otherwise: 256 MiB.
  static constexpr u32 kDefaultReplyLimit = 256U * 1024 * 1024;

  VYNCurlManager();
  VYNCurlManager(const VYNCurlManager&) = delete;
  VYNCurlManager& operator=(const VYNCurlManager&) = delete;
  ~VYNCurlManager() override;

  /// Sets how many bytes the body of a reply may have, for exchanges that are created from now on.
  /// A larger one ends in VYNCurlCode_ReplyTooLarge.
  void SetReplyLimit(u32 bytes);
  /// @return the HTTP status of the exchange that ended last, as the server or the proxy sent it; 0
  ///         when none came. The codes of finished records name only some statuses one by one.
  u32 GetHttpStatus() const;
  /// Sets the proxy through which every host is reached but those of `exceptions`, for exchanges
  /// that are created from now on: `url` as libcurl takes it ("http://proxy:3128"), `exceptions` a
  /// list of names and addresses with commas between them, "*" for all. Null or empty, the default:
  /// none. The texts are copied.
  /// @return 1; 0 while there are exchanges, when memory is exhausted and for a text that is too
  ///         long, and then nothing changes.
  u16 SetProxy(const char* url, const char* exceptions);
  /// Says where the system's roots are, which count for exchanges that have no roots of their own:
  /// a file of PEM certificates, a folder of them as `openssl rehash` lays it out, or both. Null or
  /// empty: none; both null: where libcurl looks by itself. The names are copied.
  /// @return as SetProxy.
  u16 SetSystemRoots(const char* file, const char* folder);

  /// Null with VYNCurlCode_NoMemory when memory is exhausted or libcurl does not start.
  void* VCOpenInet(u16* error) override;
  /// Its running exchanges end with VYNCurlCode_Cancelled, those never started are given back.
  u16 VCCloseInet(void* session) override;
  /// 0 for every open session: each exchange makes its own connection.
  u16 VCConnect(void* session) override;
  /// A URL that cannot be used is reported by the finished record, not here.
  void* VCSendDataRequest(u16* error, void* session, const char* url, const char* data, u32 size,
                          const char* tempPath, VYProgressCallback callback,
                          void* userData) override;
  void* VCGetFileRequest(u16* error, void* session, const char* url, const char* tempPath,
                         VYProgressCallback callback, void* userData) override;
  /// Lines end with CR LF or LF; empty ones are passed over. A Content-Type line takes the place of
  /// `contentType`. A line that is no header line, or sets what frames the message (Content-Length,
  /// Transfer-Encoding, Expect), ends the exchange with VYNCurlCode_BadHeader before anything is
  /// sent; the finished record says so. `timeout` is in seconds, for everything from the look-up of
  /// the host's name to the last byte; 0 and less is no limit but the 300 seconds that libcurl
  /// allows for connecting.
  u16 VCSetHTTPInfo(void* exchange, u32, u16 post, const char* contentType,
                    const char* extraHeaders, u32, s32 timeout) override;
  /// A null callback leaves the decision to the manager's own check.
  u16 VCSetSSLInfo(void* exchange, u16 skipVerify, VYCertificateCallback callback, u32) override;
  /// VYNCurlCode_BadRoot for bytes that are not one certificate, and for the ID 0.
  u16 VCAddTrustedRoot(void* exchange, const char* der, u32 length, s16 rootID) override;
  /// An https exchange without VCSetSSLInfo is refused with VYNCurlCode_NoTlsOptions, so that roots
  /// and expectations that nobody told of here cannot be passed over. So is every start from inside
  /// a certificate callback, with VYNCurlCode_BadArgument, since nothing could move it there.
  u16 VCInitiate(void* session, void* exchange) override;
  /// The finished record, with VYNCurlCode_Cancelled, comes inside this call; for a call from
  /// inside a certificate callback, inside the VCWork that made the callback.
  u16 VCCancel(void* session, void* exchange) override;
  void VCRelease(void* session, void* exchange) override;
  /// Always 0 and success: what the network needs is the system's affair.
  u16 VY_IspConfig_NeedsToConfigure(u32* needs) override;
  /// Returns at once when an exchange has ended since the last call, or was given back. Inside a
  /// certificate callback this does nothing; inside any other it works as usual.
  void VCWork(u32 milliseconds) override;
  void VCPaceWork() override;

 private:
  krofx::internal::CurlCore* m_core;
};

#endif  // KROFX_TRANSPORT_CURL_CURL_MANAGER_H_
