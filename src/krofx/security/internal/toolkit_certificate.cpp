// Certificate objects and names on top of libcrypto, which reads certificates of any version and
// does not check their signatures.

#include <openssl/asn1.h>
#include <openssl/crypto.h>
#include <openssl/objects.h>
#include <openssl/x509.h>

#include <atomic>
#include <cstring>
#include <ctime>
#include <new>

#include "krofx/core/memory.h"
#include "krofx/security/internal/crypto_error_scope.h"
#include "krofx/security/internal/crypto_start.h"
#include "krofx/security/internal/toolkit.h"
#include "krofx/values/internal/calendar.h"

namespace krofx::internal {

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;

}  // namespace

/// A certificate in libcrypto's form, and the bytes that it was read from.
struct CertificateObject : HeapObject {
  CertificateObject() = default;
  CertificateObject(const CertificateObject&) = delete;
  CertificateObject& operator=(const CertificateObject&) = delete;
  ~CertificateObject() {
    X509_free(certificate);
    OPENSSL_free(publicKey);
    Free(ber);
  }

  std::atomic<u32> holders = 1;
  X509* certificate = nullptr;
  char* ber = nullptr;
  u32 length = 0;
  unsigned char* publicKey = nullptr;
  u32 publicKeyLength = 0;
};

namespace {

// Seconds from the start of 1970, GMT.
bool ToSeconds(const ASN1_TIME* time, std::int64_t& seconds) {
  std::tm fields{};
  if (time == nullptr || ASN1_TIME_to_tm(time, &fields) != 1) return false;
  const std::int64_t days = DaysFromDate(fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday);
  seconds = ((days * 24 + fields.tm_hour) * 60 + fields.tm_min) * 60 + fields.tm_sec;
  return true;
}

const X509_NAME* ToName(const NameObject* name) { return reinterpret_cast<const X509_NAME*>(name); }

}  // namespace

CertificateObject* CreateCertificateObject() {
  StartCrypto();
  return new (std::nothrow) CertificateObject;
}

CertificateObject* ShareCertificateObject(CertificateObject* certificate) {
  if (certificate != nullptr) certificate->holders.fetch_add(1, std::memory_order_relaxed);
  return certificate;
}

void DestroyCertificateObject(CertificateObject* certificate) {
  if (certificate != nullptr && certificate->holders.fetch_sub(1) == 1) delete certificate;
}

int SetCertificateBER(CertificateObject* certificate, const char* data, u32 length) {
  if (certificate == nullptr || certificate->certificate != nullptr) return kFailed;
  if (data == nullptr || length == 0) return kFailed;
  const CryptoErrorScope mark;
  const auto* const begin = reinterpret_cast<const unsigned char*>(data);
  const auto* at = begin;
  X509* const read = d2i_X509(nullptr, &at, length);
  unsigned char* key = nullptr;
  int keyLength = 0;
  char* copy = nullptr;
  if (read != nullptr && at == begin + length) {
    keyLength = i2d_X509_PUBKEY(X509_get_X509_PUBKEY(read), &key);
    if (keyLength > 0) copy = static_cast<char*>(Allocate(length));
  }
  if (copy == nullptr) {
    OPENSSL_free(key);
    X509_free(read);
    return kFailed;
  }
  std::memcpy(copy, data, length);
  certificate->certificate = read;
  certificate->ber = copy;
  certificate->length = length;
  certificate->publicKey = key;
  certificate->publicKeyLength = static_cast<u32>(keyLength);
  return kDone;
}

int GetCertificateBER(const CertificateObject* certificate, const char** data, u32* length) {
  if (certificate == nullptr || certificate->certificate == nullptr) return kFailed;
  *data = certificate->ber;
  *length = certificate->length;
  return kDone;
}

int GetCertificateFields(const CertificateObject* certificate, CertificateFields* fields) {
  if (certificate == nullptr || certificate->certificate == nullptr) return kFailed;
  const CryptoErrorScope mark;
  CertificateFields read;
  if (!ToSeconds(X509_get0_notBefore(certificate->certificate), read.validFrom)) return kFailed;
  if (!ToSeconds(X509_get0_notAfter(certificate->certificate), read.validTo)) return kFailed;
  read.subject =
      reinterpret_cast<const NameObject*>(X509_get_subject_name(certificate->certificate));
  read.publicKey = certificate->publicKey;
  read.publicKeyLength = certificate->publicKeyLength;
  *fields = read;
  return kDone;
}

u32 CountNameAttributes(const NameObject* name) {
  const int count = name != nullptr ? X509_NAME_entry_count(ToName(name)) : 0;
  return count > 0 ? static_cast<u32>(count) : 0;
}

int GetNameAttribute(const NameObject* name, u32 index, NameAttribute* attribute) {
  if (index >= CountNameAttributes(name)) return kFailed;
  const X509_NAME_ENTRY* const entry = X509_NAME_get_entry(ToName(name), static_cast<int>(index));
  const ASN1_STRING* const value = X509_NAME_ENTRY_get_data(entry);
  if (value == nullptr) return kFailed;
  attribute->type = X509_NAME_ENTRY_get_object(entry);
  attribute->value = reinterpret_cast<const char*>(ASN1_STRING_get0_data(value));
  attribute->length = static_cast<u32>(ASN1_STRING_length(value));
  return kDone;
}

bool IsOrganizationName(const void* type) {
  return OBJ_obj2nid(static_cast<const ASN1_OBJECT*>(type)) == NID_organizationName;
}

}  // namespace krofx::internal
