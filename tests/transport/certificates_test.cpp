// The certificates of a server, the roots of an exchange and the chains that lead to them when
// libcrypto has no memory: a list or chain is whole or there is none, and none leads to a root that
// is not trusted.

#include "krofx/transport/curl/internal/certificates.h"

#include <gtest/gtest.h>
#include <openssl/bio.h>

#include <initializer_list>
#include <memory>
#include <string>

#include "krofx/transport/curl/curl_code.h"
#include "support/failing_toolkit.h"
#include "support/temp_folder.h"
#include "support/test_certificates.h"
#include "support/tls_server.h"

namespace krofx::internal {
namespace {

using krofx::testing::CountToolkitFailures;
using krofx::testing::toolkitCanFail;

CertificateList ListOf(std::initializer_list<TestCertificate> certificates) {
  CertificateList list(sk_X509_new_null());
  for (const TestCertificate& certificate : certificates) {
    X509_up_ref(certificate.Certificate());
    sk_X509_push(list.get(), certificate.Certificate());
  }
  return list;
}

u16 AddTo(AddedRoots& roots, const TestCertificate& root, s16 id) {
  const std::string der = root.Der();
  return roots.Add(der.data(), static_cast<u32>(der.size()), id);
}

class CertificatesWithoutMemory : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!toolkitCanFail) GTEST_SKIP() << "libcrypto was used before the tests";
  }

  // Whether a chain is there; it has to be that from the leaf to the authority.
  bool IsWhole(const CertificateList& chain) const {
    if (chain == nullptr) return false;
    EXPECT_EQ(sk_X509_num(chain.get()), 2);
    EXPECT_EQ(X509_cmp(sk_X509_value(chain.get(), 0), m_leaf.Certificate()), 0);
    EXPECT_EQ(X509_cmp(sk_X509_value(chain.get(), 1), m_authority.Certificate()), 0);
    return true;
  }

  TestCertificate m_authority = TestCertificate::Authority("authority");
  TestCertificate m_other = TestCertificate::Authority("authority");
  TestCertificate m_leaf = m_authority.IssueForLoopback();
};

TEST_F(CertificatesWithoutMemory, AreNotTakenForAllThatTheServerShowed) {
  TlsServer server({.script =
                        [](ServerConnection& connection) {
                          connection.ReadRequest();
                          connection.Write(HttpReply("204 No Content", ""));
                        },
                    .chain = {m_leaf, m_authority}});
  const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> easy(curl_easy_init(),
                                                                 &curl_easy_cleanup);
  EXPECT_EQ(PresentedCertificates(easy.get()), nullptr) << "nothing was shown yet";
  curl_easy_setopt(easy.get(), CURLOPT_URL, server.Url().c_str());
  curl_easy_setopt(easy.get(), CURLOPT_PROXY, "");
  curl_easy_setopt(easy.get(), CURLOPT_SSL_VERIFYPEER, 0L);
  curl_easy_setopt(easy.get(), CURLOPT_SSL_VERIFYHOST, 0L);
  curl_easy_setopt(easy.get(), CURLOPT_CERTINFO, 1L);
  ASSERT_EQ(curl_easy_perform(easy.get()), CURLE_OK);
  const int failures = CountToolkitFailures(
      [&] {
        const CertificateList list = PresentedCertificates(easy.get());
        if (list == nullptr) return false;
        EXPECT_EQ(sk_X509_num(list.get()), 2);
        EXPECT_EQ(X509_cmp(sk_X509_value(list.get(), 0), m_leaf.Certificate()), 0);
        return true;
      },
      3);
  EXPECT_GT(failures, 20);
}

TEST_F(CertificatesWithoutMemory, AreNoRoots) {
  const int failures = CountToolkitFailures([&] {
    AddedRoots roots;
    const u16 code = AddTo(roots, m_authority, 7000);
    EXPECT_TRUE(code == 0 || code == VYNCurlCode_BadRoot) << code;
    EXPECT_EQ(roots.IsEmpty(), code != 0);
    return code == 0;
  });
  EXPECT_GT(failures, 20);
}

TEST_F(CertificatesWithoutMemory, AreNoTextOfRoots) {
  AddedRoots roots;
  ASSERT_EQ(AddTo(roots, m_authority, 7000), 0);
  ASSERT_EQ(AddTo(roots, m_other, 7001), 0);
  const std::string whole = m_authority.Pem() + m_other.Pem();
  const int failures = CountToolkitFailures([&] {
    const CryptoPointer<BIO> pem = roots.Pem();
    if (pem == nullptr) return false;
    char* text = nullptr;
    const long length = BIO_get_mem_data(pem.get(), &text);
    EXPECT_EQ(std::string(text, static_cast<std::size_t>(length)), whole);
    return true;
  });
  EXPECT_GT(failures, 5);
}

TEST_F(CertificatesWithoutMemory, LeadToNoAddedRootOrToTheRightOne) {
  AddedRoots roots;
  ASSERT_EQ(AddTo(roots, m_authority, 7000), 0);
  AddedRoots others;
  ASSERT_EQ(AddTo(others, m_other, 7000), 0);
  for (const ChainCheck check : {ChainCheck::Valid, ChainCheck::SignaturesOnly}) {
    const CertificateList presented = ListOf({m_leaf});
    EXPECT_GT(
        CountToolkitFailures([&] { return IsWhole(ChainToAddedRoots(presented, roots, check)); }),
        20);
    CountToolkitFailures(
        [&] {
          EXPECT_EQ(ChainToAddedRoots(presented, others, check), nullptr);
          return true;
        },
        7);
  }
}

TEST_F(CertificatesWithoutMemory, LeadToNoRootOfTheSystemOrToTheRightOne) {
  const TempFolder folder;
  const std::string file = folder.Put("roots.pem", m_authority.Pem());
  const std::string otherFile = folder.Put("other.pem", m_other.Pem());
  const CertificateList presented = ListOf({m_leaf});
  const std::string path = folder.Path().string();
  const int failures = CountToolkitFailures([&] {
    return IsWhole(ChainToRootsAt(presented, {file.c_str(), path.c_str()}));
  });
  EXPECT_GT(failures, 20);
  CountToolkitFailures(
      [&] {
        EXPECT_EQ(ChainToRootsAt(presented, {otherFile.c_str(), nullptr}), nullptr);
        return true;
      },
      7);
}

TEST_F(CertificatesWithoutMemory, LeadNowhereWithoutAPlaceForRoots) {
  const CertificateList presented = ListOf({m_leaf});
  const TempFolder folder;
  const std::string path = folder.Path().string();
  EXPECT_EQ(ChainToRootsAt(presented, {nullptr, path.c_str()}), nullptr);
  EXPECT_EQ(ChainToRootsAt(presented, {(path + "/none.pem").c_str(), nullptr}), nullptr);
  EXPECT_EQ(ChainToRootsAt(nullptr, {nullptr, path.c_str()}), nullptr);
}

}  // namespace
}  // namespace krofx::internal
