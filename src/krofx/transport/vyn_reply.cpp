// What an exchange brought: the reply, its headers, its status.

#include <cstring>

#include "krofx/core/buffer.h"
#include "krofx/core/string.h"
#include "krofx/transport/local_file.h"
#include "krofx/transport/vyn_net_request.h"

using krofx::internal::AppendLocalFile;
using krofx::internal::DeleteLocalFile;

KRNetStatus VYNNetRequest::GetReplySize(u32& size) {
  if (KRNetRequest::GetReplySize(size) == KRNetStatus_Success) return KRNetStatus_Success;
  if (m_replySize == 0) return KRNetStatus_NoReplySize;
  size = m_replySize;
  return KRNetStatus_Success;
}

KRNetStatus VYNNetRequest::LoadReply(KRBuffer* target) {
  if (target == nullptr) return KRNetStatus_ReplyNotLoaded;
  if (KRNetRequest::LoadReply(target) == KRNetStatus_Success) return KRNetStatus_Success;
  if (m_replySize == 0 || !AppendLocalFile(m_replyFile, *target)) {
    return KRNetStatus_ReplyNotLoaded;
  }
  DeleteReplyFiles();
  return target->GetBufferSize() == m_replySize ? KRNetStatus_Success : KRNetStatus_ReplyNotLoaded;
}

void VYNNetRequest::DeleteReplyFiles() {
  if (!m_filesLeft) return;
  m_filesLeft = false;
  DeleteLocalFile(m_replyFile);
  DeleteLocalFile(m_headerFile);
}

void VYNNetRequest::LoadHeaders() {
  if (m_headerFile[0] != '\0') AppendLocalFile(m_headerFile, m_savedHeaders);
}

u16 VYNNetRequest::GetHeader(KRString& name, KRString& value) {
  char const* line = m_savedHeaders.GetBufferPtr();
  if (line == nullptr) return 0;
  char const* const end = line + m_savedHeaders.GetBufferSize();
  auto const find = [end](char const* from, char character) {
    auto const room = static_cast<std::size_t>(end - from);
    return static_cast<char const*>(std::memchr(from, character, room));
  };
  std::size_t const wanted = name.GetStrLength();
  for (;;) {
    char const* const colon = find(line, ':');
    if (colon == nullptr) return 0;
    char const* const lineFeed = find(line, '\n');
    if (static_cast<std::size_t>(colon - line) == wanted && strncasecmp(line, name, wanted) == 0) {
      char const* const valueEnd = find(colon, '\n');
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

u16 VYNNetRequest::GetStatus(u32& httpStatus, u32& transportError) const {
  transportError = m_lastError;
  if (m_httpStatus == 0) return 0;
  httpStatus = m_httpStatus;
  return 1;
}
