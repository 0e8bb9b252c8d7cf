// Reading, writing and growth of byte buffers.

#include "krofx/core/buffer.h"

#include <algorithm>
#include <limits>
#include <typeinfo>

#include "krofx/core/internal/logger_subjects.h"
#include "krofx/core/internal/wipe.h"
#include "krofx/core/string.h"
#include "krofx/core/thread.h"

using krofx::internal::Allocate;
using krofx::internal::ForgetInLoggers;
using krofx::internal::WipeAndFree;

namespace {
constexpr u32 kMaxBufferSize = 4000000000;
}

KRBuffer::KRBuffer(u32 initialSize, u32 growSize) : m_growSize(growSize) {
  if (initialSize == 0 && growSize == 0) m_growSize = kDefaultGrowSize;
  SetAllocation(std::min(initialSize > 0 ? initialSize : m_growSize, kMaxBufferSize));
}

KRBuffer::~KRBuffer() {
  ForgetInLoggers(this);
  WipeAndFree(m_data, m_capacity);
}

char KRBuffer::GetCh(s32 index) {
  return index >= 0 && static_cast<u32>(index) < Readable() ? m_data[index] : '\0';
}

u32 KRBuffer::GetMaxBufferSize() { return kMaxBufferSize; }

u16 KRBuffer::HasPlainBytes() const { return typeid(*this) == typeid(KRBuffer) ? 1 : 0; }

KRBufferResult KRBuffer::AllocateTo(u32 bytes) {
  if (bytes <= m_allocation) return KRBufferOK;
  const u32 missing = bytes - m_allocation;
  return GrowBuffer(missing) >= missing ? KRBufferOK : KRBufferNoMemory;
}

KRBufferResult KRBuffer::WriteString(const char* text) {
  const KRBufferResult result = PutText(text);
  return result == KRBufferOK ? Write('\0') : result;
}

KRBufferResult KRBuffer::WriteLarge(const char* bytes, u32 count) {
  if (bytes == nullptr && count > 0) return KRBufferNoData;
  while (count > kBlockSize) {
    const KRBufferResult result = PutBufData(bytes, kBlockSize);
    if (result != KRBufferOK) return result;
    bytes += kBlockSize;
    count -= kBlockSize;
  }
  return PutBufData(bytes, static_cast<u16>(count));
}

void KRBuffer::operator+=(const char* text) { PutText(text); }

KRBufferResult KRBuffer::operator+=(const KRBuffer* source) {
  if (source == nullptr) return KRBufferNoData;
  const u32 size = source->m_size;
  if (size == 0) return KRBufferOK;
  if (source->m_data == nullptr) return KRBufferNoData;
  // The source may be this buffer, whose memory and size change with a write: both are read again
  // each time.
  for (u32 done = 0; done < std::min(size, source->m_allocation);) {
    const auto block =
        static_cast<u16>(std::min<u32>(std::min(size, source->m_allocation) - done, kBlockSize));
    if (source->m_data == nullptr || PutBufData(source->m_data + done, block) != KRBufferOK) break;
    done += block;
  }
  return KRBufferOK;
}

KRBufferResult KRBuffer::Read(char* out, u16& got, u16 max) {
  if (m_offset >= m_size) return KRBufferOutOfRange;
  const auto count = static_cast<u16>(std::min<u32>(max, m_size - m_offset));
  const KRBufferResult result = GetBufData(out, count);
  if (result == KRBufferOK) got = count;
  return result;
}

u16 KRBuffer::FindSubChar(s32 start, char character, s32* position) {
  constexpr s32 kLast = std::numeric_limits<s32>::max();
  s32 at = start;
  char found = '\0';
  if (HasPlainBytes() == 0) {
    while ((found = GetCh(at)) != character && found != '\0' && at < kLast) ++at;
  } else if (const u32 end = std::min<u32>(Readable(), kLast);
             start >= 0 && static_cast<u32>(start) < end) {
    const char* const from = m_data + start;
    std::size_t left = end - static_cast<u32>(start);
    const auto* nul = static_cast<const char*>(std::memchr(from, '\0', left));
    if (nul != nullptr) left = static_cast<std::size_t>(nul - from);
    const auto* hit = static_cast<const char*>(std::memchr(from, character, left));
    if (hit != nullptr) {
      found = character;
      left = static_cast<std::size_t>(hit - from);
    }
    at = start + static_cast<s32>(left);
  }
  if (position != nullptr) *position = at;
  return found == character ? 1 : 0;
}

u16 KRBuffer::GetData(KRString& out, s32 start, u16 count) {
  count = std::min(count, KRString::kMaxLength);
  char* const text = out.LockBuffer(static_cast<u16>(count + 1));
  if (text == nullptr) return 0;
  u16 copied = 0;
  if (HasPlainBytes() == 0) {
    for (s32 at = start; copied < count; ++copied, ++at) {
      if ((text[copied] = GetCh(at)) == '\0' || at == std::numeric_limits<s32>::max()) break;
    }
  } else if (start >= 0 && static_cast<u32>(start) < Readable()) {
    const u32 left = std::min<u32>(count, Readable() - static_cast<u32>(start));
    copied = static_cast<u16>(strnlen(m_data + start, left));
    std::memcpy(text, m_data + start, copied);
  }
  text[copied] = '\0';
  out.UnlockBuffer();
  return copied;
}

KRBufferResult KRBuffer::CopyBuffer(KRBuffer* target, u32 start, u32 count) const {
  if (start > m_size || count > m_size - start) return KRBufferOutOfRange;
  if (target == nullptr) return KRBufferNoData;
  const u32 bytes = count > 0 ? count : m_size - start;
  if (m_data != nullptr && bytes > 0 && start + bytes > m_allocation) return KRBufferOutOfRange;
  if (target->AllocateTo(bytes) != KRBufferOK) return KRBufferNoMemory;
  if (m_data == nullptr || target->m_data == nullptr) return KRBufferNoData;
  if (bytes > 0) std::memmove(target->m_data, m_data + start, bytes);
  target->SetBufferSize(bytes);
  target->m_offset = bytes;
  return KRBufferOK;
}

u16 KRBuffer::CompareBuffer(const KRBuffer* other) const {
  if (other == nullptr || m_data == nullptr || other->m_data == nullptr) return 0;
  if (m_size != other->m_size || Readable() != other->Readable()) return 0;
  return std::memcmp(m_data, other->m_data, Readable()) == 0 ? 1 : 0;
}

void KRBuffer::ClearBuffer(char fill) {
  if (m_data == nullptr) return;
  std::memset(m_data, fill, Readable());
  m_size = m_offset;
  m_offset = 0;
}

u16 KRBuffer::SetBufferOffset(u32 offset) {
  if (offset > m_size) return 0;
  m_offset = offset;
  return 1;
}

// Bytes of content that are in the memory: SetBufferSize may have set a larger size.
u32 KRBuffer::Readable() const { return m_data != nullptr ? std::min(m_size, m_allocation) : 0; }

// Reads exactly `count` bytes at the cursor, or none.
KRBufferResult KRBuffer::GetBufData(char* out, u16 count) {
  if (m_offset > m_size || count > m_size - m_offset) return KRBufferOutOfRange;
  if (m_data == nullptr || out == nullptr) return KRBufferNoData;
  if (m_offset > Readable() || count > Readable() - m_offset) return KRBufferOutOfRange;
  std::memcpy(out, m_data + m_offset, count);
  m_offset += count;
  return KRBufferOK;
}

// A write that needs more allocation, or whose arguments are not valid.
KRBufferResult KRBuffer::PutGrowing(const char* bytes, u16 count) {
  if (bytes == nullptr && count > 0) return KRBufferNoData;
  const std::uint64_t end = std::uint64_t{m_offset} + count;
  const bool own = m_data != nullptr && bytes >= m_data && bytes < m_data + m_allocation;
  const std::size_t place = own ? static_cast<std::size_t>(bytes - m_data) : 0;
  if (end > m_allocation) {
    if (end >= GetMaxBufferSize()) return KRBufferOutOfRange;
    if (GrowBuffer(static_cast<u32>(end - m_allocation)) == 0) {
      return m_growSize > 0 ? KRBufferNoMemory : KRBufferOutOfRange;
    }
  }
  if (m_data == nullptr) return KRBufferNoData;
  if (count > 0) std::memmove(m_data + m_offset, own ? m_data + place : bytes, count);
  m_offset = m_size = static_cast<u32>(end);
  return KRBufferOK;
}

// Writes a text without its NUL; its length is taken modulo 65536.
KRBufferResult KRBuffer::PutText(const char* text) {
  if (text == nullptr) return KRBufferNoData;
  return PutBufData(text, static_cast<u16>(std::strlen(text)));
}

// Adds at least `need` bytes to the allocation. Returns how many; 0 when it cannot.
u32 KRBuffer::GrowBuffer(u32 need, bool keepsContent) {
  if (need == 0 && m_growSize == 0) return 0;
  const u32 limit = GetMaxBufferSize();
  if (m_allocation >= limit) return 0;
  const u32 added = std::min(std::max(m_growSize, need), limit - m_allocation);
  if (added < need || !SetAllocation(m_allocation + added, keepsContent)) return 0;
  return added;
}

// Raises the allocation; new bytes are zero. When new memory is needed its size at least doubles.
// It is not reallocated in place, which could leave sign-on text in freed memory. Without memory
// the content is lost, unless `keepsContent`.
bool KRBuffer::SetAllocation(u32 allocation, bool keepsContent) {
  if (allocation > m_capacity) {
    const std::uint64_t doubled =
        std::min<std::uint64_t>(std::uint64_t{m_capacity} * 2, kMaxBufferSize);
    const u32 capacity = std::max(allocation, static_cast<u32>(doubled));
    auto* const fresh = static_cast<char*>(Allocate(capacity));
    if (fresh == nullptr) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    if (fresh == nullptr && keepsContent) return false;
    if (fresh != nullptr && m_data != nullptr) std::memcpy(fresh, m_data, m_allocation);
    if (fresh != nullptr && m_data == nullptr) std::memset(fresh, 0, m_allocation);
    WipeAndFree(m_data, m_capacity);
    m_data = fresh;
    m_capacity = fresh != nullptr ? capacity : 0;
    if (fresh == nullptr) return false;
  }
  std::memset(m_data + m_allocation, 0, allocation - m_allocation);
  m_allocation = allocation;
  return true;
}

namespace krofx::internal {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdelete-non-virtual-dtor"
void DeleteBuffer(KRBuffer* buffer) { delete buffer; }
#pragma GCC diagnostic pop

}  // namespace krofx::internal
