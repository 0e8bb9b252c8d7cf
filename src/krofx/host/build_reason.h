// Why a tree was not written, in words.

#ifndef KROFX_HOST_BUILD_REASON_H_
#define KROFX_HOST_BUILD_REASON_H_

#include "krofx/core/export.h"
#include "krofx/core/status.h"

namespace krofx {

/// @return why a tree was not written, in English, without a capital letter and a full stop; empty
///         for 0.
KROFX_API const char* ReasonOf(KRBuildStatus status);

}  // namespace krofx

#endif  // KROFX_HOST_BUILD_REASON_H_
