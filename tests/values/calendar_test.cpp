// The calendar: days to dates and back.

#include "krofx/values/internal/calendar.h"

#include <gtest/gtest.h>

namespace {

using krofx::internal::CalendarDate;
using krofx::internal::CommonMonthLength;
using krofx::internal::DateFromDays;
using krofx::internal::DaysBeforeMonth;
using krofx::internal::DaysFromDate;
using krofx::internal::DaysInMonth;
using krofx::internal::DaysInYear;
using krofx::internal::IsLeapYear;

TEST(Calendar, EveryDayOfEightCenturiesFollowsTheOneBefore) {
  std::int64_t days = DaysFromDate(1600, 1, 1);
  EXPECT_EQ(days, -135140);
  for (u16 year = 1600; year < 2400; ++year) {
    for (u16 month = 1; month <= 12; ++month) {
      for (u16 day = 1; day <= DaysInMonth(month, year); ++day, ++days) {
        ASSERT_EQ(DaysFromDate(year, month, day), days);
        const CalendarDate date = DateFromDays(days);
        ASSERT_EQ(date.year, year);
        ASSERT_EQ(date.month, month);
        ASSERT_EQ(date.day, day);
      }
    }
  }
  EXPECT_EQ(DaysFromDate(1970, 1, 1), 0);
}

TEST(Calendar, MonthsAndDaysBeyondTheirRangeCountOn) {
  EXPECT_EQ(DaysFromDate(1970, 0, 1), -31);
  EXPECT_EQ(DaysFromDate(1970, 13, 1), 365);
  EXPECT_EQ(DaysFromDate(1970, 1, 0), -1);
  EXPECT_EQ(DaysFromDate(1970, 2, 31), DaysFromDate(1970, 3, 3));
  EXPECT_EQ(DaysFromDate(0, 3, 1), -719468);
}

TEST(Calendar, LeapYearsAreThoseDividedBy4AndNotBy100UnlessBy400) {
  EXPECT_TRUE(IsLeapYear(1996));
  EXPECT_FALSE(IsLeapYear(1900));
  EXPECT_TRUE(IsLeapYear(2000));
  EXPECT_FALSE(IsLeapYear(1999));
  EXPECT_EQ(DaysInYear(2000), 366);
  EXPECT_EQ(DaysInYear(1900), 365);
}

TEST(Calendar, DaysBeforeAMonthAreTheSumOfTheMonthsBefore) {
  for (const u16 year : {u16{1999}, u16{2000}}) {
    u16 sum = 0;
    for (u16 month = 1; month <= 12; ++month) {
      EXPECT_EQ(DaysBeforeMonth(month, year), sum);
      sum = static_cast<u16>(sum + DaysInMonth(month, year));
    }
    EXPECT_EQ(sum, DaysInYear(year));
  }
}

TEST(Calendar, AMonthThatIsNoneHasNoDays) {
  EXPECT_EQ(DaysInMonth(0, 2000), 0);
  EXPECT_EQ(DaysInMonth(13, 2000), 0);
  EXPECT_EQ(DaysBeforeMonth(0, 2000), 0);
  EXPECT_EQ(DaysBeforeMonth(13, 2000), 0);
}

TEST(Calendar, LengthsOfCommonMonthsGoRound) {
  EXPECT_EQ(CommonMonthLength(2), 28);
  EXPECT_EQ(CommonMonthLength(12), 31);
  EXPECT_EQ(CommonMonthLength(13), 31);
  EXPECT_EQ(CommonMonthLength(14), 28);
  EXPECT_EQ(CommonMonthLength(0), 31);
  EXPECT_EQ(CommonMonthLength(65535), CommonMonthLength(3));
}

}  // namespace
