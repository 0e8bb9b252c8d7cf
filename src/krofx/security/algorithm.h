// How a caller of digests and of base64 chooses the algorithm.
//
// A chooser is a function that stores a pointer to an algorithm's description and returns 0, or
// returns anything else when the algorithm is not available. Descriptions are opaque: the library
// recognises those of its own choosers by their address and reads no others.

#ifndef KROFX_SECURITY_ALGORITHM_H_
#define KROFX_SECURITY_ALGORITHM_H_

#include "krofx/core/export.h"

/// Names an algorithm by storing a pointer to its description.
using KRAlgorithmChooser = int (*)(unsigned char** description);

/// Chooses SHA-1, for KRDigest. A null pointer gives 1.
KROFX_API int KRChooseSHA1(unsigned char** description);

/// Chooses base64, for KREncode and KRDecode. A null pointer gives 1.
KROFX_API int KRChooseBase64(unsigned char** description);

namespace krofx::internal {
struct AlgorithmObject;
}

#endif  // KROFX_SECURITY_ALGORITHM_H_
