// Takes any bytes as a certificate: loads them as they are, as text and as PEM, reads every
// property, and makes the ID. All ways of loading give the same certificate. Bytes that begin like
// PEM are a file of roots: nothing is sent with one that cannot be read.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "krofx/core/buffer.h"
#include "krofx/host/exchange.h"
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

// Takes a file of roots.
bool IsTrusted(const std::string& pem) {
  // Nobody listens there, and nobody is asked.
  krofx::Exchange exchange("https://127.0.0.1:1/");
  if (exchange.TrustPemText(pem)) return true;
  KRBuffer reply(0, 0);
  Expect(exchange.Get(reply).status == KRNetStatus_RootRejected, "a refused root lets nothing out");
  return false;
}

std::string PemOf(const KRBuffer& base64) {
  return "-----BEGIN CERTIFICATE-----\n" +
         std::string(base64.GetBufferPtr(), base64.GetBufferSize()) +
         "\n-----END CERTIFICATE-----\n";
}

void CheckRoots(const std::string& pem) {
  if (!IsTrusted(pem)) return;
  // A line end between them, since the end of one and the start of the other could form a mark.
  Expect(IsTrusted(pem + "\n" + pem), "roots may come twice");
  Expect(!IsTrusted(pem + "-----BEGIN CERTIFICATE-----"), "a root that breaks off is refused");
}

void Run(Bytes input) {
  if (input.starts_with("-----BEGIN")) return CheckRoots(std::string(input));
  KRBuffer bytes(0, 0);
  bytes.WriteLarge(input.data(), static_cast<u32>(input.size()));
  KREncode encode;
  Expect(encode.SetInputData(&bytes) == KRSecStatus_Success, "any bytes are encoded");

  KRCert binary;
  KRCert encoded;
  const bool loaded = binary.SetCertBER(&bytes) == KRSecStatus_Success;
  Expect((encoded.SetEncodedCert(encode.GetOutputData()) == KRSecStatus_Success) == loaded,
         "bytes and text load alike");
  Expect(IsTrusted(PemOf(*encode.GetOutputData())) == loaded, "bytes and PEM load alike");
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
