// One exchange from its first log line to its last: created, set up, started, waited for.

#include <cstring>
#include <new>

#include "krofx/core/buffer.h"
#include "krofx/core/string.h"
#include "krofx/transport/local_file.h"
#include "krofx/transport/log_line.h"
#include "krofx/transport/vyn_net_access.h"
#include "krofx/transport/vyn_net_request.h"

using krofx::internal::kLogImportant;
using krofx::internal::LoggableUrl;
using krofx::internal::LogLine;

namespace {

constexpr u32 kRoundMilliseconds = 100;
constexpr char const kDefaultContentType[] = "application/x-ofx";
// Only in these letters: a URL that spells its scheme otherwise is passed on without TLS options.
constexpr char const kSecureScheme[] = "https:";

// What a fetch and a send say in the log.
struct Lines {
  char const* begin;
  char const* end;
  char const* notCreated;
  char const* rootRejected;
  char const* sslRejected;
  char const* notStarted;
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

constexpr char const kHttpRejected[] = "***VYN VCSetHTTPInfo:  %d";

void* Counter(u32 count) { return reinterpret_cast<void*>(static_cast<uintptr_t>(count)); }

// Copies a name out of a record, which may lack its NUL.
template <std::size_t kRoom>
void CopyName(char (&to)[kRoom], char const* from, std::size_t size) {
  std::size_t const length = strnlen(from, size < kRoom ? size : kRoom - 1);
  std::memcpy(to, from, length);
  to[length] = '\0';
}

}  // namespace

// What is to be done. A fetch has no body, no headers and no content type.
struct VYNNetRequest::Exchange {
  Lines const& lines;
  u16 isPost;
  KRString const& url;
  KRBuffer const* body;
  char const* headers;
  char const* contentType;
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

KRNetStatus VYNNetRequest::Run(Exchange const& exchange) {
  if (m_call != nullptr) return KRNetStatus_NotCreated;
  Call call;
  m_call = &call;
  LoggableUrl const url(exchange.url);
  LogLine(m_access, kLogImportant, exchange.lines.begin, url.Text());
  if (call.requestGone) return KRNetStatus_Failed;
  KRNetStatus status = KRNetStatus_NotFileUrl;
  if (exchange.isPost == 0) status = KRNetRequest::Get(exchange.url);
  bool const isLocal = status == KRNetStatus_Success;
  if (status == KRNetStatus_NotFileUrl) status = CarryOut(exchange, call);
  if (call.requestGone) return KRNetStatus_Failed;
  if (!isLocal) LogLine(m_access, kLogImportant, exchange.lines.end, url.Text(), status);
  if (call.requestGone) return status;
  ReleaseExchange();
  m_call = nullptr;
  return status;
}

KRNetStatus VYNNetRequest::CarryOut(Exchange const& exchange, Call const& call) {
  Lines const& lines = exchange.lines;
  VYNConnectionManager* const manager = Manager();
  if (manager == nullptr) return KRNetStatus_NotCreated;
  if (exchange.isPost != 0 &&
      (exchange.body == nullptr || exchange.body->GetBufferPtr() == nullptr)) {
    return KRNetStatus_NotCreated;
  }
  u16 code = Create(exchange);
  if (m_exchange == nullptr) {
    LogLine(m_access, kLogImportant, lines.notCreated, code);
    return KRNetStatus_NotCreated;
  }
  if (std::strncmp(exchange.url, kSecureScheme, sizeof kSecureScheme - 1) == 0) {
    code = AddAllTrustedRoots(m_exchange);
    if (code != 0) {
      LogLine(m_access, kLogImportant, lines.rootRejected, code);
      return KRNetStatus_RootRejected;
    }
    code = SetSSLOptions(m_exchange);
    if (code != 0) {
      LogLine(m_access, kLogImportant, lines.sslRejected, code);
      return KRNetStatus_SslOptionsRejected;
    }
  }
  if (m_timeout != 0) {
    code = manager->VCSetHTTPInfo(m_exchange, 0, exchange.isPost, exchange.contentType,
                                  exchange.headers, 1, m_timeout);
    if (code != 0) {
      // Hosts know this failure as a success without a reply.
      LogLine(m_access, kLogImportant, kHttpRejected, code);
      return KRNetStatus_Success;
    }
  }

  ForgetReply();
  code = manager->VCInitiate(m_access->GetVYNSession(), m_exchange);
  if (call.requestGone) return KRNetStatus_Failed;
  if (code != 0) {
    LogLine(m_access, kLogImportant, lines.notStarted, code);
    return KRNetStatus_NotStarted;
  }
  WaitForReply(&m_finished);
  if (call.requestGone) return KRNetStatus_Failed;
  if (call.over && m_finished == 0) return KRNetStatus_Failed;
  if (m_saveHeaders == 1) LoadHeaders();
  if (m_lastError != 0 || m_replySize == 0) {
    DeleteReplyFiles();
    m_replySize = 0;
  }
  return MapVYNErrorToNetStatus(m_lastError);
}

u16 VYNNetRequest::Create(Exchange const& exchange) {
  VYNConnectionManager& manager = *Manager();
  void* const session = m_access->GetVYNSession();
  u16 error = 0;
  KRString path;
  m_exchange = nullptr;
  if (!m_access->CopyTempFilePath(path)) return error;
  void* const created =
      exchange.isPost != 0 ? manager.VCSendDataRequest(
                                 &error, session, exchange.url, exchange.body->GetBufferPtr(),
                                 exchange.body->GetBufferSize(), path, &VYNNetRequestCallback, this)
                           : manager.VCGetFileRequest(&error, session, exchange.url, path,
                                                      &VYNNetRequestCallback, this);
  if (error == 0) m_exchange = created;
  return error;
}

void VYNNetRequest::ForgetReply() {
  DeleteReplyFiles();
  m_finished = 0;
  m_replySize = 0;
  m_lastError = 0;
  m_replyFile[0] = '\0';
  m_headerFile[0] = '\0';
}

// The callback writes what is only read here.
// NOLINTNEXTLINE(readability-non-const-parameter)
void VYNNetRequest::WaitForReply(u16* finished) {
  VYNConnectionManager* const manager = Manager();
  if (finished == nullptr || manager == nullptr) return;
  VYNWaitPlatform& platform = *m_access->m_platform;
  Call own;
  bool const isOuter = m_call == nullptr;
  // Laundered, since an optimising compiler takes the plain address for one that outlives its
  // object: it does not see that a request which is gone holds it no more.
  if (isOuter) m_call = std::launder(&own);
  Call const& call = *m_call;
  // What `finished` points to may be gone with the request, so the call is asked first.
  while (!call.over && *finished == 0) {
    if (platform.HandleOneEvent() == VYNEventResult_Quit) break;
    if (!call.over) platform.Pause(kRoundMilliseconds, *manager);
  }
  if (isOuter && !own.requestGone) m_call = nullptr;
}

u16 VYNNetRequest::VYNNetRequestCallback(VYCallbackStatus status, void* record) {
  static_assert(offsetof(VYProgressRecord, userData) == offsetof(VYFinishedRecord, userData));
  if (record == nullptr) return 0;
  auto* const request =
      static_cast<VYNNetRequest*>(static_cast<VYProgressRecord const*>(record)->userData);
  return request == nullptr ? 0 : request->DoCallback(status, record);
}

u16 VYNNetRequest::DoCallback(VYCallbackStatus status, void* record) {
  if (record == nullptr) return 0;
  if (status == kVYProgress) TakeProgress(*static_cast<VYProgressRecord const*>(record));
  if (status == kVYFInished) TakeEnd(*static_cast<VYFinishedRecord const*>(record));
  return 0;
}

void VYNNetRequest::TakeProgress(VYProgressRecord const& record) {
  if (m_access == nullptr) return;
  auto const code = static_cast<KROpCode>(record.opCode);
  void* first = nullptr;
  void* second = nullptr;
  if (code == KROpCode_Sending) {
    first = Counter(record.sent);
    second = Counter(record.sendTotal);
  } else if (code == KROpCode_Receiving) {
    first = Counter(record.received);
    second = Counter(record.receiveTotal);
  }
  m_access->UpdateSessionStatus(code, first, second);
}

void VYNNetRequest::TakeEnd(VYFinishedRecord const& record) {
  // Behind its end an exchange has no handle that could be cancelled.
  m_exchange = nullptr;
  CopyName(m_replyFile, record.replyFile, sizeof record.replyFile);
  CopyName(m_headerFile, record.headerFile, sizeof record.headerFile);
  m_filesLeft = true;
  krofx::internal::LocalFileSize(m_replyFile, m_replySize);
  u16 const result = record.result;
  if (result != 0) m_lastError = result;
  m_httpStatus = MapVYNErrorToHttpStatus(result);
  m_finished = 1;
  // The host's log may destroy the request: nothing is touched behind it.
  if (result != 0) LogLine(m_access, kLogImportant, "***VYN kVYFInished: returns %d", result);
}

KRNetStatus VYNNetRequest::Abort() {
  if (m_exchange == nullptr) return KRNetStatus_Success;
  u16 const code = Manager()->VCCancel(m_access->GetVYNSession(), m_exchange);
  if (code == 0) return KRNetStatus_Success;
  LogLine(m_access, kLogImportant, "***VYN VCCancel:  %d", code);
  return KRNetStatus_CancelFailed;
}

void VYNNetRequest::ReleaseExchange() {
  if (m_exchange == nullptr) return;
  void* const exchange = m_exchange;
  m_exchange = nullptr;
  Manager()->VCRelease(m_access->GetVYNSession(), exchange);
}

void VYNNetRequest::EndExchange() {
  ReleaseExchange();
  if (m_call != nullptr) m_call->over = true;
}
