// Following the open aggregates.

#include "krofx/stream/internal/element_track.h"

#include <algorithm>
#include <cstdint>

#include "krofx/model/internal/aggregate.h"

namespace krofx::internal {

namespace {

// A message set without wrappers is incomplete, so it keeps the last one: when the next is dropped,
// the one before it goes.
template <class Set>
bool DropWrapperBefore(Set& set, const KRDataObj& element, WantedClasses& wanted) {
  const u16 count = set.GetNumTrans();
  if (count < 2 || set.GetTrans(static_cast<u16>(count - 1)) != &element) return false;
  const auto before = static_cast<u16>(count - 2);
  KRDataObj* const object = set.GetTrans(before);
  if (object == nullptr || !wanted.Has(*object, object->GetType(), set)) return false;
  set.DisconnectTrans(before);
  delete object;
  return true;
}

}  // namespace

void ElementTrack::Begin(KRDataObj& root) {
  m_levels[0].object = &root;
  m_levels[0].kind.element = nullptr;
  m_levels[0].countOfTags = 0;
  m_open = 0;
  m_element = nullptr;
}

std::size_t ElementTrack::CountOne(Level& level, KRTagID tag) {
  for (u8 index = 0; index < level.countOfTags; ++index) {
    if (level.counts[index].tag == tag) return ++level.counts[index].count;
  }
  if (level.countOfTags == kMostCounts) return 1;
  level.counts[level.countOfTags++] = {tag, 1};
  return 1;
}

const ElementTrack::Kind& ElementTrack::KindOf(const Level& level, Level& parent) {
  const std::type_info& element = typeid(*level.object);
  if (parent.kind.element == &element && parent.kind.tag == level.tag) return parent.kind;
  KRDataObj& object = *parent.object;
  const std::type_info& list = typeid(object);
  Kind& kind = m_kinds[(reinterpret_cast<std::uintptr_t>(&element) / sizeof(void*) + level.tag +
                        reinterpret_cast<std::uintptr_t>(&list) / sizeof(void*)) %
                       kKinds];
  if (kind.element != &element || kind.parent != &list || kind.tag != level.tag) {
    kind = {&element, &list, level.tag, false, ListRow(object, level.tag)};
    kind.wanted = IsInList(object, level.tag) && m_wanted.Has(*level.object, level.tag, object);
  }
  parent.kind = kind;
  return parent.kind;
}

void ElementTrack::OnOpened(KRDataObj& object, s32 position) {
  Level& level = m_levels[m_open + 1];
  level.object = &object;
  level.tag = object.GetType();
  level.isPlaced = false;
  level.place.offset = m_base + static_cast<std::size_t>(std::max(position, s32{0}));
  level.number = CountOne(m_levels[m_open], level.tag);
  level.kind.element = nullptr;
  level.countOfTags = 0;
  ++m_open;
}

bool ElementTrack::OnClosed() {
  const Level& level = m_levels[m_open--];
  const Kind& kind = KindOf(level, m_levels[m_open]);
  if (!kind.wanted) return false;
  m_element = level.object;
  m_depth = static_cast<s16>(m_open + 1);
  m_row = kind.row;
  return true;
}

void ElementTrack::FindPlaces(LineCounter& lines, std::string_view part, std::size_t base) {
  const s16 deepest = m_element != nullptr ? m_depth : m_open;
  for (s16 depth = 1; depth <= deepest; ++depth) {
    Level& level = m_levels[depth];
    if (level.isPlaced) continue;
    level.place = lines.Find(part, base, level.place.offset);
    level.isPlaced = true;
  }
}

KRDataObj* ElementTrack::Around(u16 levels) const {
  return m_element == nullptr || levels > m_depth ? nullptr : m_levels[m_depth - levels].object;
}

const KRAccount* ElementTrack::AccountOfElement() const {
  for (u16 levels = 1; KRDataObj* const object = Around(levels); ++levels) {
    if (const KRAccount* const account = AccountOf(*object)) return account;
  }
  return nullptr;
}

KRString ElementTrack::Path() const {
  KRString path;
  const s16 deepest = m_element != nullptr ? m_depth : m_open;
  for (s16 depth = 1; depth <= deepest; ++depth) {
    const Level& level = m_levels[depth];
    const bool isInList = IsInList(*m_levels[depth - 1].object, level.tag);
    AddToStreamPath(path, level.tag, isInList ? level.number : 0);
  }
  return path;
}

void ElementTrack::Drop() {
  KRDataObj* const element = m_element;
  m_element = nullptr;
  if (element == nullptr) return;
  KRDataObj& parent = *m_levels[m_depth - 1].object;
  if (m_row != nullptr) {
    void* const array = m_row->member(parent);
    const u16 entries = m_row->array->entries(array);
    // A host may have taken it out by itself.
    if (entries == 0) return;
    const auto last = static_cast<u16>(entries - 1);
    if (m_row->array->get(array, last) == element) m_row->array->truncate(array, last);
    return;
  }
  WithMessageSet(parent,
                 [this, element](auto& set) { return DropWrapperBefore(set, *element, m_wanted); });
}

}  // namespace krofx::internal
