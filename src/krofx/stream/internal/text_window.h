// A window over a text that is to be mended: the bytes as they came, and what is made of them.
//
// What is read is the working text of the window: its bytes without control characters, and in
// UTF-8 where the text needs that. The way back to the original places goes through the working
// text's map, and lines are counted in the bytes as they came.

#ifndef KROFX_STREAM_INTERNAL_TEXT_WINDOW_H_
#define KROFX_STREAM_INTERNAL_TEXT_WINDOW_H_

#include <cstddef>
#include <string_view>

#include "krofx/core/list.h"
#include "krofx/reader/characters/working_text.h"
#include "krofx/stream/internal/byte_source.h"
#include "krofx/stream/internal/line_counter.h"

namespace krofx::internal {

class Charset;

/// The window of one reading of a text.
class TextWindow {
 public:
  /// What a filling came to.
  enum class Filled : u8 {
    kYes,    ///< The window is full, or has the end of the text.
    kLater,  ///< It needs the next piece.
    kNoMemory,
    kFailed,  ///< The source could not be read: errno says why.
  };
  static constexpr std::size_t kNoEnd = static_cast<std::size_t>(-1);

  /// @param source must be at the beginning of the text.
  /// @param usual bytes of the text that the window has at first.
  /// @param most bytes up to which it grows for what must be seen as a whole.
  /// @param end where the text ends, if that is known.
  TextWindow(ByteSource& source, u32 usual, u32 most, std::size_t end = kNoEnd);
  TextWindow(const TextWindow&) = delete;
  TextWindow& operator=(const TextWindow&) = delete;

  /// Reads the source again from its beginning.
  /// @param end where the text ends, if that is known.
  /// @return false when the source does not go back.
  bool Restart(std::size_t end);
  /// Ends the text at an offset in the window, or right after it.
  void EndAt(std::size_t end);
  /// Makes UTF-8 of what is shown from now on.
  /// @param from a position in the first window that is shown.
  /// @param charset the character set of the text, which must stay.
  void ConvertFrom(u32 from, const Charset& charset) {
    m_convertedFrom = from;
    m_charset = &charset;
  }
  /// @return whether the working text is UTF-8 that was made of another character set.
  bool IsConverted() const { return m_charset != nullptr; }
  /// Reads until the window is full. May be called again after kLater.
  Filled Fill();
  /// Makes the working text of what is there.
  /// @return false when memory is exhausted.
  bool Show();
  /// Puts more text after what is there: positions stay, and views of it stay good until Slide.
  /// @return false when there is no more, and when the window has its greatest size.
  bool Extend();
  /// Drops what is in front of a position of the working text, which is empty until Show.
  void Slide(std::size_t position);
  /// Drops bytes as they came.
  void Drop(std::size_t count);
  /// Makes room when nothing can be dropped.
  /// @return false when the window has its greatest size.
  bool Grow();

  /// @return what can be read. The object stays the same.
  WorkingText& Text() { return m_text; }
  const WorkingText& Text() const { return m_text; }
  /// @return the bytes as they came.
  std::string_view Original() const;
  /// @return where the window begins, and ends, in the bytes as they came.
  std::size_t Base() const { return m_base; }
  std::size_t OriginalEnd() const { return m_base + m_size; }
  /// @return whether the text goes on after the window.
  bool IsPart() const { return !m_isEnded; }
  /// @return whether it has its greatest size.
  bool IsAtLimit() const { return m_room >= m_most; }
  /// @return how many bytes it has when it is full.
  u32 Room() const { return m_room; }
  /// @return the place of an offset in the window, or right after it.
  Place PlaceOf(std::size_t offset) { return m_lines.Find(Original(), m_base, offset); }

 private:
  bool SetRoom(u32 room);

  ByteSource& m_source;
  const Charset* m_charset = nullptr;
  u32 m_convertedFrom = 0;
  u32 m_room;
  u32 m_most;
  std::size_t m_end;
  OwnedBuffer m_bytes;
  u32 m_size = 0;
  u32 m_shown = 0;  // How many of them the working text is made of.
  std::size_t m_base = 0;
  bool m_isEnded = false;
  WorkingText m_text;
  LineCounter m_lines;
  // What views may still be of.
  List<OwnedBuffer> m_before;
};

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_TEXT_WINDOW_H_
