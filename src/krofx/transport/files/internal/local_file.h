// The platform's side of local files: what the transports read replies from and write requests to.
//
// Names may stand in the form with a drive and backslashes, in which `file:` URLs come: here a
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
  LocalFile(LocalFile const&) = delete;
  LocalFile& operator=(LocalFile const&) = delete;
  ~LocalFile() { Close(); }

  /// Opens a file for binary reading. False when it does not open, is no regular file, or the name
  /// is null or too long.
  bool OpenToRead(char const* name);
  /// Opens a file for binary writing, replacing what was there; a new one is its owner's only.
  bool OpenToWrite(char const* name);
  /// Gives the offset of the file's end. False when no file is open or the size passes 32 bits.
  bool Size(u32& size) const;
  /// Reads up to `count` bytes and says how many; fewer only at the file's end or on an error.
  u32 Read(char* out, u32 count);
  /// Writes all of `count` bytes; false when the file does not take them.
  bool Write(char const* bytes, u32 count);
  /// Closes the file; false when what was written may not have arrived. Nothing open is fine.
  bool Close();

 private:
  bool Open(char const* name, int flags);

  int m_file = -1;
};

/// Gives the size of a file that could be opened for reading; false leaves `size` alone.
KROFX_API bool LocalFileSize(char const* name, u32& size);

/// Whether there is a regular file that could be opened for reading.
KROFX_API bool LocalFileExists(char const* name);

/// Removes a file, if there is one; an empty or null name is allowed.
KROFX_API void DeleteLocalFile(char const* name);

/// Writes a file's content at the cursor of `target`, in chunks, until one comes back short or the
/// target takes no more, which its size then tells. False, and nothing is written, when the file
/// does not open or there is no memory for a chunk.
KROFX_API bool AppendLocalFile(char const* name, KRBuffer& target);

/// Writes the whole content of `source` to a file, in chunks, replacing what was there; the cursor
/// stands at the end then. False when the file does not open, takes no more, the source lost its
/// data, or there is no memory for a chunk; only the last leaves an old file as it was.
KROFX_API bool SaveToLocalFile(char const* name, KRBuffer& source);

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_FILES_INTERNAL_LOCAL_FILE_H_
