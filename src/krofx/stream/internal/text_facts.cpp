// Walks over a text in parts.

#include "krofx/stream/internal/text_facts.h"

#include <algorithm>

#include "krofx/core/thread.h"
#include "krofx/reader/characters/references.h"
#include "krofx/reader/file/text_bounds.h"
#include "krofx/reader/file/text_menders.h"
#include "krofx/reader/header/header.h"

namespace krofx::internal {

namespace {

// What is in the body, which begins at an offset.
std::string_view InBody(std::string_view part, std::size_t base, std::size_t body) {
  return part.substr(std::min(part.size(), body > base ? body - base : 0));
}

}  // namespace

bool TextParts::Next() {
  if (!m_part.empty()) m_window.Drop(m_part.size());
  m_part = {};
  for (;;) {
    m_failed = m_window.Fill() != TextWindow::Filled::kYes;
    if (m_failed) return false;
    const std::string_view bytes = m_window.Original();
    const std::size_t last = m_window.IsPart() ? bytes.rfind('>') : std::string_view::npos;
    if (last == std::string_view::npos && m_window.IsPart() && m_window.Grow()) continue;
    m_part = bytes.substr(0, last == std::string_view::npos ? last : last + 1);
    return !m_part.empty();
  }
}

std::string_view TextParts::WithoutControls(std::string_view bytes) {
  if (FindControlCharacter(bytes) == bytes.size()) return bytes;
  m_text.Show(bytes, 0);
  if (!TakeOutControlCharacters(m_text)) {
    KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    m_failed = true;
  }
  return m_text.Bytes();
}

bool GatherFacts(TextParts& parts, std::size_t body, TextFacts& facts) {
  bool inBody = false;
  while (facts.end == TextWindow::kNoEnd && parts.Next()) {
    const std::size_t base = parts.Base();
    std::string_view bytes = parts.Original();
    if (const std::size_t end = FindTextEndInPart(bytes, inBody); end != std::string_view::npos) {
      facts.end = base + end;
      bytes = bytes.substr(0, end);
    }
    const std::size_t control = FindControlCharacter(bytes);
    const std::size_t last = bytes.rfind('>');
    if (!facts.hasControl && last != std::string_view::npos && control < last) {
      facts.hasControl = true;
      facts.control = parts.PlaceOf(base + control);
    }
    facts.isSecondVersion = facts.isSecondVersion || HasSecondVersion(parts.WithoutControls(bytes));
    const std::string_view ofBody = InBody(bytes, base, body);
    if (!HasHighBytes(ofBody)) continue;
    if (!facts.high.Any()) {
      const auto* const first = std::find_if(ofBody.begin(), ofBody.end(), [](char c) {
        return static_cast<unsigned char>(c) >= 0x80;
      });
      facts.firstHigh =
          parts.PlaceOf(base + bytes.size() - static_cast<std::size_t>(ofBody.end() - first));
    }
    facts.high.Count(parts.WithoutControls(ofBody));
  }
  return !parts.HasFailed();
}

bool FindForeignReference(TextParts& parts, std::size_t body, const Charset& charset, bool& found) {
  found = false;
  while (!found && parts.Next()) {
    const std::string_view ofBody = InBody(parts.Original(), parts.Base(), body);
    if (ofBody.find('&') == std::string_view::npos) continue;
    found = HasForeignReference(parts.WithoutControls(ofBody), charset);
  }
  return !parts.HasFailed();
}

}  // namespace krofx::internal
