// Algorithm objects, and base64 by our own coding.

#include "krofx/security/internal/toolkit.h"

#include <algorithm>
#include <new>

#include "krofx/security/internal/algorithm_object.h"

namespace krofx::internal {

unsigned char g_sha1[] = "SHA-1";
unsigned char g_base64[] = "base64";

namespace {

int Describe(unsigned char** description, unsigned char* algorithm) {
  if (description == nullptr) return kFailed;
  *description = algorithm;
  return kDone;
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

AlgorithmObject* CreateAlgorithmObject() { return new (std::nothrow) AlgorithmObject; }

void DestroyAlgorithmObject(AlgorithmObject* algorithm) { delete algorithm; }

int BindAlgorithm(AlgorithmObject* algorithm, KRAlgorithmChooser chooser) {
  unsigned char* description = nullptr;
  if (algorithm == nullptr || chooser == nullptr || chooser(&description) != 0) return kFailed;
  if (description != g_sha1 && description != g_base64) return kFailed;
  algorithm->algorithm = description;
  return kDone;
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
