// What a request does without a transport: results of the base class, the roots of the library, and
// `file:` URLs.

#include "krofx/transport/contract/net_request.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "krofx/security/internal/trusted_roots.h"
#include "support/buffers.h"
#include "support/failing_allocation.h"
#include "support/temp_folder.h"
#include "support/vtable_places.h"
#include "transport/probe_transport.h"

namespace {

// ---- Results of the base class ----

TEST(KRNetRequest, HasNoChoicesAndNoStatusOfItsOwn) {
  ProbeRequest request;
  EXPECT_EQ(request.SetSSLVerifyCert(1), 0);
  EXPECT_EQ(request.SetSaveHeaders(1), 0);
  EXPECT_EQ(request.SetTimeout(30), 0);
  EXPECT_EQ(request.Abort(), KRNetStatus_AbortNotSupported);
}

TEST(KRNetRequest, LeavesTheArgumentsOfWhatItCannotTell) {
  ProbeRequest request;
  u32 http = 1;
  u32 error = 2;
  EXPECT_EQ(request.GetStatus(http, error), 0);
  EXPECT_EQ(http, 1u);
  EXPECT_EQ(error, 2u);
  KRString name("Date");
  KRString value("kept");
  EXPECT_EQ(request.GetHeader(name, value), 0);
  EXPECT_STREQ(value, "kept");
}

TEST(KRNetRequest, SendsWithoutTheHeadersAndTheContentTypeThatItIsGiven) {
  ProbeRequest request;
  KRBuffer body(0, 0);
  char headers[] = "X-A: b\r\n";
  request.sendResult = KRNetStatus_TimedOut;
  EXPECT_EQ(request.SendPlusHeaders("one", &body, headers), KRNetStatus_TimedOut);
  EXPECT_EQ(request.sentBody, &body);
  EXPECT_EQ(request.SendPlusHeadersContent("two", nullptr, headers, "text/plain"),
            KRNetStatus_TimedOut);
  EXPECT_EQ(request.sentBody, nullptr);
  const std::vector<std::string> urls = {"one", "two"};
  EXPECT_EQ(request.sent, urls);
}

TEST(KRNetRequest, SendsWithAContentTypeThroughTheSendWithHeaders) {
  class Watching : public ProbeRequest {
   public:
    KRNetStatus SendPlusHeaders(const KRString&, KRBuffer*, char* headers) override {
      seen = headers;
      return KRNetStatus_Other;
    }
    char* seen = nullptr;
  };
  Watching request;
  char headers[] = "X-A: b\r\n";
  EXPECT_EQ(request.SendPlusHeadersContent("url", nullptr, headers, "text/plain"),
            KRNetStatus_Other);
  EXPECT_EQ(request.seen, headers);
}

// ---- Roots ----

using RootIDs = std::vector<s16>;

TEST(KRNetRequest, AddsTheBrandingRoot) {
  ProbeRequest request;
  EXPECT_EQ(request.AddNorvikBrandingRoot(), 1);
  EXPECT_EQ(request.RootIDs(), RootIDs{1000});
}

TEST(KRNetRequest, AddsTheReissuedServerRootBeforeTheFirst) {
  ProbeRequest request;
  EXPECT_EQ(request.AddRSAServerRoot(), 1);
  EXPECT_EQ(request.RootIDs(), (RootIDs{4001, 4000}));
}

TEST(KRNetRequest, AddsTheOfxRootBeforeItsIssuer) {
  ProbeRequest request;
  EXPECT_EQ(request.AddVeriSignOFXCARoot(), 1);
  EXPECT_EQ(request.RootIDs(), (RootIDs{2000, 3000}));
}

struct Refusal {
  s16 refused;
  u16 (KRNetRequest::*add)();
  RootIDs tried;
};

class RefusedRoot : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedRoot, EndsTheAdding) {
  ProbeRequest request;
  request.refusedRoot = GetParam().refused;
  EXPECT_EQ((request.*GetParam().add)(), 0);
  EXPECT_EQ(request.RootIDs(), GetParam().tried);
}

INSTANTIATE_TEST_SUITE_P(
    KRNetRequest, RefusedRoot,
    testing::Values(Refusal{1000, &KRNetRequest::AddNorvikBrandingRoot, {1000}},
                    Refusal{4001, &KRNetRequest::AddRSAServerRoot, {4001}},
                    Refusal{4000, &KRNetRequest::AddRSAServerRoot, {4001, 4000}},
                    Refusal{2000, &KRNetRequest::AddVeriSignOFXCARoot, {2000}},
                    Refusal{3000, &KRNetRequest::AddVeriSignOFXCARoot, {2000, 3000}}),
    [](const auto& test) { return std::to_string(test.param.refused); });

TEST(KRNetRequest, HandsTheBytesOfEachRootOn) {
  ProbeRequest request;
  request.AddNorvikBrandingRoot();
  request.AddRSAServerRoot();
  request.AddVeriSignOFXCARoot();
  const krofx::internal::TrustedRoot* const expected[] = {
      &krofx::internal::kNorvikBrandingRoot, &krofx::internal::kRSAServerRootReissue,
      &krofx::internal::kRSAServerRoot, &krofx::internal::kVeriSignOFXCARoot,
      &krofx::internal::kVeriSignClass3Root};
  ASSERT_EQ(request.roots.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(request.roots[i].ber, std::string(expected[i]->der, expected[i]->length)) << i;
    EXPECT_EQ(request.roots[i].id, expected[i]->id) << i;
  }
}

// ---- file: URLs ----

// The URL of a file with a whole name.
std::string UrlOf(std::string name) {
  std::replace(name.begin(), name.end(), '/', '\\');
  std::string url(name.size() + 8, '\0');
  KRNetRequest::ConvertLocalFileNameToFileURL(url.data(), name.c_str());
  return url.c_str();
}

class FileUrlRequest : public testing::Test {
 protected:
  void Get(const std::string& url) {
    ASSERT_EQ(request.Get(url.c_str()), KRNetStatus_Success) << url;
  }
  // Expects that no file opens.
  void ExpectNoReply() {
    u32 size = 42;
    EXPECT_EQ(request.GetReplySize(size), KRNetStatus_NoReplySize);
    EXPECT_EQ(size, 42u);
    KRBuffer target(0, 0);
    target += "kept";
    EXPECT_EQ(request.LoadReply(&target), KRNetStatus_ReplyNotLoaded);
    EXPECT_EQ(Content(target), "kept");
  }
  void ExpectReply(const std::string& content) {
    u32 size = 42;
    EXPECT_EQ(request.GetReplySize(size), KRNetStatus_Success);
    EXPECT_EQ(size, content.size());
    KRBuffer target(0, 0);
    EXPECT_EQ(request.LoadReply(&target), KRNetStatus_Success);
    EXPECT_EQ(Content(target), content);
  }

  TempFolder folder;
  ProbeRequest request;
};

TEST_F(FileUrlRequest, HasNoReplyBeforeAFileWasGot) { ExpectNoReply(); }

TEST_F(FileUrlRequest, FetchesNothingElse) {
  EXPECT_EQ(request.Get("http://127.0.0.1/ofx"), KRNetStatus_NotFileUrl);
  EXPECT_EQ(request.Get(""), KRNetStatus_NotFileUrl);
  ExpectNoReply();
}

TEST_F(FileUrlRequest, ReadsAFileByItsWholeName) {
  const std::string url = "file://" + folder.Put("reply.ofx", "OFXHEADER:100\n");
  ASSERT_EQ(url.substr(0, 8), "file:///");
  Get(url);
  ExpectReply("OFXHEADER:100\n");
}

TEST_F(FileUrlRequest, ReadsAFileUnderASchemeInCapitals) {
  Get("FILE://" + folder.Put("reply.ofx", "abc"));
  ExpectReply("abc");
}

TEST_F(FileUrlRequest, ReadsAFileByTheUrlThatTheConversionMade) {
  Get(UrlOf(folder.Put("reply.ofx", "abc")));
  ExpectReply("abc");
}

TEST_F(FileUrlRequest, ReadsARelativeNameInTheWorkingFolder) {
  folder.Put("reply.ofx", "abc");
  const WorkingFolder here(folder.Path());
  Get("file:/reply.ofx");
  ExpectReply("abc");
}

TEST_F(FileUrlRequest, ReadsEveryByteOfALargeFile) {
  std::string content(100000, '\0');
  for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i % 253);
  Get(UrlOf(folder.Put("reply", content)));
  ExpectReply(content);
}

TEST_F(FileUrlRequest, TouchesNoFileInGet) {
  Get(UrlOf(folder.Name("later")));
  ExpectNoReply();
  folder.Put("later", "abc");
  ExpectReply("abc");
}

TEST_F(FileUrlRequest, KeepsItsUrlWhenAnotherIsRefused) {
  Get(UrlOf(folder.Put("reply", "abc")));
  EXPECT_EQ(request.Get("https://127.0.0.1/"), KRNetStatus_NotFileUrl);
  ExpectReply("abc");
}

TEST_F(FileUrlRequest, KeepsItsUrlThroughASend) {
  Get(UrlOf(folder.Put("reply", "abc")));
  KRBuffer body(0, 0);
  request.Send("https://127.0.0.1/", &body);
  ExpectReply("abc");
}

TEST_F(FileUrlRequest, CopiesItsUrl) {
  Get(UrlOf(folder.Put("reply", "abc")));
  ProbeRequest copy(request);
  ProbeRequest assigned;
  assigned = request;
  Get(UrlOf(folder.Name("other")));
  for (ProbeRequest* each : {&copy, &assigned}) {
    u32 size = 0;
    EXPECT_EQ(each->GetReplySize(size), KRNetStatus_Success);
    EXPECT_EQ(size, 3u);
  }
}

TEST_F(FileUrlRequest, ReadsAnEmptyFileAsAnEmptyReply) {
  Get(UrlOf(folder.Put("reply", "")));
  ExpectReply("");
  KRBuffer target(0, 0);
  target += "what was there";
  EXPECT_EQ(request.LoadReply(&target), KRNetStatus_Success);
  EXPECT_EQ(target.GetBufferSize(), 0u);
}

TEST_F(FileUrlRequest, ReplacesWhatTheTargetHeldAndLeavesTheCursor) {
  Get(UrlOf(folder.Put("reply", "abcdef")));
  KRBuffer target(0, 0);
  target += "0123456789";
  target.SetBufferOffset(4);
  EXPECT_EQ(request.LoadReply(&target), KRNetStatus_Success);
  EXPECT_EQ(Content(target), "abcdef");
  EXPECT_EQ(target.GetBufferOffset(), 4u);
}

TEST_F(FileUrlRequest, OpensNeitherFoldersNorDevices) {
  Get(UrlOf(folder.Path().string()));
  ExpectNoReply();
  Get("file:///dev/zero");
  ExpectNoReply();
}

// A name may have 255 characters; a longer one counts as a file that does not open.
TEST_F(FileUrlRequest, RefusesANameThatIsTooLong) {
  const std::string name = folder.Put("reply", "abc");
  const auto padded = [&](std::size_t length) {
    return std::string(name).insert(name.rfind('/'), length - name.size(), '/');
  };
  Get("file://" + padded(255));
  ExpectReply("abc");
  Get("file://" + padded(256));
  ExpectNoReply();
}

TEST_F(FileUrlRequest, LoadsNothingIntoNothing) {
  Get(UrlOf(folder.Put("reply", "abc")));
  EXPECT_EQ(request.LoadReply(nullptr), KRNetStatus_ReplyNotLoaded);
}

TEST_F(FileUrlRequest, SaysWhenTheTargetCannotHoldTheReply) {
  Get(UrlOf(folder.Put("reply", std::string(1000, 'x'))));
  KRBuffer target(10, 10);
  {
    FailingAllocation failing(1, true);
    EXPECT_EQ(request.LoadReply(&target), KRNetStatus_NoMemory);
  }
  Get(UrlOf(folder.Put("reply", "")));
  EXPECT_EQ(request.LoadReply(&target), KRNetStatus_NoMemory) << "the target has no memory at all";
}

TEST_F(FileUrlRequest, SaysWhenTheUrlCannotBeStored) {
  const KRString url("file:///tmp/reply");
  {
    FailingAllocation failing(1);
    EXPECT_EQ(request.Get(url), KRNetStatus_NoMemory);
    EXPECT_TRUE(AlarmIsSet());
  }
  ExpectNoReply();
}

#ifdef KROFX_TESTS_KNOW_VTABLES
TEST(KRNetRequest, KeepsTheOrderOfItsOperations) {
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::AddTrustedRoot), 0);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::AddTrustedRootBER), 1);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::AddExpectedSSLCertID), 2);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::AddExpectedSSLCertName), 3);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::AddNorvikBrandingRoot), 4);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::AddRSAServerRoot), 5);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::AddVeriSignOFXCARoot), 6);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::SetSSLVerifyCert), 7);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::Get), 8);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::Send), 9);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::SendPlusHeaders), 10);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::SendPlusHeadersContent), 11);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::Abort), 12);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::GetReplySize), 13);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::LoadReply), 14);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::SetSaveHeaders), 15);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::GetHeader), 16);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::GetStatus), 17);
  EXPECT_EQ(VtablePlaceOf(&KRNetRequest::SetTimeout), 18);
}
#endif

}  // namespace
