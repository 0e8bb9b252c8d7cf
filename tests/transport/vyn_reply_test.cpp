// The result of an exchange: the reply, which is loaded once, and the headers that are kept.

#include <filesystem>
#include <optional>
#include <string>

#include "support/failing_allocation.h"
#include "transport/vyn_fixture.h"

namespace {

class VYNReplyTest : public VYNTest {
 protected:
  void SetUp() override { Connect(); }

  /// Fetches a reply with the given text.
  void Fetch(const std::string& text) {
    manager.script.reply = text;
    ASSERT_EQ(Get("http://bank/"), KRNetStatus_Success);
  }
  /// Makes `text` the headers of one exchange, after those that are kept.
  void FetchHeaders(const std::string& text) {
    request->SetSaveHeaders(1);
    manager.script.headers = text;
    Fetch("reply");
  }
  /// The value of a header, if there is one.
  std::optional<std::string> Header(const char* name) {
    const KRString before("before");
    KRString key(name);
    KRString value(before);
    const u16 found = request->GetHeader(key, value);
    if (found == 1) return std::string(value);
    EXPECT_EQ(std::string(value), "before");
    return std::nullopt;
  }
};

// ---- Loading ----

TEST_F(VYNReplyTest, IsLoadedOnceAndItsFilesAreDeleted) {
  manager.script.headers = "Server: x\n";
  Fetch("the reply");
  EXPECT_EQ(folder.Entries(), 2u);
  KRBuffer target(0, 0);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_Success);
  EXPECT_EQ(Content(target), "the reply");
  EXPECT_EQ(folder.Entries(), 0u);
  KRBuffer second(0, 0);
  EXPECT_EQ(request->LoadReply(&second), KRNetStatus_ReplyNotLoaded);
  EXPECT_EQ(second.GetBufferSize(), 0u);
}

TEST_F(VYNReplyTest, IsNotThereBeforeAnExchange) {
  EXPECT_EQ(ReplySize(), -5);
  KRBuffer target(0, 0);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_ReplyNotLoaded);
  OpenRequest alone;
  EXPECT_EQ(alone.LoadReply(&target), KRNetStatus_ReplyNotLoaded);
}

TEST_F(VYNReplyTest, IsWholeAtAndAroundTheSizeOfAChunk) {
  for (const std::size_t size : {1u, 9999u, 10000u, 10001u, 20000u, 123457u}) {
    std::string text(size, '\0');
    for (std::size_t at = 0; at < size; ++at) text[at] = static_cast<char>(at * 31 % 251);
    Fetch(text);
    EXPECT_EQ(ReplySize(), static_cast<long>(size));
    KRBuffer target(0, 0);
    EXPECT_EQ(request->LoadReply(&target), KRNetStatus_Success) << size;
    EXPECT_EQ(Content(target), text) << size;
  }
}

TEST_F(VYNReplyTest, IsAppendedToWhatTheTargetHoldsWhichCountsAsAFailure) {
  Fetch("the reply");
  KRBuffer target(0, 0);
  Put(target, "before ");
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_ReplyNotLoaded);
  EXPECT_EQ(Content(target), "before the reply");
  EXPECT_EQ(folder.Entries(), 0u);
}

TEST_F(VYNReplyTest, IsNotLoadedWhenTheFileChangedItsSize) {
  Fetch("the reply");
  folder.Put("reply-1", "the reply, and more");
  KRBuffer target(0, 0);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_ReplyNotLoaded);
  EXPECT_EQ(Content(target), "the reply, and more");
}

TEST_F(VYNReplyTest, IsNotLoadedWhenTheFileIsGone) {
  Fetch("the reply");
  std::filesystem::remove(folder.Name("reply-1"));
  KRBuffer target(0, 0);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_ReplyNotLoaded);
  EXPECT_EQ(ReplySize(), 9);
}

TEST_F(VYNReplyTest, IsNotLoadedIntoNothing) {
  Fetch("the reply");
  EXPECT_EQ(request->LoadReply(nullptr), KRNetStatus_ReplyNotLoaded);
  KRBuffer target(0, 0);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_Success);
}

TEST_F(VYNReplyTest, StaysOnDiskWhenThereIsNoMemoryForAChunk) {
  Fetch("the reply");
  KRBuffer target(0, 0);
  {
    const FailingAllocation failing(1);
    EXPECT_EQ(request->LoadReply(&target), KRNetStatus_ReplyNotLoaded);
  }
  EXPECT_EQ(Lines().size(), 2u);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_Success);
}

TEST_F(VYNReplyTest, IsDeletedWhenNobodyLoadedItBeforeTheNextExchangeOrTheEnd) {
  manager.script.headers = "Server: x\n";
  Fetch("first");
  Fetch("second");
  EXPECT_FALSE(folder.Has("reply-1"));
  EXPECT_FALSE(folder.Has("header-1"));
  EXPECT_TRUE(folder.Has("reply-2"));
  request.reset();
  EXPECT_EQ(folder.Entries(), 0u);
}

TEST_F(VYNReplyTest, DeletesNoFileTwice) {
  Fetch("first");
  KRBuffer target(0, 0);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_Success);
  folder.Put("reply-1", "another's");
  request.reset();
  EXPECT_TRUE(folder.Has("reply-1"));
}

// ---- Headers ----

TEST_F(VYNReplyTest, KeepsHeadersOnlyWhenAskedWithOne) {
  EXPECT_EQ(request->SetSaveHeaders(2), 1);
  manager.script.headers = "Server: x\n";
  Fetch("reply");
  EXPECT_EQ(Header("Server"), std::nullopt);
  EXPECT_EQ(request->SetSaveHeaders(1), 1);
  Fetch("reply");
  EXPECT_EQ(Header("Server"), " x");
}

TEST_F(VYNReplyTest, LeavesTheFileOfHeadersUntilTheReplyIsLoaded) {
  FetchHeaders("Server: x\n");
  EXPECT_TRUE(folder.Has("header-1"));
  KRBuffer target(0, 0);
  EXPECT_EQ(request->LoadReply(&target), KRNetStatus_Success);
  EXPECT_FALSE(folder.Has("header-1"));
}

TEST_F(VYNReplyTest, GivesAHeaderByItsNameInLettersOfAnyCase) {
  FetchHeaders("Content-Type: application/x-ofx\r\nSet-Cookie:a=b:c\r\nEmpty:\nLast: end");
  EXPECT_EQ(Header("content-TYPE"), " application/x-ofx\r");
  EXPECT_EQ(Header("Set-Cookie"), "a=b:c\r");
  EXPECT_EQ(Header("Empty"), "");
  EXPECT_EQ(Header("Last"), " end");
  EXPECT_EQ(Header("Content"), std::nullopt);
  EXPECT_EQ(Header("Content-Type2"), std::nullopt);
  EXPECT_EQ(Header(" Content-Type"), std::nullopt);
  EXPECT_EQ(Header(""), std::nullopt);
}

TEST_F(VYNReplyTest, FindsHeadersBehindAStatusLine) {
  FetchHeaders("HTTP/1.1 200 OK\r\nDate: today\r\n\r\n");
  EXPECT_EQ(Header("Date"), " today\r");
  EXPECT_EQ(Header("HTTP/1.1 200 OK"), std::nullopt);
}

TEST_F(VYNReplyTest, FindsNothingBehindTheLastColonOrWithoutALineFeed) {
  FetchHeaders("a:1");
  EXPECT_EQ(Header("b"), std::nullopt);
  request->LoadHeaders();
  // The second file comes after the first, on the same line.
  EXPECT_EQ(Header("a"), "1a:1");
}

TEST_F(VYNReplyTest, FindsNothingWithoutSavedHeaders) {
  EXPECT_EQ(Header("Server"), std::nullopt);
  request->LoadHeaders();
  EXPECT_EQ(Header(""), std::nullopt);
}

TEST_F(VYNReplyTest, GivesTheFirstOfTwoHeadersOfOneName) {
  FetchHeaders("Set-Cookie: a\nSet-Cookie: b\n");
  EXPECT_EQ(Header("Set-Cookie"), " a");
}

TEST_F(VYNReplyTest, KeepsTheHeadersOfEarlierExchanges) {
  FetchHeaders("Server: first\n");
  FetchHeaders("Server: second\nDate: today\n");
  EXPECT_EQ(Header("Server"), " first");
  EXPECT_EQ(Header("Date"), " today");
}

TEST_F(VYNReplyTest, KeepsHeadersAlsoOfAnExchangeThatFailed) {
  request->SetSaveHeaders(1);
  manager.script.headers = "Retry-After: 120\n";
  manager.script.result = 1521;
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_Unavailable);
  EXPECT_EQ(Header("Retry-After"), " 120");
  EXPECT_EQ(folder.Entries(), 0u);
}

TEST_F(VYNReplyTest, KeepsLongHeadersWhole) {
  const std::string value(25000, 'v');
  FetchHeaders("Long:" + value + "\nNext: one\n");
  EXPECT_EQ(Header("Long"), value);
  EXPECT_EQ(Header("Next"), " one");
}

TEST_F(VYNReplyTest, GivesNoHeaderThatIsLongerThanATextMayBe) {
  const std::string longest(65534, 'v');
  FetchHeaders("Longest:" + longest + "\nLonger:" + longest + "v\nNext: one\n");
  EXPECT_EQ(Header("Longest"), longest);
  EXPECT_EQ(Header("Longer"), std::nullopt);
  EXPECT_EQ(Header("Next"), " one");
}

TEST_F(VYNReplyTest, LosesHeadersQuietlyWithoutMemory) {
  request->SetSaveHeaders(1);
  manager.script.headers = "Server: x\n";
  manager.script.reply = "reply";
  const KRString url("http://bank/");
  {
    const FailingAllocation failing(2);
    EXPECT_EQ(request->Get(url), KRNetStatus_Success);
  }
  EXPECT_EQ(Lines().size(), 2u);
  EXPECT_EQ(Header("Server"), std::nullopt);
  EXPECT_EQ(ReplySize(), 5);
}

}  // namespace
