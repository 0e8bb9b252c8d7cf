// The session of the connection-manager transport: opening, connecting, closing.

#include "krofx/transport/vyn_net_access.h"

#include "krofx/core/string.h"
#include "krofx/core/thread.h"
#include "krofx/transport/log_line.h"
#include "krofx/transport/module_path.h"
#include "krofx/transport/vyn_net_request.h"

using krofx::internal::kLogImportant;
using krofx::internal::LogLine;

namespace {

// The code of VCConnect that has a status of its own.
constexpr u16 kConnectRefused = 2200;

}  // namespace

VYNNetAccess::VYNNetAccess(VYNConnectionManager* manager, VYNWaitPlatform* platform)
    : m_manager(manager), m_platform(platform == nullptr ? &m_ownPlatform : platform) {
  if (manager == nullptr) {
    m_ownManager = krofx::internal::NewDefaultConnectionManager();
    m_manager = m_ownManager;
  }
}

VYNNetAccess::~VYNNetAccess() {
  EndExchanges();
  while (m_requests != nullptr) m_requests->LeaveAccess();
  if (m_manager != nullptr && m_session != nullptr && m_globalState == 0) {
    m_manager->VCCloseInet(m_session);
  }
  delete m_ownManager;
}

u16 VYNNetAccess::CanDoNetworkSetup() { return 1; }

u16 VYNNetAccess::DoNetworkSetup() { return 0; }

u16 VYNNetAccess::IsNetworkSetup() {
  if (m_manager == nullptr) return 0;
  u32 needs = 0;
  u16 const code = m_manager->VY_IspConfig_NeedsToConfigure(&needs);
  if (code != 0) {
    m_lastError = code;
    LogLine(this, kLogImportant, "***VYN: VY_IspConfig_NeedsToConfigure returns %d", code);
    return 0;
  }
  return needs == 1 ? 0 : 1;
}

KRNetStatus VYNNetAccess::InitConnection() { return OpenInternetIfNeeded(); }

KRNetStatus VYNNetAccess::OpenInternetIfNeeded() {
  if (m_manager == nullptr) return KRNetStatus_Failed;
  u16 code = 0;
  if (m_globalState != 1 && m_session == nullptr) {
    m_session = m_manager->VCOpenInet(&code);
    if (m_session == nullptr || code != 0) {
      m_lastError = code;
      LogLine(this, kLogImportant, "***VYN: VCOpenInet returns %d", code);
      return KRNetStatus_Failed;
    }
  }
  if (m_session != nullptr && m_connected == 0) {
    code = m_manager->VCConnect(m_session);
    if (code != 0) {
      m_lastError = code;
      LogLine(this, kLogImportant, "***VYN: VCConnect returns %d", code);
      return code == kConnectRefused ? KRNetStatus_Refused : KRNetStatus_Failed;
    }
    m_connected = 1;
  }
  m_lastError = code;
  return KRNetStatus_Success;
}

KRNetStatus VYNNetAccess::EndConnection() {
  EndExchanges();
  u16 code = 0;
  if (m_globalState == 0 && m_manager != nullptr) code = m_manager->VCCloseInet(m_session);
  m_session = nullptr;
  m_connected = 0;
  m_globalState = 0;
  if (code == 0) return KRNetStatus_Success;
  LogLine(this, kLogImportant, "***VYN: VCCloseInet returns %d", code);
  return KRNetStatus_CloseFailed;
}

KRNetRequest* VYNNetAccess::NewNetRequest() {
  auto* const request = new VYNNetRequest;
  if (request == nullptr) return nullptr;
  if (!request->IsWhole()) {
    delete request;
    return nullptr;
  }
  request->SetAccess(this);
  return request;
}

KRNetStatus VYNNetAccess::DeleteNetRequest(KRNetRequest* request) {
  delete request;
  return KRNetStatus_Success;
}

u16 VYNNetAccess::SetGlobalState(void* session) {
  if (session != m_session) {
    // What runs in the old session cannot go on in the new one, which is not connected yet.
    EndExchanges();
    if (m_manager != nullptr && m_session != nullptr && m_globalState == 0) {
      m_manager->VCCloseInet(m_session);
    }
    m_connected = 0;
  }
  m_session = session;
  m_globalState = 1;
  return 1;
}

u16 VYNNetAccess::GetStatus(u32& lastError) const {
  lastError = m_lastError;
  return 1;
}

void VYNNetAccess::SetupTempPathFromHInst(HINSTANCE module, KRString& path) {
  char name[krofx::internal::kModuleNameSize];
  krofx::internal::ModuleFileName(module, name);
  krofx::internal::FolderOfFileName(name, path);
}

void VYNNetAccess::EndExchanges() {
  for (VYNNetRequest* request = m_requests; request != nullptr; request = request->m_next) {
    request->EndExchange();
  }
}

// A copy that failed must not pass for an empty path, which would put replies elsewhere; only the
// alarm tells the two apart.
bool VYNNetAccess::CopyTempFilePath(KRString& path) const {
  KRFireAlarm const before = KRGetFireAlarm();
  KRSetFireAlarm(KRFireAlarm_None);
  GetTempFilePath(path);
  if (KRGetFireAlarm() != KRFireAlarm_None) return false;
  KRSetFireAlarm(before);
  return true;
}
