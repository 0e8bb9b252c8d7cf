// The access object of the connection-manager transport.

#include "krofx/transport/exchange/vyn_net_access.h"

#include "krofx/core/string.h"
#include "krofx/transport/exchange/internal/module_path.h"
#include "krofx/transport/exchange/vyn_net_request.h"

using krofx::internal::FolderOfFileName;
using krofx::internal::kModuleNameSize;
using krofx::internal::ModuleFileName;

VYNNetAccess::VYNNetAccess(VYNConnectionManager* manager, VYNWaitPlatform* platform)
    : m_session(*this, manager, platform) {}

VYNNetAccess::~VYNNetAccess() = default;

u16 VYNNetAccess::CanDoNetworkSetup() { return 1; }

u16 VYNNetAccess::DoNetworkSetup() { return 0; }

u16 VYNNetAccess::IsNetworkSetup() { return m_session.IsNetworkSetUp() ? 1 : 0; }

KRNetStatus VYNNetAccess::InitConnection() { return OpenInternetIfNeeded(); }

KRNetStatus VYNNetAccess::OpenInternetIfNeeded() { return m_session.Open(); }

KRNetStatus VYNNetAccess::EndConnection() { return m_session.Close(); }

KRNetRequest* VYNNetAccess::NewNetRequest() {
  auto* const request = new VYNNetRequest;
  if (request == nullptr) return nullptr;
  if (request->GetSavedHeaders().GetBufferPtr() == nullptr) {
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
  m_session.Adopt(session);
  return 1;
}

u16 VYNNetAccess::GetStatus(u32& lastError) const {
  lastError = m_session.LastError();
  return 1;
}

void VYNNetAccess::SetupTempPathFromHInst(HINSTANCE module, KRString& path) {
  char name[kModuleNameSize];
  ModuleFileName(module, name);
  FolderOfFileName(name, path);
}
