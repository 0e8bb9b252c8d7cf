// What an algorithm object holds. Digests have sources of their own, so that a program that only
// codes base64 is not linked to libcrypto.

#ifndef KROFX_SECURITY_INTERNAL_ALGORITHM_OBJECT_H_
#define KROFX_SECURITY_INTERNAL_ALGORITHM_OBJECT_H_

#include "krofx/core/memory.h"
#include "krofx/security/internal/base64_coding.h"
#include "krofx/security/internal/toolkit.h"

extern "C" struct evp_md_ctx_st;

namespace krofx::internal {

/// One object for all directions: it is bound to an algorithm and then initialised for a direction.
struct AlgorithmObject : HeapObject {
  AlgorithmObject() = default;
  AlgorithmObject(const AlgorithmObject&) = delete;
  AlgorithmObject& operator=(const AlgorithmObject&) = delete;
  ~AlgorithmObject() {
    if (digest != nullptr) releaseDigest(digest);
  }

  const unsigned char* algorithm = nullptr;
  evp_md_ctx_st* digest = nullptr;
  /// Set together with the digest.
  void (*releaseDigest)(evp_md_ctx_st*) = nullptr;
  Base64Encoder encoder;
  Base64Decoder decoder;
};

/// What operations on it return.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;

/// The algorithms, recognised by their addresses; the text is only for debuggers.
extern unsigned char g_sha1[];
extern unsigned char g_base64[];

/// @return whether the object is there and bound to the algorithm.
inline bool IsBoundTo(const AlgorithmObject* object, const unsigned char* algorithm) {
  return object != nullptr && object->algorithm == algorithm;
}

}  // namespace krofx::internal

#endif  // KROFX_SECURITY_INTERNAL_ALGORITHM_OBJECT_H_
