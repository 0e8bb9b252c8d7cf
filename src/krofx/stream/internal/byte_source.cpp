// Reading from memory, from a buffer's GetCh, and from a file.

#include "krofx/stream/internal/byte_source.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace krofx::internal {

ByteSource::Supply ByteSource::Read(std::span<char> room, std::size_t& count) {
  count = 0;
  if (m_file != nullptr) {
    count = std::fread(room.data(), 1, room.size(), m_file.get());
    if (count != 0) return Supply::kBytes;
    return std::ferror(m_file.get()) != 0 ? Supply::kFailed : Supply::kNone;
  }
  if (m_buffer != nullptr) {
    while (count < room.size() && m_position < std::numeric_limits<s32>::max()) {
      const char character = m_buffer->GetCh(m_position);
      if (character == '\0') break;
      room[count++] = character;
      ++m_position;
    }
    return count == 0 ? Supply::kNone : Supply::kBytes;
  }
  count = std::min(room.size(), m_bytes.size());
  if (count == 0) return m_all ? Supply::kNone : Supply::kLater;
  std::memcpy(room.data(), m_bytes.data(), count);
  m_bytes.remove_prefix(count);
  return Supply::kBytes;
}

}  // namespace krofx::internal
