// Collecting mendings and warnings.

#include "krofx/reader/records/recorder.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

#include "krofx/core/internal/passwords.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/tag_dictionary.h"

namespace krofx::internal {

namespace {

constexpr std::size_t kMostShown = 200;

// Whether a mending is of text that has no known tag at its place: among passwords it may be one
// that has lost its tag.
bool IsOfTextWithoutTag(MendingKind kind) {
  return kind == MendingKind::kStrayText || kind == MendingKind::kUnknownTag ||
         kind == MendingKind::kPrivateTag || kind == MendingKind::kLaterTag ||
         kind == MendingKind::kMisplaced;
}

// Whether damage may have put a password into a text. A value of one line without a bracket has
// nothing of a tag in it.
bool MayHavePassword(std::string_view text, bool amongPasswords) {
  const bool isOneValue = text.find_first_of("<>\r\n") == std::string_view::npos;
  return !isOneValue && (amongPasswords || FindPasswordTag(text) != std::string_view::npos);
}

bool IsKnownTag(std::string_view tag) {
  const KRTagDictionary* const dictionary = KRTagDictionary::TheKRTagDictionary();
  KRTagID id = KRTag_None;
  return dictionary != nullptr && dictionary->GetTagID(tag.data(), static_cast<u16>(tag.size()),
                                                       &id, KRCaseType_IgnoreCase) != nullptr;
}

// What conversions of dates name in the place of a tag.
constexpr std::string_view kOperations[] = {"ConvertStringToKRTime", "ConvertStringToKRDateTime",
                                            "ExtractTimeZone", "SetTimeZone (time zone mismatch"};

// The tag at a place, as it stands there; of one that does not end, as much as is looked at.
std::string_view TagAt(std::string_view bytes, std::size_t offset) {
  constexpr std::size_t kMostOfTag = 1000;
  if (offset >= bytes.size()) return {};
  const std::string_view rest = bytes.substr(offset, kMostOfTag);
  return rest.starts_with('<') ? rest.substr(1, rest.find('>') - 1) : std::string_view();
}

// Whether what comes after a tag is a password, by the tag's name.
bool NamesPassword(std::string_view tag) {
  return LengthOfPasswordTag(tag) != 0 || (!IsKnownTag(tag) && EndsWithPasswordTag(tag));
}

// Counts lines from the front. Places that come in order cost one walk over the text; one that
// lies further back starts again at the last hundredth line before it.
class LineCounter {
 public:
  LineCounter(std::string_view bytes, u8 unit) : m_bytes(bytes), m_unit(unit) {}

  bool Find(Place& place) {
    if (place.offset < m_start) StepBack(place.offset);
    while (NextLine(place.offset)) {
      if (m_line % kMarkEach == 0 && (m_marks.empty() || m_marks.back().line < m_line) &&
          !m_marks.Append({m_line, m_start})) {
        return false;
      }
    }
    place.line = m_line;
    place.column = (place.offset - m_start) / m_unit + 1;
    return true;
  }

 private:
  struct Mark {
    std::size_t line;
    std::size_t start;
  };
  static constexpr std::size_t kMarkEach = 100;

  // The character at a place: of several bytes the one that is not zero.
  char At(std::size_t place) const {
    if (place + m_unit > m_bytes.size()) return '\0';
    char character = '\0';
    for (u8 byte = 0; byte < m_unit; ++byte) {
      const char part = m_bytes[place + byte];
      if (part == '\0') continue;
      if (character != '\0') return '\1';
      character = part;
    }
    return character;
  }

  // Moves to the next line, when it begins at `offset` or before it.
  bool NextLine(std::size_t offset) {
    for (; m_place + m_unit <= m_bytes.size() && m_place < offset; m_place += m_unit) {
      const char character = At(m_place);
      if (character != '\n' && (character != '\r' || At(m_place + m_unit) == '\n')) continue;
      m_place += m_unit;
      m_start = m_place;
      ++m_line;
      return true;
    }
    return false;
  }

  void StepBack(std::size_t offset) {
    const Mark* const after =
        std::upper_bound(m_marks.begin(), m_marks.end(), offset,
                         [](std::size_t place, const Mark& mark) { return place < mark.start; });
    const Mark mark = after == m_marks.begin() ? Mark{1, 0} : after[-1];
    m_line = mark.line;
    m_place = m_start = mark.start;
  }

  std::string_view m_bytes;
  u8 m_unit;
  std::size_t m_line = 1;
  std::size_t m_start = 0;
  std::size_t m_place = 0;
  List<Mark> m_marks;
};

// Whether what stands where a tag should may be a password, after a damaged tag that ends with '<'
// in place of '>'. Tags are written in capital letters.
bool MayBePassword(std::string_view tag) {
  constexpr std::string_view kOfTags = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._/";
  return tag.find_first_not_of(kOfTags) != std::string_view::npos && !IsKnownTag(tag);
}

}  // namespace

void Recorder::BeginText() {
  if (m_begun) ++m_text;
  m_begun = true;
  m_anyInText = false;
  m_forbidden = nullptr;
  BeginTree();
  std::fill(std::begin(m_said), std::end(m_said), 0);
  m_saidCount = 0;
}

bool Recorder::May(MendingKind kind, Spot spot) {
  if (m_options.mend.Has(kind)) return true;
  if (m_forbidden == nullptr) {
    m_forbidden = FindMendingKind(kind);
    m_forbiddenSpot = spot;
  }
  return false;
}

std::size_t Recorder::HashOf(MendingKind kind, std::string_view tag) {
  return std::hash<std::string_view>{}(tag)*31 + static_cast<std::size_t>(kind) + 1;
}

bool Recorder::HasSaid(std::size_t hash) const {
  for (std::size_t place = hash % kSaidPlaces; m_said[place] != 0;
       place = (place + 1) % kSaidPlaces) {
    if (m_said[place] == hash) return true;
  }
  // A text with that many names of its own repeats itself from here on.
  return m_saidCount >= kSaidPlaces * 3 / 4;
}

bool Recorder::Keeps(MendingKind kind, std::string_view tag) const {
  if (m_reading.mendings.size() >= m_options.maxRecords) return false;
  const MendingKindInfo* const info = FindMendingKind(kind);
  return info == nullptr || !info->once || !HasSaid(HashOf(kind, tag));
}

bool Recorder::SaysAgain(MendingKind kind, std::string_view tag) {
  const std::size_t hash = HashOf(kind, tag);
  if (HasSaid(hash)) return true;
  std::size_t place = hash % kSaidPlaces;
  while (m_said[place] != 0) place = (place + 1) % kSaidPlaces;
  m_said[place] = hash;
  ++m_saidCount;
  return false;
}

bool Recorder::Set(KRString& target, std::string_view text) {
  const std::string_view shown = text.substr(0, kMostShown);
  if (target.Assign(shown.data(), static_cast<u16>(shown.size())) == 0 && !shown.empty()) {
    m_failed = true;
  }
  return !m_failed;
}

// A tag that has lost its end may have the password after it in its name.
bool Recorder::SetTag(KRString& target, std::string_view tag) {
  const std::size_t length = LengthOfPasswordTag(tag);
  return Set(target, length == 0 || IsKnownTag(tag) ? tag : tag.substr(0, length));
}

bool Recorder::Note(MendingKind kind, Spot spot, std::string_view tag, std::string_view was,
                    std::string_view taken) {
  if (!May(kind, spot)) return false;
  m_anyInText = true;
  const MendingKindInfo* const info = FindMendingKind(kind);
  if (info != nullptr && info->once && SaysAgain(kind, tag)) return true;
  const bool kept = m_reading.mendings.size() < m_options.maxRecords;
  if (!kept) ++m_reading.unrecorded;
  if (!kept && (m_watcher == nullptr || !m_watcher->HearsAll())) return true;
  Mending mending{kind, {spot.offset, 0, 0}, m_text, {}, {}, {}, {}};
  if (!SetTag(mending.tag, tag) || !Set(mending.was, was) || !Set(mending.taken, taken)) {
    return true;
  }
  if (NamesPassword(tag) || (spot.amongPasswords && IsOfTextWithoutTag(kind)) ||
      MayHavePassword(was, spot.amongPasswords) || MayHavePassword(taken, spot.amongPasswords)) {
    mending.was.Clear('*');
    mending.taken.Clear('*');
  }
  if (m_watcher != nullptr) m_watcher->OnMending(mending);
  if (kept &&
      (!m_mendingPaths.Append(spot.path) || !m_reading.mendings.Append(std::move(mending)))) {
    m_failed = true;
  }
  return true;
}

void Recorder::Warn(KRParseWarning warning, Spot spot, KRTagID tag, std::string_view tagText,
                    std::string_view value, const KRDataObj* object) {
  m_anyInText = true;
  const bool kept = KeepsWarning();
  if (!kept) ++m_reading.unrecorded;
  if (!kept && (m_watcher == nullptr || !m_watcher->HearsAll())) return;
  ReadWarning record;
  record.warning = warning;
  record.place.offset = spot.offset;
  record.text = m_text;
  record.tag = tag;
  if (!SetTag(record.tagText, tagText) || !Set(record.value, value)) return;
  const bool isTextAmongPasswords = spot.amongPasswords && tag == KRTag_None;
  if (isTextAmongPasswords || IsSecret(tag) || NamesPassword(tagText) ||
      MayHavePassword(value, spot.amongPasswords)) {
    record.value.Clear('*');
  }
  if (isTextAmongPasswords && MayBePassword(tagText) && LengthOfPasswordTag(tagText) == 0) {
    record.tagText.Clear('*');
  }
  if (m_watcher != nullptr) m_watcher->OnWarning(record);
  if (!kept) return;
  const std::size_t number = m_warningPaths.size();
  if (object != nullptr && !m_warningObjects.Append({object, number})) m_failed = true;
  if (!m_warningPaths.Append(spot.path) || !m_reading.warnings.Append(std::move(record))) {
    m_failed = true;
  }
}

void Recorder::FindObjects(KRDataObj& root, PathLog& paths) {
  if (m_failed || m_warningObjects.empty()) return;
  std::sort(m_warningObjects.begin(), m_warningObjects.end());
  if (!paths.AddAll(root, {m_warningObjects.begin(), m_warningObjects.size()})) m_failed = true;
  for (const WantedObject& wanted : m_warningObjects) m_warningPaths[wanted.number] = wanted.node;
}

void Recorder::EndTree(const PathLog& paths) {
  m_failed = m_failed || paths.HasFailed();
  if (m_failed) return;
  for (std::size_t index = 0; index < m_mendingPaths.size(); ++index) {
    if (m_mendingPaths[index] == PathLog::kNoPath) continue;
    m_reading.mendings[m_firstMending + index].path = paths.PathOf(m_mendingPaths[index]);
  }
  for (std::size_t index = 0; index < m_warningPaths.size(); ++index) {
    if (m_warningPaths[index] == PathLog::kNoPath) continue;
    m_reading.warnings[m_firstWarning + index].path = paths.PathOf(m_warningPaths[index]);
  }
  BeginTree();
}

void Recorder::BeginTree() {
  m_firstMending = m_reading.mendings.size();
  m_firstWarning = m_reading.warnings.size();
  m_mendingPaths.Clear();
  m_warningPaths.Clear();
  m_warningObjects.Clear();
}

void Recorder::LookAtTag(ReadWarning& warning, std::string_view bytes, std::size_t offset) {
  const std::string_view tag = TagAt(bytes, offset);
  // A tag without its '>' ends with that of the next one.
  if (FindPasswordTag(tag) != std::string_view::npos) warning.value.Clear('*');
  const std::string_view named(warning.tagText, warning.tagText.GetStrLength());
  if (std::find(std::begin(kOperations), std::end(kOperations), named) != std::end(kOperations)) {
    Set(warning.tagText, tag);
  }
}

void Recorder::FindPlaces(const WorkingText& file, std::string_view original) {
  LineCounter lines(original, file.unit);
  const auto find = [this, &file, &lines](Place& place) {
    if (place.offset == Spot::kNowhere) {
      place.offset = 0;
      return;
    }
    place.offset = file.ToOriginal(place.offset);
    if (!lines.Find(place)) m_failed = true;
  };
  for (OfxText& text : m_reading.texts) find(text.place);
  for (Mending& mending : m_reading.mendings) find(mending.place);
  for (ReadWarning& warning : m_reading.warnings) {
    LookAtTag(warning, file.Bytes(), warning.place.offset);
    find(warning.place);
  }
}

}  // namespace krofx::internal
