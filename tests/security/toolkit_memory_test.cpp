// Exhausted memory inside libcrypto: each of its allocations fails once. The result, and what the
// object holds afterwards, are the same as for memory of our own.

#include <gtest/gtest.h>
#include <openssl/crypto.h>
#include <openssl/err.h>

#include <cstdlib>
#include <string>

#include "krofx/core/string.h"
#include "krofx/security/certificate.h"
#include "krofx/security/digest.h"
#include "security/certificates.h"

namespace {

// Counts down; the allocation that reaches 0 fails.
thread_local std::size_t t_untilFailure = 0;

bool MustFail() { return t_untilFailure > 0 && --t_untilFailure == 0; }

void* Take(std::size_t size, const char*, int) { return MustFail() ? nullptr : std::malloc(size); }

void* Resize(void* block, std::size_t size, const char*, int) {
  if (size == 0) {
    std::free(block);
    return nullptr;
  }
  return MustFail() ? nullptr : std::realloc(block, size);
}

void Return(void* block, const char*, int) { std::free(block); }

// libcrypto accepts other functions only before its first allocation.
const bool g_replaced = CRYPTO_set_mem_functions(&Take, &Resize, &Return) == 1;

// Runs `step` with each allocation failing in turn, until there are no more of them.
template <class Step>
int CountFailures(Step step) {
  int failures = 0;
  for (std::size_t nth = 1; nth < 10000; ++nth) {
    t_untilFailure = nth;
    const bool succeeded = step();
    const bool reached = t_untilFailure == 0;
    t_untilFailure = 0;
    if (!reached) {
      EXPECT_TRUE(succeeded);
      return failures;
    }
    if (!succeeded) ++failures;
  }
  ADD_FAILURE() << "there is no end of allocations";
  return failures;
}

TEST(ToolkitMemory, LeavesACertificateUnloadedWhenLibcryptoHasNoMemory) {
  if (!g_replaced) GTEST_SKIP() << "libcrypto was used before the tests";
  const std::string ber = MakeCertificate();
  KRCert().SetCertBER(ber.data(), static_cast<u16>(ber.size()));
  ERR_clear_error();
  const int failures = CountFailures([&] {
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
  if (!g_replaced) GTEST_SKIP() << "libcrypto was used before the tests";
  const KRString text("abc");
  KRDigest(&text, KRChooseSHA1);
  const int failures = CountFailures([&] {
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
