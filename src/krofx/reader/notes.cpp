// Puts mendings and warnings into one list, in the order of the file, and has the sentences of
// warnings.

#include "krofx/reader/notes.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "krofx/core/thread.h"
#include "krofx/reader/reading.h"

namespace krofx {

namespace {

// In the order of KRParseWarning.
constexpr const char* kSentences[] = {
    "something is out of order that has no name",
    "a tag that OFX does not have, or text that cannot be read, was passed over",
    "an aggregate that may not be here was left out",
    "an element that may not be here, or whose value is not acceptable, was left out",
    "a value, a header or a piece of text cannot be understood",
    "a number is beyond what its element takes",
    "a text is longer than OFX allows; it was kept whole",
    "a tag could not be passed over",
    "a value could not be stored among others of its tag",
    "an end tag does not close the aggregate that is open",
    "a tag or header that must be there is missing",
    "a tag is written in small letters",
    "an aggregate comes twice; the second took the place of the first",
    "an element has no text",
};
static_assert(std::size(kSentences) == KRPW_EMPTYELEM + 1);

void SetPlace(ReadNote& note, const Place& place, std::size_t text) {
  note.line = place.line;
  note.column = place.column;
  note.offset = place.offset;
  note.text = text;
}

ReadNote NoteOf(const Mending& mending) {
  ReadNote note;
  SetPlace(note, mending.place, mending.text);
  note.mended = true;
  note.tag = mending.tag;
  note.path = mending.path;
  note.kind = NameOf(mending.kind);
  const MendingKindInfo* const info = FindMendingKind(mending.kind);
  note.sentence = info == nullptr ? kSentences[KRPW_UNKNOWNEXCEPTION] : info->sentence;
  note.was = mending.was;
  note.taken = mending.taken;
  return note;
}

ReadNote NoteOf(const ReadWarning& warning) {
  ReadNote note;
  SetPlace(note, warning.place, warning.text);
  note.tag = warning.tagText;
  note.path = warning.path;
  KRParseException named;
  named.m_warning = warning.warning;
  named.WarningString(note.kind);
  note.sentence = SentenceOf(warning.warning);
  note.was = warning.value;
  return note;
}

// What has no place is after all that has one, within its text.
bool ComesBefore(const Mending& mending, const ReadWarning& warning) {
  if (mending.text != warning.text) return mending.text < warning.text;
  if (mending.place.line == 0 || warning.place.line == 0) return warning.place.line == 0;
  return mending.place.offset <= warning.place.offset;
}

}  // namespace

const char* SentenceOf(KRParseWarning warning) {
  return kSentences[warning < std::size(kSentences) ? warning : KRPW_UNKNOWNEXCEPTION];
}

List<ReadNote> Reading::Warnings() const {
  List<ReadNote> notes;
  const auto* mending = mendings.begin();
  const auto* warning = warnings.begin();
  while (mending != mendings.end() || warning != warnings.end()) {
    const bool isMending =
        warning == warnings.end() || (mending != mendings.end() && ComesBefore(*mending, *warning));
    if (!notes.Append(isMending ? NoteOf(*mending++) : NoteOf(*warning++))) {
      KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
      break;
    }
  }
  return notes;
}

}  // namespace krofx
