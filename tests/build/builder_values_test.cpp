// Numbers, booleans, characters, amounts, dates and times.

#include <gtest/gtest.h>

#include "build/writing_root.h"
#include "krofx/core/thread.h"
#include "krofx/values/date_time.h"
#include "krofx/values/precision_integer.h"

using krofx::testing::Outcome;
using krofx::testing::Write;

namespace {

// A number whose text cannot be made, optionally because memory is exhausted.
class Mute : public KRPrecisionInteger {
 public:
  explicit Mute(bool exhausted) : m_exhausted(exhausted) {}
  operator char*() override {
    if (m_exhausted) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return nullptr;
  }

 private:
  bool m_exhausted;
};

// A number with a text of its own.
class Dollars : public KRPrecisionInteger {
 public:
  operator char*() override { return m_text; }

 private:
  char m_text[6] = "$1.00";
};

// A date with a text of its own.
class BlankDate : public KRDateTime {
 public:
  using KRDateTime::KRDateTime;
  u16 GetDateString(KRString& out) override {
    out = "blank";
    return 1;
  }
};

std::string Written(const krofx::testing::WriteFunction& write) {
  const Outcome outcome = Write(write);
  EXPECT_EQ(outcome.status, KRBuildStatus_Done);
  return outcome.text;
}

TEST(BuilderNumbers, AreDecimalDigits) {
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRUShort(0); }), "0\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRUShort(65535); }), "65535\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRSShort(-32768); }), "-32768\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRSShort(32767); }), "32767\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRULong(4294967295u); }), "4294967295\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRSLong(-2147483647 - 1); }), "-2147483648\n");
}

TEST(BuilderNumbers, ArePaddedWithZerosOrBlanks) {
  const auto padded = [](u16 value, char fill, u16 width) {
    return Written([=](KRBuilder& b) { return b.AddKRUShort(value, fill, width); });
  };
  EXPECT_EQ(padded(42, '0', 5), "00042\n");
  EXPECT_EQ(padded(42, ' ', 5), "   42\n");
  EXPECT_EQ(padded(42, '-', 5), "42   \n");
  EXPECT_EQ(padded(65535, '0', 3), "65535\n");
  EXPECT_EQ(padded(42, '0', 2), "42\n");
  EXPECT_EQ(padded(0, '0', 4), "0000\n");
  EXPECT_EQ(padded(7, '0', 0), "7\n");
}

TEST(BuilderNumbers, TakeNoFormatFromTheFill) {
  for (char fill : {'%', 'n', 's', '*', '\'', 'l', '9', '\0', '\n', '\xff'}) {
    EXPECT_EQ(Written([=](KRBuilder& b) { return b.AddKRUShort(42, fill, 4); }), "  42\n");
  }
}

TEST(BuilderNumbers, ArePaddedToAnyWidth) {
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRUShort(42, '0', 65535); }),
            std::string(65533, '0') + "42\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRUShort(42, '0', 66); }),
            std::string(64, '0') + "42\n");
}

TEST(BuilderNumbers, HaveATagInFront) {
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddTagKRUShort(KRTag_APPVER, 800, '0', 4); }),
            "<APPVER>0800\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddTagKRUShort(KRTag_APPVER, 800); }),
            "<APPVER>800\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddTagKRSShort(KRTag_CODE, -1); }), "<CODE>-1\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddTagKRULong(KRTag_CODE, 4000000000u); }),
            "<CODE>4000000000\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddTagKRSLong(KRTag_CODE, -2000000000); }),
            "<CODE>-2000000000\n");
}

TEST(BuilderNumbers, GoNoFurtherThanAnUnknownTag) {
  const Outcome refused{KRBuildStatus_NullArgument, ""};
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddTagKRUShort(KRTag_None, 1); }), refused);
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddTagKRUShort(KRTag_None, 1, '0', 4); }), refused);
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddTagKRBoolean(KRTag_None, 1); }), refused);
}

TEST(BuilderCharacters, AreWrittenAsTheyStand) {
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRChar('<'); }), "<\n");
}

TEST(BuilderBooleans, AreYForAnythingButZero) {
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRBoolean(0); }), "N\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRBoolean(1); }), "Y\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddKRBoolean(65535); }), "Y\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddTagKRBoolean(KRTag_GENUSERKEY, 0); }),
            "<GENUSERKEY>N\n");
}

TEST(BuilderAmounts, HaveNoZerosThatSayNothing) {
  const KRPrecisionInteger amount("-1234.50");
  for (auto operation :
       {&KRBuilder::AddAmount, &KRBuilder::AddQuantity, &KRBuilder::AddUnitPrice}) {
    EXPECT_EQ(Written([&](KRBuilder& b) { return (b.*operation)(amount); }), "-1234.5\n");
  }
  for (auto operation :
       {&KRBuilder::AddTagKRAmount, &KRBuilder::AddTagKRQuantity, &KRBuilder::AddTagKRUnitPrice}) {
    EXPECT_EQ(Written([&](KRBuilder& b) { return (b.*operation)(KRTag_BALAMT, amount); }),
              "<BALAMT>-1234.5\n");
  }
}

TEST(BuilderAmounts, ReachTheFullPrecision) {
  EXPECT_EQ(Written([](KRBuilder& b) {
              return b.AddAmount(KRPrecisionInteger("-123456789012345678901234567.8"));
            }),
            "-123456789012345678901234567.8\n");
}

TEST(BuilderAmounts, AreRefusedWhenTheirOwnClassRefusesThem) {
  const Outcome refused{KRBuildStatus_NoTextForm, ""};
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddAmount(KRPrecisionInteger(1, 30)); }), refused);
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddAmount(KRPosPrecisionInteger(-1, 0)); }), refused);
  EXPECT_EQ(
      Write([](KRBuilder& b) { return b.AddTagKRAmount(KRTag_BALAMT, KRPrecisionInteger(1, 30)); }),
      (Outcome{KRBuildStatus_NoTextForm, "<BALAMT>"}));
}

TEST(BuilderAmounts, UseTheTextOfTheirOwnClass) {
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddAmount(Dollars()); }), "$1.00\n");
}

TEST(BuilderAmounts, WithoutATextTellExhaustedMemoryFromNoForm) {
  KRBuildStatus status = KRBuildStatus_Done;
  Write([&](KRBuilder& b) { return status = b.AddAmount(Mute(false)); });
  EXPECT_EQ(status, KRBuildStatus_NoTextForm);
  Write([&](KRBuilder& b) { return status = b.AddAmount(Mute(true)); });
  EXPECT_EQ(status, KRBuildStatus_Fatal);
}

TEST(BuilderRates, LieFromZeroToAHundred) {
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddRate(KRPercent("12.50")); }), "12.5\n");
  EXPECT_EQ(Written([](KRBuilder& b) {
              return b.AddTagKRRate(KRTag_DSCRATE, KRPrecisionInteger(100, 0));
            }),
            "<DSCRATE>100\n");
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddRate(KRPercent(10001, 2)); }),
            (Outcome{KRBuildStatus_NoTextForm, ""}));
  EXPECT_EQ(
      Write([](KRBuilder& b) { return b.AddTagKRRate(KRTag_DSCRATE, KRPrecisionInteger(-1, 0)); }),
      (Outcome{KRBuildStatus_NoTextForm, "<DSCRATE>"}));
}

TEST(BuilderDates, HaveTimeAndZoneWhereThereIsOne) {
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddDateTime(KRDateTime("19991231")); }),
            "19991231\n");
  EXPECT_EQ(Written([](KRBuilder& b) {
              return b.AddTagKRDateTime(KRTag_DTASOF, KRDateTime("19991231120000.000[-5:EST]"));
            }),
            "<DTASOF>19991231120000.000[-5:EST]\n");
}

TEST(BuilderDates, AreRefusedWhenNotValid) {
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddDateTime(KRDateTime()); }),
            (Outcome{KRBuildStatus_NoTextForm, ""}));
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddTagKRDateTime(KRTag_DTASOF, KRDateTime()); }),
            (Outcome{KRBuildStatus_NoTextForm, "<DTASOF>"}));
}

TEST(BuilderDates, AreWrittenAsPlainDatesWhateverTheirClass) {
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddDateTime(BlankDate("19991231")); }),
            "19991231\n");
}

TEST(BuilderTimes, AreWrittenAsTimesOfDay) {
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddTime(KRTime("120000.5")); }), "120000.500\n");
  EXPECT_EQ(Written([](KRBuilder& b) { return b.AddTagKRTime(KRTag_PROCENDTM, KRTime("1730")); }),
            "<PROCENDTM>173000\n");
}

TEST(BuilderTimes, AreRefusedWhenNotValid) {
  EXPECT_EQ(Write([](KRBuilder& b) { return b.AddTime(KRTime(0, 0, 0, 24, 0, 0, 0, 0, 0)); }),
            (Outcome{KRBuildStatus_NoTextForm, ""}));
}

}  // namespace
