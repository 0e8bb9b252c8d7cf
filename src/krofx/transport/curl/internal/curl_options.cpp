// The options of libcurl for an exchange, which are set before it starts.

#include <curl/curl.h>
#include <openssl/bio.h>

#include "krofx/transport/curl/internal/curl_exchange.h"

namespace krofx::internal {

namespace {

template <class T>
bool Set(CURL* easy, CURLoption option, T value) {
  return curl_easy_setopt(easy, option, value) == CURLE_OK;
}

struct FixedOption {
  CURLoption option;
  long value;
};

// The same for every exchange.
constexpr FixedOption kFixedOptions[] = {
    // Signals belong to the host.
    {CURLOPT_NOSIGNAL, 1},
    // A transfer that has ended does not wait for the look-up of a host's name.
    {CURLOPT_QUICK_EXIT, 1},
    {CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1},
    {CURLOPT_FOLLOWLOCATION, 0},
    {CURLOPT_NETRC, CURL_NETRC_IGNORED},
    // Certificates are checked for each exchange, so an exchange must not reuse another one's
    // connection or TLS session.
    {CURLOPT_FRESH_CONNECT, 1},
    {CURLOPT_FORBID_REUSE, 1},
    {CURLOPT_SSL_SESSIONID_CACHE, 0},
    {CURLOPT_SSLVERSION, CURL_SSLVERSION_TLSv1_2},
    {CURLOPT_PROXY_SSLVERSION, CURL_SSLVERSION_TLSv1_2},
    // A proxy does not see the extra headers, and its answers are not taken for the server's.
    {CURLOPT_HEADEROPT, CURLHEADER_SEPARATE},
    {CURLOPT_SUPPRESS_CONNECT_HEADERS, 1},
};

const char* TextOrNull(const KRString& text) {
  return text.IsEmpty() != 0 ? nullptr : static_cast<const char*>(text);
}

const char* TextOrEmpty(const KRString& text) {
  return text.IsEmpty() != 0 ? "" : static_cast<const char*>(text);
}

// libcurl's default place.
const char* OwnPlace(CURL* easy, CURLINFO info) {
  const char* place = nullptr;
  curl_easy_getinfo(easy, info, &place);
  return place;
}

}  // namespace

bool CurlExchange::SetConnection() {
  for (const FixedOption& row : kFixedOptions) {
    if (!Set(m_easy, row.option, row.value)) return false;
  }
  // Empty texts, since libcurl takes options that are not set from the environment.
  return Set(m_easy, CURLOPT_PROXY, TextOrEmpty(m_settings->proxy)) &&
         Set(m_easy, CURLOPT_NOPROXY, TextOrEmpty(m_settings->proxyExceptions)) &&
         Set(m_easy, CURLOPT_PROTOCOLS_STR, "http,https") && Set(m_easy, CURLOPT_CURLU, m_url) &&
         (m_timeout <= 0 || Set(m_easy, CURLOPT_TIMEOUT_MS, m_timeout * 1000L));
}

bool CurlExchange::SetRequest() {
  if (m_isSend) {
    const bool done =
        Set(m_easy, CURLOPT_POST, 1L) &&
        Set(m_easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(m_size)) &&
        Set(m_easy, CURLOPT_READFUNCTION, &GiveData) && Set(m_easy, CURLOPT_READDATA, this) &&
        Set(m_easy, CURLOPT_SEEKFUNCTION, &Rewind) && Set(m_easy, CURLOPT_SEEKDATA, this);
    if (!done) return false;
  }
  return Set(m_easy, CURLOPT_HTTPHEADER, m_headers.List()) && Set(m_easy, CURLOPT_PRIVATE, this) &&
         // Ends a reply whose announced length is too large, before its body comes.
         Set(m_easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(m_replyLimit)) &&
         Set(m_easy, CURLOPT_WRITEFUNCTION, &TakeBody) && Set(m_easy, CURLOPT_WRITEDATA, this) &&
         Set(m_easy, CURLOPT_HEADERFUNCTION, &TakeHeader) && Set(m_easy, CURLOPT_HEADERDATA, this);
}

bool CurlExchange::SetTrust() {
  // A proxy may use TLS too.
  if (!HookTls(m_easy, m_tlsEnd)) return false;
  if (!m_isHttps) return true;
  const long verify = m_skipVerify ? 0 : 1;
  if (!Set(m_easy, CURLOPT_SSL_VERIFYPEER, verify) ||
      !Set(m_easy, CURLOPT_SSL_VERIFYHOST, verify * 2) || !Set(m_easy, CURLOPT_CERTINFO, 1L) ||
      !Set(m_easy, CURLOPT_PREREQFUNCTION, &BeforeRequest) ||
      !Set(m_easy, CURLOPT_PREREQDATA, this)) {
    return false;
  }
  // The system's roots are not read when they must not be used: libcurl would trust a folder of
  // them in addition to the roots in memory.
  RootLocation location{nullptr, nullptr};
  if (!m_skipVerify && m_roots.IsEmpty()) location = SystemRoots();
  if (!Set(m_easy, CURLOPT_CAINFO, location.file) ||
      !Set(m_easy, CURLOPT_CAPATH, location.folder)) {
    return false;
  }
  if (m_skipVerify || m_roots.IsEmpty()) return true;
  const CryptoPointer<BIO> pem = m_roots.Pem();
  if (pem == nullptr) return false;
  char* text = nullptr;
  const long length = BIO_get_mem_data(pem.get(), &text);
  curl_blob blob{text, static_cast<std::size_t>(length), CURL_BLOB_COPY};
  return Set(m_easy, CURLOPT_CAINFO_BLOB, &blob);
}

RootLocation CurlExchange::SystemRoots() const {
  if (m_settings->ownRoots) {
    return {TextOrNull(m_settings->rootFile), TextOrNull(m_settings->rootFolder)};
  }
  return {OwnPlace(m_easy, CURLINFO_CAINFO), OwnPlace(m_easy, CURLINFO_CAPATH)};
}

}  // namespace krofx::internal
