// Reading from memory, from a buffer's GetCh, and from a file.

#include "krofx/stream/internal/byte_source.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace krofx::internal {

void ByteSource::SetFile(OpenFile file) {
  m_file = std::move(file);
  m_start = std::ftell(m_file.get());
  if (m_start >= 0 && std::fseek(m_file.get(), m_start, SEEK_SET) != 0) m_start = -1;
}

bool ByteSource::GoTo(std::size_t position) {
  m_position = position;
  if (m_file != nullptr) {
    return std::fseek(m_file.get(), m_start + static_cast<long>(position), SEEK_SET) == 0;
  }
  if (m_buffer == nullptr) m_bytes = m_whole.substr(std::min(position, m_whole.size()));
  return true;
}

ByteSource::Supply ByteSource::Read(std::span<char> room, std::size_t& count) {
  const Supply supply = ReadOn(room, count);
  m_position += count;
  return supply;
}

bool ByteSource::HasAhead(char character, bool passesNul) {
  char block[4096];
  std::size_t count = 0;
  while (Read(block, count) == Supply::kBytes) {
    const std::string_view bytes(block, count);
    const std::size_t end = passesNul ? std::string_view::npos : bytes.find('\0');
    if (bytes.substr(0, end).find(character) != std::string_view::npos) return true;
    if (end != std::string_view::npos) return false;
  }
  return false;
}

ByteSource::Supply ByteSource::ReadOn(std::span<char> room, std::size_t& count) {
  count = 0;
  if (m_file != nullptr) {
    count = std::fread(room.data(), 1, room.size(), m_file.get());
    if (count != 0) return Supply::kBytes;
    return std::ferror(m_file.get()) != 0 ? Supply::kFailed : Supply::kNone;
  }
  if (m_buffer != nullptr) {
    constexpr auto kMost = static_cast<std::size_t>(std::numeric_limits<s32>::max());
    while (count < room.size() && m_position + count < kMost) {
      const char character = m_buffer->GetCh(static_cast<s32>(m_position + count));
      if (character == '\0') break;
      room[count++] = character;
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
