// The places of the virtual operations of numbers and dates, which hosts that were compiled earlier
// go by.

#include "support/virtual_slots.h"

#include <gtest/gtest.h>

#include <vector>

#include "krofx/values/date_time.h"
#include "krofx/values/precision_integer.h"

#ifdef KROFX_TESTS_KNOW_SLOTS

namespace {

using Number = KRPrecisionInteger;
using Date = KRDateTimeBase;
using Slots = std::vector<std::ptrdiff_t>;

// Behind the two entries of the destructor, one place after the other.
void ExpectInOrder(const Slots& slots) {
  for (std::size_t i = 0; i < slots.size(); ++i) {
    EXPECT_EQ(slots[i], static_cast<std::ptrdiff_t>(i) + 2) << i;
  }
}

TEST(VirtualSlots, OfNumbersKeepTheirPlaces) {
  using Compare = u16 (Number::*)(Number const&) const;
  using Shift = Number& (Number::*)(u16);
  using Change = Number& (Number::*)(Number const&);
  using Compute = Number (Number::*)(Number const&) const;
  ExpectInOrder({
      SlotOf(static_cast<Number& (Number::*)(char const*)>(&Number::operator=)),
      SlotOf(static_cast<Number& (Number::*)(s32)>(&Number::operator=)),
      SlotOf(static_cast<Number& (Number::*)(Number const&) noexcept>(&Number::operator=)),
      SlotOf(&Number::ConvertStringToKRPrecisionInteger),
      SlotOf(static_cast<Compare>(&Number::operator==)),
      SlotOf(static_cast<Compare>(&Number::operator!=)),
      SlotOf(static_cast<Compare>(&Number::operator>)),
      SlotOf(static_cast<Compare>(&Number::operator>=)),
      SlotOf(static_cast<Compare>(&Number::operator<)),
      SlotOf(static_cast<Compare>(&Number::operator<=)),
      SlotOf(static_cast<Shift>(&Number::operator<<)),
      SlotOf(static_cast<Shift>(&Number::operator>>)),
      SlotOf(static_cast<Shift>(&Number::operator<<=)),
      SlotOf(static_cast<Shift>(&Number::operator>>=)),
      SlotOf(static_cast<Change>(&Number::operator+=)),
      SlotOf(static_cast<Change>(&Number::operator-=)),
      SlotOf(static_cast<Compute>(&Number::operator+)),
      SlotOf(static_cast<Compute>(&Number::operator-)),
      SlotOf(static_cast<Compute>(&Number::operator/)),
      SlotOf(static_cast<Compute>(&Number::operator*)),
      SlotOf(&Number::Mul10),
      SlotOf(&Number::Mul10InPlace),
      SlotOf(&Number::Div10),
      SlotOf(&Number::abs),
      SlotOf(&Number::Negate),
      SlotOf(&Number::Integer),
      SlotOf(&Number::Fraction),
      SlotOf(static_cast<char* (Number::*)()>(&Number::operator char*)),
      SlotOf(static_cast<void (Number::*)(u16)>(&Number::Decimal)),
      SlotOf(static_cast<u16 (Number::*)() const>(&Number::Decimal)),
      SlotOf(&Number::FitInASLong),
      SlotOf(&Number::FitInAULong),
      SlotOf(&Number::FitInASShort),
      SlotOf(&Number::FitInAUShort),
      SlotOf(&Number::Sign),
      SlotOf(&Number::IsZero),
      SlotOf(&Number::IsPositive),
      SlotOf(&Number::IsNegative),
      SlotOf(&Number::IsValid),
      SlotOf(&Number::GetKRULong),
      SlotOf(&Number::GetKRSLong),
      SlotOf(&Number::GetKRUShort),
      SlotOf(&Number::GetKRSShort),
      SlotOf(&Number::GetLSBytes),
      SlotOf(&Number::GetSSBytes),
      SlotOf(&Number::GetMSBytes),
  });
}

TEST(VirtualSlots, OfAWideIntegersOwnRuleStandsBehindAllOthers) {
  EXPECT_EQ(SlotOf(static_cast<u16 (KRWideInteger::*)()>(&KRWideInteger::IsValid)),
            SlotOf(&Number::GetMSBytes) + 1);
}

TEST(VirtualSlots, OfDatesKeepTheirPlaces) {
  using Write = u16 (Date::*)(KRString&);
  ExpectInOrder({
      SlotOf(static_cast<u16 (Date::*)(char const*)>(&Date::operator=)),
      SlotOf(static_cast<Write>(&Date::GetTimeString)),
      SlotOf(static_cast<u16 (Date::*)()>(&Date::IsValidTime)),
      SlotOf(static_cast<Write>(&Date::GetDateString)),
      SlotOf(&Date::IsValidDate),
  });
}

}  // namespace

#endif
