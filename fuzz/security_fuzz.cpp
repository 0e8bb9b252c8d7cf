// Takes any bytes as a certificate and as base64: loads them both ways, reads every property, makes
// the ID, and encodes and decodes the bytes. Nothing may crash or leak, both ways of loading give
// the same certificate, and encoded bytes decode to themselves.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "krofx/core/buffer.h"
#include "krofx/security/base64.h"
#include "krofx/security/certificate.h"
#include "krofx/security/certificate_id.h"

namespace {

constexpr u32 kIDLength = 28;

void Expect(bool condition) {
  if (!condition) std::abort();
}

void Read(const KRCert& certificate) {
  KRBuffer key(0, 0);
  certificate.GetPublicKey(&key);
  certificate.GetSubjectName();
  char text[200];
  if (std::FILE* const stream = fmemopen(text, sizeof text, "w")) {
    Expect(certificate.WriteInfo(stream) == KRSecStatus_Success);
    std::fclose(stream);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  KRBuffer bytes(0, 0);
  bytes.WriteLarge(reinterpret_cast<const char*>(data), static_cast<u32>(size));

  KRDecode any;
  any.SetInputData(&bytes);
  KREncode encode;
  Expect(encode.SetInputData(&bytes) == KRSecStatus_Success);
  KRDecode decode;
  Expect(decode.SetInputData(encode.GetOutputData()) == KRSecStatus_Success);
  Expect(decode.GetOutputData()->CompareBuffer(&bytes) == 1);

  KRCert binary;
  KRCert encoded;
  const bool loaded = binary.SetCertBER(&bytes) == KRSecStatus_Success;
  Expect((encoded.SetEncodedCert(encode.GetOutputData()) == KRSecStatus_Success) == loaded);
  Expect(binary.GetCertBERLen() == (loaded ? size : 0));
  if (loaded) {
    Expect(std::memcmp(binary.GetCertBER(), data, size) == 0);
    Read(binary);
  }

  KRCertID id;
  Expect(id.SetCertBER(&bytes) == KRSecStatus_Success);
  Expect(id.GetEncodedCertIDPtr()->GetBufferSize() == kIDLength);
  return 0;
}
