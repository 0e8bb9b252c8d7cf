// Which server is the right one: what may be added, and the checks of a chain in their order.

#include <functional>
#include <string>
#include <vector>

#include "krofx/security/certificate.h"
#include "support/base64_text.h"
#include "support/failing_allocation.h"
#include "transport/vyn_fixture.h"

namespace {

using Words = std::vector<std::string>;

class VYNTrustTest : public VYNTest {
 protected:
  /// Calls the callback with a chain of these certificates, the server's last.
  u16 Ask(u32 rootID, const std::vector<std::string>& ders, u16 error = 0) {
    std::vector<SSLCertificateChain> chain(ders.size());
    for (std::size_t index = 0; index < ders.size(); ++index) {
      chain[index] = {index + 1 < ders.size() ? &chain[index + 1] : nullptr,
                      static_cast<u16>(ders[index].size()), ders[index].data()};
    }
    return VYNNetRequest::VYNSSLCertificateCallback(chain.empty() ? nullptr : chain.data(), rootID,
                                                    error, request.get(), 0, 0);
  }
  u16 Ask(u32 rootID) { return Ask(rootID, {RootBytes()}); }
  u16 Expect(const std::string& id) {
    return request->AddExpectedSSLCertID(id.data(), static_cast<u16>(id.size()));
  }
};

// ---- Adding roots ----

TEST_F(VYNTrustTest, TakesRootsAsDerAndAsBase64) {
  EXPECT_EQ(AddRoot(4000), 1);
  const std::string encoded = Base64Text(RootBytes(1));
  EXPECT_EQ(request->AddTrustedRoot(encoded.data(), static_cast<u16>(encoded.size()), 4001), 1);
  Connect();
  Get("https://bank/");
  EXPECT_EQ(manager.roots, (std::vector<std::string>{RootBytes(), RootBytes(1)}));
}

TEST_F(VYNTrustTest, RefusesWhatIsNoCertificateAndAnIdOfZero) {
  const std::string der = RootBytes();
  const auto size = static_cast<u16>(der.size());
  EXPECT_EQ(request->AddTrustedRootBER(der.data(), size, 0), 0);
  EXPECT_EQ(request->AddTrustedRootBER(der.data(), static_cast<u16>(size - 1), 4000), 0);
  EXPECT_EQ(request->AddTrustedRootBER(der.data(), 0, 4000), 0);
  EXPECT_EQ(request->AddTrustedRootBER(nullptr, size, 4000), 0);
  EXPECT_EQ(request->AddTrustedRoot(der.data(), size, 4000), 0);
  EXPECT_EQ(request->AddTrustedRoot("", 0, 4000), 0);
  EXPECT_EQ(request->AddTrustedRoot(nullptr, 4, 4000), 0);
  // Nothing was added: with no roots every ID passes.
  EXPECT_EQ(request->IsATrustedRoot(77), 1);
}

TEST_F(VYNTrustTest, TakesAsManyRootsAsThereAre) {
  for (s16 id = 1; id <= 20; ++id) EXPECT_EQ(AddRoot(id), 1);
  for (u32 id = 1; id <= 20; ++id) EXPECT_EQ(request->IsATrustedRoot(id), 1);
  EXPECT_EQ(request->IsATrustedRoot(21), 0);
  EXPECT_EQ(request->IsATrustedRoot(0), 0);
}

TEST_F(VYNTrustTest, TakesTheLibrarysOwnRoots) {
  EXPECT_EQ(request->AddRSAServerRoot(), 1);
  EXPECT_EQ(request->AddVeriSignOFXCARoot(), 1);
  EXPECT_EQ(request->AddNorvikBrandingRoot(), 1);
  for (const u32 id : {4001u, 4000u, 2000u, 3000u, 1000u}) {
    EXPECT_EQ(request->IsATrustedRoot(id), 1) << id;
  }
  EXPECT_EQ(request->IsATrustedRoot(4002), 0);
}

// ---- Adding what is expected ----

TEST_F(VYNTrustTest, RefusesAThirdExpectedIdAndKeepsTheTwo) {
  EXPECT_EQ(Expect("one"), 1);
  EXPECT_EQ(Expect("two"), 1);
  EXPECT_EQ(Expect(RootBytesID()), 0);
  EXPECT_EQ(Ask(4000), 1673);
  EXPECT_EQ(Texts(), Words{"***VYN: SSL Cert ID failure: Expecting \"one\" or \"two\", received "
                           "\"" +
                           RootBytesID() + "\""});
}

TEST_F(VYNTrustTest, RefusesAThirdExpectedNameAndKeepsTheTwo) {
  EXPECT_EQ(request->IsAnExpectedSSLCertName("anyone"), 1);
  EXPECT_EQ(request->AddExpectedSSLCertName("Quillon"), 1);
  EXPECT_EQ(request->AddExpectedSSLCertName("Tarn & Co"), 1);
  EXPECT_EQ(request->AddExpectedSSLCertName("anyone"), 0);
  EXPECT_EQ(request->IsAnExpectedSSLCertName("Quillon"), 1);
  EXPECT_EQ(request->IsAnExpectedSSLCertName("Tarn & Co"), 1);
  EXPECT_EQ(request->IsAnExpectedSSLCertName("anyone"), 0);
  EXPECT_EQ(request->IsAnExpectedSSLCertName("quillon"), 0);
}

TEST_F(VYNTrustTest, NeverLooksAtTheExpectedNames) {
  EXPECT_EQ(request->AddExpectedSSLCertName("somebody else"), 1);
  EXPECT_EQ(Ask(4000), 0);
}

TEST_F(VYNTrustTest, RefusesNoIdAndAFullListForASubclassToo) {
  KRDynamicArrayBuffer list(2, 2);
  KRBuffer id(0, 0);
  Put(id, "one");
  EXPECT_EQ(request->IsAnExpectedCertID(&list, &id), 1);
  EXPECT_EQ(request->AddExpectedCertID(&list, nullptr, 3), 0);
  EXPECT_EQ(request->AddExpectedCertID(nullptr, "one", 3), 0);
  EXPECT_EQ(request->AddExpectedCertID(&list, "two", 3), 1);
  EXPECT_EQ(request->IsAnExpectedCertID(&list, &id), 0);
  EXPECT_EQ(request->AddExpectedCertID(&list, "one", 3), 1);
  EXPECT_EQ(request->IsAnExpectedCertID(&list, &id), 1);
  EXPECT_EQ(request->AddExpectedCertID(&list, "six", 3), 0);
  EXPECT_EQ(list.Entries(), 2);
  EXPECT_EQ(request->IsAnExpectedCertID(nullptr, &id), 0);
  EXPECT_EQ(request->IsAnExpectedCertID(&list, nullptr), 0);
}

TEST_F(VYNTrustTest, AddsNothingWithoutMemory) {
  const std::string der = RootBytes();
  const KRString name("Quillon");
  const auto size = static_cast<u16>(der.size());
  struct Adding {
    const char* what;
    std::function<u16()> add;
  };
  const std::vector<Adding> addings = {
      {"root", [&] { return request->AddTrustedRootBER(der.data(), size, 4000); }},
      {"ID", [&] { return request->AddExpectedSSLCertID("one", 3); }},
      {"second ID", [&] { return request->AddExpectedSSLCertID("two", 3); }},
      {"name", [&] { return request->AddExpectedSSLCertName(name); }},
  };
  for (const Adding& adding : addings) {
    std::size_t nth = 1;
    for (u16 added = 0; added == 0; ++nth) {
      ASSERT_LT(nth, 50u) << adding.what;
      const FailingAllocation failing(nth, true);
      added = adding.add();
      ASSERT_TRUE(added == 1 || krofx::internal::AllocationFailure::Count() >= nth);
    }
    EXPECT_GT(nth, 2u) << adding.what;
  }
  EXPECT_EQ(request->IsAnExpectedSSLCertName(name), 1);
  EXPECT_EQ(request->IsAnExpectedSSLCertName(""), 0);
  EXPECT_EQ(Ask(4000), 1673);
  EXPECT_EQ(Texts(), Words{"***VYN: SSL Cert ID failure: Expecting \"one\" or \"two\", received "
                           "\"" +
                           RootBytesID() + "\""});
}

// ---- The decision ----

TEST_F(VYNTrustTest, ReturnsTheManagersOwnErrorFirst) {
  EXPECT_EQ(Ask(3000, {}, 1672), 1672);
  EXPECT_EQ(Lines(), (std::vector<Line>{{"***VYN: SSL certificate error: 1672", 1, false}}));
}

TEST_F(VYNTrustTest, RefusesEveryRootOfGroup3000EvenWhenItWasAdded) {
  AddRoot(3000);
  for (const u32 id : {3000u, 3001u, 3999u}) {
    Lines().clear();
    EXPECT_EQ(Ask(id), 1671) << id;
    EXPECT_EQ(Texts(), Words{"***VYN: VeriSign Class 3 PCA is not accepted as a trusted root."});
  }
  EXPECT_EQ(Ask(2999), 1670);
}

TEST_F(VYNTrustTest, AcceptsOnlyExactlyTheRootsThatWereAdded) {
  AddRoot(4000);
  AddRoot(1000);
  AddRoot(2000);
  EXPECT_EQ(Ask(4000), 0);
  EXPECT_EQ(Ask(1000), 0);
  EXPECT_EQ(Ask(2000), 0);
  EXPECT_EQ(Ask(4001), 1670);
  EXPECT_EQ(Ask(1001), 1670);
  EXPECT_EQ(Ask(0), 1670);
  EXPECT_EQ(Ask(4000 + 65536), 1670);
}

TEST_F(VYNTrustTest, KnowsANegativeRootIdByItsBits) {
  AddRoot(-5);
  EXPECT_EQ(Ask(static_cast<u32>(-5)), 0);
  EXPECT_EQ(Ask(65531), 1670);
}

TEST_F(VYNTrustTest, RefusesNoChainAndAnUnreadableCertificate) {
  EXPECT_EQ(Ask(4000, {}), 1670);
  EXPECT_EQ(Ask(4000, {"no certificate"}), 1670);
  EXPECT_EQ(Ask(4000, {RootBytes(), "no certificate"}), 1670);
  SSLCertificateChain nothing = {nullptr, 10, nullptr};
  EXPECT_EQ(VYNNetRequest::VYNSSLCertificateCallback(&nothing, 4000, 0, request.get(), 0, 0), 1670);
  EXPECT_EQ(VYNNetRequest::VYNSSLCertificateCallback(nullptr, 4000, 0, nullptr, 0, 0), 1670);
  EXPECT_EQ(Lines().size(), 0u);
}

TEST_F(VYNTrustTest, RefusesAChainWithoutAnEnd) {
  const std::string der = RootBytes();
  SSLCertificateChain ring[2] = {{&ring[1], static_cast<u16>(der.size()), der.data()},
                                 {&ring[0], static_cast<u16>(der.size()), der.data()}};
  EXPECT_EQ(VYNNetRequest::VYNSSLCertificateCallback(ring, 4000, 0, request.get(), 0, 0), 1670);
}

TEST_F(VYNTrustTest, LooksAtTheLastCertificateOfTheChain) {
  Expect(RootBytesID(1));
  EXPECT_EQ(Ask(4000, {RootBytes(0), RootBytes(1)}), 0);
  EXPECT_EQ(Ask(4000, {RootBytes(1), RootBytes(0)}), 1673);
  EXPECT_EQ(Ask(4000, {"not looked at", RootBytes(1)}), 0);
}

TEST_F(VYNTrustTest, AcceptsEitherOfTwoExpectedCertificates) {
  Expect(RootBytesID(0));
  EXPECT_EQ(Ask(4000, {RootBytes(0)}), 0);
  EXPECT_EQ(Ask(4000, {RootBytes(1)}), 1673);
  Expect(RootBytesID(1));
  EXPECT_EQ(Ask(4000, {RootBytes(1)}), 0);
}

TEST_F(VYNTrustTest, ComparesExpectedIdsByteForByte) {
  std::string id = RootBytesID();
  Expect(id + "\n");
  id[0] = 'd';
  Expect(id);
  EXPECT_EQ(Ask(4000), 1673);
}

TEST_F(VYNTrustTest, SaysWhatItExpectedAndWhatItReceived) {
  Expect("one");
  EXPECT_EQ(Ask(4000), 1673);
  EXPECT_EQ(Lines(), (std::vector<Line>{{"***VYN: SSL Cert ID failure: Expecting \"one\", "
                                         "received \"" +
                                             RootBytesID() + "\"",
                                         1, false}}));
}

TEST_F(VYNTrustTest, AcceptsEveryChainButGroup3000WithoutRootsAndIds) {
  struct Row {
    u32 id;
    const char* name;
  };
  for (const Row& row : std::vector<Row>{{0, "none"},
                                         {999, "none"},
                                         {1000, "Norvik Branding CA"},
                                         {1999, "Norvik Branding CA"},
                                         {2000, "VeriSign OFX CA"},
                                         {4000, "RSA Secure Server CA"},
                                         {4001, "RSA Secure Server CA"},
                                         {5000, "unknown"},
                                         {32767, "unknown"}}) {
    Lines().clear();
    EXPECT_EQ(Ask(row.id), 0);
    EXPECT_EQ(Lines(), (std::vector<Line>{{"VYN: Received trusted root " + std::to_string(row.id) +
                                               " (" + row.name + ")",
                                           3, false}}));
  }
  EXPECT_EQ(Ask(3000), 1671);
}

TEST_F(VYNTrustTest, RefusesWhenThereIsNoMemoryToDecide) {
  Expect(RootBytesID());
  u16 answer = 1670;
  std::size_t nth = 1;
  for (; answer != 0; ++nth) {
    ASSERT_LT(nth, 50u);
    const FailingAllocation failing(nth);
    answer = Ask(4000);
    EXPECT_TRUE(answer == 1670 || answer == 0) << answer;
  }
  EXPECT_GT(nth, 2u);
}

// ---- The same for a subclass ----

TEST_F(VYNTrustTest, HandsRootsAndOptionsToAnExchangeOfASubclass) {
  AddRoot(4000);
  AddRoot(4001);
  char exchange = 0;
  EXPECT_EQ(request->AddAllTrustedRoots(&exchange), 0);
  manager.refusedRoot = 4000;
  manager.rootCode = 1612;
  EXPECT_EQ(request->AddAllTrustedRoots(&exchange), 1612);
  EXPECT_EQ(manager.calls,
            (Words{"VCAddTrustedRoot(unknown, 557, 4000)", "VCAddTrustedRoot(unknown, 557, 4001)",
                   "VCAddTrustedRoot(unknown, 557, 4000)"}));
  manager.sslCode = 1613;
  EXPECT_EQ(request->SetSSLOptions(&exchange), 1613);
  EXPECT_EQ(manager.calls.back(), "VCSetSSLInfo(unknown, 0, callback, 120)");
  EXPECT_EQ(Lines().size(), 0u);
}

TEST_F(VYNTrustTest, HandsNothingOverWithoutAnAccessObject) {
  OpenRequest alone;
  char exchange = 0;
  EXPECT_EQ(alone.AddAllTrustedRoots(&exchange), 1699);
  EXPECT_EQ(alone.SetSSLOptions(&exchange), 1699);
}

}  // namespace
