// Which server is the right one: roots and expected certificates, and the decision over a chain.

#include "krofx/core/buffer.h"
#include "krofx/core/string.h"
#include "krofx/security/certificate.h"
#include "krofx/security/certificate_id.h"
#include "krofx/transport/log_line.h"
#include "krofx/transport/vyn_net_access.h"
#include "krofx/transport/vyn_net_request.h"

using krofx::internal::kLogDetail;
using krofx::internal::kLogImportant;
using krofx::internal::LogLine;

namespace {

// Answers of the decision other than 0.
constexpr u16 kUntrusted = 1670;
constexpr u16 kRefusedGroup = 1671;
constexpr u16 kUnexpected = 1673;

// The manager's code for a failure of TLS without a finer one, here for want of a manager.
constexpr u16 kNoManager = 1699;

constexpr u16 kMaxExpected = 2;
constexpr u32 kGroupSize = 1000;
// Chains may be built up to this family of roots but must not end there.
constexpr u32 kIntermediateGroup = 3000;
// Longer lists are taken for endless ones.
constexpr u32 kMaxChain = 1000;
// What the manager is given with the TLS options.
constexpr u32 kSslConstant = 120;

struct Group {
  u32 first;
  char const* name;
};

constexpr Group kGroups[] = {
    {0, "none"},
    {1000, "Norvik Branding CA"},
    {2000, "VeriSign OFX CA"},
    {4000, "RSA Secure Server CA"},
};

u32 GroupOf(u32 rootID) { return rootID - rootID % kGroupSize; }

char const* GroupName(u32 group) {
  for (Group const& known : kGroups) {
    if (known.first == group) return known.name;
  }
  return "unknown";
}

// The server's own certificate; null for a chain without an end.
SSLCertificateChain const* LastOf(SSLCertificateChain const* chain) {
  for (u32 step = 0; step < kMaxChain; ++step) {
    if (chain == nullptr || chain->next == nullptr) return chain;
    chain = chain->next;
  }
  return nullptr;
}

int PrintLength(KRBuffer const& text) { return static_cast<int>(text.GetBufferSize()); }

}  // namespace

u16 VYNNetRequest::AddTrustedRoot(const char* base64Cert, u16 length, s16 rootID) {
  return AddRoot(&KRCert::SetEncodedCert, base64Cert, length, rootID);
}

u16 VYNNetRequest::AddTrustedRootBER(const char* ber, u16 length, s16 rootID) {
  return AddRoot(&KRCert::SetCertBER, ber, length, rootID);
}

u16 VYNNetRequest::AddRoot(KRSecStatus (KRCert::*load)(char const*, u16), char const* bytes,
                           u16 length, s16 rootID) {
  auto* const root = new KRCert;
  if (root == nullptr) return 0;
  if ((root->*load)(bytes, length) == KRSecStatus_Success &&
      root->SetCallbackRootID(rootID) == KRSecStatus_Success &&
      m_roots.Set(m_roots.Entries(), root) == 1) {
    return 1;
  }
  delete root;
  return 0;
}

u16 VYNNetRequest::AddExpectedSSLCertID(const char* certID, u16 length) {
  return AddExpectedCertID(&m_expectedIDs, certID, length);
}

u16 VYNNetRequest::AddExpectedCertID(KRDynamicArrayBuffer* expected, const char* certID,
                                     u16 length) {
  if (expected == nullptr || certID == nullptr || expected->Entries() >= kMaxExpected) return 0;
  auto* const id = new KRBuffer(length, 0);
  if (id == nullptr) return 0;
  if (id->Write(certID, length) == KRBufferOK && expected->Set(expected->Entries(), id) == 1) {
    return 1;
  }
  krofx::internal::DeleteBuffer(id);
  return 0;
}

u16 VYNNetRequest::AddExpectedSSLCertName(const KRString& name) {
  if (m_expectedNames.Entries() >= kMaxExpected) return 0;
  auto* const copy = new KRString(name);
  if (copy == nullptr) return 0;
  if (*copy == name && m_expectedNames.Set(m_expectedNames.Entries(), copy) == 1) return 1;
  delete copy;
  return 0;
}

u16 VYNNetRequest::IsAnExpectedSSLCertName(const KRString& name) const {
  u16 const count = m_expectedNames.Entries();
  for (u16 index = 0; index < count; ++index) {
    if (*m_expectedNames.Get(index) == name) return 1;
  }
  return count == 0 ? 1 : 0;
}

u16 VYNNetRequest::IsAnExpectedCertID(KRDynamicArrayBuffer* expected, KRBuffer* certID) const {
  if (expected == nullptr || certID == nullptr) return 0;
  u16 const count = expected->Entries();
  for (u16 index = 0; index < count; ++index) {
    KRBuffer* const id = expected->Get(index);
    if (id != nullptr && id->CompareBuffer(certID) == 1) return 1;
  }
  return count == 0 ? 1 : 0;
}

u16 VYNNetRequest::IsATrustedRoot(u32 rootID) const {
  u16 const count = m_roots.Entries();
  for (u16 index = 0; index < count; ++index) {
    if (static_cast<u32>(m_roots.Get(index)->GetCallbackID()) == rootID) return 1;
  }
  return count == 0 ? 1 : 0;
}

u16 VYNNetRequest::AddAllTrustedRoots(void* exchange) {
  VYNConnectionManager* const manager = Manager();
  if (manager == nullptr) return kNoManager;
  u16 const count = m_roots.Entries();
  for (u16 index = 0; index < count; ++index) {
    KRCert const& root = *m_roots.Get(index);
    u16 const code = manager->VCAddTrustedRoot(exchange, root.GetCertBER(), root.GetCertBERLen(),
                                               root.GetCallbackID());
    if (code != 0) return code;
  }
  return 0;
}

u16 VYNNetRequest::SetSSLOptions(void* exchange) {
  VYNConnectionManager* const manager = Manager();
  if (manager == nullptr) return kNoManager;
  u16 const skipVerify = m_verify == 1 ? 0 : 1;
  return manager->VCSetSSLInfo(exchange, skipVerify, &VYNSSLCertificateCallback, kSslConstant);
}

u16 VYNNetRequest::VYNSSLCertificateCallback(SSLCertificateChain* chain, u32 rootID, u16 error,
                                             void* request, u32, u32) {
  auto* const self = static_cast<VYNNetRequest*>(request);
  if (self == nullptr) return kUntrusted;
  if (error != 0) {
    LogLine(self->m_access, kLogImportant, "***VYN: SSL certificate error: %d", error);
    return error;
  }
  return self->Judge(chain, rootID);
}

u16 VYNNetRequest::Judge(SSLCertificateChain const* chain, u32 rootID) {
  u32 const group = GroupOf(rootID);
  if (group == kIntermediateGroup) {
    LogLine(m_access, kLogImportant,
            "***VYN: VeriSign Class 3 PCA is not accepted as a trusted root.");
    return kRefusedGroup;
  }
  if (IsATrustedRoot(rootID) == 0) return kUntrusted;
  SSLCertificateChain const* const server = LastOf(chain);
  if (server == nullptr) return kUntrusted;
  KRCert certificate;
  if (certificate.SetCertBER(server->der, server->length) != KRSecStatus_Success) {
    return kUntrusted;
  }
  u16 const answer = CheckExpectedID(server->der, server->length);
  if (answer == 0) {
    LogLine(m_access, kLogDetail, "VYN: Received trusted root %d (%s)", static_cast<s32>(rootID),
            GroupName(group));
  }
  return answer;
}

u16 VYNNetRequest::CheckExpectedID(char const* der, u16 length) {
  if (m_expectedIDs.Entries() == 0) return 0;
  KRBuffer bytes(length, 0);
  KRCertID maker;
  if (bytes.Write(der, length) != KRBufferOK || maker.SetCertBER(&bytes) != KRSecStatus_Success) {
    return kUntrusted;
  }
  KRBuffer& received = *maker.GetEncodedCertIDPtr();
  if (IsAnExpectedCertID(&m_expectedIDs, &received) == 1) return 0;
  KRBuffer const& first = *m_expectedIDs.Get(0);
  KRBuffer const* const second = m_expectedIDs.Get(1);
  if (second == nullptr) {
    LogLine(m_access, kLogImportant,
            "***VYN: SSL Cert ID failure: Expecting \"%.*s\", received \"%.*s\"",
            PrintLength(first), first.GetBufferPtr(), PrintLength(received),
            received.GetBufferPtr());
  } else {
    LogLine(m_access, kLogImportant,
            "***VYN: SSL Cert ID failure: Expecting \"%.*s\" or \"%.*s\", received \"%.*s\"",
            PrintLength(first), first.GetBufferPtr(), PrintLength(*second), second->GetBufferPtr(),
            PrintLength(received), received.GetBufferPtr());
  }
  return kUnexpected;
}
