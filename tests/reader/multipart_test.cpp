// Multipart texts: each part is read, whatever the others are like.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "krofx/krofx.h"
#include "reader/ended_readings.h"
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

// A whole text whose boundary lines are in other letters than its header says, so that only the
// reader finds its parts.
std::string WithHeader(const std::string& header, const std::string& parts) {
  return header + "\r\n\r\n" + parts + "\r\n--cut--\r\n";
}
// The text is not clean, because of the private tag.
std::string OfxPart(std::string text) {
  text.insert(text.find("<OFX>") + 5, "<ACME.X>1");
  return "--cut\r\nContent-Type: application/x-ofx\r\n\r\n" + text + "\r\n";
}

TEST(Multipart, FindsItsBoundaryHoweverItIsWritten) {
  const std::string body = WrittenBody(Read(Statement("-1.50")).root);
  for (const char* const header :
       {"Content-Type: multipart/x; boundary=CUT; charset=x",
        "Content-Type: multipart/x; Boundary = CUT",
        "Content-Type: multipart/x; boundaryless; BOUNDARY=\"CUT\"",
        "Content-Type: multipart/x;\r\n\tcharset=x;\r\n boundary=\"CUT\"",
        "Content-Type: multipart/x; boundary=CUT\r\nX: boundary=other"}) {
    const Reading reading = Read(WithHeader(header, OfxPart(Statement("-1.50"))));
    ASSERT_NE(reading.root, nullptr) << header;
    EXPECT_EQ(reading.texts[0].kind, TextKind::kMultipart) << header;
    ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 1) << header;
    EXPECT_EQ(WrittenBody(reading.root->GetSubfile(0)), body) << header;
  }
}

TEST(Multipart, TakesNoOtherLinesForBoundaries) {
  const std::string note = "--cu\r\n--cutter\r\n--other\r\n- cut\r\n--cut-\r\n";
  const Reading reading = Read(WithHeader("Content-Type: multipart/x; boundary=CUT",
                                          "--CUTTER\r\n--cut\r\nContent-Type: text/plain\r\n\r\n" +
                                              note + OfxPart(Statement("-1.50"))));
  ASSERT_NE(reading.root, nullptr);
  ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2);
  EXPECT_NE(Str(reading.root->GetSubfile(0)->GetMIMEBody()).find(note), std::string::npos);
}

TEST(Multipart, HasTheCharacterSetOfItsFirstTextAndGivesEveryText) {
  std::string second = Statement("-2.50");
  second.replace(second.find("1252"), 4, "1250");
  second.insert(second.find("<FITID>"), "<NAME>\xA3");
  const Reading reading = Read(WithHeader("Content-Type: multipart/x; boundary=CUT",
                                          OfxPart(Statement("-1.50")) + OfxPart(second)));
  ASSERT_NE(reading.root, nullptr);
  EXPECT_EQ(reading.root->GetNumberOfSubfiles(), 2);
  EXPECT_EQ(Str(reading.texts[0].charset), Str(Read(Statement("-1.50")).texts[0].charset));
  EXPECT_EQ(reading.Response(), reading.root->GetSubfile(0));
  EXPECT_EQ(reading.Request(), nullptr);
}

TEST(Multipart, GivesTheRequestAfterAPartThatIsNoOfx) {
  const Reading reading =
      Read(WithHeader("Content-Type: multipart/x; boundary=CUT",
                      "--cut\r\n\r\nHello\r\n" + OfxPart(RequestFile("BANKMSGSRQ", ""))));
  ASSERT_NE(reading.root, nullptr);
  ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2);
  EXPECT_EQ(reading.Request(), reading.root->GetSubfile(1));
  EXPECT_EQ(reading.Response(), nullptr);
}

TEST(Multipart, LeavesOutTheTextOfAPartThatNoStringHolds) {
  for (const std::size_t size : {std::size_t{60000}, std::size_t{70000}}) {
    const Reading reading =
        Read(WithHeader("Content-Type: multipart/x; boundary=CUT",
                        "--cut\r\nContent-Type: text/plain\r\n\r\n" + Repeat("x", size) + "\r\n" +
                            OfxPart(Statement("-1.50"))));
    ASSERT_NE(reading.root, nullptr);
    ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2);
    const bool fits = size == 60000;
    EXPECT_EQ(WarningLines(reading), fits ? Lines() : Lines{"TOOLONG"});
    EXPECT_EQ(reading.root->GetSubfile(0)->GetMIMEBody().GetStrLength() >= size, fits);
    EXPECT_EQ(WrittenBody(reading.Response()), WrittenBody(Read(Statement("-1.50")).root));
  }
}

constexpr char kHeader[] = "Content-Type: multipart/x; boundary=\"cut\"\r\n\r\n";
constexpr char kPlainPart[] = "--cut\r\nContent-Type: text/plain\r\n\r\n";
constexpr char kLast[] = "\r\n--cut--\r\n";

TEST(Multipart, HasTheWholeTextOfAPartWhereverItEnds) {
  const std::string front = kHeader + ("--cut\r\nContent-Type: application/x-ofx\r\n\r\n" +
                                       Statement("-1.50") + "\r\n" + kPlainPart);
  for (std::size_t end = 65500; end < 65560; ++end) {
    const std::string content = Repeat("x", end - front.size());
    const Reading reading = Read(front + content + kLast);
    EXPECT_EQ(reading.status, KRParseStatus_Accepted);
    ASSERT_NE(reading.root, nullptr);
    ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2);
    const std::string body = Str(reading.root->GetSubfile(1)->GetMIMEBody());
    EXPECT_EQ(body.substr(std::min(body.find('x'), body.size()), content.size()), content) << end;
  }
}

TEST(Multipart, HasAPartOfAsManyCharactersAsAStringHolds) {
  constexpr std::size_t kMost = KRString::kMaxLength;
  for (std::size_t size = kMost - 10; size < kMost + 10; ++size) {
    const Reading reading = Read(std::string(kHeader) + kPlainPart + Repeat("x", size) + kLast);
    ASSERT_NE(reading.root, nullptr);
    ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 1);
    const std::string body = Str(reading.root->GetSubfile(0)->GetMIMEBody());
    // The line ends around it belong to the body.
    const bool fits = size + 4 <= kMost;
    EXPECT_EQ(WarningLines(reading), fits ? Lines() : Lines{"TOOLONG"}) << size;
    EXPECT_EQ(body.size(), fits ? size + 4 : 0);
  }
}

TEST(Multipart, HasAllPartsThoughTheParserPassesOverSome) {
  const std::string body = WrittenBody(Read(Statement("-1.50")).root);
  for (const char* const header :
       {"--cut\r\n\r\nHello\r\n--cut\r\nContent-Type: application/x-ofx\r\n\r\n",
        "--cut\r\nContent-Type: text/plain\r\n\r\nHello\r\n"
        "--cut\r\nContent-ID: 2\r\nContent-Type: application/x-ofx\r\n\r\n"}) {
    const Reading reading = Read(WithHeader("Content-Type: multipart/x; boundary=\"cut\"",
                                            header + Statement("-1.50") + "\r\n"));
    EXPECT_EQ(reading.status, KRParseStatus_Accepted);
    ASSERT_NE(reading.root, nullptr);
    ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2) << header;
    EXPECT_NE(Str(reading.root->GetSubfile(0)->GetMIMEBody()).find("Hello"), std::string::npos);
    EXPECT_EQ(WrittenBody(reading.Response()), body);
  }
}

TEST(Multipart, CutsNoPartWhereItsBoundaryIsWithinALine) {
  std::string text = Multipart(Statement("-1.50"));
  text.replace(text.find("Hello"), 5, "As --cut is no line,\r\n--cutter is none\r\nHello");
  Reading reading = Read(text);
  EXPECT_EQ(MendingLines(reading), Lines());
  EXPECT_EQ(reading.status, KRParseStatus_Accepted);
  ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2);
  EXPECT_EQ(Str(reading.root->GetSubfile(1)->GetMIMEBody()),
            "\r\nAs --cut is no line,\r\n--cutter is none\r\nHello\r\n");

  std::string memo = Statement("-1.50");
  memo.insert(memo.find("</STMTTRN>"), "<MEMO>a --cut above");
  reading = Read(Multipart(memo));
  ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2);
  EXPECT_EQ(WrittenBody(reading.root->GetSubfile(0)), WrittenBody(Read(memo).root));
}

TEST(Multipart, MayHaveHeadersThatEndInNoBlankLine) {
  for (const char* const between : {"", "no field\r\n", "<a:b>\r\n"}) {
    const Reading reading = Read("Content-Type: multipart/x; boundary=CUT\r\n" +
                                 std::string(between) + OfxPart(Statement("-1.50")) + "--cut--");
    ASSERT_NE(reading.root, nullptr) << between;
    ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 1) << between;
    EXPECT_EQ(WrittenBody(reading.Response()), WrittenBody(Read(Statement("-1.50")).root));
  }
  EXPECT_EQ(Read(std::string_view("Content-Type: multipart/x; boundary=CUT")).root, nullptr);
}

TEST(Multipart, EndsAtItsLastBoundary) {
  const std::string after = "Goodbye\r\n--cut\r\nContent-Type: text/plain\r\n\r\nnot a part\r\n";
  const Reading clean = Read(Multipart(Statement("-1.50")) + after);
  EXPECT_EQ(clean.status, KRParseStatus_Accepted);
  ASSERT_NE(clean.root, nullptr);
  EXPECT_EQ(clean.root->GetNumberOfSubfiles(), 2);
  const Reading mended = Read(
      WithHeader("Content-Type: multipart/x; boundary=CUT", OfxPart(Statement("-1.50"))) + after);
  EXPECT_EQ(MendingNames(mended), Lines{"private-tag"});
  ASSERT_NE(mended.root, nullptr);
  EXPECT_EQ(mended.root->GetNumberOfSubfiles(), 1);
}

TEST(Multipart, HasAStatementThatIsLongerThanTheParserCounts) {
  const std::string transaction =
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-1.50<FITID>a</STMTTRN>";
  const std::string statement = BankStatementFile(Repeat(transaction, 1000));
  ASSERT_GT(statement.size(), 70000u);
  const Reading reading = Read(Multipart(statement));
  EXPECT_EQ(reading.status, KRParseStatus_Accepted);
  ASSERT_NE(reading.root, nullptr);
  ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 2);
  EXPECT_EQ(WrittenBody(reading.Response()), WrittenBody(Read(statement).root));
}

TEST(Multipart, MayHaveAPartWhoseHeadersRunIntoThoseOfOfx) {
  for (const char* const front : {"", "Content-Type: application/x-ofx\r\n"}) {
    const Reading reading = Read(WithHeader("Content-Type: multipart/x; boundary=CUT",
                                            "--cut\r\n" + (front + Statement("-1.50"))));
    EXPECT_EQ(MendingLines(reading), Lines());
    ASSERT_NE(reading.root, nullptr);
    ASSERT_EQ(reading.root->GetNumberOfSubfiles(), 1);
    ASSERT_NE(reading.Response(), nullptr);
    EXPECT_EQ(WrittenBody(reading.Response()), WrittenBody(Read(Statement("-1.50")).root));
  }
}

TEST(Multipart, HasAsManyPartsAsAListTakesAndSpeaksOfMore) {
  for (const std::size_t parts : {65534u, 65535u, 65536u, 65537u}) {
    SCOPED_TRACE(parts);
    const Reading reading = Read("Content-Type: multipart/mixed; boundary=b0\r\n\r\n" +
                                 Repeat("--b0\r\nX: 1\r\n\r\nx\r\n", parts) + "--b0--\r\n");
    ASSERT_EQ(reading.texts.size(), 1u);
    const bool fits = parts <= 65535;
    EXPECT_EQ(reading.status, fits ? KRParseStatus_Accepted : KRParseStatus_Fatal);
    EXPECT_EQ(reading.texts[0].root->GetNumberOfSubfiles(), fits ? parts : 65535u);
    EXPECT_EQ(reading.problem.IsEmpty() != 0, fits) << Str(reading.problem);
  }
}

TEST(Multipart, EndsWithoutMemoryAsFatalOrLosesNothing) {
  ExpectFatalOrWhole(WithHeader("Content-Type: multipart/x; boundary=CUT\r\nX: y",
                                kPlainPart + ("Hello\r\n" + OfxPart(Statement("-1.50")))));
}

TEST(Multipart, WithoutAnyPartIsNoText) {
  const Reading reading =
      Read(std::string("Content-Type: multipart/mixed; boundary=x\r\n\r\nnothing\r\n"));
  EXPECT_EQ(reading.root, nullptr);
  EXPECT_EQ(reading.status, KRParseStatus_Invalid);
}

}  // namespace
}  // namespace krofx::testing
