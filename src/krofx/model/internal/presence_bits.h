// Which rows of an object are present.

#ifndef KROFX_MODEL_INTERNAL_PRESENCE_BITS_H_
#define KROFX_MODEL_INTERNAL_PRESENCE_BITS_H_

#include <bit>

#include "krofx/core/types.h"

namespace krofx::internal {

/// One bit for each row of a table of valid tags, clear at first. Positions are 0 to kCount - 1.
class PresenceBits {
 public:
  /// The number of bits, and so the largest number of rows that a table can use.
  static constexpr int kCount = 96;

  /// @return whether the bit at a position is set.
  constexpr bool Has(int position) const {
    return (m_words[WordOf(position)] & Bit(position)) != 0;
  }
  /// Sets the bit at a position.
  constexpr void Set(int position) { m_words[WordOf(position)] |= Bit(position); }
  /// Clears the bit at a position.
  constexpr void Clear(int position) { m_words[WordOf(position)] &= ~Bit(position); }

  /// @return whether all bits that are set in `other` are set here.
  constexpr bool Contains(const PresenceBits& other) const {
    u32 missing = 0;
    for (int word = 0; word < kWords; ++word) missing |= other.m_words[word] & ~m_words[word];
    return missing == 0;
  }
  /// @return the number of bits that are set both here and in `other`.
  constexpr int CountCommon(const PresenceBits& other) const {
    // Few bits are set, so counting them one by one is faster than a general count of bits.
    int count = 0;
    for (int word = 0; word < kWords; ++word) {
      for (u32 bits = m_words[word] & other.m_words[word]; bits != 0; bits &= bits - 1) ++count;
    }
    return count;
  }
  /// @return the first position from `position` on whose bit is set; kCount when there is none.
  constexpr int NextFrom(int position) const {
    while (position < kCount) {
      const u32 bits = m_words[WordOf(position)] >> (position % 32);
      if (bits != 0) return position + std::countr_zero(bits);
      position = (WordOf(position) + 1) * 32;
    }
    return kCount;
  }

 private:
  static constexpr int kWords = kCount / 32;
  static constexpr int WordOf(int position) { return position / 32; }
  static constexpr u32 Bit(int position) { return 1u << (position % 32); }

  u32 m_words[kWords] = {};
};

}  // namespace krofx::internal

#endif  // KROFX_MODEL_INTERNAL_PRESENCE_BITS_H_
