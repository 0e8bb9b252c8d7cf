// Reads and checks an OCSP response.

#include "krofx/transport/curl/internal/stapled_answer.h"

#include <openssl/ocsp.h>
#include <openssl/x509v3.h>

#include "krofx/security/internal/crypto_error_scope.h"

namespace krofx::internal {

namespace {

// How far the clocks of the responder and of this machine may differ.
constexpr long kClockSeconds = 300;

struct OcspDeleter {
  void operator()(OCSP_RESPONSE* response) const { OCSP_RESPONSE_free(response); }
  void operator()(OCSP_BASICRESP* response) const { OCSP_BASICRESP_free(response); }
  void operator()(OCSP_CERTID* id) const { OCSP_CERTID_free(id); }
};

template <class T>
using OcspPointer = std::unique_ptr<T, OcspDeleter>;

// The signer is the issuer itself, or a responder whose certificate the issuer has issued for this
// purpose.
bool IsSignedFor(OCSP_BASICRESP* response, const CertificateList& chain) {
  const CryptoPointer<X509_STORE> store(X509_STORE_new());
  if (store == nullptr || X509_STORE_set_flags(store.get(), X509_V_FLAG_PARTIAL_CHAIN) != 1) {
    return false;
  }
  for (int i = 1; i < sk_X509_num(chain.get()); ++i) {
    if (X509_STORE_add_cert(store.get(), sk_X509_value(chain.get(), i)) != 1) return false;
  }
  return OCSP_basic_verify(response, chain.get(), store.get(), 0) == 1;
}

// Whether `single` is about the certificate. IDs are digests of a kind that the responder chose.
// The check of the signer has refused kinds that are unknown.
bool IsAbout(const OCSP_SINGLERESP* single, X509* certificate, X509* issuer) {
  const OCSP_CERTID* const id = OCSP_SINGLERESP_get0_id(single);
  ASN1_OBJECT* algorithm = nullptr;
  // The operation only reads the ID, although its parameter is not const.
  OCSP_id_get0_info(nullptr, &algorithm, nullptr, nullptr, const_cast<OCSP_CERTID*>(id));
  const EVP_MD* const digest = EVP_get_digestbyobj(algorithm);
  const OcspPointer<OCSP_CERTID> expected(OCSP_cert_to_id(digest, certificate, issuer));
  return expected != nullptr && OCSP_id_cmp(expected.get(), id) == 0;
}

struct FeaturesDeleter {
  void operator()(TLS_FEATURE* features) const { TLS_FEATURE_free(features); }
};

// Whether a certificate says that its server always staples an answer, or cannot be read there.
bool DemandsAnswer(const X509* certificate) {
  constexpr long kStatusRequest = 5;
  constexpr int kNoExtension = -1;
  int place = kNoExtension;
  const std::unique_ptr<TLS_FEATURE, FeaturesDeleter> features(
      static_cast<TLS_FEATURE*>(X509_get_ext_d2i(certificate, NID_tlsfeature, &place, nullptr)));
  if (features == nullptr) return place != kNoExtension;
  for (int i = 0; i < sk_ASN1_INTEGER_num(features.get()); ++i) {
    if (ASN1_INTEGER_get(sk_ASN1_INTEGER_value(features.get(), i)) == kStatusRequest) return true;
  }
  return false;
}

bool StatusHolds(OCSP_SINGLERESP* single, bool isDemanded) {
  ASN1_GENERALIZEDTIME* from = nullptr;
  ASN1_GENERALIZEDTIME* until = nullptr;
  const int status = OCSP_single_get0_status(single, nullptr, nullptr, &from, &until);
  // A revocation is final, so its dates do not matter.
  if (status == V_OCSP_CERTSTATUS_REVOKED) return false;
  const bool isCurrent = OCSP_check_validity(from, until, kClockSeconds, -1) == 1;
  return isCurrent ? status == V_OCSP_CERTSTATUS_GOOD : !isDemanded;
}

}  // namespace

bool StapledAnswerHolds(const CertificateList& chain, const unsigned char* answer, long length) {
  const CryptoErrorScope scope;
  // Without an issuer in the chain the certificate itself is trusted, and no one else could sign an
  // answer.
  if (sk_X509_num(chain.get()) < 2) return true;
  X509* const certificate = sk_X509_value(chain.get(), 0);
  X509* const issuer = sk_X509_value(chain.get(), 1);
  const bool isDemanded = DemandsAnswer(certificate);
  if (answer == nullptr || length <= 0) return !isDemanded;
  const unsigned char* at = answer;
  const OcspPointer<OCSP_RESPONSE> response(d2i_OCSP_RESPONSE(nullptr, &at, length));
  if (response == nullptr || at != answer + length) return false;
  if (OCSP_response_status(response.get()) != OCSP_RESPONSE_STATUS_SUCCESSFUL) return !isDemanded;
  const OcspPointer<OCSP_BASICRESP> basic(OCSP_response_get1_basic(response.get()));
  if (basic == nullptr || !IsSignedFor(basic.get(), chain)) return false;
  bool answered = false;
  for (int i = 0; i < OCSP_resp_count(basic.get()); ++i) {
    OCSP_SINGLERESP* const single = OCSP_resp_get0(basic.get(), i);
    if (!IsAbout(single, certificate, issuer)) continue;
    if (!StatusHolds(single, isDemanded)) return false;
    answered = true;
  }
  return answered;
}

}  // namespace krofx::internal
