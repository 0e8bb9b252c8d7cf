// Finding the stretch of a position.

#include "krofx/reader/characters/offset_map.h"

#include <algorithm>

namespace krofx::internal {

bool OffsetMap::GoOnAt(u32 position, std::size_t original, u8 step, u8 originalStep) {
  if (!m_stretches.empty()) {
    const Stretch& last = m_stretches.back();
    const bool sameSteps = last.step == step && last.originalStep == originalStep;
    if (sameSteps && ToOriginal(position) == original) return true;
    if (last.position == position) m_stretches.RemoveLast();
  }
  return m_stretches.Append({position, step, originalStep, original});
}

const OffsetMap::Stretch* OffsetMap::NextAfter(std::size_t position) const {
  const Stretch* const after = std::upper_bound(
      m_stretches.begin(), m_stretches.end(), position,
      [](std::size_t place, const Stretch& stretch) { return place < stretch.position; });
  return after == m_stretches.end() ? nullptr : after;
}

OffsetMap::Stretch OffsetMap::StretchAt(u32 position) const {
  const Stretch* const after = NextAfter(position);
  const Stretch* const end = after == nullptr ? m_stretches.end() : after;
  if (end == m_stretches.begin()) return {position, 1, 1, m_base + position};
  return {position, end[-1].step, end[-1].originalStep, ToOriginal(position)};
}

std::size_t OffsetMap::ToOriginal(std::size_t position) const {
  const Stretch* const after = NextAfter(position);
  const Stretch* const end = after == nullptr ? m_stretches.end() : after;
  if (end == m_stretches.begin()) return m_base + position;
  const Stretch& stretch = end[-1];
  const std::size_t characters = (position - stretch.position) / stretch.step;
  return stretch.original + characters * stretch.originalStep;
}

}  // namespace krofx::internal
