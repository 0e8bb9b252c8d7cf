// Reads a whole file into a buffer of the library: what every host does before it parses.

#ifndef KROFX_EXAMPLES_READ_FILE_H_
#define KROFX_EXAMPLES_READ_FILE_H_

#include <krofx/krofx.h>

#include <cstdio>

/// Puts the content of the file `name` into `buffer`; says so on standard error when it cannot.
inline bool ReadFile(const char* name, KRBuffer& buffer) {
  std::FILE* file = std::fopen(name, "rb");
  if (file == nullptr) {
    std::perror(name);
    return false;
  }
  char block[4096];
  bool good = true;
  for (std::size_t count; good && (count = std::fread(block, 1, sizeof block, file)) > 0;) {
    good = buffer.WriteLarge(block, static_cast<u32>(count)) == 0;
  }
  good = good && std::ferror(file) == 0;
  std::fclose(file);
  if (!good) std::fprintf(stderr, "%s: cannot be read\n", name);
  return good;
}

#endif  // KROFX_EXAMPLES_READ_FILE_H_
