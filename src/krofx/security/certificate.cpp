// KRCert: one certificate, on top of the toolkit's.

#include "krofx/security/certificate.h"

#include <cstring>

#include "krofx/core/buffer.h"
#include "krofx/security/base64.h"
#include "krofx/security/internal/buffer_view.h"
#include "krofx/security/internal/toolkit.h"
#include "krofx/values/date_time.h"
#include "krofx/values/internal/calendar.h"

using krofx::internal::AppendTo;
using krofx::internal::ByteView;
using krofx::internal::CalendarDate;
using krofx::internal::CertificateFields;
using krofx::internal::CertificateObject;
using krofx::internal::CreateCertificateObject;
using krofx::internal::DateFromDays;
using krofx::internal::DestroyCertificateObject;
using krofx::internal::GetCertificateBER;
using krofx::internal::GetCertificateFields;
using krofx::internal::GetNameAttribute;
using krofx::internal::IsOrganizationName;
using krofx::internal::NameAttribute;
using krofx::internal::SetCertificateBER;
using krofx::internal::ShareCertificateObject;
using krofx::internal::ViewOf;

namespace {

constexpr u32 kMaxPublicKey = 65535;

// The date of a count of seconds, which may exceed the 32 bits that a date's assignment takes.
KRDateTime DateOf(std::int64_t seconds) {
  constexpr std::int64_t kSecondsInDay = 86400;
  const std::int64_t days = seconds / kSecondsInDay - (seconds % kSecondsInDay < 0 ? 1 : 0);
  const CalendarDate date = DateFromDays(days);
  return {static_cast<s16>(date.year),
          static_cast<s16>(date.month),
          static_cast<s16>(date.day),
          0,
          0,
          0,
          0,
          0,
          0};
}

bool PrintDate(std::FILE* stream, const char* label, std::int64_t seconds) {
  const KRDateTime date = DateOf(seconds);
  return std::fprintf(stream, "%s%02d %02d %4d\n", label, date.GetMonth(), date.GetDay(),
                      date.GetYear()) >= 0;
}

}  // namespace

KRCert::KRCert(const KRCert& source) noexcept
    : m_certificate(ShareCertificateObject(source.m_certificate)),
      m_fields(source.m_fields),
      m_callbackRootID(source.m_callbackRootID) {}

KRCert& KRCert::operator=(const KRCert& source) noexcept {
  CertificateObject* const shared = ShareCertificateObject(source.m_certificate);
  DestroyCertificateObject(m_certificate);
  m_certificate = shared;
  m_fields = source.m_fields;
  m_callbackRootID = source.m_callbackRootID;
  return *this;
}

KRCert::~KRCert() { DestroyCertificateObject(m_certificate); }

KRSecStatus KRCert::SetEncodedCert(KRBuffer* text) {
  KRDecode decode;
  ByteView ber;
  if (decode.SetInputData(text) == KRSecStatus_Success) {
    ber = ViewOf(decode.GetOutputData());
  }
  return Load(ber.data, ber.length) ? KRSecStatus_Success : KRSecStatus_EncodedCertRejected;
}

KRSecStatus KRCert::SetEncodedCert(const char* text, u16 length) {
  if (text == nullptr || length == 0) return SetEncodedCert(nullptr);
  KRBuffer copy(length, 0);
  return SetEncodedCert(copy.Write(text, length) == KRBufferOK ? &copy : nullptr);
}

KRSecStatus KRCert::SetCertBER(KRBuffer* ber) {
  const ByteView bytes = ViewOf(ber);
  return Load(bytes.data, bytes.length) ? KRSecStatus_Success : KRSecStatus_BERCertRejected;
}

KRSecStatus KRCert::SetCertBER(const char* ber, u16 length) {
  return Load(ber, length) ? KRSecStatus_Success : KRSecStatus_BERCertRejected;
}

// Replaces the certificate; if the bytes are not a certificate there is none afterwards. The old
// one is released last, since the bytes may belong to it.
bool KRCert::Load(const char* ber, u32 length) {
  CertificateObject* fresh = CreateCertificateObject();
  CertificateFields fields;
  if (SetCertificateBER(fresh, ber, length) != 0 || GetCertificateFields(fresh, &fields) != 0) {
    DestroyCertificateObject(fresh);
    fresh = nullptr;
  }
  DestroyCertificateObject(m_certificate);
  m_certificate = fresh;
  m_fields = fields;
  return fresh != nullptr;
}

const char* KRCert::GetCertBER() const {
  const char* ber = nullptr;
  u32 length = 0;
  return GetCertificateBER(m_certificate, &ber, &length) == 0 ? ber : nullptr;
}

u32 KRCert::GetCertBERLen() const {
  const char* ber = nullptr;
  u32 length = 0;
  return GetCertificateBER(m_certificate, &ber, &length) == 0 ? length : 0;
}

KRSecStatus KRCert::SetCallbackRootID(s16 id) {
  if (id == 0) return KRSecStatus_NoRootID;
  m_callbackRootID = id;
  return KRSecStatus_Success;
}

KRSecStatus KRCert::GetPublicKey(KRBuffer* out) const {
  const ByteView key = {reinterpret_cast<const char*>(m_fields.publicKey),
                        m_fields.publicKeyLength};
  if (out == nullptr || key.data == nullptr || key.length > kMaxPublicKey ||
      AppendTo(*out, key) != KRBufferOK) {
    return KRSecStatus_NoPublicKey;
  }
  return KRSecStatus_Success;
}

KRString KRCert::GetSubjectName() const {
  KRString organization;
  NameAttribute attribute;
  for (u32 i = 0; GetNameAttribute(m_fields.subject, i, &attribute) == 0; ++i) {
    if (!IsOrganizationName(attribute.type)) continue;
    const bool whole = attribute.length <= KRString::kMaxLength &&
                       std::memchr(attribute.value, '\0', attribute.length) == nullptr;
    if (whole) organization.Assign(attribute.value, static_cast<u16>(attribute.length));
    break;
  }
  return organization;
}

KRSecStatus KRCert::WriteInfo(std::FILE* stream) const {
  if (stream == nullptr || m_certificate == nullptr) return KRSecStatus_NotWritten;
  const bool written = PrintDate(stream, "Start Date: ", m_fields.validFrom) &&
                       PrintDate(stream, "End Date:   ", m_fields.validTo);
  return written ? KRSecStatus_Success : KRSecStatus_NotWritten;
}
