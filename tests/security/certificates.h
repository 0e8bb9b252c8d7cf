// Certificates for tests, composed value by value, so that any form can be made. Their signatures
// are not valid: nothing that is tested here checks them.

#ifndef KROFX_TESTS_SECURITY_CERTIFICATES_H_
#define KROFX_TESTS_SECURITY_CERTIFICATES_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "krofx/core/buffer.h"
#include "krofx/security/base64.h"
#include "support/buffers.h"

/// A text with a NUL in it, or any other bytes.
template <std::size_t size>
std::string Bytes(const char (&text)[size]) {
  return std::string(text, size - 1);
}

/// One DER value.
inline std::string Der(int tag, const std::string& content) {
  std::string length;
  const std::size_t size = content.size();
  if (size < 0x80) {
    length += static_cast<char>(size);
  } else {
    for (std::size_t rest = size; rest > 0; rest >>= 8) {
      length.insert(length.begin(), static_cast<char>(rest & 0xff));
    }
    length.insert(length.begin(), static_cast<char>(0x80 | length.size()));
  }
  return static_cast<char>(tag) + length + content;
}

inline constexpr int kSequence = 0x30;
inline constexpr int kSet = 0x31;
inline constexpr int kUtf8String = 0x0c;
inline constexpr int kPrintableString = 0x13;
inline constexpr int kBmpString = 0x1e;
inline constexpr int kUtcTime = 0x17;
inline constexpr int kGeneralizedTime = 0x18;

/// One attribute of a name.
struct Attribute {
  std::string oid;
  std::string value;
  int tag = kPrintableString;
};

inline Attribute Country(std::string value) { return {"\x55\x04\x06", std::move(value)}; }
inline Attribute Organization(std::string value, int tag = kPrintableString) {
  return {"\x55\x04\x0a", std::move(value), tag};
}
inline Attribute Unit(std::string value) { return {"\x55\x04\x0b", std::move(value)}; }

/// The parts of a certificate that tests vary.
struct CertificateParts {
  std::vector<Attribute> subject = {Country("US"), Organization("Harbor Federal"), Unit("Online")};
  std::string from = Der(kUtcTime, "980101000000Z");
  std::string to = Der(kUtcTime, "991231235959Z");
  std::string key = std::string(64, 'k');
  int version = 3;
  std::string signatureAlgorithm = "\x2a\x86\x48\x86\xf7\x0d\x01\x01\x05";  // SHA-1 with RSA
};

/// RSA's and the signature's algorithm identifiers.
inline std::string AlgorithmIdentifier(const std::string& oid) {
  return Der(kSequence, Der(0x06, oid) + Der(0x05, ""));
}

/// The key with its algorithm, as it is in the certificate.
inline std::string PublicKeyInfo(const std::string& key) {
  return Der(kSequence, AlgorithmIdentifier("\x2a\x86\x48\x86\xf7\x0d\x01\x01\x01") +
                            Der(0x03, std::string(1, '\0') + key));
}

/// The DER encoding of a certificate.
inline std::string MakeCertificate(const CertificateParts& parts = {}) {
  std::string name;
  for (const Attribute& attribute : parts.subject) {
    name +=
        Der(kSet, Der(kSequence, Der(0x06, attribute.oid) + Der(attribute.tag, attribute.value)));
  }
  name = Der(kSequence, name);
  const std::string algorithm = AlgorithmIdentifier(parts.signatureAlgorithm);
  std::string body;
  if (parts.version == 3) body += Der(0xa0, Bytes("\x02\x01\x02"));
  body += Der(0x02, "\x2a") + algorithm + name + Der(kSequence, parts.from + parts.to) + name +
          PublicKeyInfo(parts.key);
  return Der(kSequence,
             Der(kSequence, body) + algorithm + Der(0x03, std::string(1, '\0') + "signature"));
}

/// Base64 in one line.
inline std::string Base64Of(const std::string& bytes) {
  KRBuffer input(0, 0);
  Put(input, bytes);
  KREncode encode;
  EXPECT_EQ(encode.SetInputData(&input), KRSecStatus_Success);
  return Content(*encode.GetOutputData());
}

#endif  // KROFX_TESTS_SECURITY_CERTIFICATES_H_
