// The life of an exchange: its parameters, its progress, and how it ends.

#include "krofx/transport/curl/internal/curl_exchange.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "krofx/transport/curl/curl_code.h"
#include "krofx/transport/curl/internal/result_codes.h"
#include "krofx/transport/curl/internal/time_limit.h"

namespace krofx::internal {

namespace {

constexpr char kDefaultContentType[] = "application/x-ofx";

// The part of a URL before its path, after the scheme.
std::string_view AuthorityOf(std::string_view url) {
  url.remove_prefix(std::min(url.find(':') + 1, url.size()));
  url.remove_prefix(std::min(url.find_first_not_of('/'), url.size()));
  return url.substr(0, url.find_first_of("/?#"));
}

// Whether programs read different hosts from a URL: for some a backslash or a bracket ends the
// host, and libcurl takes it for a part of the user. What one program checked must be where this
// one connects to.
bool IsHostInDoubt(std::string_view url) {
  const std::string_view authority = AuthorityOf(url);
  const std::size_t at = authority.rfind('@');
  const std::string_view user = authority.substr(0, at == std::string_view::npos ? 0 : at);
  return authority.find('\\') != std::string_view::npos ||
         user.find_first_of("[]") != std::string_view::npos;
}

u32 Saturated(curl_off_t count) {
  if (count < 0) return 0;
  return count > UINT32_MAX ? UINT32_MAX : static_cast<u32>(count);
}

curl_off_t CountInfo(CURL* easy, CURLINFO info) {
  curl_off_t value = -1;
  curl_easy_getinfo(easy, info, &value);
  return value;
}

bool MemoryIsLeft() {
  constexpr std::size_t kPlenty = std::size_t{512} * 1024;
  void* const block = Allocate(kPlenty);
  Free(block);
  return block != nullptr;
}

long LongInfo(CURL* easy, CURLINFO info) {
  long value = 0;
  curl_easy_getinfo(easy, info, &value);
  return value;
}

// Why a certificate was refused: a proxy's, which is checked first, or else the server's.
long VerifyError(CURL* easy) {
  const long ofProxy = LongInfo(easy, CURLINFO_PROXY_SSL_VERIFYRESULT);
  return ofProxy != 0 ? ofProxy : LongInfo(easy, CURLINFO_SSL_VERIFYRESULT);
}

}  // namespace

CurlExchange::~CurlExchange() {
  curl_easy_cleanup(m_easy);
  curl_url_cleanup(m_url);
}

u16 CurlExchange::Create(const ExchangeParameters& parameters, const CurlSettings& settings) {
  if (parameters.url == nullptr || (parameters.data == nullptr && parameters.size != 0)) {
    return VYNCurlCode_BadArgument;
  }
  m_settings = &settings;
  m_replyLimit = settings.replyLimit;
  m_data = parameters.data;
  m_size = parameters.size;
  m_isSend = parameters.isSend;
  m_callback = parameters.callback;
  m_userData = parameters.userData;
  // libcurl's own default is the content type of a form.
  const u16 code = m_headers.Set(m_isSend ? kDefaultContentType : nullptr, nullptr);
  if (code != VYNCurlCode_Success) return code;
  ReadUrl(parameters.url);
  if (m_verdict == VYNCurlCode_NoMemory) return m_verdict;
  return m_replyFile.Create(parameters.tempPath, ".reply") &&
                 m_headerFile.Create(parameters.tempPath, ".header")
             ? VYNCurlCode_Success
             : VYNCurlCode_FileFailed;
}

// The URL must have a scheme: libcurl would otherwise assume plain http.
void CurlExchange::ReadUrl(const char* url) {
  m_url = curl_url();
  if (m_url == nullptr) {
    m_verdict = VYNCurlCode_NoMemory;
    return;
  }
  const CURLUcode result = curl_url_set(m_url, CURLUPART_URL, url, 0);
  if (result != CURLUE_OK) {
    m_verdict = result == CURLUE_OUT_OF_MEMORY        ? VYNCurlCode_NoMemory
                : result == CURLUE_UNSUPPORTED_SCHEME ? VYNCurlCode_UnsupportedScheme
                                                      : VYNCurlCode_MalformedUrl;
    return;
  }
  char* scheme = nullptr;
  if (curl_url_get(m_url, CURLUPART_SCHEME, &scheme, 0) != CURLUE_OK) {
    m_verdict = VYNCurlCode_NoMemory;
    return;
  }
  m_isHttps = std::strcmp(scheme, "https") == 0;
  if (!m_isHttps && std::strcmp(scheme, "http") != 0) {
    m_verdict = VYNCurlCode_UnsupportedScheme;
  } else if (IsHostInDoubt(url)) {
    m_verdict = VYNCurlCode_MalformedUrl;
  }
  curl_free(scheme);
}

u16 CurlExchange::SetHttp(u16 post, const char* contentType, const char* extraHeaders,
                          s32 timeout) {
  if ((post != 0) != m_isSend) return VYNCurlCode_BadArgument;
  m_timeout = timeout;
  if (contentType == nullptr && m_isSend) contentType = kDefaultContentType;
  const u16 code = m_headers.Set(contentType, extraHeaders);
  // Callers treat a failure here as a success without a reply, so the error is reported at the end
  // of the exchange.
  if (code != VYNCurlCode_Success && m_verdict == 0) m_verdict = code;
  return VYNCurlCode_Success;
}

void CurlExchange::SetTls(bool skipVerify, VYCertificateCallback callback) {
  m_tlsSet = true;
  m_skipVerify = skipVerify;
  m_certificateCallback = callback;
}

u16 CurlExchange::Prepare() {
  if (m_verdict != 0) return VYNCurlCode_Success;
  if (m_isHttps && !m_tlsSet) return VYNCurlCode_NoTlsOptions;
  m_easy = curl_easy_init();
  if (m_easy == nullptr) return VYNCurlCode_NoMemory;
  return SetConnection() && SetRequest() && SetTrust() ? VYNCurlCode_Success : VYNCurlCode_NoMemory;
}

bool CurlExchange::HasNews() const {
  return m_state == ExchangeState::Running && m_callback != nullptr && m_easy != nullptr &&
         (!m_toldConnecting || m_toldSent != m_position || m_toldReceived != m_replyFile.Size());
}

VYProgressRecord CurlExchange::TakeNews() {
  curl_off_t length = -1;
  curl_easy_getinfo(m_easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
  VYProgressRecord record{};
  record.userData = m_userData;
  record.receiveTotal = Saturated(length);
  record.received = Saturated(static_cast<curl_off_t>(m_replyFile.Size()));
  record.sendTotal = m_size;
  record.sent = m_position;
  if (!m_toldConnecting) {
    m_toldConnecting = true;
    record.opCode = KROpCode_Connecting;
  } else if (m_toldSent != m_position) {
    m_toldSent = m_position;
    record.opCode = KROpCode_Sending;
  } else {
    m_toldReceived = m_replyFile.Size();
    record.opCode = KROpCode_Receiving;
  }
  return record;
}

u16 CurlExchange::Result(CURLcode result, bool certificateRefused) {
  if (m_stopped != 0) return m_stopped;
  if (result == CURLE_OK) return CodeOfReply();
  // libcurl also gives this result for a header line that is too long for it.
  if (result == CURLE_OUT_OF_MEMORY && m_part != ReplyPart::Body &&
      CountInfo(m_easy, CURLINFO_PRETRANSFER_TIME_T) > 0 && MemoryIsLeft()) {
    return VYNCurlCode_ReplyTooLarge;
  }
  const bool badSignature = result == CURLE_SSL_CONNECT_ERROR && certificateRefused;
  if (result == CURLE_PEER_FAILED_VERIFICATION || badSignature) {
    const u16 code =
        badSignature ? u16{VYNCurlCode_Untrusted} : CodeOfVerification(VerifyError(m_easy));
    const u16 answer = AskCallback(nullptr, 0, code);
    return answer != 0 ? answer : code;
  }
  // A proxy that refuses a tunnel gives the reason as an HTTP status.
  const long proxyStatus = LongInfo(m_easy, CURLINFO_HTTP_CONNECTCODE);
  if (proxyStatus >= 400) return CodeOfHttpStatus(proxyStatus);
  return CodeOfTransfer(result, LongInfo(m_easy, CURLINFO_OS_ERRNO),
                        IsConnectingOver(CountInfo(m_easy, CURLINFO_TOTAL_TIME_T), m_timeout));
}

u32 CurlExchange::HttpStatus() const {
  if (m_easy == nullptr) return 0;
  const long status = LongInfo(m_easy, CURLINFO_RESPONSE_CODE);
  return static_cast<u32>(status != 0 ? status : LongInfo(m_easy, CURLINFO_HTTP_CONNECTCODE));
}

u16 CurlExchange::CodeOfReply() const {
  if (m_part != ReplyPart::Body) return VYNCurlCode_Cut;
  const u16 code = CodeOfHttpStatus(LongInfo(m_easy, CURLINFO_RESPONSE_CODE));
  return code == VYNCurlCode_Success && m_isHttps && !IsKnownWhole() ? u16{VYNCurlCode_Cut} : code;
}

// If the body has a length or is chunked, libcurl has checked it. Any other body ends with the
// connection, which anybody on the network can cut; only the server itself can close it by TLS.
bool CurlExchange::IsKnownWhole() const {
  return m_tlsEnd.closed || m_framing.IsChunked() ||
         CountInfo(m_easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T) >= 0;
}

void CurlExchange::Finish(u16 code, VYFinishedRecord& record) {
  const bool replyArrived = m_replyFile.Close();
  const bool headerArrived = m_headerFile.Close();
  record = VYFinishedRecord{};
  record.result = code;
  if (code == VYNCurlCode_Success && !(replyArrived && headerArrived)) {
    record.result = VYNCurlCode_FileFailed;
  }
  record.userData = m_userData;
  if (m_callback == nullptr) return;
  m_replyFile.HandOver(record.replyFile);
  m_headerFile.HandOver(record.headerFile);
}

}  // namespace krofx::internal
