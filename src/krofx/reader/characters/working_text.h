// The text that is being read: the bytes as they came, or what the text menders made of them, with
// the way back to the original places.

#ifndef KROFX_READER_CHARACTERS_WORKING_TEXT_H_
#define KROFX_READER_CHARACTERS_WORKING_TEXT_H_

#include <cstddef>
#include <memory>
#include <string_view>

#include "krofx/core/buffer.h"
#include "krofx/core/types.h"
#include "krofx/reader/characters/offset_map.h"

namespace krofx::internal {

/// A buffer on the heap.
struct BufferDeleter {
  void operator()(KRBuffer* buffer) const { DeleteBuffer(buffer); }
};
using OwnedBuffer = std::unique_ptr<KRBuffer, BufferDeleter>;

/// One text. Its bytes have no NUL once the text menders are done, and positions fit 31 bits.
class WorkingText {
 public:
  /// The bytes as they came, which must outlive the text.
  /// @param base their offset in the file.
  WorkingText(std::string_view bytes, std::size_t base)
      : m_bytes(bytes), m_map(base), m_base(base), m_original(bytes.size()) {}
  WorkingText(const WorkingText&) = delete;
  WorkingText& operator=(const WorkingText&) = delete;

  /// Makes it another part of the bytes as they came.
  /// @return the buffer of what was made of the part before, if that was edited: views of it stay
  ///         good as long as it lives.
  OwnedBuffer Show(std::string_view bytes, std::size_t base) {
    m_bytes = bytes;
    m_map = OffsetMap(base);
    m_base = base;
    m_original = bytes.size();
    m_before.reset();
    return std::move(m_own);
  }
  std::string_view Bytes() const { return m_bytes; }
  u32 Size() const { return static_cast<u32>(m_bytes.size()); }
  /// @return the byte at a position, NUL after the last.
  char At(std::size_t position) const {
    return position < m_bytes.size() ? m_bytes[position] : '\0';
  }
  /// @return the offset in the file of the byte at a position.
  std::size_t ToOriginal(std::size_t position) const { return m_map.ToOriginal(position); }
  /// @return offset in the file at which the text begins.
  std::size_t Base() const { return m_base; }
  /// @return number of bytes that the text had.
  std::size_t OriginalSize() const { return m_original; }

  /// Bytes of one unit of the original: 2 for UTF-16, 4 for UTF-32, else 1.
  u8 unit = 1;

 private:
  friend class TextEdit;

  std::string_view m_bytes;
  OffsetMap m_map;
  std::size_t m_base;
  std::size_t m_original;
  OwnedBuffer m_own;
  // What was there before the last edit: views of it stay good.
  OwnedBuffer m_before;
};

/// Makes a text anew, piece by piece from the front.
class TextEdit {
 public:
  explicit TextEdit(WorkingText& text);

  /// Takes over the bytes of [from, to).
  void Keep(u32 from, u32 to);
  /// Writes bytes for the character at `from`, which has `width` bytes in the text.
  void Put(std::string_view bytes, u32 from, u8 width);
  /// Puts what was made in the place of the text.
  /// @return false, with the text as it was, when memory was exhausted.
  bool Finish();

 private:
  WorkingText& m_text;
  bool Write(std::string_view bytes);

  OwnedBuffer m_new;
  OffsetMap m_map;
  bool m_failed;
};

}  // namespace krofx::internal

#endif  // KROFX_READER_CHARACTERS_WORKING_TEXT_H_
