// The front door: texts in order stay as they are, and the result says what there is.

#include "krofx/reader/reading.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "support/failing_allocation.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

std::string ReadAll(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

// A transaction with an amount.
std::string Transaction(const std::string& amount, const std::string& name = "Grocer") {
  return Aggregate("STMTTRN", "<TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>" + amount + "<FITID>" +
                                  amount + "<NAME>" + name);
}

TEST(Reading, GivesTheTreeOfTheParserWhereItReadsCleanly) {
  const std::string text = BankStatementFile(Transaction("-12.50") + Transaction("7"));
  const Parsed<KRFileRs> parsed(text, 1, 1);
  ASSERT_EQ(parsed.Status(), KRParseStatus_Accepted);
  const Reading reading = Read(text);
  EXPECT_EQ(reading.status, KRParseStatus_Accepted);
  EXPECT_EQ(Written(reading.root), Written(parsed.Get()));
  EXPECT_TRUE(reading.mendings.empty());
  EXPECT_TRUE(reading.warnings.empty());
  ASSERT_EQ(reading.texts.size(), 1u);
  EXPECT_EQ(reading.texts[0].kind, TextKind::kResponse);
  EXPECT_EQ(Str(reading.texts[0].version), "102");
}

TEST(Reading, FindsTheKindOfFileByItself) {
  EXPECT_EQ(Read(RequestFile("BANKMSGSRQ", "")).texts[0].kind, TextKind::kRequest);
  EXPECT_EQ(Read(BankStatementFile("")).texts[0].kind, TextKind::kResponse);
}

TEST(Reading, ReadsACommaAsTheDecimalSign) {
  const Reading reading = Read(BankStatementFile(Transaction("-11,76")));
  EXPECT_EQ(reading.status, KRParseStatus_Warnings);
  EXPECT_EQ(Written(reading.root),
            Written(Read(BankStatementFile("<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-11."
                                           "76<FITID>-11,76<NAME>Grocer</STMTTRN>"))
                        .root));
  ASSERT_EQ(reading.mendings.size(), 1u);
  const Mending& mending = reading.mendings[0];
  EXPECT_EQ(mending.kind, MendingKind::kDecimalComma);
  EXPECT_EQ(Str(mending.was), "-11,76");
  EXPECT_EQ(Str(mending.taken), "-11.76");
  EXPECT_EQ(Str(mending.tag), "TRNAMT");
  EXPECT_EQ(Str(mending.path), "OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST/STMTTRN");
}

TEST(Reading, NumbersAggregatesInPathsWhereThereAreSeveral) {
  const Reading reading = Read(BankStatementFile(Transaction("1.00") + Transaction("2,50")));
  ASSERT_EQ(reading.mendings.size(), 1u);
  EXPECT_EQ(Str(reading.mendings[0].path),
            "OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST/STMTTRN[2]");
}

TEST(Reading, LeavesTextsWithCommasAlone) {
  const std::string text = BankStatementFile(Transaction("1.50", "12,50"));
  const Reading reading = Read(text);
  EXPECT_EQ(MendingLines(reading), Lines());
  EXPECT_EQ(reading.status, KRParseStatus_Accepted);
  EXPECT_EQ(Written(reading.root), Written(Parsed<KRFileRs>(text).Get()));
}

TEST(Reading, TakesUnknownTransactionTypesAsOther) {
  std::string text = BankStatementFile(Transaction("1.50"));
  const std::string whole = text;
  text.replace(text.find("DEBIT"), 5, "PIX");
  const Reading reading = Read(text);
  EXPECT_EQ(MendingNames(reading), Lines{"transaction-type"});
  std::string other = whole;
  other.replace(other.find("DEBIT"), 5, "OTHER");
  EXPECT_EQ(Written(reading.root), Written(Read(other).root));
}

TEST(Reading, ReadsNothingOfAFileThatIsNotOfx) {
  const Reading reading = Read(std::string("%PDF-1.4 and so on"));
  EXPECT_EQ(reading.status, KRParseStatus_Invalid);
  EXPECT_EQ(reading.root, nullptr);
  EXPECT_EQ(Str(reading.problem),
            "this is a PDF document; download the statement again as OFX or QFX");
}

TEST(Reading, MendsNothingWhenItIsStrict) {
  ReadOptions options;
  options.strict = true;
  const Reading reading = Read(BankStatementFile(Transaction("1.00") + "<INTU.BID>3000"), options);
  EXPECT_EQ(reading.status, KRParseStatus_Warnings);
  EXPECT_TRUE(reading.mendings.empty());
  EXPECT_EQ(WarningLines(reading), Lines{"UNKNOWNTAG <INTU.BID>"});
  EXPECT_EQ(reading.warnings[0].place.line, 11u);
}

TEST(Reading, KnowsTheCharacterSetWhenItIsStrict) {
  ReadOptions options;
  options.strict = true;
  for (const std::string name : {"caf\xE9", "caf\u00e9"}) {
    const Reading reading = Read(BankStatementFile(Transaction("1.00", name)), options);
    EXPECT_EQ(reading.status, KRParseStatus_Accepted);
    EXPECT_EQ(Str(reading.texts[0].version), "102");
    EXPECT_EQ(Str(reading.texts[0].ToUtf8(KRString(name.c_str()))), "caf\u00e9");
  }
}

TEST(Reading, KnowsThePathsOfWarningsWhenItIsStrict) {
  ReadOptions options;
  options.strict = true;
  const std::string bad = "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-1<FITID>a<CURDEF>X";
  const Reading reading =
      Read(BankStatementFile(Transaction("1.00") + "<INTU.BID>3000" + bad + "</STMTTRN>"), options);
  ASSERT_EQ(reading.warnings.size(), 2u);
  const std::string list = "OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST";
  EXPECT_EQ(Str(reading.warnings[0].path), list);
  EXPECT_EQ(Str(reading.warnings[1].path), list + "/STMTTRN[2]");
}

TEST(Reading, StopsAtWhatMustNotBeMended) {
  ReadOptions options;
  options.mend.Remove(MendingKind::kDecimalComma);
  const Reading reading =
      Read(BankStatementFile(Transaction("1.00") + Transaction("2,50")), options);
  EXPECT_EQ(reading.status, KRParseStatus_Invalid);
  EXPECT_TRUE(reading.mendings.empty());
  EXPECT_NE(reading.root, nullptr);
  EXPECT_EQ(
      Str(reading.problem),
      "it was read up to damage that must not be mended: a comma was taken as the decimal sign");
}

TEST(Reading, EndsInStatus3WhereverMemoryIsExhausted) {
  const std::string text =
      BankStatementFile(Transaction("1.00") + "<INTU.BID>3000" + Transaction("2,50"));
  const std::string whole = Written(Read(text).root);
  bool failed = true;
  for (std::size_t nth = 1; failed && nth < 100000; ++nth) {
    Reading reading;
    {
      const FailingAllocation failing(nth);
      reading = Read(text);
      failed = krofx::internal::AllocationFailure::Count() >= nth;
    }
    if (!failed) {
      EXPECT_EQ(Written(reading.root), whole);
    } else if (reading.status != KRParseStatus_Fatal) {
      EXPECT_EQ(Written(reading.root), whole) << "allocation " << nth;
    }
  }
  EXPECT_FALSE(failed);
}

TEST(Reading, DocumentsEveryKindOfDamage) {
  const std::string page =
      ReadAll(std::filesystem::path(KROFX_EXAMPLES) / ".." / "docs" / "reading.md");
  for (const MendingKindInfo& info : AllMendingKinds()) {
    const std::string name = info.once ? std::string("*") + info.name + "*" : info.name;
    const std::string row = "| " + std::to_string(static_cast<u16>(info.kind)) + " " + name + " |";
    EXPECT_NE(page.find(row), std::string::npos) << row;
  }
}

TEST(Reading, ReadsEveryExampleAsTheParserDoesWhereThatIsClean) {
  for (const auto& entry : std::filesystem::directory_iterator(KROFX_EXAMPLES)) {
    if (entry.path().extension() != ".ofx") continue;
    const std::string text = ReadAll(entry.path());
    const Reading reading = Read(text);
    ASSERT_NE(reading.root, nullptr) << entry.path();
    std::string parsed;
    KRParseStatus status;
    if (reading.texts[0].kind == TextKind::kRequest) {
      const Parsed<KRFileRq> file(text, 1, 1);
      status = file.Status();
      parsed = Written(file.Get());
    } else {
      const Parsed<KRFileRs> file(text, 1, 1);
      status = file.Status();
      parsed = Written(file.Get());
    }
    if (status != KRParseStatus_Accepted) continue;
    EXPECT_EQ(Written(reading.root), parsed) << entry.path();
    EXPECT_EQ(MendingLines(reading), Lines()) << entry.path();
  }
}

}  // namespace
}  // namespace krofx::testing
