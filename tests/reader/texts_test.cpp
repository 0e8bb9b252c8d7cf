// Files with several texts, and files with none.

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <string_view>

#include "krofx/krofx.h"
#include "reader/ended_readings.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

std::string Statement(const std::string& account) {
  std::string text = BankStatementFile("");
  return text.replace(text.find("1029384756"), 10, account);
}

std::string AccountIn(const OfxText& text) {
  auto* const account = FindIn<KRBankAccount>(text.root.get());
  return account == nullptr ? "none" : Str(account->GetAccountID());
}

TEST(Texts, OneAfterTheOtherAreReadOneByOne) {
  const std::string first = Statement("1") + "\r\n";
  const Reading reading = Read(first + Statement("2") + Statement("3"));
  EXPECT_EQ(reading.status, KRParseStatus_Accepted);
  ASSERT_EQ(reading.texts.size(), 3u);
  EXPECT_EQ(AccountIn(reading.texts[0]), "1");
  EXPECT_EQ(AccountIn(reading.texts[1]), "2");
  EXPECT_EQ(AccountIn(reading.texts[2]), "3");
  EXPECT_EQ(reading.root, reading.texts[0].root.get());
  EXPECT_EQ(MendingLines(reading), Lines());
  EXPECT_EQ(Written(reading.texts[1].root.get()), Written(Read(Statement("2")).root));
}

TEST(Texts, WithoutHeadersOrEndsAreReadOneByOneToo) {
  const auto body = [](const std::string& account) {
    const std::string text = Statement(account);
    return text.substr(text.find('<'));
  };
  Reading reading = Read(Statement("1") + body("2") + body("3"));
  ASSERT_EQ(reading.texts.size(), 3u);
  EXPECT_EQ(AccountIn(reading.texts[2]), "3");
  EXPECT_EQ(MendingNames(reading), (Lines{"header-missing", "header-missing"}));
  EXPECT_EQ(reading.mendings[1].text, 2u);

  std::string open = Statement("1");
  open.resize(open.find("</OFX>"));
  reading = Read(open + Statement("2"));
  ASSERT_EQ(reading.texts.size(), 2u);
  EXPECT_EQ(AccountIn(reading.texts[1]), "2");
  EXPECT_EQ(MendingNames(reading), Lines{"cut-off"});
  EXPECT_EQ(reading.texts[1].status, KRParseStatus_Accepted);
}

TEST(Texts, EndWithoutMemoryAsFatalOrLoseNothing) {
  const std::string two = Statement("1") + Statement("Z\xfcrich");
  ExpectFatalOrWhole(two);
  ReadOptions strict;
  strict.strict = true;
  ExpectFatalOrWhole(two, strict);
}

TEST(Texts, AreNeverEmpty) {
  const Reading reading = Read(std::string("<STMTTRN>OFXHEADER<OFX<OFX>"));
  ASSERT_LE(reading.texts.size(), 2u);
  const std::string text = Statement("1");
  const Reading others = Read(text + Repeat("OFXHEADER<OFX", 100) + text);
  EXPECT_LE(others.texts.size(), 102u);
  EXPECT_EQ(AccountIn(others.texts[others.texts.size() - 1]), "1");
}

TEST(Texts, MayHaveTagsWithAPrefixOfAnyLettersAndDigits) {
  for (const std::string prefix : {"a", "z", "A", "Z", "n0", "n9", "a.z"}) {
    std::string both;
    for (const char* const account : {"1", "2"}) {
      const std::string text = Statement(account);
      const std::size_t body = text.find('<');
      both += std::regex_replace(text.substr(body), std::regex("<(/?)"), "<$1" + prefix + ":");
    }
    const Reading reading = Read(both);
    ASSERT_EQ(reading.texts.size(), 2u) << prefix;
    EXPECT_EQ(AccountIn(reading.texts[0]), "1") << prefix;
    EXPECT_EQ(AccountIn(reading.texts[1]), "2") << prefix;
  }
}

TEST(Texts, HaveTheirPlacesInTheWholeFile) {
  const std::string first = Statement("1") + "\n";
  std::string second = Statement("2");
  second.insert(second.find("<CURDEF>"), "<ACME.X>1\n");
  const Reading reading = Read(first + second);
  ASSERT_EQ(reading.mendings.size(), 1u);
  EXPECT_EQ(reading.mendings[0].place.offset, first.size() + second.find("<ACME"));
  EXPECT_EQ(reading.texts[1].place.offset, first.size());
  EXPECT_EQ(reading.mendings[0].text, 1u);
}

TEST(Texts, BeyondTheMostThatAreWantedAreSpokenOf) {
  ReadOptions options;
  options.maxTexts = 2;
  const Reading reading = Read(Statement("1") + Statement("2") + Statement("3"), options);
  EXPECT_EQ(reading.texts.size(), 2u);
  EXPECT_NE(reading.problem.IsEmpty(), 1);
}

TEST(Texts, ThatAreNotOfxAreDescribed) {
  using namespace std::string_literals;
  const struct {
    std::string bytes;
    const char* sentence;
  } kCases[] = {
      {"", "it is empty"},
      {" \r\n ", "nothing but blanks"},
      {"%PDF-1.7\n", "PDF"},
      {"PK\x03\x04 word/document.xml", "ZIP"},
      {"PK\x03\x04 xl/workbook.xml", "Excel"},
      {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", "Excel"},
      {"\x1F\x8B\x08"s, "gzip"},
      {"<!DOCTYPE html>\n<html><head><title> Session expired </title></head></html>",
       "web page, \"Session expired\""},
      {"<html><body><code>500</code></body></html>", "web page"},
      {"Date;Amount;Payee\n2026-01-05;-1,50;Grocer\n2026-01-06;-2,50;Baker\n", "CSV"},
      {"Date,Amount,Payee\n2026-01-05,-1.50,Grocer\n", "CSV"},
      {"!Type:Bank\nD01/05/2026\nT-1.50\n^\n", "QIF"},
      {":20:STARTUMS\n:25:10020030/1234567\n:28C:0\n:60F:C260101EUR1,00\n", "MT940"},
      {"<?xml version=\"1.0\"?><Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:camt.053.001.02\">",
       "CAMT"},
      {"<OFC>\n<DTD>2\n</OFC>", "OFC"},
      {"{\"error\": \"denied\"}", "JSON"},
      {"OFXHEADER:100\nDATA:OFXSGML\n", "broke off"},
      {"<?OFX OFXHEADER=\"200\" VERSION=\"203\"?>\n", "broke off"},
      {"Hello, this is a letter.\n", "without any OFX"},
      {"Date;Amount;Payee\n2026-01-05;-1,50\n", "without any OFX"},
      {"\xEF\xBB\xBF%PDF-1.7\n", "PDF"},
      {"\0\0 %PDF-1.7\n"s, "PDF"},
      {"PK\x03\x04 [Content_Types].xml", "Excel"},
      {"PK\x03\x04 mimetypeapplication/vnd.oasis.opendocument.spreadsheet", "OpenDocument"},
      {"<HTML><HEAD><TITLE>\r\n Log in\r\nagain</TITLE>", "web page, \"Log in\""},
      {"<html><title> </title>", "web page, not"},
      {"<html><title", "web page, not"},
      {"<!doctype html><p>Denied", "web page, not"},
      {"<body>Denied</body>", "web page, not"},
      {"<html><title>" + std::string(200, 'x') + "</title>",
       ", "
       "\"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"
       "xxxxx"
       "xxxxxxxxxxxxxxxxxxxxxxxxxx\", not"},
      {"<body>Denied", "XML of another kind"},
      {"<?xml version=\"1.0\"?><feed></feed>", "XML of another kind"},
      {":20:STARTDISP\n:25:10020030/1234567\n:61:2601050105D1,50NMSC\n", "MT942"},
      {":20:STARTDISP\n", "without any OFX"},
      {"<Document><BkToCstmrStmt></BkToCstmrStmt></Document>", "CAMT"},
      {"<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:pain.001.001.03\">", "payment order"},
      {"<gnc-v2>", "GnuCash"},
      {"[{\"amount\": 1}]", "JSON"},
      {"Date\tAmount\tPayee\n\n2026-01-05\t-1.50\tGrocer\n", "CSV"},
      {"Date|Amount|Payee\n2026-01-05|-1.50|Grocer", "CSV"},
      {"\0\1\2\3\0\0\7"s, "no text"},
  };
  for (const auto& each : kCases) {
    const Reading reading = Read(each.bytes);
    EXPECT_EQ(reading.status, KRParseStatus_Invalid) << each.sentence;
    EXPECT_EQ(reading.root, nullptr) << each.sentence;
    EXPECT_NE(Str(reading.problem).find(each.sentence), std::string::npos)
        << each.sentence << " not in " << Str(reading.problem);
    EXPECT_TRUE(reading.texts.empty());
  }
}

TEST(Texts, MayStandInAWebPage) {
  const std::string text = Statement("1");
  const Reading reading = Read("<html><body><pre>" + text + "</pre></body></html>");
  ASSERT_NE(reading.root, nullptr);
  EXPECT_EQ(WrittenBody(reading.root), WrittenBody(Read(text).root));
}

}  // namespace
}  // namespace krofx::testing
