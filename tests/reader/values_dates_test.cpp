// Dates and times as institutions write them.

#include <gtest/gtest.h>

#include "reader/read_values.h"

namespace krofx::testing {
namespace {

ReadValue Date(const std::string& text) { return ReadOne("DTUSER", text); }

TEST(ReadDates, LeavesDatesOfOfxAlone) {
  EXPECT_EQ(Date("20260131"), (ReadValue{"20260131", {}}));
  EXPECT_EQ(ReadValues("DTUSER", {"20260131101112.345[-5:EST]", "0"})[0],
            (ReadValue{"20260131101112.345[-5:EST]", {}}));
  EXPECT_EQ(ReadValues("DTUSER", {"202601311011[5.5]", "0"})[0],
            (ReadValue{"20260131101100.000[5.50]", {}}));
}

TEST(ReadDates, TakesDatesOfZerosAndWordsForNothingAsAbsent) {
  for (const char* const text : {"0", "00000000", "00000000000000", "0000-00-00", "00/00/0000",
                                 "00000000000000[-3:BRT]", "None", "null", "-", "N/A"}) {
    EXPECT_EQ(Date(text), (ReadValue{"absent", {"date-absent"}})) << text;
  }
}

TEST(ReadDates, LeavesOutDatesThatDoNotExist) {
  for (const char* const text :
       {"20260230", "20261301", "20260100", "20250229", "2026-02-30", "99999999", "31012026",
        "260131", "2026013", "202601311", "soon"}) {
    EXPECT_EQ(Date(text), (ReadValue{"absent", {"date-refused"}})) << text;
  }
}

TEST(ReadDates, TakesDividedDates) {
  const Lines form = {"date-form"};
  EXPECT_EQ(Date("2026-01-31"), (ReadValue{"20260131", form}));
  EXPECT_EQ(Date("2026/01/31"), (ReadValue{"20260131", form}));
  EXPECT_EQ(Date("2026.1.5"), (ReadValue{"20260105", form}));
  EXPECT_EQ(Date("2026-01-31T10:11:12"), (ReadValue{"20260131101112", form}));
  EXPECT_EQ(Date("2026-01-31 10:11:12"), (ReadValue{"20260131101112", form}));
  EXPECT_EQ(Date("2026-01-31 10:11"), (ReadValue{"20260131101100", form}));
  EXPECT_EQ(Date("20260131T101112"), (ReadValue{"20260131101112", form}));
  EXPECT_EQ(Date("2026-01-31 10:11:12 PM"), (ReadValue{"20260131221112", form}));
  EXPECT_EQ(Date("2026-01-31T10:11:12.3456789"), (ReadValue{"20260131101112.345", form}));
}

TEST(ReadDates, TakesTheTwelveHoursOfHalfADay) {
  const Lines form = {"date-form"};
  EXPECT_EQ(Date("2026-01-31 12:05 AM"), (ReadValue{"20260131000500", form}));
  EXPECT_EQ(Date("2026-01-31 12:05 pm"), (ReadValue{"20260131120500", form}));
  EXPECT_EQ(Date("2026-01-31 1:05am"), (ReadValue{"20260131010500", form}));
  EXPECT_EQ(Date("20260131111500PM"), (ReadValue{"20260131231500", form}));
  // Hours that a half of a day does not have are no time.
  for (const char* const time : {"0:05 AM", "13:05 PM", "12:60 PM"}) {
    const ReadValue value = Date(std::string("2026-01-31 ") + time);
    EXPECT_EQ(value.value, "20260131") << time;
  }
}

TEST(ReadDates, TakesJoinedTimesOfAllLengths) {
  EXPECT_EQ(Date("2026013110"), (ReadValue{"20260131100000", {}}));
  EXPECT_EQ(Date("20260131101112345"), (ReadValue{"20260131101112.345", {"date-form"}}));
  for (const char* const time : {"1", "101", "10111", "1011123", "10111234", "1011123456"}) {
    const ReadValue value = Date(std::string("20260131T") + time);
    EXPECT_EQ(value.value, "20260131") << time;
  }
}

TEST(ReadDates, TakesMonthsByTheirNames) {
  const Lines form = {"date-form"};
  for (const char* const text :
       {"31 Jan 2026", "31-Jan-2026", "31/JAN/2026", "31 January 2026", "31. Januar 2026",
        "31 janv. 2026", "31 ene 2026", "31 gennaio 2026", "Jan 31, 2026", "January 31 2026",
        "Sat, 31 Jan 2026", "2026-Jan-31"}) {
    EXPECT_EQ(Date(text), (ReadValue{"20260131", form})) << text;
  }
  EXPECT_EQ(Date("15 Mai 2026"), (ReadValue{"20260515", form}));
  EXPECT_EQ(Date("15 ao\xFBt 2026"), (ReadValue{"20260815", form}));
  EXPECT_EQ(Date("15 M\xC4RZ 2026"), (ReadValue{"20260315", form}));
  EXPECT_EQ(Date("31 Jan 2026 22:10:11"), (ReadValue{"20260131221011", form}));
  EXPECT_EQ(Date("Sat, 31 Jan 2026 22:10:11 EST"),
            (ReadValue{"20260131221011.000[-5:EST]", {"date-form", "date-zone"}}));
}

TEST(ReadDates, LeavesOutNamesOfMonthsThatNobodyKnows) {
  // "jui" begins juin and juillet.
  for (const char* const text :
       {"31 Ja 2026", "31 jui 2026", "31 Smarch 2026", "30 Feb 2026", "Jan 2026", "31 Jan 26",
        "Jan Feb 2026", "31 Jan 31", "Foo, 31 Jan 2026"}) {
    EXPECT_EQ(Date(text).value, "absent") << text;
  }
}

TEST(ReadDates, TakesQuotesAndBlanks) {
  const Lines form = {"date-form"};
  for (const char* const text : {"\"20260131\"", "'20260131'", "'20260131", "2026 01 31"}) {
    EXPECT_EQ(Date(text), (ReadValue{"20260131", form})) << text;
  }
  EXPECT_EQ(Date("\"20260131"), (ReadValue{"absent", {"date-refused"}}));
}

TEST(ReadDates, TakesADayInFrontOnlyWhenItCanBeNoMonth) {
  const Lines form = {"date-form"};
  EXPECT_EQ(Date("31/01/2026"), (ReadValue{"20260131", form}));
  EXPECT_EQ(Date("01/31/2026"), (ReadValue{"20260131", form}));
  EXPECT_EQ(Date("05/05/2026"), (ReadValue{"20260505", form}));
  EXPECT_EQ(Date("01/02/2026"), (ReadValue{"absent", {"date-refused"}}));
  EXPECT_EQ(Date("13/13/2026"), (ReadValue{"absent", {"date-refused"}}));
}

TEST(ReadDates, TakesTheDayFirstBetweenPoints) {
  EXPECT_EQ(Date("02.01.2026"), (ReadValue{"20260102", {"date-form"}}));
  EXPECT_EQ(Date("31.01.2026"), (ReadValue{"20260131", {"date-form"}}));
}

TEST(ReadDates, JudgesTheOrderOfADateByTheOtherDates) {
  const Lines judged = {"date-order", "date-form"};
  for (const char* const other : {"31/01/2026", "31-01-2026", "31/1-2026"}) {
    EXPECT_EQ(ReadValues("DTUSER", {"01/02/2026", other})[0], (ReadValue{"20260201", judged}))
        << other;
  }
  EXPECT_EQ(ReadValues("DTUSER", {"01/02/2026", "01/31/2026"})[0], (ReadValue{"20260102", judged}));
  for (const Lines& silent : {Lines{"01/31/2026", "31/01/2026"}, Lines{"31/31/2026"},
                              Lines{"31.01.2026"}, Lines{"311/01/2026"}, Lines{"31/01/26"}}) {
    Lines dates = {"01/02/2026"};
    dates.insert(dates.end(), silent.begin(), silent.end());
    EXPECT_EQ(ReadValues("DTUSER", dates)[0], (ReadValue{"absent", {"date-refused"}}))
        << silent.back();
  }
}

TEST(ReadDates, TakesAnySignInFrontOfTheFraction) {
  EXPECT_EQ(Date("20260131101112:345[-5:EST]"),
            (ReadValue{"20260131101112.345[-5:EST]", {"date-form"}}));
  EXPECT_EQ(Date("20260131101112,5"), (ReadValue{"20260131101112.500", {"date-form"}}));
}

TEST(ReadDates, TakesZonesInOtherForms) {
  const auto zone = [](const std::string& text, const std::string& expected) {
    const ReadValue read = Date("20260131101112" + text);
    EXPECT_EQ(read, (ReadValue{"20260131101112" + expected, {"date-zone"}})) << text;
  };
  zone("[GMT]", "");
  zone("Z", "");
  zone(" UTC", "");
  zone("[UTC+1]", ".000[1]");
  zone("[EST]", ".000[-5:EST]");
  zone("[-3:BRT", ".000[-3:BRT]");
  zone("-3:BRT]", ".000[-3:BRT]");
  zone("+01:00", ".000[1]");
  zone("-0330", ".000[-3.50]");
  zone("[+5:30]", ".000[5.50]");
  zone("[+5:30:IST]", ".000[5.50:IST]");
  zone("[-0:30]", ".000[-0.50]");
  zone("[+1:CEST]", ".000[1]");
  zone("[-5 EST]", ".000[-5:EST]");
  zone("[BRT]", ".000[-3:BRT]");
  zone(" CEST", ".000[2]");
  zone("+00:00", "");
  zone("[+5:30 IST]", ".000[5.50:IST]");
  zone("[- 5:EST]", ".000[-5:EST]");
  zone("[GMT+ 1:CET]", ".000[1:CET]");
  zone("+12:00", ".000[12]");
  EXPECT_EQ(Date("2026-01-31T10:11:12+05:45"),
            (ReadValue{"20260131101112.000[5.75]", {"date-form", "date-zone"}}));
}

TEST(ReadDates, TakesAnOffsetOfZeroAsOfxDoes) {
  // Without a name it is no zone.
  EXPECT_EQ(Date("20260131101112[0]"), (ReadValue{"20260131101112", {}}));
  EXPECT_EQ(Date("2026-01-31 10:11:12[0]"), (ReadValue{"20260131101112", {"date-form"}}));
}

TEST(ReadDates, KeepsADateWhoseZoneOrTimeIsNone) {
  EXPECT_EQ(Date("20260131101112[+13:NZD]"), (ReadValue{"20260131101112", {"date-zone-lost"}}));
  for (const char* const zone :
       {"[Brasilia]", "[EST+1]", "[+12:30]", "+0575", "+05:20", "+5.", "[5.123]", "[+12345]"}) {
    EXPECT_EQ(Date("20260131101112" + std::string(zone)),
              (ReadValue{"20260131101112", {"date-zone-lost"}}))
        << zone;
  }
  EXPECT_EQ(Date("20260131240000"), (ReadValue{"20260131", {"date-time-lost"}}));
  EXPECT_EQ(Date("20260131106099[-3:BRT]"), (ReadValue{"20260131", {"date-time-lost"}}));
}

}  // namespace
}  // namespace krofx::testing
