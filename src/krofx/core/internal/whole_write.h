// Writing into a buffer of the host that must keep its content if memory is exhausted.

#ifndef KROFX_CORE_INTERNAL_WHOLE_WRITE_H_
#define KROFX_CORE_INTERNAL_WHOLE_WRITE_H_

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"

namespace krofx::internal {

/// Writes all content of `source` at the cursor of `target`, or nothing. When a buffer cannot grow
/// it usually loses its content; here it keeps it. Memory that is given back is wiped.
/// @param source another buffer than the target.
/// @return true when all of it is written. False, with the target's content, size, cursor and
///         allocation as they were: when memory is exhausted, with the fire alarm raised; when the
///         target is at its limit; when it has lost its memory before.
KROFX_API bool WriteWhole(KRBuffer& target, const KRBuffer& source);

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_WHOLE_WRITE_H_
