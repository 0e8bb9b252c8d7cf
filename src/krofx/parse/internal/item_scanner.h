// Scanning of single items: tags, texts, CDATA sections and comments, over either source of text.
//
//   < TAG attributes >   a start tag: white space may follow the '<', attributes are dropped
//   </TAG>               an end tag
//   text                 up to the next '<', without white space around it
//   <![CDATA[...]...]>   a section whose content can have '<'; other characters may be between the
//                        closing ones
//   <!--...-->           a comment, which closes at its first '>'
//
// Malformed text is still an item: a CDATA section or comment without its end is a start tag with
// an odd name, which the dictionary does not have.

#ifndef KROFX_PARSE_INTERNAL_ITEM_SCANNER_H_
#define KROFX_PARSE_INTERNAL_ITEM_SCANNER_H_

#include <algorithm>
#include <array>
#include <string_view>

#include "krofx/core/types.h"
#include "krofx/parse/engine.h"
#include "krofx/parse/internal/end_tag_index.h"
#include "krofx/parse/internal/swallowed_tags.h"
#include "krofx/parse/internal/text_source.h"

namespace krofx::internal {

using KRTagItemInfo = KRParseEngine::KRTagItemInfo;

/// @return the first position from `position` on without white space.
template <class Text>
s32 SkipWhite(const Text& text, s32 position) {
  while (IsWhite(text.At(position))) ++position;
  return position;
}

/// Steps back over white space, one character first.
/// @return the position after the character where it stops; at a NUL, the position of the NUL.
template <class Text>
s32 BackOverWhite(const Text& text, s32 position) {
  if (position <= 0) return position == 0 ? -1 : position;
  char character;
  do character = text.At(--position);
  while (IsWhite(character));
  return character == '\0' ? position : position + 1;
}

/// @return the length of a stretch, as an item has it.
inline u16 ItemLength(s32 start, s32 end) {
  return static_cast<u16>(std::clamp<s32>(end - start, 0, 65535));
}

/// Where the parts of a CDATA section are.
struct CDATASection {
  s32 content;      ///< After the opening.
  s32 firstClose;   ///< The first ']' after that.
  s32 secondClose;  ///< The second one.
  s32 close;        ///< The first '>' after that.
};

/// Says whether a CDATA section begins at the '!' at `place`, and where its parts are.
/// @param place takes the last position that was read, when there is no section.
/// @param noEndFrom no section from this position on has an end. A search that fails lowers it:
///        where no end follows a position, none follows a later one.
template <class Text>
bool FindCDATA(const Text& text, s32& place, CDATASection& section, s32& noEndFrom) {
  const auto take = [&text, &place](char wanted) {
    if (CapitalLetter(text.At(place)) != wanted) return false;
    ++place;
    return true;
  };
  place = SkipWhite(text, place + 1);
  if (!take('[')) return false;
  place = SkipWhite(text, place);
  for (const char letter : std::string_view("CDATA")) {
    if (!take(letter)) return false;
  }
  place = SkipWhite(text, place);
  if (!take('[')) return false;

  section.content = place;
  const bool complete = place < noEndFrom && text.Find(place, ']', section.firstClose) &&
                        text.Find(section.firstClose + 1, ']', section.secondClose) &&
                        text.Find(section.secondClose + 1, '>', section.close);
  if (complete) return true;
  noEndFrom = std::min(noEndFrom, place);
  // The search ended at the end of the text, which is not a '/'.
  place = kLastPosition;
  return false;
}

/// Counts a tag with another one in its attributes, but for comments and instructions. Each
/// character of a derived buffer is a call, so what is in one is not looked through again.
template <class Text>
void CountSwallowed(const Text& text, s32 start, s32 end) {
  if (text.Bytes() == nullptr || text.At(start) == '!' || text.At(start) == '?') return;
  if (s32 open; text.Find(start, '<', open) && open < end) ++SwallowedTags();
}

/// Measures the name of a tag, which begins at item.start, and sets item.end after the tag.
template <class Text>
void MeasureTag(const Text& text, KRTagItemInfo& item) {
  s32 place = text.NameEnd(item.start);
  item.length = ItemLength(item.start, place);
  const s32 nameEnd = place;
  const bool closed = text.At(place) == '>' || text.Find(place, '>', place);
  item.end = closed ? place + 1 : place;
  if (place != nameEnd) CountSwallowed(text, item.start, place);
}

/// Measures a text that ends at item.end, without the white space there.
template <class Text>
void MeasureText(const Text& text, KRTagItemInfo& item) {
  item.length = ItemLength(item.start, BackOverWhite(text, item.end));
}

/// Reads the CDATA section whose '<' is at `open` and whose '!' is at `place`.
/// @return false when it is not one; `place` is then the last position that was read.
template <class Text>
[[gnu::noinline]] bool ReadCDATA(const Text& text, KRTagItemInfo& item, s32 open, s32& place,
                                 bool contentOnly, s32& noCDATAEndFrom) {
  CDATASection section;
  if (!FindCDATA(text, place, section, noCDATAEndFrom)) return false;
  item.type = KrTagItemType_CDATA;
  text.Find(section.close + 1, '<', item.end);
  if (!contentOnly) {
    item.start = open;
    MeasureText(text, item);
    return true;
  }
  item.start = section.content;
  item.length = ItemLength(section.content, section.firstClose - 1);
  if (item.length == 0) item.length = ItemLength(section.content, section.secondClose - 1);
  return true;
}

/// Reads the item that begins at item.end.
/// @param contentOnly gives the content of a CDATA section without its last character, unless the
///        content is a single character.
/// @param noCDATAEndFrom see FindCDATA.
/// @return false at the end of the text.
template <class Text>
bool ReadItem(const Text& text, KRTagItemInfo& item, bool contentOnly, s32& noCDATAEndFrom) {
  item.type = KrTagItemType_None;
  item.length = 0;
  item.start = SkipWhite(text, item.end);
  char character = text.At(item.start);
  if (character == '\0') return false;
  if (character != '<') {
    item.type = KrTagItemType_Text;
    text.Find(item.start, '<', item.end);
    MeasureText(text, item);
    return true;
  }

  const s32 open = item.start;
  s32 place = SkipWhite(text, open + 1);
  item.start = place;
  character = text.At(place);
  if (character == '!') {
    if (ReadCDATA(text, item, open, place, contentOnly, noCDATAEndFrom)) return true;
    character = text.At(place);
  }
  if (character == '/') {
    item.type = KrTagItemType_EndTag;
    item.start = SkipWhite(text, place + 1);
  } else {
    item.type = KrTagItemType_StartTag;
  }
  MeasureTag(text, item);
  return true;
}

/// Says whether an item is a comment. One whose first '>' does not follow "--" is not.
template <class Text>
[[gnu::noinline]] bool IsComment(const Text& text, const KRTagItemInfo& item) {
  if (item.type != KrTagItemType_StartTag || text.At(item.start) != '!') return false;
  const s32 begin = item.start + 1;
  if (item.end - begin < 4) return false;
  s32 end;
  if (!text.Find(begin, '>', end) || end > item.end) end = item.end;
  return end - begin >= 2 && text.At(begin) == '-' && text.At(begin + 1) == '-' &&
         text.At(end - 2) == '-' && text.At(end - 1) == '-';
}

/// Reads the next item that is not a comment.
/// @return false at the end of the text.
template <class Text>
bool ReadTagItem(const Text& text, KRTagItemInfo& item, s32& noCDATAEndFrom) {
  do {
    if (!ReadItem(text, item, false, noCDATAEndFrom)) return false;
  } while (text.At(item.start) == '!' && IsComment(text, item));
  return true;
}

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_ITEM_SCANNER_H_
