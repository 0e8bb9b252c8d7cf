// Unpacks with zlib, block by block, so that a limit holds before the memory is taken.

#include "input/gzip.h"

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "input/input_files.h"
#include "krofx/core/buffer.h"
#include "system/file_descriptor.h"

namespace krofx::command {

namespace {

constexpr char kNoMemory[] = "not enough memory to unpack it";
constexpr std::string_view kMagic = "\x1f\x8b";

constexpr std::uint64_t kHarmlessSize = 256ULL << 20;
constexpr std::uint64_t kMostTimes = 200;

// A window with the end of zlib's name for it: gzip, not zlib's own header.
constexpr int kGzipWindow = 15 + 16;

constexpr std::size_t kBlock = 65536;
// Room for the size in front of what zlib asks for, so that it can be wiped.
constexpr std::size_t kSizeRoom = alignof(std::max_align_t);

voidpf Take(voidpf, uInt items, uInt size) {
  const std::size_t bytes = std::size_t{items} * size;
  auto* const block = static_cast<char*>(std::malloc(kSizeRoom + bytes));
  if (block == nullptr) return Z_NULL;
  std::memcpy(block, &bytes, sizeof bytes);
  return block + kSizeRoom;
}

void GiveBack(voidpf, voidpf memory) {
  if (memory == Z_NULL) return;
  char* const block = static_cast<char*>(memory) - kSizeRoom;
  std::size_t bytes = 0;
  std::memcpy(&bytes, block, sizeof bytes);
  explicit_bzero(block, kSizeRoom + bytes);
  std::free(block);
}

// The state of zlib, ended at its own end.
class Inflater {
 public:
  explicit Inflater(std::string_view packed) : m_left(packed) {
    m_stream.zalloc = &Take;
    m_stream.zfree = &GiveBack;
    m_open = ::inflateInit2(&m_stream, kGzipWindow) == Z_OK;
  }
  ~Inflater() {
    if (m_open) ::inflateEnd(&m_stream);
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  bool IsOpen() const { return m_open; }
  bool IsAtEnd() const { return m_left.empty() && m_stream.avail_in == 0; }

  /// Unpacks into a block. @return Z_OK, Z_STREAM_END at the end of a part, or an error.
  int Next(char* block, std::size_t size, std::size_t& got) {
    if (m_stream.avail_in == 0) {
      // zlib counts in 32 bits.
      const std::size_t given = std::min<std::size_t>(m_left.size(), UINT32_MAX);
      m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(m_left.data()));
      m_stream.avail_in = static_cast<uInt>(given);
      m_left.remove_prefix(given);
    }
    m_stream.next_out = reinterpret_cast<Bytef*>(block);
    m_stream.avail_out = static_cast<uInt>(size);
    const int result = ::inflate(&m_stream, Z_NO_FLUSH);
    got = size - m_stream.avail_out;
    return result;
  }
  /// Begins the next part.
  bool Reset() { return ::inflateReset(&m_stream) == Z_OK; }

 private:
  z_stream m_stream{};
  std::string_view m_left;
  bool m_open = false;
};

}  // namespace

bool IsGzip(std::string_view bytes) { return bytes.starts_with(kMagic); }

std::unique_ptr<KRBuffer> Unpack(std::string_view packed, std::string& problem) {
  auto text = std::make_unique<KRBuffer>(0, kBlock);
  Inflater inflater(packed);
  Wiped<kBlock> block;
  const auto fail = [&problem](const char* reason) {
    problem = reason;
    return nullptr;
  };
  if (text == nullptr || !inflater.IsOpen()) return fail(kNoMemory);
  for (;;) {
    std::size_t got = 0;
    const int result = inflater.Next(block.bytes, sizeof block.bytes, got);
    if (result == Z_MEM_ERROR) return fail(kNoMemory);
    if (result != Z_OK && result != Z_STREAM_END) {
      return fail(result == Z_BUF_ERROR ? "it is compressed, and breaks off; download it again"
                                        : "it is compressed, and damaged; download it again");
    }
    const std::uint64_t size = std::uint64_t{text->GetBufferSize()} + got;
    if (size > kHarmlessSize && size / kMostTimes > packed.size()) {
      return fail("it is compressed so much that it may be an attack; unpack it first");
    }
    if (size > kMaxInputSize) return fail(kTooLarge);
    if (got > 0 && text->WriteLarge(block.bytes, static_cast<u32>(got)) != KRBufferOK) {
      return fail(kNoMemory);
    }
    if (result != Z_STREAM_END) continue;
    if (inflater.IsAtEnd()) return text;
    if (!inflater.Reset()) return fail("it is compressed, and damaged; download it again");
  }
}

}  // namespace krofx::command
