// Tags, header lines, blank lines and whole buffers.

#include <gtest/gtest.h>

#include "build/writing_root.h"
#include "krofx/core/string.h"
#include "krofx/core/tag_dictionary.h"
#include "support/failing_allocation.h"

using krofx::testing::Content;
using krofx::testing::Outcome;
using krofx::testing::Write;

namespace {

constexpr KRTagID kNoSuchTag = static_cast<KRTagID>(60000);

// Makes the protected operation for tags public.
class TagBuilder : public KRBuilder {
 public:
  using KRBuilder::AddTag;
  using KRBuilder::KRBuilder;
};

TEST(BuilderConstants, AreTheCharactersOfTheWireForm) {
  EXPECT_EQ(KRBuilder::KR_LEFT_BRACE, '<');
  EXPECT_EQ(KRBuilder::KR_RIGHT_BRACE, '>');
  EXPECT_EQ(KRBuilder::KR_END_MARKER, '/');
  EXPECT_STREQ(KRBuilder::KR_NEW_LINE, "\n");
  EXPECT_EQ(KRBuilder::KR_HEADER_SEP, ':');
  EXPECT_EQ(KRBuilder::KR_BOOLEAN_TRUE, 'Y');
  EXPECT_EQ(KRBuilder::KR_BOOLEAN_FALSE, 'N');
}

TEST(BuilderTags, WriteOneLineForStartAndEndAndNoneForAnElement) {
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddTagStart(KRTag_STATUS); }),
            (Outcome{KRBuildStatus_Done, "<STATUS>\n"}));
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddTagEnd(KRTag_STATUS); }),
            (Outcome{KRBuildStatus_Done, "</STATUS>\n"}));
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddTagElement(KRTag_CODE); }),
            (Outcome{KRBuildStatus_Done, "<CODE>"}));
}

TEST(BuilderTags, WritePrivateNamesWithTheirPoint) {
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddTagElement(KRTag_NORV_BID); }).text, "<NORV.BID>");
}

TEST(BuilderTags, RefuseAnIdThatIsNoTag) {
  for (KRTagID tag : {KRTag_None, kNoSuchTag}) {
    for (auto operation :
         {&KRBuilder::AddTagStart, &KRBuilder::AddTagEnd, &KRBuilder::AddTagElement}) {
      EXPECT_EQ(Write([&](KRBuilder& b) { return (b.*operation)(tag); }),
                (Outcome{KRBuildStatus_NullArgument, ""}));
    }
  }
}

TEST(BuilderTags, OutliveTheDictionary) {
  KRBuilder builder;
  KRTagDictionary::Destroy();
  EXPECT_EQ(Write(builder, [](KRBuilder& b) { return b.AddTagElement(KRTag_CODE); }).text,
            "<CODE>");
}

TEST(BuilderTags, CloseAtOnceWithCloseTags) {
  KRBuilder builder(KRBuildStringCrLfOpt_CRLF, 1);
  EXPECT_EQ(Write(builder, [](KRBuilder& b) { return b.AddTagStart(KRTag_STATUS); }).text,
            "<STATUS></STATUS>\n");
  EXPECT_EQ(Write(builder, [](KRBuilder& b) { return b.AddTagEnd(KRTag_STATUS); }).text,
            "</STATUS></STATUS>\n");
  EXPECT_EQ(Write(builder, [](KRBuilder& b) { return b.AddTagKRSLong(KRTag_CODE, 7); }).text,
            "<CODE></CODE>7\n");
}

TEST(BuilderTags, CloseAtOnceOnlyForExactlyOne) {
  KRBuilder builder(KRBuildStringCrLfOpt_CRLF, 2);
  EXPECT_EQ(Write(builder, [](KRBuilder& b) { return b.AddTagStart(KRTag_STATUS); }).text,
            "<STATUS>\n");
}

TEST(BuilderTags, TakeAnyTextOfADerivedBuilder) {
  TagBuilder builder;
  const std::string longText(70000, 'T');
  const auto write = [&](KRBuilder&) {
    EXPECT_EQ(builder.AddTag(KRTagType_Start, "OWN"), KRBuildStatus_Done);
    EXPECT_EQ(builder.AddTag(KRTagType_End, longText.c_str()), KRBuildStatus_Done);
    EXPECT_EQ(builder.AddTag(KRTagType_Element, ""), KRBuildStatus_Done);
    EXPECT_EQ(builder.AddTag(KRTagType_Element, nullptr), KRBuildStatus_NullArgument);
    return KRBuildStatus_Done;
  };
  EXPECT_EQ(Write(builder, write), (Outcome{KRBuildStatus_Done, "<OWN>\n</" + longText + ">\n<>"}));
}

TEST(BuilderTags, CloseALongTextAtOnceToo) {
  TagBuilder builder(KRBuildStringCrLfOpt_LF, 1);
  const std::string longText(300, 'T');
  EXPECT_EQ(
      Write(builder, [&](KRBuilder&) { return builder.AddTag(KRTagType_Start, longText.c_str()); })
          .text,
      "<" + longText + "></" + longText + ">\n");
}

TEST(BuilderHeaders, EndInCarriageReturnAndLineFeedByDefault) {
  const Outcome outcome = Write([](KRBuilder& b) {
    b.AddHeader(KRHeaderTag_OFXHEADER, KRString("100"));
    b.AddBlankLine();
    return b.AddTagStart(KRTag_OFX);
  });
  EXPECT_EQ(outcome.text, "OFXHEADER:100\r\n\r\n<OFX>\n");
}

TEST(BuilderHeaders, FollowTheLineEndOption) {
  const std::string ends[] = {"", "", "\r\n", "\n", "\r", "\r\n", "\n", "\r", ""};
  for (u32 option = 0; option < std::size(ends); ++option) {
    KRBuilder builder(static_cast<KRBuildStringCrLfOpt>(option), 0);
    EXPECT_EQ(Write(builder,
                    [](KRBuilder& b) {
                      b.AddHeader(KRHeaderTag_DATA, KRString("OFXSGML"));
                      return b.AddBlankLine();
                    })
                  .text,
              "DATA:OFXSGML" + ends[option] + ends[option])
        << option;
  }
}

TEST(BuilderHeaders, TakeALaterLineEndOption) {
  KRBuilder builder;
  builder.SetCRLFoption(KRBuildStringCrLfOpt_LF);
  EXPECT_EQ(Write(builder, [](KRBuilder& b) { return b.AddBlankLine(); }).text, "\n");
}

TEST(BuilderHeaders, WriteNothingForAnEmptyValue) {
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddHeader(KRHeaderTag_VERSION, KRString()); }),
            (Outcome{KRBuildStatus_Done, ""}));
}

TEST(BuilderHeaders, RefuseAHeaderWithoutName) {
  for (KRHeaderTag tag : {KRHeaderTag_None, static_cast<KRHeaderTag>(11)}) {
    EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddHeader(tag, KRString("1")); }),
              (Outcome{KRBuildStatus_NoTextForm, ""}));
  }
}

TEST(BuilderBuffers, AreAppendedWhole) {
  KRBuffer source(0, 0);
  source += "<CODE>0\n";
  source.SetBufferOffset(3);
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddBuffer(&source); }),
            (Outcome{KRBuildStatus_Done, "<CODE>0\n"}));
}

TEST(BuilderBuffers, MayBeEmpty) {
  KRBuffer source(0, 0);
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddBuffer(&source); }),
            (Outcome{KRBuildStatus_Done, ""}));
}

TEST(BuilderBuffers, AreRefusedWhenTheirContentWasLost) {
  KRBuffer source(4, 4);
  source += "abcd";
  {
    const FailingAllocation failing(1);
    source += 'e';
  }
  ASSERT_EQ(source.GetBufferPtr(), nullptr);
  EXPECT_EQ(Write([&](KRBuilder& b) { return b.AddBuffer(&source); }),
            (Outcome{KRBuildStatus_Fatal, ""}));
  EXPECT_FALSE(AlarmIsSet()) << "the status is the append's own";
}

TEST(BuilderBuffers, AreRefusedWhenNull) {
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddBuffer(nullptr); }).status,
            KRBuildStatus_NullArgument);
}

}  // namespace
