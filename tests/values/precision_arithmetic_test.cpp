// Exact decimals as numbers: making, comparison, arithmetic, scale.

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <type_traits>

#include "krofx/values/precision_integer.h"
#include "precision_values.h"
#include "value_warnings.h"

namespace {

using krofx::internal::AllocationFailure;

class NumberArithmetic : public ValueTest {};

// Used before main, as another file's constants may do.
const KRPercent checkedEarly(100, 0);
const u16 validEarly = checkedEarly.IsValid();

/// Makes the protected helpers public.
class OpenNumber : public KRPrecisionInteger {
 public:
  explicit OpenNumber(const KRPrecisionInteger& n) : KRPrecisionInteger(n) {}
  using KRPrecisionInteger::Bit;
  using KRPrecisionInteger::MSD;
  using KRPrecisionInteger::RightAlign;
};

// --- Making and copying --------------------------------------------------------------------------

TEST_F(NumberArithmetic, ANewNumberIsPositiveZero) {
  const KRPrecisionInteger n;
  EXPECT_EQ(Shown(n), "0e0");
  EXPECT_EQ(n.Sign(), 1);
}

TEST_F(NumberArithmetic, ANumberTakesItsMagnitudeAndSignFromAnInteger) {
  EXPECT_EQ(Shown(KRPrecisionInteger(-150, 2)), "-150e2");
  EXPECT_EQ(Shown(KRPrecisionInteger(std::numeric_limits<s32>::min(), 0)), "-2147483648e0");
  EXPECT_EQ(Shown(KRPrecisionInteger(0, 40)), "0e40");
  EXPECT_EQ(Shown(KRPrecisionInteger::FromInt64(std::numeric_limits<std::int64_t>::min(), 3)),
            "-9223372036854775808e3");
  KRPrecisionInteger n(5, 2);
  EXPECT_EQ(&(n = -7), &n);
  EXPECT_EQ(Shown(n), "-7e0");
}

TEST_F(NumberArithmetic, ConstantsHaveTheirValues) {
  EXPECT_EQ(Shown(KRPrecisionInteger::KRZero), "0e0");
  EXPECT_EQ(Shown(KRPrecisionInteger::KROneHundred), "100e0");
  EXPECT_EQ(Shown(KRPrecisionInteger::KRPIOctillion), "1000000000000000000000000000e0");
  EXPECT_EQ(Shown(KRPrecisionInteger::KRPITenPentillion), "10000000000000000000e0");
  EXPECT_EQ(validEarly, 1);
}

TEST_F(NumberArithmetic, CopiesLeaveTextAndBinaryBlockBehind) {
  KRPrecisionInteger n(-150, 2);
  char* const text = n;
  void* const block = n.LockBuffer();
  KRPrecisionInteger copy(n);
  EXPECT_EQ(Shown(copy), "-150e2");
  EXPECT_NE(static_cast<char*>(copy), text);
  EXPECT_NE(copy.LockBuffer(), block);
  KRPrecisionInteger assigned;
  EXPECT_EQ(&(assigned = n), &assigned);
  EXPECT_EQ(Shown(assigned), "-150e2");
  EXPECT_EQ(static_cast<char*>(n), text);
  EXPECT_EQ(n.LockBuffer(), block);
}

TEST_F(NumberArithmetic, ANewNumberWithoutMemoryIsNull) {
  AllocationFailure::FailAt(1);
  KRPrecisionInteger* const n = new KRPrecisionInteger(1, 0);
  EXPECT_EQ(n, nullptr);
  delete n;
}

template <class T>
concept ComparesWithText = requires(T n) {
  n == "5";
};
template <class T>
concept AddsToAnInteger = requires(T n) {
  n + 1;
};

TEST(KRPrecisionInteger, CannotBeTakenForItsTextInComparisonsAndSums) {
  EXPECT_FALSE(ComparesWithText<KRPrecisionInteger>);
  EXPECT_FALSE(AddsToAnInteger<KRPrecisionInteger>);
}

// --- Comparison ----------------------------------------------------------------------------------

struct CompareCase {
  const char* left;
  const char* right;
  int order;
};

class Comparison : public ValueTest, public testing::WithParamInterface<CompareCase> {};

TEST_P(Comparison, OrdersBothWays) {
  const KRPrecisionInteger a(GetParam().left);
  const KRPrecisionInteger b(GetParam().right);
  const int order = GetParam().order;
  EXPECT_EQ(a == b, order == 0);
  EXPECT_EQ(a != b, order != 0);
  EXPECT_EQ(a > b, order > 0);
  EXPECT_EQ(a >= b, order >= 0);
  EXPECT_EQ(a < b, order < 0);
  EXPECT_EQ(a <= b, order <= 0);
  EXPECT_EQ(b > a, order < 0);
  EXPECT_EQ(b <= a, order >= 0);
}

INSTANTIATE_TEST_SUITE_P(
    All, Comparison,
    testing::Values(CompareCase{"2.50", "2.5", 0}, CompareCase{"2.5", "2.51", -1},
                    CompareCase{"-2.5", "-2.51", 1}, CompareCase{"-1", "1", -1},
                    CompareCase{"-0", "0", -1}, CompareCase{"-0.00", "-0", 0},
                    CompareCase{"0.000", "0", 0}, CompareCase{"-5", "-0", -1},
                    CompareCase{"18446744073709551616", "18446744073709551615", 1},
                    CompareCase{"-18446744073709551616", "-4294967296", -1},
                    CompareCase{"4294967296", "4294967295", 1}, CompareCase{"10", "9.99999", 1}));

TEST_F(NumberArithmetic, AlignmentOverflowsWithoutReport) {
  // 2^93 x 10^3 is a multiple of 2^96.
  KRPrecisionInteger large(1, 0);
  large <<= 93;
  EXPECT_EQ(large < KRPrecisionInteger(1, 3), 1);
  EXPECT_EQ(large == KRPrecisionInteger(0, 3), 1);
}

TEST_F(NumberArithmetic, NumbersOfVeryDifferentScaleCompareAtOnce) {
  EXPECT_EQ(KRPrecisionInteger(0, 65535) == KRPrecisionInteger(), 1);
  EXPECT_EQ(KRPrecisionInteger(1, 65535) > KRPrecisionInteger(7, 0), 1);
}

// --- Sums ----------------------------------------------------------------------------------------

struct ArithmeticCase {
  const char* left;
  const char* right;
  const char* sum;
  const char* difference;
};

class Sum : public ValueTest, public testing::WithParamInterface<ArithmeticCase> {};

TEST_P(Sum, TakesTheLargerScale) {
  const KRPrecisionInteger a(GetParam().left);
  const KRPrecisionInteger b(GetParam().right);
  EXPECT_EQ(Shown(a + b), GetParam().sum);
  EXPECT_EQ(Shown(a - b), GetParam().difference);
  KRPrecisionInteger n(a);
  EXPECT_EQ(&(n += b), &n);
  EXPECT_EQ(Shown(n), GetParam().sum);
  n = a;
  EXPECT_EQ(&(n -= b), &n);
  EXPECT_EQ(Shown(n), GetParam().difference);
}

INSTANTIATE_TEST_SUITE_P(
    All, Sum,
    testing::Values(ArithmeticCase{"1.5", "1.25", "275e2", "25e2"},
                    ArithmeticCase{"2.50", "2.5", "500e2", "0e2"},
                    ArithmeticCase{"2.5", "2.50", "500e2", "0e2"},
                    ArithmeticCase{"-2.5", "2.5", "0e1", "-50e1"},
                    ArithmeticCase{"1", "-3", "-2e0", "4e0"},
                    ArithmeticCase{"-1", "3", "2e0", "-4e0"},
                    ArithmeticCase{"-0", "-0", "0e0", "0e0"},
                    ArithmeticCase{"-0", "0", "0e0", "0e0"},
                    ArithmeticCase{"4294967295", "1", "4294967296e0", "4294967294e0"},
                    ArithmeticCase{"18446744073709551615", "1", "18446744073709551616e0",
                                   "18446744073709551614e0"},
                    ArithmeticCase{"18446744073709551616", "0.1", "184467440737095516161e1",
                                   "184467440737095516159e1"}));

TEST_F(NumberArithmetic, TheCarryOutOfTheTopIsLost) {
  KRPrecisionInteger n = Largest();
  n += KRPrecisionInteger(2, 0);
  EXPECT_EQ(Shown(n), "1e0");
  n = Largest();
  n.Negate();
  n -= KRPrecisionInteger(1, 0);
  EXPECT_EQ(Shown(n), "0e0");
}

TEST_F(NumberArithmetic, ANumberCanBeAddedToItself) {
  KRPrecisionInteger n("1.5");
  const KRPrecisionInteger& itself = n;
  n += itself;
  EXPECT_EQ(Shown(n), "30e1");
  n -= itself;
  EXPECT_EQ(Shown(n), "0e1");
}

// --- Products and quotients ----------------------------------------------------------------------

struct ProductCase {
  const char* left;
  const char* right;
  const char* result;
};

class Product : public ValueTest, public testing::WithParamInterface<ProductCase> {};

TEST_P(Product, AddsTheDecimals) {
  const KRPrecisionInteger a(GetParam().left);
  const KRPrecisionInteger b(GetParam().right);
  EXPECT_EQ(Shown(a * b), GetParam().result);
  EXPECT_EQ(Shown(b * a), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    All, Product,
    testing::Values(ProductCase{"1.5", "1.5", "225e2"}, ProductCase{"-2", "3", "-6e0"},
                    ProductCase{"-2", "-3", "6e0"}, ProductCase{"-2", "0", "-0e0"},
                    ProductCase{"-0", "-0.00", "0e2"}, ProductCase{"-0.01", "5.5", "-55e3"},
                    ProductCase{"65536", "65536", "4294967296e0"},
                    ProductCase{"4294967296", "4294967296", "18446744073709551616e0"},
                    ProductCase{"123456789", "987654321", "121932631112635269e0"}));

TEST_F(NumberArithmetic, AProductWrapsAt96Bits) {
  EXPECT_EQ(Shown(Number("281474976710656") * Number("281474976710656")), "0e0");
  EXPECT_EQ(Shown(Number("9999999999999999999999999999") * Number("10")),
            "20771837485735662406456049654e0");
}

TEST_F(NumberArithmetic, AProductOfManyDecimalsIsInvalidAndWrittenAsZero) {
  KRPrecisionInteger n = KRPrecisionInteger(3, 20) * KRPrecisionInteger(2, 10);
  EXPECT_EQ(Shown(n), "6e30");
  EXPECT_EQ(n.IsValid(), 0);
  EXPECT_STREQ(n, "0");
  EXPECT_EQ((KRPrecisionInteger(3, 65535) * KRPrecisionInteger(2, 2)).Decimal(), 1);
}

class Quotient : public ValueTest, public testing::WithParamInterface<ProductCase> {};

TEST_P(Quotient, IsAnIntegerDivisionOfMagnitudes) {
  const KRPrecisionInteger a(GetParam().left);
  const KRPrecisionInteger b(GetParam().right);
  EXPECT_EQ(Shown(a / b), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    All, Quotient,
    testing::Values(
        ProductCase{"7", "0", "7e0"}, ProductCase{"-7.5", "0.000", "-75e1"},
        ProductCase{"7", "-1", "7e0"}, ProductCase{"7", "0.01", "7e0"},
        ProductCase{"-7", "2", "-3e0"}, ProductCase{"1", "3", "0e0"},
        ProductCase{"-1", "3", "-0e0"}, ProductCase{"7", "2", "3e0"},
        ProductCase{"1.00", "3", "33e2"}, ProductCase{"7.5", "2.5", "3e0"},
        ProductCase{"0.00", "-5", "0e2"}, ProductCase{"-0", "-5", "-0e0"},
        ProductCase{"10", "2.5", "4e0"}, ProductCase{"10.000", "-2.5", "-400e2"},
        ProductCase{"121932631112635269", "987654321", "123456789e0"},
        ProductCase{"9999999999999999999999999999", "3", "3333333333333333333333333333e0"},
        ProductCase{"9999999999999999999999999999", "9999999999999999999999999998", "1e0"}));

// --- Shifts, tens, scale -------------------------------------------------------------------------

TEST_F(NumberArithmetic, AllShiftsWorkInPlace) {
  KRPrecisionInteger n(-3, 1);
  EXPECT_EQ(&(n << 33), &n);
  EXPECT_EQ(Shown(n), "-25769803776e1");
  EXPECT_EQ(&(n >> 32), &n);
  EXPECT_EQ(Shown(n), "-6e1");
  EXPECT_EQ(&(n <<= 95), &n);
  EXPECT_EQ(Shown(n), "-0e1");
  n = 5;
  EXPECT_EQ(&(n >>= 1), &n);
  EXPECT_EQ(Shown(n), "2e0");
  n << 0;
  EXPECT_EQ(Shown(n), "2e0");
  n <<= 96;
  EXPECT_EQ(Shown(n), "0e0");
  n = Largest();
  n >>= 200;
  EXPECT_EQ(Shown(n), "0e0");
}

TEST_F(NumberArithmetic, BitsBeyond96AreLost) {
  KRPrecisionInteger n = Largest();
  n <<= 1;
  n >>= 1;
  EXPECT_EQ(n.GetMSBytes(), 0x7FFFFFFFU);
  EXPECT_EQ(n.GetSSBytes(), 0xFFFFFFFFU);
}

TEST_F(NumberArithmetic, TensKeepTheDecimals) {
  KRPrecisionInteger n(15, 1);
  EXPECT_EQ(Shown(n.Mul10()), "150e1");
  EXPECT_EQ(Shown(n), "15e1");
  EXPECT_EQ(Shown(n.Div10()), "1e1");
  n.Mul10InPlace();
  EXPECT_EQ(Shown(n), "150e1");
  KRPrecisionInteger zero("-0");
  zero.Mul10InPlace();
  EXPECT_EQ(Shown(zero), "-0e0");
  EXPECT_EQ(Shown(zero.Div10()), "-0e0");
  EXPECT_EQ(Shown(KRPrecisionInteger(-9, 0).Div10()), "-0e0");
}

TEST_F(NumberArithmetic, ATenfoldThatOverflowsWraps) {
  KRPrecisionInteger n("9999999999999999999999999999");
  n.Mul10InPlace();
  EXPECT_EQ(Shown(n), "20771837485735662406456049654e0");
  KRPrecisionInteger half("-1");
  half <<= 95;
  half.Mul10InPlace();
  EXPECT_EQ(Shown(half), "0e0");
}

TEST_F(NumberArithmetic, ChangingTheScaleKeepsTheValueAndTruncates) {
  KRPrecisionInteger n("1.239");
  n.Decimal(2);
  EXPECT_EQ(Shown(n), "123e2");
  n.Decimal(5);
  EXPECT_EQ(Shown(n), "123000e5");
  n = "-0.004";
  n.Decimal(2);
  EXPECT_EQ(Shown(n), "-0e2");
  n.Decimal(65535);
  EXPECT_EQ(Shown(n), "-0e65535");
  n.Decimal(0);
  EXPECT_EQ(Shown(n), "-0e0");
}

TEST_F(NumberArithmetic, SettingTheDecimalsChangesTheValue) {
  KRPrecisionInteger n(150, 0);
  EXPECT_EQ(n.SetDecimal(29), 1);
  EXPECT_EQ(Shown(n), "150e29");
  EXPECT_EQ(n.SetDecimal(30), 0);
  EXPECT_EQ(Shown(n), "150e29");
  EXPECT_EQ(n.IsValid(), 1);
}

TEST_F(NumberArithmetic, TheIntegerIsTruncatedAndTheFractionIsAll) {
  KRPrecisionInteger n("-12.99");
  EXPECT_EQ(Shown(n.Integer()), "-12e0");
  EXPECT_EQ(Shown(n.Fraction()), "-1299e2");
  EXPECT_EQ(Shown(n), "-1299e2");
  EXPECT_EQ(Shown(KRPrecisionInteger(7, 65535).Integer()), "0e0");
}

TEST_F(NumberArithmetic, SignsTurn) {
  KRPrecisionInteger n(5, 0);
  n.Negate();
  EXPECT_EQ(Shown(n), "-5e0");
  EXPECT_EQ(Shown(n.abs()), "5e0");
  EXPECT_EQ(n.IsNegative(), 1);
  EXPECT_EQ(n.IsPositive(), 0);
  n.Negate();
  EXPECT_EQ(Shown(n), "5e0");
  KRPrecisionInteger zero;
  zero.Negate();
  EXPECT_EQ(Shown(zero), "0e0");
  EXPECT_EQ(zero.IsPositive(), 1);
  EXPECT_EQ(zero.IsZero(), 1);
  zero = "-0";
  EXPECT_EQ(zero.IsZero(), 1);
  EXPECT_EQ(zero.IsNegative(), 1);
  EXPECT_EQ(Shown(zero.abs()), "0e0");
  zero.Negate();
  EXPECT_EQ(Shown(zero), "0e0");
}

// --- For derived classes
// ---------------------------------------------------------------------------

TEST_F(NumberArithmetic, BitsAreMasksWithinTheirWord) {
  KRPrecisionInteger n(5, 0);
  n <<= 64;
  const OpenNumber open(n);
  EXPECT_EQ(open.Bit(64), 1U);
  EXPECT_EQ(open.Bit(65), 0U);
  EXPECT_EQ(open.Bit(66), 4U);
  EXPECT_EQ(open.Bit(2), 0U);
  EXPECT_EQ(open.Bit(96), 0U);
  EXPECT_EQ(open.Bit(65535), 0U);
  EXPECT_EQ(OpenNumber(Largest()).Bit(31), 0x80000000U);
}

TEST_F(NumberArithmetic, DigitsOfTheValueAreCountedBeforeThePoint) {
  EXPECT_EQ(OpenNumber(Number("0")).MSD(), 0);
  EXPECT_EQ(OpenNumber(Number("9")).MSD(), 1);
  EXPECT_EQ(OpenNumber(Number("-10")).MSD(), 2);
  EXPECT_EQ(OpenNumber(Number("12.50")).MSD(), 2);
  EXPECT_EQ(OpenNumber(Number(".5")).MSD(), 0);
  EXPECT_EQ(OpenNumber(Number("9999999999999999999999999999")).MSD(), 28);
  EXPECT_EQ(OpenNumber(Largest()).MSD(), 0);
}

TEST_F(NumberArithmetic, AligningGivesBothTheLargerScale) {
  KRPrecisionInteger a("1.5");
  KRPrecisionInteger b("2.125");
  const OpenNumber open{KRPrecisionInteger()};
  open.RightAlign(a, b);
  EXPECT_EQ(Shown(a), "1500e3");
  EXPECT_EQ(Shown(b), "2125e3");
  a = 1;
  open.RightAlign(b, a);
  EXPECT_EQ(Shown(a), "1000e3");
}

}  // namespace
