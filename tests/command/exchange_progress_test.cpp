// What the line of an exchange's progress says to a person, and that others see none.

#include "exchange/exchange_progress.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <string>

#include "output/time_left.h"
#include "support/pseudo_terminal.h"
#include "support/redirected_stream.h"
#include "support/temp_folder.h"

namespace krofx::command {
namespace {

using Callback = void (*)(KROpCode, void*, void*);

// An access object that exchanges nothing, and has the callback that it was given.
class IdleAccess : public KRNetAccess {
 public:
  u16 CanDoNetworkSetup() override { return 0; }
  u16 IsNetworkSetup() override { return 1; }
  u16 DoNetworkSetup() override { return 0; }
  void SetSessionCallback(Callback callback) override { m_callback = callback; }
  KRNetStatus InitConnection() override { return KRNetStatus_Success; }
  KRNetStatus EndConnection() override { return KRNetStatus_Success; }
  KRNetRequest* NewNetRequest() override { return nullptr; }
  KRNetStatus DeleteNetRequest(KRNetRequest*) override { return KRNetStatus_Success; }

  Callback m_callback = nullptr;
};

void Step(Callback callback, KROpCode code, std::uintptr_t done, std::uintptr_t all) {
  callback(code, reinterpret_cast<void*>(done), reinterpret_cast<void*>(all));
}

TEST(ExchangeProgress, NamesTheStepAndHowFarItIs) {
  const PseudoTerminal terminal;
  const RedirectedStream errors(STDERR_FILENO, terminal.Name());
  IdleAccess access;
  Callback callback = nullptr;
  // The line that a step shows, in the place of the one before it.
  const auto line = [&](KROpCode code, std::uintptr_t done, std::uintptr_t all) {
    Step(callback, code, done, all);
    const std::string shown = terminal.Take();
    const std::string clear = "\r\033[K";
    EXPECT_TRUE(shown.starts_with(clear)) << shown;
    return shown.substr(std::min(clear.size(), shown.size()));
  };
  {
    const ExchangeProgress progress(access, "harbor\033[2J");
    callback = access.m_callback;
    ASSERT_NE(callback, nullptr);
    EXPECT_EQ(line(KROpCode_Connecting, 0, 0), "krofx: connecting to harbor\uFFFD[2J");
    EXPECT_EQ(line(KROpCode_Sending, 5, 10), "krofx: sending to harbor\uFFFD[2J: 5 of 10 bytes");
    // All is sent, and the answer has not begun.
    EXPECT_EQ(line(KROpCode_Sending, 10, 10), "krofx: waiting for harbor\uFFFD[2J");
    // Some servers do not say how long their answer is.
    EXPECT_EQ(line(KROpCode_Receiving, 7, 0), "krofx: receiving from harbor\uFFFD[2J: 7 bytes");
    EXPECT_EQ(line(KROpCode_Sending, 0, 0), "krofx: sending to harbor\uFFFD[2J");
    EXPECT_EQ(terminal.Take(), "");
  }
  EXPECT_EQ(terminal.Take(), "\r\033[K");
  // What comes too late shows nothing.
  EXPECT_EQ(access.m_callback, nullptr);
  Step(callback, KROpCode_Receiving, 7, 10);
  EXPECT_EQ(terminal.Take(), "");
}

TEST(ExchangeProgress, IsNotShownWhereNobodyWatches) {
  const TempFolder folder;
  IdleAccess access;
  {
    const RedirectedStream errors(STDERR_FILENO, folder.Name("err"));
    const ExchangeProgress progress(access, "harbor");
    EXPECT_EQ(access.m_callback, nullptr);
  }
  EXPECT_EQ(folder.Get("err"), "");
}

TEST(TimeLeft, IsSaidInTheUnitThatFits) {
  using std::chrono::milliseconds;
  using std::chrono::seconds;
  EXPECT_EQ(DescribeTimeLeft(milliseconds(999), 1, 2), "");
  EXPECT_EQ(DescribeTimeLeft(seconds(10), 0, 100), "");
  EXPECT_EQ(DescribeTimeLeft(seconds(10), 50, 0), "");
  EXPECT_EQ(DescribeTimeLeft(seconds(10), 50, 100), ", about 11 s left");
  EXPECT_EQ(DescribeTimeLeft(seconds(10), 10, 91), ", about 82 s left");
  EXPECT_EQ(DescribeTimeLeft(seconds(10), 10, 100), ", about 2 min left");
  EXPECT_EQ(DescribeTimeLeft(seconds(10), 1, 541), ", about 2 h left");
  EXPECT_EQ(DescribeTimeLeft(seconds(10), 1, 1081), ", about 4 h left");
  // More came than was announced.
  EXPECT_EQ(DescribeTimeLeft(seconds(10), 200, 100), ", about 1 s left");
}

}  // namespace
}  // namespace krofx::command
