// Dates as instants: fields, comparison, the two counts of seconds, arithmetic.

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "date_values.h"
#include "krofx/values/date_time.h"
#include "precision_values.h"
#include "value_warnings.h"

namespace {

constexpr s32 kLowest = std::numeric_limits<s32>::min();
constexpr s32 kHighest = std::numeric_limits<s32>::max();

class DateArithmetic : public ValueTest {};

// --- Fields --------------------------------------------------------------------------------------

TEST_F(DateArithmetic, NewDatesAreEmpty) {
  EXPECT_EQ(Shown(KRDateTimeBase()), "0-0-0 0:0:0.0 0/0 ");
  EXPECT_EQ(Shown(KRDateTime()), "0-0-0 0:0:0.0 0/0 ");
  EXPECT_EQ(Shown(KRTime()), "0-0-0 0:0:0.0 0/0 ");
  EXPECT_EQ(KRDateTime().IsValidDate(), 0);
  EXPECT_EQ(KRDateTime().IsValidTime(), 1);
}

TEST_F(DateArithmetic, FieldsAreStoredAsGiven) {
  EXPECT_EQ(Shown(KRDateTime(2000, 2, 29, 1, 2, 3, 4, -3, -50)), "2000-2-29 1:2:3.4 -3/-50 ");
  EXPECT_EQ(Shown(KRTime(2000, 13, 32, 25, 61, 62, 1000, 99, 100)),
            "2000-13-32 25:61:62.1000 99/100 ");
  const KRDateTimeBase base(KRDateTime(2000, 2, 29, 1, 2, 3, 4, -3, -50));
  EXPECT_EQ(Shown(base), "2000-2-29 1:2:3.4 -3/-50 ");
  KRTime time;
  time = base;
  EXPECT_EQ(Shown(time), "2000-2-29 1:2:3.4 -3/-50 ");
}

TEST_F(DateArithmetic, ClearingAndInvalidating) {
  KRDateTime date("20000229010203.004[-3.5:NST]");
  date.Invalidate();
  EXPECT_EQ(Shown(date), "0-0-0 0:0:0.0 -3/-50 NST");
  date.InitKRDateTime();
  EXPECT_EQ(Shown(date), "0-0-0 0:0:0.0 0/0 ");
  KRTime time("12[1:CET]");
  time.InitKRTime();
  EXPECT_EQ(Shown(time), "0-0-0 0:0:0.0 0/0 ");
}

struct ValidTimeCase {
  s16 hour, minute, second, millisecond, offset, fraction;
  u16 valid;
};

class ValidTime : public ValueTest, public testing::WithParamInterface<ValidTimeCase> {};

TEST_P(ValidTime, HasItsLimits) {
  const ValidTimeCase& c = GetParam();
  KRTime time(0, 0, 0, c.hour, c.minute, c.second, c.millisecond, c.offset, c.fraction);
  EXPECT_EQ(time.IsValidTime(), c.valid);
}

INSTANTIATE_TEST_SUITE_P(
    All, ValidTime,
    testing::Values(ValidTimeCase{23, 59, 59, 999, 12, 99, 1}, ValidTimeCase{0, 0, 0, 0, -12, 0, 1},
                    ValidTimeCase{24, 0, 0, 0, 0, 0, 0}, ValidTimeCase{0, 60, 0, 0, 0, 0, 0},
                    ValidTimeCase{0, 0, 60, 0, 0, 0, 0}, ValidTimeCase{0, 0, 0, 1000, 0, 0, 0},
                    ValidTimeCase{0, 0, 0, 0, 13, 0, 0}, ValidTimeCase{0, 0, 0, 0, -13, 0, 0},
                    ValidTimeCase{0, 0, 0, 0, 0, 100, 0}, ValidTimeCase{0, 0, 0, 0, 0, -99, 1}));

TEST_F(DateArithmetic, ADateKnowsItsMonth) {
  KRDateTime date("20000201");
  EXPECT_EQ(date.DaysInMonth(), 29);
  EXPECT_EQ(date.DaysInMonth(2, 1900), 28);
  EXPECT_EQ(date.DaysInMonth(4, 1999), 30);
  EXPECT_EQ(date.DaysInMonth(0, 1999), 0);
  EXPECT_EQ(date.DaysInMonth(13, 1999), 0);
  EXPECT_EQ(date.IsLeapYear(2000), 1);
  EXPECT_EQ(date.IsLeapYear(1900), 0);
  EXPECT_EQ(date.LeapYearsBetween(KRDateTime("19000101")), 0);
}

TEST_F(DateArithmetic, ADayOfTheYearSetsMonthAndDayButNotTheYear) {
  KRDateTime date("19991231");
  EXPECT_EQ(date.SetDay(1, 2000), 1);
  EXPECT_EQ(Shown(date), "1999-1-1 0:0:0.0 0/0 ");
  EXPECT_EQ(date.SetDay(60, 2000), 1);
  EXPECT_EQ(Shown(date), "1999-2-29 0:0:0.0 0/0 ");
  EXPECT_EQ(date.SetDay(60, 1999), 1);
  EXPECT_EQ(Shown(date), "1999-3-1 0:0:0.0 0/0 ");
  EXPECT_EQ(date.SetDay(31, 1999), 1);
  EXPECT_EQ(Shown(date), "1999-1-31 0:0:0.0 0/0 ");
  EXPECT_EQ(date.SetDay(366, 2000), 1);
  EXPECT_EQ(Shown(date), "1999-12-31 0:0:0.0 0/0 ");
  EXPECT_EQ(date.SetDay(0, 2000), 0);
  EXPECT_EQ(date.SetDay(366, 1999), 0);
  EXPECT_EQ(date.SetDay(367, 2000), 0);
  EXPECT_EQ(Shown(date), "1999-12-31 0:0:0.0 0/0 ");
  EXPECT_EQ(date.SetDay(365, 1999), 1);
}

// --- Comparison ----------------------------------------------------------------------------------

TEST_F(DateArithmetic, InstantsCompareWithRespectToTheirZones) {
  const KRDateTime newYork("19991231120000[-5:EST]");
  const KRDateTime london("19991231170000[0:GMT]");
  const KRDateTime stJohns("19991231133000[-3.5:NST]");
  EXPECT_EQ(newYork == london, 1);
  EXPECT_EQ(newYork != london, 0);
  EXPECT_EQ(stJohns == london, 1);
  EXPECT_EQ(newYork >= london, 1);
  EXPECT_EQ(newYork <= london, 1);
  const KRDateTime later("19991231120000.001[-5:EST]");
  EXPECT_EQ(later.compareDateTime(london), 1);
  EXPECT_EQ(london.compareDateTime(later), -1);
  EXPECT_EQ(london.compareDateTime(newYork), 0);
  EXPECT_EQ(later > london, 1);
  EXPECT_EQ(later < london, 0);
  EXPECT_EQ(london < later, 1);
  EXPECT_EQ(london >= later, 0);
  EXPECT_EQ(later <= london, 0);
  EXPECT_EQ(later != london, 1);
}

TEST_F(DateArithmetic, InstantsBefore1970CompareToo) {
  const KRDateTime newYork("19601231120000[-5:EST]");
  const KRDateTime london("19601231170000[0:GMT]");
  EXPECT_EQ(newYork == london, 1);
  EXPECT_EQ(KRDateTime("19601231133000[-3.5:NST]") == london, 1);
  EXPECT_EQ(KRDateTime("19601230") < london, 1);
  EXPECT_EQ(KRDateTime("19700101") > KRDateTime("19691231235959.999"), 1);
  EXPECT_EQ(KRDateTime("15000101") < KRDateTime("15000102"), 1);
}

TEST_F(DateArithmetic, EveryDayComesAfterTheOneBeforeWithinItsYear) {
  for (const char* const year : {"1968", "1969", "1970", "1999", "2000", "9999"}) {
    KRDateTime before((std::string(year) + "0101").c_str());
    for (u16 day = 2; day <= 365; ++day) {
      KRDateTime date(before);
      ASSERT_EQ(date.SetDay(day, date.GetYear()), 1);
      ASSERT_EQ(Shown(date.SecondsBetween(before)), "86400000e3") << Shown(date);
      before = date;
    }
  }
}

// --- The count with years of 365.2425 days -------------------------------------------------------

struct CountCase {
  const char* text;
  const char* shown;
};

class GMTCount : public ValueTest, public testing::WithParamInterface<CountCase> {};

TEST_P(GMTCount, HasThreeDecimals) {
  EXPECT_EQ(Shown(KRDateTime(GetParam().text).GetGMT()), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    All, GMTCount,
    testing::Values(CountCase{"19700101", "0e3"}, CountCase{"19700101000000.001", "1e3"},
                    CountCase{"19700102030405.678", "97445678e3"},
                    CountCase{"19700101000000[5]", "-18000000e3"},
                    CountCase{"19700101000000[-3.5]", "12600000e3"},
                    CountCase{"19700101000000[3.25]", "-11700000e3"},
                    CountCase{"19710101", "31536000000e3"},
                    // The year 1972 is not counted as a leap year until the parts of days add up.
                    CountCase{"19730101", "94608000000e3"}, CountCase{"20000301", "951868800000e3"},
                    CountCase{"99991231", "253402214400000e3"},
                    // Before 1970, one second lower than it should be.
                    CountCase{"19691231235959", "-2000e3"},
                    CountCase{"19691231235959.500", "-1500e3"},
                    CountCase{"19691231", "-86401000e3"}, CountCase{"19691231[-5]", "-68401000e3"},
                    CountCase{"19680229120000", "-58017601000e3"}));

TEST_F(DateArithmetic, DatesSubtractInSeconds) {
  const KRDateTime later("20000301120000.250");
  const KRDateTime earlier("20000229");
  EXPECT_EQ(Shown(later.SecondsBetween(earlier)), "129600250e3");
  EXPECT_EQ(Shown(earlier.SecondsBetween(later)), "-129600250e3");
  EXPECT_EQ(Shown(later.SecondsBetween(later)), "0e3");
  // The second by which the count before 1970 is too low.
  EXPECT_EQ(Shown(KRDateTime("19700101").SecondsBetween(KRDateTime("19691231235959"))), "2000e3");
}

TEST_F(DateArithmetic, TheTimeBetweenDatesIsACopyOfTheFirst) {
  const KRDateTime date("20000301120000.250[-5:EST]");
  EXPECT_EQ(Shown(date.TimeBetween(KRDateTime("19990101"))), Shown(date));
}

struct FromCountCase {
  const char* seconds;
  const char* shown;
};

class FromCount : public ValueTest, public testing::WithParamInterface<FromCountCase> {};

TEST_P(FromCount, SetsTheFields) {
  KRDateTime date;
  EXPECT_EQ(date.FromPrecInt(KRPrecisionInteger(GetParam().seconds)), 1);
  EXPECT_EQ(Shown(date), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(All, FromCount,
                         testing::Values(FromCountCase{"0", "1970-1-1 0:0:0.0 0/0 "},
                                         FromCountCase{"-0", "1970-1-1 0:0:0.0 0/0 "},
                                         FromCountCase{"31.5", "1970-1-1 0:0:31.500 0/0 "},
                                         FromCountCase{"31.9999", "1970-1-1 0:0:31.999 0/0 "},
                                         FromCountCase{"97445.678", "1970-1-2 3:4:5.678 0/0 "},
                                         FromCountCase{"-1", "1969-12-31 23:59:59.0 0/0 "},
                                         FromCountCase{"-0.25", "1969-12-31 23:59:59.750 0/0 "},
                                         FromCountCase{"-126230400", "1966-1-1 0:0:0.0 0/0 "},
                                         // The truncated parts of 30 years make it the day before.
                                         FromCountCase{"951868800", "2000-2-29 0:0:0.0 0/0 "},
                                         FromCountCase{"1.00000000000000000000000001",
                                                       "1970-1-1 0:0:1.0 0/0 "}));

TEST_F(DateArithmetic, ACountAtTheLimitOfDecimalsIsExact) {
  KRPrecisionInteger seconds("-.1000000000000000000000000000");
  seconds.Decimal(29);
  KRDateTime date;
  EXPECT_EQ(date.FromPrecInt(seconds), 1);
  EXPECT_EQ(Shown(date), "1969-12-31 23:59:59.900 0/0 ");
  EXPECT_EQ(Shown(seconds), "-10000000000000000000000000000e29");
}

TEST_F(DateArithmetic, ACountOnNoDayClearsAllFields) {
  // Day 366 of 1970.
  KRDateTime date("20000101120000[-5:EST]");
  EXPECT_EQ(date.FromPrecInt(Number("31536000")), 0);
  EXPECT_EQ(Shown(date), "0-0-0 0:0:0.0 0/0 ");
  // Years beyond the field.
  for (const char* const seconds :
       {"9999999999999999999999999999", "-9999999999999999999999999999"}) {
    date = "20000101120000[-5:EST]";
    EXPECT_EQ(date.FromPrecInt(Number(seconds)), 0);
    EXPECT_EQ(Shown(date), "0-0-0 0:0:0.0 0/0 ");
  }
  date = "20000101";
  EXPECT_EQ(date.FromPrecInt(KRPrecisionInteger(0, 30)), 0);
  EXPECT_EQ(Shown(date), "0-0-0 0:0:0.0 0/0 ");
}

TEST_F(DateArithmetic, ACountLeavesTheZoneAlone) {
  KRDateTime date("20000101120000[-5:EST]");
  EXPECT_EQ((date = Number("31.5")), 1);
  EXPECT_EQ(Shown(date), "1970-1-1 0:0:31.500 -5/0 EST");
  KRPrecisionInteger seconds("86400");
  EXPECT_EQ(Shown(KRDateTime(seconds)), "1970-1-2 0:0:0.0 0/0 ");
  EXPECT_EQ((date = seconds), 1);
  EXPECT_EQ(date.GetDay(), 2);
}

TEST_F(DateArithmetic, AddingACountClearsTheZone) {
  KRDateTime date("19700101120000[-5:EST]");
  EXPECT_EQ((date += Number("1.5")), 1);
  EXPECT_EQ(Shown(date), "1970-1-1 17:0:1.500 0/0 ");
  EXPECT_EQ((date += Number("-86400")), 1);
  EXPECT_EQ(Shown(date), "1969-12-31 17:0:1.500 0/0 ");
  // The count before 1970 is one second too low, and is read back as if it were not.
  EXPECT_EQ((date += Number("0")), 1);
  EXPECT_EQ(Shown(date), "1969-12-31 17:0:0.500 0/0 ");
  date = "19700101120000[-3.5:NST]";
  EXPECT_EQ((date += Number("1.5")), 1);
  EXPECT_EQ(Shown(date), "1970-1-1 15:30:1.500 0/0 ");
  date = "19700101000000[-5:EST]";
  EXPECT_EQ((date += Number("31536000")), 0);
  EXPECT_EQ(Shown(date), "0-0-0 0:0:0.0 0/0 ");
}

// --- The true count ------------------------------------------------------------------------------

struct TimeTCase {
  const char* text;
  s32 seconds;
};

class TimeT : public ValueTest, public testing::WithParamInterface<TimeTCase> {};

TEST_P(TimeT, IsTheCalendarsCountInGMT) {
  EXPECT_EQ(KRDateTime(GetParam().text).GetTimeT(), GetParam().seconds);
}

INSTANTIATE_TEST_SUITE_P(
    All, TimeT,
    testing::Values(TimeTCase{"19700101", 0}, TimeTCase{"19700101000001.999", 1},
                    TimeTCase{"19730101", 94694400}, TimeTCase{"20000301", 951868800},
                    TimeTCase{"19991231120000[-5:EST]", 946659600},
                    TimeTCase{"19991231120000[-3.5]", 946654200},
                    TimeTCase{"19991231120000[5.75]", 946620900}, TimeTCase{"19691231235959", -1},
                    TimeTCase{"19680229120000", -58017600}, TimeTCase{"19020101", -2145916800},
                    TimeTCase{"19011231", kLowest}, TimeTCase{"16000101", kLowest},
                    TimeTCase{"20380119031407", kHighest}, TimeTCase{"20380119031408", kHighest},
                    TimeTCase{"99991231", kHighest}));

struct FromTimeTCase {
  s32 seconds;
  const char* shown;
};

class FromTimeT : public ValueTest, public testing::WithParamInterface<FromTimeTCase> {};

TEST_P(FromTimeT, SetsTheFieldsInGMTAndKeepsTheZoneName) {
  KRDateTime date("20000101120000.123[-3.5:NST]");
  EXPECT_EQ((date = GetParam().seconds), 1);
  EXPECT_EQ(Shown(date), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(All, FromTimeT,
                         testing::Values(FromTimeTCase{0, "1970-1-1 0:0:0.0 0/0 NST"},
                                         FromTimeTCase{951868799, "2000-2-29 23:59:59.0 0/0 NST"},
                                         FromTimeTCase{951868800, "2000-3-1 0:0:0.0 0/0 NST"},
                                         FromTimeTCase{-1, "1969-12-31 23:59:59.0 0/0 NST"},
                                         FromTimeTCase{-86400, "1969-12-31 0:0:0.0 0/0 NST"},
                                         FromTimeTCase{kHighest, "2038-1-19 3:14:7.0 0/0 NST"},
                                         FromTimeTCase{kLowest, "1901-12-13 20:45:52.0 0/0 NST"}));

TEST_F(DateArithmetic, AnInstantCanBeRestatedInGMTAndBack) {
  KRDateTime date("19991231200000.250[-5:EST]");
  date.ConvertToGMT();
  EXPECT_EQ(Shown(date), "2000-1-1 1:0:0.0 0/0 EST");
  date.ConvertToLocalTime(-3, -50);
  EXPECT_EQ(Shown(date), "1999-12-31 21:30:0.0 -3/-50 EST");
  date.ConvertToLocalTime(5, 75);
  EXPECT_EQ(Shown(date), "2000-1-1 6:45:0.0 5/75 EST");
  EXPECT_EQ(date == KRDateTime("20000101010000"), 1);
}

TEST_F(DateArithmetic, AddingSecondsMovesToTheNextDayAndClearsTheZone) {
  KRDateTime date("19991231235959[0:GMT]");
  EXPECT_EQ((date += 1), 1);
  EXPECT_EQ(Shown(date), "2000-1-1 0:0:0.0 0/0 ");
  date = "20000228190000.5[-5:EST]";
  EXPECT_EQ((date += -1), 1);
  EXPECT_EQ(Shown(date), "2000-2-28 23:59:59.0 0/0 ");
}

TEST_F(DateArithmetic, AddingSecondsStopsAtTheEndsOf32Bits) {
  KRDateTime date("20380119031407");
  EXPECT_EQ((date += 1), 1);
  EXPECT_EQ(Shown(date), "2038-1-19 3:14:7.0 0/0 ");
  date = "16000101";
  EXPECT_EQ((date += -1), 1);
  EXPECT_EQ(Shown(date), "1901-12-13 20:45:52.0 0/0 ");
}

// --- Sums of fields ------------------------------------------------------------------------------

struct FieldSumCase {
  KRDateTime date;
  KRDateTime amount;
  u16 result;
  const char* shown;
};

class FieldSum : public ValueTest, public testing::WithParamInterface<FieldSumCase> {};

TEST_P(FieldSum, CarriesOnceAtEachField) {
  KRDateTime date(GetParam().date);
  EXPECT_EQ((date += static_cast<const KRDateTimeBase&>(GetParam().amount)), GetParam().result);
  EXPECT_EQ(Shown(date), GetParam().shown);
}

KRDateTime Date(s16 year, s16 month, s16 day, s16 hour = 0, s16 minute = 0, s16 second = 0,
                s16 millisecond = 0) {
  return {year, month, day, hour, minute, second, millisecond, 0, 0};
}

INSTANTIATE_TEST_SUITE_P(
    All, FieldSum,
    testing::Values(
        FieldSumCase{Date(2000, 1, 31, 23, 59, 59, 999), Date(0, 0, 0, 0, 0, 0, 1), 1,
                     "2000-2-4 0:0:0.0 0/0 "},  // 32 less the 28 days of February
        FieldSumCase{Date(2000, 1, 1, 1, 1, 1, 1), Date(1, 2, 3, 4, 5, 6, 7), 1,
                     "2001-3-4 5:6:7.8 0/0 "},
        FieldSumCase{Date(2000, 4, 30), Date(0, 0, 2), 1, "2000-5-1 0:0:0.0 0/0 "},
        FieldSumCase{Date(2000, 12, 31), Date(0, 0, 1), 1, "2001-1-1 0:0:0.0 0/0 "},
        FieldSumCase{Date(2000, 11, 30), Date(0, 2, 1), 1, "2001-2-0 0:0:0.0 0/0 "},
        FieldSumCase{Date(2000, 12, 1), Date(0, 12, 0), 1, "2001-12-1 0:0:0.0 0/0 "},
        FieldSumCase{Date(2000, 1, 1, 12, 30, 30, 500), Date(0, 0, 0, 12, 30, 30, 500), 1,
                     "2000-1-2 1:1:1.0 0/0 "},
        // February has its common length in every year, and the day may end below 1, in 16 bits.
        FieldSumCase{Date(2000, 2, 28), Date(0, 0, 1), 1, "2000-3-65534 0:0:0.0 0/0 "},
        FieldSumCase{Date(2000, 2, 28), Date(0, 0, 10), 1, "2000-3-7 0:0:0.0 0/0 "},
        // One carry only.
        FieldSumCase{Date(2000, 1, 1, 0, 0, 59), Date(0, 0, 0, 0, 0, 90), 1,
                     "2000-1-1 0:1:89.0 0/0 "},
        FieldSumCase{Date(9999, 12, 31), Date(0, 0, 0), 1, "9999-12-31 0:0:0.0 0/0 "},
        FieldSumCase{Date(9999, 12, 31), Date(0, 0, 1), 0, "9999-1-1 0:0:0.0 0/0 "},
        FieldSumCase{Date(9999, 6, 1), Date(1, 1, 0), 0, "9999-7-1 0:0:0.0 0/0 "},
        // A month beyond 1 to 12 has the length of the month that it continues to.
        FieldSumCase{Date(2000, 0, 31), Date(0, 0, 1), 1, "2000-1-1 0:0:0.0 0/0 "}));

TEST_F(DateArithmetic, ADateCanBeAddedToItself) {
  KRDateTime date = Date(1000, 5, 10, 5, 5, 5, 5);
  EXPECT_EQ((date += static_cast<const KRDateTimeBase&>(date)), 1);
  EXPECT_EQ(Shown(date), "2000-10-20 10:10:10.10 0/0 ");
}

}  // namespace
