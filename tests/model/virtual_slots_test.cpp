// The order of the virtual operations of data objects, arrays and parsers, which hosts derive from.

#include "support/virtual_slots.h"

#include <gtest/gtest.h>

#include "krofx/model/data_object.h"
#include "krofx/model/parser.h"
#include "krofx/model/value_arrays.h"

#ifdef KROFX_TESTS_KNOW_SLOTS

namespace {

TEST(VirtualSlots, OfDataObjects) {
  using O = KRDataObj;
  using ByText = KRParseStatus (O::*)(const KRTagDictionaryEntry*, const char*);
  using ByString = KRParseStatus (O::*)(const KRTagDictionaryEntry*, const KRString&);
  ExpectSlotsInOrder(
      2, &O::SetupForParsing, &O::HandleTagStart, static_cast<ByText>(&O::HandleTagElement),
      static_cast<ByString>(&O::HandleTagElement), &O::HandleTagEnd, &O::HandleHeader,
      &O::GetArrayOfValidTags, &O::GetArrayOfRequiredTags, &O::Build, &O::BuildObject,
      &O::PushAndSetObject, &O::ProcessResponse, &O::ProcessRequest, &O::AllRequiredPresent,
      &O::GetFirstMissingRequiredTag, &O::IsValidTag, &O::AnyValidPresent, &O::IsTagRequired,
      &O::OneValidPresent, &O::SetMsgSetVersion, &O::GetMsgSetVersion, &O::GetMsgSetVersionFromTag,
      &O::GetType, &O::SetType, &O::GetChild, &O::GetNumberOfChildren);
  EXPECT_GT(SlotOf(&KRTransBase::DeepCopyFrom), SlotOf(&O::GetNumberOfChildren));
}

TEST(VirtualSlots, OfParsers) {
  using P = KRParser;
  ExpectSlotsInOrder(0, &P::Parse, &P::PushObject, &P::PopObject, &P::SetValidTags, &P::IsValidTag);
}

TEST(VirtualSlots, OfTextArraysWithALimit) {
  using A = KRDynamicArrayStringLen;
  EXPECT_LT(SlotOf(&A::OkToAlloc), SlotOf(&A::Set));
  EXPECT_LT(SlotOf(&A::Set), SlotOf(&A::Append));
  EXPECT_LT(SlotOf(&A::Append), SlotOf(&A::SetVal));
  EXPECT_LT(SlotOf(&A::SetVal), SlotOf(&A::SetCopyVal));
  EXPECT_LT(SlotOf(&A::SetCopyVal), SlotOf(&A::SetCopy));
}

}  // namespace

#endif
