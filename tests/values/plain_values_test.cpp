// Plain dates and decimals are read and written like KRDateTime and KRPrecisionInteger, but a text
// that would cause a warning there is not read here.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "krofx/core/parse_logger.h"
#include "krofx/values/date_time.h"
#include "krofx/values/internal/plain_date.h"
#include "krofx/values/internal/plain_decimal.h"
#include "krofx/values/precision_integer.h"

namespace {

using krofx::internal::PlainDate;
using krofx::internal::PlainDecimal;
using krofx::internal::ReadCommonDate;
using krofx::internal::ReadCommonDecimal;

u16 WarningsSince(u16 before) {
  return static_cast<u16>(KRParseLogger::TheKRParseLogger()->Entries() - before);
}

// Reads a text in both ways; returns whether the plain form accepted it.
bool TakesDate(const std::string& text) {
  PlainDate plain;
  const bool taken = ReadCommonDate(text.data(), text.size(), plain);
  const u16 before = KRParseLogger::TheKRParseLogger()->Entries();
  KRDateTime date;
  const bool isDate = date.Parse(text.data(), text.size()) != 0;
  if (!taken) return false;
  EXPECT_TRUE(isDate) << text;
  EXPECT_EQ(WarningsSince(before), 0) << text;
  KRString expected;
  date.GetDateString(expected);
  char written[PlainDate::kTextSize];
  char* const end = WriteDate(plain, written);
  if (end == nullptr) {
    ADD_FAILURE() << text;
    return true;
  }
  EXPECT_EQ(std::string(written, end), static_cast<const char*>(expected));
  EXPECT_STREQ(KRDateTime(plain).GetTimeZone(), date.GetTimeZone());
  PlainDate back;
  EXPECT_TRUE(date.AsPlain(back));
  EXPECT_EQ(back.millisecond, plain.millisecond);
  EXPECT_EQ(back.gmtOffset, plain.gmtOffset);
  return true;
}

TEST(PlainDate, ReadsTheFormsThatNearlyAllDatesHave) {
  for (const char* text :
       {"20250203", "20240229", "20250203120000", "20250203235959.999", "20250203120000[-5:EST]",
        "20250203120000.000[-5:CDT]", "20250203120000[+9:JST]", "20250203120000.123[0:GMT]",
        "20250203120000[12]", "20250203120000[-12:ABC]", "00010101"}) {
    EXPECT_TRUE(TakesDate(text)) << text;
  }
}

TEST(PlainDate, LeavesAllElse) {
  for (const char* text : {"",
                           "2025",
                           "20250230",
                           "20230229",
                           "20251301",
                           "20250100",
                           "2025020312",
                           "202502031200",
                           "20250203240000",
                           "20250203126000",
                           "20250203120060",
                           "20250203120000.1",
                           "20250203120000.1234",
                           "20250203120000[-5:XYZ]",
                           "20250203120000[-5:PST]",
                           "20250203120000[-5.5:EST]",
                           "20250203120000[-13:ABC]",
                           "20250203120000[]",
                           "20250203120000[:EST]",
                           "20250203120000[-5:EST",
                           "20250203120000[-5:EST]x",
                           "20250203120000[-5:ES]",
                           "20250203120000[--5:EST]",
                           "2025-02-03",
                           "2025020a",
                           "20250203[-5:EST]",
                           "20250203120000[-5:]]]]"}) {
    EXPECT_FALSE(TakesDate(text)) << text;
  }
}

TEST(PlainDate, AgreesWithTheClassOnTextsWithOneCharacterChanged) {
  const std::string text = "20250203120000.000[-5:EST]";
  const std::string characters = "0123456789.[]:+- ASTECDX";
  for (std::size_t at = 0; at < text.size(); ++at) {
    for (const char c : characters) {
      std::string changed = text;
      changed[at] = c;
      TakesDate(changed);
    }
  }
}

TEST(PlainDate, IsNotWrittenWhenItIsNoDate) {
  char out[PlainDate::kTextSize];
  EXPECT_EQ(WriteDate(PlainDate(), out), nullptr);
}

bool TakesDecimal(const std::string& text) {
  PlainDecimal plain;
  const bool taken = ReadCommonDecimal(text.data(), text.size(), plain);
  KRPrecisionInteger number;
  const bool isNumber = number.Parse(text.data(), text.size()) != 0;
  if (!taken) return false;
  EXPECT_TRUE(isNumber) << text;
  EXPECT_STREQ(KRPrecisionInteger(plain), number) << text;
  EXPECT_EQ(plain.decimals, number.Decimal()) << text;
  EXPECT_EQ(plain.sign, number.Sign()) << text;
  char written[KRPrecisionInteger::kTextSize];
  EXPECT_EQ(std::string(written, WriteDecimal(plain, written)), static_cast<const char*>(number));
  return true;
}

TEST(PlainDecimal, ReadsTheFormsThatNearlyAllNumbersHave) {
  for (const char* text : {"0", "-0", "5", "-12.50", "1234567.89", ".5", "5.", "-.05", "000123",
                           "123456789012345678", "-1234567890.12345678", "0.00"}) {
    EXPECT_TRUE(TakesDecimal(text)) << text;
  }
}

TEST(PlainDecimal, LeavesAllElse) {
  for (const char* text : {"", "-", ".", "-.", "+5", "1,000", "1.2.3", "12a", " 5", "5 ", "1e5",
                           "1234567890123456789", "--5", "5-"}) {
    EXPECT_FALSE(TakesDecimal(text)) << text;
  }
}

}  // namespace
