// The numbers of this layer's enumerations, which hosts compare and store.

#include <gtest/gtest.h>

#include <type_traits>

#include "krofx/core/status.h"
#include "krofx/core/string.h"
#include "krofx/core/tag_dictionary.h"
#include "krofx/core/tag_type.h"
#include "krofx/core/thread.h"

namespace {

TEST(Enumerations, OfParsingHaveTheirNumbers) {
  EXPECT_EQ(KRParseStatus_Accepted, 0u);
  EXPECT_EQ(KRParseStatus_PlainFile, 1u);
  EXPECT_EQ(KRParseStatus_Unused, 2u);
  EXPECT_EQ(KRParseStatus_Fatal, 3u);
  EXPECT_EQ(KRParseStatus_Invalid, 4u);
  EXPECT_EQ(KRParseStatus_EndTagMismatch, 5u);
  EXPECT_EQ(KRParseStatus_StackFull, 6u);
  EXPECT_EQ(KRParseStatus_Warnings, 7u);
}

TEST(Enumerations, OfBuildingHaveTheirNumbers) {
  EXPECT_EQ(KRBuildStatus_Done, 0u);
  EXPECT_EQ(KRBuildStatus_Fatal, 1u);
  EXPECT_EQ(KRBuildStatus_NoTextForm, 2u);
  EXPECT_EQ(KRBuildStatus_NullArgument, 3u);
  EXPECT_EQ(KRBuildStatus_EmptyText, 4u);
  EXPECT_EQ(KRBuildStatus_TooLong, 5u);
  EXPECT_EQ(KRBuildStatus_NoArrayWriter, 6u);
  EXPECT_EQ(KRBuildStatus_TreeNotAllowed, 7u);
  EXPECT_EQ(KRBuildStatus_NotValid, 8u);
  EXPECT_EQ(KRBuildStatus_MissingTag, 9u);
}

TEST(Enumerations, OfTagsAndTextsHaveTheirNumbers) {
  EXPECT_EQ(KRTag_None, 0u);
  EXPECT_EQ(KRTagType_Unreadable, -1);
  EXPECT_EQ(KRTagType_Start, 0);
  EXPECT_EQ(KRTagType_End, 1);
  EXPECT_EQ(KRTagType_Element, 2);
  EXPECT_EQ(KRTagType_EndOfInput, 3);
  EXPECT_EQ(KRCaseType_Exact, 0u);
  EXPECT_EQ(KRCaseType_IgnoreCase, 1u);
  EXPECT_EQ(KRStringEncode_Plain, 0u);
  EXPECT_EQ(KRStringEncode_CDATA, 1u);
  EXPECT_EQ(KRFireAlarm_None, 0u);
  EXPECT_EQ(KRFireAlarm_MemoryExhausted, 1u);
}

template <class... Enumerations>
constexpr bool kAllHave32Bits = ((sizeof(Enumerations) == 4) && ...);

TEST(Enumerations, AreConvertedToNumbersAndHave32Bits) {
  EXPECT_TRUE((kAllHave32Bits<KRParseStatus, KRBuildStatus, KRTagID, KRTagType, KRCaseType,
                              KRStringEncode, KRFireAlarm>));
  EXPECT_TRUE((std::is_convertible_v<KRParseStatus, int>));
}

}  // namespace
