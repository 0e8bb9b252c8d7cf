// The hooks into OpenSSL.

#include "krofx/transport/curl/internal/tls_hooks.h"

#include <openssl/ssl.h>

#include <cstring>

#include "krofx/transport/curl/internal/stapled_answer.h"

namespace krofx::internal {

namespace {

bool IsOpenSsl() {
  static constexpr char kName[] = "OpenSSL/";
  const char* const library = curl_version_info(CURLVERSION_NOW)->ssl_version;
  return library != nullptr && std::strncmp(library, kName, sizeof kName - 1) == 0;
}

// Called for each message of the protocol. A close is the alert 0 with the level 1 (warning).
void TakeMessage(int isOurs, int, int kind, const void* bytes, std::size_t length, SSL* connection,
                 void* watched) {
  auto& end = *static_cast<TlsEnd*>(watched);
  const auto* const alert = static_cast<const unsigned char*>(bytes);
  if (isOurs == 0 && kind == SSL3_RT_ALERT && length == 2 && alert[0] == SSL3_AL_WARNING &&
      alert[1] == SSL_AD_CLOSE_NOTIFY && SSL_get_SSL_CTX(connection) == end.context) {
    end.closed = true;
  }
}

CURLcode Prepare(CURL*, void* opaque, void* watched) {
  auto* const context = static_cast<SSL_CTX*>(opaque);
  auto& end = *static_cast<TlsEnd*>(watched);
  end = {context, false};
  SSL_CTX_set_keylog_callback(context, nullptr);
  SSL_CTX_set_tlsext_status_type(context, TLSEXT_STATUSTYPE_ocsp);
  SSL_CTX_set_msg_callback(context, &TakeMessage);
  SSL_CTX_set_msg_callback_arg(context, watched);
  return CURLE_OK;
}

}  // namespace

bool HookTls(CURL* easy, TlsEnd& end) {
  return !IsOpenSsl() || (curl_easy_setopt(easy, CURLOPT_SSL_CTX_FUNCTION, &Prepare) == CURLE_OK &&
                          curl_easy_setopt(easy, CURLOPT_SSL_CTX_DATA, &end) == CURLE_OK);
}

bool StapledAnswerHolds(CURL* easy, const CertificateList& chain) {
  curl_tlssessioninfo* session = nullptr;
  if (!IsOpenSsl() || curl_easy_getinfo(easy, CURLINFO_TLS_SSL_PTR, &session) != CURLE_OK ||
      session == nullptr || session->internals == nullptr) {
    return true;
  }
  const unsigned char* answer = nullptr;
  const long length =
      SSL_get_tlsext_status_ocsp_resp(static_cast<SSL*>(session->internals), &answer);
  return StapledAnswerHolds(chain, answer, length);
}

}  // namespace krofx::internal
