// The order of the virtual operations of the classes that hosts derive from: a new operation must
// not move the operations that a compiled host class overrides.

#include "support/virtual_slots.h"

#include <gtest/gtest.h>

#include "krofx/core/buffer.h"
#include "krofx/core/collection.h"
#include "krofx/core/fixed_strings.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/string.h"
#include "krofx/core/tag_dictionary.h"

#ifdef KROFX_TESTS_KNOW_SLOTS

namespace {

// Makes the protected operation public.
class LimitedBuffer : public KRBuffer {
 public:
  using KRBuffer::GetMaxBufferSize;
};

TEST(VirtualSlots, OfStrings) {
  using Assign = KRString& (KRString::*)(const KRString&);
  ExpectSlotsInOrder(2, static_cast<Assign>(&KRString::operator=), &KRString::SetMsgSetVersion,
                     &KRString::IsValid, &KRString::SetSpecLength, &KRString::Truncate,
                     &KRString::TruncateToSpec);
}

TEST(VirtualSlots, OfArrays) {
  using Array = KRDynamicArrayParseException;
  EXPECT_LT(SlotOf(&Array::OkToAlloc), SlotOf(&Array::Set));
  EXPECT_LT(SlotOf(&Array::Set), SlotOf(&Array::Append));
  EXPECT_LT(SlotOf(&Array::Append), SlotOf(&Array::SetVal));
}

TEST(VirtualSlots, OfBuffers) {
  ExpectSlotsInOrder(0, &KRBuffer::GetCh, &LimitedBuffer::GetMaxBufferSize);
}

TEST(VirtualSlots, OfSearches) {
  ExpectSlotsInOrder(0, &KRBinarySearch::Compare, &KRBinarySearch::GetNumberOfItems);
}

TEST(VirtualSlots, OfCollectionItems) {
  ExpectSlotsInOrder(2, &KRCollectionItem::operator=, &KRCollectionItem::operator==,
                     &KRCollectionItem::Factory);
}

}  // namespace

#endif
