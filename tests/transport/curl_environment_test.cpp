// The libcurl manager in a process whose environment tries to configure it from the start.

#include <filesystem>
#include "support/scoped_variable.h"

#include "transport/curl_probe.h"

namespace {

// A process of its own, since libcurl reads some of the environment once.
class CurlEnvironmentDeathTest : public CurlTest {
 protected:
  CurlEnvironmentDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

  [[noreturn]] void ExchangeAndExit() {
    const TestCertificate authority = TestCertificate::Authority("authority");
    u16 code = 1;
    {
      TlsServer server({.script =
                            [](ServerConnection& connection) {
                              connection.ReadRequest();
                              connection.Write(HttpReply("200 OK", "x"));
                            },
                        .chain = {authority.IssueForLoopback()}});
      CurlProbe probe(m_manager, m_session, m_folder);
      code = probe.Get(server.Url()).Root(authority, 7000).Run();
    }
    std::_Exit(code == 0 ? 0 : 1);
  }
};

TEST_F(CurlEnvironmentDeathTest, WritesNoSecretsOfASession) {
  // The child finds the name in its environment, so it is not made from the child's own folder.
  const char* const inherited = getenv("SSLKEYLOGFILE");
  const std::string file = inherited != nullptr ? inherited : m_temp.Name("secrets");
  {
    const ScopedVariable variable("SSLKEYLOGFILE", file);
    EXPECT_EXIT(ExchangeAndExit(), testing::ExitedWithCode(0), "");
  }
  EXPECT_EQ(m_temp.Get("secrets"), "");
  std::filesystem::remove(file);
}

}  // namespace
