// The texts and the binary form of dates and times, and the zone name.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "date_values.h"
#include "krofx/values/date_time.h"
#include "value_warnings.h"

namespace {

using krofx::internal::AllocationFailure;

class DateWriting : public ValueTest {};

struct DateTextCase {
  const char* read;
  const char* written;
};

class DateText : public ValueTest, public testing::WithParamInterface<DateTextCase> {};

TEST_P(DateText, HoldsNoMoreThanTheFieldsNeed) {
  const KRDateTime date(GetParam().read);
  KRString out;
  EXPECT_EQ(date.GetDateString(out), 1);
  EXPECT_STREQ(out, GetParam().written);
}

INSTANTIATE_TEST_SUITE_P(
    All, DateText,
    testing::Values(DateTextCase{"19991231", "19991231"},
                    DateTextCase{"19991231000000.000", "19991231"},
                    DateTextCase{"00010203", "00010203"},
                    DateTextCase{"1999123112", "19991231120000"},
                    DateTextCase{"19991231000001", "19991231000001"},
                    DateTextCase{"19991231000000.005", "19991231000000.005"},
                    DateTextCase{"19991231120000.000[-5:EST]", "19991231120000.000[-5:EST]"},
                    DateTextCase{"19991231[-5]", "19991231000000.000[-5]"},
                    DateTextCase{"19991231120000[0:GMT]", "19991231120000"},
                    DateTextCase{"19991231[0:GMT]", "19991231"},
                    DateTextCase{"19991231120000[-3.5:NST]", "19991231120000.000[-3.50:NST]"},
                    DateTextCase{"19991231120000[5.5]", "19991231120000.000[5.50]"},
                    DateTextCase{"19991231120000[-0.5]", "19991231120000.000[-0.50]"},
                    DateTextCase{"19991231120000[0.5:XYZ]", "19991231120000.000[0.50:XYZ]"},
                    DateTextCase{"19991231120000[+12:NZT]", "19991231120000.000[12:NZT]"},
                    DateTextCase{"19991231120000[5.05:NPT]", "19991231120000.000[5.05:NPT]"}));

struct TimeTextCase {
  const char* read;
  const char* written;
};

class TimeText : public ValueTest, public testing::WithParamInterface<TimeTextCase> {};

TEST_P(TimeText, WritesTheTimeInFullAndMillisecondsUnpadded) {
  const KRTime time(GetParam().read);
  KRString out;
  EXPECT_EQ(time.GetTimeString(out), 1);
  EXPECT_STREQ(out, GetParam().written);
}

INSTANTIATE_TEST_SUITE_P(
    All, TimeText,
    testing::Values(TimeTextCase{"", "000000"}, TimeTextCase{"12", "120000"},
                    TimeTextCase{"120000.5", "120000.500"},
                    // Read back, this is 500 milliseconds.
                    TimeTextCase{"120000.005", "120000.5"}, TimeTextCase{"120000.05", "120000.50"},
                    TimeTextCase{"120000[0:GMT]", "120000:GMT"},
                    TimeTextCase{"120000[0.5:XYZ]", "120000:XYZ"},
                    TimeTextCase{"120000[0.5]", "120000"},
                    TimeTextCase{"120000[-5:EST]", "120000[-5:EST]"},
                    TimeTextCase{"120000[-5]", "120000[-5]"},
                    TimeTextCase{"120000.5[-3.5:NST]", "120000.500[-3.50:NST]"}));

TEST_F(DateWriting, WhatIsNoValidDateHasNoDateText) {
  KRString out("before");
  KRDateTime date;
  EXPECT_EQ(date.GetDateString(out), 0);
  date = "19991301";
  EXPECT_EQ(date.GetDateString(out), 0);
  KRTime time("12");
  EXPECT_EQ(time.GetDateString(out), 0);
  date = "19991231";
  date.SetTimeZone("", 13, 0);
  EXPECT_EQ(date.GetDateString(out), 0);
  EXPECT_EQ(date.GetTimeString(out), 0);
  EXPECT_STREQ(out, "before");
}

TEST_F(DateWriting, ADateHasATimeTextToo) {
  KRString out;
  EXPECT_EQ(KRDateTime("19991231123456").GetTimeString(out), 1);
  EXPECT_STREQ(out, "123456");
}

TEST_F(DateWriting, TheTextsTakeTheirFixedRoom) {
  KRString date;
  KRString time;
  EXPECT_EQ(KRDateTime("19991231").GetDateString(date), 1);
  EXPECT_EQ(date.BufferSize(), 39);
  EXPECT_EQ(KRTime("12").GetTimeString(time), 1);
  EXPECT_EQ(time.BufferSize(), 31);

  AllocationFailure::FailAt(1, true);
  EXPECT_EQ(KRDateTime("20000101120000[-5:EST]").GetDateString(date), 1);
  EXPECT_EQ(AllocationFailure::Count(), 0U);
  EXPECT_STREQ(date, "20000101120000.000[-5:EST]");
}

TEST_F(DateWriting, NoMemoryForTheTextOfADateGives0AndTheAlarm) {
  KRString out;
  AllocationFailure::FailAt(1);
  EXPECT_EQ(KRDateTime("19991231").GetDateString(out), 0);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
}

TEST_F(DateWriting, AZoneNameBeyondTheFixedRoomIsWrittenWhole) {
  const std::string name(60, 'Z');
  KRDateTime date("19991231120000");
  date.SetTimeZone(name.c_str(), 1, 0);
  KRString out;
  EXPECT_EQ(date.GetDateString(out), 1);
  EXPECT_EQ(std::string(out), "19991231120000.000[1:" + name + "]");
  EXPECT_EQ(date.GetTimeString(out), 1);
  EXPECT_EQ(std::string(out), "120000[1:" + name + "]");
  date.SetTimeZone(std::string(65534, 'Z').c_str(), 1, 0);
  EXPECT_EQ(date.GetDateString(out), 0);
}

// A host may replace the rules, so writing a text must not depend on them.
class AnythingGoes : public KRDateTime {
 public:
  using KRDateTime::KRDateTime;
  u16 IsValidTime() override { return 1; }
  u16 IsValidDate() const override { return 1; }
};

TEST_F(DateWriting, FieldsOutOfRangeAreWrittenWithoutHarm) {
  const s16 all = -1;  // 65535
  AnythingGoes date(all, all, all, all, all, all, all, -32768, -32768);
  date.SetTimeZone("ABC", -32768, -32768);
  KRString out;
  EXPECT_EQ(date.GetDateString(out), 1);
  EXPECT_STREQ(out,
               "65535655356553565535655356553"
               "5.65535[-32768.32768:ABC]");
  EXPECT_EQ(date.GetTimeString(out), 1);
  EXPECT_STREQ(out, "655356553565535.65535[-32768.32768:ABC]");
}

class Marked : public KRDateTime {
 public:
  u16 GetDateString(KRString& out) override {
    out = "marked";
    return 1;
  }
};

TEST_F(DateWriting, AConstDateIsWrittenByItsOwnClass) {
  const Marked marked;
  const KRDateTimeBase& date = marked;
  KRString out;
  EXPECT_EQ(date.GetDateString(out), 1);
  EXPECT_STREQ(out, "marked");
  EXPECT_EQ(date.IsValidTime(), 1);
}

// --- The zone name -------------------------------------------------------------------------------

TEST_F(DateWriting, TheZoneNameIsAStringOfThreeThatFollowsTheDate) {
  KRDateTime date("19991231120000[-5:EST]");
  const KRString3& zone = date.GetTimeZone();
  EXPECT_STREQ(zone, "EST");
  EXPECT_EQ(zone.SpecLength(), 3);
  EXPECT_EQ(&date.GetTimeZone(), &zone);
  date.SetTimeZone("CDT", -5, 0);
  EXPECT_STREQ(zone, "CDT");
  date = "19991231";
  EXPECT_EQ(zone.IsEmpty(), 1);
  EXPECT_EQ(zone.SpecLength(), 3);
  date.SetTimeZone("LONGER", 1, 0);
  EXPECT_STREQ(zone, "LONGER");
  EXPECT_EQ(zone.IsValid(), 0);
  date.SetTimeZone(zone, 2, 0);
  EXPECT_STREQ(zone, "LONGER");
  date.SetTimeZone("MUCH LONGER", 1, 0);
  date.SetTimeZone(zone, 2, 0);
  EXPECT_STREQ(zone, "MUCH LONGER");
}

TEST_F(DateWriting, CopiesHaveTheirOwnZoneName) {
  KRDateTime date("19991231120000[-5:EST]");
  for (const char* const name : {"EST", "SEVENCH", "EIGHTCHR", "A RATHER LONG NAME"}) {
    date.SetTimeZone(name, 1, 0);
    KRDateTime copy(date);
    KRDateTime assigned("19991231120000[1:CET]");
    assigned = date;
    KRDateTime held("19991231120000[1:CET]");
    EXPECT_STREQ(held.GetTimeZone(), "CET");
    held = date;
    date.SetTimeZone("GMT", 0, 0);
    EXPECT_STREQ(copy.GetTimeZone(), name);
    EXPECT_STREQ(assigned.GetTimeZone(), name);
    EXPECT_STREQ(held.GetTimeZone(), name);
    copy = assigned;
    EXPECT_STREQ(copy.GetTimeZone(), name);
    copy = date;
    EXPECT_STREQ(copy.GetTimeZone(), "GMT");
    const KRDateTime& self = copy;
    copy = self;
    EXPECT_STREQ(copy.GetTimeZone(), "GMT");
  }
}

TEST_F(DateWriting, WithoutMemoryTheZoneNameLooksEmptyOnce) {
  KRDateTime date("19991231120000[-5:EST]");
  AllocationFailure::FailAt(1);
  EXPECT_STREQ(date.GetTimeZone(), "");
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  AllocationFailure::FailAt(2);
  EXPECT_STREQ(date.GetTimeZone(), "");
  AllocationFailure::FailAt(0);
  EXPECT_STREQ(date.GetTimeZone(), "EST");
}

TEST_F(DateWriting, ALongZoneNameWithoutMemoryIsCut) {
  KRDateTime date;
  AllocationFailure::FailAt(1);
  EXPECT_EQ(date.SetTimeZone("A RATHER LONG NAME", 1, 0), 1);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  EXPECT_STREQ(date.GetTimeZone(), "A RATHE");
}

// --- Binary form ---------------------------------------------------------------------------------

TEST_F(DateWriting, TheBinaryFormOfADateHasVersion3WithoutAFraction) {
  const KRDateTime date("20010203040506.789[-5:EST]");
  unsigned char block[32];
  std::memset(block, 0xEE, sizeof block);
  u16 length = 0;
  date.ExportBinary(block, &length);
  EXPECT_EQ(length, 19);
  const unsigned char expected[19] = {3, 0,    0xD1, 7,   2,   3,   4, 5, 6,   0x15,
                                      3, 0xFB, 0xFF, 'E', 'S', 'T', 0, 0, 0xEE};
  EXPECT_EQ(std::memcmp(block, expected, sizeof expected), 0);

  KRDateTime read("19991231120000[5.5]");
  read.ImportBinary(block);
  EXPECT_EQ(Shown(read), Shown(date));
}

TEST_F(DateWriting, TheBinaryFormOfADateHasVersion4WithAFraction) {
  const KRDateTime date("20010203040506.789[-3.5]");
  unsigned char block[32];
  std::memset(block, 0xEE, sizeof block);
  u16 length = 0;
  date.ExportBinary(block, &length);
  EXPECT_EQ(length, 21);
  const unsigned char expected[21] = {4,    0,    0xD1, 7,    2,   3,   4,   5, 6, 0x15, 3,
                                      0xFD, 0xFF, 0xCE, 0xFF, '*', '*', '*', 0, 0, 0xEE};
  EXPECT_EQ(std::memcmp(block, expected, sizeof expected), 0);

  KRDateTime read("19991231120000[1:CET]");
  read.ImportBinary(block);
  EXPECT_EQ(Shown(read), Shown(date));
}

TEST_F(DateWriting, BinaryBlocksOfOtherVersionsAreReadOrIgnored) {
  const KRDateTime date("20010203040506.789[-5:EST]");
  char block[32] = {};
  date.ExportBinary(block, nullptr);
  block[0] = 2;
  KRDateTime read;
  read.ImportBinary(block);
  EXPECT_EQ(Shown(read), Shown(date));
  for (const char version : {char{0}, char{1}, char{5}}) {
    block[0] = version;
    block[4] = 11;
    read.ImportBinary(block);
    EXPECT_EQ(Shown(read), Shown(date));
  }
  read.ImportBinary(nullptr);
  EXPECT_EQ(Shown(read), Shown(date));
  u16 length = 99;
  date.ExportBinary(nullptr, &length);
  EXPECT_EQ(length, 0);
  date.ExportBinary(nullptr, nullptr);
}

TEST_F(DateWriting, AZoneNameInABinaryBlockEndsWithItsFiveBytes) {
  KRDateTime date("20010203");
  date.SetTimeZone("SIXCHR", 1, 0);
  char block[32] = {};
  date.ExportBinary(block, nullptr);
  EXPECT_STREQ(block + 13, "SIXC");
  std::memset(block + 13, 'X', 19);
  KRDateTime read;
  read.ImportBinary(block);
  EXPECT_STREQ(read.GetTimeZone(), "XXXX");
  std::memset(block + 13, 0, 5);
  read.ImportBinary(block);
  EXPECT_STREQ(read.GetTimeZone(), "");
  EXPECT_STREQ(KRDateTimeBase::m_timeZoneNotInitialized, "***");
}

TEST_F(DateWriting, TheBinaryBlockOfADateIsMadeOnceAndNotCopied) {
  KRDateTime date("20010203");
  void* const block = date.LockBuffer();
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(date.LockBuffer(), block);
  KRDateTime copy(date);
  EXPECT_NE(copy.LockBuffer(), block);
  date.UnLockBuffer();
  AllocationFailure::FailAt(1);
  EXPECT_EQ(date.LockBuffer(), nullptr);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
}

}  // namespace
