// Reads the files of a reply, and removes them.

#include "krofx/transport/exchange/internal/reply_files.h"

#include <strings.h>

#include <cstring>

namespace krofx::internal {

namespace {

// Copies a name from a record; the NUL may be missing there.
template <std::size_t kRoom>
void CopyName(char (&to)[kRoom], const char* from, std::size_t size) {
  const std::size_t length = strnlen(from, size < kRoom ? size : kRoom - 1);
  std::memcpy(to, from, length);
  to[length] = '\0';
}

const char* Find(const char* from, const char* end, char character) {
  return static_cast<const char*>(
      std::memchr(from, character, static_cast<std::size_t>(end - from)));
}

}  // namespace

void ReplyFiles::Take(const VYFinishedRecord& record) {
  CopyName(m_replyFile, record.replyFile, sizeof record.replyFile);
  CopyName(m_headerFile, record.headerFile, sizeof record.headerFile);
  m_filesLeft = true;
  LocalFileSize(m_replyFile, m_replySize);
}

void ReplyFiles::Delete() {
  if (!m_filesLeft) return;
  m_filesLeft = false;
  DeleteLocalFile(m_replyFile);
  DeleteLocalFile(m_headerFile);
}

void ReplyFiles::Drop() {
  Delete();
  m_replySize = 0;
}

void ReplyFiles::ClearNames() {
  if (m_filesLeft && m_replySize != 0) m_unnamed.OpenToRead(m_replyFile);
  Delete();
  m_replyFile[0] = '\0';
  m_headerFile[0] = '\0';
}

void ReplyFiles::Forget() {
  ClearNames();
  m_unnamed.Close();
  m_replySize = 0;
}

bool ReplyFiles::Load(KRBuffer& target) {
  if (m_replySize == 0) return false;
  if (!m_unnamed.IsOpen() && !m_unnamed.OpenToRead(m_replyFile)) return false;
  const bool loaded = m_unnamed.AppendTo(target);
  // After exhausted memory a later call may succeed, if the file can still be reached.
  if (loaded || m_filesLeft) m_unnamed.Close();
  if (!loaded) return false;
  Delete();
  return target.GetBufferSize() == m_replySize;
}

void ReplyFiles::SaveHeaders() {
  if (m_headerFile[0] != '\0') AppendLocalFile(m_headerFile, m_savedHeaders);
}

u16 ReplyFiles::FindHeader(const KRString& name, KRString& value) const {
  const char* line = m_savedHeaders.GetBufferPtr();
  if (line == nullptr) return 0;
  const char* const end = line + m_savedHeaders.GetBufferSize();
  const std::size_t wanted = name.GetStrLength();
  for (;;) {
    const char* const colon = Find(line, end, ':');
    if (colon == nullptr) return 0;
    const char* const lineFeed = Find(line, end, '\n');
    if (static_cast<std::size_t>(colon - line) == wanted && strncasecmp(line, name, wanted) == 0) {
      const char* const valueEnd = Find(colon, end, '\n');
      const auto length =
          static_cast<std::size_t>((valueEnd == nullptr ? end : valueEnd) - (colon + 1));
      if (length > KRString::kMaxLength) return 0;
      if (length != 0) return value.Assign(colon + 1, static_cast<u16>(length));
      value = "";
      return 1;
    }
    if (lineFeed == nullptr) return 0;
    line = lineFeed + 1;
  }
}

}  // namespace krofx::internal
