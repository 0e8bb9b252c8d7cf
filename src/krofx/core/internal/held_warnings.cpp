// Holds warnings back, and logs them at the end.

#include "krofx/core/internal/held_warnings.h"

#include <utility>

namespace krofx::internal {

HeldWarnings::HeldWarnings() : m_logger(KRParseLogger::TheKRParseLogger()) {
  if (m_logger != nullptr) m_outer = std::exchange(m_logger->m_holder, this);
}

HeldWarnings::~HeldWarnings() {
  if (m_logger == nullptr) return;
  m_logger->m_holder = m_outer;
  for (const std::optional<Held>& held : m_held) {
    if (!held) continue;
    m_logger->AppendParseException(held->warning, held->value, held->tagText, KRTag_None,
                                   held->object);
  }
}

void HeldWarnings::Drop() {
  for (std::optional<Held>& held : m_held) held.reset();
}

bool HeldWarnings::Take(KRParseWarning warning, const KRString& value, const KRString& tagText,
                        KRDataObj* object) {
  for (std::optional<Held>& held : m_held) {
    if (held) continue;
    held.emplace(Held{warning, value, tagText, object});
    return true;
  }
  return false;
}

}  // namespace krofx::internal
