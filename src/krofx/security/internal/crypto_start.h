// Starts libcrypto for the process before libcrypto starts itself, which would read a configuration
// file that an environment variable names.

#ifndef KROFX_SECURITY_INTERNAL_CRYPTO_START_H_
#define KROFX_SECURITY_INTERNAL_CRYPTO_START_H_

namespace krofx::internal {

/// Starts libcrypto with the configuration file of the system, whatever OPENSSL_CONF says. It has
/// an effect once in a process, and none when the host has started libcrypto already.
void StartCrypto();

}  // namespace krofx::internal

#endif  // KROFX_SECURITY_INTERNAL_CRYPTO_START_H_
