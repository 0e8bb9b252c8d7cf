// The growable byte area through which all OFX text passes: the builder writes one, the transport
// moves one, the parse engine reads one.
//
// One cursor serves reading and writing. A write ends the content: after it the size equals the
// cursor, so a write inside the content cuts off everything after it. Memory is overwritten with
// zeros before it is freed, also when the buffer grows, because buffers hold sign-on text.

#ifndef KROFX_CORE_BUFFER_H_
#define KROFX_CORE_BUFFER_H_

#include <cstring>

#include "krofx/core/array.h"
#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/types.h"

class KRBuffer;
class KRString;

namespace krofx::internal {
KROFX_API bool WriteWhole(KRBuffer& target, const KRBuffer& source);
}  // namespace krofx::internal

/// Result of reading from and writing to a buffer.
enum KRBufferResult : s32 {
  /// Done.
  KRBufferOK = 0,
  /// A read past the content, the size limit reached, or growth refused with grow size 0.
  KRBufferOutOfRange = -9996,
  /// The buffer could not grow.
  KRBufferNoMemory = -9997,
  /// The buffer has no memory to read from or write to, or a pointer is null.
  KRBufferNoData = -9998,
};

/// A growable byte area with one cursor. It may hold any byte, NUL included.
///
/// The allocation that GetBufferAllocation reports grows by the grow size, or by what is needed if
/// that is more. The memory itself grows by doubling, so that long content costs few copies. When
/// memory is exhausted the content is lost: the fire alarm is raised and the buffer has no data.
///
/// A derived class may override GetCh to supply characters from another source. Deleting a derived
/// buffer through a pointer to this class is not allowed, since the destructor is not virtual.
class KROFX_API KRBuffer : public krofx::internal::HeapObject {
 public:
  /// Bytes of the blocks in which bulk data is moved.
  static constexpr u16 kBlockSize = 16384;
  /// Bytes allocated when the initial size and the grow size are both 0.
  static constexpr u32 kDefaultGrowSize = 512;

  /// Allocates `initialSize` bytes, or `growSize` when that is 0, or 512 when both are 0. A grow
  /// size of 0 means to grow by exactly what is needed.
  KRBuffer(u32 initialSize, u32 growSize);
  KRBuffer(const KRBuffer&) = delete;
  KRBuffer& operator=(const KRBuffer&) = delete;
  /// Overwrites the memory and frees it.
  ~KRBuffer();

  /// Reads one byte without moving the cursor.
  /// @return the byte at position `index`; 0 when the position is negative or not inside the
  ///         content.
  virtual char GetCh(s32 index);

  /// Makes the allocation at least `bytes`; size and cursor stay.
  /// @return KRBufferOK or KRBufferNoMemory.
  KRBufferResult AllocateTo(u32 bytes);

  /// Writes one byte at the cursor.
  KRBufferResult Write(char byte) { return PutBufData(&byte, 1); }
  /// Writes `count` bytes at the cursor.
  /// @return as any write; KRBufferNoData for a null pointer with a count.
  KRBufferResult Write(const char* bytes, u16 count) { return PutBufData(bytes, count); }
  /// As += of a buffer.
  KRBufferResult Write(KRBuffer* source) { return *this += source; }
  /// Writes the text and one NUL after it, which counts in size and cursor. The length is taken
  /// modulo 65536, so a text of 65536 bytes or more is not written whole: use WriteLarge.
  KRBufferResult WriteString(const char* text);
  /// Writes any number of bytes, in blocks.
  /// @return KRBufferOK, or the result of the first block that fails; later blocks are not written.
  KRBufferResult WriteLarge(const char* bytes, u32 count);

  /// Writes one byte at the cursor. A failure shows only in the fire alarm.
  void operator+=(char byte) { PutBufData(&byte, 1); }
  /// Writes the text at the cursor, without a NUL; lengths as for WriteString. A failure shows only
  /// in the fire alarm.
  void operator+=(const char* text);
  /// Writes the whole content of `source` at the cursor, wherever the source's own cursor is.
  /// @return KRBufferOK, also when a block of it could not be written (which ends the copy);
  ///         KRBufferNoData when the source is null or has content but no data.
  KRBufferResult operator+=(const KRBuffer* source);

  /// Reads one byte at the cursor.
  /// @return KRBufferOK; KRBufferOutOfRange at the end of the content.
  KRBufferResult Read(char* out) { return GetBufData(out, 1); }
  /// Reads up to `max` bytes at the cursor and stores their number in `got`.
  /// @return KRBufferOK; KRBufferOutOfRange at the end of the content, with `got` left alone.
  KRBufferResult Read(char* out, u16& got, u16 max);

  /// Looks for `character` from position `start`, up to a NUL or the end of the content, and stores
  /// the position at which the search ended. The cursor stays.
  /// @return 1 when it was found; 0 when the NUL or the end came first.
  u16 FindSubChar(s32 start, char character, s32* position);
  /// Copies up to `count` bytes from position `start` into `out`, ending at a NUL or at the end of
  /// the content, and makes room for `count` characters (65534 at most) there. The cursor stays.
  /// @return the number copied; 0 when memory is exhausted.
  u16 GetData(KRString& out, s32 start, u16 count);

  /// Replaces the target's content by `count` bytes from position `start`, or by everything from
  /// `start` when `count` is 0; the target's cursor is at the end then. When there are no bytes to
  /// copy, the target's size becomes its old cursor, and its cursor 0.
  /// @return KRBufferOK; KRBufferOutOfRange for a range past the content, KRBufferNoMemory for
  ///         exhausted memory, KRBufferNoData for a null target or missing data.
  KRBufferResult CopyBuffer(KRBuffer* target, u32 start, u32 count) const;
  /// @return 1 when both buffers have data and the same content.
  u16 CompareBuffer(const KRBuffer* other) const;

  /// Fills the content with `fill`, then sets the size to the cursor and the cursor to 0. Nothing
  /// happens when the buffer has no data.
  void ClearBuffer(char fill);
  /// Sets the size; 0 means the current cursor. Positions beyond the allocation cannot be read.
  void SetBufferSize(u32 size) { m_size = size == 0 ? m_offset : size; }
  /// Moves the cursor, up to the size.
  /// @return 1; 0, without a move, for an offset beyond the size.
  u16 SetBufferOffset(u32 offset);

  /// @return the bytes of content.
  u32 GetBufferSize() const { return m_size; }
  /// @return the cursor: the position that is read or written next.
  u32 GetBufferOffset() const { return m_offset; }
  /// @return the bytes that can be held before the next growth.
  u32 GetBufferAllocation() const { return m_allocation; }
  /// @return the memory, for direct reads, and for direct writes that end with SetBufferSize; null
  ///         when memory was exhausted. The pointer is valid until the buffer grows.
  char* GetBufferPtr() const { return m_data; }
  /// @return as GetBufferPtr, but null when the allocation is 65535 bytes or more, for callers that
  ///         count in 16 bits.
  char* GetSmallBufferPtr() const { return m_allocation < 65535 ? m_data : nullptr; }

  /// @return 1 when the content is what the memory holds: the buffer is exactly of this class, so
  ///         reading GetBufferPtr is the same as reading through GetCh.
  u16 HasPlainBytes() const;

 protected:
  /// @return the limit of the allocation; a write that would end at or above it is refused.
  virtual u32 GetMaxBufferSize();

 private:
  KRBufferResult GetBufData(char* out, u16 count);
  KRBufferResult PutBufData(const char* bytes, u16 count) {
    if (m_data != nullptr && bytes != nullptr && count <= m_allocation &&
        m_offset <= m_allocation - count) {
      std::memmove(m_data + m_offset, bytes, count);
      m_offset += count;
      m_size = m_offset;
      return KRBufferOK;
    }
    return PutGrowing(bytes, count);
  }
  KRBufferResult PutGrowing(const char* bytes, u16 count);
  KRBufferResult PutText(const char* text);
  u32 GrowBuffer(u32 need, bool keepsContent = false);
  bool SetAllocation(u32 allocation, bool keepsContent = false);
  u32 Readable() const;

  friend bool krofx::internal::WriteWhole(KRBuffer& target, const KRBuffer& source);

  char* m_data = nullptr;
  u32 m_allocation = 0;
  u32 m_growSize = 0;
  u32 m_size = 0;
  u32 m_offset = 0;
  u32 m_capacity = 0;
};

namespace krofx::internal {

/// Deletes a buffer that is exactly of class KRBuffer.
KROFX_API void DeleteBuffer(KRBuffer* buffer);

template <>
inline void DestroyElement<KRBuffer>(KRBuffer* element) {
  DeleteBuffer(element);
}

}  // namespace krofx::internal

/// An array of owned buffers, each exactly of class KRBuffer.
class KROFX_API KRDynamicArrayBuffer : public krofx::internal::PlainArray<KRBuffer> {
 public:
  using PlainArray::PlainArray;
};

#endif  // KROFX_CORE_BUFFER_H_
