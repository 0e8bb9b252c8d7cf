// Which of several missing tags comes after another, for classes whose completeness is more than a
// table of required tags.

#ifndef KROFX_ENVELOPE_INTERNAL_MISSING_TAGS_H_
#define KROFX_ENVELOPE_INTERNAL_MISSING_TAGS_H_

#include "krofx/core/tags.h"

namespace krofx::internal {

/// Picks the answer of KRDataObj::GetFirstMissingRequiredTag out of the missing tags, which are
/// added in order.
class MissingTags {
 public:
  /// @param after the missing tag to begin after; 0 to begin with the first.
  explicit MissingTags(KRTagID after) : m_after(after), m_reached(after == KRTag_None) {}

  /// Adds a tag that is missing.
  void Add(KRTagID tag) {
    if (m_reached && m_found == KRTag_None) m_found = tag;
    if (tag == m_after) m_reached = true;
  }
  /// The answer; 0 when nothing more is missing.
  KRTagID Found() const { return m_found; }

 private:
  KRTagID m_after;
  bool m_reached;
  KRTagID m_found = KRTag_None;
};

}  // namespace krofx::internal

#endif  // KROFX_ENVELOPE_INTERNAL_MISSING_TAGS_H_
