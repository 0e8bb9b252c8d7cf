// Taking complete elements out of the tree.

#include "krofx/stream/internal/mended_track.h"

#include <utility>

#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/child_slot.h"

namespace krofx::internal {

MendedTrack::~MendedTrack() { Clear(); }

void MendedTrack::OnOpened(s16 depth, KRDataObj& object, u32 number, u32 position) {
  Level& level = m_levels[depth];
  level.object = &object;
  level.number = number;
  level.place = m_window.PlaceOf(m_window.Text().ToOriginal(position));
  level.kind.element = nullptr;
  for (s16 each = depth; each <= KRParser::kMaxDepth; ++each) {
    DeleteTaken(m_levels[each]);
  }
}

const MendedTrack::Kind& MendedTrack::KindOf(s16 depth) {
  KRDataObj& object = *m_levels[depth].object;
  KRDataObj& parent = *m_levels[depth - 1].object;
  const std::type_info& element = typeid(object);
  const KRTagID tag = object.GetType();
  Kind& kind = m_levels[depth - 1].kind;
  if (kind.element != &element || kind.tag != tag) {
    kind = {&element, tag, false, ListRow(parent, tag)};
    kind.wanted = IsInList(parent, tag) && m_wanted.Has(object, tag, parent);
  }
  return kind;
}

MendedTrack::Frame MendedTrack::FrameAt(s16 depth) const {
  const Level& level = m_levels[depth];
  const KRTagID tag = level.object->GetType();
  const bool isInList = depth > 0 && IsInList(*m_levels[depth - 1].object, tag);
  return {level.object, tag, isInList ? level.number : 0};
}

void MendedTrack::OnComplete(s16 depth, KRDataObj& object) {
  const Kind& kind = KindOf(depth);
  if (!kind.wanted) return;
  m_checker.OnElement(depth, object);
  Given given = {&object, nullptr, depth, depth, m_levels[depth].place, {}};
  for (s16 each = 0; each <= depth; ++each) given.frames[each] = FrameAt(each);
  if (kind.row != nullptr) {
    void* const array = kind.row->member(*m_levels[depth - 1].object);
    const u16 entries = kind.row->array->entries(array);
    const bool isLast =
        entries != 0 && kind.row->array->get(array, static_cast<u16>(entries - 1)) == &object;
    // Of a shared list nothing can be taken.
    if (isLast && kind.row->array->takeLast(array) != nullptr) given.list = array;
  }
  if (!m_given.Append(given)) {
    m_failed = true;
    if (given.list != nullptr) delete given.object;
  }
}

// Its elements may still be waiting, and those that were taken last are kept.
void MendedTrack::OnDeleted(KRDataObj& object) {
  for (Level& level : m_levels) {
    for (Given& taken : level.taken) {
      for (s16 depth = 0; depth < taken.depth; ++depth) {
        if (taken.frames[depth].object == &object) taken.list = nullptr;
      }
    }
  }
  for (Given& given : m_given) {
    for (s16 depth = 0; depth < given.around; ++depth) {
      if (given.frames[depth].object == &object) given.around = depth;
    }
    if (given.list != nullptr || given.around == given.depth) continue;
    // Only the host's copy of its list has it from now on, and the host may delete that any time.
    ChildSlot copy;
    if (CopyChild(copy, given.object) == 0) {
      m_failed = true;
      Clear();
      return;
    }
    given.object = copy.Release();
    given.frames[given.depth].object = given.object;
    given.list = given.object;  // No list has it.
  }
}

const KRDataObj* MendedTrack::TakenBefore(s16 depth, const void* list) {
  for (s16 each = 0; each < depth; ++each) {
    for (const Given& taken : m_levels[each].taken) {
      if (taken.list == list) return taken.object;
    }
  }
  return nullptr;
}

// The depth of the aggregate that keeps a taken element: as long as it is open, the element's list
// can be entered again. It is the nearest one that is itself an element of a list; every other
// aggregate is joined when it comes twice.
s16 MendedTrack::KeeperOf(const Given& given) {
  s16 depth = static_cast<s16>(given.depth - 1);
  while (depth > 0 && given.frames[depth].number == 0) --depth;
  return depth;
}

void MendedTrack::DeleteTaken(Level& level) {
  if (level.taken.empty()) return;
  for (const Given& taken : level.taken) delete taken.object;
  level.taken.Clear();
}

bool MendedTrack::Next() {
  DropCurrent();
  if (m_current < m_given.size()) {
    m_begun = true;
    return true;
  }
  while (!m_given.empty()) m_given.RemoveLast();
  m_current = 0;
  return false;
}

// Deletes the element that was handed out.
void MendedTrack::DropCurrent() {
  if (!m_begun) return;
  m_begun = false;
  KRDataObj* const parent = Around(1);
  const Given& given = m_given[m_current];
  ++m_current;
  if (given.list == nullptr) {
    // Its parent still exists: OnDeleted copies elements whose parent is deleted.
    DropWrapperBefore(*parent, *given.object);
    return;
  }
  // The next one may be compared with it, also when its list is joined with another.
  const s16 keeper = KeeperOf(given);
  Level& level = m_levels[keeper];
  if (parent == nullptr || level.object != given.frames[keeper].object) {
    delete given.object;
    return;
  }
  for (Given& taken : level.taken) {
    if (taken.list != given.list && taken.list != nullptr) continue;
    delete taken.object;
    taken = given;
    return;
  }
  if (level.taken.Append(given)) return;
  m_failed = true;
  delete given.object;
}

// A message set without wrappers is incomplete, so it keeps one: when an element is dropped, the
// one before it goes.
void MendedTrack::DropWrapperBefore(KRDataObj& parent, const KRDataObj& element) {
  WithMessageSet(parent, [this, &element](auto& set) {
    u16 index = set.GetNumTrans();
    while (index > 0 && set.GetTrans(static_cast<u16>(index - 1)) != &element) --index;
    if (index < 2) return false;
    const auto before = static_cast<u16>(index - 2);
    KRDataObj* const object = set.GetTrans(before);
    if (object == nullptr || !m_wanted.Has(*object, object->GetType(), set)) return false;
    set.DisconnectTrans(before);
    delete object;
    return true;
  });
}

void MendedTrack::Clear() {
  for (std::size_t index = m_current; index < m_given.size(); ++index) {
    if (m_given[index].list != nullptr) delete m_given[index].object;
  }
  m_given.Clear();
  m_current = 0;
  m_begun = false;
  for (Level& level : m_levels) DeleteTaken(level);
}

KRDataObj* MendedTrack::Around(u16 levels) const {
  if (Element() == nullptr || levels > Current().depth) return nullptr;
  const auto depth = static_cast<s16>(Current().depth - levels);
  return levels == 0 || depth < Current().around ? Current().frames[depth].object : nullptr;
}

const KRAccount* MendedTrack::AccountOfElement() const {
  const s16 around = Element() == nullptr ? s16{0} : Current().around;
  for (auto depth = static_cast<s16>(around - 1); depth >= 0; --depth) {
    const KRAccount* const account = AccountOf(*Current().frames[depth].object);
    if (account != nullptr) return account;
  }
  return nullptr;
}

KRString MendedTrack::Path() const {
  KRString path;
  for (s16 depth = 1; Element() != nullptr && depth <= Current().depth; ++depth) {
    AddToStreamPath(path, Current().frames[depth].tag, Current().frames[depth].number);
  }
  return path;
}

KRString MendedTrack::PathTo(s16 depth) const {
  KRString path;
  for (s16 each = 1; each <= depth; ++each) {
    const Frame frame = FrameAt(each);
    AddToStreamPath(path, frame.tag, frame.number);
  }
  return path;
}

}  // namespace krofx::internal
