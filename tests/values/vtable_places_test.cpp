// The slots of the virtual operations of numbers and dates, on which hosts that were compiled
// earlier depend.

#include "support/vtable_places.h"

#include <gtest/gtest.h>

#include "krofx/values/date_time.h"
#include "krofx/values/precision_integer.h"

#ifdef KROFX_TESTS_KNOW_VTABLES

namespace {

using Number = KRPrecisionInteger;
using Date = KRDateTimeBase;

TEST(VtablePlaces, OfNumbersKeepTheirPlaces) {
  using Compare = u16 (Number::*)(const Number&) const;
  using Shift = Number& (Number::*)(u16);
  using Change = Number& (Number::*)(const Number&);
  using Compute = Number (Number::*)(const Number&) const;
  ExpectVtableOrder(
      2, static_cast<Number& (Number::*)(const char*)>(&Number::operator=),
      static_cast<Number& (Number::*)(s32)>(&Number::operator=),
      static_cast<Number& (Number::*)(const Number&) noexcept>(&Number::operator=),
      &Number::ConvertStringToKRPrecisionInteger, static_cast<Compare>(&Number::operator==),
      static_cast<Compare>(&Number::operator!=), static_cast<Compare>(&Number::operator>),
      static_cast<Compare>(&Number::operator>=), static_cast<Compare>(&Number::operator<),
      static_cast<Compare>(&Number::operator<=), static_cast<Shift>(&Number::operator<<),
      static_cast<Shift>(&Number::operator>>), static_cast<Shift>(&Number::operator<<=),
      static_cast<Shift>(&Number::operator>>=), static_cast<Change>(&Number::operator+=),
      static_cast<Change>(&Number::operator-=), static_cast<Compute>(&Number::operator+),
      static_cast<Compute>(&Number::operator-), static_cast<Compute>(&Number::operator/),
      static_cast<Compute>(&Number::operator*), &Number::Mul10, &Number::Mul10InPlace,
      &Number::Div10, &Number::abs, &Number::Negate, &Number::Integer, &Number::Fraction,
      static_cast<char* (Number::*)()>(&Number::operator char*),
      static_cast<void (Number::*)(u16)>(&Number::Decimal),
      static_cast<u16 (Number::*)() const>(&Number::Decimal), &Number::FitInASLong,
      &Number::FitInAULong, &Number::FitInASShort, &Number::FitInAUShort, &Number::Sign,
      &Number::IsZero, &Number::IsPositive, &Number::IsNegative, &Number::IsValid,
      &Number::GetKRULong, &Number::GetKRSLong, &Number::GetKRUShort, &Number::GetKRSShort,
      &Number::GetLSBytes, &Number::GetSSBytes, &Number::GetMSBytes);
}

TEST(VtablePlaces, OfAWideIntegersOwnRuleIsAfterAllOthers) {
  EXPECT_EQ(VtablePlaceOf(static_cast<u16 (KRWideInteger::*)()>(&KRWideInteger::IsValid)),
            VtablePlaceOf(&Number::GetMSBytes) + 1);
}

TEST(VtablePlaces, OfDatesKeepTheirPlaces) {
  using Write = u16 (Date::*)(KRString&);
  ExpectVtableOrder(2, static_cast<u16 (Date::*)(const char*)>(&Date::operator=),
                    static_cast<Write>(&Date::GetTimeString),
                    static_cast<u16 (Date::*)()>(&Date::IsValidTime),
                    static_cast<Write>(&Date::GetDateString), &Date::IsValidDate);
}

}  // namespace

#endif
