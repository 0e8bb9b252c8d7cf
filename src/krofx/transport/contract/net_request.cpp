// What a request does without a transport: it reads `file:` URLs.

#include "krofx/transport/contract/net_request.h"

#include <limits>

#include "krofx/core/buffer.h"
#include "krofx/transport/files/internal/file_url.h"
#include "krofx/transport/files/internal/local_file.h"

using krofx::internal::FileUrlToName;
using krofx::internal::LocalFile;
using krofx::internal::NameToFileUrl;

namespace {

// Bytes of the name of a file that a URL names, its NUL included.
constexpr std::size_t kUrlFileNameSize = 256;

// Opens the file that `url` names.
bool OpenFileOf(const KRString& url, LocalFile& file) {
  char name[kUrlFileNameSize];
  return FileUrlToName(name, sizeof name, url) && file.OpenToRead(name);
}

}  // namespace

KRNetRequest::~KRNetRequest() = default;

u16 KRNetRequest::SetSSLVerifyCert(u16 /*verify*/) { return 0; }

KRNetStatus KRNetRequest::Get(const KRString& url) {
  if (HasFileScheme(url) == 0) return KRNetStatus_NotFileUrl;
  m_url = url;
  return m_url.IsNull() == 0 ? KRNetStatus_Success : KRNetStatus_NoMemory;
}

KRNetStatus KRNetRequest::SendPlusHeaders(const KRString& url, KRBuffer* body, char* /*headers*/) {
  return Send(url, body);
}

KRNetStatus KRNetRequest::SendPlusHeadersContent(const KRString& url, KRBuffer* body, char* headers,
                                                 const char* /*contentType*/) {
  return SendPlusHeaders(url, body, headers);
}

KRNetStatus KRNetRequest::Abort() { return KRNetStatus_AbortNotSupported; }

KRNetStatus KRNetRequest::GetReplySize(u32& size) {
  LocalFile file;
  const bool known = OpenFileOf(m_url, file) && file.Size(size);
  return known ? KRNetStatus_Success : KRNetStatus_NoReplySize;
}

KRNetStatus KRNetRequest::LoadReply(KRBuffer* target) {
  LocalFile file;
  u32 size = 0;
  if (target == nullptr || !OpenFileOf(m_url, file) || !file.Size(size)) {
    return KRNetStatus_ReplyNotLoaded;
  }
  if (target->AllocateTo(size) != KRBufferOK || target->GetBufferPtr() == nullptr) {
    return KRNetStatus_NoMemory;
  }
  const u32 got = file.Read(target->GetBufferPtr(), size);
  // SetBufferSize(0) means the cursor's position.
  if (got == 0) target->SetBufferOffset(0);
  target->SetBufferSize(got);
  return KRNetStatus_Success;
}

u16 KRNetRequest::SetSaveHeaders(u16 /*save*/) { return 0; }

u16 KRNetRequest::GetHeader(KRString& /*name*/, KRString& /*value*/) { return 0; }

u16 KRNetRequest::GetStatus(u32& /*httpStatus*/, u32& /*transportError*/) const { return 0; }

u16 KRNetRequest::SetTimeout(s32 /*seconds*/) { return 0; }

u16 KRNetRequest::HasFileScheme(const char* url) {
  return krofx::internal::HasFileScheme(url) ? 1 : 0;
}

u16 KRNetRequest::ConvertFileURLToLocalFileName(char* out, const char* url) {
  constexpr std::size_t kAnyRoom = std::numeric_limits<std::size_t>::max();
  return out != nullptr && FileUrlToName(out, kAnyRoom, url) ? 1 : 0;
}

u16 KRNetRequest::ConvertLocalFileNameToFileURL(char* out, const char* name) {
  if (out == nullptr || name == nullptr) return 0;
  NameToFileUrl(out, name);
  return 1;
}
