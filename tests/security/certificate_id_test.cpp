// Certificate IDs: the digest of the whole certificate, appended each time.

#include "krofx/security/certificate_id.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "security/certificates.h"
#include "support/buffers.h"
#include "support/failing_allocation.h"

namespace {

// SHA-1 of "abc", known from the standard, in base64.
constexpr char kOfAbc[] = "qZk+NkcGgWq6PiVxeFDCbJzQ2J0=";

KRSecStatus AddBER(KRCertID& id, const std::string& bytes) {
  KRBuffer buffer(0, 0);
  Put(buffer, bytes);
  return id.SetCertBER(&buffer);
}

KRSecStatus AddEncoded(KRCertID& id, const std::string& text) {
  KRBuffer buffer(0, 0);
  Put(buffer, text);
  return id.SetEncodedCert(&buffer);
}

TEST(KRCertID, BeginsEmpty) {
  KRCertID id;
  EXPECT_EQ(id.IsEmpty(), 1);
  EXPECT_EQ(id.GetEncodedCertIDPtr()->GetBufferSize(), 0u);
}

TEST(KRCertID, IsTheBase64OfTheDigest) {
  KRCertID id;
  EXPECT_EQ(AddBER(id, "abc"), KRSecStatus_Success);
  EXPECT_EQ(Content(*id.GetEncodedCertIDPtr()), kOfAbc);
  EXPECT_EQ(id.IsEmpty(), 0);
}

TEST(KRCertID, Has28CharactersTheLastAnEqualsSign) {
  KRCertID id;
  EXPECT_EQ(AddBER(id, MakeCertificate()), KRSecStatus_Success);
  const std::string text = Content(*id.GetEncodedCertIDPtr());
  EXPECT_EQ(text.size(), 28u);
  EXPECT_EQ(text.back(), '=');
}

TEST(KRCertID, IsTheSameForBothForms) {
  const std::string ber = MakeCertificate();
  KRCertID binary;
  KRCertID encoded;
  EXPECT_EQ(AddBER(binary, ber), KRSecStatus_Success);
  EXPECT_EQ(AddEncoded(encoded, " " + Base64Of(ber) + "\r\n"), KRSecStatus_Success);
  EXPECT_EQ(Content(*binary.GetEncodedCertIDPtr()), Content(*encoded.GetEncodedCertIDPtr()));
}

TEST(KRCertID, AppendsEachFurtherID) {
  KRCertID id;
  EXPECT_EQ(AddBER(id, "abc"), KRSecStatus_Success);
  EXPECT_EQ(AddBER(id, "abc"), KRSecStatus_Success);
  EXPECT_EQ(id.GetEncodedCertIDPtr()->GetBufferSize(), 56u);
  EXPECT_EQ(Content(*id.GetEncodedCertIDPtr()), std::string(kOfAbc) + kOfAbc);
}

TEST(KRCertID, AppendsWhereverTheCursorStands) {
  KRCertID id;
  EXPECT_EQ(AddBER(id, "abc"), KRSecStatus_Success);
  id.GetEncodedCertIDPtr()->SetBufferOffset(3);
  EXPECT_EQ(AddBER(id, "abc"), KRSecStatus_Success);
  EXPECT_EQ(Content(*id.GetEncodedCertIDPtr()), std::string(kOfAbc) + kOfAbc);
}

TEST(KRCertID, IsThatOfTheCertificateGivenLast) {
  KRCertID id;
  EXPECT_EQ(AddBER(id, "xyz"), KRSecStatus_Success);
  EXPECT_EQ(AddEncoded(id, Base64Of("abc")), KRSecStatus_Success);
  EXPECT_EQ(Content(*id.GetEncodedCertIDPtr()).substr(28), kOfAbc);
}

TEST(KRCertID, MissesItsInput) {
  KRCertID id;
  EXPECT_EQ(id.SetEncodedCert(nullptr), KRSecStatus_MissingInput);
  EXPECT_EQ(id.SetCertBER(nullptr), KRSecStatus_MissingInput);
  EXPECT_EQ(AddBER(id, "abc"), KRSecStatus_Success);
  EXPECT_EQ(id.SetEncodedCert(nullptr), KRSecStatus_MissingInput);
  EXPECT_EQ(id.SetCertBER(nullptr), KRSecStatus_MissingInput);
  EXPECT_EQ(Content(*id.GetEncodedCertIDPtr()), kOfAbc);
}

TEST(KRCertID, HandsOnTheFailureOfTheDecoder) {
  KRCertID id;
  EXPECT_EQ(AddEncoded(id, "AAA"), KRSecStatus_DecodingFailed);
  EXPECT_EQ(id.IsEmpty(), 1);
}

TEST(KRCertID, HandsOnTheFailureOfTheDigest) {
  const FailingAllocation failing(1);
  KRBuffer lost(100, 0);
  KRCertID id;
  EXPECT_EQ(id.SetCertBER(&lost), KRSecStatus_DigestFailed);
  EXPECT_EQ(id.IsEmpty(), 1);
}

// The failing allocation decides which step fails; each has its own status.
TEST(KRCertID, TellsWhichStepHadNoMemory) {
  KRBuffer text(0, 0);
  Put(text, Base64Of(MakeCertificate()));
  bool seen[16] = {};
  for (std::size_t nth = 1; nth < 20; ++nth) {
    KRCertID id;
    const FailingAllocation failing(nth);
    const KRSecStatus status = id.SetEncodedCert(&text);
    seen[status] = true;
    EXPECT_EQ(id.IsEmpty(), status == KRSecStatus_Success ? 0 : 1);
  }
  EXPECT_TRUE(seen[KRSecStatus_DecodingFailed]);
  EXPECT_TRUE(seen[KRSecStatus_DigestFailed]);
  EXPECT_TRUE(seen[KRSecStatus_EncodingFailed]);
  EXPECT_TRUE(seen[KRSecStatus_Success]);
}

TEST(KRCertID, SaysSoWhenTheIDCannotBeStored) {
  KRBuffer ber(0, 0);
  Put(ber, "abc");
  // The second ID is the first that needs more memory, and it is the last to ask for it.
  KRSecStatus status = KRSecStatus_Success;
  for (std::size_t nth = 1; nth < 20 && status != KRSecStatus_IDNotStored; ++nth) {
    KRCertID id;
    ASSERT_EQ(id.SetCertBER(&ber), KRSecStatus_Success);
    const FailingAllocation failing(nth);
    status = id.SetCertBER(&ber);
  }
  EXPECT_EQ(status, KRSecStatus_IDNotStored);
}

TEST(KRCertID, IsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<KRCertID>);
  EXPECT_FALSE(std::is_copy_assignable_v<KRCertID>);
}

}  // namespace
