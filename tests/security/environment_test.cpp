// The toolkit in a process whose environment names a configuration for libcrypto.

#include <gtest/gtest.h>

#include <cstdlib>

#include "krofx/core/buffer.h"
#include "krofx/security/digest.h"
#include "support/buffers.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

namespace {

[[noreturn]] void DigestAndExit() {
  KRBuffer input(0, 0);
  Put(input, "abc");
  KRDigest digest;
  std::_Exit(digest.SetInputData(&input) == KRSecStatus_Success ? 0 : 1);
}

// Without its own algorithms the digest could not be made.
TEST(SecurityEnvironmentDeathTest, DoesNotChooseTheAlgorithms) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const TempFolder folder;
  const ScopedVariable variable("OPENSSL_CONF", folder.Put("openssl.cnf",
                                                           "openssl_conf = all\n[all]\n"
                                                           "alg_section = algorithms\n"
                                                           "[algorithms]\n"
                                                           "default_properties = fips=yes\n"));
  EXPECT_EXIT(DigestAndExit(), testing::ExitedWithCode(0), "");
}

}  // namespace
