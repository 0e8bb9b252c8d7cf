// The libcurl manager when the network fails: each condition has its own code.

#include "support/failing_allocation.h"
#include "transport/curl_probe.h"

namespace {

class CurlNetwork : public CurlTest {
 protected:
  // The code of a fetch from a plain server that does what the script says.
  u16 CodeOf(const std::function<void(ServerConnection&)>& script) {
    TlsServer server({.script = script, .chain = {}});
    CurlProbe probe(m_manager, m_session, m_folder);
    return probe.Get(server.Url()).Run();
  }

  u16 CodeOfUrl(const std::string& url) {
    CurlProbe probe(m_manager, m_session, m_folder);
    const u16 code = probe.Get(url).Run();
    EXPECT_TRUE(probe.progress.empty() || probe.progress[0].opCode == KROpCode_Connecting);
    return code;
  }
};

TEST_F(CurlNetwork, SaysThatAConnectionWasRefused) {
  const std::string port = std::to_string(UnusedPort());
  EXPECT_EQ(CodeOfUrl("http://127.0.0.1:" + port + "/"), VYNCurlCode_Refused);
  EXPECT_EQ(CodeOfUrl("http://localhost:" + port + "/"), VYNCurlCode_Refused);
  EXPECT_EQ(CodeOfUrl("https://127.0.0.1:" + port + "/"), VYNCurlCode_Refused);
}

TEST_F(CurlNetwork, SaysThatAHostHasNoAddress) {
  EXPECT_EQ(CodeOfUrl("http://krofx.invalid/"), VYNCurlCode_HostNotFound);
}

TEST_F(CurlNetwork, SaysThatAProxyHasNoAddress) {
  ASSERT_EQ(m_manager.SetProxy("http://krofx.invalid:1/", nullptr), 1);
  EXPECT_EQ(CodeOfUrl("http://127.0.0.1/"), VYNCurlCode_ProxyNotFound);
}

TEST_F(CurlNetwork, KeepsItsProxyOrRefusesIt_WhenMemoryRunsOut) {
  // Longer than what a text holds without memory of its own.
  const std::string url = "http://" + std::string(60, 'x') + ".invalid:1/";
  for (std::size_t nth = 1; nth < 8; ++nth) {
    u16 isSet = 0;
    {
      const FailingAllocation failure(nth);
      isSet = m_manager.SetProxy(url.c_str(), "127.0.0.2");
    }
    KRSetFireAlarm(KRFireAlarm_None);
    if (isSet != 0) {
      EXPECT_EQ(CodeOfUrl("http://127.0.0.1/"), VYNCurlCode_ProxyNotFound) << nth;
    }
    m_manager.SetProxy(nullptr, nullptr);
  }
}

TEST_F(CurlNetwork, EndsWhenItsTimeIsOver) {
  TlsServer server({.script =
                        [](ServerConnection& connection) {
                          connection.ReadRequest();
                          connection.WaitForClient();
                        },
                    .chain = {}});
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Send(server.Url(), "x").Http("text/plain", nullptr, 1).Run(),
            VYNCurlCode_TimedOut);
}

TEST_F(CurlNetwork, TakesNoAndNegativeTimesForNoLimit) {
  for (const s32 timeout : {0, -1, INT32_MIN, INT32_MAX}) {
    TlsServer server({.script =
                          [](ServerConnection& connection) {
                            connection.ReadRequest();
                            connection.Write(HttpReply("200 OK", ""));
                          },
                      .chain = {}});
    CurlProbe probe(m_manager, m_session, m_folder);
    EXPECT_EQ(probe.Get(server.Url()).Http(nullptr, nullptr, timeout).Run(), 0) << timeout;
  }
}

TEST_F(CurlNetwork, SaysThatNothingCameBack) {
  EXPECT_EQ(CodeOf([](ServerConnection& connection) { connection.ReadRequest(); }),
            VYNCurlCode_Cut);
}

TEST_F(CurlNetwork, SaysThatTheConnectionEndedInTheBody) {
  EXPECT_EQ(CodeOf([](ServerConnection& connection) {
              connection.ReadRequest();
              connection.Write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf");
            }),
            VYNCurlCode_Cut);
}

TEST_F(CurlNetwork, SaysThatTheConnectionWasReset) {
  const u16 code = CodeOf([](ServerConnection& connection) {
    connection.ReadRequest();
    connection.Write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf");
    connection.Cut();
  });
  EXPECT_TRUE(code == VYNCurlCode_ReceiveFailed || code == VYNCurlCode_Cut) << code;
}

TEST_F(CurlNetwork, DoesNotTakeACutTlsConnectionForTheEndOfAReply) {
  const TestCertificate authority = TestCertificate::Authority("authority");
  for (const char* const reply :
       {"HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\n"}) {
    TlsServer server({.script =
                          [reply](ServerConnection& connection) {
                            connection.ReadRequest();
                            connection.Write(reply);
                            SSL_set_quiet_shutdown(connection.Tls(), 1);
                          },
                      .chain = {authority.IssueForLoopback()}});
    CurlProbe probe(m_manager, m_session, m_folder);
    EXPECT_EQ(probe.Get(server.Url()).Root(authority, 7000).Run(), VYNCurlCode_Cut) << reply;
  }
}

// A reply that ends with the connection, and how the connection ends.
u16 CodeOfReplyUntilTheEnd(CurlProbe& probe, bool isClosed, bool isWarned = false) {
  const TestCertificate authority = TestCertificate::Authority("authority");
  TlsServer server({.script =
                        [isClosed](ServerConnection& connection) {
                          connection.ReadRequest();
                          connection.Write("HTTP/1.1 200 OK\r\n\r\nhalf");
                          if (!isClosed) SSL_set_quiet_shutdown(connection.Tls(), 1);
                        },
                    .chain = {authority.IssueForLoopback()},
                    .newestTls = TLS1_2_VERSION,
                    .warnsOfName = isWarned});
  return probe.Get(server.Url("localhost")).Root(authority, 7000).Run();
}

TEST_F(CurlNetwork, TakesAReplyUntilTheEndByTlsOnlyWhenTheServerClosedIt) {
  CurlProbe cut(m_manager, m_session, m_folder);
  EXPECT_EQ(CodeOfReplyUntilTheEnd(cut, false), VYNCurlCode_Cut);
  CurlProbe whole(m_manager, m_session, m_folder);
  EXPECT_EQ(CodeOfReplyUntilTheEnd(whole, true), VYNCurlCode_Success);
  EXPECT_EQ(whole.Reply(), "half");
}

TEST_F(CurlNetwork, TakesNoOtherWarningForTheEndOfAReplyByTls) {
  CurlProbe cut(m_manager, m_session, m_folder);
  EXPECT_EQ(CodeOfReplyUntilTheEnd(cut, false, true), VYNCurlCode_Cut);
  CurlProbe whole(m_manager, m_session, m_folder);
  EXPECT_EQ(CodeOfReplyUntilTheEnd(whole, true, true), VYNCurlCode_Success);
}

TEST_F(CurlNetwork, TakesAWholeReplyByTlsHoweverTheConnectionEnds) {
  const TestCertificate authority = TestCertificate::Authority("authority");
  for (const char* const reply :
       {"HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nhalf",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: Chunked\r\n\r\n4\r\nhalf\r\n0\r\n\r\n"}) {
    TlsServer server({.script =
                          [reply](ServerConnection& connection) {
                            connection.ReadRequest();
                            connection.Write(reply);
                            SSL_set_quiet_shutdown(connection.Tls(), 1);
                          },
                      .chain = {authority.IssueForLoopback()}});
    CurlProbe probe(m_manager, m_session, m_folder);
    EXPECT_EQ(probe.Get(server.Url()).Root(authority, 7000).Run(), 0) << reply;
    EXPECT_EQ(probe.Reply(), "half");
  }
}

TEST_F(CurlNetwork, SurvivesAServerThatGoesWhileMuchIsSent) {
  const TestCertificate authority = TestCertificate::Authority("authority");
  for (const bool tls : {false, true}) {
    ServerPlan plan;
    plan.script = [](ServerConnection& connection) {
      connection.ReadSome();
      connection.Cut();
    };
    if (tls) plan.chain = {authority.IssueForLoopback()};
    TlsServer server(plan);
    CurlProbe probe(m_manager, m_session, m_folder);
    probe.Send(server.Url(), std::string(20000000, 'x'));
    if (tls) probe.Root(authority, 7000);
    const u16 code = probe.Run();
    EXPECT_TRUE(code == VYNCurlCode_SendFailed || code == VYNCurlCode_ReceiveFailed) << code;
  }
}

TEST_F(CurlNetwork, SaysThatAHandshakeWasCut) {
  TlsServer server(
      {.script = [](ServerConnection& connection) { connection.ReadSome(); }, .chain = {}});
  EXPECT_EQ(CodeOfUrl("https" + server.Url().substr(4)), VYNCurlCode_HandshakeFailed);
}

TEST_F(CurlNetwork, SaysThatAReplyIsNotHttp) {
  EXPECT_EQ(CodeOf([](ServerConnection& connection) {
              connection.ReadRequest();
              connection.Write("220 some other protocol\r\n");
            }),
            VYNCurlCode_NotHttp);
}

TEST_F(CurlNetwork, SpeaksOnlyHttp) {
  for (const char* const url : {"file:///etc/passwd", "ftp://127.0.0.1/", "gopher://127.0.0.1/",
                                "dict://127.0.0.1/", "ldap://127.0.0.1/", "scp://127.0.0.1/",
                                "what://127.0.0.1/", "bank.example:443/ofx", "127.0.0.1:1/x"}) {
    EXPECT_EQ(CodeOfUrl(url), VYNCurlCode_UnsupportedScheme) << url;
  }
}

TEST_F(CurlNetwork, RefusesUrlsThatCannotBeRead) {
  for (const char* const url :
       {"", "localhost/ofx", "my_bank:443/x", "http://", "http:///", "http://a b/",
        "http://127.0.0.1:99999/", "http://127.0.0.1/\r\nX-A: 1"}) {
    EXPECT_EQ(CodeOfUrl(url), VYNCurlCode_MalformedUrl) << url;
  }
}

TEST_F(CurlNetwork, RefusesUrlsFromWhichProgramsReadDifferentHosts) {
  TlsServer server({.script =
                        [](ServerConnection& connection) {
                          connection.ReadRequest();
                          connection.Write(HttpReply("200 OK", ""));
                        },
                    .chain = {}});
  const std::string host = "127.0.0.1:" + std::to_string(server.Port());
  for (const std::string& url :
       {"http://127.0.0.2\\@" + host + "/x", "http://127.0.0.2:80\\@" + host + "/x",
        "http://u:p\\w@" + host + "/", "http://\\" + host + "/", "http:/\\@" + host,
        "http:\\\\" + host + "/", "http://[::1]x@" + host + "/", "http://u:[@" + host + "/",
        "http://a@b@" + host + "/", "http://127.0.0.2\t@" + host + "/",
        "http://127.0.0.2%5c" + host + "/", "http://127.0.0.2 @" + host + "/",
        "http://127.0.0.2\n@" + host + "/", "http:///\\@" + host + "?x"}) {
    EXPECT_EQ(CodeOfUrl(url), VYNCurlCode_MalformedUrl) << url;
  }
  EXPECT_EQ(server.Accepted(), 0);
  for (const std::string& url : {"http://" + host + "/a\\b", "http://" + host + "?a\\@b[]",
                                 "http://u%5c:%5b@" + host + "/", "http://" + host + "#\\@[b"}) {
    EXPECT_EQ(CodeOfUrl(url), 0) << url;
  }
}

TEST_F(CurlNetwork, TakesTheSchemeInAnyCase) {
  TlsServer server({.script =
                        [](ServerConnection& connection) {
                          connection.ReadRequest();
                          connection.Write(HttpReply("200 OK", ""));
                        },
                    .chain = {}});
  EXPECT_EQ(CodeOfUrl("HTTP" + server.Url().substr(4)), 0);
}

TEST_F(CurlNetwork, EndsWithoutWaitingForAPauseToRunOut) {
  // A round of the probe would pause for an hour, so each must have been ended by progress.
  const TestCertificate authority = TestCertificate::Authority("authority");
  TlsServer server({.script =
                        [](ServerConnection& connection) {
                          connection.Write(HttpReply("200 OK", connection.ReadRequest()));
                        },
                    .chain = {authority.IssueForLoopback()}});
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Send(server.Url(), "data").Root(authority, 7000).Run(), 0);
  EXPECT_LT(probe.rounds, 50);
}

}  // namespace
