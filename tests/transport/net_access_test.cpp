// What all connections share: settings, callbacks, results of the base class.

#include "krofx/transport/contract/net_access.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/failing_allocation.h"
#include "support/vtable_places.h"
#include "transport/probe_transport.h"

namespace {

struct LogLine {
  std::string text;
  u16 level;
  const char* extra;
};

std::vector<LogLine> g_lines;
std::vector<std::vector<std::uintptr_t>> g_progress;

void TakeLine(const char* text, u16 level, const char* extra) {
  g_lines.push_back({text, level, extra});
}

void TakeProgress(KROpCode code, void* a, void* b) {
  g_progress.push_back(
      {code, reinterpret_cast<std::uintptr_t>(a), reinterpret_cast<std::uintptr_t>(b)});
}

class KRNetAccessTest : public testing::Test {
 protected:
  void SetUp() override {
    g_lines.clear();
    g_progress.clear();
  }
  ProbeAccess access;
};

TEST_F(KRNetAccessTest, BeginsWithoutANameOfItsOwnAndWithoutAPath) {
  EXPECT_EQ(access.AgentName(), "NONAME");
  EXPECT_EQ(access.TempFilePath(), "");
}

TEST_F(KRNetAccessTest, KeepsAgentNameAndTempFilePath) {
  access.SetAgentName("Quillon");
  access.SetTempFilePath("/var/tmp/");
  EXPECT_EQ(access.AgentName(), "Quillon");
  EXPECT_EQ(access.TempFilePath(), "/var/tmp/");
  access.SetAgentName("");
  EXPECT_EQ(access.AgentName(), "");
}

TEST_F(KRNetAccessTest, SaysNothingWithoutALogCallback) {
  access.LogMessage("lost", 1, nullptr);
  access.SetLogCallback(TakeLine);
  access.SetLogCallback(nullptr);
  access.LogMessage("lost", 1, nullptr);
  EXPECT_TRUE(g_lines.empty());
}

TEST_F(KRNetAccessTest, HandsLogLinesOnUntouched) {
  static const char extra[] = "more";
  access.SetLogCallback(TakeLine);
  access.LogMessage("a %s b", 3, extra);
  ASSERT_EQ(g_lines.size(), 1u);
  EXPECT_EQ(g_lines[0].text, "a %s b");
  EXPECT_EQ(g_lines[0].level, 3);
  EXPECT_EQ(g_lines[0].extra, extra);
}

TEST_F(KRNetAccessTest, TellsNothingWithoutASessionCallback) {
  access.UpdateSessionStatus(KROpCode_Sending, nullptr, nullptr);
  EXPECT_TRUE(g_progress.empty());
}

TEST_F(KRNetAccessTest, HandsProgressOnUntouchedWhateverTheCode) {
  access.SetSessionCallback(TakeProgress);
  access.UpdateSessionStatus(KROpCode_Receiving, reinterpret_cast<void*>(7),
                             reinterpret_cast<void*>(9));
  access.UpdateSessionStatus(static_cast<KROpCode>(4711), nullptr, nullptr);
  const std::vector<std::vector<std::uintptr_t>> expected = {{3, 7, 9}, {4711, 0, 0}};
  EXPECT_EQ(g_progress, expected);
}

TEST_F(KRNetAccessTest, TakesNoSessionOfTheHostAndHasNoErrorCode) {
  u32 lastError = 42;
  EXPECT_EQ(access.SetGlobalState(&lastError), 0);
  EXPECT_EQ(access.GetStatus(lastError), 0);
  EXPECT_EQ(lastError, 42u);
}

TEST_F(KRNetAccessTest, CopiesEverySetting) {
  access.SetAgentName("Quillon");
  access.SetTempFilePath("/var/tmp/");
  access.SetLogCallback(TakeLine);
  access.SetSessionCallback(TakeProgress);
  ProbeAccess copy(access);
  ProbeAccess assigned;
  assigned = access;
  for (ProbeAccess* each : {&copy, &assigned}) {
    EXPECT_EQ(each->AgentName(), "Quillon");
    EXPECT_EQ(each->TempFilePath(), "/var/tmp/");
    each->LogMessage("line", 1, nullptr);
    each->UpdateSessionStatus(KROpCode_Sending, nullptr, nullptr);
  }
  EXPECT_EQ(g_lines.size(), 2u);
  EXPECT_EQ(g_progress.size(), 2u);
}

TEST_F(KRNetAccessTest, ACopyHasTextsOfItsOwn) {
  ProbeAccess copy(access);
  access.SetAgentName("Changed");
  EXPECT_EQ(copy.AgentName(), "NONAME");
}

TEST_F(KRNetAccessTest, IsUsableWhenItsNameFindsNoMemory) {
  FailingAllocation failing(1, true);
  ProbeAccess poor;
  poor.LogMessage("line", 1, nullptr);
  KRString name;
  poor.GetAgentName(name);
  EXPECT_EQ(name.IsNull(), 1);
  EXPECT_TRUE(AlarmIsSet());
}

TEST_F(KRNetAccessTest, MayBeDeletedThroughItsBase) {
  KRNetAccess* made = new ProbeAccess;
  made->SetTempFilePath("a path that is long enough to need memory of its own");
  KRNetRequest* request = made->NewNetRequest();
  EXPECT_EQ(made->DeleteNetRequest(request), KRNetStatus_Success);
  delete made;
}

#ifdef KROFX_TESTS_KNOW_VTABLES
TEST_F(KRNetAccessTest, KeepsTheOrderOfItsOperations) {
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::CanDoNetworkSetup), 0);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::IsNetworkSetup), 1);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::DoNetworkSetup), 2);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::SetAgentName), 3);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::SetTempFilePath), 4);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::SetLogCallback), 5);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::LogMessage), 6);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::SetSessionCallback), 7);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::UpdateSessionStatus), 8);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::InitConnection), 9);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::EndConnection), 10);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::NewNetRequest), 11);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::DeleteNetRequest), 12);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::SetGlobalState), 13);
  EXPECT_EQ(VtablePlaceOf(&KRNetAccess::GetStatus), 14);
}
#endif

TEST(KRNetStatus, HasTheNumbersThatHostsCompare) {
  EXPECT_EQ(KRNetStatus_Success, 0u);
  EXPECT_EQ(KRNetStatus_Failed, 1u);
  EXPECT_EQ(KRNetStatus_NotFileUrl, 3u);
  EXPECT_EQ(KRNetStatus_NoReplySize, 5u);
  EXPECT_EQ(KRNetStatus_ReplyNotLoaded, 6u);
  EXPECT_EQ(KRNetStatus_CloseFailed, 7u);
  EXPECT_EQ(KRNetStatus_NotCreated, 8u);
  EXPECT_EQ(KRNetStatus_NotStarted, 10u);
  EXPECT_EQ(KRNetStatus_NoMemory, 12u);
  EXPECT_EQ(KRNetStatus_ClientError, 14u);
  EXPECT_EQ(KRNetStatus_Unavailable, 15u);
  EXPECT_EQ(KRNetStatus_RootRejected, 16u);
  EXPECT_EQ(KRNetStatus_SslOptionsRejected, 17u);
  EXPECT_EQ(KRNetStatus_NetworkFailed, 18u);
  EXPECT_EQ(KRNetStatus_SslFailed, 19u);
  EXPECT_EQ(KRNetStatus_Untrusted, 21u);
  EXPECT_EQ(KRNetStatus_BadCertificate, 22u);
  EXPECT_EQ(KRNetStatus_UnexpectedCertificate, 23u);
  EXPECT_EQ(KRNetStatus_AbortNotSupported, 24u);
  EXPECT_EQ(KRNetStatus_CancelFailed, 25u);
  EXPECT_EQ(KRNetStatus_Refused, 26u);
  EXPECT_EQ(KRNetStatus_TimedOut, 27u);
  EXPECT_EQ(KRNetStatus_ServerError, 28u);
  EXPECT_EQ(KRNetStatus_Other, 29u);
}

}  // namespace
