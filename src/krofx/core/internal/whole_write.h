// Writing into a buffer of the host that must keep its content if memory is exhausted.

#ifndef KROFX_CORE_INTERNAL_WHOLE_WRITE_H_
#define KROFX_CORE_INTERNAL_WHOLE_WRITE_H_

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"

namespace krofx::internal {

/// Writes all content of `source` at the cursor of `target`, or nothing. A buffer that cannot grow
/// loses its content; here it gets it back, without needing memory for that. Copies are wiped.
/// @param source another buffer than the target.
/// @return false when memory is exhausted, with the fire alarm raised, and when the target is at
/// its
///         limit or had lost its memory before; its content, size, cursor and allocation are as
///         they were then.
KROFX_API bool WriteWhole(KRBuffer& target, const KRBuffer& source);

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_WHOLE_WRITE_H_
