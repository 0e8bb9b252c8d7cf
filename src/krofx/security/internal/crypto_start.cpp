// Starts libcrypto.

#include "krofx/security/internal/crypto_start.h"

#include <openssl/crypto.h>

#include <climits>
#include <cstdio>

namespace krofx::internal {

namespace {

bool Start() {
  const char* const folder = OPENSSL_info(OPENSSL_INFO_CONFIG_DIR);
  char file[PATH_MAX];
  const int length =
      folder == nullptr ? -1 : std::snprintf(file, sizeof file, "%s/openssl.cnf", folder);
  if (length < 0 || static_cast<std::size_t>(length) >= sizeof file) return false;
  OPENSSL_INIT_SETTINGS* const settings = OPENSSL_INIT_new();
  if (settings == nullptr) return false;
  const bool started = OPENSSL_INIT_set_config_filename(settings, file) == 1 &&
                       OPENSSL_init_crypto(OPENSSL_INIT_LOAD_CONFIG, settings) == 1;
  OPENSSL_INIT_free(settings);
  return started;
}

}  // namespace

void StartCrypto() {
  static const bool started = Start();
  (void)started;
}

}  // namespace krofx::internal
