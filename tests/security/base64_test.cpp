// Base64: the exact coding in both directions, reuse, and what fails.

#include "krofx/security/base64.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "krofx/security/internal/base64_coding.h"
#include "krofx/security/internal/toolkit.h"
#include "support/buffers.h"
#include "support/failing_allocation.h"

namespace {

int ChooseNothing(unsigned char**) { return 1; }

int ChooseSilently(unsigned char**) { return 0; }

int ChooseAStranger(unsigned char** description) {
  static unsigned char stranger[] = "base64";
  *description = stranger;
  return 0;
}

using Chooser = int (*)(unsigned char**);

// The text of some bytes, or a word for a failure.
std::string Encoded(const std::string& bytes) {
  KRBuffer input(0, 0);
  Put(input, bytes);
  KREncode encode;
  if (encode.SetInputData(&input) != KRSecStatus_Success) return "failed";
  return Content(*encode.GetOutputData());
}

KRSecStatus StatusOfDecoding(const std::string& text) {
  KRBuffer input(0, 0);
  Put(input, text);
  return KRDecode().SetInputData(&input);
}

void ExpectDecoded(const std::string& text, const std::string& bytes) {
  SCOPED_TRACE(text);
  KRBuffer input(0, 0);
  Put(input, text);
  KRDecode decode;
  EXPECT_EQ(decode.SetInputData(&input), KRSecStatus_Success);
  EXPECT_EQ(Content(*decode.GetOutputData()), bytes);
  EXPECT_EQ(decode.GetOutputData()->GetBufferOffset(), 0u);
}

void ExpectRefused(const std::string& text) {
  EXPECT_EQ(StatusOfDecoding(text), KRSecStatus_DecodingFailed) << text;
}

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

// ---- Encoding ----

TEST(KREncode, WritesGroupsOfFour) {
  EXPECT_EQ(Encoded(""), "");
  EXPECT_EQ(Encoded("f"), "Zg==");
  EXPECT_EQ(Encoded("fo"), "Zm8=");
  EXPECT_EQ(Encoded("foo"), "Zm9v");
  EXPECT_EQ(Encoded("foob"), "Zm9vYg==");
  EXPECT_EQ(Encoded("fooba"), "Zm9vYmE=");
  EXPECT_EQ(Encoded("foobar"), "Zm9vYmFy");
}

TEST(KREncode, UsesTheWholeAlphabetInOrder) {
  std::string groups;
  for (unsigned value = 0; value < 64; value += 4) {
    const unsigned bits = value << 18 | (value + 1) << 12 | (value + 2) << 6 | (value + 3);
    for (int place = 16; place >= 0; place -= 8) groups += static_cast<char>(bits >> place & 0xff);
  }
  EXPECT_EQ(Encoded(groups), "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST(KREncode, MakesRoomForTheFourCharactersOfOneByte) {
  EXPECT_EQ(Encoded(std::string(1, '\0')), "AA==");
  EXPECT_EQ(Encoded("\xff"), "/w==");
}

TEST(KREncode, GivesTwentyBytesTwentyEightCharactersTheLastAnEqualsSign) {
  const std::string text = Encoded(std::string(20, 'x'));
  EXPECT_EQ(text.size(), 28u);
  EXPECT_EQ(text.back(), '=');
  EXPECT_NE(text[26], '=');
}

TEST(KREncode, BreaksNoLines) {
  const std::string text = Encoded(std::string(100000, 'x'));
  EXPECT_EQ(text.size(), 133336u);
  EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos);
}

TEST(KREncode, RefusesToEncodeNothing) {
  KREncode encode;
  EXPECT_EQ(encode.SetInputData(nullptr), KRSecStatus_EncodingFailed);
}

TEST(KREncode, EncodesInItsConstructor) {
  KRBuffer input(0, 0);
  Put(input, "foo");
  KREncode encode(&input, KRChooseBase64);
  EXPECT_EQ(Content(*encode.GetOutputData()), "Zm9v");
}

TEST(KREncode, ReplacesItsOutputEachTime) {
  KREncode encode;
  for (const std::string& bytes : {std::string(300, 'a'), std::string("b"), std::string()}) {
    KRBuffer input(0, 0);
    Put(input, bytes);
    EXPECT_EQ(encode.SetInputData(&input), KRSecStatus_Success);
    EXPECT_EQ(Content(*encode.GetOutputData()), Encoded(bytes));
    EXPECT_EQ(encode.GetOutputData()->GetBufferOffset(), 0u);
    char ignored = 0;
    while (encode.GetOutputData()->Read(&ignored) == KRBufferOK) {
    }
  }
}

TEST(KREncode, TakesTheWholeBufferWhereverItsCursorStands) {
  KRBuffer input(0, 0);
  Put(input, "foobar");
  input.SetBufferOffset(3);
  KREncode encode(&input, KRChooseBase64);
  EXPECT_EQ(Content(*encode.GetOutputData()), "Zm9vYmFy");
  EXPECT_EQ(input.GetBufferOffset(), 3u);
}

TEST(KREncode, TakesNoMoreThanTheMemoryOfItsInput) {
  KRBuffer input(6, 0);
  Put(input, "foobar");
  input.SetBufferSize(100000);
  KREncode encode(&input, KRChooseBase64);
  EXPECT_EQ(Content(*encode.GetOutputData()), "Zm9vYmFy");
}

// ---- Decoding ----

TEST(KRDecode, ReadsGroupsOfFour) {
  ExpectDecoded("Zg==", "f");
  ExpectDecoded("Zm8=", "fo");
  ExpectDecoded("Zm9v", "foo");
  ExpectDecoded("Zm9vYg==", "foob");
  ExpectDecoded("Zm9vYmE=", "fooba");
  ExpectDecoded("Zm9vYmFy", "foobar");
}

TEST(KRDecode, TurnsAnEmptyTextIntoAnEmptyOutput) {
  ExpectDecoded("", "");
  ExpectDecoded(" \r\n\t", "");
}

TEST(KRDecode, ReturnsWhatWasEncoded) {
  const std::string all = AllBytes();
  for (std::size_t size = 0; size <= all.size(); ++size) {
    ExpectDecoded(Encoded(all.substr(0, size)), all.substr(0, size));
  }
}

TEST(KRDecode, SkipsLineEndsBlanksAndTabsWhereverTheyStand) {
  ExpectDecoded("\r\nZ m\t9v\r\n", "foo");
  ExpectDecoded(" Z\tg\r=\n= ", "f");
  ExpectDecoded("Zg==\r\n", "f");
}

TEST(KRDecode, RefusesEveryOtherCharacter) {
  const std::string allowed =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/= \t\r\n";
  for (const char c : AllBytes()) {
    if (allowed.find(c) != std::string::npos) continue;
    ExpectRefused(std::string("Zm9v") + c);
    ExpectRefused(c + std::string("Zm9v"));
    ExpectRefused(std::string("Zm") + c + "v");
    ExpectRefused(std::string("Zm") + c + "9v");
    ExpectRefused(std::string("Zg==") + c);
  }
}

TEST(KRDecode, RefusesGroupsThatAreNotWhole) {
  for (const char* text : {"Z", "Zm", "Zm9", "Zm9vZ", "Zm9vZm", "Zm9vZm9", "Zg=", "="}) {
    ExpectRefused(text);
  }
}

TEST(KRDecode, RefusesThreeCharactersInTheLastGroupHoweverTheRestLooks) {
  ExpectRefused("Zm9");
  ExpectRefused("Zm9vZm9");
  ExpectRefused("Zm9v\r\nZm8\r\n");
  ExpectRefused("Zm9vZg=");
}

TEST(KRDecode, AllowsPaddingInTheLastTwoPlacesOnly) {
  for (const char* text : {"====", "Z===", "=AAA", "A=AA", "AA=A", "A==A", "AAA=AAAA", "AA==AAAA",
                           "AA==AA==", "AAAA=", "AAAA====", "AA===", "AA==="}) {
    ExpectRefused(text);
  }
}

TEST(KRDecode, IgnoresBitsLeftOverBeforePadding) {
  ExpectDecoded("AA==", std::string(1, '\0'));
  ExpectDecoded("AB==", std::string(1, '\0'));
  ExpectDecoded("AP==", std::string(1, '\0'));
  ExpectDecoded("AAD=", std::string(2, '\0'));
}

TEST(KRDecode, RefusesToDecodeNothing) {
  KRDecode decode;
  EXPECT_EQ(decode.SetInputData(nullptr), KRSecStatus_DecodingFailed);
}

TEST(KRDecode, DecodesInItsConstructor) {
  KRBuffer input(0, 0);
  Put(input, "Zm9v");
  KRDecode decode(&input, KRChooseBase64);
  EXPECT_EQ(Content(*decode.GetOutputData()), "foo");
}

TEST(KRDecode, StartsAnewBehindAFailure) {
  KRBuffer broken(0, 0);
  Put(broken, "Zm9vZm8");
  KRBuffer whole(0, 0);
  Put(whole, "Zm9vYmFy");
  KRDecode decode;
  EXPECT_EQ(decode.SetInputData(&broken), KRSecStatus_DecodingFailed);
  EXPECT_EQ(decode.SetInputData(&whole), KRSecStatus_Success);
  EXPECT_EQ(Content(*decode.GetOutputData()), "foobar");
}

// ---- Choosers ----

TEST(Base64Choosers, NameTheDefault) {
  KRBuffer input(0, 0);
  Put(input, "foo");
  KREncode encode(KRChooseBase64);
  EXPECT_EQ(encode.SetInputData(&input), KRSecStatus_Success);
  KRDecode decode(KRChooseBase64);
  EXPECT_EQ(decode.SetInputData(encode.GetOutputData()), KRSecStatus_Success);
  EXPECT_EQ(Content(*decode.GetOutputData()), "foo");
}

TEST(Base64Choosers, FailInTheFirstUseWhenTheAlgorithmIsNotToBeHad) {
  KRBuffer input(0, 0);
  Put(input, "Zm9v");
  for (const Chooser chooser : {static_cast<Chooser>(nullptr), &ChooseNothing, &ChooseSilently,
                                &ChooseAStranger, &KRChooseSHA1}) {
    KREncode encode(chooser);
    EXPECT_EQ(encode.SetInputData(&input), KRSecStatus_EncodingFailed);
    EXPECT_EQ(encode.SetInputData(nullptr), KRSecStatus_EncodingFailed);
    KRDecode decode(chooser);
    EXPECT_EQ(decode.SetInputData(&input), KRSecStatus_DecodingFailed);
    KREncode encodesAtOnce(&input, chooser);
    EXPECT_EQ(encodesAtOnce.GetOutputData()->GetBufferSize(), 0u);
    KRDecode decodesAtOnce(&input, chooser);
    EXPECT_EQ(decodesAtOnce.GetOutputData()->GetBufferSize(), 0u);
  }
}

TEST(Base64Choosers, NeedAPlaceForTheDescription) {
  EXPECT_NE(KRChooseBase64(nullptr), 0);
  unsigned char* description = nullptr;
  EXPECT_EQ(KRChooseBase64(&description), 0);
  EXPECT_NE(description, nullptr);
}

// ---- Misuse and memory ----

TEST(Base64, RefusesItsOwnOutput) {
  KRBuffer input(0, 0);
  Put(input, "foobar");
  KREncode encode(&input, KRChooseBase64);
  EXPECT_EQ(encode.SetInputData(encode.GetOutputData()), KRSecStatus_EncodingFailed);
  EXPECT_EQ(Content(*encode.GetOutputData()), "Zm9vYmFy");
  KRDecode decode(encode.GetOutputData(), KRChooseBase64);
  EXPECT_EQ(decode.SetInputData(decode.GetOutputData()), KRSecStatus_DecodingFailed);
}

TEST(Base64, RefusesABufferThatLostItsMemory) {
  const FailingAllocation failing(1, true);
  KRBuffer lost(100, 0);
  EXPECT_EQ(KREncode().SetInputData(&lost), KRSecStatus_EncodingFailed);
  EXPECT_EQ(KRDecode().SetInputData(&lost), KRSecStatus_DecodingFailed);
}

// The output's memory is requested again after a failure, so not every failed allocation makes the
// coding fail.
template <class Coder>
void ExpectOneStatusWhenMemoryRunsOut(KRSecStatus failed) {
  KRBuffer input(0, 0);
  for (int i = 0; i < 1000; ++i) Put(input, "Zm9v");
  int failures = 0;
  KRSecStatus status = failed;
  for (std::size_t nth = 1; nth < 10; ++nth) {
    const FailingAllocation failing(nth);
    Coder coder;
    status = coder.SetInputData(&input);
    if (status == KRSecStatus_Success) continue;
    EXPECT_EQ(status, failed);
    ++failures;
  }
  EXPECT_GE(failures, 2);
  EXPECT_EQ(status, KRSecStatus_Success);
}

TEST(Base64, SaysSoWhenMemoryRunsOut) {
  ExpectOneStatusWhenMemoryRunsOut<KREncode>(KRSecStatus_EncodingFailed);
  ExpectOneStatusWhenMemoryRunsOut<KRDecode>(KRSecStatus_DecodingFailed);
}

TEST(Base64, IsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<KREncode>);
  EXPECT_FALSE(std::is_copy_assignable_v<KRDecode>);
  EXPECT_TRUE(std::has_virtual_destructor_v<KREncode>);
  EXPECT_TRUE(std::has_virtual_destructor_v<KRDecode>);
}

// ---- The toolkit's coders ----

TEST(Base64Toolkit, TakesDataPieceByPiece) {
  using namespace krofx::internal;
  AlgorithmObject* const object = CreateAlgorithmObject();
  ASSERT_EQ(BindAlgorithm(object, KRChooseBase64), 0);
  ASSERT_EQ(EncodeInit(object), 0);
  std::string text;
  for (const char c : std::string("fooba")) {
    char piece[4];
    u32 written = 9;
    ASSERT_EQ(EncodeUpdate(object, piece, sizeof piece, &written, &c, 1), 0);
    text.append(piece, written);
  }
  char last[4];
  u32 written = 9;
  EXPECT_EQ(EncodeFinal(object, last, 3, &written), 1) << "too little room";
  ASSERT_EQ(EncodeInit(object), 0);
  EXPECT_EQ(EncodeFinal(object, last, 0, &written), 0);
  EXPECT_EQ(written, 0u);
  EXPECT_EQ(text, "Zm9v");
  DestroyAlgorithmObject(object);
}

TEST(Base64Toolkit, FailsWithTooLittleRoom) {
  using namespace krofx::internal;
  AlgorithmObject* const object = CreateAlgorithmObject();
  ASSERT_EQ(BindAlgorithm(object, KRChooseBase64), 0);
  ASSERT_EQ(DecodeInit(object), 0);
  char out[3];
  u32 written = 0;
  EXPECT_NE(DecodeUpdate(object, out, 2, &written, "Zm9v", 4), 0);
  DestroyAlgorithmObject(object);
}

TEST(Base64Toolkit, FailsWithoutAnAlgorithm) {
  using namespace krofx::internal;
  char out[4];
  u32 written = 0;
  AlgorithmObject* const unbound = CreateAlgorithmObject();
  for (AlgorithmObject* const object : {static_cast<AlgorithmObject*>(nullptr), unbound}) {
    EXPECT_NE(EncodeInit(object), 0);
    EXPECT_NE(EncodeUpdate(object, out, 4, &written, "a", 1), 0);
    EXPECT_NE(EncodeFinal(object, out, 4, &written), 0);
    EXPECT_NE(DecodeInit(object), 0);
    EXPECT_NE(DecodeUpdate(object, out, 4, &written, "a", 1), 0);
    EXPECT_NE(DecodeFinal(object, out, 4, &written), 0);
  }
  EXPECT_NE(BindAlgorithm(nullptr, KRChooseBase64), 0);
  DestroyAlgorithmObject(unbound);
  DestroyAlgorithmObject(nullptr);
}

}  // namespace
