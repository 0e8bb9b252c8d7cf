// Searches through memory, eight bytes at a time, for the short stretches that OFX text is made of:
// the call of a library search costs more than most of them.
//
// A word has a byte below n (1 to 128) where (word - n * 0x01..) & ~word & 0x80.. has a bit. The
// lowest such bit is exact, the ones above it need not be, so words are read on little-endian
// machines only; on others the byte loops do it all.

#ifndef KROFX_PARSE_BYTE_SEARCH_H_
#define KROFX_PARSE_BYTE_SEARCH_H_

#include <bit>
#include <cstdint>
#include <cstring>

namespace krofx::internal {

/// The white space of OFX text. NUL is none.
inline bool IsWhite(char character) {
  return character == ' ' || character == '\n' || character == '\r' || character == '\t';
}

/// The byte `character` in all places of a word.
constexpr std::uint64_t AllBytes(unsigned char character) {
  return std::uint64_t{0x0101010101010101} * character;
}

/// Marks in the high bit of its byte at least the first byte of `word` that is below `limit`.
constexpr std::uint64_t BytesBelow(std::uint64_t word, unsigned char limit) {
  return (word - AllBytes(limit)) & ~word & AllBytes(0x80);
}

/// The first byte of [at, end) that `isHit` accepts, or `end`. `hits` marks, as BytesBelow does,
/// the first byte of a word that may be one.
template <class Hits, class IsHit>
const char* SearchBytes(const char* at, const char* end, Hits hits, IsHit isHit) {
  if constexpr (std::endian::native == std::endian::little) {
    while (end - at >= 8) {
      std::uint64_t word;
      std::memcpy(&word, at, sizeof word);
      const std::uint64_t marks = hits(word);
      if (marks == 0) {
        at += 8;
        continue;
      }
      at += std::countr_zero(marks) / 8;
      if (isHit(*at)) return at;
      ++at;
    }
  }
  while (at != end && !isHit(*at)) ++at;
  return at;
}

/// The first `character` or NUL of [at, end), or `end`.
inline const char* FindOrNul(const char* at, const char* end, char character) {
  const std::uint64_t pattern = AllBytes(static_cast<unsigned char>(character));
  return SearchBytes(
      at, end,
      [pattern](std::uint64_t word) { return BytesBelow(word ^ pattern, 1) | BytesBelow(word, 1); },
      [character](char c) { return c == character || c == '\0'; });
}

/// The '<' or NUL at which a value ends, or `end`; notes a '&' before it.
inline const char* FindValueEnd(const char* at, const char* end, bool& hasMacros) {
  for (;;) {
    at = SearchBytes(
        at, end,
        [](std::uint64_t word) {
          return BytesBelow(word ^ AllBytes('<'), 1) | BytesBelow(word ^ AllBytes('&'), 1) |
                 BytesBelow(word, 1);
        },
        [](char c) { return c == '<' || c == '&' || c == '\0'; });
    if (at == end || *at != '&') return at;
    hasMacros = true;
    ++at;
  }
}

/// Whether a tag's name ends before this character.
inline bool EndsName(char character) {
  return character == '>' || character == '\0' || IsWhite(character);
}

/// The first character of [at, end) before which a tag's name ends, or `end`.
inline const char* FindNameEnd(const char* at, const char* end) {
  return SearchBytes(
      at, end,
      [](std::uint64_t word) {
        return BytesBelow(word ^ AllBytes('>'), 1) | BytesBelow(word, ' ' + 1);
      },
      EndsName);
}

}  // namespace krofx::internal

#endif  // KROFX_PARSE_BYTE_SEARCH_H_
