// Distinguishing tags from characters, and reading the texts between them.

#include "krofx/reader/tags/scanner.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "krofx/core/internal/byte_search.h"
#include "krofx/reader/characters/charset.h"
#include "krofx/reader/characters/references.h"

namespace krofx::internal {

namespace {

// Longer names are no tags of anybody.
constexpr u32 kLongestName = 255;

constexpr bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// By character, which names may have it: a look-up takes fewer steps than the comparisons.
class NameCharacters {
 public:
  constexpr NameCharacters() {
    for (unsigned value = 0; value < std::size(m_has); ++value) {
      const char c = static_cast<char>(static_cast<unsigned char>(value));
      m_has[value] =
          IsLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-' || c == ':';
    }
  }
  constexpr bool Has(char c) const { return m_has[static_cast<unsigned char>(c)]; }

 private:
  bool m_has[256] = {};
};
constexpr NameCharacters kNameCharacters;

bool HasSmallLetter(std::string_view name) {
  return std::any_of(name.begin(), name.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

constexpr std::string_view kSectionOpen = "<![CDATA[";
constexpr std::string_view kSectionClose = "]]>";

}  // namespace

u32 Scanner::SkipWhite(u32 position) const {
  while (IsWhite(At(position))) ++position;
  return position;
}

u32 Scanner::FindEnd(u32 from, std::string_view what, KnownEnd& known) const {
  if (from >= known.from && from + what.size() <= known.after) return known.after;
  if (from < known.noneFrom) {
    const std::size_t at = m_bytes.find(what, from);
    if (at != std::string_view::npos) {
      known.from = from;
      known.after = static_cast<u32>(at + what.size());
      return known.after;
    }
    known.noneFrom = from;
  }
  m_hasMetEnd = true;
  return 0;
}

bool Scanner::ReadTag(u32 open, bool inText, ScannedTag& tag) const {
  tag.at = open;
  u32 place = SkipWhite(open + 1);
  tag.type = ScannedTag::Type::kStart;
  if (At(place) == '/') {
    tag.type = ScannedTag::Type::kEnd;
    place = SkipWhite(place + 1);
  }
  const u32 tight = open + (tag.type == ScannedTag::Type::kEnd ? 2u : 1u);
  tag.otherForm = place != tight;
  if (!IsLetter(At(place))) return false;
  const u32 start = place;
  while (place - start <= kLongestName && kNameCharacters.Has(At(place))) ++place;
  tag.name = m_bytes.substr(start, place - start);
  if (tag.name.size() > kLongestName) return false;
  bool attributes = false;
  if (At(place) != '>') {
    if (At(place) != '/' && !IsWhite(At(place))) return false;
    while (At(place) != '>' && At(place) != '<' && place < End()) {
      attributes = attributes || At(place) == '=';
      ++place;
    }
    if (At(place) != '>') return ReadOpenTag(start, place, inText, tag);
  }
  tag.after = place + 1;
  tag.selfClosed = tag.type == ScannedTag::Type::kStart && At(place - 1) == '/';
  const u32 inside = place - (tag.selfClosed ? 1 : 0);
  const u32 nameEnd = start + static_cast<u32>(tag.name.size());
  const bool onlyName = nameEnd == inside || SkipWhite(nameEnd) >= inside;
  if (nameEnd != inside) tag.otherForm = true;
  tag.otherCase = false;
  tag.entry = Find(tag.name, KRCaseType_Exact);
  if (tag.entry != nullptr && !inText) return true;
  if (const std::size_t colon = tag.name.rfind(':'); colon != std::string_view::npos) {
    tag.name.remove_prefix(colon + 1);
    tag.otherForm = true;
    if (tag.name.empty()) return false;
    tag.entry = Find(tag.name, KRCaseType_Exact);
  }
  const bool small = tag.entry == nullptr && HasSmallLetter(tag.name);
  if (small) {
    tag.entry = Find(tag.name, KRCaseType_IgnoreCase);
    tag.otherCase = tag.entry != nullptr;
  }
  if (!inText) return true;
  // "J < K", "A <b> c": characters of a text, unless they name a tag.
  if (!onlyName && !attributes) return false;
  if (tag.entry != nullptr) return true;
  const bool dotted = tag.name.find('.') != std::string_view::npos;
  return (!tag.otherForm || m_hasOtherForm) && (!small || dotted || m_hasOtherCase);
}

const KRTagDictionaryEntry* Scanner::Find(std::string_view name, KRCaseType caseType) const {
  KRTagID id;
  return m_dictionary.GetTagID(name.data(), static_cast<u16>(name.size()), &id, caseType);
}

// A tag that has lost its '>': a name of OFX at the end of its line, with another tag after it, or
// one in capitals without text in front of it, with a value to the end of its line.
bool Scanner::ReadOpenTag(u32 start, u32 next, bool inText, ScannedTag& tag) const {
  const u32 end = start + static_cast<u32>(tag.name.size());
  if (At(next) != '<') return false;
  const std::string_view between = m_bytes.substr(end, next - end);
  const std::size_t lineEnd = between.find_first_of("\r\n");
  if (lineEnd == std::string_view::npos) return false;
  if (SkipWhite(end) == next) {
    tag.entry = Find(tag.name, KRCaseType_IgnoreCase);
    tag.after = next;
  } else {
    if (tag.type != ScannedTag::Type::kStart || inText) return false;
    if (SkipWhite(end + static_cast<u32>(lineEnd)) != next) return false;
    tag.entry = Find(tag.name, KRCaseType_Exact);
    tag.after = end + 1;
  }
  tag.otherForm = true;
  tag.selfClosed = tag.otherCase = false;
  return tag.entry != nullptr;
}

Scanner::Piece Scanner::Classify(u32 open, bool inText, u32& after, ScannedTag& tag) const {
  const char next = At(open + 1);
  if (next == '!') {
    // What is cut may be the beginning of one of these.
    At(open + static_cast<u32>(kSectionOpen.size()) - 1);
    if (m_bytes.compare(open, kSectionOpen.size(), kSectionOpen) == 0) {
      after = FindEnd(open + static_cast<u32>(kSectionOpen.size()), kSectionClose, m_sectionEnd);
      if (after != 0) return Piece::kSection;
    }
    if (m_bytes.compare(open, 4, "<!--") == 0) {
      after = FindEnd(open + 4, "-->", m_commentEnd);
      if (after != 0) return Piece::kMarkup;
    }
    // A declaration is between tags; in a text it is characters, and nothing after it is joined.
    if (!inText && (IsLetter(At(open + 2)) || At(open + 2) == '-')) {
      after = FindEnd(open + 1, ">", m_instructionEnd);
      if (after != 0) return Piece::kMarkup;
    }
    after = open + 1;
    return Piece::kCharacter;
  }
  if (next == '?') {
    // In a text only an instruction with an end of its own is not characters of it.
    after = FindEnd(open + 1, ">", m_instructionEnd);
    if (after != 0 && (!inText || m_bytes[after - 2] == '?')) return Piece::kMarkup;
    after = open + 1;
    return Piece::kCharacter;
  }
  if (ReadTag(open, inText, tag)) return Piece::kTag;
  after = open + 1;
  return Piece::kCharacter;
}

// Reads up to the next tag, which is left in `tag`.
TextRun Scanner::ReadRun(u32 from, ScannedTag& tag) const {
  TextRun run;
  run.from = run.to = from;
  ReadOn(run, from, false, tag);
  return run;
}

// Reads a run from a place on.
// @param inText whether there is text in front of that place on its line.
void Scanner::ReadOn(TextRun& run, u32 place, bool inText, ScannedTag& tag) const {
  const auto take = [&](u32 start, u32 end) {
    const u32 after = end;
    while (start < end && IsWhite(m_bytes[start])) ++start;
    while (start < end && IsWhite(m_bytes[end - 1])) --end;
    const std::string_view white = m_bytes.substr(end, after - end);
    const bool broken = white.find_first_of("\r\n") != std::string_view::npos;
    if (start == end) {
      inText = inText && !broken;
      return;
    }
    if (run.IsEmpty()) run.from = start;
    run.to = end;
    inText = !broken;
  };
  for (;;) {
    const char* const found = SearchBytes(
        m_bytes.data() + place, m_bytes.data() + End(),
        [](ByteBlock block) { return block.Equal('<') | block.Equal('&'); },
        [](char c) { return c == '<' || c == '&'; });
    const u32 stop = static_cast<u32>(found - m_bytes.data());
    if (stop < End() && *found == '&') {
      take(place, stop + 1);
      run.plain = false;
      place = stop + 1;
      continue;
    }
    take(place, stop);
    if (stop == End()) {
      m_hasMetEnd = true;
      tag = ScannedTag();
      tag.at = tag.after = End();
      run.cut = inText;
      return;
    }
    u32 after = 0;
    const Piece piece = Classify(stop, inText, after, tag);
    if (piece == Piece::kTag) return;
    run.plain = false;
    run.bareLessThan = run.bareLessThan || piece == Piece::kCharacter;
    if (piece != Piece::kMarkup) take(stop, after);
    place = after;
  }
}

void Scanner::Next(ScannedTag& tag) {
  TextRun front;
  if (m_hasAhead && m_ahead.at == m_position) {
    tag = m_ahead;
    front.from = front.to = m_position;
  } else {
    front = ReadRun(m_position, tag);
  }
  tag.front = front;
  tag.text = TextRun();
  m_hasOtherForm = m_hasOtherForm || (tag.otherForm && tag.entry != nullptr);
  m_hasOtherCase = m_hasOtherCase || tag.otherCase;
  m_hasAhead = false;
  m_position = tag.after;
  if (tag.type != ScannedTag::Type::kStart || tag.selfClosed) return;
  tag.text = ReadRun(tag.after, m_ahead);
  m_hasAhead = true;
  m_position = m_ahead.at;
}

void Scanner::TakeAheadAsText(TextRun& text) {
  const u32 open = m_ahead.at;
  if (text.IsEmpty()) text.from = open;
  text.to = open + 1;
  text.plain = false;
  text.bareLessThan = true;
  ReadOn(text, open + 1, true, m_ahead);
  m_position = m_ahead.at;
}

TextResult Scanner::ReadText(const TextRun& run, const Charset& charset, KRString& out) const {
  const u32 length = run.to - run.from;
  if (length > KRString::kMaxLength) return TextResult::kTooLong;
  if (run.plain || length == 0) {
    return out.Assign(m_bytes.data() + run.from, static_cast<u16>(length)) != 0 || length == 0
               ? TextResult::kRead
               : TextResult::kNoMemory;
  }
  char* write = out.LockBuffer(static_cast<u16>(length + 1));
  if (write == nullptr) return TextResult::kNoMemory;
  std::memset(write, 0, length + 1);
  bool replaced = false;
  const ReferenceReader references(m_bytes.substr(0, run.to), charset, m_xml);
  for (u32 place = run.from; place < run.to;) {
    const char c = m_bytes[place];
    if (c == '&') {
      char bytes[Charset::kLongest];
      const ReferenceReader::Found found = references.Read(place, bytes);
      if (found.length != 0) {
        std::memcpy(write, bytes, found.count);
        write += found.count;
        place += static_cast<u32>(found.length);
        replaced = replaced || !found.known;
        continue;
      }
    }
    if (c == '<') {
      ScannedTag unused;
      u32 after = 0;
      const Piece piece = Classify(place, true, after, unused);
      if (piece == Piece::kMarkup) {
        place = after;
        continue;
      }
      if (piece == Piece::kSection) {
        const u32 open = m_xml ? static_cast<u32>(kSectionOpen.size()) : 0;
        const u32 close = m_xml ? static_cast<u32>(kSectionClose.size()) : 0;
        const u32 count = after - place - open - close;
        std::memcpy(write, m_bytes.data() + place + open, count);
        write += count;
        place = after;
        continue;
      }
    }
    *write++ = c;
    ++place;
  }
  out.UnlockBuffer();
  return replaced ? TextResult::kReplaced : TextResult::kRead;
}

u32 Scanner::EndOfContent(const TextRun& run) const {
  u32 end = run.from;
  for (u32 place = run.from; place < run.to;) {
    if (m_bytes[place] == '<') {
      ScannedTag unused;
      u32 after = 0;
      const Piece piece = Classify(place, true, after, unused);
      if (piece == Piece::kMarkup) {
        place = after;
        continue;
      }
      if (piece == Piece::kSection) {
        place = end = after;
        continue;
      }
    }
    if (!IsWhite(m_bytes[place])) end = place + 1;
    ++place;
  }
  return end;
}

}  // namespace krofx::internal
