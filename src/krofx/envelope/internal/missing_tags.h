// Which of several missing tags comes after a given one, for classes that need more than a table of
// required tags.

#ifndef KROFX_ENVELOPE_INTERNAL_MISSING_TAGS_H_
#define KROFX_ENVELOPE_INTERNAL_MISSING_TAGS_H_

#include "krofx/core/tags.h"

namespace krofx::internal {

/// Finds the result of KRDataObj::GetFirstMissingRequiredTag among the missing tags, which are
/// added in order.
class MissingTags {
 public:
  /// @param after the missing tag after which to search; 0 for the first missing tag.
  explicit MissingTags(KRTagID after) : m_after(after), m_reached(after == KRTag_None) {}

  /// Adds a tag that is missing.
  void Add(KRTagID tag) {
    if (m_reached && m_found == KRTag_None) m_found = tag;
    if (tag == m_after) m_reached = true;
  }
  /// @return the result; 0 when nothing more is missing.
  KRTagID Found() const { return m_found; }

 private:
  KRTagID m_after;
  bool m_reached;
  KRTagID m_found = KRTag_None;
};

}  // namespace krofx::internal

#endif  // KROFX_ENVELOPE_INTERNAL_MISSING_TAGS_H_
