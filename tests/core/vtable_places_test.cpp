// The order of the virtual operations of the classes that hosts derive from: a new operation must
// not move the operations that a compiled host class overrides.

#include "support/vtable_places.h"

#include <gtest/gtest.h>

#include "krofx/core/buffer.h"
#include "krofx/core/collection.h"
#include "krofx/core/fixed_strings.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"
#include "krofx/core/tag_dictionary.h"

#ifdef KROFX_TESTS_KNOW_VTABLES

namespace {

// Makes the protected operation public.
class LimitedBuffer : public KRBuffer {
 public:
  using KRBuffer::GetMaxBufferSize;
};

TEST(VtablePlaces, OfStrings) {
  using Assign = KRString& (KRString::*)(const KRString&);
  ExpectVtableOrder(2, static_cast<Assign>(&KRString::operator=), &KRString::SetMsgSetVersion,
                    &KRString::IsValid, &KRString::SetSpecLength, &KRString::Truncate,
                    &KRString::TruncateToSpec);
}

TEST(VtablePlaces, OfArrays) {
  using Array = KRDynamicArrayParseException;
  EXPECT_LT(VtablePlaceOf(&Array::OkToAlloc), VtablePlaceOf(&Array::Set));
  EXPECT_LT(VtablePlaceOf(&Array::Set), VtablePlaceOf(&Array::Append));
  EXPECT_LT(VtablePlaceOf(&Array::Append), VtablePlaceOf(&Array::SetVal));
}

TEST(VtablePlaces, OfBuffers) {
  ExpectVtableOrder(0, &KRBuffer::GetCh, &LimitedBuffer::GetMaxBufferSize);
}

TEST(VtablePlaces, OfSearches) {
  ExpectVtableOrder(0, &KRBinarySearch::Compare, &KRBinarySearch::GetNumberOfItems);
}

TEST(VtablePlaces, OfCollectionItems) {
  ExpectVtableOrder(2, &KRCollectionItem::operator=, &KRCollectionItem::operator==,
                    &KRCollectionItem::Factory);
}

}  // namespace

#endif
