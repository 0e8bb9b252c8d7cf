// The root certificates that the library carries, for KRNetRequest to register with a request.
//
// Their bytes are those of the files <ID>.der in the folder that the build option KROFX_ROOTS_DIR
// names. The default is src/krofx/security/roots, whose README.md says which of them are stand-ins.
// The build writes them into a generated source file. A root is identified by its ID; the thousands
// digit of the ID is its group.

#ifndef KROFX_SECURITY_INTERNAL_TRUSTED_ROOTS_H_
#define KROFX_SECURITY_INTERNAL_TRUSTED_ROOTS_H_

#include "krofx/core/types.h"

namespace krofx::internal {

/// One root: what KRNetRequest::AddTrustedRootBER takes.
struct TrustedRoot {
  /// The DER encoding of the certificate.
  const char* der;
  /// Bytes of the encoding.
  u16 length;
  /// The root ID.
  s16 id;
};

/// 1000: the root of branding servers.
extern const TrustedRoot kNorvikBrandingRoot;
/// 2000: the authority of OFX servers.
extern const TrustedRoot kVeriSignOFXCARoot;
/// 3000: the issuer of 2000, which chains may contain but must not end at.
extern const TrustedRoot kVeriSignClass3Root;
/// 4000: the secure server authority, in its first issue.
extern const TrustedRoot kRSAServerRoot;
/// 4001: the secure server authority, issued again.
extern const TrustedRoot kRSAServerRootReissue;

}  // namespace krofx::internal

#endif  // KROFX_SECURITY_INTERNAL_TRUSTED_ROOTS_H_
