// Multipart texts: each part is read, whatever the others are like.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "krofx/krofx.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

std::string Multipart(const std::string& part, const std::string& boundary = "cut",
                      const std::string& closing = "--cut--\r\n") {
  return "Content-Type: multipart/x-mixed-replace; boundary=\"" + boundary +
         "\"\r\nContent-Length: 5\r\n\r\n--cut\r\nContent-Type: application/x-ofx\r\n\r\n" + part +
         "\r\n--cut\r\nContent-Type: text/plain\r\n\r\nHello\r\n" + closing;
}

std::string Statement(const std::string& amount) {
  return BankStatementFile("<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>" + amount +
                           "<FITID>a</STMTTRN>");
}

TEST(Multipart, IsReadPartByPart) {
  Reading reading = Read(Multipart(Statement("-1.50") + ""));
  ASSERT_EQ(reading.texts.size(), 1u);
  EXPECT_EQ(reading.texts[0].kind, TextKind::kMultipart);
  ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2);
  const std::string plain = Str(reading.root->GetSubfile(1)->GetMIMEBody());
  EXPECT_NE(plain.find("Hello"), std::string::npos);
  const std::string clean = WrittenBody(reading.root->GetSubfile(0));

  std::string damaged = Statement("-1,50");
  damaged.insert(damaged.find("<CURDEF>"), "<ACME.X>1");
  reading = Read(Multipart(damaged));
  EXPECT_EQ(MendingNames(reading), (Lines{"private-tag", "decimal-comma"}));
  EXPECT_EQ(Str(reading.mendings[1].path),
            "OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST/STMTTRN");
  EXPECT_EQ(reading.mendings[0].place.offset, Multipart(damaged).find("<ACME"));
  ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2);
  EXPECT_EQ(reading.root->GetSubfile(0)->GetType(), KRTag_OFXFILERS);
  EXPECT_EQ(WrittenBody(reading.root->GetSubfile(0)), clean);
  EXPECT_EQ(Str(reading.root->GetSubfile(1)->GetMIMEBody()), plain);
}

TEST(Multipart, MayHaveItsBoundaryInOtherLettersAndLackTheLast) {
  const Reading reading = Read(Multipart(Statement("-1.50"), "CUT", ""));
  EXPECT_EQ(MendingNames(reading), Lines{"multipart"});
  ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2);
  EXPECT_NE(Str(reading.root->GetSubfile(1)->GetMIMEBody()).find("Hello"), std::string::npos);
}

TEST(Multipart, MayHaveMessageSetsOfBothVersions) {
  const Reading reading = Read(Multipart(BankStatementFile("", 2)));
  ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2);
  EXPECT_EQ(WrittenBody(reading.root->GetSubfile(0)),
            WrittenBody(Read(BankStatementFile("", 2)).root));
}

TEST(Multipart, WithoutAnyPartIsNoText) {
  const Reading reading =
      Read(std::string("Content-Type: multipart/mixed; boundary=x\r\n\r\nnothing\r\n"));
  EXPECT_EQ(reading.root, nullptr);
  EXPECT_EQ(reading.status, KRParseStatus_Invalid);
}

}  // namespace
}  // namespace krofx::testing
