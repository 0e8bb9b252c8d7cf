// A window over a text that arrives piece by piece, with the engine that reads it.
//
// The engine takes what is in its buffer for the whole text. Over a part of a text it would take
// the end of the part for the end of the text, so it may read only what would be read alike if more
// followed. PlainFeed leaves by itself what it does not see to its end. Before a tag is read the
// ordinary way, which may look ahead without a limit, a copy of the engine tries whether the end of
// the window plays a part.

#ifndef KROFX_PARSE_INTERNAL_ENGINE_WINDOW_H_
#define KROFX_PARSE_INTERNAL_ENGINE_WINDOW_H_

#include <cstddef>
#include <span>
#include <string_view>

#include "krofx/core/buffer.h"
#include "krofx/core/export.h"
#include "krofx/parse/engine.h"

class KRParser;

namespace krofx::internal {

/// The window of one text, or a buffer that has all of it. Memory is taken for what has not been
/// read yet, and for one refill.
class KROFX_API EngineWindow {
 public:
  /// @param usual bytes that the window has at first.
  /// @param most bytes up to which it grows for what must be seen as a whole.
  EngineWindow(u32 usual, u32 most);
  EngineWindow(const EngineWindow&) = delete;
  EngineWindow& operator=(const EngineWindow&) = delete;

  /// Reads a plain buffer that has the whole text, in place: nothing is copied or dropped, and no
  /// more is needed. It must stay. To be said before anything else.
  void Borrow(KRBuffer& buffer);
  KRParseEngine& Engine() { return m_engine; }
  KRBuffer& Buffer() { return m_borrowed != nullptr ? *m_borrowed : m_buffer; }
  /// @return what is in the window, up to the first NUL.
  std::string_view Text() const;
  /// @return the same, or the first `most` bytes of it.
  std::string_view Beginning(std::size_t most) const;
  /// @return how many bytes of the whole text were taken.
  std::size_t Taken() const;
  /// @return offset in the whole text of the window's first byte.
  std::size_t Base() const { return m_base; }
  /// @return offset in the whole text of the tag or header line that was read last.
  std::size_t ItemOffset() const;
  /// @return the bytes that have been read and can be dropped.
  u32 CountRead() const;

  /// Drops what has been read.
  void Slide();
  /// @return room for bytes after what is there: `Added` says how many were put there. Empty when
  ///         the window is full, or memory is exhausted.
  std::span<char> Room();
  void Added(std::size_t count);
  /// The text has no more bytes.
  void End() { m_ended = true; }
  bool IsEnded() const { return m_ended; }
  /// Makes room when the window is full.
  /// @return false when it has its greatest size already, or memory is exhausted.
  bool Grow();
  /// @return whether it is full at its greatest size.
  bool IsAtLimit() const { return m_buffer.GetBufferSize() >= m_most; }

  /// @return whether another look is worthwhile. What is only partly there is not looked at again
  ///         for each byte, or a long item that comes byte by byte would take a time that grows
  ///         with its square.
  bool MayLook() const { return m_ended || Unread() >= m_wanted; }
  /// Begins a look.
  void Look() { m_wanted = 0; }
  /// The look has shown that more is needed.
  void AskForMore();
  /// @return whether the header lines can be read as in the whole text.
  bool HasWholeHeaders();
  /// Begins the body: from here on what has been read can be dropped.
  void BeginBody() { m_inBody = true; }
  /// @return whether the next tag, and what a parser that cannot take it would skip, can be read as
  ///         in the whole text.
  bool HasWholeTag(KRParser& parser);

 private:
  u32 Unread() const { return m_buffer.GetBufferSize() - CountRead(); }
  std::string_view WholeText() const;
  bool DependsOnEnd(const KRParseEngine& engine) const;

  // Small until there is something to put into it.
  KRBuffer m_buffer;
  KRBuffer* m_borrowed = nullptr;
  mutable std::string_view m_whole;  // Of the borrowed buffer; null until somebody asks.
  KRParseEngine m_engine;
  u32 m_usual;
  u32 m_most;
  u32 m_wanted = 0;
  std::size_t m_base = 0;
  bool m_inBody = false;
  bool m_ended = false;
};

}  // namespace krofx::internal

#endif  // KROFX_PARSE_INTERNAL_ENGINE_WINDOW_H_
