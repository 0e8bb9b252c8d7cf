// Exhausted memory inside libcrypto: each of its allocations fails once. The result, and what the
// object holds afterwards, are the same as for memory of our own.

#include <gtest/gtest.h>
#include <openssl/err.h>

#include <string>

#include "krofx/core/string.h"
#include "krofx/security/certificate.h"
#include "krofx/security/digest.h"
#include "security/certificates.h"
#include "support/failing_toolkit.h"

namespace {

using krofx::testing::CountToolkitFailures;
using krofx::testing::toolkitCanFail;

TEST(ToolkitMemory, LeavesACertificateUnloadedWhenLibcryptoHasNoMemory) {
  if (!toolkitCanFail) GTEST_SKIP() << "libcrypto was used before the tests";
  const std::string ber = MakeCertificate();
  KRCert().SetCertBER(ber.data(), static_cast<u16>(ber.size()));
  ERR_clear_error();
  const int failures = CountToolkitFailures([&] {
    KRCert certificate;
    const bool loaded =
        certificate.SetCertBER(ber.data(), static_cast<u16>(ber.size())) == KRSecStatus_Success;
    EXPECT_EQ(certificate.GetCertBER() != nullptr, loaded);
    EXPECT_STREQ(certificate.GetSubjectName(), loaded ? "Harbor Federal" : "");
    return loaded;
  });
  EXPECT_GT(failures, 20);
  EXPECT_EQ(ERR_peek_error(), 0u);
}

TEST(ToolkitMemory, FailsADigestWhenLibcryptoHasNoMemory) {
  if (!toolkitCanFail) GTEST_SKIP() << "libcrypto was used before the tests";
  const KRString text("abc");
  KRDigest(&text, KRChooseSHA1);
  const int failures = CountToolkitFailures([&] {
    KRDigest digest;
    const KRSecStatus status = digest.SetInputStr(&text);
    if (status == KRSecStatus_Success) {
      EXPECT_EQ(Base64Of(Content(*digest.GetOutputData())), "qZk+NkcGgWq6PiVxeFDCbJzQ2J0=");
    } else {
      EXPECT_EQ(status, KRSecStatus_DigestFailed);
    }
    return status == KRSecStatus_Success;
  });
  EXPECT_GT(failures, 0);
}

}  // namespace
