// Takes any bytes as a certificate: loads them as they are and as text, reads every property, and
// makes the ID. Both ways of loading give the same certificate.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "krofx/core/buffer.h"
#include "krofx/security/base64.h"
#include "krofx/security/certificate.h"
#include "krofx/security/certificate_id.h"
#include "target.h"

namespace {

using namespace krofx::fuzz;

constexpr u32 kIDLength = 28;

void ReadProperties(const KRCert& certificate) {
  KRBuffer key(0, 0);
  certificate.GetPublicKey(&key);
  certificate.GetSubjectName();
  char* text = nullptr;
  std::size_t size = 0;
  if (std::FILE* const stream = open_memstream(&text, &size)) {
    Expect(certificate.WriteInfo(stream) == KRSecStatus_Success, "a certificate is printed");
    std::fclose(stream);
    std::free(text);
  }
}

void Run(Bytes input) {
  KRBuffer bytes(0, 0);
  bytes.WriteLarge(input.data(), static_cast<u32>(input.size()));
  KREncode encode;
  Expect(encode.SetInputData(&bytes) == KRSecStatus_Success, "any bytes are encoded");

  KRCert binary;
  KRCert encoded;
  const bool loaded = binary.SetCertBER(&bytes) == KRSecStatus_Success;
  Expect((encoded.SetEncodedCert(encode.GetOutputData()) == KRSecStatus_Success) == loaded,
         "bytes and text load alike");
  Expect(binary.GetCertBERLen() == (loaded ? input.size() : 0), "a certificate has its bytes");
  if (loaded) {
    Expect(std::memcmp(binary.GetCertBER(), input.data(), input.size()) == 0, "they are the same");
    ReadProperties(binary);
  }

  KRCertID id;
  Expect(id.SetCertBER(&bytes) == KRSecStatus_Success, "any bytes have an ID");
  Expect(id.GetEncodedCertIDPtr()->GetBufferSize() == kIDLength, "an ID has its length");
}

const Target kTarget("certificate", &Run);

}  // namespace
