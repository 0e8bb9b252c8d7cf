// How a call waits for its exchange, and what host code may do while it waits.

#include <string>
#include <vector>

#include "transport/vyn_fixture.h"

namespace {

using Calls = std::vector<std::string>;

class VYNWaitTest : public ConnectedVYNTest {};

// The default platform with a clock that only pauses advance.
class TimedPlatform : public VYNDefaultWaitPlatform {
 public:
  using VYNDefaultWaitPlatform::VYNDefaultWaitPlatform;
  void Pause(u32 milliseconds, VYNConnectionManager& manager) override {
    VYNDefaultWaitPlatform::Pause(milliseconds, manager);
    m_clock += lasting < milliseconds ? lasting : milliseconds;
  }
  std::uint64_t Clock() const override { return m_clock; }

  // How long a manager works at most when it is to work for longer.
  u32 lasting = 1000;

 private:
  std::uint64_t m_clock = 1;
};

// ---- The wait ----

TEST_F(VYNWaitTest, TakesOneEventARoundAndPausesAHundredMilliseconds) {
  manager.script.rounds = 3;
  std::vector<std::size_t> workSoFar;
  for (int event = 0; event < 5; ++event) {
    platform.Post([&] { workSoFar.push_back(manager.works.size()); });
  }
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(workSoFar, (std::vector<std::size_t>{0, 1, 2}));
  EXPECT_EQ(platform.pauses, (std::vector<u32>{100, 100, 100}));
  EXPECT_EQ(platform.events.size(), 2u);
}

TEST_F(VYNWaitTest, PausesAlsoInRoundsWithoutAnEvent) {
  manager.script.rounds = 4;
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(platform.looks, 4);
  EXPECT_EQ(platform.pauses.size(), 4u);
}

TEST_F(VYNWaitTest, DoesNotWaitForAnExchangeThatEndsWhileItStarts) {
  manager.script.rounds = 0;
  platform.PostQuit();
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(platform.looks, 0);
  EXPECT_EQ(ReplySize(), 5);
}

TEST_F(VYNWaitTest, EndsTheWaitAtQuitWithSuccessAndNoReply) {
  manager.script.rounds = ExchangeScript::kNever;
  platform.Post([] {});
  platform.PostQuit();
  platform.Post([] { FAIL() << "taken after the quit"; });
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(platform.pauses.size(), 1u);
  EXPECT_EQ(platform.events.size(), 1u);
  EXPECT_EQ(Texts().back(), "VYN: End get from http://bank/, netstatus 0");
  EXPECT_EQ(State().known, 0);
  EXPECT_EQ(State().error, 0u);
  EXPECT_EQ(ReplySize(), -5);
}

TEST_F(VYNWaitTest, GivesTheExchangeBackAtQuitSoThatTheRequestMayGo) {
  manager.script.rounds = 2;
  platform.PostQuit();
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(manager.calls.back(), "VCRelease(session, exchange)");
  EXPECT_EQ(manager.Live(), 0u);
  request.reset();
  for (int work = 0; work < 3; ++work) manager.VCWork(100);
  EXPECT_EQ(manager.callbackResults.size(), 0u);
}

TEST_F(VYNWaitTest, NeverTakesTheEndOfAnExchangeThatWasQuitForThatOfTheNext) {
  manager.script.rounds = 2;
  platform.PostQuit();
  EXPECT_EQ(Get("http://bank/first"), KRNetStatus_Success);
  manager.script.rounds = 5;
  manager.script.reply = "second";
  EXPECT_EQ(Get("http://bank/second"), KRNetStatus_Success);
  EXPECT_EQ(ReplySize(), 6);
}

TEST_F(VYNWaitTest, WaitsThroughTheDefaultPlatformByTheManagersWork) {
  struct Host {
    int events = 0;
  } host;
  TimedPlatform standard(
      [](void* context) {
        return ++static_cast<Host*>(context)->events < 3 ? VYNEventResult_Handled
                                                         : VYNEventResult_None;
      },
      &host);
  OpenAccess other(&manager, &standard);
  request->SetAccess(&other);
  manager.script.rounds = 4;
  manager.script.reply.reset();
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(host.events, 4);
  EXPECT_EQ(manager.works, (std::vector<u32>{100, 100, 100, 100}));
  OpenAccess withoutEvents(&manager);
  request->SetAccess(&withoutEvents);
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(manager.works.size(), 8u);
  request->SetAccess(nullptr);
}

TEST_F(VYNWaitTest, TakesOneEventARoundAlsoFromAManagerThatWorksForAShorterTime) {
  int events = 0;
  TimedPlatform standard(
      [](void* context) {
        ++*static_cast<int*>(context);
        return VYNEventResult_Handled;
      },
      &events);
  standard.lasting = 30;
  OpenAccess other(&manager, &standard);
  request->SetAccess(&other);
  manager.script.rounds = 10;
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(manager.works, (std::vector<u32>{100, 70, 40, 10, 100, 70, 40, 10, 100, 70}));
  EXPECT_EQ(events, 3);
  request->SetAccess(nullptr);
}

TEST_F(VYNWaitTest, EndsWithinARoundWhenTheAccessObjectIsDestroyedByACallback) {
  manager.script.rounds = ExchangeScript::kNever;
  manager.script.progress = {{1}};
  auto* const own = new OpenAccess(&manager);
  own->SetSessionCallback([](KROpCode, void*, void*) { OnProgress()(); });
  request->SetAccess(own);
  OnProgress() = [&] { delete own; };
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Failed);
  EXPECT_EQ(manager.works.size(), 1u);
}

TEST(VYNDefaultWaitPlatformTest, HasAClockThatGoesOn) {
  const VYNDefaultWaitPlatform platform;
  const std::uint64_t first = platform.Clock();
  EXPECT_GT(first, 0u);
  EXPECT_GE(platform.Clock(), first);
}

TEST_F(VYNWaitTest, WaitsForAWordOfASubclassUntilItIsSet) {
  u16 finished = 0;
  platform.Post([] {});
  platform.Post([&] { finished = 1; });
  request->WaitForReply(&finished);
  EXPECT_EQ(platform.pauses.size(), 2u);
  request->WaitForReply(&finished);
  request->WaitForReply(nullptr);
  EXPECT_EQ(platform.looks, 2);
  OpenRequest alone;
  finished = 0;
  alone.WaitForReply(&finished);
  EXPECT_EQ(platform.looks, 2);
}

// ---- Abort ----

TEST_F(VYNWaitTest, AbortsFromAnEventOfTheHosts) {
  manager.script.rounds = ExchangeScript::kNever;
  platform.Post([&] { EXPECT_EQ(request->Abort(), KRNetStatus_Success); });
  EXPECT_EQ(Get("http://bank/"), OpenRequest::MapVYNErrorToNetStatus(ScriptedManager::kCancelled));
  EXPECT_EQ(manager.calls.back(), "VCCancel(session, exchange)");
  EXPECT_EQ(State().error, ScriptedManager::kCancelled);
  EXPECT_EQ(ReplySize(), -5);
  EXPECT_EQ(folder.Entries(), 0u);
}

TEST_F(VYNWaitTest, AbortsFromTheSessionCallback) {
  manager.script.rounds = ExchangeScript::kNever;
  manager.script.progress = {{1}};
  OnProgress() = [&] { EXPECT_EQ(request->Abort(), KRNetStatus_Success); };
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_NetworkFailed);
}

TEST_F(VYNWaitTest, SaysWhenAbortingFails) {
  manager.cancelCode = 1607;
  platform.Post([&] { EXPECT_EQ(request->Abort(), KRNetStatus_CancelFailed); });
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(Texts()[1], "***VYN VCCancel:  1607");
  EXPECT_EQ(State().error, 0u);
}

TEST_F(VYNWaitTest, AbortsNothingBeforeAndBehindAnExchange) {
  EXPECT_EQ(request->Abort(), KRNetStatus_Success);
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(request->Abort(), KRNetStatus_Success);
  OpenRequest alone;
  EXPECT_EQ(alone.Abort(), KRNetStatus_Success);
  EXPECT_EQ(manager.Names(), (Calls{"VCGetFileRequest", "VCInitiate"}));
}

TEST_F(VYNWaitTest, AbortsNothingOnceTheExchangeIsOver) {
  manager.script.result = 1518;
  OnLine() = [&](const std::string& line) {
    if (line.find("kVYFInished") != std::string::npos) request->Abort();
  };
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_ServerError);
  EXPECT_EQ(manager.Names(), (Calls{"VCGetFileRequest", "VCInitiate"}));
}

// ---- What host code may do while it waits ----

TEST_F(VYNWaitTest, RefusesAnExchangeWithinAnExchange) {
  manager.script.rounds = 2;
  platform.Post([&] { EXPECT_EQ(Get("http://bank/inner"), KRNetStatus_NotCreated); });
  EXPECT_EQ(Get("http://bank/outer"), KRNetStatus_Success);
  EXPECT_EQ(manager.Names(), (Calls{"VCGetFileRequest", "VCInitiate"}));
  EXPECT_EQ(ReplySize(), 5);
}

TEST_F(VYNWaitTest, LetsTwoRequestsOfOneAccessObjectRunWithinEachOther) {
  OpenRequest other;
  other.SetAccess(access.get());
  manager.script.rounds = 6;
  platform.Post([&] {
    manager.script.rounds = 1;
    EXPECT_EQ(other.Get("http://bank/inner"), KRNetStatus_Success);
  });
  EXPECT_EQ(Get("http://bank/outer"), KRNetStatus_Success);
  EXPECT_EQ(ReplySize(), 5);
}

TEST_F(VYNWaitTest, EndsWhenTheConnectionDoes) {
  manager.script.rounds = ExchangeScript::kNever;
  platform.Post([&] { EXPECT_EQ(access->EndConnection(), KRNetStatus_Success); });
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Failed);
  EXPECT_EQ(manager.Names(), (Calls{"VCGetFileRequest", "VCInitiate", "VCRelease", "VCCloseInet"}));
  EXPECT_EQ(Texts().back(), "VYN: End get from http://bank/, netstatus 1");
}

TEST_F(VYNWaitTest, EndsWhenTheHostPutsAnotherSessionInPlaceOfItsOwn) {
  manager.script.rounds = ExchangeScript::kNever;
  char theirs = 0;
  platform.Post([&] { access->SetGlobalState(&theirs); });
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Failed);
  EXPECT_EQ(manager.calls[2], "VCRelease(session, exchange)");
  EXPECT_EQ(manager.calls[3], "VCCloseInet(session)");
}

TEST_F(VYNWaitTest, EndsWhenTheRequestIsDestroyedByAnEvent) {
  manager.script.rounds = ExchangeScript::kNever;
  platform.Post([&] { access->DeleteNetRequest(request.release()); });
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Failed);
  EXPECT_EQ(manager.Live(), 0u);
  EXPECT_EQ(platform.pauses.size(), 0u);
}

TEST_F(VYNWaitTest, EndsWhenTheRequestIsDestroyedByAProgressCallback) {
  for (const int rounds : {0, 1}) {
    request.reset(new OpenRequest);
    request->SetAccess(access.get());
    manager.script.rounds = rounds;
    manager.script.progress = {{1}, {2, 3, 4}};
    OnProgress() = [&] { access->DeleteNetRequest(request.release()); };
    EXPECT_EQ(Get("http://bank/"), KRNetStatus_Failed) << rounds;
    EXPECT_EQ(manager.Live(), 0u);
    OnProgress() = nullptr;
  }
  EXPECT_EQ(Progresses().size(), 2u);
}

TEST_F(VYNWaitTest, EndsWhenTheRequestIsDestroyedByALogLine) {
  for (const std::string line : {"Beginning", "kVYFInished", "End get"}) {
    request.reset(new OpenRequest);
    request->SetAccess(access.get());
    manager.script.result = 1518;
    OnLine() = [&](const std::string& text) {
      if (text.find(line) != std::string::npos) access->DeleteNetRequest(request.release());
    };
    const KRNetStatus status = Get("http://bank/");
    OnLine() = nullptr;
    EXPECT_EQ(status, line == "End get" ? KRNetStatus_ServerError : KRNetStatus_Failed) << line;
    EXPECT_EQ(request, nullptr);
    EXPECT_EQ(manager.Live(), 0u);
    EXPECT_EQ(folder.Entries(), 0u);
  }
}

TEST_F(VYNWaitTest, EndsWhenTheAccessObjectIsDestroyedByAnEvent) {
  manager.script.rounds = ExchangeScript::kNever;
  platform.Post([&] { access.reset(); });
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Failed);
  EXPECT_EQ(manager.Live(), 0u);
}

TEST_F(VYNWaitTest, EndsWhenTheAccessObjectIsDestroyedByACallback) {
  manager.script.rounds = ExchangeScript::kNever;
  manager.script.progress = {{1}};
  OnProgress() = [&] { access.reset(); };
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Failed);
  EXPECT_EQ(manager.Live(), 0u);
}

TEST_F(VYNWaitTest, KeepsItsAccessObjectWhileItWaits) {
  OpenAccess other(&manager, &platform);
  platform.Post([&] { request->SetAccess(&other); });
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(Texts().size(), 2u);
  request->SetAccess(&other);
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(Texts().size(), 2u);
  request->SetAccess(nullptr);
}

}  // namespace
