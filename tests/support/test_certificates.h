// Certificates that tests make for the servers that they start.
//
// The dates are fixed, far in the past and far in the future, so that no test depends on the day.

#ifndef KROFX_TESTS_SUPPORT_TEST_CERTIFICATES_H_
#define KROFX_TESTS_SUPPORT_TEST_CERTIFICATES_H_

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <string>

/// What a certificate is to contain.
struct CertificateWish {
  /// The common name.
  std::string name;
  /// Host names and addresses in the form of the extension: "DNS:localhost,IP:127.0.0.1"; empty for
  /// none.
  std::string hosts = {};
  /// Whether it may issue other certificates.
  bool isAuthority = false;
  const char* notBefore = "20000101000000Z";
  const char* notAfter = "99981231235959Z";
  /// What it may be used for, in the form of the extension: "serverAuth"; empty for anything.
  std::string usage = {};
  /// What its server must do in TLS, in the form of the extension: "status_request"; empty for
  /// none.
  std::string features = {};
};

/// A certificate with its key. Copies share both.
class TestCertificate {
 public:
  /// A certificate that is its own issuer.
  static TestCertificate SelfSigned(const CertificateWish& wish);
  /// An authority.
  static TestCertificate Authority(const std::string& name);
  /// A certificate that this one issues.
  TestCertificate Issue(const CertificateWish& wish) const;
  /// A server's certificate for localhost and 127.0.0.1.
  TestCertificate IssueForLoopback() const;

  X509* Certificate() const { return m_certificate.get(); }
  EVP_PKEY* Key() const { return m_key.get(); }
  std::string Der() const;
  std::string Pem() const;

 private:
  static TestCertificate Make(const CertificateWish& wish, const TestCertificate* issuer);

  std::shared_ptr<X509> m_certificate;
  std::shared_ptr<EVP_PKEY> m_key;
};

#endif  // KROFX_TESTS_SUPPORT_TEST_CERTIFICATES_H_
