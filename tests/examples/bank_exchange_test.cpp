// From end to end: the example server as a program, the default connection manager, and the library
// between them. A statement arrives when the server is the right one, and each kind of wrong server
// is recognised before it has seen the request.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "bank_program.h"
#include "krofx/krofx.h"
#include "support/temp_folder.h"

namespace {

using bank_server::kRequest;
using bank_server::Program;

// The result of one exchange.
struct Outcome {
  KRNetStatus status = KRNetStatus_Failed;
  u32 httpStatus = 0;
  std::string reply;
};

// Sends the request for a statement in an exchange that `prepare` sets up.
Outcome Ask(const std::string& url, const TempFolder& files,
            const std::function<void(KRNetRequest&)>& prepare) {
  VYNNetAccess access;
  access.SetTempFilePath((files.Path().string() + "/").c_str());
  EXPECT_EQ(access.InitConnection(), KRNetStatus_Success);
  KRNetRequest* request = access.NewNetRequest();
  request->SetTimeout(60);
  prepare(*request);

  KRBuffer question(0, 0);
  question.WriteLarge(kRequest, sizeof kRequest - 1);
  Outcome outcome;
  outcome.status = request->Send(url.c_str(), &question);
  u32 code = 0;
  request->GetStatus(outcome.httpStatus, code);
  KRBuffer reply(0, 0);
  if (request->LoadReply(&reply) == KRNetStatus_Success) {
    outcome.reply.assign(reply.GetBufferPtr(), reply.GetBufferSize());
  }
  access.DeleteNetRequest(request);
  access.EndConnection();
  EXPECT_EQ(files.Entries(), 0u) << "a temporary file was left";
  return outcome;
}

class BankExchange : public ::testing::Test {
 protected:
  // Starts the server, with a certificate that has the given fault.
  void Start(const std::string& fault = "") {
    std::vector<std::string> options = {"--ca-der", m_certificates.Name("ca.der")};
    if (!fault.empty()) options.insert(options.end(), {"--fault", fault});
    m_bank = std::make_unique<Program>(options);
    m_url = "https://127.0.0.1:" + std::to_string(m_bank->Port()) + "/ofx";
    m_authority = m_certificates.Get("ca.der");
    ASSERT_FALSE(m_authority.empty());
  }

  Outcome AskTrusting(s16 rootID, const std::string& pin = "") {
    return Ask(m_url, m_replies, [&](KRNetRequest& request) {
      const auto length = static_cast<u16>(m_authority.size());
      EXPECT_EQ(request.AddTrustedRootBER(m_authority.data(), length, rootID), 1);
      if (pin.empty()) return;
      EXPECT_EQ(request.AddExpectedSSLCertID(pin.data(), static_cast<u16>(pin.size())), 1);
    });
  }

  void ExpectRefused(const Outcome& outcome, KRNetStatus status) {
    EXPECT_EQ(outcome.status, status);
    EXPECT_EQ(outcome.reply, "");
    m_bank->Stop(SIGTERM);
    EXPECT_EQ(m_bank->Log(), "") << "the server has seen a request";
  }

  std::unique_ptr<Program> m_bank;
  std::string m_url;
  std::string m_authority;

 private:
  TempFolder m_certificates;
  TempFolder m_replies;
};

constexpr s16 kOwnRoot = 9001;

TEST_F(BankExchange, BringsAStatementThatParses) {
  Start();
  const Outcome outcome = AskTrusting(kOwnRoot);
  ASSERT_EQ(outcome.status, KRNetStatus_Success);
  EXPECT_EQ(outcome.httpStatus, 200u);
  KRBuffer text(0, 0);
  text.WriteLarge(outcome.reply.data(), static_cast<u32>(outcome.reply.size()));
  KRFileRs file;
  EXPECT_EQ(KRSimpleParser().Parse(&text, &file, 1), KRParseStatus_Accepted);
  EXPECT_NE(outcome.reply.find("<BALAMT>3495.45"), std::string::npos);
}

TEST_F(BankExchange, BringsAHundredStatementsInARow) {
  Start();
  const Outcome first = AskTrusting(kOwnRoot);
  for (int round = 0; round < 100; ++round) {
    const Outcome again = AskTrusting(kOwnRoot);
    ASSERT_EQ(again.status, KRNetStatus_Success);
    ASSERT_EQ(again.reply.size(), first.reply.size());
  }
}

TEST_F(BankExchange, RefusesAServerThatLeadsToNoRootOfTheSystem) {
  Start();
  ExpectRefused(Ask(m_url, TempFolder(), [](KRNetRequest&) {}), KRNetStatus_Untrusted);
}

TEST_F(BankExchange, RefusesAServerThatLeadsToAnotherRoot) {
  Start();
  ExpectRefused(Ask(m_url, TempFolder(),
                    [](KRNetRequest& request) { EXPECT_EQ(request.AddRSAServerRoot(), 1); }),
                KRNetStatus_Untrusted);
}

TEST_F(BankExchange, RefusesAServerWithAnotherCertificateThanExpected) {
  Start();
  ExpectRefused(AskTrusting(kOwnRoot, "2jmj7l5rSw0yVb/vlWAYkK/YBwk="),
                KRNetStatus_UnexpectedCertificate);
}

TEST_F(BankExchange, RefusesAChainThatEndsInTheGroupOfIntermediates) {
  Start();
  ExpectRefused(AskTrusting(3000), KRNetStatus_Other);
}

TEST_F(BankExchange, RefusesAnExpiredCertificate) {
  Start("expired");
  ExpectRefused(AskTrusting(kOwnRoot), KRNetStatus_BadCertificate);
}

TEST_F(BankExchange, RefusesACertificateThatIsNotYetValid) {
  Start("not-yet-valid");
  ExpectRefused(AskTrusting(kOwnRoot), KRNetStatus_BadCertificate);
}

TEST_F(BankExchange, RefusesACertificateForAnotherHost) {
  Start("other-host");
  ExpectRefused(AskTrusting(kOwnRoot), KRNetStatus_BadCertificate);
}

TEST_F(BankExchange, TellsThatNobodyListens) {
  Start();
  m_bank->Stop(SIGTERM);
  EXPECT_EQ(AskTrusting(kOwnRoot).status, KRNetStatus_Refused);
}

TEST_F(BankExchange, TellsOfARequestThatTheServerRefuses) {
  Start();
  m_url += "/elsewhere";
  const Outcome outcome = AskTrusting(kOwnRoot);
  EXPECT_EQ(outcome.status, KRNetStatus_ClientError);
  EXPECT_EQ(outcome.httpStatus, 404u);
  EXPECT_EQ(outcome.reply, "");
}

}  // namespace
