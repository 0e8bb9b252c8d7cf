// What all connections share: settings, and callbacks that may be null.

#include "krofx/transport/contract/net_access.h"

KRNetAccess::KRNetAccess() : m_agentName("NONAME") {}

KRNetAccess::~KRNetAccess() = default;

void KRNetAccess::SetAgentName(const KRString& name) { m_agentName = name; }

void KRNetAccess::SetTempFilePath(const KRString& path) { m_tempFilePath = path; }

void KRNetAccess::SetLogCallback(void (*callback)(const char*, u16, const char*)) {
  m_logCallback = callback;
}

void KRNetAccess::LogMessage(const char* text, u16 level, const char* extra) {
  if (m_logCallback != nullptr) m_logCallback(text, level, extra);
}

void KRNetAccess::SetSessionCallback(void (*callback)(KROpCode, void*, void*)) {
  m_sessionCallback = callback;
}

void KRNetAccess::UpdateSessionStatus(KROpCode code, void* a, void* b) {
  if (m_sessionCallback != nullptr) m_sessionCallback(code, a, b);
}

u16 KRNetAccess::SetGlobalState(void* /*state*/) { return 0; }

u16 KRNetAccess::GetStatus(u32& /*lastError*/) const { return 0; }

void KRNetAccess::GetAgentName(KRString& name) const { name = m_agentName; }

void KRNetAccess::GetTempFilePath(KRString& path) const { path = m_tempFilePath; }
