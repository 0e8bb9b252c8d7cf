// Waits for an exchange, cancels it and releases it.

#include "krofx/transport/exchange/internal/session_exchange.h"

#include <new>

#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/contract/wait_platform.h"
#include "krofx/transport/exchange/internal/connection_session.h"
#include "krofx/transport/exchange/internal/log_line.h"

namespace krofx::internal {

namespace {

constexpr u32 kRoundMilliseconds = 100;

// Pauses until the round or the exchange is over, also if the manager works for a shorter time.
// Once the call is over, the platform and the manager may be gone.
void PauseRound(const ExchangeCall& call, const u16& finished, VYNWaitPlatform& platform,
                VYNConnectionManager& manager) {
  const std::uint64_t start = platform.Clock();
  std::uint64_t passed = 0;
  while (passed < kRoundMilliseconds) {
    manager.VCPaceWork();
    platform.Pause(kRoundMilliseconds - static_cast<u32>(passed), manager);
    if (call.over || finished != 0 || start == 0) return;
    passed = platform.Clock() - start;
  }
}

}  // namespace

SessionExchange::~SessionExchange() {
  End();
  if (m_call != nullptr) m_call->requestGone = true;
  Leave();
}

void SessionExchange::Join(ConnectionSession* session) {
  Leave();
  m_session = session;
  if (session != nullptr) session->Add(*this);
}

void SessionExchange::Leave() {
  if (m_session != nullptr) m_session->Remove(*this);
  m_session = nullptr;
}

VYNConnectionManager* SessionExchange::Manager() const {
  return m_session == nullptr ? nullptr : m_session->Manager();
}

KRNetAccess* SessionExchange::Log() const {
  return m_session == nullptr ? nullptr : &m_session->Access();
}

void SessionExchange::Wait(const u16* finished) {
  VYNConnectionManager* const manager = Manager();
  if (finished == nullptr || manager == nullptr) return;
  VYNWaitPlatform& platform = m_session->Platform();
  ExchangeCall own;
  const bool isOuter = m_call == nullptr;
  // Laundered, so that the compiler does not warn that the address outlives its object: it cannot
  // see that a destroyed request no longer holds it.
  if (isOuter) m_call = std::launder(&own);
  const ExchangeCall& call = *m_call;
  // `finished` may point into a request that was destroyed, so the call's state is checked first.
  while (!call.over && *finished == 0) {
    if (platform.HandleOneEvent() == VYNEventResult_Quit) break;
    if (call.over) break;
    PauseRound(call, *finished, platform, *manager);
  }
  if (isOuter && !own.requestGone) m_call = nullptr;
}

KRNetStatus SessionExchange::Cancel() {
  if (m_handle == nullptr) return KRNetStatus_Success;
  const u16 code = Manager()->VCCancel(m_session->Handle(), m_handle);
  if (code == 0) return KRNetStatus_Success;
  LogLine(Log(), kLogImportant, "***VYN VCCancel:  %d", code);
  return KRNetStatus_CancelFailed;
}

void SessionExchange::Release() {
  if (m_handle == nullptr) return;
  void* const handle = m_handle;
  m_handle = nullptr;
  Manager()->VCRelease(m_session->Handle(), handle);
}

void SessionExchange::End() {
  Release();
  if (m_call != nullptr) m_call->over = true;
}

}  // namespace krofx::internal
