// Makes, writes and removes temporary files.

#include "krofx/transport/curl/internal/temporary_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace krofx::internal {

namespace {

bool IsEmptyText(const char* text) { return text == nullptr || *text == '\0'; }

}  // namespace

TemporaryFile::~TemporaryFile() {
  Close();
  if (m_name[0] != '\0') unlink(m_name);
}

bool TemporaryFile::Create(const char* folder, const char* suffix) {
  if (IsEmptyText(folder)) folder = "/tmp";
  const std::size_t folderLength = std::strlen(folder);
  const char last = folder[folderLength - 1];
  const char* const separator = last == '/' || last == '\\' ? "" : "/";
  const int length =
      std::snprintf(m_name, sizeof m_name, "%s%skrofx-XXXXXX%s", folder, separator, suffix);
  if (length < 0 || static_cast<std::size_t>(length) >= sizeof m_name) {
    m_name[0] = '\0';
    return false;
  }
  for (char* at = m_name; *at != '\0'; ++at) {
    if (*at == '\\') *at = '/';
  }
  m_file = mkostemps(m_name, static_cast<int>(std::strlen(suffix)), O_CLOEXEC);
  if (m_file < 0) m_name[0] = '\0';
  return m_file >= 0;
}

bool TemporaryFile::Write(const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = write(m_file, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
    m_size += static_cast<std::size_t>(written);
  }
  return true;
}

bool TemporaryFile::Empty() {
  m_size = 0;
  return ftruncate(m_file, 0) == 0 && lseek(m_file, 0, SEEK_SET) == 0;
}

bool TemporaryFile::Close() {
  if (m_file < 0) return true;
  const int result = close(m_file);
  m_file = -1;
  return result == 0;
}

void TemporaryFile::HandOver(char* out) {
  Close();
  std::memcpy(out, m_name, sizeof m_name);
  m_name[0] = '\0';
}

}  // namespace krofx::internal
