// Character sets over iconv, and UTF-8 by hand where iconv would be asked for each character.

#include "krofx/reader/characters/charset.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "krofx/parse/internal/end_tag_index.h"
#include "krofx/values/internal/keyword_table.h"

namespace krofx::internal {

namespace {

constexpr char32_t kNoCharacter = 0xFFFD;
void* const kFailed = reinterpret_cast<iconv_t>(-1);

// Converts one character and resets the state. False when the bytes are none, or not a whole one.
bool Convert(iconv_t converter, const char* from, std::size_t count, char* to, std::size_t& room) {
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  char* in = const_cast<char*>(from);
  char* out = to;
  const std::size_t all = room;
  if (iconv(converter, &in, &count, &out, &room) == static_cast<std::size_t>(-1)) return false;
  iconv(converter, nullptr, nullptr, &out, &room);
  room = all - room;
  return count == 0 && room != 0;
}

bool DecodeBy(iconv_t converter, const char* from, std::size_t count, char32_t& code) {
  char bytes[16];
  std::size_t room = sizeof bytes;
  // A character that decomposes into several is none that can be handled here.
  if (!Convert(converter, from, count, bytes, room) || room != sizeof code) return false;
  std::memcpy(&code, bytes, sizeof code);
  return true;
}

// The table of the set that a thread has opened last, since nearly all files are in the same one,
// and to ask iconv for it takes longer than to read a short file.
struct LastTable {
  char name[32] = "";
  char32_t characters[128] = {};
};
thread_local LastTable lastTable;

}  // namespace

std::size_t EncodeUtf8(char32_t code, char* out) {
  const auto put = [out](std::size_t at, char32_t bits) {
    out[at] = static_cast<char>(static_cast<unsigned char>(bits));
  };
  if (code < 0x80) {
    put(0, code);
    return 1;
  }
  if (code < 0x800) {
    put(0, 0xC0 | code >> 6);
    put(1, 0x80 | (code & 0x3F));
    return 2;
  }
  if (code < 0x10000) {
    if (code >= 0xD800 && code < 0xE000) return 0;
    put(0, 0xE0 | code >> 12);
    put(1, 0x80 | (code >> 6 & 0x3F));
    put(2, 0x80 | (code & 0x3F));
    return 3;
  }
  if (code > 0x10FFFF) return 0;
  put(0, 0xF0 | code >> 18);
  put(1, 0x80 | (code >> 12 & 0x3F));
  put(2, 0x80 | (code >> 6 & 0x3F));
  put(3, 0x80 | (code & 0x3F));
  return 4;
}

std::size_t DecodeUtf8(std::string_view text, char32_t& code) {
  const auto byte = [text](std::size_t at) {
    return at < text.size() ? static_cast<char32_t>(static_cast<unsigned char>(text[at])) : 0;
  };
  const char32_t first = byte(0);
  code = first;
  if (first < 0x80) return 1;
  code = kNoCharacter;
  const std::size_t count = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4) return 1;
  char32_t whole = first & (0xFFu >> (count + 1));
  for (std::size_t at = 1; at < count; ++at) {
    if ((byte(at) & 0xC0) != 0x80) return 1;
    whole = whole << 6 | (byte(at) & 0x3F);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = whole >= 0xD800 && whole < 0xE000;
  if (whole < kLeast[count] || whole > 0x10FFFF || surrogate) return 1;
  code = whole;
  return count;
}

bool HasHighBytes(std::string_view text) {
  constexpr std::size_t kWords = 64;
  constexpr std::uint64_t kHigh = 0x8080808080808080;
  std::uint64_t words[kWords];
  const char* at = text.data();
  std::size_t left = text.size();
  for (; left >= sizeof words; at += sizeof words, left -= sizeof words) {
    std::memcpy(words, at, sizeof words);
    // Without a way out of it, the compiler makes vectors of this loop.
    std::uint64_t all = 0;
    for (const std::uint64_t word : words) all |= word;
    if ((all & kHigh) != 0) return true;
  }
  return std::any_of(at, at + left, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

void Charset::Close() {
  for (void* handle : {m_decoder, m_encoder}) {
    if (handle != nullptr) iconv_close(handle);
  }
  m_decoder = m_encoder = nullptr;
}

// Learns the characters of the single bytes. False when a byte below 128 is another character than
// in ASCII.
bool Charset::FillTable() {
  m_kind = Kind::kTable;
  for (unsigned value = 1; value < 256; ++value) {
    const char byte = static_cast<char>(static_cast<unsigned char>(value));
    char32_t code = 0;
    const bool decoded = DecodeBy(m_decoder, &byte, 1, code);
    if (value < 0x80) {
      // Some sets have a few signs of their own there; those that make up tags must be ASCII's.
      const bool needed = std::strchr("<>/&;:=.,+-0123456789AZaz \n\r\t", byte) != nullptr;
      if (needed && (!decoded || code != value)) return false;
      continue;
    }
    if (!decoded && errno == EINVAL) m_kind = Kind::kIconv;
    m_table[value - 0x80] = decoded ? code : 0;
  }
  return true;
}

bool Charset::TakeLastTable() {
  static_assert(sizeof m_name == sizeof LastTable::name);
  static_assert(sizeof m_table == sizeof LastTable::characters);
  if (std::strcmp(m_name, lastTable.name) != 0) return false;
  m_kind = Kind::kTable;
  std::memcpy(m_table, lastTable.characters, sizeof m_table);
  return true;
}

// A set with a table needs iconv no more.
void Charset::KeepTable() {
  if (m_kind != Kind::kTable) return;
  Close();
  std::memcpy(lastTable.name, m_name, sizeof m_name);
  std::memcpy(lastTable.characters, m_table, sizeof m_table);
}

Charset::Opened Charset::Open(std::string_view name) {
  if (name.empty() || name.size() >= sizeof m_name) return Opened::kUnknown;
  Charset made;
  std::transform(name.begin(), name.end(), made.m_name, &CapitalLetter);
  made.m_name[name.size()] = '\0';
  if (EqualsWithoutCase(name, "UTF-8") || EqualsWithoutCase(name, "UTF8")) {
    made.m_kind = Kind::kUtf8;
    std::strcpy(made.m_name, "UTF-8");
  } else if (!EqualsWithoutCase(name, "US-ASCII") && !made.TakeLastTable()) {
    // A name with a slash would be an instruction to iconv.
    if (name.find('/') != std::string_view::npos) return Opened::kUnknown;
    for (const bool decode : {true, false}) {
      void* const handle =
          decode ? iconv_open("UTF-32LE", made.m_name) : iconv_open(made.m_name, "UTF-32LE");
      if (handle == kFailed) return errno == ENOMEM ? Opened::kNoMemory : Opened::kUnknown;
      (decode ? made.m_decoder : made.m_encoder) = handle;
    }
    if (!made.FillTable()) return Opened::kUnknown;
    made.KeepTable();
  }
  std::swap(m_kind, made.m_kind);
  std::swap(m_name, made.m_name);
  std::swap(m_table, made.m_table);
  std::swap(m_decoder, made.m_decoder);
  std::swap(m_encoder, made.m_encoder);
  return Opened::kYes;
}

std::size_t Charset::Decode(std::string_view text, char32_t& code) const {
  const auto first = static_cast<unsigned char>(text.front());
  code = first;
  if (first < 0x80) return 1;
  if (m_kind == Kind::kUtf8) return DecodeUtf8(text, code);
  code = kNoCharacter;
  if (m_kind == Kind::kTable && m_table[first - 0x80] != 0) code = m_table[first - 0x80];
  if (m_kind != Kind::kIconv) return 1;
  const std::size_t most = std::min<std::size_t>(text.size(), 4);
  for (std::size_t count = 1; count <= most; ++count) {
    if (DecodeBy(m_decoder, text.data(), count, code)) return count;
  }
  code = kNoCharacter;
  return 1;
}

std::size_t Charset::Encode(char32_t code, char* out) const {
  if (m_kind == Kind::kUtf8 || code < 0x80) return EncodeUtf8(code, out);
  if (m_kind == Kind::kAscii) return 0;
  if (m_kind == Kind::kTable) {
    const char32_t* const found = std::find(std::begin(m_table), std::end(m_table), code);
    if (found == std::end(m_table)) return 0;
    *out = static_cast<char>(static_cast<unsigned char>(0x80 + (found - m_table)));
    return 1;
  }
  char bytes[sizeof code];
  std::memcpy(bytes, &code, sizeof code);
  std::size_t room = kLongest;
  return Convert(m_encoder, bytes, sizeof bytes, out, room) ? room : 0;
}

}  // namespace krofx::internal
