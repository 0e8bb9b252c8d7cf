// Searches through memory, a block of bytes at a time. The runs in OFX text are short: calling a
// library function for one costs more than the search itself.
//
// For each transaction of a statement, with blocks of
//
//                          instructions  cycles
//   16 bytes, to read              2850     860
//    8 bytes, to read              3220     960
//   16 bytes, to write             1220     430
//    8 bytes, to write             1450     530

#ifndef KROFX_CORE_INTERNAL_BYTE_SEARCH_H_
#define KROFX_CORE_INTERNAL_BYTE_SEARCH_H_

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace krofx::internal {

/// @return whether a character is white space in OFX text; NUL is not.
inline bool IsWhite(char character) {
  return character == ' ' || character == '\n' || character == '\r' || character == '\t';
}

/// Eight bytes of text, compared at once. A word has a byte below n (1 to 128) where (word - n *
/// 0x01..) & ~word & 0x80.. has a bit. The lowest such bit is exact but those above it may be
/// wrong, so only the first is reported. The first byte of a word is the lowest on little-endian
/// machines; on others the bytes are swapped.
class WordBlock {
 public:
  static constexpr std::ptrdiff_t kSize = 8;

  /// The bytes of a block that a comparison picked.
  class Marks {
   public:
    Marks() = default;
    explicit Marks(std::uint64_t bits) : m_bits(bits) {}
    Marks operator|(Marks other) const { return Marks(m_bits | other.m_bits); }
    /// @return the place of the first one; kSize when there is none.
    int First() const { return std::countr_zero(m_bits) / 8; }

   private:
    std::uint64_t m_bits = 0;
  };

  explicit WordBlock(const char* at) {
    std::memcpy(&m_word, at, sizeof m_word);
    if constexpr (std::endian::native == std::endian::big) m_word = __builtin_bswap64(m_word);
  }
  /// Marks the bytes that are `character`.
  Marks Equal(char character) const {
    const std::uint64_t word = m_word ^ All(static_cast<unsigned char>(character));
    return Marks((word - All(1)) & ~word & All(0x80));
  }
  /// Marks the bytes that are above 127.
  Marks High() const { return Marks(m_word & All(0x80)); }

 private:
  static constexpr std::uint64_t All(unsigned char character) {
    return std::uint64_t{0x0101010101010101} * character;
  }

  std::uint64_t m_word;
};

#if defined(__SSE2__)

/// Sixteen bytes of text, compared at once; otherwise as WordBlock.
class VectorBlock {
 public:
  static constexpr std::ptrdiff_t kSize = 16;

  class Marks {
   public:
    Marks() : m_bytes(_mm_setzero_si128()) {}
    explicit Marks(__m128i bytes) : m_bytes(bytes) {}
    Marks operator|(Marks other) const { return Marks(_mm_or_si128(m_bytes, other.m_bytes)); }
    int First() const {
      constexpr unsigned kNone = 1u << kSize;
      return std::countr_zero(static_cast<unsigned>(_mm_movemask_epi8(m_bytes)) | kNone);
    }

   private:
    __m128i m_bytes;
  };

  explicit VectorBlock(const char* at)
      : m_bytes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at))) {}
  Marks Equal(char character) const {
    return Marks(_mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(character)));
  }
  // A mark is the highest bit of its byte.
  Marks High() const { return Marks(m_bytes); }

 private:
  __m128i m_bytes;
};

using ByteBlock = VectorBlock;

#else

using ByteBlock = WordBlock;

#endif

/// @return the first byte of [at, end) that `isHit` accepts, or `end`. `hits` marks the same bytes
///         of a block.
template <class Hits, class IsHit>
const char* SearchBytes(const char* at, const char* end, Hits hits, IsHit isHit) {
  while (end - at >= ByteBlock::kSize) {
    const int place = hits(ByteBlock(at)).First();
    at += place;
    if (place != ByteBlock::kSize) return at;
  }
  while (at != end && !isHit(*at)) ++at;
  return at;
}

/// @return the first `character` or NUL of [at, end), or `end`.
inline const char* FindOrNul(const char* at, const char* end, char character) {
  return SearchBytes(
      at, end, [character](ByteBlock block) { return block.Equal(character) | block.Equal('\0'); },
      [character](char c) { return c == character || c == '\0'; });
}

/// Collects nothing about the bytes that a search looks at.
struct NoBytes {
  void Take(ByteBlock /*block*/) {}
  void Take(char /*byte*/) {}
};

/// Finds out whether there are bytes above 127 among those that a search looks at, which may be a
/// few more than those up to its hit.
class HighBytes {
 public:
  void Take(ByteBlock block) { m_marks = m_marks | block.High(); }
  void Take(char byte) { m_any = m_any || static_cast<unsigned char>(byte) > 127; }
  /// Looks at all bytes of [at, end).
  void TakeAll(const char* at, const char* end) {
    for (; end - at >= ByteBlock::kSize; at += ByteBlock::kSize) Take(ByteBlock(at));
    for (; at < end; ++at) Take(*at);
  }
  bool Any() const { return m_any || m_marks.First() != ByteBlock::kSize; }

 private:
  ByteBlock::Marks m_marks;
  bool m_any = false;
};

/// Finds the '<' or NUL at which a value ends; sets `hasMacros` when a '&' comes before it.
/// @param seen takes the bytes that are looked at.
/// @return its place, or `end`.
template <class Seen>
inline const char* FindValueEnd(const char* at, const char* end, bool& hasMacros, Seen& seen) {
  for (;;) {
    at = SearchBytes(
        at, end,
        [&seen](ByteBlock block) {
          seen.Take(block);
          return block.Equal('<') | block.Equal('&') | block.Equal('\0');
        },
        [&seen](char c) {
          seen.Take(c);
          return c == '<' || c == '&' || c == '\0';
        });
    if (at == end || *at != '&') return at;
    hasMacros = true;
    ++at;
  }
}

inline const char* FindValueEnd(const char* at, const char* end, bool& hasMacros) {
  NoBytes unseen;
  return FindValueEnd(at, end, hasMacros, unseen);
}

/// Copies the block at `from` to `to`.
/// @return whether it has a character that has a macro in SGML ('<', '>', '&').
template <class Block>
bool CopyBlock(const char* from, char* to) {
  const Block block(from);
  std::memcpy(to, from, Block::kSize);
  const auto macros = block.Equal('<') | block.Equal('>') | block.Equal('&');
  return macros.First() != Block::kSize;
}

/// Copies a text of at least one block, a block at a time; the last block may overlap the one
/// before it. It stops at a block with a character that has a macro.
/// @return whether the whole text was copied.
template <class Block>
bool CopyBlocks(const char* from, std::size_t length, char* to) {
  constexpr auto kSize = static_cast<std::size_t>(Block::kSize);
  const std::size_t last = length - kSize;
  for (std::size_t at = 0; at < last; at += kSize) {
    if (CopyBlock<Block>(from + at, to + at)) return false;
  }
  return !CopyBlock<Block>(from + last, to + last);
}

/// Copies a text that has no character with a macro. Searching while copying takes 380 cycles for a
/// written transaction where copying first takes 430: a block that is read directly after it was
/// written in other pieces has to wait.
/// @return whether it has none; if not, some of it may have been copied.
inline bool CopyWithoutMacros(const char* from, std::size_t length, char* to) {
  if (length >= static_cast<std::size_t>(ByteBlock::kSize)) {
    return CopyBlocks<ByteBlock>(from, length, to);
  }
  if (length >= static_cast<std::size_t>(WordBlock::kSize)) {
    return CopyBlocks<WordBlock>(from, length, to);
  }
  for (const char* const end = from + length; from != end; ++from) {
    if (*from == '<' || *from == '>' || *from == '&') return false;
    *to++ = *from;
  }
  return true;
}

/// @return whether a tag's name ends before this character.
inline bool EndsName(char character) {
  return character == '>' || character == '\0' || IsWhite(character);
}

/// @return the first character of [at, end) before which a tag's name ends, or `end`.
inline const char* FindNameEnd(const char* at, const char* end) {
  return SearchBytes(
      at, end,
      [](ByteBlock block) {
        return block.Equal('>') | block.Equal('\0') | block.Equal(' ') | block.Equal('\n') |
               block.Equal('\r') | block.Equal('\t');
      },
      EndsName);
}

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_BYTE_SEARCH_H_
