// The table of tags: its ids, its blocks, its texts.

#include "krofx/core/tags.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <set>
#include <string>

#include "all_tags.h"
#include "krofx/core/tag_dictionary.h"

namespace {

const char* TextAt(u32 id) { return GetKRTagDictionary()[id - 1].text; }

TEST(Tags, AreAsManyAsTheirLastIdSays) { EXPECT_EQ(NumberOfKRDictionaryEntry(), 1187); }

TEST(Tags, StandInIdOrderFromOneWithoutAHole) {
  for (u32 i = 0; i < NumberOfKRDictionaryEntry(); ++i) {
    EXPECT_EQ(GetKRTagDictionary()[i].tagID, i + 1);
  }
}

TEST(Tags, AreAllDifferent) {
  std::set<std::string> texts;
  for (u32 i = 0; i < NumberOfKRDictionaryEntry(); ++i) {
    EXPECT_TRUE(texts.insert(GetKRTagDictionary()[i].text).second) << GetKRTagDictionary()[i].text;
  }
}

TEST(Tags, AreCapitalsDigitsAndPoints) {
  for (u32 i = 0; i < NumberOfKRDictionaryEntry(); ++i) {
    const char* text = GetKRTagDictionary()[i].text;
    EXPECT_GT(std::strlen(text), 0U);
    EXPECT_EQ(std::strspn(text, "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789."), std::strlen(text))
        << text;
  }
}

TEST(Tags, AreThoseOfTheListInItsOrder) {
  ASSERT_EQ(NumberOfKRDictionaryEntry(), std::size(kAllTags));
  for (u32 id = 1; id <= std::size(kAllTags); ++id) EXPECT_STREQ(TextAt(id), kAllTags[id - 1]);
}

struct Spot {
  u32 id;
  KRTagID tag;
  const char* text;
};

class TagsAt : public testing::TestWithParam<Spot> {};

TEST_P(TagsAt, HaveTheirIdAndText) {
  EXPECT_EQ(GetParam().tag, GetParam().id);
  EXPECT_STREQ(TextAt(GetParam().id), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    SignOnProfileMimeAndFileLayer, TagsAt,
    testing::Values(Spot{1, KRTag_MIME, "MIME"}, Spot{2, KRTag_OFXFILERQ, "OFXFILERQ"},
                    Spot{3, KRTag_OFXFILERS, "OFXFILERS"}, Spot{69, KRTag_OFX, "OFX"},
                    Spot{110, KRTag_SONRQ, "SONRQ"}, Spot{127, KRTag_TRNUID, "TRNUID"},
                    Spot{136, KRTag_USERPASS, "USERPASS"},
                    Spot{137, KRTag_ONETIMEPASS, "ONETIMEPASS"}, Spot{138, KRTag_VER, "VER"}));
INSTANTIATE_TEST_SUITE_P(PrivateTagsOfThatLayer, TagsAt,
                         testing::Values(Spot{139, KRTag_NORV_BROKERID, "NORV.BROKERID"},
                                         Spot{150, KRTag_NORV_TYPE1CERTID, "NORV.TYPE1CERTID"}));
INSTANTIATE_TEST_SUITE_P(
    OtherMessageSets, TagsAt,
    testing::Values(Spot{151, KRTag_ACCRDINT, "ACCRDINT"}, Spot{152, KRTag_ACCTID, "ACCTID"},
                    Spot{751, KRTag_YIELDTOMAT, "YIELDTOMAT"},
                    Spot{752, KRTag_FIDELITY_OPTBUYTYPE, "FIDELITY.OPTBUYTYPE"},
                    Spot{753, KRTag_FIDELITY_OPTSELLTYPE, "FIDELITY.OPTSELLTYPE"}));
INSTANTIATE_TEST_SUITE_P(ServiceExtensions, TagsAt,
                         testing::Values(Spot{754, KRTag_NORV_BEGINDT, "NORV.BEGINDT"},
                                         Spot{921, KRTag_NORV_VERSION, "NORV.VERSION"}));
INSTANTIATE_TEST_SUITE_P(Payroll, TagsAt,
                         testing::Values(Spot{922, KRTag_N_ACCRUALPD, "N.ACCRUALPD"},
                                         Spot{1182, KRTag_N_Q4TAXLIABAMT, "N.Q4TAXLIABAMT"}));
INSTANTIATE_TEST_SUITE_P(AddedLast, TagsAt,
                         testing::Values(Spot{1183, KRTag_NORV_BID, "NORV.BID"},
                                         Spot{1187, KRTag_NORV_DFLTDAYSWITH, "NORV.DFLTDAYSWITH"}));

}  // namespace
