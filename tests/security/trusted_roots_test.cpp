// The roots that the library carries: each against its row of the table, and the two real ones by
// their fingerprints.

#include "krofx/security/internal/trusted_roots.h"

#include <gtest/gtest.h>
#include <openssl/objects.h>
#include <openssl/x509.h>

#include <memory>
#include <string>

#include "krofx/core/buffer.h"
#include "krofx/security/certificate.h"
#include "krofx/security/digest.h"
#include "support/buffers.h"

namespace {

using krofx::internal::TrustedRoot;

constexpr char kBranding[] = "C=US, O=Norvik Inc., OU=Norvik OFX Branding Private CA";
constexpr char kClass3[] =
    "C=US, O=VeriSign, Inc., OU=Class 3 Public Primary Certification Authority";
constexpr char kSecureServer[] =
    "C=US, O=RSA Data Security, Inc., OU=Secure Server Certification Authority";

struct Row {
  const TrustedRoot& root;
  s16 id;
  u16 length;
  const char* organization;
  const char* subject;  // The subject begins with this; the rest is not checked.
  const char* issuer;
  const char* from;
  const char* to;
  long version;  // As it is written: 0 for version 1, 2 for version 3.
  int signature;
};

const Row kRows[] = {
    {krofx::internal::kNorvikBrandingRoot, 1000, 820, "Norvik Inc.", kBranding, kBranding,
     "970903001310Z", "020903001310Z", 2, NID_md5WithRSAEncryption},
    {krofx::internal::kVeriSignOFXCARoot, 2000, 698, "VeriSign Trust Network",
     "O=VeriSign Trust Network, OU=Open Financial Exchange CA - Class 3, OU=", kClass3,
     "970710070000Z", "020710070000Z", 2, NID_md5WithRSAEncryption},
    {krofx::internal::kVeriSignClass3Root, 3000, 581, "VeriSign, Inc.", kClass3, kClass3,
     "960129070000Z", "040107070000Z", 0, NID_md2WithRSAEncryption},
    {krofx::internal::kRSAServerRoot, 4000, 557, "RSA Data Security, Inc.", kSecureServer,
     kSecureServer, "941109235417Z", "991231235417Z", 0, NID_md2WithRSAEncryption},
    {krofx::internal::kRSAServerRootReissue, 4001, 568, "RSA Data Security, Inc.", kSecureServer,
     kSecureServer, "941109000000Z", "100107235959Z", 0, NID_md2WithRSAEncryption},
};

// "C=US, O=..."
std::string NameText(const X509_NAME* name) {
  std::string text;
  for (int i = 0; i < X509_NAME_entry_count(name); ++i) {
    const X509_NAME_ENTRY* const entry = X509_NAME_get_entry(name, i);
    const ASN1_STRING* const value = X509_NAME_ENTRY_get_data(entry);
    if (i > 0) text += ", ";
    text += OBJ_nid2sn(OBJ_obj2nid(X509_NAME_ENTRY_get_object(entry)));
    text += '=';
    text.append(reinterpret_cast<const char*>(ASN1_STRING_get0_data(value)),
                static_cast<std::size_t>(ASN1_STRING_length(value)));
  }
  return text;
}

std::string TimeText(const ASN1_TIME* time) {
  return {reinterpret_cast<const char*>(ASN1_STRING_get0_data(time)),
          static_cast<std::size_t>(ASN1_STRING_length(time))};
}

std::string Fingerprint(const TrustedRoot& root) {
  KRBuffer der(0, 0);
  der.Write(root.der, root.length);
  KRDigest digest(&der, KRChooseSHA1);
  std::string text;
  for (const char c : Content(*digest.GetOutputData())) {
    char byte[4];
    std::snprintf(byte, sizeof byte, "%02X:", static_cast<unsigned>(static_cast<unsigned char>(c)));
    text += byte;
  }
  return text.substr(0, text.size() - 1);
}

TEST(TrustedRoots, StandUnderTheirIDs) {
  for (const Row& row : kRows) {
    EXPECT_EQ(row.root.id, row.id);
    EXPECT_EQ(row.root.length, row.length);
  }
}

TEST(TrustedRoots, Load) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.id);
    KRCert certificate;
    ASSERT_EQ(certificate.SetCertBER(row.root.der, row.root.length), KRSecStatus_Success);
    EXPECT_EQ(certificate.GetCertBERLen(), row.length);
    EXPECT_STREQ(certificate.GetSubjectName(), row.organization);
  }
}

TEST(TrustedRoots, HaveTheNamesDatesVersionAndAlgorithmOfTheTable) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.id);
    const auto* at = reinterpret_cast<const unsigned char*>(row.root.der);
    const std::unique_ptr<X509, void (*)(X509*)> certificate(
        d2i_X509(nullptr, &at, row.root.length), &X509_free);
    ASSERT_NE(certificate, nullptr);
    const std::string subject = NameText(X509_get_subject_name(certificate.get()));
    EXPECT_EQ(subject.substr(0, std::string(row.subject).size()), row.subject);
    if (row.id != 2000) {
      EXPECT_EQ(subject, row.subject);
    }
    EXPECT_EQ(NameText(X509_get_issuer_name(certificate.get())), row.issuer);
    EXPECT_EQ(TimeText(X509_get0_notBefore(certificate.get())), row.from);
    EXPECT_EQ(TimeText(X509_get0_notAfter(certificate.get())), row.to);
    EXPECT_EQ(X509_get_version(certificate.get()), row.version);
    EXPECT_EQ(X509_get_signature_nid(certificate.get()), row.signature);
  }
}

TEST(TrustedRoots, IncludeTheRealServerRoots) {
  EXPECT_EQ(Fingerprint(krofx::internal::kRSAServerRoot),
            "0D:97:44:61:70:37:13:CB:74:93:2D:2A:75:AC:BC:71:4B:28:12:66");
  EXPECT_EQ(Fingerprint(krofx::internal::kRSAServerRootReissue),
            "44:63:C5:31:D7:CC:C1:00:67:94:61:2B:B6:56:D3:BF:82:57:84:6F");
}

}  // namespace
