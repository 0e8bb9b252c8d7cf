// The two temporary files of an exchange: the body of its reply, and the header lines.

#ifndef KROFX_TRANSPORT_CURL_INTERNAL_TEMPORARY_FILE_H_
#define KROFX_TRANSPORT_CURL_INTERNAL_TEMPORARY_FILE_H_

#include <cstddef>

#include "krofx/core/types.h"
#include "krofx/transport/contract/connection_manager.h"

namespace krofx::internal {

/// A new file in a folder, readable by its owner only. It is removed with the object, unless
/// HandOver was called.
class TemporaryFile {
 public:
  TemporaryFile() = default;
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  /// Makes the file, under a name that ends with `suffix`. An empty or null folder is /tmp;
  /// a backslash in it counts as a slash.
  /// @return false, and there is no file, when the name does not fit into a finished record, or no
  ///         file can be made in the folder.
  bool Create(const char* folder, const char* suffix);
  /// Appends `count` bytes.
  /// @return false when they could not be written.
  bool Write(const char* bytes, std::size_t count);
  /// Removes what was written so far.
  /// @return false when that fails.
  bool Empty();
  /// Closes the file.
  /// @return false when some of the written bytes may be lost.
  bool Close();
  /// @return the bytes written so far.
  std::size_t Size() const { return m_size; }
  /// Closes the file and gives its name to the caller, who must remove it. `out` has room for
  /// VYFinishedRecord::kReplyFileSize bytes.
  void HandOver(char* out);

 private:
  int m_file = -1;
  std::size_t m_size = 0;
  char m_name[VYFinishedRecord::kReplyFileSize] = {};
};

}  // namespace krofx::internal

#endif  // KROFX_TRANSPORT_CURL_INTERNAL_TEMPORARY_FILE_H_
