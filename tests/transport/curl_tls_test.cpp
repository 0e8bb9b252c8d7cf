// The libcurl manager with HTTPS: which certificates it accepts, what the certificate callback
// gets, and the code of each refusal.

#include "support/failing_allocation.h"
#include "support/scoped_variable.h"
#include "transport/curl_probe.h"

namespace {

class CurlTls : public CurlTest {
 protected:
  CurlTls() : m_authority(TestCertificate::Authority("authority")) {}

  static ServerPlan Showing(std::vector<TestCertificate> chain) {
    return {.script =
                [](ServerConnection& connection) {
                  const std::string request = connection.ReadRequest();
                  if (!request.empty()) connection.Write(HttpReply("200 OK", request));
                },
            .chain = std::move(chain)};
  }

  // The code of an exchange with a server that shows `leaf`, with the authority trusted as 7000.
  u16 CodeOf(const CertificateWish& leaf) {
    TlsServer server(Showing({m_authority.Issue(leaf)}));
    CurlProbe probe(m_manager, m_session, m_folder);
    const u16 code = probe.Get(server.Url()).Root(m_authority, 7000).Run();
    EXPECT_EQ(probe.asked, 1);
    EXPECT_EQ(probe.certificateError, code);
    EXPECT_TRUE(code == 0 || probe.chain.empty());
    return code;
  }

  std::string PutPem(const std::string& name, const TestCertificate& certificate) {
    return m_roots.Put(name, certificate.Pem());
  }

  TestCertificate m_authority;
  TempFolder m_roots;
};

constexpr char kHosts[] = "DNS:localhost,IP:127.0.0.1";

TEST_F(CurlTls, ShowsTheVerifiedChainFromItsRootToTheServer) {
  const TestCertificate leaf = m_authority.IssueForLoopback();
  TlsServer server(Showing({leaf}));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Send(server.Url(), "data").Root(m_authority, 7000).Run(), 0);
  EXPECT_EQ(probe.asked, 1);
  EXPECT_EQ(probe.certificateError, 0);
  EXPECT_EQ(probe.rootID, 7000U);
  EXPECT_EQ(probe.chain, (std::vector<std::string>{m_authority.Der(), leaf.Der()}));
  EXPECT_TRUE(probe.Reply().ends_with("\r\n\r\ndata"));
}

TEST_F(CurlTls, TakesTheHostsNameAsWellAsItsAddress) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url("localhost")).Root(m_authority, 7000).Run(), 0);
}

TEST_F(CurlTls, GivesTheIdOfTheRootThatTheChainEndsAt) {
  const TestCertificate other = TestCertificate::Authority("other");
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.Get(server.Url()).Root(other, 1000).Root(m_authority, 4001).Root(m_authority, 4000);
  ASSERT_EQ(probe.Run(), 0);
  EXPECT_EQ(probe.rootID, 4001U);
}

TEST_F(CurlTls, GivesANegativeIdAsItWidens) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Root(m_authority, -5).Run(), 0);
  EXPECT_EQ(probe.rootID, static_cast<u32>(-5));
}

TEST_F(CurlTls, FollowsAnIntermediateThatTheServerShows) {
  const TestCertificate between = m_authority.Issue({.name = "between", .isAuthority = true});
  const TestCertificate leaf = between.IssueForLoopback();
  TlsServer server(Showing({leaf, between}));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Root(m_authority, 7000).Run(), 0);
  EXPECT_EQ(probe.chain, (std::vector<std::string>{m_authority.Der(), between.Der(), leaf.Der()}));
}

TEST_F(CurlTls, EndsAtAnIntermediateThatIsTrusted) {
  const TestCertificate between = m_authority.Issue({.name = "between", .isAuthority = true});
  const TestCertificate leaf = between.IssueForLoopback();
  TlsServer server(Showing({leaf, between}));
  CurlProbe alone(m_manager, m_session, m_folder);
  ASSERT_EQ(alone.Get(server.Url()).Root(between, 2000).Run(), 0);
  EXPECT_EQ(alone.rootID, 2000U);
  EXPECT_EQ(alone.chain, (std::vector<std::string>{between.Der(), leaf.Der()}));
  // Its issuer, which is trusted too, does not make the chain longer.
  CurlProbe both(m_manager, m_session, m_folder);
  ASSERT_EQ(both.Get(server.Url()).Root(between, 2000).Root(m_authority, 3000).Run(), 0);
  EXPECT_EQ(both.rootID, 2000U);
}

TEST_F(CurlTls, TakesAServersOwnCertificateAsARoot) {
  const TestCertificate own = TestCertificate::SelfSigned({.name = "own", .hosts = kHosts});
  TlsServer server(Showing({own}));
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Get(server.Url()).Root(own, 7000).Run(), 0);
  EXPECT_EQ(probe.rootID, 7000U);
  EXPECT_EQ(probe.chain, std::vector<std::string>{own.Der()});
}

TEST_F(CurlTls, EndsWithTheCodeOfTheCallbackBeforeAnythingIsSent) {
  std::string seen = "nothing yet";
  ServerPlan plan = Showing({m_authority.IssueForLoopback()});
  plan.script = [&seen](ServerConnection& connection) { seen = connection.ReadRequest(); };
  {
    TlsServer server(plan);
    CurlProbe probe(m_manager, m_session, m_folder);
    probe.answer = 1673;
    EXPECT_EQ(probe.Send(server.Url(), "secret").Root(m_authority, 7000).Run(), 1673);
    EXPECT_EQ(probe.Reply(), "");
  }
  EXPECT_EQ(seen, "");
}

TEST_F(CurlTls, RefusesAnUnknownRoot) {
  const TestCertificate other = TestCertificate::Authority("other");
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Root(other, 7000).Run(), VYNCurlCode_Untrusted);
  EXPECT_EQ(probe.asked, 1);
  EXPECT_EQ(probe.certificateError, VYNCurlCode_Untrusted);
  EXPECT_EQ(probe.rootID, 0U);
  EXPECT_TRUE(probe.chain.empty());
}

TEST_F(CurlTls, RefusesARootOfTheSameNameWithAnotherKey) {
  const TestCertificate impostor = TestCertificate::Authority("authority");
  TlsServer server(Showing({impostor.IssueForLoopback(), impostor}));
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Root(m_authority, 7000).Run(), VYNCurlCode_Untrusted);
  EXPECT_EQ(probe.asked, 1);
  EXPECT_EQ(probe.certificateError, VYNCurlCode_Untrusted);
}

TEST_F(CurlTls, EndsEvenWhenTheCallbackWouldAcceptWhatFailed) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.Get(server.Url()).Root(TestCertificate::Authority("other"), 7000);
  const auto acceptAll = [](SSLCertificateChain*, u32, u16, void*, u32, u32) -> u16 { return 0; };
  EXPECT_EQ(m_manager.VCSetSSLInfo(probe.exchange, 0, acceptAll, 120), 0);
  EXPECT_EQ(probe.Run(), VYNCurlCode_Untrusted);
}

TEST_F(CurlTls, DecidesByItselfWithoutACallback) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  CurlProbe good(m_manager, m_session, m_folder);
  good.Get(server.Url()).Root(m_authority, 7000);
  EXPECT_EQ(m_manager.VCSetSSLInfo(good.exchange, 0, nullptr, 120), 0);
  EXPECT_EQ(good.Run(), 0);
  CurlProbe bad(m_manager, m_session, m_folder);
  bad.Get(server.Url()).Root(TestCertificate::Authority("other"), 7000);
  EXPECT_EQ(m_manager.VCSetSSLInfo(bad.exchange, 0, nullptr, 120), 0);
  EXPECT_EQ(bad.Run(), VYNCurlCode_Untrusted);
}

TEST_F(CurlTls, RefusesASelfSignedServer) {
  TlsServer server(Showing({TestCertificate::SelfSigned({.name = "own", .hosts = kHosts})}));
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Root(m_authority, 7000).Run(), VYNCurlCode_Untrusted);
}

TEST_F(CurlTls, RefusesAnIssuerThatIsNoAuthority) {
  const TestCertificate leaf = m_authority.IssueForLoopback();
  TlsServer server(Showing({leaf.IssueForLoopback(), leaf}));
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Root(m_authority, 7000).Run(), VYNCurlCode_Untrusted);
}

TEST_F(CurlTls, RefusesAnotherHostsCertificate) {
  EXPECT_EQ(CodeOf({.name = "other", .hosts = "DNS:bank.example,IP:127.0.0.2"}),
            VYNCurlCode_BadCertificate);
}

TEST_F(CurlTls, RefusesAnExpiredCertificate) {
  EXPECT_EQ(CodeOf({.name = "old", .hosts = kHosts, .notAfter = "20010101000000Z"}),
            VYNCurlCode_BadCertificate);
}

TEST_F(CurlTls, RefusesACertificateThatIsNotYetValid) {
  EXPECT_EQ(CodeOf({.name = "new", .hosts = kHosts, .notBefore = "99970101000000Z"}),
            VYNCurlCode_BadCertificate);
}

TEST_F(CurlTls, RefusesACertificateThatIsNotForServers) {
  EXPECT_EQ(CodeOf({.name = "mail", .hosts = kHosts, .usage = "emailProtection"}),
            VYNCurlCode_BadCertificate);
}

TEST_F(CurlTls, RefusesACertificateThatIsTooLargeToBeShown) {
  // An element of the list that the callback gets has a length of 16 bits.
  std::string hosts = kHosts;
  while (hosts.size() < 75000) hosts += ",DNS:" + std::string(60, 'a') + ".example";
  const CertificateWish wish{.name = "large", .hosts = hosts};
  TlsServer server(Showing({m_authority.Issue(wish)}));
  for (const u16 skipVerify : {u16{0}, u16{1}}) {
    CurlProbe probe(m_manager, m_session, m_folder);
    probe.skipVerify = skipVerify;
    EXPECT_EQ(probe.Get(server.Url()).Root(m_authority, 7000).Run(), VYNCurlCode_Untrusted);
    EXPECT_EQ(probe.certificateError, VYNCurlCode_Untrusted);
    EXPECT_TRUE(probe.chain.empty());
  }
}

TEST_F(CurlTls, RefusesOldVersionsOfTls) {
  ServerPlan plan = Showing({m_authority.IssueForLoopback()});
  plan.newestTls = TLS1_1_VERSION;
  TlsServer server(plan);
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Root(m_authority, 7000).Run(), VYNCurlCode_HandshakeFailed);
  EXPECT_EQ(probe.asked, 0);
}

TEST_F(CurlTls, SpeaksVersion12) {
  ServerPlan plan = Showing({m_authority.IssueForLoopback()});
  plan.newestTls = TLS1_2_VERSION;
  TlsServer server(plan);
  CurlProbe probe(m_manager, m_session, m_folder);
  EXPECT_EQ(probe.Get(server.Url()).Root(m_authority, 7000).Run(), 0);
  EXPECT_EQ(probe.rootID, 7000U);
}

TEST_F(CurlTls, FailsWhereNoTlsIsSpoken) {
  for (const std::string& greeting : {std::string("220 this is no TLS\r\n"), std::string(64, '\0'),
                                      std::string("\x15\x03\x03\x00\x02\x02\x28", 7)}) {
    TlsServer server({.script =
                          [greeting](ServerConnection& connection) {
                            connection.ReadSome();
                            connection.Write(greeting);
                          },
                      .chain = {}});
    CurlProbe probe(m_manager, m_session, m_folder);
    probe.Get("https" + server.Url().substr(4)).Root(m_authority, 7000);
    EXPECT_EQ(probe.Run(), VYNCurlCode_HandshakeFailed);
    EXPECT_EQ(probe.asked, 0);
  }
}

TEST_F(CurlTls, RefusesToStartWithoutTlsOptions) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.Get("HTTPS" + server.Url().substr(5));
  EXPECT_EQ(probe.Start(), VYNCurlCode_NoTlsOptions);
  EXPECT_EQ(server.Accepted(), 0);
  EXPECT_EQ(probe.finished, 0);
  EXPECT_EQ(m_temp.Entries(), 0U);
}

TEST_F(CurlTls, RefusesRootsThatAreNoCertificates) {
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.Get("https://127.0.0.1/");
  const std::string der = m_authority.Der();
  const auto add = [&](const std::string& bytes, s16 id) {
    return m_manager.VCAddTrustedRoot(probe.exchange, bytes.data(), static_cast<u32>(bytes.size()),
                                      id);
  };
  EXPECT_EQ(add(der, 0), VYNCurlCode_BadRoot);
  EXPECT_EQ(add(der.substr(1), 1), VYNCurlCode_BadRoot);
  EXPECT_EQ(add(der.substr(0, der.size() - 1), 1), VYNCurlCode_BadRoot);
  EXPECT_EQ(add(der + "x", 1), VYNCurlCode_BadRoot);
  EXPECT_EQ(add("", 1), VYNCurlCode_BadRoot);
  EXPECT_EQ(m_manager.VCAddTrustedRoot(probe.exchange, nullptr, 1, 1), VYNCurlCode_BadRoot);
  EXPECT_EQ(m_manager.VCAddTrustedRoot(probe.exchange, der.data(), UINT32_MAX, 1),
            VYNCurlCode_BadRoot);
  EXPECT_EQ(add(der, 1), 0);
  m_manager.VCRelease(m_session, probe.exchange);
}

// A file and a folder replace the system's roots.

TEST_F(CurlTls, TrustsTheSystemsRootsUnderTheIdZero) {
  const TestCertificate leaf = m_authority.IssueForLoopback();
  TlsServer server(Showing({leaf}));
  const std::string file = PutPem("roots.pem", m_authority);
  ASSERT_EQ(m_manager.SetSystemRoots(file.c_str(), nullptr), 1);
  CurlProbe byFile(m_manager, m_session, m_folder);
  EXPECT_EQ(byFile.Get(server.Url()).Run(), 0);
  EXPECT_EQ(byFile.rootID, 0U);
  EXPECT_EQ(byFile.chain, (std::vector<std::string>{m_authority.Der(), leaf.Der()}));

  char hash[32];
  std::snprintf(hash, sizeof hash, "%08lx.0", X509_subject_name_hash(m_authority.Certificate()));
  PutPem(hash, m_authority);
  ASSERT_EQ(m_manager.SetSystemRoots("", m_roots.Path().c_str()), 1);
  CurlProbe byFolder(m_manager, m_session, m_folder);
  EXPECT_EQ(byFolder.Get(server.Url()).Run(), 0);
  EXPECT_EQ(byFolder.chain, byFile.chain);
}

TEST_F(CurlTls, DoesNotTrustTheSystemsRootsBesideThoseThatWereAdded) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  const std::string file = PutPem("roots.pem", m_authority);
  char hash[32];
  std::snprintf(hash, sizeof hash, "%08lx.0", X509_subject_name_hash(m_authority.Certificate()));
  PutPem(hash, m_authority);
  ASSERT_EQ(m_manager.SetSystemRoots(file.c_str(), m_roots.Path().c_str()), 1);
  CurlProbe trusted(m_manager, m_session, m_folder);
  ASSERT_EQ(trusted.Get(server.Url()).Run(), 0);
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.Get(server.Url()).Root(TestCertificate::Authority("other"), 7000);
  EXPECT_EQ(probe.Run(), VYNCurlCode_Untrusted);
}

TEST_F(CurlTls, TrustsNobodyWithoutAnyRoots) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  CurlProbe bySystem(m_manager, m_session, m_folder);
  EXPECT_EQ(bySystem.Get(server.Url()).Run(), VYNCurlCode_Untrusted);
  ASSERT_EQ(m_manager.SetSystemRoots("", ""), 1);
  CurlProbe none(m_manager, m_session, m_folder);
  EXPECT_EQ(none.Get(server.Url()).Run(), VYNCurlCode_Untrusted);
}

TEST_F(CurlTls, TakesNeitherRootsNorAProxyFromTheEnvironment) {
  char hash[32];
  std::snprintf(hash, sizeof hash, "%08lx.0", X509_subject_name_hash(m_authority.Certificate()));
  PutPem(hash, m_authority);
  TlsServer proxy(
      {.script = [](ServerConnection& connection) { connection.ReadRequest(); }, .chain = {}});
  const ScopedVariable variables[] = {{"SSL_CERT_FILE", PutPem("roots.pem", m_authority)},
                                      {"SSL_CERT_DIR", m_roots.Path()},
                                      {"https_proxy", proxy.Url()},
                                      {"HTTPS_PROXY", proxy.Url()}};
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  CurlProbe bySystem(m_manager, m_session, m_folder);
  EXPECT_EQ(bySystem.Get(server.Url()).Run(), VYNCurlCode_Untrusted);
  CurlProbe byRoot(m_manager, m_session, m_folder);
  EXPECT_EQ(byRoot.Get(server.Url()).Root(m_authority, 7000).Run(), 0);
  EXPECT_EQ(proxy.Accepted(), 0);
}

TEST_F(CurlTls, SaysThatTheSystemsRootsCannotBeRead) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  ASSERT_EQ(m_manager.SetSystemRoots((m_folder + "/none.pem").c_str(), nullptr), 1);
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.Get(server.Url());
  EXPECT_EQ(m_manager.SetSystemRoots(nullptr, nullptr), 0) << "changed under an exchange";
  EXPECT_EQ(probe.Run(), VYNCurlCode_RootsUnreadable);
}

// Without verification: nothing is checked, but the callback is still called.

TEST_F(CurlTls, ShowsTheChainAsItCameWhenNothingIsVerified) {
  const TestCertificate own = TestCertificate::SelfSigned(
      {.name = "own", .hosts = "DNS:elsewhere", .notAfter = "20010101000000Z"});
  TlsServer server(Showing({own, m_authority}));
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.skipVerify = 1;
  EXPECT_EQ(probe.Get(server.Url()).Run(), 0);
  EXPECT_EQ(probe.asked, 1);
  EXPECT_EQ(probe.certificateError, 0);
  EXPECT_EQ(probe.rootID, 0U);
  EXPECT_EQ(probe.chain, (std::vector<std::string>{m_authority.Der(), own.Der()}));
}

TEST_F(CurlTls, FindsAnAddedRootByTheSignaturesWhenNothingIsVerified) {
  const TestCertificate leaf =
      m_authority.Issue({.name = "old", .hosts = "DNS:elsewhere", .notAfter = "20010101000000Z"});
  TlsServer server(Showing({leaf}));
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.skipVerify = 1;
  EXPECT_EQ(probe.Get(server.Url()).Root(m_authority, 7000).Run(), 0);
  EXPECT_EQ(probe.rootID, 7000U);
  EXPECT_EQ(probe.chain, std::vector<std::string>{leaf.Der()});
}

TEST_F(CurlTls, FindsNoRootWhereSignaturesDoNotLeadWhenNothingIsVerified) {
  // The same name as the real issuer, another key.
  const TestCertificate impostor = TestCertificate::Authority("authority");
  TlsServer server(Showing({impostor.IssueForLoopback(), impostor}));
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.skipVerify = 1;
  EXPECT_EQ(probe.Get(server.Url()).Root(m_authority, 7000).Run(), 0);
  EXPECT_EQ(probe.rootID, 0U);
}

TEST_F(CurlTls, IsStillRefusedByTheCallbackWhenNothingIsVerified) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.skipVerify = 1;
  probe.answer = 1670;
  EXPECT_EQ(probe.Get(server.Url()).Run(), 1670);
}

TEST_F(CurlTls, VerifiesForAnyOtherValueOfTheFlag) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  CurlProbe probe(m_manager, m_session, m_folder);
  probe.skipVerify = 2;
  probe.Get(server.Url()).Root(TestCertificate::Authority("other"), 7000);
  EXPECT_EQ(probe.Run(), VYNCurlCode_Untrusted);
}

TEST_F(CurlTls, MovesALargeBodyEachWay) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  const std::string data(5000000, 'x');
  CurlProbe probe(m_manager, m_session, m_folder);
  ASSERT_EQ(probe.Send(server.Url(), data).Root(m_authority, 7000).Run(), 0);
  EXPECT_TRUE(probe.Reply().ends_with("\r\n\r\n" + data));
}

TEST_F(CurlTls, ShowsAProxyNothingButTheTunnel) {
  std::string tunnel;
  const TestCertificate leaf = m_authority.Issue({.name = "bank", .hosts = "DNS:bank.invalid"});
  ServerPlan plan = Showing({leaf});
  plan.tunnel = &tunnel;
  CurlProbe probe(m_manager, m_session, m_folder);
  {
    TlsServer proxy(plan);
    const std::string url = "http" + proxy.Url().substr(5);
    ASSERT_EQ(m_manager.SetProxy(url.c_str(), nullptr), 1);
    probe.Send("https://bank.invalid/ofx", "data").Root(m_authority, 7000);
    EXPECT_EQ(probe.Http("text/plain", "Authorization: secret\r\n").Run(), 0);
  }
  EXPECT_TRUE(tunnel.starts_with("CONNECT bank.invalid:443 HTTP/1.1\r\n")) << tunnel;
  EXPECT_EQ(tunnel.find("secret"), std::string::npos) << tunnel;
  EXPECT_EQ(tunnel.find("text/plain"), std::string::npos) << tunnel;
  EXPECT_NE(probe.Reply().find("Authorization: secret"), std::string::npos);
  EXPECT_EQ(probe.Headers().find("X-Proxy"), std::string::npos) << probe.Headers();
  EXPECT_EQ(probe.chain, (std::vector<std::string>{m_authority.Der(), leaf.Der()}));
}

TEST_F(CurlTls, SaysThatTheCertificateOfAProxyLeadsToNoRoot) {
  TlsServer proxy(Showing({m_authority.IssueForLoopback()}));
  ASSERT_EQ(m_manager.SetProxy(proxy.Url().c_str(), nullptr), 1);
  for (const char* const url : {"http://bank.invalid/", "https://bank.invalid/"}) {
    CurlProbe probe(m_manager, m_session, m_folder);
    EXPECT_EQ(probe.Get(url).Run(), VYNCurlCode_Untrusted) << url;
  }
}

TEST_F(CurlTls, RefusesWhenThereIsNoMemoryForTheChain) {
  TlsServer server(Showing({m_authority.IssueForLoopback()}));
  for (std::size_t nth = 1; nth <= 2; ++nth) {
    CurlProbe probe(m_manager, m_session, m_folder);
    probe.Get(server.Url()).Root(m_authority, 7000);
    ASSERT_EQ(probe.Start(), 0);
    {
      const FailingAllocation failing(nth);
      probe.Finish();
    }
    EXPECT_EQ(probe.result, VYNCurlCode_Untrusted) << nth;
    EXPECT_TRUE(probe.chain.empty());
  }
}

}  // namespace
