// One exchange, step by step: the calls of the manager, the failure of each, and the waiting.

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "support/failing_allocation.h"
#include "transport/vyn_fixture.h"

namespace {

using Calls = std::vector<std::string>;

class VYNExchangeTest : public ConnectedVYNTest {};

// ---- The steps ----

TEST_F(VYNExchangeTest, FetchesOverHttpWithoutRootsAndTlsOptions) {
  AddRoot(4000);
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(manager.calls,
            (Calls{"VCGetFileRequest(session, http://bank/)", "VCInitiate(session, exchange)"}));
  EXPECT_EQ(Texts(), (Calls{"VYN: Beginning get from http://bank/",
                            "VYN: End get from http://bank/, netstatus 0"}));
  EXPECT_EQ(ReplySize(), 5);
  EXPECT_EQ(State().http, 200u);
  EXPECT_EQ(manager.Live(), 0u);
}

TEST_F(VYNExchangeTest, SendsTheBodyWholeWithItsNulBytes) {
  const std::string body("OFX\0HEADER", 10);
  EXPECT_EQ(Send("http://bank/", body), KRNetStatus_Success);
  EXPECT_EQ(manager.calls, (Calls{"VCSendDataRequest(session, http://bank/, 10)",
                                  "VCInitiate(session, exchange)"}));
  EXPECT_EQ(manager.sent, body);
  EXPECT_EQ(Texts(), (Calls{"VYN: Beginning send to http://bank/",
                            "VYN: End send to http://bank/, netstatus 0"}));
}

TEST_F(VYNExchangeTest, HandsOverRootsInOrderAndThenTheTlsOptionsForHttps) {
  AddRoot(4001);
  AddRoot(4000);
  EXPECT_EQ(Get("https://bank/"), KRNetStatus_Success);
  EXPECT_EQ(manager.calls,
            (Calls{"VCGetFileRequest(session, https://bank/)",
                   "VCAddTrustedRoot(exchange, 557, 4001)", "VCAddTrustedRoot(exchange, 557, 4000)",
                   "VCSetSSLInfo(exchange, 0, callback, 120)", "VCInitiate(session, exchange)"}));
  EXPECT_EQ(manager.roots, (Calls{RootBytes(), RootBytes()}));
}

TEST_F(VYNExchangeTest, KnowsHttpsInSmallLettersOnly) {
  for (const char* url : {"HTTPS://x", "Https://x", "httpS://x"}) {
    manager.calls.clear();
    EXPECT_EQ(Get(url), KRNetStatus_Success);
    EXPECT_EQ(manager.Names(), (Calls{"VCGetFileRequest", "VCInitiate"})) << url;
  }
  manager.calls.clear();
  EXPECT_EQ(Get("https:x"), KRNetStatus_Success);
  EXPECT_EQ(manager.Names(), (Calls{"VCGetFileRequest", "VCSetSSLInfo", "VCInitiate"}));
}

TEST_F(VYNExchangeTest, SkipsVerifyingForAnythingButOneAndPassesTheCallbackAllTheSame) {
  for (const u16 verify : {u16{0}, u16{2}, u16{65535}}) {
    manager.calls.clear();
    EXPECT_EQ(request->SetSSLVerifyCert(verify), 1);
    EXPECT_EQ(Get("https://bank/"), KRNetStatus_Success);
    EXPECT_EQ(manager.calls[1], "VCSetSSLInfo(exchange, 1, callback, 120)") << verify;
  }
  manager.calls.clear();
  EXPECT_EQ(request->SetSSLVerifyCert(1), 1);
  EXPECT_EQ(Get("https://bank/"), KRNetStatus_Success);
  EXPECT_EQ(manager.calls[1], "VCSetSSLInfo(exchange, 0, callback, 120)");
}

TEST_F(VYNExchangeTest, SetsHttpOptionsOnlyWithATimeout) {
  EXPECT_EQ(request->SetTimeout(30), 1);
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(manager.calls[1], "VCSetHTTPInfo(exchange, 0, 0, null, null, 1, 30)");
  manager.calls.clear();
  EXPECT_EQ(request->SetTimeout(-1), 1);
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(manager.calls[1], "VCSetHTTPInfo(exchange, 0, 0, null, null, 1, -1)");
  manager.calls.clear();
  EXPECT_EQ(request->SetTimeout(0), 1);
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(manager.Names(), (Calls{"VCGetFileRequest", "VCInitiate"}));
}

TEST_F(VYNExchangeTest, SendsHeadersAndContentTypeOnlyWithATimeout) {
  KRBuffer body(0, 0);
  Put(body, "OFX");
  char headers[] = "X-Branch: 7\r\n";
  EXPECT_EQ(request->SendPlusHeadersContent("http://bank/", &body, headers, "text/plain"),
            KRNetStatus_Success);
  EXPECT_EQ(manager.Names(), (Calls{"VCSendDataRequest", "VCInitiate"}));
  manager.calls.clear();
  request->SetTimeout(9);
  request->SendPlusHeadersContent("http://bank/", &body, headers, "text/plain");
  request->SendPlusHeaders("http://bank/", &body, headers);
  request->Send("http://bank/", &body);
  EXPECT_EQ(manager.calls[1],
            "VCSetHTTPInfo(exchange, 0, 1, \"text/plain\", \"X-Branch: 7\r\n\", 1, 9)");
  EXPECT_EQ(manager.calls[4],
            "VCSetHTTPInfo(exchange, 0, 1, \"application/x-ofx\", \"X-Branch: 7\r\n\", 1, 9)");
  EXPECT_EQ(manager.calls[7], "VCSetHTTPInfo(exchange, 0, 1, \"application/x-ofx\", null, 1, 9)");
}

TEST_F(VYNExchangeTest, AsksInTheOrderOfTheSteps) {
  request->SetTimeout(30);
  AddRoot(4000);
  EXPECT_EQ(Send("https://bank/", "OFX"), KRNetStatus_Success);
  EXPECT_EQ(manager.Names(), (Calls{"VCSendDataRequest", "VCAddTrustedRoot", "VCSetSSLInfo",
                                    "VCSetHTTPInfo", "VCInitiate"}));
}

TEST_F(VYNExchangeTest, UsesTheSessionAsItStandsAlsoWithoutOne) {
  access->EndConnection();
  manager.calls.clear();
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(manager.calls[0], "VCGetFileRequest(null, http://bank/)");
}

// ---- The failure of each step ----

struct FailedStep {
  const char* what;
  void (*arrange)(ScriptedManager&);
  KRNetStatus status;
  const char* getLine;
  const char* sendLine;
  Calls calls;
};

TEST_F(VYNExchangeTest, EndsAtTheFirstStepThatFailsAndGivesTheExchangeBack) {
  const std::vector<FailedStep> steps = {
      {"created with a code",
       [](ScriptedManager& m) { m.createError = 31; },
       KRNetStatus_NotCreated,
       "***VYN: VCGetFileRequest returns 31",
       "***VYN VCSendDataRequest:  31",
       {}},
      {"created null",
       [](ScriptedManager& m) { m.createGivesNull = true; },
       KRNetStatus_NotCreated,
       "***VYN: VCGetFileRequest returns 0",
       "***VYN VCSendDataRequest:  0",
       {}},
      {"first root",
       [](ScriptedManager& m) {
         m.refusedRoot = 4001;
         m.rootCode = 32;
       },
       KRNetStatus_RootRejected,
       "***VYN VCAddTrustedRoot:  32 (Get)",
       "***VYN VCAddTrustedRoot:  32 (Send)",
       {"VCAddTrustedRoot", "VCRelease"}},
      {"second root",
       [](ScriptedManager& m) {
         m.refusedRoot = 4000;
         m.rootCode = 33;
       },
       KRNetStatus_RootRejected,
       "***VYN VCAddTrustedRoot:  33 (Get)",
       "***VYN VCAddTrustedRoot:  33 (Send)",
       {"VCAddTrustedRoot", "VCAddTrustedRoot", "VCRelease"}},
      {"TLS options",
       [](ScriptedManager& m) { m.sslCode = 34; },
       KRNetStatus_SslOptionsRejected,
       "***VYN VCSetSSLInfo:  34 (Get)",
       "***VYN VCSetSSLInfo:  34 (Send)",
       {"VCAddTrustedRoot", "VCAddTrustedRoot", "VCSetSSLInfo", "VCRelease"}},
      {"HTTP options",
       [](ScriptedManager& m) { m.httpCode = 35; },
       KRNetStatus_Success,
       "***VYN VCSetHTTPInfo:  35",
       "***VYN VCSetHTTPInfo:  35",
       {"VCAddTrustedRoot", "VCAddTrustedRoot", "VCSetSSLInfo", "VCSetHTTPInfo", "VCRelease"}},
      {"start",
       [](ScriptedManager& m) { m.initiateCode = 36; },
       KRNetStatus_NotStarted,
       "***VYN: VCInitiate returns 36",
       "***VYN VCInitiate:  36",
       {"VCAddTrustedRoot", "VCAddTrustedRoot", "VCSetSSLInfo", "VCSetHTTPInfo", "VCInitiate",
        "VCRelease"}},
  };
  request->SetTimeout(5);
  AddRoot(4001);
  AddRoot(4000);
  for (const FailedStep& step : steps) {
    for (const bool isSend : {false, true}) {
      SCOPED_TRACE(std::string(step.what) + (isSend ? ", send" : ", get"));
      ScriptedManager failing;
      step.arrange(failing);
      OpenAccess other(&failing, &platform);
      other.SetLogCallback([](const char* text, u16 level, const char* extra) {
        Lines().push_back({text, level, extra != nullptr});
      });
      request->SetAccess(&other);
      Lines().clear();
      EXPECT_EQ(isSend ? Send("https://bank/", "OFX") : Get("https://bank/"), step.status);
      const std::string end = ", netstatus " + std::to_string(step.status);
      const Calls lines = isSend ? Calls{"VYN: Beginning send to https://bank/", step.sendLine,
                                         "VYN: End send to https://bank/" + end}
                                 : Calls{"VYN: Beginning get from https://bank/", step.getLine,
                                         "VYN: End get from https://bank/" + end};
      EXPECT_EQ(Texts(), lines);
      Calls names = failing.Names();
      names.erase(names.begin());
      EXPECT_EQ(names, step.calls);
      EXPECT_EQ(failing.Live(), 0u);
      EXPECT_EQ(ReplySize(), -5);
      failing.calls.clear();
      EXPECT_EQ(request->Abort(), KRNetStatus_Success);
      EXPECT_EQ(failing.calls, Calls{});
      request->SetAccess(access.get());
    }
  }
}

TEST_F(VYNExchangeTest, KeepsTheReplyBeforeWhenTheNextExchangeIsNotStarted) {
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  manager.createError = 1;
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_NotCreated);
  KRBuffer target(0, 0);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_Success);
  EXPECT_EQ(Content(target), "reply");
}

TEST_F(VYNExchangeTest, ForgetsTheReplyBeforeOnceTheNextExchangeIsCreated) {
  const std::string der = RootBytes();
  for (const auto& refuse : std::vector<std::function<void()>>{
           [&] { manager.httpCode = 35; }, [&] { manager.httpCode = 0, manager.initiateCode = 36; },
           [&] { manager.initiateCode = 0, manager.sslCode = 37; },
           [&] {
             manager.sslCode = 0;
             ASSERT_EQ(request->AddTrustedRootBER(der.data(), static_cast<u16>(der.size()), 4000),
                       1);
             manager.refusedRoot = 4000;
             manager.rootCode = 38;
           }}) {
    request->SetTimeout(0);
    EXPECT_EQ(Get("http://bank/"),
              manager.initiateCode == 0 ? KRNetStatus_Success : KRNetStatus_NotStarted);
    request->SetTimeout(30);
    refuse();
    Get("https://bank/");
    EXPECT_EQ(ReplySize(), -5);
    KRBuffer target(0, 0);
    EXPECT_EQ(request->LoadReply(&target), KRNetStatus_ReplyNotLoaded);
    EXPECT_EQ(folder.Entries(), 0u);
  }
}

TEST_F(VYNExchangeTest, KeepsTheFilesThatAManagerOpensUnderTheNamesOfTheReplyBefore) {
  // Like a manager that opens its files when it creates an exchange, and always with the same
  // names.
  class SameNames : public ScriptedManager {
   public:
    void* VCGetFileRequest(u16* error, void* session, const char* url, const char* tempPath,
                           VYProgressCallback callback, void* userData) override {
      m_reply.open(std::string(tempPath) + "same", std::ios::binary);
      m_callback = callback;
      m_userData = userData;
      return ScriptedManager::VCGetFileRequest(error, session, url, tempPath, &OnProgress, this);
    }
    std::string text;

   private:
    static u16 OnProgress(VYCallbackStatus status, void* record) {
      if (status != kVYFInished) return 0;
      auto& finished = *static_cast<VYFinishedRecord*>(record);
      auto& self = *static_cast<SameNames*>(finished.userData);
      self.m_reply << self.text;
      self.m_reply.close();
      finished.userData = self.m_userData;
      std::snprintf(finished.replyFile, sizeof finished.replyFile, "%s", self.m_replyName.c_str());
      return self.m_callback(status, record);
    }

   public:
    std::string m_replyName;

   private:
    std::ofstream m_reply;
    VYProgressCallback m_callback = nullptr;
    void* m_userData = nullptr;
  } same;
  same.m_replyName = folder.Name("same");
  OpenAccess other(&same, &platform);
  other.SetTempFilePath(folder.Name("").c_str());
  request->SetAccess(&other);
  for (const char* const text : {"first", "the second"}) {
    same.text = text;
    ASSERT_EQ(Get("http://bank/"), KRNetStatus_Success);
    EXPECT_EQ(ReplySize(), static_cast<long>(same.text.size()));
  }
  KRBuffer target(0, 0);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_Success);
  EXPECT_EQ(Content(target), "the second");
  EXPECT_EQ(folder.Entries(), 0u);
  request->SetAccess(nullptr);
}

TEST_F(VYNExchangeTest, SendsNothingForANullBodyOrOneThatLostItsMemory) {
  EXPECT_EQ(request->Send("http://bank/", nullptr), KRNetStatus_NotCreated);
  KRBuffer lost(0, 0);
  {
    const FailingAllocation failing(1, true);
    Put(lost, std::string(5000, 'x'));
  }
  ASSERT_EQ(lost.GetBufferPtr(), nullptr);
  EXPECT_EQ(request->Send("http://bank/", &lost), KRNetStatus_NotCreated);
  EXPECT_EQ(manager.calls, Calls{});
  KRBuffer empty(0, 0);
  EXPECT_EQ(request->Send("http://bank/", &empty), KRNetStatus_Success);
}

// ---- File URLs ----

TEST_F(VYNExchangeTest, LogsOnlyTheBeginningOfAFileUrlAndThenReadsTheFile) {
  const std::string url = "file://" + folder.Put("saved.ofx", "saved reply");
  EXPECT_EQ(Get(url.c_str()), KRNetStatus_Success);
  EXPECT_EQ(Texts(), Calls{"VYN: Beginning get from " + url});
  EXPECT_EQ(manager.calls, Calls{});
  EXPECT_EQ(ReplySize(), 11);
  KRBuffer target(0, 0);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_Success);
  EXPECT_EQ(Content(target), "saved reply");
}

TEST_F(VYNExchangeTest, ReadsAFileUrlOnceFetchedEvenAfterAnExchange) {
  const std::string url = "file://" + folder.Put("saved.ofx", "saved reply");
  EXPECT_EQ(Get(url.c_str()), KRNetStatus_Success);
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(ReplySize(), 11);
  KRBuffer target(0, 0);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_Success);
  EXPECT_EQ(Content(target), "saved reply");
}

TEST_F(VYNExchangeTest, SendsToAFileUrlAsToAnyOther) {
  EXPECT_EQ(Send("file://c|/a.ofx", "OFX"), KRNetStatus_Success);
  EXPECT_EQ(manager.calls[0], "VCSendDataRequest(session, file://c|/a.ofx, 3)");
}

TEST_F(VYNExchangeTest, GoesNoFurtherWhenAFileUrlCannotBeStored) {
  const std::string url = "file:/" + std::string(100, 'x');
  const KRString text(url.c_str());
  const FailingAllocation failing(1, true);
  EXPECT_EQ(request->Get(text), KRNetStatus_NoMemory);
  EXPECT_EQ(manager.calls, Calls{});
}

// ---- The reply ----

TEST_F(VYNExchangeTest, TellsProgressWithTheCountersOfItsCode) {
  manager.script.progress = {
      {1}, {2, 10, 300}, {3, 20, 0}, {3, 0xffffffff, 4000000000}, {77, 5, 6}};
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(Progresses(),
            (std::vector<Progress>{
                {1, 0, 0}, {2, 10, 300}, {3, 20, 0}, {3, 0xffffffff, 4000000000}, {77, 0, 0}}));
  for (const u16 result : manager.callbackResults) EXPECT_EQ(result, 0);
}

TEST_F(VYNExchangeTest, TakesTheFieldsOfARecordFromTheirPlaces) {
  EXPECT_EQ(offsetof(VYProgressRecord, reserved), 0u);
  EXPECT_EQ(offsetof(VYProgressRecord, userData), 2u);
  constexpr std::size_t rest = 2 + sizeof(void*);
  EXPECT_EQ(offsetof(VYProgressRecord, opCode), rest);
  EXPECT_EQ(offsetof(VYProgressRecord, receiveTotal), rest + 4);
  EXPECT_EQ(offsetof(VYProgressRecord, sendTotal), rest + 8);
  EXPECT_EQ(offsetof(VYProgressRecord, received), rest + 12);
  EXPECT_EQ(offsetof(VYProgressRecord, sent), rest + 16);
  EXPECT_EQ(sizeof(VYProgressRecord), rest + 20);
  EXPECT_EQ(offsetof(VYFinishedRecord, result), 0u);
  EXPECT_EQ(offsetof(VYFinishedRecord, userData), 2u);
  EXPECT_EQ(offsetof(VYFinishedRecord, replyFile), rest);
  EXPECT_EQ(offsetof(VYFinishedRecord, headerFile), rest + 282);
}

TEST_F(VYNExchangeTest, IgnoresRecordsOfOtherKindsAndNone) {
  VYFinishedRecord record{};
  record.result = 1531;
  record.userData = request.get();
  EXPECT_EQ(OpenRequest::VYNNetRequestCallback(static_cast<VYCallbackStatus>(2), &record), 0);
  EXPECT_EQ(OpenRequest::VYNNetRequestCallback(kVYFInished, nullptr), 0);
  EXPECT_EQ(request->DoCallback(kVYFInished, nullptr), 0);
  EXPECT_EQ(State().known, 0);
  EXPECT_EQ(State().error, 0u);
  record.userData = nullptr;
  EXPECT_EQ(OpenRequest::VYNNetRequestCallback(kVYFInished, &record), 0);
  EXPECT_EQ(Lines().size(), 0u);
}

TEST_F(VYNExchangeTest, CutsFileNamesWithoutATerminator) {
  VYFinishedRecord record;
  std::memset(&record, 'n', sizeof record);
  record.result = 0;
  record.userData = request.get();
  EXPECT_EQ(OpenRequest::VYNNetRequestCallback(kVYFInished, &record), 0);
  EXPECT_EQ(State().http, 200u);
  EXPECT_EQ(ReplySize(), -5);
}

TEST_F(VYNExchangeTest, TellsAnErrorOfTheManagersByLogStatusAndHttpStatus) {
  manager.script.result = 1521;
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Unavailable);
  EXPECT_EQ(Texts()[1], "***VYN kVYFInished: returns 1521");
  EXPECT_EQ(State().known, 1);
  EXPECT_EQ(State().http, 503u);
  EXPECT_EQ(State().error, 1521u);
  EXPECT_EQ(AccessError(), 0u);
}

TEST_F(VYNExchangeTest, DeletesTheFilesOfAnExchangeThatFailed) {
  manager.script.result = 1518;
  manager.script.headers = "Server: x\n";
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_ServerError);
  EXPECT_EQ(folder.Entries(), 0u);
  EXPECT_EQ(ReplySize(), -5);
}

TEST_F(VYNExchangeTest, TakesAReplyWithoutAFileAsASuccessWithoutReply) {
  manager.script.reply.reset();
  manager.script.headers = "Server: x\n";
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(State().known, 1);
  EXPECT_EQ(State().http, 200u);
  EXPECT_EQ(ReplySize(), -5);
  EXPECT_EQ(folder.Entries(), 0u);
}

TEST_F(VYNExchangeTest, ForgetsTheReplyBeforeWhenItStarts) {
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  manager.script.reply.reset();
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(ReplySize(), -5);
}

TEST_F(VYNExchangeTest, CreatesNothingWhenItHasNoMemoryForTheFolderOfReplies) {
  const KRString url("http://bank/");
  const FailingAllocation failing(1);
  EXPECT_EQ(request->Get(url), KRNetStatus_NotCreated);
  EXPECT_EQ(manager.calls, Calls{});
  EXPECT_EQ(Texts()[1], "***VYN: VCGetFileRequest returns 0");
  EXPECT_TRUE(AlarmIsSet());
}

TEST_F(VYNExchangeTest, LeavesTheFireAlarmAsItWas) {
  for (const KRFireAlarm alarm : {KRFireAlarm_None, static_cast<KRFireAlarm>(1)}) {
    KRSetFireAlarm(alarm);
    EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
    EXPECT_EQ(KRGetFireAlarm(), alarm);
  }
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST_F(VYNExchangeTest, TakesAnEmptyReplyFileAsNoReply) {
  manager.script.reply = "";
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(ReplySize(), -5);
  EXPECT_EQ(folder.Entries(), 0u);
}

TEST_F(VYNExchangeTest, KeepsTheHttpStatusWhenTheNextExchangeStarts) {
  EXPECT_EQ(State().known, 0);
  manager.script.result = 1513;
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_ClientError);
  manager.script = {};
  platform.PostQuit();
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(State().known, 1);
  EXPECT_EQ(State().http, 404u);
  EXPECT_EQ(State().error, 0u);
}

TEST_F(VYNExchangeTest, RefusesAServerByWhatTheCertificateDecisionSays) {
  AddRoot(4000);
  manager.script.chain = {{RootBytes()}, 4001, 0};
  EXPECT_EQ(Get("https://bank/"), KRNetStatus_Untrusted);
  manager.script.chain->rootID = 3000;
  EXPECT_EQ(Get("https://bank/"), KRNetStatus_Other);
  manager.script.chain->error = 1672;
  EXPECT_EQ(Get("https://bank/"), KRNetStatus_BadCertificate);
  manager.script.chain = {{RootBytes()}, 4000, 0};
  EXPECT_EQ(Get("https://bank/"), KRNetStatus_Success);
  request->AddExpectedSSLCertID("other", 5);
  EXPECT_EQ(Get("https://bank/"), KRNetStatus_UnexpectedCertificate);
  EXPECT_EQ(manager.answers, (std::vector<u16>{1670, 1671, 1672, 0, 1673}));
}

}  // namespace
