// Makes certificates with OpenSSL.

#include "certificates.h"

#include <krofx/krofx.h>
#include <openssl/bn.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <utility>

namespace bank_server {
namespace {

constexpr long kHour = 60 * 60;
constexpr long kWeek = 7 * 24 * kHour;
constexpr char kOurHosts[] = "IP:127.0.0.1,DNS:localhost";
constexpr char kOtherHosts[] = "DNS:bank.example";

struct Extension {
  int id;
  const char* value;
};
constexpr Extension kAuthorityExtensions[] = {
    {NID_basic_constraints, "critical,CA:TRUE,pathlen:0"},
    {NID_key_usage, "critical,keyCertSign,cRLSign"},
    {NID_subject_key_identifier, "hash"},
};
constexpr Extension kServerExtensions[] = {
    {NID_basic_constraints, "critical,CA:FALSE"},
    {NID_key_usage, "critical,digitalSignature"},
    {NID_ext_key_usage, "serverAuth"},
    {NID_subject_key_identifier, "hash"},
    {NID_authority_key_identifier, "keyid:always"},
};

bool SetSerial(X509* certificate) {
  const std::unique_ptr<BIGNUM, Freeing<BN_free>> number(BN_new());
  return number && BN_rand(number.get(), 127, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY) == 1 &&
         BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(certificate)) != nullptr;
}

bool AddName(X509* certificate, const char* field, const char* value) {
  return X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), field, MBSTRING_ASC,
                                    reinterpret_cast<const unsigned char*>(value), -1, -1, 0) == 1;
}

bool AddExtension(X509* certificate, X509* issuer, const Extension& extension) {
  X509V3_CTX context;
  X509V3_set_ctx_nodb(&context);
  X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
  const std::unique_ptr<X509_EXTENSION, Freeing<X509_EXTENSION_free>> made(
      X509V3_EXT_conf_nid(nullptr, &context, extension.id, extension.value));
  return made && X509_add_ext(certificate, made.get(), -1) == 1;
}

// The subject, and the start of validity in seconds from now; it lasts a week.
struct Subject {
  const char* name;
  const char* hosts;
  long from;
};

// A certificate for `key`, signed by the issuer; with a null issuer it is self-signed.
template <std::size_t kCount>
Certificate Make(const Subject& subject, EVP_PKEY* key, X509* issuer, EVP_PKEY* issuerKey,
                 const Extension (&extensions)[kCount]) {
  Certificate made(X509_new());
  X509* const raw = made.get();
  if (raw == nullptr) return nullptr;
  X509* const signer = issuer != nullptr ? issuer : raw;
  bool good = X509_set_version(raw, X509_VERSION_3) == 1 && SetSerial(raw) &&
              X509_gmtime_adj(X509_getm_notBefore(raw), subject.from) != nullptr &&
              X509_gmtime_adj(X509_getm_notAfter(raw), subject.from + kWeek) != nullptr &&
              X509_set_pubkey(raw, key) == 1 && AddName(raw, "O", "Harbor Federal (example)") &&
              AddName(raw, "CN", subject.name) &&
              X509_set_issuer_name(raw, X509_get_subject_name(signer)) == 1;
  for (const Extension& extension : extensions) {
    good = good && AddExtension(raw, signer, extension);
  }
  if (subject.hosts != nullptr) {
    good = good && AddExtension(raw, signer, {NID_subject_alt_name, subject.hosts});
  }
  good = good && X509_sign(raw, issuerKey, EVP_sha256()) != 0;
  return good ? std::move(made) : nullptr;
}

template <class Write>
bool WriteFile(const std::string& name, Write write) {
  std::FILE* const file = std::fopen(name.c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = write(file) == 1;
  return std::fclose(file) == 0 && written;
}

}  // namespace

bool MakeIdentity(Fault fault, Identity& identity) {
  const Key authorityKey(EVP_EC_gen("P-256"));
  identity.serverKey.reset(EVP_EC_gen("P-256"));
  if (!authorityKey || !identity.serverKey) return false;
  // Starts a little early, for clients whose clock is slow.
  const Subject authority = {"Harbor Federal example authority", nullptr, -kHour};
  identity.authority =
      Make(authority, authorityKey.get(), nullptr, authorityKey.get(), kAuthorityExtensions);
  if (!identity.authority) return false;
  Subject server = {"localhost", kOurHosts, -kHour};
  if (fault == Fault::kOtherHost) server.hosts = kOtherHosts;
  if (fault == Fault::kExpired) server.from = -2 * kWeek;
  if (fault == Fault::kNotYetValid) server.from = kWeek;
  identity.server = Make(server, identity.serverKey.get(), identity.authority.get(),
                         authorityKey.get(), kServerExtensions);
  return identity.server != nullptr;
}

bool WritePem(X509* certificate, const std::string& file) {
  return WriteFile(file, [&](std::FILE* out) { return PEM_write_X509(out, certificate); });
}

bool WriteDer(X509* certificate, const std::string& file) {
  return WriteFile(file, [&](std::FILE* out) { return i2d_X509_fp(out, certificate); });
}

bool WriteId(X509* certificate, const std::string& file) {
  unsigned char* bytes = nullptr;
  const int length = i2d_X509(certificate, &bytes);
  if (length <= 0) return false;
  KRBuffer der(static_cast<u32>(length), 0);
  der.Write(reinterpret_cast<const char*>(bytes), static_cast<u16>(length));
  OPENSSL_free(bytes);
  KRCertID id;
  if (id.SetCertBER(&der) != KRSecStatus_Success) return false;
  const KRBuffer& text = *id.GetEncodedCertIDPtr();
  return WriteFile(file, [&](std::FILE* out) {
    const auto size = static_cast<int>(text.GetBufferSize());
    return std::fprintf(out, "%.*s\n", size, text.GetBufferPtr()) > 0 ? 1 : 0;
  });
}

}  // namespace bank_server
