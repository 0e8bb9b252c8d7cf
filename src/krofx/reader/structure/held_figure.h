// The amount, other number or date that an object holds under a tag, as a text to compare with.

#ifndef KROFX_READER_STRUCTURE_HELD_FIGURE_H_
#define KROFX_READER_STRUCTURE_HELD_FIGURE_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/tags.h"
#include "krofx/model/data_object.h"
#include "krofx/reader/structure/aggregate_role.h"

namespace krofx::internal {

/// One figure. What comes twice with two values loses one of them, which is not to happen without
/// a word.
class HeldFigure {
 public:
  /// @param role of the tag in the object.
  HeldFigure(KRDataObj& object, KRTagID tag, const TagRole& role);

  /// @return whether there is one.
  bool IsHeld() const { return m_isHeld; }
  /// @return its text; empty also for one that cannot be written.
  std::string_view Text() const { return {m_text, m_size}; }

 private:
  bool m_isHeld = false;
  std::size_t m_size = 0;
  char m_text[128];
};

}  // namespace krofx::internal

#endif  // KROFX_READER_STRUCTURE_HELD_FIGURE_H_
