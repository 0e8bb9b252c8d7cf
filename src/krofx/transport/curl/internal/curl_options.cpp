// The options of libcurl for an exchange, which are set before it starts.

#include <curl/curl.h>
#include <openssl/bio.h>

#include "krofx/transport/curl/internal/curl_exchange.h"
#include "krofx/transport/curl/internal/time_limit.h"

namespace krofx::internal {

namespace {

// Sets options of a transfer one after the other, and remembers whether libcurl refused one, for
// lack of memory or because it does not know it.
class Options {
 public:
  explicit Options(CURL* easy) : m_easy(easy) {}
  template <class T>
  void Set(CURLoption option, T value) {
    m_allSet &= curl_easy_setopt(m_easy, option, value) == CURLE_OK;
  }
  bool AllSet() const { return m_allSet; }

 private:
  CURL* const m_easy;
  bool m_allSet = true;
};

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
  Options options(m_easy);
  for (const FixedOption& row : kFixedOptions) options.Set(row.option, row.value);
  // Empty texts, since libcurl takes options that are not set from the environment.
  options.Set(CURLOPT_PROXY, TextOrEmpty(m_settings->proxy));
  options.Set(CURLOPT_NOPROXY, TextOrEmpty(m_settings->proxyExceptions));
  options.Set(CURLOPT_PROTOCOLS_STR, "http,https");
  options.Set(CURLOPT_CURLU, m_url);
  if (m_timeout > 0) options.Set(CURLOPT_TIMEOUT_MS, MillisecondsOf(m_timeout));
  return options.AllSet();
}

bool CurlExchange::SetRequest() {
  Options options(m_easy);
  if (m_isSend) {
    // There is no seek function: libcurl must not send a request, which may be a payment, a second
    // time.
    options.Set(CURLOPT_POST, 1L);
    options.Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(m_size));
    options.Set(CURLOPT_READFUNCTION, &GiveData);
    options.Set(CURLOPT_READDATA, this);
  }
  options.Set(CURLOPT_HTTPHEADER, m_headers.List());
  options.Set(CURLOPT_PRIVATE, this);
  // Ends a reply whose announced length is too large, before its body comes.
  options.Set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(m_replyLimit));
  options.Set(CURLOPT_WRITEFUNCTION, &TakeBody);
  options.Set(CURLOPT_WRITEDATA, this);
  options.Set(CURLOPT_HEADERFUNCTION, &TakeHeader);
  options.Set(CURLOPT_HEADERDATA, this);
  return options.AllSet();
}

bool CurlExchange::SetTrust() {
  // A proxy may use TLS too.
  if (!HookTls(m_easy, m_tlsEnd)) return false;
  if (!m_isHttps) return true;
  Options options(m_easy);
  const long verify = m_skipVerify ? 0 : 1;
  options.Set(CURLOPT_SSL_VERIFYPEER, verify);
  options.Set(CURLOPT_SSL_VERIFYHOST, verify * 2);
  options.Set(CURLOPT_CERTINFO, 1L);
  options.Set(CURLOPT_PREREQFUNCTION, &BeforeRequest);
  options.Set(CURLOPT_PREREQDATA, this);
  // The system's roots are not read when they must not be used: libcurl would trust a folder of
  // them in addition to the roots in memory.
  RootLocation location{nullptr, nullptr};
  if (!m_skipVerify && m_roots.IsEmpty()) location = SystemRoots();
  options.Set(CURLOPT_CAINFO, location.file);
  options.Set(CURLOPT_CAPATH, location.folder);
  if (!m_skipVerify && !m_roots.IsEmpty()) {
    const CryptoPointer<BIO> pem = m_roots.Pem();
    if (pem == nullptr) return false;
    char* text = nullptr;
    const long length = BIO_get_mem_data(pem.get(), &text);
    curl_blob blob{text, static_cast<std::size_t>(length), CURL_BLOB_COPY};
    options.Set(CURLOPT_CAINFO_BLOB, &blob);
  }
  return options.AllSet();
}

RootLocation CurlExchange::SystemRoots() const {
  if (m_settings->ownRoots) {
    return {TextOrNull(m_settings->rootFile), TextOrNull(m_settings->rootFolder)};
  }
  return {OwnPlace(m_easy, CURLINFO_CAINFO), OwnPlace(m_easy, CURLINFO_CAPATH)};
}

}  // namespace krofx::internal
