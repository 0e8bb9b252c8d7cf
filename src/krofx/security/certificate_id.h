// The certificate ID: 28 characters that identify a certificate.
//
// It is the base64 text of the SHA-1 digest of the certificate's whole DER encoding, so its last
// character is "=". A host uses it to pin the certificate of a server.

#ifndef KROFX_SECURITY_CERTIFICATE_ID_H_
#define KROFX_SECURITY_CERTIFICATE_ID_H_

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/security/status.h"

/// Makes the ID of a certificate. Use one object for each certificate: a second ID is appended to
/// the first.
///
/// The certificate is digested but not parsed. Inputs belong to the caller and need only live until
/// the call returns.
class KROFX_API KRCertID : public krofx::internal::HeapObject {
 public:
  /// No ID.
  KRCertID();
  KRCertID(const KRCertID&) = delete;
  KRCertID& operator=(const KRCertID&) = delete;

  /// Appends the ID of a certificate that is given as base64 text.
  /// @return KRSecStatus_Success; KRSecStatus_MissingInput for null; the status of KRDecode,
  ///         KRDigest or KREncode when that fails; KRSecStatus_IDNotStored when memory is
  ///         exhausted.
  KRSecStatus SetEncodedCert(KRBuffer* text);
  /// Appends the ID of a certificate that is given as DER bytes.
  /// @return as SetEncodedCert.
  KRSecStatus SetCertBER(KRBuffer* ber);

  /// @return the ID, 28 characters without a terminator. It belongs to this object.
  KRBuffer* GetEncodedCertIDPtr() { return &m_encodedCertID; }
  /// @return 1 when there is no ID.
  u16 IsEmpty() const { return m_encodedCertID.GetBufferSize() == 0 ? 1 : 0; }

 private:
  KRSecStatus CreateCertID();

  KRBuffer* m_encodedCert = nullptr;
  KRBuffer* m_certBER = nullptr;
  KRBuffer m_encodedCertID;
};

#endif  // KROFX_SECURITY_CERTIFICATE_ID_H_
