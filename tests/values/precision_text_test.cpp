// The text of exact decimals: what is read, what is refused, what is written.

#include <gtest/gtest.h>

#include <string>

#include "krofx/values/precision_integer.h"
#include "precision_values.h"
#include "value_warnings.h"

namespace {

using krofx::internal::AllocationFailure;

class NumberText : public ValueTest {};

struct TextCase {
  const char* text;
  const char* shown;
  const char* written;
};

// --- Reading -------------------------------------------------------------------------------------

class GoodNumber : public ValueTest, public testing::WithParamInterface<TextCase> {};

TEST_P(GoodNumber, IsReadAndWritten) {
  KRPrecisionInteger n;
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(GetParam().text), 1);
  EXPECT_EQ(Shown(n), GetParam().shown);
  EXPECT_STREQ(n, GetParam().written);
  EXPECT_EQ(TakeWarnings(), Warnings{});
}

INSTANTIATE_TEST_SUITE_P(
    All, GoodNumber,
    testing::Values(
        TextCase{"1234.50", "123450e2", "1234.5"}, TextCase{"100.00", "10000e2", "100"},
        TextCase{"0.05", "5e2", ".05"}, TextCase{"-0.50", "-50e2", "-.5"},
        TextCase{"0.00", "0e2", "0"}, TextCase{"-0.00", "-0e2", "-0"}, TextCase{"0", "0e0", "0"},
        TextCase{"-0", "-0e0", "-0"}, TextCase{"1,234.56", "123456e2", "1234.56"},
        TextCase{"1.2,3", "123e3", ".123"}, TextCase{"+5", "5e0", "5"},
        TextCase{"-5", "-5e0", "-5"}, TextCase{".5", "5e1", ".5"}, TextCase{"5.", "5e0", "5"},
        TextCase{"12.50", "1250e2", "12.5"}, TextCase{"-", "-0e0", "-0"}, TextCase{"+", "0e0", "0"},
        TextCase{".", "0e0", "0"}, TextCase{",", "0e0", "0"}, TextCase{",,1,,", "1e0", "1"},
        TextCase{"007", "7e0", "7"}, TextCase{"1000", "1000e0", "1000"},
        TextCase{"1200.00", "120000e2", "1200"},
        TextCase{"42949672.95", "4294967295e2", "42949672.95"},
        TextCase{"42949672.96", "4294967296e2", "42949672.96"},
        TextCase{"-42949672.96", "-4294967296e2", "-42949672.96"},
        TextCase{"9999999999999999999", "9999999999999999999e0", "9999999999999999999"},
        TextCase{"10000000000000000000", "10000000000000000000e0", "10000000000000000000"},
        TextCase{"18446744073709551616", "18446744073709551616e0", "18446744073709551616"},
        TextCase{"1234567890123456789012345678", "1234567890123456789012345678e0",
                 "1234567890123456789012345678"},
        TextCase{"12345678901234.56789012345678", "1234567890123456789012345678e14",
                 "12345678901234.56789012345678"},
        TextCase{".0000000000000000000000000001", "1e28", ".0000000000000000000000000001"},
        TextCase{"-9999999999999999999999999999", "-9999999999999999999999999999e0",
                 "-9999999999999999999999999999"}));

struct BadCase {
  const char* text;
  const char* shown;
  KRParseWarning code;
};

class BadNumber : public ValueTest, public testing::WithParamInterface<BadCase> {};

TEST_P(BadNumber, IsRefusedWithOneWarningAndKeepsWhatWasRead) {
  KRPrecisionInteger n(77, 1);
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(GetParam().text), 0);
  EXPECT_EQ(Shown(n), GetParam().shown);
  EXPECT_EQ(TakeWarnings(), (Warnings{{GetParam().code, GetParam().text, ""}}));
}

INSTANTIATE_TEST_SUITE_P(
    All, BadNumber,
    testing::Values(
        BadCase{"", "0e0", KRPW_BADFORMAT}, BadCase{"1.2.3", "123e3", KRPW_BADFORMAT},
        BadCase{"12a", "12e0", KRPW_BADFORMAT}, BadCase{" 12", "12e0", KRPW_BADFORMAT},
        BadCase{"12 ", "12e0", KRPW_BADFORMAT}, BadCase{"12-", "-12e0", KRPW_BADFORMAT},
        BadCase{"12+", "12e0", KRPW_BADFORMAT}, BadCase{"--5", "-5e0", KRPW_BADFORMAT},
        BadCase{"+-5", "-5e0", KRPW_BADFORMAT}, BadCase{"-+5", "-5e0", KRPW_BADFORMAT},
        BadCase{",-5", "-5e0", KRPW_BADFORMAT}, BadCase{"1e5", "15e0", KRPW_BADFORMAT},
        BadCase{"$5", "5e0", KRPW_BADFORMAT}, BadCase{"1:5", "15e0", KRPW_BADFORMAT},
        BadCase{"1/5", "15e0", KRPW_BADFORMAT}, BadCase{"\xB2", "0e0", KRPW_BADFORMAT},
        // Of two errors the first is reported.
        BadCase{"x12345678901234567890123456789", "12345678901234567890123456789e0",
                KRPW_BADFORMAT},
        BadCase{"12345678901234567890123456789x", "1234567890123456789012345678e0", KRPW_TOOLONG},
        // Reading ends at the 29th digit, so the point after it is not read.
        BadCase{"12345678901234567890123456789.5", "1234567890123456789012345678e0", KRPW_TOOLONG},
        BadCase{"1.2345678901234567890123456789", "1234567890123456789012345678e28", KRPW_TOOLONG},
        BadCase{"00000000000000000000000000000", "0e0", KRPW_TOOLONG},
        // The places are counted, not the digits: a number with 30 places is not valid.
        BadCase{".,,,,,,,,,,,,,,,,,,,,,,,,,,,,,5", "5e30", KRPW_BADFORMAT}));

TEST_F(NumberText, AMalformedNumberIsReadOnPastTheLimitAndWraps) {
  KRPrecisionInteger n;
  // 2^96 + 5.
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger("x79228162514264337593543950341"), 0);
  EXPECT_EQ(Shown(n), "5e0");
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger("x100000000000000000000000000000000000000005"), 0);
  KRPrecisionInteger power(1, 0);
  for (int i = 0; i < 41; ++i) power.Mul10InPlace();
  EXPECT_EQ(n == power + KRPrecisionInteger(5, 0), 1);
}

TEST_F(NumberText, ALimitOf28DigitsHolds) {
  KRPrecisionInteger n;
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(std::string(28, '9').c_str()), 1);
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(std::string(29, '9').c_str()), 0);
  EXPECT_EQ(Shown(n), std::string(28, '9') + "e0");
  EXPECT_EQ(TakeCodes(), Codes{KRPW_TOOLONG});
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(std::string(29, '0').c_str()), 0);
  EXPECT_EQ(TakeCodes(), Codes{KRPW_TOOLONG});
}

TEST_F(NumberText, ANullNumberTextIsAnEmptyOne) {
  KRPrecisionInteger n(5, 0);
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(nullptr), 0);
  EXPECT_EQ(Shown(n), "0e0");
  EXPECT_EQ(TakeWarnings(), (Warnings{{KRPW_BADFORMAT, "", ""}}));
}

TEST_F(NumberText, PlacesBeyond16BitsDoNotWrapIntoAValidNumber) {
  KRPrecisionInteger n;
  const std::string text = "1." + std::string(65536, ',');
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(text.c_str()), 0);
  EXPECT_EQ(n.Decimal(), 65535);
  EXPECT_EQ(n.IsValid(), 0);
}

TEST_F(NumberText, AWarningAboutAHugeTextKeepsWhatAStringHolds) {
  KRPrecisionInteger n;
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(std::string(70000, 'x').c_str()), 0);
  const Warnings seen = TakeWarnings();
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_EQ(seen[0].value.size(), 65534U);
}

TEST_F(NumberText, ANumberIsReadFromTheMiddleOfAText) {
  const char text[] = "<TRNAMT>-12.50<NAME>";
  KRPrecisionInteger n;
  EXPECT_EQ(n.Parse(text + 8, 6), 1);
  EXPECT_EQ(Shown(n), "-1250e2");
  EXPECT_EQ(n.Parse(text + 8, 7), 0);
  EXPECT_EQ(TakeWarnings(), (Warnings{{KRPW_BADFORMAT, "-12.50<", ""}}));
}

TEST_F(NumberText, ReadingANumberTakesNoMemory) {
  AllocationFailure::FailAt(1, true);
  KRPrecisionInteger n("123456789.25");
  n = "-5";
  EXPECT_EQ(AllocationFailure::Count(), 0U);
  AllocationFailure::FailAt(0);
  EXPECT_EQ(Shown(n), "-5e0");
}

TEST_F(NumberText, ConstructionAndAssignmentFromTextParse) {
  KRPrecisionInteger n("1.50");
  EXPECT_EQ(Shown(n), "150e2");
  EXPECT_EQ(&(n = "-2"), &n);
  EXPECT_EQ(Shown(n), "-2e0");
  n = "oops";
  EXPECT_EQ(Shown(n), "0e0");
  EXPECT_EQ(TakeCodes(), Codes{KRPW_BADFORMAT});
}

// --- Writing -------------------------------------------------------------------------------------

struct WriteCase {
  s32 value;
  u16 decimals;
  const char* written;
};

class WrittenNumber : public ValueTest, public testing::WithParamInterface<WriteCase> {};

TEST_P(WrittenNumber, HasNoZerosToSpare) {
  const KRPrecisionInteger n(GetParam().value, GetParam().decimals);
  EXPECT_STREQ(n, GetParam().written);
}

INSTANTIATE_TEST_SUITE_P(
    All, WrittenNumber,
    testing::Values(WriteCase{5, 3, ".005"}, WriteCase{50, 2, ".5"}, WriteCase{1250, 2, "12.5"},
                    WriteCase{10000, 2, "100"}, WriteCase{0, 29, "0"}, WriteCase{0, 5, "0"},
                    WriteCase{-1, 29, "-.00000000000000000000000000001"}, WriteCase{7, 30, "0"},
                    WriteCase{-7, 30, "0"}, WriteCase{7, 65535, "0"}, WriteCase{10, 1, "1"},
                    WriteCase{-2147483647 - 1, 0, "-2147483648"},
                    WriteCase{2147483647, 9, "2.147483647"}, WriteCase{1001, 3, "1.001"}));

TEST_F(NumberText, TheLargestNumbersAreWrittenWhole) {
  KRPrecisionInteger n = Largest();
  EXPECT_STREQ(n, "79228162514264337593543950335");
  n.Negate();
  EXPECT_EQ(n.SetDecimal(29), 1);
  EXPECT_STREQ(n, "-.79228162514264337593543950335");
  EXPECT_EQ(std::string(n).size() + 1, KRPrecisionInteger::kTextSize);
  EXPECT_EQ(n.SetDecimal(28), 1);
  EXPECT_STREQ(n, "-7.9228162514264337593543950335");
}

TEST_F(NumberText, TrailingZerosOfALargeNumberGoOnlyBehindThePoint) {
  EXPECT_STREQ(Number("10000000000000000.000"), "10000000000000000");
  EXPECT_STREQ(Number("10000000000000000.0100"), "10000000000000000.01");
  EXPECT_STREQ(Number("1000000000000000000000000000"), "1000000000000000000000000000");
}

TEST_F(NumberText, TheTextBelongsToTheNumberAndIsOverwritten) {
  KRPrecisionInteger n(1, 0);
  char* const first = n;
  EXPECT_STREQ(first, "1");
  n = 25;
  EXPECT_STREQ(first, "1");
  char* const second = n;
  EXPECT_EQ(first, second);
  EXPECT_STREQ(first, "25");
  const KRPrecisionInteger copy(n);
  char* const other = copy;
  EXPECT_NE(first, other);
  EXPECT_STREQ(other, "25");
}

TEST_F(NumberText, NoMemoryForTheTextGivesNullAndTheAlarm) {
  KRPrecisionInteger n(1, 0);
  AllocationFailure::FailAt(1);
  char* const text = n;
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  EXPECT_STREQ(n, "1");
}

TEST_F(NumberText, TheTextCanBeWrittenToTheCallersRoom) {
  char room[KRPrecisionInteger::kTextSize];
  AllocationFailure::FailAt(1, true);
  EXPECT_EQ(KRPrecisionInteger(-1250, 2).WriteText(room), 5);
  EXPECT_EQ(AllocationFailure::Count(), 0U);
  EXPECT_STREQ(room, "-12.5");
}

TEST_F(NumberText, WhatIsWrittenReadsBackEqual) {
  u32 state = 12345;
  const auto random = [&state] { return state = state * 1664525U + 1013904223U; };
  for (int i = 0; i < 2000; ++i) {
    KRPrecisionInteger n(static_cast<s32>(random()), 0);
    n = n * KRPrecisionInteger(static_cast<s32>(random() >> (random() % 32)), 0);
    EXPECT_EQ(n.SetDecimal(static_cast<u16>((random() >> 8) % 20)), 1);
    KRPrecisionInteger read;
    // A whole number of 20 decimals can have more leading zeros than digits are allowed.
    ASSERT_EQ(read.ConvertStringToKRPrecisionInteger(n), 1) << Shown(n);
    ASSERT_EQ(read == n, 1) << Shown(n);
  }
}

// --- The rules of the derived numbers at reading -------------------------------------------------

struct RuleCase {
  const char* text;
  u16 percent;
  u16 positive;
};

class NumberRule : public ValueTest, public testing::WithParamInterface<RuleCase> {};

TEST_P(NumberRule, AppliesWhenTextIsRead) {
  KRPercent percent;
  EXPECT_EQ(percent.ConvertStringToKRPrecisionInteger(GetParam().text), GetParam().percent);
  EXPECT_EQ(percent.IsValid(), GetParam().percent);
  EXPECT_EQ(TakeCodes(), GetParam().percent ? Codes{} : Codes{KRPW_BADFORMAT});

  KRPosPrecisionInteger positive;
  EXPECT_EQ(positive.ConvertStringToKRPrecisionInteger(GetParam().text), GetParam().positive);
  EXPECT_EQ(positive.IsValid(), GetParam().positive);
  EXPECT_EQ(TakeCodes(), GetParam().positive ? Codes{} : Codes{KRPW_BADFORMAT});
}

INSTANTIATE_TEST_SUITE_P(All, NumberRule,
                         testing::Values(RuleCase{"100.01", 0, 1}, RuleCase{"100.00", 1, 1},
                                         RuleCase{"100", 1, 1}, RuleCase{"99.999", 1, 1},
                                         RuleCase{"0", 1, 1}, RuleCase{"0.000", 1, 1},
                                         RuleCase{"-0", 0, 0}, RuleCase{"-1", 0, 0},
                                         RuleCase{"-.01", 0, 0}, RuleCase{"12.5", 1, 1}));

TEST_F(NumberText, TheRuleAppliesInConstructorsAndAssignmentsToo) {
  KRPercent percent("101");
  EXPECT_EQ(Shown(percent), "101e0");
  EXPECT_EQ(TakeCodes(), Codes{KRPW_BADFORMAT});
  percent = "102";
  EXPECT_EQ(TakeCodes(), Codes{KRPW_BADFORMAT});
  percent = "50";
  EXPECT_EQ(TakeCodes(), Codes{});
  const KRPosPrecisionInteger positive("-1");
  EXPECT_EQ(Shown(positive), "-1e0");
  EXPECT_EQ(TakeCodes(), Codes{KRPW_BADFORMAT});
}

TEST_F(NumberText, OnlyTheFirstErrorOfANumberOutsideItsRuleIsTold) {
  KRPercent percent;
  EXPECT_EQ(percent.ConvertStringToKRPrecisionInteger("1x00.01"), 0);
  EXPECT_EQ(TakeCodes(), Codes{KRPW_BADFORMAT});
}

// --- Numbers grouped by commas -------------------------------------------------------------------

TEST_F(NumberText, AGroupedNumberCountsNoCommaAsAPlace) {
  KRCommaSepPrecisionInteger n;
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger("1.2,3"), 1);
  EXPECT_EQ(Shown(n), "123e2");
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger("1,234,567.89"), 1);
  EXPECT_EQ(Shown(n), "123456789e2");
  n = "-9,9";
  EXPECT_EQ(Shown(n), "-99e0");
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(",-5"), 1);
  EXPECT_EQ(Shown(n), "-5e0");
  EXPECT_EQ(TakeWarnings(), Warnings{});
}

TEST_F(NumberText, AGroupedNumberOfCommasAloneIsEmpty) {
  KRCommaSepPrecisionInteger n;
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(",,"), 0);
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(nullptr), 0);
  EXPECT_EQ(TakeWarnings(), (Warnings{{KRPW_BADFORMAT, "", ""}, {KRPW_BADFORMAT, "", ""}}));
}

TEST_F(NumberText, AGroupedNumberHasNoLimitOnItsCommas) {
  KRCommaSepPrecisionInteger n;
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger((std::string(5000, ',') + "1.5").c_str()), 1);
  EXPECT_EQ(Shown(n), "15e1");
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(("1." + std::string(5000, ',')).c_str()), 1);
  EXPECT_EQ(Shown(n), "1e0");
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger(std::string(100, '1').c_str()), 0);
  EXPECT_EQ(TakeCodes(), Codes{KRPW_TOOLONG});
}

TEST_F(NumberText, AGroupedNumberOfManyCommasWithoutMemoryIsZeroAndRaisesTheAlarm) {
  KRCommaSepPrecisionInteger n;
  n = 5;
  AllocationFailure::FailAt(1);
  EXPECT_EQ(n.ConvertStringToKRPrecisionInteger((std::string(100, ',') + "1").c_str()), 0);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  EXPECT_EQ(Shown(n), "0e0");
}

TEST_F(NumberText, TheTextOfAGroupedNumberIsTheOneThatTheBaseMadeLast) {
  KRCommaSepPrecisionInteger n;
  n = "1,250.5";
  char* text = n;
  EXPECT_EQ(text, nullptr);
  EXPECT_STREQ(n.KRPrecisionInteger::operator char*(), "1250.5");
  n = 7;
  EXPECT_STREQ(n, "1250.5");
  const KRCommaSepPrecisionInteger copy(n);
  text = copy;
  EXPECT_EQ(text, nullptr);
}

}  // namespace
