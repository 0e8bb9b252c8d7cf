// Exchanges by hand, through two files.

#include <cstring>

#include "krofx/core/buffer.h"
#include "krofx/transport/files/internal/local_file.h"
#include "krofx/transport/local/receiver_access.h"
#include "krofx/transport/local/receiver_request.h"

namespace internal = krofx::internal;

namespace {

constexpr char kRequestFile[] = "SEND.DAT";
constexpr char kReplyFile[] = "RECV.DAT";
constexpr char kPrompt[] =
    "Go to the directory that contains KVW32.EXE. "
    "There you will find a SEND.DAT file containing your requests.\n\n"
    "If you wish to continue, copy or create a RECV.DAT file and press YES.\n"
    "If you wish to cancel, press NO.";

}  // namespace

KRNetRequest* ReceiverAccess::NewNetRequest() {
  auto* const request = new ReceiverRequest;
  if (request != nullptr) request->SetAccess(this);
  return request;
}

u16 ReceiverRequest::AddTrustedRoot(const char*, u16, s16) { return 1; }

u16 ReceiverRequest::AddTrustedRootBER(const char*, u16, s16) { return 1; }

u16 ReceiverRequest::AddExpectedSSLCertID(const char*, u16) { return 1; }

u16 ReceiverRequest::AddExpectedSSLCertName(const KRString&) { return 1; }

KRNetStatus ReceiverRequest::Send(const KRString& url, KRBuffer* body) {
  m_body = body;
  if (body == nullptr) return KRNetStatus_Failed;
  char file[internal::kFileNameSize] = {};
  BuildFileSpec(kRequestFile, file);
  if (!internal::SaveToLocalFile(file, *body)) return KRNetStatus_Failed;
  return YesNoMsg(kPrompt) != 0 ? Get(url) : KRNetStatus_Failed;
}

KRNetStatus ReceiverRequest::Get(const KRString& /*url*/) {
  m_replyFile[0] = '\0';
  char file[internal::kFileNameSize] = {};
  BuildFileSpec(kReplyFile, file);
  const std::size_t length = strnlen(file, sizeof file);
  // A name that does not fit opens nothing; a part of it could open another file.
  if (length < sizeof m_replyFile) std::memcpy(m_replyFile, file, length + 1);
  internal::LocalFileSize(m_replyFile, m_replySize);
  return KRNetStatus_Success;
}

KRNetStatus ReceiverRequest::GetReplySize(u32& size) {
  if (m_replySize == 0) return KRNetStatus_NoReplySize;
  size = m_replySize;
  return KRNetStatus_Success;
}

KRNetStatus ReceiverRequest::LoadReply(KRBuffer* target) {
  const bool loaded = m_replySize != 0 && target != nullptr &&
                      internal::AppendLocalFile(m_replyFile, *target) &&
                      target->GetBufferSize() == m_replySize;
  return loaded ? KRNetStatus_Success : KRNetStatus_ReplyNotLoaded;
}

void ReceiverRequest::SetAccess(ReceiverAccess* access) { m_access = access; }

void ReceiverRequest::BuildFileSpec(const char* name, char* out) { std::strcpy(out, name); }

u16 ReceiverRequest::YesNoMsg(const char* /*text*/) { return 0; }
