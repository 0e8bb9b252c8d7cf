// What a server staples to its handshake: an answer of its certificate's issuer, signed and dated,
// on whether the certificate has been revoked (OCSP).
//
// Nobody is asked over the network. A server without an answer is taken as it is, and one with an
// answer must not be contradicted by it.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_STAPLED_ANSWER_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_STAPLED_ANSWER_H_

#include "krofx/transport/curl/internal/certificates.h"

namespace krofx::internal {

/// Judges the `length` bytes of an answer, DER, on the first certificate of a verified chain. An
/// answer that is out of date, or says that the responder could not answer, counts as none.
/// @return false when the certificate has been revoked or is not known to the responder, and when
///         the answer cannot be read, is about another certificate, or is signed by somebody else.
bool StapledAnswerHolds(const CertificateList& chain, const unsigned char* answer, long length);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_STAPLED_ANSWER_H_
