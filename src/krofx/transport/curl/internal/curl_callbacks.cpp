// What libcurl calls while an exchange runs: to send, to receive, and once the server has shown its
// certificates.

#include <cstdio>
#include <cstring>

#include "krofx/transport/curl/curl_code.h"
#include "krofx/transport/curl/internal/curl_exchange.h"

namespace krofx::internal {

namespace {

// Servers that send more header lines than this mean no good.
constexpr std::size_t kHeaderLimit = 1U << 20U;

bool IsStatusLine(char const* line, std::size_t length) {
  static constexpr char kStart[] = "HTTP/";
  return length >= sizeof kStart - 1 && std::memcmp(line, kStart, sizeof kStart - 1) == 0;
}

bool IsBlankLine(char const* line, std::size_t length) {
  return length == 0 || *line == '\r' || *line == '\n';
}

}  // namespace

// Comes behind the handshake, before the first byte of the request.
int CurlExchange::BeforeRequest(void* self, char*, char*, int, int) {
  auto& exchange = *static_cast<CurlExchange*>(self);
  if (!exchange.MustStop()) exchange.m_stopped = exchange.AskAboutCertificates();
  return exchange.MustStop() || exchange.m_stopped != 0 ? CURL_PREREQFUNC_ABORT
                                                        : CURL_PREREQFUNC_OK;
}

u16 CurlExchange::AskAboutCertificates() {
  if (m_certificateCallback == nullptr) return VYNCurlCode_Success;
  CertificateList chain = PresentedCertificates(m_easy);
  u32 rootID = 0;
  u16 error = VYNCurlCode_Success;
  if (m_skipVerify) {
    CertificateList const leading =
        m_roots.IsEmpty() ? nullptr : ChainToAddedRoots(chain, m_roots, ChainCheck::SignaturesOnly);
    if (leading != nullptr) {
      rootID = m_roots.IdOf(sk_X509_value(leading.get(), sk_X509_num(leading.get()) - 1));
    }
  } else {
    chain = m_roots.IsEmpty() ? ChainToRootsAt(chain, SystemRoots())
                              : ChainToAddedRoots(chain, m_roots, ChainCheck::Valid);
    if (chain == nullptr) {
      error = VYNCurlCode_Untrusted;
    } else {
      rootID = m_roots.IdOf(sk_X509_value(chain.get(), sk_X509_num(chain.get()) - 1));
    }
  }
  CallbackChain list(chain);
  if (list.First() == nullptr) error = VYNCurlCode_Untrusted;
  u16 const answer = AskCallback(list.First(), rootID, error);
  return answer != 0 ? answer : error;
}

u16 CurlExchange::AskCallback(SSLCertificateChain* chain, u32 rootID, u16 error) {
  if (m_certificateCallback == nullptr) return error;
  return m_certificateCallback(chain, rootID, error, m_userData, 0, 0);
}

std::size_t CurlExchange::GiveData(char* out, std::size_t size, std::size_t count, void* self) {
  auto& exchange = *static_cast<CurlExchange*>(self);
  // The data is no longer ours to read once the exchange was given back.
  if (exchange.MustStop()) return CURL_READFUNC_ABORT;
  std::size_t const room = size * count;
  u32 const left = exchange.m_size - exchange.m_position;
  u32 const given = room < left ? static_cast<u32>(room) : left;
  if (given > 0) std::memcpy(out, exchange.m_data + exchange.m_position, given);
  exchange.m_position += given;
  return given;
}

int CurlExchange::Rewind(void* self, curl_off_t offset, int origin) {
  auto& exchange = *static_cast<CurlExchange*>(self);
  if (origin != SEEK_SET || offset < 0 || offset > static_cast<curl_off_t>(exchange.m_size)) {
    return CURL_SEEKFUNC_FAIL;
  }
  exchange.m_position = static_cast<u32>(offset);
  return CURL_SEEKFUNC_OK;
}

std::size_t CurlExchange::TakeBody(char* bytes, std::size_t size, std::size_t count, void* self) {
  auto& exchange = *static_cast<CurlExchange*>(self);
  std::size_t const length = size * count;
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
  std::size_t const length = size * count;
  if (exchange.MustStop()) return 0;
  if (IsBlankLine(bytes, length)) return length;
  bool written;
  if (IsStatusLine(bytes, length)) {
    // What came before belongs to an interim reply. The line itself is left out: readers take lines
    // of a key, a colon and a value.
    written = exchange.m_headerFile.Empty();
  } else {
    if (length > kHeaderLimit - exchange.m_headerFile.Size()) {
      exchange.m_stopped = VYNCurlCode_ReplyTooLarge;
      return 0;
    }
    written = exchange.m_headerFile.Write(bytes, length);
  }
  if (!written) exchange.m_stopped = VYNCurlCode_FileFailed;
  return written ? length : 0;
}

}  // namespace krofx::internal
