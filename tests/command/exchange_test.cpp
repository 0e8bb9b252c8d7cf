// What is said of an exchange before anything is sent, and how it ends when the user ends it.

#include "exchange/exchange.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <string>

#include "support/failing_allocation.h"
#include "support/loopback_server.h"
#include "support/redirected_stream.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"
#include "system/interruption.h"

namespace krofx::command {
namespace {

ExchangeOptions GetFrom(const std::string& url) {
  ExchangeOptions options;
  options.subcommand = "get";
  options.url = url;
  return options;
}

class ExchangeTest : public ::testing::Test {
 protected:
  // Prepares and carries out a fetch. What is complained of is in `m_said`.
  ExitStatus Get(const ExchangeOptions& options) {
    const TempFolder folder;
    ExitStatus exitStatus = kExitClean;
    {
      const RedirectedStream errors(STDERR_FILENO, folder.Name("err"));
      Exchange exchange(options);
      exitStatus = exchange.Prepare(Direction::kGet);
      if (exitStatus == kExitClean && exchange.Run(nullptr) == nullptr) {
        exitStatus = exchange.GetExitStatus();
      }
    }
    m_said = folder.Get("err");
    return exitStatus;
  }

  std::string m_said;
  // The proxy settings of the person who runs the tests are not used.
  ScopedVariable m_noProxy{"no_proxy", "*"};
  TempFolder m_temporary;
  ScopedVariable m_folder{"TMPDIR", m_temporary.Path().string()};
};

TEST_F(ExchangeTest, TakesNoAddressWithControlCharacters) {
  EXPECT_EQ(Get(GetFrom("https://bank.example/\a")), kExitWrongUse);
  EXPECT_NE(m_said.find("this is not an address that can be used"), std::string::npos) << m_said;
  EXPECT_EQ(m_said.find('\a'), std::string::npos);
}

TEST_F(ExchangeTest, TakesOnlyPinsOfTheFormOfAnId) {
  const std::string pin(27, 'A');
  ExchangeOptions options = GetFrom("https://bank.example/");
  for (const std::string& wrong : {pin, pin + "A", pin + "==", pin.substr(1) + "%=", "\n" + pin}) {
    options.pins = {wrong};
    EXPECT_EQ(Get(options), kExitWrongUse) << wrong;
    EXPECT_NE(m_said.find("--pin takes an ID of 28 characters"), std::string::npos) << m_said;
  }
  options.pins = {pin.substr(2) + "/+=", pin + "="};
  EXPECT_EQ(Exchange(options).Prepare(Direction::kGet), kExitClean);
}

TEST_F(ExchangeTest, TakesNoMoreRootsThanItCanNumber) {
  ExchangeOptions options = GetFrom("https://127.0.0.1:1/");
  options.rootFiles.assign(1000, KROFX_ROOTS "/1000.der");
  EXPECT_EQ(Get(options), kExitUnusable);
  EXPECT_NE(m_said.find("these are more than 999 roots"), std::string::npos) << m_said;
}

TEST_F(ExchangeTest, SaysThatAnAddressOfAProxyIsTooLong) {
  ExchangeOptions options = GetFrom("https://127.0.0.1:1/");
  options.proxy = "http://proxy.example:3128/" + std::string(70000, 'x');
  EXPECT_EQ(Get(options), kExitUnusable);
  EXPECT_EQ(m_said, "krofx: exchange: the address of the proxy is too long\n");
}

TEST_F(ExchangeTest, EndsWithoutAWordWhenTheUserEndsIt) {
  const krofx::testing::LoopbackServer server;  // It is never moved on, so it never answers.
  {
    const Interruption interruption(Interruption::Afterwards::kUnlessKey);
    ::raise(SIGINT);
    EXPECT_EQ(Get(GetFrom(server.Url())), kExitCancelled);
  }
  EXPECT_EQ(m_said, "");
  EXPECT_EQ(m_temporary.Entries(), 0U);
}

TEST_F(ExchangeTest, FailsInWordsWithoutMemoryForIt) {
  const std::string root = KROFX_ROOTS "/1000.der";
  ExchangeOptions nobody = GetFrom("https://127.0.0.1:1/");
  nobody.pins = {std::string(27, 'A') + "="};
  nobody.rootFiles = {root};
  ExchangeOptions file = GetFrom("file://" + root);
  for (const ExchangeOptions* const options : {&nobody, &file}) {
    const ExitStatus usual = Get(*options);
    EXPECT_EQ(usual, options == &file ? kExitClean : kExitNetwork) << m_said;
    const std::string usuallySaid = m_said;
    std::size_t failed = 0;
    for (std::size_t nth = 1;; ++nth) {
      ExitStatus exitStatus = kExitClean;
      {
        const FailingAllocation failing(nth, true);
        exitStatus = Get(*options);
      }
      if (exitStatus == usual && m_said == usuallySaid) break;
      EXPECT_TRUE(exitStatus == kExitUnusable || exitStatus == kExitNetwork) << nth;
      EXPECT_TRUE(m_said.starts_with("krofx: ") && m_said.ends_with('\n')) << nth << m_said;
      EXPECT_EQ(m_temporary.Entries(), 0U);
      ++failed;
    }
    EXPECT_GE(failed, 5U);
  }
}

}  // namespace
}  // namespace krofx::command
