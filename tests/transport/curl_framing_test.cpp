// The libcurl manager and the end of a reply: no reply is taken for whole when it may be a part,
// and no header is read without limit.

#include <string>

#include "transport/curl_probe.h"

namespace {

constexpr char kWhole[] = "<OFX>all of the reply</OFX>";  // 27 bytes

class CurlFraming : public CurlTest {
 protected:
  CurlFraming() : m_authority(TestCertificate::Authority("authority")) {}

  // The code of an exchange with a server that writes `reply` and ends the connection, by https
  // without the closure of TLS.
  u16 CodeByHttp(const std::string& reply) {
    return CodeOf({.script =
                       [reply](ServerConnection& connection) {
                         connection.ReadRequest();
                         connection.Write(reply);
                       },
                   .chain = {}});
  }
  u16 CodeByHttps(const std::string& reply) {
    return CodeOf({.script =
                       [reply](ServerConnection& connection) {
                         connection.ReadRequest();
                         connection.Write(reply);
                         SSL_set_quiet_shutdown(connection.Tls(), 1);
                       },
                   .chain = {m_authority.IssueForLoopback()}});
  }

  TestCertificate m_authority;

 private:
  u16 CodeOf(const ServerPlan& plan) {
    TlsServer server(plan);
    CurlProbe probe(m_manager, m_session, m_folder);
    probe.Get(server.Url());
    if (!plan.chain.empty()) probe.Root(m_authority, 7000);
    return probe.Run();
  }
};

std::string Reply(const std::string& headers) {
  return "HTTP/1.1 200 OK\r\n" + headers + "\r\n" + kWhole;
}

// ---- Lengths and codings ----

TEST_F(CurlFraming, RefusesLengthsThatReadersTakeDifferently) {
  for (const char* const headers :
       {"Content-Length: 27\r\nContent-Length: 5\r\n",
        "Content-Length: 5\r\nContent-Length: 27\r\n", "Content-Length: 5junk\r\n",
        "Content-Length: +5\r\n", "Content-Length: 0x5\r\n", "Content-Length: 5, 27\r\n",
        "Content-Length: 5 7\r\n", "Content-Length: 5\r7\r\n", "Content-Length: 5;\r\n",
        "Content-Length : 5\r\n", "content-length\t: 5\r\n", "Content-Length: 2\r\n 7\r\n",
        "Content-Length: 2\r\n\t\r\n",
        "Content-Length: 5\r\nX-Key: value\r\nCONTENT-LENGTH: 27\r\n"}) {
    EXPECT_EQ(CodeByHttp(Reply(headers)), VYNCurlCode_Cut) << headers;
    EXPECT_EQ(CodeByHttps(Reply(headers)), VYNCurlCode_Cut) << headers;
  }
}

TEST_F(CurlFraming, RefusesCodingsThatReadersTakeDifferently) {
  for (const char* const headers :
       {"Transfer-Encoding:\r\n chunked\r\n", "Transfer-Encoding: chunked\r\n ,x\r\n",
        "Transfer-Encoding : chunked\r\n", "transfer-encoding:\r\n\tchunked\r\n"}) {
    EXPECT_EQ(CodeByHttp(Reply(headers)), VYNCurlCode_Cut) << headers;
    EXPECT_EQ(CodeByHttps(Reply(headers)), VYNCurlCode_Cut) << headers;
  }
}

TEST_F(CurlFraming, TakesAReplyWhoseEndIsClear) {
  for (const char* const headers :
       {"Content-Length: 27\r\n", "Content-Length: 27\r\nContent-Length: 027\r\n",
        "content-length:27  \r\n", "Content-Length:\t27\r\nX-Folded: a\r\n b\r\n",
        "X-Folded: a\r\n b\r\nContent-Length: 27\r\n",
        "X-Content-Length: 5\r\nContent-Length: 27\r\n", "Content-Length: 27\nX-Key: value\r\n"}) {
    EXPECT_EQ(CodeByHttp(Reply(headers)), 0) << headers;
    EXPECT_EQ(CodeByHttps(Reply(headers)), 0) << headers;
  }
}

TEST_F(CurlFraming, TakesChunksForWholeOnlyWhenTheyAreRead) {
  const std::string chunks = "5\r\n<OFX>\r\n0\r\n\r\n";
  const std::string status = "HTTP/1.1 200 OK\r\n";
  for (const char* const coding :
       {"Transfer-Encoding: chunked\r\n\r\n", "TRANSFER-ENCODING:identity , CHUNKED\r\n\r\n"}) {
    EXPECT_EQ(CodeByHttps(status + coding + chunks), 0) << coding;
    EXPECT_EQ(CodeByHttps(status + coding + "5\r\n<OFX>\r\n"), VYNCurlCode_Cut) << coding;
  }
  EXPECT_EQ(CodeByHttps(status + "X-Transfer-Encoding: chunked\r\n\r\n" + chunks), VYNCurlCode_Cut);
}

TEST_F(CurlFraming, LeavesTheCodeOfAnErrorToItsStatus) {
  const std::string headers = "Content-Length: 5\r\nContent-Length: 27\r\n\r\n";
  EXPECT_EQ(CodeByHttp("HTTP/1.1 404 Not Found\r\n" + headers + kWhole), 1513);
}

TEST_F(CurlFraming, TakesNoLengthFromAnInterimReply) {
  const std::string interim = "HTTP/1.1 103 Early Hints\r\nContent-Length: 5\r\n\r\n";
  EXPECT_EQ(CodeByHttp(interim + Reply("Content-Length: 27\r\n")), 0);
  EXPECT_EQ(CodeByHttps(interim + Reply("X-Key: value\r\n")), VYNCurlCode_Cut);
}

// ---- The size of a header ----

// A server that writes `begin`, and then header lines until it is stopped.
ServerPlan Flood(const std::string& begin, const std::string& line) {
  return {.script =
              [begin, line](ServerConnection& connection) {
                connection.ReadRequest();
                connection.Write(begin);
                std::string lines;
                while (lines.size() < 8192) lines += line;
                // Much more than the limit, but not so much that the test hangs without one.
                for (int i = 0; i < 2000; ++i) connection.Write(lines);
              },
          .chain = {}};
}

TEST_F(CurlFraming, LimitsTrailersAsTheHeader) {
  const TlsServer server(
      Flood("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n0\r\n",
            "X-Trailer: value\r\n"));
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Run(), VYNCurlCode_ReplyTooLarge);
}

TEST_F(CurlFraming, LimitsAStatusLine) {
  const std::string line = "HTTP/1.1 200 " + std::string(110000, 'x') + "\r\n";
  EXPECT_EQ(CodeByHttp(line + "\r\n"), VYNCurlCode_ReplyTooLarge);
  EXPECT_EQ(CodeByHttps(line + "\r\n"), VYNCurlCode_ReplyTooLarge);
  EXPECT_EQ(CodeByHttp(line.substr(0, 110000)), VYNCurlCode_ReplyTooLarge);
}

TEST_F(CurlFraming, FailsToReceiveBadChunksAndLongTrailers) {
  const std::string chunks = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n";
  EXPECT_EQ(CodeByHttp(chunks + "zz\r\n"), VYNCurlCode_ReceiveFailed);
  EXPECT_EQ(CodeByHttp(chunks + "0\r\nX-Trailer: " + std::string(5000, 'x') + "\r\n\r\n"),
            VYNCurlCode_ReceiveFailed);
  EXPECT_EQ(CodeByHttp(chunks + "0\r\nX-Trailer: " + std::string(4000, 'x') + "\r\n\r\n"), 0);
}

TEST_F(CurlFraming, LimitsInterimReplies) {
  const TlsServer server(Flood("", "HTTP/1.1 103 Early Hints\r\nLink: a\r\n\r\n"));
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Run(), VYNCurlCode_ReplyTooLarge);
}

}  // namespace
