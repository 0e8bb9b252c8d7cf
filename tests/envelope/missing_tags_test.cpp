// The tags that the classes around the payloads name as missing, and the warnings of a parse about
// them.

#include <gtest/gtest.h>

#include "krofx/envelope/envelope.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/envelope/multi_trans.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

std::string Number(KRTagID tag) { return std::to_string(static_cast<u32>(tag)); }

// The warnings of a parse of a response file that checks for missing tags.
Lines MissingIn(const std::string& text) { return Parsed<KRFileRs>(text, 1, 1).Warnings(); }

TEST(MissingTags, NameTheSignOnOfAFileWithoutOne) {
  for (const u16 version : {u16{1}, u16{2}}) {
    const std::string set = "EMAILMSGSRSV" + std::to_string(version);
    const KRTagID tag = version == 2 ? KRTag_SIGNONMSGSRSV2 : KRTag_SIGNONMSGSRSV1;
    EXPECT_EQ(MissingIn(File(Aggregate(set, ResponseWrapper("MAILTRNRS", "")), version)),
              Lines{"MISSINGTAG " + Number(tag)});
  }
}

TEST(MissingTags, NameTheSignOnOfAnEmptySet) {
  EXPECT_EQ(MissingIn(File(Aggregate("SIGNONMSGSRSV1", ""))),
            Lines{"MISSINGTAG " + Number(KRTag_SONRS)});
}

TEST(MissingTags, NameWhatAWrapperLacks) {
  const auto in = [](const std::string& wrapper) {
    return MissingIn(ResponseFile("BANKMSGSRS", Aggregate("STMTTRNRS", wrapper)));
  };
  EXPECT_EQ(in(""), Lines{"MISSINGTAG " + Number(KRTag_TRNUID)});
  EXPECT_EQ(in("<TRNUID>1"), Lines{"MISSINGTAG " + Number(KRTag_STATUS)});
  EXPECT_EQ(in("<TRNUID>1" + GoodStatus()), Lines{"MISSINGTAG " + Number(KRTag_STMTRS)});
}

TEST(MissingTags, FollowEachOtherInAWrapper) {
  KRTransRs response;
  response.SetType(KRTag_STMTTRNRS);
  response.SetMsgSetVersion(1);
  KRTagID tag = response.GetFirstMissingRequiredTag(KRTag_None);
  EXPECT_EQ(tag, KRTag_TRNUID);
  tag = response.GetFirstMissingRequiredTag(tag);
  EXPECT_EQ(tag, KRTag_STATUS);
  EXPECT_EQ(response.GetFirstMissingRequiredTag(tag), KRTag_None);
  KRTransRq request;
  request.SetType(KRTag_STMTTRNRQ);
  request.SetMsgSetVersion(1);
  tag = request.GetFirstMissingRequiredTag(KRTag_None);
  EXPECT_EQ(tag, KRTag_TRNUID);
  EXPECT_EQ(request.GetFirstMissingRequiredTag(tag), KRTag_STMTRQ);
  EXPECT_EQ(request.GetFirstMissingRequiredTag(KRTag_CLTCOOKIE), KRTag_None);
}

TEST(MissingTags, NameWhatASynchronisationLacks) {
  KRSyncRq sync;
  sync.SetType(KRTag_MAILSYNCRQ);
  sync.SetMsgSetVersion(2);
  Lines missing;
  for (KRTagID tag = KRTag_None;
       (tag = sync.GetFirstMissingRequiredTag(tag)) != KRTag_None && missing.size() < 9;) {
    missing.push_back(Number(tag));
  }
  EXPECT_EQ(missing, (Lines{Number(KRTag_TOKEN2), Number(KRTag_REJECTIFMISSING),
                            Number(KRTag_INCIMAGES), Number(KRTag_USEHTML)}));
  sync.SetRefresh(u16{1});
  sync.SetRejectIfMissing(u16{0});
  sync.SetIncImages(u16{0});
  sync.SetUseHTML(u16{0});
  EXPECT_EQ(sync.AllRequiredPresent(), 1);
  EXPECT_EQ(sync.GetFirstMissingRequiredTag(KRTag_None), KRTag_None);
}

TEST(MissingTags, NameTheTransfersOfAMultipleWrapper) {
  KRMultiTransRq request;
  request.SetMsgSetVersion(2);
  EXPECT_EQ(request.GetFirstMissingRequiredTag(KRTag_None), KRTag_INTERRQ);
  KRMultiTransRs response;
  response.SetMsgSetVersion(2);
  EXPECT_EQ(response.GetFirstMissingRequiredTag(KRTag_None), KRTag_TRNUID);
  EXPECT_EQ(response.GetFirstMissingRequiredTag(KRTag_TRNUID), KRTag_INTERRS);
}

TEST(MissingTags, NameAHeaderThatIsNotThere) {
  const std::string body = Aggregate("OFX", SignOnResponseSet());
  const Lines warnings = Parsed<KRFileRs>("DATA:OFXSGML\r\n\r\n" + body).Warnings();
  ASSERT_FALSE(warnings.empty());
  EXPECT_EQ(warnings[0], "MISSINGTAG <OFXHEADER> " + Number(KRTag_OFXFILERS));
}

}  // namespace
}  // namespace krofx::testing
