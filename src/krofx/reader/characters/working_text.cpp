// Making a text anew.

#include "krofx/reader/characters/working_text.h"

#include <algorithm>
#include <utility>

namespace krofx::internal {

TextEdit::TextEdit(WorkingText& text)
    : m_text(text), m_new(new KRBuffer(text.Size() + 1, 65536)), m_failed(m_new == nullptr) {}

bool TextEdit::Write(std::string_view bytes) {
  return m_new->WriteLarge(bytes.data(), static_cast<u32>(bytes.size())) == KRBufferOK;
}

void TextEdit::Keep(u32 from, u32 to) {
  while (from < to && !m_failed) {
    const OffsetMap::Stretch stretch = m_text.m_map.StretchAt(from);
    const OffsetMap::Stretch* const next = m_text.m_map.NextAfter(from);
    const u32 end = next == nullptr ? to : std::min(to, next->position);
    m_failed = !m_map.GoOnAt(m_new->GetBufferSize(), stretch.original, stretch.step,
                             stretch.originalStep) ||
               !Write(m_text.Bytes().substr(from, end - from));
    from = end;
  }
}

void TextEdit::Put(std::string_view bytes, u32 from, u8 width) {
  if (m_failed) return;
  m_failed = !m_map.GoOnAt(m_new->GetBufferSize(), m_text.ToOriginal(from),
                           static_cast<u8>(bytes.size()), width) ||
             !Write(bytes);
}

bool TextEdit::Finish() {
  if (m_failed || m_new->GetBufferPtr() == nullptr) return false;
  m_text.m_before = std::move(m_text.m_own);
  m_text.m_own = std::move(m_new);
  m_text.m_bytes = {m_text.m_own->GetBufferPtr(), m_text.m_own->GetBufferSize()};
  m_text.m_map = std::move(m_map);
  return true;
}

}  // namespace krofx::internal
