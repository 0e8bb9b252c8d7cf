// The stack of open objects, and their paths.

#include "krofx/host/internal/tree_walk.h"

#include <utility>

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
  while (m_depth > 0) {
    Frame& top = At(m_depth - 1);
    if (top.next == top.count) {
      Pop();
    } else if (KRDataObj* const child = top.object->GetChild(top.next++)) {
      return Push(child);
    }
  }
  // Whether the objects may be changed is up to who made the walk.
  auto* const root = const_cast<KRDataObj*>(NextRoot());
  return root == nullptr ? nullptr : Push(root);
}

void TreeWalk::SkipChildren() {
  if (m_depth > 0) At(m_depth - 1).next = At(m_depth - 1).count;
}

KRDataObj* TreeWalk::Push(KRDataObj* object) {
  const Frame frame{object, 0, object->GetNumberOfChildren()};
  if (m_depth < kLevels) {
    m_frames[m_depth] = frame;
  } else if (!m_deeper.Append(frame)) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    m_depth = 0;
    m_root = nullptr;
    m_text = m_lastText;
    return nullptr;
  }
  ++m_depth;
  return object;
}

void TreeWalk::Pop() {
  if (--m_depth >= kLevels) m_deeper.RemoveLast();
}

KRDataObj* TreeWalk::Above(std::size_t steps) const {
  return steps < m_depth ? At(m_depth - 1 - steps).object : nullptr;
}

// The question changes nothing, though it is not const.
namespace {

// Which of its tag an object is in its parent, from 1; 0 for the only one.
unsigned NumberIn(const KRDataObj& parent, const KRDataObj& object) {
  const u16 count = parent.GetNumberOfChildren();
  unsigned all = 0;
  unsigned own = 0;
  for (u16 index = 0; index < count; ++index) {
    const KRDataObj* const sibling = parent.GetChild(index);
    if (sibling == nullptr || TypeOf(*sibling) != TypeOf(object)) continue;
    ++all;
    if (sibling == &object) own = all;
  }
  return all == 1 ? 0 : own;
}

}  // namespace

KRString PathOf(std::span<const KRDataObj* const> line) {
  KRString path;
  for (std::size_t at = line.size(); at-- > 0;) {
    const KRDataObj& object = *line[at];
    if (dynamic_cast<const KRFile*>(&object) != nullptr) continue;  // It has no tag in the text.
    const unsigned number = at + 1 < line.size() ? NumberIn(*line[at + 1], object) : 0;
    AddToPath(path, KRUtility::TagToString(TypeOf(object)), number);
  }
  return path;
}

}  // namespace krofx::internal
