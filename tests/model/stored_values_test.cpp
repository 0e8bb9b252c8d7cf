// How aggregates store their values: values come out as they went in, references stay valid, and
// unusual values are kept unchanged.

#include "krofx/model/internal/stored_values.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "krofx/core/memory.h"
#include "krofx/core/thread.h"

namespace {

using krofx::internal::AllocationFailure;
using krofx::internal::StoredDate;
using krofx::internal::StoredNumber;
using krofx::internal::StoredText;

TEST(StoredText, GivesANullTextOfItsLengthWhenThereIsNone) {
  StoredText<KRString32> stored;
  EXPECT_EQ(stored.Get().IsNull(), 1);
  EXPECT_EQ(stored.Get().SpecLength(), 32);
  EXPECT_STREQ(stored.Get(), "");
}

TEST(StoredText, KeepsTextsOfAllLengths) {
  for (const int size : {1, 15, 16, 100, 998, 999, 1000, 1001, 2000, 65534}) {
    const auto length = static_cast<u16>(size);
    const std::string text(length, 'x');
    StoredText<KRString255> stored;
    stored = KRString(text.c_str());
    EXPECT_EQ(stored.Get().GetStrLength(), length);
    EXPECT_EQ(stored.Get().BufferSize(), length + 1);
    EXPECT_EQ(stored.Get().SpecLength(), 255);
    EXPECT_STREQ(stored.Get(), text.c_str());
    const StoredText<KRString255> copy(stored);
    EXPECT_STREQ(copy.Get(), text.c_str());
    EXPECT_NE(static_cast<const char*>(copy.Get()), static_cast<const char*>(stored.Get()));
  }
}

TEST(StoredText, KeepsReferencesGoodWhateverIsAssigned) {
  StoredText<KRString32> stored;
  stored = KRString("short");
  const KRString32& text = stored.Get();
  stored = KRString("a text that is much longer than the one before");
  EXPECT_STREQ(text, "a text that is much longer than the one before");
  stored = KRString("s");
  EXPECT_STREQ(text, "s");
  stored = KRString();
  EXPECT_EQ(text.IsNull(), 1);
  stored = KRString("again");
  EXPECT_STREQ(text, "again");
  EXPECT_EQ(&stored.Get(), &text);
}

TEST(StoredText, LetsACopyOfTheStringBeMovedFrom) {
  StoredText<KRString32> stored;
  stored = KRString("held");
  KRString32 copy(stored.Get());
  KRString32 moved(std::move(copy));
  EXPECT_STREQ(moved, "held");
  EXPECT_STREQ(stored.Get(), "held");
}

TEST(StoredText, RefusesMoreThanItsLengthAsACommonText) {
  StoredText<KRString3> stored;
  EXPECT_FALSE(stored.AssignCommon("USDX", 4));
  EXPECT_EQ(stored.Get().IsNull(), 1);
  EXPECT_TRUE(stored.AssignCommon("USD", 3));
  EXPECT_TRUE(stored.AssignCommon("EUR", 3));
  EXPECT_STREQ(stored.Get(), "EUR");
}

void AssignWithoutMemory(StoredText<KRString32>& stored, const KRString& text) {
  KRSetFireAlarm(KRFireAlarm_None);
  AllocationFailure::FailAt(1);
  stored = text;
  AllocationFailure::FailAt(0);
  EXPECT_EQ(stored.Get().IsNull(), 1);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(StoredText, StaysAbsentAndRaisesTheAlarmWithoutMemory) {
  StoredText<KRString32> stored;
  AssignWithoutMemory(stored, KRString("text"));
}

// A long text needs a second block for its characters.
TEST(StoredText, StaysAbsentWhicheverAllocationOfALongTextFails) {
  const std::string text(2000, 'x');
  KRSetFireAlarm(KRFireAlarm_None);
  std::size_t nth = 1;
  for (;; ++nth) {
    StoredText<KRString2000> stored;
    AllocationFailure::FailAt(nth);
    const bool assigned = stored.AssignCommon(text.data(), text.size());
    const bool hasFailed = AllocationFailure::Count() >= nth;
    AllocationFailure::FailAt(0);
    EXPECT_EQ(assigned, !hasFailed);
    EXPECT_EQ(stored.Get().IsNull(), hasFailed ? 1 : 0);
    EXPECT_EQ(KRGetFireAlarm(), hasFailed ? KRFireAlarm_MemoryExhausted : KRFireAlarm_None);
    KRSetFireAlarm(KRFireAlarm_None);
    if (!hasFailed) break;
  }
  EXPECT_EQ(nth, 3u);
}

TEST(StoredText, KeepsTheEncodingOrStaysAbsentWithoutMemory) {
  KRString text("A & B");
  text.SetEncoding(KRStringEncode_CDATA);
  StoredText<KRString32> stored;
  AssignWithoutMemory(stored, text);
  stored = text;
  EXPECT_STREQ(stored.Get(), "A & B");
  EXPECT_EQ(stored.Get().GetEncoding(), KRStringEncode_CDATA);
  const StoredText<KRString32> none;
  StoredText<KRString32> copy(stored);
  copy = none;
  EXPECT_EQ(copy.Get().IsEmpty(), 1);
}

TEST(StoredDate, KeepsEveryField) {
  KRDateTime date(2025, 2, 3, 12, 34, 56, 789, -5, -50);
  date.SetTimeZone("EST", -5, -50);
  StoredDate stored;
  stored = date;
  ASSERT_NE(stored.Plain(), nullptr);
  const KRDateTime back = stored;
  EXPECT_EQ(back.GetYear(), 2025);
  EXPECT_EQ(back.GetMillisecond(), 789);
  EXPECT_EQ(back.GetGMTOffset(), -5);
  EXPECT_EQ(back.GetGMTOffsetFraction(), -50);
  EXPECT_STREQ(back.GetTimeZone(), "EST");
}

TEST(StoredDate, KeepsWhatNoDateHas) {
  for (KRDateTime date : {KRDateTime(2025, 300, 400, 500, 600, 700, 30000, 800, 900),
                          KRDateTime(2025, 2, 3, 0, 0, 0, 0, -300, 0)}) {
    date.SetTimeZone("a zone with a long name", date.GetGMTOffset(), date.GetGMTOffsetFraction());
    StoredDate stored;
    stored = date;
    EXPECT_EQ(stored.Plain(), nullptr);
    const StoredDate copy(stored);
    for (const KRDateTime& back : {KRDateTime(stored), KRDateTime(copy)}) {
      EXPECT_EQ(back.GetMonth(), date.GetMonth());
      EXPECT_EQ(back.GetSecond(), date.GetSecond());
      EXPECT_EQ(back.GetGMTOffset(), date.GetGMTOffset());
      EXPECT_STREQ(back.GetTimeZone(), "a zone with a long name");
    }
    EXPECT_FALSE(stored.AssignCommon("no date", 7));
    EXPECT_EQ(static_cast<KRDateTime>(stored).GetMonth(), date.GetMonth());
    EXPECT_TRUE(stored.AssignCommon("20250102", 8));
    EXPECT_EQ(static_cast<KRDateTime>(stored).GetDay(), 2);
    EXPECT_STREQ(static_cast<KRDateTime>(stored).GetTimeZone(), "");
  }
}

TEST(StoredDate, TakesOneDateForAnotherOfWhicheverKind) {
  const KRDateTime odd(2025, 300, 400, 500, 600, 700, 30000, 800, 900);
  const KRDateTime odder(2024, 301, 400, 500, 600, 700, 30000, 800, 900);
  const KRDateTime plain(2023, 2, 3, 12, 34, 56, 0, 0, 0);
  StoredDate stored;
  for (const KRDateTime& date : {odd, odder, plain, odd}) {
    stored = date;
    EXPECT_EQ(static_cast<KRDateTime>(stored).GetYear(), date.GetYear());
    EXPECT_EQ(stored.Plain() != nullptr, date.GetYear() == 2023);
  }
  const StoredDate& same = stored;
  stored = same;
  EXPECT_EQ(static_cast<KRDateTime>(stored).GetYear(), 2025);
}

TEST(StoredDate, KeepsItsDateAndRaisesTheAlarmWithoutMemoryForAnOddOne) {
  StoredDate stored;
  stored = KRDateTime(2023, 2, 3, 12, 34, 56, 0, 0, 0);
  const KRDateTime odd(2025, 300, 400, 500, 600, 700, 30000, 800, 900);
  KRSetFireAlarm(KRFireAlarm_None);
  AllocationFailure::FailAt(1);
  stored = odd;
  AllocationFailure::FailAt(0);
  EXPECT_EQ(static_cast<KRDateTime>(stored).GetYear(), 2023);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(StoredDate, TakesATextAsItsClassDoes) {
  StoredDate stored;
  EXPECT_EQ(stored = "20250203", 1);
  EXPECT_EQ(static_cast<KRDateTime>(stored).GetDay(), 3);
  EXPECT_EQ(stored = "no date", 0);
}

TEST(StoredNumber, TakesATextAndAnIntegerAsItsClassDoes) {
  StoredNumber<KRPercent> stored;
  stored = "12.5";
  EXPECT_EQ(static_cast<KRPercent>(stored) == KRPrecisionInteger(125, 1), 1);
  stored = 7;
  EXPECT_EQ(static_cast<KRPercent>(stored) == KRPrecisionInteger(7, 0), 1);
}

TEST(StoredNumber, KeepsAllOfANumber) {
  for (const char* text :
       {"0", "-0", "12.50", "-79228162514264337593543950335", ".0000000000001"}) {
    const KRPrecisionInteger number(text);
    StoredNumber<KRPrecisionInteger> stored;
    stored = number;
    const KRPrecisionInteger back = stored;
    EXPECT_STREQ(back, number);
    EXPECT_EQ(back.Decimal(), number.Decimal());
    EXPECT_EQ(back.Sign(), number.Sign());
  }
}

TEST(StoredNumber, LeavesWhatItsClassRefusesToTheOrdinaryWay) {
  StoredNumber<KRPercent> percent;
  EXPECT_TRUE(percent.AssignCommon("99.5", 4));
  EXPECT_FALSE(percent.AssignCommon("101", 3));
  EXPECT_FALSE(percent.AssignCommon("-1", 2));
  EXPECT_STREQ(static_cast<KRPercent>(percent), "99.5");
  StoredNumber<KRPosPrecisionInteger> positive;
  EXPECT_FALSE(positive.AssignCommon("-1", 2));
}

}  // namespace
