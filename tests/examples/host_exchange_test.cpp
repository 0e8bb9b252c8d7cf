// The front's exchange with the example server as a program: the right server, wrong ones, slow and
// broken ones, and what the host hears and says meanwhile.

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "bank_program.h"
#include "krofx/host.h"
#include "support/failing_allocation.h"
#include "support/temp_folder.h"

namespace {

using bank_server::kRequest;
using bank_server::Program;
using krofx::Exchange;
using krofx::Outcome;
using krofx::Progress;
using namespace std::chrono_literals;  // NOLINT(google-build-using-namespace)

class HostExchange : public ::testing::Test {
 protected:
  HostExchange() { m_question.WriteLarge(kRequest, sizeof kRequest - 1); }

  void Start(std::vector<std::string> options = {}) {
    options.insert(options.end(), {"--ca-file", m_folder.Name("ca.pem"), "--cert-file",
                                   m_folder.Name("cert.pem"), "--id-file", m_folder.Name("id")});
    m_bank = std::make_unique<Program>(options);
    m_url = "https://127.0.0.1:" + std::to_string(m_bank->Port()) + "/ofx";
    if (!options.empty() && options[0] == "--http") return;
    m_id = m_folder.Get("id");
    ASSERT_EQ(m_id.size(), 29u);
    m_id.pop_back();
  }
  std::string Pem() const { return m_folder.Name("ca.pem"); }

  Outcome Send(Exchange& exchange) {
    exchange.TemporaryFolder(m_replies.Path().string());
    Outcome outcome = exchange.Send(m_question, m_reply);
    EXPECT_EQ(m_replies.Entries(), 0u) << "a temporary file was left";
    EXPECT_EQ(static_cast<bool>(outcome), m_reply.GetBufferSize() > 0);
    EXPECT_EQ(static_cast<bool>(outcome), outcome.text.IsEmpty() != 0);
    return outcome;
  }
  std::string Reply() const { return std::string(m_reply.GetBufferPtr(), m_reply.GetBufferSize()); }
  void ExpectNothingSent() {
    m_bank->Stop(SIGTERM);
    EXPECT_EQ(m_bank->Log(), "") << "the server has seen a request";
  }
  static std::string Text(const Outcome& outcome) {
    return std::string(krofx::ToText(outcome.text));
  }

  TempFolder m_folder;
  TempFolder m_replies;
  std::unique_ptr<Program> m_bank;
  std::string m_url;
  std::string m_id;
  KRBuffer m_question{0, 0};
  KRBuffer m_reply{0, 0};
};

TEST_F(HostExchange, BringsTheReplyOfAPinnedServer) {
  Start();
  Exchange exchange(m_url);
  EXPECT_TRUE(exchange.TrustPem(Pem().c_str()));
  EXPECT_TRUE(exchange.Pin(m_id));
  const Outcome outcome = Send(exchange);
  EXPECT_TRUE(outcome) << Text(outcome);
  EXPECT_EQ(outcome.http, 200u);
  EXPECT_EQ(outcome.code, 0u);
  EXPECT_EQ(krofx::ToText(outcome.seenCertificate), m_id);
  EXPECT_EQ(krofx::Read(Reply()).status, KRParseStatus_Accepted);
  // The same again takes the place of the first reply.
  const std::string first = Reply();
  EXPECT_TRUE(Send(exchange));
  EXPECT_EQ(m_reply.GetBufferSize(), first.size());
}

TEST_F(HostExchange, SaysWhichCertificateItSawInPlaceOfThePinnedOne) {
  Start();
  Exchange exchange(m_url);
  exchange.TrustPem(Pem().c_str());
  EXPECT_TRUE(exchange.Pin("AAAAAAAAAAAAAAAAAAAAAAAAAAA="));
  const Outcome outcome = Send(exchange);
  EXPECT_EQ(outcome.status, KRNetStatus_UnexpectedCertificate);
  EXPECT_EQ(krofx::ToText(outcome.seenCertificate), m_id);
  ExpectNothingSent();
}

TEST_F(HostExchange, TakesEitherOfTwoPins) {
  Start();
  for (const bool isFirst : {true, false}) {
    Exchange exchange(m_url);
    exchange.TrustPem(Pem().c_str());
    const std::string other = "AAAAAAAAAAAAAAAAAAAAAAAAAAA=";
    EXPECT_TRUE(exchange.Pin(isFirst ? m_id : other));
    EXPECT_TRUE(exchange.Pin(isFirst ? other : m_id));
    const Outcome outcome = Send(exchange);
    EXPECT_TRUE(outcome) << Text(outcome);
  }
}

TEST_F(HostExchange, TrustsTheTextOfACertificate) {
  Start();
  Exchange exchange(m_url);
  EXPECT_TRUE(exchange.TrustPemText(m_folder.Get("ca.pem")));
  const Outcome outcome = Send(exchange);
  EXPECT_TRUE(outcome) << Text(outcome);
}

TEST_F(HostExchange, KeepsTheReplyInTheFolderThatTheHostChooses) {
  Start();
  Exchange exchange(m_url);
  exchange.TrustPem(Pem().c_str());
  bool isThere = false;
  exchange.TemporaryFolder(m_replies.Path().string());
  exchange.OnProgress([&](const Progress&) { isThere = isThere || m_replies.Entries() > 0; });
  EXPECT_TRUE(exchange.Send(m_question, m_reply));
  EXPECT_TRUE(isThere);
  EXPECT_EQ(m_replies.Entries(), 0u);
  exchange.TemporaryFolder(m_replies.Path().string() + "/none");
  EXPECT_FALSE(exchange.Send(m_question, m_reply));
}

TEST_F(HostExchange, GoesThroughTheProxyAndNeverPastIt) {
  Start();
  Exchange exchange(m_url);
  exchange.TrustPem(Pem().c_str());
  exchange.Proxy("http://127.0.0.1:1");  // Nobody listens there.
  EXPECT_FALSE(Send(exchange));
  ExpectNothingSent();
}

TEST_F(HostExchange, GetsAFile) {
  TempFolder folder;
  const std::string file = folder.Put("reply.ofx", "OFXHEADER:100\n");
  Exchange exchange("file://" + file);
  const Outcome outcome = exchange.Get(m_reply);
  EXPECT_TRUE(outcome) << Text(outcome);
  EXPECT_EQ(Reply(), "OFXHEADER:100\n");
}

TEST_F(HostExchange, RefusesAServerThatTheSystemDoesNotTrust) {
  Start();
  Exchange exchange(m_url);
  const Outcome outcome = Send(exchange);
  EXPECT_EQ(outcome.status, KRNetStatus_Untrusted);
  EXPECT_TRUE(outcome.seenCertificate.IsEmpty());
  EXPECT_NE(Text(outcome).find("trusted root"), std::string::npos);
  ExpectNothingSent();
}

TEST_F(HostExchange, RefusesACertificateThatIsNotValidWhateverIsPinned) {
  for (const char* fault : {"expired", "not-yet-valid", "other-host"}) {
    Start({"--fault", fault});
    Exchange exchange(m_url);
    exchange.TrustPem(Pem().c_str());
    exchange.Pin(m_id);
    EXPECT_EQ(Send(exchange).status, KRNetStatus_BadCertificate) << fault;
    ExpectNothingSent();
  }
}

TEST_F(HostExchange, SendsNothingPastRootsOrPinsThatCouldNotBeAdded) {
  Start();
  Exchange noFile(m_url);
  EXPECT_FALSE(noFile.TrustPem("/no/such/file"));
  EXPECT_EQ(Send(noFile).status, KRNetStatus_RootRejected);
  Exchange noCertificate(m_url);
  EXPECT_FALSE(
      noCertificate.TrustPemText("-----BEGIN CERTIFICATE-----\nAAAA\n"
                                 "-----END CERTIFICATE-----\n"));
  EXPECT_TRUE(noCertificate.TrustPem(Pem().c_str()));
  EXPECT_EQ(Send(noCertificate).status, KRNetStatus_RootRejected);
  Exchange noText(m_url);
  EXPECT_FALSE(noText.TrustPemText(""));
  EXPECT_EQ(Send(noText).status, KRNetStatus_RootRejected);
  Exchange badPin(m_url);
  badPin.TrustPem(Pem().c_str());
  EXPECT_FALSE(badPin.Pin("short"));
  EXPECT_EQ(Send(badPin).status, KRNetStatus_SslOptionsRejected);
  Exchange manyPins(m_url);
  manyPins.TrustPem(Pem().c_str());
  for (const bool taken : {true, true, false}) EXPECT_EQ(manyPins.Pin(m_id), taken);
  EXPECT_EQ(Send(manyPins).status, KRNetStatus_SslOptionsRejected);
  ExpectNothingSent();
}

TEST_F(HostExchange, SendsNothingOverHttpWhereCertificatesAreExpected) {
  Start({"--http", "--requests", "1"});
  m_url.replace(0, 5, "http");
  Exchange pinned(m_url);
  pinned.Pin("AAAAAAAAAAAAAAAAAAAAAAAAAAA=");
  EXPECT_EQ(Send(pinned).status, KRNetStatus_SslOptionsRejected);
  Exchange plain(m_url);
  const Outcome outcome = Send(plain);
  EXPECT_TRUE(outcome) << Text(outcome);
  EXPECT_TRUE(outcome.seenCertificate.IsEmpty());
}

TEST_F(HostExchange, HearsOfProgressWithItsContext) {
  Start();
  Exchange exchange(m_url);
  exchange.TrustPem(Pem().c_str());
  std::vector<KROpCode> steps;
  u32 received = 0;
  std::string log;
  exchange.OnProgress([&](const Progress& progress) {
    if (steps.empty() || steps.back() != progress.step) steps.push_back(progress.step);
    if (progress.step == KROpCode_Receiving) received = progress.done;
  });
  exchange.OnLog([&log](const char* line) { log += line; });
  ASSERT_TRUE(Send(exchange));
  EXPECT_EQ(steps.front(), KROpCode_Connecting);
  EXPECT_EQ(steps.back(), KROpCode_Receiving);
  EXPECT_EQ(received, m_reply.GetBufferSize());
  EXPECT_FALSE(log.empty());
  EXPECT_EQ(log.find("not-a-real-password"), std::string::npos);
}

TEST_F(HostExchange, EndsWhenTheHostCancels) {
  Start({"--delay", "600"});
  Exchange exchange(m_url);
  exchange.TrustPem(Pem().c_str());
  exchange.Timeout(300s);
  int heard = 0;
  // Nothing moves while the server is slow, and the host is asked all the same.
  exchange.OnProgress([&heard](const Progress&) { return ++heard < 5; });
  const Outcome outcome = Send(exchange);
  EXPECT_TRUE(outcome.cancelled);
  EXPECT_FALSE(outcome);
  EXPECT_NE(outcome.status, KRNetStatus_Success);
  EXPECT_EQ(Text(outcome), "it was cancelled");
  EXPECT_EQ(heard, 5);
}

TEST_F(HostExchange, EndsAfterItsTime) {
  Start({"--delay", "600"});
  Exchange exchange(m_url);
  exchange.TrustPem(Pem().c_str());
  exchange.Timeout(1s);
  const Outcome outcome = Send(exchange);
  EXPECT_EQ(outcome.status, KRNetStatus_TimedOut);
  EXPECT_FALSE(outcome.cancelled);
}

TEST_F(HostExchange, TellsABrokenOffReplyFromAWholeOne) {
  Start({"--cut", "100"});
  Exchange exchange(m_url);
  exchange.TrustPem(Pem().c_str());
  const Outcome outcome = Send(exchange);
  EXPECT_EQ(outcome.status, KRNetStatus_NetworkFailed);
  EXPECT_EQ(outcome.code, 1608u);
}

TEST_F(HostExchange, GivesTheHttpStatusThatCame) {
  Start({"--status", "503"});
  Exchange exchange(m_url);
  exchange.TrustPem(Pem().c_str());
  const Outcome outcome = Send(exchange);
  EXPECT_EQ(outcome.status, KRNetStatus_Unavailable);
  EXPECT_EQ(outcome.http, 503u);
}

TEST_F(HostExchange, FailsWithoutMemoryAndSendsNothing) {
  Start();
  for (std::size_t nth = 1;; ++nth) {
    std::unique_ptr<Exchange> exchange;
    bool failed = false;
    {
      const FailingAllocation failing(nth, true);
      exchange = std::make_unique<Exchange>(m_url);
      exchange->TrustPem(Pem().c_str());
      exchange->Pin(m_id);
      exchange->OnProgress([this](const Progress&) { return m_bank != nullptr; });
      failed = krofx::internal::AllocationFailure::Count() >= nth;
    }
    if (!failed) break;
    EXPECT_FALSE(exchange->Send(m_question, m_reply)) << nth;
  }
  ExpectNothingSent();
}

TEST_F(HostExchange, BringsAWholeReplyOrNoneWhicheverAllocationFails) {
  Start();
  Exchange exchange(m_url);
  exchange.TrustPem(Pem().c_str());
  exchange.Pin(m_id);
  ASSERT_TRUE(Send(exchange));
  const u32 size = m_reply.GetBufferSize();
  bool failed = true;
  int failures = 0;
  for (std::size_t nth = 1; failed; ++nth) {
    KRBuffer reply(0, 0);
    Outcome outcome;
    {
      const FailingAllocation failing(nth, true);
      outcome = exchange.Send(m_question, reply);
      failed = krofx::internal::AllocationFailure::Count() >= nth;
    }
    if (outcome) {
      EXPECT_EQ(reply.GetBufferSize(), size) << nth;
    } else {
      ++failures;
      EXPECT_EQ(reply.GetBufferSize(), 0u) << nth;
      EXPECT_NE(outcome.status, KRNetStatus_Success) << nth;
    }
    EXPECT_EQ(m_replies.Entries(), 0u) << nth;
  }
  EXPECT_GT(failures, 5);
}

TEST(BankServerOptions, AreRefusedWhenTheyMakeNoSense) {
  for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--delay"},
                                                {"--delay", "-1"},
                                                {"--cut", "x"},
                                                {"--status", "200"},
                                                {"--status", "600"}}) {
    Program program(wrong);
    EXPECT_EQ(program.Wait(), 64);
  }
  Program unwritable({"--id-file", "/no/such/folder/id"});
  EXPECT_EQ(unwritable.Wait(), 1);
}

}  // namespace
