// Finds the certificates in PEM, base64 or DER bytes.

#include "input/certificate_file.h"

#include <cstdint>
#include <string_view>

#include "input/input_files.h"
#include "input/parsed_file.h"
#include "krofx/security/base64.h"
#include "krofx/security/certificate.h"

namespace krofx::command {

namespace {

constexpr std::string_view kBegin = "-----BEGIN CERTIFICATE-----";
constexpr std::string_view kEnd = "-----END CERTIFICATE-----";

// What every DER certificate begins with: a sequence.
constexpr char kSequence = 0x30;

// Empty when the text is not base64.
std::string FromBase64(std::string_view text) {
  KRBuffer encoded(0, 0);
  KRDecode decode;
  if (encoded.WriteLarge(text.data(), static_cast<u32>(text.size())) != KRBufferOK ||
      decode.SetInputData(&encoded) != KRSecStatus_Success) {
    return "";
  }
  return std::string(ViewOf(*decode.GetOutputData()));
}

std::vector<std::string> FindCertificates(std::string_view text) {
  std::vector<std::string> found;
  for (std::size_t begin; (begin = text.find(kBegin)) != std::string_view::npos;) {
    text.remove_prefix(begin + kBegin.size());
    const std::size_t end = text.find(kEnd);
    found.push_back(end == std::string_view::npos ? "" : FromBase64(text.substr(0, end)));
  }
  if (!found.empty() || text.empty()) return found;
  found.push_back(text.front() == kSequence ? std::string(text) : FromBase64(text));
  return found;
}

bool IsCertificate(const std::string& der) {
  KRCert certificate;
  return der.size() <= UINT16_MAX &&
         certificate.SetCertBER(der.data(), static_cast<u16>(der.size())) == KRSecStatus_Success;
}

}  // namespace

std::vector<std::string> ReadCertificates(const std::string& name, std::string& problem) {
  const std::unique_ptr<KRBuffer> text = ReadInput(name, problem);
  if (text == nullptr) return {};
  std::vector<std::string> certificates = FindCertificates(ViewOf(*text));
  if (certificates.empty()) problem = "it is empty; it must hold a certificate";
  for (std::size_t index = 0; index < certificates.size(); ++index) {
    if (IsCertificate(certificates[index])) continue;
    problem = certificates.size() == 1
                  ? "it holds no certificate; PEM, base64 and DER are understood"
                  : "its certificate number " + std::to_string(index + 1) + " cannot be read";
    return {};
  }
  return certificates;
}

}  // namespace krofx::command
