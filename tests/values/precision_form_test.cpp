// Exact decimals as data: fit into integers, the rules of the derived numbers, the binary form.

#include <gtest/gtest.h>

#include <cstring>

#include "krofx/values/precision_integer.h"
#include "precision_values.h"
#include "value_warnings.h"

namespace {

using krofx::internal::AllocationFailure;

class NumberForm : public ValueTest {};

// --- Fit and getters -----------------------------------------------------------------------------

struct FitCase {
  const char* text;
  u16 sshort;
  u16 ushort;
  u16 slong;
  u16 ulong;
};

class Fit : public ValueTest, public testing::WithParamInterface<FitCase> {};

TEST_P(Fit, LooksAtTheMagnitudeAlone) {
  const KRPrecisionInteger n(GetParam().text);
  EXPECT_EQ(n.FitInASShort(), GetParam().sshort);
  EXPECT_EQ(n.FitInAUShort(), GetParam().ushort);
  EXPECT_EQ(n.FitInASLong(), GetParam().slong);
  EXPECT_EQ(n.FitInAULong(), GetParam().ulong);
}

INSTANTIATE_TEST_SUITE_P(
    All, Fit,
    testing::Values(FitCase{"32767", 1, 1, 1, 1}, FitCase{"-32767", 1, 1, 1, 1},
                    FitCase{"32768", 0, 1, 1, 1}, FitCase{"-32768", 0, 1, 1, 1},
                    FitCase{"65535", 0, 1, 1, 1}, FitCase{"65536", 0, 0, 1, 1},
                    FitCase{"2147483647", 0, 0, 1, 1}, FitCase{"2147483648", 0, 0, 0, 1},
                    FitCase{"4294967295", 0, 0, 0, 1}, FitCase{"4294967296", 0, 0, 0, 0},
                    FitCase{"18446744073709551616", 0, 0, 0, 0}, FitCase{"3.2768", 0, 1, 1, 1}));

TEST_F(NumberForm, GettersCutTheMagnitude) {
  const KRPrecisionInteger n("-4295049729.5");  // 10 x 2^32 + 824335
  EXPECT_EQ(n.GetLSBytes(), 42950497295U & 0xFFFFFFFFU);
  EXPECT_EQ(n.GetSSBytes(), 10U);
  EXPECT_EQ(n.GetMSBytes(), 0U);
  EXPECT_EQ(n.GetKRULong(), n.GetLSBytes());
  EXPECT_EQ(n.GetKRUShort(), static_cast<u16>(n.GetLSBytes()));
  EXPECT_EQ(n.GetKRSLong(), -static_cast<s32>(n.GetLSBytes()));
  EXPECT_EQ(n.GetKRSShort(), static_cast<s16>(-static_cast<s32>(n.GetLSBytes())));
  EXPECT_EQ(KRPrecisionInteger(-5, 2).GetKRSShort(), -5);
  EXPECT_EQ(Number("4294967295").GetKRSLong(), -1);
  EXPECT_EQ(Number("-4294967295").GetKRSLong(), 1);
  EXPECT_EQ(Number("40000").GetKRSShort(), -25536);
}

// --- Derived numbers -----------------------------------------------------------------------------

TEST_F(NumberForm, ValidityEndsAt30Decimals) {
  EXPECT_EQ(KRPrecisionInteger(1, 29).IsValid(), 1);
  EXPECT_EQ(KRPrecisionInteger(1, 30).IsValid(), 0);
  EXPECT_EQ(KRPosPrecisionInteger(1, 30).IsValid(), 0);
  EXPECT_EQ(KRPercent(1, 30).IsValid(), 0);
}

TEST_F(NumberForm, DerivedNumbersTakeAnyNumberAndTellThatItIsNotTheirs) {
  KRPercent percent(KRPrecisionInteger(-1, 0));
  EXPECT_EQ(percent.IsValid(), 0);
  percent = KRPrecisionInteger(995, 1);
  EXPECT_EQ(percent.IsValid(), 1);
  percent = 101;
  EXPECT_EQ(percent.IsValid(), 0);
  KRPosPrecisionInteger positive(KRPrecisionInteger(1, 0));
  EXPECT_EQ(positive.IsValid(), 1);
  positive = -1;
  EXPECT_EQ(positive.IsValid(), 0);
  const KRPosPrecisionInteger copy(positive);
  EXPECT_EQ(Shown(copy), "-1e0");
}

TEST_F(NumberForm, AWideIntegersOwnRuleIsNotTheOneThatReadingUses) {
  KRWideInteger wide;
  EXPECT_EQ(wide.ConvertStringToKRPrecisionInteger("1.5"), 1);
  EXPECT_EQ(wide.IsValid(), 0);
  const KRWideInteger& fixed = wide;
  EXPECT_EQ(fixed.IsValid(), 1);
  const KRPrecisionInteger& base = wide;
  EXPECT_EQ(base.IsValid(), 1);
  wide = 7;
  EXPECT_EQ(wide.IsValid(), 1);
  wide = KRPrecisionInteger(7, 1);
  EXPECT_EQ(wide.IsValid(), 0);
  wide = "8";
  EXPECT_EQ(Shown(KRWideInteger(wide)), "8e0");
}

// --- Binary form ---------------------------------------------------------------------------------

TEST_F(NumberForm, TheBinaryFormIsLittleEndianWithVersion1) {
  KRPrecisionInteger n(0x04030201, 0);
  n <<= 32;
  n += KRPrecisionInteger(0x08070605, 0);
  n <<= 32;
  n += KRPrecisionInteger(0x0C0B0A09, 0);
  n.Negate();
  EXPECT_EQ(n.SetDecimal(7), 1);

  EXPECT_EQ(KRPrecisionInteger::m_binaryLen, 20);
  unsigned char block[20];
  std::memset(block, 0xEE, sizeof block);
  u16 length = 0;
  n.ExportBinary(block, &length);
  EXPECT_EQ(length, 20);
  const unsigned char expected[20] = {1, 0, 9, 10, 11,   12,   5, 6, 7,    8,
                                      1, 2, 3, 4,  0xFF, 0xFF, 7, 0, 0xEE, 0xEE};
  EXPECT_EQ(std::memcmp(block, expected, sizeof block), 0);

  KRPrecisionInteger read;
  read.ImportBinary(block);
  EXPECT_EQ(Shown(read), Shown(n));
}

TEST_F(NumberForm, ABinaryBlockThatIsNotOursIsIgnored) {
  unsigned char block[20] = {};
  u16 length = 99;
  KRPrecisionInteger(5, 0).ExportBinary(block, nullptr);
  KRPrecisionInteger n(7, 1);
  n.ExportBinary(nullptr, &length);
  EXPECT_EQ(length, 99);
  block[0] = 2;
  n.ImportBinary(block);
  EXPECT_EQ(Shown(n), "7e1");
  block[0] = 1;
  block[14] = 3;  // no sign
  n.ImportBinary(block);
  EXPECT_EQ(Shown(n), "7e1");
  n.ImportBinary(nullptr);
  EXPECT_EQ(Shown(n), "7e1");
  EXPECT_EQ(TakeWarnings(), Warnings{});
}

TEST_F(NumberForm, TheBinaryBlockOfANumberIsMadeOnceAndFreed) {
  KRPrecisionInteger n(5, 0);
  void* const block = n.LockBuffer();
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(n.LockBuffer(), block);
  n.ExportBinary(block, nullptr);
  n.UnLockBuffer();
  n.UnLockBuffer();
  AllocationFailure::FailAt(1);
  EXPECT_EQ(n.LockBuffer(), nullptr);
  EXPECT_EQ(KRGetFireAlarm(), KRFireAlarm_MemoryExhausted);
}

}  // namespace
