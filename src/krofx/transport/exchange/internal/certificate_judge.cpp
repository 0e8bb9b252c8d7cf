// Decides whether a server's certificates are accepted.

#include "krofx/transport/exchange/internal/certificate_judge.h"

#include "krofx/security/certificate.h"
#include "krofx/security/certificate_id.h"
#include "krofx/transport/exchange/internal/log_line.h"

namespace krofx::internal {

namespace {

// More precise results.
constexpr u16 kRefusedGroup = 1671;
constexpr u16 kUnexpected = 1673;

constexpr u16 kMaxExpected = 2;
constexpr u32 kGroupSize = 1000;
// Chains may contain roots of this group but must not end at one.
constexpr u32 kIntermediateGroup = 3000;
// Longer lists are assumed to be endless.
constexpr u32 kMaxChain = 1000;

struct Group {
  u32 first;
  const char* name;
};

constexpr Group kGroups[] = {
    {0, "none"},
    {1000, "Norvik Branding CA"},
    {2000, "VeriSign OFX CA"},
    {4000, "RSA Secure Server CA"},
};

u32 GroupOf(u32 rootID) { return rootID - rootID % kGroupSize; }

const char* GroupName(u32 group) {
  for (const Group& known : kGroups) {
    if (known.first == group) return known.name;
  }
  return "unknown";
}

// The server's own certificate; null for a chain without an end.
const SSLCertificateChain* LastOf(const SSLCertificateChain* chain) {
  for (u32 step = 0; step < kMaxChain; ++step) {
    if (chain == nullptr || chain->next == nullptr) return chain;
    chain = chain->next;
  }
  return nullptr;
}

int PrintLength(const KRBuffer& text) { return static_cast<int>(text.GetBufferSize()); }

}  // namespace

u16 CertificateJudge::AddRoot(Loader load, const char* bytes, u16 length, s16 rootID) {
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

u16 CertificateJudge::IsTrustedRoot(u32 rootID) const {
  const u16 count = m_roots.Entries();
  for (u16 index = 0; index < count; ++index) {
    if (static_cast<u32>(m_roots.Get(index)->GetCallbackID()) == rootID) return 1;
  }
  return count == 0 ? 1 : 0;
}

u16 CertificateJudge::AddID(KRDynamicArrayBuffer* expected, const char* certID, u16 length) {
  if (expected == nullptr || certID == nullptr || expected->Entries() >= kMaxExpected) return 0;
  auto* const id = new KRBuffer(length, 0);
  if (id == nullptr) return 0;
  if (id->Write(certID, length) == KRBufferOK && expected->Set(expected->Entries(), id) == 1) {
    return 1;
  }
  DeleteBuffer(id);
  return 0;
}

u16 CertificateJudge::IsExpectedID(const KRDynamicArrayBuffer* expected, const KRBuffer* certID) {
  if (expected == nullptr || certID == nullptr) return 0;
  const u16 count = expected->Entries();
  for (u16 index = 0; index < count; ++index) {
    KRBuffer* const id = expected->Get(index);
    if (id != nullptr && id->CompareBuffer(certID) == 1) return 1;
  }
  return count == 0 ? 1 : 0;
}

u16 CertificateJudge::AddName(const KRString& name) {
  if (m_expectedNames.Entries() >= kMaxExpected) return 0;
  auto* const copy = new KRString(name);
  if (copy == nullptr) return 0;
  if (*copy == name && m_expectedNames.Set(m_expectedNames.Entries(), copy) == 1) return 1;
  delete copy;
  return 0;
}

u16 CertificateJudge::IsExpectedName(const KRString& name) const {
  const u16 count = m_expectedNames.Entries();
  for (u16 index = 0; index < count; ++index) {
    if (*m_expectedNames.Get(index) == name) return 1;
  }
  return count == 0 ? 1 : 0;
}

u16 CertificateJudge::Judge(KRNetAccess* log, const SSLCertificateChain* chain, u32 rootID,
                            u16 error) const {
  if (error != 0) {
    LogLine(log, kLogImportant, "***VYN: SSL certificate error: %d", error);
    return error;
  }
  const u32 group = GroupOf(rootID);
  if (group == kIntermediateGroup) {
    LogLine(log, kLogImportant, "***VYN: VeriSign Class 3 PCA is not accepted as a trusted root.");
    return kRefusedGroup;
  }
  if (IsTrustedRoot(rootID) == 0) return kUntrusted;
  const SSLCertificateChain* const server = LastOf(chain);
  if (server == nullptr) return kUntrusted;
  KRCert certificate;
  if (certificate.SetCertBER(server->der, server->length) != KRSecStatus_Success) {
    return kUntrusted;
  }
  const u16 answer = CheckExpectedID(log, server->der, server->length);
  if (answer == 0) {
    LogLine(log, kLogDetail, "VYN: Received trusted root %d (%s)", static_cast<s32>(rootID),
            GroupName(group));
  }
  return answer;
}

u16 CertificateJudge::CheckExpectedID(KRNetAccess* log, const char* der, u16 length) const {
  if (m_expectedIDs.Entries() == 0) return 0;
  KRBuffer bytes(length, 0);
  KRCertID maker;
  if (bytes.Write(der, length) != KRBufferOK || maker.SetCertBER(&bytes) != KRSecStatus_Success) {
    return kUntrusted;
  }
  KRBuffer& received = *maker.GetEncodedCertIDPtr();
  if (IsExpectedID(&m_expectedIDs, &received) == 1) return 0;
  const KRBuffer& first = *m_expectedIDs.Get(0);
  const KRBuffer* const second = m_expectedIDs.Get(1);
  if (second == nullptr) {
    LogLine(
        log, kLogImportant, "***VYN: SSL Cert ID failure: Expecting \"%.*s\", received \"%.*s\"",
        PrintLength(first), first.GetBufferPtr(), PrintLength(received), received.GetBufferPtr());
  } else {
    LogLine(log, kLogImportant,
            "***VYN: SSL Cert ID failure: Expecting \"%.*s\" or \"%.*s\", received \"%.*s\"",
            PrintLength(first), first.GetBufferPtr(), PrintLength(*second), second->GetBufferPtr(),
            PrintLength(received), received.GetBufferPtr());
  }
  return kUnexpected;
}

}  // namespace krofx::internal
