// The order of the builder's virtual operations, which hosts override.

#include "support/vtable_places.h"

#include <gtest/gtest.h>

#include "krofx/build/builder.h"

#ifdef KROFX_TESTS_KNOW_VTABLES

namespace {

// Makes the protected operation public.
class B : public KRBuilder {
 public:
  using KRBuilder::AddPrecisionInteger;
};

template <class... Parameters>
using Operation = KRBuildStatus (KRBuilder::*)(Parameters...);
using Number = Operation<u16>;
using Padded = Operation<u16, char, u16>;
using Text = Operation<const KRString&, KRBuildStringMacroOpt, KRBuildStringCrLfOpt>;
using TextByPointer = Operation<const KRString*, KRBuildStringMacroOpt, KRBuildStringCrLfOpt>;
using TaggedNumber = Operation<KRTagID, u16>;
using TaggedPadded = Operation<KRTagID, u16, char, u16>;
using TaggedText = Operation<KRTagID, const KRString&>;
using TaggedTextByPointer = Operation<KRTagID, const KRString*>;

TEST(VtablePlaces, OfBuilders) {
  ExpectVtableOrder(
      2, &B::Build, &B::AddTagStart, &B::AddTagEnd, &B::AddTagElement, &B::AddHeader,
      &B::AddBlankLine, &B::AddKRSShort, static_cast<Padded>(&B::AddKRUShort),
      static_cast<Number>(&B::AddKRUShort), &B::AddKRSLong, &B::AddKRULong, &B::AddKRChar,
      &B::AddKRBoolean, static_cast<Text>(&B::AddString), static_cast<TextByPointer>(&B::AddString),
      &B::AddAmount, &B::AddDateTime, &B::AddTime, &B::AddQuantity, &B::AddUnitPrice, &B::AddRate,
      &B::AddBankTxType, &B::AddBankAction, &B::AddProcCode, &B::AddDayOfWeek, &B::AddClientRouting,
      &B::AddOFXSecurity, &B::AddSyncMode, &B::AddCharacterType, &B::AddBankAccountType,
      &B::AddServerID, &B::AddLanguage, &B::AddService, &B::AddService2, &B::AddServiceStatus,
      &B::AddServiceStatus2, &B::AddTagKRDayOfWeek, &B::AddTagKRProcCode, &B::AddTagKRFrequency,
      &B::AddTagKRServerID, &B::AddTagKRLanguage, &B::AddBuyType, &B::AddCallType, &B::AddDuration,
      &B::AddDebtClass, &B::AddDebtType, &B::AddIncomeType, &B::AddInvAcctType, &B::AddMFType,
      &B::AddOptAction, &B::AddOptBuyType, &B::AddFidelityOptBuyType, &B::AddSellReason,
      &B::AddOptSellType, &B::AddFidelityOptSellType, &B::AddOptType, &B::AddPosType,
      &B::AddRelType, &B::AddRestriction, &B::AddSecured, &B::AddSellType, &B::AddStockType,
      &B::AddSubAcct, &B::AddTferAction, &B::AddUnitType, &B::AddUSProductType, &B::AddBalType,
      &B::AddAssetClass, &B::AddCouponFreq, &B::AddPayeeID, &B::AddPayeeIDScope,
      &B::AddTagKRBoolean, static_cast<TaggedPadded>(&B::AddTagKRUShort),
      static_cast<TaggedNumber>(&B::AddTagKRUShort), &B::AddTagKRSShort, &B::AddTagKRULong,
      &B::AddTagKRSLong, static_cast<TaggedText>(&B::AddTagKRString),
      static_cast<TaggedTextByPointer>(&B::AddTagKRString), &B::AddTagKRAmount,
      &B::AddTagKRDateTime, &B::AddTagKRTime, &B::AddTagKRQuantity, &B::AddTagKRUnitPrice,
      &B::AddTagKRRate, &B::AddTagKRInvAcctType, &B::AddTagKRDebtType, &B::AddTagKRDebtClass,
      &B::AddTagKRCallType, &B::AddTagKRMFType, &B::AddTagKROptType, &B::AddTagKRStockType,
      &B::AddTagKRBuyType, &B::AddTagKRIncomeType, &B::AddTagKROptAction, &B::AddTagKROptBuyType,
      &B::AddTagKROptSellType, &B::AddTagKRPosType, &B::AddTagKRRelType, &B::AddTagKRSecured,
      &B::AddTagKRSellReason, &B::AddTagKRSellType, &B::AddTagKRSubAcct, &B::AddTagKRTferAction,
      &B::AddTagKRUnitType, &B::AddTagKRDuration, &B::AddTagKRRestriction, &B::AddTagKRBalType,
      &B::AddTagKRAssetClass, &B::AddTagKRCouponFreq, &B::AddTagKRPayeeID, &B::GetBuffer,
      &B::AddBuffer, &B::AddPrecisionInteger);
}

}  // namespace

#endif
