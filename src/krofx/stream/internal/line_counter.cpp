// Counting line ends: LF, CR LF and CR.

#include "krofx/stream/internal/line_counter.h"

#include "krofx/core/internal/byte_search.h"

namespace krofx::internal {

void LineCounter::Count(Mark& mark, std::string_view part, std::size_t base, std::size_t offset) {
  const char* const begin = part.data() + (mark.offset - base);
  const char* const end = part.data() + (offset - base);
  for (const char* at = begin; at != end;) {
    at = SearchBytes(
        at, end, [](ByteBlock block) { return block.Equal('\n') | block.Equal('\r'); },
        [](char c) { return c == '\n' || c == '\r'; });
    if (at == end) break;
    const bool joined = *at == '\n' && (at == begin ? mark.afterReturn : at[-1] == '\r');
    ++at;
    if (!joined) ++mark.line;
    mark.lineStart = base + static_cast<std::size_t>(at - part.data());
  }
  if (begin != end) mark.afterReturn = end[-1] == '\r';
  mark.offset = offset;
}

Place LineCounter::Find(std::string_view part, std::size_t base, std::size_t offset) {
  if (offset < m_last.offset) m_last = m_passed;
  if (offset > m_last.offset) Count(m_last, part, base, offset);
  return {offset, m_last.line, offset - m_last.lineStart + 1};
}

void LineCounter::Pass(std::string_view part, std::size_t base, std::size_t offset) {
  if (offset >= m_last.offset) {
    Count(m_last, part, base, offset);
    m_passed = m_last;
  } else {
    Count(m_passed, part, base, offset);
  }
}

}  // namespace krofx::internal
