// What libcurl leaves to its callers about a TLS connection: that the session's secrets go into no
// file, that the server is asked for an answer on revocation, and that a connection which is cut
// can be told from one that the server closed.
//
// This is the one place that knows the TLS library. With a libcurl over another one than OpenSSL
// nothing is hooked; then no answers come, and no connection counts as closed by the server.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_TLS_HOOKS_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_TLS_HOOKS_H_

#include <curl/curl.h>

#include "krofx/transport/curl/internal/certificates.h"

namespace krofx::internal {

/// What the server's end of a TLS connection did.
struct TlsEnd {
  /// Which connection this is about: with a proxy that speaks TLS there are two, the server's last.
  const void* context = nullptr;
  /// Whether the server said that nothing more comes.
  bool closed = false;
};

/// Has libcurl call the hooks for a transfer. `end` must outlive the transfer.
/// @return false when libcurl refuses.
bool HookTls(CURL* easy, TlsEnd& end);

/// Judges the answer on revocation that the server of a transfer stapled, if it did.
/// @return as StapledAnswerHolds; true without an answer.
bool StapledAnswerHolds(CURL* easy, const CertificateList& chain);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_TLS_HOOKS_H_
