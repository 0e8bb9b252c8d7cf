// One exchange from its first log line to its last: created, set up, started, waited for.

#include <cstring>

#include "krofx/core/buffer.h"
#include "krofx/core/string.h"
#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/exchange/internal/connection_session.h"
#include "krofx/transport/exchange/internal/log_line.h"
#include "krofx/transport/exchange/vyn_net_request.h"

using krofx::internal::ConnectionSession;
using krofx::internal::ExchangeCall;
using krofx::internal::kLogImportant;
using krofx::internal::LoggableUrl;
using krofx::internal::LogLine;

namespace {

constexpr const char kDefaultContentType[] = "application/x-ofx";
// Only in this spelling: a URL with another spelling of the scheme gets no TLS options.
constexpr const char kSecureScheme[] = "https:";

// The log lines of a fetch and of a send.
struct Lines {
  const char* begin;
  const char* end;
  const char* notCreated;
  const char* rootRejected;
  const char* sslRejected;
  const char* notStarted;
};

constexpr Lines kGetLines = {
    "VYN: Beginning get from %s",          "VYN: End get from %s, netstatus %d",
    "***VYN: VCGetFileRequest returns %d", "***VYN VCAddTrustedRoot:  %d (Get)",
    "***VYN VCSetSSLInfo:  %d (Get)",      "***VYN: VCInitiate returns %d",
};

constexpr Lines kSendLines = {
    "VYN: Beginning send to %s",       "VYN: End send to %s, netstatus %d",
    "***VYN VCSendDataRequest:  %d",   "***VYN VCAddTrustedRoot:  %d (Send)",
    "***VYN VCSetSSLInfo:  %d (Send)", "***VYN VCInitiate:  %d",
};

constexpr const char kHttpRejected[] = "***VYN VCSetHTTPInfo:  %d";

void* Counter(u32 count) { return reinterpret_cast<void*>(static_cast<uintptr_t>(count)); }

}  // namespace

// The parameters of an exchange. A fetch has no body, no headers and no content type.
struct VYNNetRequest::Exchange {
  const Lines& lines;
  u16 isPost;
  const KRString& url;
  const KRBuffer* body;
  const char* headers;
  const char* contentType;
};

KRNetStatus VYNNetRequest::Get(const KRString& url) {
  return Run({kGetLines, 0, url, nullptr, nullptr, nullptr});
}

KRNetStatus VYNNetRequest::Send(const KRString& url, KRBuffer* body) {
  return SendPlusHeadersContent(url, body, nullptr, nullptr);
}

KRNetStatus VYNNetRequest::SendPlusHeaders(const KRString& url, KRBuffer* body, char* headers) {
  return SendPlusHeadersContent(url, body, headers, nullptr);
}

KRNetStatus VYNNetRequest::SendPlusHeadersContent(const KRString& url, KRBuffer* body,
                                                  char* headers, const char* contentType) {
  return Run({kSendLines, 1, url, body, headers,
              contentType == nullptr ? kDefaultContentType : contentType});
}

KRNetStatus VYNNetRequest::Run(const Exchange& exchange) {
  if (m_exchange.HasCall()) return KRNetStatus_NotCreated;
  ExchangeCall call;
  m_exchange.SetCall(&call);
  const LoggableUrl url(exchange.url);
  LogLine(m_exchange.Log(), kLogImportant, exchange.lines.begin, url.Text());
  if (call.requestGone) return KRNetStatus_Failed;
  KRNetStatus status = KRNetStatus_NotFileUrl;
  if (exchange.isPost == 0) status = KRNetRequest::Get(exchange.url);
  const bool isLocal = status == KRNetStatus_Success;
  if (status == KRNetStatus_NotFileUrl) status = CarryOut(exchange, call);
  if (call.requestGone) return KRNetStatus_Failed;
  if (!isLocal) LogLine(m_exchange.Log(), kLogImportant, exchange.lines.end, url.Text(), status);
  if (call.requestGone) return status;
  m_exchange.Release();
  m_exchange.SetCall(nullptr);
  return status;
}

KRNetStatus VYNNetRequest::CarryOut(const Exchange& exchange, const ExchangeCall& call) {
  VYNConnectionManager* const manager = m_exchange.Manager();
  if (manager == nullptr) return KRNetStatus_NotCreated;
  if (exchange.isPost != 0 &&
      (exchange.body == nullptr || exchange.body->GetBufferPtr() == nullptr)) {
    return KRNetStatus_NotCreated;
  }
  m_reply.ClearNames();
  u16 code = Create(exchange, *manager);
  if (m_exchange.Handle() == nullptr) {
    LogLine(m_exchange.Log(), kLogImportant, exchange.lines.notCreated, code);
    return KRNetStatus_NotCreated;
  }
  m_reply.Forget();
  const KRNetStatus status = SetTrust(exchange);
  if (status != KRNetStatus_Success) return status;
  if (m_timeout != 0) {
    code = manager->VCSetHTTPInfo(m_exchange.Handle(), 0, exchange.isPost, exchange.contentType,
                                  exchange.headers, 1, m_timeout);
    if (code != 0) {
      // For hosts this failure is a success without a reply.
      LogLine(m_exchange.Log(), kLogImportant, kHttpRejected, code);
      return KRNetStatus_Success;
    }
  }

  m_finished = 0;
  m_lastError = 0;
  code = manager->VCInitiate(m_exchange.Session()->Handle(), m_exchange.Handle());
  if (call.requestGone) return KRNetStatus_Failed;
  if (code != 0) {
    LogLine(m_exchange.Log(), kLogImportant, exchange.lines.notStarted, code);
    return KRNetStatus_NotStarted;
  }
  WaitForReply(&m_finished);
  if (call.requestGone) return KRNetStatus_Failed;
  if (call.over && m_finished == 0) return KRNetStatus_Failed;
  if (m_saveHeaders == 1) LoadHeaders();
  if (m_lastError != 0 || m_reply.Size() == 0) m_reply.Drop();
  return MapVYNErrorToNetStatus(m_lastError);
}

u16 VYNNetRequest::Create(const Exchange& exchange, VYNConnectionManager& manager) {
  ConnectionSession& session = *m_exchange.Session();
  // A copy, since the manager may run host code that sets another path. A failed copy must not be
  // taken for an empty path, which means another folder.
  const KRString path(session.Access().GetTempFilePath());
  u16 error = 0;
  m_exchange.SetHandle(nullptr);
  if (path != session.Access().GetTempFilePath()) return error;
  void* const created =
      exchange.isPost != 0
          ? manager.VCSendDataRequest(&error, session.Handle(), exchange.url,
                                      exchange.body->GetBufferPtr(), exchange.body->GetBufferSize(),
                                      path, &VYNNetRequestCallback, this)
          : manager.VCGetFileRequest(&error, session.Handle(), exchange.url, path,
                                     &VYNNetRequestCallback, this);
  m_exchange.SetHandle(error == 0 ? created : nullptr);
  return error;
}

KRNetStatus VYNNetRequest::SetTrust(const Exchange& exchange) {
  if (std::strncmp(exchange.url, kSecureScheme, sizeof kSecureScheme - 1) != 0) {
    return KRNetStatus_Success;
  }
  u16 code = AddAllTrustedRoots(m_exchange.Handle());
  if (code != 0) {
    LogLine(m_exchange.Log(), kLogImportant, exchange.lines.rootRejected, code);
    return KRNetStatus_RootRejected;
  }
  code = SetSSLOptions(m_exchange.Handle());
  if (code != 0) {
    LogLine(m_exchange.Log(), kLogImportant, exchange.lines.sslRejected, code);
    return KRNetStatus_SslOptionsRejected;
  }
  return KRNetStatus_Success;
}

// The callback writes `*finished`, which is only read here.
// NOLINTNEXTLINE(readability-non-const-parameter)
void VYNNetRequest::WaitForReply(u16* finished) { m_exchange.Wait(finished); }

KRNetStatus VYNNetRequest::Abort() { return m_exchange.Cancel(); }

u16 VYNNetRequest::VYNNetRequestCallback(VYCallbackStatus status, void* record) {
  static_assert(offsetof(VYProgressRecord, userData) == offsetof(VYFinishedRecord, userData));
  if (record == nullptr) return 0;
  auto* const request =
      static_cast<VYNNetRequest*>(static_cast<const VYProgressRecord*>(record)->userData);
  return request == nullptr ? 0 : request->DoCallback(status, record);
}

u16 VYNNetRequest::DoCallback(VYCallbackStatus status, void* record) {
  if (record == nullptr) return 0;
  if (status == kVYProgress) TakeProgress(*static_cast<const VYProgressRecord*>(record));
  if (status == kVYFInished) TakeEnd(*static_cast<const VYFinishedRecord*>(record));
  return 0;
}

void VYNNetRequest::TakeProgress(const VYProgressRecord& record) {
  KRNetAccess* const access = m_exchange.Log();
  if (access == nullptr) return;
  const auto code = static_cast<KROpCode>(record.opCode);
  void* first = nullptr;
  void* second = nullptr;
  if (code == KROpCode_Sending) {
    first = Counter(record.sent);
    second = Counter(record.sendTotal);
  } else if (code == KROpCode_Receiving) {
    first = Counter(record.received);
    second = Counter(record.receiveTotal);
  }
  access->UpdateSessionStatus(code, first, second);
}

void VYNNetRequest::TakeEnd(const VYFinishedRecord& record) {
  // An exchange that is over can no longer be cancelled.
  m_exchange.SetHandle(nullptr);
  m_reply.Take(record);
  const u16 result = record.result;
  if (result != 0) m_lastError = result;
  m_httpStatus = MapVYNErrorToHttpStatus(result);
  m_finished = 1;
  // The host's log may destroy the request, so the line comes last.
  if (result != 0) {
    LogLine(m_exchange.Log(), kLogImportant, "***VYN kVYFInished: returns %d", result);
  }
}
