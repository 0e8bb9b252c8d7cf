// The manager's operations. The core does the work, and can outlive the manager while a callback is
// running.

#include "krofx/transport/curl/curl_manager.h"

#include "krofx/core/thread.h"
#include "krofx/transport/curl/internal/curl_core.h"

using krofx::internal::CurlCore;
using krofx::internal::ExchangeParameters;

namespace {

u16 Noted(u16 code) {
  if (code == VYNCurlCode_NoMemory) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return code;
}

// Without a core no session opens, so no handle is valid.
template <class... Parameters, class... Arguments>
u16 Ask(CurlCore* core, u16 (CurlCore::*operation)(Parameters...), Arguments... arguments) {
  return core == nullptr ? u16{VYNCurlCode_BadArgument} : Noted((core->*operation)(arguments...));
}

void* Create(CurlCore* core, u16* error, void* session, const ExchangeParameters& parameters) {
  u16 code = VYNCurlCode_BadArgument;
  void* const exchange = core == nullptr ? nullptr : core->Create(code, session, parameters);
  if (error != nullptr) *error = Noted(code);
  return exchange;
}

}  // namespace

VYNCurlManager::VYNCurlManager() : m_core(new CurlCore) { SetReplyLimit(kDefaultReplyLimit); }

VYNCurlManager::~VYNCurlManager() {
  if (m_core != nullptr) m_core->Destroy();
}

void VYNCurlManager::SetReplyLimit(u32 bytes) {
  if (m_core != nullptr) m_core->SetReplyLimit(bytes);
}

u32 VYNCurlManager::GetHttpStatus() const {
  return m_core == nullptr ? u32{0} : m_core->GetHttpStatus();
}

u16 VYNCurlManager::SetProxy(const char* url, const char* exceptions) {
  return m_core == nullptr ? u16{0} : m_core->SetProxy(url, exceptions);
}

u16 VYNCurlManager::SetSystemRoots(const char* file, const char* folder) {
  return m_core == nullptr ? u16{0} : m_core->SetSystemRoots(file, folder);
}

void* VYNCurlManager::VCOpenInet(u16* error) {
  void* const session = m_core == nullptr ? nullptr : m_core->OpenSession();
  const u16 code = session == nullptr ? VYNCurlCode_NoMemory : VYNCurlCode_Success;
  if (error != nullptr) *error = code;
  Noted(code);
  return session;
}

u16 VYNCurlManager::VCCloseInet(void* session) {
  if (session == nullptr) return VYNCurlCode_Success;
  return Ask(m_core, &CurlCore::CloseSession, session);
}

u16 VYNCurlManager::VCConnect(void* session) { return Ask(m_core, &CurlCore::Connect, session); }

void* VYNCurlManager::VCSendDataRequest(u16* error, void* session, const char* url,
                                        const char* data, u32 size, const char* tempPath,
                                        VYProgressCallback callback, void* userData) {
  return Create(m_core, error, session, {url, data, size, true, tempPath, callback, userData});
}

void* VYNCurlManager::VCGetFileRequest(u16* error, void* session, const char* url,
                                       const char* tempPath, VYProgressCallback callback,
                                       void* userData) {
  return Create(m_core, error, session, {url, nullptr, 0, false, tempPath, callback, userData});
}

u16 VYNCurlManager::VCSetHTTPInfo(void* exchange, u32, u16 post, const char* contentType,
                                  const char* extraHeaders, u32, s32 timeout) {
  return Ask(m_core, &CurlCore::SetHttp, exchange, post, contentType, extraHeaders, timeout);
}

u16 VYNCurlManager::VCSetSSLInfo(void* exchange, u16 skipVerify, VYCertificateCallback callback,
                                 u32) {
  return Ask(m_core, &CurlCore::SetTls, exchange, skipVerify == 1, callback);
}

u16 VYNCurlManager::VCAddTrustedRoot(void* exchange, const char* der, u32 length, s16 rootID) {
  return Ask(m_core, &CurlCore::AddRoot, exchange, der, length, rootID);
}

u16 VYNCurlManager::VCInitiate(void* session, void* exchange) {
  return Ask(m_core, &CurlCore::Initiate, session, exchange);
}

u16 VYNCurlManager::VCCancel(void* session, void* exchange) {
  return Ask(m_core, &CurlCore::Cancel, session, exchange);
}

void VYNCurlManager::VCRelease(void* session, void* exchange) {
  if (m_core != nullptr) m_core->Release(session, exchange);
}

u16 VYNCurlManager::VY_IspConfig_NeedsToConfigure(u32* needs) {
  if (needs == nullptr) return VYNCurlCode_BadArgument;
  *needs = 0;
  return VYNCurlCode_Success;
}

// Without a core there are no exchanges, and the time passes as in any other manager.
void VYNCurlManager::VCWork(u32 milliseconds) {
  if (m_core != nullptr && m_core->IsReady()) {
    m_core->Work(milliseconds);
  } else {
    VYNConnectionManager::VCWork(milliseconds);
  }
}

void VYNCurlManager::VCPaceWork() {
  if (m_core != nullptr) m_core->PaceWork();
}
