// Small holders of what must be given back: an open file, and memory that held a secret.

#ifndef KROFX_COMMAND_SYSTEM_FILE_DESCRIPTOR_H_
#define KROFX_COMMAND_SYSTEM_FILE_DESCRIPTOR_H_

#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <utility>

namespace krofx::command {

/// An open file, closed at the end.
class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
  ~FileDescriptor() { Close(); }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  explicit operator bool() const { return m_descriptor >= 0; }
  int Get() const { return m_descriptor; }
  /// Closes the file.
  /// @return false when the system reports that something was not written.
  bool Close() { return m_descriptor < 0 || ::close(std::exchange(m_descriptor, -1)) == 0; }

 private:
  int m_descriptor;
};

/// Bytes that are overwritten at the end.
template <std::size_t kSize>
struct Wiped {
  Wiped() = default;
  ~Wiped() { explicit_bzero(bytes, kSize); }
  Wiped(const Wiped&) = delete;
  Wiped& operator=(const Wiped&) = delete;

  char bytes[kSize] = {};
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SYSTEM_FILE_DESCRIPTOR_H_
