// Functions that the builder's sources share: appending bytes to the buffer, and writing a tag
// before its value.

#ifndef KROFX_BUILD_INTERNAL_WRITING_H_
#define KROFX_BUILD_INTERNAL_WRITING_H_

#include <cstddef>

#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"
#include "krofx/core/thread.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// Appends `length` bytes. When the buffer refuses them for any reason the fire alarm is raised, so
/// that a build with text missing never succeeds.
inline void Put(KRBuffer& buffer, const char* text, std::size_t length) {
  constexpr std::size_t kLargestWrite = 0xffff;
  const KRBufferResult result = length <= kLargestWrite
                                    ? buffer.Write(text, static_cast<u16>(length))
                                    : buffer.WriteLarge(text, static_cast<u32>(length));
  if (result != KRBufferOK) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
}

/// Writes the tag of an element and then, if that succeeded, its value.
/// @param writeValue writes the value and returns its KRBuildStatus.
template <class WriteValue>
KRBuildStatus WithTag(KRBuilder& builder, KRTagID tag, WriteValue writeValue) {
  const KRBuildStatus status = builder.AddTagElement(tag);
  return status == KRBuildStatus_Done ? writeValue() : status;
}

}  // namespace krofx::internal

#endif  // KROFX_BUILD_INTERNAL_WRITING_H_
