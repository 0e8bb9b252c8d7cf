// What hosts of parsers were compiled against: the numbers of the enumerations, and the order of
// the virtual operations.

#include <gtest/gtest.h>

#include "krofx/core/tags.h"
#include "krofx/parse/engine.h"
#include "krofx/parse/simple_parser.h"
#include "support/vtable_places.h"

namespace {

TEST(ParseEnumerations, HaveTheirNumbers) {
  EXPECT_EQ(KrTagItemType_None, -1);
  EXPECT_EQ(KrTagItemType_StartTag, 0);
  EXPECT_EQ(KrTagItemType_EndTag, 1);
  EXPECT_EQ(KrTagItemType_Text, 2);
  EXPECT_EQ(KrTagItemType_CDATA, 3);
  EXPECT_EQ(KRMIMEType_Other, 0u);
  EXPECT_EQ(KRMIMEType_OFXRequest, 2u);
  EXPECT_EQ(KRMIMEType_OFXResponse, 3u);
  EXPECT_EQ(KRBoundStatus_None, 0u);
  EXPECT_EQ(KRBoundStatus_Boundary, 1u);
  EXPECT_EQ(KRBoundStatus_Closing, 2u);
}

TEST(ParseEnumerations, NameAFileByTheTagOfItsClass) {
  EXPECT_EQ(static_cast<u32>(KRMIMEType_OFXRequest), static_cast<u32>(KRTag_OFXFILERQ));
  EXPECT_EQ(static_cast<u32>(KRMIMEType_OFXResponse), static_cast<u32>(KRTag_OFXFILERS));
}

TEST(ParseItems, AreNoneAtFirst) {
  const KRParseEngine::KRTagItemInfo item;
  EXPECT_EQ(item.type, KrTagItemType_None);
  EXPECT_EQ(item.length, 0);
  EXPECT_EQ(item.start, 0);
  EXPECT_EQ(item.end, 0);
}

#ifdef KROFX_TESTS_KNOW_VTABLES
TEST(VtablePlaces, OfEnginesAndParsers) {
  EXPECT_EQ(VtablePlaceOf(&KRParseEngine::GetKRTag), 0);
  using S = KRSimpleParser;
  EXPECT_LT(VtablePlaceOf(&KRParser::IsValidTag), VtablePlaceOf(&S::GetObjectWithError));
  ExpectVtableOrder(VtablePlaceOf(&S::GetObjectWithError), &S::GetObjectWithError,
                    &S::SetParseTable, &S::SetParseEngine);
}
#endif

}  // namespace
