// The front door's rooms: the strict pass, and what follows when it does not suffice.

#include "krofx/reader/reading.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include "krofx/core/internal/failed_allocations.h"
#include "krofx/core/thread.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/reader/characters/working_text.h"
#include "krofx/reader/file/file_bytes.h"
#include "krofx/reader/file/file_reader.h"

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

Reading Unreadable(const char* what) {
  Reading reading;
  reading.status = KRParseStatus_Invalid;
  reading.problem = what;
  reading.problem += std::strerror(errno);
  return reading;
}

// The first file of a class among the texts and their parts.
template <class File>
File* FindFile(const List<OfxText>& texts) {
  for (const OfxText& text : texts) {
    if (auto* const file = dynamic_cast<File*>(text.root.get())) return file;
    for (u16 index = 0; text.root != nullptr && index < text.root->GetNumberOfSubfiles(); ++index) {
      if (auto* const file = dynamic_cast<File*>(text.root->GetSubfile(index))) return file;
    }
  }
  return nullptr;
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

std::optional<TextKind> Reading::Kind() const {
  if (texts.empty()) return std::nullopt;
  return texts[0].kind;
}

KRFileRs* Reading::Response() const { return FindFile<KRFileRs>(texts); }

KRFileRq* Reading::Request() const { return FindFile<KRFileRq>(texts); }

List<MissingTag> Reading::Missing() const {
  const internal::AllocationWatch memory;
  List<MissingTag> all;
  for (std::size_t index = 0; index < texts.size() && !memory.HasFailed(); ++index) {
    if (texts[index].root == nullptr) continue;
    for (MissingTag& missing : FindMissing(*texts[index].root)) {
      missing.text = index;
      if (!all.Append(std::move(missing))) {
        KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
        return all;
      }
    }
  }
  return all;
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
  if (path == nullptr) return Refused(KRParseStatus_Invalid, "no file is named");
  const OwnedBuffer buffer(new KRBuffer(0, 0));
  if (buffer == nullptr) return OutOfMemory();
  switch (internal::ReadFileBytes(path, *buffer)) {
    case internal::FileBytes::kRead:
      return Read(*buffer, options);
    case internal::FileBytes::kNoMemory:
      return OutOfMemory();
    case internal::FileBytes::kNotOpened:
      return Unreadable("it cannot be opened: ");
    default:
      return Unreadable("it cannot be read: ");
  }
}

}  // namespace krofx
