// The limits of time of an exchange, and what a transfer that took too long ended with.

#include "krofx/transport/curl/internal/time_limit.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "krofx/transport/curl/internal/result_codes.h"

namespace {

using krofx::internal::CodeOfTransfer;
using krofx::internal::IsConnectingOver;
using krofx::internal::MillisecondsOf;

constexpr curl_off_t kSecond = 1000000;

TEST(TimeLimit, IsTheHostsOrThatOfConnecting) {
  EXPECT_FALSE(IsConnectingOver(60 * kSecond - 1, 60));
  EXPECT_TRUE(IsConnectingOver(60 * kSecond, 60));
  for (const s32 seconds : {301, 600, 2147483647, 0, -1}) {
    EXPECT_FALSE(IsConnectingOver(300 * kSecond - 1, seconds)) << seconds;
    EXPECT_TRUE(IsConnectingOver(300 * kSecond, seconds)) << seconds;
  }
}

TEST(TimeLimit, IsNotReachedWhenTheSystemGivesUpConnecting) {
  EXPECT_EQ(CodeOfTransfer(CURLE_OPERATION_TIMEDOUT, ETIMEDOUT, false), VYNCurlCode_ConnectFailed);
  EXPECT_EQ(CodeOfTransfer(CURLE_OPERATION_TIMEDOUT, ETIMEDOUT, true), VYNCurlCode_TimedOut);
  for (const int error : {0, ECONNREFUSED, EINPROGRESS}) {
    EXPECT_EQ(CodeOfTransfer(CURLE_OPERATION_TIMEDOUT, error, false), VYNCurlCode_TimedOut);
    EXPECT_EQ(CodeOfTransfer(CURLE_OPERATION_TIMEDOUT, error, true), VYNCurlCode_TimedOut);
  }
}

TEST(TimeLimit, FitsIntoTheTypeThatTakesIt) {
  EXPECT_EQ(MillisecondsOf<s32>(1), 1000);
  EXPECT_EQ(MillisecondsOf<s32>(2147483), 2147483000);
  EXPECT_EQ(MillisecondsOf<s32>(2147484), 2147483000);
  EXPECT_EQ(MillisecondsOf<s32>(2147483647), 2147483000);
  EXPECT_EQ(MillisecondsOf<std::int64_t>(2147483647), 2147483647000);
}

}  // namespace
