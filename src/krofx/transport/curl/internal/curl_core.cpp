// Sessions and exchanges, and how exchanges advance.

#include "krofx/transport/curl/internal/curl_core.h"

#include <chrono>
#include <climits>
#include <memory>
#include <utility>

#include "krofx/core/thread.h"
#include "krofx/security/internal/crypto_start.h"
#include "krofx/transport/curl/curl_code.h"

namespace krofx::internal {

namespace {

// Once for the process; undoing this would not be safe in a library.
bool StartCurl() {
  StartCrypto();
  static const CURLcode result = curl_global_init(CURL_GLOBAL_DEFAULT);
  return result == CURLE_OK;
}

// Gives a setting a text whose memory is there already: an assignment would need more, and could
// lose the text.
void Replace(KRString& setting, KRString&& text) {
  std::destroy_at(&setting);
  std::construct_at(&setting, std::move(text));
}

}  // namespace

struct CurlCore::Session : HeapObject {
  void* handle = nullptr;
  Session* next = nullptr;
};

// Used in every operation that can end exchanges or call back.
class CurlCore::Scope {
 public:
  explicit Scope(CurlCore& core) : m_core(core) { ++m_core.m_depth; }
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;
  ~Scope() {
    if (--m_core.m_depth != 0) return;
    m_core.Sweep();
    if (m_core.m_destroyed) delete &m_core;
  }

 private:
  CurlCore& m_core;
};

CurlCore::CurlCore() : m_multi(StartCurl() ? curl_multi_init() : nullptr) {}

CurlCore::~CurlCore() {
  while (m_sessions != nullptr) {
    Session* const session = m_sessions;
    m_sessions = session->next;
    delete session;
  }
  curl_multi_cleanup(m_multi);
}

void CurlCore::Destroy() {
  const Scope scope(*this);
  m_destroyed = true;
  for (CurlExchange* exchange = m_exchanges; exchange != nullptr; exchange = exchange->m_next) {
    Kill(*exchange);
  }
}

u16 CurlCore::SetProxy(const char* url, const char* exceptions) {
  if (m_exchanges != nullptr) return 0;
  KRString urlCopy(url);
  KRString exceptionsCopy(exceptions);
  if (urlCopy != url || exceptionsCopy != exceptions) return 0;
  Replace(m_settings.proxy, std::move(urlCopy));
  Replace(m_settings.proxyExceptions, std::move(exceptionsCopy));
  return 1;
}

u16 CurlCore::SetSystemRoots(const char* file, const char* folder) {
  if (m_exchanges != nullptr) return 0;
  KRString fileCopy(file);
  KRString folderCopy(folder);
  if (fileCopy != file || folderCopy != folder) return 0;
  Replace(m_settings.rootFile, std::move(fileCopy));
  Replace(m_settings.rootFolder, std::move(folderCopy));
  m_settings.ownRoots = file != nullptr || folder != nullptr;
  return 1;
}

void* CurlCore::OpenSession() {
  auto* const session = IsReady() ? new Session : nullptr;
  if (session == nullptr) return nullptr;
  session->handle = NewHandle();
  session->next = m_sessions;
  m_sessions = session;
  return session->handle;
}

u16 CurlCore::CloseSession(void* handle) {
  const Scope scope(*this);
  Session** const link = FindSession(handle);
  if (link == nullptr) return VYNCurlCode_BadArgument;
  Session* const session = *link;
  *link = session->next;
  delete session;
  for (CurlExchange* exchange = m_exchanges; exchange != nullptr; exchange = exchange->m_next) {
    if (exchange->m_session != handle) continue;
    if (exchange->m_state == ExchangeState::Created) Kill(*exchange);
    if (exchange->m_state == ExchangeState::Running) exchange->m_verdict = VYNCurlCode_Cancelled;
  }
  FinishVerdicts();
  return VYNCurlCode_Success;
}

u16 CurlCore::Connect(void* session) {
  return FindSession(session) == nullptr ? VYNCurlCode_BadArgument : VYNCurlCode_Success;
}

void* CurlCore::Create(u16& code, void* session, const ExchangeParameters& parameters) {
  code = VYNCurlCode_BadArgument;
  if (FindSession(session) == nullptr) return nullptr;
  auto* const exchange = new CurlExchange(NewHandle(), session);
  code = VYNCurlCode_NoMemory;
  if (exchange != nullptr) code = exchange->Create(parameters, m_settings);
  if (code != VYNCurlCode_Success) {
    delete exchange;
    return nullptr;
  }
  exchange->m_next = m_exchanges;
  m_exchanges = exchange;
  return exchange->m_handle;
}

u16 CurlCore::SetHttp(void* handle, u16 post, const char* contentType, const char* extraHeaders,
                      s32 timeout) {
  CurlExchange* const exchange = FindCreated(handle);
  if (exchange == nullptr) return VYNCurlCode_BadArgument;
  return exchange->SetHttp(post, contentType, extraHeaders, timeout);
}

u16 CurlCore::SetTls(void* handle, bool skipVerify, VYCertificateCallback callback) {
  CurlExchange* const exchange = FindCreated(handle);
  if (exchange == nullptr) return VYNCurlCode_BadArgument;
  exchange->SetTls(skipVerify, callback);
  return VYNCurlCode_Success;
}

u16 CurlCore::AddRoot(void* handle, const char* der, u32 length, s16 rootID) {
  CurlExchange* const exchange = FindCreated(handle);
  if (exchange == nullptr) return VYNCurlCode_BadArgument;
  return exchange->AddRoot(der, length, rootID);
}

u16 CurlCore::Initiate(void* session, void* handle) {
  const Scope scope(*this);
  CurlExchange* const exchange = FindInSession(session, handle);
  if (exchange == nullptr || exchange->m_state != ExchangeState::Created || m_inCurl) {
    return VYNCurlCode_BadArgument;
  }
  u16 code = exchange->Prepare();
  if (code == VYNCurlCode_Success && exchange->Easy() != nullptr &&
      curl_multi_add_handle(m_multi, exchange->Easy()) != CURLM_OK) {
    code = VYNCurlCode_NoMemory;
  }
  if (code == VYNCurlCode_Success) {
    exchange->m_state = ExchangeState::Running;
  } else {
    Kill(*exchange);
  }
  return code;
}

u16 CurlCore::Cancel(void* session, void* handle) {
  const Scope scope(*this);
  CurlExchange* const exchange = FindInSession(session, handle);
  if (exchange == nullptr || exchange->m_state == ExchangeState::Created) {
    return VYNCurlCode_BadArgument;
  }
  // An exchange that is already ending gets its record anyway.
  if (exchange->m_state == ExchangeState::Ending) return VYNCurlCode_Success;
  if (m_inCurl) {
    exchange->m_verdict = VYNCurlCode_Cancelled;
  } else {
    Finish(*exchange, VYNCurlCode_Cancelled);
  }
  return VYNCurlCode_Success;
}

void CurlCore::Release(void* session, void* handle) {
  const Scope scope(*this);
  CurlExchange* const exchange = FindInSession(session, handle);
  if (exchange != nullptr) Kill(*exchange);
}

void CurlCore::Work(u32 milliseconds) {
  const Scope scope(*this);
  if (m_inCurl) return;
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
  const bool paced = std::exchange(m_paced, false);
  // A callback may call Work too, and see the end of an exchange before this call does.
  const u32 known = m_knownEnds;
  bool moved = Turn() && !paced;
  while (!moved && m_ends == known && !m_destroyed) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    if (left <= 0) break;
    const int wait = left > INT_MAX ? INT_MAX : static_cast<int>(left);
    curl_multi_poll(m_multi, nullptr, 0, wait, nullptr);
    Turn();
    moved = !paced;
  }
  m_knownEnds = m_ends;
}

// Advances all exchanges by one step; true when a callback was made.
bool CurlCore::Turn() {
  int running = 0;
  TakeCertificateRefusal();
  m_inCurl = true;
  curl_multi_perform(m_multi, &running);
  m_inCurl = false;
  const bool certificateRefused = TakeCertificateRefusal();
  bool reported = FinishVerdicts();
  reported = TellProgress() || reported;
  return FinishTransfers(certificateRefused) || reported;
}

// Each of the next three functions starts again from the beginning of the list after every
// callback, which may have changed the list.

bool CurlCore::TellProgress() {
  bool reported = false;
  CurlExchange* exchange = m_exchanges;
  while (exchange != nullptr) {
    if (!exchange->HasNews()) {
      exchange = exchange->m_next;
      continue;
    }
    VYProgressRecord record = exchange->TakeNews();
    exchange->Callback()(kVYProgress, &record);
    reported = true;
    exchange = m_exchanges;
  }
  return reported;
}

bool CurlCore::FinishVerdicts() {
  if (m_inCurl) return false;
  bool reported = false;
  CurlExchange* exchange = m_exchanges;
  while (exchange != nullptr) {
    if (exchange->m_state != ExchangeState::Running || exchange->m_verdict == 0) {
      exchange = exchange->m_next;
      continue;
    }
    Finish(*exchange, exchange->m_verdict);
    reported = true;
    exchange = m_exchanges;
  }
  return reported;
}

bool CurlCore::FinishTransfers(bool certificateRefused) {
  bool reported = false;
  int left = 0;
  while (const CURLMsg* const message = curl_multi_info_read(m_multi, &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const CURLcode result = message->data.result;
    CurlExchange* exchange = nullptr;
    curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &exchange);
    if (exchange == nullptr || exchange->m_state != ExchangeState::Running) continue;
    exchange->m_state = ExchangeState::Ending;
    const u16 code = exchange->Result(result, certificateRefused);
    if (exchange->m_state == ExchangeState::Ending) Finish(*exchange, code);
    reported = true;
  }
  return reported;
}

void CurlCore::Finish(CurlExchange& exchange, u16 code) {
  m_httpStatus = exchange.HttpStatus();
  Kill(exchange);
  VYFinishedRecord record;
  exchange.Finish(code, record);
  if (code == VYNCurlCode_NoMemory) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  if (exchange.Callback() != nullptr) exchange.Callback()(kVYFInished, &record);
}

void CurlCore::Kill(CurlExchange& exchange) {
  ++m_ends;
  exchange.m_state = ExchangeState::Dead;
  Detach(exchange);
}

void CurlCore::Detach(CurlExchange& exchange) {
  if (!m_inCurl && exchange.Easy() != nullptr) curl_multi_remove_handle(m_multi, exchange.Easy());
}

// Deletes dead exchanges.
void CurlCore::Sweep() {
  CurlExchange** link = &m_exchanges;
  while (*link != nullptr) {
    CurlExchange* const exchange = *link;
    if (exchange->m_state != ExchangeState::Dead) {
      link = &exchange->m_next;
      continue;
    }
    *link = exchange->m_next;
    Detach(*exchange);
    delete exchange;
  }
}

CurlCore::Session** CurlCore::FindSession(void* handle) {
  for (Session** link = &m_sessions; *link != nullptr; link = &(*link)->next) {
    if ((*link)->handle == handle) return link;
  }
  return nullptr;
}

CurlExchange* CurlCore::FindExchange(void* handle) {
  CurlExchange* exchange = m_exchanges;
  while (exchange != nullptr &&
         (exchange->m_handle != handle || exchange->m_state == ExchangeState::Dead)) {
    exchange = exchange->m_next;
  }
  return exchange;
}

CurlExchange* CurlCore::FindInSession(void* session, void* handle) {
  CurlExchange* const exchange = FindExchange(handle);
  return exchange != nullptr && exchange->m_session == session ? exchange : nullptr;
}

CurlExchange* CurlCore::FindCreated(void* handle) {
  CurlExchange* const exchange = FindExchange(handle);
  return exchange != nullptr && exchange->m_state == ExchangeState::Created ? exchange : nullptr;
}

}  // namespace krofx::internal
