// The direct way from the text to the objects has the same result as the operations that hosts may
// override: the same tree, the same status, the same warnings at the same places. Every example is
// read in both ways: unchanged, cut off at many places, and with characters changed.

#include "krofx/parse/internal/plain_feed.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "krofx/krofx.h"
#include "support/example_texts.h"
#include "support/ofx_text.h"
#include "support/parse_text.h"

namespace {

using krofx::testing::Lines;
using krofx::testing::TextBuffer;
using krofx::testing::TextOf;

// What a host can see of a parse.
struct Outcome {
  KRParseStatus status;
  s16 depth;
  std::string tree;
  Lines warnings;
  std::vector<s32> places;

  friend bool operator==(const Outcome&, const Outcome&) = default;
};

class Places : public KRWarningObserver {
 public:
  void OnWarning(const KRParseException&, s32 position) override { m_places.push_back(position); }
  std::vector<s32> m_places;
};

template <class File>
Outcome OutcomeOf(const std::string& text, bool plain) {
  TextBuffer buffer(text, plain);
  File file;
  Places places;
  KRSimpleParser parser;
  parser.SetWarningObserver(&places);
  const KRParseStatus status = parser.Parse(buffer.Get(), &file, 1);
  return {status, parser.GetDepth(), TextOf(file), krofx::testing::Warnings(), places.m_places};
}

void ExpectSame(const std::string& text) {
  const bool isRequest = text.find("<SONRQ>") != std::string::npos;
  const Outcome quick =
      isRequest ? OutcomeOf<KRFileRq>(text, true) : OutcomeOf<KRFileRs>(text, true);
  const Outcome slow =
      isRequest ? OutcomeOf<KRFileRq>(text, false) : OutcomeOf<KRFileRs>(text, false);
  EXPECT_EQ(quick.status, slow.status);
  EXPECT_EQ(quick.depth, slow.depth);
  EXPECT_EQ(quick.tree, slow.tree);
  EXPECT_EQ(quick.warnings, slow.warnings);
  EXPECT_EQ(quick.places, slow.places);
  if (!(quick == slow)) ADD_FAILURE() << "for the text\n" << text;
}

TEST(PlainFeed, ReadsEveryExampleAsTheOperationsDo) {
  const std::map<std::string, std::string> texts = ExampleTexts();
  ASSERT_GT(texts.size(), 10u);
  for (const auto& [name, text] : texts) ExpectSame(text);
}

TEST(PlainFeed, EndsWithTheTextAsTheOperationsDo) {
  for (const auto& [name, text] : ExampleTexts()) {
    for (std::size_t size = 1; size < text.size(); size += text.size() / 40 + 1) {
      ExpectSame(text.substr(0, size));
      if (HasFailure()) return;
    }
  }
}

TEST(PlainFeed, MeetsChangedCharactersAsTheOperationsDo) {
  constexpr char kCharacters[] = {'<', '>', '&', '/', '!', ' ', '\n', 'x', '9', ';', '[', '\0'};
  for (const auto& [name, text] : ExampleTexts()) {
    std::size_t next = 0;
    for (std::size_t at = 200; at < text.size(); at += text.size() / 60 + 1) {
      std::string changed = text;
      changed[at] = kCharacters[next++ % std::size(kCharacters)];
      ExpectSame(changed);
      if (HasFailure()) return;
    }
  }
}

TEST(PlainFeed, LeavesWhatIsUnusualToTheOperations) {
  const std::string head =
      "<OFX><BANKMSGSRSV1><STMTTRNRS><TRNUID>1<STATUS><CODE>0<SEVERITY>INFO"
      "</STATUS><STMTRS><CURDEF>USD<BANKTRANLIST><DTSTART>20250101<DTEND>"
      "20251231<STMTTRN><TRNTYPE>DEBIT";
  const std::string tail = "</STMTTRN></BANKTRANLIST></STMTRS></STMTTRNRS></BANKMSGSRSV1></OFX>";
  for (const char* middle : {
           "<DTPOSTED>20250203",
           "<DTPOSTED>20250230",
           "<DTPOSTED>20250203120000[-5:XYZ]",
           "<DTPOSTED>2025020312",
           "<DTPOSTED>20250203120000.5[-5.5:EST]",
           "<TRNAMT>1,234.50",
           "<TRNAMT>+5",
           "<TRNAMT>-",
           "<TRNAMT>1.2.3",
           "<TRNAMT>12345678901234567890123456789",
           "<FITID>A&amp;B",
           "<FITID>A&B",
           "<CHECKNUM>1234567890123456",
           "<NAME>a</NAME></NAME>",
           "<NAME>a<NAME>b",
           "<NAME><MEMO>x",
           "<name>a",
           "<NAME >a",
           "<NAME>a<!-- c -->",
           "<MEMO><![CDATA[a<b]]>",
           "<MEMO2>v2 only",
           "<UNKNOWN>x",
           "<UNKNOWN><NAME>x</UNKNOWN>",
           "<STMTTRN>text",
           "<CURRENCY><CURRATE>1<CURSYM>USD</CURRENCY>",
           "<CURRENCY><CURRATE>1<CURSYM>USD</CURRENCY><CURRENCY><CURRATE>2<CURSYM>EUR</CURRENCY>",
           "<PAYEE><NAME>x",
           "</CURRENCY>",
           "<TRNTYPE>NONSENSE",
           "<TRNTYPE>debit",
       }) {
    SCOPED_TRACE(middle);
    ExpectSame(head + middle + tail);
  }
}

}  // namespace
