// The libcurl manager and the revocation answers that a server staples to its handshake; and the
// names that a certificate must have.

#include <openssl/ocsp.h>

#include <memory>

#include "krofx/transport/curl/internal/stapled_answer.h"
#include "support/failing_toolkit.h"
#include "transport/curl_probe.h"

namespace {

struct Answer {
  int status = V_OCSP_CERTSTATUS_GOOD;
  const char* from = "20000101000000Z";
  const char* until = "99980101000000Z";
  int responseStatus = OCSP_RESPONSE_STATUS_SUCCESSFUL;
  bool hasDigest = true;
};

// The ID of a certificate, by SHA-256 or by an algorithm that is no digest.
OCSP_CERTID* MakeId(const TestCertificate& certificate, const TestCertificate& issuer,
                    bool hasDigest) {
  OCSP_CERTID* id = OCSP_cert_to_id(EVP_sha256(), certificate.Certificate(), issuer.Certificate());
  if (hasDigest) return id;
  unsigned char* der = nullptr;
  const int length = i2d_OCSP_CERTID(id, &der);
  std::string bytes(reinterpret_cast<char*>(der), static_cast<std::size_t>(length));
  OPENSSL_free(der);
  // Object identifiers of nine bytes: SHA-256 and the encryption by RSA.
  const std::string digest = "\x60\x86\x48\x01\x65\x03\x04\x02\x01";
  bytes.replace(bytes.find(digest), digest.size(), "\x2a\x86\x48\x86\xf7\x0d\x01\x01\x01");
  const auto* at = reinterpret_cast<const unsigned char*>(bytes.data());
  EXPECT_NE(d2i_OCSP_CERTID(&id, &at, length), nullptr);
  return id;
}

// An answer about a certificate that `issuer` issued, signed by `signer`.
std::string Sign(const Answer& answer, const TestCertificate& certificate,
                 const TestCertificate& issuer, const TestCertificate& signer) {
  const std::unique_ptr<OCSP_BASICRESP, decltype(&OCSP_BASICRESP_free)> basic(OCSP_BASICRESP_new(),
                                                                              &OCSP_BASICRESP_free);
  const auto time = [](const char* text) {
    std::unique_ptr<ASN1_TIME, decltype(&ASN1_TIME_free)> made(ASN1_TIME_new(), &ASN1_TIME_free);
    ASN1_TIME_set_string(made.get(), text);
    return made;
  };
  OCSP_CERTID* const id = MakeId(certificate, issuer, answer.hasDigest);
  OCSP_basic_add1_status(basic.get(), id, answer.status, 0, time(answer.from).get(),
                         time(answer.from).get(), time(answer.until).get());
  OCSP_CERTID_free(id);
  OCSP_basic_sign(basic.get(), signer.Certificate(), signer.Key(), EVP_sha256(), nullptr, 0);
  const std::unique_ptr<OCSP_RESPONSE, decltype(&OCSP_RESPONSE_free)> response(
      OCSP_response_create(
          answer.responseStatus,
          answer.responseStatus == OCSP_RESPONSE_STATUS_SUCCESSFUL ? basic.get() : nullptr),
      &OCSP_RESPONSE_free);
  unsigned char* der = nullptr;
  const int length = i2d_OCSP_RESPONSE(response.get(), &der);
  std::string bytes(reinterpret_cast<char*>(der), static_cast<std::size_t>(length));
  OPENSSL_free(der);
  return bytes;
}

class CurlRevocation : public CurlTest {
 protected:
  // The code of an exchange with a server that staples these bytes; none for an empty text. It is
  // the same without a certificate callback.
  u16 CodeOf(const std::string& stapled) {
    TlsServer server({.script =
                          [](ServerConnection& connection) {
                            if (!connection.ReadRequest().empty()) {
                              connection.Write(HttpReply("200 OK", "x"));
                            }
                          },
                      .chain = {m_leaf},
                      .stapled = stapled});
    CurlProbe probe(m_manager, m_session, m_folder);
    probe.skipVerify = m_skipVerify;
    const u16 code = probe.Get(server.Url()).Root(m_authority, 7000).Run();
    EXPECT_EQ(probe.asked, 1);
    EXPECT_EQ(probe.certificateError, code);

    CurlProbe silent(m_manager, m_session, m_folder);
    silent.Get(server.Url()).Root(m_authority, 7000);
    EXPECT_EQ(m_manager.VCSetSSLInfo(silent.exchange, m_skipVerify, nullptr, 120), 0);
    EXPECT_EQ(silent.Run(), code);
    EXPECT_EQ(silent.asked, 0);
    return code;
  }

  TestCertificate m_authority = TestCertificate::Authority("authority");
  TestCertificate m_leaf = m_authority.IssueForLoopback();
  u16 m_skipVerify = 0;
};

TEST_F(CurlRevocation, TakesAServerWithoutAnAnswerOrWithAGoodOne) {
  EXPECT_EQ(CodeOf(""), 0);
  EXPECT_EQ(CodeOf(Sign({}, m_leaf, m_authority, m_authority)), 0);
}

TEST_F(CurlRevocation, RefusesARevokedServer) {
  EXPECT_EQ(CodeOf(Sign({.status = V_OCSP_CERTSTATUS_REVOKED}, m_leaf, m_authority, m_authority)),
            VYNCurlCode_BadCertificate);
  EXPECT_EQ(CodeOf(Sign({.status = V_OCSP_CERTSTATUS_REVOKED, .until = "20010101000000Z"}, m_leaf,
                        m_authority, m_authority)),
            VYNCurlCode_BadCertificate);
}

TEST_F(CurlRevocation, RefusesAServerThatTheResponderDoesNotKnow) {
  EXPECT_EQ(CodeOf(Sign({.status = V_OCSP_CERTSTATUS_UNKNOWN}, m_leaf, m_authority, m_authority)),
            VYNCurlCode_BadCertificate);
}

TEST_F(CurlRevocation, RefusesAnAnswerOfSomebodyElseOrOnAnotherCertificateOrThatIsNone) {
  const TestCertificate other = TestCertificate::Authority("other");
  const TestCertificate sibling = m_authority.IssueForLoopback();
  EXPECT_EQ(CodeOf(Sign({}, m_leaf, m_authority, other)), VYNCurlCode_BadCertificate);
  EXPECT_EQ(CodeOf(Sign({}, m_leaf, m_authority, sibling)), VYNCurlCode_BadCertificate);
  EXPECT_EQ(CodeOf(Sign({}, sibling, m_authority, m_authority)), VYNCurlCode_BadCertificate);
  EXPECT_EQ(CodeOf("no answer"), VYNCurlCode_BadCertificate);
  EXPECT_EQ(CodeOf(Sign({}, m_leaf, m_authority, m_authority) + "x"), VYNCurlCode_BadCertificate);
  // Says that it is successful, and has nothing in it.
  EXPECT_EQ(CodeOf(std::string("\x30\x03\x0a\x01\x00", 5)), VYNCurlCode_BadCertificate);
}

TEST_F(CurlRevocation, RefusesAnAnswerThatNamesTheCertificateByWhatIsNoDigest) {
  EXPECT_EQ(CodeOf(Sign({.hasDigest = false}, m_leaf, m_authority, m_authority)),
            VYNCurlCode_BadCertificate);
}

TEST_F(CurlRevocation, PassesOverAnAnswerThatIsOutOfDateOrSaysToTryLater) {
  EXPECT_EQ(CodeOf(Sign({.until = "20010101000000Z"}, m_leaf, m_authority, m_authority)), 0);
  EXPECT_EQ(CodeOf(Sign({.responseStatus = OCSP_RESPONSE_STATUS_TRYLATER}, m_leaf, m_authority,
                        m_authority)),
            0);
}

TEST_F(CurlRevocation, RefusesAServerWithoutTheAnswerThatItsCertificateDemands) {
  m_leaf =
      m_authority.Issue({.name = "server", .hosts = "IP:127.0.0.1", .features = "status_request"});
  EXPECT_EQ(CodeOf(Sign({}, m_leaf, m_authority, m_authority)), 0);
  EXPECT_EQ(CodeOf(""), VYNCurlCode_BadCertificate);
  EXPECT_EQ(CodeOf(Sign({.until = "20010101000000Z"}, m_leaf, m_authority, m_authority)),
            VYNCurlCode_BadCertificate);
  EXPECT_EQ(CodeOf(Sign({.responseStatus = OCSP_RESPONSE_STATUS_TRYLATER}, m_leaf, m_authority,
                        m_authority)),
            VYNCurlCode_BadCertificate);
  m_leaf = m_authority.Issue({.name = "server", .hosts = "IP:127.0.0.1", .features = "17"});
  EXPECT_EQ(CodeOf(""), 0);
}

TEST_F(CurlRevocation, IsNotLookedAtWhenNothingIsVerified) {
  m_skipVerify = 1;
  EXPECT_EQ(CodeOf(Sign({.status = V_OCSP_CERTSTATUS_REVOKED}, m_leaf, m_authority, m_authority)),
            0);
}

TEST_F(CurlRevocation, HoldsOnlyForAGoodAnswerWhenLibcryptoHasNoMemory) {
  if (!krofx::testing::toolkitCanFail) GTEST_SKIP() << "libcrypto was used before the tests";
  const krofx::internal::CertificateList chain(sk_X509_new_null());
  for (const TestCertificate& certificate : {m_leaf, m_authority}) {
    X509_up_ref(certificate.Certificate());
    sk_X509_push(chain.get(), certificate.Certificate());
  }
  const auto holds = [&chain](const std::string& answer) {
    return krofx::internal::StapledAnswerHolds(
        chain, reinterpret_cast<const unsigned char*>(answer.data()),
        static_cast<long>(answer.size()));
  };
  const std::string good = Sign({}, m_leaf, m_authority, m_authority);
  EXPECT_GT(krofx::testing::CountToolkitFailures([&] { return holds(good); }, 3), 20);
  const TestCertificate other = TestCertificate::Authority("authority");
  for (const std::string& bad :
       {Sign({.status = V_OCSP_CERTSTATUS_REVOKED}, m_leaf, m_authority, m_authority),
        Sign({}, m_leaf, m_authority, other)}) {
    krofx::testing::CountToolkitFailures(
        [&] {
          EXPECT_FALSE(holds(bad));
          return true;
        },
        7);
  }
}

class CurlNames : public CurlRevocation {};

TEST_F(CurlNames, DoNotCountInTheCommonName) {
  m_leaf = m_authority.Issue({.name = "127.0.0.1"});
  EXPECT_EQ(CodeOf(""), VYNCurlCode_BadCertificate);
  m_leaf = m_authority.Issue({.name = "127.0.0.1", .hosts = "email:a@b.example"});
  EXPECT_EQ(CodeOf(""), VYNCurlCode_BadCertificate);
  m_leaf = m_authority.Issue({.name = "anything", .hosts = "IP:127.0.0.1"});
  EXPECT_EQ(CodeOf(""), 0);
}

}  // namespace
