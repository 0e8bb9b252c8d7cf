// One X.509 certificate: its bytes, and what the library reads from it, which is its subject's
// organization, its validity and its public key.
//
// Certificates are only read: no signature is checked and no date is compared with the clock, so
// certificates of version 1 and certificates signed with MD2 load like any other.

#ifndef KROFX_SECURITY_CERTIFICATE_H_
#define KROFX_SECURITY_CERTIFICATE_H_

#include <cstdint>
#include <cstdio>

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/security/status.h"

class KRBuffer;

namespace krofx::internal {

struct CertificateObject;
struct NameObject;

/// What the toolkit reads from a certificate. The pointers are valid as long as the certificate
/// object.
struct CertificateFields {
  /// Start of validity, in seconds since the start of 1970, GMT.
  std::int64_t validFrom = 0;
  /// End of validity, in the same count.
  std::int64_t validTo = 0;
  /// The subject's name.
  const NameObject* subject = nullptr;
  /// The DER encoding of the SubjectPublicKeyInfo: the algorithm and the key.
  const unsigned char* publicKey = nullptr;
  /// Bytes of the public key.
  u32 publicKeyLength = 0;
};

}  // namespace krofx::internal

/// A certificate. It can be used after one of its four loading operations has returned 0. A failed
/// one leaves the object without a certificate, even if it held one before, so that no certificate
/// is trusted by mistake.
///
/// Copies share the certificate, which lives until the last of them is destroyed or loads another.
class KROFX_API KRCert : public krofx::internal::HeapObject {
 public:
  /// No certificate, callback root ID 0.
  KRCert() noexcept = default;
  /// Shares the source's certificate and copies its callback root ID.
  KRCert(const KRCert& source) noexcept;
  /// Releases its own certificate, shares the source's and copies its callback root ID.
  KRCert& operator=(const KRCert& source) noexcept;
  virtual ~KRCert();

  /// Loads a certificate from its base64 text (see KRDecode), without armour lines.
  /// @return KRSecStatus_Success; KRSecStatus_EncodedCertRejected for null, for a text that is not
  ///         exactly one certificate, and when memory is exhausted.
  KRSecStatus SetEncodedCert(KRBuffer* text);
  /// The same for `length` characters at `text`; 0 characters are rejected.
  KRSecStatus SetEncodedCert(const char* text, u16 length);
  /// Loads a certificate from its BER or DER bytes, which are copied.
  /// @return KRSecStatus_Success; KRSecStatus_BERCertRejected for null, for bytes that are not
  ///         exactly one certificate, and when memory is exhausted.
  KRSecStatus SetCertBER(KRBuffer* ber);
  /// The same for `length` bytes at `ber`; 0 bytes are rejected.
  KRSecStatus SetCertBER(const char* ber, u16 length);

  /// @return the bytes of the certificate as they were loaded; null without a certificate. They
  ///         belong to the certificate, which the copies of this object share.
  const char* GetCertBER() const;
  /// @return number of those bytes; 0 without a certificate.
  u32 GetCertBERLen() const;

  /// Stores the ID under which the certificate is registered as a trusted root.
  /// @return KRSecStatus_Success, or KRSecStatus_NoRootID for 0, which is not stored.
  KRSecStatus SetCallbackRootID(s16 id);
  /// @return the stored ID; 0 while there is none.
  s16 GetCallbackID() const { return m_callbackRootID; }

  /// Appends the public key to `out`: the DER encoding of the SubjectPublicKeyInfo.
  /// @return KRSecStatus_Success; KRSecStatus_NoPublicKey without a certificate or a buffer, for a
  ///         key of more than 65535 bytes, and when it cannot be written.
  KRSecStatus GetPublicKey(KRBuffer* out) const;
  /// Despite its name, gets the subject's organization.
  /// @return the first organizationName of the subject; empty when there is none, without a
  ///         certificate, when memory is exhausted, and for a value that contains a NUL, which
  ///         would be taken for a shorter one.
  KRString GetSubjectName() const;
  /// Prints the first and the last day of validity, in GMT, as two lines: "Start Date: MM DD YYYY"
  /// and "End Date:   MM DD YYYY".
  /// @return KRSecStatus_Success; KRSecStatus_NotWritten when printing fails, and without a
  ///         certificate or a stream.
  KRSecStatus WriteInfo(std::FILE* stream) const;

 private:
  bool Load(const char* ber, u32 length);

  krofx::internal::CertificateObject* m_certificate = nullptr;
  krofx::internal::CertificateFields m_fields;
  s16 m_callbackRootID = 0;
};

#endif  // KROFX_SECURITY_CERTIFICATE_H_
