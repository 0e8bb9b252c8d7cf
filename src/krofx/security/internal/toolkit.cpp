// Algorithm objects: SHA-1 by libcrypto, base64 by our own coding.

#include "krofx/security/internal/toolkit.h"

#include <openssl/err.h>
#include <openssl/evp.h>

#include <algorithm>
#include <new>

#include "krofx/core/memory.h"
#include "krofx/security/internal/base64_coding.h"
#include "krofx/security/internal/crypto_error_scope.h"
#include "krofx/security/internal/crypto_start.h"

namespace krofx::internal {

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;

// Recognised by their addresses; the text is only for debuggers.
unsigned char g_sha1[] = "SHA-1";
unsigned char g_base64[] = "base64";

int Describe(unsigned char** description, unsigned char* algorithm) {
  if (description == nullptr) return kFailed;
  *description = algorithm;
  return kDone;
}

}  // namespace

/// One object for all directions: it is bound to an algorithm and then initialised for a direction.
struct AlgorithmObject : HeapObject {
  AlgorithmObject() = default;
  AlgorithmObject(const AlgorithmObject&) = delete;
  AlgorithmObject& operator=(const AlgorithmObject&) = delete;
  ~AlgorithmObject() { EVP_MD_CTX_free(digest); }

  const unsigned char* algorithm = nullptr;
  EVP_MD_CTX* digest = nullptr;
  Base64Encoder encoder;
  Base64Decoder decoder;
};

namespace {

bool IsBoundTo(const AlgorithmObject* object, const unsigned char* algorithm) {
  return object != nullptr && object->algorithm == algorithm;
}

// Runs `step` with the output, and stores how many bytes it wrote.
template <class Step>
int Code(const AlgorithmObject* object, CodedOutput out, u32* written, Step step) {
  const char* const begin = out.at;
  if (!IsBoundTo(object, g_base64) || !step(out)) return kFailed;
  *written = static_cast<u32>(out.at - begin);
  return kDone;
}

template <class Coder>
int CodeAll(Coder& coder, CodedOutput& out, const char* data, u32 length) {
  return std::all_of(data, data + length,
                     [&](char c) { return coder.Take(static_cast<unsigned char>(c), out); });
}

}  // namespace

AlgorithmObject* CreateAlgorithmObject() {
  StartCrypto();
  return new (std::nothrow) AlgorithmObject;
}

void DestroyAlgorithmObject(AlgorithmObject* algorithm) { delete algorithm; }

int BindAlgorithm(AlgorithmObject* algorithm, KRAlgorithmChooser chooser) {
  unsigned char* description = nullptr;
  if (algorithm == nullptr || chooser == nullptr || chooser(&description) != 0) return kFailed;
  if (description != g_sha1 && description != g_base64) return kFailed;
  algorithm->algorithm = description;
  return kDone;
}

int DigestInit(AlgorithmObject* algorithm) {
  if (!IsBoundTo(algorithm, g_sha1)) return kFailed;
  const CryptoErrorScope mark;
  if (algorithm->digest == nullptr) algorithm->digest = EVP_MD_CTX_new();
  if (algorithm->digest == nullptr) return kFailed;
  if (EVP_DigestInit_ex(algorithm->digest, EVP_sha1(), nullptr) == 1) return kDone;
  // A context that is not initialised must not get data.
  EVP_MD_CTX_free(algorithm->digest);
  algorithm->digest = nullptr;
  return kFailed;
}

int DigestUpdate(AlgorithmObject* algorithm, const char* data, u32 length) {
  if (!IsBoundTo(algorithm, g_sha1) || algorithm->digest == nullptr) return kFailed;
  const CryptoErrorScope mark;
  return EVP_DigestUpdate(algorithm->digest, data, length) == 1 ? kDone : kFailed;
}

int DigestFinal(AlgorithmObject* algorithm, char* out, u32 room, u32* written) {
  if (!IsBoundTo(algorithm, g_sha1) || algorithm->digest == nullptr) return kFailed;
  const CryptoErrorScope mark;
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (EVP_DigestFinal_ex(algorithm->digest, digest, &length) != 1 || length > room) return kFailed;
  std::copy_n(digest, length, out);
  *written = length;
  return DigestInit(algorithm);
}

int EncodeInit(AlgorithmObject* algorithm) {
  if (!IsBoundTo(algorithm, g_base64)) return kFailed;
  algorithm->encoder = {};
  return kDone;
}

int EncodeUpdate(AlgorithmObject* algorithm, char* out, u32 room, u32* written, const char* data,
                 u32 length) {
  return Code(algorithm, {out, out + room}, written,
              [&](CodedOutput& area) { return CodeAll(algorithm->encoder, area, data, length); });
}

int EncodeFinal(AlgorithmObject* algorithm, char* out, u32 room, u32* written) {
  return Code(algorithm, {out, out + room}, written,
              [&](CodedOutput& area) { return algorithm->encoder.Finish(area); });
}

int DecodeInit(AlgorithmObject* algorithm) {
  if (!IsBoundTo(algorithm, g_base64)) return kFailed;
  algorithm->decoder = {};
  return kDone;
}

int DecodeUpdate(AlgorithmObject* algorithm, char* out, u32 room, u32* written, const char* data,
                 u32 length) {
  return Code(algorithm, {out, out + room}, written,
              [&](CodedOutput& area) { return CodeAll(algorithm->decoder, area, data, length); });
}

int DecodeFinal(AlgorithmObject* algorithm, char* out, u32 room, u32* written) {
  return Code(algorithm, {out, out + room}, written,
              [&](CodedOutput&) { return algorithm->decoder.Finish(); });
}

}  // namespace krofx::internal

using krofx::internal::Describe;
using krofx::internal::g_base64;
using krofx::internal::g_sha1;

int KRChooseSHA1(unsigned char** description) { return Describe(description, g_sha1); }

int KRChooseBase64(unsigned char** description) { return Describe(description, g_base64); }
