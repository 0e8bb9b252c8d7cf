// HTTP and HTTPS through a connection manager: one exchange, and the decision over certificates.
//
// A request creates its exchange in the session of its VYNNetAccess, waits until the connection
// manager reports the end, and turns the manager's code into a KRNetStatus. While it waits, the
// host's events go on (contract/wait_platform.h); host code that runs in them may call Abort.
//
// Four parts share the work: internal/server_judge.h decides over the certificates that a server
// shows, internal/reply_files.h keeps the reply until LoadReply takes it,
// internal/session_exchange.h is the exchange in its session, and vyn_exchange.cpp carries one out
// from its first log line to its last. vyn_error_map.cpp says what the manager's codes mean.

#ifndef KROFX_TRANSPORT_EXCHANGE_VYN_NET_REQUEST_H_
#define KROFX_TRANSPORT_EXCHANGE_VYN_NET_REQUEST_H_

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/contract/net_request.h"
#include "krofx/transport/exchange/internal/reply_files.h"
#include "krofx/transport/exchange/internal/server_judge.h"
#include "krofx/transport/exchange/internal/session_exchange.h"

class VYNNetAccess;

/// Exchanges over HTTP and HTTPS. VYNNetAccess::NewNetRequest makes one.
///
/// A request may be used for several exchanges in turn. Each start forgets the reply before it and
/// its error, but neither the HTTP status nor the saved headers. An exchange must not be started
/// from within another one of the same request: it gives KRNetStatus_NotCreated. A request may be
/// destroyed while it waits, by host code in an event; the call that waits then gives
/// KRNetStatus_Failed and the exchange is ended.
class KROFX_API VYNNetRequest : public KRNetRequest {
 public:
  /// A request without an access object, which can only read local files.
  VYNNetRequest();
  VYNNetRequest(const VYNNetRequest&) = delete;
  VYNNetRequest& operator=(const VYNNetRequest&) = delete;
  /// Ends an exchange that still runs, and deletes the files of a reply that nobody loaded.
  ~VYNNetRequest() override;

  /// Adds a root; 0 when it is no certificate, `rootID` is 0, or memory is exhausted. With at least
  /// one root, a server's certificate must lead to one of them.
  u16 AddTrustedRoot(const char* base64Cert, u16 length, s16 rootID) override;
  /// As AddTrustedRoot, from DER.
  u16 AddTrustedRootBER(const char* ber, u16 length, s16 rootID) override;
  /// Adds an expected certificate ID (see KRCertID), of which there may be two; 0 for a third, for
  /// null, and when memory is exhausted. With at least one, a server must show one of them.
  u16 AddExpectedSSLCertID(const char* certID, u16 length) override;
  /// Adds an expected name, of which there may be two; 0 for a third, and when memory is exhausted.
  /// Names are kept for IsAnExpectedSSLCertName; no exchange looks at them.
  u16 AddExpectedSSLCertName(const KRString& name) override;
  /// 1, the default, has the manager check the server's certificates, anything else has it skip
  /// that; the decision over roots and expected IDs is made in either case. Returns 1.
  u16 SetSSLVerifyCert(u16 verify) override;

  /// Fetches a URL. A `file:` URL is only stored, and then gives success at once. Otherwise the
  /// call returns when the exchange is over: 0 when all went well, and also when the wait was ended
  /// by the event that quits the host's loop, or when the manager refused the HTTP options; there
  /// is no reply then.
  KRNetStatus Get(const KRString& url) override;
  /// Sends the content of `body` to a URL, which may be of any kind; else as Get. A null body, or
  /// one that lost its memory, gives KRNetStatus_NotCreated.
  KRNetStatus Send(const KRString& url, KRBuffer* body) override;
  /// As Send, with extra header lines, ended by CR LF, which may be null. They reach the manager
  /// only when there is a timeout.
  KRNetStatus SendPlusHeaders(const KRString& url, KRBuffer* body, char* headers) override;
  /// As SendPlusHeaders, with a content type; null is "application/x-ofx". It reaches the manager
  /// only when there is a timeout.
  KRNetStatus SendPlusHeadersContent(const KRString& url, KRBuffer* body, char* headers,
                                     const char* contentType) override;
  /// Ends a running exchange; the waiting call then gives the status of a cancelled one.
  /// KRNetStatus_CancelFailed when the manager refuses; success also when nothing runs.
  KRNetStatus Abort() override;
  /// Gives the size of the reply: of the file, if a `file:` URL was ever fetched; else of the last
  /// exchange. KRNetStatus_NoReplySize when there is none.
  KRNetStatus GetReplySize(u32& size) override;
  /// Loads the reply, of the file or of the last exchange as for GetReplySize. The latter is
  /// appended at the target's cursor and can be loaded once, for its files are deleted behind it.
  /// KRNetStatus_ReplyNotLoaded when there is none, when it cannot be read, and when the target is
  /// not as large as the reply then, as when it held something before.
  KRNetStatus LoadReply(KRBuffer* target) override;
  /// 1 keeps the headers of replies from now on, behind those that are kept already. Returns 1.
  u16 SetSaveHeaders(u16 save) override;
  /// Gives the value of the first kept header of a name, in letters of any case. The value is
  /// everything behind the colon to the line feed, blanks and carriage return included. 0, with
  /// `value` left alone, when there is none.
  u16 GetHeader(KRString& name, KRString& value) override;
  /// All kept headers, as they came. The buffer stays this object's.
  const KRBuffer& GetSavedHeaders() const { return m_reply.SavedHeaders(); }
  /// Gives the manager's code of the last exchange, 0 for success, and the HTTP status of the last
  /// finished one. 0, with `httpStatus` left alone, when none has finished yet.
  u16 GetStatus(u32& httpStatus, u32& transportError) const override;
  /// Sets how long an exchange may take, in seconds, and with it that the HTTP options are set at
  /// all; 0, the default, sets none. Returns 1.
  u16 SetTimeout(s32 seconds) override;

  /// Makes the request one of an access object; null takes it away. Nothing happens while an
  /// exchange runs.
  virtual void SetAccess(VYNNetAccess* access);

  /// 1 when a name is one of the expected ones, or when none is expected.
  u16 IsAnExpectedSSLCertName(const KRString& name) const;

  /// What the manager calls with the records of an exchange: hands them to the request that is
  /// their user data. Always 0.
  static u16 VYNNetRequestCallback(VYCallbackStatus status, void* record);
  /// What the manager calls with a server's certificates; `request` is a VYNNetRequest. See
  /// VYCertificateCallback for the arguments. 0 accepts; else `error` itself, 1671 for a chain that
  /// ends at a root of the group 3000, 1673 for a certificate that is not an expected one, and 1670
  /// for any other chain that is not to be trusted.
  static u16 VYNSSLCertificateCallback(SSLCertificateChain* chain, u32 rootID, u16 error,
                                       void* request, u32, u32);

 protected:
  /// Adds a certificate ID to a list of at most two; 0 as for AddExpectedSSLCertID.
  u16 AddExpectedCertID(KRDynamicArrayBuffer* expected, const char* certID, u16 length);
  /// 1 when an ID is one of a list, or when the list is empty.
  u16 IsAnExpectedCertID(KRDynamicArrayBuffer* expected, KRBuffer* certID) const;
  /// Hands the roots to an exchange, in the order in which they were added. 0, or the manager's
  /// code for the first that it refused; 1699 without a manager.
  u16 AddAllTrustedRoots(void* exchange);
  /// 1 when a root of exactly this ID was added, or when there are no roots.
  u16 IsATrustedRoot(u32 rootID) const;
  /// Sets the TLS options of an exchange. 0 or the manager's code; 1699 without a manager.
  u16 SetSSLOptions(void* exchange);
  /// Takes a VYProgressRecord or a VYFinishedRecord. Always 0.
  u16 DoCallback(VYCallbackStatus status, void* record);
  /// Appends the file of headers, if there is one, to the saved headers.
  void LoadHeaders();
  /// The HTTP status behind a code of the manager; 200 for a code that stands for none.
  static u32 MapVYNErrorToHttpStatus(u16 code);
  /// The status of an exchange that ended with a code of the manager.
  static KRNetStatus MapVYNErrorToNetStatus(u16 code);
  /// Waits until `*finished` is no longer 0. In each round one event at most is handled, and then
  /// comes a pause of 100 milliseconds at most. The event that quits the host's loop ends the wait;
  /// so does the end of the session or of the request.
  void WaitForReply(u16* finished);

 private:
  struct Exchange;

  KRNetStatus Run(const Exchange& exchange);
  KRNetStatus CarryOut(const Exchange& exchange, const krofx::internal::ExchangeCall& call);
  u16 Create(const Exchange& exchange, VYNConnectionManager& manager);
  KRNetStatus SetTrust(const Exchange& exchange);
  void TakeProgress(const VYProgressRecord& record);
  void TakeEnd(const VYFinishedRecord& record);

  krofx::internal::ServerJudge m_judge;
  krofx::internal::ReplyFiles m_reply;
  u16 m_finished = 0;
  u16 m_lastError = 0;
  s32 m_timeout = 0;
  u16 m_verify = 1;
  u16 m_saveHeaders = 0;
  u32 m_httpStatus = 0;
  // Destroyed first: it ends what could still call back.
  krofx::internal::SessionExchange m_exchange;
};

#endif  // KROFX_TRANSPORT_EXCHANGE_VYN_NET_REQUEST_H_
