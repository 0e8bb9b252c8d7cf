// Any bytes as a text that is streamed: the first five choose how, the rest is the text. Whichever
// way the bytes come, the elements with their places and paths, the warnings, the mendings and the
// rest of the tree are the same. A strict stream gives what the parser gives, one that mends what a
// reading gives, and of a clean text neither says anything.

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "krofx/envelope/file_rq_rs.h"
#include "krofx/parse/simple_parser.h"
#include "krofx/reader/reading.h"
#include "krofx/stream/stream.h"
#include "stream/streamed.h"
#include "trees.h"

namespace {

using namespace krofx::fuzz;
using krofx::Mending;
using krofx::MendingKind;
using krofx::Reading;
using krofx::ReadWarning;
using krofx::Stream;
using krofx::StreamElement;
using krofx::StreamOptions;
using krofx::testing::AtPlace;
using krofx::testing::Str;

// More than any text here has, so that all are kept.
constexpr std::size_t kMostRecords = 100000;
// The least that there is: a text that is longer slides through it.
constexpr u32 kSmallWindow = 4096;

using Lines = std::vector<std::string>;

struct Choice {
  bool mends;
  bool checksRequired;
  bool stops;
  u32 window;          // For the bytes in memory.
  std::size_t wanted;  // See Want.
  std::size_t way;     // Which other way the bytes come: see Pour.
  std::size_t place;   // Where small pieces begin.
};

// A message set keeps the last of its wrappers, which are handed out too.
constexpr std::size_t kWrappers = 2;

void Want(Stream& stream, std::size_t wanted) {
  switch (wanted) {
    case 0:
      return;
    case 1:
      stream.Want<KRBankStatementTx>();
      return;
    case kWrappers:
      stream.Want<KRTransRs>().Want<KRTransRq>();
      return;
    case 3:
      stream.WantTag(KRTag_STMTTRN).WantAllOf<KRInvPosList>();
      return;
    default:
      krofx::testing::WantMuch(stream);
  }
}

// The lines of what is written, of a file from the start of its body.
void AddLines(Bytes text, Lines& lines) {
  const std::size_t body = text.find("<OFX>");
  if (body != Bytes::npos) text.remove_prefix(body);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

std::string LineOf(const Mending& mending) {
  return krofx::testing::Line(mending) + " " + AtPlace(mending.place) + " " + Str(mending.path);
}

// How many stars stand for a password depends on the memory that its text had: see WarningLines.
std::string LineOf(const ReadWarning& warning) {
  return std::to_string(warning.warning) + " " + AtPlace(warning.place) + " <" +
         Str(warning.tagText) + "> " + Str(warning.path);
}

template <class Records>
Lines LinesOf(const Records& records) {
  Lines lines;
  for (const auto& record : records) lines.push_back(LineOf(record));
  return lines;
}

std::string Joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

// What a host sees of a stream.
struct Seen {
  std::string elements;  // With their places, paths and accounts.
  std::string facts;     // Status, problem, and what may be asked for.
  bool hasMoreTags = false;
  Lines mendings;
  Lines warnings;
  std::string rest;  // The tree at the end.
  // The lines of the elements and of the tree, sorted: a stream takes elements out of the tree.
  Lines tree;
  bool isWhole = true;  // All of it can be written.
};

void TakeAll(Stream& stream, Seen& seen) {
  while (const StreamElement* const element = stream.Next()) {
    const std::string text = Written(element->Object());
    seen.isWhole = seen.isWhole && IsText(text);
    const std::string tag = Str(KRUtility::TagToString(element->Tag()));
    seen.tree.push_back("<" + tag + ">");
    AddLines(text, seen.tree);
    seen.tree.push_back("</" + tag + ">");
    const KRAccount* const account = element->Account();
    seen.elements += AtPlace(element->Where()) + " " + Str(element->Path()) + " " +
                     std::to_string(element->Number()) + " " +
                     (account == nullptr ? "-" : Str(account->GetAccountID())) + "\n" + text;
    Expect(element->Around(1) != nullptr, "an element is in something");
    Expect(element->Within<KRFile>() == stream.Root(), "an element is in the tree");
    element->ToUtf8(KRString(tag.c_str()));
  }
}

void TakeEnd(Stream& stream, Seen& seen) {
  Expect(stream.State() == krofx::StreamState::kEnded, "a stream of a whole text ends");
  seen.facts = std::to_string(stream.Status()) + " " + Str(stream.Problem()) + " " +
               std::to_string(stream.MayHaveCommaAmount()) +
               std::to_string(stream.HasRepeatedFigure());
  seen.hasMoreTags = stream.HasMoreTags();
  seen.mendings = LinesOf(stream.Mendings());
  seen.warnings = LinesOf(stream.Warnings());
  Expect(stream.Unrecorded() == 0, "all records are kept");
  if (stream.Root() != nullptr) seen.rest = Written(*stream.Root());
  seen.isWhole = seen.isWhole && IsText(seen.rest);
  AddLines(seen.rest, seen.tree);
  std::sort(seen.tree.begin(), seen.tree.end());
}

// Pours a text into a stream: way 0 is a buffer, 1 a buffer of a derived class, and every other one
// pieces, some of which have so many bytes less one.
void Pour(Stream& stream, Bytes text, std::size_t way, std::size_t place, Seen& seen) {
  if (way <= 1) {
    krofx::testing::TextBuffer buffer(text, way == 0);
    stream.Open(*buffer);
    TakeAll(stream, seen);
    return TakeEnd(stream, seen);
  }
  // Small pieces around a place, since each of them takes time.
  constexpr std::size_t kMostPieces = 50;
  for (std::size_t count = 0; !text.empty(); ++count) {
    // Memory of its own, so that what is read beyond it is found.
    const std::size_t size = count == 0 ? place : count < kMostPieces ? way - 1 : text.size();
    const std::string piece(text.substr(0, size));
    text.remove_prefix(piece.size());
    if (!stream.Feed(piece)) break;
    TakeAll(stream, seen);
  }
  stream.Finish();
  TakeAll(stream, seen);
  TakeEnd(stream, seen);
}

StreamOptions OptionsOf(const Choice& choice) {
  StreamOptions options;
  options.mends = choice.mends;
  options.checkRequired = choice.checksRequired;
  options.window = choice.window;
  options.maxRecords = kMostRecords;
  return options;
}

void ExpectSameLines(const Lines& first, const Lines& second, const char* property) {
  if (first != second) ExpectSame(Joined(first), Joined(second), property);
}

void ExpectSameSeen(const Seen& first, const Seen& second) {
  ExpectSame(first.elements, second.elements, "elements are the same, whichever way bytes come");
  ExpectSame(first.facts, second.facts, "so is how it ends");
  ExpectSameLines(first.mendings, second.mendings, "so are mendings");
  ExpectSameLines(first.warnings, second.warnings, "so are warnings");
  ExpectSame(first.rest, second.rest, "so is the rest of the tree");
}

// A reading or parse of the whole text has the same tree.
// hasMore: the stream has handed out what is not, or is also, in the tree.
void ExpectSameTree(const Seen& seen, const std::string& whole, bool hasMore) {
  if (!seen.isWhole || !IsText(whole)) return;
  Lines lines;
  AddLines(whole, lines);
  std::sort(lines.begin(), lines.end());
  if (hasMore && std::includes(seen.tree.begin(), seen.tree.end(), lines.begin(), lines.end())) {
    return;
  }
  ExpectSameLines(seen.tree, lines, "a stream has the tree of the whole text");
}

void CheckStrict(const Seen& seen, const Stream& stream, Bytes text, const Choice& choice) {
  Expect(seen.mendings.empty(), "a strict stream mends nothing");
  if (stream.Root() == nullptr) return;
  std::unique_ptr<KRFile> file = std::make_unique<KRFileRs>();
  if (dynamic_cast<KRFileRq*>(stream.Root()) != nullptr) file = std::make_unique<KRFileRq>();
  krofx::testing::TextBuffer buffer(text);
  KRSimpleParser parser;
  Lines warnings;
  class : public KRWarningObserver {
   public:
    void OnWarning(const KRParseException& warning, s32) override {
      isReplaced = isReplaced || warning.m_warning == KRPW_EXTRAAGG;
      ++count;
    }
    bool isReplaced = false;
    std::size_t count = 0;
  } observer;
  parser.SetWarningObserver(&observer);
  const KRParseStatus status = parser.Parse(buffer.Get(), file.get(), 0);
  ExpectSameTree(seen, Written(*file), observer.isReplaced || choice.wanted == kWrappers);
  // The tags that are missing are looked for in each element.
  if (choice.checksRequired) return;
  Expect(status == stream.Status(), "a stream ends as a parse does");
  Expect(observer.count == seen.warnings.size(), "a stream warns as a parse does");
}

// But for the warnings of missing tags, which a stream looks for in each element.
Lines WarningsOf(const krofx::List<ReadWarning>& warnings) {
  Lines lines;
  for (const ReadWarning& warning : warnings) {
    if (warning.warning != KRPW_MISSINGTAG) lines.push_back(LineOf(warning));
  }
  return lines;
}

// What a stream leaves to a reading.
bool IsOther(const Reading& reading) {
  return reading.texts.size() != 1 || reading.texts[0].kind == krofx::TextKind::kMultipart ||
         std::any_of(reading.mendings.begin(), reading.mendings.end(),
                     [](const Mending& each) { return each.kind == MendingKind::kWideCharacters; });
}

void CheckMended(const Seen& seen, const Stream& stream, const Reading& reading,
                 const Choice& choice) {
  if (IsOther(reading)) return;
  ExpectSameLines(seen.mendings, LinesOf(reading.mendings), "a stream mends as a reading does");
  ExpectSameLines(WarningsOf(stream.Warnings()), WarningsOf(reading.warnings),
                  "a stream warns as a reading does");
  // What was handed out is not taken back by what comes later.
  const bool isTakenBack =
      std::any_of(reading.mendings.begin(), reading.mendings.end(), [](const Mending& each) {
        return each.kind == MendingKind::kReplaced || each.kind == MendingKind::kIncomplete;
      });
  ExpectSameTree(seen, Written(*reading.root), isTakenBack || choice.wanted == kWrappers);
}

// Stops after some elements, or with the stream moved elsewhere.
void CheckStop(Bytes text, const Choice& choice) {
  Stream first(OptionsOf(choice));
  Want(first, choice.wanted);
  first.Open(text);
  std::size_t left = choice.way / 4;
  while (left > 0 && first.Next() != nullptr) --left;
  Stream stream(std::move(first));
  if (choice.way % 4 == 1) stream.Next();
  if (choice.way % 4 == 2) return;
  stream.Stop();
  Expect(stream.Next() == nullptr && !stream.Feed(text), "a stream that was stopped has ended");
  const std::unique_ptr<KRFile> root = stream.TakeRoot();
  if (root != nullptr) Written(*root);
}

void CheckWays(Bytes text, Choice choice) {
  Stream stream(OptionsOf(choice));
  Want(stream, choice.wanted);
  stream.Open(text);
  Seen seen;
  TakeAll(stream, seen);
  TakeEnd(stream, seen);
  if (stream.Status() == KRParseStatus_Accepted) {
    Expect(seen.mendings.empty() && seen.warnings.empty() && stream.Problem().IsEmpty() != 0,
           "clean streams say nothing");
  }
  if (choice.mends) {
    const Reading reading = krofx::Read(text);
    CheckMended(seen, stream, reading, choice);
    // Nobody knows of pieces that they are clean.
    if (choice.way > 1 && reading.mendings.empty()) return;
  } else {
    CheckStrict(seen, stream, text, choice);
  }
  // A buffer of a derived class ends at its first NUL, which a stream that mends passes over.
  if (choice.mends && choice.way == 1 && text.find('\0') != Bytes::npos) return;
  // Damage in pieces is judged by the first window, so all of them must fit into it.
  choice.window = static_cast<u32>(text.size() + kSmallWindow);
  Stream other(OptionsOf(choice));
  Want(other, choice.wanted);
  Seen seenOtherwise;
  Pour(other, text, choice.way, choice.place, seenOtherwise);
  ExpectSameSeen(seen, seenOtherwise);
  // Pieces beyond the end are not taken.
  Expect(choice.way > 1 || seen.hasMoreTags == seenOtherwise.hasMoreTags, "so is what comes after");
}

void Run(Bytes bytes) {
  Choices choices(bytes);
  const std::size_t flags = choices.Below(256);
  Choice choice;
  choice.mends = (flags & 1) != 0;
  choice.checksRequired = (flags & 2) == 0;
  choice.window = (flags & 4) == 0 ? kSmallWindow : 4 * kSmallWindow;
  choice.wanted = (flags >> 3 & 7) % 5;
  choice.stops = flags >> 6 == 3;
  choice.way = choices.Below(256);
  // Blank lines somewhere make a short text slide through a window.
  const std::size_t lines = choices.Below(256);
  const std::string blank(lines < 128 ? 0 : (lines - 128) * 64, '\n');
  choice.place = choices.Below(65536);
  std::string text(choices.Rest());
  choice.place %= text.size() + 1;
  text.insert(choice.place, blank);
  if (choice.stops) {
    CheckStop(text, choice);
  } else {
    CheckWays(text, choice);
  }
}

const Target kTarget("stream", &Run);

}  // namespace
