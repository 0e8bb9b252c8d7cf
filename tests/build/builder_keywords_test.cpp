// Keywords: every operation, every value, and the three ways in which they are written.

#include <gtest/gtest.h>

#include "build/writing_root.h"
#include "krofx/values/internal/keyword_table.h"
#include "krofx/values/keywords.h"

using krofx::internal::KeywordTraits;
using krofx::testing::Outcome;
using krofx::testing::Write;

namespace {

template <class E>
using ValueOperation = KRBuildStatus (KRBuilder::*)(E);
template <class E>
using TagOperation = KRBuildStatus (KRBuilder::*)(KRTagID, E);

// Counts the calls of the operations for strings and tags, which a host's own builder may override.
class WatchingBuilder : public KRBuilder {
 public:
  using KRBuilder::AddString;
  KRBuildStatus AddString(const KRString& text, KRBuildStringMacroOpt macroOption,
                          KRBuildStringCrLfOpt lineOption) override {
    ++strings;
    macros = macroOption;
    return KRBuilder::AddString(text, macroOption, lineOption);
  }
  KRBuildStatus AddTagElement(KRTagID tag) override {
    ++tags;
    return KRBuilder::AddTagElement(tag);
  }
  KRBuildStatus AddBuyType(KRBuyType value) override {
    ++buyTypes;
    return KRBuilder::AddBuyType(value);
  }

  int strings = 0;
  int tags = 0;
  int buyTypes = 0;
  KRBuildStringMacroOpt macros = KRBuildStringMacroOpt_AsIs;
};

// Values without a keyword.
template <class E>
std::initializer_list<E> Beyond() {
  static const auto values = {static_cast<E>(KeywordTraits<E>::kCount), static_cast<E>(0x7fffffff)};
  return values;
}

template <class E>
void ExpectKeywords(ValueOperation<E> operation, int strings, KRBuildStringMacroOpt macros) {
  for (u16 value = 0; value < KeywordTraits<E>::kCount; ++value) {
    const std::string keyword(KeywordTraits<E>::kTexts[value]);
    WatchingBuilder builder;
    EXPECT_EQ(Write(builder, [&](KRBuilder& b) { return (b.*operation)(static_cast<E>(value)); }),
              (Outcome{KRBuildStatus_Done, keyword + "\n"}));
    EXPECT_EQ(builder.strings, strings) << keyword;
    EXPECT_EQ(builder.macros, macros) << keyword;
  }
}

template <class E>
void ExpectRefusal(ValueOperation<E> operation) {
  for (E value : Beyond<E>()) {
    EXPECT_EQ(Write([&](KRBuilder& b) { return (b.*operation)(value); }),
              (Outcome{KRBuildStatus_NoTextForm, ""}));
  }
}

template <class... E>
void ExpectStraight(ValueOperation<E>... operations) {
  (ExpectKeywords<E>(operations, 0, KRBuildStringMacroOpt_AsIs), ...);
  (ExpectRefusal<E>(operations), ...);
}

template <class... E>
void ExpectThroughAddString(ValueOperation<E>... operations) {
  (ExpectKeywords<E>(operations, 1, KRBuildStringMacroOpt_AsIs), ...);
  (ExpectRefusal<E>(operations), ...);
}

template <class E>
void ExpectTagged(TagOperation<E> operation) {
  for (u16 value = 0; value < KeywordTraits<E>::kCount; ++value) {
    const std::string keyword(KeywordTraits<E>::kTexts[value]);
    WatchingBuilder builder;
    EXPECT_EQ(
        Write(builder,
              [&](KRBuilder& b) { return (b.*operation)(KRTag_CODE, static_cast<E>(value)); }),
        (Outcome{KRBuildStatus_Done, "<CODE>" + keyword + "\n"}));
    EXPECT_EQ(builder.tags, 1);
  }
  EXPECT_EQ(Write([&](KRBuilder& b) { return (b.*operation)(KRTag_None, static_cast<E>(0)); }),
            (Outcome{KRBuildStatus_NullArgument, ""}));
}

template <class E>
void ExpectTagWithoutKeyword(TagOperation<E> operation, const std::string& text) {
  for (E value : Beyond<E>()) {
    EXPECT_EQ(Write([&](KRBuilder& b) { return (b.*operation)(KRTag_CODE, value); }),
              (Outcome{KRBuildStatus_NoTextForm, text}));
  }
}

template <class... E>
void ExpectTagAndValue(TagOperation<E>... operations) {
  (ExpectTagged<E>(operations), ...);
  (ExpectTagWithoutKeyword<E>(operations, "<CODE>"), ...);
}

TEST(BuilderKeywords, GoStraightIntoTheBuffer) {
  using B = KRBuilder;
  ExpectStraight(&B::AddBankTxType, &B::AddBankAction, &B::AddProcCode, &B::AddDayOfWeek,
                 &B::AddClientRouting, &B::AddOFXSecurity, &B::AddSyncMode, &B::AddBankAccountType,
                 &B::AddService, &B::AddService2, &B::AddServiceStatus, &B::AddServiceStatus2);
}

TEST(BuilderKeywords, GoThroughAddStringUnescaped) {
  using B = KRBuilder;
  ExpectThroughAddString(
      &B::AddCharacterType, &B::AddPayeeIDScope, &B::AddBuyType, &B::AddCallType, &B::AddDuration,
      &B::AddDebtClass, &B::AddDebtType, &B::AddIncomeType, &B::AddInvAcctType, &B::AddMFType,
      &B::AddOptAction, &B::AddOptBuyType, &B::AddSellReason, &B::AddOptSellType, &B::AddOptType,
      &B::AddPosType, &B::AddRelType, &B::AddRestriction, &B::AddSecured, &B::AddSellType,
      &B::AddStockType, &B::AddSubAcct, &B::AddTferAction, &B::AddUnitType, &B::AddUSProductType,
      &B::AddBalType, &B::AddAssetClass, &B::AddCouponFreq);
}

TEST(BuilderKeywords, OfAnotherPartyNeverFail) {
  ExpectKeywords<KRFidelityOptBuyType>(&KRBuilder::AddFidelityOptBuyType, 1,
                                       KRBuildStringMacroOpt_Escape);
  ExpectKeywords<KRFidelityOptSellType>(&KRBuilder::AddFidelityOptSellType, 1,
                                        KRBuildStringMacroOpt_Escape);
  const Outcome empty{KRBuildStatus_Done, "\n"};
  EXPECT_EQ(Write([](KRBuilder& b) {
              return b.AddFidelityOptBuyType(static_cast<KRFidelityOptBuyType>(1));
            }),
            empty);
  EXPECT_EQ(Write([](KRBuilder& b) {
              return b.AddFidelityOptSellType(static_cast<KRFidelityOptSellType>(1));
            }),
            empty);
  KRBuilder unused;
  EXPECT_EQ(unused.AddFidelityOptBuyType(KRFidelityOptBuyType_BUY), KRBuildStatus_Done);
}

TEST(BuilderKeywordElements, AreTheTagAndTheKeyword) {
  using B = KRBuilder;
  ExpectTagAndValue(
      &B::AddTagKRDayOfWeek, &B::AddTagKRProcCode, &B::AddTagKRInvAcctType, &B::AddTagKRDebtType,
      &B::AddTagKRDebtClass, &B::AddTagKRCallType, &B::AddTagKRMFType, &B::AddTagKROptType,
      &B::AddTagKRStockType, &B::AddTagKRBuyType, &B::AddTagKRIncomeType, &B::AddTagKROptAction,
      &B::AddTagKROptBuyType, &B::AddTagKROptSellType, &B::AddTagKRPosType, &B::AddTagKRRelType,
      &B::AddTagKRSecured, &B::AddTagKRSellReason, &B::AddTagKRSellType, &B::AddTagKRSubAcct,
      &B::AddTagKRTferAction, &B::AddTagKRUnitType, &B::AddTagKRDuration, &B::AddTagKRRestriction,
      &B::AddTagKRBalType, &B::AddTagKRAssetClass, &B::AddTagKRCouponFreq);
}

TEST(BuilderKeywordElements, OfAFrequencyWriteNoTagWithoutKeyword) {
  ExpectTagged<KRFrequency>(&KRBuilder::AddTagKRFrequency);
  ExpectTagWithoutKeyword<KRFrequency>(&KRBuilder::AddTagKRFrequency, "");
}

TEST(BuilderKeywordElements, ReachAnOverriddenValueOperation) {
  WatchingBuilder builder;
  EXPECT_EQ(
      Write(builder,
            [](KRBuilder& b) { return b.AddTagKRBuyType(KRTag_BUYTYPE, KRBuyType_BUYTOCOVER); })
          .text,
      "<BUYTYPE>BUYTOCOVER\n");
  EXPECT_EQ(builder.buyTypes, 1);
}

}  // namespace
