// The stream of tags: which tag comes next, whether it is an aggregate or an element, and how to
// get past what the dictionary does not know.

#include "krofx/parse/engine.h"

#include <algorithm>
#include <string_view>

#include "krofx/core/parse_logger.h"
#include "krofx/parse/internal/common_tag.h"
#include "krofx/parse/internal/end_tag_index.h"
#include "krofx/parse/internal/item_scanner.h"
#include "krofx/parse/internal/sgml_macros.h"
#include "krofx/parse/internal/text_source.h"

using krofx::internal::BackOverWhite;
using krofx::internal::CommonTag;
using krofx::internal::CompareNames;
using krofx::internal::EndTagIndex;
using krofx::internal::ExpandMacros;
using krofx::internal::IsComment;
using krofx::internal::IsWhite;
using krofx::internal::kLastPosition;
using krofx::internal::KRTagItemInfo;
using krofx::internal::LogWarning;
using krofx::internal::PlainText;
using krofx::internal::ReadCommonTag;
using krofx::internal::ReadItem;
using krofx::internal::ReadTagItem;
using krofx::internal::SkipWhite;
using krofx::internal::TagName;
using krofx::internal::WithText;

namespace {

constexpr s32 kNothingKnown = kLastPosition;

bool IsTag(const KRTagItemInfo& item) {
  return item.type == KrTagItemType_StartTag || item.type == KrTagItemType_EndTag;
}

bool IsText(const KRTagItemInfo& item) {
  return item.type == KrTagItemType_Text || item.type == KrTagItemType_CDATA;
}

TagName NameOf(const KRTagItemInfo& item) { return {item.start, item.length}; }

// A copy of an item's text, for a warning.
template <class Text>
KRString TextOf(const Text& text, const KRTagItemInfo& item) {
  const u16 length = std::min(item.length, KRParseEngine::kMaxItemLength);
  return text.View(item.start, length, [](std::string_view view) {
    KRString copy;
    copy.Assign(view.data(), static_cast<u16>(view.size()));
    return copy;
  });
}

bool HasSmallLetter(std::string_view name) {
  return std::any_of(name.begin(), name.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

}  // namespace

KRParseEngine::KRParseEngine(KRBuffer& buffer)
    : m_ownDictionary(KRTagDictionary::TheKRTagDictionary()),
      m_buffer(&buffer),
      m_plain(buffer.HasPlainBytes() != 0),
      m_dictionary(m_ownDictionary) {
  WithText(buffer, [this](const auto& text) { return text.Find(0, '<', m_currentItem.end); });
}

void KRParseEngine::ResetToEndOfHeader() {
  m_currentItem.end = m_headerPos;
  // The items can be different when they are read from here.
  m_searches.endTags.Drop();
}

u16 KRParseEngine::SetDictionary(TagDictionary* dictionary) {
  if (dictionary == nullptr) return 0;
  m_dictionary = dictionary;
  return 1;
}

s32 KRParseEngine::GetItemPosition() const {
  return WithText(*m_buffer, [this](const auto& text) {
    s32 open = m_itemPosition - 1;
    while (IsWhite(text.At(open)) || text.At(open) == '/') --open;
    return text.At(open) == '<' ? open : m_itemPosition;
  });
}

template <class Text>
bool KRParseEngine::MoveToNext(const Text& text) {
  if (m_nextItem.type == KrTagItemType_None) {
    return ReadTagItem(text, m_currentItem, m_searches.noCDATAEndFrom);
  }
  m_currentItem = m_nextItem;
  m_nextItem.type = KrTagItemType_None;
  return true;
}

template <class Text>
bool KRParseEngine::FillLookahead(const Text& text) {
  if (m_nextItem.type != KrTagItemType_None) return true;
  m_nextItem = m_currentItem;
  return ReadTagItem(text, m_nextItem, m_searches.noCDATAEndFrom);
}

template <class Text>
const KRTagDictionaryEntry* KRParseEngine::LookUp(const Text& text, KRTagID& id) const {
  const u16 length = std::min(m_currentItem.length, kMaxItemLength);
  return text.View(m_currentItem.start, length, [this, &id](std::string_view name) {
    const u16 size = static_cast<u16>(name.size());
    const KRTagDictionaryEntry* entry =
        m_dictionary->GetTagID(name.data(), size, &id, KRCaseType_Exact);
    if (entry != nullptr || !HasSmallLetter(name)) return entry;
    entry = m_dictionary->GetTagID(name.data(), size, &id, KRCaseType_IgnoreCase);
    KRString written;
    written.Assign(name.data(), size);
    LogWarning(KRPW_LOWERCASE, KRString(), written, id, nullptr);
    return entry;
  });
}

template <class Text>
const KRTagDictionaryEntry* KRParseEngine::FindTag(const Text& text, KRTagID& id) {
  id = KRTag_None;
  // Without memory for the dictionary there are no tags; the fire alarm is already raised.
  if (m_dictionary == nullptr) return nullptr;
  while (MoveToNext(text)) {
    const KRTagItemInfo item = m_currentItem;
    m_itemPosition = item.start;
    if (IsTag(item)) {
      if (item.length == 0) return nullptr;
      if (const KRTagDictionaryEntry* entry = LookUp(text, id)) return entry;
    }
    if (item.type == KrTagItemType_Text) {
      LogWarning(KRPW_BADFORMAT, TextOf(text, item), KRString(), KRTag_None, nullptr);
    } else {
      const KRString name = IsTag(item) ? TextOf(text, item) : KRString();
      LogWarning(KRPW_UNKNOWNTAG, KRString(), name, KRTag_None, nullptr);
    }
    if (item.type == KrTagItemType_StartTag && !Skip(text)) {
      LogWarning(KRPW_SKIPFAILED, KRString(), TextOf(text, item), KRTag_None, nullptr);
      return nullptr;
    }
  }
  return nullptr;
}

template <class Text>
bool KRParseEngine::Skip(const Text& text) {
  const KRTagItemInfo start = m_currentItem;
  const KRTagItemInfo after = m_nextItem;
  if (start.length == 0 || !MoveToNext(text)) return false;
  if (IsText(m_currentItem) || SkipToEndTag(text, start)) return true;
  LogWarning(KRPW_BADFORMAT, TextOf(text, start), KRString(), KRTag_None, nullptr);
  m_currentItem = start;
  m_nextItem = after;
  return true;
}

template <class Text>
bool KRParseEngine::SkipToEndTag(const Text& text, const KRTagItemInfo& start) {
  EndTagIndex& endTags = m_searches.endTags;
  if (start.length > kMaxItemLength) return false;
  if (endTags.IsReady() && !endTags.HasAfter(text, NameOf(start))) return false;
  do {
    if (m_currentItem.type == KrTagItemType_EndTag &&
        CompareNames(text, NameOf(m_currentItem), NameOf(start)) == 0) {
      return true;
    }
  } while (MoveToNext(text));

  m_searches.noEndTag = true;
  endTags.Drop();
  KRTagItemInfo item = start;
  while (ReadTagItem(text, item, m_searches.noCDATAEndFrom)) {
    if (item.type != KrTagItemType_EndTag || item.length > kMaxItemLength) continue;
    if (!endTags.Append(NameOf(item))) return false;
  }
  endTags.Complete(text);
  return false;
}

template <class Text>
bool KRParseEngine::CopyItem(const Text& text, KRString& out, bool expand) const {
  const u16 length = m_currentItem.length;
  if (length > kMaxItemLength) return false;
  return text.View(m_currentItem.start, length, [&out, expand, length](std::string_view view) {
    if (view.size() != length) return false;
    return expand ? ExpandMacros(view, out) : out.Assign(view.data(), length) != 0;
  });
}

// Leaves out an element whose text is too long to be given, with its end tag, if it has one.
template <class Text>
void KRParseEngine::RefuseOverlong(const Text& text, const KRTagDictionaryEntry& entry) {
  const KRTagItemInfo tag = m_currentItem;
  LogWarning(KRPW_TOOLONG, KRString(), KRString(entry.text), entry.tagID, nullptr);
  MoveToNext(text);
  if (FillLookahead(text) && m_nextItem.type == KrTagItemType_EndTag &&
      CompareNames(text, NameOf(m_nextItem), NameOf(tag)) == 0) {
    MoveToNext(text);
  }
}

// Reads a tag of a common shape. Null, with nothing changed, when the next tag has another shape or
// its name is not in the dictionary.
const KRTagDictionaryEntry* KRParseEngine::ReadCommon(const PlainText& text, KRString& value,
                                                      KRTagType& type) {
  if (m_nextItem.type != KrTagItemType_None || m_dictionary == nullptr) return nullptr;
  CommonTag tag;
  const KRTagDictionaryEntry* entry = ReadCommonTag(text, m_currentItem.end, *m_dictionary, tag);
  if (entry == nullptr) return nullptr;
  if (tag.isElement) {
    const auto length = static_cast<u16>(tag.valueEnd - tag.value);
    const std::string_view view(text.Bytes() + tag.value, length);
    const bool copied =
        tag.hasMacros ? ExpandMacros(view, value) : value.Assign(view.data(), length) != 0;
    if (!copied) return nullptr;
    m_currentItem = {KrTagItemType_Text, length, tag.value, tag.next};
  } else {
    const KrTagItemType item = tag.isEnd ? KrTagItemType_EndTag : KrTagItemType_StartTag;
    m_currentItem = {item, tag.nameLength, tag.name, tag.afterTag};
  }
  m_itemPosition = tag.name;
  type = tag.isEnd ? KRTagType_End : tag.isElement ? KRTagType_Element : KRTagType_Start;
  return entry;
}

template <class Text>
KRTagType KRParseEngine::ReadTag(const Text& text, KRTagDictionaryEntry& entry, KRString& value) {
  KRTagID id;
  while (const KRTagDictionaryEntry* found = FindTag(text, id)) {
    KRTagType type = KRTagType_End;
    if (m_currentItem.type == KrTagItemType_StartTag) {
      if (!FillLookahead(text)) return KRTagType_Unreadable;
      if (IsTag(m_nextItem)) {
        type = KRTagType_Start;
      } else if (m_nextItem.length > kMaxItemLength) {
        RefuseOverlong(text, *found);
        continue;
      } else {
        type = KRTagType_Element;
        MoveToNext(text);
        const bool expand = m_currentItem.type == KrTagItemType_Text;
        if (!CopyItem(text, value, expand)) return KRTagType_Unreadable;
      }
    }
    entry = *found;
    return type;
  }
  return KRTagType_EndOfInput;
}

KRTagType KRParseEngine::GetKRTag(KRTagDictionaryEntry& entry, KRString& value) {
  if (m_plain) {
    KRTagType type;
    const PlainText text(*m_buffer);
    if (const KRTagDictionaryEntry* common = ReadCommon(text, value, type)) {
      entry = *common;
      return type;
    }
  }
  return WithText(*m_buffer, m_searches,
                  [&](const auto& text) { return ReadTag(text, entry, value); });
}

u16 KRParseEngine::SkipCurrentTag() {
  return WithText(*m_buffer, m_searches, [this](const auto& text) { return Skip(text); }) ? 1 : 0;
}

const KRTagDictionaryEntry* KRParseEngine::GetTagID(KRTagID* id) {
  KRTagID found;
  const KRTagDictionaryEntry* entry =
      WithText(*m_buffer, m_searches, [&](const auto& text) { return FindTag(text, found); });
  if (id != nullptr) *id = found;
  return entry;
}

KrTagItemType KRParseEngine::NextTagType() {
  WithText(*m_buffer, m_searches, [this](const auto& text) { return FillLookahead(text); });
  return m_nextItem.type;
}

u16 KRParseEngine::GetKrTagItem() {
  return WithText(*m_buffer, m_searches, [this](const auto& text) { return MoveToNext(text); }) ? 1
                                                                                                : 0;
}

u16 KRParseEngine::GetTagData(KRString& out, u16 expand, u16 wipe) {
  const KrTagItemType type = NextTagType();
  if (type != KrTagItemType_Text && type != KrTagItemType_CDATA) return 0;
  GetKrTagItem();
  return CopyCurrTagItemToBuffer(out, expand, wipe);
}

u16 KRParseEngine::CopyCurrTagItemToBuffer(KRString& out, u16 expand, u16 /*wipe*/) const {
  // The only copy on the way is made of a derived buffer's text, and is always overwritten.
  return WithText(*m_buffer, [&](const auto& text) { return CopyItem(text, out, expand != 0); })
             ? 1
             : 0;
}

u16 KRParseEngine::ExpandSgmlMacros(const KRString& in, KRString& out) const {
  return ExpandMacros(std::string_view(in, in.GetStrLength()), out) ? 1 : 0;
}

u16 KRParseEngine::GetOneItem(KRBuffer& buffer, s32& position, u16& length) {
  KRTagItemInfo item;
  item.end = position;
  if (GetOneItemFromKRBuffer(buffer, item, 1) == 0) return 0;
  position = item.start;
  length = std::min(item.length, kMaxItemLength);
  return 1;
}

u16 KRParseEngine::GetOneItemFromKRBuffer(KRBuffer& buffer, KRTagItemInfo& item, u16 contentOnly) {
  s32 noCDATAEndFrom = kNothingKnown;
  return WithText(buffer,
                  [&](const auto& text) {
                    return ReadItem(text, item, contentOnly != 0, noCDATAEndFrom);
                  })
             ? 1
             : 0;
}

u16 KRParseEngine::IsCommentTag(KRBuffer& buffer, KRTagItemInfo& item) {
  return WithText(buffer, [&item](const auto& text) { return IsComment(text, item); }) ? 1 : 0;
}

u16 KRParseEngine::GetKRTagInternal(KRBuffer& buffer, KRTagItemInfo& item) {
  s32 noCDATAEndFrom = kNothingKnown;
  return WithText(buffer, [&](const auto& text) { return ReadTagItem(text, item, noCDATAEndFrom); })
             ? 1
             : 0;
}

u16 KRParseEngine::IsWhiteSpace(char character) { return IsWhite(character) ? 1 : 0; }

u16 KRParseEngine::IsWhiteSpace(const char* text) {
  while (text != nullptr && IsWhite(*text)) ++text;
  return text == nullptr || *text == '\0' ? 1 : 0;
}

s32 KRParseEngine::SkipWhiteSpaces(KRBuffer& buffer, s32 position) {
  return WithText(buffer, [position](const auto& text) { return SkipWhite(text, position); });
}

s32 KRParseEngine::FindWhiteSpaces(KRBuffer& buffer, s32 position) {
  return WithText(buffer, [position](const auto& text) {
    s32 place = position;
    for (char c = text.At(place); c != '\0' && !IsWhite(c); c = text.At(place)) ++place;
    return place;
  });
}

s32 KRParseEngine::FindPreviousNonWhiteSpace(KRBuffer& buffer, s32 position) {
  return WithText(buffer, [position](const auto& text) { return BackOverWhite(text, position); });
}

std::size_t& krofx::internal::SwallowedTags() {
  static thread_local std::size_t count = 0;
  return count;
}
