// The two directions of the envelope.

#ifndef KROFX_ENVELOPE_INTERNAL_SIDE_H_
#define KROFX_ENVELOPE_INTERNAL_SIDE_H_

#include "krofx/core/types.h"

namespace krofx::internal {

/// A direction: from a client to a server, or back.
enum class Side : u8 { kRequest, kResponse };

}  // namespace krofx::internal

#endif  // KROFX_ENVELOPE_INTERNAL_SIDE_H_
