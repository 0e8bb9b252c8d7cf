// The messages for an exchange that failed: a distinct one, in one line, for each way to fail.

#include "exchange/exchange_problem.h"

#include <gtest/gtest.h>

#include <string>

namespace krofx::command {
namespace {

constexpr char kUnknown[] = "the exchange failed; check";

TEST(ExchangeProblem, SaysWhatEachStatusMeansAndItsNumber) {
  for (const KRNetStatus status :
       {KRNetStatus_Failed, KRNetStatus_NoReplySize, KRNetStatus_ReplyNotLoaded,
        KRNetStatus_NotCreated, KRNetStatus_NotStarted, KRNetStatus_NoMemory,
        KRNetStatus_ClientError, KRNetStatus_Unavailable, KRNetStatus_RootRejected,
        KRNetStatus_SslOptionsRejected, KRNetStatus_NetworkFailed, KRNetStatus_SslFailed,
        KRNetStatus_Untrusted, KRNetStatus_BadCertificate, KRNetStatus_UnexpectedCertificate,
        KRNetStatus_Refused, KRNetStatus_TimedOut, KRNetStatus_ServerError}) {
    const std::string text = DescribeExchangeProblem({.status = status});
    EXPECT_FALSE(text.starts_with(kUnknown)) << status;
    EXPECT_TRUE(text.ends_with("(status " + std::to_string(status) + ")")) << text;
    EXPECT_EQ(text.find('\n'), std::string::npos) << text;
  }
  EXPECT_TRUE(DescribeExchangeProblem({.status = KRNetStatus_Other}).starts_with(kUnknown));
}

TEST(ExchangeProblem, SaysMoreWhereTheTransportDoes) {
  const auto describe = [](u32 code, u32 http = 200) {
    return DescribeExchangeProblem(
        {.status = KRNetStatus_Other, .httpStatus = http, .transportError = code});
  };
  EXPECT_NE(describe(1506, 302).find("not followed"), std::string::npos);
  EXPECT_TRUE(describe(1504, 204).starts_with("the server answers with HTTP 204"))
      << describe(1504, 204);
  EXPECT_TRUE(describe(1688, 226).starts_with("the server answers with HTTP 226"))
      << describe(1688, 226);
  EXPECT_NE(describe(1513, 404).find("(status 29, HTTP 404, code 1513)"), std::string::npos);
  EXPECT_TRUE(describe(1603).starts_with("the roots that this system trusts cannot be read"))
      << describe(1603);
  EXPECT_NE(describe(1671).find("never accepted"), std::string::npos);
  EXPECT_NE(describe(1681).find("256 MiB"), std::string::npos);
  EXPECT_NE(describe(1687).find("(status 29, code 1687)"), std::string::npos);
}

TEST(ExchangeProblem, NamesAllThatOneCodeCanMean) {
  const std::string large =
      DescribeExchangeProblem({.status = KRNetStatus_Other, .transportError = 1681});
  EXPECT_NE(large.find("or its headers are too large"), std::string::npos) << large;
  EXPECT_NE(large.find("if it is a long statement"), std::string::npos) << large;
  const std::string invalid =
      DescribeExchangeProblem({.status = KRNetStatus_BadCertificate, .transportError = 1672});
  for (const char* const reason : {"another name", "revoked", "too weak", "not for servers"}) {
    EXPECT_NE(invalid.find(reason), std::string::npos) << invalid;
  }
}

TEST(ExchangeProblem, TellsAProxyFromAServer) {
  const auto describe = [](KRNetStatus status, u32 code, u32 http, bool usesProxy) {
    return DescribeExchangeProblem(
        {.status = status, .httpStatus = http, .transportError = code, .usesProxy = usesProxy});
  };
  EXPECT_TRUE(describe(KRNetStatus_ClientError, 1516, 407, true).starts_with("the proxy wants"));
  EXPECT_TRUE(describe(KRNetStatus_ClientError, 1516, 407, false).starts_with("the server wants"));
  EXPECT_NE(describe(KRNetStatus_Refused, 1531, 0, true).find("your proxy, and that it runs"),
            std::string::npos);
  EXPECT_NE(describe(KRNetStatus_NetworkFailed, 1600, 0, true).find("the proxy cannot be reached"),
            std::string::npos);
  for (const bool usesProxy : {false, true}) {
    const std::string redirected = describe(KRNetStatus_NetworkFailed, 1607, 302, usesProxy);
    EXPECT_EQ(redirected.find("try again"), std::string::npos) << redirected;
    EXPECT_NE(redirected.find("settings of your proxy"), std::string::npos) << redirected;
  }
  EXPECT_NE(describe(KRNetStatus_NetworkFailed, 1607, 200, true).find("try again"),
            std::string::npos);
}

TEST(ExchangeProblem, IsAboutTheProxyWithoutAConnectionToIt) {
  for (const u32 code : {u32{1531}, u32{1600}, u32{1605}}) {
    EXPECT_TRUE(IsAboutProxy({.transportError = code, .usesProxy = true})) << code;
    EXPECT_FALSE(IsAboutProxy({.transportError = code})) << code;
  }
  EXPECT_FALSE(IsAboutProxy({.transportError = 1607, .usesProxy = true}));
}

TEST(ExchangeProblem, KnowsWhoseRootsWereAsked) {
  ExchangeEnd end{.status = KRNetStatus_Untrusted};
  EXPECT_NE(DescribeExchangeProblem(end).find("this system trusts"), std::string::npos);
  end.ownRoots = true;
  EXPECT_NE(DescribeExchangeProblem(end).find("given with --root"), std::string::npos);
}

TEST(ExchangeProblem, NamesTheTimeThatWasAllowed) {
  EXPECT_NE(DescribeExchangeProblem({.status = KRNetStatus_TimedOut, .timeout = 7})
                .find("within 7 seconds"),
            std::string::npos);
}

TEST(ExchangeProblem, NamesAnHttpStatusOnlyWhenOneCame) {
  EXPECT_EQ(DescribeExchangeProblem(
                {.status = KRNetStatus_TimedOut, .transportError = 1517, .timeout = 7})
                .find("HTTP"),
            std::string::npos);
  EXPECT_NE(DescribeExchangeProblem(
                {.status = KRNetStatus_ClientError, .httpStatus = 429, .transportError = 1509})
                .find("too many requests"),
            std::string::npos);
}

TEST(ExchangeProblem, TellsAnEmptyReplyFromAFailure) {
  EXPECT_EQ(DescribeExchangeProblem({}), "the server's reply is empty; try again later");
}

TEST(ExchangeProblem, AsksForAnotherTryOnlyWhereThatMayHelp) {
  EXPECT_EQ(ExitStatusOf({}), kExitNetwork);
  EXPECT_EQ(ExitStatusOf({.status = KRNetStatus_TimedOut, .transportError = 1517}), kExitNetwork);
  EXPECT_EQ(ExitStatusOf({.status = KRNetStatus_Refused}), kExitNetwork);
  EXPECT_EQ(ExitStatusOf({.status = KRNetStatus_ClientError, .httpStatus = 429}), kExitNetwork);
  EXPECT_EQ(ExitStatusOf({.status = KRNetStatus_ServerError, .httpStatus = 500}), kExitNetwork);
  for (const KRNetStatus status :
       {KRNetStatus_Untrusted, KRNetStatus_BadCertificate, KRNetStatus_UnexpectedCertificate,
        KRNetStatus_NoMemory, KRNetStatus_SslFailed}) {
    EXPECT_EQ(ExitStatusOf({.status = status}), kExitUnusable) << status;
  }
  // HTTP 404, and a redirection.
  EXPECT_EQ(ExitStatusOf({.status = KRNetStatus_ClientError, .transportError = 1513}),
            kExitUnusable);
  EXPECT_EQ(ExitStatusOf({.status = KRNetStatus_Unavailable, .transportError = 1506}),
            kExitUnusable);
}

}  // namespace
}  // namespace krofx::command
