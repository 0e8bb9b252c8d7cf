// Bytes as base64, by another library than the one that is tested.

#ifndef KROFX_TESTS_SUPPORT_BASE64_TEXT_H_
#define KROFX_TESTS_SUPPORT_BASE64_TEXT_H_

#include <openssl/evp.h>

#include <string>
#include <string_view>

/// Bytes as base64, on one line.
inline std::string Base64Text(std::string_view bytes) {
  std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0');
  const int size = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                                   reinterpret_cast<const unsigned char*>(bytes.data()),
                                   static_cast<int>(bytes.size()));
  text.resize(static_cast<std::size_t>(size));
  return text;
}

#endif  // KROFX_TESTS_SUPPORT_BASE64_TEXT_H_
