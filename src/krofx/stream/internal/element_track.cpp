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

ElementTrack::~ElementTrack() {
  const auto free = [](const Complete& element) {
    if (element.isTaken) delete element.object;
  };
  if (m_current != nullptr) free(*m_current);
  if (m_depthBeside != 0) delete m_levels[m_depthBeside].object;
  for (u8 index = m_next; index < m_countAhead; ++index) free(m_ahead[index]);
}

void ElementTrack::Begin(KRDataObj& root, bool checkRequired) {
  m_checkRequired = checkRequired;
  m_levels[0].object = &root;
  m_levels[0].kind.element = nullptr;
  m_levels[0].countOfTags = 0;
  m_open = 0;
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
  level.start.isPlaced = false;
  level.start.place.offset = m_base + static_cast<std::size_t>(std::max(position, s32{0}));
  level.start.number = CountOne(m_levels[m_open], level.tag);
  level.kind.element = nullptr;
  level.countOfTags = 0;
  ++m_open;
}

void ElementTrack::OnOpenedBeside(KRDataObj& object, s32 position) {
  OnOpened(object, position);
  m_depthBeside = m_open;
}

AfterClosing ElementTrack::OnClosed() {
  const s16 depth = m_open--;
  if (depth == m_depthBeside) {
    m_depthBeside = 0;
    return Keep(depth, m_ahead[0].row, true);
  }
  const Level& level = m_levels[depth];
  const Kind& kind = KindOf(level, m_levels[m_open]);
  if (!kind.wanted) return AfterClosing::kGoesOn;
  bool isTaken = false;
  if (kind.row != nullptr) {
    void* const array = kind.row->member(*m_levels[m_open].object);
    KRDataObj* const last = kind.row->array->takeLast(array);
    // Nothing can be taken of a list that the host has copied.
    isTaken = last == level.object;
    if (last != nullptr && !isTaken) {
      kind.row->array->set(array, kind.row->array->entries(array), last);
    }
  }
  return Keep(depth, kind.row, isTaken);
}

AfterClosing ElementTrack::Keep(s16 depth, const Row* row, bool isTaken) {
  const Level& level = m_levels[depth];
  Complete& element = m_ahead[m_countAhead++];
  element.object = level.object;
  element.start = level.start;
  element.depth = depth;
  element.isTaken = isTaken;
  element.row = row;
  m_lackingAhead = m_checkRequired ? m_missing.Find(*level.object) : nullptr;
  const Complete& first = m_ahead[0];
  const std::size_t length = element.start.place.offset - first.start.place.offset;
  const bool goesOn = isTaken && depth == first.depth && length <= kMostTextAhead &&
                      m_countAhead != kMostAhead && m_lackingAhead == nullptr;
  return goesOn ? AfterClosing::kGoesOnInList : AfterClosing::kHalts;
}

bool ElementTrack::Settle() {
  if (m_depthBeside == 0) return true;
  const Row& row = *m_ahead[0].row;
  void* const array = row.member(*m_levels[m_depthBeside - 1].object);
  if (row.array->set(array, row.array->entries(array), m_levels[m_depthBeside].object) == 0) {
    return false;
  }
  m_depthBeside = 0;
  return true;
}

void ElementTrack::FindPlaces(LineCounter& lines, std::string_view part, std::size_t base) {
  const auto place = [&](Start& start) {
    if (start.isPlaced) return;
    start.place = lines.Find(part, base, start.place.offset);
    start.isPlaced = true;
  };
  const s16 around = m_current != nullptr ? static_cast<s16>(m_current->depth - 1) : m_open;
  for (s16 depth = 1; depth <= around; ++depth) place(m_levels[depth].start);
  if (m_current != nullptr) place(m_current->start);
}

KRDataObj* ElementTrack::Around(u16 levels) const {
  if (levels == 0) return Element();
  const bool isOpen = m_current != nullptr && levels <= m_current->depth;
  return isOpen ? m_levels[m_current->depth - levels].object : nullptr;
}

const KRAccount* ElementTrack::AccountOfElement() const {
  for (u16 levels = 1; KRDataObj* const object = Around(levels); ++levels) {
    if (const KRAccount* const account = AccountOf(*object)) return account;
  }
  return nullptr;
}

KRString ElementTrack::Path() const {
  KRString path;
  const auto add = [&](s16 depth, KRTagID tag, std::size_t number) {
    AddToStreamPath(path, tag, IsInList(*m_levels[depth - 1].object, tag) ? number : 0);
  };
  const s16 around = m_current != nullptr ? static_cast<s16>(m_current->depth - 1) : m_open;
  for (s16 depth = 1; depth <= around; ++depth) {
    add(depth, m_levels[depth].tag, m_levels[depth].start.number);
  }
  if (m_current != nullptr) {
    add(m_current->depth, m_current->object->GetType(), m_current->start.number);
  }
  return path;
}

// An element that could not be taken out of its list before.
void ElementTrack::DropFromList() {
  KRDataObj* const element = m_current->object;
  KRDataObj& parent = *m_levels[m_current->depth - 1].object;
  if (const Row* const row = m_current->row) {
    void* const array = row->member(parent);
    const u16 entries = row->array->entries(array);
    const u16 last = static_cast<u16>(entries - 1);
    if (entries != 0 && row->array->get(array, last) == element) row->array->truncate(array, last);
    return;
  }
  WithMessageSet(parent,
                 [this, element](auto& set) { return DropWrapperBefore(set, *element, m_wanted); });
}

}  // namespace krofx::internal
