// Decides whether a server is the right one: the roots and the expected certificates of a request,
// and the check of the chain of certificates that a server showed.

#ifndef KROFX_TRANSPORT_EXCHANGE_INTERNAL_CERTIFICATE_JUDGE_H_
#define KROFX_TRANSPORT_EXCHANGE_INTERNAL_CERTIFICATE_JUDGE_H_

#include "krofx/core/array.h"
#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/security/certificate_array.h"
#include "krofx/security/status.h"
#include "krofx/transport/contract/connection_manager.h"

class KRNetAccess;

namespace krofx::internal {

/// Holds the roots and the expected certificates of a request, and checks a server's certificates
/// against them.
class KROFX_API CertificateJudge {
 public:
  /// Reads a certificate from bytes: an operation of KRCert.
  using Loader = KRSecStatus (KRCert::*)(const char*, u16);

  /// The result for a chain that is not trusted, when no more precise one applies.
  static constexpr u16 kUntrusted = 1670;

  /// No roots and no expected certificates.
  CertificateJudge() : m_roots(1, 5), m_expectedIDs(2, 2), m_expectedNames(2, 2) {}

  /// Adds a root that `load` reads.
  /// @return 1; 0 when the bytes are not a certificate, `rootID` is 0, or memory is exhausted.
  u16 AddRoot(Loader load, const char* bytes, u16 length, s16 rootID);
  /// @return the roots, in the order in which they were added.
  const KRDynamicArrayCert& Roots() const { return m_roots; }
  /// @return 1 when a root of exactly this ID was added, or when there are no roots.
  u16 IsTrustedRoot(u32 rootID) const;

  /// @return the certificate IDs. If there are any, the server must show one of them.
  KRDynamicArrayBuffer& ExpectedIDs() { return m_expectedIDs; }
  /// Adds a certificate ID to a list of at most two.
  /// @return 1; 0 for a third, for a null, and when memory is exhausted.
  static u16 AddID(KRDynamicArrayBuffer* expected, const char* certID, u16 length);
  /// @return 1 when an ID is one of a list, or when the list is empty.
  static u16 IsExpectedID(const KRDynamicArrayBuffer* expected, const KRBuffer* certID);

  /// Adds a name to a list of at most two. Judge ignores them.
  /// @return 1; 0 for a third, and when memory is exhausted.
  u16 AddName(const KRString& name);
  /// @return 1 when a name is one of the expected ones, or when there are none.
  u16 IsExpectedName(const KRString& name) const;

  /// Decides whether a chain that ends at the root `rootID`, as the manager found it, is accepted.
  /// The reason of a refusal is logged through `log`, which may be null. The log callback may
  /// destroy this object.
  /// @return as VYNNetRequest::VYNSSLCertificateCallback.
  u16 Judge(KRNetAccess* log, const SSLCertificateChain* chain, u32 rootID, u16 error) const;

 private:
  u16 CheckExpectedID(KRNetAccess* log, const char* der, u16 length) const;

  KRDynamicArrayCert m_roots;
  KRDynamicArrayBuffer m_expectedIDs;
  PlainArray<KRString> m_expectedNames;
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_EXCHANGE_INTERNAL_CERTIFICATE_JUDGE_H_
