// Local files on this platform, from which the transports read replies and to which they write
// requests.
//
// Names may have the form with a drive and backslashes that `file:` URLs give: a backslash counts
// as a slash. Only regular files are opened, so that no device or pipe can block a thread.

#ifndef KROFX_TRANSPORT_FILES_INTERNAL_LOCAL_FILE_H_
#define KROFX_TRANSPORT_FILES_INTERNAL_LOCAL_FILE_H_

#include <climits>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

class KRBuffer;

namespace krofx::internal {

/// Bytes of the longest file name, its NUL included.
inline constexpr u32 kFileNameSize = PATH_MAX;

/// Bytes of the pieces in which files are read and written.
inline constexpr u16 kFileChunk = 10000;

/// An open file, closed with the object.
class KROFX_API LocalFile {
 public:
  LocalFile() = default;
  LocalFile(const LocalFile&) = delete;
  LocalFile& operator=(const LocalFile&) = delete;
  ~LocalFile() { Close(); }

  /// Opens a file for binary reading; a file that is open is closed first.
  /// @return whether the file is open; false when it does not open, is not a regular file, or the
  ///         name is null or too long.
  bool OpenToRead(const char* name);
  /// Makes a file for binary writing that only its owner can read. An old file of that name is
  /// removed first, so nobody who has it open reads the new one.
  /// @return as OpenToRead; false also when the folder takes no new file, and for a link, symbolic
  ///         or hard, and a file of another owner, which stay as they are.
  bool OpenToWrite(const char* name);
  /// @return whether a file is open.
  bool IsOpen() const { return m_file >= 0; }
  /// Gets the offset of the file's end.
  /// @return whether it is known; false when no file is open or the size exceeds 32 bits.
  bool Size(u32& size) const;
  /// Reads up to `count` bytes.
  /// @return the number of bytes read, which is less than `count` only at the file's end or after
  ///         an error.
  u32 Read(char* out, u32 count);
  /// Writes the rest of the file at the cursor of `target`, in chunks, until a chunk is short or
  /// the target accepts no more; its size then shows how much was written.
  /// @return true after that; false, with nothing read, when no file is open or there is no memory
  ///         for a chunk.
  bool AppendTo(KRBuffer& target);
  /// Writes `count` bytes.
  /// @return whether all of them were written.
  bool Write(const char* bytes, u32 count);
  /// Closes the file, if one is open.
  /// @return false when some of the written bytes may be lost.
  bool Close();

 private:
  bool Open(const char* name, int flags);

  int m_file = -1;
};

/// Gets the size of a file that can be opened for reading.
/// @return whether there is one; if not, `size` is unchanged.
KROFX_API bool LocalFileSize(const char* name, u32& size);

/// @return whether there is a regular file that can be opened for reading.
KROFX_API bool LocalFileExists(const char* name);

/// Removes a file, if there is one; an empty or null name is allowed.
KROFX_API void DeleteLocalFile(const char* name);

/// Writes the content of a file at the cursor of `target`.
/// @return as LocalFile::AppendTo; false also when the file does not open.
KROFX_API bool AppendLocalFile(const char* name, KRBuffer& target);

/// Writes the whole content of `source` to a new file, in chunks, in the place of an old one.
/// Afterwards the cursor is at the end.
/// @return false when the file does not open (see LocalFile::OpenToWrite) or cannot be written, the
///         source lost its data, or there is no memory for a chunk. An old file is unchanged only
///         in the last case, and when OpenToWrite does not remove it.
KROFX_API bool SaveToLocalFile(const char* name, KRBuffer& source);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_FILES_INTERNAL_LOCAL_FILE_H_
