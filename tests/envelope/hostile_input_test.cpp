// Texts that no institution should send: whatever arrives, a parse ends with a status, the tree can
// be walked, written and deleted, and nothing leaks.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/values/utility.h"
#include "support/ofx_text.h"

namespace krofx::testing {
namespace {

/// Parses a hostile text and uses the result as a host would.
KRParseStatus Survive(std::string_view text) {
  const Parsed<KRFileRs> file(text, 1, 1);
  Build(*file, KRBuildStringOpt_Lenient, 1);
  file->ProcessResponse();
  const KRParseStatus status = file.Status();
  // A parse returns one of its documented statuses, and an accepted one logs no warnings.
  EXPECT_TRUE(status == KRParseStatus_Accepted ||
              (status >= KRParseStatus_Fatal && status <= KRParseStatus_Warnings))
      << status;
  EXPECT_EQ(status == KRParseStatus_Accepted,
            status != KRParseStatus_Fatal && status != KRParseStatus_Invalid &&
                status != KRParseStatus_EndTagMismatch && file.Warnings().empty() &&
                status != KRParseStatus_StackFull);
  return status;
}

/// A response of some two thousand bytes with transactions of every shape.
std::string Sample() {
  const std::string transaction =
      Aggregate("STMTTRN",
                "<TRNTYPE>DEBIT<DTPOSTED>20260105120000.000[-5:EST]<TRNAMT>-12.50<FITID>1"
                "<NAME>Bread &amp; Butter<MEMO><![CDATA[<a> & b]]>");
  const std::string payee = Aggregate(
      "STMTTRN", "<TRNTYPE>PAYMENT<DTPOSTED>20260106<TRNAMT>-80<FITID>2" +
                     Aggregate("PAYEE",
                               "<NAME>Power<ADDR1>1 Main St<CITY>Millbrook<STATE>NY"
                               "<POSTALCODE>12545<PHONE>8455550142") +
                     BankAccountText("BANKACCTTO") + "<!-- note --><memo>lower case</memo>" +
                     Aggregate("ORIGCURRENCY", "<CURRATE>1.25<CURSYM>EUR"));
  return BankStatementFile(transaction + payee + Aggregate("ACME.EXTRA", "<ACME.A>1<ACME.B>2") +
                           transaction + payee);
}

TEST(HostileInput, SampleItselfIsRead) {
  EXPECT_GT(Sample().size(), 1500u);
  EXPECT_EQ(Survive(Sample()), KRParseStatus_Warnings);
}

TEST(HostileInput, TruncatedAtEveryByte) {
  const std::string sample = Sample();
  for (std::size_t length = 0; length < sample.size(); ++length) {
    SCOPED_TRACE(length);
    const KRParseStatus status = Survive(std::string_view(sample).substr(0, length));
    // A text that is cut inside the body leaves aggregates open.
    if (length > HeaderBlock().size() + 40 && length + 6 < sample.size()) {
      EXPECT_NE(status, KRParseStatus_Accepted);
    }
    if (HasFailure()) break;
  }
}

TEST(HostileInput, EveryByteLostOrDoubled) {
  const std::string sample = Sample();
  for (std::size_t at = 0; at < sample.size(); at += 3) {
    std::string lost = sample;
    lost.erase(at, 1);
    Survive(lost);
    std::string doubled = sample;
    doubled.insert(at, 1, sample[at]);
    Survive(doubled);
  }
}

TEST(HostileInput, Empty) {
  EXPECT_EQ(Survive(""), KRParseStatus_Invalid);
  EXPECT_EQ(Survive(" \r\n\t "), KRParseStatus_Invalid);
}

TEST(HostileInput, HeaderOnly) {
  EXPECT_EQ(Survive(HeaderBlock()), KRParseStatus_Warnings);
  // A line without an end is not a header line, so one header is absent.
  const std::string whole = HeaderBlock();
  EXPECT_EQ(Survive(whole.substr(0, whole.size() - 4)), KRParseStatus_Invalid);
}

TEST(HostileInput, WrongHeaders) {
  const std::string body = Sample().substr(HeaderBlock().size());
  const auto with = [&](std::string_view from, std::string_view to) {
    std::string header = HeaderBlock();
    header.replace(header.find(from), from.size(), to);
    return Survive(header + body);
  };
  EXPECT_EQ(with("OFXHEADER:100", "OFXHEADER:200"), KRParseStatus_Warnings);
  EXPECT_EQ(with("VERSION:102", "VERSION:220"), KRParseStatus_Warnings);
  EXPECT_EQ(with("CHARSET:1252", "CHARSET:EBCDIC"), KRParseStatus_Warnings);
  EXPECT_EQ(with("DATA:OFXSGML", "DATA:XML"), KRParseStatus_Invalid);
  EXPECT_EQ(with("ENCODING:USASCII", "ENCODING:EBCDIC"), KRParseStatus_Invalid);
  EXPECT_EQ(with("COMPRESSION:NONE", "COMPRESSION:ZIP"), KRParseStatus_Invalid);
  EXPECT_EQ(with("SECURITY:NONE\r\n", ""), KRParseStatus_Invalid);
  EXPECT_EQ(with("OFXHEADER:100", ":::::"), KRParseStatus_Fatal);
  EXPECT_EQ(Survive(body), KRParseStatus_Invalid);
  EXPECT_EQ(Survive("<?xml version=\"1.0\"?>\n<?OFX OFXHEADER=\"200\"?>\n" + body),
            KRParseStatus_Invalid);
}

TEST(HostileInput, Binary) {
  std::mt19937 random(20260131);
  for (int round = 0; round < 200; ++round) {
    std::string noise(512, '\0');
    for (char& c : noise) c = static_cast<char>(random());
    Survive(noise);
    Survive(HeaderBlock() + noise);
    Survive(HeaderBlock() + "<OFX>" + noise);
  }
}

TEST(HostileInput, NulBytes) {
  EXPECT_EQ(Survive(std::string(1000, '\0')), KRParseStatus_Invalid);
  const std::string sample = Sample();
  for (std::size_t at = 0; at < sample.size(); at += 7) {
    std::string text = sample;
    text[at] = '\0';
    // A NUL ends the text, so most of it is missing.
    EXPECT_NE(Survive(text), KRParseStatus_Accepted) << at;
  }
}

TEST(HostileInput, TenThousandNestedUnknownTags) {
  const std::string nested = Repeat("<ACME.NEST>", 10000) + "x" + Repeat("</ACME.NEST>", 10000);
  EXPECT_EQ(Survive(File(SignOnResponseSet() + nested)), KRParseStatus_Warnings);
  EXPECT_EQ(Survive(File(SignOnResponseSet() + Repeat("<ACME.NEST>", 10000))),
            KRParseStatus_Warnings);
  // With names that all differ, an end tag must be found for each.
  std::string different;
  for (int i = 0; i < 10000; ++i) different += "<ACME.N" + std::to_string(i) + ">";
  EXPECT_EQ(Survive(File(SignOnResponseSet() + different)), KRParseStatus_Warnings);
  for (int i = 9999; i >= 0; --i) different += "</ACME.N" + std::to_string(i) + ">";
  EXPECT_EQ(Survive(File(SignOnResponseSet() + different)), KRParseStatus_Warnings);
}

TEST(HostileInput, KnownAggregatesNestedWithoutEnd) {
  EXPECT_NE(Survive(HeaderBlock() + Repeat("<OFX>", 10000)), KRParseStatus_Accepted);
  EXPECT_NE(
      Survive(File(SignOnResponseSet() + Aggregate("BANKMSGSRSV1", Repeat("<STMTTRNRS>", 10000)))),
      KRParseStatus_Accepted);
}

TEST(HostileInput, ValueOfAMegabyte) {
  const std::string megabyte(1 << 20, 'x');
  const auto transaction = [](const std::string& members) {
    return Survive(BankStatementFile(Aggregate("STMTTRN", members)));
  };
  EXPECT_NE(transaction("<NAME>" + megabyte), KRParseStatus_Accepted);
  EXPECT_NE(transaction("<TRNAMT>" + megabyte), KRParseStatus_Accepted);
  EXPECT_NE(transaction("<DTPOSTED>" + megabyte), KRParseStatus_Accepted);
  EXPECT_NE(transaction("<MEMO><![CDATA[" + megabyte + "]]>"), KRParseStatus_Accepted);
  EXPECT_NE(transaction("<" + megabyte + ">1"), KRParseStatus_Accepted);
  EXPECT_NE(transaction("<ACME.A>" + megabyte), KRParseStatus_Accepted);
  Survive(transaction("<NAME>" + Repeat("&amp;", 1 << 18)) == KRParseStatus_Accepted ? "" : "<");
  Survive("OFXHEADER:" + megabyte + "\r\n" + HeaderBlock());
  Survive(HeaderBlock() + "<!--" + megabyte + "-->" + Sample().substr(HeaderBlock().size()));
}

TEST(HostileInput, AnEndTagForEveryStartTag) {
  std::string closed;
  for (const char* tag : {"TRNTYPE>DEBIT", "DTPOSTED>20260105", "TRNAMT>-12.50", "FITID>1"}) {
    const std::string text = tag;
    closed += "<" + text + "</" + text.substr(0, text.find('>')) + ">";
  }
  EXPECT_EQ(Survive(BankStatementFile(Aggregate("STMTTRN", closed))), KRParseStatus_Accepted);
  // An extra end tag closes an aggregate that it does not name.
  EXPECT_EQ(Survive(BankStatementFile(Aggregate("STMTTRN", closed + "</FITID>"))),
            KRParseStatus_EndTagMismatch);
}

TEST(HostileInput, NoEndTagAtAll) {
  std::string text;
  bool skipping = false;
  const std::string sample = Sample();
  for (std::size_t i = 0; i < sample.size(); ++i) {
    if (sample[i] == '<' && i + 1 < sample.size() && sample[i + 1] == '/') skipping = true;
    if (!skipping) text += sample[i];
    if (sample[i] == '>') skipping = false;
  }
  EXPECT_NE(Survive(text), KRParseStatus_Accepted);
}

TEST(HostileInput, EndTagsAlone) {
  EXPECT_NE(Survive(HeaderBlock() + Repeat("</OFX>", 1000)), KRParseStatus_Accepted);
  EXPECT_NE(Survive(HeaderBlock() + Repeat("</STMTTRN>", 1000)), KRParseStatus_Accepted);
  EXPECT_NE(Survive(HeaderBlock() + "<OFX>" + Repeat("</STMTTRN>", 1000)), KRParseStatus_Accepted);
}

/// A statement of many small transactions.
std::string LongStatement(std::size_t transactions) {
  return BankStatementFile(
      Repeat("<STMTTRN><TRNTYPE>FEE<DTPOSTED>20260105<TRNAMT>-1<FITID>1</STMTTRN>", transactions));
}

TEST(LongStatements, SixtyThousandTransactionsAreReadWhole) {
  const Parsed<KRFileRs> file(LongStatement(60000));
  EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
  const auto* list = FindIn<KRBankTransactionList>(file.Get());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->GetNumStatementTx(), 60000);
  EXPECT_EQ(Str(list->GetStatementTx(59999)->GetFITId()), "1");
}

TEST(LongStatements, SeventyThousandTransactionsEndFatallyWithTheFirstOnesHeld) {
  const Parsed<KRFileRs> file(LongStatement(70000));
  EXPECT_EQ(file.Status(), KRParseStatus_Fatal);
  const auto* list = FindIn<KRBankTransactionList>(file.Get());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->GetNumStatementTx(), 65535);
  EXPECT_EQ(Str(list->GetStatementTx(65534)->GetFITId()), "1");
  EXPECT_EQ(list->GetStatementTx(65535), nullptr);
}

}  // namespace
}  // namespace krofx::testing
