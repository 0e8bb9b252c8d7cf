// KRCertID: decode, digest, encode.

#include "krofx/security/certificate_id.h"

#include "krofx/security/base64.h"
#include "krofx/security/digest.h"
#include "krofx/security/internal/buffer_view.h"

using krofx::internal::AppendTo;
using krofx::internal::ViewOf;

namespace {
constexpr u32 kIDLength = 28;
}

KRCertID::KRCertID() : m_encodedCertID(kIDLength, 0) {}

KRSecStatus KRCertID::SetEncodedCert(KRBuffer* text) {
  m_encodedCert = text;
  m_certBER = nullptr;
  return CreateCertID();
}

KRSecStatus KRCertID::SetCertBER(KRBuffer* ber) {
  m_encodedCert = nullptr;
  m_certBER = ber;
  return CreateCertID();
}

KRSecStatus KRCertID::CreateCertID() {
  if (m_encodedCert == nullptr && m_certBER == nullptr) return KRSecStatus_MissingInput;
  KRDecode decode;
  if (m_certBER == nullptr) {
    const KRSecStatus decoded = decode.SetInputData(m_encodedCert);
    if (decoded != KRSecStatus_Success) return decoded;
  }
  KRDigest digest;
  const KRSecStatus digested =
      digest.SetInputData(m_certBER != nullptr ? m_certBER : decode.GetOutputData());
  if (digested != KRSecStatus_Success) return digested;
  KREncode encode;
  const KRSecStatus encoded = encode.SetInputData(digest.GetOutputData());
  if (encoded != KRSecStatus_Success) return encoded;
  const KRBufferResult stored = AppendTo(m_encodedCertID, ViewOf(encode.GetOutputData()));
  return stored == KRBufferOK ? KRSecStatus_Success : KRSecStatus_IDNotStored;
}
