// Keywords, booleans, currencies and languages as institutions write them, and texts that are long.

#include <gtest/gtest.h>

#include "krofx/messages/banking/statements.h"
#include "reader/read_values.h"

namespace krofx::testing {
namespace {

// Reads a statement with the first `was` replaced.
struct ReadWith {
  ReadWith(const std::string& was, const std::string& is) {
    text = BankStatementFile(TransactionWith("NAME", "Grocer"));
    text.replace(text.find(was), was.size(), is);
    reading = Read(text);
    written = Written(reading.root);
  }
  std::string text;
  Reading reading;
  std::string written;
};

TEST(ReadWords, TakesUnknownTransactionTypesAsOtherAndKeepsTheWord) {
  for (const char* const word : {"PIX", "Gutschrift", "None", "ONLINE PAYMENT",
                                 "\xDC"
                                 "BER"}) {
    const ReadWith read("<TRNTYPE>DEBIT", "<TRNTYPE>" + std::string(word));
    EXPECT_EQ(ValueIn(read.written, "TRNTYPE"), "OTHER") << word;
    ASSERT_EQ(MendingNames(read.reading), Lines{"transaction-type"}) << word;
    EXPECT_EQ(Str(read.reading.mendings[0].was), word);
    EXPECT_EQ(Str(read.reading.mendings[0].taken), "OTHER");
  }
}

TEST(ReadWords, TakesKeywordsInAnyCaseAndWithBlanks) {
  EXPECT_EQ(ReadOne("TRNTYPE", "debit"), (ReadValue{"DEBIT", {}}));
  for (const char* const text : {"Direct Debit", "DIRECT_DEBIT", "direct-debit"}) {
    EXPECT_EQ(ReadOne("TRNTYPE", text), (ReadValue{"DIRECTDEBIT", {"keyword"}})) << text;
  }
  const ReadWith read("<ACCTTYPE>CHECKING", "<ACCTTYPE>money-mrkt");
  EXPECT_EQ(ValueIn(read.written, "ACCTTYPE"), "MONEYMRKT");
  EXPECT_EQ(MendingNames(read.reading), Lines{"keyword"});
}

TEST(ReadWords, LeavesOutKeywordsThatOfxDoesNotHave) {
  const ReadWith type("<ACCTTYPE>CHECKING", "<ACCTTYPE>CONTACORRENTE");
  EXPECT_EQ(ValueIn(type.written, "ACCTTYPE"), "absent");
  EXPECT_EQ(MendingNames(type.reading), Lines{"keyword-refused"});
  EXPECT_EQ(ValueIn(type.written, "NAME"), "Grocer");
  const ReadWith severity("<SEVERITY>INFO", "<SEVERITY>null");
  EXPECT_EQ(ValueIn(severity.written, "NAME"), "Grocer");
  EXPECT_EQ(MendingNames(severity.reading), Lines{"word-absent"});
}

TEST(ReadWords, TakesWordsForYesAndNo) {
  const auto include = [](const std::string& word) {
    const Reading reading = Read(
        RequestFile("BANKMSGSRQ",
                    "<STMTTRNRQ><TRNUID>1<STMTRQ><BANKACCTFROM><BANKID>1<ACCTID>2<ACCTTYPE>CHECKING"
                    "</BANKACCTFROM><INCTRAN><INCLUDE>" +
                        word + "</INCTRAN></STMTRQ></STMTTRNRQ>"));
    return ReadValue{ValueIn(Written(reading.root), "INCLUDE"), MendingNames(reading)};
  };
  EXPECT_EQ(include("Y"), (ReadValue{"Y", {}}));
  for (const char* const word : {"y", "true", "TRUE", "1", "Yes"}) {
    EXPECT_EQ(include(word), (ReadValue{"Y", {"boolean"}})) << word;
  }
  for (const char* const word : {"n", "false", "0", "no"}) {
    EXPECT_EQ(include(word), (ReadValue{"N", {"boolean"}})) << word;
  }
  EXPECT_EQ(include("perhaps"), (ReadValue{"absent", {"keyword-refused"}}));
  EXPECT_EQ(include("none"), (ReadValue{"absent", {"word-absent"}}));
}

TEST(ReadWords, LeavesOutCurrenciesAndLanguagesThatAreNone) {
  const ReadWith none("<CURDEF>USD", "<CURDEF>None");
  EXPECT_EQ(ValueIn(none.written, "CURDEF"), "absent");
  EXPECT_EQ(MendingNames(none.reading), Lines{"word-absent"});
  const ReadWith word("<CURDEF>USD", "<CURDEF>Dollars");
  EXPECT_EQ(ValueIn(word.written, "CURDEF"), "absent");
  EXPECT_EQ(MendingNames(word.reading), Lines{"keyword-refused"});
  const ReadWith divided("<CURDEF>USD", "<CURDEF>U-S-D");
  EXPECT_EQ(ValueIn(divided.written, "CURDEF"), "USD");
  EXPECT_EQ(MendingNames(divided.reading), Lines{"keyword"});
  // The strict parser takes any language, so something else is mended here as well.
  const ReadWith language("<LANGUAGE>ENG", "<LANGUAGE>null</LANGUAGE><X.Y>1");
  EXPECT_EQ(ValueIn(language.written, "LANGUAGE"), "absent");
  EXPECT_EQ(MendingNames(language.reading), (Lines{"word-absent", "private-tag"}));
}

TEST(ReadWords, KeepsTextsThatAreLongAndWarns) {
  const std::string name(100, 'x');
  const ReadWith read("<NAME>Grocer", "<NAME>" + name);
  const auto* const transaction = FindIn<KRBankStatementTx>(read.reading.root);
  ASSERT_NE(transaction, nullptr);
  EXPECT_EQ(Str(transaction->GetName()), name);
  EXPECT_EQ(MendingNames(read.reading), Lines());
  EXPECT_EQ(WarningLines(read.reading), Lines{"TOOLONG <NAME> \"" + name + "\""});
}

}  // namespace
}  // namespace krofx::testing
