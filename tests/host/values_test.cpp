// Amounts, dates, keywords and texts as types of the standard library.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <limits>
#include <string>

#include "krofx/host/amounts.h"
#include "krofx/host/dates.h"
#include "krofx/host/words.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/signon/signon.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

using namespace std::chrono_literals;  // NOLINT(google-build-using-namespace)
using std::chrono::sys_days;

std::string TextOf(const char* amount, unsigned places) {
  return ToText(KRPrecisionInteger(amount), places);
}

TEST(AmountText, HasTheWantedPlaces) {
  EXPECT_EQ(TextOf("-62.4", 2), "-62.40");
  EXPECT_EQ(TextOf("-.05", 2), "-0.05");
  EXPECT_EQ(TextOf("1200", 2), "1200.00");
  EXPECT_EQ(TextOf("0", 2), "0.00");
  EXPECT_EQ(TextOf("0", 0), "0");
  EXPECT_EQ(TextOf("12.5", 0), "12.5");
}

TEST(AmountText, LosesNoDigit) {
  EXPECT_EQ(TextOf("1.23456", 2), "1.23456");
  EXPECT_EQ(TextOf("1234567890123456789012345678", 2), "1234567890123456789012345678.00");
  EXPECT_EQ(TextOf("-1234567890123456789012345678", 99),
            "-1234567890123456789012345678." + std::string(29, '0'));
}

TEST(AmountText, IsEmptyForNoAmount) {
  EXPECT_TRUE(ToText(KRPrecisionInteger(1, 40), 2).empty());
  EXPECT_TRUE(ToText(std::optional<KRPrecisionInteger>(), 2).empty());
  EXPECT_EQ(ToText(std::optional(KRPrecisionInteger(5, 1)), 2), "0.50");
}

TEST(AmountText, IsATextOfItsOwn) {
  ValueText text = ToText(KRPrecisionInteger(-6240, 2), 2);
  const ValueText copy = text;
  text = ToText(KRPrecisionInteger(1, 0), 0);
  EXPECT_STREQ(copy.c_str(), "-62.40");
  const std::string owned = copy;
  EXPECT_EQ(owned, "-62.40");
  EXPECT_EQ(copy.size(), 6u);
}

std::optional<std::int64_t> MinorOf(const char* amount, unsigned places) {
  return ToMinor(KRPrecisionInteger(amount), places);
}

TEST(MinorUnits, AreExactOrNothing) {
  EXPECT_EQ(MinorOf("-62.40", 2), -6240);
  EXPECT_EQ(MinorOf("-.05", 2), -5);
  EXPECT_EQ(MinorOf("7", 2), 700);
  EXPECT_EQ(MinorOf("0", 2), 0);
  EXPECT_EQ(MinorOf("-0", 2), 0);
  EXPECT_EQ(MinorOf("1.230", 2), 123);
  EXPECT_EQ(MinorOf("1.234", 2), std::nullopt);
  EXPECT_EQ(MinorOf("1.5", 0), std::nullopt);
  EXPECT_EQ(ToMinor(KRPrecisionInteger(1, 40), 2), std::nullopt);
  EXPECT_EQ(ToMinor(std::optional<KRPrecisionInteger>(), 2), std::nullopt);
}

TEST(MinorUnits, ReachTheEndsOf64Bits) {
  EXPECT_EQ(MinorOf("92233720368547758.07", 2), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(MinorOf("-92233720368547758.08", 2), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(MinorOf("92233720368547758.08", 2), std::nullopt);
  EXPECT_EQ(MinorOf("1", 19), std::nullopt);
  EXPECT_EQ(MinorOf("1", 18), 1'000'000'000'000'000'000);
  EXPECT_EQ(MinorOf("1", 4'000'000'000U), std::nullopt);
  EXPECT_EQ(MinorOf("0", 4'000'000'000U), 0);
}

TEST(MinorUnits, ComeBackAsTheAmount) {
  for (const std::int64_t units :
       {std::int64_t{0}, std::int64_t{-6240}, std::int64_t{1},
        std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
    EXPECT_EQ(ToMinor(FromMinor(units, 2), 2), units);
  }
  EXPECT_EQ(FromMinor(1, 40).IsValid(), 0);
}

TEST(AmountFromText, IsReadAsOfxWritesItAndNotOtherwise) {
  ASSERT_TRUE(ToAmount("-62.40"));
  EXPECT_EQ(ToText(*ToAmount("-62.40"), 2), "-62.40");
  EXPECT_EQ(ToText(*ToAmount("+.5"), 2), "0.50");
  for (const char* text : {"", "-", ".", "1,5", "1 000", "1e3", "0x1", "1.2.3", "--1", "12a",
                           "12345678901234567890123456789"}) {
    EXPECT_FALSE(ToAmount(text)) << text;
  }
  EXPECT_FALSE(ToAmount(std::string_view("1\0", 2)));
}

TEST(Days, AreThoseOfTheCalendar) {
  EXPECT_EQ(ToDay(KRDateTime("20260131")), 2026y / 1 / 31);
  EXPECT_EQ(ToDay(KRDateTime("20240229120000.000[-5:EST]")), 2024y / 2 / 29);
  EXPECT_EQ(ToDay(KRDateTime()), std::nullopt);
  EXPECT_EQ(ToDay(ToDateTime(9999y / 12 / 31)), 9999y / 12 / 31);
}

TEST(Days, ThatDoNotExistGiveNoValidDate) {
  EXPECT_EQ(ToDateTime(2025y / 2 / 29).IsValidDate(), 0);
  EXPECT_EQ(ToDateTime(10000y / 1 / 1).IsValidDate(), 0);
  EXPECT_EQ(ToDateTime(0y / 1 / 1).IsValidDate(), 0);
}

TEST(Instants, ConsiderTheZone) {
  EXPECT_EQ(ToInstant(KRDateTime("20260131120000.250[-5:EST]")),
            sys_days(2026y / 1 / 31) + 17h + 250ms);
  EXPECT_EQ(ToInstant(KRDateTime("20260131120000")), sys_days(2026y / 1 / 31) + 12h);
  EXPECT_EQ(ToInstant(KRDateTime("20260131120000[5.50:IST]")),
            sys_days(2026y / 1 / 31) + 6h + 30min);
  EXPECT_EQ(ToInstant(KRDateTime()), std::nullopt);
  EXPECT_EQ(ToInstant(KRDateTime(2026, 1, 31, 25, 0, 0, 0, 0, 0)), std::nullopt);
}

TEST(Instants, ReachBeyond2038AndBefore1970) {
  for (const Instant instant : {Instant(sys_days(2155y / 6 / 7) + 23h + 59min + 59s + 999ms),
                                Instant(sys_days(1931y / 1 / 1) + 1ms), Instant(0ms)}) {
    EXPECT_EQ(ToInstant(ToDateTime(instant)), instant);
  }
}

TEST(DateText, IsThatOfIso8601) {
  EXPECT_EQ(ToText(KRDateTime("20260131")), "2026-01-31");
  EXPECT_EQ(ToText(KRDateTime("20260131123000")), "2026-01-31T12:30:00");
  EXPECT_EQ(ToText(KRDateTime("20260131123000.5[-5:EST]")), "2026-01-31T12:30:00.500-05:00");
  EXPECT_EQ(ToText(KRDateTime("20260131123000[5.50:IST]")), "2026-01-31T12:30:00+05:30");
  EXPECT_EQ(ToText(KRDateTime("20260131123000[0:GMT]")), "2026-01-31T12:30:00+00:00");
  EXPECT_EQ(ToText(KRDateTime(2026, 1, 31, 0, 5, 0, 0, 0, 0)), "2026-01-31T00:05:00");
  EXPECT_EQ(ToText(KRDateTime(2026, 1, 31, 0, 0, 5, 0, 0, 0)), "2026-01-31T00:00:05");
  EXPECT_EQ(ToText(KRDateTime(2026, 1, 31, 0, 0, 0, 5, 0, 0)), "2026-01-31T00:00:00.005");
  EXPECT_TRUE(ToText(KRDateTime()).empty());
  EXPECT_TRUE(ToText(KRDateTime(2026, 1, 31, 25, 0, 0, 0, 0, 0)).empty());
  EXPECT_EQ(ToText(ToDay(KRDateTime("20260131123000[-5:EST]"))), "2026-01-31");
  EXPECT_TRUE(ToText(ToDay(KRDateTime())).empty());
}

TEST(Keywords, AreViewsOfConstantTexts) {
  static_assert(ToText(KRBankTxType_DEBIT) == "DEBIT");
  static_assert(ToText(static_cast<KRBankTxType>(1000)).empty());
  EXPECT_EQ(ToText(KRHeaderTag_None), "");
  EXPECT_EQ(ToKeyword<KRBankTxType>("debit"), KRBankTxType_DEBIT);
  EXPECT_EQ(ToKeyword<KRBankTxType>("DEBITS"), std::nullopt);
  EXPECT_EQ(ToKeyword<KRBankTxType>(""), std::nullopt);
}

TEST(SettersFromViews, TakeTextsWithoutATerminator) {
  const auto account = Make<KRBankAccount>();
  const std::string_view number = std::string_view("00718220946 and more").substr(0, 11);
  EXPECT_EQ(Set(*account, &KRBankAccount::SetAccountID, number), 1);
  EXPECT_EQ(ToText(account->GetAccountID()), "00718220946");
  EXPECT_EQ(Set(*account, &KRBankAccount::SetAccountID, std::string("42")), 1);
  EXPECT_EQ(ToText(account->GetAccountID()), "42");
  EXPECT_EQ(Set(*account, &KRBankAccount::SetBankID, ""), 3);
}

TEST(SettersFromViews, RefuseWhatNoStringHoldsWhole) {
  const auto account = Make<KRBankAccount>();
  EXPECT_EQ(Set(*account, &KRBankAccount::SetAccountID,
                std::string_view("1\0"
                                 "2",
                                 3)),
            0);
  EXPECT_EQ(Set(*account, &KRBankAccount::SetAccountID, std::string(65535, 'x')), 0);
  EXPECT_EQ(account->HasAccountID(), 0);
  const FailingAllocation failing(1);
  EXPECT_EQ(Set(*account, &KRBankAccount::SetAccountID, "7"), 0);
  EXPECT_TRUE(AlarmIsSet());
}

TEST(SettersFromViews, ReadAmountsDatesAndKeywordsAsAFileDoes) {
  const auto tx = Make<KRBankStatementTx>();
  EXPECT_EQ(Set(*tx, &KRBankStatementTx::SetTxAmount, "-62.40"), 1);
  EXPECT_EQ(Set(*tx, &KRBankStatementTx::SetTxAmount, "many"), 0);
  EXPECT_EQ(ToMinor(tx->GetTxAmount(), 2), -6240);
  EXPECT_EQ(Set(*tx, &KRBankStatementTx::SetTxType, "debit"), 1);
  EXPECT_EQ(tx->GetTxType(), KRBankTxType_DEBIT);
}

TEST(SettersFromDates, TakeThoseOfTheCalendar) {
  const auto tx = Make<KRBankStatementTx>();
  EXPECT_EQ(Set(*tx, &KRBankStatementTx::SetDateTimePosted, 2026y / 1 / 31), 1);
  EXPECT_EQ(ToDay(tx->GetDateTimePosted()), 2026y / 1 / 31);
  EXPECT_EQ(Set(*tx, &KRBankStatementTx::SetDateTimePosted, Instant(sys_days(2050y / 1 / 1) + 1h)),
            1);
  EXPECT_EQ(ToText(tx->GetDateTimePosted()), "2050-01-01T01:00:00");
  EXPECT_EQ(Set(*tx, &KRBankStatementTx::SetDateTimePosted, 2025y / 2 / 30), 0);
  EXPECT_EQ(ToText(tx->GetDateTimePosted()), "2050-01-01T01:00:00");
}

}  // namespace
}  // namespace krofx::testing
