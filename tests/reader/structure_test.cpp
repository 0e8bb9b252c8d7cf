// Tags that are not where they belong: each kind of damage gives the tree of the whole text.

#include <gtest/gtest.h>

#include <algorithm>

#include <string>
#include <string_view>

#include "krofx/reader/reading.h"
#include "support/readings.h"

namespace krofx::testing {
namespace {

// A transaction, with its end tag.
std::string Transaction(const std::string& id) {
  return "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105<TRNAMT>-1.50<FITID>" + id + "<NAME>Grocer" +
         "</STMTTRN>";
}

const std::string kWhole = BankStatementFile(Transaction("a") + Transaction("b"));

// The whole text with one piece replaced, `skip` others before it left alone.
std::string With(std::string_view piece, std::string_view instead, int skip = 0) {
  std::string text = kWhole;
  std::size_t at = text.find(piece);
  for (; skip > 0 && at != std::string::npos; --skip) at = text.find(piece, at + 1);
  EXPECT_NE(at, std::string::npos) << piece;
  return text.replace(at, piece.size(), instead);
}

// Expects the tree of the whole text, and the kinds of mendings.
void ExpectWhole(const std::string& text, const Lines& kinds) {
  const Reading reading = Read(text);
  EXPECT_EQ(Written(reading.root), Written(Read(kWhole).root)) << text;
  EXPECT_EQ(MendingNames(reading), kinds) << text;
  EXPECT_EQ(reading.status, KRParseStatus_Warnings);
}

TEST(Structure, TakesAnEmptyElementAsAbsent) {
  ExpectWhole(With("<NAME>", "<CHECKNUM></CHECKNUM><NAME>"), {"empty-element"});
  ExpectWhole(With("<NAME>", "<CHECKNUM><NAME>"), {"empty-element"});
  ExpectWhole(With("<NAME>", "<CHECKNUM/><NAME>"), {"empty-element"});
}

TEST(Structure, SaysAnEmptyElementOnceForEachTag) {
  const Reading reading =
      Read(BankStatementFile("<STMTTRN><TRNTYPE>DEBIT<MEMO><CHECKNUM></STMTTRN>"
                             "<STMTTRN><TRNTYPE>DEBIT<MEMO><CHECKNUM></STMTTRN>"));
  EXPECT_EQ(MendingNames(reading), (Lines{"empty-element", "empty-element"}));
}

TEST(Structure, PassesOverEndTagsOfElements) {
  ExpectWhole(With("<NAME>Grocer", "<CHECKNUM></CHECKNUM><NAME>Grocer</NAME>"), {"empty-element"});
}

TEST(Structure, ClosesWhatBelongsToAnOpenAggregate) {
  ExpectWhole(With("</STMTTRN>", ""), {"missing-end"});
  ExpectWhole(With("</STMTTRN>", "", 1), {"missing-end"});
  ExpectWhole(With("</BANKACCTFROM>", ""), {"missing-end"});
  ExpectWhole(With("</BANKTRANLIST>", ""), {"missing-end"});
  ExpectWhole(With("</SONRS>", ""), {"missing-end"});
}

TEST(Structure, PassesOverAnEndTagThatClosesNothing) {
  ExpectWhole(With("<LEDGERBAL>", "</AVAILBAL><LEDGERBAL>"), {"stray-end"});
}

TEST(Structure, GoesBackIntoWhatAnEndTagClosedTooEarly) {
  ExpectWhole(With("</STMTTRN>", "</STMTRS>"),
              {"missing-end", "missing-end", "early-end", "early-end"});
  ExpectWhole(With("<NAME>", "</STMTTRN><NAME>"), {"early-end"});
}

TEST(Structure, JoinsAListThatComesTwice) {
  ExpectWhole(With("</STMTTRN>", "</STMTTRN></BANKTRANLIST><BANKTRANLIST>"), {"joined"});
}

TEST(Structure, KeepsTheWholeSpanOfListsThatWereJoined) {
  const Reading reading =
      Read(With("</BANKTRANLIST>",
                "</BANKTRANLIST><BANKTRANLIST><DTSTART>20260201<DTEND>20260228</BANKTRANLIST>"));
  const std::string body = WrittenBody(reading.root);
  EXPECT_NE(body.find("<DTSTART>20260101\n<DTEND>20260228\n"), std::string::npos) << body;
}

TEST(Structure, JoinsMessageSetsThatComeTwice) {
  const std::string set = kWhole.substr(kWhole.find("<BANKMSGSRSV1>"));
  const std::string one = set.substr(0, set.find("</OFX>"));
  const Reading reading = Read(With("</OFX>", one + "</OFX>"));
  EXPECT_EQ(MendingNames(reading), Lines{"joined"});
  auto* const response = dynamic_cast<KRFileRs*>(reading.root)->GetResponse(0);
  EXPECT_EQ(response->GetMessageSet(1)->GetNumTrans(), 2);
}

TEST(Structure, GivesASecondStatementAWrapperOfItsOwn) {
  const std::size_t at = kWhole.find("<STMTRS>");
  const std::string one = kWhole.substr(at, kWhole.find("</STMTTRNRS>") - at);
  // Without the private tag the parser reads this cleanly, and keeps the second statement alone.
  const Reading reading = Read(With("</STMTTRNRS>", one + "</STMTTRNRS><ACME.X>1"));
  EXPECT_EQ(MendingNames(reading), (Lines{"own-wrapper", "private-tag"}));
  auto* const set = dynamic_cast<KRFileRs*>(reading.root)->GetResponse(0)->GetMessageSet(1);
  ASSERT_EQ(set->GetNumTrans(), 2);
  EXPECT_EQ(TextOf(*set->GetTrans(0)), TextOf(*set->GetTrans(1)));
}

TEST(Structure, KeepsAStatementWhenWhatFollowsItHasLostItsStart) {
  // The transaction is of another statement, since the one before it has ended.
  const Reading reading = Read(With("</STMTTRNRS>",
                                    "<TRNTYPE>DEBIT<DTPOSTED>20260106<TRNAMT>-2.50<FITID>c"
                                    "</STMTTRN></BANKTRANLIST></STMTRS></STMTTRNRS>"));
  auto* const set = dynamic_cast<KRFileRs*>(reading.root)->GetResponse(0)->GetMessageSet(1);
  ASSERT_EQ(set->GetNumTrans(), 2);
  const Reading whole = Read(kWhole);
  auto* const before = dynamic_cast<KRFileRs*>(whole.root)->GetResponse(0)->GetMessageSet(1);
  EXPECT_EQ(TextOf(*set->GetTrans(0)), TextOf(*before->GetTrans(0)));
  const Lines names = MendingNames(reading);
  EXPECT_NE(std::find(names.begin(), names.end(), "own-wrapper"), names.end());
}

TEST(Structure, SaysThatASingleAggregateWasReplaced) {
  const Reading reading =
      Read(With("</LEDGERBAL>", "</LEDGERBAL><LEDGERBAL><BALAMT>7.00<DTASOF>20260131</LEDGERBAL>"));
  EXPECT_EQ(MendingNames(reading), Lines{"replaced"});
  EXPECT_NE(WrittenBody(reading.root).find("<BALAMT>7\n"), std::string::npos);
}

TEST(Structure, OpensWhatHasLostItsStart) {
  ExpectWhole(With("<BANKTRANLIST>", ""), {"missing-start"});
  ExpectWhole(With("<STMTTRN>", ""), {"missing-start"});
  ExpectWhole(With("<STMTTRN>", "", 1), {"missing-start"});
  ExpectWhole(With("<STMTTRNRS>", ""), {"missing-start"});
  ExpectWhole(With("<STMTRS>", ""), {"missing-start"});
  ExpectWhole(With("<BANKMSGSRSV1>", ""), {"missing-start"});
  ExpectWhole(With("<SONRS>", ""), {"missing-start"});
  ExpectWhole(With("<OFX>", ""), {"missing-start"});
  ExpectWhole(With("<LEDGERBAL>", ""), {"missing-start"});
}

TEST(Structure, OpensEachOfSeveralThatHaveLostTheirStarts) {
  std::string text = kWhole;
  for (std::size_t at; (at = text.find("<STMTTRN>")) != std::string::npos;) text.erase(at, 9);
  ExpectWhole(text, {"missing-start", "missing-start"});
  for (std::size_t at; (at = text.find("</STMTTRN>")) != std::string::npos;) text.erase(at, 10);
  const Reading reading = Read(text);
  EXPECT_EQ(WrittenBody(reading.root), WrittenBody(Read(kWhole).root));
  EXPECT_EQ(MendingNames(reading), Lines{"missing-start"});
}

TEST(Structure, LeavesOutATextThatNoStringHolds) {
  std::string text = With("<NAME>Grocer", "<NAME>Grocer<MEMO>" + Repeat("x", 70000));
  text.insert(text.find("<STMTTRN>"), "<ACME.X>1");
  const Reading reading = Read(text);
  EXPECT_EQ(WarningLines(reading), Lines{"TOOLONG <MEMO>"});
  EXPECT_EQ(WrittenBody(reading.root), WrittenBody(Read(kWhole).root));
}

TEST(Structure, GuessesNoAggregateAroundWhatSeveralCouldHold) {
  // A balance could be that of the ledger, or the one that is available.
  std::string text = With("<LEDGERBAL>", "");
  text.erase(text.find("</LEDGERBAL>"), 12);
  const Reading reading = Read(text);
  EXPECT_EQ(MendingNames(reading), (Lines{"misplaced", "misplaced"}));
}

TEST(Structure, SkipsPrivateTagsAndNamesEachOnce) {
  ExpectWhole(With("<NAME>", "<INTU.BID>3000<INTU.BID>3001</INTU.BID><NAME>"), {"private-tag"});
  ExpectWhole(With("<STMTTRN>", "<ACME.EXTRA><ACME.ONE>1<NAME>x</ACME.EXTRA><STMTTRN>"),
              {"private-tag"});
  ExpectWhole(With("<STMTTRN>", "<ACME.EMPTY><STMTTRN>"), {"private-tag"});
}

TEST(Structure, SkipsUnknownAggregatesWhole) {
  ExpectWhole(With("<STMTTRN>", "<IMAGEDATA><IMAGETYPE>X<NAME>y</IMAGEDATA><STMTTRN>"),
              {"unknown-tag"});
  // One that does not end where it is is dropped alone.
  ExpectWhole(With("<STMTTRN>", "<IMAGEDATA><STMTTRN>"), {"unknown-tag"});
}

TEST(Structure, SkipsWhatIsKnownAndStandsInTheWrongPlace) {
  ExpectWhole(With("<NAME>", "<CURDEF>EUR<NAME>"), {"misplaced"});
  ExpectWhole(With("<NAME>", "<BALLIST><BAL><NAME>x<DESC>y</BAL></BALLIST><NAME>"), {"misplaced"});
}

TEST(Structure, LeavesStrayTextOut) {
  ExpectWhole(With("<LEDGERBAL>", "some text<LEDGERBAL>"), {"stray-text"});
  ExpectWhole(With("<STMTTRN>", "<STMTTRN>some text"), {"stray-text"});
}

TEST(Structure, TakesTagsInSmallLettersAndWithBlanks) {
  ExpectWhole(With("<TRNAMT>", "<trnamt>"), {"letter-case"});
  ExpectWhole(With("<TRNAMT>", "< TRNAMT ><!-- > -->"), {"tag-form"});
  ExpectWhole(With("</STMTTRN>", "\n</STMTTRN\n"), {"tag-form"});
  ExpectWhole(With("<BANKTRANLIST>", "\n<BANKTRANLIST\n"), {"tag-form"});
  ExpectWhole(With("<TRNAMT>", "<ofx:TRNAMT id=\"1\">"), {"tag-form"});
}

TEST(Structure, KeepsWhatIsWholeWhenTheTextBreaksOff) {
  // After the first transaction.
  std::string text = kWhole.substr(0, kWhole.find("</STMTTRN>") + 10);
  Reading reading = Read(text);
  EXPECT_EQ(MendingNames(reading), Lines{"cut-off"});
  EXPECT_NE(WrittenBody(reading.root).find("<FITID>a\n"), std::string::npos);
  // In the amount of the second.
  text = kWhole.substr(0, kWhole.rfind("1.50") + 2);
  reading = Read(text);
  EXPECT_EQ(MendingNames(reading), (Lines{"cut-off", "incomplete", "cut-off"}));
  EXPECT_EQ(Str(reading.mendings[0].was), "-1.");
  EXPECT_EQ(WrittenBody(reading.root).find("<STMTTRN>"),
            WrittenBody(reading.root).rfind("<STMTTRN>"));
  // In the name of the second, which is complete without it.
  text = kWhole.substr(0, kWhole.rfind("Grocer") + 3);
  reading = Read(text);
  EXPECT_EQ(MendingNames(reading), (Lines{"cut-off", "cut-off"}));
  EXPECT_NE(WrittenBody(reading.root).find("<FITID>b\n</STMTTRN>"), std::string::npos);
  // In a tag: the text before it is whole.
  text = kWhole.substr(0, kWhole.rfind("<NAME>") + 3);
  reading = Read(text);
  EXPECT_NE(WrittenBody(reading.root).find("<FITID>b\n</STMTTRN>"), std::string::npos);
}

TEST(Structure, SaysWhereATextBreaksOff) {
  const std::string text = kWhole.substr(0, kWhole.find("</STMTTRN>") + 10);
  const Reading reading = Read(text);
  ASSERT_EQ(reading.mendings.size(), 1u);
  EXPECT_EQ(reading.mendings[0].place.offset, text.size());
  EXPECT_EQ(Str(reading.mendings[0].path), "OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/BANKTRANLIST");
}

TEST(Structure, ReadsTheSameUnderSeveralKindsOfDamageAtOnce) {
  std::string text = kWhole.substr(kWhole.find('<'));
  text.erase(text.find("</STMTTRN>"), 10);
  text.insert(text.find("<NAME>"), "<INTU.BID>3000");
  text.replace(text.find("<FITID>"), 7, "<fitid>");
  ExpectWhole(text, {"header-missing", "letter-case", "private-tag", "missing-end"});
}

TEST(Structure, StopsAtNoDepth) {
  std::string text = HeaderBlock() + "<OFX>";
  for (int depth = 0; depth < 20000; ++depth) text += "<BANKMSGSRSV1><STMTTRNRS>";
  EXPECT_EQ(Read(text).status, KRParseStatus_Warnings);
  text = HeaderBlock() + "<OFX>";
  for (int depth = 0; depth < 20000; ++depth) text += "<A" + std::to_string(depth) + ">";
  EXPECT_EQ(Read(text).status, KRParseStatus_Warnings);
}

}  // namespace
}  // namespace krofx::testing
