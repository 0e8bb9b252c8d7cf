// Fills a tree from a text that need not be in order: the part of the reader that knows which tags
// belong where.
//
// It takes the place of KRSimpleParser: the scanner gives it tags, and it drives the objects, which
// push and pop themselves as in any parse. What differs is what happens when something does not
// fit. The strict parser skips or stops; this one asks the objects on its stack what they could do
// with the tag, closes what has lost its end, opens what has lost its start, joins what was torn
// apart, and has values mended that were refused. Each of these steps is said.

#ifndef KROFX_READER_STRUCTURE_TREE_READER_H_
#define KROFX_READER_STRUCTURE_TREE_READER_H_

#include <string_view>

#include "krofx/model/parser.h"
#include "krofx/reader/characters/working_text.h"
#include "krofx/reader/records/path_log.h"
#include "krofx/reader/records/recorder.h"
#include "krofx/reader/structure/aggregate_role.h"
#include "krofx/reader/structure/element_feed.h"
#include "krofx/reader/structure/held_figure.h"
#include "krofx/reader/structure/tree_watcher.h"
#include "krofx/reader/tags/scanner.h"
#include "krofx/reader/tags/tag_places.h"
#include "krofx/reader/values/value_mender.h"
#include "krofx/reader/values/value_survey.h"

class KRFile;

namespace krofx::internal {

class Charset;

/// What a step of a tree reader came to.
enum class TreeStep : u8 {
  kGoesOn,
  kNeedsMore,  ///< What comes next is not all in the part of the text that is there.
  kEnded,      ///< The text has ended, or cannot be read on.
};

/// Reads the body of one text into one tree: as a whole, or tag by tag from parts of the text.
class TreeReader final : public KRParser {
 public:
  /// @param text what is left of it once the text menders are done; it ends where the text ends.
  /// @param charset the one that it is in.
  /// @param xml whether it is OFX 2.
  TreeReader(const WorkingText& text, TagDictionary& dictionary, const Charset& charset, bool xml,
             Recorder& recorder);

  /// Reads from `body` on.
  /// @return 0 when it was read; 3 when memory, or a list, is exhausted; 4 at damage that must not
  ///         be mended.
  KRParseStatus Read(KRFile& root, u32 body);

  /// @name Reading from parts
  /// Begin, Step until it has ended, End.
  /// @{

  /// Begins to read at `body`.
  /// @param watcher hears of the aggregates.
  /// @param supply gives more of the text where a question needs it.
  void Begin(KRFile& root, u32 body, TreeWatcher* watcher, TextSupply* supply);
  /// Reads the next tag, with the elements in front of it.
  TreeStep Step();
  /// Ends the reading.
  /// @return as of Read.
  KRParseStatus End();
  /// @return where the next tag is looked for.
  u32 Position() const { return m_scanner.Position(); }
  /// To be called before the text becomes another part, which begins at Position().
  void LeavePart();
  /// The text has become that part.
  void EnterPart();
  /// @return what the values of the text look like.
  const ValueSurvey& Survey() const { return m_survey; }
  /// @return whether the reading ended since a question about the text could not be answered from
  ///         what the supply gives.
  bool IsLost() const { return m_isLost; }
  /// @}

  u16 PushObject(KRDataObj* object) override;
  u16 PopObject() override;

 private:
  // An aggregate of one tag inside an open one.
  struct Sibling {
    KRTagID tag;
    u32 count;
    s32 first;  // Its node in the log of paths, if it has one.
  };
  static constexpr u8 kMostSiblings = 32;
  // What is open.
  struct Level {
    // Makes it that of an aggregate that begins. Siblings beyond the count stay as they are.
    void Begin(KRDataObj* its, const Row* itsRow, bool isImplicit, bool isFirst,
               KRTagID itsWritten) {
      object = its;
      row = itsRow;
      lastClosed = nullptr;
      lastClosedRow = nullptr;
      written = itsWritten;
      implicit = isImplicit;
      joined = false;
      first = isFirst;
      number = 1;
      node = PathLog::kNoPath;
      siblingCount = 0;
    }

    KRDataObj* object = nullptr;
    const Row* row = nullptr;  // Its row in the object around it.
    KRDataObj* lastClosed = nullptr;
    const Row* lastClosedRow = nullptr;
    KRTagID written = KRTag_None;  // The tag that it is written with, when that is another.
    bool implicit = false;         // Its start tag is missing.
    bool joined = false;           // It was there already, and goes on.
    bool first = true;             // It was the first of its tag in the object around it.
    u32 number = 1;
    s32 node = PathLog::kNoPath;
    u8 siblingCount = 0;
    Sibling siblings[kMostSiblings] = {};
  };

  Level& Current() { return m_levels[GetDepth()]; }
  Spot At(u32 position);
  bool IsAmongPasswords() const;
  s32 NodeOf(s16 depth);
  Sibling* FindSibling(Level& level, KRTagID tag);
  bool Note(MendingKind kind, u32 position, std::string_view tag, std::string_view was = {},
            std::string_view taken = {});
  std::string_view TagName(KRTagID tag) const;
  // The name that the tags of a level are written with.
  std::string_view NameOf(const Level& level) const {
    return TagName(level.written != KRTag_None ? level.written : level.object->GetType());
  }
  std::string_view Shown(const TextRun& run) const { return m_scanner.View(run); }

  // Each of these gives false when the reading ends, with the reason in m_status.
  bool ReadTag(ScannedTag& tag);
  void FeedElements();
  bool TakeFront(const ScannedTag& tag);
  bool SayForm(const ScannedTag& tag);
  bool TakeStart(ScannedTag& tag);
  bool TakeEnd(const ScannedTag& tag);
  bool Take(ScannedTag& tag, const TagRole& role);
  bool TakeElement(ScannedTag& tag, const TagRole& role);
  bool TakeAggregate(const ScannedTag& tag, const TagRole& role);
  bool TakeInAncestor(ScannedTag& tag, bool& taken);
  bool TakeWithMissingStart(ScannedTag& tag, bool& taken);
  bool EnterLast(const ScannedTag& tag, bool& entered);
  bool GiveOwnWrapper(KRTagID id, u32 position);
  KRParseStatus OpenLike(KRDataObj& wrapper, KRTagID type, const Row* row);
  bool TakeElsewhere(ScannedTag& tag, bool& taken);
  bool TakeWrapperElsewhere(const ScannedTag& tag, s16 body, const Home& home);
  bool TakePayloadElsewhere(const ScannedTag& tag, s16 body, const Home& home);
  bool OpenSet(const ScannedTag& tag, s16 body, KRTagID set);
  bool TakeAsOtherAccount(ScannedTag& tag);
  bool TakePayeeAsName(ScannedTag& tag);
  void JoinBrackets(ScannedTag& tag);
  bool BeginsLine(u32 place) const;
  u32 EndOfBrackets(const ScannedTag& element);
  u32 EndOfBrackets(const ScannedTag& element, Scanner& scanner) const;
  bool SayRepeated(const ScannedTag& tag, const TagRole& role, const HeldFigure& before);
  bool PassLeft(KRTagID tag, u32 position, bool& passed);
  void Rename(s16 depth, KRTagID type);
  void Leave(s16 depth);
  bool SkipUnknown(const ScannedTag& tag);
  bool SkipMisplaced(const ScannedTag& tag);
  bool CloseDownTo(s16 depth, u32 position, bool silently);
  bool EndText(u32 position);
  bool DropIncomplete(u32 position);
  bool Stop(KRParseStatus status);
  bool StopForbidden() { return Stop(KRParseStatus_Invalid); }

  bool Fits(const TagRole& role, const ScannedTag& tag);
  bool BelongsFurtherOut(const ScannedTag& tag, const TagRole& role);
  bool LookFurther();
  void CompleteTo(s16 depth);
  bool EndsInside(s16 depth, s16 ancestor, u32 position);
  u32 EndOfOpen(u32 position);
  KRTagID MissingAggregate(KRDataObj& object, KRTagID tag, u32 position);
  void SkipTo(const ScannedTag& tag);
  KRParseStatus Open(KRTagID tag, const Row* row);
  bool Enter(KRDataObj* child, const Row* row);
  bool EnterAgain();
  bool BelongsIn(const Level& closed, const ScannedTag& tag);
  bool IsInsideSpan(const ScannedTag& tag, const TagRole& role, const KRString& value);
  void ReadCutText(ScannedTag& tag);
  // Offers a text to the current object.
  // @return whether it took it.
  bool Offer(const KRTagDictionaryEntry& entry, const KRString& value, u32 position);
  bool HasLoggedRefusal(KRTagID tag) const;
  bool MendValue(const ScannedTag& tag, const TagRole& role, KRString& value);
  void SayWarnings(u32 position, bool refused);
  void WarnOfMissing(KRFile& root);

  const WorkingText& m_text;
  const TagDictionary& m_dictionary;
  const Charset& m_charset;
  bool m_xml;
  Recorder& m_recorder;
  PathLog m_paths;
  Scanner m_scanner;
  TagPlaces m_places;
  ElementFeed m_feed;
  ValueSurvey m_survey;
  KRParseLogger* m_log = nullptr;

  Level m_levels[kMaxDepth + 1];
  // The aggregates that were left for others to be put where they belong: their end tags say
  // nothing.
  KRTagID m_left[kMaxDepth] = {};
  u8 m_leftCount = 0;
  const Row* m_openingRow = nullptr;
  bool m_openingImplicit = false;
  bool m_openingFirst = true;
  KRTagID m_openingWritten = KRTag_None;
  KRParseStatus m_status = KRParseStatus_Accepted;
  bool m_ended = false;
  bool m_cut = false;
  bool m_isLost = false;
  TreeWatcher* m_watcher = nullptr;
  TextSupply* m_supply = nullptr;
  // The part of the text that is there begins at the beginning of a line, but for blanks.
  bool m_partBeginsLine = true;
  KRFile* m_root = nullptr;
  // Where the current tag begins.
  u32 m_at = 0;
  // The deepest aggregate that is not complete.
  s16 m_deepest = 0;
  // Answers of AggregateAround, which takes some time, by object type, version and tag.
  struct Answer {
    KRTagID type = KRTag_None;
    KRTagID tag = KRTag_None;
    u16 version = 0;
    KRTagID around = KRTag_None;
  };
  static constexpr u32 kAnswers = 64;
  Answer m_answers[kAnswers];
  // The element or unknown tag that was read last: its end tag says nothing.
  std::string_view m_endsSilently;
  // Its name while the text becomes another part.
  static constexpr std::size_t kLongestName = 256;
  char m_silentName[kLongestName] = {};
};

}  // namespace krofx::internal

#endif  // KROFX_READER_STRUCTURE_TREE_READER_H_
