// Certificates: loading in both forms, their fields, sharing, and failures.

#include "krofx/security/certificate.h"

#include <gtest/gtest.h>
#include <openssl/err.h>

#include <cstdio>
#include <string>
#include <type_traits>
#include <utility>

#include "krofx/core/buffer.h"
#include "krofx/security/internal/toolkit.h"
#include "security/certificates.h"
#include "support/buffers.h"
#include "support/failing_allocation.h"

namespace {

KRSecStatus LoadBER(KRCert& certificate, const std::string& ber) {
  KRBuffer buffer(0, 0);
  Put(buffer, ber);
  return certificate.SetCertBER(&buffer);
}

KRSecStatus LoadEncoded(KRCert& certificate, const std::string& text) {
  KRBuffer buffer(0, 0);
  Put(buffer, text);
  return certificate.SetEncodedCert(&buffer);
}

std::string BEROf(const KRCert& certificate) {
  return std::string(certificate.GetCertBER(), certificate.GetCertBERLen());
}

// What WriteInfo prints of a certificate that is valid between two moments.
std::string Info(const std::string& from, const std::string& to) {
  CertificateParts parts;
  parts.from = from;
  parts.to = to;
  KRCert certificate;
  if (LoadBER(certificate, MakeCertificate(parts)) != KRSecStatus_Success) return "not loaded";
  char text[200] = "";
  std::FILE* const stream = fmemopen(text, sizeof text, "w");
  EXPECT_EQ(certificate.WriteInfo(stream), KRSecStatus_Success);
  std::fclose(stream);
  return text;
}

std::string OrganizationOf(std::vector<Attribute> subject) {
  CertificateParts parts;
  parts.subject = std::move(subject);
  KRCert certificate;
  EXPECT_EQ(LoadBER(certificate, MakeCertificate(parts)), KRSecStatus_Success);
  const KRString name = certificate.GetSubjectName();
  return std::string(name, name.GetStrLength());
}

void ExpectNoCertificate(const KRCert& certificate) {
  EXPECT_EQ(certificate.GetCertBER(), nullptr);
  EXPECT_EQ(certificate.GetCertBERLen(), 0u);
  EXPECT_EQ(certificate.GetSubjectName().IsEmpty(), 1);
  KRBuffer key(0, 0);
  EXPECT_EQ(certificate.GetPublicKey(&key), KRSecStatus_NoPublicKey);
  EXPECT_EQ(key.GetBufferSize(), 0u);
  char text[100] = "";
  std::FILE* const stream = fmemopen(text, sizeof text, "w");
  EXPECT_EQ(certificate.WriteInfo(stream), KRSecStatus_NotWritten);
  std::fclose(stream);
  EXPECT_STREQ(text, "");
}

// ---- Loading ----

TEST(KRCert, BeginsWithoutCertificateAndRootID) {
  const KRCert certificate;
  ExpectNoCertificate(certificate);
  EXPECT_EQ(certificate.GetCallbackID(), 0);
}

TEST(KRCert, LoadsBytesAndKeepsThem) {
  std::string ber = MakeCertificate();
  KRCert certificate;
  EXPECT_EQ(LoadBER(certificate, ber), KRSecStatus_Success);
  EXPECT_EQ(BEROf(certificate), ber);
  KRCert other;
  EXPECT_EQ(other.SetCertBER(ber.data(), static_cast<u16>(ber.size())), KRSecStatus_Success);
  const std::string before = ber;
  ber.assign(ber.size(), 'x');
  EXPECT_EQ(BEROf(other), before);
}

TEST(KRCert, LoadsBase64) {
  const std::string ber = MakeCertificate();
  const std::string text = Base64Of(ber);
  KRCert certificate;
  EXPECT_EQ(LoadEncoded(certificate, text), KRSecStatus_Success);
  EXPECT_EQ(BEROf(certificate), ber);
  KRCert other;
  EXPECT_EQ(other.SetEncodedCert(text.data(), static_cast<u16>(text.size())), KRSecStatus_Success);
  EXPECT_EQ(BEROf(other), ber);
}

TEST(KRCert, LoadsBase64WithLineEndsAndBlanks) {
  const std::string ber = MakeCertificate();
  std::string text;
  for (const char c : Base64Of(ber)) {
    text += c;
    if (text.size() % 7 == 0) text += text.size() % 2 == 0 ? "\r\n" : " \t";
  }
  KRCert certificate;
  EXPECT_EQ(LoadEncoded(certificate, text), KRSecStatus_Success);
  EXPECT_EQ(BEROf(certificate), ber);
}

TEST(KRCert, LoadsVersion1AndMD2) {
  CertificateParts parts;
  parts.version = 1;
  parts.signatureAlgorithm = "\x2a\x86\x48\x86\xf7\x0d\x01\x01\x02";
  KRCert certificate;
  EXPECT_EQ(LoadBER(certificate, MakeCertificate(parts)), KRSecStatus_Success);
  EXPECT_STREQ(certificate.GetSubjectName(), "Harbor Federal");
}

TEST(KRCert, LoadsAlgorithmsThatNobodyKnows) {
  CertificateParts parts;
  parts.signatureAlgorithm = "\x2a\x03\x04\x05";
  KRCert certificate;
  EXPECT_EQ(LoadBER(certificate, MakeCertificate(parts)), KRSecStatus_Success);
}

TEST(KRCert, LoadsBEROfIndefiniteLengthAndKeepsItAsItCame) {
  const std::string der = MakeCertificate();
  const std::string ber = Bytes("\x30\x80") + der.substr(4) + Bytes("\0\0");
  ASSERT_EQ(der[1], '\x82');
  KRCert certificate;
  EXPECT_EQ(LoadBER(certificate, ber), KRSecStatus_Success);
  EXPECT_EQ(BEROf(certificate), ber);
  EXPECT_STREQ(certificate.GetSubjectName(), "Harbor Federal");
}

TEST(KRCert, RefusesWhatIsNoCertificate) {
  const std::string ber = MakeCertificate();
  const std::string others[] = {"",
                                "x",
                                "certificate",
                                ber + "x",
                                ber + ber,
                                std::string(500, '0'),
                                Der(kSequence, ""),
                                Der(kSequence, ber)};
  for (const std::string& other : others) {
    KRCert certificate;
    EXPECT_EQ(LoadBER(certificate, other), KRSecStatus_BERCertRejected);
    EXPECT_EQ(LoadEncoded(certificate, Base64Of(other)), KRSecStatus_EncodedCertRejected);
    ExpectNoCertificate(certificate);
  }
}

TEST(KRCert, RefusesACertificateThatIsCutAnywhere) {
  const std::string ber = MakeCertificate();
  for (std::size_t size = 0; size < ber.size(); ++size) {
    KRCert certificate;
    EXPECT_EQ(certificate.SetCertBER(ber.data(), static_cast<u16>(size)),
              KRSecStatus_BERCertRejected);
  }
}

TEST(KRCert, SurvivesEveryChangedByte) {
  const std::string ber = MakeCertificate();
  for (std::size_t at = 0; at < ber.size(); ++at) {
    for (const int change : {1, 0x80, 0xff}) {
      std::string changed = ber;
      changed[at] = static_cast<char>(changed[at] ^ change);
      KRCert certificate;
      if (LoadBER(certificate, changed) != KRSecStatus_Success) {
        EXPECT_EQ(certificate.GetCertBER(), nullptr);
        continue;
      }
      EXPECT_EQ(BEROf(certificate), changed);
      certificate.GetSubjectName();
    }
  }
}

TEST(KRCert, RefusesDatesThatAreNone) {
  for (const char* date : {"981301000000Z", "980132000000Z", "98010100000Z", "soon", ""}) {
    CertificateParts parts;
    parts.to = Der(kUtcTime, date);
    KRCert certificate;
    EXPECT_EQ(LoadBER(certificate, MakeCertificate(parts)), KRSecStatus_BERCertRejected) << date;
    ExpectNoCertificate(certificate);
  }
}

TEST(KRCert, RefusesNoInput) {
  KRCert certificate;
  EXPECT_EQ(certificate.SetEncodedCert(nullptr), KRSecStatus_EncodedCertRejected);
  EXPECT_EQ(certificate.SetEncodedCert(nullptr, 10), KRSecStatus_EncodedCertRejected);
  EXPECT_EQ(certificate.SetCertBER(nullptr), KRSecStatus_BERCertRejected);
  EXPECT_EQ(certificate.SetCertBER(nullptr, 10), KRSecStatus_BERCertRejected);
}

TEST(KRCert, RefusesALengthOfZeroWithAValidPointer) {
  const std::string ber = MakeCertificate();
  KRCert certificate;
  EXPECT_EQ(certificate.SetEncodedCert(Base64Of(ber).c_str(), 0), KRSecStatus_EncodedCertRejected);
  EXPECT_EQ(certificate.SetCertBER(ber.c_str(), 0), KRSecStatus_BERCertRejected);
}

TEST(KRCert, RefusesBase64ThatIsNone) {
  const std::string text = Base64Of(MakeCertificate());
  KRCert certificate;
  for (const std::string& other :
       {text.substr(0, text.size() - 1), "-----BEGIN CERTIFICATE-----\n" + text, text + "."}) {
    EXPECT_EQ(LoadEncoded(certificate, other), KRSecStatus_EncodedCertRejected);
  }
}

TEST(KRCert, HoldsNoCertificateBehindAFailure) {
  const std::string ber = MakeCertificate();
  KRBuffer bad(0, 0);
  Put(bad, "no certificate");
  const auto fails = [&](auto load) {
    KRCert certificate;
    ASSERT_EQ(LoadBER(certificate, ber), KRSecStatus_Success);
    certificate.SetCallbackRootID(7);
    EXPECT_NE(load(certificate), KRSecStatus_Success);
    ExpectNoCertificate(certificate);
    EXPECT_EQ(certificate.GetCallbackID(), 7);
    EXPECT_EQ(LoadBER(certificate, ber), KRSecStatus_Success);
  };
  fails([&](KRCert& certificate) { return certificate.SetCertBER(&bad); });
  fails([&](KRCert& certificate) { return certificate.SetEncodedCert(&bad); });
  fails([&](KRCert& certificate) { return certificate.SetCertBER(nullptr); });
  fails([&](KRCert& certificate) { return certificate.SetEncodedCert(nullptr); });
  fails([&](KRCert& certificate) { return certificate.SetEncodedCert("AAAA", 0); });
}

TEST(KRCert, LoadsItsOwnBytesAgain) {
  const std::string ber = MakeCertificate();
  KRCert certificate;
  ASSERT_EQ(LoadBER(certificate, ber), KRSecStatus_Success);
  EXPECT_EQ(certificate.SetCertBER(certificate.GetCertBER(),
                                   static_cast<u16>(certificate.GetCertBERLen())),
            KRSecStatus_Success);
  EXPECT_EQ(BEROf(certificate), ber);
}

TEST(KRCert, LeavesNoErrorsToOtherUsersOfTheCryptographicLibrary) {
  ERR_clear_error();
  KRCert certificate;
  LoadBER(certificate, "no certificate");
  LoadBER(certificate, MakeCertificate());
  EXPECT_EQ(ERR_peek_error(), 0u);
  ERR_raise(ERR_LIB_USER, 77);
  LoadBER(certificate, "no certificate");
  EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), 77);
  EXPECT_EQ(ERR_get_error(), 0u);
}

// ---- Root ID ----

TEST(KRCert, StoresRootIDsButNot0) {
  KRCert certificate;
  EXPECT_EQ(certificate.SetCallbackRootID(4001), KRSecStatus_Success);
  EXPECT_EQ(certificate.GetCallbackID(), 4001);
  EXPECT_EQ(certificate.SetCallbackRootID(0), KRSecStatus_NoRootID);
  EXPECT_EQ(certificate.GetCallbackID(), 4001);
  EXPECT_EQ(certificate.SetCallbackRootID(-1), KRSecStatus_Success);
  EXPECT_EQ(certificate.GetCallbackID(), -1);
}

// ---- Organization ----

TEST(KRCert, CallsTheOrganizationTheSubject) {
  EXPECT_EQ(OrganizationOf({Country("US"), Unit("Branding"), Organization("Norvik Inc.")}),
            "Norvik Inc.");
}

TEST(KRCert, GivesTheFirstOfSeveralOrganizations) {
  EXPECT_EQ(OrganizationOf({Organization("First"), Organization("Second")}), "First");
  EXPECT_EQ(OrganizationOf({Organization("", kUtf8String), Organization("Second")}), "");
}

TEST(KRCert, GivesNothingWithoutOrganization) {
  EXPECT_EQ(OrganizationOf({Country("US"), Unit("Branding")}), "");
  EXPECT_EQ(OrganizationOf({}), "");
}

TEST(KRCert, GivesTheOrganizationWithItsExactLength) {
  EXPECT_EQ(OrganizationOf({Organization("A & B, Inc. ")}), "A & B, Inc. ");
  EXPECT_EQ(OrganizationOf({Organization("Z\xc3\xbcrich", kUtf8String)}), "Z\xc3\xbcrich");
  const std::string longName(5000, 'n');
  EXPECT_EQ(OrganizationOf({Organization(longName)}), longName);
}

TEST(KRCert, GivesNoOrganizationThatATextCannotHold) {
  EXPECT_EQ(OrganizationOf({Organization(Bytes("Harbor Federal\0.example"), kUtf8String)}), "");
  EXPECT_EQ(OrganizationOf({Organization(Bytes("\0H\0F"), kBmpString)}), "");
  EXPECT_EQ(OrganizationOf({Organization(std::string(65535, 'n'))}), "");
  EXPECT_EQ(OrganizationOf({Organization(std::string(65534, 'n'))}).size(), 65534u);
}

// ---- Public key ----

TEST(KRCert, AppendsThePublicKeyWithItsAlgorithm) {
  KRCert certificate;
  ASSERT_EQ(LoadBER(certificate, MakeCertificate()), KRSecStatus_Success);
  KRBuffer out(0, 0);
  Put(out, "before");
  out.SetBufferOffset(2);
  EXPECT_EQ(certificate.GetPublicKey(&out), KRSecStatus_Success);
  EXPECT_EQ(Content(out), "before" + PublicKeyInfo(CertificateParts().key));
}

TEST(KRCert, HandsOverKeysOfUpTo65535Bytes) {
  CertificateParts parts;
  const auto size = [&] { return PublicKeyInfo(parts.key).size(); };
  parts.key.assign(65000, 'k');
  parts.key.append(65535 - size(), 'k');
  ASSERT_EQ(size(), 65535u);
  KRCert certificate;
  ASSERT_EQ(LoadBER(certificate, MakeCertificate(parts)), KRSecStatus_Success);
  KRBuffer out(0, 0);
  EXPECT_EQ(certificate.GetPublicKey(&out), KRSecStatus_Success);
  EXPECT_EQ(out.GetBufferSize(), 65535u);
  parts.key += 'k';
  ASSERT_EQ(LoadBER(certificate, MakeCertificate(parts)), KRSecStatus_Success);
  EXPECT_EQ(certificate.GetPublicKey(&out), KRSecStatus_NoPublicKey);
  EXPECT_EQ(out.GetBufferSize(), 65535u);
}

TEST(KRCert, SaysSoWhenTheKeyCannotBeWritten) {
  KRCert certificate;
  ASSERT_EQ(LoadBER(certificate, MakeCertificate()), KRSecStatus_Success);
  EXPECT_EQ(certificate.GetPublicKey(nullptr), KRSecStatus_NoPublicKey);
  const FailingAllocation failing(1, true);
  KRBuffer out(10, 0);
  EXPECT_EQ(certificate.GetPublicKey(&out), KRSecStatus_NoPublicKey);
}

// ---- Validity ----

TEST(KRCert, WritesItsValidity) {
  EXPECT_EQ(Info(Der(kUtcTime, "970903001310Z"), Der(kUtcTime, "020903001310Z")),
            "Start Date: 09 03 1997\nEnd Date:   09 03 2002\n");
}

TEST(KRCert, WritesDatesInGMTOfEveryYear) {
  EXPECT_EQ(Info(Der(kUtcTime, "500101000000Z"), Der(kUtcTime, "691231235959Z")),
            "Start Date: 01 01 1950\nEnd Date:   12 31 1969\n");
  EXPECT_EQ(Info(Der(kUtcTime, "380119031408Z"), Der(kGeneralizedTime, "99991231235959Z")),
            "Start Date: 01 19 2038\nEnd Date:   12 31 9999\n");
  EXPECT_EQ(Info(Der(kGeneralizedTime, "00010101000000Z"), Der(kUtcTime, "000229000000Z")),
            "Start Date: 01 01    1\nEnd Date:   02 29 2000\n");
}

TEST(KRCert, NeverComparesItsValidityWithTheClock) {
  EXPECT_EQ(Info(Der(kGeneralizedTime, "30000101000000Z"), Der(kUtcTime, "500101000000Z")),
            "Start Date: 01 01 3000\nEnd Date:   01 01 1950\n");
}

TEST(KRCert, SaysSoWhenPrintingFails) {
  KRCert certificate;
  ASSERT_EQ(LoadBER(certificate, MakeCertificate()), KRSecStatus_Success);
  EXPECT_EQ(certificate.WriteInfo(nullptr), KRSecStatus_NotWritten);
  std::FILE* const readOnly = std::fopen("/dev/null", "r");
  ASSERT_NE(readOnly, nullptr);
  EXPECT_EQ(certificate.WriteInfo(readOnly), KRSecStatus_NotWritten);
  std::fclose(readOnly);
}

// ---- Copies ----

TEST(KRCert, SharesItsCertificateWithCopies) {
  const std::string ber = MakeCertificate();
  auto* const first = new KRCert;
  ASSERT_EQ(LoadBER(*first, ber), KRSecStatus_Success);
  first->SetCallbackRootID(3000);
  const KRCert copy(*first);
  KRCert assigned;
  assigned = copy;
  EXPECT_EQ(copy.GetCertBER(), first->GetCertBER());
  EXPECT_EQ(assigned.GetCertBER(), first->GetCertBER());
  delete first;
  EXPECT_EQ(BEROf(copy), ber);
  EXPECT_EQ(BEROf(assigned), ber);
  EXPECT_EQ(copy.GetCallbackID(), 3000);
  EXPECT_EQ(assigned.GetCallbackID(), 3000);
  EXPECT_STREQ(assigned.GetSubjectName(), "Harbor Federal");
}

TEST(KRCert, LeavesTheCopyItsCertificateWhenTheOriginalLoadsAnother) {
  const std::string ber = MakeCertificate();
  KRCert first;
  ASSERT_EQ(LoadBER(first, ber), KRSecStatus_Success);
  const KRCert copy(first);
  CertificateParts parts;
  parts.subject = {Organization("Another")};
  ASSERT_EQ(LoadBER(first, MakeCertificate(parts)), KRSecStatus_Success);
  EXPECT_STREQ(first.GetSubjectName(), "Another");
  EXPECT_STREQ(copy.GetSubjectName(), "Harbor Federal");
  EXPECT_EQ(LoadBER(first, "bad"), KRSecStatus_BERCertRejected);
  EXPECT_EQ(BEROf(copy), ber);
}

TEST(KRCert, CanBeAssignedToItselfAndEmptied) {
  KRCert certificate;
  ASSERT_EQ(LoadBER(certificate, MakeCertificate()), KRSecStatus_Success);
  const KRCert& same = certificate;
  certificate = same;
  EXPECT_STREQ(certificate.GetSubjectName(), "Harbor Federal");
  certificate = KRCert();
  ExpectNoCertificate(certificate);
}

TEST(CertificateToolkit, GivesNothingOfACertificateThatIsNotThereAndLoadsOne) {
  using namespace krofx::internal;
  const std::string ber = MakeCertificate();
  const auto length = static_cast<u32>(ber.size());
  CertificateObject* const object = CreateCertificateObject();
  ASSERT_NE(object, nullptr);
  const char* data = nullptr;
  u32 size = 0;
  CertificateFields fields;
  for (CertificateObject* const none : {static_cast<CertificateObject*>(nullptr), object}) {
    EXPECT_NE(GetCertificateBER(none, &data, &size), 0);
    EXPECT_NE(GetCertificateFields(none, &fields), 0);
  }
  EXPECT_NE(SetCertificateBER(nullptr, ber.data(), length), 0);
  ASSERT_EQ(SetCertificateBER(object, ber.data(), length), 0);
  const std::string other = MakeCertificate();
  EXPECT_NE(SetCertificateBER(object, other.data(), static_cast<u32>(other.size())), 0);
  ASSERT_EQ(GetCertificateBER(object, &data, &size), 0);
  EXPECT_EQ(std::string(data, size), ber);
  DestroyCertificateObject(object);
}

TEST(KRCert, HasOneVirtualOperation) {
  EXPECT_TRUE(std::has_virtual_destructor_v<KRCert>);
  EXPECT_TRUE((std::is_same_v<s16, decltype(std::declval<KRCert>().GetCallbackID())>));
}

// ---- Memory ----

TEST(KRCert, HoldsNoCertificateWhenMemoryRunsOut) {
  const std::string ber = MakeCertificate();
  const std::string text = Base64Of(ber);
  const auto exhaust = [&](KRSecStatus failed, auto load) {
    int failures = 0;
    KRSecStatus status = failed;
    for (std::size_t nth = 1; nth < 20; ++nth) {
      KRCert certificate;
      ASSERT_EQ(LoadBER(certificate, ber), KRSecStatus_Success);
      {
        const FailingAllocation failing(nth);
        status = load(certificate);
      }
      if (status == KRSecStatus_Success) {
        EXPECT_EQ(BEROf(certificate), ber);
      } else {
        EXPECT_EQ(status, failed);
        ExpectNoCertificate(certificate);
        ++failures;
      }
    }
    EXPECT_GE(failures, 2);
    EXPECT_EQ(status, KRSecStatus_Success);
  };
  exhaust(KRSecStatus_BERCertRejected, [&](KRCert& certificate) {
    return certificate.SetCertBER(ber.data(), static_cast<u16>(ber.size()));
  });
  exhaust(KRSecStatus_EncodedCertRejected, [&](KRCert& certificate) {
    return certificate.SetEncodedCert(text.data(), static_cast<u16>(text.size()));
  });
}

TEST(KRCert, GivesNoOrganizationWhenMemoryRunsOut) {
  KRCert certificate;
  ASSERT_EQ(LoadBER(certificate, MakeCertificate()), KRSecStatus_Success);
  const FailingAllocation failing(1, true);
  EXPECT_EQ(certificate.GetSubjectName().IsEmpty(), 1);
  EXPECT_TRUE(AlarmIsSet());
}

}  // namespace
