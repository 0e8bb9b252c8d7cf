// Opens, connects and closes a session.

#include "krofx/transport/exchange/internal/connection_session.h"

#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/curl/curl_manager.h"
#include "krofx/transport/exchange/internal/log_line.h"
#include "krofx/transport/exchange/internal/session_exchange.h"

namespace krofx::internal {

namespace {

// The one code of VCConnect with a status of its own.
constexpr u16 kConnectRefused = 2200;

}  // namespace

ConnectionSession::ConnectionSession(KRNetAccess& access, VYNConnectionManager* manager,
                                     VYNWaitPlatform* platform)
    : m_access(access),
      m_manager(manager),
      m_platform(platform == nullptr ? &m_ownPlatform : platform) {
  if (manager == nullptr) m_manager = m_ownManager = new VYNCurlManager;
}

ConnectionSession::~ConnectionSession() {
  EndExchanges();
  while (m_exchanges != nullptr) m_exchanges->Leave();
  if (OwnsHandle()) m_manager->VCCloseInet(m_handle);
  delete m_ownManager;
}

bool ConnectionSession::OwnsHandle() const {
  return m_manager != nullptr && m_handle != nullptr && !m_fromHost;
}

KRNetStatus ConnectionSession::Open() {
  if (m_manager == nullptr) return KRNetStatus_Failed;
  u16 code = 0;
  if (!m_fromHost && m_handle == nullptr) {
    m_handle = m_manager->VCOpenInet(&code);
    if (m_handle == nullptr || code != 0) {
      Note(code, "***VYN: VCOpenInet returns %d");
      return KRNetStatus_Failed;
    }
  }
  if (m_handle != nullptr && !m_connected) {
    code = m_manager->VCConnect(m_handle);
    if (code != 0) {
      Note(code, "***VYN: VCConnect returns %d");
      return code == kConnectRefused ? KRNetStatus_Refused : KRNetStatus_Failed;
    }
    m_connected = true;
  }
  m_lastError = code;
  return KRNetStatus_Success;
}

KRNetStatus ConnectionSession::Close() {
  EndExchanges();
  u16 code = 0;
  // VCCloseInet is called even if no session was opened; a session of the host is only forgotten.
  if (!m_fromHost && m_manager != nullptr) code = m_manager->VCCloseInet(m_handle);
  m_handle = nullptr;
  m_connected = false;
  m_fromHost = false;
  if (code == 0) return KRNetStatus_Success;
  LogLine(&m_access, kLogImportant, "***VYN: VCCloseInet returns %d", code);
  return KRNetStatus_CloseFailed;
}

void ConnectionSession::Adopt(void* session) {
  if (session != m_handle) {
    // Exchanges of the old session cannot continue in the new one, which is not connected yet.
    EndExchanges();
    if (OwnsHandle()) m_manager->VCCloseInet(m_handle);
    m_connected = false;
  }
  m_handle = session;
  m_fromHost = true;
}

bool ConnectionSession::IsNetworkSetUp() {
  if (m_manager == nullptr) return false;
  u32 needs = 0;
  const u16 code = m_manager->VY_IspConfig_NeedsToConfigure(&needs);
  if (code != 0) Note(code, "***VYN: VY_IspConfig_NeedsToConfigure returns %d");
  return code == 0 && needs != 1;
}

void ConnectionSession::Add(SessionExchange& exchange) {
  exchange.m_previous = nullptr;
  exchange.m_next = m_exchanges;
  if (m_exchanges != nullptr) m_exchanges->m_previous = &exchange;
  m_exchanges = &exchange;
}

void ConnectionSession::Remove(SessionExchange& exchange) {
  SessionExchange* const next = exchange.m_next;
  SessionExchange* const previous = exchange.m_previous;
  (previous == nullptr ? m_exchanges : previous->m_next) = next;
  if (next != nullptr) next->m_previous = previous;
}

void ConnectionSession::EndExchanges() {
  for (SessionExchange* exchange = m_exchanges; exchange != nullptr; exchange = exchange->m_next) {
    exchange->End();
  }
}

// The host's log may destroy this object, so the line comes last.
void ConnectionSession::Note(u16 code, const char* line) {
  m_lastError = code;
  LogLine(&m_access, kLogImportant, line, code);
}

}  // namespace krofx::internal
