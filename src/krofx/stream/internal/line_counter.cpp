// Counting line ends: LF, CR LF and CR.

#include "krofx/stream/internal/line_counter.h"

#include "krofx/core/types.h"

namespace krofx::internal {

namespace {

bool IsLineEnd(char character) { return character == '\n' || character == '\r'; }

// Whether a line ends with the character at `at`, which has one before it. A line feed after a
// carriage return ends none of its own. Without a branch, so that a compiler can do many at a time.
bool EndsLine(const char* at) { return (*at == '\r') | ((*at == '\n') & (at[-1] != '\r')); }

// How many lines end in [at, end), which has a character before it.
std::size_t CountLineEnds(const char* at, const char* end) {
  constexpr std::ptrdiff_t kBlock = 128;
  std::size_t count = 0;
  for (; end - at >= kBlock; at += kBlock) {
    u8 some = 0;
    for (std::ptrdiff_t i = 0; i < kBlock; ++i) some = static_cast<u8>(some + EndsLine(at + i));
    count += some;
  }
  for (; at != end; ++at) count += EndsLine(at);
  return count;
}

}  // namespace

void LineCounter::Count(Mark& mark, std::string_view part, std::size_t base, std::size_t offset) {
  const char* const begin = part.data() + (mark.offset - base);
  const char* const end = part.data() + (offset - base);
  mark.offset = offset;
  if (begin == end) return;
  const bool joined = *begin == '\n' && mark.afterReturn;
  if (IsLineEnd(*begin) && !joined) ++mark.line;
  mark.line += CountLineEnds(begin + 1, end);
  mark.afterReturn = end[-1] == '\r';
  const char* last = end;
  while (last != begin && !IsLineEnd(last[-1])) --last;
  if (last != begin) mark.lineStart = base + static_cast<std::size_t>(last - part.data());
}

Place LineCounter::Find(std::string_view part, std::size_t base, std::size_t offset) {
  if (offset < m_last.offset) m_last = offset < m_before.offset ? m_passed : m_before;
  if (offset > m_last.offset) {
    m_before = m_last;
    Count(m_last, part, base, offset);
  }
  return {offset, m_last.line, offset - m_last.lineStart + 1};
}

void LineCounter::Pass(std::string_view part, std::size_t base, std::size_t offset) {
  if (offset >= m_last.offset) {
    Count(m_last, part, base, offset);
    m_passed = m_last;
  } else {
    Count(m_passed, part, base, offset);
  }
  m_before = m_passed;
}

}  // namespace krofx::internal
