// The stapled revocation answer (OCSP) that a server sends in its handshake: a signed and dated
// statement of its certificate's issuer that the certificate has or has not been revoked.
//
// No responder is queried over the network. A server without an answer is accepted without one; if
// there is an answer, it must not contradict the certificate.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_STAPLED_ANSWER_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_STAPLED_ANSWER_H_

#include "krofx/transport/curl/internal/certificates.h"

namespace krofx::internal {

/// Checks an answer, `length` bytes of DER, about the first certificate of a verified chain. An
/// answer that is out of date, or in which the responder reports an error, counts as no answer.
/// @return false when the certificate has been revoked or is unknown to the responder, and when the
///         answer cannot be read, is about another certificate, or is not signed by a proper
///         signer.
bool StapledAnswerHolds(const CertificateList& chain, const unsigned char* answer, long length);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_STAPLED_ANSWER_H_
