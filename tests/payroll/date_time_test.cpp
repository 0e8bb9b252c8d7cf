// Payroll dates, and the conversions and writers of payroll values.

#include "krofx/payroll/payroll_date_time.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

#include "krofx/payroll/employees.h"
#include "krofx/payroll/payroll_amount.h"
#include "krofx/payroll/payroll_builder.h"
#include "krofx/payroll/payroll_data_conversion.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

std::string Shown(const KRPayrollDateTime& date) {
  KRString text("nothing");
  return date.GetDateString(text) == 1 ? Str(text) : "invalid: " + Str(text);
}

/// Tests of values begin with an empty log.
class PayrollDateTimes : public ::testing::Test {
 protected:
  PayrollDateTimes() { TakeWarnings(); }
};

TEST_F(PayrollDateTimes, IsNotBlankByItself) {
  EXPECT_EQ(KRPayrollDateTime().IsEmpty(), 0);
  EXPECT_EQ(Shown(KRPayrollDateTime()), "invalid: nothing");
  const KRPayrollDateTime date(2026, 1, 31, 17, 30, 59, 125);
  EXPECT_EQ(date.IsEmpty(), 0);
  EXPECT_EQ(Shown(date), "20260131173059.125");
  EXPECT_EQ(date.GetGMTOffset(), 0);
  EXPECT_EQ(date.GetGMTOffsetFraction(), 0);
}

TEST_F(PayrollDateTimes, IsMadeFromAText) {
  EXPECT_EQ(Shown(KRPayrollDateTime("20260131")), "20260131");
  EXPECT_EQ(KRPayrollDateTime("20260131").IsEmpty(), 0);
  for (const char* text : {"^@~*", "__OFX_EMPTY_STRING__"}) {
    const KRPayrollDateTime blank(text);
    EXPECT_EQ(blank.IsEmpty(), 1);
    EXPECT_EQ(Shown(blank), "^@~*");
  }
  EXPECT_EQ(TakeWarnings(), Lines());
  EXPECT_EQ(KRPayrollDateTime("soon").IsEmpty(), 0);
  EXPECT_EQ(TakeWarnings().size(), 1u);
}

TEST_F(PayrollDateTimes, StaysBlankWhenADateIsAssigned) {
  KRPayrollDateTime date;
  EXPECT_EQ(date = "^@~*", 1);
  EXPECT_EQ(date = "20260131", 1);
  EXPECT_EQ(date.IsEmpty(), 1);
  EXPECT_EQ(Shown(date), "^@~*");
  date.SetEmpty(0);
  EXPECT_EQ(Shown(date), "20260131");
  EXPECT_EQ(TakeWarnings(), Lines());
}

TEST_F(PayrollDateTimes, KeepsItsFieldsWhileBlank) {
  KRPayrollDateTime date("20260131");
  EXPECT_EQ(date = "__OFX_EMPTY_STRING__", 1);
  EXPECT_EQ(date.GetYear(), 2026);
  date.SetEmpty(0);
  EXPECT_EQ(Shown(date), "20260131");
  EXPECT_EQ(date = "soon", 0);
  EXPECT_EQ(date = static_cast<const char*>(nullptr), 0);
  EXPECT_EQ(TakeWarnings().size(), 2u);
}

TEST_F(PayrollDateTimes, IsBlankThroughTheBase) {
  const KRPayrollDateTime blank("^@~*");
  const KRDateTimeBase& base = blank;
  KRString text;
  EXPECT_EQ(base.GetDateString(text), 1);
  EXPECT_EQ(Str(text), "^@~*");
  KRPayrollDateTime copy(blank);
  EXPECT_EQ(copy.IsEmpty(), 1);
  copy = KRPayrollDateTime("20260131");
  EXPECT_EQ(copy.IsEmpty(), 0);
}

TEST_F(PayrollDateTimes, HasNoTextWithoutMemory) {
  const KRPayrollDateTime blank("^@~*");
  KRString text;
  const FailingAllocation failing(1, true);
  EXPECT_EQ(blank.GetDateString(text), 0);
  EXPECT_TRUE(AlarmIsSet());
}

TEST_F(PayrollDateTimes, AgreesWithItsText) {
  std::mt19937 chance(20260105);
  const auto in = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(chance);
  };
  for (int round = 0; round < 5000; ++round) {
    char text[64];
    std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02d.%03d[%d.%02d:EST]", in(1, 9999),
                  in(1, 12), in(1, 28), in(0, 23), in(0, 59), in(0, 59), in(0, 999),
                  in(-11, 11) | 1, in(0, 99));
    if (round % 3 == 0) text[8] = '\0';
    const KRPayrollDateTime first(text);
    const std::string written = Shown(first);
    KRPayrollDateTime second;
    ASSERT_EQ(KRPayrollDataConversion::StringToPayrollDateTime(KRString(written.c_str()), second),
              1);
    ASSERT_EQ(Shown(second), written) << text;
    ASSERT_TRUE(first == second) << text;
  }
  TakeWarnings();
}

TEST(KRPayrollDataConversion, ReadsAmountsByTheirOwnRule) {
  KRPayrollAmount amount;
  EXPECT_EQ(KRPayrollDataConversion::StringToPayrollAmount(KRString("5%"), amount), 1);
  EXPECT_EQ(amount.IsPercent(), 1);
  EXPECT_EQ(KRPayrollDataConversion::StringToPayrollAmount(KRString("^@~*"), amount), 1);
  EXPECT_EQ(amount.IsEmpty(), 1);
  EXPECT_EQ(KRPayrollDataConversion::StringToPayrollAmount(KRString("five"), amount), 0);
  TakeWarnings();
}

TEST(KRPayrollDataConversion, LeavesABlankDateBlank) {
  KRPayrollDateTime date;
  EXPECT_EQ(KRPayrollDataConversion::StringToPayrollDateTime(KRString("^@~*"), date), 1);
  EXPECT_EQ(KRPayrollDataConversion::StringToPayrollDateTime(KRString("20260131"), date), 1);
  EXPECT_EQ(Shown(date), "^@~*");
  EXPECT_EQ(KRPayrollDataConversion::StringToPayrollDateTime(KRString("soon"), date), 0);
  TakeWarnings();
}

/// A payroll builder that counts what goes through its own operations.
class CountingBuilder : public KRPayrollBuilder {
 public:
  KRBuildStatus AddPayrollAmount(const KRPayrollAmount& value) override {
    ++amounts;
    return KRPayrollBuilder::AddPayrollAmount(value);
  }
  KRBuildStatus AddPayrollDateTime(const KRPayrollDateTime& value) override {
    ++dates;
    return KRPayrollBuilder::AddPayrollDateTime(value);
  }
  int amounts = 0;
  int dates = 0;
};

/// An object that writes one amount and one date, each after its tag.
class AmountAndDate : public KRDataObj {
 public:
  AmountAndDate(const char* amount, const char* date) : m_amount(amount), m_date(date) {}
  KRBuildStatus Build(KRBuilder* builder) const override {
    auto& payroll = dynamic_cast<KRPayrollBuilder&>(*builder);
    payroll.AddTagElement(KRTag_N_AMT);
    EXPECT_EQ(payroll.AddPayrollAmount(m_amount), KRBuildStatus_Done);
    payroll.AddTagElement(KRTag_N_DTTX);
    return payroll.AddPayrollDateTime(m_date);
  }

 private:
  KRPayrollAmount m_amount;
  KRPayrollDateTime m_date;
};

std::string WrittenBy(KRBuilder& builder, KRDataObj& object) {
  KRBuffer buffer(0, 0);
  EXPECT_EQ(builder.Build(&buffer, &object, KRBuildStringOpt_Strict, 0), KRBuildStatus_Done);
  return ContentOf(buffer);
}

TEST(KRPayrollBuilder, WritesTheTextsOfPayrollValues) {
  KRPayrollBuilder builder;
  AmountAndDate values("$5", "20260131");
  EXPECT_EQ(WrittenBy(builder, values), "<N.AMT>$5.00\n<N.DTTX>20260131\n");
  AmountAndDate blank("^@~*", "__OFX_EMPTY_STRING__");
  EXPECT_EQ(WrittenBy(builder, blank), "<N.AMT>^@~*\n<N.DTTX>^@~*\n");
}

TEST(KRPayrollBuilder, WritesAnEmptyTextForADateThatIsNone) {
  KRPayrollBuilder builder;
  AmountAndDate values("5%", "soon");
  TakeWarnings();
  EXPECT_EQ(WrittenBy(builder, values), "<N.AMT>5%\n<N.DTTX>\n");
}

TEST(KRPayrollBuilder, HasNothingToWriteToBeforeABuild) {
  KRPayrollBuilder builder;
  EXPECT_EQ(builder.AddPayrollAmount(KRPayrollAmount()), KRBuildStatus_NullArgument);
  EXPECT_EQ(builder.AddPayrollDateTime(KRPayrollDateTime("^@~*")), KRBuildStatus_NullArgument);
}

TEST(KRPayrollBuilder, IsAskedForTheValuesOfAggregates) {
  Parsed<KREmployee> employee("<N.DTHIRE>20260105");
  EXPECT_EQ(TextOf(*employee), "<N.DTHIRE>20260105\n");
  CountingBuilder counting;
  EXPECT_EQ(WrittenBy(counting, *employee), "<N.DTHIRE>20260105\n");
  Parsed<KRSick> leave("<N.HRS>12.5");
  EXPECT_EQ(WrittenBy(counting, *leave), "<N.HRS>12.5\n");
  EXPECT_EQ(counting.dates, 1);
  EXPECT_EQ(counting.amounts, 1);
}

}  // namespace
}  // namespace krofx::testing
