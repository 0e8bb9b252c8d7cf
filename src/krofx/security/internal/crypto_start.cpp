// The start of libcrypto.

#include "krofx/security/internal/crypto_start.h"

#include <openssl/crypto.h>

#include <climits>
#include <cstdio>

namespace krofx::internal {

namespace {

bool Start() {
  char const* const folder = OPENSSL_info(OPENSSL_INFO_CONFIG_DIR);
  char file[PATH_MAX];
  int const length =
      folder == nullptr ? -1 : std::snprintf(file, sizeof file, "%s/openssl.cnf", folder);
  if (length < 0 || static_cast<std::size_t>(length) >= sizeof file) return false;
  OPENSSL_INIT_SETTINGS* const settings = OPENSSL_INIT_new();
  if (settings == nullptr) return false;
  bool const started = OPENSSL_INIT_set_config_filename(settings, file) == 1 &&
                       OPENSSL_init_crypto(OPENSSL_INIT_LOAD_CONFIG, settings) == 1;
  OPENSSL_INIT_free(settings);
  return started;
}

}  // namespace

void StartCrypto() {
  static bool const started = Start();
  (void)started;
}

}  // namespace krofx::internal
