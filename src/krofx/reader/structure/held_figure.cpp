// Writing what an object holds.

#include "krofx/reader/structure/held_figure.h"

#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/repeated_figures.h"

namespace krofx::internal {

HeldFigure::HeldFigure(KRDataObj& object, KRTagID tag, const TagRole& role) {
  if (role.row == nullptr || !IsFigure(*role.row->value)) return;
  m_isHeld = object.ValidateTag(tag) != 0;
  if (!m_isHeld) return;
  const ValueKind& kind = *role.row->value;
  const char* const end =
      kind.writeCommon(role.row->member(object), m_text, m_text + sizeof m_text);
  if (end != nullptr) m_size = static_cast<std::size_t>(end - m_text);
}

}  // namespace krofx::internal
