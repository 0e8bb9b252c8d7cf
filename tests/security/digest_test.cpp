// Digests: SHA-1 of buffers and texts, reuse, and what fails.

#include "krofx/security/digest.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "krofx/core/string.h"
#include "krofx/security/internal/toolkit.h"
#include "support/buffers.h"
#include "support/failing_allocation.h"

namespace {

constexpr char kOfNothing[] = "da39a3ee5e6b4b0d3255bfef95601890afd80709";
constexpr char kOfAbc[] = "a9993e364706816aba3e25717850c26c9cd0d89d";

int ChooseNothing(unsigned char**) { return 1; }

// The digest in hexadecimal.
std::string Hex(KRDigest& digest) {
  std::string text;
  for (const char c : Content(*digest.GetOutputData())) {
    constexpr char kDigits[] = "0123456789abcdef";
    text += kDigits[static_cast<unsigned char>(c) >> 4];
    text += kDigits[static_cast<unsigned char>(c) & 15];
  }
  return text;
}

TEST(KRDigest, DigestsAnEmptyBuffer) {
  KRBuffer input(0, 0);
  KRDigest digest;
  EXPECT_EQ(digest.SetInputData(&input), KRSecStatus_Success);
  ExpectState(*digest.GetOutputData(), 20, 20, 0);
  EXPECT_EQ(Hex(digest), kOfNothing);
}

TEST(KRDigest, DigestsBuffersByTheStandard) {
  struct Known {
    std::string data;
    const char* digest;
  };
  const Known known[] = {
      {"abc", kOfAbc},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "84983e441c3bd26ebaae4aa1f95129e5e54670f1"},
      {std::string(1000000, 'a'), "34aa973cd4c4daa4f61eeb2bdbad27316534016f"},
  };
  for (const Known& one : known) {
    KRBuffer input(0, 0);
    Put(input, one.data);
    KRDigest digest(&input, KRChooseSHA1);
    EXPECT_EQ(Hex(digest), one.digest);
  }
}

TEST(KRDigest, DigestsATextWithoutItsTerminator) {
  const KRString text("abc");
  KRDigest digest;
  EXPECT_EQ(digest.SetInputStr(&text), KRSecStatus_Success);
  EXPECT_EQ(Hex(digest), kOfAbc);
  KRDigest atOnce(&text, KRChooseSHA1);
  EXPECT_EQ(Hex(atOnce), kOfAbc);
}

TEST(KRDigest, TakesANullTextForAnEmptyOne) {
  const KRString text;
  KRDigest digest;
  EXPECT_EQ(digest.SetInputStr(&text), KRSecStatus_Success);
  EXPECT_EQ(Hex(digest), kOfNothing);
}

TEST(KRDigest, FailsWithoutInput) {
  KRDigest digest;
  EXPECT_EQ(digest.SetInputData(nullptr), KRSecStatus_DigestFailed);
  EXPECT_EQ(digest.SetInputStr(nullptr), KRSecStatus_DigestFailed);
  KRDigest nothing(static_cast<KRBuffer*>(nullptr), KRChooseSHA1);
  EXPECT_EQ(nothing.GetOutputData()->GetBufferSize(), 0u);
}

TEST(KRDigest, ForgetsTheOtherInput) {
  KRBuffer input(0, 0);
  Put(input, "abc");
  const KRString text("abc");
  KRDigest digest;
  EXPECT_EQ(digest.SetInputStr(&text), KRSecStatus_Success);
  EXPECT_EQ(digest.SetInputData(nullptr), KRSecStatus_DigestFailed);
  EXPECT_EQ(digest.SetInputData(&input), KRSecStatus_Success);
  EXPECT_EQ(digest.SetInputStr(nullptr), KRSecStatus_DigestFailed);
}

TEST(KRDigest, IsReadyForANewDigestBehindEach) {
  KRDigest digest;
  for (int i = 0; i < 3; ++i) {
    KRBuffer input(0, 0);
    EXPECT_EQ(digest.SetInputData(&input), KRSecStatus_Success);
    EXPECT_EQ(Hex(digest), kOfNothing);
    Put(input, "abc");
    EXPECT_EQ(digest.SetInputData(&input), KRSecStatus_Success);
    EXPECT_EQ(Hex(digest), kOfAbc);
    EXPECT_EQ(digest.SetInputData(nullptr), KRSecStatus_DigestFailed);
  }
}

TEST(KRDigest, PutsTheCursorOfItsOutputToTheStart) {
  const KRString text("abc");
  KRDigest digest(&text, KRChooseSHA1);
  digest.GetOutputData()->SetBufferOffset(20);
  EXPECT_EQ(digest.SetInputStr(&text), KRSecStatus_Success);
  ExpectState(*digest.GetOutputData(), 20, 20, 0);
}

TEST(KRDigest, DigestsItsOwnOutput) {
  const KRString text("abc");
  KRDigest twice(&text, KRChooseSHA1);
  KRDigest once(&text, KRChooseSHA1);
  KRDigest other(once.GetOutputData(), KRChooseSHA1);
  EXPECT_EQ(twice.SetInputData(twice.GetOutputData()), KRSecStatus_Success);
  EXPECT_EQ(Hex(twice), Hex(other));
}

TEST(KRDigest, FailsInTheFirstUseWhenTheAlgorithmIsNotToBeHad) {
  const KRString text("abc");
  using Chooser = int (*)(unsigned char**);
  for (const Chooser chooser : {static_cast<Chooser>(nullptr), &ChooseNothing, &KRChooseBase64}) {
    KRDigest digest(chooser);
    EXPECT_EQ(digest.SetInputStr(&text), KRSecStatus_DigestFailed);
    EXPECT_EQ(digest.GetOutputData()->GetBufferSize(), 0u);
  }
}

TEST(KRDigest, SaysSoWhenMemoryRunsOut) {
  const KRString text("abc");
  int failures = 0;
  for (std::size_t nth = 1; nth < 10; ++nth) {
    const FailingAllocation failing(nth);
    KRDigest digest;
    const KRSecStatus status = digest.SetInputStr(&text);
    if (status == KRSecStatus_Success) {
      EXPECT_EQ(Hex(digest), kOfAbc);
    } else {
      EXPECT_EQ(status, KRSecStatus_DigestFailed);
      ++failures;
    }
  }
  EXPECT_EQ(failures, 1) << "the algorithm object; the output is had again";
}

// The memory of the output, which is requested again after the data, fails twice.
TEST(KRDigest, TakesNothingOverFromADigestThatFailed) {
  const KRString text("abc");
  const FailingAllocation failing(1);
  KRDigest digest;
  krofx::internal::AllocationFailure::FailAt(1);
  EXPECT_EQ(digest.SetInputStr(&text), KRSecStatus_DigestFailed);
  krofx::internal::AllocationFailure::FailAt(0);
  EXPECT_EQ(digest.SetInputStr(&text), KRSecStatus_Success);
  EXPECT_EQ(Hex(digest), kOfAbc);
}

TEST(KRDigest, IsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<KRDigest>);
  EXPECT_FALSE(std::is_copy_assignable_v<KRDigest>);
  EXPECT_TRUE(std::has_virtual_destructor_v<KRDigest>);
}

TEST(DigestToolkit, FailsWithTooLittleRoom) {
  using namespace krofx::internal;
  AlgorithmObject* const object = CreateAlgorithmObject();
  ASSERT_EQ(BindAlgorithm(object, KRChooseSHA1), 0);
  char out[20];
  u32 written = 0;
  EXPECT_NE(DigestFinal(object, out, 20, &written), 0) << "not made ready";
  EXPECT_NE(DigestUpdate(object, "abc", 3), 0) << "not made ready";
  ASSERT_EQ(DigestInit(object), 0);
  EXPECT_NE(DigestFinal(object, out, 19, &written), 0);
  ASSERT_EQ(DigestInit(object), 0);
  EXPECT_EQ(DigestUpdate(object, "ab", 2), 0);
  EXPECT_EQ(DigestUpdate(object, "c", 1), 0);
  EXPECT_EQ(DigestFinal(object, out, 20, &written), 0);
  EXPECT_EQ(written, 20u);
  EXPECT_EQ(DigestFinal(object, out, 20, &written), 0) << "ready for a new one";
  DestroyAlgorithmObject(object);
}

TEST(DigestToolkit, FailsWithoutItsAlgorithm) {
  using namespace krofx::internal;
  AlgorithmObject* const object = CreateAlgorithmObject();
  char out[20];
  u32 written = 0;
  for (AlgorithmObject* const unbound : {static_cast<AlgorithmObject*>(nullptr), object}) {
    EXPECT_NE(DigestInit(unbound), 0);
    EXPECT_NE(DigestUpdate(unbound, "abc", 3), 0);
    EXPECT_NE(DigestFinal(unbound, out, 20, &written), 0);
  }
  DestroyAlgorithmObject(object);
}

TEST(DigestToolkit, NeedsAPlaceForTheDescription) {
  EXPECT_NE(KRChooseSHA1(nullptr), 0);
  unsigned char* description = nullptr;
  EXPECT_EQ(KRChooseSHA1(&description), 0);
  EXPECT_NE(description, nullptr);
}

}  // namespace
