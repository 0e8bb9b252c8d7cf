// Reading plain elements.

#include "krofx/reader/structure/element_feed.h"

#include <cstddef>

#include "krofx/core/internal/byte_search.h"
#include "krofx/core/string.h"
#include "krofx/model/data_object.h"

namespace krofx::internal {

namespace {

// Whether what follows a '<' is a tag, whatever else is known of it: a name in capitals, or a '/'
// before one, and a '>'.
bool IsTag(const char* at, const char* limit) {
  if (at < limit && *at == '/') ++at;
  const char* const name = at;
  while (at < limit && ((*at >= 'A' && *at <= 'Z') || (*at >= '0' && *at <= '9') || *at == '.')) {
    ++at;
  }
  return at < limit && at != name && *at == '>' && *name >= 'A' && *name <= 'Z';
}

// Whether a value mender may be asked about a text that its object takes.
bool MayBeMended(const KnownTag& tag, std::string_view value) {
  constexpr std::size_t kThousands = 4;
  switch (tag.RowOf().value->form) {
    case ValueForm::kDecimal:
      // "1.234" is judged by the other numbers.
      return value.size() >= kThousands && value[value.size() - kThousands] == '.';
    case ValueForm::kText:
      return tag.entry->tagID == KRTag_CURDEF || tag.entry->tagID == KRTag_CURSYM;
    case ValueForm::kLanguage:
      return true;
    default:
      return false;
  }
}

}  // namespace

// An element that is in order.
struct ElementFeed::Element {
  KnownTag* tag;
  std::string_view value;
  const char* next;  // Where the tag after it begins.
};

bool ElementFeed::ReadElement(KRDataObj& object, const char* at, const char* limit,
                              Element& element) {
  const AggregateTable* const table = ObjectAccess::PlainTableOf(object, kPlainParse);
  const char* const end = m_text.data() + m_text.size();
  KnownTag* tag = m_last->next;
  if (tag == nullptr || tag->table != table || !tag->IsAt(at)) {
    tag = m_memo.Find(m_dictionary, object, table, at, end);
    if (tag == nullptr) return false;
  }
  if (tag->isEnd || (tag->versions & ObjectAccess::VersionOf(object)) == 0) return false;
  if (tag->RowOf().value == nullptr || ObjectAccess::PresenceOf(object).Has(tag->position)) {
    return false;
  }
  at += tag->length + 1;
  while (at < limit && IsWhite(*at)) ++at;
  if (at >= limit || *at == '<') return false;
  bool hasReferences = false;
  const char* const stop = FindValueEnd(at, end, hasReferences);
  if (stop >= limit || *stop != '<' || hasReferences || !BeginsTag(*tag, stop + 1)) return false;
  const char* last = stop;
  while (IsWhite(last[-1])) --last;
  element = {tag, {at, static_cast<std::size_t>(last - at)}, stop};
  return element.value.size() <= KRString::kMaxLength && !MayBeMended(*tag, element.value);
}

// Whether a tag begins after a '<', where there are TagKey::kBytes bytes. What is in angle brackets
// and not in the dictionary may be a part of a text.
// @param tag the one before it.
bool ElementFeed::BeginsTag(const KnownTag& tag, const char* next) {
  if (tag.next != nullptr && tag.next->IsAt(next)) return true;
  const char* const end = m_text.data() + m_text.size();
  if (tag.RowOf().value->form != ValueForm::kText) return IsTag(next, end);
  if (*next == '/') {
    ++next;
    const auto isAt = [next](std::string_view name) {
      return !name.empty() && std::string_view(next, TagKey::kBytes).starts_with(name) &&
             next[name.size()] == '>';
    };
    if (isAt(m_lastEnd) || isAt({tag.entry->text, tag.length})) return true;
  }
  u16 length = 0;
  const KRTagDictionaryEntry* const entry = LookUpName(m_dictionary, next, end, length);
  if (entry == nullptr) return false;
  if (next[-1] == '/' && length < TagKey::kBytes) m_lastEnd = {entry->text, length};
  return true;
}

// Moves over the end tag of an element, where it has one.
const char* ElementFeed::PassEnd(const char* at, const char* limit, const Element& element) const {
  const std::string_view rest(at, static_cast<std::size_t>(limit - at));
  if (rest.size() < 2 || rest[1] != '/') return at;
  const std::string_view name(element.tag->entry->text, element.tag->length);
  const bool ends = rest.size() > name.size() + 3 && rest.substr(2, name.size()) == name &&
                    rest[name.size() + 2] == '>';
  if (!ends) return at;
  const char* next = at + name.size() + 3;
  while (next < limit && IsWhite(*next)) ++next;
  return next < limit && *next == '<' ? next : at;
}

u32 ElementFeed::Run(KRDataObj& object, u32 position, std::string_view& last) {
  // The longest stretch that is read without a look at the end of the text.
  constexpr std::size_t kMargin = TagKey::kBytes + 8;
  if (m_text.size() < kMargin || ObjectAccess::PlainTableOf(object, kPlainParse) == nullptr) {
    return position;
  }
  const char* const limit = m_text.data() + m_text.size() - kMargin;
  const char* at = m_text.data() + position;
  // An end tag is none of its elements.
  if (at < limit && at[1] == '/') return position;
  Element element;
  while (at < limit && *at == '<' && ReadElement(object, at + 1, limit, element)) {
    const KnownTag& tag = *element.tag;
    void* const member = reinterpret_cast<char*>(&object) + tag.offset;
    if (!tag.RowOf().value->fromCommonText(member, element.value.data(), element.value.size())) {
      break;
    }
    ObjectAccess::SetBitAt(object, tag.position);
    m_last->next = element.tag;
    m_last = element.tag;
    last = std::string_view(at + 1, tag.length);
    at = PassEnd(element.next, limit, element);
  }
  return static_cast<u32>(at - m_text.data());
}

}  // namespace krofx::internal
