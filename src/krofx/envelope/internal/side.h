// The two directions of the envelope.

#ifndef KROFX_ENVELOPE_INTERNAL_SIDE_H_
#define KROFX_ENVELOPE_INTERNAL_SIDE_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// A direction: from a client to a server, or back.
// It is exported since clang hides the instances of a template whose argument has a hidden type.
enum class KROFX_API Side : u8 { kRequest, kResponse };

}  // namespace krofx::internal

#endif  // KROFX_ENVELOPE_INTERNAL_SIDE_H_
