// Reads in growing pieces, since not everything that can be opened says its size.

#include "krofx/reader/file/file_bytes.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <memory>

#include "krofx/core/buffer.h"

namespace krofx::internal {

namespace {

// Positions in a text have 31 bits.
constexpr std::size_t kMostBytes = 0x7fffffff;
constexpr u32 kFirst = 65536;

// A file that is open.
struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace

FileBytes ReadFileBytes(const char* path, KRBuffer& buffer) {
  OpenFile file(std::fopen(path, "rb"));
  if (file == nullptr) return FileBytes::kNotOpened;
  std::size_t size = 0;
  for (std::size_t room = kFirst;; room = std::min(room * 2, kMostBytes)) {
    if (buffer.AllocateTo(static_cast<u32>(room)) != KRBufferOK) return FileBytes::kNoMemory;
    size += std::fread(buffer.GetBufferPtr() + size, 1, room - size, file.get());
    if (size < room || room == kMostBytes) break;
  }
  if (std::ferror(file.get()) != 0) {
    const int error = errno;
    file.reset();  // Must not change what errno says.
    errno = error;
    return FileBytes::kNotRead;
  }
  buffer.SetBufferSize(static_cast<u32>(size));
  return FileBytes::kRead;
}

}  // namespace krofx::internal
