// Payroll amounts: their kinds, their text, comparing and calculating.

#include "krofx/payroll/payroll_amount.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <type_traits>

#include "krofx/payroll/payroll_data_conversion.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

KRPayrollAmount Amount(const char* text) {
  const KRPayrollAmount amount(text);
  EXPECT_EQ(TakeWarnings(), Lines()) << text;
  return amount;
}

KRPayrollAmount Blank() { return KRPayrollAmount(KRPayrollAmountType_Empty); }

std::string Shown(const KRPayrollAmount& amount) { return static_cast<char*>(amount); }

/// "$" dollars, "%" percentage, "" neither; with "blank" added for a blank amount.
std::string Kind(const KRPayrollAmount& amount) {
  std::string kind = amount.IsDollarKind() != 0 ? "$" : "";
  if (amount.IsPercent() != 0) kind += "%";
  if (amount.IsEmpty() != 0) kind += "blank";
  return kind;
}

/// Tests of values begin with an empty log.
class PayrollAmounts : public ::testing::Test {
 protected:
  PayrollAmounts() { TakeWarnings(); }
};

TEST_F(PayrollAmounts, IsWhatItsConstructorSays) {
  EXPECT_EQ(Kind(KRPayrollAmount()), "$");
  EXPECT_EQ(KRPayrollAmount().Decimal(), 2);
  EXPECT_EQ(Shown(KRPayrollAmount()), "$0.00");
  EXPECT_EQ(Kind(KRPayrollAmount(KRPayrollAmountType_Empty)), "blank");
  EXPECT_EQ(Kind(KRPayrollAmount(KRPayrollAmountType_Number)), "");
  EXPECT_EQ(Kind(KRPayrollAmount(static_cast<KRPayrollAmountType>(7))), "");
  EXPECT_EQ(Kind(KRPayrollAmount(125, 1, 1)), "%");
  EXPECT_EQ(Shown(KRPayrollAmount(125, 1, 1)), "12.5%");
  EXPECT_EQ(Kind(KRPayrollAmount(125, 1, 0)), "");
  const KRPrecisionInteger number(5, 0);
  EXPECT_EQ(Kind(KRPayrollAmount(number, 0, 1)), "$");
  EXPECT_EQ(Kind(KRPayrollAmount(number, 1, 0)), "%");
  EXPECT_EQ(Kind(KRPayrollAmount(number, 1, 1)), "$");
  EXPECT_EQ(Kind(KRPayrollAmount(number, 0, 0)), "");
  EXPECT_EQ(Shown(KRPayrollAmount("$5")), "$5.00");
}

TEST_F(PayrollAmounts, IsDollarsOrAPercentageButNotBoth) {
  KRPayrollAmount amount(KRPayrollAmountType_Number);
  amount.SetDollarKind(1);
  amount.SetPercent(7);
  EXPECT_EQ(Kind(amount), "%");
  EXPECT_EQ(amount.IsPercent(), 1);
  amount.SetDollarKind(0);
  EXPECT_EQ(Kind(amount), "%");
  amount.SetDollarKind(1);
  EXPECT_EQ(Kind(amount), "$");
  amount.SetPercent(0);
  EXPECT_EQ(Kind(amount), "$");
  amount.SetEmpty(1);
  EXPECT_EQ(Kind(amount), "$blank");
  amount.SetEmpty(0);
  EXPECT_EQ(Kind(amount), "$");
}

TEST_F(PayrollAmounts, ReadsItsKindFromTheText) {
  const struct {
    const char* text;
    const char* kind;
    const char* number;
    const char* shown;
  } kCases[] = {
      {"$12", "$", "12", "$12.00"},
      {"12", "", "12", "12"},
      {"$5%", "%", "5", "5%"},
      {"12.5%", "%", "12.5", "12.5%"},
      {"-7%", "%", "-7", "-7%"},
      {"$-1,234.5", "$", "-1234.5", "$-1234.50"},
      {"$1.234", "$", "1.234", "$1.234"},
      {"0.5", "", ".5", "0.5"},
      {"-.5", "", "-.5", "-0.5"},
      {"$.5", "$", ".5", "$0.50"},
      {"$0", "$", "0", "$0.00"},
      {"-0", "", "-0", "-0"},
      {"5.", "", "5", "5"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.text);
    KRPayrollAmount amount = Blank();
    EXPECT_EQ(amount.ConvertStringToKRPrecisionInteger(c.text), 1);
    EXPECT_EQ(Kind(amount), c.kind);
    EXPECT_STREQ(KRPrecisionInteger(amount), c.number);
    EXPECT_EQ(Shown(amount), c.shown);
  }
  EXPECT_EQ(TakeWarnings(), Lines());
}

TEST_F(PayrollAmounts, ForgetsItsKindWhenAPlainNumberIsRead) {
  KRPayrollAmount amount("5%");
  amount = "7";
  EXPECT_EQ(Kind(amount), "");
  amount = "$7";
  amount = "8";
  EXPECT_EQ(Kind(amount), "");
}

TEST_F(PayrollAmounts, ReadsTwoTextsAsBlankAndWritesOne) {
  for (const char* text : {"^@~*", "__OFX_EMPTY_STRING__"}) {
    KRPayrollAmount amount("12.5%");
    EXPECT_EQ(amount.ConvertStringToKRPrecisionInteger(text), 1);
    EXPECT_EQ(Kind(amount), "%blank");
    EXPECT_EQ(Shown(amount), "^@~*");
    amount.SetEmpty(0);
    EXPECT_EQ(Shown(amount), "12.5%");
  }
  EXPECT_EQ(TakeWarnings(), Lines());
  for (const char* text : {"^@~* ", "__ofx_empty_string__", "^@~", "$^@~*"}) {
    KRPayrollAmount amount;
    EXPECT_EQ(amount.ConvertStringToKRPrecisionInteger(text), 0);
    EXPECT_EQ(amount.IsEmpty(), 0);
    EXPECT_EQ(TakeWarnings().size(), 1u);
  }
}

TEST_F(PayrollAmounts, RefusesWhatItsBaseRefuses) {
  for (const char* text : {"", "$", "%", "$%", "12x", "$$5", "5%%", "5$", "%5", "five"}) {
    SCOPED_TRACE(text);
    KRPayrollAmount amount = Blank();
    EXPECT_EQ(amount.ConvertStringToKRPrecisionInteger(text), 0);
    EXPECT_EQ(amount.IsEmpty(), 0);
    EXPECT_EQ(TakeWarnings().size(), 1u);
  }
  KRPayrollAmount amount = Blank();
  EXPECT_EQ(amount.ConvertStringToKRPrecisionInteger(nullptr), 0);
  EXPECT_EQ(TakeWarnings().size(), 1u);
}

TEST_F(PayrollAmounts, HasNoMoreThanThirtyCharacters) {
  const std::string nines(28, '9');
  const auto shown = [](const std::string& text) { return Shown(Amount(text.c_str())); };
  // From 29 characters on, no zero is written before the point.
  EXPECT_EQ(shown("." + nines.substr(1)), "0." + nines.substr(1));
  EXPECT_EQ(shown("." + nines), "." + nines);
  EXPECT_EQ(shown("-." + nines), "-." + nines);
  EXPECT_EQ(shown("-." + nines.substr(1)), "-." + nines.substr(1));
  // Decimals are added where there is room for both, or for the one that is missing.
  EXPECT_EQ(shown("$" + nines.substr(2)), "$" + nines.substr(2) + ".00");
  EXPECT_EQ(shown("$" + nines.substr(1)), "$" + nines.substr(1));
  EXPECT_EQ(shown("$" + nines), "$" + nines);
  EXPECT_EQ(shown("$" + nines.substr(2) + ".5"), "$" + nines.substr(2) + ".50");
  EXPECT_EQ(shown("$" + nines.substr(1) + ".5"), "$" + nines.substr(1) + ".5");
  EXPECT_EQ(shown("$-" + nines.substr(3)), "$-" + nines.substr(3) + ".00");
  EXPECT_EQ(shown("$-" + nines.substr(2)), "$-" + nines.substr(2));
  // Thirty characters leave no room for a sign.
  const std::string full = "-" + nines.substr(1) + ".9";
  ASSERT_EQ(full.size(), 30u);
  EXPECT_EQ(shown(full), full);
  EXPECT_EQ(shown("$" + full), "");
  EXPECT_EQ(shown(full + "%"), "");
  EXPECT_EQ(shown(full.substr(1) + "%"), full.substr(1) + "%");
  EXPECT_EQ(shown("." + nines + "%"), "." + nines + "%");
}

TEST_F(PayrollAmounts, HasNoTextWithoutMemory) {
  const KRPayrollAmount amount("$5");
  const FailingAllocation failing(1);
  EXPECT_EQ(static_cast<char*>(amount), nullptr);
  EXPECT_TRUE(AlarmIsSet());
}

TEST_F(PayrollAmounts, ShowsItsTextThroughTheBase) {
  const KRPayrollAmount amount("$5");
  const KRPrecisionInteger& number = amount;
  EXPECT_STREQ(number, "$5.00");
}

/// The comparisons that hold, of == != < <= > >=.
template <class Left, class Right>
std::string Relations(const Left& left, const Right& right) {
  std::string holding;
  if (left.operator==(right) != 0) holding += "== ";
  if (left.operator!=(right) != 0) holding += "!= ";
  if (left.operator<(right) != 0) holding += "< ";
  if (left.operator<=(right) != 0) holding += "<= ";
  if (left.operator>(right) != 0) holding += "> ";
  if (left.operator>=(right) != 0) holding += ">= ";
  return holding;
}

TEST_F(PayrollAmounts, ComparesOnlyWithItsKind) {
  EXPECT_EQ(Relations(Amount("$5"), Amount("$5.00")), "== <= >= ");
  EXPECT_EQ(Relations(Amount("$5"), Amount("$6")), "!= < <= ");
  EXPECT_EQ(Relations(Amount("6%"), Amount("5%")), "!= > >= ");
  EXPECT_EQ(Relations(Amount("5"), Amount("5")), "== <= >= ");
  for (const char* text : {"5", "5%", "$5"}) {
    for (const char* other : {"5", "5%", "$5"}) {
      if (std::string_view(text) != other) {
        EXPECT_EQ(Relations(Amount(text), Amount(other)), "!= ") << text << other;
      }
    }
    EXPECT_EQ(Relations(Amount(text), Blank()), "!= ");
    EXPECT_EQ(Relations(Blank(), Amount(text)), "!= ");
  }
}

TEST_F(PayrollAmounts, IsUnequalToItselfWhenBlank) {
  const KRPayrollAmount blank = Blank();
  EXPECT_EQ(Relations(blank, blank), "!= ");
  EXPECT_TRUE(blank != blank);
  EXPECT_FALSE(blank == blank);
}

TEST_F(PayrollAmounts, ComparesByItsRulesThroughTheBase) {
  const KRPayrollAmount dollars("$5");
  const KRPayrollAmount percent("5%");
  const KRPayrollAmount plain("5");
  const KRPrecisionInteger number(5, 0);
  const auto base = [](const KRPayrollAmount& amount) -> const KRPrecisionInteger& {
    return amount;
  };
  EXPECT_EQ(Relations(base(dollars), base(dollars)), "== <= >= ");
  EXPECT_EQ(Relations(base(dollars), base(percent)), "!= ");
  EXPECT_EQ(Relations(base(dollars), number), "!= ");
  EXPECT_EQ(Relations(dollars, number), "!= ");
  EXPECT_EQ(Relations(plain, number), "== <= >= ");
}

TEST_F(PayrollAmounts, AddsAndSubtractsItsKind) {
  EXPECT_EQ(Shown(Amount("$5") + Amount("$1.25")), "$6.25");
  EXPECT_EQ(Shown(Amount("5%") - Amount("7%")), "-2%");
  EXPECT_EQ(Shown(Amount("5") + Amount("7")), "12");
  KRPayrollAmount sum("$1");
  EXPECT_EQ(&(sum += Amount("$2")), &sum);
  EXPECT_EQ(&(sum -= Amount("$0.50")), &sum);
  EXPECT_EQ(Shown(sum), "$2.50");
  KRPrecisionInteger& base = sum;
  base += Amount("$1");
  base -= Amount("5%");
  EXPECT_EQ(Shown(sum), "$3.50");
}

TEST_F(PayrollAmounts, LeavesTheSumAloneForAnotherKind) {
  EXPECT_EQ(Shown(Amount("$5") + Amount("5%")), "$5.00");
  EXPECT_EQ(Shown(Amount("5%") - Amount("5")), "5%");
  EXPECT_STREQ(Amount("$5") + KRPrecisionInteger(5, 0), "5");
}

TEST_F(PayrollAmounts, AddsNothingAndGainsNothingWhenBlank) {
  KRPayrollAmount blank("7");
  blank.SetEmpty(1);
  KRPayrollAmount amount("5");
  amount += blank;
  amount -= blank;
  EXPECT_EQ(Shown(amount), "5");
  EXPECT_EQ(Shown(blank + amount), "^@~*");
  blank += amount;
  blank.SetEmpty(0);
  EXPECT_EQ(Shown(blank), "7");
}

TEST_F(PayrollAmounts, TakesAPercentageOf) {
  EXPECT_EQ(Shown(Amount("100") / Amount("50%")), "200");
  EXPECT_EQ(Shown(Amount("100") * Amount("50%")), "50");
  EXPECT_EQ(Shown(Amount("$1000.00") * Amount("7.5%")), "$75.00");
  EXPECT_EQ(Shown(Amount("$1000") * Amount("3")), "$3000.00");
  EXPECT_EQ(Shown(Amount("50%") * Amount("50%")), "25%");
  EXPECT_EQ(Shown(Amount("$10.00") / Amount("4")), "$2.50");
}

TEST_F(PayrollAmounts, MultipliesAndDividesWhateverTheKindsAre) {
  KRPayrollAmount blank("$4");
  blank.SetEmpty(1);
  EXPECT_EQ(Shown(blank * Amount("3")), "$12.00");
  EXPECT_EQ(Shown(blank / Amount("$2")), "$2.00");
  EXPECT_EQ(Shown(Amount("$4") * blank), "$16.00");
  const KRPrecisionInteger& base = blank;
  EXPECT_STREQ(base * Amount("50%"), "2");
  EXPECT_STREQ(base / Amount("50%"), "0");
  EXPECT_STREQ(base + Amount("$1"), "4");
  EXPECT_STREQ(base - Amount("$1"), "4");
}

TEST_F(PayrollAmounts, GivesAPositiveCopy) {
  EXPECT_EQ(Shown(Amount("$-5").absval()), "$5.00");
  EXPECT_EQ(Shown(Amount("5%").absval()), "5%");
  EXPECT_EQ(Shown(Amount("-0").absval()), "0");
  EXPECT_EQ(Shown(Blank().absval()), "^@~*");
}

TEST_F(PayrollAmounts, CopiesItsKind) {
  const KRPayrollAmount percent("5%");
  KRPayrollAmount copy(percent);
  EXPECT_EQ(Kind(copy), "%");
  copy = Blank();
  EXPECT_EQ(Kind(copy), "blank");
  static_assert(!std::is_convertible_v<const char*, KRPayrollAmount>);
}

/// What goes wrong when a text is read as an amount and written again; empty when nothing does.
std::string Disagreement(const std::string& text) {
  KRPayrollAmount first;
  if (KRPayrollDataConversion::StringToPayrollAmount(KRString(text.c_str()), first) != 1) {
    return text + " is not read";
  }
  const std::string written = Shown(first);
  KRPayrollAmount second;
  if (KRPayrollDataConversion::StringToPayrollAmount(KRString(written.c_str()), second) != 1) {
    return text + " is written as " + written + ", which is not read";
  }
  if (Shown(second) != written) return text + ": " + written + " is written as " + Shown(second);
  if (first.IsEmpty() != 0) return second.IsEmpty() != 0 ? "" : text + " is no longer blank";
  if (first != second) return text + ": " + written + " is another amount";
  return "";
}

TEST_F(PayrollAmounts, AgreesWithItsText) {
  std::mt19937 chance(20260105);
  const auto upTo = [&](unsigned most) {
    return std::uniform_int_distribution<unsigned>(0, most)(chance);
  };
  for (int round = 0; round < 20000; ++round) {
    std::string number = upTo(1) != 0 ? "-" : "";
    const unsigned digits = 1 + upTo(27);
    const unsigned whole = upTo(digits);
    for (unsigned i = 0; i < digits; ++i) {
      if (i == whole) number += '.';
      number += static_cast<char>('0' + (upTo(3) == 0 ? 0 : upTo(9)));
    }
    // An amount of thirty characters has no text as dollars or as a percentage.
    const bool full = std::string(KRPrecisionInteger(number.c_str())).size() >= 30;
    ASSERT_EQ(Disagreement(number), "");
    if (!full) {
      ASSERT_EQ(Disagreement("$" + number), "");
      ASSERT_EQ(Disagreement(number + "%"), "");
    }
  }
  EXPECT_EQ(Disagreement("^@~*"), "");
  EXPECT_EQ(Disagreement("__OFX_EMPTY_STRING__"), "");
  EXPECT_EQ(TakeWarnings(), Lines());
}

}  // namespace
}  // namespace krofx::testing
