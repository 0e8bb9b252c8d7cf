// Reading dates, times and zones: every form that is accepted, every error and its warning.

#include <gtest/gtest.h>

#include <string>

#include "date_values.h"
#include "krofx/values/date_time.h"
#include "value_warnings.h"

namespace {

using krofx::internal::AllocationFailure;

class DateReading : public ValueTest {};

// --- Dates ---------------------------------------------------------------------------------------

struct ReadCase {
  const char* text;
  const char* shown;
};

class GoodDate : public ValueTest, public testing::WithParamInterface<ReadCase> {};

TEST_P(GoodDate, IsRead) {
  KRDateTime date;
  EXPECT_EQ(date.ConvertStringToKRDateTime(GetParam().text), 1);
  EXPECT_EQ(Shown(date), GetParam().shown);
  EXPECT_EQ(TakeWarnings(), Warnings{});
}

INSTANTIATE_TEST_SUITE_P(
    All, GoodDate,
    testing::Values(ReadCase{"19991231", "1999-12-31 0:0:0.0 0/0 "},
                    ReadCase{"19960229", "1996-2-29 0:0:0.0 0/0 "},
                    ReadCase{"20000229", "2000-2-29 0:0:0.0 0/0 "},
                    ReadCase{"00010101", "1-1-1 0:0:0.0 0/0 "},
                    ReadCase{"00000101", "0-1-1 0:0:0.0 0/0 "},
                    ReadCase{"1999123112", "1999-12-31 12:0:0.0 0/0 "},
                    ReadCase{"199912311234", "1999-12-31 12:34:0.0 0/0 "},
                    ReadCase{"19991231123456", "1999-12-31 12:34:56.0 0/0 "},
                    ReadCase{"19991231123456.", "1999-12-31 12:34:56.0 0/0 "},
                    ReadCase{"19991231123456.5", "1999-12-31 12:34:56.500 0/0 "},
                    ReadCase{"19991231123456.05", "1999-12-31 12:34:56.50 0/0 "},
                    ReadCase{"19991231123456.789", "1999-12-31 12:34:56.789 0/0 "},
                    ReadCase{"19991231123456.0789", "1999-12-31 12:34:56.789 0/0 "},
                    ReadCase{"19991231123456.000001", "1999-12-31 12:34:56.0 0/0 "},
                    ReadCase{"19991231120000.000[-5:EST]", "1999-12-31 12:0:0.0 -5/0 EST"},
                    ReadCase{"19991231120000[0:GMT]", "1999-12-31 12:0:0.0 0/0 GMT"},
                    ReadCase{"19991231[-5:EST]", "1999-12-31 0:0:0.0 -5/0 EST"},
                    ReadCase{"1999123112[+1:CET]", "1999-12-31 12:0:0.0 1/0 CET"},
                    ReadCase{"19991231120000.000[12]", "1999-12-31 12:0:0.0 12/0 "},
                    // Text after the zone is ignored.
                    ReadCase{"19991231120000[1:CET]junk", "1999-12-31 12:0:0.0 1/0 CET"}));

struct BadDateCase {
  const char* text;
  const char* shown;
  bool timeTells;
};

class BadDate : public ValueTest, public testing::WithParamInterface<BadDateCase> {};

TEST_P(BadDate, IsRefusedAndKeepsWhatWasRead) {
  KRDateTime date("20010203040506.007[-5:EST]");
  EXPECT_EQ(date.ConvertStringToKRDateTime(GetParam().text), 0);
  EXPECT_EQ(Shown(date), GetParam().shown);
  Warnings expected;
  if (GetParam().timeTells) {
    expected.push_back({KRPW_BADFORMAT, GetParam().text + 8, "ConvertStringToKRTime"});
  }
  expected.push_back({KRPW_BADFORMAT, GetParam().text, "ConvertStringToKRDateTime"});
  EXPECT_EQ(TakeWarnings(), expected);
}

INSTANTIATE_TEST_SUITE_P(
    All, BadDate,
    testing::Values(BadDateCase{"1999", "0-0-0 0:0:0.0 0/0 ", false},
                    BadDateCase{"", "0-0-0 0:0:0.0 0/0 ", false},
                    BadDateCase{"1999123", "0-0-0 0:0:0.0 0/0 ", false},
                    BadDateCase{"19991301", "1999-13-1 0:0:0.0 0/0 ", false},
                    BadDateCase{"19990001", "1999-0-1 0:0:0.0 0/0 ", false},
                    BadDateCase{"19990100", "1999-1-0 0:0:0.0 0/0 ", false},
                    BadDateCase{"19990431", "1999-4-31 0:0:0.0 0/0 ", false},
                    BadDateCase{"19000229", "1900-2-29 0:0:0.0 0/0 ", false},
                    BadDateCase{"199912xx", "0-0-0 0:0:0.0 0/0 ", false},
                    BadDateCase{"1999xx31", "0-0-31 0:0:0.0 0/0 ", false},
                    BadDateCase{"x9991231", "0-12-31 0:0:0.0 0/0 ", false},
                    BadDateCase{"19991231-1", "0-0-0 0:0:0.0 0/0 ", true},
                    BadDateCase{"19991231 120000", "0-0-0 0:0:0.0 0/0 ", true},
                    BadDateCase{"199912311", "0-0-0 0:0:0.0 0/0 ", true},
                    BadDateCase{"19991231123", "0-0-0 0:0:0.0 0/0 ", true},
                    BadDateCase{"1999123112345", "0-0-0 0:0:0.0 0/0 ", true},
                    BadDateCase{"199912311234567", "0-0-0 0:0:0.0 0/0 ", true},
                    BadDateCase{"19991231123456.x", "0-0-0 0:0:0.0 0/0 ", true},
                    BadDateCase{"19991231123456.78x", "0-0-0 0:0:0.0 0/0 ", true},
                    BadDateCase{"199912311234.5", "0-0-0 0:0:0.0 0/0 ", true},
                    BadDateCase{"1999123112:34:56", "0-0-0 0:0:0.0 0/0 ", true},
                    BadDateCase{"19991231xx3456.7", "0-0-0 0:34:56.700 0/0 ", true},
                    BadDateCase{"1999123112xx56", "0-0-0 0:0:56.0 0/0 ", true}));

TEST_F(DateReading, ATimeOutOfRangeFailsTheDateToo) {
  KRDateTime date;
  EXPECT_EQ(date.ConvertStringToKRDateTime("19991231250000"), 0);
  EXPECT_EQ(TakeWarnings(),
            (Warnings{{KRPW_OUTOFRANGE, "250000", "ConvertStringToKRTime"},
                      {KRPW_BADFORMAT, "19991231250000", "ConvertStringToKRDateTime"}}));
  EXPECT_EQ(Shown(date), "0-0-0 25:0:0.0 0/0 ");
  for (const char* const text : {"19991231126000", "19991231120060", "19991231120000.1000",
                                 "19991231120000[13]", "19991231120000[-13]"}) {
    EXPECT_EQ(date.ConvertStringToKRDateTime(text), 0) << text;
    EXPECT_EQ(TakeCodes(), (Codes{KRPW_OUTOFRANGE, KRPW_BADFORMAT})) << text;
  }
}

TEST_F(DateReading, ANullDateTextIsTold) {
  KRDateTime date("20010203");
  EXPECT_EQ(date.ConvertStringToKRDateTime(nullptr), 0);
  EXPECT_EQ(Shown(date), "0-0-0 0:0:0.0 0/0 ");
  EXPECT_EQ(TakeWarnings(), (Warnings{{KRPW_NULLPOINTER, "", "ConvertStringToKRDateTime"}}));
  KRTime time("12");
  EXPECT_EQ(time.ConvertStringToKRTime(nullptr), 0);
  EXPECT_EQ(Shown(time), "0-0-0 0:0:0.0 0/0 ");
  EXPECT_EQ(TakeWarnings(), (Warnings{{KRPW_NULLPOINTER, "", "ConvertStringToKRTime"}}));
}

TEST_F(DateReading, ADateIsReadFromTheMiddleOfAText) {
  const char text[] = "<DTPOSTED>20000229120000[-5:EST]<TRNAMT>1";
  KRDateTime date;
  EXPECT_EQ(date.Parse(text + 10, 22), 1);
  EXPECT_EQ(Shown(date), "2000-2-29 12:0:0.0 -5/0 EST");
  EXPECT_EQ(date.Parse(text + 10, 8), 1);
  EXPECT_EQ(Shown(date), "2000-2-29 0:0:0.0 0/0 ");
  EXPECT_EQ(date.Parse(text + 10, 7), 0);
  EXPECT_EQ(TakeWarnings(), (Warnings{{KRPW_BADFORMAT, "2000022", "ConvertStringToKRDateTime"}}));
  KRTime time;
  EXPECT_EQ(time.ParseTime(text + 18, 4), 1);
  EXPECT_EQ(time.GetHour(), 12);
}

TEST_F(DateReading, ReadingADateTakesNoMemory) {
  AllocationFailure::FailAt(1, true);
  KRDateTime date("20000229120000.125[-5:EST]");
  const KRDateTime copy(date);
  date = "19991231";
  EXPECT_EQ(AllocationFailure::Count(), 0U);
  AllocationFailure::FailAt(0);
  EXPECT_EQ(Shown(copy), "2000-2-29 12:0:0.125 -5/0 EST");
}

TEST_F(DateReading, ConstructionAndAssignmentFromTextReadDates) {
  KRDateTime date("19991231");
  EXPECT_EQ(Shown(date), "1999-12-31 0:0:0.0 0/0 ");
  EXPECT_EQ((date = "20000101"), 1);
  EXPECT_EQ((date = "2000"), 0);
  KRDateTimeBase& base = date;
  EXPECT_EQ((base = "20000102"), 1);
  EXPECT_EQ(date.GetDay(), 2);
  KRDateTimeBase plain;
  EXPECT_EQ((plain = "20000102"), 0);
  EXPECT_EQ(plain.GetDay(), 0);
}

// --- Times ---------------------------------------------------------------------------------------

class GoodTime : public ValueTest, public testing::WithParamInterface<ReadCase> {};

TEST_P(GoodTime, IsRead) {
  KRTime time;
  EXPECT_EQ(time.ConvertStringToKRTime(GetParam().text), 1);
  EXPECT_EQ(Shown(time), GetParam().shown);
  EXPECT_EQ(TakeWarnings(), Warnings{});
}

INSTANTIATE_TEST_SUITE_P(All, GoodTime,
                         testing::Values(ReadCase{"", "0-0-0 0:0:0.0 0/0 "},
                                         ReadCase{"12", "0-0-0 12:0:0.0 0/0 "},
                                         ReadCase{"1234", "0-0-0 12:34:0.0 0/0 "},
                                         ReadCase{"123456", "0-0-0 12:34:56.0 0/0 "},
                                         ReadCase{"120000.5", "0-0-0 12:0:0.500 0/0 "},
                                         ReadCase{"120000.5[1:CET]", "0-0-0 12:0:0.500 1/0 CET"},
                                         ReadCase{"[1:CET]", "0-0-0 0:0:0.0 1/0 CET"}));

TEST_F(DateReading, ABadTimeKeepsWhatWasRead) {
  KRTime time("010101");
  EXPECT_EQ((time = "xx3456.7"), 0);
  EXPECT_EQ(Shown(time), "0-0-0 0:34:56.700 0/0 ");
  EXPECT_EQ(TakeWarnings(), (Warnings{{KRPW_BADFORMAT, "xx3456.7", "ConvertStringToKRTime"}}));
  EXPECT_EQ((time = "246060"), 0);
  EXPECT_EQ(TakeWarnings(), (Warnings{{KRPW_OUTOFRANGE, "246060", "ConvertStringToKRTime"}}));
  const KRTime made("12-00");
  EXPECT_EQ(TakeWarnings(), (Warnings{{KRPW_BADFORMAT, "12-00", "ConvertStringToKRTime"}}));
}

TEST_F(DateReading, ATimeIsClearedWholeBeforeItIsRead) {
  KRTime time(2000, 1, 2, 3, 4, 5, 6, -5, 0);
  EXPECT_EQ(time.ConvertStringToKRTime("12"), 1);
  EXPECT_EQ(Shown(time), "0-0-0 12:0:0.0 0/0 ");
}

// --- Zones ---------------------------------------------------------------------------------------

struct ZoneCase {
  const char* text;
  u16 result;
  const char* shown;
  std::size_t warnings;
};

class ZoneText : public ValueTest, public testing::WithParamInterface<ZoneCase> {};

TEST_P(ZoneText, IsReadWithItsFlaws) {
  OpenDate date;
  EXPECT_EQ(date.ExtractTimeZone(GetParam().text), GetParam().result);
  EXPECT_EQ(Shown(date), std::string("0-0-0 0:0:0.0 ") + GetParam().shown);
  const Warnings seen = TakeWarnings();
  EXPECT_EQ(seen.size(), GetParam().warnings);
  for (const SeenWarning& warning : seen) EXPECT_EQ(warning.code, KRPW_BADFORMAT);
}

INSTANTIATE_TEST_SUITE_P(
    All, ZoneText,
    testing::Values(ZoneCase{"", 1, "0/0 ", 0}, ZoneCase{"[-5:EST]", 1, "-5/0 EST", 0},
                    ZoneCase{"[-3.5:NST]", 1, "-3/-50 NST", 0}, ZoneCase{"[5.5]", 1, "5/50 ", 0},
                    ZoneCase{"[-0.5]", 1, "0/-50 ", 0}, ZoneCase{"[+5.75]", 1, "5/75 ", 0},
                    ZoneCase{"[5.05]", 1, "5/5 ", 0}, ZoneCase{"[.5]", 1, "0/50 ", 0},
                    ZoneCase{"[5.]", 1, "5/0 ", 0}, ZoneCase{"[5-]", 1, "-5/0 ", 0},
                    ZoneCase{"[-]", 1, "0/0 ", 0}, ZoneCase{"[99]", 1, "99/0 ", 0},
                    // Errors that are ignored.
                    ZoneCase{"[]", 1, "0/0 ", 1}, ZoneCase{"[1:]", 1, "1/0 ", 1},
                    ZoneCase{"[1:AB]", 1, "1/0 AB", 1}, ZoneCase{"[1:ABCD]", 1, "1/0 ABC", 1},
                    ZoneCase{"[1:ABC", 1, "1/0 ABC", 1}, ZoneCase{"[1:AB", 1, "1/0 AB", 2},
                    ZoneCase{"[1:", 1, "1/0 ", 2},
                    // Errors that are not ignored.
                    ZoneCase{"-5:EST]", 0, "0/0 ", 1}, ZoneCase{"[:EST]", 0, "0/0 ", 1},
                    ZoneCase{"[EST]", 0, "0/0 ", 1}, ZoneCase{"[--5]", 0, "0/0 ", 1},
                    ZoneCase{"[5.-5]", 0, "0/0 ", 1}, ZoneCase{"[5.5.5]", 0, "0/0 ", 1},
                    ZoneCase{"[5.555]", 0, "0/0 ", 1}, ZoneCase{"[5", 0, "0/0 ", 1},
                    ZoneCase{"[", 0, "0/0 ", 1}, ZoneCase{"[ 5]", 0, "0/0 ", 1}));

TEST_F(DateReading, ANullZoneTextIsNoZone) {
  OpenDate date;
  EXPECT_EQ(date.ExtractTimeZone(nullptr), 1);
  EXPECT_EQ(TakeWarnings(), Warnings{});
}

TEST_F(DateReading, AZoneWithoutItsEndTakesThreeCharactersAsItsName) {
  KRDateTime date;
  EXPECT_EQ(date.ConvertStringToKRDateTime("19991231120000[-5:ABCD]"), 1);
  EXPECT_EQ(Shown(date), "1999-12-31 12:0:0.0 -5/0 ABC");
  EXPECT_EQ(TakeWarnings(),
            (Warnings{{KRPW_BADFORMAT, "[-5:ABCD]", "ExtractTimeZone"},
                      {KRPW_BADFORMAT, "-5:ABC", "SetTimeZone (time zone mismatch"}}));
}

TEST_F(DateReading, AnUnreadableZoneFailsTheDate) {
  KRDateTime date;
  EXPECT_EQ(date.ConvertStringToKRDateTime("19991231120000[EST]"), 0);
  EXPECT_EQ(Shown(date), "0-0-0 0:0:0.0 0/0 ");
  EXPECT_EQ(TakeWarnings(),
            (Warnings{{KRPW_BADFORMAT, "[EST]", "ExtractTimeZone"},
                      {KRPW_BADFORMAT, "19991231120000[EST]", "ConvertStringToKRDateTime"}}));
}

TEST_F(DateReading, ManyDigitsOfAnOffsetDoNotWrapIntoRange) {
  KRTime time;
  for (const char* const text : {"12[65541]", "12[-65531]", "12[4294967301]", "12[99999999999]"}) {
    EXPECT_EQ(time.ConvertStringToKRTime(text), 0) << text;
    EXPECT_EQ(TakeCodes(), Codes{KRPW_OUTOFRANGE}) << text;
  }
}

struct NamedZoneCase {
  s16 offset;
  const char* standard;
  const char* daylight;
};

class NamedZone : public ValueTest, public testing::WithParamInterface<NamedZoneCase> {};

TEST_P(NamedZone, IsKnownByBothItsNames) {
  const s16 offset = GetParam().offset;
  KRDateTime date;
  EXPECT_EQ(date.SetTimeZone(GetParam().standard, offset, 0), 1);
  EXPECT_EQ(date.SetTimeZone(GetParam().daylight, offset, 0), 1);
  EXPECT_EQ(date.SetTimeZone("", offset, 0), 1);
  EXPECT_EQ(date.SetTimeZone(nullptr, offset, 0), 1);
  EXPECT_EQ(date.SetTimeZone("XXX", offset, 50), 1);
  EXPECT_EQ(TakeWarnings(), Warnings{});
  EXPECT_EQ(date.SetTimeZone("XXX", offset, 0), 1);
  EXPECT_EQ(TakeWarnings(), (Warnings{{KRPW_BADFORMAT, std::to_string(offset) + ":XXX",
                                       "SetTimeZone (time zone mismatch"}}));
  EXPECT_STREQ(date.GetTimeZone(), "XXX");
  EXPECT_EQ(date.GetGMTOffset(), offset);
}

INSTANTIATE_TEST_SUITE_P(All, NamedZone,
                         testing::Values(NamedZoneCase{-4, "AST", "EDT"},
                                         NamedZoneCase{-5, "EST", "CDT"},
                                         NamedZoneCase{-6, "CST", "MDT"},
                                         NamedZoneCase{-7, "MST", "PDT"},
                                         NamedZoneCase{-8, "PST", "YDT"}));

TEST_F(DateReading, ZonesOutsideTheTableGoUntested) {
  KRDateTime date;
  EXPECT_EQ(date.SetTimeZone("CET", 1, 0), 1);
  EXPECT_EQ(date.SetTimeZone("XXX", -3, 0), 1);
  EXPECT_EQ(date.SetTimeZone("XXX", -9, 0), 1);
  EXPECT_EQ(TakeWarnings(), Warnings{});
  EXPECT_EQ(date.SetTimeZone("est", -5, 0), 1);
  EXPECT_EQ(TakeCodes(), Codes{KRPW_BADFORMAT});
  EXPECT_EQ(date.SetTimeZone("PST", -5, 0), 1);
  EXPECT_EQ(TakeCodes(), Codes{KRPW_BADFORMAT});
}

}  // namespace
