// The loop from text to members.

#include "krofx/parse/internal/plain_feed.h"

#include <type_traits>

#include "krofx/core/internal/byte_search.h"
#include "krofx/model/internal/repeated_figures.h"
#include "krofx/model/internal/row_access.h"
#include "krofx/model/parser.h"
#include "krofx/parse/engine.h"
#include "krofx/parse/internal/sgml_macros.h"
#include "krofx/parse/internal/text_source.h"

namespace krofx::internal {

namespace {

// Whether the start tag `id` comes next, and is the one that came after the tag `last` before.
bool IsStartAgain(const KnownTag& last, const AggregateTable& table, KRTagID id, const char* at,
                  const char* limit) {
  const KnownTag* const tag = last.next;
  if (tag == nullptr || tag->isEnd || tag->entry->tagID != id || tag->table != &table) return false;
  while (at < limit && IsWhite(*at)) ++at;
  return at < limit && *at == '<' && tag->IsAt(at + 1);
}

}  // namespace

bool RowMemo::Remember(TagDictionary& dictionary, KRDataObj& object, const AggregateTable* table,
                       const char* text, const char* end, KnownTag& place) {
  KnownTag tag;
  tag.isEnd = *text == '/';
  const char* const name = tag.isEnd ? text + 1 : text;
  u16 nameLength = 0;
  tag.entry = LookUpName(dictionary, name, end, nameLength);
  if (tag.entry == nullptr) return false;
  tag.table = table;
  if (!tag.isEnd) {
    // A password must leave no copy; the virtual operations take care of that.
    if (table->valid.index == nullptr || IsSecret(tag.entry->tagID)) return false;
    const int position = table->valid.index->Find(tag.entry->tagID);
    if (position < 0) return false;
    const Row& row = table->rows[position];
    if (row.create == nullptr && (row.value == nullptr || row.value->fromCommonText == nullptr)) {
      return false;
    }
    tag.versions = table->valid.table[position].versions;
    tag.position = static_cast<u8>(position);
    tag.offset = OffsetIn(object, row);
    tag.isFigure = row.value != nullptr && IsFigure(*row.value);
  }
  tag.length = static_cast<u8>(name - text + nameLength);
  tag.key = TagKey(text, tag.length + 1);
  tag.keep = TagKey::Keep(tag.length + 1);
  place = tag;
  return true;
}

bool PlainFeed::FindTarget(Target& target) const {
  target.object = m_parser.m_current;
  if (target.object == nullptr) return false;
  target.table = ObjectAccess::PlainTableOf(*target.object, kPlainParse);
  if (target.table == nullptr) return false;
  target.version = ObjectAccess::VersionOf(*target.object);
  // A host can have put a table of its own in force.
  const KRArrayOfTags& inForce = m_parser.m_validTags;
  return inForce.table == target.table->valid.table && inForce.count == target.table->valid.count;
}

// Does what KRDataObj::PushAndSetObject and KRParser::PushObject do. The stack must have room.
void PlainFeed::Push(const Target& target, const AggregateTable& table, KRDataObj& child) {
  if (target.version != 0) ObjectAccess::SetVersion(child, target.version);
  m_parser.m_stack[m_parser.m_depth++] = {target.object, m_parser.m_validTags};
  m_parser.m_current = &child;
  m_parser.m_validTags = table.valid;
  ObjectAccess::SetParser(child, &m_parser);
}

template <FeedUse kUse>
KRParseStatus PlainFeed::Start(Target& target, const KnownTag& tag, s32 position) {
  KRDataObj* child = nullptr;
  const KRTagID id = tag.entry->tagID;
  const KRParseStatus status = MakeChild(*target.object, tag.RowOf(), id, child);
  if (status != KRParseStatus_Accepted) return status;
  const AggregateTable* table = ObjectAccess::PlainTableOf(*child, kPlainParse);
  if (table == nullptr || m_parser.m_depth >= KRParser::kMaxDepth) {
    return target.object->PushAndSetObject(child, id);
  }
  ObjectAccess::SetType(*child, id);
  ObjectAccess::SetBitAt(*target.object, tag.position);
  Push(target, *table, *child);
  if constexpr (kUse == FeedUse::kStream) m_watcher->OnOpened(*child, position);
  target = {child, table, ObjectAccess::VersionOf(*child)};
  return KRParseStatus_Accepted;
}

// As Start, for an element of a list that the watcher gets instead of the list.
KRParseStatus PlainFeed::StartBeside(Target& target, const KnownTag& tag, s32 position) {
  KRDataObjFactory* const factory = KRDataObj::GetFactory();
  KRDataObj* const child = factory == nullptr ? nullptr : tag.RowOf().create(*factory);
  if (child == nullptr) return Start<FeedUse::kStream>(target, tag, position);
  ObjectAccess::SetType(*child, tag.entry->tagID);
  const AggregateTable* const table = ObjectAccess::PlainTableOf(*child, kPlainParse);
  if (table == nullptr) {
    const ChildArrayKind& kind = *tag.RowOf().array;
    void* const array = tag.RowOf().member(*target.object);
    if (kind.set(array, kind.entries(array), child) == 0) {
      delete child;
      return KRParseStatus_Fatal;
    }
    return target.object->PushAndSetObject(child, tag.entry->tagID);
  }
  Push(target, *table, *child);
  m_watcher->OnOpenedBeside(*child, position);
  target = {child, table, ObjectAccess::VersionOf(*child)};
  return KRParseStatus_Accepted;
}

bool PlainFeed::MayHaveHighBytes() {
  const PlainText text(*m_engine.m_buffer);
  m_high.TakeAll(text.Bytes() + m_highTo, text.Bytes() + text.Size());
  m_highTo = text.Size();
  return m_high.Any();
}

template <FeedUse kUse>
KRParseStatus PlainFeed::Run(KRTagDictionaryEntry& entry, KRString& value, KRTagID& elementBefore) {
  // The longest stretch that is read without a test for the end of the text.
  constexpr std::ptrdiff_t kMargin = TagKey::kBytes + 8;
  Target target;
  if (m_engine.m_nextItem.type != KrTagItemType_None || m_engine.m_dictionary == nullptr ||
      !FindTarget(target)) {
    return KRParseStatus_Accepted;
  }
  const PlainText text(*m_engine.m_buffer);
  const char* const bytes = text.Bytes();
  const char* const end = bytes + text.Size();
  if (text.Size() - std::ptrdiff_t{m_engine.m_currentItem.end} < kMargin) {
    return KRParseStatus_Accepted;
  }
  const char* const limit = end - kMargin;
  TagDictionary& dictionary = *m_engine.m_dictionary;

  const char* next = bytes + m_engine.m_currentItem.end;
  // A copy, which can be kept in a register.
  std::conditional_t<kUse == FeedUse::kWatchedTree, HighBytes, NoBytes> seen;
  if constexpr (kUse == FeedUse::kWatchedTree) {
    seen = m_high;
    seen.TakeAll(bytes + m_highTo, next);
  }
  const KRTagDictionaryEntry* lastEntry = nullptr;
  const char* lastName = nullptr;
  std::string_view lastValue = m_lastValue;
  KRParseStatus status = KRParseStatus_Accepted;
  KnownTag* last = m_last;
  const auto advance = [&](KnownTag* tag, const char* name, const char* to) {
    last->next = tag;
    last = tag;
    lastEntry = tag->entry;
    lastName = name;
    next = to;
  };
  const auto commit = [&] {
    m_engine.m_currentItem.end = static_cast<s32>(next - bytes);
    m_engine.m_itemPosition = static_cast<s32>(lastName - bytes);
  };

  bool isBeside = false;
  for (;;) {
    const char* at = next;
    while (at < limit && IsWhite(*at)) ++at;
    if (at >= limit || *at != '<') break;
    const char* const name = ++at;
    KnownTag* tag = last->next;
    if (tag == nullptr || tag->table != target.table || !tag->IsAt(at)) {
      tag = m_memo.Find(dictionary, *target.object, target.table, at, end);
      if (tag == nullptr) break;
    }
    at += tag->length + 1;

    if (tag->isEnd) {
      const KRTagID id = tag->entry->tagID;
      const bool closesElement = id == elementBefore;
      if (!closesElement && (id != ObjectAccess::TypeOf(*target.object) || id == KRTag_OFX)) break;
      elementBefore = KRTag_None;
      advance(tag, name + 1, at);
      if (closesElement) continue;
      commit();
      if constexpr (kUse == FeedUse::kWatchedTree) {
        m_parser.PopObject();
      } else {
        m_parser.KRParser::PopObject();
      }
      if constexpr (kUse == FeedUse::kStream) {
        const AfterClosing after = m_watcher->OnClosed();
        if (after == AfterClosing::kHalts) break;
        if (!FindTarget(target)) break;
        isBeside = after == AfterClosing::kGoesOnInList;
        if (isBeside && !IsStartAgain(*last, *target.table, id, next, limit)) break;
      } else if (!FindTarget(target)) {
        break;
      }
      continue;
    }

    if ((tag->versions & target.version) == 0) break;
    const Row& row = tag->RowOf();
    const char* const afterTag = at;
    while (at < limit && IsWhite(*at)) ++at;
    if (at >= limit) break;
    if (*at == '<') {
      // A CDATA section or comment needs the scanner, and one may follow the white space.
      if (at[1] == '!' || IsWhite(at[1]) || row.create == nullptr) break;
      // A second one is warned about, which must wait until what was read ahead is handed out.
      if (kUse == FeedUse::kStream && !IsArray(row) &&
          SlotOf(row, *target.object).Get() != nullptr) {
        break;
      }
      elementBefore = KRTag_None;
      advance(tag, name, afterTag);
      commit();
      const auto position = static_cast<s32>(name - 1 - bytes);
      if (kUse == FeedUse::kStream && isBeside) {
        isBeside = false;
        status = StartBeside(target, *tag, position);
      } else {
        status = Start<kUse>(target, *tag, position);
      }
      if (status != KRParseStatus_Accepted || m_parser.m_current != target.object) break;
      continue;
    }

    if (row.value == nullptr) break;
    bool hasMacros = false;
    const char* const stop = FindValueEnd(at, end, hasMacros, seen);
    if (stop == end || *stop == '\0') break;
    const char* after = stop;
    while (IsWhite(after[-1])) --after;
    std::string_view view(at, static_cast<std::size_t>(after - at));
    if (view.size() > KRString::kMaxLength) break;
    if (hasMacros) {
      if (!ExpandMacros(view, value)) break;
      view = std::string_view(value, value.GetStrLength());
    }
    void* const member = reinterpret_cast<char*>(target.object) + tag->offset;
    if (!row.value->fromCommonText(member, view.data(), view.size())) break;
    if constexpr (kUse != FeedUse::kTree) {
      if (tag->isFigure && ObjectAccess::BitAt(*target.object, tag->position)) ++RepeatedFigures();
    }
    ObjectAccess::SetBitAt(*target.object, tag->position);
    elementBefore = tag->entry->tagID;
    advance(tag, name, stop);
    lastValue = hasMacros ? std::string_view() : view;
  }
  if constexpr (kUse == FeedUse::kWatchedTree) {
    m_high = seen;
    m_highTo = next - bytes;
  }
  if (lastEntry == nullptr) return status;
  entry = *lastEntry;
  m_last = last;
  m_lastValue = lastValue;
  commit();
  return status;
}

void PlainFeed::SettleValue(KRString& value) {
  if (m_lastValue.empty()) return;
  value.Assign(m_lastValue.data(), static_cast<u16>(m_lastValue.size()));
  m_lastValue = {};
}

template KRParseStatus PlainFeed::Run<FeedUse::kTree>(KRTagDictionaryEntry&, KRString&, KRTagID&);
template KRParseStatus PlainFeed::Run<FeedUse::kWatchedTree>(KRTagDictionaryEntry&, KRString&,
                                                             KRTagID&);
template KRParseStatus PlainFeed::Run<FeedUse::kStream>(KRTagDictionaryEntry&, KRString&, KRTagID&);

}  // namespace krofx::internal
