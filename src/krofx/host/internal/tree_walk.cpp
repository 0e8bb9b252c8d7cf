// The stack of open objects, and their paths.

#include "krofx/host/internal/tree_walk.h"

#include <utility>

#include "krofx/core/internal/failed_allocations.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/reader/reading.h"
#include "krofx/reader/records/path_log.h"
#include "krofx/values/utility.h"

namespace krofx::internal {

TreeWalk::TreeWalk(const TreeSource& source) : m_root(source.Root()) {
  if (source.Texts() == nullptr) return;
  m_text = source.Texts()->texts.begin();
  m_lastText = source.Texts()->texts.end();
}

const KRDataObj* TreeWalk::NextRoot() {
  if (const KRDataObj* const root = std::exchange(m_root, nullptr)) return root;
  while (m_text != m_lastText) {
    if (const KRDataObj* const root = (m_text++)->root.get()) return root;
  }
  return nullptr;
}

KRDataObj* TreeWalk::Next() {
  while (m_frames.Size() > 0) {
    Frame& top = m_frames.At(m_frames.Size() - 1);
    if (top.next == top.count) {
      m_counts.CutTo(top.counts);
      m_frames.CutTo(m_frames.Size() - 1);
    } else if (KRDataObj* const child = top.object->GetChild(top.next++)) {
      u16 number;
      return Number(*child, top, number) ? Push(child, number) : OutOfMemory();
    }
  }
  // Whether the objects may be changed is up to who made the walk.
  auto* const root = const_cast<KRDataObj*>(NextRoot());
  return root == nullptr ? nullptr : Push(root, 0);
}

void TreeWalk::SkipChildren() {
  if (m_frames.Size() == 0) return;
  Frame& top = m_frames.At(m_frames.Size() - 1);
  top.next = top.count;
}

// Finds out which of its tag the child is that the innermost object has just come to. The others
// are looked through for the first of a tag alone, so a list costs its length once for each tag.
bool TreeWalk::Number(const KRDataObj& child, const Frame& parent, u16& number) {
  const KRTagID tag = TypeOf(child);
  for (std::size_t place = parent.counts; place < m_counts.Size(); ++place) {
    TagCount& counted = m_counts.At(place);
    if (counted.tag != tag) continue;
    number = ++counted.count;
    return true;
  }
  number = HasAnother(parent, tag) ? 1 : 0;
  return number == 0 || m_counts.Push({tag, number});
}

// Whether one of the children that are still to come has a tag.
bool TreeWalk::HasAnother(const Frame& parent, KRTagID tag) {
  for (u16 index = parent.next; index < parent.count; ++index) {
    const KRDataObj* const child = parent.object->GetChild(index);
    if (child != nullptr && TypeOf(*child) == tag) return true;
  }
  return false;
}

KRDataObj* TreeWalk::Push(KRDataObj* object, u16 number) {
  const Frame frame{object, 0, object->GetNumberOfChildren(), number, m_counts.Size()};
  return m_frames.Push(frame) ? object : OutOfMemory();
}

// Ends the walk.
KRDataObj* TreeWalk::OutOfMemory() {
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  m_frames.CutTo(0);
  m_root = nullptr;
  m_text = m_lastText;
  return nullptr;
}

PathStep TreeWalk::Above(std::size_t steps) const {
  if (steps >= m_frames.Size()) return {nullptr, 0};
  const Frame& frame = m_frames.At(m_frames.Size() - 1 - steps);
  return {frame.object, frame.number};
}

KRString PathOf(std::span<const PathStep> line) {
  const AllocationWatch memory;
  KRString path;
  for (std::size_t at = line.size(); at-- > 0;) {
    const KRDataObj& object = *line[at].object;
    if (dynamic_cast<const KRFile*>(&object) != nullptr) continue;  // It has no tag in the text.
    AddToPath(path, KRUtility::TagToString(TypeOf(object)), line[at].number);
  }
  if (memory.HasFailed()) path = "";  // Half a path is that of something else.
  return path;
}

}  // namespace krofx::internal
