// Makes certificates.

#include "support/test_certificates.h"

#include <openssl/bio.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <atomic>

namespace {

void AddExtension(X509* certificate, X509* issuer, int nid, const std::string& value) {
  X509V3_CTX context;
  X509V3_set_ctx_nodb(&context);
  X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
  X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, &context, nid, value.c_str());
  X509_add_ext(certificate, extension, -1);
  X509_EXTENSION_free(extension);
}

}  // namespace

TestCertificate TestCertificate::Make(const CertificateWish& wish, const TestCertificate* issuer) {
  static std::atomic<long> serial{1};
  TestCertificate made;
  made.m_key.reset(EVP_EC_gen("P-256"), EVP_PKEY_free);
  made.m_certificate.reset(X509_new(), X509_free);
  X509* const certificate = made.m_certificate.get();
  const TestCertificate& signer = issuer == nullptr ? made : *issuer;
  X509_set_version(certificate, X509_VERSION_3);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate), serial++);
  ASN1_TIME_set_string(X509_getm_notBefore(certificate), wish.notBefore);
  ASN1_TIME_set_string(X509_getm_notAfter(certificate), wish.notAfter);
  X509_NAME* const subject = X509_get_subject_name(certificate);
  X509_NAME_add_entry_by_txt(subject, "O", MBSTRING_ASC,
                             reinterpret_cast<const unsigned char*>("krofx tests"), -1, -1, 0);
  X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_ASC,
                             reinterpret_cast<const unsigned char*>(wish.name.c_str()), -1, -1, 0);
  X509_set_issuer_name(certificate, X509_get_subject_name(signer.Certificate()));
  X509_set_pubkey(certificate, made.Key());
  AddExtension(certificate, signer.Certificate(), NID_basic_constraints,
               wish.isAuthority ? "critical,CA:TRUE" : "critical,CA:FALSE");
  if (!wish.hosts.empty()) {
    AddExtension(certificate, signer.Certificate(), NID_subject_alt_name, wish.hosts);
  }
  if (!wish.usage.empty()) {
    AddExtension(certificate, signer.Certificate(), NID_ext_key_usage, wish.usage);
  }
  if (!wish.features.empty()) {
    AddExtension(certificate, signer.Certificate(), NID_tlsfeature, wish.features);
  }
  X509_sign(certificate, signer.Key(), EVP_sha256());
  return made;
}

TestCertificate TestCertificate::SelfSigned(const CertificateWish& wish) {
  return Make(wish, nullptr);
}

TestCertificate TestCertificate::Authority(const std::string& name) {
  return SelfSigned({.name = name, .isAuthority = true});
}

TestCertificate TestCertificate::Issue(const CertificateWish& wish) const {
  return Make(wish, this);
}

TestCertificate TestCertificate::IssueForLoopback() const {
  return Issue({.name = "loopback", .hosts = "DNS:localhost,IP:127.0.0.1"});
}

std::string TestCertificate::Der() const {
  std::string der(static_cast<std::size_t>(i2d_X509(Certificate(), nullptr)), '\0');
  auto* at = reinterpret_cast<unsigned char*>(der.data());
  i2d_X509(Certificate(), &at);
  return der;
}

std::string TestCertificate::Pem() const {
  BIO* const memory = BIO_new(BIO_s_mem());
  PEM_write_bio_X509(memory, Certificate());
  char* text = nullptr;
  const long length = BIO_get_mem_data(memory, &text);
  std::string pem(text, static_cast<std::size_t>(length));
  BIO_free(memory);
  return pem;
}
