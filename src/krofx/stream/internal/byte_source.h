// Where the bytes of a stream come from.

#ifndef KROFX_STREAM_INTERNAL_BYTE_SOURCE_H_
#define KROFX_STREAM_INTERNAL_BYTE_SOURCE_H_

#include <cstddef>
#include <cstdio>
#include <memory>
#include <span>
#include <string_view>

#include "krofx/core/buffer.h"
#include "krofx/core/types.h"

namespace krofx::internal {

/// Closes a file.
struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
/// A file that is open.
using OpenFile = std::unique_ptr<std::FILE, FileCloser>;

/// A text's bytes from their beginning to their end.
class ByteSource {
 public:
  /// What the source has to give.
  enum class Supply : u8 {
    kBytes,   ///< It gave some.
    kLater,   ///< Nothing until the next piece.
    kNone,    ///< No more at all.
    kFailed,  ///< The file could not be read: errno says why.
  };

  /// Gives the bytes of memory, which must stay; they are all, or one of several pieces.
  void SetBytes(std::string_view bytes, bool all) {
    m_bytes = bytes;
    m_whole = all ? bytes : std::string_view();
    m_all = all;
  }
  /// Gives what a buffer of a derived class serves, up to the first NUL.
  void SetBuffer(KRBuffer& buffer) { m_buffer = &buffer; }
  /// Gives the bytes of a file.
  void SetFile(OpenFile file);
  /// There are no more pieces.
  void Finish() { m_all = true; }

  /// @return whether it takes another piece: the one before it has been read, and it was not the
  ///         last.
  bool TakesPiece() const {
    return m_bytes.empty() && !m_all && m_file == nullptr && m_buffer == nullptr;
  }
  /// @return whether the bytes can be read again: those of memory, of a buffer, and of a file that
  ///         is no pipe.
  bool CanGoTo() const {
    return m_file != nullptr ? m_start >= 0 : m_buffer != nullptr || m_whole.data() != nullptr;
  }
  /// @return whether there is something left of a piece.
  bool HasPiece() const { return !m_bytes.empty() && m_whole.data() == nullptr; }
  /// Forgets what is left of a piece.
  void DropPiece() { m_bytes = {}; }
  /// @return how many bytes were read.
  std::size_t Position() const { return m_position; }
  /// Goes on from a position again; CanGoTo.
  /// @return false when that failed.
  bool GoTo(std::size_t position);
  /// Puts bytes into `room`, which is not empty, and counts them.
  Supply Read(std::span<char> room, std::size_t& count);
  /// @return whether a character is in what is left, which is read up to there.
  /// @param passesNul whether what comes after a NUL counts.
  bool HasAhead(char character, bool passesNul);

 private:
  Supply ReadOn(std::span<char> room, std::size_t& count);

  std::string_view m_bytes;  // What is left.
  std::string_view m_whole;  // All, when that is known.
  bool m_all = false;
  KRBuffer* m_buffer = nullptr;
  std::size_t m_position = 0;
  OpenFile m_file;
  long m_start = -1;  // Where it is in the file at first; below 0 for what cannot go back.
};

}  // namespace krofx::internal

#endif  // KROFX_STREAM_INTERNAL_BYTE_SOURCE_H_
