// The order of the virtual operations of data objects, arrays and parsers, which hosts derive from.

#include "support/vtable_places.h"

#include <gtest/gtest.h>

#include "krofx/model/data_object.h"
#include "krofx/model/parser.h"
#include "krofx/model/value_arrays.h"

#ifdef KROFX_TESTS_KNOW_VTABLES

namespace {

TEST(VtablePlaces, OfDataObjects) {
  using O = KRDataObj;
  using ByText = KRParseStatus (O::*)(const KRTagDictionaryEntry*, const char*);
  using ByString = KRParseStatus (O::*)(const KRTagDictionaryEntry*, const KRString&);
  ExpectVtableOrder(
      2, &O::SetupForParsing, &O::HandleTagStart, static_cast<ByText>(&O::HandleTagElement),
      static_cast<ByString>(&O::HandleTagElement), &O::HandleTagEnd, &O::HandleHeader,
      &O::GetArrayOfValidTags, &O::GetArrayOfRequiredTags, &O::Build, &O::BuildObject,
      &O::PushAndSetObject, &O::ProcessResponse, &O::ProcessRequest, &O::AllRequiredPresent,
      &O::GetFirstMissingRequiredTag, &O::IsValidTag, &O::AnyValidPresent, &O::IsTagRequired,
      &O::OneValidPresent, &O::SetMsgSetVersion, &O::GetMsgSetVersion, &O::GetMsgSetVersionFromTag,
      &O::GetType, &O::SetType, &O::GetChild, &O::GetNumberOfChildren);
  EXPECT_GT(VtablePlaceOf(&KRTransBase::DeepCopyFrom), VtablePlaceOf(&O::GetNumberOfChildren));
}

TEST(VtablePlaces, OfParsers) {
  using P = KRParser;
  ExpectVtableOrder(0, &P::Parse, &P::PushObject, &P::PopObject, &P::SetValidTags, &P::IsValidTag);
}

TEST(VtablePlaces, OfTextArraysWithALimit) {
  using A = KRDynamicArrayStringLen;
  EXPECT_LT(VtablePlaceOf(&A::OkToAlloc), VtablePlaceOf(&A::Set));
  EXPECT_LT(VtablePlaceOf(&A::Set), VtablePlaceOf(&A::Append));
  EXPECT_LT(VtablePlaceOf(&A::Append), VtablePlaceOf(&A::SetVal));
  EXPECT_LT(VtablePlaceOf(&A::SetVal), VtablePlaceOf(&A::SetCopyVal));
  EXPECT_LT(VtablePlaceOf(&A::SetCopyVal), VtablePlaceOf(&A::SetCopy));
}

}  // namespace

#endif
