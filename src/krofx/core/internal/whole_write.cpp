// Makes the room for all of it before anything is written.

#include "krofx/core/internal/whole_write.h"

namespace krofx::internal {

bool WriteWhole(KRBuffer& target, const KRBuffer& source) {
  if (target.GetBufferPtr() == nullptr) return false;
  const u32 count = source.GetBufferSize();
  const u32 offset = target.GetBufferOffset();
  if (count > ~offset) return false;
  const u32 end = offset + count;
  const u32 allocation = target.GetBufferAllocation();
  if (end > allocation && target.GrowBuffer(end - allocation, true) == 0) return false;
  // There is room for all of it now.
  return target.WriteLarge(source.GetBufferPtr(), count) == KRBufferOK;
}

}  // namespace krofx::internal
