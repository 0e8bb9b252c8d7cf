// What is done with texts that look like tags, with a text where an aggregate belongs, and with
// figures that come twice.

#include <string_view>

#include "krofx/core/internal/byte_search.h"
#include "krofx/reader/structure/tree_reader.h"

namespace krofx::internal {

namespace {

bool HasLineEnd(std::string_view text) {
  return text.find_first_of("\r\n") != std::string_view::npos;
}

// Whether nobody knows a tag, so that it may be characters of a text.
bool MayBeCharacters(const ScannedTag& tag) {
  return tag.type != ScannedTag::Type::kEndOfText && tag.entry == nullptr &&
         tag.name.find('.') == std::string_view::npos;
}

// Whether there is one blank in front of a tag, with text before it, and none but a blank or
// another tag after it: so people write, and no program writes elements so.
bool IsAmongWords(std::string_view text, const ScannedTag& tag) {
  const auto at = [text](std::size_t place) { return place < text.size() ? text[place] : '\n'; };
  return at(tag.at - 1) == ' ' && !IsWhite(at(tag.at - 2)) && at(tag.at - 2) != '>' &&
         (at(tag.after) == ' ' || at(tag.after) == '<');
}

}  // namespace

// Whether there is nothing but blanks in front of a place on its line.
bool TreeReader::BeginsLine(u32 place) const {
  while (place > 0 && (m_text.At(place - 1) == ' ' || m_text.At(place - 1) == '\t')) --place;
  if (place == 0) return m_partBeginsLine;
  return m_text.At(place - 1) == '\n' || m_text.At(place - 1) == '\r';
}

// Where the text of an element ends that has names in angle brackets after it which are no tags:
// at the element's own end tag, if no other tag comes before it and no name begins a line; else at
// the end of the line, if the line has nothing but the element on it, or at the next tag, if all
// the names are among words. 0 when the names may be tags of somebody.
u32 TreeReader::EndOfBrackets(const ScannedTag& element) {
  for (;;) {
    Scanner scanner = m_scanner;
    scanner.ForgetEnd();
    const u32 end = EndOfBrackets(element, scanner);
    const bool isPart = m_supply != nullptr && m_supply->IsPart();
    if (!isPart || !scanner.HasMetEnd()) return end;
    if (!LookFurther()) return 0;
  }
}

// As above, by a scanner that is after the text of the element, as far as there is text.
u32 TreeReader::EndOfBrackets(const ScannedTag& element, Scanner& scanner) const {
  const std::string_view text = m_text.Bytes();
  ScannedTag next;
  u32 place = element.after;
  u32 lineEnd = 0;
  bool hasEnds = false;
  bool areAmongWords = true;
  bool beginLines = false;
  for (;;) {
    scanner.Next(next);
    if (lineEnd == 0 && HasLineEnd(text.substr(place, next.at - place))) lineEnd = next.at;
    if (!MayBeCharacters(next)) break;
    beginLines = beginLines || BeginsLine(next.at);
    // A name with an end tag is an element.
    if (lineEnd == 0) {
      hasEnds = hasEnds || next.selfClosed || next.type == ScannedTag::Type::kEnd;
      areAmongWords = areAmongWords && IsAmongWords(text, next);
    }
    place = next.after;
  }
  const bool isClosed = next.type == ScannedTag::Type::kEnd && next.Id() == element.Id();
  if (isClosed && !beginLines) return next.at;
  if (hasEnds) return 0;
  if (lineEnd != 0 && BeginsLine(element.at)) return lineEnd;
  return areAmongWords ? (lineEnd != 0 ? lineEnd : next.at) : 0;
}

// Takes names in angle brackets that are no tags into the text of an element.
void TreeReader::JoinBrackets(ScannedTag& tag) {
  if (tag.selfClosed || !MayBeCharacters(m_scanner.Ahead())) return;
  const u32 end = EndOfBrackets(tag);
  while (m_scanner.Ahead().at < end) m_scanner.TakeAheadAsText(tag.text);
}

// Takes a payee that is a text, where there is no name yet, as the name.
bool TreeReader::TakePayeeAsName(ScannedTag& tag) {
  if (tag.Id() != KRTag_PAYEE || tag.text.IsEmpty()) return true;
  KRDataObj& object = *GetCurrentObj();
  const auto roleOf = [&object](KRTagID id) { return RoleOf(object, id).role; };
  if (roleOf(KRTag_PAYEE) != Role::kAggregate || roleOf(KRTag_NAME) != Role::kElement ||
      object.ValidateTag(KRTag_NAME) != 0) {
    return true;
  }
  const ScannedTag& next = m_scanner.Ahead();
  const bool ends = next.type == ScannedTag::Type::kEnd ||
                    (next.Id() != KRTag_NAME && roleOf(next.Id()) != Role::kNone);
  if (!ends) return true;
  if (!Note(MendingKind::kPayeeText, tag.at, tag.Name(), Shown(tag.text), Shown(tag.text))) {
    return false;
  }
  KRTagID id;
  const std::string_view name = TagName(KRTag_NAME);
  tag.entry =
      m_dictionary.GetTagID(name.data(), static_cast<u16>(name.size()), &id, KRCaseType_Exact);
  return true;
}

// Says that a figure took the place of another one. In a list that is joined the span of time
// grows, which is as it should be.
bool TreeReader::SayRepeated(const ScannedTag& tag, const TagRole& role, const HeldFigure& before) {
  if (!before.IsHeld() || Current().joined) return true;
  const HeldFigure now(*GetCurrentObj(), tag.Id(), role);
  return now.Text() == before.Text() ||
         Note(MendingKind::kRepeatedElement, tag.at, tag.Name(), before.Text(), now.Text());
}

}  // namespace krofx::internal
