// The bytes of a buffer that a wrapper is given, and the way in which a wrapper gives its own.

#ifndef KROFX_SECURITY_INTERNAL_BUFFER_VIEW_H_
#define KROFX_SECURITY_INTERNAL_BUFFER_VIEW_H_

#include <algorithm>

#include "krofx/core/buffer.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// A run of bytes that belongs to somebody else. Null data is no run at all, not even an empty one.
struct ByteView {
  const char* data = nullptr;
  u32 length = 0;
};

/// The content of a buffer, as far as there is memory behind it; none for a null buffer and for one
/// that lost its memory.
inline ByteView ViewOf(const KRBuffer* buffer) {
  if (buffer == nullptr || buffer->GetBufferPtr() == nullptr) return {};
  return {buffer->GetBufferPtr(), std::min(buffer->GetBufferSize(), buffer->GetBufferAllocation())};
}

/// Makes room for `bytes` in a buffer whose content is to be replaced. Null when memory is
/// exhausted.
inline char* RoomIn(KRBuffer& buffer, u32 bytes) {
  return buffer.AllocateTo(bytes) == KRBufferOK ? buffer.GetBufferPtr() : nullptr;
}

/// Makes the first `bytes` of the room the content, with the cursor at the start.
inline void TakeContent(KRBuffer& buffer, u32 bytes) {
  // A size of 0 means the cursor's place, so the cursor comes first.
  buffer.SetBufferOffset(0);
  buffer.SetBufferSize(bytes);
}

/// Puts `bytes` behind the content, wherever the cursor stands; it ends behind them.
inline KRBufferResult AppendTo(KRBuffer& buffer, ByteView bytes) {
  buffer.SetBufferOffset(buffer.GetBufferSize());
  return buffer.WriteLarge(bytes.data, bytes.length);
}

}  // namespace krofx::internal

#endif  // KROFX_SECURITY_INTERNAL_BUFFER_VIEW_H_
