// Helpers for the wrappers' buffers: reading the content of an input buffer, and filling an output
// buffer.

#ifndef KROFX_SECURITY_INTERNAL_BUFFER_VIEW_H_
#define KROFX_SECURITY_INTERNAL_BUFFER_VIEW_H_

#include <algorithm>

#include "krofx/core/buffer.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// A run of bytes that is owned elsewhere. Null data means that there is no run, not that it is
/// empty.
struct ByteView {
  const char* data = nullptr;
  u32 length = 0;
};

/// @return the part of a buffer's content that is in its memory; null data for a null buffer and
///         for one that lost its memory.
inline ByteView ViewOf(const KRBuffer* buffer) {
  if (buffer == nullptr || buffer->GetBufferPtr() == nullptr) return {};
  return {buffer->GetBufferPtr(), std::min(buffer->GetBufferSize(), buffer->GetBufferAllocation())};
}

/// Makes room for `bytes` in a buffer whose content is to be replaced.
/// @return the memory; null when memory is exhausted.
inline char* RoomIn(KRBuffer& buffer, u32 bytes) {
  return buffer.AllocateTo(bytes) == KRBufferOK ? buffer.GetBufferPtr() : nullptr;
}

/// Makes the first `bytes` of the memory the content, with the cursor at the start.
inline void TakeContent(KRBuffer& buffer, u32 bytes) {
  // SetBufferSize(0) means the cursor's position, so the cursor is set first.
  buffer.SetBufferOffset(0);
  buffer.SetBufferSize(bytes);
}

/// Appends `bytes` to the content, wherever the cursor is, and leaves the cursor after them.
inline KRBufferResult AppendTo(KRBuffer& buffer, ByteView bytes) {
  buffer.SetBufferOffset(buffer.GetBufferSize());
  return buffer.WriteLarge(bytes.data, bytes.length);
}

}  // namespace krofx::internal

#endif  // KROFX_SECURITY_INTERNAL_BUFFER_VIEW_H_
