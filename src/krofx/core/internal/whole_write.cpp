// Growth that can be taken back: the old content is held until the new memory is there.

#include "krofx/core/internal/whole_write.h"

#include <cstring>
#include <utility>

namespace krofx::internal {

namespace {

// The memory of a buffer is no part of its interface. Only an explicit instantiation may name it.
void ExchangeMemory(KRBuffer& left, KRBuffer& right);

template <auto kData, auto kCapacity>
struct MemoryOfBuffers {
  friend void ExchangeMemory(KRBuffer& left, KRBuffer& right) {
    std::swap(left.*kData, right.*kData);
    std::swap(left.*kCapacity, right.*kCapacity);
  }
};
template struct MemoryOfBuffers<&KRBuffer::m_data, &KRBuffer::m_capacity>;

// Makes room for `end` bytes.
bool Grow(KRBuffer& buffer, u32 end) {
  const u32 allocation = buffer.GetBufferAllocation();
  const char* const content = buffer.GetBufferPtr();
  if (content == nullptr) return buffer.AllocateTo(end) == KRBufferOK;
  KRBuffer held(allocation, 0);
  if (held.GetBufferPtr() == nullptr) return false;
  std::memcpy(held.GetBufferPtr(), content, allocation);
  if (buffer.AllocateTo(end) == KRBufferOK) return true;
  // At its limit a buffer keeps its content. Without memory its allocation stays in name, which is
  // what the held memory has.
  if (buffer.GetBufferPtr() == nullptr) ExchangeMemory(buffer, held);
  return false;
}

}  // namespace

bool WriteWhole(KRBuffer& target, const KRBuffer& source) {
  const u32 count = source.GetBufferSize();
  const u32 offset = target.GetBufferOffset();
  if (count > ~offset) return false;
  const u32 end = offset + count;
  if (end > target.GetBufferAllocation() && !Grow(target, end)) return false;
  // There is room for all of it now.
  return target.WriteLarge(source.GetBufferPtr(), count) == KRBufferOK;
}

}  // namespace krofx::internal
