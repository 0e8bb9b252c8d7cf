// How often a parse has put a second payload into a wrapper, for readers that must not lose the
// first one: the parse itself says nothing of it.

#ifndef KROFX_ENVELOPE_INTERNAL_REPLACED_PAYLOADS_H_
#define KROFX_ENVELOPE_INTERNAL_REPLACED_PAYLOADS_H_

#include <cstddef>

#include "krofx/core/export.h"

namespace krofx::internal {

/// @return how many payloads of this thread's parses took the place of another so far.
KROFX_API std::size_t& ReplacedPayloads();

}  // namespace krofx::internal

#endif  // KROFX_ENVELOPE_INTERNAL_REPLACED_PAYLOADS_H_
