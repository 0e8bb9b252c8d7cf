// The two ways to read a buffer's text, as sources for the scanners, which are templates over them.
//
// PlainText reads the memory of a plain KRBuffer; BufferText reads each character of a buffer of a
// derived class through its virtual GetCh. Both give the same results: NUL outside the content and
// at its end, and a search stops at the first NUL. A position is a signed 32-bit number, so every
// text ends at its largest value at the latest.

#ifndef KROFX_PARSE_INTERNAL_TEXT_SOURCE_H_
#define KROFX_PARSE_INTERNAL_TEXT_SOURCE_H_

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>

#include "krofx/core/buffer.h"
#include "krofx/core/internal/byte_search.h"
#include "krofx/core/internal/wipe.h"
#include "krofx/core/string.h"
#include "krofx/core/types.h"
#include "krofx/parse/internal/search_memory.h"

namespace krofx::internal {

/// Every text ends at this position at the latest.
inline constexpr s32 kLastPosition = std::numeric_limits<s32>::max();

/// A text in memory.
class PlainText {
 public:
  explicit PlainText(const KRBuffer& buffer) : m_bytes(buffer.GetBufferPtr()) {
    const u32 size = std::min(buffer.GetBufferSize(), buffer.GetBufferAllocation());
    m_size = m_bytes == nullptr ? 0 : static_cast<s32>(std::min(size, u32{kLastPosition}));
  }

  const char* Bytes() const { return m_bytes; }
  s32 Size() const { return m_size; }

  /// @return the character at a position, NUL outside the content.
  char At(s32 position) const {
    return static_cast<u32>(position) < static_cast<u32>(m_size) ? m_bytes[position] : '\0';
  }

  /// Finds `character` from `start` on.
  /// @param place takes its position, or that of the first NUL before it, or the content's end.
  /// @return false when it was not found.
  bool Find(s32 start, char character, s32& place) const {
    place = start;
    if (static_cast<u32>(start) >= static_cast<u32>(m_size)) return false;
    const char* end = m_bytes + m_size;
    const char* at = FindOrNul(m_bytes + start, end, character);
    place = static_cast<s32>(at - m_bytes);
    return at != end && *at == character;
  }

  /// @return the position from `start` on at which a tag's name ends.
  s32 NameEnd(s32 start) const {
    if (static_cast<u32>(start) >= static_cast<u32>(m_size)) return start;
    return static_cast<s32>(FindNameEnd(m_bytes + start, m_bytes + m_size) - m_bytes);
  }

  /// Calls `use` with a view of a stretch of the content that has no NUL, and returns its result.
  template <class Use>
  auto View(s32 start, u16 length, Use use) const {
    if (static_cast<u32>(start) >= static_cast<u32>(m_size)) return use(std::string_view());
    return use(std::string_view(m_bytes + start,
                                static_cast<std::size_t>(std::min<s32>(length, m_size - start))));
  }

 private:
  const char* m_bytes;
  s32 m_size;
};

/// A text that is read through a buffer's virtual GetCh.
class BufferText {
 public:
  explicit BufferText(KRBuffer& buffer) : m_buffer(&buffer) {}

  /// @return null: the content of a derived buffer cannot be identified.
  const char* Bytes() const { return nullptr; }
  s32 Size() const { return 0; }

  /// As PlainText::At.
  char At(s32 position) const {
    return position >= 0 && position < kLastPosition ? m_buffer->GetCh(position) : '\0';
  }

  /// As PlainText::Find.
  bool Find(s32 start, char character, s32& place) const {
    place = start;
    char current = At(place);
    while (current != character && current != '\0') current = At(++place);
    return current != '\0';
  }

  /// As PlainText::NameEnd.
  s32 NameEnd(s32 start) const {
    while (!EndsName(At(start))) ++start;
    return start;
  }

  /// As PlainText::View, over a copy that is overwritten afterwards, since it may be a secret.
  template <class Use>
  auto View(s32 start, u16 length, Use use) const {
    if (length <= kSmall) {
      char copy[kSmall];
      std::size_t count = 0;
      while (count < length && (copy[count] = At(start + static_cast<s32>(count))) != '\0') ++count;
      auto answer = use(std::string_view(copy, count));
      Wipe(copy, sizeof copy);
      return answer;
    }
    KRString copy;
    const u16 count = m_buffer->GetData(copy, start, length);
    auto answer = use(std::string_view(copy, count));
    copy.Clear('\0');
    return answer;
  }

 private:
  // Tags and most values: no allocation for them.
  static constexpr u16 kSmall = 64;

  KRBuffer* m_buffer;
};

/// Calls `use` with the source for a buffer's class, and returns its result.
template <class Use>
auto WithText(KRBuffer& buffer, Use use) {
  if (buffer.HasPlainBytes() != 0) return use(PlainText(buffer));
  return use(BufferText(buffer));
}

/// As above, for searches that are remembered; those of another text are forgotten first.
template <class Use>
auto WithText(KRBuffer& buffer, SearchMemory& searches, Use use) {
  return WithText(buffer, [&searches, &use](const auto& text) {
    searches.KeepOnlyFor(text.Bytes(), text.Size());
    return use(text);
  });
}

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_TEXT_SOURCE_H_
