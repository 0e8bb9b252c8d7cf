// Reads files, directories and standard input, and says what could not be read.

#include "input/input_files.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "input/gzip.h"
#include "output/characters.h"
#include "output/safe_text.h"
#include "system/file_descriptor.h"
#include "system/large_pages.h"

namespace krofx::command {

namespace {

namespace fs = std::filesystem;

// Smaller files take few pages of any size.
constexpr off_t kLargeFile = off_t{512} * 1024;
// How much memory a file takes with its tree, in times of its size.
constexpr std::size_t kTreeTimes = 5;

bool HasOfxExtension(fs::path path) {
  if (path.extension() == ".gz") path.replace_extension();
  const std::string extension = LowerAscii(path.extension().string());
  return extension == ".ofx" || extension == ".qfx" || extension == ".qbo";
}

void FindInDirectory(const std::string& name, std::vector<std::string>& inputs,
                     std::vector<std::string>& problems) {
  std::vector<std::string> found;
  std::error_code error;
  for (fs::recursive_directory_iterator file(name, error), end; !error && file != end;
       file.increment(error)) {
    std::error_code ignored;
    if (HasOfxExtension(file->path()) && file->is_regular_file(ignored)) {
      found.push_back(file->path().string());
    }
  }
  if (error) {
    problems.push_back(name + ": the directory cannot be read: " + error.message());
  } else if (found.empty()) {
    problems.push_back(
        name + ": the directory holds no .ofx, .qfx or .qbo file, packed or not: no statement");
  }
  std::sort(found.begin(), found.end());
  inputs.insert(inputs.end(), found.begin(), found.end());
}

// Waits until somebody writes into a pipe or closes it. What is neither a file nor a pipe, such as
// a terminal or the null device, holds nothing.
bool HoldsAnything(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) return false;
  if (S_ISREG(status.st_mode)) return ::lseek(descriptor, 0, SEEK_CUR) < status.st_size;
  if (!S_ISFIFO(status.st_mode) && !S_ISSOCK(status.st_mode)) return false;
  struct pollfd waited {
    descriptor, POLLIN, 0
  };
  while (::poll(&waited, 1, -1) < 0) {
    if (errno != EINTR) return false;
  }
  int bytes = 0;
  return ::ioctl(descriptor, FIONREAD, &bytes) == 0 && bytes > 0;
}

}  // namespace

bool DefaultToStandardInput(std::vector<std::string>& files) {
  if (files.empty() && HoldsAnything(STDIN_FILENO)) files.emplace_back("-");
  return !files.empty();
}

std::vector<std::string> FindInputs(const std::vector<std::string>& arguments,
                                    std::vector<std::string>& problems) {
  std::vector<std::string> inputs;
  for (const std::string& name : arguments) {
    std::error_code ignored;
    if (name != "-" && fs::is_directory(name, ignored)) {
      FindInDirectory(name, inputs, problems);
    } else {
      inputs.push_back(name);
    }
  }
  return inputs;
}

namespace {

// Reads up to `size` bytes into `to`, or what there is. Negative with a problem.
ssize_t ReadSome(const FileDescriptor& file, char* to, std::size_t size, std::string& problem) {
  ssize_t got = 0;
  do {
    got = ::read(file.Get(), to, size);
  } while (got < 0 && errno == EINTR);
  if (got < 0) problem = std::strerror(errno);
  return got;
}

// Reads a file into the memory that a buffer has. False with a problem.
bool ReadWhole(const FileDescriptor& file, KRBuffer& buffer, bool& isAtEnd, std::string& problem) {
  char* const bytes = buffer.GetBufferPtr();
  const u32 room = bytes == nullptr ? 0 : buffer.GetBufferAllocation();
  u32 size = 0;
  while (size < room) {
    const ssize_t got = ReadSome(file, bytes + size, room - size, problem);
    if (got < 0) return false;
    size += static_cast<u32>(got);
    isAtEnd = got == 0;
    if (isAtEnd) break;
  }
  buffer.SetBufferSize(size);
  buffer.SetBufferOffset(size);
  return true;
}

// Reads a pipe, or what has come to a file meanwhile. False with a problem.
bool ReadRest(const FileDescriptor& file, KRBuffer& buffer, std::string& problem) {
  Wiped<65536> block;
  for (;;) {
    const ssize_t got = ReadSome(file, block.bytes, sizeof block.bytes, problem);
    if (got <= 0) return got == 0;
    if (buffer.GetBufferSize() > kMaxInputSize - static_cast<u32>(got)) {
      problem = kTooLarge;
      return false;
    }
    if (buffer.WriteLarge(block.bytes, static_cast<u32>(got)) != KRBufferOK) {
      problem = kNoMemoryToRead;
      return false;
    }
  }
}

std::unique_ptr<KRBuffer> ReadBytes(const std::string& name, std::string& problem) {
  FileDescriptor file(name == "-" ? ::dup(STDIN_FILENO)
                                  : ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  struct stat status {};
  if (!file || ::fstat(file.Get(), &status) != 0) {
    problem = std::strerror(errno);
    return nullptr;
  }
  if (S_ISDIR(status.st_mode)) {
    problem = "it is a directory; name a file";
    return nullptr;
  }
  const bool isFile = S_ISREG(status.st_mode);
  // Of standard input a part may have been read already.
  if (isFile && name != "-" && status.st_size > kMaxInputSize) {
    problem = kTooLarge;
    return nullptr;
  }
  const bool sized = isFile && status.st_size > 0 && status.st_size < kMaxInputSize;
  // A file that may be read as a whole, and its tree.
  if (sized && status.st_size >= kLargeFile) {
    PreferLargePages(static_cast<std::size_t>(status.st_size) * kTreeTimes);
  }
  // One byte more than the file has shows whether it has grown.
  auto buffer = std::make_unique<KRBuffer>(sized ? static_cast<u32>(status.st_size) + 1 : 0, 65536);
  if (buffer == nullptr) {
    problem = kNoMemoryToRead;
    return nullptr;
  }
  bool isAtEnd = false;
  if (sized && !ReadWhole(file, *buffer, isAtEnd, problem)) return nullptr;
  return isAtEnd || ReadRest(file, *buffer, problem) ? std::move(buffer) : nullptr;
}

}  // namespace

std::unique_ptr<KRBuffer> ReadInput(const std::string& name, std::string& problem) {
  std::unique_ptr<KRBuffer> bytes = ReadBytes(name, problem);
  if (bytes == nullptr || bytes->GetBufferSize() == 0) return bytes;
  const std::string_view view(bytes->GetBufferPtr(), bytes->GetBufferSize());
  return IsGzip(view) ? Unpack(view, problem) : std::move(bytes);
}

bool IsLargePlainFile(const std::string& name, std::size_t bytes) {
  // Of many small files none is opened twice.
  struct stat status {};
  if (name == "-" || ::stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode) ||
      static_cast<std::size_t>(status.st_size) < bytes) {
    return false;
  }
  // A file that cannot be opened has no start, nor has a pipe that took its place.
  const FileDescriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  char start[2] = {};
  return ::pread(file.Get(), start, sizeof start, 0) == sizeof start &&
         !IsGzip({start, sizeof start});
}

std::string DisplayName(const std::string& name) {
  return name == "-" ? "standard input" : SafeLine(name);
}

}  // namespace krofx::command
