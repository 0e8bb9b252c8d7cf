// Leaves libcrypto's queue of errors as it was. A failure here is reported by a status; the host's
// own use of libcrypto, TLS above all, would take an error left in the queue for its own.

#ifndef KROFX_SECURITY_INTERNAL_CRYPTO_ERROR_SCOPE_H_
#define KROFX_SECURITY_INTERNAL_CRYPTO_ERROR_SCOPE_H_

#include <openssl/err.h>

namespace krofx::internal {

/// Removes the errors of its lifetime from the queue.
class CryptoErrorScope {
 public:
  CryptoErrorScope() { ERR_set_mark(); }
  CryptoErrorScope(const CryptoErrorScope&) = delete;
  CryptoErrorScope& operator=(const CryptoErrorScope&) = delete;
  ~CryptoErrorScope() { ERR_pop_to_mark(); }
};

}  // namespace krofx::internal

#endif  // KROFX_SECURITY_INTERNAL_CRYPTO_ERROR_SCOPE_H_
