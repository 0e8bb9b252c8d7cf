// The bytes of a file.

#ifndef KROFX_READER_FILE_FILE_BYTES_H_
#define KROFX_READER_FILE_FILE_BYTES_H_

#include "krofx/core/types.h"

class KRBuffer;

namespace krofx::internal {

/// The result of reading a file.
enum class FileBytes : u8 {
  kRead,
  kNotOpened,  ///< errno says why.
  kNotRead,    ///< errno says why.
  kNoMemory,
};

/// Reads a file into an empty buffer, up to 2^31 - 1 bytes of it.
FileBytes ReadFileBytes(const char* path, KRBuffer& buffer);

}  // namespace krofx::internal

#endif  // KROFX_READER_FILE_FILE_BYTES_H_
