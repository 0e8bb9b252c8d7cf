// The front door's rooms: the strict pass, and what follows when it does not suffice.

#include "krofx/reader/reading.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

#include "krofx/core/thread.h"
#include "krofx/reader/file_reader.h"
#include "krofx/reader/working_text.h"

namespace krofx {

namespace {

using internal::OwnedBuffer;

// More is not looked at: positions have 31 bits.
constexpr std::size_t kMostBytes = 0x7fffffff;

Reading Refused(KRParseStatus status, const char* problem) {
  Reading reading;
  reading.status = status;
  reading.problem = problem;
  return reading;
}

Reading OutOfMemory() {
  KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
  return Refused(KRParseStatus_Fatal, "memory was exhausted while reading");
}

// A file that is open.
struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, FileCloser>;

Reading Unreadable(const char* what) {
  Reading reading;
  reading.status = KRParseStatus_Invalid;
  reading.problem = what;
  reading.problem += std::strerror(errno);
  return reading;
}

}  // namespace

Reading::Reading(Reading&& other) noexcept
    : status(other.status),
      root(std::exchange(other.root, nullptr)),
      texts(std::move(other.texts)),
      warnings(std::move(other.warnings)),
      mendings(std::move(other.mendings)),
      unrecorded(other.unrecorded),
      problem(std::move(other.problem)) {}

Reading& Reading::operator=(Reading&& other) noexcept {
  if (this == &other) return *this;
  status = other.status;
  root = std::exchange(other.root, nullptr);
  texts = std::move(other.texts);
  warnings = std::move(other.warnings);
  mendings = std::move(other.mendings);
  unrecorded = other.unrecorded;
  problem = other.problem;
  return *this;
}

Reading Read(std::string_view bytes, const ReadOptions& options) {
  bytes = bytes.substr(0, kMostBytes);
  const OwnedBuffer buffer(new KRBuffer(static_cast<u32>(bytes.size()) + 1, 0));
  if (buffer == nullptr || buffer->GetBufferPtr() == nullptr) return OutOfMemory();
  if (!bytes.empty()) std::memcpy(buffer->GetBufferPtr(), bytes.data(), bytes.size());
  buffer->SetBufferSize(static_cast<u32>(bytes.size()));
  return Read(*buffer, options);
}

Reading Read(KRBuffer& buffer, const ReadOptions& options) {
  if (buffer.HasPlainBytes() != 0) return internal::FileReader(buffer, options).Read();
  // What a derived class serves is what its GetCh says, up to the first NUL.
  const OwnedBuffer copy(new KRBuffer(0, 65536));
  if (copy == nullptr) return OutOfMemory();
  for (s32 at = 0; static_cast<std::size_t>(at) < kMostBytes; ++at) {
    const char c = buffer.GetCh(at);
    if (c == '\0') break;
    if (copy->Write(c) != KRBufferOK) return OutOfMemory();
  }
  return internal::FileReader(*copy, options).Read();
}

Reading ReadFile(const char* path, const ReadOptions& options) {
  const OpenFile file(path == nullptr ? nullptr : std::fopen(path, "rb"));
  if (file == nullptr) {
    return path == nullptr ? Refused(KRParseStatus_Invalid, "no file is named")
                           : Unreadable("it cannot be opened: ");
  }
  const OwnedBuffer buffer(new KRBuffer(0, 0));
  if (buffer == nullptr) return OutOfMemory();
  constexpr u32 kFirst = 65536;
  u32 size = 0;
  for (u32 room = kFirst; size<kMostBytes; room = room> kMostBytes / 2 ? kMostBytes : room * 2) {
    if (buffer->AllocateTo(room) != KRBufferOK) return OutOfMemory();
    const std::size_t count = std::fread(buffer->GetBufferPtr() + size, 1, room - size, file.get());
    size += static_cast<u32>(count);
    if (size < room || room == kMostBytes) break;
  }
  if (std::ferror(file.get()) != 0) return Unreadable("it cannot be read: ");
  buffer->SetBufferSize(size);
  return Read(*buffer, options);
}

}  // namespace krofx
