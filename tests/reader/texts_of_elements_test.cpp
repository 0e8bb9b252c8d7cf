// Texts that look like tags, a text where an aggregate belongs, and values that come twice.

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <string>

#include "krofx/messages/banking/statements.h"
#include "krofx/reader/reading.h"
#include "reader/ended_readings.h"
#include "reader/read_values.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

// A statement of one transaction, each tag of which has a line of its own.
std::string InLines(const std::string& content) {
  return BankStatementFile("<STMTTRN>\n<TRNTYPE>DEBIT\n<DTPOSTED>20260105\n<TRNAMT>-1.50\n" +
                           content + "</STMTTRN>\n");
}

std::string Written(const std::string& text) { return testing::Written(Read(text).root); }

void ExpectName(const std::string& text, const std::string& name, const Lines& kinds) {
  const Reading reading = Read(text);
  EXPECT_EQ(ValueIn(testing::Written(reading.root), "NAME"), name) << text;
  EXPECT_EQ(MendingNames(reading), kinds) << text;
}

TEST(TextsOfElements, MayHaveNamesInAngleBrackets) {
  const Lines kinds = {"bare-less-than"};
  ExpectName(InLines("<FITID>1\n<NAME>A <SHOP> B\n"), "A &lt;SHOP&gt; B", kinds);
  ExpectName(InLines("<FITID>1\n<NAME><SHOP>\n<MEMO>m\n"), "&lt;SHOP&gt;", kinds);
  ExpectName(InLines("<FITID>1\n<NAME><A><Shop> of<B>\n<MEMO>m\n"),
             "&lt;A&gt;&lt;Shop&gt; of&lt;B&gt;", kinds);
  // On one line with other elements, among words.
  ExpectName(InLines("<FITID>1<NAME>A <SHOP> B\n"), "A &lt;SHOP&gt; B", kinds);
  ExpectName(InLines("<FITID>1<NAME>100% <OFF>"), "100% &lt;OFF&gt;", kinds);
  // On a line that begins with white space.
  ExpectName(InLines("<FITID>1\n\t <NAME>A<SHOP>B\n"), "A&lt;SHOP&gt;B", kinds);
  // On one line, where the end tag of the element shows it.
  ExpectName(BankStatementFile("<STMTTRN><TRNTYPE>DEBIT<TRNAMT>-1.50<NAME>A <SHOP> B</NAME>"
                               "<FITID>1</STMTTRN>"),
             "A &lt;SHOP&gt; B", kinds);
  ExpectName(BankStatementFile("<STMTTRN><TRNTYPE>DEBIT<NAME>A <B>c</B> d</NAME><FITID>1"
                               "<TRNAMT>-1.50</STMTTRN>"),
             "A &lt;B&gt;c&lt;/B&gt; d", kinds);
}

TEST(TextsOfElements, EndAtTagsThatMayBeSomebodys) {
  ExpectName(InLines("<FITID>1\n<NAME>A\n</SHOP>\n</NAME>\n"), "A", {"stray-end", "stray-end"});
  ExpectName(InLines("<FITID>1\n<NAME>A\n<SHOP>1\n"), "A", {"unknown-tag"});
  ExpectName(InLines("<FITID>1\n<NAME>A<ACME.SHOP>1\n"), "A", {"private-tag"});
  ExpectName(InLines("<FITID>1\n<NAME>A<SHOP>1</SHOP>\n"), "A", {"unknown-tag"});
  ExpectName(InLines("<FITID>1\n<NAME>A<SHOP/>\n"), "A", {"unknown-tag"});
  ExpectName(InLines("<FITID>1<NAME>A<SHOP>1\n"), "A", {"unknown-tag"});
  ExpectName(InLines("<FITID>1\n<NAME>A<SHOP>1<MEMO>m\n"), "A", {"unknown-tag"});
  ExpectName(InLines("<FITID>1<NAME>A  <SHOP> B\n"), "A", {"unknown-tag"});
  ExpectName(InLines("<FITID>1<NAME> <SHOP> B\n"), "absent", {"empty-element", "unknown-tag"});
  ExpectName(InLines("<FITID>1<NAME>A <SHOP>B</SHOP> <MALL>C\n"), "A",
             {"unknown-tag", "unknown-tag"});
}

TEST(TextsOfElements, EndAtUnknownTagsThatAreWrittenAsAllTagsOfTheText) {
  std::string blanks = BankStatementFile("<STMTTRN><NAME>A<EXTRA>b<FITID>1</STMTTRN>");
  for (std::size_t at = blanks.find("<OFX>"); at != std::string::npos; at = blanks.find('>', at)) {
    at = blanks.find('>', at);
    if (at == std::string::npos) break;
    blanks.insert(at, " ");
    at += 2;
  }
  EXPECT_EQ(ValueIn(Written(blanks), "NAME"), "A");
  std::string small = BankStatementFile("<STMTTRN><NAME>A<EXTRA>b<FITID>1</STMTTRN>");
  for (std::size_t at = small.find("<OFX>"); at < small.size(); ++at) {
    small[at] = static_cast<char>(std::tolower(static_cast<unsigned char>(small[at])));
  }
  EXPECT_EQ(ValueIn(Written(small), "NAME"), "a");
}

TEST(TextsOfElements, AreReadInLinearTimeWhateverIsInBrackets) {
  std::string many;
  for (int count = 0; count < 20000; ++count) many += "<A>";
  const std::string text = InLines("<FITID>1\n<NAME>" + many + "\n<MEMO>m\n");
  // A text that is too long for an element is warned of; the rest stays.
  EXPECT_EQ(ValueIn(Written(InLines("<FITID>1\n<MEMO>m\n")), "MEMO"), "m");
  EXPECT_EQ(ValueIn(Written(text), "MEMO"), "m");
}

TEST(TextsOfElements, OfAPayeeAreItsName) {
  const std::string whole = InLines("<FITID>1\n<NAME>Shop\n<MEMO>m\n");
  for (const char* const payee : {"<PAYEE>Shop\n", "<PAYEE>Shop</PAYEE>\n"}) {
    const std::string text = InLines("<FITID>1\n" + std::string(payee) + "<MEMO>m\n");
    const Reading reading = Read(text);
    EXPECT_EQ(testing::Written(reading.root), Written(whole)) << text;
    EXPECT_EQ(MendingNames(reading), Lines{"payee-text"}) << text;
  }
  const std::string last = InLines("<FITID>1\n<PAYEE>Shop\n");
  EXPECT_EQ(Written(last), Written(InLines("<FITID>1\n<NAME>Shop\n")));
}

TEST(TextsOfElements, EndAtANameInBracketsAfterWhichThereIsNothing) {
  std::string text = InLines("<FITID>1<NAME>100% <OFF>");
  text.resize(text.find("<OFF>") + 5);
  const Reading reading = Read(text);
  EXPECT_EQ(ValueIn(testing::Written(reading.root), "NAME"), "100%");
  EXPECT_EQ(MendingNames(reading), (Lines{"unknown-tag", "cut-off"}));
}

TEST(TextsOfElements, HaveNoWhiteSpaceAtTheirEndWhereTheFileBreaksOff) {
  for (const char* const end :
       {"<OW", "\n<OW", "\n\n<!-- a note -->\n<OW", " <!-- < --> <!-- -->/<"}) {
    std::string text = InLines("<FITID>1\n<NAME>Shop\n<MEMO>m\n");
    text.resize(text.find("Shop") + 4);
    text += end;
    const Reading reading = Read(text);
    const auto* const transaction = FindIn<KRBankStatementTx>(reading.root);
    ASSERT_NE(transaction, nullptr);
    const std::string name = Str(transaction->GetName());
    EXPECT_EQ(name, std::string_view(end).ends_with("/<") ? "Shop  /" : "Shop") << end;
  }
}

TEST(TextsOfElements, KeepACharacterSectionWholeWhereTheFileBreaksOffAfterIt) {
  std::string text = InLines("<FITID>1\n<NAME>Shop <![CDATA[A & B <i> ]]> \n<OWN>");
  text.resize(text.find("<OWN>") + 3);
  const Reading reading = Read(text);
  const auto* const transaction = FindIn<KRBankStatementTx>(reading.root);
  ASSERT_NE(transaction, nullptr);
  EXPECT_EQ(Str(transaction->GetName()), "Shop <![CDATA[A & B <i> ]]>");
}

TEST(TextsOfElements, MayHaveWhatIsTooLongForATagInBrackets) {
  const std::string words = "A <" + std::string(256, 'S') + "> B";
  const Reading reading = Read(InLines("<FITID>1\n<NAME>Shop\n<MEMO>" + words + "\n"));
  const auto* const transaction = FindIn<KRBankStatementTx>(reading.root);
  ASSERT_NE(transaction, nullptr);
  EXPECT_EQ(Str(transaction->GetMemo()), words);
  EXPECT_EQ(MendingNames(reading), Lines{"bare-less-than"});
}

TEST(TextsOfElements, EndTheReadingWhenTheyMustNotBeMended) {
  ExpectEndsAtEachKind(InLines("<FITID>1\n<PAYEE>Shop\n<MEMO>m\n"));
  ExpectEndsAtEachKind(InLines("<FITID>1\n<NAME>A <SHOP> B\n"));
  ExpectEndsAtEachKind(InLines("<FITID>1\n<NAME>Shop\n<TRNAMT>-13\n"));
}

TEST(TextsOfElements, OfAPayeeAreNoNameWhereNoneCanBe) {
  // A payment has a payee and no name.
  const Reading payment = Read(RequestFile(
      "BILLPAYMSGSRQ",
      RequestWrapper("PMTTRNRQ",
                     "<PMTRQ><PMTINFO><BANKACCTFROM><BANKID>1<ACCTID>2<ACCTTYPE>CHECKING"
                     "</BANKACCTFROM><TRNAMT>5<PAYEE>Shop<PAYACCT>1<DTDUE>20260102</PMTINFO>"
                     "</PMTRQ>")));
  EXPECT_EQ(testing::Written(payment.root).find("Shop"), std::string::npos);
  EXPECT_EQ(MendingNames(payment), (Lines{"stray-text", "missing-end"}));
  // What follows is of a payee.
  const Reading address = Read(InLines("<FITID>1\n<PAYEE>Shop\n<ADDR1>Street 1</PAYEE>\n"));
  EXPECT_EQ(MendingNames(address), Lines{"stray-text"});
  EXPECT_EQ(ValueIn(testing::Written(address.root), "ADDR1"), "Street 1");
  const Reading named = Read(InLines("<FITID>1\n<PAYEE>Shop\n<NAME>Shop 1</PAYEE>\n"));
  EXPECT_EQ(MendingNames(named), Lines{"stray-text"});
  EXPECT_EQ(ValueIn(testing::Written(named.root), "NAME"), "Shop 1");
}

TEST(TextsOfElements, OfAPayeeDoNotTakeThePlaceOfAName) {
  ExpectName(InLines("<FITID>1\n<NAME>Shop\n<PAYEE>Other\n"), "Shop",
             {"stray-text", "missing-end"});
}

TEST(RepeatedValues, AreSaidOfAmountsAndDates) {
  const auto read = [](const std::string& first, const std::string& second) {
    return Read(InLines(first + "\n<FITID>1\n<NAME>Shop\n" + second + "\n"));
  };
  const struct {
    const char* element;
    const char* was;
    const char* taken;
  } kCases[] = {{"<TRNAMT>-13", "-1.5", "-13"}, {"<DTPOSTED>20260106", "20260105", "20260106"}};
  for (const auto& each : kCases) {
    const Reading reading = read("", each.element);
    EXPECT_EQ(reading.status, KRParseStatus_Warnings);
    ASSERT_EQ(MendingNames(reading), Lines{"repeated-element"}) << each.element;
    EXPECT_EQ(Str(reading.mendings[0].was), each.was);
    EXPECT_EQ(Str(reading.mendings[0].taken), each.taken);
  }
  // The tree is that of the strict parser, which takes the last one.
  ReadOptions strict;
  strict.strict = true;
  const std::string text = InLines("<FITID>1\n<NAME>Shop\n<TRNAMT>-13\n");
  EXPECT_EQ(Written(text), testing::Written(Read(text, strict).root));
}

TEST(RepeatedValues, AreSaidOfIntegersAndPayrollValuesToo) {
  const struct {
    const char* example;
    const char* element;
    const char* second;
    const char* was;
    const char* taken;
  } kCases[] = {
      {"billpay-request.ofx", "<NINSTS>", "777", "12", "777"},
      {"checking.ofx", "<CODE>", "2000", "0", "2000"},
      {"payroll-batch.ofx", "<N.AMT>", "$4.00", "5%", "$4.00"},
  };
  for (const auto& each : kCases) {
    std::string text = ReadExample(each.example);
    const std::size_t at = text.find('\n', text.find(each.element)) + 1;
    text.insert(at, std::string(each.element) + each.second + "\n");
    const Reading reading = Read(text);
    EXPECT_EQ(reading.status, KRParseStatus_Warnings);
    ASSERT_EQ(MendingNames(reading), Lines{"repeated-element"}) << each.element;
    EXPECT_EQ(Str(reading.mendings[0].was), each.was);
    EXPECT_EQ(Str(reading.mendings[0].taken), each.taken);
  }
}

TEST(RepeatedValues, OfOneValueAreInOrder) {
  const Reading reading = Read(InLines("<FITID>1\n<NAME>Shop\n<TRNAMT>-1.50\n"));
  EXPECT_EQ(reading.status, KRParseStatus_Accepted);
  EXPECT_EQ(MendingNames(reading), Lines());
  // A second text takes the place of the first, as the strict parser has it.
  EXPECT_EQ(Read(InLines("<FITID>1\n<NAME>Shop\n<MEMO>a\n<MEMO>b\n")).status,
            KRParseStatus_Accepted);
}

TEST(RepeatedValues, AreSaidWhereSomethingElseIsMendedToo) {
  const Reading reading =
      Read(InLines("<FITID>1\n<NAME>Shop\n<ACME.X>1\n<TRNAMT>-13,00\n<TRNAMT>-14\n"));
  EXPECT_EQ(MendingNames(reading),
            (Lines{"private-tag", "decimal-comma", "repeated-element", "repeated-element"}));
}

}  // namespace
}  // namespace krofx::testing
