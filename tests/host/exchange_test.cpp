// Exchanges that end before anything is sent, and those with a file.

#include "krofx/host/exchange.h"

#include <gtest/gtest.h>

#include <string>

#include "krofx/core/buffer.h"
#include "krofx/host/words.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"
#include "support/temp_folder.h"

namespace krofx::testing {
namespace {

// Nobody listens there.
constexpr const char* kNowhere = "https://127.0.0.1:1/";
constexpr const char* kPin = "AZaz09+/AAAAAAAAAAAAAAAAAAA=";

KRNetStatus StatusOf(Exchange& exchange) {
  KRBuffer reply(0, 0);
  reply.WriteLarge("before", 6);
  const Outcome outcome = exchange.Get(reply);
  EXPECT_EQ(reply.GetBufferSize(), 0u);
  EXPECT_FALSE(outcome);
  EXPECT_FALSE(outcome.text.IsEmpty());
  return outcome.status;
}

TEST(Exchanges, TakeForAPinWhatIsBase64OfTwentyBytes) {
  Exchange taken(kNowhere);
  EXPECT_TRUE(taken.Pin(kPin));
  EXPECT_EQ(StatusOf(taken), KRNetStatus_Refused);
  const std::string pin = kPin;
  for (const std::string& bad :
       {std::string(), pin.substr(1), pin + "=", pin.substr(0, 27) + "A", "A" + pin,
        "*" + pin.substr(1), "[" + pin.substr(1), "`" + pin.substr(1), "{" + pin.substr(1),
        ":" + pin.substr(1), "." + pin.substr(1), "=" + pin.substr(1)}) {
    Exchange refused(kNowhere);
    EXPECT_FALSE(refused.Pin(bad)) << bad;
    EXPECT_EQ(StatusOf(refused), KRNetStatus_SslOptionsRejected) << bad;
  }
}

TEST(Exchanges, AreNotMadeWithoutTheRootsThatWereAskedFor) {
  Exchange noName(kNowhere);
  EXPECT_FALSE(noName.TrustPem(nullptr));
  EXPECT_EQ(StatusOf(noName), KRNetStatus_RootRejected);
  Exchange cut(kNowhere);
  EXPECT_FALSE(cut.TrustPemText("-----BEGIN CERTIFICATE-----\nAAAA\n"));
  EXPECT_EQ(StatusOf(cut), KRNetStatus_RootRejected);
}

TEST(Exchanges, AreNotMadeWithTextsThatNoStringHolds) {
  const std::string tooLong(70000, 'x');
  Exchange url("https://127.0.0.1:1/" + tooLong);
  EXPECT_EQ(StatusOf(url), KRNetStatus_NotCreated);
  Exchange folder(kNowhere);
  folder.TemporaryFolder(tooLong);
  EXPECT_EQ(StatusOf(folder), KRNetStatus_NotCreated);
  Exchange proxy(kNowhere);
  proxy.Proxy(tooLong);
  EXPECT_EQ(StatusOf(proxy), KRNetStatus_NotCreated);
}

TEST(Exchanges, AreNotMadeWithoutMemoryForTheirProxy) {
  for (std::size_t nth = 1;; ++nth) {
    Exchange exchange("http://127.0.0.1:1/");
    exchange.Proxy("http://127.0.0.1:1/");
    KRBuffer reply(0, 0);
    const FailingAllocation failing(nth);
    const Outcome outcome = exchange.Get(reply);
    EXPECT_FALSE(outcome) << nth;
    EXPECT_EQ(reply.GetBufferSize(), 0u);
    EXPECT_TRUE(nth > 1 || outcome.status != KRNetStatus_Refused) << "somebody was asked";
    if (krofx::internal::AllocationFailure::Count() < nth) {
      EXPECT_EQ(outcome.status, KRNetStatus_Refused);
      break;
    }
  }
}

TEST(Exchanges, AskNoMoreOnceTheyAreCancelled) {
  Exchange exchange(kNowhere);
  int asked = 0;
  exchange.OnProgress([&asked](const Progress&) {
    ++asked;
    return false;
  });
  KRBuffer reply(0, 0);
  const Outcome outcome = exchange.Get(reply);
  EXPECT_FALSE(outcome);
  EXPECT_TRUE(outcome.cancelled);
  EXPECT_EQ(ToText(outcome.text), "it was cancelled");
  EXPECT_EQ(asked, 1);
}

TEST(Exchanges, KeepTheReplyInAFolderHoweverItIsWritten) {
  const TempFolder folder;
  const std::string url = "file://" + folder.Put("reply.ofx", "OFXHEADER:100\n");
  const TempFolder replies;
  for (const std::string& name :
       {replies.Path().string(), replies.Path().string() + "/", std::string()}) {
    Exchange exchange(url);
    exchange.TemporaryFolder(name);
    KRBuffer reply(0, 0);
    const Outcome outcome = exchange.Get(reply);
    EXPECT_TRUE(outcome) << ToText(outcome.text);
    EXPECT_EQ(ContentOf(reply), "OFXHEADER:100\n");
    EXPECT_EQ(replies.Entries(), 0u);
  }
}

}  // namespace
}  // namespace krofx::testing
