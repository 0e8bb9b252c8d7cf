// Leaves libcrypto's queue of errors as it was found. A failure here is reported by a status; an
// error left in the queue would be taken by the host's own use of libcrypto, TLS above all, for its
// own.

#ifndef KROFX_SECURITY_INTERNAL_CRYPTO_ERROR_SCOPE_H_
#define KROFX_SECURITY_INTERNAL_CRYPTO_ERROR_SCOPE_H_

#include <openssl/err.h>

namespace krofx::internal {

/// Takes the errors of its lifetime out of the queue.
class CryptoErrorScope {
 public:
  CryptoErrorScope() { ERR_set_mark(); }
  CryptoErrorScope(const CryptoErrorScope&) = delete;
  CryptoErrorScope& operator=(const CryptoErrorScope&) = delete;
  ~CryptoErrorScope() { ERR_pop_to_mark(); }
};

}  // namespace krofx::internal

#endif  // KROFX_SECURITY_INTERNAL_CRYPTO_ERROR_SCOPE_H_
