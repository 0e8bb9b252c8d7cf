// Groups of three bytes and of four characters.

#include "krofx/security/internal/base64_coding.h"

#include <array>

namespace krofx::internal {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr u32 kBytesInGroup = 3;
constexpr u32 kCharactersInGroup = 4;

// The value of a character, or one of the classes after the 64 values.
enum Meaning : u8 { kPadding = 64, kSkipped, kRefused };

constexpr std::array<u8, 256> kMeanings = [] {
  std::array<u8, 256> meanings{};
  meanings.fill(kRefused);
  for (u8 value = 0; value < 64; ++value) {
    meanings[static_cast<unsigned char>(kAlphabet[value])] = value;
  }
  for (const char blank : {'\r', '\n', ' ', '\t'}) {
    meanings[static_cast<unsigned char>(blank)] = kSkipped;
  }
  meanings['='] = kPadding;
  return meanings;
}();

}  // namespace

bool Base64Encoder::Take(unsigned char byte, CodedOutput& out) {
  m_bits = m_bits << 8 | byte;
  return ++m_bytes < kBytesInGroup || PutGroup(out);
}

bool Base64Encoder::Finish(CodedOutput& out) { return m_bytes == 0 || PutGroup(out); }

// Each missing byte is one character less in the group.
bool Base64Encoder::PutGroup(CodedOutput& out) {
  const u32 bits = m_bits << 8 * (kBytesInGroup - m_bytes);
  for (u32 place = 0; place < kCharactersInGroup; ++place) {
    const u32 value = bits >> 6 * (kCharactersInGroup - 1 - place) & 0x3f;
    if (!out.Put(static_cast<unsigned char>(place <= m_bytes ? kAlphabet[value] : '='))) {
      return false;
    }
  }
  m_bits = m_bytes = 0;
  return true;
}

bool Base64Decoder::Take(unsigned char character, CodedOutput& out) {
  const u8 meaning = kMeanings[character];
  if (meaning == kSkipped) return true;
  if (meaning == kRefused || m_ended) return false;
  if (meaning == kPadding ? m_characters < 2 : m_padding > 0) return false;
  if (meaning == kPadding) ++m_padding;
  m_bits = m_bits << 6 | (meaning == kPadding ? 0u : meaning);
  if (++m_characters < kCharactersInGroup) return true;
  for (u32 place = 0; place < kBytesInGroup - m_padding; ++place) {
    if (!out.Put(m_bits >> 8 * (kBytesInGroup - 1 - place))) return false;
  }
  m_ended = m_padding > 0;
  m_bits = m_characters = 0;
  return true;
}

}  // namespace krofx::internal
