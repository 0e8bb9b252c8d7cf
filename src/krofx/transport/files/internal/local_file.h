// The platform's side of local files: what the transports read replies from and write requests to.
//
// Names may have the form with a drive and backslashes, which comes out of `file:` URLs: here a
// backslash is a slash. Only regular files are opened, so that no device or pipe can hold a thread.

#ifndef KROFX_TRANSPORT_FILES_INTERNAL_LOCAL_FILE_H_
#define KROFX_TRANSPORT_FILES_INTERNAL_LOCAL_FILE_H_

#include <climits>

#include "krofx/core/export.h"
#include "krofx/core/types.h"

class KRBuffer;

namespace krofx::internal {

/// Bytes of the longest file name that is opened, its NUL included.
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

  /// Opens a file for binary reading, in place of the one that is open.
  /// @return whether it did; false when it does not open, is no regular file, or the name is null
  /// or
  ///         too long.
  bool OpenToRead(const char* name);
  /// Opens a file for binary writing, and empties it. Only its owner can read it: a new one is made
  /// so, and an existing one loses what others could do with it.
  /// @return as OpenToRead; false also for a link, symbolic or hard, and for a file of another
  /// owner.
  bool OpenToWrite(const char* name);
  /// @return whether a file is open.
  bool IsOpen() const { return m_file >= 0; }
  /// Gives the offset of the file's end.
  /// @return whether it is known; false when no file is open or the size exceeds 32 bits.
  bool Size(u32& size) const;
  /// Reads up to `count` bytes.
  /// @return how many; fewer only at the file's end or on an error.
  u32 Read(char* out, u32 count);
  /// Writes what is left to be read of the file at the cursor of `target`, in chunks, until one
  /// comes back short or the target takes no more, which its size then shows.
  /// @return true after that; false, with nothing read, when no file is open or there is no memory
  /// for
  ///         a chunk.
  bool AppendTo(KRBuffer& target);
  /// Writes all of `count` bytes.
  /// @return whether the file took them.
  bool Write(const char* bytes, u32 count);
  /// Closes the file, if one is open.
  /// @return false when what was written may not have arrived.
  bool Close();

 private:
  bool Open(const char* name, int flags);

  int m_file = -1;
};

/// Gives the size of a file that could be opened for reading.
/// @return whether there is one; false leaves `size` alone.
KROFX_API bool LocalFileSize(const char* name, u32& size);

/// @return whether there is a regular file that could be opened for reading.
KROFX_API bool LocalFileExists(const char* name);

/// Removes a file, if there is one; an empty or null name is allowed.
KROFX_API void DeleteLocalFile(const char* name);

/// Writes the content of a file at the cursor of `target`.
/// @return as LocalFile::AppendTo; false also when the file does not open.
KROFX_API bool AppendLocalFile(const char* name, KRBuffer& target);

/// Writes the whole content of `source` to a file, in chunks, replacing what was there; the cursor
/// is at the end afterwards.
/// @return false when the file does not open (see LocalFile::OpenToWrite), takes no more, the
/// source
///         lost its data, or there is no memory for a chunk; only the last leaves an old file as it
///         was.
KROFX_API bool SaveToLocalFile(const char* name, KRBuffer& source);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_FILES_INTERNAL_LOCAL_FILE_H_
