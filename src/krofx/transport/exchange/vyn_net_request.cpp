// The settings of a request, its roots, its expected certificates, and its reply.

#include "krofx/transport/exchange/vyn_net_request.h"

#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/exchange/vyn_net_access.h"

using krofx::internal::CertificateJudge;

namespace {

// The manager's code for an unspecified TLS failure, used here when there is no manager.
constexpr u16 kNoManager = 1699;
// The last argument of VCSetSSLInfo.
constexpr u32 kSslConstant = 120;

}  // namespace

VYNNetRequest::VYNNetRequest() = default;

VYNNetRequest::~VYNNetRequest() = default;

void VYNNetRequest::SetAccess(VYNNetAccess* access) {
  if (!m_exchange.HasCall()) m_exchange.Join(access == nullptr ? nullptr : &access->Session());
}

u16 VYNNetRequest::SetSSLVerifyCert(u16 verify) {
  m_verify = verify;
  return 1;
}

u16 VYNNetRequest::SetSaveHeaders(u16 save) {
  m_saveHeaders = save;
  return 1;
}

u16 VYNNetRequest::SetTimeout(s32 seconds) {
  m_timeout = seconds;
  return 1;
}

u16 VYNNetRequest::AddTrustedRoot(const char* base64Cert, u16 length, s16 rootID) {
  return m_judge.AddRoot(&KRCert::SetEncodedCert, base64Cert, length, rootID);
}

u16 VYNNetRequest::AddTrustedRootBER(const char* ber, u16 length, s16 rootID) {
  return m_judge.AddRoot(&KRCert::SetCertBER, ber, length, rootID);
}

u16 VYNNetRequest::AddExpectedSSLCertID(const char* certID, u16 length) {
  return AddExpectedCertID(&m_judge.ExpectedIDs(), certID, length);
}

u16 VYNNetRequest::AddExpectedSSLCertName(const KRString& name) { return m_judge.AddName(name); }

u16 VYNNetRequest::IsAnExpectedSSLCertName(const KRString& name) const {
  return m_judge.IsExpectedName(name);
}

u16 VYNNetRequest::AddExpectedCertID(KRDynamicArrayBuffer* expected, const char* certID,
                                     u16 length) {
  return CertificateJudge::AddID(expected, certID, length);
}

u16 VYNNetRequest::IsAnExpectedCertID(KRDynamicArrayBuffer* expected, KRBuffer* certID) const {
  return CertificateJudge::IsExpectedID(expected, certID);
}

u16 VYNNetRequest::IsATrustedRoot(u32 rootID) const { return m_judge.IsTrustedRoot(rootID); }

u16 VYNNetRequest::AddAllTrustedRoots(void* exchange) {
  VYNConnectionManager* const manager = m_exchange.Manager();
  if (manager == nullptr) return kNoManager;
  const KRDynamicArrayCert& roots = m_judge.Roots();
  const u16 count = roots.Entries();
  for (u16 index = 0; index < count; ++index) {
    const KRCert& root = *roots.Get(index);
    const u16 code = manager->VCAddTrustedRoot(exchange, root.GetCertBER(), root.GetCertBERLen(),
                                               root.GetCallbackID());
    if (code != 0) return code;
  }
  return 0;
}

u16 VYNNetRequest::SetSSLOptions(void* exchange) {
  VYNConnectionManager* const manager = m_exchange.Manager();
  if (manager == nullptr) return kNoManager;
  const u16 skipVerify = m_verify == 1 ? 0 : 1;
  return manager->VCSetSSLInfo(exchange, skipVerify, &VYNSSLCertificateCallback, kSslConstant);
}

u16 VYNNetRequest::VYNSSLCertificateCallback(SSLCertificateChain* chain, u32 rootID, u16 error,
                                             void* request, u32, u32) {
  auto* const self = static_cast<VYNNetRequest*>(request);
  if (self == nullptr) return CertificateJudge::kUntrusted;
  return self->m_judge.Judge(self->m_exchange.Log(), chain, rootID, error);
}

KRNetStatus VYNNetRequest::GetReplySize(u32& size) {
  if (KRNetRequest::GetReplySize(size) == KRNetStatus_Success) return KRNetStatus_Success;
  if (m_reply.Size() == 0) return KRNetStatus_NoReplySize;
  size = m_reply.Size();
  return KRNetStatus_Success;
}

KRNetStatus VYNNetRequest::LoadReply(KRBuffer* target) {
  if (target == nullptr) return KRNetStatus_ReplyNotLoaded;
  if (KRNetRequest::LoadReply(target) == KRNetStatus_Success) return KRNetStatus_Success;
  return m_reply.Load(*target) ? KRNetStatus_Success : KRNetStatus_ReplyNotLoaded;
}

void VYNNetRequest::LoadHeaders() { m_reply.SaveHeaders(); }

u16 VYNNetRequest::GetHeader(KRString& name, KRString& value) {
  return m_reply.FindHeader(name, value);
}

u16 VYNNetRequest::GetStatus(u32& httpStatus, u32& transportError) const {
  transportError = m_lastError;
  if (m_httpStatus == 0) return 0;
  httpStatus = m_httpStatus;
  return 1;
}
