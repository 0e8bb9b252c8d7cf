// The stapled revocation answer (OCSP) that a server sends in its handshake: a signed and dated
// statement of its certificate's issuer that the certificate has or has not been revoked.
//
// No responder is queried over the network. A server without an answer is accepted without one,
// unless its certificate demands it; if there is an answer, it must not contradict the certificate.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_STAPLED_ANSWER_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_STAPLED_ANSWER_H_

#include "krofx/transport/curl/internal/certificates.h"

namespace krofx::internal {

/// Checks an answer, `length` bytes of DER, about the first certificate of a verified chain; null
/// or no bytes for none. An answer in which the responder reports an error counts as none, and so
/// does one that is out of date, unless it says "revoked", which is final. In a chain of only one
/// certificate, which is trusted itself, answers do not count.
/// @return false when the certificate has been revoked or is unknown to the responder, when the
///         answer cannot be read, is about another certificate, or is not signed by a proper
///         signer, and when there is none although the certificate demands one.
bool StapledAnswerHolds(const CertificateList& chain, const unsigned char* answer, long length);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_STAPLED_ANSWER_H_
