// Callbacks with a context, over a contract that has none: the objects themselves are the context.

#include "krofx/host/exchange_access.h"

#include <cstdint>

#include "krofx/core/buffer.h"
#include "krofx/core/thread.h"
#include "krofx/security/certificate_id.h"

namespace krofx::internal {

namespace {

// What the manager calls in place of the transport's own decision, which it then asks.
u16 NoteAndJudge(SSLCertificateChain* chain, u32 rootID, u16 error, void* request, u32 first,
                 u32 second) {
  auto* const watching = static_cast<WatchingRequest*>(static_cast<VYNNetRequest*>(request));
  if (watching != nullptr) watching->Note(chain);
  return VYNNetRequest::VYNSSLCertificateCallback(chain, rootID, error, request, first, second);
}

u32 CounterIn(const void* pointer) {
  return static_cast<u32>(reinterpret_cast<std::uintptr_t>(pointer));
}

}  // namespace

void WatchingRequest::Note(const SSLCertificateChain* chain) {
  if (chain == nullptr) return;
  while (chain->next != nullptr) chain = chain->next;
  KRBuffer der(chain->length, 0);
  KRCertID id;
  if (der.Write(chain->der, chain->length) != KRBufferOK ||
      id.SetCertBER(&der) != KRSecStatus_Success) {
    // Without the ID it looks as if no certificate had been shown.
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return;
  }
  const KRBuffer& text = *id.GetEncodedCertIDPtr();
  m_seen.Assign(text.GetBufferPtr(), static_cast<u16>(text.GetBufferSize()));
}

u16 WatchingManager::VCSetSSLInfo(void* exchange, u16 skipVerify, VYCertificateCallback,
                                  u32 constant) {
  return VYNCurlManager::VCSetSSLInfo(exchange, skipVerify, &NoteAndJudge, constant);
}

void WatchingAccess::UpdateSessionStatus(KROpCode code, void* a, void* b) {
  m_progress = {code, CounterIn(a), CounterIn(b)};
  Say();
}

void WatchingAccess::LogMessage(const char* text, u16 /*level*/, const char* /*extra*/) {
  if (m_onLog) m_onLog(text);
}

VYNEventResult WatchingAccess::HandleOneEvent() {
  Say();
  return VYNEventResult_None;
}

void WatchingAccess::Say() {
  if (m_isCancelled || !m_onProgress || m_onProgress(m_progress)) return;
  m_isCancelled = true;
  if (m_request != nullptr) m_request->Abort();
}

}  // namespace krofx::internal
