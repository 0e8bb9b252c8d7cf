// Local files through the system's own calls, which do not allocate memory.

#include "krofx/transport/files/internal/local_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

#include "krofx/core/buffer.h"
#include "krofx/core/internal/wipe.h"
#include "krofx/core/memory.h"

namespace krofx::internal {
namespace {

// A file name in this platform's form.
class NativeName {
 public:
  explicit NativeName(const char* name) {
    const std::size_t length = name != nullptr ? strnlen(name, kFileNameSize) : 0;
    m_usable = length > 0 && length < kFileNameSize;
    if (!m_usable) return;
    std::memcpy(m_text, name, length);
    m_text[length] = '\0';
    std::replace(m_text, m_text + length, '\\', '/');
  }
  bool IsUsable() const { return m_usable; }
  const char* Text() const { return m_text; }

 private:
  char m_text[kFileNameSize];
  bool m_usable;
};

// One chunk of a file's content. It may hold sign-on text, so it is overwritten before it is freed.
class Chunk {
 public:
  Chunk() : m_bytes(static_cast<char*>(Allocate(kFileChunk))) {}
  Chunk(const Chunk&) = delete;
  Chunk& operator=(const Chunk&) = delete;
  ~Chunk() { WipeAndFree(m_bytes, m_bytes != nullptr ? kFileChunk : 0); }
  char* Bytes() const { return m_bytes; }

 private:
  char* m_bytes;
};

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

}  // namespace

bool LocalFile::Open(const char* name, int flags) {
  Close();
  const NativeName native(name);
  if (!native.IsUsable()) return false;
  // Opening a pipe would wait for its other end.
  m_file = open(native.Text(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kOwnerOnly);
  struct stat facts;
  if (m_file >= 0 && fstat(m_file, &facts) == 0 && S_ISREG(facts.st_mode)) return true;
  Close();
  return false;
}

bool LocalFile::OpenToRead(const char* name) { return Open(name, O_RDONLY); }

// Makes a new file, since whoever has an old one open would read what is written into it.
bool LocalFile::OpenToWrite(const char* name) {
  Close();
  const NativeName native(name);
  if (!native.IsUsable()) return false;
  struct stat old;
  if (lstat(native.Text(), &old) == 0) {
    const bool isOwn = S_ISREG(old.st_mode) && old.st_nlink == 1 && old.st_uid == geteuid();
    if (!isOwn || unlink(native.Text()) != 0) return false;
  }
  if (!Open(name, O_WRONLY | O_CREAT | O_EXCL)) return false;
  // Fails where a file cannot be for its owner only, as in a file system without permissions.
  if (fchmod(m_file, kOwnerOnly) == 0) return true;
  Close();
  return false;
}

bool LocalFile::Size(u32& size) const {
  struct stat facts;
  if (m_file < 0 || fstat(m_file, &facts) != 0) return false;
  if (facts.st_size > std::numeric_limits<u32>::max()) return false;
  size = static_cast<u32>(facts.st_size);
  return true;
}

u32 LocalFile::Read(char* out, u32 count) {
  u32 done = 0;
  while (m_file >= 0 && done < count) {
    const ssize_t got = read(m_file, out + done, count - done);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<u32>(got);
  }
  return done;
}

bool LocalFile::AppendTo(KRBuffer& target) {
  if (m_file < 0) return false;
  const Chunk chunk;
  if (chunk.Bytes() == nullptr) return false;
  for (u16 got = kFileChunk; got == kFileChunk;) {
    got = static_cast<u16>(Read(chunk.Bytes(), kFileChunk));
    // A write of no bytes would still end the content at the cursor.
    if (got > 0 && target.Write(chunk.Bytes(), got) != KRBufferOK) break;
  }
  return true;
}

bool LocalFile::Write(const char* bytes, u32 count) {
  u32 done = 0;
  while (m_file >= 0 && done < count) {
    const ssize_t put = write(m_file, bytes + done, count - done);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) break;
    done += static_cast<u32>(put);
  }
  return done == count;
}

bool LocalFile::Close() {
  if (m_file < 0) return true;
  const bool closed = close(m_file) == 0;
  m_file = -1;
  return closed;
}

bool LocalFileSize(const char* name, u32& size) {
  LocalFile file;
  return file.OpenToRead(name) && file.Size(size);
}

bool LocalFileExists(const char* name) { return LocalFile().OpenToRead(name); }

void DeleteLocalFile(const char* name) {
  const NativeName native(name);
  if (native.IsUsable()) unlink(native.Text());
}

bool AppendLocalFile(const char* name, KRBuffer& target) {
  LocalFile file;
  return file.OpenToRead(name) && file.AppendTo(target);
}

bool SaveToLocalFile(const char* name, KRBuffer& source) {
  const Chunk chunk;
  LocalFile file;
  if (chunk.Bytes() == nullptr || !file.OpenToWrite(name)) return false;
  source.SetBufferOffset(0);
  KRBufferResult result = KRBufferOK;
  for (u16 got = 0; (result = source.Read(chunk.Bytes(), got, kFileChunk)) == KRBufferOK;) {
    if (!file.Write(chunk.Bytes(), got)) return false;
  }
  return file.Close() && result == KRBufferOutOfRange;
}

}  // namespace krofx::internal
