// HTTP and HTTPS through a connection manager: one exchange, and the check of certificates.
//
// A request creates its exchange in the session of its VYNNetAccess, waits until the connection
// manager reports the end, and turns the manager's code into a KRNetStatus. While it waits, the
// host's events are handled (contract/wait_platform.h); host code that runs in them may call Abort.
//
// The work is in four parts: internal/certificate_judge.h checks the certificates that a server
// shows, internal/reply_files.h keeps the reply until LoadReply takes it,
// internal/session_exchange.h is the exchange in its session, and vyn_exchange.cpp carries out an
// exchange from its first log line to its last. vyn_error_map.cpp translates the manager's codes.

#ifndef KROFX_TRANSPORT_EXCHANGE_VYN_NET_REQUEST_H_
#define KROFX_TRANSPORT_EXCHANGE_VYN_NET_REQUEST_H_

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/contract/net_request.h"
#include "krofx/transport/exchange/internal/certificate_judge.h"
#include "krofx/transport/exchange/internal/reply_files.h"
#include "krofx/transport/exchange/internal/session_exchange.h"

class VYNNetAccess;

/// Exchanges over HTTP and HTTPS. VYNNetAccess::NewNetRequest makes one.
///
/// A request may be used for several exchanges in turn. Each start forgets the previous reply and
/// error, but keeps the HTTP status and the saved headers. An exchange cannot be started from
/// within another one of the same request: the result is KRNetStatus_NotCreated. Host code in an
/// event may destroy the request while it waits; the exchange then ends, and the waiting call
/// returns KRNetStatus_Failed.
class KROFX_API VYNNetRequest : public KRNetRequest {
 public:
  /// A request without an access object, which can only read local files.
  VYNNetRequest();
  VYNNetRequest(const VYNNetRequest&) = delete;
  VYNNetRequest& operator=(const VYNNetRequest&) = delete;
  /// Ends an exchange that still runs, and deletes the files of a reply that was not loaded.
  ~VYNNetRequest() override;

  /// Adds a root. If there are roots, a server's certificate must lead to one of them.
  /// @return 1; 0 when the text is not a certificate, `rootID` is 0, or memory is exhausted.
  u16 AddTrustedRoot(const char* base64Cert, u16 length, s16 rootID) override;
  /// As AddTrustedRoot, from DER.
  u16 AddTrustedRootBER(const char* ber, u16 length, s16 rootID) override;
  /// Adds an expected certificate ID (see KRCertID); there may be two. If there are any, a server
  /// must show one of them.
  /// @return 1; 0 for a third, for null, and when memory is exhausted.
  u16 AddExpectedSSLCertID(const char* certID, u16 length) override;
  /// Adds an expected name; there may be two. Names are kept for IsAnExpectedSSLCertName; exchanges
  /// do not use them.
  /// @return 1; 0 for a third, and when memory is exhausted.
  u16 AddExpectedSSLCertName(const KRString& name) override;
  /// With 1, the default, the manager checks the server's certificates; with any other value it
  /// does not. The roots and the expected IDs are checked in either case.
  /// @return 1.
  u16 SetSSLVerifyCert(u16 verify) override;

  /// Fetches a URL. A `file:` URL is only stored. For other URLs the call returns when the exchange
  /// is over.
  /// @return KRNetStatus_Success, or how the exchange failed. It is KRNetStatus_Success, without a
  ///         reply, also when the wait was ended by the event that quits the host's loop, and when
  ///         the manager refused the HTTP options.
  KRNetStatus Get(const KRString& url) override;
  /// Sends the content of `body` to a URL of any kind.
  /// @return as Get; KRNetStatus_NotCreated for a null body, or one that lost its memory.
  KRNetStatus Send(const KRString& url, KRBuffer* body) override;
  /// As Send, with extra header lines, ended by CR LF, which may be null. They are passed to the
  /// manager only if there is a timeout.
  KRNetStatus SendPlusHeaders(const KRString& url, KRBuffer* body, char* headers) override;
  /// As SendPlusHeaders, with a content type; null means "application/x-ofx". It is passed to the
  /// manager only if there is a timeout.
  KRNetStatus SendPlusHeadersContent(const KRString& url, KRBuffer* body, char* headers,
                                     const char* contentType) override;
  /// Ends a running exchange; the waiting call then returns the status of a cancelled one.
  /// @return KRNetStatus_Success, also when no exchange runs; KRNetStatus_CancelFailed when the
  ///         manager refuses.
  KRNetStatus Abort() override;
  /// Gets the size of the reply: of the file, if a `file:` URL was ever fetched; else of the last
  /// exchange.
  /// @return KRNetStatus_Success; KRNetStatus_NoReplySize when there is no reply.
  KRNetStatus GetReplySize(u32& size) override;
  /// Loads the reply, of the file or of the last exchange as for GetReplySize. The latter is
  /// appended at the target's cursor. It can be loaded once, since its files are then deleted.
  /// @return KRNetStatus_Success; KRNetStatus_ReplyNotLoaded when there is no reply, when it cannot
  ///         be read, and when the target's size is then not the reply's, for example because it
  ///         was not empty.
  KRNetStatus LoadReply(KRBuffer* target) override;
  /// With 1, the headers of replies are kept from now on, after those that were kept before.
  /// @return 1.
  u16 SetSaveHeaders(u16 save) override;
  /// Gets the value of the first kept header of a name, whatever the case of its letters. The value
  /// is everything from the colon to the line feed, blanks and carriage return included.
  /// @return 1; 0, with `value` unchanged, when there is none.
  u16 GetHeader(KRString& name, KRString& value) override;
  /// @return all kept headers, as they were received. The buffer belongs to this object.
  const KRBuffer& GetSavedHeaders() const { return m_reply.SavedHeaders(); }
  /// Gets the manager's code of the last exchange, 0 for success, and the HTTP status of the last
  /// finished one.
  /// @return 1; 0, with `httpStatus` unchanged, when none has finished yet.
  u16 GetStatus(u32& httpStatus, u32& transportError) const override;
  /// Sets how long an exchange may take, in seconds. With 0, the default, there is no limit, and no
  /// HTTP options are passed to the manager.
  /// @return 1.
  u16 SetTimeout(s32 seconds) override;

  /// Attaches the request to an access object; null detaches it. Nothing happens while an exchange
  /// runs.
  virtual void SetAccess(VYNNetAccess* access);

  /// @return 1 when a name is one of the expected ones, or when there are none.
  u16 IsAnExpectedSSLCertName(const KRString& name) const;

  /// The progress callback for the manager: passes a record to the request that is its user data.
  /// @return 0.
  static u16 VYNNetRequestCallback(VYCallbackStatus status, void* record);
  /// The certificate callback for the manager; `request` is a VYNNetRequest. See
  /// VYCertificateCallback for the arguments.
  /// @return 0 to accept; else `error` itself, 1671 for a chain that ends at a root of the group
  ///         3000, 1673 for a certificate that is not an expected one, and 1670 for any other chain
  ///         that is not trusted.
  static u16 VYNSSLCertificateCallback(SSLCertificateChain* chain, u32 rootID, u16 error,
                                       void* request, u32, u32);

 protected:
  /// Adds a certificate ID to a list of at most two.
  /// @return as AddExpectedSSLCertID.
  u16 AddExpectedCertID(KRDynamicArrayBuffer* expected, const char* certID, u16 length);
  /// @return 1 when an ID is one of a list, or when the list is empty.
  u16 IsAnExpectedCertID(KRDynamicArrayBuffer* expected, KRBuffer* certID) const;
  /// Adds the roots to an exchange, in the order in which they were added.
  /// @return 0, or the manager's code for the first root that it refused; 1699 without a manager.
  u16 AddAllTrustedRoots(void* exchange);
  /// @return 1 when a root of exactly this ID was added, or when there are no roots.
  u16 IsATrustedRoot(u32 rootID) const;
  /// Sets the TLS options of an exchange.
  /// @return 0, or the manager's code; 1699 without a manager.
  u16 SetSSLOptions(void* exchange);
  /// Takes a VYProgressRecord or a VYFinishedRecord.
  /// @return 0.
  u16 DoCallback(VYCallbackStatus status, void* record);
  /// Appends the file of headers, if there is one, to the saved headers.
  void LoadHeaders();
  /// @return the HTTP status that a code of the manager means; 200 for a code that means none.
  static u32 MapVYNErrorToHttpStatus(u16 code);
  /// @return the status of an exchange that ended with a code of the manager.
  static KRNetStatus MapVYNErrorToNetStatus(u16 code);
  /// Waits until `*finished` is no longer 0. Each round handles at most one event and then pauses
  /// for at most 100 milliseconds. The event that quits the host's loop also ends the wait, and so
  /// does the end of the session or of the request.
  void WaitForReply(u16* finished);

 private:
  struct Exchange;

  KRNetStatus Run(const Exchange& exchange);
  KRNetStatus CarryOut(const Exchange& exchange, const krofx::internal::ExchangeCall& call);
  u16 Create(const Exchange& exchange, VYNConnectionManager& manager);
  KRNetStatus SetTrust(const Exchange& exchange);
  void TakeProgress(const VYProgressRecord& record);
  void TakeEnd(const VYFinishedRecord& record);

  krofx::internal::CertificateJudge m_judge;
  krofx::internal::ReplyFiles m_reply;
  u16 m_finished = 0;
  u16 m_lastError = 0;
  s32 m_timeout = 0;
  u16 m_verify = 1;
  u16 m_saveHeaders = 0;
  u32 m_httpStatus = 0;
  // Destroyed first: it ends the exchange, which could still call back.
  krofx::internal::SessionExchange m_exchange;
};

#endif  // KROFX_TRANSPORT_EXCHANGE_VYN_NET_REQUEST_H_
