// A stream that mends gives the elements and the mendings of a reading of the whole text.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "krofx/messages/billpay/payments.h"
#include "krofx/messages/investment/securities.h"
#include "krofx/values/utility.h"
#include "reader/damaged_texts.h"
#include "stream/streamed.h"
#include "support/failing_allocation.h"
#include "support/temp_folder.h"

namespace krofx::testing {
namespace {

// How a text comes.
struct Way {
  std::size_t piece = 0;  // 0 for the whole text from memory.
  u32 window = 0;         // 0 for one that holds the whole text.
};

constexpr Way kWays[] = {{0, 0}, {0, 256}, {0, 1000}, {1, 0}, {777, 0}};

std::string Line(const ReadWarning& warning) {
  return std::to_string(warning.warning) + " " + AtPlace(warning.place) + " <" +
         Str(warning.tagText) + "> \"" + Str(warning.value) + "\" " + Str(warning.path);
}

std::string LineWithPath(const Mending& mending) {
  return testing::Line(mending) + " @" + std::to_string(mending.place.offset) + " " +
         Str(mending.path);
}

// What a reading of a text came to, its tree as its lines in any order: a stream takes elements out
// of it.
struct Outcome {
  KRParseStatus status = KRParseStatus_Accepted;
  Lines mendings;
  Lines warnings;  // But for those of missing tags: a stream looks in each element.
  Lines tree;
  std::string charset;
};

Lines LinesOf(const std::string& text) {
  Lines lines;
  std::size_t from = text.find("<OFX>");
  if (from == std::string::npos) from = 0;
  while (from < text.size()) {
    const std::size_t end = std::min(text.find('\n', from), text.size());
    lines.push_back(text.substr(from, end - from));
    from = end + 1;
  }
  return lines;
}

void AddWarnings(const List<ReadWarning>& warnings, Lines& lines) {
  for (const ReadWarning& warning : warnings) {
    if (warning.warning != KRPW_MISSINGTAG) lines.push_back(Line(warning));
  }
}

Outcome ReadWhole(const std::string& text) {
  const Reading reading = Read(text);
  Outcome out;
  out.status = reading.status;
  for (const Mending& mending : reading.mendings) out.mendings.push_back(LineWithPath(mending));
  AddWarnings(reading.warnings, out.warnings);
  out.tree = LinesOf(Written(reading.root));
  std::sort(out.tree.begin(), out.tree.end());
  if (!reading.texts.empty()) out.charset = Str(reading.texts[0].charset);
  return out;
}

Outcome StreamMending(const std::string& text, const Way& way) {
  StreamOptions options = MendingOptions();
  // The sanitizers make memory that is not used dear.
  options.window = way.window != 0 ? way.window : static_cast<u32>(text.size()) + 1000;
  options.maxRecords = 100000;
  Stream stream(options);
  WantMuch(stream);
  Outcome out;
  const auto take = [&] {
    while (const StreamElement* const element = stream.Next()) {
      for (const std::string& line : LinesOf(Written(&element->Object()))) {
        out.tree.push_back(line);
      }
      const std::string tag = Str(KRUtility::TagToString(element->Tag()));
      out.tree.push_back("<" + tag + ">");
      out.tree.push_back("</" + tag + ">");
      EXPECT_FALSE(Str(element->Path()).empty());
      EXPECT_GT(element->Where().line, 0u);
      EXPECT_NE(element->Around(1), nullptr);
      element->Account();
      if (out.charset.empty()) out.charset = Str(element->Text().charset);
    }
  };
  Pour(stream, text, way.piece, take);
  out.status = stream.Status();
  for (const Mending& mending : stream.Mendings()) out.mendings.push_back(LineWithPath(mending));
  AddWarnings(stream.Warnings(), out.warnings);
  for (const std::string& line : LinesOf(Written(stream.Root()))) out.tree.push_back(line);
  std::sort(out.tree.begin(), out.tree.end());
  return out;
}

// What makes a text one that a stream does not mend, or reads the first part of.
bool IsOther(const std::string& text) {
  const Reading reading = Read(text);
  const bool wide = std::any_of(
      reading.mendings.begin(), reading.mendings.end(),
      [](const Mending& mending) { return mending.kind == MendingKind::kWideCharacters; });
  return wide || reading.texts.size() != 1 || reading.texts[0].kind == TextKind::kMultipart;
}

// What is in one sorted list and not in another.
Lines OnlyIn(const Lines& one, const Lines& other) {
  Lines only;
  std::set_difference(one.begin(), one.end(), other.begin(), other.end(), std::back_inserter(only));
  return only;
}

void ExpectSame(const std::string& text, const std::string& what) {
  if (IsOther(text)) return;
  const Outcome whole = ReadWhole(text);
  for (const Way& way : kWays) {
    // A clean text is not mended at all, which nobody knows of pieces beforehand.
    if (way.piece != 0 && whole.mendings.empty()) continue;
    SCOPED_TRACE(what + ", pieces of " + std::to_string(way.piece) + ", window of " +
                 std::to_string(way.window));
    const Outcome streamed = StreamMending(text, way);
    EXPECT_EQ(streamed.status, whole.status);
    EXPECT_EQ(streamed.mendings, whole.mendings);
    EXPECT_EQ(streamed.warnings, whole.warnings);
    EXPECT_EQ(OnlyIn(whole.tree, streamed.tree), Lines());
    // What was handed out cannot be taken back.
    const bool isTakenBack =
        std::any_of(whole.mendings.begin(), whole.mendings.end(), [](const std::string& line) {
          return line.starts_with("replaced ") || line.starts_with("incomplete ");
        });
    EXPECT_TRUE(isTakenBack || OnlyIn(streamed.tree, whole.tree).empty()) << text;
  }
}

// To try other texts than the usual ones: see tests/reader/damage_test.cpp.
unsigned NumberFrom(const char* variable, unsigned usual) {
  const char* const value = std::getenv(variable);
  return value == nullptr ? usual : static_cast<unsigned>(std::strtoul(value, nullptr, 10));
}

TEST(MendedStream, GivesWhatAReadingGivesOfEachExample) {
  for (const auto& entry : std::filesystem::directory_iterator(KROFX_EXAMPLES)) {
    if (!entry.is_regular_file()) continue;
    const std::string extension = entry.path().extension();
    if (extension == ".cpp") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    ExpectSame(text, entry.path().filename());
  }
}

TEST(MendedStream, GivesWhatAReadingGivesOfDamagedTexts) {
  const std::vector<std::string> examples = WholeExamples();
  const std::vector<Damage> kinds = AllDamage();
  const unsigned first = NumberFrom("KROFX_DAMAGE_SEED", 1);
  const unsigned count = NumberFrom("KROFX_DAMAGED_TEXTS", 300);
  for (unsigned seed = first; seed < first + count; ++seed) {
    const DamageTrial attempt = MakeDamage(seed, examples, kinds);
    std::string names = "seed " + std::to_string(seed);
    for (const std::string& name : attempt.names) names += ", " + name;
    ExpectSame(attempt.text, names);
    if (HasFailure()) return;
  }
}

// The last element shows what it lacks by the one before it, which may be in another part of its
// list, and in front of something else.
TEST(MendedStream, GivesWhatAReadingGivesOfAJoinedListThatBreaksOff) {
  const std::string part = "</BANKTRANLIST><LEDGERBAL><BALAMT>1<DTASOF>20260131</LEDGERBAL>";
  const std::string last =
      "<BANKTRANLIST><STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260131<TRNAMT>-1<NAME>Gro";
  const std::string text =
      BankStatementFile(NumberedTransaction(1) + NumberedTransaction(2) + part + last);
  const std::string cut = text.substr(0, text.find(last) + last.size());
  const Outcome whole = ReadWhole(cut);
  for (const char* const kind : {"joined ", "incomplete "}) {
    EXPECT_TRUE(std::any_of(whole.mendings.begin(), whole.mendings.end(),
                            [kind](const std::string& line) { return line.starts_with(kind); }))
        << kind;
  }
  ExpectSame(cut, "a joined list");
}

TEST(MendedStream, GivesWhatAReadingGivesOfControlCharactersAroundAByteOrderMark) {
  const std::string mark = "\xEF\xBB\xBF";
  const std::string text = BankStatementFile(NumberedTransaction(1));
  ExpectSame("\x04" + mark + text, "a mark after a control character");
  ExpectSame(mark + "\x04" + text, "a mark in front of one");
  ExpectSame(mark + "\x04<?OFX OFXHEADER=\"200\"?>" + text, "a mark in front of one and of XML");
}

TEST(MendedStream, TakesAByteOrderMarkInFrontOfXmlForNoDamage) {
  const std::string statement = BankStatementFile("<INTU.X>1\n" + NumberedTransaction(1));
  const std::string text =
      "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<?OFX OFXHEADER=\"200\" "
      "VERSION=\"203\" SECURITY=\"NONE\" OLDFILEUID=\"NONE\" NEWFILEUID=\"NONE\"?>\n" +
      statement.substr(statement.find("<OFX>"));
  Stream stream(MendingOptions());
  WantMuch(stream);
  stream.Open(std::string_view(text));
  EXPECT_NE(stream.Next(), nullptr);
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_EQ(stream.Status(), KRParseStatus_Warnings);
  for (const Mending& mending : stream.Mendings()) {
    EXPECT_NE(mending.kind, MendingKind::kByteOrderMark);
  }
  ExpectSame(text, "a mark in front of XML");
}

// Bytes, lines and stretches of a text are changed, doubled and taken out.
std::string Mutated(Dice& dice, std::string text) {
  const std::string bytes = "<>/&;.,\n\t 0A-";
  for (std::size_t count = 1 + dice.Below(6); count > 0 && text.size() > 100; --count) {
    const std::size_t at = dice.Below(text.size());
    const std::size_t line = text.find('\n', at);
    const std::size_t end = line == std::string::npos ? text.size() : text.find('\n', line + 1);
    switch (dice.Below(7)) {
      case 0:
        text[at] = dice.OneOf(bytes);
        break;
      case 1:
        text.erase(at, 1 + dice.Below(3));
        break;
      case 2:
        text.insert(at, 1, dice.OneOf(bytes));
        break;
      case 3:
        if (line != std::string::npos && end != std::string::npos) text.erase(line, end - line);
        break;
      case 4:
        if (line != std::string::npos && end != std::string::npos) {
          text.insert(dice.Below(text.size()), text.substr(line, end - line));
        }
        break;
      case 5:
        text.insert(at, text.substr(dice.Below(text.size()), dice.Below(400)));
        break;
      default:
        if (dice.Below(4) == 0) text.erase(at);
        break;
    }
  }
  return text;
}

TEST(MendedStream, GivesWhatAReadingGivesOfMutatedTexts) {
  const std::vector<std::string> examples = WholeExamples();
  const unsigned first = NumberFrom("KROFX_DAMAGE_SEED", 1);
  const unsigned count = NumberFrom("KROFX_DAMAGED_TEXTS", 200);
  for (unsigned seed = first; seed < first + count; ++seed) {
    Dice dice(seed);
    const std::string text = Mutated(dice, examples[dice.Below(examples.size())]);
    ExpectSame(text, "seed " + std::to_string(seed));
    if (HasFailure()) return;
  }
}

// A statement of many transactions, with something done to each of them. A text whose first
// transaction has a private tag is not clean, whatever else is wrong.
std::string LargeStatement(std::size_t count, const std::function<void(std::string&)>& damage) {
  std::string transactions;
  for (std::size_t number = 1; number <= count; ++number) {
    std::string transaction = NumberedTransaction(number);
    if (number == 1) transaction.replace(transaction.find("<NAME>"), 0, "<INTU.FIRST>1\n");
    damage(transaction);
    transactions += transaction;
  }
  return BankStatementFile(transactions);
}

void Replace(std::string& text, const std::string& what, const std::string& by) {
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
}

// What may be wrong in each transaction of a text.
struct Wrong {
  const char* name;
  std::function<void(std::string&)> damage;
};

const Wrong kWrongs[] = {
    {"small letters",
     [](std::string& text) {
       std::transform(text.begin(), text.end(), text.begin(),
                      [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
     }},
    {"commas", [](std::string& text) { Replace(text, ".25", ",25"); }},
    {"thousands", [](std::string& text) { Replace(text, ".25", ".250,75"); }},
    {"no ends", [](std::string& text) { Replace(text, "</STMTTRN>\n", ""); }},
    {"early ends",
     [](std::string& text) {
       Replace(text, "<MEMO>card 1234\n</STMTTRN>", "</STMTTRN>\n<MEMO>card 1234");
     }},
    {"private tags", [](std::string& text) { Replace(text, "<NAME>", "<INTU.X>5\n<NAME>"); }},
    {"unknown tags with ends",
     [](std::string& text) { Replace(text, "<NAME>", "<OWN><THING>5</OWN><NAME>"); }},
    {"control characters", [](std::string& text) { Replace(text, "Grocer", "Gro\1cer"); }},
    {"references", [](std::string& text) { Replace(text, "Grocer", "Gr&uuml;n &euro; &#1078;"); }},
    {"another character set", [](std::string& text) { Replace(text, "Grocer", "Gr\xC3\xBCn"); }},
    {"characters and references",
     [](std::string& text) { Replace(text, "Grocer", "Gr\xFCn &#1078;"); }},
    {"stray texts", [](std::string& text) { Replace(text, "</STMTTRN>", "</STMTTRN>\nnext"); }},
    {"an extra end", [](std::string& text) { text += "</STMTTRN>\n"; }},
    {"misplaced", [](std::string& text) { Replace(text, "<NAME>", "<DTASOF>20260101\n<NAME>"); }},
    {"bare signs", [](std::string& text) { Replace(text, "Grocer", "Grocer < Sons"); }},
    {"dates", [](std::string& text) { Replace(text, "20250203120000", "03.02.2025"); }},
    {"attributes", [](std::string& text) { Replace(text, "<STMTTRN>", "<STMTTRN id=\"1\">"); }},
};

TEST(MendedStream, GivesWhatAReadingGivesOfManyDamagedTransactions) {
  const Way ways[] = {{0, 256 * 1024}, {0, 4096}, {4000, 16384}};
  for (const Wrong& wrong : kWrongs) {
    const std::string text = LargeStatement(1500, wrong.damage);
    const Outcome whole = ReadWhole(text);
    EXPECT_FALSE(whole.mendings.empty()) << wrong.name;
    for (const Way& way : ways) {
      const Outcome streamed = StreamMending(text, way);
      SCOPED_TRACE(std::string(wrong.name) + ", window of " + std::to_string(way.window));
      EXPECT_EQ(streamed.status, whole.status);
      EXPECT_EQ(OnlyIn(streamed.mendings, whole.mendings).size(), 0u);
      EXPECT_TRUE(streamed.mendings == whole.mendings);
      EXPECT_EQ(streamed.warnings, whole.warnings);
      EXPECT_TRUE(streamed.tree == whole.tree);
      EXPECT_EQ(streamed.charset, whole.charset);
    }
  }
}

Outcome StreamInPieces(const std::string& text) { return StreamMending(text, {4000, 16384}); }

std::string Many(const std::string& head, const std::string& tail, std::size_t count = 500) {
  std::string transactions = head;
  for (std::size_t number = 1; number <= count; ++number) {
    transactions += NumberedTransaction(number);
  }
  return BankStatementFile(transactions + tail);
}

std::string Amount(const std::string& amount, const std::string& name = "Shop") {
  return "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20250203<TRNAMT>" + amount + "<FITID>x<NAME>" + name +
         "</STMTTRN>\n";
}

TEST(MendedStream, RefusesPiecesWhoseNumbersTurnOutToBeWrittenInTwoWays) {
  // The first amount is judged by the points of those after it, which commas contradict later.
  const std::string text = Many(Amount("1,234"), Amount("7,5") + Amount("8,25"));
  const Outcome streamed = StreamInPieces(text);
  EXPECT_EQ(streamed.status, KRParseStatus_Invalid);
  const Outcome whole = ReadWhole(text);
  EXPECT_EQ(StreamMending(text, {0, 16384}).mendings, whole.mendings);
}

TEST(MendedStream, RefusesPiecesWhoseDatesTurnOutToBeWrittenInTwoWays) {
  const auto on = [](const std::string& date) {
    std::string transaction = Amount("-1.00");
    return transaction.replace(transaction.find("20250203"), 8, date);
  };
  // The day comes first in the beginning.
  const std::string head = on("13/02/2025") + on("03/02/2025");
  const std::string agreeing = Many(head, on("28/02/2025") + on("05/02/2025"));
  EXPECT_EQ(StreamInPieces(agreeing).tree, ReadWhole(agreeing).tree);
  const std::string silent = Many(head, on("05/02/2025"));
  EXPECT_EQ(StreamInPieces(silent).tree, ReadWhole(silent).tree);
  const std::string months = on("02/13/2025") + on("02/03/2025");
  const std::string monthsFirst = Many(months, on("02/28/2025") + on("02/05/2025"));
  EXPECT_EQ(StreamInPieces(monthsFirst).tree, ReadWhole(monthsFirst).tree);
  for (const std::string& text :
       {Many(head, on("02/28/2025")), Many(head, on("28/02/2025") + on("02/28/2025")),
        Many(months, on("28/02/2025"))}) {
    EXPECT_EQ(StreamInPieces(text).status, KRParseStatus_Invalid);
    EXPECT_EQ(StreamMending(text, {0, 16384}).mendings, ReadWhole(text).mendings);
  }
}

TEST(MendedStream, LeavesOutOfPiecesWhatTheirBeginningDoesNotExplain) {
  // What comes later would say what the first date is.
  const std::string date =
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20250203<DTUSER>03/02/2025<TRNAMT>-1"
      "<FITID>x</STMTTRN>\n";
  const std::string laterDate =
      "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20250203<DTUSER>28/02/2025"
      "<TRNAMT>-1<FITID>x</STMTTRN>\n";
  const std::string text = Many(date, laterDate);
  const auto said = [](const Outcome& outcome) {
    return outcome.mendings.empty() ? "nothing"
                                    : outcome.mendings[0].substr(0, outcome.mendings[0].find(' '));
  };
  EXPECT_EQ(said(ReadWhole(text)), "date-order");
  EXPECT_EQ(said(StreamMending(text, {0, 16384})), "date-order");
  const Outcome streamed = StreamInPieces(text);
  EXPECT_EQ(streamed.status, KRParseStatus_Warnings);
  EXPECT_EQ(said(streamed), "date-refused");
}

TEST(MendedStream, ReadsTextsWithMoreNamesInBracketsThanItLooksAtAtOnce) {
  for (const char* const end : {"\n<MEMO>m", " <SHOP>\n<MEMO>m", "</NAME><MEMO>m"}) {
    const std::string text = BankStatementFile(
        "<STMTTRN>\n<TRNTYPE>DEBIT\n<DTPOSTED>20250203\n<TRNAMT>-1\n<FITID>x\n"
        "<NAME>A " +
        Repeat("<B> ", 300) + end + "</STMTTRN>\n" + Amount("-2.00"));
    ExpectSame(text, "many names");
  }
}

TEST(MendedStream, FindsTheCharacterSetOfPiecesThatBeginInAscii) {
  const std::string own = "<INTU.X>1\n";
  const std::string usual = Many(own, Amount("-1.00", "Gr\xFCn"));
  EXPECT_EQ(StreamInPieces(usual).tree, ReadWhole(usual).tree);
  // Its beginning says another set.
  const std::string lying = Many(own, Amount("-1.00", "Gr\xC3\xBCn"));
  EXPECT_EQ(StreamInPieces(lying).status, KRParseStatus_Invalid);
  EXPECT_EQ(StreamMending(lying, {0, 16384}).mendings, ReadWhole(lying).mendings);
}

TEST(MendedStream, FindsTheCharacterSetOfPiecesWithForeignReferencesInFront) {
  // The reference makes the texts of the tree UTF-8, whatever the bytes are that come later.
  const std::string foreign = "<INTU.X>1\n" + Amount("-1.00", "Ko&#322;o");
  for (const char* const encoding : {"USASCII", "UNICODE", "UTF-8"}) {
    for (const char* const name : {"Plain", "Gr\xFCn", "Gr\xC3\xBCn"}) {
      std::string text = Many(foreign, Amount("-2.00", name));
      text.replace(text.find("USASCII"), 7, encoding);
      SCOPED_TRACE(std::string(encoding) + " " + name);
      const Outcome streamed = StreamInPieces(text);
      const bool isUtf8 = std::string_view(encoding) != "USASCII";
      if (name[2] != 'a' && isUtf8 != (name[2] == '\xC3')) {
        EXPECT_EQ(streamed.status, KRParseStatus_Invalid) << "its beginning says another set";
        continue;
      }
      const Outcome whole = ReadWhole(text);
      EXPECT_EQ(streamed.status, whole.status);
      EXPECT_EQ(streamed.tree, whole.tree);
    }
  }
}

// A stream that mends and sees little at a time.
StreamOptions NarrowMending() {
  StreamOptions options = MendingOptions();
  options.window = 4096;
  options.largestItem = 16384;
  return options;
}

TEST(MendedStream, SaysWhatItCannotMendWithoutTheWholeText) {
  // Whether the unknown aggregate ends is not known before the end of the list.
  const std::string text = Many("<STRANGE>\n", "");
  for (const std::size_t piece : {std::size_t{0}, std::size_t{1000}}) {
    Stream stream(NarrowMending());
    WantMuch(stream);
    Streamed out;
    Pour(stream, text, piece, out);
    EXPECT_EQ(stream.Status(), KRParseStatus_Fatal);
    EXPECT_NE(Str(stream.Problem()).find("krofx::Read"), std::string::npos);
  }
  EXPECT_EQ(StreamMending(text, {0, 4096}).mendings, ReadWhole(text).mendings);
}

TEST(MendedStream, RefusesWhatIsLongerThanItLooksAtAsAWhole) {
  const std::string longText = Amount("-1.00", Repeat("x", 20000));
  // The first amount is judged by all those after it.
  for (const std::string& front : {std::string("<INTU.X>1\n"), Amount("1,234")}) {
    const std::string text = Many(front, longText, 20);
    for (const std::size_t piece : {std::size_t{0}, std::size_t{1000}}) {
      Stream stream(NarrowMending());
      WantMuch(stream);
      Streamed out;
      Pour(stream, text, piece, out);
      EXPECT_EQ(out.elements.size(), front.find("STMTTRN") == std::string::npos ? 20u : 21u);
      EXPECT_EQ(stream.Status(), KRParseStatus_Fatal);
      EXPECT_EQ(Str(stream.Problem()),
                "something in it is longer than what is looked at as a whole");
    }
    StreamOptions options = NarrowMending();
    options.largestItem = 1 << 20;
    EXPECT_EQ(StreamText(text, 0, options).status, KRParseStatus_Warnings);
  }
}

TEST(MendedStream, LooksAtAsMuchAsItMayAndNoMore) {
  // The last step, in which the window grows, is smaller than the others.
  StreamOptions options = NarrowMending();
  options.largestItem = 10000;
  const auto withName = [](std::size_t length) {
    return Many("<INTU.X>1\n", Amount("-1.00", Repeat("x", length)), 20);
  };
  EXPECT_EQ(StreamText(withName(9900), 0, options).status, KRParseStatus_Warnings);
  EXPECT_EQ(StreamText(withName(10000), 0, options).status, KRParseStatus_Fatal);
}

// Nothing in the part that it may see as a whole says whether it asks or answers.
TEST(MendedStream, TakesATextThatDoesNotSayWhatItIsForAResponse) {
  std::string text = Many("", "", 5);
  text.insert(text.find("<OFX>") + 5, Repeat("<INTU.X>1\n", 2000));
  Stream stream(NarrowMending());
  WantMuch(stream);
  Streamed out;
  Pour(stream, text, 0, out);
  EXPECT_EQ(out.elements.size(), 5u);
  EXPECT_EQ(stream.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(stream.Mendings().size(), ReadWhole(text).mendings.size());
}

TEST(MendedStream, CannotReadAFolder) {
  const TempFolder folder;
  Stream stream(NarrowMending());
  stream.OpenFile(folder.Name("").c_str());
  EXPECT_EQ(stream.Next(), nullptr);
  EXPECT_EQ(stream.Status(), KRParseStatus_Invalid);
  EXPECT_NE(Str(stream.Problem()).find("cannot be read"), std::string::npos)
      << Str(stream.Problem());
}

TEST(MendedStream, JudgesAmountsOfATextThatBecomesUtf8) {
  const std::string front = "<INTU.X>1\n" + Amount("-1.00", "Ko&#322;o \xFC") + Amount("1,234");
  for (const std::string& tail : {Amount("2,345.50"), Amount("7,5") + Amount("8,25")}) {
    const std::string text = Many(front, tail, 50);
    const Outcome whole = ReadWhole(text);
    EXPECT_EQ(whole.charset, "UTF-8");
    for (const u32 window : {256u, 4096u}) {
      const Outcome streamed = StreamMending(text, {0, window});
      EXPECT_EQ(streamed.mendings, whole.mendings);
      EXPECT_EQ(streamed.tree, whole.tree);
    }
  }
}

TEST(MendedStream, FindsControlCharactersInEveryPiece) {
  // Several windows of text without a tag.
  const std::string stray = Repeat("x", 3000) + "\1" + Repeat("x", 3000);
  for (const std::string& tail : {"\n" + stray + Amount("-7.00"), Amount("-7.00", "Gro\1cer")}) {
    const std::string text = Many("<INTU.X>1\n", tail, 20);
    // It is said when it is seen.
    Outcome whole = ReadWhole(text);
    Outcome streamed = StreamMending(text, {100, 1000});
    std::sort(whole.mendings.begin(), whole.mendings.end());
    std::sort(streamed.mendings.begin(), streamed.mendings.end());
    EXPECT_EQ(streamed.mendings, whole.mendings);
    EXPECT_EQ(streamed.tree, whole.tree);
    StreamOptions options = NarrowMending();
    options.window = 1000;
    options.mend.Remove(MendingKind::kControlCharacter);
    Stream stream(options);
    WantMuch(stream);
    Streamed out;
    Pour(stream, text, 100, out);
    EXPECT_EQ(stream.Status(), KRParseStatus_Invalid);
    EXPECT_EQ(Str(stream.Problem()), ProblemWithout(MendingKind::kControlCharacter));
    EXPECT_GT(out.elements.size(), 10u);
  }
}

TEST(MendedStream, GivesTheSecuritiesOfAListThatIsInNoOther) {
  const auto security = [](const std::string& number) {
    return Aggregate(
        "STOCKINFO",
        Aggregate("SECINFO", Aggregate("SECID", "<UNIQUEID>" + number + "<UNIQUEIDTYPE>CUSIP") +
                                 "<SECNAME>Mills"));
  };
  const std::string text = ResponseFile(
      "SECLISTMSGSRS", Aggregate("SECLIST", "<ACME.X>1" + security("1") + security("2") +
                                                "</SECLIST><SECLIST>" + security("3")));
  for (const std::size_t piece : {std::size_t{0}, std::size_t{50}}) {
    Stream stream(MendingOptions());
    stream.WantAllOf<KRSecList>();
    Streamed out;
    Pour(stream, text, piece, out);
    ASSERT_EQ(out.texts.size(), 3u);
    EXPECT_NE(out.texts[2].find("<UNIQUEID>3"), std::string::npos);
    EXPECT_EQ(stream.Status(), KRParseStatus_Warnings);
    EXPECT_EQ(stream.Mendings().size(), 2u);
    EXPECT_EQ(Written(stream.Root()).find("<STOCKINFO>"), std::string::npos);
  }
}

// A payment with two sets of details, of which the second replaces the first. Three invoices.
std::string PaymentWithReplacedDetails() {
  const auto invoice = [](const std::string& number) {
    return Aggregate("INVOICE",
                     "<INVNO>" + number +
                         "<INVTOTALAMT>10<INVPAIDAMT>10<INVDATE>20260105<INVDESC>Oil" +
                         Repeat(Aggregate("LINEITEM", "<LITMAMT>5<LITMDESC>" + number), 2));
  };
  const auto details = [](const std::string& invoices) {
    return Aggregate("EXTDPMT", "<EXTDPMTDSC>oil" + Aggregate("EXTDPMTINV", invoices));
  };
  return RequestFile(
      "BILLPAYMSGSRQ",
      RequestWrapper(
          "PMTTRNRQ",
          Aggregate(
              "PMTRQ",
              Aggregate(
                  "PMTINFO",
                  "<BANKACCTFROM><BANKID>1<ACCTID>4711<ACCTTYPE>CHECKING</BANKACCTFROM><TRNAMT>30" +
                      details(invoice("1") + invoice("2")) + details(invoice("3"))))));
}

// The first details are deleted while their invoices wait, or were just handed out.
TEST(MendedStream, GivesTheElementsOfAnAggregateThatIsReplaced) {
  const std::string text = PaymentWithReplacedDetails();
  ASSERT_EQ(MendingNames(Read(text)), Lines{"replaced"});
  for (const KRTagID tag : {KRTag_INVOICE, KRTag_LINEITEM}) {
    for (const std::size_t piece : {std::size_t{0}, std::size_t{20}}) {
      Stream stream(MendingOptions());
      stream.WantTag(tag);
      Streamed out;
      Pour(stream, text, piece, out);
      ASSERT_EQ(out.elements.size(), tag == KRTag_INVOICE ? 3u : 6u);
      for (const std::string& element : out.elements) {
        EXPECT_NE(element.find("PMTINFO/EXTDPMT/EXTDPMTINV/INVOICE["), std::string::npos);
        EXPECT_NE(element.find(" 4711 "), std::string::npos) << "its account: " << element;
      }
      EXPECT_EQ(stream.Status(), KRParseStatus_Warnings);
      EXPECT_EQ(Written(stream.Root()).find("<LITMAMT>"), std::string::npos);
    }
  }
}

// A copy of a list has its elements too, and they go with the last of both.
TEST(MendedStream, LetsAnAggregateBeCopiedThatIsReplacedLater) {
  const std::string text = PaymentWithReplacedDetails();
  for (const KRTagID tag : {KRTag_INVOICE, KRTag_LINEITEM}) {
    for (const bool keepsCopies : {true, false}) {
      for (const std::size_t piece : {std::size_t{0}, std::size_t{1}, std::size_t{20}}) {
        Stream stream(MendingOptions());
        stream.WantTag(tag);
        std::vector<KRExtendedPaymentInvoice> lists;
        std::vector<KRInvoice> invoices;
        std::vector<std::unique_ptr<KRExtendedPayment>> own;
        std::string numbers;
        const auto take = [&] {
          while (const StreamElement* const element = stream.Next()) {
            if (!keepsCopies) {
              lists.clear();
              invoices.clear();
            }
            EXPECT_EQ(element->Around(0), &element->Object());
            const std::string content = Written(&element->Object());
            const std::size_t at = content.find(tag == KRTag_INVOICE ? "<INVNO>" : "<LITMDESC>");
            numbers += content.substr(content.find('>', at) + 1, 1);
            if (auto* const list = element->Within<KRExtendedPaymentInvoice>()) {
              lists.push_back(*list);
            }
            if (auto* const invoice = element->Within<KRInvoice>()) invoices.push_back(*invoice);
            if (auto* const details = element->Within<KRExtendedPayment>()) {
              own.push_back(std::make_unique<KRExtendedPayment>());
              EXPECT_EQ(own.back()->DeepCopyFrom(details), 1);
            }
          }
        };
        Pour(stream, text, piece, take);
        EXPECT_EQ(numbers, tag == KRTag_INVOICE ? "123" : "112233");
        EXPECT_EQ(stream.Status(), KRParseStatus_Warnings);
        ASSERT_FALSE(own.empty());
        for (const auto& each : own) EXPECT_EQ(Str(each->GetExtendedPaymentDesc()), "oil");
      }
    }
  }
}

TEST(MendedStream, EndsWithoutMemoryForAnElementOfACopiedList) {
  const std::string text = PaymentWithReplacedDetails();
  bool hasFailed = true;
  for (std::size_t nth = 1; hasFailed; ++nth) {
    const FailingAllocation failing(nth);
    Stream stream(NarrowMending());
    stream.WantTag(KRTag_INVOICE);
    stream.Open(std::string_view(text));
    std::vector<KRExtendedPaymentInvoice> lists;
    std::size_t count = 0;
    while (const StreamElement* const element = stream.Next()) {
      ++count;
      lists.clear();
      EXPECT_EQ(element->As<KRInvoice>()->ValidateTag(KRTag_INVNO), 1);
      if (auto* const list = element->Within<KRExtendedPaymentInvoice>()) lists.push_back(*list);
    }
    hasFailed = internal::AllocationFailure::Count() >= nth;
    if (stream.Status() != KRParseStatus_Fatal) {
      EXPECT_EQ(count, 3u) << nth;
      EXPECT_EQ(stream.Status(), KRParseStatus_Warnings) << nth;
    }
  }
}

TEST(MendedStream, LetsAListBeCopiedWhileItsElementsCome) {
  const std::string text = Many("<INTU.X>1\n", "", 8);
  for (const std::size_t piece : {std::size_t{0}, std::size_t{1}, std::size_t{100}}) {
    Stream stream(MendingOptions());
    stream.Want<KRBankStatementTx>();
    std::vector<KRBankTransactionList> copies;
    KRBankTransactionList own;
    Lines ids;
    const auto take = [&] {
      while (const StreamElement* const element = stream.Next()) {
        ids.push_back(Str(element->As<KRBankStatementTx>()->GetFITId()));
        auto* const list = element->Within<KRBankTransactionList>();
        ASSERT_NE(list, nullptr);
        copies.push_back(*list);
        EXPECT_EQ(own.DeepCopyFrom(list), 1);
      }
    };
    Pour(stream, text, piece, take);
    EXPECT_EQ(stream.Status(), KRParseStatus_Warnings);
    EXPECT_EQ(ids, (Lines{"1", "2", "3", "4", "5", "6", "7", "8"})) << piece;
  }
}

TEST(MendedStream, TellsWhatIsAroundAnElement) {
  const std::string text = Many("<INTU.X>1\n", "", 1);
  Stream stream(MendingOptions());
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  const StreamElement* const element = stream.Next();
  ASSERT_NE(element, nullptr);
  EXPECT_EQ(element->Around(0), &element->Object());
  EXPECT_NE(dynamic_cast<KRBankTransactionList*>(element->Around(1)), nullptr);
  EXPECT_EQ(element->Around(6), stream.Root());
  EXPECT_EQ(element->Around(7), nullptr);
}

TEST(MendedStream, EndsAtDamageThatMustNotBeMended) {
  const std::string text = Many("", Amount("-1,5") + Amount("-2.00"), 100);
  StreamOptions options = MendingOptions();
  options.mend.Remove(MendingKind::kDecimalComma);
  Stream stream(options);
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  std::size_t count = 0;
  while (stream.Next() != nullptr) ++count;
  EXPECT_EQ(stream.Status(), KRParseStatus_Invalid);
  EXPECT_EQ(count, 100u);
  EXPECT_NE(Str(stream.Problem()).find("must not be mended"), std::string::npos);
}

TEST(MendedStream, TakesACleanTextAsItIs) {
  const std::string text = Many("", "", 10);
  for (const std::size_t piece : {0u, 7u}) {
    const Outcome streamed = StreamMending(text, {piece, 4096});
    EXPECT_EQ(streamed.status, KRParseStatus_Accepted);
    EXPECT_EQ(streamed.tree, ReadWhole(text).tree);
  }
}

// Counts what it hears.
class Counter : public StreamListener {
 public:
  void OnWarning(const ReadWarning& /*warning*/) override { ++warnings; }
  void OnMending(const Mending& mending) override {
    ++mendings;
    path = Str(mending.path);
  }

  std::size_t warnings = 0;
  std::size_t mendings = 0;
  std::string path;
};

TEST(MendedStream, KeepsTheFirstMendingsAndSaysAll) {
  const std::string text = LargeStatement(300, [](std::string& t) { Replace(t, ".25", ",25"); });
  StreamOptions options = MendingOptions();
  options.maxRecords = 10;
  Stream stream(options);
  Counter counter;
  stream.SetListener(&counter);
  stream.Want<KRBankStatementTx>();
  stream.Open(std::string_view(text));
  while (const StreamElement* const element = stream.Next()) {
    EXPECT_NE(element->As<KRBankStatementTx>(), nullptr);
  }
  EXPECT_EQ(stream.Status(), KRParseStatus_Warnings);
  EXPECT_EQ(stream.Mendings().size(), 10u);
  EXPECT_EQ(counter.mendings, stream.Mendings().size() + stream.Unrecorded());
  EXPECT_EQ(counter.path, "OFX/BANKMSGSRSV1/STMTTRNRS[1]/STMTRS/BANKTRANLIST/STMTTRN[300]");
}

TEST(MendedStream, SaysItsWarningsToTheHost) {
  // What an element lacks, and what is too long for a string.
  const std::string text = Many("<INTU.X>1\n<STMTTRN><TRNTYPE>DEBIT<TRNAMT>-1</STMTTRN>\n",
                                Amount("-2.00", "Shop<MEMO>" + Repeat("x", 70000)), 3);
  for (const std::size_t piece : {std::size_t{0}, std::size_t{1000}}) {
    StreamOptions options = MendingOptions();
    options.maxRecords = 1;
    Stream stream(options);
    Counter counter;
    stream.SetListener(&counter);
    stream.Want<KRBankStatementTx>();
    Streamed out;
    Pour(stream, text, piece, out);
    EXPECT_EQ(out.texts.size(), 5u);
    EXPECT_EQ(counter.warnings, 2u);
    EXPECT_EQ(counter.mendings, 1u);
    ASSERT_EQ(stream.Warnings().size(), 1u);
    EXPECT_EQ(stream.Warnings()[0].warning, KRPW_MISSINGTAG);
    EXPECT_EQ(stream.Warnings()[0].place.offset, text.find("<STMTTRN>"));
    EXPECT_EQ(stream.Unrecorded(), 1u);
  }
}

// Streams a text with each of its allocations failing in turn: it ends as usual, or without memory.
void ExpectAnEndWithoutMemory(const std::string& text, std::size_t piece, u32 window) {
  const auto readAll = [&] {
    StreamOptions options = MendingOptions();
    options.window = window;
    Stream stream(options);
    Counter counter;
    stream.SetListener(&counter);
    stream.Want<KRBankStatementTx>();
    std::size_t count = 0;
    Pour(stream, text, piece, [&] {
      while (stream.Next() != nullptr) ++count;
    });
    const bool hasMore = stream.HasMoreTags();
    Lines shown = {std::to_string(stream.Status()), std::to_string(count),
                   std::to_string(counter.mendings), std::to_string(counter.warnings),
                   std::to_string(hasMore)};
    return std::make_pair(stream.Status(), shown);
  };
  const auto whole = readAll();
  EXPECT_EQ(whole.first, KRParseStatus_Warnings);
  for (const bool andAllLater : {false, true}) {
    bool hasFailed = true;
    for (std::size_t nth = 1; hasFailed; ++nth) {
      const FailingAllocation failing(nth, andAllLater);
      const auto streamed = readAll();
      hasFailed = internal::AllocationFailure::Count() >= nth;
      if (streamed.first != KRParseStatus_Fatal) {
        EXPECT_EQ(streamed.second, whole.second) << nth;
      }
    }
  }
}

// A text with much that needs memory: bytes and references that become UTF-8, control characters,
// an amount that is judged by others, a list that goes on.
TEST(MendedStream, EndsWithoutMemory) {
  const std::string text =
      "\xEF\xBB\xBF" + Many("<INTU.X>1\n" + Amount("-1,234", "Ko&#322;o \xFC") + "<FOO>2\n",
                            Amount("-7.5", "Gro\1cer") +
                                "</BANKTRANLIST><BANKTRANLIST><STMTTRN><TRNTYPE>DEBIT</STMTTRN>",
                            3);
  ExpectAnEndWithoutMemory(text, 0, 512);
  ExpectAnEndWithoutMemory(text, 200, 512);
  // All of it in the first window, and the beginning of another text.
  ExpectAnEndWithoutMemory(text + "\n" + text.substr(3, 500), text.size() + 501, 4096);
}

// Whether the unknown aggregate ends is beyond the window.
TEST(MendedStream, EndsWithoutMemoryWhereItLooksFurther) {
  const std::string unknown = "<OWN><THING>1\n" + Repeat("<OTHER>2\n", 60) + "</OWN>\n";
  ExpectAnEndWithoutMemory(Many(unknown, "", 2), 0, 512);
}

TEST(MendedStream, SaysAnAmountThatComesTwiceAndAStrictStreamAsksForIt) {
  const std::string text = Many("", Amount("-1.00<TRNAMT>-2.00"), 10);
  const Outcome streamed = StreamMending(text, {0, 4096});
  EXPECT_EQ(streamed.mendings, ReadWhole(text).mendings);
  EXPECT_EQ(streamed.mendings.size(), 1u);
  for (const std::string& each : {text, Many("", "", 10)}) {
    Stream stream;
    stream.Want<KRBankStatementTx>();
    stream.Open(std::string_view(each));
    while (stream.Next() != nullptr) {
    }
    EXPECT_EQ(stream.Status(), KRParseStatus_Accepted);
    EXPECT_EQ(stream.HasRepeatedFigure(), each == text);
  }
}

TEST(MendedStream, StopsAndIsDestroyedAnywhere) {
  const std::string text = LargeStatement(100, [](std::string& t) { Replace(t, ".25", ",25"); });
  for (std::size_t count = 0; count < 5; ++count) {
    Stream stream(MendingOptions());
    WantMuch(stream);
    stream.Open(std::string_view(text));
    for (std::size_t element = 0; element < count; ++element) stream.Next();
    if (count % 2 == 0) stream.Stop();
    if (count == 4) {
      EXPECT_NE(stream.TakeRoot(), nullptr);
    }
  }
}

TEST(MendedStream, SaysWhatIsNoOfx) {
  // The last one is longer than what is looked at as a whole.
  for (const std::string& text : {std::string(), std::string("no OFX at all"),
                                  std::string("<html><body>Log in</body></html>"),
                                  "<html><body>" + Repeat("Log in<br>\n", 2000)}) {
    const Reading whole = Read(text);
    Stream stream(NarrowMending());
    WantMuch(stream);
    stream.Open(std::string_view(text));
    EXPECT_EQ(stream.Next(), nullptr);
    EXPECT_EQ(stream.Status(), whole.status) << text;
    EXPECT_EQ(Str(stream.Problem()), Str(whole.problem));
  }
}

}  // namespace
}  // namespace krofx::testing
