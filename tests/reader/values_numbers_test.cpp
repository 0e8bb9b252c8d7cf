// Numbers as institutions write them.

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <regex>
#include <set>

#include "krofx/core/tag_dictionary.h"
#include "krofx/reader/values/value_survey.h"
#include "reader/ended_readings.h"
#include "reader/read_values.h"

namespace krofx::testing {
namespace {

ReadValue Amount(const std::string& text) { return ReadOne("TRNAMT", text); }
std::vector<ReadValue> Amounts(const Lines& texts) { return ReadValues("TRNAMT", texts); }
ReadValue Refused() { return {"absent", {"number-refused"}}; }

TEST(ReadNumbers, TakesACommaAsTheDecimalSignWhereItCanBeNothingElse) {
  const Lines comma = {"decimal-comma"};
  const Lines both = {"decimal-comma", "thousands"};
  EXPECT_EQ(Amount("-11,76"), (ReadValue{"-11.76", comma}));
  EXPECT_EQ(Amount("0,5"), (ReadValue{".5", comma}));
  EXPECT_EQ(Amount("0,500"), (ReadValue{".5", comma}));
  EXPECT_EQ(Amount(",56"), (ReadValue{".56", comma}));
  EXPECT_EQ(Amount("5,"), (ReadValue{"5", comma}));
  EXPECT_EQ(Amount("1234,567"), (ReadValue{"1234.567", comma}));
  EXPECT_EQ(Amount("1,2345"), (ReadValue{"1.2345", comma}));
  EXPECT_EQ(Amount("1.234,56"), (ReadValue{"1234.56", both}));
  EXPECT_EQ(Amount("1.234.567,8"), (ReadValue{"1234567.8", both}));
  EXPECT_EQ(Amount("1 234,56"), (ReadValue{"1234.56", both}));
  EXPECT_EQ(Amount("-2 000 000,01"), (ReadValue{"-2000000.01", both}));
  EXPECT_EQ(Amount("1'234,50"), (ReadValue{"1234.5", both}));
}

TEST(ReadNumbers, TakesOutWhatDividesThousands) {
  const Lines thousands = {"thousands"};
  EXPECT_EQ(Amount("1,234.56"), (ReadValue{"1234.56", thousands}));
  EXPECT_EQ(Amount("-12,345,678.90"), (ReadValue{"-12345678.9", thousands}));
  EXPECT_EQ(Amount("1,234,567"), (ReadValue{"1234567", thousands}));
  EXPECT_EQ(Amount("1.234.567"), (ReadValue{"1234567", thousands}));
  EXPECT_EQ(Amount("12,34,567.89"), (ReadValue{"1234567.89", thousands}));
  EXPECT_EQ(Amount("1'234.50"), (ReadValue{"1234.5", thousands}));
  EXPECT_EQ(Amount("1 234.50"), (ReadValue{"1234.5", thousands}));
  EXPECT_EQ(Amount("1\xA0"
                   "234.50"),
            (ReadValue{"1234.5", thousands}));
  EXPECT_EQ(ReadOne("TRNAMT",
                    "1\u202F"
                    "234\u2009"
                    "000",
                    Utf8Header()),
            (ReadValue{"1234000", thousands}));
  EXPECT_EQ(ReadOne("TRNAMT",
                    "1\u2019"
                    "234.50",
                    Utf8Header()),
            (ReadValue{"1234.5", thousands}));
}

TEST(ReadNumbers, JudgesACommaByTheOtherNumbers) {
  const Lines decimal = {"ambiguous-separator", "decimal-comma"};
  const Lines thousands = {"ambiguous-separator", "thousands"};
  EXPECT_EQ(Amounts({"-11,76", "1,234"})[1], (ReadValue{"1.234", decimal}));
  EXPECT_EQ(Amounts({"1,234", "1.000,5"})[0], (ReadValue{"1.234", decimal}));
  EXPECT_EQ(Amounts({"1.234.567", "1,234"})[1], (ReadValue{"1.234", decimal}));
  EXPECT_EQ(Amounts({"-11.76", "1,234"})[1], (ReadValue{"1234", thousands}));
  EXPECT_EQ(Amounts({"1,234", "1,234,567"})[0], (ReadValue{"1234", thousands}));
}

TEST(ReadNumbers, JudgesAPointByTheOtherNumbersToo) {
  EXPECT_EQ(Amounts({"-11,76", "1.234"})[1],
            (ReadValue{"1234", {"ambiguous-separator", "thousands"}}));
  EXPECT_EQ(Amounts({"-11.76", "7,00", "1.234"})[2], (ReadValue{"1.234", {}}));
  EXPECT_EQ(Amount("1.234"), (ReadValue{"1.234", {}}));
}

TEST(ReadNumbers, AsksTheNumbersOfTheSameElementFirst) {
  // Its balance has a point.
  const std::string file =
      BankStatementFile(TransactionWith("TRNAMT", "-11,76") + TransactionWith("TRNAMT", "1,234"));
  const Reading reading = Read(file);
  EXPECT_NE(Written(reading.root).find("<TRNAMT>1.234\n"), std::string::npos)
      << Written(reading.root);
}

TEST(ReadNumbers, LeavesOutACommaThatNothingExplains) {
  const ReadValue undecided{"absent", {"amount-undecided"}};
  EXPECT_EQ(Amount("1,234"), undecided);
  EXPECT_EQ(Amounts({"11,76", "11.76", "1,234"})[2], undecided);
}

TEST(ReadNumbers, ReadsASignWhereverItIs) {
  const Lines sign = {"amount-sign"};
  EXPECT_EQ(Amount("11.76-"), (ReadValue{"-11.76", sign}));
  EXPECT_EQ(Amount("250.00+"), (ReadValue{"250", sign}));
  EXPECT_EQ(Amount("(11.76)"), (ReadValue{"-11.76", sign}));
  EXPECT_EQ(Amount("11.76DR"), (ReadValue{"-11.76", sign}));
  EXPECT_EQ(Amount("11.76 C"), (ReadValue{"11.76", {"amount-sign", "amount-decoration"}}));
  for (const char* const word : {"Dr", "Dr.", "DB", "db", "DEBIT", "debit"}) {
    EXPECT_EQ(Amount(std::string("11.76") + word), (ReadValue{"-11.76", sign})) << word;
  }
  for (const char* const word : {"Cr", "cr.", "CREDIT", "Credit"}) {
    EXPECT_EQ(Amount(std::string("11.76") + word), (ReadValue{"11.76", sign})) << word;
  }
  EXPECT_EQ(Amount("\x96"
                   "11.76"),
            (ReadValue{"-11.76", sign}));
  EXPECT_EQ(ReadOne("TRNAMT",
                    "\u2212"
                    "11,76",
                    Utf8Header()),
            (ReadValue{"-11.76", {"decimal-comma", "amount-sign"}}));
}

TEST(ReadNumbers, RefusesSignsThatContradictEachOther) {
  for (const char* const text : {"-11.76-", "(-5)", "-5 CR", "--5", "(5", "5)", "+-5"}) {
    EXPECT_EQ(Amount(text), Refused()) << text;
  }
}

TEST(ReadNumbers, RefusesWhatIsAroundANumberAndExplainsNothing) {
  for (const char* const text :
       {"5.00 XX", "5.00d", "5.00c", "D5.00", "(5.00(", ")5.00)", "$ EUR 5.00 USD", "5.00 %",
        "\"\"5.00\"\"", "\"5.00", "DR 5.00", "5.00 DR CR", "5.00 [", "5.00 {x}"}) {
    EXPECT_EQ(Amount(text), Refused()) << text;
  }
  EXPECT_EQ(Amount("5.00D."), (ReadValue{"-5", {"amount-sign"}}));
  EXPECT_EQ(Amount("'5.00"), (ReadValue{"5", {"amount-decoration"}}));
  EXPECT_EQ(Amount("$5.00 USD"), (ReadValue{"5", {"amount-decoration"}}));
}

TEST(ReadNumbers, RefusesWhatIsLongerThanAnyNumber) {
  const std::string digits(300, '7');
  EXPECT_EQ(Amount(digits + ",5"), Refused());
  EXPECT_EQ(Amount(digits + ".5"), Refused());
  EXPECT_EQ(Amount("$" + digits), Refused());
}

TEST(ReadNumbers, TakesOutCurrenciesAndBlanks) {
  const Lines decoration = {"amount-decoration"};
  EXPECT_EQ(Amount("$11.76"), (ReadValue{"11.76", decoration}));
  EXPECT_EQ(Amount("-$1,000.50"), (ReadValue{"-1000.5", {"thousands", "amount-decoration"}}));
  EXPECT_EQ(Amount("$-5"), (ReadValue{"-5", decoration}));
  EXPECT_EQ(Amount("USD 5.00"), (ReadValue{"5", decoration}));
  EXPECT_EQ(Amount("5.00 eur"), (ReadValue{"5", decoration}));
  EXPECT_EQ(Amount("R$ 7.25"), (ReadValue{"7.25", decoration}));
  EXPECT_EQ(Amount("\x80"
                   "5,00"),
            (ReadValue{"5", {"decimal-comma", "amount-decoration"}}));
  EXPECT_EQ(Amount("- 11.76"), (ReadValue{"-11.76", decoration}));
  EXPECT_EQ(Amount("+ 5.00"), (ReadValue{"5", decoration}));
  EXPECT_EQ(Amount("11 .76"), (ReadValue{"11.76", decoration}));
}

TEST(ReadNumbers, RefusesLettersThatMayBeAFactorOrASign) {
  for (const char* const text : {"5K",
                                 "5k$",
                                 "5 M",
                                 "1E3",
                                 "1e5",
                                 "0x10",
                                 "5 Mio",
                                 "5%",
                                 "\xA2"
                                 "5",
                                 "5,00 S",
                                 "5,00 d",
                                 "5,00 c",
                                 "5,00 Debi",
                                 "5,-",
                                 "5.-",
                                 "1 2",
                                 "1,23,4",
                                 "1.2,3",
                                 "1,234.567,8",
                                 "12,3456,789",
                                 "5,00,",
                                 ",,5",
                                 "12a",
                                 "1.2.3",
                                 "5 5 USD"}) {
    EXPECT_EQ(Amount(text), Refused()) << text;
  }
}

TEST(ReadNumbers, WritesOutExponents) {
  const Lines kinds = {"number-exponent"};
  EXPECT_EQ(Amount("1.05E1"), (ReadValue{"10.5", kinds}));
  EXPECT_EQ(Amount("-12E-2"), (ReadValue{"-.12", kinds}));
  EXPECT_EQ(Amount("0E-8"), (ReadValue{"0", kinds}));
  EXPECT_EQ(Amount("1.5e+3"), (ReadValue{"1500", kinds}));
  const std::string digits(30, '9');
  for (const std::string& text :
       {std::string("1E-400"), std::string("1E"), std::string("1EUR5"), std::string("1.5E+"),
        std::string("1.5E+1000"), std::string("1.5E+3x"), std::string("1.5E+99"),
        digits + "." + digits + "E-29", digits + digits + "E-9"}) {
    EXPECT_EQ(Amount(text), Refused()) << text;
  }
}

TEST(ReadNumbers, TakesOutQuotes) {
  const Lines kinds = {"amount-decoration"};
  EXPECT_EQ(Amount("\"-5.00\""), (ReadValue{"-5", kinds}));
  EXPECT_EQ(Amount("'5.00'"), (ReadValue{"5", kinds}));
  EXPECT_EQ(Amount("'-5.00"), (ReadValue{"-5", kinds}));
  EXPECT_EQ(Amount("-5.00'"), (ReadValue{"absent", {"number-refused"}}));
  EXPECT_EQ(Amount("\"5.00"), (ReadValue{"absent", {"number-refused"}}));
}

TEST(ReadNumbers, TakesWordsAndSignsForNothingAsAbsent) {
  for (const char* const text : {"None", "null", "NaN", "N/A", "-", ".", ",", "--"}) {
    EXPECT_EQ(Amounts({text, "5,00"})[0], (ReadValue{"absent", {"amount-absent"}})) << text;
    // The parser takes signs for zero, without a warning.
    EXPECT_EQ(Amount(text), (ReadValue{"absent", {"amount-absent"}})) << text;
  }
}

TEST(ReadNumbers, TakesOutZerosThatMakeANumberTooLong) {
  EXPECT_EQ(Amount("-5.25000000000000000000000000000000"), (ReadValue{"-5.25", {"number-zeros"}}));
  EXPECT_EQ(Amount("000000000000000000000000000000000012"), (ReadValue{"12", {"number-zeros"}}));
  EXPECT_EQ(Amount("12345678901234567890123456789"), Refused());
  EXPECT_EQ(Amount("1.2345678901234567890123456789"), Refused());
}

TEST(ReadNumbers, KeepsTheRestOfATransactionWithoutANumber) {
  const std::string file = BankStatementFile(TransactionWith("TRNAMT", "what"));
  const Reading reading = Read(file);
  const std::string written = Written(reading.root);
  EXPECT_EQ(ValueIn(written, "TRNAMT"), "absent");
  EXPECT_EQ(ValueIn(written, "NAME"), "Grocer");
}

TEST(ReadNumbers, ReadsIntegers) {
  const auto code = [](const std::string& text) {
    std::string file = BankStatementFile(TransactionWith("TRNAMT", "1.50"));
    file.replace(file.find("<CODE>0") + 6, 1, text);
    const Reading reading = Read(file);
    ReadValue value{ValueIn(Written(reading.root), "CODE"), MendingNames(reading)};
    return value;
  };
  EXPECT_EQ(code("2,000"), (ReadValue{"2000", {"ambiguous-separator", "thousands"}}));
  EXPECT_EQ(code("2,001"), (ReadValue{"2001", {"thousands"}}));
  EXPECT_EQ(code("5,0"), (ReadValue{"5", {"decimal-comma"}}));
  EXPECT_EQ(code("2 000"), (ReadValue{"2000", {"thousands"}}));
  EXPECT_EQ(code("none").kinds, Lines{"amount-absent"});
  EXPECT_EQ(code("OK").kinds, Lines{"number-refused"});
  EXPECT_EQ(code("5,5").kinds, Lines{"number-refused"});
}

// The value of the first N.AMT of a payroll batch in which it has a given text.
ReadValue PayrollAmount(const std::string& text) {
  std::string file = ReadExample("payroll-batch.ofx");
  const std::size_t at = file.find("<N.AMT>");
  file.replace(at, file.find('\n', at) - at, "<N.AMT>" + text);
  const Reading reading = Read(file);
  const std::string written = Written(reading.root);
  const std::size_t begin = written.find("<N.ADJ>");
  const std::size_t end = written.find("</N.ADJ>", begin);
  return {ValueIn(std::string_view(written).substr(begin, end - begin), "N.AMT"),
          MendingNames(reading)};
}

TEST(ReadNumbers, KeepsTheKindOfAPayrollAmount) {
  const Lines comma = {"decimal-comma"};
  const Lines both = {"decimal-comma", "thousands"};
  const Lines sign = {"amount-sign", "amount-decoration"};
  const Lines decorated = {"amount-decoration"};
  EXPECT_EQ(PayrollAmount("$480.00"), (ReadValue{"$480.00", {}}));
  EXPECT_EQ(PayrollAmount("2.13%"), (ReadValue{"2.13%", {}}));
  EXPECT_EQ(PayrollAmount("62.25"), (ReadValue{"62.25", {}}));
  EXPECT_EQ(PayrollAmount("^@~*"), (ReadValue{"^@~*", {}}));
  EXPECT_EQ(PayrollAmount("__OFX_EMPTY_STRING__"), (ReadValue{"^@~*", {}}));
  EXPECT_EQ(PayrollAmount("$480,00"), (ReadValue{"$480.00", comma}));
  EXPECT_EQ(PayrollAmount("2,13%"), (ReadValue{"2.13%", comma}));
  EXPECT_EQ(PayrollAmount("62,25"), (ReadValue{"62.25", comma}));
  EXPECT_EQ(PayrollAmount("$9.000,00"), (ReadValue{"$9000.00", both}));
  EXPECT_EQ(PayrollAmount("$9,000.00"), (ReadValue{"$9000.00", {"thousands"}}));
  EXPECT_EQ(PayrollAmount("-$5.00"), (ReadValue{"$-5.00", decorated}));
  EXPECT_EQ(PayrollAmount("($5.00)"), (ReadValue{"$-5.00", sign}));
  EXPECT_EQ(PayrollAmount("5.00 $"), (ReadValue{"$5.00", decorated}));
  EXPECT_EQ(PayrollAmount("USD 5.00-"), (ReadValue{"$-5.00", sign}));
  EXPECT_EQ(PayrollAmount("2.5 %"), (ReadValue{"2.5%", decorated}));
  EXPECT_EQ(PayrollAmount("1.05E1"), (ReadValue{"10.5", {"number-exponent"}}));
}

TEST(ReadNumbers, LeavesOutPayrollAmountsThatSayNoNumberOrAnotherCurrency) {
  for (const char* const text : {"$", "%", "-$", "n/a"}) {
    EXPECT_EQ(PayrollAmount(text), (ReadValue{"absent", {"amount-absent"}})) << text;
  }
  for (const char* const text : {"many", "EUR 5.00", "5.00K", "5%%", "$1E2", "1E2%"}) {
    EXPECT_EQ(PayrollAmount(text), (ReadValue{"absent", {"number-refused"}})) << text;
  }
}

TEST(ReadNumbers, KeepsThoseAfterATagThatHasLostItsEnd) {
  // The strict parser takes the next tag for attributes: the fees would be 9.95.
  const std::string whole = ReadExample("brokerage.ofx");
  for (const char* const tag : {"UNITPRICE", "FEES", "MARKUP", "SHORTBALANCE", "YIELD"}) {
    std::string text = whole;
    text.replace(text.find(std::string("<") + tag + ">") + 1 + std::strlen(tag), 1, " ");
    const Reading reading = Read(text);
    EXPECT_EQ(Written(reading.root), Written(Read(whole).root)) << tag;
    EXPECT_EQ(MendingNames(reading), Lines{"tag-form"}) << tag;
    ExpectEndsAtEachKind(text);
  }
}

TEST(ReadNumbers, KnowsEveryElementThatHoldsADecimalNumber) {
  std::set<std::string> expected;
  const std::regex row("^\\s+([A-Z0-9._]+)\\s+(amount|posamount|rate|payamount)\\b.*");
  for (const auto& entry : std::filesystem::recursive_directory_iterator(KROFX_SCHEMAS)) {
    if (entry.path().extension() != ".schema") continue;
    std::ifstream file(entry.path());
    std::smatch match;
    for (std::string line; std::getline(file, line);) {
      if (std::regex_match(line, match, row)) expected.insert(match[1]);
    }
  }
  std::set<std::string> known;
  for (const KRTagID tag : krofx::internal::DecimalTags()) {
    known.insert(KRTagDictionary::TheKRTagDictionary()->GetTagString(tag));
  }
  EXPECT_EQ(known, expected);
}

// A number, and one style in which all numbers of a text are written.
struct Style {
  char decimal;
  std::string group;
};

std::string WrittenIn(const Style& style, const std::string& whole, const std::string& decimals) {
  std::string text;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    if (at > 0 && (whole.size() - at) % 3 == 0) text += style.group;
    text += whole[at];
  }
  return decimals.empty() ? text : text + style.decimal + decimals;
}

std::string AsTreesWrite(const std::string& whole, std::string decimals) {
  while (!decimals.empty() && decimals.back() == '0') decimals.pop_back();
  const std::string front = whole == "0" && !decimals.empty() ? "" : whole;
  return decimals.empty() ? front : front + "." + decimals;
}

TEST(ReadNumbers, ChangesNoNumberByAFactorInSilence) {
  const Style styles[] = {{'.', ""}, {'.', ","}, {'.', " "}, {'.', "'"},
                          {',', ""}, {',', "."}, {',', " "}, {',', "'"}};
  std::mt19937 random(20260105);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  for (int round = 0; round < 400; ++round) {
    const Style& style = styles[below(std::size(styles))];
    Lines texts;
    Lines truths;
    bool shown = false;
    for (std::size_t count = 1 + below(4); count > 0; --count) {
      std::string whole = std::to_string(below(10));
      if (whole != "0") {
        for (std::size_t more = below(9); more > 0; --more)
          whole += static_cast<char>('0' + below(10));
      }
      std::string decimals;
      for (std::size_t more = below(4); more > 0; --more)
        decimals += static_cast<char>('0' + below(10));
      texts.push_back(WrittenIn(style, whole, decimals));
      truths.push_back(AsTreesWrite(whole, decimals));
      // Whether this number shows the decimal sign to one who looks at it alone.
      const bool byDecimals =
          decimals.size() > 0 && !(decimals.size() == 3 && whole.size() < 4 && whole != "0");
      const bool byThousands = whole.size() > 6 && (style.group == "." || style.group == ",");
      shown = shown || byDecimals || byThousands;
    }
    const std::vector<ReadValue> values = Amounts(texts);
    ASSERT_EQ(values.size(), texts.size());
    for (std::size_t index = 0; index < texts.size(); ++index) {
      const bool right = values[index].value == truths[index];
      const bool absent = values[index].value == "absent" && !values[index].kinds.empty();
      // The one text with two readings that is a number of OFX as it is.
      const bool pointOfOfx = texts[index].find(',') == std::string::npos && !shown;
      EXPECT_TRUE(right || absent || pointOfOfx)
          << texts[index] << " was read as " << values[index] << ", not " << truths[index];
      // With evidence every number is read.
      EXPECT_TRUE(right || !shown) << texts[index] << " was read as " << values[index];
      const bool plain = texts[index].find_first_not_of("0123456789.") == std::string::npos;
      EXPECT_TRUE(plain || !values[index].kinds.empty()) << texts[index];
    }
  }
}

}  // namespace
}  // namespace krofx::testing
