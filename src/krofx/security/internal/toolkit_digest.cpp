// Digests: SHA-1 by libcrypto.

#include <openssl/evp.h>

#include <algorithm>

#include "krofx/security/internal/algorithm_object.h"
#include "krofx/security/internal/crypto_error_scope.h"
#include "krofx/security/internal/crypto_start.h"
#include "krofx/security/internal/toolkit.h"

namespace krofx::internal {

int DigestInit(AlgorithmObject* algorithm) {
  if (!IsBoundTo(algorithm, g_sha1)) return kFailed;
  StartCrypto();
  const CryptoErrorScope mark;
  if (algorithm->digest == nullptr) {
    algorithm->releaseDigest = EVP_MD_CTX_free;
    algorithm->digest = EVP_MD_CTX_new();
  }
  if (algorithm->digest == nullptr) return kFailed;
  if (EVP_DigestInit_ex(algorithm->digest, EVP_sha1(), nullptr) == 1) return kDone;
  // A context that is not initialised must not get data.
  EVP_MD_CTX_free(algorithm->digest);
  algorithm->digest = nullptr;
  return kFailed;
}

int DigestUpdate(AlgorithmObject* algorithm, const char* data, u32 length) {
  if (!IsBoundTo(algorithm, g_sha1) || algorithm->digest == nullptr) return kFailed;
  const CryptoErrorScope mark;
  return EVP_DigestUpdate(algorithm->digest, data, length) == 1 ? kDone : kFailed;
}

int DigestFinal(AlgorithmObject* algorithm, char* out, u32 room, u32* written) {
  if (!IsBoundTo(algorithm, g_sha1) || algorithm->digest == nullptr) return kFailed;
  const CryptoErrorScope mark;
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (EVP_DigestFinal_ex(algorithm->digest, digest, &length) != 1 || length > room) return kFailed;
  std::copy_n(digest, length, out);
  *written = length;
  return DigestInit(algorithm);
}

}  // namespace krofx::internal
