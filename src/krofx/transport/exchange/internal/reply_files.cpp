// Reading the files of a reply, and removing them.

#include "krofx/transport/exchange/internal/reply_files.h"

#include <strings.h>

#include <cstring>

namespace krofx::internal {

namespace {

// Copies a name out of a record, which may lack its NUL.
template <std::size_t kRoom>
void CopyName(char (&to)[kRoom], char const* from, std::size_t size) {
  std::size_t const length = strnlen(from, size < kRoom ? size : kRoom - 1);
  std::memcpy(to, from, length);
  to[length] = '\0';
}

char const* Find(char const* from, char const* end, char character) {
  return static_cast<char const*>(
      std::memchr(from, character, static_cast<std::size_t>(end - from)));
}

}  // namespace

void ReplyFiles::Take(VYFinishedRecord const& record) {
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
  bool const loaded = m_unnamed.AppendTo(target);
  // Without memory a later call may do better, if the file can still be reached.
  if (loaded || m_filesLeft) m_unnamed.Close();
  if (!loaded) return false;
  Delete();
  return target.GetBufferSize() == m_replySize;
}

void ReplyFiles::SaveHeaders() {
  if (m_headerFile[0] != '\0') AppendLocalFile(m_headerFile, m_savedHeaders);
}

u16 ReplyFiles::FindHeader(KRString const& name, KRString& value) const {
  char const* line = m_savedHeaders.GetBufferPtr();
  if (line == nullptr) return 0;
  char const* const end = line + m_savedHeaders.GetBufferSize();
  std::size_t const wanted = name.GetStrLength();
  for (;;) {
    char const* const colon = Find(line, end, ':');
    if (colon == nullptr) return 0;
    char const* const lineFeed = Find(line, end, '\n');
    if (static_cast<std::size_t>(colon - line) == wanted && strncasecmp(line, name, wanted) == 0) {
      char const* const valueEnd = Find(colon, end, '\n');
      auto const length =
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
