// Sessions, exchanges and their handles in the libcurl manager: how each can be ended, from which
// calls, and that nothing is left.

#include <fcntl.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <memory>
#include <utility>

#include "krofx/transport/exchange/vyn_net_access.h"
#include "support/failing_allocation.h"
#include "transport/curl_probe.h"

namespace {

class CurlLifecycle : public CurlTest {
 protected:
  CurlLifecycle() : m_authority(TestCertificate::Authority("authority")) {}

  ServerPlan Hanging(bool tls = false) const {
    ServerPlan plan;
    plan.script = [](ServerConnection& connection) {
      connection.ReadRequest();
      connection.WaitForClient();
    };
    if (tls) plan.chain = {m_authority.IssueForLoopback()};
    return plan;
  }

  ServerPlan Answering(bool tls = false) const {
    ServerPlan plan = Hanging(tls);
    plan.script = [](ServerConnection& connection) {
      const std::string request = connection.ReadRequest();
      if (!request.empty()) connection.Write(HttpReply("200 OK", "reply"));
    };
    return plan;
  }

  static std::size_t OpenFiles() {
    const auto folder = std::filesystem::directory_iterator("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(folder, {}));
  }

  TestCertificate m_authority;
};

TEST_F(CurlLifecycle, OpensConnectsAndClosesSessions) {
  u16 error = 1;
  void* const session = m_manager.VCOpenInet(&error);
  EXPECT_NE(session, nullptr);
  EXPECT_NE(session, m_session);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(m_manager.VCConnect(session), 0);
  EXPECT_EQ(m_manager.VCCloseInet(session), 0);
  EXPECT_EQ(m_manager.VCCloseInet(session), VYNCurlCode_BadArgument);
  EXPECT_EQ(m_manager.VCConnect(session), VYNCurlCode_BadArgument);
  EXPECT_EQ(m_manager.VCCloseInet(nullptr), 0);
  u32 needs = 1;
  EXPECT_EQ(m_manager.VY_IspConfig_NeedsToConfigure(&needs), 0);
  EXPECT_EQ(needs, 0U);
  EXPECT_NE(m_manager.VY_IspConfig_NeedsToConfigure(nullptr), 0);
}

TEST_F(CurlLifecycle, IsTheDefault) {
  VYNNetAccess access;
  EXPECT_NE(dynamic_cast<VYNCurlManager*>(access.Session().Manager()), nullptr);
}

TEST_F(CurlLifecycle, RefusesHandlesThatAreNotItsOwn) {
  TlsServer server(Answering());
  void* const none = nullptr;
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.Get(server.Url());
  u16 error = 0;
  void* const session = m_manager.VCOpenInet(&error);
  // Of another session.
  EXPECT_EQ(m_manager.VCInitiate(session, probe.exchange), VYNCurlCode_BadArgument);
  m_manager.VCRelease(session, probe.exchange);
  // Not started yet.
  EXPECT_EQ(m_manager.VCCancel(m_session, probe.exchange), VYNCurlCode_BadArgument);
  ASSERT_EQ(probe.Start(), 0);
  // Started already.
  EXPECT_EQ(probe.Start(), VYNCurlCode_BadArgument);
  EXPECT_EQ(m_manager.VCSetHTTPInfo(probe.exchange, 0, 0, nullptr, nullptr, 1, 1),
            VYNCurlCode_BadArgument);
  EXPECT_EQ(m_manager.VCSetSSLInfo(probe.exchange, 0, nullptr, 120), VYNCurlCode_BadArgument);
  const std::string der = m_authority.Der();
  EXPECT_EQ(m_manager.VCAddTrustedRoot(probe.exchange, der.data(), static_cast<u32>(der.size()), 1),
            VYNCurlCode_BadArgument);
  probe.Finish();
  EXPECT_EQ(probe.result, 0);
  // Dead.
  EXPECT_EQ(m_manager.VCCancel(m_session, probe.exchange), VYNCurlCode_BadArgument);
  m_manager.VCRelease(m_session, probe.exchange);
  EXPECT_EQ(m_manager.VCInitiate(m_session, none), VYNCurlCode_BadArgument);
  EXPECT_EQ(m_manager.VCCancel(m_session, none), VYNCurlCode_BadArgument);
  EXPECT_EQ(m_manager.VCCloseInet(session), 0);
}

TEST_F(CurlLifecycle, RefusesArgumentsThatAreMissing) {
  u16 error = 0;
  EXPECT_EQ(m_manager.VCGetFileRequest(&error, nullptr, "http://a/", "", nullptr, nullptr),
            nullptr);
  EXPECT_EQ(error, VYNCurlCode_BadArgument);
  error = 0;
  EXPECT_EQ(m_manager.VCGetFileRequest(&error, m_session, nullptr, "", nullptr, nullptr), nullptr);
  EXPECT_EQ(error, VYNCurlCode_BadArgument);
  error = 0;
  EXPECT_EQ(
      m_manager.VCSendDataRequest(&error, m_session, "http://a/", nullptr, 1, "", nullptr, nullptr),
      nullptr);
  EXPECT_EQ(error, VYNCurlCode_BadArgument);
  EXPECT_EQ(m_manager.VCGetFileRequest(nullptr, nullptr, nullptr, "", nullptr, nullptr), nullptr);
}

TEST_F(CurlLifecycle, OpensSessionsWithoutAPlaceForTheError) {
  void* const session = m_manager.VCOpenInet(nullptr);
  ASSERT_NE(session, nullptr);
  EXPECT_EQ(m_manager.VCConnect(session), 0);
  EXPECT_EQ(m_manager.VCCloseInet(session), 0);
}

TEST_F(CurlLifecycle, KeepsTheReasonOfTheUrlWhenAHeaderIsBadToo) {
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.Send("ftp://127.0.0.1/", "data").Http("text/plain", "no header\r\n");
  EXPECT_EQ(probe.Run(), VYNCurlCode_UnsupportedScheme);
}

TEST_F(CurlLifecycle, RefusesAPostFlagThatDoesNotFit) {
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.Get("http://127.0.0.1/");
  EXPECT_EQ(m_manager.VCSetHTTPInfo(probe.exchange, 0, 1, "text/plain", nullptr, 1, 1),
            VYNCurlCode_BadArgument);
  m_manager.VCRelease(m_session, probe.exchange);
}

TEST_F(CurlLifecycle, NeverGivesAHandleTwice) {
  CurlProbe first(m_manager, m_session, m_folder);
  first.Get("http://127.0.0.1/");
  m_manager.VCRelease(m_session, first.exchange);
  CurlProbe second(m_manager, m_session, m_folder);
  second.Get("http://127.0.0.1/");
  EXPECT_NE(first.exchange, second.exchange);
  EXPECT_EQ(first.Start(), VYNCurlCode_BadArgument);
  m_manager.VCRelease(m_session, second.exchange);
}

TEST_F(CurlLifecycle, RemovesTheFilesOfAnExchangeThatNobodyStarts) {
  CurlProbe released(m_manager, m_session, m_folder);
  released.Get("http://127.0.0.1/");
  EXPECT_EQ(m_temp.Entries(), 2U);
  m_manager.VCRelease(m_session, released.exchange);
  EXPECT_EQ(m_temp.Entries(), 0U);
  CurlProbe forgotten(m_manager, m_session, m_folder);
  forgotten.Get("http://127.0.0.1/");
  EXPECT_EQ(m_temp.Entries(), 2U);
  EXPECT_EQ(m_manager.VCCloseInet(m_session), 0);
  EXPECT_EQ(m_temp.Entries(), 0U);
  EXPECT_EQ(forgotten.finished, 0);
  u16 error = 0;
  m_session = m_manager.VCOpenInet(&error);
}

TEST_F(CurlLifecycle, RemovesTheFilesWhenNobodyIsToldOfThem) {
  TlsServer server(Answering());
  u16 error = 0;
  void* const exchange = m_manager.VCGetFileRequest(&error, m_session, server.Url().c_str(),
                                                    m_folder.c_str(), nullptr, nullptr);
  ASSERT_EQ(m_manager.VCInitiate(m_session, exchange), 0);
  EXPECT_EQ(m_temp.Entries(), 2U);
  while (m_manager.VCCancel(m_session, exchange) == 0) m_manager.VCWork(1);
  EXPECT_EQ(m_temp.Entries(), 0U);
}

TEST_F(CurlLifecycle, RunsToItsEndWhenNobodyIsToldOfIt) {
  std::string seen;
  ServerPlan plan;
  plan.script = [&seen](ServerConnection& connection) {
    seen = connection.ReadRequest();
    connection.Write(HttpReply("200 OK", "reply"));
  };
  {
    TlsServer server(plan);
    u16 error = 0;
    void* const exchange = m_manager.VCSendDataRequest(
        &error, m_session, server.Url().c_str(), "data", 4, m_folder.c_str(), nullptr, nullptr);
    ASSERT_EQ(m_manager.VCInitiate(m_session, exchange), 0);
    while (m_temp.Entries() != 0) m_manager.VCWork(3600000);
    EXPECT_EQ(m_manager.VCCancel(m_session, exchange), VYNCurlCode_BadArgument) << "not over";
  }
  EXPECT_TRUE(seen.ends_with("\r\n\r\ndata")) << seen;
  EXPECT_EQ(m_manager.GetHttpStatus(), 200U);
}

TEST_F(CurlLifecycle, HandsTheFilesOverAfterAFailureToo) {
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.Get("http://127.0.0.1:" + std::to_string(UnusedPort()) + "/").Run();
  EXPECT_EQ(m_temp.Entries(), 2U);
  EXPECT_TRUE(std::filesystem::exists(probe.replyFile));
  EXPECT_EQ(probe.Reply(), "");
}

TEST_F(CurlLifecycle, CancelsAtOnce) {
  TlsServer server(Hanging());
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Start(), 0);
  m_manager.VCWork(1);
  EXPECT_EQ(m_manager.VCCancel(m_session, probe.exchange), 0);
  EXPECT_EQ(probe.finished, 1);
  EXPECT_EQ(probe.result, VYNCurlCode_Cancelled);
  EXPECT_EQ(m_manager.VCCancel(m_session, probe.exchange), VYNCurlCode_BadArgument);
}

TEST_F(CurlLifecycle, CancelsFromAProgressCallback) {
  TlsServer server(Hanging());
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.onProgress = [&](const VYProgressRecord&) {
    EXPECT_EQ(m_manager.VCCancel(m_session, probe.exchange), 0);
    EXPECT_EQ(probe.finished, 1);
  };
  EXPECT_EQ(probe.Get(server.Url()).Run(), VYNCurlCode_Cancelled);
  EXPECT_EQ(probe.progress.size(), 1U);
}

TEST_F(CurlLifecycle, CancelsFromTheCertificateCallbackAndSendsNothing) {
  std::string seen = "nothing yet";
  ServerPlan plan = Answering(true);
  plan.script = [&seen](ServerConnection& connection) { seen = connection.ReadRequest(); };
  {
    TlsServer server(plan);
    CurlProbe probe(m_manager, m_session, m_folder);
    probe.onCertificate = [&] {
      EXPECT_EQ(m_manager.VCCancel(m_session, probe.exchange), 0);
      EXPECT_EQ(m_manager.VCCancel(m_session, probe.exchange), 0);
      EXPECT_EQ(probe.finished, 0);
      m_manager.VCWork(3600000);
    };
    EXPECT_EQ(probe.Send(server.Url(), "secret").Root(m_authority, 7000).Run(),
              VYNCurlCode_Cancelled);
  }
  EXPECT_EQ(seen, "");
}

TEST_F(CurlLifecycle, CancelsWhileTheReasonOfARefusalIsTold) {
  TlsServer server(Answering(true));
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.onCertificate = [&] { EXPECT_EQ(m_manager.VCCancel(m_session, probe.exchange), 0); };
  probe.Get(server.Url()).Root(TestCertificate::Authority("other"), 7000);
  EXPECT_EQ(probe.Run(), VYNCurlCode_Untrusted);
}

TEST_F(CurlLifecycle, StartsNothingFromTheCertificateCallback) {
  TlsServer server(Answering(true));
  CurlProbe inner(m_manager, m_session, m_folder);
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.onCertificate = [&] {
    inner.Get(server.Url());
    EXPECT_EQ(inner.Start(), VYNCurlCode_BadArgument);
    m_manager.VCRelease(m_session, inner.exchange);
  };
  EXPECT_EQ(probe.Get(server.Url()).Root(m_authority, 7000).Run(), 0);
  EXPECT_EQ(inner.finished, 0);
}

TEST_F(CurlLifecycle, RunsAnotherExchangeFromAProgressCallback) {
  TlsServer outerServer(Answering());
  TlsServer innerServer(Answering());
  CurlProbe inner(m_manager, m_session, m_folder);
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.onProgress = [&](const VYProgressRecord&) {
    if (inner.exchange != nullptr) return;
    EXPECT_EQ(inner.Get(innerServer.Url()).Run(), 0);
  };
  ASSERT_EQ(probe.Get(outerServer.Url()).Start(), 0);
  probe.Finish();
  EXPECT_EQ(probe.result, 0);
  EXPECT_EQ(inner.Reply(), "reply");
}

TEST_F(CurlLifecycle, EndsAnExchangeWithABadUrlThatAProgressCallbackStarted) {
  TlsServer server(Answering());
  CurlProbe inner(m_manager, m_session, m_folder);
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.onProgress = [&](const VYProgressRecord&) {
    if (inner.exchange != nullptr) return;
    EXPECT_EQ(inner.Get("ftp://127.0.0.1/").Start(), 0);
  };
  EXPECT_EQ(probe.Get(server.Url()).Run(), 0);
  inner.Finish();
  EXPECT_EQ(inner.result, VYNCurlCode_UnsupportedScheme);
  EXPECT_TRUE(inner.progress.empty());
}

TEST_F(CurlLifecycle, IsGivenBackFromEachCallback) {
  TlsServer server(Answering(true));
  for (const int where : {0, 1, 2, 3}) {
    CurlProbe probe(m_manager, m_session, m_folder);
    bool released = false;
    const auto release = [&] {
      m_manager.VCRelease(m_session, probe.exchange);
      released = true;
    };
    if (where == 0) probe.onProgress = [&](const VYProgressRecord&) { release(); };
    if (where == 1 || where == 2) probe.onCertificate = release;
    if (where == 3) probe.onFinished = release;
    probe.Get(server.Url())
        .Root(where == 2 ? TestCertificate::Authority("other") : m_authority, 7000);
    ASSERT_EQ(probe.Start(), 0);
    while (!released && probe.finished == 0) m_manager.VCWork(3600000);
    EXPECT_TRUE(released) << where << ": " << probe.result;
    for (int i = 0; i < 3; ++i) m_manager.VCWork(0);
    EXPECT_EQ(probe.finished, where == 3 ? 1 : 0) << where;
  }
}

TEST_F(CurlLifecycle, IsGivenBackInMidExchange) {
  TlsServer server(Hanging());
  auto probe = std::make_unique<CurlProbe>(m_manager, m_session, m_folder);
  ASSERT_EQ(probe->Send(server.Url(), std::string(100000, 'x')).Start(), 0);
  while (probe->progress.size() < 2) m_manager.VCWork(3600000);
  m_manager.VCRelease(m_session, probe->exchange);
  EXPECT_EQ(m_temp.Entries(), 0U);
  // Nothing may reach the probe or its data any more.
  probe.reset();
  for (int i = 0; i < 3; ++i) m_manager.VCWork(0);
}

TEST_F(CurlLifecycle, DoesNotReadTheDataOfAnExchangeThatAnothersCertificateCallbackGaveBack) {
  TlsServer hanging(Hanging());
  TlsServer server(Answering(true));
  // libcurl advances them in the order in which they were started.
  for (const bool isFirst : {true, false}) {
    auto other = std::make_unique<CurlProbe>(m_manager, m_session, m_folder);
    CurlProbe probe(m_manager, m_session, m_folder);
    probe.onCertificate = [&] {
      m_manager.VCRelease(m_session, other->exchange);
      other.reset();
    };
    other->Send(hanging.Url(), std::string(50000000, 'x'));
    probe.Get(server.Url()).Root(m_authority, 7000);
    if (isFirst) other->Start();
    ASSERT_EQ(probe.Start(), 0);
    if (!isFirst) other->Start();
    probe.Finish();
    EXPECT_EQ(probe.result, 0);
  }
}

TEST_F(CurlLifecycle, TakesNothingThatComesAfterAnothersCertificateCallbackCancelledIt) {
  const std::string head = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n";
  for (const bool hasBegun : {false, true}) {
    // The server of `probe` is busy with `earlier` until `other` waits for the rest of its reply.
    bool isBusy = true;
    ServerPlan plan = Answering(true);
    plan.script = [&isBusy](ServerConnection& connection) {
      connection.ReadRequest();
      if (!std::exchange(isBusy, false)) return connection.Write(HttpReply("200 OK", "reply"));
      connection.WaitForClient();
    };
    std::promise<void> asked;
    std::promise<void> cancelled;
    std::promise<void> written;
    TlsServer server(plan);
    TlsServer otherServer({.script =
                               [&](ServerConnection& connection) {
                                 connection.ReadRequest();
                                 if (hasBegun) connection.Write(head + "a");
                                 asked.set_value();
                                 cancelled.get_future().wait();
                                 connection.Write(hasBegun ? "b" : head + "ab");
                                 written.set_value();
                                 connection.WaitForClient();
                               },
                           .chain = {}});
    CurlProbe earlier(m_manager, m_session, m_folder);
    CurlProbe probe(m_manager, m_session, m_folder);
    CurlProbe other(m_manager, m_session, m_folder);
    probe.onCertificate = [&] {
      EXPECT_EQ(m_manager.VCCancel(m_session, other.exchange), 0);
      cancelled.set_value();
      written.get_future().wait();
    };
    ASSERT_EQ(earlier.Get(server.Url()).Root(m_authority, 7000).Start(), 0);
    while (earlier.asked == 0) m_manager.VCWork(3600000);
    ASSERT_EQ(probe.Get(server.Url()).Root(m_authority, 7000).Start(), 0);
    ASSERT_EQ(other.Get(otherServer.Url()).Start(), 0);
    auto isAsked = asked.get_future();
    const auto hasTakenIt = [&] {
      return hasBegun ? other.Phases().back() == KROpCode_Receiving
                      : isAsked.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    };
    while (other.progress.empty() || !hasTakenIt()) m_manager.VCWork(1);
    m_manager.VCRelease(m_session, earlier.exchange);
    probe.Finish();
    EXPECT_EQ(probe.result, 0);
    EXPECT_EQ(other.finished, 1);
    EXPECT_EQ(other.result, VYNCurlCode_Cancelled);
    EXPECT_EQ(other.Reply(), hasBegun ? "a" : "");
    EXPECT_EQ(other.Headers(), hasBegun ? "Content-Length: 2\r\n" : "");
  }
}

TEST_F(CurlLifecycle, ClosingASessionEndsWhatRunsInIt) {
  TlsServer server(Hanging());
  u16 error = 0;
  void* const session = m_manager.VCOpenInet(&error);
  CurlProbe running(m_manager, session, m_folder);
  CurlProbe created(m_manager, session, m_folder);
  CurlProbe elsewhere(m_manager, m_session, m_folder);
  ASSERT_EQ(running.Get(server.Url()).Start(), 0);
  ASSERT_EQ(elsewhere.Get(server.Url()).Start(), 0);
  created.Get(server.Url());
  EXPECT_EQ(m_manager.VCCloseInet(session), 0);
  EXPECT_EQ(running.finished, 1);
  EXPECT_EQ(running.result, VYNCurlCode_Cancelled);
  EXPECT_EQ(created.finished, 0);
  EXPECT_EQ(elsewhere.finished, 0);
  m_manager.VCRelease(m_session, elsewhere.exchange);
}

TEST_F(CurlLifecycle, ClosesItsSessionFromEachCallback) {
  TlsServer server(Answering(true));
  for (const int where : {0, 1, 2}) {
    u16 error = 0;
    void* const session = m_manager.VCOpenInet(&error);
    CurlProbe probe(m_manager, session, m_folder);
    const auto close = [&] { m_manager.VCCloseInet(session); };
    if (where == 0) probe.onProgress = [&](const VYProgressRecord&) { close(); };
    if (where == 1) probe.onCertificate = close;
    if (where == 2) probe.onFinished = close;
    probe.Get(server.Url()).Root(m_authority, 7000);
    EXPECT_EQ(probe.Run(), where == 2 ? 0 : VYNCurlCode_Cancelled) << where;
  }
}

TEST_F(CurlLifecycle, IsDeletedFromEachCallback) {
  TlsServer server(Answering(true));
  for (const int where : {0, 1, 2, 3}) {
    auto* manager = new VYNCurlManager;
    u16 error = 0;
    void* const session = manager->VCOpenInet(&error);
    CurlProbe probe(*manager, session, m_folder);
    const auto destroy = [&manager] {
      delete manager;
      manager = nullptr;
    };
    if (where == 0) probe.onProgress = [&](const VYProgressRecord&) { destroy(); };
    if (where == 1 || where == 2) probe.onCertificate = destroy;
    if (where == 3) probe.onFinished = destroy;
    probe.Get(server.Url())
        .Root(where == 2 ? TestCertificate::Authority("other") : m_authority, 7000);
    ASSERT_EQ(probe.Start(), 0);
    while (manager != nullptr && probe.finished == 0) manager->VCWork(3600000);
    EXPECT_EQ(manager, nullptr) << where << ": " << probe.result;
    EXPECT_EQ(probe.finished, where == 3 ? 1 : 0) << where;
  }
}

TEST_F(CurlLifecycle, EndsWithoutARecordWhenItsManagerIsDeleted) {
  TlsServer server(Hanging());
  auto manager = std::make_unique<VYNCurlManager>();
  u16 error = 0;
  void* const session = manager->VCOpenInet(&error);
  CurlProbe probe(*manager, session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Start(), 0);
  manager->VCWork(1);
  manager.reset();
  EXPECT_EQ(probe.finished, 0);
  EXPECT_EQ(m_temp.Entries(), 0U);
}

TEST_F(CurlLifecycle, RunsSeveralExchangesAtOnce) {
  TlsServer first(Answering());
  TlsServer second(Answering());
  CurlProbe one(m_manager, m_session, m_folder);
  CurlProbe two(m_manager, m_session, m_folder);
  ASSERT_EQ(one.Get(first.Url()).Start(), 0);
  ASSERT_EQ(two.Get(second.Url()).Start(), 0);
  one.Finish();
  two.Finish();
  EXPECT_EQ(one.Reply() + two.Reply(), "replyreply");
}

// The result of one exchange, from the construction of its manager to its start.
u16 CodeOfSetup(const std::string& url, const std::string& der, const std::string& folder) {
  VYNCurlManager manager;
  u16 error = 0;
  void* const session = manager.VCOpenInet(&error);
  if (session == nullptr) {
    manager.VCWork(0);
    return error;
  }
  void* const exchange =
      manager.VCGetFileRequest(&error, session, url.c_str(), folder.c_str(), nullptr, nullptr);
  if (exchange == nullptr) return error;
  u16 code = manager.VCSetSSLInfo(exchange, 0, nullptr, 120);
  if (code == 0) {
    code = manager.VCAddTrustedRoot(exchange, der.data(), static_cast<u32>(der.size()), 7000);
  }
  return code == 0 ? manager.VCInitiate(session, exchange) : code;
}

TEST_F(CurlLifecycle, WithoutMemoryNothingStartsAndNothingLeaks) {
  TlsServer server(Answering(true));
  const std::string url = server.Url();
  const std::string der = m_authority.Der();
  std::size_t nth = 1;
  for (;; ++nth) {
    const FailingAllocation failing(nth);
    const u16 code = CodeOfSetup(url, der, m_folder);
    if (krofx::internal::AllocationFailure::Count() < nth) {
      EXPECT_EQ(code, 0);
      break;
    }
    EXPECT_EQ(code, VYNCurlCode_NoMemory) << nth;
    EXPECT_TRUE(AlarmIsSet()) << nth;
    ASSERT_EQ(m_temp.Entries(), 0U);
  }
  EXPECT_GT(nth, 4U);
}

TEST_F(CurlLifecycle, DoesNothingWithoutMemoryForItself) {
  std::unique_ptr<VYNCurlManager> manager;
  {
    const FailingAllocation failing(2);  // The first is the manager itself.
    manager.reset(new VYNCurlManager);
  }
  ASSERT_NE(manager, nullptr);
  u16 error = 0;
  EXPECT_EQ(manager->VCOpenInet(&error), nullptr);
  EXPECT_EQ(error, VYNCurlCode_NoMemory);
  void* const none = nullptr;
  EXPECT_EQ(manager->SetProxy("http://127.0.0.1:1/", nullptr), 0);
  EXPECT_EQ(manager->SetSystemRoots("roots.pem", nullptr), 0);
  manager->SetReplyLimit(1);
  EXPECT_EQ(manager->GetHttpStatus(), 0U);
  EXPECT_EQ(manager->VCConnect(none), VYNCurlCode_BadArgument);
  EXPECT_EQ(manager->VCCloseInet(&error), VYNCurlCode_BadArgument);
  error = 0;
  EXPECT_EQ(manager->VCGetFileRequest(&error, none, "http://127.0.0.1/", "", nullptr, nullptr),
            none);
  EXPECT_EQ(error, VYNCurlCode_BadArgument);
  EXPECT_EQ(manager->VCSetHTTPInfo(none, 0, 0, nullptr, nullptr, 1, 1), VYNCurlCode_BadArgument);
  EXPECT_EQ(manager->VCSetSSLInfo(none, 0, nullptr, 120), VYNCurlCode_BadArgument);
  EXPECT_EQ(manager->VCAddTrustedRoot(none, "", 0, 1), VYNCurlCode_BadArgument);
  EXPECT_EQ(manager->VCInitiate(none, none), VYNCurlCode_BadArgument);
  EXPECT_EQ(manager->VCCancel(none, none), VYNCurlCode_BadArgument);
  manager->VCRelease(none, none);
  manager->VCPaceWork();
  manager->VCWork(0);
}

TEST_F(CurlLifecycle, AThousandExchangesLeaveNothingBehind) {
  TlsServer server(Answering(true));
  std::size_t files = 0;
  for (int i = 0; i < 1000; ++i) {
    CurlProbe probe(m_manager, m_session, m_folder);
    ASSERT_EQ(probe.Send(server.Url(), "data").Root(m_authority, 7000).Run(), 0);
    ASSERT_EQ(probe.Reply(), "reply");
    // The first one may open files that the process keeps open.
    if (i == 0) files = OpenFiles();
  }
  EXPECT_EQ(m_temp.Entries(), 0U);
  m_manager.VCWork(0);
  // The server's thread may or may not have closed its end of the last connection.
  EXPECT_LE(OpenFiles(), files + 1);
}

}  // namespace
