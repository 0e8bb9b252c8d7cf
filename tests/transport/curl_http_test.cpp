// The libcurl manager with plain HTTP: the request, the reply, and the files of the reply.

#include <sys/stat.h>

#include <filesystem>

#include "support/failing_allocation.h"
#include "support/scoped_file_size.h"
#include "support/scoped_variable.h"
#include "transport/curl_probe.h"

namespace {

constexpr char kBody[] = "<OFX>hello</OFX>";

// Answers every request with its own text.
ServerPlan Echo() {
  return {.script =
              [](ServerConnection& connection) {
                connection.Write(HttpReply("200 OK", connection.ReadRequest()));
              },
          .chain = {}};
}

ServerPlan Answer(const std::string& reply) {
  return {.script =
              [reply](ServerConnection& connection) {
                connection.ReadRequest();
                connection.Write(reply);
              },
          .chain = {}};
}

class CurlHttp : public CurlTest {
 protected:
  // What a server saw of a send.
  std::string Sent(const char* contentType, const char* headers) {
    TlsServer server(Echo());
    CurlProbe probe(m_manager, m_session, m_folder);
    probe.Send(server.Url(), kBody).Http(contentType, headers);
    EXPECT_EQ(probe.Run(), 0);
    return probe.Reply();
  }

  // The code of a send with header lines that must not be sent.
  u16 CodeOfHeaders(const char* contentType, const char* headers) {
    TlsServer server(Echo());
    CurlProbe probe(m_manager, m_session, m_folder);
    const u16 code = probe.Send(server.Url(), kBody).Http(contentType, headers).Run();
    EXPECT_EQ(server.Accepted(), 0);
    return code;
  }

  u16 CodeOf(const std::string& reply) {
    TlsServer server(Answer(reply));
    CurlProbe probe(m_manager, m_session, m_folder);
    return probe.Get(server.Url()).Run();
  }
};

TEST_F(CurlHttp, FetchesByGetWithoutABody) {
  TlsServer server(Echo());
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Run(), 0);
  const std::string seen = probe.Reply();
  EXPECT_TRUE(seen.starts_with("GET /ofx HTTP/1.1\r\n")) << seen;
  EXPECT_TRUE(seen.ends_with("\r\n\r\n")) << seen;
}

TEST_F(CurlHttp, SendsAnOfxPostWhenNoHttpOptionsAreSet) {
  TlsServer server(Echo());
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Send(server.Url(), kBody).Run(), 0);
  const std::string seen = probe.Reply();
  EXPECT_TRUE(seen.starts_with("POST /ofx HTTP/1.1\r\n")) << seen;
  EXPECT_NE(seen.find("\r\nContent-Type: application/x-ofx\r\n"), std::string::npos) << seen;
  EXPECT_NE(seen.find("\r\nContent-Length: 16\r\n"), std::string::npos) << seen;
  EXPECT_TRUE(seen.ends_with(std::string("\r\n\r\n") + kBody)) << seen;
}

TEST_F(CurlHttp, SendsNeitherExpectationNorCookieNorCodingNorAgent) {
  TlsServer server(Echo());
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Send(server.Url(), std::string(3000000, 'x')).Run(), 0);
  const std::string head = probe.Reply().substr(0, 400);
  for (const char* const name : {"Expect", "Cookie", "Accept-Encoding", "Authorization", "TE:"}) {
    EXPECT_EQ(head.find(name), std::string::npos) << name;
  }
}

TEST_F(CurlHttp, SendsNothingAtAll) {
  TlsServer server(Echo());
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Send(server.Url(), "").Run(), 0);
  EXPECT_NE(probe.Reply().find("\r\nContent-Length: 0\r\n"), std::string::npos);
}

TEST_F(CurlHttp, SendsTheContentTypeAndTheExtraHeaders) {
  const std::string seen = Sent("text/plain", "X-One: 1\r\nX-Two:2\nX-Empty:\r\n\r\nX-Last: \t3 ");
  for (const char* const line : {"Content-Type: text/plain", "X-One: 1", "X-Two: 2", "X-Last: 3"}) {
    EXPECT_NE(seen.find(std::string("\r\n") + line + "\r\n"), std::string::npos) << line << seen;
  }
  EXPECT_NE(seen.find("\r\nX-Empty:"), std::string::npos) << seen;
  EXPECT_EQ(seen.find("application/x-ofx"), std::string::npos);
}

TEST_F(CurlHttp, SendsTheOfxContentTypeWithExtraHeadersAlone) {
  const std::string seen = Sent(nullptr, "X-One: 1\r\n");
  EXPECT_NE(seen.find("\r\nContent-Type: application/x-ofx\r\n"), std::string::npos) << seen;
  EXPECT_NE(seen.find("\r\nX-One: 1\r\n"), std::string::npos) << seen;
}

TEST_F(CurlHttp, LetsAContentTypeLineTakeThePlaceOfTheArgument) {
  const std::string seen = Sent("application/x-ofx", "content-type: multipart/x-mixed\r\n");
  EXPECT_NE(seen.find("content-type: multipart/x-mixed\r\n"), std::string::npos) << seen;
  EXPECT_EQ(seen.find("application/x-ofx"), std::string::npos) << seen;
}

TEST_F(CurlHttp, SendsNothingWhenAHeaderWouldSmuggleAnother) {
  for (const char* const headers :
       {"X-A: 1\rX-B: 2\r\n", "X-A: 1\r\r\n", "no header\r\n", " X-A: folded\r\n", ": no name\r\n",
        "X A: 1\r\n", "X-A : 1\r\n", "X-A: \x01\r\n", "X-A: 1\r", "GET / HTTP/1.1\r\n\r\n"}) {
    EXPECT_EQ(CodeOfHeaders("text/plain", headers), VYNCurlCode_BadHeader) << headers;
  }
  EXPECT_EQ(CodeOfHeaders("text/plain\r\nX-B: 2", "X-A: 1\r\n"), VYNCurlCode_BadHeader);
}

TEST_F(CurlHttp, SendsNothingWhenAHeaderWouldFrameTheMessage) {
  for (const char* const headers :
       {"Content-Length: 3\r\n", "transfer-encoding: chunked\r\n", "EXPECT: 100-continue\r\n"}) {
    EXPECT_EQ(CodeOfHeaders("text/plain", headers), VYNCurlCode_BadHeader) << headers;
  }
}

TEST_F(CurlHttp, MakesTwoFilesForTheOwnerOnly) {
  TlsServer server(Answer(HttpReply("200 OK", "reply", "X-Key: value\r\n")));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Run(), 0);
  EXPECT_EQ(m_temp.Entries(), 2U);
  for (const std::string& name : {probe.replyFile, probe.headerFile}) {
    struct stat status {};
    ASSERT_EQ(stat(name.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    EXPECT_TRUE(name.starts_with(m_folder + "/krofx-")) << name;
  }
  EXPECT_EQ(probe.Reply(), "reply");
  EXPECT_EQ(probe.Headers(), "X-Key: value\r\nContent-Length: 5\r\n");
}

TEST_F(CurlHttp, KeepsTheHeadersOfTheFinalReplyOnly) {
  TlsServer server(Answer("HTTP/1.1 103 Early Hints\r\nLink: a\r\n\r\n" +
                          HttpReply("200 OK", "", "X-Key: value\r\n")));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Run(), 0);
  EXPECT_EQ(probe.Headers(), "X-Key: value\r\nContent-Length: 0\r\n");
}

TEST_F(CurlHttp, TakesAFolderWithASlashABackslashOrNothingAtItsEnd) {
  TlsServer server(Answer(HttpReply("200 OK", "x")));
  std::string backslashes = m_folder + "\\";
  for (const std::string& folder : {m_folder, m_folder + "/", backslashes}) {
    CurlProbe probe(m_manager, m_session, folder);
    ASSERT_EQ(probe.Get(server.Url()).Run(), 0) << folder;
    EXPECT_TRUE(probe.replyFile.starts_with(m_folder + "/krofx-")) << probe.replyFile;
    EXPECT_EQ(m_temp.Entries(), 2U);
  }
}

TEST_F(CurlHttp, TakesTheSystemsTemporaryFolderForAnEmptyOneWhateverTheEnvironmentSays) {
  const ScopedVariable folder("TMPDIR", m_folder);
  TlsServer server(Answer(HttpReply("200 OK", "x")));
  CurlProbe probe(m_manager, m_session, "");
  EXPECT_EQ(probe.Get(server.Url()).Run(), 0);
  EXPECT_EQ(m_temp.Entries(), 0U);
  EXPECT_TRUE(probe.replyFile.starts_with("/tmp/krofx-")) << probe.replyFile;
  u16 error = 1;
  void* const withoutFolder = m_manager.VCGetFileRequest(&error, m_session, server.Url().c_str(),
                                                         nullptr, nullptr, nullptr);
  EXPECT_NE(withoutFolder, nullptr);
  EXPECT_EQ(error, 0);
  m_manager.VCRelease(m_session, withoutFolder);
}

TEST_F(CurlHttp, RefusesAFolderWhoseFilesHaveTooLongNames) {
  std::string folder = m_folder;
  while (folder.size() < VYFinishedRecord::kReplyFileSize) folder += "/../" + m_folder.substr(1);
  CurlProbe probe(m_manager, m_session, folder);
  probe.Get("http://127.0.0.1/");
  EXPECT_EQ(probe.exchange, nullptr);
  EXPECT_EQ(probe.error, VYNCurlCode_FileFailed);
}

TEST_F(CurlHttp, TakesTheLongestNameThatFits) {
  TlsServer server(Answer(HttpReply("200 OK", "x")));
  const std::string file = "krofx-XXXXXX.header";
  std::string folder = m_folder;
  while (folder.size() + file.size() < VYFinishedRecord::kReplyFileSize - 1) folder += '/';
  CurlProbe longest(m_manager, m_session, folder.substr(1).insert(0, "/"));
  ASSERT_EQ(longest.Get(server.Url()).Run(), 0);
  EXPECT_EQ(longest.Reply(), "x");
  // With one more character the reply's own file, whose name is shorter, would still have room.
  for (const char* const more : {"/", "///"}) {
    CurlProbe tooLong(m_manager, m_session, folder + more);
    tooLong.Get(server.Url());
    EXPECT_EQ(tooLong.error, VYNCurlCode_FileFailed) << more;
    EXPECT_EQ(m_temp.Entries(), 2U) << more;
  }
}

TEST_F(CurlHttp, RefusesAFolderThatIsNotThere) {
  CurlProbe probe(m_manager, m_session, m_folder + "/none");
  probe.Get("http://127.0.0.1/");
  EXPECT_EQ(probe.exchange, nullptr);
  EXPECT_EQ(probe.error, VYNCurlCode_FileFailed);
}

TEST_F(CurlHttp, SaysThatThereIsNoRoomForTheReply) {
  TlsServer server(Answer(HttpReply("200 OK", std::string(10000, 'x'))));
  CurlProbe body(m_manager, m_session, m_folder);
  TlsServer talkative(Answer(HttpReply("200 OK", "x", "X-A: " + std::string(10000, 'x') + "\r\n")));
  CurlProbe header(m_manager, m_session, m_folder);
  const ScopedFileSize limit(4096);
  EXPECT_EQ(body.Get(server.Url()).Run(), VYNCurlCode_FileFailed);
  EXPECT_LE(body.Reply().size(), 4096U);
  EXPECT_EQ(header.Get(talkative.Url()).Run(), VYNCurlCode_FileFailed);
  EXPECT_EQ(header.Reply(), "");
}

TEST_F(CurlHttp, GivesTheCodeOfEachStatus) {
  struct Row {
    const char* status;
    u16 code;
  };
  constexpr Row kRows[] = {
      {"200 OK", 0},   {"201 A", 1501}, {"202 A", 1502}, {"203 A", 1503}, {"204 A", 1504},
      {"205 A", 1688}, {"206 A", 1688}, {"226 A", 1688}, {"299 A", 1688}, {"301 A", 1505},
      {"302 A", 1506}, {"303 A", 1507}, {"304 A", 1508}, {"305 A", 1506}, {"307 A", 1506},
      {"308 A", 1505}, {"400 A", 1509}, {"401 A", 1510}, {"402 A", 1511}, {"403 A", 1512},
      {"404 A", 1513}, {"405 A", 1514}, {"406 A", 1515}, {"407 A", 1516}, {"408 A", 1517},
      {"409 A", 1509}, {"418 A", 1509}, {"429 A", 1509}, {"500 A", 1518}, {"501 A", 1519},
      {"502 A", 1520}, {"503 A", 1521}, {"504 A", 1522}, {"505 A", 1518}, {"599 A", 1518},
      {"600 A", 1535}, {"999 A", 1535},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(CodeOf(HttpReply(row.status, "")), row.code) << row.status;
  }
}

TEST_F(CurlHttp, HandsTheBodyOfAnErrorOver) {
  TlsServer server(Answer(HttpReply("404 Not Found", "no such account")));
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Run(), 1513);
  EXPECT_EQ(probe.Reply(), "no such account");
}

TEST_F(CurlHttp, DoesNotFollowARedirect) {
  TlsServer other(Answer(HttpReply("200 OK", "elsewhere")));
  TlsServer server(Answer(HttpReply("302 Found", "", "Location: " + other.Url() + "\r\n")));
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Run(), VYNCurlCode_Found);
  EXPECT_EQ(server.Accepted(), 1);
  EXPECT_EQ(other.Accepted(), 0);
}

TEST_F(CurlHttp, MovesALargeBodyEachWay) {
  TlsServer server(Echo());
  std::string data(5000000, '\0');
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<char>(i * 7 + i / 251);
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Send(server.Url(), data).Run(), 0);
  EXPECT_TRUE(probe.Reply().ends_with("\r\n\r\n" + data));
}

TEST_F(CurlHttp, TellsOfConnectingOnceThenOfSendingThenOfReceiving) {
  TlsServer server(Echo());
  CurlProbe probe(m_manager, m_session, m_folder);
  const std::string data(1000000, 'x');
  ASSERT_EQ(probe.Send(server.Url(), data).Run(), 0);
  EXPECT_EQ(probe.Phases(),
            (std::vector<u32>{KROpCode_Connecting, KROpCode_Sending, KROpCode_Receiving}));
  u32 sent = 0;
  u32 received = 0;
  u32 connecting = 0;
  for (const VYProgressRecord& record : probe.progress) {
    if (record.opCode == KROpCode_Connecting) ++connecting;
    // No progress is reported twice: each record has a higher counter than the one before.
    EXPECT_TRUE(record.opCode != KROpCode_Sending || record.sent > sent);
    EXPECT_TRUE(record.opCode != KROpCode_Receiving || record.received > received);
    sent = record.sent;
    received = record.received;
  }
  EXPECT_EQ(connecting, 1U);
  const VYProgressRecord last = probe.progress.back();
  EXPECT_EQ(u32{last.sent}, 1000000U);
  EXPECT_EQ(u32{last.sendTotal}, 1000000U);
  EXPECT_EQ(u32{last.received}, std::filesystem::file_size(probe.replyFile));
  EXPECT_EQ(u32{last.receiveTotal}, std::filesystem::file_size(probe.replyFile));
}

TEST_F(CurlHttp, SaysNoTotalOfAReplyThatDoesNotSayItsLength) {
  TlsServer server(Answer("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\nuntil the end"));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Run(), 0);
  EXPECT_EQ(probe.Reply(), "until the end");
  EXPECT_EQ(u32{probe.progress.back().receiveTotal}, 0U);
  EXPECT_EQ(u32{probe.progress.back().received}, 13U);
}

TEST_F(CurlHttp, TakesAReplyInPieces) {
  TlsServer server(
      Answer("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
             "3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n"));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Run(), 0);
  EXPECT_EQ(probe.Reply(), "abcde");
}

TEST_F(CurlHttp, LeavesACodedBodyAsItCame) {
  TlsServer server(Answer(HttpReply("200 OK", "not gzip", "Content-Encoding: gzip\r\n")));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Run(), 0);
  EXPECT_EQ(probe.Reply(), "not gzip");
}

TEST_F(CurlHttp, RefusesAReplyOverTheLimit) {
  m_manager.SetReplyLimit(10);
  EXPECT_EQ(CodeOf(HttpReply("200 OK", "0123456789")), 0);
  EXPECT_EQ(CodeOf(HttpReply("200 OK", "0123456789a")), VYNCurlCode_ReplyTooLarge);
  EXPECT_EQ(CodeOf("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n0123456789a"),
            VYNCurlCode_ReplyTooLarge);
  m_manager.SetReplyLimit(0);
  EXPECT_EQ(CodeOf(HttpReply("200 OK", "")), 0);
  EXPECT_EQ(CodeOf(HttpReply("200 OK", "0")), VYNCurlCode_ReplyTooLarge);
}

TEST_F(CurlHttp, RefusesAFloodOfHeaders) {
  std::string reply = "HTTP/1.1 200 OK\r\n";
  for (int i = 0; i < 1200; ++i) reply += "X-Flood: " + std::string(1000, 'x') + "\r\n";
  EXPECT_EQ(CodeOf(reply + "Content-Length: 0\r\n\r\n"), VYNCurlCode_ReplyTooLarge);
}

TEST_F(CurlHttp, TakesATooLongHeaderLineForALargeReplyAndNotForExhaustedMemory) {
  KRSetFireAlarm(KRFireAlarm_None);
  const std::string longText(200000, 'x');
  for (const std::string& reply : {"HTTP/1.1 200 OK\r\nX-Long: " + longText + "\r\n\r\n",
                                   "HTTP/1.1 200 " + longText + "\r\n\r\n"}) {
    EXPECT_EQ(CodeOf(reply), VYNCurlCode_ReplyTooLarge);
    EXPECT_FALSE(AlarmIsSet());
  }
}

TEST_F(CurlHttp, TakesATooLongHeaderLineForExhaustedMemoryWhenThereIsNoneLeft) {
  TlsServer server(Answer("HTTP/1.1 200 OK\r\nX-Long: " + std::string(200000, 'x') + "\r\n\r\n"));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Start(), 0);
  const FailingAllocation failing(1);
  probe.Finish();
  EXPECT_EQ(probe.result, VYNCurlCode_NoMemory);
  EXPECT_TRUE(AlarmIsSet());
}

TEST_F(CurlHttp, TakesTrailersForNoHeaders) {
  TlsServer server(
      Answer("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nX-Key: value\r\n\r\n"
             "3\r\nabc\r\n0\r\nX-Key: forged\r\nHTTP/1.1: x\r\n\r\n"));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Run(), 0);
  EXPECT_EQ(probe.Headers(), "Transfer-Encoding: chunked\r\nX-Key: value\r\n");
}

TEST_F(CurlHttp, ErasesNothingForAHeaderLineThatLooksLikeAStatusLine) {
  TlsServer server(
      Answer("HTTP/1.1 200 OK\r\nX-Key: value\r\nHTTP/: x\r\nContent-Length: 0\r\n\r\n"));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Run(), 0);
  EXPECT_EQ(probe.Headers(), "X-Key: value\r\nHTTP/: x\r\nContent-Length: 0\r\n");
}

TEST_F(CurlHttp, TakesAReplyThatIsCutInItsHeaderForCut) {
  for (const char* const reply :
       {"HTTP/1.1 200 OK\r\n", "HTTP/1.1 200 OK\r\nX-Key: value\r\n", "HTTP/1.1 200 OK\r\nX-K",
        "HTTP/1.1 103 Early Hints\r\nLink: a\r\n\r\n"}) {
    EXPECT_EQ(CodeOf(reply), VYNCurlCode_Cut) << reply;
  }
}

TEST_F(CurlHttp, GoesThroughTheProxyThatTheHostSet) {
  TlsServer proxy(Echo());
  ASSERT_EQ(m_manager.SetProxy(proxy.Url().c_str(), nullptr), 1);
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get("http://bank.invalid/ofx").Run(), 0);
  EXPECT_TRUE(probe.Reply().starts_with("GET http://bank.invalid/ofx HTTP/1.1\r\n"));
  EXPECT_EQ(m_manager.SetProxy(nullptr, nullptr), 1);
}

TEST_F(CurlHttp, ReachesTheExceptionsWithoutTheProxy) {
  TlsServer proxy(Answer(HttpReply("200 OK", "from the proxy")));
  TlsServer server(Answer(HttpReply("200 OK", "from the server")));
  ASSERT_EQ(m_manager.SetProxy(proxy.Url().c_str(), "bank.invalid,127.0.0.1"), 1);
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Run(), 0);
  EXPECT_EQ(probe.Reply(), "from the server");
  EXPECT_EQ(proxy.Accepted(), 0);
}

TEST_F(CurlHttp, KeepsTheProxyWhileThereAreExchanges) {
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.Get("http://bank.invalid/");
  EXPECT_EQ(m_manager.SetProxy("http://127.0.0.1:1/", nullptr), 0);
  m_manager.VCRelease(m_session, probe.exchange);
}

TEST_F(CurlHttp, TakesNoProxyFromTheEnvironment) {
  TlsServer proxy(Answer(HttpReply("200 OK", "from the proxy")));
  const ScopedVariable variables[] = {
      {"http_proxy", proxy.Url()}, {"all_proxy", proxy.Url()}, {"ALL_PROXY", proxy.Url()}};
  TlsServer server(Answer(HttpReply("200 OK", "from the server")));
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Run(), 0);
  EXPECT_EQ(probe.Reply(), "from the server");
  EXPECT_EQ(proxy.Accepted(), 0);
}

TEST_F(CurlHttp, TakesNoExceptionsFromTheEnvironment) {
  TlsServer proxy(Answer(HttpReply("200 OK", "from the proxy")));
  const ScopedVariable variable("no_proxy", "*");
  ASSERT_EQ(m_manager.SetProxy(proxy.Url().c_str(), nullptr), 1);
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get("http://bank.invalid/ofx").Run(), 0);
  EXPECT_EQ(probe.Reply(), "from the proxy");
}

TEST_F(CurlHttp, SaysWhyAProxyRefusesATunnel) {
  TlsServer proxy(Answer(HttpReply("407 Proxy Authentication Required", "")));
  ASSERT_EQ(m_manager.SetProxy(proxy.Url().c_str(), nullptr), 1);
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get("https://bank.invalid/ofx").Run(), 1516);
  EXPECT_EQ(probe.asked, 0);
}

TEST_F(CurlHttp, FailsToReceiveWhenAProxyPointsElsewhere) {
  TlsServer proxy(Answer(HttpReply("302 Found", "", "Location: http://127.0.0.1/\r\n")));
  ASSERT_EQ(m_manager.SetProxy(proxy.Url().c_str(), nullptr), 1);
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get("https://bank.invalid/ofx").Run(), VYNCurlCode_ReceiveFailed);
}

}  // namespace
