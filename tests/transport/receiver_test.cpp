// Transports that do not leave this machine: the one that does nothing, and the exchange by hand.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "krofx/transport/local/local_access.h"
#include "krofx/transport/local/receiver_access.h"
#include "krofx/transport/local/receiver_request.h"
#include "support/buffers.h"
#include "support/failing_allocation.h"
#include "support/temp_folder.h"
#include "support/vtable_places.h"
#include "transport/probe_transport.h"

namespace {

// ---- LocalAccess ----

class PlainLocalAccess : public LocalAccess {
 public:
  KRNetRequest* NewNetRequest() override { return new ProbeRequest; }
};

TEST(LocalAccess, HasNoNetworkAndOpensNothing) {
  PlainLocalAccess access;
  EXPECT_EQ(access.CanDoNetworkSetup(), 0);
  EXPECT_EQ(access.IsNetworkSetup(), 0);
  EXPECT_EQ(access.DoNetworkSetup(), 0);
  EXPECT_EQ(access.InitConnection(), KRNetStatus_Success);
  EXPECT_EQ(access.EndConnection(), KRNetStatus_Success);
}

TEST(LocalAccess, TakesNoRequestBack) {
  PlainLocalAccess access;
  EXPECT_EQ(access.DeleteNetRequest(nullptr), KRNetStatus_Success);
}

TEST(LocalAccess, DestroysARequestWithWhatItsOwnClassHolds) {
  class Holding : public ProbeRequest {
   public:
    explicit Holding(bool& gone) : m_gone(gone), m_text(1000, 'x') {}
    ~Holding() override { m_gone = true; }

   private:
    bool& m_gone;
    std::string m_text;
  };
  PlainLocalAccess access;
  bool gone = false;
  KRNetRequest* request = new Holding(gone);
  ASSERT_EQ(request->Get("file:///a/name/that/needs/memory"), KRNetStatus_Success);
  EXPECT_EQ(access.DeleteNetRequest(request), KRNetStatus_Success);
  EXPECT_TRUE(gone);
}

// ---- Receiver ----

// Answers the prompt, and looks at the files at that moment.
class AnsweringRequest : public ReceiverRequest {
 public:
  explicit AnsweringRequest(const TempFolder& files) : m_folder(files) {}

  u16 answer = 1;
  std::string reply;
  std::vector<std::string> prompts;
  std::string sentAtPrompt;
  std::string namePadding;

 protected:
  void BuildFileSpec(const char* name, char* out) override {
    const std::string file = m_folder.Name("") + namePadding + name;
    ASSERT_LT(file.size(), 4096u);
    std::strcpy(out, file.c_str());
  }
  u16 YesNoMsg(const char* text) override {
    prompts.push_back(text);
    sentAtPrompt = m_folder.Get("SEND.DAT");
    if (!reply.empty()) m_folder.Put("RECV.DAT", reply);
    return answer;
  }

 private:
  const TempFolder& m_folder;
};

class ReceiverTest : public testing::Test {
 protected:
  void ExpectNoReply() {
    u32 size = 42;
    EXPECT_EQ(request.GetReplySize(size), KRNetStatus_NoReplySize);
    EXPECT_EQ(size, 42u);
    KRBuffer target(0, 0);
    EXPECT_EQ(request.LoadReply(&target), KRNetStatus_ReplyNotLoaded);
    EXPECT_EQ(target.GetBufferSize(), 0u);
  }

  TempFolder folder;
  AnsweringRequest request{folder};
};

TEST_F(ReceiverTest, MakesRequestsThatBelongToIt) {
  ReceiverAccess access;
  KRNetRequest* made = access.NewNetRequest();
  ASSERT_NE(dynamic_cast<ReceiverRequest*>(made), nullptr);
  EXPECT_EQ(access.DeleteNetRequest(made), KRNetStatus_Success);
}

TEST_F(ReceiverTest, MakesNoRequestWithoutMemory) {
  ReceiverAccess access;
  FailingAllocation failing(1);
  EXPECT_EQ(access.NewNetRequest(), nullptr);
}

TEST_F(ReceiverTest, TakesRootsAndExpectedCertificatesWithoutEffect) {
  EXPECT_EQ(request.AddTrustedRoot("x", 1, 1), 1);
  EXPECT_EQ(request.AddTrustedRootBER(nullptr, 0, 0), 1);
  EXPECT_EQ(request.AddExpectedSSLCertID("x", 1), 1);
  EXPECT_EQ(request.AddExpectedSSLCertName("name"), 1);
  EXPECT_EQ(request.AddNorvikBrandingRoot(), 1);
  EXPECT_EQ(request.AddRSAServerRoot(), 1);
  EXPECT_EQ(request.AddVeriSignOFXCARoot(), 1);
}

TEST_F(ReceiverTest, HasNoChoicesAndNoStatusOfItsOwn) {
  u32 http = 1;
  u32 error = 2;
  KRString name("Date");
  KRString value;
  EXPECT_EQ(request.SetSSLVerifyCert(1), 0);
  EXPECT_EQ(request.SetSaveHeaders(1), 0);
  EXPECT_EQ(request.SetTimeout(1), 0);
  EXPECT_EQ(request.Abort(), KRNetStatus_AbortNotSupported);
  EXPECT_EQ(request.GetHeader(name, value), 0);
  EXPECT_EQ(request.GetStatus(http, error), 0);
}

TEST_F(ReceiverTest, WritesTheRequestAndDeclinesWhenNobodyIsAsked) {
  const WorkingFolder here(folder.Path());
  ReceiverAccess access;
  KRNetRequest* const plain = access.NewNetRequest();
  folder.Put("SEND.DAT", "an older request, which was longer");
  folder.Put("RECV.DAT", "a reply");
  KRBuffer body(0, 0);
  for (const std::string content : {"the request", "another"}) {
    body.SetBufferOffset(0);
    Put(body, content);
    EXPECT_EQ(plain->Send("https://127.0.0.1/", &body), KRNetStatus_Failed);
    EXPECT_EQ(folder.Get("SEND.DAT"), content);
  }
  u32 size = 0;
  EXPECT_EQ(plain->GetReplySize(size), KRNetStatus_NoReplySize);
  access.DeleteNetRequest(plain);
}

TEST_F(ReceiverTest, AsksInTheseWordsOnceTheRequestIsWritten) {
  KRBuffer body(0, 0);
  Put(body, "the request");
  body.SetBufferOffset(3);
  request.reply = "the reply";
  EXPECT_EQ(request.Send("any", &body), KRNetStatus_Success);
  ASSERT_EQ(request.prompts.size(), 1u);
  EXPECT_EQ(request.prompts[0],
            "Go to the directory that contains KVW32.EXE. There you will find a SEND.DAT file "
            "containing your requests.\n\nIf you wish to continue, copy or create a RECV.DAT file "
            "and press YES.\nIf you wish to cancel, press NO.");
  EXPECT_EQ(request.sentAtPrompt, "the request");
}

TEST_F(ReceiverTest, LoadsTheReplyThatWasPutThere) {
  KRBuffer body(0, 0);
  Put(body, std::string(25000, 'q'));
  request.reply = std::string(30000, 'r') + "end";
  ASSERT_EQ(request.SendPlusHeadersContent("any", &body, nullptr, "text/plain"),
            KRNetStatus_Success);
  EXPECT_EQ(request.sentAtPrompt, std::string(25000, 'q'));
  u32 size = 0;
  EXPECT_EQ(request.GetReplySize(size), KRNetStatus_Success);
  EXPECT_EQ(size, 30003u);
  for (int time = 0; time < 2; ++time) {
    KRBuffer target(0, 0);
    EXPECT_EQ(request.LoadReply(&target), KRNetStatus_Success);
    EXPECT_EQ(Content(target), request.reply);
  }
  EXPECT_TRUE(folder.Has("RECV.DAT"));
}

TEST_F(ReceiverTest, DeclinesWhenThePersonSaysNo) {
  KRBuffer body(0, 0);
  Put(body, "the request");
  request.answer = 0;
  request.reply = "the reply";
  EXPECT_EQ(request.Send("any", &body), KRNetStatus_Failed);
  ExpectNoReply();
}

TEST_F(ReceiverTest, TakesAnyAnswerButNoForYes) {
  KRBuffer body(0, 0);
  request.answer = 6;
  EXPECT_EQ(request.Send("any", &body), KRNetStatus_Success);
  EXPECT_EQ(folder.Get("SEND.DAT"), "") << "an empty request is an empty file";
}

TEST_F(ReceiverTest, GivesWhatTheGetOfADerivedClassGives) {
  class OwnGet : public AnsweringRequest {
   public:
    using AnsweringRequest::AnsweringRequest;
    KRNetStatus Get(const KRString& url) override {
      seen = std::string(url);
      return KRNetStatus_Other;
    }
    std::string seen;
  };
  OwnGet own(folder);
  KRBuffer body(0, 0);
  EXPECT_EQ(own.Send("the url", &body), KRNetStatus_Other);
  EXPECT_EQ(own.seen, "the url");
}

TEST_F(ReceiverTest, AsksNobodyWhenTheRequestCannotBeWritten) {
  KRBuffer body(0, 0);
  Put(body, "the request");
  request.namePadding = "missing/";
  EXPECT_EQ(request.Send("any", &body), KRNetStatus_Failed);
  request.namePadding = "";
  EXPECT_EQ(request.Send("any", nullptr), KRNetStatus_Failed);
  const KRString url("any");
  FailingAllocation failing(1);
  EXPECT_EQ(request.Send(url, &body), KRNetStatus_Failed);
  EXPECT_TRUE(request.prompts.empty());
  EXPECT_EQ(folder.Entries(), 0u);
}

TEST_F(ReceiverTest, GetsAMissingReplyWithoutComplaint) {
  EXPECT_EQ(request.Get("any"), KRNetStatus_Success);
  ExpectNoReply();
}

TEST_F(ReceiverTest, IgnoresTheUrlOfAGet) {
  folder.Put("RECV.DAT", "abc");
  const std::string other = "file://" + folder.Put("other", "another reply");
  for (const std::string& url : {other, std::string(), std::string("https://127.0.0.1/")}) {
    EXPECT_EQ(request.Get(url.c_str()), KRNetStatus_Success);
    u32 size = 0;
    EXPECT_EQ(request.GetReplySize(size), KRNetStatus_Success);
    EXPECT_EQ(size, 3u);
  }
}

TEST_F(ReceiverTest, CountsAnEmptyReplyAsNone) {
  folder.Put("RECV.DAT", "");
  EXPECT_EQ(request.Get("any"), KRNetStatus_Success);
  ExpectNoReply();
}

TEST_F(ReceiverTest, RefusesATargetThatHoldsSomething) {
  folder.Put("RECV.DAT", "abc");
  request.Get("any");
  KRBuffer target(0, 0);
  target += "x";
  EXPECT_EQ(request.LoadReply(&target), KRNetStatus_ReplyNotLoaded);
  EXPECT_EQ(Content(target), "xabc");
  EXPECT_EQ(request.LoadReply(nullptr), KRNetStatus_ReplyNotLoaded);
}

TEST_F(ReceiverTest, KeepsTheSizeOfAnEarlierReplyWhenALaterOneIsMissing) {
  folder.Put("RECV.DAT", "abc");
  request.Get("any");
  std::filesystem::remove(folder.Name("RECV.DAT"));
  EXPECT_EQ(request.Get("any"), KRNetStatus_Success);
  u32 size = 0;
  EXPECT_EQ(request.GetReplySize(size), KRNetStatus_Success);
  EXPECT_EQ(size, 3u);
  KRBuffer target(0, 0);
  EXPECT_EQ(request.LoadReply(&target), KRNetStatus_ReplyNotLoaded);
}

TEST_F(ReceiverTest, RefusesAReplyWhoseSizeChanged) {
  folder.Put("RECV.DAT", "abc");
  request.Get("any");
  folder.Put("RECV.DAT", "abcd");
  KRBuffer target(0, 0);
  EXPECT_EQ(request.LoadReply(&target), KRNetStatus_ReplyNotLoaded);
}

TEST_F(ReceiverTest, LoadsNothingWithoutMemory) {
  folder.Put("RECV.DAT", std::string(20000, 'x'));
  request.Get("any");
  for (std::size_t nth = 1; nth <= 2; ++nth) {
    KRBuffer target(100, 100);
    FailingAllocation failing(nth);
    EXPECT_EQ(request.LoadReply(&target), KRNetStatus_ReplyNotLoaded) << nth;
  }
}

TEST_F(ReceiverTest, FindsNoReplyUnderANameThatIsTooLong) {
  folder.Put("RECV.DAT", "abc");
  const std::size_t plain = folder.Name("RECV.DAT").size();
  request.namePadding = std::string(1024 - plain, '/');
  EXPECT_EQ(request.Get("any"), KRNetStatus_Success);
  ExpectNoReply();
  request.namePadding.pop_back();
  request.Get("any");
  u32 size = 0;
  EXPECT_EQ(request.GetReplySize(size), KRNetStatus_Success);
}

TEST_F(ReceiverTest, LogsNothing) {
  static int calls = 0;
  ReceiverAccess access;
  access.SetLogCallback([](const char*, u16, const char*) { ++calls; });
  access.SetSessionCallback([](KROpCode, void*, void*) { ++calls; });
  request.SetAccess(&access);
  KRBuffer body(0, 0);
  request.reply = "abc";
  request.Send("any", &body);
  KRBuffer target(0, 0);
  request.LoadReply(&target);
  EXPECT_EQ(calls, 0);
}

#ifdef KROFX_TESTS_KNOW_VTABLES
TEST_F(ReceiverTest, AddsItsOperationsBehindThoseOfEveryRequest) {
  class Open : public ReceiverRequest {
   public:
    using ReceiverRequest::BuildFileSpec;
    using ReceiverRequest::YesNoMsg;
  };
  const std::ptrdiff_t first = VtablePlaceOf(&ReceiverRequest::SetAccess);
  EXPECT_GT(first, VtablePlaceOf(&KRNetRequest::SetTimeout));
  EXPECT_EQ(VtablePlaceOf(&Open::BuildFileSpec), first + 1);
  EXPECT_EQ(VtablePlaceOf(&Open::YesNoMsg), first + 2);
}
#endif

}  // namespace
