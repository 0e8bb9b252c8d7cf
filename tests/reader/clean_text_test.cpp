// Which texts are clean: those that the strict parser reads with status 0, and no others. The
// reader finds it out in a pass of its own, which must come to the same answer.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "support/example_texts.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

// The status of the strict parser, with its check of required tags.
KRParseStatus StrictStatus(const std::string& text) {
  ReadOptions options;
  options.strict = true;
  return Read(text, options).status;
}

void ExpectCleanAsTheParserFindsIt(const std::string& text, const std::string& what) {
  const Reading reading = Read(text);
  EXPECT_EQ(reading.status == KRParseStatus_Accepted, StrictStatus(text) == KRParseStatus_Accepted)
      << what;
}

// The whole lines of a text, and what is between tags on one line, each with its end.
std::vector<std::string> PiecesOf(const std::string& text) {
  std::vector<std::string> pieces;
  std::size_t from = 0;
  while (from < text.size()) {
    const std::size_t end = text.find_first_of("\n<", from + 1);
    pieces.push_back(text.substr(from, end - from));
    from = end == std::string::npos ? text.size() : end;
  }
  return pieces;
}

TEST(CleanText, IsAnExampleAndStopsBeingOneWithoutAnElementThatMustBeThere) {
  constexpr std::size_t kMostBytes = 1300;
  unsigned clean = 0;
  unsigned incomplete = 0;
  for (const auto& [name, whole] : ExampleTexts()) {
    if (whole.size() > kMostBytes || StrictStatus(whole) != KRParseStatus_Accepted) continue;
    const std::vector<std::string> pieces = PiecesOf(whole);
    for (std::size_t left = 0; left < pieces.size(); ++left) {
      std::string text;
      for (std::size_t at = 0; at < pieces.size(); ++at) text += at == left ? "" : pieces[at];
      ExpectCleanAsTheParserFindsIt(text, name + " without " + pieces[left]);
      ++(StrictStatus(text) == KRParseStatus_Accepted ? clean : incomplete);
    }
  }
  EXPECT_GT(clean, 100u);
  EXPECT_GT(incomplete, 100u);
}

TEST(CleanText, MayHaveCommasWhereNoNumberIs) {
  const Reading reading = Read(BankStatementFile(
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-1.50<FITID>1,234<NAME>5,00</STMTTRN>"));
  EXPECT_EQ(reading.status, KRParseStatus_Accepted);
  EXPECT_TRUE(reading.mendings.empty());
}

TEST(CleanText, IsInTheCharacterSetThatAnyOfItsBytesShows) {
  const std::string transaction =
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-1.50<FITID>1<MEMO>Caf</STMTTRN>";
  const std::string plain = BankStatementFile(transaction);
  EXPECT_EQ(Str(Read(plain).texts[0].charset), "WINDOWS-1252");
  // In a short text and one that is longer than the stretches that are looked at together.
  for (const std::size_t length : {0u, 1u, 15u, 16u, 17u, 200u}) {
    std::string text = plain;
    text.replace(text.find("<MEMO>Caf"), 9, "<MEMO>" + std::string(length, 'x') + "\xC3\xA9");
    const Reading reading = Read(text);
    EXPECT_EQ(reading.status, KRParseStatus_Accepted);
    EXPECT_EQ(Str(reading.texts[0].charset), "UTF-8") << length;
  }
  // In a section, which the strict parser takes another way.
  std::string section = plain;
  section.replace(section.find("<MEMO>Caf"), 9, "<MEMO><![CDATA[\xC3\xA9]]>");
  EXPECT_EQ(Str(Read(section).texts[0].charset), "UTF-8");
}

}  // namespace
}  // namespace krofx::testing
