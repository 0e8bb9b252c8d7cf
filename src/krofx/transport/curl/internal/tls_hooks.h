// What libcurl does not do by itself for a TLS connection: keep the session's secrets out of files,
// ask the server for a revocation answer, and distinguish a connection that was cut from one that
// the server closed.
//
// Only this file depends on the TLS library. If libcurl uses a library other than OpenSSL, nothing
// is hooked: there are no revocation answers, and no connection counts as closed by the server.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_TLS_HOOKS_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_TLS_HOOKS_H_

#include <curl/curl.h>

#include "krofx/transport/curl/internal/certificates.h"

namespace krofx::internal {

/// How the server ended a TLS connection.
struct TlsEnd {
  /// The connection that this is about: with a proxy that uses TLS there are two, and the server's
  /// is the last.
  const void* context = nullptr;
  /// Whether the server announced the end of its data.
  bool closed = false;
};

/// Makes libcurl call the hooks for a transfer. `end` must outlive the transfer.
/// @return false when libcurl refuses.
bool HookTls(CURL* easy, TlsEnd& end);

/// Checks the revocation answer that the server of a transfer stapled, if any.
/// @return as the other StapledAnswerHolds; true when libcurl does not use OpenSSL.
bool StapledAnswerHolds(CURL* easy, const CertificateList& chain);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_TLS_HOOKS_H_
