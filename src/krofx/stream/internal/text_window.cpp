// Filling the window, and making the working text of it.

#include "krofx/stream/internal/text_window.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "krofx/core/thread.h"
#include "krofx/reader/file/text_menders.h"
#include "krofx/reader/header/charset_choice.h"

namespace krofx::internal {

namespace {

// How much a window grows.
constexpr u32 kGrowth = 4;

}  // namespace

TextWindow::TextWindow(ByteSource& source, u32 usual, u32 most, std::size_t end)
    : m_source(source), m_room(usual), m_most(std::max(usual, most)), m_end(end), m_text({}, 0) {}

std::string_view TextWindow::Original() const {
  return m_bytes == nullptr ? std::string_view()
                            : std::string_view(m_bytes->GetBufferPtr(), m_size);
}

// Takes memory for a window of a size. What is there is copied, and the memory it was in stays.
bool TextWindow::SetRoom(u32 room) {
  OwnedBuffer bytes(new KRBuffer(room, 0));
  // The list must have room first: what it cannot take it deletes.
  if (bytes == nullptr || bytes->GetBufferPtr() == nullptr || !m_before.Append(nullptr)) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return false;
  }
  if (m_size != 0) std::memcpy(bytes->GetBufferPtr(), m_bytes->GetBufferPtr(), m_size);
  m_before.back() = std::move(m_bytes);
  m_bytes = std::move(bytes);
  m_room = room;
  return true;
}

TextWindow::Filled TextWindow::Fill() {
  if (m_bytes == nullptr && !SetRoom(m_room)) return Filled::kNoMemory;
  while (!m_isEnded && m_size < m_room) {
    const std::size_t wanted = std::min<std::size_t>(m_room - m_size, m_end - OriginalEnd());
    std::size_t count = 0;
    ByteSource::Supply supply = ByteSource::Supply::kNone;
    if (wanted != 0) supply = m_source.Read({m_bytes->GetBufferPtr() + m_size, wanted}, count);
    if (supply == ByteSource::Supply::kFailed) return Filled::kFailed;
    if (supply == ByteSource::Supply::kLater) return Filled::kLater;
    m_isEnded = supply == ByteSource::Supply::kNone;
    m_size += static_cast<u32>(count);
  }
  // At the end of the text nothing goes on.
  if (m_size == m_room && OriginalEnd() == m_end) m_isEnded = true;
  m_bytes->SetBufferSize(m_size);
  return Filled::kYes;
}

bool TextWindow::Show() {
  std::string_view shown = Original();
  // A character may be cut at the end of the window; '>' is no part of one.
  const std::size_t last =
      m_charset == nullptr || m_isEnded ? std::string_view::npos : shown.rfind('>');
  if (last != std::string_view::npos) shown = shown.substr(0, last + 1);
  m_shown = static_cast<u32>(shown.size());
  if (!m_before.Append(nullptr)) return false;
  m_before.back() = m_text.Show(shown, m_base);
  if (FindControlCharacter(shown) != shown.size() && !TakeOutControlCharacters(m_text))
    return false;
  return m_charset == nullptr || MakeUtf8(m_text, m_convertedFrom, *m_charset);
}

bool TextWindow::Extend() {
  if (m_isEnded || IsAtLimit()) return false;
  return Grow() && Fill() == Filled::kYes && Show();
}

bool TextWindow::Grow() {
  return !IsAtLimit() && SetRoom(m_room > m_most / kGrowth ? m_most : m_room * kGrowth);
}

void TextWindow::Slide(std::size_t position) {
  Drop(position < m_text.Size() ? m_text.ToOriginal(position) - m_base : m_shown);
}

bool TextWindow::Restart(std::size_t end) {
  m_end = end;
  m_size = m_shown = 0;
  m_base = 0;
  m_isEnded = false;
  m_lines = {};
  m_before.Clear();
  m_text.Show({}, 0);
  return m_source.GoTo(0);
}

void TextWindow::EndAt(std::size_t end) {
  m_end = end;
  m_size = static_cast<u32>(end - m_base);
  m_isEnded = true;
}

void TextWindow::Drop(std::size_t count) {
  m_convertedFrom = 0;
  m_lines.Pass(Original(), m_base, m_base + count);
  m_base += count;
  m_size -= static_cast<u32>(count);
  char* const bytes = m_bytes->GetBufferPtr();
  std::memmove(bytes, bytes + count, m_size);
  m_shown = 0;
  m_before.Clear();
  m_text.Show({}, m_base);
}

}  // namespace krofx::internal
