// The functions that libcurl calls while an exchange runs: to send, to receive, and after the
// server has shown its certificates.

#include <cstring>

#include "krofx/transport/curl/curl_code.h"
#include "krofx/transport/curl/internal/curl_exchange.h"
#include "krofx/transport/curl/internal/result_codes.h"

namespace krofx::internal {

namespace {

// A server that sends more header lines than this is taken to be hostile. libcurl's own limit for
// the lines before a body is higher, it has none for trailers, and its limit for a single line is
// lower.
constexpr std::size_t kHeaderLimit = std::size_t{256} * 1024;

// The lowest status of a reply that is not interim.
constexpr long kFirstFinalStatus = 200;

bool IsBlankLine(const char* line, std::size_t length) {
  return length == 0 || *line == '\r' || *line == '\n';
}

long ReplyStatus(CURL* easy) {
  long status = 0;
  curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
  return status;
}

}  // namespace

// Called between the handshake and the first byte of the request.
int CurlExchange::BeforeRequest(void* self, char*, char*, int, int) {
  auto& exchange = *static_cast<CurlExchange*>(self);
  if (!exchange.MustStop()) exchange.m_stopped = exchange.CheckCertificates();
  return exchange.MustStop() || exchange.m_stopped != 0 ? CURL_PREREQFUNC_ABORT
                                                        : CURL_PREREQFUNC_OK;
}

// The checks do not depend on whether there is a callback.
u16 CurlExchange::CheckCertificates() {
  CertificateList chain = PresentedCertificates(m_easy);
  u32 rootID = 0;
  u16 error = VYNCurlCode_Success;
  if (m_skipVerify) {
    const CertificateList leading =
        m_roots.IsEmpty() ? nullptr : ChainToAddedRoots(chain, m_roots, ChainCheck::SignaturesOnly);
    if (leading != nullptr) {
      rootID = m_roots.IdOf(sk_X509_value(leading.get(), sk_X509_num(leading.get()) - 1));
    }
  } else {
    chain = m_roots.IsEmpty() ? ChainToRootsAt(chain, SystemRoots())
                              : ChainToAddedRoots(chain, m_roots, ChainCheck::Valid);
    if (chain == nullptr) {
      error = VYNCurlCode_Untrusted;
    } else if (!NamesItsServers(sk_X509_value(chain.get(), 0)) ||
               !StapledAnswerHolds(m_easy, chain)) {
      error = VYNCurlCode_BadCertificate;
      chain.reset();
    } else {
      rootID = m_roots.IdOf(sk_X509_value(chain.get(), sk_X509_num(chain.get()) - 1));
    }
  }
  CallbackChain list(chain);
  if (list.First() == nullptr && error == VYNCurlCode_Success) error = VYNCurlCode_Untrusted;
  const u16 answer = AskCallback(list.First(), rootID, error);
  return answer != 0 ? answer : error;
}

u16 CurlExchange::AskCallback(SSLCertificateChain* chain, u32 rootID, u16 error) {
  if (m_certificateCallback == nullptr) return error;
  return m_certificateCallback(chain, rootID, error, m_userData, 0, 0);
}

std::size_t CurlExchange::GiveData(char* out, std::size_t size, std::size_t count, void* self) {
  auto& exchange = *static_cast<CurlExchange*>(self);
  // After the exchange was released its data must not be read.
  if (exchange.MustStop()) return CURL_READFUNC_ABORT;
  const std::size_t room = size * count;
  const u32 left = exchange.m_size - exchange.m_position;
  const u32 given = room < left ? static_cast<u32>(room) : left;
  if (given > 0) std::memcpy(out, exchange.m_data + exchange.m_position, given);
  exchange.m_position += given;
  return given;
}

std::size_t CurlExchange::TakeBody(char* bytes, std::size_t size, std::size_t count, void* self) {
  auto& exchange = *static_cast<CurlExchange*>(self);
  const std::size_t length = size * count;
  if (exchange.MustStop()) return 0;
  if (length > exchange.m_replyLimit - exchange.m_replyFile.Size()) {
    exchange.m_stopped = VYNCurlCode_ReplyTooLarge;
  } else if (!exchange.m_replyFile.Write(bytes, length)) {
    exchange.m_stopped = VYNCurlCode_FileFailed;
  }
  return exchange.m_stopped == 0 ? length : 0;
}

std::size_t CurlExchange::TakeHeader(char* bytes, std::size_t size, std::size_t count, void* self) {
  auto& exchange = *static_cast<CurlExchange*>(self);
  const std::size_t length = size * count;
  if (exchange.MustStop()) return 0;
  exchange.m_stopped = exchange.WriteHeader(bytes, length);
  return exchange.m_stopped == 0 ? length : 0;
}

// Takes a line; gives 0, or the code of the reason to stop.
u16 CurlExchange::WriteHeader(const char* line, std::size_t length) {
  // libcurl keeps every line, trailers as well.
  m_headerSize += length;
  if (m_headerSize > kHeaderLimit) return VYNCurlCode_ReplyTooLarge;
  // Lines after the body are trailers, which were not requested.
  if (m_part == ReplyPart::Body) return VYNCurlCode_Success;
  bool written = true;
  if (m_part == ReplyPart::Status) {
    // The lines before this one belong to an interim reply. The status line itself is not written:
    // readers expect lines with a key, a colon and a value.
    written = m_headerFile.Empty();
    m_framing = {};
    m_part = ReplyPart::Header;
  } else if (IsBlankLine(line, length)) {
    m_part = ReplyStatus(m_easy) < kFirstFinalStatus ? ReplyPart::Status : ReplyPart::Body;
  } else {
    if (!IsFramingSafe({line, length})) return VYNCurlCode_Cut;
    written = m_headerFile.Write(line, length);
  }
  return written ? VYNCurlCode_Success : VYNCurlCode_FileFailed;
}

// Only a success depends on the whole body: any other reply keeps the code of its status.
bool CurlExchange::IsFramingSafe(std::string_view line) {
  return m_framing.Take(line) || CodeOfHttpStatus(ReplyStatus(m_easy)) != VYNCurlCode_Success;
}

}  // namespace krofx::internal
