// Exchanges without memory, with a scripted manager, with the real one over a server of the test's
// own, and by the front with a server that shows a certificate: whichever allocation fails, the
// exchange ends with a status that says so, or its reply is whole; no file stays, and the next
// exchange is clean.

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>

#include "allocation/sweep.h"
#include "krofx/host/exchange.h"
#include "krofx/host/outcome.h"
#include "krofx/transport/curl/curl_manager.h"
#include "krofx/transport/exchange/vyn_net_access.h"
#include "krofx/transport/exchange/vyn_net_request.h"
#include "support/buffers.h"
#include "support/failing_allocation.h"
#include "support/loopback_server.h"
#include "support/parse_text.h"
#include "support/scripted_manager.h"
#include "support/scripted_platform.h"
#include "support/temp_folder.h"
#include "support/tls_server.h"

namespace krofx::testing {
namespace {

constexpr char kBody[] = "OFXHEADER:100\r\n\r\n<OFX></OFX>";

// One exchange from its first to its last step. Its reply is the host's, or it reports a failure.
class TransportExchange {
 public:
  TransportExchange(VYNConnectionManager& manager, VYNWaitPlatform& platform, std::string url)
      : m_manager(manager), m_platform(platform), m_url(std::move(url)) {}

  Outcome Run(const Failure& failure) const {
    KRBuffer body(0, 0);
    Put(body, kBody);
    const KRString url(m_url.c_str());
    KRString header("X-Kept");
    KRBuffer reply(0, 0);
    KRString kept;
    bool whole = false;
    {
      const FailingScope scope(failure);
      VYNNetAccess access(&m_manager, &m_platform);
      VYNNetRequest request;
      u32 size = 0;
      access.SetTempFilePath(m_folder.Name("").c_str());
      whole = access.InitConnection() == KRNetStatus_Success && Send(request, access, url, body) &&
              request.GetReplySize(size) == KRNetStatus_Success &&
              request.LoadReply(&reply) == KRNetStatus_Success &&
              request.GetHeader(header, kept) == 1;
      request.SetAccess(nullptr);
    }
    EXPECT_EQ(m_folder.Entries(), 0u) << "a file of the reply stays";
    const bool said = !whole || KRGetFireAlarm() != KRFireAlarm_None;
    KRSetFireAlarm(KRFireAlarm_None);
    return {said, whole ? Content(reply) + std::string(kept) : "nothing"};
  }

 private:
  static bool Send(VYNNetRequest& request, VYNNetAccess& access, const KRString& url,
                   KRBuffer& body) {
    request.SetAccess(&access);
    request.SetSaveHeaders(1);
    request.SetTimeout(60);
    return request.Send(url, &body) == KRNetStatus_Success;
  }

  VYNConnectionManager& m_manager;
  VYNWaitPlatform& m_platform;
  const std::string m_url;
  TempFolder m_folder;
};

// The front's exchange with a server that shows a certificate.
class FrontExchange {
 public:
  FrontExchange()
      : m_server({[](ServerConnection& connection) {
                    connection.ReadRequest();
                    connection.Write(HttpReply("200 OK", kReply));
                  },
                  {m_authority.IssueForLoopback()}}) {}

  // Sends a request to a server that must show the certificate with this ID.
  // @param promised how it ends when there is memory.
  Outcome Send(const std::string& pin, KRNetStatus promised, const Failure& failure) const {
    KRBuffer question(0, 0);
    Put(question, kBody);
    const std::string pem = m_folder.Put("ca.pem", m_authority.Pem());
    return Run(failure, promised, [&](KRBuffer& reply) {
      krofx::Exchange exchange(m_server.Url());
      exchange.TrustPem(pem.c_str());
      exchange.Pin(pin);
      exchange.Timeout(std::chrono::seconds(60));
      exchange.TemporaryFolder(m_replies.Path().string());
      bool isInFolder = false;
      exchange.OnProgress([&](const Progress&) {
        isInFolder = isInFolder || m_replies.Entries() > 0;
        return true;
      });
      exchange.OnLog([](const char*) {});
      krofx::Outcome outcome = exchange.Send(question, reply);
      EXPECT_TRUE(!outcome || isInFolder) << "the reply was in another folder";
      return outcome;
    });
  }

  // Gets a file.
  Outcome Get(const Failure& failure) const {
    const std::string url = "file://" + m_folder.Put("reply.ofx", kReply);
    return Run(failure, KRNetStatus_Success, [&](KRBuffer& reply) {
      krofx::Exchange exchange(url);
      exchange.TemporaryFolder(m_replies.Path().string());
      return exchange.Get(reply);
    });
  }

  // The ID of the server's certificate.
  std::string Id() const {
    krofx::Exchange exchange(m_server.Url());
    exchange.TrustPemText(m_authority.Pem());
    KRBuffer reply(0, 0);
    return Str(exchange.Get(reply).seenCertificate);
  }

 private:
  static constexpr char kReply[] = "<OFX></OFX>";

  template <class Exchanging>
  Outcome Run(const Failure& failure, KRNetStatus promised, Exchanging exchange) const {
    KRBuffer reply(0, 0);
    Put(reply, "before");
    krofx::Outcome outcome;
    {
      const FailingScope scope(failure);
      outcome = exchange(reply);
    }
    EXPECT_EQ(m_replies.Entries(), 0u) << "a file of the reply stays";
    EXPECT_EQ(Content(reply), outcome ? kReply : "");
    // What is not accepted with memory is not accepted without it.
    EXPECT_TRUE(!outcome || promised == KRNetStatus_Success);
    const std::string text = Str(outcome.text);
    EXPECT_TRUE(outcome ? text.empty() : !text.empty() || AlarmIsSet());
    const bool said = outcome.status != promised || AlarmIsSet();
    KRSetFireAlarm(KRFireAlarm_None);
    return {said, std::to_string(outcome.http) + " " + std::to_string(outcome.code) + " " + text +
                      " " + Str(outcome.seenCertificate)};
  }

  TempFolder m_folder;
  TempFolder m_replies;
  TestCertificate m_authority = TestCertificate::Authority("Harbor Root");
  TlsServer m_server;
};

TEST(FailedAllocations, EndAScriptedExchangeOrLeaveItsReplyWhole) {
  ScriptedManager manager;
  manager.script.reply = "<OFX></OFX>";
  manager.script.headers = "HTTP/1.1 200 OK\r\nX-Kept: yes\r\n\r\n";
  ScriptedPlatform platform;
  const TransportExchange exchange(manager, platform, "http://bank/");
  Sweep([&](const Failure& failure) {
    const Outcome outcome = exchange.Run(failure);
    EXPECT_EQ(manager.Live(), 0u) << "an exchange was not given back";
    return outcome;
  });
}

TEST(FailedAllocations, EndARealExchangeOrLeaveItsReplyWhole) {
  LoopbackServer server;
  LoopbackPlatform platform(server);
  const std::string reply =
      "HTTP/1.1 200 OK\r\nX-Kept: yes\r\nContent-Length: 11\r\n\r\n<OFX></OFX>";
  Sweep([&](const Failure& failure) {
    server.Serve(reply);
    // The manager is made anew as well: it holds what an exchange left.
    VYNCurlManager manager;
    return TransportExchange(manager, platform, server.Url()).Run(failure);
  });
}

TEST(FailedAllocations, EndAnExchangeOfTheFrontOrLeaveItsReplyAndCertificateWhole) {
  const FrontExchange exchange;
  const std::string pin = exchange.Id();
  ASSERT_EQ(pin.size(), 28u);
  Sweep([&](const Failure& failure) { return exchange.Send(pin, KRNetStatus_Success, failure); });
}

TEST(FailedAllocations, LetNoServerThroughThatShowsAnotherCertificate) {
  const FrontExchange exchange;
  Sweep([&](const Failure& failure) {
    return exchange.Send("AAAAAAAAAAAAAAAAAAAAAAAAAAA=", KRNetStatus_UnexpectedCertificate,
                         failure);
  });
}

TEST(FailedAllocations, EndTheReadingOfAFileByTheFrontOrLeaveItWhole) {
  const FrontExchange exchange;
  Sweep([&](const Failure& failure) { return exchange.Get(failure); });
}

}  // namespace
}  // namespace krofx::testing
